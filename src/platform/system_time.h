// Broken-down time, automation dates and file times, and the conversions between them.
// Units: DATE is days since 30 December 1899 with the time of day as fraction (below zero the
//   fraction carries the opposite sign); FileTime is 100 ns since 1 January 1601, UTC.
// Range: years 1601 to 9999 for file times, 100 to 9999 for automation dates.
// Errors: a conversion out of range returns false and leaves the target alone.
#pragma once
#include <QtGlobal>

using DATE = double;
using FileTime = qint64;

constexpr int kDayOf1601 = -109205; // 1 January 1601 as a day number: file times begin there

struct SystemTime {
    quint16 wYear = 0;
    quint16 wMonth = 0;     // 1..12; 0 in a zone rule means no rule
    quint16 wDayOfWeek = 0; // 0 Sunday .. 6 Saturday
    quint16 wDay = 0;       // 1..31; in a zone rule the week 1..5, 5 the last
    quint16 wHour = 0;
    quint16 wMinute = 0;
    quint16 wSecond = 0;
    quint16 wMilliseconds = 0;

    bool operator==(const SystemTime&) const = default;
};

// Ignores wDayOfWeek and milliseconds; refuses a day that the month has not.
bool SystemTimeToVariantTime(const SystemTime& time, DATE* date);
// Fills wDayOfWeek; rounds to the nearest second, milliseconds are 0.
bool VariantTimeToSystemTime(DATE date, SystemTime* time);
bool SystemTimeToFileTime(const SystemTime& time, FileTime* fileTime);
bool FileTimeToSystemTime(FileTime fileTime, SystemTime* time);

// Whole days since 30 December 1899 of a civil date, and back. Proleptic Gregorian, any year.
int DayNumberOf(int year, int month, int day);
void CivilOfDayNumber(int dayNumber, int* year, int* month, int* day);
