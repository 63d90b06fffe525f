#include "views/monthly_view.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "views/date_keys.h"
#include "views/spoken_texts.h"
#include "views/view_menus.h"

#include <QKeyEvent>
#include <QWheelEvent>
#include <algorithm>

namespace
{
constexpr int kDefaultTitleFormat = 0;                    // when the stored index is none of the table's
constexpr int kCheckBoxMarginX = 8, kCheckBoxMarginY = 4; // design pixels around it that still hit
constexpr int kWheelNotch = 120;
constexpr int kWeeksOfWindow = 5;

CPimItem* FindItem(int dayNumber, const CItemIdentity& identity)
{
    CDayItems* day = PimStore().FindDay(dayNumber);
    if (!day || identity.IsNull())
        return nullptr;
    CPimItem* same = nullptr; // its start may have changed
    const auto look = [&](const auto& items) {
        for (const auto& item : items) {
            const CItemIdentity other = CItemIdentity::Of(*item);
            if (other == identity || (!same && other.IsSameItem(identity)))
                same = item.get();
            if (other == identity)
                return;
        }
    };
    look(day->Appointments);
    look(day->Tasks);
    return same;
}

int CursorDay()
{
    const DATE cursor = PimStore().CursorDate();
    return cursor == NO_DATE ? GetToday() : DayNumber(cursor);
}
} // namespace

CMonthlyView::CMonthlyView(IViewHost& host, QWidget* parent) : CCalendarView(host, parent) {}

CMonthlyView::~CMonthlyView() = default;

// ---- data: cached days -> rows

void CMonthlyView::ForgetRows()
{
    m_rows.clear();
    m_selected = nullptr;
    m_selectedRow.reset();
    m_timelineDay = CTimelineDay();
    if (m_timeline)
        m_timeline->SetSelected(0);
}

void CMonthlyView::BuildRows()
{
    m_rows.clear();
    m_timelineDay = CTimelineDay();
    const CDayItems* day = m_quickList == kQuickListNone ? nullptr : PimStore().FindDay(CursorDay());
    if (!day)
        return;
    m_rows = m_painter.LayOut(*day, ContentRect());
    for (size_t n = 0; n < m_timelineDay.Slots.size(); ++n)
        m_timelineDay.Slots[n] = {day->HourSlots[n].ItemId, day->HourSlots[n].Color};
    m_timelineDay.AppointmentCount = day->AppointmentCount;
    m_timelineDay.TaskCount = day->TaskCount;
}

void CMonthlyView::SelectRow(const CDayItemRow* row)
{
    CPimItem* item = row ? FindItem(CursorDay(), row->Item) : nullptr;
    m_selectedRow = item ? std::make_unique<CPaintingOrderItem>(nullptr, item, CursorDay(), 0) : nullptr;
    m_selected = m_selectedRow.get();
    if (m_timeline) {
        m_timeline->SetSelected(item ? item->ItemId : 0);
        Invalidate(TimelineArea());
    }
}

void CMonthlyView::OnDataChanged(int, quint32, quint32)
{
    const CItemIdentity selected = SelectedIdentity();
    ForgetRows();
    m_grid.Invalidate();
    if (m_hidden)
        return; // all of it is built when the view shows again
    m_grid.SelectDate(NearestShowableDay(CursorDay()));
    BuildRows();
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&selected](const CDayItemRow& candidate) {
        return !selected.IsNull() && candidate.Item.IsSameItem(selected);
    });
    SelectRow(row != m_rows.end() ? &*row : nullptr);
    if (!m_touch.SetArea(ListArea()))
        m_touch.Redraw(true);
    if (!m_touch.IsTouched() && m_touch.Scroll() < std::min(0, m_touch.Height() - m_touch.ContentHeight()))
        m_touch.ScrollBy(0); // the list has become shorter
    UpdateMonthTitle();
    update();
}

void CMonthlyView::Refresh()
{
    m_stroke.End();
    m_tapInPopOut = false;
    m_hidden = false;
    m_grid.Invalidate();
    GoToDate(CursorDay());
}

void CMonthlyView::UpdateMonthTitle()
{
    const int day = m_grid.MonthDay();
    QString title;
    if (!FormatViewTitle(kMonthTitleFormats, g_Settings.MonthView.DateFormat, day, NO_DATE, &title))
        FormatViewTitle(kMonthTitleFormats, kDefaultTitleFormat, day, NO_DATE, &title);
    SetTitle(title);
}

// ---- lifecycle

void CMonthlyView::OnCreate()
{
    m_created = true;
    PrepareLook();
    if (m_quickList == kQuickListNone)
        return;
    const QRect list = ListArea();
    m_touch.Attach(0, this, this, list.x(), list.y(), list.width(), list.height());
}

void CMonthlyView::OnResize()
{
    PrepareLook();
    if (!m_hidden) {
        BuildRows();
        if (!m_touch.SetArea(ListArea()))
            m_touch.Redraw(true);
    }
    update();
}

void CMonthlyView::OnDeactivate()
{
    m_hidden = true;
    m_touch.StopMotion();
    ForgetRows();
}

void CMonthlyView::OnClockChanged(int)
{
    GoToToday();
}

// Layout and paint stand in monthly_view_paint.cpp.

// ---- moving

void CMonthlyView::SelectDay(int day)
{
    ForgetRows();
    if (m_grid.SelectDate(NearestShowableDay(day))) {
        UpdateMonthTitle();
        update();
    }
    Invalidate(m_grid.TakeChanges());
    ShowRows();
    TellPartSelected(this, CursorDay() - m_grid.FirstDay());
}

void CMonthlyView::GoToDate(int day)
{
    ForgetRows();
    m_grid.GoToDate(NearestShowableDay(day));
    ShowRows();
    UpdateMonthTitle();
    update();
    TellPartSelected(this, CursorDay() - m_grid.FirstDay());
}

void CMonthlyView::ShowRows()
{
    BuildRows();
    if (!m_touch.IsTouched())
        m_touch.StopMotion(); // another day's list must not fly on with this one's speed
    const bool placed = m_touch.SetArea(ListArea());
    const bool scrolled = m_touch.SetScroll(0, 0);
    if (!placed && !scrolled)
        m_touch.Redraw(true);
    Invalidate(TimelineArea());
}

void CMonthlyView::ChangeMonth(int direction)
{
    const int target = DayOfDateKey(direction < 0 ? '1' : '3', CursorDay());
    const CWaitCursor wait;
    if (g_Settings.MonthView.ScrollByWeeks == 1 && IsShowableDay(target))
        m_grid.ShiftWeeks(direction * kWeeksOfWindow);
    GoToDate(target);
}

void CMonthlyView::GoToMonth(int inMonth)
{
    const CWaitCursor wait;
    GoToDate(SameDayOfMonth(inMonth, CursorDay()));
}

void CMonthlyView::MoveDate(int delta)
{
    if (delta == 0)
        GoToToday();
    else
        ChangeMonth(delta);
}

void CMonthlyView::GoToToday()
{
    const CWaitCursor wait;
    ForgetRows();
    PimStore().Clear();
    m_grid.Invalidate();
    GoToDate(GetToday());
}

// ---- input: hit -> command

void CMonthlyView::OnLButtonDown(QPoint at)
{
    m_stroke.Press(at);
    m_tapInPopOut = m_grid.IsPoppedOut(at);
    const int day = m_tapInPopOut ? 0 : m_grid.DayAt(at);
    if (day)
        SelectDay(day);
    m_touch.OnLButtonDown(at.x(), at.y());
}

void CMonthlyView::OnMouseMove(QPoint at)
{
    const int stroke = m_stroke.Move(at);
    if (stroke == 0) {
        m_touch.OnMouseMove(at.x(), at.y());
        return;
    }
    m_tapInPopOut = false;
    m_touch.CancelTouch();
    StartDateRun(stroke, at);
}

void CMonthlyView::OnLButtonUp(QPoint at)
{
    m_stroke.End();
    m_touch.OnLButtonUp(at.x(), at.y());
    if (std::exchange(m_tapInPopOut, false) && m_grid.IsPoppedOut(at))
        m_host.ShowDaily(kViewMonthly);
}

bool CMonthlyView::OnPress(quint32, int x, int y)
{
    const CItemIdentity before = SelectedIdentity();
    SelectRow(RowAt({x, y}));
    return SelectedIdentity() != before;
}

void CMonthlyView::OnDragStart(quint32) {}

void CMonthlyView::OnTap(quint32, int x, int y)
{
    const CDayItemRow* row = RowAt({x, y});
    SelectRow(row);
    const bool inBox =
        row && row->Item.Kind == kKindTask &&
        row->CheckBox
            .adjusted(-D(kCheckBoxMarginX), -D(kCheckBoxMarginY), D(kCheckBoxMarginX), D(kCheckBoxMarginY))
            .contains(x, y);
    if (inBox)
        m_host.SendCommand(CmdToggleTask);
    else
        OpenMenu();
}

void CMonthlyView::OnContextMenu(QPoint at)
{
    m_touch.CancelTouch(); // its release would come under the menu, as a tap
    m_stroke.End();
    m_tapInPopOut = false;
    if (Navigator() && m_touch.Area().contains(at)) {
        SelectRow(RowAt({at.x(), at.y() - m_touch.Area().y() - m_touch.Scroll()}));
        m_touch.Redraw(true);
    } else if (const int day = m_grid.IsPoppedOut(at) ? CursorDay() : m_grid.DayAt(at)) {
        SelectDay(day);
    }
    OpenMenu();
}

void CMonthlyView::OpenMenu()
{
    m_stroke.End();
    if (m_selected && IsSpecialEvent(*m_selected->m_item))
        return OnCommandOpenItem();
    CTouchMenu menu(m_selected ? m_selected->m_item->Subject : GetCursorDateText());
    if (m_selected)
        AddItemMenuRows(m_host, menu, *m_selected->m_item);
    else
        AddNewItemRows(m_host, menu);
    RunMenu(menu);
}

bool CMonthlyView::FillTouchMenu(CTouchMenu& menu)
{
    AddNewItemRows(m_host, menu);
    return true;
}

bool CMonthlyView::FillMenu(QMenu& menu)
{
    AddNewItemRows(m_host, menu);
    return true;
}

// Over the grid the wheel turns months, over the list it scrolls.
void CMonthlyView::wheelEvent(QWheelEvent* event)
{
    const QPoint at = ToSurface(event->position(), m_factor);
    if (Navigator() && !QRect(0, 0, m_grid.Layout().Width(), m_grid.Layout().Height()).contains(at))
        return CCalendarView::wheelEvent(event);
    m_wheel += event->angleDelta().y();
    for (; m_wheel >= kWheelNotch; m_wheel -= kWheelNotch)
        ChangeMonth(-1);
    for (; m_wheel <= -kWheelNotch; m_wheel += kWheelNotch)
        ChangeMonth(1);
    event->accept();
}

// With Shift the arrows go through the list instead of the days.
void CMonthlyView::keyPressEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    if (event->modifiers() & Qt::ShiftModifier && (key == kKeyUp || key == kKeyDown)) {
        SelectNeighbour(key == kKeyUp ? -1 : 1);
        event->accept();
        return;
    }
    CCalendarView::keyPressEvent(event);
}

void CMonthlyView::SelectNeighbour(int direction)
{
    if (m_rows.empty())
        return;
    const int last = int(m_rows.size()) - 1;
    const auto selected = std::find_if(m_rows.begin(), m_rows.end(), [this](const CDayItemRow& row) {
        return m_selected && row.Item == m_selected->m_identity;
    });
    const int from = selected != m_rows.end() ? int(selected - m_rows.begin()) + direction
                     : direction > 0          ? 0
                                              : last;
    const CDayItemRow& row = m_rows[size_t(std::clamp(from, 0, last))];
    SelectRow(&row);
    TellPartSelected(this, m_grid.LastDay() + 1 - m_grid.FirstDay() + int(&row - m_rows.data()));
    m_touch.EnsureVisible(row.Rect.adjusted(0, -D(1), 0, D(1)));
    m_touch.Redraw(true);
}

bool CMonthlyView::OnKey(int key)
{
    const int day = CursorDay();
    switch (key) {
    case kKeyLeft:
        SelectDay(day - 1);
        return true;
    case kKeyRight:
        SelectDay(day + 1);
        return true;
    case kKeyUp:
        SelectDay(day - CMonthGridLayout::kColumns);
        return true;
    case kKeyDown:
        SelectDay(day + CMonthGridLayout::kColumns);
        return true;
    case kKeyReturn:
        m_host.ShowDaily(kViewMonthly);
        return true;
    case '1':
    case kKeyPageUp:
        ChangeMonth(-1);
        return true;
    case '3':
    case kKeyPageDown:
        ChangeMonth(1);
        return true;
    case '2':
    case kKeyHome:
        GoToToday();
        return true;
    case '4':
    case '6': {
        const CWaitCursor wait;
        GoToDate(DayOfDateKey(key, day));
        return true;
    }
    case '5':
        m_host.SendCommand(CmdGoTo);
        return true;
    case '9':
        m_host.SendCommand(CmdToggleTask);
        return true;
    default:
        return false;
    }
}

// ---- for readers of the screen

int CMonthlyView::GetPartCount() const
{
    const int days = m_grid.FirstDay() == 0 ? 0 : m_grid.LastDay() - m_grid.FirstDay() + 1;
    return days + int(m_rows.size());
}

CPaintedPart CMonthlyView::GetPart(int index) const
{
    const int day = m_grid.FirstDay() + index;
    if (day <= m_grid.LastDay()) {
        const CDayItems* const items = PimStore().FindDay(day);
        CPaintedPart part;
        part.Name = items ? SpokenDay(*items, false) : SpokenDate(day);
        part.Role = QAccessible::Cell;
        part.Rect = ToLogical(m_grid.CellOf(day), m_factor);
        part.Selected = day == CursorDay();
        return part;
    }
    const CDayItemRow& row = m_rows[size_t(day - m_grid.LastDay() - 1)];
    const CPimItem* const item = FindItem(CursorDay(), row.Item);
    CPaintedPart part = item ? SpokenItem(*item, CursorDay()) : CPaintedPart();
    part.Rect =
        ToLogical(row.Rect.translated(m_touch.Area().x(), m_touch.Area().y() + m_touch.Scroll()), m_factor);
    part.Selected = m_selectedRow && m_selectedRow->m_identity == row.Item;
    return part;
}

// A day is chosen; pressed again it opens.
void CMonthlyView::PressPart(int index)
{
    const int day = m_grid.FirstDay() + index;
    if (day > m_grid.LastDay()) {
        const QPoint at = m_rows[size_t(day - m_grid.LastDay() - 1)].Rect.center();
        OnPress(0, at.x(), at.y());
        OnTap(0, at.x(), at.y());
    } else if (day == CursorDay()) {
        m_host.ShowDaily(kViewMonthly);
    } else {
        SelectDay(day);
    }
}
