// The menus of the calendar views as tables: order in a table is order on the screen.
#pragma once
#include "pim/items.h"

class CTouchMenu;
class QMenu;

// What a selected item's menu offers, for each kind of item.
void AddItemMenuRows(CTouchMenu& menu, const CPimItem& item);
// The view's own finger menu; `selected` may be null.
void AddViewMenuRows(CTouchMenu& menu, const CPimItem* selected);
void AddViewMenuRows(QMenu& menu, const CPimItem* selected); // commands as the actions' data
