#include "views/date_keys.h"
#include "util/date_time.h"

#include <algorithm>

namespace
{
constexpr int kMargin = 70; // days around it that a view may show
}

int SameDateInYear(int day, int years)
{
    SystemTime time = SystemTimeOf(day);
    time.wYear = quint16(time.wYear + years);
    if (time.wMonth == 2 && time.wDay == 29)
        time.wDay = 28;
    const int there = DayNumber(DateOf(time));
    return there ? there : day; // beyond the last year that a date can tell
}

int DayOfDateKey(int key, int day)
{
    switch (key) {
    case '1':
        return GetSameDayPrevMonth(day);
    case '3':
        return GetSameDayNextMonth(day);
    case '4':
        return SameDateInYear(day, -1);
    case '6':
        return SameDateInYear(day, 1);
    default:
        return 0;
    }
}

int SameDayOfMonth(int inMonth, int day)
{
    SystemTime first, last;
    GetMonthBounds(SystemTimeOf(inMonth), &first, &last);
    return DayNumber(DateOf(first)) + std::min(SystemTimeOf(day).wDay, last.wDay) - 1;
}

int NearestShowableDay(int day)
{
    static const int first = DayNumberOf(100, 1, 1) + kMargin, last = DayNumberOf(9999, 12, 31) - kMargin;
    return std::clamp(day, first, last);
}
