#include "render.h"

#include <QPainter>
#include <QSvgRenderer>

QImage RenderSvg(const QString& source, int multiple)
{
    QSvgRenderer renderer(source);
    const QSize size = renderer.defaultSize();
    if (!renderer.isValid() || size.isEmpty())
        return QImage();
    QImage image(size * multiple, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(image.size())));
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}
