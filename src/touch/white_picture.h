// Pictures of rows on a ground of the selection's colour: the same shapes in white, because their
// dark ink would vanish. The larger pictures of soft keys and menus carry white and an edge of
// their own and need none of this.
#pragma once
#include "util/color.h"

#include <QPoint>

class QPainter;

// WCAG contrast of two colours, 1 to 21.
double Contrast(COLORREF a, COLORREF b);
// The picture with its top left at a point; with a dark edge of a pixel where white alone would not
// stand out from `ground`. Nothing for a missing picture.
void DrawWhitePicture(QPainter& dc, QPoint at, int imageId, COLORREF ground);
