// Opens the editors over a window, or as a window where there is none; they save by themselves.
// Errors: an item that is gone opens nothing. Each answers a CFormDialog::Result.
#pragma once
#include "pim/items.h"

class QWidget;

int CreateAppointment(DATE date, bool hasTime, DATE end, const QString& category, QWidget* owner);
// A series asks first whether the occurrence of `day`, by its original day, or all of it is meant.
int EditAppointment(quint32 itemId, int day, QWidget* owner);
int CreateTask(DATE start, DATE due, const QString& category, QWidget* owner);
int EditTask(quint32 itemId, QWidget* owner);
// For the page of an item's details: true when that has served its purpose.
bool EditItem(const CPimItem& item, const QString& note, QWidget* owner);
