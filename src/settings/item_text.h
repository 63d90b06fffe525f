// Short texts of items for lists and forms, in the locale's formats.
#pragma once
#include "platform/locale.h"
#include "platform/system_time.h"

#include <QString>

// The prefix of a one-line row on day `rowDay`.
QString FormatRowPrefix(int rowDay, bool allDay, DATE start, DATE end);
// The time column of a row on day `rowDay`.
QString FormatTimeRange(DATE start, DATE end, int rowDay, bool compact, bool onlyStart, bool endsPreviousDay);
QString FormatTime(DATE date, bool compact);
QString GetDatePattern(bool withoutYear); // a date picture
QString GetTimePattern(bool compact);     // a time picture
QString FormatReminder(int minutes);      // the largest unit that divides it
QString GetLocaleText(LocaleValue value);
