#include "views/week_range.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "util/date_time.h"

namespace
{
constexpr int kWeek = 7;
enum WeekStart { kSunday, kMonday, kSaturday }; // General.WeekStartDay

int FirstDayOfWeek()
{
    switch (g_Settings.General.WeekStartDay) {
    case kMonday:
        return 1;
    case kSaturday:
        return 6;
    default:
        return 0;
    }
}
} // namespace

int FirstDayOfWeekAround(int day, bool startOnToday)
{
    const int first = startOnToday ? DayOfWeekOf(GetToday()) : FirstDayOfWeek();
    return day - (DayOfWeekOf(day) - first + kWeek) % kWeek;
}

int CursorDay()
{
    const DATE cursor = PimStore().CursorDate();
    return cursor == NO_DATE ? GetToday() : DayNumber(cursor);
}
