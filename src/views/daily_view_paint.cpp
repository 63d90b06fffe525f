// The daily view's layout and its pictures.
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/text.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/daily_view.h"

#include <QPainter>

namespace
{
constexpr int kFontText = 600;
constexpr int kBarAtBottom = 2; // of IncludeTimelines
} // namespace

// ---- layout: pure arithmetic, no surface

QRect CDailyView::TimelineArea() const
{
    if (!m_timeline)
        return {};
    const QSize size = SurfaceSize();
    const int height = CTimelineBar::Height();
    return {0, g_Settings.DailyView.IncludeTimelines == kBarAtBottom ? size.height() - height : 0,
            size.width(), height};
}

QRect CDailyView::ListArea() const
{
    const QRect client(QPoint(0, 0), SurfaceSize());
    if (!m_timeline)
        return client;
    const int bar = CTimelineBar::Height();
    return g_Settings.DailyView.IncludeTimelines == kBarAtBottom ? client.adjusted(0, 0, 0, -bar)
                                                                 : client.adjusted(0, bar, 0, 0);
}

// ---- paint: inside the visible band only

void CDailyView::PaintView(QPainter& dc, QSize size)
{
    if (m_timeline) {
        const QRect bar = TimelineArea();
        m_timeline->Paint(dc, bar.x(), bar.y(), size.width(), m_timelineDay);
    }
    CItemRowView::PaintView(dc, size);
}

void CDailyView::PaintEmptyList(QPainter& dc, const QRect& rect)
{
    dc.setFont(g_ImageStore.Font(kFontText));
    dc.setPen(ToQColor(m_colorText));
    DrawText(dc, GetString(StrNoAvailableItems), rect,
             kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
}
