// What all pages over a window share: the title bar on top and the dimmed view beside them.
// Units: surface pixels.
#pragma once
#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

int PageTitleHeight();
void PaintPageTitle(QPainter& dc, const QRect& rect, const QString& text); // cut with an ellipsis
inline QColor DimColor()
{
    return QColor(0, 0, 0, 120);
}
