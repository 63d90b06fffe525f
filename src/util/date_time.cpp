#include "util/date_time.h"

#include <algorithm>

namespace
{
constexpr int kFirstDay = -657434; // 1 January 100
constexpr int kLastDay = 2958465;  // 31 December 9999
constexpr qint64 kTicksPerSecond = 10000000;
constexpr qint64 kSecondsPerDay = 86400;

// Seconds since the start of day 0, which unlike a DATE run evenly below zero too.
qint64 SecondsOf(DATE date)
{
    const double days = SignedOf(date);
    return std::fabs(days) < 1e7 ? std::llround(days * double(kSecondsPerDay)) : 0; // a NaN too
}
qint64 FloorDays(qint64 seconds)
{
    return (seconds - (seconds < 0 ? kSecondsPerDay - 1 : 0)) / kSecondsPerDay;
}

// Day and fraction are added as the platform adds them, so that equal moments are equal doubles.
DATE DateOfSeconds(qint64 seconds)
{
    const qint64 day = FloorDays(seconds);
    const double time = double(seconds - day * kSecondsPerDay) / double(kSecondsPerDay);
    return day >= 0 ? double(day) + time : double(day) - time;
}

int WeekdayOf(int dayNumber)
{
    return ((dayNumber - 1) % 7 + 7) % 7;
} // day 1 was a Sunday

int DaysInMonth(int year, int month)
{
    return month == 12 ? 31 : DayNumberOf(year, month + 1, 1) - DayNumberOf(year, month, 1);
}

int DayOf(const SystemTime& time)
{
    return DayNumberOf(time.wYear, time.wMonth, time.wDay);
}

SystemTime OnDay(const SystemTime& time, int dayNumber)
{
    SystemTime result = time;
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(std::clamp(dayNumber, kFirstDay, kLastDay), &year, &month, &day);
    result.wYear = quint16(year);
    result.wMonth = quint16(month);
    result.wDay = quint16(day);
    result.wDayOfWeek = quint16(WeekdayOf(dayNumber));
    return result;
}

// A rule comes from stored bytes as well: anything outside the calendar counts as none.
bool IsRule(const SystemTime& rule)
{
    return rule.wMonth >= 1 && rule.wMonth <= 12;
}
bool HasRules(const TimeZoneInformation& zone)
{
    return IsRule(zone.StandardDate) && IsRule(zone.DaylightDate);
}

qint64 TransitionSeconds(const SystemTime& rule, int year)
{
    const int first = DayNumberOf(year, rule.wMonth, 1);
    const int week = std::clamp<int>(rule.wDay, 1, 5);
    int day = first + (rule.wDayOfWeek % 7 - WeekdayOf(first) + 7) % 7 + (week - 1) * 7;
    if (day >= first + DaysInMonth(year, rule.wMonth))
        day -= 7;
    return day * kSecondsPerDay + rule.wHour * 3600 + rule.wMinute * 60;
}

int YearOfSeconds(qint64 seconds)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(int(std::clamp<qint64>(FloorDays(seconds), kFirstDay, kLastDay)), &year, &month, &day);
    return year;
}

// Whether a wall time is in daylight. Rules name the wall time just before each change; a wall
// time that is kept by one offset throughout meets one of them an hour off, which the two
// shifts (seconds, added to the rules) make good.
bool InDaylight(const TimeZoneInformation& zone, qint64 wall, qint64 daylightShift, qint64 standardShift)
{
    if (!HasRules(zone))
        return false;
    const int year = YearOfSeconds(wall);
    const qint64 standard = TransitionSeconds(zone.StandardDate, year) + standardShift;
    const qint64 daylight = TransitionSeconds(zone.DaylightDate, year) + daylightShift;
    if (standard < daylight) // the southern half
        return !(standard <= wall && wall < daylight);
    return daylight <= wall && wall < standard;
}

qint64 AdvanceSeconds(const TimeZoneInformation& zone) // how far daylight time runs ahead
{
    return qint64(zone.StandardBias - zone.DaylightBias) * 60;
}
} // namespace

DATE GetNow()
{
    return DateOf(GetLocalTime());
}

SystemTime SystemTimeOf(DATE date)
{
    SystemTime time;
    return VariantTimeToSystemTime(date, &time) ? time : SystemTime();
}

DATE DateOf(const SystemTime& time)
{
    DATE date = 0;
    return SystemTimeToVariantTime(time, &date) ? date : 0;
}

void AddMinutes(SystemTime& time, int minutes)
{
    const qint64 total = qint64(time.wHour) * 60 + time.wMinute + minutes;
    const qint64 days = total / 1440 - (total % 1440 < 0 ? 1 : 0);
    const int rest = int(total - days * 1440);
    if (days != 0)
        time = OnDay(time, int(DayOf(time) + days));
    time.wHour = quint16(rest / 60);
    time.wMinute = quint16(rest % 60);
}

int DayOfWeekOf(int dayNumber)
{
    return WeekdayOf(dayNumber);
}

void GetMonthBounds(const SystemTime& date, SystemTime* first, SystemTime* last)
{
    const int day = DayOf(date) - date.wDay + 1;
    *first = OnDay(date, day);
    *last = OnDay(date, day + DaysInMonth(date.wYear, date.wMonth) - 1);
}

void GetWeekBounds(const SystemTime& date, SystemTime* first, SystemTime* last, int firstDay)
{
    const int day = DayOf(date);
    const int start = day - ((WeekdayOf(day) - firstDay) % 7 + 7) % 7;
    *first = OnDay(date, start);
    *last = OnDay(date, start + 6);
}

int GetSameDayPrevMonth(int dayNumber)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(dayNumber, &year, &month, &day);
    const int last = DayNumberOf(year, month, 1) - 1;
    int lastYear = 0, lastMonth = 0, length = 0;
    CivilOfDayNumber(last, &lastYear, &lastMonth, &length);
    return day > length ? last : dayNumber - length;
}

int GetSameDayNextMonth(int dayNumber)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(dayNumber, &year, &month, &day);
    const int length = DaysInMonth(year, month);
    const int next = dayNumber - day + length; // last day of this month
    int nextYear = 0, nextMonth = 0, unused = 0;
    CivilOfDayNumber(next + 1, &nextYear, &nextMonth, &unused);
    return std::min(dayNumber + length, next + DaysInMonth(nextYear, nextMonth));
}

int ReturnInYear(int year, int month, int day)
{
    return DayNumberOf(year, month, month == 2 && day == 29 ? 28 : day);
}

DATE GetTransitionDate(const SystemTime& rule, int year)
{
    return IsRule(rule) ? DateOfSeconds(TransitionSeconds(rule, year)) : 0;
}

bool IsDaylightTime(const TimeZoneInformation& zone, const SystemTime& time)
{
    return InDaylight(zone, SecondsOf(DateOf(time)), 0, 0);
}

void CorrectToDaylightOfDate(bool daylightNow, const TimeZoneInformation& zone, SystemTime& time)
{
    if (!HasRules(zone))
        return;
    // The wall time came by one offset the whole year round, so one of the two rules is met an
    // hour off; without that the morning of a change would read an hour wrong.
    const qint64 advance = AdvanceSeconds(zone);
    const qint64 wall = SecondsOf(DateOf(time));
    const bool daylight =
        daylightNow ? InDaylight(zone, wall, advance, 0) : InDaylight(zone, wall, 0, -advance);
    if (daylight && !daylightNow)
        AddMinutes(time, int(advance / 60));
    else if (daylightNow && !daylight)
        AddMinutes(time, -int(advance / 60));
}

void NormalizeUtcAllDay(const SystemTime& utc, SystemTime& local)
{
    if (local.wHour == 0)
        return;
    SystemTime day = utc;
    day.wHour = day.wMinute = day.wSecond = day.wMilliseconds = 0;
    local = OnDay(day, DayOf(utc) + (utc.wHour > 12 ? 1 : 0));
}

DATE MinutesSince1601ToDate(double minutes)
{
    return DateOfSeconds(std::llround(minutes) * 60 + qint64(kDayOf1601) * kSecondsPerDay);
}

double DateToMinutesSince1601(DATE date)
{
    return double(std::llround((SignedOf(date) - double(kDayOf1601)) * 1440.0));
}

DATE LocalToUtc(DATE local, const TimeZoneInformation& zone)
{
    const qint64 wall = SecondsOf(local);
    const qint64 advance = AdvanceSeconds(zone);
    // A wall time inside the skipped hour is not yet daylight: it then comes out an hour later.
    const bool daylight = InDaylight(zone, wall, advance, 0);
    const qint32 bias = zone.Bias + (HasRules(zone) ? (daylight ? zone.DaylightBias : zone.StandardBias) : 0);
    return DateOfSeconds(wall + qint64(bias) * 60);
}

DATE UtcToLocal(DATE utc, const TimeZoneInformation& zone)
{
    const bool rules = HasRules(zone);
    const qint64 wall = SecondsOf(utc) - qint64(zone.Bias + (rules ? zone.StandardBias : 0)) * 60;
    const qint64 advance = AdvanceSeconds(zone);
    return DateOfSeconds(InDaylight(zone, wall, 0, -advance) ? wall + advance : wall);
}

DATE DateOfFileTime(FileTime utc)
{
    const qint64 seconds = utc / kTicksPerSecond; // file times begin in 1601: never negative in use
    return DateOfSeconds(seconds + qint64(kDayOf1601) * kSecondsPerDay);
}

FileTime FileTimeOfDate(DATE date)
{
    return (SecondsOf(date) - qint64(kDayOf1601) * kSecondsPerDay) * kTicksPerSecond;
}
