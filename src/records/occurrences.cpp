#include "records/occurrences.h"

#include <algorithm>
#include <bit>

namespace
{
// No honest occurrence is longer; a longer one would make each range pay for ten years of starts.
constexpr qint64 kMaxMinutes = 3660 * 1440;

int Modulo(int value, int divisor)
{
    return (value % divisor + divisor) % divisor;
}

int MonthStart(qint64 month) // months since January of year 0
{
    return DayNumberOf(int(month / 12), int(month % 12) + 1, 1);
}

qint64 MonthOf(int day)
{
    int year = 0, month = 0, dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    return qint64(year) * 12 + month - 1;
}

// Whether the bit of a weekday, 0 Sunday, is in a mask.
bool Selected(int mask, int weekday)
{
    return (mask >> weekday & 1) != 0;
}

int BoundedDay(DATE date)
{
    return date > kDayOf1601 && date < CPatternDays::kNoDay ? DayNumber(date)
           : date >= 0                                      ? CPatternDays::kNoDay - 1
                                                            : kDayOf1601;
}

// Ordinal of a set of weekdays in a month: the n-th selected day, or the last one.
int OrdinalInMonth(int monthStart, int nextMonthStart, int mask, int instance)
{
    if (instance == 5) {
        int day = nextMonthStart - 1;
        while (!Selected(mask, DayOfWeekOf(day)))
            --day;
        return day;
    }
    int day = monthStart - 1;
    for (int i = 0; i < instance; ++i)
        day += NextWeekday(DayOfWeekOf(day), mask, 1);
    return day;
}
} // namespace

int NextWeekday(int day, int mask, int interval)
{
    for (int x = day + 1; x <= 6; ++x)
        if (Selected(mask, x))
            return x - day;
    for (int x = 0; x <= day; ++x)
        if (Selected(mask, x))
            return interval * 7 - (day - x);
    return -1;
}

int PrevWeekday(int day, int mask, int interval)
{
    for (int x = day - 1; x >= 0; --x)
        if (Selected(mask, x))
            return day - x;
    for (int x = 6; x >= day; --x)
        if (Selected(mask, x))
            return interval * 7 - (x - day);
    return -1;
}

int OrdinalDay(int anyDayOfMonth, int mask, int instance)
{
    const qint64 month = MonthOf(anyDayOfMonth);
    if ((mask & 0x7F) == 0)
        return MonthStart(month);
    return OrdinalInMonth(MonthStart(month), MonthStart(month + 1), mask, std::clamp(instance, 1, 5));
}

int DayInLaterMonth(int day, int target, int months)
{
    const qint64 month = MonthOf(day) + months;
    const int first = MonthStart(month);
    return std::min(first + std::max(target, 1) - 1, MonthStart(month + 1) - 1);
}

// ---- the rule as arithmetic

CPatternDays::CPatternDays(const CRecurrencePattern& pattern)
    : m_type(pattern.Type), m_interval(std::clamp(pattern.Interval, 1, 1000000)),
      m_mask(pattern.DayMask & 0x7F), m_dayOfMonth(std::clamp(pattern.DayOfMonth, 1, 31)),
      m_instance(std::clamp(pattern.Instance, 1, 5))
{
    const int startDays = std::clamp(pattern.StartMinute, 0, 0x7FFFFFFF) / 1440;
    m_anchor = std::min(BoundedDay(pattern.PatternStart) + startDays, kNoDay);
    switch (m_type) {
    case PatternType::Daily:
        break;
    case PatternType::Weekly:
        m_week = m_anchor - DayOfWeekOf(m_anchor);
        m_perWeek = std::popcount(unsigned(m_mask));
        m_skipped = std::popcount(unsigned(m_mask) & ((1u << DayOfWeekOf(m_anchor)) - 1));
        m_empty = m_mask == 0;
        break;
    case PatternType::MonthlyNth:
    case PatternType::YearlyNth:
        m_empty = m_mask == 0;
        [[fallthrough]];
    case PatternType::Monthly:
    case PatternType::Yearly:
        m_month = MonthOf(m_anchor);
        if (!m_empty && MonthDay(m_month) < m_anchor)
            m_month += m_interval;
        break;
    default:
        m_empty = true;
    }
    m_empty = m_empty || m_anchor >= kNoDay;
}

int CPatternDays::MonthDay(qint64 month) const
{
    const int first = MonthStart(month), next = MonthStart(month + 1);
    if (m_type == PatternType::MonthlyNth || m_type == PatternType::YearlyNth)
        return OrdinalInMonth(first, next, m_mask, m_instance);
    return std::min(first + m_dayOfMonth - 1, next - 1);
}

// The weekday of the n-th selected day of a week.
int CPatternDays::DayInWeek(int selected) const
{
    int weekday = 0;
    for (;; ++weekday)
        if (Selected(m_mask, weekday) && selected-- == 0)
            return weekday;
}

int CPatternDays::DayAt(qint64 index) const
{
    if (m_empty || index < 0 || index > kNoDay - kDayOf1601)
        return kNoDay;
    qint64 day = 0;
    switch (m_type) {
    case PatternType::Daily:
        day = m_anchor + index * m_interval;
        break;
    case PatternType::Weekly: {
        const qint64 n = index + m_skipped;
        day = m_week + n / m_perWeek * m_interval * 7 + DayInWeek(int(n % m_perWeek));
        break;
    }
    default: {
        const qint64 month = m_month + index * m_interval;
        day = month < 120000 ? MonthDay(month) : kNoDay;
    }
    }
    return int(std::min<qint64>(day, kNoDay));
}

qint64 CPatternDays::IndexAtOrAfter(int day) const
{
    if (m_empty || day <= m_anchor)
        return 0;
    day = std::min(day, kNoDay);
    if (m_type == PatternType::Daily)
        return (qint64(day) - m_anchor + m_interval - 1) / m_interval;
    if (m_type == PatternType::Weekly) {
        const qint64 week = (day - m_week) / (7 * m_interval);
        const qint64 into = day - (m_week + week * 7 * m_interval); // may lie beyond the selected week
        const unsigned before = into > 6 ? 0x7Fu : (1u << into) - 1;
        return week * m_perWeek + std::popcount(unsigned(m_mask) & before) - m_skipped;
    }
    const qint64 months = MonthOf(day) - m_month;
    if (months < 0)
        return 0;
    const qint64 index = months / m_interval;
    return MonthDay(m_month + index * m_interval) < day ? index + 1 : index;
}

// ---- occurrences

CPatternIterator::CPatternIterator(const CRecurrencePattern& pattern, int firstDay)
    : m_days(pattern), m_lastDay(BoundedDay(pattern.PatternEnd)),
      m_startMinute(Modulo(std::max(pattern.StartMinute, 0), 1440)),
      m_minutes(std::clamp<qint64>(qint64(pattern.EndMinute) - pattern.StartMinute, 0, kMaxMinutes))
{
    const qint64 days = (m_startMinute + m_minutes) / 1440; // that one occurrence reaches over
    m_index = m_days.IndexAtOrAfter(int(std::max<qint64>(qint64(firstDay) - days, kDayOf1601)));
    Place();
}

void CPatternIterator::Place()
{
    m_day = m_days.DayAt(m_index);
    const qint64 end = m_startMinute + m_minutes;
    const auto dateOf = [](int day, qint64 minute) {
        const double time = double(minute) * 60.0 / 86400.0;
        return day >= 0 ? day + time : day - time;
    };
    m_start = dateOf(m_day, m_startMinute);
    m_end = dateOf(int(m_day + end / 1440), end % 1440);
}

bool CPatternIterator::AtEnd() const
{
    return m_day > m_lastDay || m_day >= CPatternDays::kNoDay;
}

void CPatternIterator::Next()
{
    ++m_index;
    Place();
}

void ExpandPattern(const CRecurrencePattern& pattern, int firstDay, int lastDay,
                   std::vector<COccurrence>& out)
{
    const size_t before = out.size();
    auto exception = pattern.Exceptions.begin();
    for (CPatternIterator it(pattern, firstDay); !it.AtEnd() && it.Day() <= lastDay; it.Next()) {
        exception =
            std::lower_bound(exception, pattern.Exceptions.end(), it.Day(),
                             [](const CRecurrenceException& e, int day) { return e.OriginalDay < day; });
        if (exception == pattern.Exceptions.end() || exception->OriginalDay != it.Day())
            out.push_back({it.Start(), it.End(), it.Day(), -1});
    }
    bool moved = false;
    for (size_t i = 0; i < pattern.Exceptions.size(); ++i) {
        const CRecurrenceException& e = pattern.Exceptions[i];
        // One that ends before it starts still shows on its first day.
        if (e.Deleted || DayNumber(e.Start) > lastDay ||
            std::max(DayNumber(e.End), DayNumber(e.Start)) < firstDay)
            continue;
        out.push_back({e.Start, e.End, e.OriginalDay, int(i)});
        moved = true;
    }
    if (moved)
        std::stable_sort(out.begin() + qsizetype(before), out.end(),
                         [](const COccurrence& a, const COccurrence& b) { return a.Start < b.Start; });
}

bool PatternHitsDay(const CRecurrencePattern& pattern, int day)
{
    const CPatternDays days(pattern);
    return day <= BoundedDay(pattern.PatternEnd) && day < CPatternDays::kNoDay &&
           days.DayAt(days.IndexAtOrAfter(day)) == day;
}

int DayOfOccurrence(const CRecurrencePattern& pattern, int n)
{
    const int day = CPatternDays(pattern).DayAt(qint64(n) - 1);
    return day < CPatternDays::kNoDay ? day : 0;
}

int LastOccurrenceUpTo(const CRecurrencePattern& pattern, int day)
{
    const int count = CountOccurrencesUpTo(pattern, day);
    return count > 0 ? DayOfOccurrence(pattern, count) : 0;
}

int CountOccurrencesUpTo(const CRecurrencePattern& pattern, int day)
{
    const CPatternDays days(pattern);
    if (days.IsEmpty() || day < days.DayAt(0))
        return 0;
    return int(days.IndexAtOrAfter(std::min(day, CPatternDays::kNoDay - 1) + 1));
}

int ZoneShift(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE start)
{
    const TimeZoneInformation zone = pattern.Zone();
    if (zone == device)
        return 0;
    // By way of UTC, so that either zone's own change of the clocks is met at its own moment.
    const DATE local = UtcToLocal(LocalToUtc(start, zone), device);
    return int(std::lround((SignedOf(local) - SignedOf(start)) * 1440.0));
}
