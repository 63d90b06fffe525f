// Dates of the system: automation dates, day numbers, and the zone corrections of stored times.
// Units: DATE as in platform/system_time.h; a day number is a DATE truncated toward zero, and
//   every test for the same day compares day numbers.
#pragma once
#include "platform/clock.h"
#include "platform/system_time.h"
#include "platform/time_zone.h"

#include <QString>
#include <cmath>

constexpr DATE NO_DATE = 949998.0; // 1 January 4501: no date; compared for exact equality

inline int DayNumber(DATE date) { return int(date); }

class CDateTimeSpan
{
public:
    CDateTimeSpan() = default;
    explicit CDateTimeSpan(double days);
    double m_span = 0;
    qint32 m_status = 0; // 0 valid, 1 invalid (outside +-3615897 days)
};

class CDateTime
{
public:
    CDateTime() = default;
    explicit CDateTime(DATE date) : m_date(date) {}
    // Checked: a date that does not convert back to what was asked is invalid.
    CDateTime(int year, int month, int day, int hour, int minute, int second);
    static CDateTime FromFileTime(FileTime utc);

    bool IsValid() const { return m_status == 0; }
    int GetYear() const;      // -1 when invalid
    int GetDayOfWeek() const; // 1 Sunday; -1 when invalid
    CDateTime& operator+=(const CDateTimeSpan& span);
    CDateTime& operator-=(const CDateTimeSpan& span);
    QString Format(const QString& picture) const; // "Invalid DateTime" when invalid

    DATE m_date = 0;
    qint32 m_status = 0;
};

DATE GetNow();
inline int GetToday() { return DayNumber(GetNow()); }

SystemTime SystemTimeOf(DATE date); // zeroes when out of range
DATE DateOf(const SystemTime& time); // 0 when out of range
void AddMinutes(SystemTime& time, int minutes); // calendar arithmetic, carries into days
int DayOfWeekOf(int dayNumber);      // 0 Sunday

void GetMonthBounds(const SystemTime& date, SystemTime* first, SystemTime* last);
void GetWeekBounds(const SystemTime& date, SystemTime* first, SystemTime* last, int firstDay);
int GetSameDayPrevMonth(int dayNumber); // clamped to the month's length
int GetSameDayNextMonth(int dayNumber);
int ReturnInYear(int year, int month, int day); // of a yearly date; 29 February counts as the 28th

DATE GetTransitionDate(const SystemTime& rule, int year);
bool IsDaylightTime(const TimeZoneInformation& zone, const SystemTime& time);
// A stored time was turned local by the bias of now; moves it to that of its own date. Exact in
// the hours at a change of the clocks too, so that what LocalToUtc stored comes back.
void CorrectToDaylightOfDate(bool daylightNow, const TimeZoneInformation& zone, SystemTime& time);
// A plain all-day item is stored at UTC midnight or near it; finds the day it means.
void NormalizeUtcAllDay(const SystemTime& utc, SystemTime& local);

DATE MinutesSince1601ToDate(double minutes);
double DateToMinutesSince1601(DATE date);
inline double SignedOf(DATE date) { const double c = std::ceil(date); return date >= 0 ? date : c - (date - c); }
inline DATE DateOfSigned(double value) { const double f = std::floor(value); return value >= 0 ? value : f + (f - value); }

// Between local time by a zone's own rules (of that date) and UTC; a time in the skipped hour
// moves forward, a doubled one is the first.
DATE LocalToUtc(DATE local, const TimeZoneInformation& zone);
DATE UtcToLocal(DATE utc, const TimeZoneInformation& zone);
DATE DateOfFileTime(FileTime utc);      // same zone, only the unit changes
FileTime FileTimeOfDate(DATE date);
