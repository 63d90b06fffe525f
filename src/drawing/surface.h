// The off-screen surfaces on which everything is painted.
// Format: 32 bits a pixel, opaque (QImage::Format_RGB32). Units: device pixels.
#pragma once
#include <QImage>
#include <QPainter>
#include <QRect>

#include "util/color.h"

// A surface that lives with its owner. Its painter is made at the first `Dc` and kept until
// `EndPaint`, so that a scroller pays for it once.
// Ownership: the surface owns picture and painter. Errors: an empty size gives an empty picture,
// onto which painting does nothing.
class COffscreenSurface
{
public:
    COffscreenSurface() = default;
    COffscreenSurface(int width, int height, COLORREF ground = kColorWhite);
    COffscreenSurface(const COffscreenSurface&) = delete;
    COffscreenSurface& operator=(const COffscreenSurface&) = delete;
    ~COffscreenSurface();

    // Makes the picture anew when the size differs; its content is then `ground`.
    void Resize(int width, int height, COLORREF ground = kColorWhite);
    void Clear() { Resize(0, 0); }

    QPainter& Dc();
    // Ends the kept painter; needed before the picture is copied and kept elsewhere.
    void EndPaint();

    int Width() const { return m_image.width(); }
    int Height() const { return m_image.height(); }
    QSize Size() const { return m_image.size(); }
    bool IsEmpty() const { return m_image.isNull(); }
    const QImage& Image() const { return m_image; }
    // A copy of a part with pixels of its own, also while the painter lives.
    QImage Copy(const QRect& part) const { return m_image.copy(part); }

private:
    QImage m_image;
    QPainter m_painter;
};

// One paint of one rectangle: drawing goes to a picture of its size, whose painter takes the
// target's coordinates; the picture reaches the target at `Flush` or at the end, once.
class CDoubleBuffer
{
public:
    CDoubleBuffer(QPainter& target, const QRect& rect);
    CDoubleBuffer(const CDoubleBuffer&) = delete;
    CDoubleBuffer& operator=(const CDoubleBuffer&) = delete;
    ~CDoubleBuffer();

    QPainter& Dc() { return m_painter; }
    void Flush();

private:
    QPainter& m_target;
    QRect m_rect;
    QImage m_image;
    QPainter m_painter;
    bool m_flushed = false;
};
