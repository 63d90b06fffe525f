#include "views/view_menus.h"
#include "drawing/picture_ids.h"
#include "touch/command_ids.h"
#include "touch/touch_menu.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QAction>
#include <QMenu>

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
    {StrDelete, CmdDelete, PictureDelete, kAnyItem},
    {StrDuplicate, CmdDuplicate, PictureDuplicate, kAnyItem},
};
constexpr MenuRow kViewMenu[] = {
    {StrCompleteTask, CmdToggleTask, PictureCompleteTask, kActiveTask},
    {StrActivateTask, CmdToggleTask, PictureActivateTask, kCompletedTask},
    {StrDelete, CmdDelete, PictureDelete, kAnyItem},
    {StrDuplicate, CmdDuplicate, PictureDuplicate, kAnyItem},
};

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
} // namespace

void AddItemMenuRows(CTouchMenu& menu, const CPimItem& item)
{
    for (const MenuRow& row : kItemMenu) {
        if (row.ShownFor & SelectionOf(&item))
            menu.AddRow(row.Text, row.Command, row.Image);
    }
}

void AddViewMenuRows(CTouchMenu& menu, const CPimItem* selected)
{
    for (const MenuRow& row : kViewMenu) {
        if (row.ShownFor & (kAlways | SelectionOf(selected)))
            menu.AddRow(row.Text, row.Command, row.Image);
    }
}

void AddViewMenuRows(QMenu& menu, const CPimItem* selected)
{
    for (const MenuRow& row : kViewMenu) {
        if (row.ShownFor & (kAlways | SelectionOf(selected)))
            menu.addAction(GetString(row.Text))->setData(row.Command);
    }
}
