// Pictures of soft keys on a bar of the highlight colour: the same shapes in white.
#pragma once
#include "util/color.h"

#include <QRect>

class QPainter;

// WCAG contrast of two colours, 1 to 21.
double Contrast(COLORREF a, COLORREF b);
// The picture in white, centred in `rect`; with a dark edge of a pixel where white alone would not
// stand out from `bar`. Nothing for a missing picture.
void DrawBarPicture(QPainter& dc, const QRect& rect, int imageId, COLORREF bar);
