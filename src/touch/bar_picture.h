// Pictures on a ground of the highlight colour (soft keys, selected rows): the same shapes in white.
#pragma once
#include "util/color.h"

#include <QPoint>
#include <QRect>

class QPainter;

// WCAG contrast of two colours, 1 to 21.
double Contrast(COLORREF a, COLORREF b);
// The picture in white with its top left at a point; with a dark edge of a pixel where white alone
// would not stand out from `bar`. Nothing for a missing picture.
void DrawBarPicture(QPainter& dc, QPoint at, int imageId, COLORREF bar);
// The same, centred in `rect`.
void DrawBarPicture(QPainter& dc, const QRect& rect, int imageId, COLORREF bar);
