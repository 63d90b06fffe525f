// The monthly view's layout and its pictures.
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "views/monthly_view.h"

#include <QPainter>
#include <algorithm>

namespace
{
constexpr int kFontList = 501;
constexpr int kSideShare = 30; // percent of the width that a list beside the grid takes,
constexpr int kMostSide = 260; // up to so many design pixels
} // namespace

// ---- layout: pure arithmetic, no surface

QRect CMonthlyView::TimelineArea() const
{
    return m_timeline ? m_grid.Layout().Bar(m_timeline->OwnHeight()) : QRect();
}

QRect CMonthlyView::ListArea() const
{
    return m_timeline ? m_grid.Layout().List(m_timeline->OwnHeight()) : QRect();
}

QRect CMonthlyView::ContentRect() const
{
    const QSize list = ListArea().size();
    return {D(2), D(1), std::max(0, list.width() - D(2)), std::max(0, list.height() - D(1))};
}

const CDayItemRow* CMonthlyView::RowAt(QPoint content) const
{
    const auto row = std::partition_point(m_rows.begin(), m_rows.end(), [&content](const CDayItemRow& r) {
        return r.Rect.y() + r.Rect.height() <= content.y();
    });
    return row != m_rows.end() && row->Rect.y() <= content.y() ? &*row : nullptr;
}

void CMonthlyView::Invalidate(const QRect& surface)
{
    if (!surface.isEmpty())
        update(ToLogical(surface, m_factor));
}

void CMonthlyView::PrepareLook()
{
    const auto color = [](int id) { return g_Settings.ResolveColor(id); };
    const QSize client = SurfaceSize();
    m_quickList = QuickListModeOf(g_Settings.MonthView.IncludeQuickView, g_ScreenMetrics.m_landscape);
    m_colorGap = color(6023);
    CDayItemsLook look;
    look.Font = kFontList;
    look.IncludeTasks = g_Settings.Tasks.IncludeInCalendar == 1;
    look.TwoLines = m_quickList == kQuickListBeside;
    look.Background = color(6019);
    look.HighlightText = color(503);
    look.GeneralText = color(6020);
    look.AppointmentText = color(6021);
    look.Selection = color(3007);
    m_painter.Init(look);
    int side = 0;
    if (m_quickList == kQuickListBeside)
        side = std::clamp(client.width() * kSideShare / 100, CTimelineBar::VerticalWidth(),
                          std::max(CTimelineBar::VerticalWidth(), D(kMostSide)));
    m_timeline.reset();
    if (m_quickList != kQuickListNone) {
        const bool vertical = m_quickList == kQuickListBeside && side <= CTimelineBar::Width();
        m_timeline = std::make_unique<CTimelineBar>(
            CTimelineColors{color(6012), color(6013), color(6022), kColorWhite, 50, color(6023)}, vertical);
        m_timeline->SetSelected(m_selected ? m_selected->m_identity.ItemId : 0);
    }
    m_grid.Init();
    m_grid.SetShape(client, m_quickList, side);
}

// ---- paint: inside the visible band only

void CMonthlyView::PaintView(QPainter& dc, QSize size)
{
    const auto mode = dc.compositionMode();
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    dc.drawImage(0, 0, m_grid.Picture());
    dc.setCompositionMode(mode);
    if (!m_timeline)
        return;
    const QRect bar = TimelineArea();
    m_timeline->Paint(dc, bar.x(), bar.y(), bar.width(), m_timelineDay);
    m_touch.PaintTo(dc, m_touch.Area().x(), m_touch.Area().y());
    if (m_quickList == kQuickListBeside)
        FillSolid(dc, {m_grid.Layout().Width(), 0, 1, size.height()}, m_colorGap);
}

int CMonthlyView::RenderContent(quint32, QPainter& dc, quint32, int scroll, int width, int height)
{
    const QRect place = ContentRect();
    const COLORREF ground = m_painter.Look().Background;
    FillSolid(dc, {0, 0, width, place.y()}, ground);
    FillSolid(dc, {0, 0, place.x(), height}, ground);
    const CDayItems* day = m_hidden ? nullptr : PimStore().FindDay(DayNumber(PimStore().CursorDate()));
    if (!day) {
        FillSolid(dc, {0, 0, width, height}, ground);
        return 0;
    }
    return m_painter.PaintDayItems(dc, *day, place, scroll, SelectedIdentity()) + D(4);
}
