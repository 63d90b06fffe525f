// A picture with transparency: four planes of bytes, red, green, blue and alpha, row by row
// from the top; alpha 255 is opaque. Colours are not multiplied by alpha.
// Ownership: the image owns its planes; a copy has planes of its own.
// Errors: an image that could not be made is empty (`IsValid` false), and drawing it does nothing.
#pragma once
#include <QImage>
#include <vector>

#include "util/color.h"

class CAlphaImage
{
public:
    static CAlphaImage FromImage(const QImage& image);

    // Planes of zeros. False, and empty, for a size that is empty or above kMaxSide.
    bool Create(int width, int height);
    bool CreateSolid(int width, int height, COLORREF color, quint8 alpha);
    void Clear();

    bool IsValid() const { return !m_planes.empty(); }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    const quint8* Red() const { return Plane(0); }
    const quint8* Green() const { return Plane(1); }
    const quint8* Blue() const { return Plane(2); }
    const quint8* Alpha() const { return Plane(3); }
    // For whoever fills the planes; drops what was derived from them.
    quint8* EditRed() { return EditPlane(0); }
    quint8* EditGreen() { return EditPlane(1); }
    quint8* EditBlue() { return EditPlane(2); }
    quint8* EditAlpha() { return EditPlane(3); }

    // The same pixels as 0xAARRGGBB, made at the first call and kept for drawing.
    const quint32* Pixels() const;
    QImage ToImage() const; // Format_ARGB32

    static constexpr int kMaxSide = 16384; // no picture is larger; keeps width x height in range

private:
    size_t Count() const { return size_t(m_width) * size_t(m_height); }
    const quint8* Plane(int n) const { return m_planes.empty() ? nullptr : m_planes.data() + n * Count(); }
    quint8* EditPlane(int n);

    std::vector<quint8> m_planes;
    mutable std::vector<quint32> m_pixels;
    int m_height = 0;
    int m_width = 0;
};
