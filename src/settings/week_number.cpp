#include "settings/week_number.h"

#include "platform/locale.h"
#include "settings/settings.h"
#include "util/date_time.h"

namespace
{
int FirstOfJanuary(int year)
{
    return DayNumberOf(year, 1, 1);
}
} // namespace

int GetWeekNumberMode()
{
    if (g_Settings.General.FirstWeekInYear != 0)
        return g_Settings.General.FirstWeekInYear - 1;
    const QString rule = GetLocaleInfo(LocaleValue::FirstWeekOfYear);
    return rule.startsWith(u'1')   ? kFirstFullWeek
           : rule.startsWith(u'2') ? kFirstFourDayWeek
                                   : kWeekOfFirstJanuary;
}

int GetWeekNumber(int rule, DATE date)
{
    const int day = DayNumber(date);
    int year, month, dayOfMonth;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    // Days of the week count from 0, Sunday, on both sides here.
    const int weekStart = (g_Settings.MonthView.StartDay % 7 + 7) % 7;
    const int lastEarly = (weekStart + 3) % 7; // a year that begins up to this day keeps its week
    int start = FirstOfJanuary(year);
    const int back = (DayOfWeekOf(start) - weekStart + 7) % 7;
    const bool forward =
        rule == kFirstFullWeek || (rule == kFirstFourDayWeek && DayOfWeekOf(start) > lastEarly);
    start += forward ? (7 - back) % 7 : -back;

    const int week = (day - start) / 7 + 1;
    if (week != 53)
        return week;
    if (rule == kFirstFullWeek)
        return week;
    if (rule == kFirstFourDayWeek && DayOfWeekOf(FirstOfJanuary(year + 1)) > lastEarly)
        return week;
    return 1;
}

void GetWeekendColumns(int* first, int* second)
{
    switch (g_Settings.General.WeekStartDay) {
    case 1:
        *first = 6;
        *second = 0;
        break;
    case 2:
        *first = 4;
        *second = 5;
        break;
    default:
        *first = 5;
        *second = 6;
    }
}
