// What the model shows of a series, in the device's local time, and the way back into the
// pattern's own zone. Pure arithmetic, no store.
// Units: days are day numbers, minutes count from midnight.
#pragma once
#include "platform/status.h"
#include "records/recurrence_pattern.h"

constexpr int kFarDay = 949997; // 31 December 4500: the end of a series that never ends

struct CSeriesRows {
    int Type = PatternType::Weekly;
    int Interval = 1;
    int Mask = 0, DayOfMonth = 0, Instance = 0;
    int Month = 0; // of a yearly type, when it is not the start's
    int StartDay = 0, StartMinute = 0;
    int Minutes = 0; // of one occurrence
    int EndKind = PatternEndKind::Never;
    int EndDay = 0, Occurrences = 0;

    bool operator==(const CSeriesRows&) const = default;
    bool IsYearly() const { return Type == PatternType::Yearly || Type == PatternType::YearlyNth; }
    DATE Start() const;
    DATE End() const;
    void SetStart(DATE date);
    void SetStartDay(DATE date);
    void SetEnd(DATE date); // before the start: no duration
};

bool IsDate(DATE date); // of the calendar that is stored: 1601 to 4500
DATE PlusMinutes(DATE date, qint64 minutes);
qint64 MinutesBetween(DATE from, DATE to);
DATE ToWholeMinute(DATE date);

// A moment of the pattern's zone in the device's, and back.
DATE ToDevice(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE date);
DATE ToPatternZone(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE date);

CSeriesRows RowsOf(const CRecurrencePattern& pattern, bool allDay, const TimeZoneInformation& device);
// Whether both tell the same series: fields that the type does not use are not compared, and an
// end on the day of the last counted occurrence is that count.
bool SameSeries(const CSeriesRows& rows, const CSeriesRows& base);
// Turns the rows back into the pattern's zone; exceptions stay as they are.
void ApplyRows(const CSeriesRows& rows, bool allDay, const TimeZoneInformation& device,
               CRecurrencePattern& pattern);

// What is stored: fields in their range, the start on the first occurrence, the end computed.
CStatus NormalizePattern(CRecurrencePattern& pattern, bool allDay);
// After a change of the pattern: drops the exceptions on days that it no longer has; an occurrence
// that was changed but not moved follows the series' new times.
void KeepExceptions(const CRecurrencePattern& old, CRecurrencePattern& pattern);
