#include "records/recurrence_pattern.h"

TimeZoneInformation CRecurrencePattern::Zone() const
{
    TimeZoneInformation zone;
    zone.Bias = ZoneBias;
    zone.StandardBias = ZoneStandardBias;
    zone.DaylightBias = ZoneDaylightBias;
    zone.StandardDate = ZoneStandardDate;
    zone.DaylightDate = ZoneDaylightDate;
    return zone;
}

void CRecurrencePattern::SetZone(const TimeZoneInformation& zone)
{
    ZoneBias = qint16(zone.Bias);
    ZoneStandardBias = qint16(zone.StandardBias);
    ZoneDaylightBias = qint16(zone.DaylightBias);
    ZoneStandardDate = zone.StandardDate;
    ZoneDaylightDate = zone.DaylightDate;
}
