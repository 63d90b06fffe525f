// The fixed lists of date formats among which the user chooses for titles.
#pragma once
#include "platform/system_time.h"

#include <QString>

enum TitleTable {
    kListTitleFormats = 0,    // range
    kDayTitleFormats = 1,     // one date
    kWeekTitleFormats = 100,  // range
    kWeekDayFormats = 101,    // one date
    kMonthTitleFormats = 200, // one date
    kTaskDateFormats = 300,   // start and due date, NO_DATE for none
    kDailyTitleFormats = 400, // one date
};

// False, and `text` as it was, for an index that the table has not. One-date tables ignore `second`.
bool FormatViewTitle(int table, int index, DATE first, DATE second, QString* text);
