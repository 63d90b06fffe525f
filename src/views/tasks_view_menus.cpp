// The tasks view's menus, its soft keys, and what their commands do.
#include "drawing/picture_ids.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/tasks_view.h"
#include "views/view_menus.h"

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <algorithm>
#include <iterator>

namespace
{
using TasksViewValues = decltype(CSettingsValues::TasksView);

// In the order of the commands and of their texts.
constexpr int kItemsToView[] = {255, 1, 2, 4, 8, 16, 32, 64, 128};
static_assert(std::size(kItemsToView) == CmdItemsToViewLast - CmdItemsToViewFirst + 1);

constexpr int kFirstSortCode = 100, kFirstGroupCode = 105;
struct SortLevel {
    int Title, First, Last, Ascending;
    qint32 TasksViewValues::*Field;
    qint32 TasksViewValues::*Direction;
    qint32 TasksViewValues::*CheckedInPopup;
};
constexpr SortLevel kSortLevels[] = {
    {StrSorts, CmdSort1First, CmdSort1Last, CmdSort1Ascending, &TasksViewValues::Sort1,
     &TasksViewValues::Sort1Direction, &TasksViewValues::Sort1},
    {StrSecondSort, CmdSort2First, CmdSort2Last, CmdSort2Ascending, &TasksViewValues::Sort2,
     &TasksViewValues::Sort2Direction, &TasksViewValues::Sort2},
    // The third popup has always checked the second sort, and its users know it so.
    {StrThirdSort, CmdSort3First, CmdSort3Last, CmdSort3Ascending, &TasksViewValues::Sort3,
     &TasksViewValues::Sort3Direction, &TasksViewValues::Sort2},
};

QAction* AddAction(QMenu& menu, int stringId, int command)
{
    QAction* const action = menu.addAction(GetString(stringId));
    action->setData(command);
    return action;
}

void AddChecked(QMenu& menu, int stringId, int command, bool checked)
{
    QAction* const action = AddAction(menu, stringId, command);
    action->setCheckable(true);
    action->setChecked(checked);
}

// The sorts of a level and the submenu of its directions.
void AddSorts(QMenu& menu, const SortLevel& level)
{
    const auto& settings = g_Settings.TasksView;
    for (int command = level.First; command <= level.Last; ++command) {
        const int code = command - level.First;
        AddChecked(menu, StrSortDue + code, command, settings.*level.Field == kFirstSortCode + code);
    }
    QMenu* const directions = menu.addMenu(GetString(StrDirection));
    for (const int direction : {0, 1})
        AddChecked(*directions, StrSortAscending + direction, level.Ascending + direction,
                   settings.*level.Direction == direction);
}
} // namespace

// ---- menus

bool CTasksView::FillTouchMenu(CTouchMenu& menu)
{
    AddTasksMenuRows(m_host, menu, SelectedItem());
    menu.AddRow(StrView, CmdTasksShowMenu, PictureShow);
    menu.AddRow(StrSorts, CmdTasksSort1Menu, PictureSort);
    if (IsGrouped()) {
        menu.AddRow(StrExpandAll, CmdTasksExpandAll, PictureExpandAll);
        menu.AddRow(StrCollapseAll, CmdTasksCollapseAll, PictureCollapseAll);
    }
    return true;
}

bool CTasksView::FillMenu(QMenu& menu)
{
    AddTasksMenuRows(m_host, menu, SelectedItem());
    QMenu* const sorts = menu.addMenu(GetString(StrSorts));
    AddSorts(*sorts, kSortLevels[0]);
    for (const int level : {1, 2})
        AddSorts(*sorts->addMenu(GetString(kSortLevels[level].Title)), kSortLevels[level]);
    QMenu* const more = menu.addMenu(GetString(StrMore));
    AddAction(*more, StrExpandAll, CmdTasksExpandAll)->setEnabled(IsGrouped());
    AddAction(*more, StrCollapseAll, CmdTasksCollapseAll)->setEnabled(IsGrouped());
    more->addSeparator();
    AddMoreRows(m_host, *more, SelectedItem());
    QMenu* const show = menu.addMenu(GetString(StrView));
    for (int n = 0; n < int(std::size(kItemsToView)); ++n)
        AddChecked(*show, StrTasksAll + n, CmdItemsToViewFirst + n,
                   g_Settings.TasksView.ItemsToView == kItemsToView[n]);
    return true;
}

void CTasksView::FillShowMenu(CTouchMenu& menu)
{
    for (int n = 0; n < int(std::size(kItemsToView)); ++n)
        menu.AddRow(StrTasksAll + n, CmdItemsToViewFirst + n, PictureShow,
                    g_Settings.TasksView.ItemsToView == kItemsToView[n]);
}

void CTasksView::FillSortMenu(CTouchMenu& menu, int level)
{
    const SortLevel& sort = kSortLevels[std::clamp(level, 0, 2)];
    const auto& settings = g_Settings.TasksView;
    for (int command = sort.First; command <= sort.Last; ++command) {
        const int code = kFirstSortCode + command - sort.First;
        menu.AddRow(StrSortDue + code - kFirstSortCode, command,
                    code < kFirstGroupCode ? PictureSort : PictureExpandAll,
                    settings.*sort.CheckedInPopup == code);
    }
    for (const int direction : {0, 1})
        menu.AddRow(StrSortAscending + direction, sort.Ascending + direction,
                    direction == 0 ? PictureMoveUp : PictureMoveDown, settings.*sort.Direction == direction);
    if (level != 0)
        return;
    menu.AddRow(StrSecondSort, CmdTasksSort2Menu, PictureSort);
    menu.AddRow(StrThirdSort, CmdTasksSort3Menu, PictureSort);
}

// Acts on all tasks, so whatever became of the selection meanwhile does not matter.
void CTasksView::RunChoice(CTouchMenu& menu)
{
    const QPointer<QWidget> alive(this);
    const int command = menu.Run(this);
    if (alive && command != CmdNone)
        m_host.SendCommand(command);
}

void CTasksView::RunItemMenu()
{
    if (SelectedItem())
        return CItemRowView::RunItemMenu();
    CTouchMenu menu(GetString(StrTasksTitle));
    AddNewTaskRow(m_host, menu);
    RunMenu(menu);
}

// ---- soft keys

int CTasksView::ToggleImage() const
{
    if (!SelectedItem())
        return 0;
    return static_cast<const CTask*>(SelectedItem())->Complete ? PictureActivateTask : PictureCompleteTask;
}

void CTasksView::FillSoftKeys(CSoftKeyBar& keys)
{
    m_keyImage = ToggleImage();
    keys.AddButton(CmdTasksShowMenu, PictureShow);
    keys.AddButton(CmdTasksSort1Menu, PictureSort);
    keys.AddButton(CmdToggleTask, m_keyImage);
}

void CTasksView::RebuildSoftKeys(CSoftKeyBar& keys)
{
    m_keyImage = ToggleImage();
    keys.SetImage(CmdToggleTask, m_keyImage);
}

// ---- commands

void CTasksView::OnCommand(int command)
{
    if (command >= CmdItemsToViewFirst && command <= CmdItemsToViewLast)
        return SetItemsToView(command);
    CTouchMenu show(GetString(StrView));
    switch (command) {
    case CmdTasksShowMenu:
        FillShowMenu(show);
        return RunChoice(show);
    case CmdTasksSort1Menu:
    case CmdTasksSort2Menu:
    case CmdTasksSort3Menu: {
        const int level = command == CmdTasksSort1Menu ? 0 : command == CmdTasksSort2Menu ? 1 : 2;
        CTouchMenu sorts(GetString(kSortLevels[level].Title));
        FillSortMenu(sorts, level);
        return RunChoice(sorts);
    }
    case CmdTasksExpandAll:
    case CmdTasksCollapseAll:
        return CollapseAll(command == CmdTasksCollapseAll);
    default:
        return;
    }
}

void CTasksView::SetItemsToView(int command)
{
    const CWaitCursor wait;
    g_Settings.TasksView.ItemsToView = kItemsToView[command - CmdItemsToViewFirst];
    PimStore().RefreshTaskMatches();
    OnDataChanged(0, 0, 0);
    UpdateTasksTitle();
}

void CTasksView::UpdateTasksTitle()
{
    QString title = GetString(StrTasksTitle);
    const auto* const value =
        std::find(std::begin(kItemsToView), std::end(kItemsToView), g_Settings.TasksView.ItemsToView);
    if (value != std::end(kItemsToView) && value != std::begin(kItemsToView))
        title += GetString(StrSuffixOverdue + int(value - std::begin(kItemsToView)) - 1);
    SetTitle(title);
}
