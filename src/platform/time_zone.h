// The device's time zone as one record: a bias and the two transition rules of the current year.
// Units: biases are minutes, UTC = local + bias; StandardDate and DaylightDate are rules
//   (wMonth, wDayOfWeek, wDay as the week 1..5, wHour, wMinute) in local time; wMonth 0: no rule.
// The daylight period is the one with the greater offset, whatever the zone's own name for it.
#pragma once
#include "platform/system_time.h"

#include <QByteArray>

struct TimeZoneInformation {
    qint32 Bias = 0;
    SystemTime StandardDate;
    qint32 StandardBias = 0;
    SystemTime DaylightDate;
    qint32 DaylightBias = 0;

    bool operator==(const TimeZoneInformation&) const = default;
};

constexpr quint32 kTimeZoneUnknown = 0;  // no daylight rule
constexpr quint32 kTimeZoneStandard = 1;
constexpr quint32 kTimeZoneDaylight = 2;

class ITimeZone
{
public:
    virtual ~ITimeZone() = default;
    // Result: which of the three periods holds now, by the clock in force.
    virtual quint32 GetTimeZoneInformation(TimeZoneInformation* zone) const = 0;
};

// The zone in force: that of the system (TZ, else /etc/localtime; unset or wrong means UTC),
// or the one a test has put. SetTimeZone(nullptr) returns to the system's.
const ITimeZone& TimeZone();
void SetTimeZone(const ITimeZone* zone);
inline quint32 GetTimeZoneInformation(TimeZoneInformation* zone) { return TimeZone().GetTimeZoneInformation(zone); }

// The record of a named IANA zone by its rules of `year`; false when the name is not known.
// Results are kept, a second call for the same zone and year is cheap.
bool ZoneRecordOf(const QByteArray& ianaId, int year, TimeZoneInformation* zone);
// A test's zone, or a program's: a fixed record, the period computed from the clock in force.
class CFixedTimeZone : public ITimeZone
{
public:
    explicit CFixedTimeZone(const TimeZoneInformation& zone) : m_zone(zone) {}
    quint32 GetTimeZoneInformation(TimeZoneInformation* zone) const override;

private:
    TimeZoneInformation m_zone;
};

// Converts with the bias that holds now, not the one of the moment converted.
bool FileTimeToLocalFileTime(FileTime utc, FileTime* local);
bool LocalFileTimeToFileTime(FileTime local, FileTime* utc);
