#include "drawing/surface.h"

#include "drawing/paint.h"

COffscreenSurface::COffscreenSurface(int width, int height, COLORREF ground)
{
    Resize(width, height, ground);
}

COffscreenSurface::~COffscreenSurface()
{
    EndPaint();
}

void COffscreenSurface::Resize(int width, int height, COLORREF ground)
{
    width = qMax(width, 0);
    height = qMax(height, 0);
    if (m_image.size() == QSize(width, height))
        return;
    EndPaint();
    m_image = width && height ? QImage(width, height, QImage::Format_RGB32) : QImage();
    if (!m_image.isNull())
        m_image.fill(ToQColor(ground));
}

QPainter& COffscreenSurface::Dc()
{
    if (!m_painter.isActive() && !m_image.isNull())
        m_painter.begin(&m_image);
    return m_painter;
}

void COffscreenSurface::EndPaint()
{
    if (m_painter.isActive())
        m_painter.end();
}

CDoubleBuffer::CDoubleBuffer(QPainter& target, const QRect& rect)
    : m_target(target), m_rect(rect), m_image(rect.size().expandedTo(QSize(1, 1)), QImage::Format_RGB32)
{
    m_image.fill(Qt::black);
    m_painter.begin(&m_image);
    m_painter.setFont(target.font());
    m_painter.setPen(target.pen());
    m_painter.translate(-rect.topLeft());
}

CDoubleBuffer::~CDoubleBuffer()
{
    Flush();
}

void CDoubleBuffer::Flush()
{
    if (m_flushed)
        return;
    m_flushed = true;
    m_painter.end();
    if (!m_rect.isEmpty())
        m_target.drawImage(m_rect.topLeft(), m_image);
}
