#include "views/view_menus.h"
#include "drawing/picture_ids.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/i_view_host.h"

#include <QAction>
#include <QMenu>
#include <span>

namespace
{
// For which selections a row stands in a menu.
enum Shown : unsigned {
    kAppointment = 1,
    kActiveTask = 2,
    kCompletedTask = 4,
    kAnyItem = kAppointment | kActiveTask | kCompletedTask,
    kAlways = 8,
};

struct MenuRow {
    int Text;
    int Command;
    int Image;
    unsigned ShownFor;
};

constexpr MenuRow kItemMenu[] = {
    {StrCompleteTask, CmdToggleTask, PictureCompleteTask, kActiveTask},
    {StrActivateTask, CmdToggleTask, PictureActivateTask, kCompletedTask},
    {StrEdit, CmdEdit, PictureEdit, kAnyItem},
    {StrViewDetails, CmdOpenItem, PictureDetails, kAnyItem},
    {StrDelete, CmdDelete, PictureDelete, kAnyItem},
    {StrDuplicate, CmdDuplicate, PictureDuplicate, kAnyItem},
    {StrBeam, CmdBeam, PictureBeam, kAnyItem},
};
constexpr MenuRow kViewMenu[] = {
    {StrNewAppointment, CmdNewAppointment, PictureNewAppointment, kAlways},
    {StrNewTask, CmdNewTask, PictureNewTask, kAlways},
    {StrCompleteTask, CmdToggleTask, PictureCompleteTask, kActiveTask},
    {StrActivateTask, CmdToggleTask, PictureActivateTask, kCompletedTask},
    {StrDelete, CmdDelete, PictureDelete, kAnyItem},
    {StrDuplicate, CmdDuplicate, PictureDuplicate, kAnyItem},
    {StrBeam, CmdBeam, PictureBeam, kAnyItem},
};

constexpr std::span<const MenuRow> kTasksMenu = std::span(kViewMenu).subspan(1); // no appointments

unsigned SelectionOf(const CPimItem* item)
{
    if (!item)
        return 0;
    if (item->GetKind() == kKindAppointment)
        return kAppointment;
    if (item->GetKind() == kKindTask)
        return static_cast<const CTask*>(item)->Complete ? kCompletedTask : kActiveTask;
    return 0;
}

// Under "More", greyed without an item.
bool IsUnderMore(int command)
{
    return command == CmdDuplicate || command == CmdBeam;
}

void AddRows(const IViewHost& host, CTouchMenu& menu, std::span<const MenuRow> rows, unsigned shownFor)
{
    for (const MenuRow& row : rows) {
        if ((row.ShownFor & shownFor) && host.Offers(row.Command))
            menu.AddRow(row.Text, row.Command, row.Image);
    }
}

// All but what stands under "More".
void AddActions(const IViewHost& host, QMenu& menu, std::span<const MenuRow> rows, unsigned shownFor)
{
    for (const MenuRow& row : rows) {
        if ((row.ShownFor & shownFor) && !IsUnderMore(row.Command) && host.Offers(row.Command))
            menu.addAction(GetString(row.Text))->setData(row.Command);
    }
}
} // namespace

void AddItemMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem& item)
{
    AddRows(host, menu, kItemMenu, SelectionOf(&item));
}

void AddItemMenuRows(const IViewHost& host, QMenu& menu, const CPimItem& item)
{
    for (const MenuRow& row : kItemMenu) {
        if ((row.ShownFor & SelectionOf(&item)) && host.Offers(row.Command))
            menu.addAction(GetString(row.Text))->setData(row.Command);
    }
}

void AddViewMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem* selected)
{
    AddRows(host, menu, kViewMenu, kAlways | SelectionOf(selected));
}

void AddNewItemRows(const IViewHost& host, CTouchMenu& menu)
{
    AddRows(host, menu, kViewMenu, kAlways);
}

void AddTasksMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem* selected)
{
    AddRows(host, menu, kTasksMenu, kAlways | SelectionOf(selected));
}

void AddTasksMenuRows(const IViewHost& host, QMenu& menu, const CPimItem* selected)
{
    AddActions(host, menu, kTasksMenu, kAlways | SelectionOf(selected));
}

void AddNewTaskRow(const IViewHost& host, CTouchMenu& menu)
{
    AddRows(host, menu, kTasksMenu, kAlways);
}

QMenu& AddViewMenuRows(const IViewHost& host, QMenu& menu, const CPimItem* selected)
{
    AddActions(host, menu, kViewMenu, kAlways | SelectionOf(selected));
    return *menu.addMenu(GetString(StrMore));
}

void AddNewItemRows(const IViewHost& host, QMenu& menu)
{
    AddActions(host, menu, kViewMenu, kAlways);
}

void AddMoreRows(const IViewHost& host, QMenu& more, const CPimItem* selected)
{
    for (const MenuRow& row : kViewMenu) {
        if (!IsUnderMore(row.Command) || !host.Offers(row.Command))
            continue;
        QAction* action = more.addAction(GetString(row.Text));
        action->setData(row.Command);
        action->setEnabled(row.ShownFor & (kAlways | SelectionOf(selected)));
    }
}
