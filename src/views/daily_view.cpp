#include "views/daily_view.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "views/date_keys.h"
#include "views/view_menus.h"

#include <algorithm>

namespace
{
constexpr int kFontText = 600, kFontSubject = 601, kFontSubjectPast = 602;
constexpr int kColorText = 3001, kColorSubject = 3002, kColorLocation = 3003, kColorTime = 3004,
              kColorSpecial = 3005;
constexpr int kColorBack = 3006, kColorSelection = 3007, kColorStripBack = 3009, kColorStripBorder = 3010;
constexpr int kColorSeparator = 3011, kColorBarBack = 3012, kColorBarBorder = 3013;
constexpr int kSelectMargin = 8; // design pixels kept visible beyond a row chosen by key
constexpr int kDaysFromWeekStart = 34;
constexpr int kNoBar = 0; // of IncludeTimelines
constexpr int kPastInvisible = 2;
} // namespace

CDailyView::CDailyView(IViewHost& host, QWidget* parent) : CCalendarView(host, parent) {}

CDailyView::~CDailyView() = default;

// ---- data: cached days -> rows

void CDailyView::ForgetRows()
{
    m_rowCache.Clear();
    m_selected = nullptr;
    m_rows.Clear();
    m_timelineDay = CTimelineDay();
    m_dirty = true;
}

void CDailyView::BuildRows()
{
    ForgetRows();
    const DATE cursor = PimStore().CursorDate();
    CDayItems* day = cursor == NO_DATE ? nullptr : PimStore().FindDay(DayNumber(cursor));
    if (!day)
        return;
    for (const auto& appointment : day->Appointments) {
        if (!appointment->Past || g_Settings.DailyView.PastAppointments != kPastInvisible)
            AddRow(*appointment, day->Day);
    }
    if (g_Settings.Tasks.IncludeInCalendar) {
        for (const auto& task : day->Tasks)
            AddRow(*task, day->Day);
    }
    for (size_t n = 0; n < m_timelineDay.Slots.size(); ++n)
        m_timelineDay.Slots[n] = {day->HourSlots[n].ItemId, day->HourSlots[n].Color};
    m_timelineDay.AppointmentCount = day->AppointmentCount;
    m_timelineDay.TaskCount = day->TaskCount;
}

void CDailyView::AddRow(CPimItem& item, int day)
{
    item.LayoutTop = item.LayoutBottom = 0;
    if (item.Visible)
        m_rows.InsertInOrder(std::make_unique<CPaintingOrderItem>(nullptr, &item, day, m_rows.GetCount()));
}

void CDailyView::Select(CPaintingOrderItem* row)
{
    if (row != m_selected)
        m_rowCache.DropSelected();
    m_selected = row;
    if (m_timeline) {
        m_timeline->SetSelected(row ? row->m_identity.ItemId : 0);
        update();
    }
}

void CDailyView::OnDataChanged(int, quint32, quint32)
{
    const CItemIdentity selected = SelectedIdentity();
    BuildRows();
    CPaintingOrderItem* row = m_rows.Find(selected);
    Select(row ? row : m_rows.GetAt(0));
    update();
    m_touch.Redraw(true);
}

void CDailyView::Refresh()
{
    m_stroke.End();
    m_hidden = false;
    if (!m_touch.IsTouched())
        m_touch.StopMotion(); // another day's list must not fly on with this one's speed
    const DATE cursor = PimStore().CursorDate();
    // Another view may have let this day go from the cache.
    if (cursor != NO_DATE && !PimStore().FindDay(DayNumber(cursor)))
        PimStore().LoadRange(cursor, DayNumber(cursor), DayNumber(cursor));
    BuildRows();
    Select(m_rows.GetAt(0));
    update();
    if (!m_touch.SetScroll(0, 0))
        m_touch.Redraw(true);
    SetTitle(GetCursorDateText());
}

// ---- lifecycle

void CDailyView::OnCreate()
{
    m_created = true;
    if (PimStore().CursorDate() == NO_DATE)
        PimStore().LoadRange(GetToday(), GetToday(), GetToday());
    PrepareLook();
    const QRect list = ListArea();
    m_touch.Attach(0, this, this, list.x(), list.y(), list.width(), list.height());
}

void CDailyView::PrepareLook()
{
    m_colorText = g_Settings.ResolveColor(kColorText);
    m_colorBack = g_Settings.ResolveColor(kColorBack);
    m_colorSelection = g_Settings.ResolveColor(kColorSelection);
    m_colorSeparator = g_Settings.ResolveColor(kColorSeparator);
    const auto& settings = g_Settings.DailyView;
    m_rowPainter.InitRowPainter({settings.SingleLine == 1, settings.OnlyStartTime == 1,
                                 settings.IncludeLeadingRects, kFontText, kFontSubject, kFontSubjectPast,
                                 g_Settings.ResolveColor(kColorSubject), g_Settings.ResolveColor(kColorTime),
                                 g_Settings.ResolveColor(kColorLocation),
                                 g_Settings.ResolveColor(kColorSpecial), m_colorSelection});
    m_timeline.reset();
    if (settings.IncludeTimelines != kNoBar) {
        m_timeline = std::make_unique<CTimelineBar>(CTimelineColors{
            g_Settings.ResolveColor(kColorStripBack), g_Settings.ResolveColor(kColorStripBorder),
            g_Settings.ResolveColor(kColorBarBack), kColorWhite, 50,
            g_Settings.ResolveColor(kColorBarBorder)});
        m_timeline->SetSelected(m_selected ? m_selected->m_identity.ItemId : 0);
    }
    m_rowCache.Clear();
    m_dirty = true;
}

void CDailyView::OnResize()
{
    if (m_hidden)
        BuildRows();
    PrepareLook();
    if (!m_touch.SetArea(ListArea()))
        m_touch.Redraw(true);
    update();
}

void CDailyView::OnDeactivate()
{
    m_hidden = true;
    m_touch.StopMotion();
    m_rowCache.Clear();
}

void CDailyView::OnClockChanged(int)
{
    GoToToday();
}

// Layout and paint stand in daily_view_paint.cpp.

// ---- input: hit -> command

bool CDailyView::OnPress(quint32, int x, int y)
{
    Select(RowAt(x, y));
    return true;
}

void CDailyView::OnDragStart(quint32) {}

void CDailyView::OnTap(quint32, int x, int y)
{
    Select(RowAt(x, y));
    if (!m_selected)
        return;
    if (HitsCheckBox(*m_selected, {x, y}))
        m_host.SendCommand(CmdToggleTask);
    else
        RunItemMenu();
}

void CDailyView::OnContextMenu(QPoint at)
{
    m_touch.CancelTouch(); // its release would come under the menu, as a tap
    if (m_touch.Area().contains(at)) {
        Select(RowAt(at.x(), at.y() - m_touch.Area().y() - m_touch.Scroll()));
        m_touch.Redraw(true);
    }
    if (m_selected)
        RunItemMenu();
}

void CDailyView::RunItemMenu()
{
    m_stroke.End();
    CTouchMenu menu(m_selected->m_item->Subject);
    AddItemMenuRows(menu, *m_selected->m_item);
    RunMenu(menu);
}

bool CDailyView::FillTouchMenu(CTouchMenu& menu)
{
    AddViewMenuRows(menu, m_selected ? m_selected->m_item : nullptr);
    return true;
}

bool CDailyView::FillMenu(QMenu& menu)
{
    AddViewMenuRows(menu, m_selected ? m_selected->m_item : nullptr);
    return true;
}

void CDailyView::OnLButtonDown(QPoint at)
{
    m_stroke.Press(at);
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CDailyView::OnMouseMove(QPoint at)
{
    const int stroke = m_stroke.Move(at);
    if (stroke == 0) {
        m_touch.OnMouseMove(at.x(), at.y());
        return;
    }
    m_touch.CancelTouch();
    MoveDate(CSidewaysStroke::DateStep(stroke));
}

void CDailyView::OnLButtonUp(QPoint at)
{
    m_stroke.End();
    m_touch.OnLButtonUp(at.x(), at.y());
}

bool CDailyView::OnKey(int key)
{
    const int day = DayNumber(PimStore().CursorDate());
    switch (key) {
    case kKeyLeft:
        return GoToDay(day - 1);
    case kKeyRight:
        return GoToDay(day + 1);
    case kKeyUp:
        SelectNeighbour(-1);
        return true;
    case kKeyDown:
        SelectNeighbour(1);
        return true;
    case '1':
    case '3':
    case '4':
    case '6':
        return GoToDay(DayOfDateKey(key, day));
    case '2':
        GoToToday();
        return true;
    case '9':
        m_host.SendCommand(CmdToggleTask);
        return true;
    default:
        return false;
    }
}

void CDailyView::SelectNeighbour(int direction)
{
    const CWaitCursor wait;
    if (m_rows.IsEmpty())
        return;
    const int last = m_rows.GetCount() - 1;
    const int from = m_selected ? m_rows.IndexOf(m_selected) + direction : (direction > 0 ? 0 : last);
    CPaintingOrderItem* row = m_rows.GetAt(std::clamp(from, 0, last));
    const bool changed = row != m_selected;
    Select(row);
    m_touch.EnsureVisible(
        {0, direction > 0 ? row->m_bottom + D(kSelectMargin) : row->m_top - D(kSelectMargin)});
    if (changed)
        m_touch.Redraw(true);
}

bool CDailyView::GoToDay(int day)
{
    if (SystemTimeOf(day).wYear == 0)
        return true; // past the last day that a date can tell
    const CWaitCursor wait;
    PimStore().LoadRange(day, day, day);
    Refresh();
    return true;
}

void CDailyView::MoveDate(int delta)
{
    if (delta == 0)
        GoToToday();
    else
        GoToDay(DayNumber(PimStore().CursorDate()) + delta);
}

void CDailyView::GoToToday()
{
    const CWaitCursor wait;
    const int today = GetToday();
    SystemTime first, last;
    GetWeekBounds(SystemTimeOf(today), &first, &last, g_Settings.MonthView.StartDay);
    const int firstDay = DayNumber(DateOf(first));
    ForgetRows();
    PimStore().Clear();
    PimStore().LoadRange(today, firstDay, firstDay + kDaysFromWeekStart);
    Refresh();
}
