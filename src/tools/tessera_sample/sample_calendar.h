// A small calendar around a day that shows every form an item can take.
#pragma once
#include "object_model/object_model.h"

// Writes it in one transaction: all of it or nothing. `written` is the number of items.
CStatus WriteSampleCalendar(IPOutlookApp& app, int today, int* written);
// Colours for its categories, into settings that have never been saved; others are left alone.
void WriteSampleSettings();
