// Renders an SVG picture into a picture of so many times its own size.
// Errors: a null image when the file is no usable SVG picture.
#pragma once
#include <QImage>
#include <QString>

QImage RenderSvg(const QString& source, int multiple);
