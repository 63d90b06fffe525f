#include "views/mini_timeline.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kHours = 24;
constexpr int kAllDaySlot = 24;
} // namespace

bool HasSlots(const CDayItems& day)
{
    return std::any_of(std::begin(day.HourSlots), std::end(day.HourSlots),
                       [](const CHourSlot& slot) { return slot.ItemId != 0; });
}

void PaintMiniTimeline(QPainter& dc, QRect rect, const CDayItems& day, const CMiniTimelineColors& colors,
                       bool framed)
{
    if (framed)
        rect.setWidth(rect.width() + D(2));
    FillSolid(dc, rect, colors.Border);
    const QRect inner = rect.adjusted(framed ? 1 : 0, 1, framed ? -1 : 0, -1);
    FillSolid(dc, inner, colors.Back);
    const double width = inner.width() / double(kHours);
    for (int hour = 0; hour < kHours; ++hour) {
        const CHourSlot& slot = day.HourSlots[hour];
        if (slot.ItemId == 0 || inner.width() <= 0)
            continue;
        const int from = int(hour * width), to = std::max(int((hour + 1) * width), from + 1);
        FillSolid(dc, QRect(inner.x() + from, inner.y(), to - from, inner.height()) & inner, slot.Color);
    }
    if (day.HourSlots[kAllDaySlot].ItemId != 0)
        FillSolid(dc, QRect(inner.x(), inner.y() + inner.height() - D(2), inner.width(), D(2)) & inner,
                  day.HourSlots[kAllDaySlot].Color);
}
