#include "interchange/series_builder.h"

#include "interchange/import_limits.h"
#include "interchange/rule_patterns.h"
#include "records/occurrences.h"

#include <algorithm>

namespace
{
const int kEndOfTime = DayNumberOf(ImportLimit::LastYear, 12, 31);
constexpr int kCountWalk = 100000; // further than that a count is not followed one by one

template <class List> void SortUnique(List& list)
{
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
}
} // namespace

QString OccurrenceName(qint64 wall, bool allDay)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayOfWall(wall), &year, &month, &day);
    const int second = SecondOfWall(wall);
    return allDay ? QString::asprintf("%04d%02d%02d", year, month, day)
                  : QString::asprintf("%04d%02d%02dT%02d%02d%02d", year, month, day, second / 3600,
                                      second / 60 % 60, second % 60);
}

CSeriesPlan CSeriesBuilder::Build(const CEventDates& dates)
{
    m_excludedWalls.clear();
    m_excludedDays.clear();
    m_deleted = 0;
    m_toldDeletions = false;
    for (const CListedDate& excluded : dates.Excluded) {
        if (excluded.IsDate || dates.AllDay)
            m_excludedDays.push_back(DayOfWall(excluded.Wall));
        else
            m_excludedWalls.push_back(excluded.Wall);
    }
    SortUnique(m_excludedWalls);
    SortUnique(m_excludedDays);

    CSeriesPlan plan;
    if (dates.Rule)
        BuildRule(dates, plan);
    const bool startShown =
        std::any_of(plan.Records.begin(), plan.Records.end(), [&](const CPlannedRecord& record) {
            return record.IsSeries ? DayNumber(record.Pattern.PatternStart) == DayOfWall(dates.Start)
                                   : record.Start == dates.Start;
        });
    if (!startShown && !IsExcluded(dates.Start)) {
        CPlannedRecord single;
        single.Start = dates.Start;
        single.End = dates.End;
        if (!plan.Records.empty())
            single.OccurrenceId = QLatin1Char('S') + OccurrenceName(dates.Start, dates.AllDay);
        plan.Records.push_back(single);
    }
    AddListed(dates, plan);
    plan.KeepsExcluded = m_deleted < m_excludedDays.size() + m_excludedWalls.size();
    return plan;
}

bool CSeriesBuilder::IsExcluded(qint64 wall) const
{
    return std::binary_search(m_excludedDays.begin(), m_excludedDays.end(), DayOfWall(wall)) ||
           std::binary_search(m_excludedWalls.begin(), m_excludedWalls.end(), wall);
}

void CSeriesBuilder::BuildRule(const CEventDates& dates, CSeriesPlan& plan)
{
    const CRulePatterns patterns = PatternsOf(*dates.Rule, dates.Start);
    if (patterns.Parts.empty()) {
        plan.KeepsRule = true;
        AddOccurrences(dates, plan);
        return;
    }
    plan.KeepsRule = !patterns.IsExact();
    if (patterns.ShowsOnShorterMonths)
        m_report.Note(dates.Line, QStringLiteral("in shorter months this shows on the last day"));
    AddSeries(dates, patterns.Parts, patterns.IsExact(), plan);
}

void CSeriesBuilder::AddSeries(const CEventDates& dates, const std::vector<CRecurrencePattern>& parts,
                               bool exact, CSeriesPlan& plan)
{
    const CRecurRule& rule = *dates.Rule;
    int lastDay = kEndOfTime;
    bool ends = false, counts = false;
    if (rule.Until) {
        // The last occurrence begins at or before UNTIL.
        lastDay = DayOfWall(rule.Until->Wall);
        if (!rule.Until->IsDate && !dates.AllDay &&
            SecondOfWall(rule.Until->Wall) < SecondOfWall(dates.Start))
            --lastDay;
        ends = lastDay < kEndOfTime;
        lastDay = std::min(lastDay, kEndOfTime);
    } else if (rule.Count > 0) {
        counts = exact;
        ends = !exact;
        if (!exact)
            lastDay = LastDayByCount(dates);
    }
    const int minute = SecondOfWall(dates.Start) / 60;
    for (CRecurrencePattern pattern : parts) {
        if (DayNumber(pattern.PatternStart) > lastDay)
            continue;
        pattern.StartMinute = minute;
        pattern.EndMinute = minute + int((dates.End - dates.Start) / 60);
        pattern.EndKind = counts ? PatternEndKind::Count
                          : ends ? PatternEndKind::Date
                                 : PatternEndKind::Never;
        pattern.Occurrences = counts ? rule.Count : 1;
        if (counts)
            pattern.PatternEnd = DayOfOccurrence(pattern, rule.Count);
        else if (ends)
            pattern.PatternEnd = LastOccurrenceUpTo(pattern, lastDay);
        else
            pattern.PatternEnd = kEndOfTime;
        PutDeletions(dates, pattern);
        CPlannedRecord record;
        record.IsSeries = true;
        record.Pattern = std::move(pattern);
        if (!plan.Records.empty())
            record.OccurrenceId = QStringLiteral("P%1").arg(plan.Records.size() + 1);
        plan.Records.push_back(std::move(record));
    }
}

// The day of the rule's last occurrence by its own count, DTSTART included when the rule hits it.
int CSeriesBuilder::LastDayByCount(const CEventDates& dates)
{
    CRuleWalk walk(*dates.Rule, dates.Start, m_budget);
    qint64 wall = 0;
    int n = 0;
    int last = DayOfWall(dates.Start) - 1;
    while (n < dates.Rule->Count && n < kCountWalk && walk.Next(kEndOfTime, &wall)) {
        ++n;
        last = DayOfWall(wall);
    }
    if (n < dates.Rule->Count && (walk.IsExhausted() || n == kCountWalk))
        m_report.LeftOut(dates.Line, QStringLiteral("the end of the rule, its count is too high"));
    return n < dates.Rule->Count ? kEndOfTime : last;
}

void CSeriesBuilder::PutDeletions(const CEventDates& dates, CRecurrencePattern& pattern)
{
    std::vector<int> days = m_excludedDays;
    for (const qint64 wall : m_excludedWalls)
        if (SecondOfWall(wall) / 60 == SecondOfWall(dates.Start) / 60)
            days.push_back(DayOfWall(wall));
    SortUnique(days);
    for (const int day : days) {
        if (day > DayNumber(pattern.PatternEnd) || !PatternHitsDay(pattern, day))
            continue;
        if (pattern.Exceptions.size() >= size_t(ImportLimit::Deletions)) {
            if (!m_toldDeletions)
                m_report.LeftOut(
                    dates.Line,
                    QStringLiteral("excluded dates beyond the first %1").arg(ImportLimit::Deletions));
            m_toldDeletions = true;
            break;
        }
        ++m_deleted;
        pattern.Exceptions.emplace_back().OriginalDay = day;
    }
    pattern.ExceptionCount = int(pattern.Exceptions.size());
}

// A rule that no pattern holds: its occurrences one by one.
void CSeriesBuilder::AddOccurrences(const CEventDates& dates, CSeriesPlan& plan)
{
    const CRecurRule& rule = *dates.Rule;
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(DayOfWall(dates.Start), &year, &month, &day);
    const int lastDay = std::max(DayNumberOf(year + ImportLimit::ExpandYears, month, day),
                                 DayNumberOf(m_currentYear, 12, 31));
    CRuleWalk walk(rule, dates.Start, m_budget);
    qint64 wall = 0;
    int n = 0;
    bool ended = false;
    while (n < ImportLimit::Occurrences) {
        if (!walk.Next(lastDay, &wall))
            break;
        const bool pastUntil =
            rule.Until &&
            (rule.Until->IsDate ? DayOfWall(wall) > DayOfWall(rule.Until->Wall) : wall > rule.Until->Wall);
        ended = pastUntil || (rule.Count > 0 && n >= rule.Count);
        if (ended)
            break;
        ++n;
        if (IsExcluded(wall) || !IsStorable(wall))
            continue;
        CPlannedRecord single;
        single.OccurrenceId = QLatin1Char('S') + OccurrenceName(wall, dates.AllDay);
        single.Start = wall;
        single.End = wall + (dates.End - dates.Start);
        plan.Records.push_back(single);
    }
    ended = ended || (rule.Count > 0 && n >= rule.Count) ||
            (rule.Until && DayOfWall(rule.Until->Wall) <= lastDay);
    const QString told = QStringLiteral("the rule became %1 single items").arg(plan.Records.size());
    if (walk.IsExhausted())
        m_report.LeftOut(dates.Line, told + QStringLiteral(", the rest takes too long to compute"));
    else if (ended)
        m_report.Note(dates.Line, told);
    else
        m_report.LeftOut(dates.Line, told + QStringLiteral(", later ones are left out"));
}

void CSeriesBuilder::AddListed(const CEventDates& dates, CSeriesPlan& plan)
{
    std::vector<CListedDate> added = dates.Added;
    std::sort(added.begin(), added.end(),
              [](const CListedDate& a, const CListedDate& b) { return a.Wall < b.Wall; });
    int count = 0;
    qint64 last = 0;
    bool any = false;
    for (const CListedDate& date : added) {
        // A date without a time repeats the time of the start.
        const qint64 wall = date.IsDate && !dates.AllDay
                                ? WallOfDay(DayOfWall(date.Wall)) + SecondOfWall(dates.Start)
                            : dates.AllDay ? WallOfDay(DayOfWall(date.Wall))
                                           : date.Wall;
        if ((any && wall == last) || wall == dates.Start || IsExcluded(wall) || !IsStorable(wall) ||
            std::any_of(plan.Records.begin(), plan.Records.end(), [&](const CPlannedRecord& record) {
                return record.IsSeries ? SecondOfWall(wall) / 60 == record.Pattern.StartMinute &&
                                             DayOfWall(wall) <= DayNumber(record.Pattern.PatternEnd) &&
                                             PatternHitsDay(record.Pattern, DayOfWall(wall))
                                       : record.Start == wall;
            }))
            continue;
        any = true;
        last = wall;
        if (++count > ImportLimit::Occurrences) {
            m_report.LeftOut(
                dates.Line,
                QStringLiteral("dates of the list beyond the first %1").arg(ImportLimit::Occurrences));
            break;
        }
        CPlannedRecord single;
        single.OccurrenceId = QLatin1Char('S') + OccurrenceName(wall, dates.AllDay);
        single.Start = wall;
        single.End = date.End > date.Wall ? wall + (date.End - date.Wall) : wall + (dates.End - dates.Start);
        plan.Records.push_back(single);
    }
}
