#include "drawing/raster_target.h"

#include <QImage>
#include <QPainter>

CRasterTarget::CRasterTarget(QPainter& dc)
{
    QPaintDevice* device = dc.device();
    if (!device || device->devType() != QInternal::Image)
        return;
    const auto* image = static_cast<const QImage*>(device);
    const QImage::Format format = image->format();
    if (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32 &&
        format != QImage::Format_ARGB32_Premultiplied)
        return;
    const QTransform& transform = dc.deviceTransform();
    if (transform.type() > QTransform::TxTranslate || dc.opacity() != 1.0 ||
        dc.compositionMode() != QPainter::CompositionMode_SourceOver)
        return;
    m_origin = QPoint(qRound(transform.dx()), qRound(transform.dy()));
    m_bounds = image->rect();
    m_clipped = dc.hasClipping();
    if (m_clipped)
        m_clip = dc.clipRegion().translated(m_origin);
    // The painter writes to these very bytes; asking for writable ones could copy them away from it.
    m_bits = const_cast<uchar*>(image->constBits());
    m_bytesPerLine = image->bytesPerLine();
}
