#include "drawing/pixel_buffer.h"

#include <QPainter>

#include "drawing/alpha_image.h"
#include "drawing/raster_target.h"

bool CPixelBuffer::Allocate(int width, int height, bool bottomUp)
{
    Clear();
    if (width <= 0 || height <= 0 || width > CAlphaImage::kMaxSide || height > CAlphaImage::kMaxSide)
        return false;
    m_width = width;
    m_height = height;
    m_stride = (width + 3) / 4 * 4;
    m_bottomUp = bottomUp;
    m_pixels.assign(size_t(m_stride) * size_t(height) * 3, 0);
    return true;
}

bool CPixelBuffer::Create(int width, int height)
{
    return Allocate(width, height, false);
}

bool CPixelBuffer::CreateBottomUp(int width, int height)
{
    return Allocate(width, height, true);
}

void CPixelBuffer::Clear()
{
    m_pixels.clear();
    m_pixels.shrink_to_fit();
    m_stride = m_height = m_width = 0;
    m_bottomUp = false;
}

bool CPixelBuffer::CaptureFrom(QPainter& dc, const QRect& rect)
{
    const CRasterTarget target(dc);
    if (!target.IsOpen() || !Create(rect.width(), rect.height()))
        return false;
    // What stands there counts, not what may be painted: the clip has no say.
    const QRect wanted = rect.translated(target.Origin());
    const QRect inside = wanted & target.Bounds();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const quint32* from = target.Line(y) + inside.left();
        quint8* to = Line(y - wanted.top()) + 3 * (inside.left() - wanted.left());
        for (int x = 0; x < inside.width(); ++x, to += 3) {
            to[0] = quint8(from[x]);
            to[1] = quint8(from[x] >> 8);
            to[2] = quint8(from[x] >> 16);
        }
    }
    return true;
}

bool CPixelBuffer::CaptureBitmap(const QImage& bitmap)
{
    const QImage source = bitmap.convertToFormat(QImage::Format_BGR888);
    if (source.isNull() || !Create(source.width(), source.height()))
        return false;
    for (int y = 0; y < m_height; ++y)
        std::copy_n(source.constScanLine(y), 3 * m_width, Line(y));
    return true;
}

void CPixelBuffer::PutTo(QPainter& dc, int x, int y) const
{
    if (!IsValid())
        return;
    QImage picture(m_width, m_height, QImage::Format_RGB32);
    if (picture.isNull())
        return;
    for (int row = 0; row < m_height; ++row) {
        auto* to = reinterpret_cast<quint32*>(picture.scanLine(row));
        const quint8* from = Line(row);
        for (int column = 0; column < m_width; ++column, from += 3)
            to[column] = 0xFF000000 | quint32(from[2]) << 16 | quint32(from[1]) << 8 | from[0];
    }
    dc.drawImage(x, y, picture);
}
