// A block of 24-bit pixels for work on plain bytes.
// Shape: three bytes a pixel, blue first; a line holds `Stride` pixels, the width rounded up to
// a multiple of 4, so that each line begins on a 4-byte boundary. Lines of a bottom-up buffer
// lie in memory from the last to the first; `Line` takes the row as seen.
// Errors: a size that is empty or too large leaves the buffer empty, and the result is false.
#pragma once
#include <QImage>
#include <QRect>
#include <vector>

class QPainter;

class CPixelBuffer
{
public:
    bool Create(int width, int height);
    bool CreateBottomUp(int width, int height);
    // Takes what stands on the painter's surface; what lies outside the surface reads black.
    bool CaptureFrom(QPainter& dc, const QRect& rect);
    bool CaptureBitmap(const QImage& bitmap);
    void PutTo(QPainter& dc, int x, int y) const;
    void Clear();

    bool IsValid() const { return !m_pixels.empty(); }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    int Stride() const { return m_stride; }
    // Row y from the top; REQUIRES 0 <= y < Height().
    quint8* Line(int y) { return m_pixels.data() + LineOffset(y); }
    const quint8* Line(int y) const { return m_pixels.data() + LineOffset(y); }

private:
    bool Allocate(int width, int height, bool bottomUp);
    size_t LineOffset(int y) const
    {
        return size_t(m_bottomUp ? m_height - 1 - y : y) * size_t(m_stride) * 3;
    }
    std::vector<quint8> m_pixels;
    int m_stride = 0;
    int m_height = 0;
    int m_width = 0;
    bool m_bottomUp = false;
};
