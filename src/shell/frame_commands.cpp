// The commands: one row each, one handler each.
#include "desktop/keyboard_service.h"
#include "drawing/picture_ids.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "shell/view_rotation.h"
#include "touch/command_ids.h"
#include "touch/timer_ids.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"

namespace
{
bool ActsOnSelection(int command)
{
    return command == CmdDelete || command == CmdEdit || command == CmdToggleTask ||
           command == CmdDuplicate || command == CmdBeam || command == CmdOpenItem;
}
} // namespace

const CMainFrame::CommandRow* CMainFrame::FindCommand(int command)
{
    static constexpr CommandRow kCommands[] = {
        {CmdExitOther, &CMainFrame::CmdExitProgram},
        {CmdToggleKeyboard, &CMainFrame::CmdToggleInputPanel},
        {CmdRebuildSoftKeys, &CMainFrame::CmdRebuildKeys},
        {CmdExit, &CMainFrame::CmdExitProgram},
        {CmdShowDaily, &CMainFrame::CmdShowKind},
        {CmdDelete, &CMainFrame::CmdDeleteItem},
        {CmdViewButton, &CMainFrame::CmdPressViewButton},
        {CmdDateBack, &CMainFrame::CmdMoveDate},
        {CmdDateForward, &CMainFrame::CmdMoveDate},
        {CmdMenu, &CMainFrame::CmdOpenMenu},
        {CmdToday, &CMainFrame::CmdMoveDate},
        {CmdToggleTask, &CMainFrame::CmdToggleSelected},
        {CmdDuplicate, &CMainFrame::CmdDuplicateItem},
        {CmdPreviousView, &CMainFrame::CmdShowPrevious},
    };
    for (const CommandRow& row : kCommands) {
        if (row.Command == command)
            return &row;
    }
    return nullptr;
}

bool CMainFrame::OffersCommand(int command)
{
    return FindCommand(command) != nullptr;
}

void CMainFrame::SendCommand(int command)
{
    const CommandRow* row = m_up ? FindCommand(command) : nullptr;
    if (!row)
        return;
    ++m_commandDepth;
    (this->*row->Handle)(command);
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
    constexpr struct {
        int Command, View;
    } kShows[] = {{CmdShowDaily, kViewDaily}};
    for (const auto& row : kShows) {
        if (row.Command == command)
            ShowView(row.View, -1);
    }
}

void CMainFrame::CmdMoveDate(int command)
{
    const int delta = command == CmdDateBack ? -1 : command == CmdDateForward ? 1 : 0;
    if (CCalendarView* view = CurrentView()) {
        CWaitCursor wait;
        view->MoveDate(delta);
    }
}

void CMainFrame::CmdOpenMenu(int)
{
    CCalendarView* view = CurrentView();
    if (!view || CTouchMenu::Current())
        return;
    const CItemIdentity selected = view->SelectedIdentity();
    CTouchMenu menu;
    view->FillTouchMenu(menu);
    menu.AddRow(StrExitCalendar, CmdExit, PictureExit);
    const int command = menu.Run(this);
    // Meanwhile the item may have gone and the selection with it; the command was not meant for another.
    const bool same = m_up && CurrentView() == view && view->SelectedIdentity().IsSameItem(selected);
    if (same || !ActsOnSelection(command))
        SendCommand(command);
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

void CMainFrame::CmdToggleSelected(int)
{
    m_itemActions.ToggleComplete(SelectedItem(), this);
}

void CMainFrame::CmdPressViewButton(int)
{
    const int next = m_returnView != -1 ? m_returnView
                                        : NextViewInRotation(g_Settings.General.LastView,
                                                             g_Settings.General.RotationActiveViews);
    ShowView(next, -1);
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
