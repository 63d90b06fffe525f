#include "views/list_view.h"
#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "settings/title_formats.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/date_keys.h"
#include "views/view_menus.h"
#include "views/week_range.h"

#include <QAction>
#include <QMenu>
#include <algorithm>

namespace
{
constexpr int kDaysShown = 7;
constexpr int kKindTitle = 0;
constexpr int kDefaultTitleFormat = 0; // when the stored index is none of the table's
constexpr int kHideEmptyDays = 1;
constexpr int kShowMargin = 40;                           // design pixels below a row brought into view
constexpr int kCheckBoxMarginX = 8, kCheckBoxMarginY = 4; // design pixels around it that still hit

template <class Items> bool HasVisible(const Items& items)
{
    return std::any_of(items.begin(), items.end(), [](const auto& item) { return item->Visible; });
}

bool IsTitle(const CPaintingOrderItem& row)
{
    return row.m_event && row.m_event->GetKind() == kKindTitle;
}
} // namespace

CListView::CListView(IViewHost& host, QWidget* parent) : CItemRowView(host, parent) {}

// ---- data: cached days -> rows

bool CListView::SetRange(int day)
{
    const int before = m_firstDay;
    m_firstDay = FirstDayOfWeekAround(day, g_Settings.ListView.StartOnToday == 1);
    const bool loaded = PimStore().LoadRange(day, m_firstDay, m_firstDay + kDaysShown - 1);
    return loaded || m_firstDay != before;
}

bool CListView::ShowsDay(const CDayItems& day) const
{
    return g_Settings.ListView.EmptyDays != kHideEmptyDays || HasVisible(day.Appointments) ||
           (g_Settings.Tasks.IncludeInCalendar == 1 && HasVisible(day.Tasks));
}

void CListView::AddDay(CDayItems& day)
{
    m_list.AddOwn(day, day.Day);
    if (day.Collapsed)
        return;
    const int before = Rows().GetCount();
    for (const auto& appointment : day.Appointments)
        m_list.AddItem(*appointment, day.Day);
    if (g_Settings.Tasks.IncludeInCalendar == 1) {
        for (const auto& task : day.Tasks)
            m_list.AddItem(*task, day.Day);
    }
    if (Rows().GetCount() == before)
        m_list.AddOwn(m_placeholder, day.Day);
}

void CListView::BuildRows()
{
    ForgetRows();
    for (int n = 0; n < kDaysShown; ++n) {
        CDayItems* day = PimStore().FindDay(m_firstDay + n);
        if (!day)
            return;
        if (ShowsDay(*day))
            AddDay(*day);
    }
}

CListView::CPlace CListView::SelectedPlace() const
{
    return {SelectedIdentity(), SelectedDay()};
}

// The same item on the same day, or else where it has gone to, or else the title of the current date.
CPaintingOrderItem* CListView::FindRow(const CPlace& place) const
{
    CPaintingOrderItem* moved = nullptr;
    CPaintingOrderItem* title = nullptr;
    for (const auto& row : Rows()) {
        if (IsTitle(*row) && row->m_date == CursorDay())
            title = row.get();
        if (place.Item.IsNull() || !row->m_identity.IsSameItem(place.Item))
            continue;
        if (row->m_date == place.Day)
            return row.get();
        if (!moved)
            moved = row.get();
    }
    return moved ? moved : title;
}

void CListView::RebuildRows(const CPlace& select, bool keepScroll)
{
    BuildRows();
    Select(FindRow(select));
    m_list.LayOut(m_touch.Width());
    m_touch.Redraw(true);
    if (!keepScroll && m_selected && !m_touch.IsTouched())
        m_touch.EnsureVisible(m_list.RowRect(*m_selected).adjusted(0, 0, 0, D(kShowMargin)));
    if (!m_touch.IsTouched() && m_touch.Scroll() < 0)
        m_touch.ScrollBy(0); // the list may have become shorter
    update();
}

void CListView::OnDataChanged(int, quint32, quint32)
{
    if (!m_hidden)
        RebuildRows(SelectedPlace(), false);
}

void CListView::Refresh()
{
    m_stroke.End();
    CPlace place = m_hidden ? CPlace{m_leftItem, m_leftDay} : SelectedPlace();
    m_hidden = false;
    if (!m_touch.IsTouched())
        m_touch.StopMotion(); // another week's list must not fly on with this one's speed
    // Another view may have moved the date, and let days go from the cache.
    if (place.Day != CursorDay())
        place = {};
    SetRange(CursorDay());
    BuildRows();
    m_touch.SetScroll(0, 0);
    RebuildRows(place, true);
    ShowSelectedDay();
    UpdateListTitle();
}

// A list that opens further down begins with the row, so that what follows it shows, too.
void CListView::ShowSelectedDay()
{
    if (!m_selected || m_touch.IsTouched())
        return;
    if (m_selected->m_bottom + D(kShowMargin) > m_touch.Height())
        m_touch.ScrollBy(-m_list.RowRect(*m_selected).y());
}

void CListView::UpdateListTitle()
{
    QString title;
    const int last = m_firstDay + kDaysShown - 1;
    if (!FormatViewTitle(kListTitleFormats, g_Settings.ListView.ListTitleFormat, m_firstDay, last, &title))
        FormatViewTitle(kListTitleFormats, kDefaultTitleFormat, m_firstDay, last, &title);
    SetTitle(title);
}

void CListView::OnCreate()
{
    SetRange(CursorDay());
    CItemRowView::OnCreate();
}

void CListView::OnClockChanged(int)
{
    GoToToday();
}

// Layout and paint stand in list_view_paint.cpp.

// ---- moving

void CListView::GoToDay(int day)
{
    const CWaitCursor wait;
    SetRange(NearestShowableDay(day));
    Refresh();
}

void CListView::SetCursorDate(DATE date)
{
    SetRange(DayNumber(date));
}

void CListView::MoveDate(int delta)
{
    if (delta == 0)
        GoToToday();
    else
        GoToDay(CursorDay() + delta * kDaysShown);
}

void CListView::GoToToday()
{
    const CWaitCursor wait;
    ForgetRows();
    PimStore().Clear();
    SetRange(GetToday());
    Refresh();
}

void CListView::FollowSelection()
{
    if (!m_selected || m_selected->m_date == CursorDay())
        return;
    const CPlace place = SelectedPlace();
    if (SetRange(place.Day))
        RebuildRows(place, true);
}

// Past an end the days go on.
void CListView::MoveSelection(int direction)
{
    CPaintingOrderItem* row = m_list.Neighbour(direction);
    if (!row || row == m_selected)
        return GoToDay(CursorDay() + direction);
    SelectNeighbour(direction);
    FollowSelection();
}

// ---- days

void CListView::ToggleDay(const CPaintingOrderItem& title)
{
    CDayItems* day = PimStore().FindDay(title.m_date);
    if (!day)
        return;
    day->Collapsed = !day->Collapsed;
    RebuildRows(SelectedPlace(), true);
}

void CListView::CollapseAll(bool collapse)
{
    for (int n = 0; n < kDaysShown; ++n) {
        if (CDayItems* day = PimStore().FindDay(m_firstDay + n))
            day->Collapsed = collapse;
    }
    RebuildRows(SelectedPlace(), false);
}

void CListView::OnCommand(int command)
{
    if (command == CmdTasksExpandAll || command == CmdTasksCollapseAll)
        CollapseAll(command == CmdTasksCollapseAll);
}

// ---- input: hit -> command

QSize CListView::CheckBoxMargin() const
{
    return {D(kCheckBoxMarginX), D(kCheckBoxMarginY)};
}

bool CListView::OnPress(quint32 value, int x, int y)
{
    CItemRowView::OnPress(value, x, y);
    FollowSelection();
    return true;
}

void CListView::OnRowTap(QPoint at)
{
    FollowSelection();
    if (!m_selected)
        return;
    if (IsTitle(*m_selected) && IsOnExpandBox(at.x()))
        ToggleDay(*m_selected);
    else
        RunItemMenu();
}

void CListView::RunItemMenu()
{
    m_stroke.End();
    FollowSelection(); // what is new goes to the row's day
    if (!m_selected)
        return;
    if (m_selected->m_item && IsSpecialEvent(*m_selected->m_item))
        return OnCommandOpenItem();
    if (m_selected->m_item)
        return CItemRowView::RunItemMenu();
    CTouchMenu menu(GetCursorDateText());
    AddNewItemRows(m_host, menu);
    RunMenu(menu);
}

bool CListView::FillTouchMenu(CTouchMenu& menu)
{
    AddViewMenuRows(m_host, menu, SelectedItem());
    menu.AddRow(StrExpandAll, CmdTasksExpandAll, PictureExpandAll);
    menu.AddRow(StrCollapseAll, CmdTasksCollapseAll, PictureCollapseAll);
    return true;
}

bool CListView::FillMenu(QMenu& menu)
{
    QMenu& more = AddViewMenuRows(m_host, menu, SelectedItem());
    more.addAction(GetString(StrExpandAll))->setData(CmdTasksExpandAll);
    more.addAction(GetString(StrCollapseAll))->setData(CmdTasksCollapseAll);
    more.addSeparator();
    AddMoreRows(m_host, more, SelectedItem());
    return true;
}

void CListView::ActivateRow()
{
    if (!m_selected)
        return;
    if (IsTitle(*m_selected))
        ToggleDay(*m_selected);
    else if (m_selected->m_item)
        m_host.SendCommand(CmdOpenItem);
}

bool CListView::OnKey(int key)
{
    switch (key) {
    case kKeyLeft:
    case kKeyPageUp:
        MoveDate(-1);
        return true;
    case kKeyRight:
    case kKeyPageDown:
        MoveDate(1);
        return true;
    case kKeyUp:
        MoveSelection(-1);
        return true;
    case kKeyDown:
        MoveSelection(1);
        return true;
    case kKeyReturn:
        ActivateRow();
        return true;
    case '1':
    case '3':
    case '4':
    case '6':
        GoToDay(DayOfDateKey(key, CursorDay()));
        return true;
    case '2':
    case kKeyHome:
        GoToToday();
        return true;
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
