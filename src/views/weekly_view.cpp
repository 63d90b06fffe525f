#include "views/weekly_view.h"
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
#include "views/view_menus.h"
#include "views/week_range.h"

#include <QKeyEvent>
#include <QWheelEvent>
#include <utility>

namespace
{
constexpr int kDaysShown = CWeekTiles::kDays;
constexpr int kDefaultTitleFormat = 0; // when the stored index is none of the table's
constexpr int kWheelNotch = 120;
constexpr int kScrollStep = 40; // design pixels by key
} // namespace

CWeeklyView::CWeeklyView(IViewHost& host, QWidget* parent) : CCalendarView(host, parent) {}

CWeeklyView::~CWeeklyView() = default;

// ---- data

bool CWeeklyView::SetWeek(int day)
{
    const int before = m_firstDay;
    m_firstDay = FirstDayOfWeekAround(day, g_Settings.WeekView.StartOnToday == 1);
    const bool loaded = PimStore().LoadRange(day, m_firstDay, m_firstDay + kDaysShown - 1);
    const bool changed = loaded || m_firstDay != before;
    if (changed)
        m_pictureValid = false;
    TakeTimeline();
    LayOutPopOut(false);
    return changed;
}

void CWeeklyView::TakeTimeline()
{
    m_timelineDay = CTimelineDay();
    const CDayItems* day = PimStore().FindDay(CursorDay());
    if (!day)
        return;
    for (size_t n = 0; n < m_timelineDay.Slots.size(); ++n)
        m_timelineDay.Slots[n] = {day->HourSlots[n].ItemId, day->HourSlots[n].Color};
    m_timelineDay.AppointmentCount = day->AppointmentCount;
    m_timelineDay.TaskCount = day->TaskCount;
}

void CWeeklyView::OnDataChanged(int, quint32, quint32)
{
    m_pictureValid = false;
    if (m_hidden)
        return; // all of it is built when the view shows again
    TakeTimeline();
    LayOutPopOut(true);
    UpdateWeekTitle();
    update();
}

void CWeeklyView::Refresh()
{
    m_stroke.End();
    m_pressInPopOut = false;
    m_hidden = false;
    m_pictureValid = false;
    if (!m_touch.IsTouched())
        m_touch.StopMotion(); // another day's tile must not fly on with this one's speed
    SetWeek(CursorDay());
    UpdateWeekTitle();
    update();
}

void CWeeklyView::UpdateWeekTitle()
{
    QString title;
    const int last = m_firstDay + kDaysShown - 1;
    if (!FormatViewTitle(kWeekTitleFormats, g_Settings.WeekView.ListTitleFormat, m_firstDay, last, &title))
        FormatViewTitle(kWeekTitleFormats, kDefaultTitleFormat, m_firstDay, last, &title);
    SetTitle(title);
}

// ---- lifecycle

void CWeeklyView::OnCreate()
{
    m_created = true;
    PrepareLook();
    m_touch.Attach(0, this, this, 0, 0, 0, 0);
    SetWeek(CursorDay());
}

void CWeeklyView::OnResize()
{
    PrepareLook();
    if (!m_hidden)
        LayOutPopOut(true);
    update();
}

void CWeeklyView::OnDeactivate()
{
    m_hidden = true;
    m_touch.StopMotion();
}

void CWeeklyView::OnClockChanged(int)
{
    GoToToday();
}

// Layout and paint stand in weekly_view_paint.cpp.

// ---- moving

void CWeeklyView::MoveTo(int day)
{
    const CWaitCursor wait;
    if (!m_touch.IsTouched())
        m_touch.StopMotion();
    if (SetWeek(NearestShowableDay(day)))
        UpdateWeekTitle();
    update();
    TellPartSelected(this, CursorDay() - m_firstDay);
}

void CWeeklyView::SetCursorDate(DATE date)
{
    SetWeek(DayNumber(date));
    UpdateWeekTitle();
}

void CWeeklyView::MoveDate(int delta)
{
    if (delta == 0)
        GoToToday();
    else
        MoveTo(CursorDay() + delta * kDaysShown);
}

void CWeeklyView::GoToToday()
{
    const CWaitCursor wait;
    PimStore().Clear();
    m_pictureValid = false;
    MoveTo(GetToday());
}

// ---- input: hit -> command

void CWeeklyView::OnLButtonDown(QPoint at)
{
    m_stroke.Press(at);
    m_pressInPopOut = m_popOutRect.contains(at);
    if (m_pressInPopOut) {
        m_touch.OnLButtonDown(at.x(), at.y());
        return;
    }
    const int day = m_tiles.DayAt(at);
    if (day >= 0)
        MoveTo(m_firstDay + day);
}

void CWeeklyView::OnMouseMove(QPoint at)
{
    if (m_pressInPopOut) {
        m_touch.OnMouseMove(at.x(), at.y());
        return;
    }
    if (const int stroke = m_stroke.Move(at))
        StartDateRun(stroke, at);
}

void CWeeklyView::OnLButtonUp(QPoint at)
{
    m_stroke.End();
    if (std::exchange(m_pressInPopOut, false))
        m_touch.OnLButtonUp(at.x(), at.y());
}

void CWeeklyView::OnTap(quint32, int, int)
{
    if (PimStore().CursorDate() != NO_DATE)
        m_host.ShowDaily(kViewWeekly);
}

void CWeeklyView::OnContextMenu(QPoint at)
{
    m_touch.CancelTouch(); // its release would come under the menu, as a tap
    m_stroke.End();
    m_pressInPopOut = false;
    const int day = m_popOutRect.contains(at) ? -1 : m_tiles.DayAt(at);
    if (day >= 0)
        MoveTo(m_firstDay + day);
    CTouchMenu menu(GetCursorDateText());
    AddNewItemRows(m_host, menu);
    RunMenu(menu);
}

bool CWeeklyView::FillTouchMenu(CTouchMenu& menu)
{
    AddNewItemRows(m_host, menu);
    return true;
}

bool CWeeklyView::FillMenu(QMenu& menu)
{
    AddNewItemRows(m_host, menu);
    return true;
}

// Over the selected tile the wheel scrolls it, elsewhere it turns weeks.
void CWeeklyView::wheelEvent(QWheelEvent* event)
{
    const bool scrolls = m_touch.ContentHeight() > m_touch.Height();
    if (scrolls && m_popOutRect.contains(ToSurface(event->position(), m_factor)))
        return CCalendarView::wheelEvent(event);
    m_wheel += event->angleDelta().y();
    for (; m_wheel >= kWheelNotch; m_wheel -= kWheelNotch)
        MoveDate(-1);
    for (; m_wheel <= -kWheelNotch; m_wheel += kWheelNotch)
        MoveDate(1);
    event->accept();
}

// With Shift the arrows scroll the selected tile.
void CWeeklyView::keyPressEvent(QKeyEvent* event)
{
    const int key = VirtualKeyOf(*event);
    if (event->modifiers() & Qt::ShiftModifier && (key == kKeyUp || key == kKeyDown)) {
        m_touch.ScrollBy(key == kKeyUp ? D(kScrollStep) : -D(kScrollStep));
        event->accept();
        return;
    }
    CCalendarView::keyPressEvent(event);
}

bool CWeeklyView::OnKey(int key)
{
    const int day = CursorDay();
    const bool down = g_Settings.WeekView.VerticalScrolling == 1;
    switch (key) {
    case kKeyLeft:
    case kKeyRight:
        MoveTo(day + (key == kKeyLeft ? -1 : 1) * (down ? kDaysShown : 1));
        return true;
    case kKeyUp:
    case kKeyDown:
        MoveTo(day + (key == kKeyUp ? -1 : 1) * (down ? 1 : kDaysShown));
        return true;
    case kKeyPageUp:
    case kKeyPageDown:
        MoveDate(key == kKeyPageUp ? -1 : 1);
        return true;
    case kKeyReturn:
        m_host.ShowDaily(kViewWeekly);
        return true;
    case '1':
    case '3':
    case '4':
    case '6':
        MoveTo(DayOfDateKey(key, day));
        return true;
    case '2':
    case kKeyHome:
        GoToToday();
        return true;
    case '5':
        m_host.SendCommand(CmdGoTo);
        return true;
    default:
        return false;
    }
}
