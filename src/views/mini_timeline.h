// How a day's appointments lie over its hours, in a few pixels: in the month's cells and the list's titles.
#pragma once
#include "pim/day_items.h"

class QPainter;

struct CMiniTimelineColors {
    COLORREF Back = kColorWhite;
    COLORREF Border = kColorBlack;
};

bool HasSlots(const CDayItems& day); // any hour, or an all-day item
// `framed` makes the rectangle D(2) wider and gives it a left and a right edge, too.
void PaintMiniTimeline(QPainter& dc, QRect rect, const CDayItems& day, const CMiniTimelineColors& colors,
                       bool framed);
