#include "interchange/rule_text.h"

#include "interchange/import_limits.h"

#include <algorithm>

namespace
{
std::string DayList(int mask, const std::string& ordinal)
{
    static const char* const kDays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    std::string list;
    for (int i = 0; i < 7; ++i)
        if (mask >> i & 1)
            list += (list.empty() ? "" : ",") + ordinal + kDays[i];
    return list;
}

// A day that a month has not is its last one.
std::string MonthDayPart(int day, int month)
{
    day = std::clamp(day, 1, 31);
    const int shortest = month == 0 || month == 2                                ? 28
                         : month == 4 || month == 6 || month == 9 || month == 11 ? 30
                                                                                 : 31;
    if (day <= shortest)
        return ";BYMONTHDAY=" + std::to_string(day);
    if (day == 31)
        return ";BYMONTHDAY=-1";
    return day == 29 ? ";BYMONTHDAY=28,29;BYSETPOS=-1" : ";BYMONTHDAY=28,29,30;BYSETPOS=-1";
}

std::string OrdinalPart(const CRecurrencePattern& pattern)
{
    const int instance = std::clamp(pattern.Instance, 1, 5);
    const std::string ordinal = instance == 5 ? "-1" : std::to_string(instance);
    const int mask = pattern.DayMask & 0x7F;
    if ((mask & (mask - 1)) == 0)
        return ";BYDAY=" + DayList(mask, ordinal);
    return ";BYDAY=" + DayList(mask, {}) + ";BYSETPOS=" + ordinal;
}
} // namespace

std::string RuleTextOf(const CRecurrencePattern& pattern, const CTimeForm& form, int count)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayNumber(pattern.PatternStart), &year, &month, &day);
    const bool yearly = (pattern.Type == PatternType::Yearly || pattern.Type == PatternType::YearlyNth) &&
                        pattern.Interval % 12 == 0;
    const int interval = std::max(yearly ? pattern.Interval / 12 : pattern.Interval, 1);
    std::string rule, parts;
    switch (pattern.Type) {
    case PatternType::Daily:
        rule = "FREQ=DAILY";
        break;
    case PatternType::Weekly:
        rule = "FREQ=WEEKLY";
        parts = ";BYDAY=" + DayList(pattern.DayMask & 0x7F, {}) + (interval > 1 ? ";WKST=SU" : "");
        break;
    default: {
        const bool byDay = pattern.Type == PatternType::Monthly || pattern.Type == PatternType::Yearly;
        rule = yearly ? "FREQ=YEARLY" : "FREQ=MONTHLY";
        if (yearly)
            parts = ";BYMONTH=" + std::to_string(month);
        parts += byDay ? MonthDayPart(pattern.DayOfMonth, yearly ? month : 0) : OrdinalPart(pattern);
    }
    }
    if (interval > 1)
        rule += ";INTERVAL=" + std::to_string(interval);
    if (pattern.EndKind == PatternEndKind::Count)
        rule += ";COUNT=" + std::to_string(count > 0 ? count : std::max(pattern.Occurrences, 1));
    if (pattern.EndKind == PatternEndKind::Date) {
        const qint64 last = WallOfDay(DayNumber(pattern.PatternEnd)) + pattern.StartMinute * 60;
        if (form.Form == CTimeForm::Date)
            rule += ";UNTIL=" + DateText(last);
        else
            rule += ";UNTIL=" + (form.Zone ? MomentText(form.Zone->ToUtc(last)) + 'Z' : MomentText(last));
    }
    return rule + parts;
}
