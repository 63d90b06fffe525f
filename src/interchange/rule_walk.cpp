// The walk of recur_rule.h: period by period, each day put to every part of the rule.
#include "interchange/import_limits.h"
#include "interchange/recur_rule.h"

#include <algorithm>

struct CRuleWalk::CDay {
    int Year = 0, Month = 0, Day = 0;
    int Weekday = 0;
    int MonthLength = 0, YearDay = 0, YearLength = 0;
    int Number = 0;
};

namespace
{
bool Contains(const std::vector<int>& list, int value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

int LengthOfYear(int year)
{
    return DayNumberOf(year + 1, 1, 1) - DayNumberOf(year, 1, 1);
}
int MonthStart(int year, int month)
{
    return DayNumberOf(year + (month - 1) / 12, (month - 1) % 12 + 1, 1);
}

// The first day of week 1: the week that holds 4 January.
int WeekOneOf(int year, int weekStart)
{
    const int fourth = DayNumberOf(year, 1, 4);
    return fourth - (DayOfWeekOf(fourth) - weekStart + 7) % 7;
}
} // namespace

CRuleWalk::CRuleWalk(const CRecurRule& rule, qint64 start, qint64* budget)
    : m_rule(rule), m_start(start), m_budget(budget)
{
    const int day = DayOfWall(start);
    CivilOfDayNumber(day, &m_year, &m_month, &m_day);
    // What a rule leaves open, its start says.
    if (!m_rule.HasDayParts()) {
        if (m_rule.Frequency == RuleFrequency::Weekly)
            m_rule.ByDay = {{DayOfWeekOf(day), 0}};
        else if (m_rule.Frequency != RuleFrequency::Daily)
            m_rule.ByMonthDay = {m_day};
        if (m_rule.Frequency == RuleFrequency::Yearly && m_rule.ByMonth.empty())
            m_rule.ByMonth = {m_month};
    } else if (!m_rule.ByWeekNo.empty() && m_rule.ByDay.empty() && m_rule.ByMonthDay.empty() &&
               m_rule.ByYearDay.empty()) {
        m_rule.ByDay = {{DayOfWeekOf(day), 0}};
    }
    const int second = SecondOfWall(start);
    const auto orElse = [](const std::vector<int>& list, int value) {
        return list.empty() ? std::vector<int>{value} : list;
    };
    for (const int hour : orElse(m_rule.ByHour, second / 3600))
        for (const int minute : orElse(m_rule.ByMinute, second / 60 % 60))
            for (const int s : orElse(m_rule.BySecond, second % 60))
                m_times.push_back(hour * 3600 + minute * 60 + std::min(s, 59));
    std::sort(m_times.begin(), m_times.end());
    // A week begins where the rule says.
    if (m_rule.Frequency == RuleFrequency::Weekly)
        CivilOfDayNumber(day - (DayOfWeekOf(day) - m_rule.WeekStart + 7) % 7, &m_year, &m_month, &m_day);
}

bool CRuleWalk::Next(int lastDay, qint64* wall)
{
    for (;;) {
        while (m_next < m_set.size()) {
            const qint64 candidate = m_set[m_next];
            if (DayOfWall(candidate) > lastDay)
                return false;
            ++m_next;
            if (candidate >= m_start) {
                *wall = candidate;
                return true;
            }
        }
        if (*m_budget < 0 || !FillPeriod(lastDay))
            return false;
    }
}

// Computes the next period and moves on; false when it begins after that day.
bool CRuleWalk::FillPeriod(int lastDay)
{
    m_set.clear();
    m_next = 0;
    const int first = DayNumberOf(m_year, m_month, m_day);
    int begin = first, end = first, next = first;
    switch (m_rule.Frequency) {
    case RuleFrequency::Daily:
        next = first + std::min(m_rule.Interval, 1 << 22);
        break;
    case RuleFrequency::Weekly:
        end = first + 6;
        next = first + 7 * std::min(m_rule.Interval, 1 << 19);
        break;
    case RuleFrequency::Monthly:
        begin = MonthStart(m_year, m_month);
        end = MonthStart(m_year, m_month + 1) - 1;
        next = MonthStart(m_year, m_month + std::min(m_rule.Interval, 1 << 17));
        break;
    case RuleFrequency::Yearly:
        begin = DayNumberOf(m_year, 1, 1);
        end = DayNumberOf(m_year + 1, 1, 1) - 1;
        next = DayNumberOf(m_year + std::min(m_rule.Interval, 1 << 13), 1, 1);
        break;
    }
    if (begin > lastDay)
        return false;
    AddDays(begin, end);
    TakePositions();
    CivilOfDayNumber(next, &m_year, &m_month, &m_day);
    return true;
}

void CRuleWalk::AddDays(int first, int last)
{
    --*m_budget;
    for (int day = first; day <= last; ++day) {
        if (!m_rule.ByMonth.empty()) { // whole months can be passed over
            int year = 0, month = 0, inMonth = 0;
            CivilOfDayNumber(day, &year, &month, &inMonth);
            if (!Contains(m_rule.ByMonth, month)) {
                day = MonthStart(year, month + 1) - 1;
                continue;
            }
        }
        --*m_budget;
        if (Matches(day))
            for (const int time : m_times)
                m_set.push_back(WallOfDay(day) + time);
    }
}

bool CRuleWalk::Matches(int number) const
{
    CDay day;
    day.Number = number;
    day.Weekday = DayOfWeekOf(number);
    CivilOfDayNumber(number, &day.Year, &day.Month, &day.Day);
    day.MonthLength = MonthStart(day.Year, day.Month + 1) - MonthStart(day.Year, day.Month);
    day.YearDay = number - DayNumberOf(day.Year, 1, 1) + 1;
    day.YearLength = LengthOfYear(day.Year);
    if (!m_rule.ByMonthDay.empty() && !Contains(m_rule.ByMonthDay, day.Day) &&
        !Contains(m_rule.ByMonthDay, day.Day - day.MonthLength - 1))
        return false;
    if (!m_rule.ByYearDay.empty() && !Contains(m_rule.ByYearDay, day.YearDay) &&
        !Contains(m_rule.ByYearDay, day.YearDay - day.YearLength - 1))
        return false;
    return MatchesWeekday(day) && MatchesWeekNumber(day);
}

bool CRuleWalk::MatchesWeekday(const CDay& day) const
{
    if (m_rule.ByDay.empty())
        return true;
    const bool inMonth = m_rule.Frequency == RuleFrequency::Monthly || !m_rule.ByMonth.empty();
    const bool counts =
        (m_rule.Frequency == RuleFrequency::Monthly || m_rule.Frequency == RuleFrequency::Yearly) &&
        m_rule.ByWeekNo.empty();
    const int index = inMonth ? day.Day : day.YearDay;
    const int length = inMonth ? day.MonthLength : day.YearLength;
    return std::any_of(m_rule.ByDay.begin(), m_rule.ByDay.end(), [&](const CRuleDay& wanted) {
        if (wanted.Weekday != day.Weekday)
            return false;
        return !counts || wanted.Ordinal == 0 || wanted.Ordinal == (index - 1) / 7 + 1 ||
               wanted.Ordinal == -((length - index) / 7 + 1);
    });
}

bool CRuleWalk::MatchesWeekNumber(const CDay& day) const
{
    if (m_rule.ByWeekNo.empty())
        return true;
    int year = day.Year + 1;
    while (WeekOneOf(year, m_rule.WeekStart) > day.Number)
        --year;
    const int first = WeekOneOf(year, m_rule.WeekStart);
    const int week = (day.Number - first) / 7 + 1;
    const int weeks = (WeekOneOf(year + 1, m_rule.WeekStart) - first) / 7;
    return Contains(m_rule.ByWeekNo, week) || Contains(m_rule.ByWeekNo, week - weeks - 1);
}

// BYSETPOS picks from the period's set.
void CRuleWalk::TakePositions()
{
    if (m_rule.BySetPos.empty())
        return;
    std::vector<qint64> picked;
    const int size = int(m_set.size());
    for (int i = 0; i < size; ++i)
        if (Contains(m_rule.BySetPos, i + 1) || Contains(m_rule.BySetPos, i - size))
            picked.push_back(m_set[size_t(i)]);
    m_set = std::move(picked);
}
