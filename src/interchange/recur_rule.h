// A recurrence rule of a file in its parts, and the walk through what it says.
// Units: wall seconds of the series' own zone (file_moment.h); weekdays count from 0 Sunday.
// The walk is bounded: by a last day, and by a number of days tested that all rules of one file
//   share. No rule, however made, can hold it longer.
#pragma once
#include "interchange/file_moment.h"

#include <QString>
#include <optional>
#include <string_view>
#include <vector>

enum class RuleFrequency { Daily, Weekly, Monthly, Yearly };

struct CRuleDay {
    int Weekday = 0;
    int Ordinal = 0; // 0 every such day
    bool operator==(const CRuleDay&) const = default;
};

struct CRecurRule {
    RuleFrequency Frequency = RuleFrequency::Daily;
    int Interval = 1;
    int Count = 0; // 0 no count
    std::optional<CFileMoment> Until;
    int WeekStart = 1;
    std::vector<int> ByMonth, ByMonthDay, ByYearDay, ByWeekNo, BySetPos, ByHour, ByMinute, BySecond;
    std::vector<CRuleDay> ByDay;

    bool HasDayParts() const
    {
        return !ByDay.empty() || !ByMonthDay.empty() || !ByYearDay.empty() || !ByWeekNo.empty();
    }
};

// False with a reason when the rule cannot be used at all; a note when a part was passed over.
bool ParseRule(std::string_view text, CRecurRule* rule, QString* reason, QString* note);

class CRuleWalk
{
public:
    // `budget` counts down by each day tested.
    CRuleWalk(const CRecurRule& rule, qint64 start, qint64* budget);

    // The next occurrence at or after the start, on or before that day; COUNT and UNTIL play no part.
    bool Next(int lastDay, qint64* wall);
    bool IsExhausted() const { return *m_budget < 0; }

private:
    struct CDay;
    bool FillPeriod(int lastDay);
    void AddDays(int first, int last);
    bool Matches(int day) const;
    bool MatchesWeekday(const CDay& day) const;
    bool MatchesWeekNumber(const CDay& day) const;
    void TakePositions();

    CRecurRule m_rule;
    qint64 m_start;
    qint64* m_budget;
    std::vector<int> m_times;               // seconds of the day, in order
    int m_year = 0, m_month = 0, m_day = 0; // where the next period begins
    std::vector<qint64> m_set;              // of the period
    size_t m_next = 0;
};
