// Occurrences of a pattern: pure arithmetic over days, no item and no store.
// Units: days are day numbers; times are in the pattern's own zone.
// Cost follows the range, never the pattern's age.
// Errors: none. A malformed pattern is read as the nearest sound one (an interval below 1 as 1, a
//   day or instance outside its range as the nearest); a weekday mask of 0 has no occurrence.
#pragma once
#include "records/recurrence_pattern.h"

struct COccurrence {
    DATE Start = 0, End = 0;
    int OriginalDay = 0;        // day on which the pattern puts it
    int ExceptionIndex = -1;    // into the pattern's Exceptions when it was changed
};

// The days of a pattern by their number: the rule alone, without end and exceptions. All of it is
// arithmetic; nothing walks from the start.
class CPatternDays
{
public:
    explicit CPatternDays(const CRecurrencePattern& pattern);
    int DayAt(qint64 index) const;          // of occurrence 0, 1, ..; kNoDay past the calendar's end
    qint64 IndexAtOrAfter(int day) const;   // of the first occurrence that is not before that day
    bool IsEmpty() const { return m_empty; }
    static constexpr int kNoDay = 2958466;  // the day after 31 December 9999

private:
    int MonthDay(qint64 month) const;
    int DayInWeek(int selected) const;

    bool m_empty = false;
    int m_type = 0, m_interval = 1, m_mask = 0, m_dayOfMonth = 1, m_instance = 1;
    int m_anchor = 0;       // day of the pattern's start
    qint64 m_month = 0;     // months since year 0 of the first candidate
    int m_week = 0;         // Sunday of the first week
    int m_perWeek = 0, m_skipped = 0; // selected days of a week, and of the first week before the start
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
    int Day() const { return m_day; }
    void Next();

private:
    void Place();

    CPatternDays m_days;
    qint64 m_index = 0;
    int m_lastDay = 0; // PatternEnd
    int m_startMinute = 0;
    qint64 m_minutes = 0; // of one occurrence
    int m_day = 0;
    DATE m_start = 0, m_end = 0;
};

// Appends those that touch firstDay..lastDay (both inclusive), exceptions applied, in order of start.
// A caller that shifts the result to another zone asks for one day more at both ends and tests again.
void ExpandPattern(const CRecurrencePattern& pattern, int firstDay, int lastDay, std::vector<COccurrence>& out);
// Whether the pattern itself (deletions not counted) has an occurrence on that day.
bool PatternHitsDay(const CRecurrencePattern& pattern, int day);
// These look at the rule alone: PatternEnd does not limit them.
// The day of the pattern's n-th occurrence (1-based), or of the last at or before `day`; 0 if none.
int DayOfOccurrence(const CRecurrencePattern& pattern, int n);
int LastOccurrenceUpTo(const CRecurrencePattern& pattern, int day);
// Number of occurrences from the first up to `day` inclusive.
int CountOccurrencesUpTo(const CRecurrencePattern& pattern, int day);

int NextWeekday(int day, int mask, int interval); // days to go forward, -1 for an empty mask
int PrevWeekday(int day, int mask, int interval);
int OrdinalDay(int anyDayOfMonth, int mask, int instance);
int DayInLaterMonth(int day, int target, int months);

// Minutes that turn a time of the pattern's zone into the device's, for that moment; 0 when both
// zones are the same.
int ZoneShift(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE start);
