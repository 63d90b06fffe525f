// Paints the title strip along an edge of the frame.
#pragma once
#include <QRect>
#include <QString>

class QPainter;

// `rect` is the strip at its location (TitleLocation), in surface pixels.
void PaintTitleStrip(QPainter& dc, const QRect& rect, int location, const QString& text);
