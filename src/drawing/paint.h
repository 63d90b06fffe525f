// Fills, blends and pictures on any painter.
// Units: device pixels; right and bottom edges are exclusive. Colours as util/color.h.
// A painter on a 32-bit QImage is worked on directly, with its translation and clip, and every
// value is exact to the bit. On other devices, or under rotation and scaling, the same picture
// is made beside and handed to the painter, whose own blending then rounds as it likes.
// Errors: empty rectangles and empty images draw nothing.
#pragma once
#include <QColor>
#include <QRect>

#include "drawing/alpha_image.h"
#include "util/color.h"

class QPainter;

enum GradientMode {
    kGradientLeftToRight = 0,
    kGradientTopToBottom = 1,
};

inline QColor ToQColor(COLORREF color)
{
    return QColor(int(RedOf(color)), int(GreenOf(color)), int(BlueOf(color)));
}

void FillSolid(QPainter& dc, const QRect& rect, COLORREF color);
// One-pixel frame inside the rectangle.
void FrameRect(QPainter& dc, const QRect& rect, COLORREF color);
// Cut at the middle: the right (`vertical`) or lower half takes `color`, the other half
// Blend(second, color, alpha).
void FillTwoTone(QPainter& dc, const QRect& rect, COLORREF color, COLORREF second, quint32 alpha,
                 bool vertical);
// The first line has `first` and the last one `second`, exactly.
void FillGradient(QPainter& dc, const QRect& rect, COLORREF first, COLORREF second, GradientMode mode);
// From `color` to the same with black over it; `swap` exchanges the ends.
void FillShade(QPainter& dc, const QRect& rect, COLORREF color, GradientMode mode, bool swap);
// Blends the colour over everything in the rectangle.
void BlendRect(QPainter& dc, const QRect& rect, COLORREF color, quint32 alpha);
// The ground of a selected row: a shade from top to bottom. The last one is kept for the next call.
void DrawSelectionBackground(QPainter& dc, const QRect& rect, COLORREF color);

CAlphaImage MakeSolidImage(int width, int height, COLORREF color, quint8 alpha);
// -1 for a size means the image's own; another size takes the pixels by whole-number scaling of
// row and column, unfiltered. False when there is no image.
bool DrawImage(const CAlphaImage& image, QPainter& dc, int x, int y, int width = -1, int height = -1);
