#include "object_model/series_rows.h"

#include "records/occurrences.h"

#include <algorithm>

namespace
{
constexpr int kMaxCount = 65535; // the stored count has 16 bits
constexpr size_t kMaxExceptions = 65535;
constexpr qint64 kTicksPerMinute = 600000000;

int MinuteOfDay(DATE date)
{
    return int(MinutesBetween(DayNumber(date), date));
}

int RotateMask(int mask, int days)
{
    const int by = (days % 7 + 7) % 7;
    mask &= 0x7F;
    return (mask << by | mask >> (7 - by)) & 0x7F;
}

// A day of the month seen from a zone where it is a day earlier or later; 31 is the last one.
int ShiftDayOfMonth(int day, int days)
{
    if (days == 0)
        return day;
    const int shifted = day + days;
    return shifted < 1 ? 31 : shifted > 31 ? 1 : shifted;
}

// Clears what the type does not use.
template <typename Fields> void ClearUnused(Fields& fields, int& mask)
{
    const int type = fields.Type;
    if (type != PatternType::Weekly && type != PatternType::MonthlyNth && type != PatternType::YearlyNth)
        mask = 0;
    if (type != PatternType::Monthly && type != PatternType::Yearly)
        fields.DayOfMonth = 0;
    if (type != PatternType::MonthlyNth && type != PatternType::YearlyNth)
        fields.Instance = 0;
}

int FirstDayInMonth(int startDay, int month)
{
    int year = 0, startMonth = 0, day = 0;
    CivilOfDayNumber(startDay, &year, &startMonth, &day);
    if (month < 1 || month > 12 || month == startMonth)
        return startDay;
    return DayNumberOf(month > startMonth ? year : year + 1, month, 1);
}

void ComputeEnd(CRecurrencePattern& pattern, int first)
{
    int last = kFarDay + 1;
    if (pattern.EndKind == PatternEndKind::Count) {
        pattern.Occurrences = std::max(pattern.Occurrences, 1);
        const int day = DayOfOccurrence(pattern, pattern.Occurrences);
        last = day > 0 ? day : last;
        if (pattern.Occurrences > kMaxCount)
            pattern.EndKind = PatternEndKind::Date;
    } else if (pattern.EndKind == PatternEndKind::Date && pattern.PatternEnd != NO_DATE) {
        last = std::max(LastOccurrenceUpTo(pattern, std::min(DayNumber(pattern.PatternEnd), kFarDay)), first);
    }
    if (last > kFarDay) {
        pattern.EndKind = PatternEndKind::Never;
        last = kFarDay;
    }
    pattern.PatternEnd = last;
    if (pattern.EndKind == PatternEndKind::Date)
        pattern.Occurrences = CountOccurrencesUpTo(pattern, last);
    pattern.Occurrences = std::clamp(pattern.Occurrences, 1, kMaxCount);
}
} // namespace

bool IsDate(DATE date)
{
    return date > kDayOf1601 && date < kFarDay;
}
DATE PlusMinutes(DATE date, qint64 minutes)
{
    return DateOfFileTime(FileTimeOfDate(date) + minutes * kTicksPerMinute);
}
qint64 MinutesBetween(DATE from, DATE to)
{
    return (FileTimeOfDate(to) - FileTimeOfDate(from)) / kTicksPerMinute;
}
DATE ToWholeMinute(DATE date)
{
    const FileTime ticks = FileTimeOfDate(date);
    return DateOfFileTime(ticks - ticks % kTicksPerMinute);
}

// ---- rows

DATE CSeriesRows::Start() const
{
    return PlusMinutes(StartDay, StartMinute);
}
DATE CSeriesRows::End() const
{
    return PlusMinutes(StartDay, qint64(StartMinute) + Minutes);
}

void CSeriesRows::SetStartDay(DATE date)
{
    StartDay = IsDate(date) ? DayNumber(date) : kFarDay;
}

void CSeriesRows::SetStart(DATE date)
{
    SetStartDay(date);
    if (!IsDate(date))
        return; // refused when it is saved
    StartDay = DayNumber(date);
    StartMinute = MinuteOfDay(date);
}

void CSeriesRows::SetEnd(DATE date)
{
    Minutes = int(std::clamp<qint64>(MinutesBetween(Start(), date), 0, 0x7FFFFFFF - 1440));
}

DATE ToDevice(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE date)
{
    const TimeZoneInformation zone = pattern.Zone();
    return zone == device ? date : UtcToLocal(LocalToUtc(date, zone), device);
}

DATE ToPatternZone(const CRecurrencePattern& pattern, const TimeZoneInformation& device, DATE date)
{
    const TimeZoneInformation zone = pattern.Zone();
    return zone == device ? date : UtcToLocal(LocalToUtc(date, device), zone);
}

CSeriesRows RowsOf(const CRecurrencePattern& pattern, bool allDay, const TimeZoneInformation& device)
{
    CSeriesRows rows;
    int first = DayOfOccurrence(pattern, 1);
    if (first == 0)
        first = DayNumber(pattern.PatternStart);
    const DATE start = PlusMinutes(first, std::max(pattern.StartMinute, 0) % 1440);
    rows.SetStart(allDay ? start : ToDevice(pattern, device, start));
    const int days = rows.StartDay - first;
    rows.Minutes =
        int(std::clamp<qint64>(qint64(pattern.EndMinute) - pattern.StartMinute, 0, 0x7FFFFFFF - 1440));
    rows.Type = pattern.Type;
    rows.Interval = pattern.Interval;
    rows.Mask = RotateMask(pattern.DayMask, days);
    rows.DayOfMonth = ShiftDayOfMonth(pattern.DayOfMonth, days);
    rows.Instance = pattern.Instance;
    rows.EndKind = pattern.EndKind;
    rows.EndDay = pattern.PatternEnd == NO_DATE ? 0 : DayNumber(pattern.PatternEnd) + days;
    rows.Occurrences = pattern.Occurrences;
    return rows;
}

bool SameSeries(const CSeriesRows& rows, const CSeriesRows& base)
{
    CSeriesRows a = rows, b = base;
    ClearUnused(a, a.Mask);
    ClearUnused(b, b.Mask);
    if (a.EndKind == PatternEndKind::Date && b.EndKind == PatternEndKind::Count && a.EndDay == b.EndDay)
        a.EndKind = b.EndKind, a.Occurrences = b.Occurrences;
    for (CSeriesRows* r : {&a, &b}) {
        if (r->EndKind != PatternEndKind::Date)
            r->EndDay = 0;
        if (r->EndKind != PatternEndKind::Count)
            r->Occurrences = 0;
        if (!r->IsYearly())
            r->Month = 0;
    }
    return a == b;
}

void ApplyRows(const CSeriesRows& rows, bool allDay, const TimeZoneInformation& device,
               CRecurrencePattern& pattern)
{
    CSeriesRows local = rows;
    if (rows.IsYearly())
        local.StartDay = FirstDayInMonth(rows.StartDay, rows.Month);
    const DATE start = allDay ? local.Start() : ToPatternZone(pattern, device, local.Start());
    const int days = DayNumber(start) - local.StartDay;
    pattern.Type = rows.Type;
    pattern.Interval = rows.Interval;
    pattern.PatternStart = DayNumber(start);
    pattern.StartMinute = MinuteOfDay(start);
    pattern.EndMinute = pattern.StartMinute + rows.Minutes;
    pattern.DayMask = RotateMask(rows.Mask, days);
    pattern.DayOfMonth = ShiftDayOfMonth(rows.DayOfMonth, days);
    pattern.Instance = rows.Instance;
    pattern.EndKind = rows.EndKind;
    pattern.PatternEnd = rows.EndDay == 0 ? NO_DATE : rows.EndDay + days;
    pattern.Occurrences = rows.Occurrences;
}

// ---- what is stored

CStatus NormalizePattern(CRecurrencePattern& pattern, bool allDay)
{
    if (pattern.Type < PatternType::Daily || pattern.Type > PatternType::YearlyNth || pattern.Type == 4)
        return {StatusKind::Invalid, QStringLiteral("The series has a pattern of an unknown type.")};
    if (!IsDate(pattern.PatternStart))
        return {StatusKind::Invalid, QStringLiteral("The series has no start, or one that no calendar has.")};
    if (pattern.Exceptions.size() > kMaxExceptions)
        return {StatusKind::Invalid, QStringLiteral("The series has more changed days than can be stored.")};
    const int startDay = DayNumber(pattern.PatternStart);
    pattern.Interval = std::clamp(pattern.Interval, 1, 999999);
    pattern.StartMinute = std::clamp(pattern.StartMinute, 0, 1439);
    pattern.EndMinute = std::max(pattern.EndMinute, pattern.StartMinute);
    if (allDay) {
        pattern.StartMinute = 0;
        pattern.EndMinute = std::max((pattern.EndMinute + 1439) / 1440, 1) * 1440;
    }
    pattern.DayMask &= 0x7F;
    if (pattern.DayMask == 0)
        pattern.DayMask = 1 << DayOfWeekOf(startDay);
    pattern.DayOfMonth = std::clamp(pattern.DayOfMonth, 1, 31);
    pattern.Instance = std::clamp(pattern.Instance, 1, 5);
    ClearUnused(pattern, pattern.DayMask);
    const int first = DayOfOccurrence(pattern, 1);
    if (first == 0 || first >= kFarDay)
        return {StatusKind::Invalid, QStringLiteral("The series has no occurrence.")};
    pattern.PatternStart = first;
    ComputeEnd(pattern, first);
    pattern.ExceptionCount = int(pattern.Exceptions.size());
    return {};
}

void KeepExceptions(const CRecurrencePattern& old, CRecurrencePattern& pattern)
{
    const auto days = [](const CRecurrencePattern& p) {
        return std::tuple(p.Type, p.Interval, p.PatternStart, p.PatternEnd, p.DayMask, p.DayOfMonth,
                          p.Instance);
    };
    if (days(old) != days(pattern))
        std::erase_if(pattern.Exceptions, [&pattern](const CRecurrenceException& e) {
            return !PatternHitsDay(pattern, e.OriginalDay);
        });
    for (CRecurrenceException& e : pattern.Exceptions) {
        if (e.Deleted || e.HasAllDay || e.Start != PlusMinutes(e.OriginalDay, old.StartMinute) ||
            e.End != PlusMinutes(e.OriginalDay, old.EndMinute))
            continue;
        e.Start = PlusMinutes(e.OriginalDay, pattern.StartMinute);
        e.End = PlusMinutes(e.OriginalDay, pattern.EndMinute);
    }
    pattern.ExceptionCount = int(pattern.Exceptions.size());
}
