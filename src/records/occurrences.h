// Occurrences of a pattern: pure arithmetic over days, no item and no store.
// Units: days are day numbers; times are in the pattern's own zone.
// Cost follows the range, never the pattern's age.
#pragma once
#include "records/recurrence_pattern.h"

struct COccurrence {
    DATE Start = 0, End = 0;
    int OriginalDay = 0;        // day on which the pattern puts it
    int ExceptionIndex = -1;    // into the pattern's Exceptions when it was changed
};

// Steps through the pattern's own days, deletions and changes not applied.
class CPatternIterator
{
public:
    // Goes to the first occurrence that still runs on or after `firstDay`.
    CPatternIterator(const CRecurrencePattern& pattern, int firstDay);
    bool AtEnd() const;      // past PatternEnd, or no occurrence at all
    DATE Start() const { return m_start; }
    DATE End() const { return m_end; }
    void Next();

private:
    const CRecurrencePattern& m_pattern;
    DATE m_start = 0, m_end = 0;
    bool m_none = false;
};

// Appends those that touch firstDay..lastDay (both inclusive), exceptions applied, in order of start.
void ExpandPattern(const CRecurrencePattern& pattern, int firstDay, int lastDay, std::vector<COccurrence>& out);
// Whether the pattern itself (deletions not counted) has an occurrence on that day.
bool PatternHitsDay(const CRecurrencePattern& pattern, int day);
// The day of the pattern's n-th occurrence (1-based), or of the last at or before `day`; 0 if none.
int DayOfOccurrence(const CRecurrencePattern& pattern, int n);
int LastOccurrenceUpTo(const CRecurrencePattern& pattern, int day);
// Number of occurrences from the first up to `day` inclusive.
int CountOccurrencesUpTo(const CRecurrencePattern& pattern, int day);

int NextWeekday(int day, int mask, int interval); // days to go forward, -1 for an empty mask
int PrevWeekday(int day, int mask, int interval);
int OrdinalDay(int anyDayOfMonth, int mask, int instance);
int DayInLaterMonth(int day, int target, int months);

// Minutes that turn a time of the pattern's zone into the device's, for that moment.
int ZoneShift(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE start);
