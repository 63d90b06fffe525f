// The commands: one row each, one handler each.
#include "desktop/keyboard_service.h"
#include "forms/date_picker_dialog.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "touch/command_ids.h"
#include "touch/timer_ids.h"
#include "touch/wait_cursor.h"
#include "views/view_selector.h"

namespace
{
constexpr struct {
    int Command, View;
} kShows[] = {{CmdShowDaily, kViewDaily},     {CmdShowList, kViewList},   {CmdShowWeekly, kViewWeekly},
              {CmdShowMonthly, kViewMonthly}, {CmdShowTasks, kViewTasks}, {CmdShowSearch, kViewSearch}};

int ShownBy(int command) // ViewKind, or -1
{
    for (const auto& row : kShows) {
        if (row.Command == command)
            return row.View;
    }
    return -1;
}

// Commands that are nothing without a certain view.
int ViewNeededBy(int command)
{
    if (command == CmdSearchStart || command == CmdSearchOptions || command == CmdSearchClear)
        return kViewSearch;
    const bool ofTasks = command == CmdTasksShowMenu || command == CmdTasksSort1Menu ||
                         command == CmdTasksSort2Menu || command == CmdTasksSort3Menu ||
                         (command >= CmdSort1First && command <= CmdSort3Descending) ||
                         (command >= CmdItemsToViewFirst && command <= CmdItemsToViewLast);
    return ofTasks ? kViewTasks : ShownBy(command);
}

using TasksViewValues = decltype(CSettingsValues::TasksView);
// Where a sort command stores its choice: the first command of a range is the value `Base`.
struct SortStore {
    int First, Last;
    qint32 TasksViewValues::*Field;
    int Base;
};
constexpr int kFirstSortCode = 100;
constexpr SortStore kSortStores[] = {
    {CmdSort1First, CmdSort1Last, &TasksViewValues::Sort1, kFirstSortCode},
    {CmdSort1Ascending, CmdSort1Descending, &TasksViewValues::Sort1Direction, 0},
    {CmdSort2First, CmdSort2Last, &TasksViewValues::Sort2, kFirstSortCode},
    {CmdSort2Ascending, CmdSort2Descending, &TasksViewValues::Sort2Direction, 0},
    {CmdSort3First, CmdSort3Last, &TasksViewValues::Sort3, kFirstSortCode},
    {CmdSort3Ascending, CmdSort3Descending, &TasksViewValues::Sort3Direction, 0},
};
} // namespace

CMainFrame::Handler CMainFrame::FindHandler(int command)
{
    static constexpr CommandRow kCommands[] = {
        {CmdExitOther, &CMainFrame::CmdExitProgram},
        {CmdSearchStart, &CMainFrame::CmdTellSearchView},
        {CmdToggleKeyboard, &CMainFrame::CmdToggleInputPanel},
        {CmdRebuildSoftKeys, &CMainFrame::CmdRebuildKeys},
        {CmdTasksShowMenu, &CMainFrame::CmdTellTasksView},
        {CmdTasksSort1Menu, &CMainFrame::CmdTellTasksView},
        {CmdTasksSort2Menu, &CMainFrame::CmdTellTasksView},
        {CmdTasksSort3Menu, &CMainFrame::CmdTellTasksView},
        {CmdFilterMenu, &CMainFrame::CmdOpenFilterMenu},
        {CmdManageFilters, &CMainFrame::CmdManageFilterList},
        {CmdOpenItem, &CMainFrame::CmdOpenSelected},
        {CmdExit, &CMainFrame::CmdExitProgram},
        {CmdSettings, &CMainFrame::CmdOpenSettings},
        {CmdShowDaily, &CMainFrame::CmdShowKind},
        {CmdShowList, &CMainFrame::CmdShowKind},
        {CmdShowMonthly, &CMainFrame::CmdShowKind},
        {CmdNewAppointment, &CMainFrame::CmdCreateAppointment},
        {CmdNewTask, &CMainFrame::CmdCreateTask},
        {CmdEdit, &CMainFrame::CmdEditItem},
        {CmdDelete, &CMainFrame::CmdDeleteItem},
        {CmdViewButton, &CMainFrame::CmdPressViewButton},
        {CmdDateBack, &CMainFrame::CmdMoveDate},
        {CmdDateForward, &CMainFrame::CmdMoveDate},
        {CmdMenu, &CMainFrame::CmdOpenMenu},
        {CmdToday, &CMainFrame::CmdMoveDate},
        {CmdShowWeekly, &CMainFrame::CmdShowKind},
        {CmdToggleTask, &CMainFrame::CmdToggleSelected},
        {CmdShowTasks, &CMainFrame::CmdShowKind},
        {CmdTasksExpandAll, &CMainFrame::CmdTellCurrentView},
        {CmdTasksCollapseAll, &CMainFrame::CmdTellCurrentView},
        {CmdDuplicate, &CMainFrame::CmdDuplicateItem},
        {CmdShowSearch, &CMainFrame::CmdShowKind},
        {CmdPreviousView, &CMainFrame::CmdShowPrevious},
        {CmdSearchOptions, &CMainFrame::CmdTellSearchView},
        {CmdSearchClear, &CMainFrame::CmdTellSearchView},
        {CmdGoTo, &CMainFrame::CmdPickDate},
        {CmdBeam, &CMainFrame::CmdBeamItem},
    };
    static constexpr CommandRange kRanges[] = {
        {CmdNoFilter, CmdFilterLast, &CMainFrame::CmdChooseFilter},
        {CmdSort1First, CmdSort3Descending, &CMainFrame::CmdSortTasks},
        {CmdItemsToViewFirst, CmdItemsToViewLast, &CMainFrame::CmdTellTasksView},
    };
    for (const CommandRow& row : kCommands) {
        if (row.Command == command)
            return row.Handle;
    }
    for (const CommandRange& range : kRanges) {
        if (command >= range.First && command <= range.Last)
            return range.Handle;
    }
    return nullptr;
}

bool CMainFrame::OffersCommand(int command)
{
    const int view = ViewNeededBy(command);
    return FindHandler(command) && (view == -1 || HasView(view));
}

void CMainFrame::SendCommand(int command)
{
    if (!m_up || !OffersCommand(command))
        return;
    ++m_commandDepth;
    (this->*FindHandler(command))(command);
    --m_commandDepth;
}

// ---- handlers

void CMainFrame::CmdExitProgram(int)
{
    // Late, so that the menu or key whose handling is still under way can end first.
    m_timers.Set(kTimerExit, kExitMs);
}

void CMainFrame::CmdShowKind(int command)
{
    ShowView(ShownBy(command), -1);
}

void CMainFrame::CmdMoveDate(int command)
{
    const int delta = command == CmdDateBack ? -1 : command == CmdDateForward ? 1 : 0;
    if (CCalendarView* view = CurrentView()) {
        CWaitCursor wait;
        view->MoveDate(delta);
    }
}

CItemTarget CMainFrame::SelectedItem() const
{
    const CCalendarView* view = CurrentView();
    const auto* item = view ? dynamic_cast<const CPimItem*>(view->GetSelectedItem()) : nullptr;
    if (!item)
        return {};
    CItemTarget target{item->GetKind(), item->ItemId, view->SelectedDay(), item->Subject};
    if (const auto* appointment = dynamic_cast<const CAppointment*>(item);
        appointment && appointment->OriginalDay)
        target.Day = appointment->OriginalDay;
    if (const auto* task = dynamic_cast<const CTask*>(item))
        target.Complete = task->Complete;
    return target;
}

void CMainFrame::CmdDeleteItem(int)
{
    m_itemActions.Delete(SelectedItem(), this);
}

void CMainFrame::CmdDuplicateItem(int)
{
    m_itemActions.Duplicate(SelectedItem(), this);
}

void CMainFrame::CmdBeamItem(int)
{
    m_itemActions.Beam(SelectedItem(), this);
}

void CMainFrame::CmdToggleSelected(int)
{
    m_itemActions.ToggleComplete(SelectedItem(), this);
}

void CMainFrame::CmdPressViewButton(int)
{
    if (g_Settings.General.ViewSelectorMode != 1 || m_returnView != -1)
        return ShowView(ViewOfButton(), -1);
    const int kind = CViewSelector(g_Settings.General.LastView).Choose(this);
    if (kind != -1 && m_up)
        ShowView(kind, -1);
}

void CMainFrame::CmdPickDate(int)
{
    const DATE cursor = PimStore().CursorDate();
    CDatePickerDialog picker(cursor == NO_DATE ? GetToday() : cursor);
    if (picker.Run(this) == CFormDialog::kDone && m_up)
        GoToDate(picker.GetDate());
}

void CMainFrame::CmdShowPrevious(int)
{
    const int previous = m_previousView;
    if (previous != -1)
        ShowView(previous, -1);
    m_previousView = -1;
}

void CMainFrame::CmdRebuildKeys(int)
{
    RebuildSoftKeys();
}

void CMainFrame::CmdToggleInputPanel(int)
{
    ShowOnScreenKeyboard(!IsOnScreenKeyboardShown());
}

void CMainFrame::CmdOpenSelected(int)
{
    if (CCalendarView* view = CurrentView())
        view->OnCommandOpenItem();
}

void CMainFrame::CmdSortTasks(int command)
{
    for (const SortStore& store : kSortStores) {
        if (command >= store.First && command <= store.Last)
            g_Settings.TasksView.*store.Field = store.Base + command - store.First;
    }
    g_Settings.Save();
    PimStore().RebuildTaskGroups();
    if (CCalendarView* tasks = FindView(kViewTasks))
        tasks->OnDataChanged(0, 0, 0);
}

void CMainFrame::CmdTellTasksView(int command)
{
    if (CCalendarView* tasks = FindView(kViewTasks))
        tasks->OnCommand(command);
    g_Settings.Save();
}

void CMainFrame::CmdTellCurrentView(int command)
{
    if (CCalendarView* view = CurrentView())
        view->OnCommand(command);
}

void CMainFrame::CmdTellSearchView(int command)
{
    CCalendarView* view = CurrentView();
    if (view && view->GetViewKind() == kViewSearch)
        view->OnCommand(command);
}
