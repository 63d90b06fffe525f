#include "interchange/recur_rule.h"

#include "interchange/component_reader.h"
#include "interchange/import_limits.h"

#include <algorithm>
#include <libical/ical.h>
#include <mutex>
#include <string>

namespace
{
constexpr int kMaxTimesPerDay = 24;

bool IsOneOf(std::string_view name)
{
    static constexpr std::string_view kParts[] = {
        "FREQ",   "INTERVAL",   "COUNT",     "UNTIL",    "WKST",     "BYMONTH",  "BYDAY",
        "BYHOUR", "BYMONTHDAY", "BYYEARDAY", "BYWEEKNO", "BYSETPOS", "BYMINUTE", "BYSECOND"};
    return std::any_of(std::begin(kParts), std::end(kParts),
                       [&](std::string_view part) { return part == name; });
}

// A number of at most nine digits; 0 when it is none.
int SmallNumber(std::string_view text)
{
    if (text.empty() || text.size() > 9)
        return 0;
    int number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return 0;
        number = number * 10 + (c - '0');
    }
    return number;
}

struct CRuleText {
    std::string Clean; // what the library is given
    std::string Ignored;
};

// Takes the parts apart; those that the library is not to judge are read here.
bool SplitRule(std::string_view text, CRecurRule* rule, CRuleText* out, QString* reason)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find(';'), text.size());
        std::string part = AsciiUpper(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        part.erase(std::remove(part.begin(), part.end(), ' '), part.end());
        if (part.empty())
            continue;
        const size_t equals = part.find('=');
        const std::string name = part.substr(0, equals);
        if (equals == std::string::npos || !IsOneOf(name)) {
            // A calendar or a leap rule changes what the rest means.
            if (name == "RSCALE" && part != "RSCALE=GREGORIAN") {
                *reason = QStringLiteral("its calendar is not known");
                return false;
            }
            if (name != "RSCALE" && name != "SKIP")
                out->Ignored += (out->Ignored.empty() ? "" : ";") + part.substr(0, 60);
            continue;
        }
        const std::string_view value = std::string_view(part).substr(equals + 1);
        if (name == "UNTIL") {
            CFileMoment until;
            if (!ParseMoment(value, &until)) {
                *reason = QStringLiteral("its end is no date");
                return false;
            }
            rule->Until = until;
            continue;
        }
        if (name == "INTERVAL" || name == "COUNT") {
            const int number = SmallNumber(value);
            if (number < 1) {
                *reason =
                    QStringLiteral("%1 is out of range").arg(QString::fromStdString(part.substr(0, 60)));
                return false;
            }
            (name == "COUNT" ? rule->Count : rule->Interval) = number;
            continue;
        }
        out->Clean += (out->Clean.empty() ? "" : ";") + part;
    }
    return true;
}

std::vector<int> ListOf(const short* values, int size)
{
    std::vector<int> list;
    for (int i = 0; i < size && values[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i)
        list.push_back(values[i]);
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    return list;
}

bool InRange(const std::vector<int>& list, int low, int high, bool negativeToo)
{
    return std::all_of(list.begin(), list.end(), [&](int value) {
        return (value >= low && value <= high) || (negativeToo && value <= -1 && value >= -high);
    });
}

// The library's reading, and whether every value makes sense.
bool TakeLibraryRule(const std::string& clean, CRecurRule* rule)
{
    icalerror_clear_errno();
    const icalrecurrencetype parsed = icalrecurrencetype_from_string(clean.c_str());
    free(parsed.rscale);
    switch (parsed.freq) {
    case ICAL_DAILY_RECURRENCE:
        rule->Frequency = RuleFrequency::Daily;
        break;
    case ICAL_WEEKLY_RECURRENCE:
        rule->Frequency = RuleFrequency::Weekly;
        break;
    case ICAL_MONTHLY_RECURRENCE:
        rule->Frequency = RuleFrequency::Monthly;
        break;
    case ICAL_YEARLY_RECURRENCE:
        rule->Frequency = RuleFrequency::Yearly;
        break;
    default:
        return false;
    }
    if (parsed.week_start != ICAL_NO_WEEKDAY)
        rule->WeekStart = int(parsed.week_start) - 1;
    rule->ByMonth = ListOf(parsed.by_month, ICAL_BY_MONTH_SIZE);
    rule->ByMonthDay = ListOf(parsed.by_month_day, ICAL_BY_MONTHDAY_SIZE);
    rule->ByYearDay = ListOf(parsed.by_year_day, ICAL_BY_YEARDAY_SIZE);
    rule->ByWeekNo = ListOf(parsed.by_week_no, ICAL_BY_WEEKNO_SIZE);
    rule->BySetPos = ListOf(parsed.by_set_pos, ICAL_BY_SETPOS_SIZE);
    rule->ByHour = ListOf(parsed.by_hour, ICAL_BY_HOUR_SIZE);
    rule->ByMinute = ListOf(parsed.by_minute, ICAL_BY_MINUTE_SIZE);
    rule->BySecond = ListOf(parsed.by_second, ICAL_BY_SECOND_SIZE);
    for (int i = 0; i < ICAL_BY_DAY_SIZE && parsed.by_day[i] != ICAL_RECURRENCE_ARRAY_MAX; ++i) {
        const CRuleDay day{int(icalrecurrencetype_day_day_of_week(parsed.by_day[i])) - 1,
                           icalrecurrencetype_day_position(parsed.by_day[i])};
        if (day.Weekday < 0 || day.Weekday > 6 || day.Ordinal > 53 || day.Ordinal < -53)
            return false;
        if (std::find(rule->ByDay.begin(), rule->ByDay.end(), day) == rule->ByDay.end())
            rule->ByDay.push_back(day);
    }
    return InRange(rule->ByMonth, 1, 12, false) && InRange(rule->ByMonthDay, 1, 31, true) &&
           InRange(rule->ByYearDay, 1, 366, true) && InRange(rule->ByWeekNo, 1, 53, true) &&
           InRange(rule->BySetPos, 1, 366, true) && InRange(rule->ByHour, 0, 23, false) &&
           InRange(rule->ByMinute, 0, 59, false) && InRange(rule->BySecond, 0, 60, false);
}

// Every BYxxx that stands in the text must have arrived; the library drops what it cannot read.
bool ArrivedWhole(const std::string& clean, const CRecurRule& rule)
{
    const auto has = [&](const char* part, bool arrived) {
        const size_t at = (";" + clean).find(std::string(";") + part + "=");
        return at == std::string::npos || arrived;
    };
    return has("BYMONTH", !rule.ByMonth.empty()) && has("BYMONTHDAY", !rule.ByMonthDay.empty()) &&
           has("BYYEARDAY", !rule.ByYearDay.empty()) && has("BYWEEKNO", !rule.ByWeekNo.empty()) &&
           has("BYSETPOS", !rule.BySetPos.empty()) && has("BYDAY", !rule.ByDay.empty()) &&
           has("BYHOUR", !rule.ByHour.empty()) && has("BYMINUTE", !rule.ByMinute.empty()) &&
           has("BYSECOND", !rule.BySecond.empty());
}
} // namespace

bool ParseRule(std::string_view text, CRecurRule* rule, QString* reason, QString* note)
{
    static std::once_flag once;
    // A fault of the file must not end the program, nor print.
    std::call_once(once, [] { icalerror_set_errors_are_fatal(0); });
    if (text.size() > size_t(ImportLimit::RuleBytes)) {
        *reason = QStringLiteral("it is too long");
        return false;
    }
    CRecurRule result;
    CRuleText split;
    if (!SplitRule(text, &result, &split, reason))
        return false;
    for (const char* below : {"FREQ=HOURLY", "FREQ=MINUTELY", "FREQ=SECONDLY"}) {
        if (split.Clean.find(below) != std::string::npos) {
            *reason = QStringLiteral("it repeats within a day");
            return false;
        }
    }
    if (!TakeLibraryRule(split.Clean, &result) || !ArrivedWhole(split.Clean, result)) {
        *reason = QStringLiteral("it cannot be read");
        return false;
    }
    const auto number = [](const std::vector<int>& list) { return std::max<size_t>(list.size(), 1); };
    if (number(result.ByHour) * number(result.ByMinute) * number(result.BySecond) > kMaxTimesPerDay) {
        *reason = QStringLiteral("it repeats too often within a day");
        return false;
    }
    if (!split.Ignored.empty())
        *note = QStringLiteral("part of the rule not known: %1").arg(QString::fromStdString(split.Ignored));
    *rule = std::move(result);
    return true;
}
