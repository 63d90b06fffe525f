#include "interchange/rule_patterns.h"

#include "interchange/import_limits.h"
#include "records/occurrences.h"

#include <algorithm>

namespace
{
constexpr int kLastDayOfMonth = 31; // a pattern on that day shows on the last one of every month
constexpr int kMaxMonthsAhead = 12 * 400;

// The months that a rule visits: every so many, or named ones every so many years.
struct CMonths {
    int Interval = 1;
    std::vector<int> Named;
};

bool Contains(const std::vector<int>& list, int value)
{
    return std::find(list.begin(), list.end(), value) != list.end();
}

bool KeepsTimeOfStart(const CRecurRule& rule, qint64 start)
{
    const int second = SecondOfWall(start);
    const auto same = [](const std::vector<int>& list, int value) {
        return list.empty() || (list.size() == 1 && list.front() == value);
    };
    return same(rule.ByHour, second / 3600) && same(rule.ByMinute, second / 60 % 60) &&
           same(rule.BySecond, second % 60);
}

bool HasPlainDays(const CRecurRule& rule)
{
    return std::all_of(rule.ByDay.begin(), rule.ByDay.end(),
                       [](const CRuleDay& day) { return day.Ordinal == 0; });
}

int MaskOf(const CRecurRule& rule)
{
    int mask = 0;
    for (const CRuleDay& day : rule.ByDay)
        mask |= 1 << day.Weekday;
    return mask;
}

CRecurrencePattern MakePattern(int type, int interval, int firstDay)
{
    CRecurrencePattern pattern;
    pattern.Type = type;
    pattern.Interval = interval;
    pattern.PatternStart = firstDay;
    return pattern;
}

// ---- weeks

// Patterns count weeks from Sunday; the days before the rule's own week start belong to the
// Sunday week after, so with an interval they make a series of their own.
void AddWeekly(int mask, int interval, int weekStart, int startDay, CRulePatterns& result)
{
    const int week = startDay - (DayOfWeekOf(startDay) - weekStart + 7) % 7;
    const int early = mask & ((1 << weekStart) - 1);
    std::vector<int> groups{mask};
    if (interval > 1 && early != 0 && early != mask)
        groups = {mask & ~early, early};
    for (const int group : groups) {
        int day = startDay;
        while (!(group >> DayOfWeekOf(day) & 1) || (day - week) / 7 % interval != 0) {
            ++day;
            if ((day - week) / 7 % interval != 0) // on to the next week that counts
                day = week + ((day - week) / 7 / interval + 1) * interval * 7;
        }
        CRecurrencePattern pattern = MakePattern(PatternType::Weekly, interval, day);
        pattern.DayMask = group;
        result.Parts.push_back(pattern);
    }
}

// ---- months

int MonthStart(int month) // months since January of year 0
{
    return DayNumberOf(month / 12, month % 12 + 1, 1);
}

// The day of such a month, 0 when it has none.
int DayInMonth(const CRecurrencePattern& part, int month, bool lastDay)
{
    const int first = MonthStart(month), next = MonthStart(month + 1);
    if (part.Type == PatternType::MonthlyNth || part.Type == PatternType::YearlyNth)
        return OrdinalDay(first, part.DayMask, part.Instance);
    if (lastDay) // or the day, where the month has it
        return std::min(first + part.DayOfMonth, next) - 1;
    return first + part.DayOfMonth - 1 < next ? first + part.DayOfMonth - 1 : 0;
}

// Adds the part in each of the rule's months, from its first day on.
void AddInMonths(CRecurrencePattern part, bool lastDay, const CMonths& months, int startDay,
                 CRulePatterns& result)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(startDay, &year, &month, &day);
    const bool byDay = part.Type == PatternType::Monthly;
    const std::vector<int> named = months.Named.empty() ? std::vector<int>{month} : months.Named;
    part.Interval = months.Interval;
    if (!months.Named.empty())
        part.Type = byDay ? PatternType::Yearly : PatternType::YearlyNth;
    for (const int in : named) {
        const int first = year * 12 + in - 1;
        for (int m = first; m < first + kMaxMonthsAhead; m += part.Interval) {
            const int candidate = DayInMonth(part, m, lastDay);
            if (candidate == 0 || candidate < startDay)
                continue;
            part.PatternStart = candidate;
            result.Parts.push_back(part);
            const bool short_ =
                byDay && !lastDay && part.DayOfMonth > 28 && (months.Named.empty() || in == 2);
            result.ShowsOnShorterMonths = result.ShowsOnShorterMonths || short_;
            break;
        }
    }
}

bool AddDaysOfMonth(const std::vector<int>& days, const CMonths& months, int startDay, CRulePatterns& result)
{
    // Two days that meet on the last one of a shorter month would show twice.
    const auto late = [](int day) { return day >= 28 || day == -1; };
    const auto meets = [](int day) { return day > 28 || day == -1; };
    if (std::any_of(days.begin(), days.end(), meets) && std::count_if(days.begin(), days.end(), late) > 1)
        return false;
    for (const int day : days) {
        if (day < -1)
            return false;
        CRecurrencePattern part = MakePattern(PatternType::Monthly, 1, 0);
        part.DayOfMonth = day == -1 ? kLastDayOfMonth : day;
        AddInMonths(part, day == -1, months, startDay, result);
    }
    return true;
}

bool AddOrdinals(const std::vector<CRuleDay>& days, const CMonths& months, int startDay,
                 CRulePatterns& result)
{
    for (const CRuleDay& day : days) {
        // The fifth is not the last, and the fourth often is.
        if (day.Ordinal == 0 || day.Ordinal > 4 || day.Ordinal < -1)
            return false;
        if (day.Ordinal == 4 && std::find(days.begin(), days.end(), CRuleDay{day.Weekday, -1}) != days.end())
            return false;
        CRecurrencePattern part = MakePattern(PatternType::MonthlyNth, 1, 0);
        part.DayMask = 1 << day.Weekday;
        part.Instance = day.Ordinal == -1 ? 5 : day.Ordinal;
        AddInMonths(part, false, months, startDay, result);
    }
    return true;
}

bool AddPositions(const CRecurRule& rule, const CMonths& months, int startDay, CRulePatterns& result)
{
    if (Contains(rule.BySetPos, 4) && Contains(rule.BySetPos, -1))
        return false;
    for (const int position : rule.BySetPos) {
        if (position < -1 || position > 4)
            return false;
        CRecurrencePattern part = MakePattern(PatternType::MonthlyNth, 1, 0);
        part.DayMask = MaskOf(rule);
        part.Instance = position == -1 ? 5 : position;
        AddInMonths(part, false, months, startDay, result);
    }
    return true;
}

// The last one of 28 up to a day: that day, or the last one of a month that has it not.
int LastOfShorterMonths(const CRecurRule& rule)
{
    std::vector<int> days = rule.ByMonthDay;
    std::sort(days.begin(), days.end());
    const bool fits = rule.BySetPos == std::vector<int>{-1} &&
                      (days == std::vector<int>{28, 29} || days == std::vector<int>{28, 29, 30});
    return fits ? days.back() : 0;
}

bool AddMonthly(const CRecurRule& rule, const CMonths& months, int startDay, CRulePatterns& result)
{
    if (!rule.ByDay.empty() && !rule.ByMonthDay.empty())
        return false;
    if (rule.ByDay.empty()) {
        int year = 0, month = 0, day = 0;
        CivilOfDayNumber(startDay, &year, &month, &day);
        if (const int last = LastOfShorterMonths(rule); last != 0) {
            CRecurrencePattern part = MakePattern(PatternType::Monthly, 1, 0);
            part.DayOfMonth = last;
            AddInMonths(part, true, months, startDay, result);
            return true;
        }
        return rule.BySetPos.empty() &&
               AddDaysOfMonth(rule.ByMonthDay.empty() ? std::vector<int>{day} : rule.ByMonthDay, months,
                              startDay, result);
    }
    if (!HasPlainDays(rule))
        return rule.BySetPos.empty() && AddOrdinals(rule.ByDay, months, startDay, result);
    if (!rule.BySetPos.empty())
        return AddPositions(rule, months, startDay, result);
    if (!months.Named.empty() || months.Interval != 1)
        return false;
    AddWeekly(MaskOf(rule), 1, 0, startDay, result); // every such day of every month
    return true;
}

bool AddYearly(const CRecurRule& rule, int startDay, CRulePatterns& result)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(startDay, &year, &month, &day);
    if (rule.ByMonth.empty() && rule.HasDayParts()) {
        // Without months, ordinals count through the year; plain days and dates come in every month.
        if (rule.Interval != 1 || !HasPlainDays(rule) || !rule.BySetPos.empty())
            return false;
        return AddMonthly(rule, CMonths{}, startDay, result);
    }
    if (!rule.BySetPos.empty() && rule.ByMonth.size() > 1)
        return false;
    const CMonths months{rule.Interval * 12, rule.ByMonth.empty() ? std::vector<int>{month} : rule.ByMonth};
    return AddMonthly(rule, months, startDay, result);
}

bool AddParts(const CRecurRule& rule, int startDay, CRulePatterns& result)
{
    switch (rule.Frequency) {
    case RuleFrequency::Daily:
        if (!rule.ByMonth.empty() || !rule.ByMonthDay.empty() || !rule.BySetPos.empty())
            return false;
        if (rule.ByDay.empty())
            result.Parts.push_back(MakePattern(PatternType::Daily, rule.Interval, startDay));
        else if (rule.Interval == 1)
            AddWeekly(MaskOf(rule), 1, 0, startDay, result);
        else
            return false;
        return true;
    case RuleFrequency::Weekly:
        if (!rule.ByMonth.empty() || !rule.ByMonthDay.empty() || !rule.BySetPos.empty())
            return false;
        AddWeekly(rule.ByDay.empty() ? 1 << DayOfWeekOf(startDay) : MaskOf(rule), rule.Interval,
                  rule.WeekStart, startDay, result);
        return true;
    case RuleFrequency::Monthly:
        if (!rule.ByMonth.empty() && rule.Interval != 1)
            return false;
        return AddMonthly(rule, rule.ByMonth.empty() ? CMonths{rule.Interval, {}} : CMonths{12, rule.ByMonth},
                          startDay, result);
    case RuleFrequency::Yearly:
        return AddYearly(rule, startDay, result);
    }
    return false;
}
} // namespace

CRulePatterns PatternsOf(const CRecurRule& rule, qint64 start)
{
    constexpr int kMaxInterval = 1000; // years are counted in months, in 16 bits
    CRulePatterns result;
    if (!rule.ByYearDay.empty() || !rule.ByWeekNo.empty() || rule.Interval > kMaxInterval ||
        !KeepsTimeOfStart(rule, start) || !AddParts(rule, DayOfWall(start), result) ||
        result.Parts.size() > size_t(ImportLimit::SplitParts))
        return {};
    return result;
}
