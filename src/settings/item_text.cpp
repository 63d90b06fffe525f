#include "settings/item_text.h"

#include "settings/settings_file.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
QString TimeOf(DATE date)
{
    return GetTimeFormat(kTimeNoSeconds, SystemTimeOf(date));
}

// An order as the locale gives it: a number, or the code of its digit.
int OrderOf(LocaleValue value)
{
    const int order = NumberOfText(GetLocaleInfo(value));
    return std::max(order > 2 ? order - '0' : order, 0);
}

QString Filled(int id, int number)
{
    return GetString(id).replace(QStringLiteral("%d"), QString::number(number));
}
} // namespace

QString FormatRowPrefix(int rowDay, bool allDay, DATE start, DATE end)
{
    if (allDay)
        return GetString(StrPrefixAllDay);
    const QString colon = QStringLiteral(": ");
    if (DayNumber(start) >= rowDay)
        return TimeOf(start) + colon;
    if (DayNumber(end) <= rowDay)
        return GetString(StrPrefixUntil).replace(QStringLiteral("%s"), TimeOf(end));
    return GetString(StrMultidayShort) + colon;
}

QString FormatTimeRange(DATE start, DATE end, int rowDay, bool compact, bool onlyStart, bool endsPreviousDay)
{
    const bool endsInNight = endsPreviousDay && DayNumber(end) - rowDay == 1;
    const bool startsBefore = DayNumber(start) < rowDay;
    const bool endsAfter = DayNumber(end) > rowDay && !endsInNight;
    const QString whole = GetString(compact ? StrMultidayShort : StrMultiday);
    if (startsBefore && endsAfter)
        return whole;
    const QString first = startsBefore ? whole : FormatTime(start, compact);
    if (onlyStart)
        return first;
    return first + u'-' + (endsAfter ? whole : FormatTime(end, compact));
}

QString FormatTime(DATE date, bool compact)
{
    if (!compact)
        return TimeOf(date);
    return GetTimeFormat(kTimeNoSeconds, SystemTimeOf(date), GetTimePattern(true)).toLower();
}

QString GetDatePattern(bool withoutYear)
{
    const QString separator = GetLocaleInfo(LocaleValue::DateSeparator);
    const QString day = QStringLiteral("dd"), month = QStringLiteral("MM"), year = QStringLiteral("yyyy");
    QStringList parts;
    switch (OrderOf(LocaleValue::DateOrder)) {
    case 1:
        parts = QStringList{day, month, year};
        break;
    case 2:
        parts = QStringList{year, month, day};
        break;
    default:
        parts = QStringList{month, day, year};
    }
    if (withoutYear)
        parts.removeOne(year);
    return parts.join(separator);
}

QString GetTimePattern(bool compact)
{
    if (OrderOf(LocaleValue::TimeMode) != 0)
        return QStringLiteral("HH:mm");
    return compact ? QStringLiteral("hh:mmt") : QStringLiteral("hh:mm tt");
}

QString FormatReminder(int minutes)
{
    if (minutes % 60 != 0)
        return Filled(StrReminderMinutes, minutes);
    if (minutes % 1440 != 0)
        return Filled(StrReminderHours, minutes / 60);
    if (minutes % 10080 != 0)
        return Filled(StrReminderDays, minutes / 1440);
    if (minutes != 0)
        return Filled(StrReminderWeeks, minutes / 10080);
    return GetString(StrReminderZero);
}

QString GetLocaleText(LocaleValue value)
{
    return GetLocaleInfo(value);
}
