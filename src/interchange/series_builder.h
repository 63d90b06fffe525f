// What becomes of one event's dates: the records it needs.
// Units: wall seconds of the event's own zone; all-day events are midnights, the end exclusive.
// Errors: what cannot be held is left out and told; something always remains unless every
//   occurrence is excluded.
#pragma once
#include "interchange/import_report.h"
#include "interchange/recur_rule.h"
#include "records/recurrence_pattern.h"

#include <string>
#include <vector>

struct CListedDate {
    qint64 Wall = 0;
    qint64 End = 0;      // of a period, else 0
    bool IsDate = false; // takes the whole day
};

struct CEventDates {
    qint64 Start = 0, End = 0;
    bool AllDay = false;
    std::optional<CRecurRule> Rule; // UNTIL already in the event's zone
    std::vector<CListedDate> Excluded, Added;
    int Line = 0; // of the rule, for what is told
};

struct CPlannedRecord {
    // Empty for the item itself; "P2", "P3".. further series of one rule; "S" and a date for single
    // occurrences; "T" and a date for what follows a change of all later ones; "R" and a date for
    // a changed occurrence that stands alone.
    QString OccurrenceId;
    bool IsSeries = false;
    CRecurrencePattern Pattern; // of a series, zone still to be put
    qint64 Start = 0, End = 0;  // of a single item
};

struct CSeriesPlan {
    std::vector<CPlannedRecord> Records; // the first one leads: it holds what is kept
    bool KeepsRule = false;              // the records alone do not give the rule back
    bool KeepsExcluded = false;          // nor the excluded dates
};

class CSeriesBuilder
{
public:
    CSeriesBuilder(int currentYear, qint64* budget, CImportReport& report)
        : m_currentYear(currentYear), m_budget(budget), m_report(report)
    {
    }
    CSeriesPlan Build(const CEventDates& dates);

private:
    void BuildRule(const CEventDates& dates, CSeriesPlan& plan);
    void AddSeries(const CEventDates& dates, const std::vector<CRecurrencePattern>& parts, bool exact,
                   CSeriesPlan& plan);
    void AddOccurrences(const CEventDates& dates, CSeriesPlan& plan);
    void AddListed(const CEventDates& dates, CSeriesPlan& plan);
    int LastDayByCount(const CEventDates& dates);
    void PutDeletions(const CEventDates& dates, CRecurrencePattern& pattern);
    bool IsExcluded(qint64 wall) const;

    int m_currentYear;
    qint64* m_budget;
    CImportReport& m_report;
    // Of the event being built: excluded moments and days, sorted, and how many deletions took.
    std::vector<qint64> m_excludedWalls;
    std::vector<int> m_excludedDays;
    size_t m_deleted = 0;
    bool m_toldDeletions = false;
};

// The names of occurrences: 20260310 for a day, 20260310T090000 for a moment.
QString OccurrenceName(qint64 wall, bool allDay);
