// A picture with transparency: four planes of bytes, red, green, blue and alpha, row by row
// from the top; alpha 255 is opaque. Colours are not multiplied by alpha.
// Ownership: the image owns its planes; a copy has planes of its own.
// Errors: an image that could not be made is empty (`IsValid` false), and drawing it does nothing.
// Limits: an image has at most kMaxPixels, 64 MiB of planes; a file at most kMaxFile bytes. While a
//   PNG or JPEG is decoded it may take 20 bytes a pixel.
#pragma once
#include <QImage>
#include <span>
#include <vector>

#include "util/color.h"

class CAlphaImage
{
public:
    static CAlphaImage FromImage(const QImage& image);

    // Each load empties the image first and is false when it stays empty.
    // By the last four characters: .png and .jpg by their content, .tga by our own reader.
    bool LoadFromFile(const QString& path);
    // PNG, JPEG or BMP; one of more than maxPixels is refused before it is decoded.
    bool LoadFromMemory(const QByteArray& data, qint64 maxPixels = kMaxPixels);
    // True colour of 24 or 32 bits, plain or in runs. Bit 0x10 of the descriptor, not the usual 0x20,
    // says that the rows stand from the top; a packet that crosses the end of its row runs on into
    // the storage after it, and the next row begins at its own start. What a file lacks is zero.
    bool LoadTarga(std::span<const quint8> data);
    // Of a resource library, which module is the folder of: name.png, else name.bmp, else name.tga.
    bool LoadFromResource(const QString& module, const QString& name);
    // Takes name.tga's alpha, each value as 255 minus what is stored, if it has as many pixels as the
    // image; nothing else changes, and nothing at all when it fails.
    bool LoadAlphaFromResource(const QString& module, const QString& name);
    // Of a .png or .tga, from its first bytes; zeros when they tell none.
    static QSize ReadImageSize(const QString& path);

    // Planes of zeros. False, and empty, for a size that is empty or above the limits.
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

    static constexpr int kMaxSide = 16384;
    static constexpr qint64 kMaxPixels = 1 << 24;
    static constexpr qint64 kMaxFile = 4 * kMaxPixels + 4096; // the largest TARGA

private:
    size_t Count() const { return size_t(m_width) * size_t(m_height); }
    const quint8* Plane(int n) const { return m_planes.empty() ? nullptr : m_planes.data() + n * Count(); }
    quint8* EditPlane(int n);

    std::vector<quint8> m_planes;
    mutable std::vector<quint32> m_pixels;
    int m_height = 0;
    int m_width = 0;
};
