#include "views/daily_view.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "views/date_keys.h"
#include "views/view_menus.h"

namespace
{
constexpr int kFontText = 600, kFontSubject = 601, kFontSubjectPast = 602;
constexpr int kColorText = 3001, kColorSubject = 3002, kColorLocation = 3003, kColorTime = 3004,
              kColorSpecial = 3005;
constexpr int kColorBack = 3006, kColorSelection = 3007, kColorSelectionBorder = 3008;
constexpr int kColorStripBack = 3009, kColorStripBorder = 3010;
constexpr int kColorSeparator = 3011, kColorBarBack = 3012, kColorBarBorder = 3013;
constexpr int kDaysFromWeekStart = 34;
constexpr int kNoBar = 0; // of IncludeTimelines
constexpr int kPastInvisible = 2;
} // namespace

CDailyView::CDailyView(IViewHost& host, QWidget* parent) : CItemRowView(host, parent) {}

CDailyView::~CDailyView() = default;

// ---- data: cached days -> rows

void CDailyView::BuildRows()
{
    ForgetRows();
    m_timelineDay = CTimelineDay();
    const DATE cursor = PimStore().CursorDate();
    CDayItems* day = cursor == NO_DATE ? nullptr : PimStore().FindDay(DayNumber(cursor));
    if (!day)
        return;
    for (const auto& appointment : day->Appointments) {
        if (!appointment->Past || g_Settings.DailyView.PastAppointments != kPastInvisible)
            m_list.AddItem(*appointment, day->Day);
    }
    if (g_Settings.Tasks.IncludeInCalendar) {
        for (const auto& task : day->Tasks)
            m_list.AddItem(*task, day->Day);
    }
    for (size_t n = 0; n < m_timelineDay.Slots.size(); ++n)
        m_timelineDay.Slots[n] = {day->HourSlots[n].ItemId, day->HourSlots[n].Color};
    m_timelineDay.AppointmentCount = day->AppointmentCount;
    m_timelineDay.TaskCount = day->TaskCount;
}

void CDailyView::OnSelectionChanged()
{
    if (m_timeline) {
        m_timeline->SetSelected(SelectedIdentity().ItemId);
        update();
    }
}

void CDailyView::OnDataChanged(int, quint32, quint32)
{
    if (m_hidden)
        return; // what it shows is read when it comes to the front
    const CItemIdentity selected = SelectedIdentity();
    BuildRows();
    CPaintingOrderItem* row = Rows().Find(selected);
    Select(row ? row : Rows().GetAt(0));
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
    Select(Rows().GetAt(0));
    update();
    if (!m_touch.SetScroll(0, 0))
        m_touch.Redraw(true);
    SetTitle(GetCursorDateText());
}

// ---- lifecycle

void CDailyView::OnCreate()
{
    if (PimStore().CursorDate() == NO_DATE)
        PimStore().LoadRange(GetToday(), GetToday(), GetToday());
    CItemRowView::OnCreate();
}

void CDailyView::PrepareLook()
{
    m_colorText = g_Settings.ResolveColor(kColorText);
    const COLORREF selection = g_Settings.ResolveColor(kColorSelection);
    const auto& settings = g_Settings.DailyView;
    m_rowPainter.InitRowPainter({settings.SingleLine == 1, settings.OnlyStartTime == 1,
                                 settings.IncludeLeadingRects, kFontText, kFontSubject, kFontSubjectPast,
                                 g_Settings.ResolveColor(kColorSubject), g_Settings.ResolveColor(kColorTime),
                                 g_Settings.ResolveColor(kColorLocation),
                                 g_Settings.ResolveColor(kColorSpecial), selection});
    m_timeline.reset();
    if (settings.IncludeTimelines != kNoBar) {
        m_timeline = std::make_unique<CTimelineBar>(CTimelineColors{
            g_Settings.ResolveColor(kColorStripBack), g_Settings.ResolveColor(kColorStripBorder),
            g_Settings.ResolveColor(kColorBarBack), kColorWhite, 50,
            g_Settings.ResolveColor(kColorBarBorder)});
        m_timeline->SetSelected(m_selected ? m_selected->m_identity.ItemId : 0);
    }
    CItemRowListLook look;
    look.Back = g_Settings.ResolveColor(kColorBack);
    look.Selection = selection;
    look.Separator = g_Settings.ResolveColor(kColorSeparator);
    look.PopOut = settings.PopOut;
    if (const COLORREF edge = g_Settings.GetStoredColor(kColorSelectionBorder); edge != kColorNotSet)
        look.PopOutEdge = edge;
    look.IncludeLocation = settings.IncludeLocation == 1;
    look.BottomMargin = D(2);
    m_list.SetLook(look);
}

void CDailyView::OnClockChanged(int)
{
    GoToToday();
}

// Layout and paint stand in daily_view_paint.cpp.

// ---- input: hit -> command

bool CDailyView::FillTouchMenu(CTouchMenu& menu)
{
    AddViewMenuRows(m_host, menu, SelectedItem());
    return true;
}

bool CDailyView::FillMenu(QMenu& menu)
{
    AddMoreRows(m_host, AddViewMenuRows(m_host, menu, SelectedItem()), SelectedItem());
    return true;
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
    case '5':
        m_host.SendCommand(CmdGoTo);
        return true;
    case kKeyReturn:
        if (m_selected)
            m_host.SendCommand(CmdOpenItem);
        return true;
    case '9':
        m_host.SendCommand(CmdToggleTask);
        return true;
    default:
        return false;
    }
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
