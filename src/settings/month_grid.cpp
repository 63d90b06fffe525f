#include "settings/month_grid.h"

#include "settings/settings.h"
#include "util/date_time.h"

namespace
{
// How many days before `dayNumber` its week begins.
int DaysIntoWeek(int dayNumber)
{
    const int days = (DayOfWeekOf(dayNumber) - g_Settings.MonthView.StartDay % 7) % 7;
    return days < 0 ? days + 7 : days;
}

void BoundsOf(int dayNumber, int* first, int* last)
{
    SystemTime firstTime, lastTime;
    GetMonthBounds(SystemTimeOf(dayNumber), &firstTime, &lastTime);
    *first = DayNumber(DateOf(firstTime));
    *last = DayNumber(DateOf(lastTime));
}
} // namespace

int GetMonthGridStart(int dayNumber)
{
    int first, last;
    BoundsOf(dayNumber, &first, &last);
    return first - DaysIntoWeek(first);
}

int GetMonthGridEnd(int dayNumber)
{
    int first, last;
    BoundsOf(dayNumber, &first, &last);
    return last - DaysIntoWeek(last) + 6;
}
