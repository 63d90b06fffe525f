// The digit keys that mean the same in all calendar views.
#pragma once

int SameDateInYear(int day, int years); // 29 February becomes the 28th
// Where "1" and "3", a month, and "4" and "6", a year back and ahead, lead from `day`; 0 for other keys.
int DayOfDateKey(int key, int day);
// The day of the month of `day`, in the month of `inMonth`; the last one there where that is shorter.
int SameDayOfMonth(int inMonth, int day);
// The nearest day around which dates can tell the weeks that a view shows.
int NearestShowableDay(int day);
inline bool IsShowableDay(int day)
{
    return NearestShowableDay(day) == day;
}
