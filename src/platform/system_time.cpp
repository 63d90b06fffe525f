#include "platform/system_time.h"

#include <cmath>

namespace
{
constexpr qint64 kTicksPerSecond = 10000000;
constexpr qint64 kTicksPerDay = 86400 * kTicksPerSecond;
constexpr int kDayOf100 = -657434;  // 1 January 100
constexpr int kLastDay = 2958465;   // 31 December 9999

bool IsLeap(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

int DaysInMonth(int year, int month)
{
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeap(year) ? 29 : kDays[month - 1];
}

bool IsDate(const SystemTime& t, int firstYear)
{
    return t.wYear >= firstYear && t.wYear <= 9999 && t.wMonth >= 1 && t.wMonth <= 12 && t.wDay >= 1 &&
           t.wDay <= DaysInMonth(t.wYear, t.wMonth) && t.wHour <= 23 && t.wMinute <= 59 && t.wSecond <= 59;
}

int SecondsOf(const SystemTime& t) { return t.wHour * 3600 + t.wMinute * 60 + t.wSecond; }

void SetParts(int day, int seconds, SystemTime* time)
{
    int year = 0;
    int month = 0;
    int dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    const int weekday = (day + 6) % 7; // day number 0 was a Saturday
    *time = SystemTime();
    time->wYear = quint16(year);
    time->wMonth = quint16(month);
    time->wDay = quint16(dayOfMonth);
    time->wDayOfWeek = quint16(weekday < 0 ? weekday + 7 : weekday);
    time->wHour = quint16(seconds / 3600);
    time->wMinute = quint16(seconds / 60 % 60);
    time->wSecond = quint16(seconds % 60);
}
} // namespace

// Days are counted in years that begin in March, so that the leap day comes last.
int DayNumberOf(int year, int month, int day)
{
    const int y = month <= 2 ? year - 1 : year;
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 693899;
}

void CivilOfDayNumber(int dayNumber, int* year, int* month, int* day)
{
    const int z = dayNumber + 693899;
    const int era = (z >= 0 ? z : z - 146096) / 146097;
    const int dayOfEra = z - era * 146097;
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shifted = (5 * dayOfYear + 2) / 153;
    *day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    *month = shifted < 10 ? shifted + 3 : shifted - 9;
    *year = yearOfEra + era * 400 + (*month <= 2 ? 1 : 0);
}

bool SystemTimeToVariantTime(const SystemTime& time, DATE* date)
{
    if (!IsDate(time, 100))
        return false;
    const int day = DayNumberOf(time.wYear, time.wMonth, time.wDay);
    const double fraction = SecondsOf(time) / 86400.0;
    *date = day >= 0 ? day + fraction : day - fraction;
    return true;
}

bool VariantTimeToSystemTime(DATE date, SystemTime* time)
{
    // Also false for a NaN; the fraction of the last day still belongs to it.
    if (!(date > kDayOf100 - 1 && date < kLastDay + 1))
        return false;
    const double whole = std::trunc(date);
    int day = int(whole);
    int seconds = int(std::floor(std::fabs(date - whole) * 86400.0 + 0.5));
    if (seconds >= 86400) {
        seconds -= 86400;
        ++day;
    }
    if (day < kDayOf100 || day > kLastDay)
        return false;
    SetParts(day, seconds, time);
    return true;
}

bool SystemTimeToFileTime(const SystemTime& time, FileTime* fileTime)
{
    if (!IsDate(time, 1601) || time.wMilliseconds > 999)
        return false;
    const qint64 day = DayNumberOf(time.wYear, time.wMonth, time.wDay) - kDayOf1601;
    *fileTime = day * kTicksPerDay + SecondsOf(time) * kTicksPerSecond + time.wMilliseconds * qint64(10000);
    return true;
}

bool FileTimeToSystemTime(FileTime fileTime, SystemTime* time)
{
    if (fileTime < 0 || fileTime >= (qint64(kLastDay) + 1 - kDayOf1601) * kTicksPerDay)
        return false;
    const qint64 ticks = fileTime % kTicksPerDay;
    SetParts(int(fileTime / kTicksPerDay) + kDayOf1601, int(ticks / kTicksPerSecond), time);
    time->wMilliseconds = quint16(ticks % kTicksPerSecond / 10000);
    return true;
}
