// The menus of the calendar views as tables: order in a table is order on the screen.
#pragma once
#include "pim/items.h"

class CTouchMenu;
class IViewHost;
class QMenu;

// Whatever the host does not offer is left out.
// What a selected item's menu offers, for each kind of item.
void AddItemMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem& item);
void AddItemMenuRows(const IViewHost& host, QMenu& menu, const CPimItem& item); // as actions' data
// The view's own finger menu; `selected` may be null.
void AddViewMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem* selected);
// New items alone: the menu of a day.
void AddNewItemRows(const IViewHost& host, CTouchMenu& menu);
void AddNewItemRows(const IViewHost& host, QMenu& menu);
// The tasks view's share: without appointments, and under the right button without "More".
void AddTasksMenuRows(const IViewHost& host, CTouchMenu& menu, const CPimItem* selected);
void AddTasksMenuRows(const IViewHost& host, QMenu& menu, const CPimItem* selected);
void AddNewTaskRow(const IViewHost& host, CTouchMenu& menu);
// Duplicate and Beam, greyed without an item.
void AddMoreRows(const IViewHost& host, QMenu& more, const CPimItem* selected);
// For the right button; commands as the actions' data. The result is the empty menu "More" at its end.
QMenu& AddViewMenuRows(const IViewHost& host, QMenu& menu, const CPimItem* selected);
