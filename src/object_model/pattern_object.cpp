#include "object_model/pattern_object.h"

#include "object_model/occurrence_object.h"
#include "object_model/outlook_app.h"
#include "records/occurrences.h"
#include "records/property_numbers.h"

#include <algorithm>
#include <cmath>

namespace
{
int MonthOf(int day)
{
    int year = 0, month = 0, dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    return month;
}

int DayOfMonthOf(int day)
{
    int year = 0, month = 0, dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    return dayOfMonth;
}

int MinuteOfDay(DATE time)
{
    if (!IsDate(time))
        return 0;
    const double fraction = std::fabs(time - std::trunc(time));
    return int(std::lround(fraction * 1440.0)) % 1440;
}
} // namespace

CPatternObject::CPatternObject(COutlookApp& app, DATE start, DATE end) : m_app(app), m_touched(true)
{
    m_pattern.SetZone(app.Zone());
    CSeriesRows rows;
    const DATE now = UtcToLocal(DateOfFileTime(Clock().GetUtcTime()), app.Zone());
    rows.SetStart(start == NO_DATE ? DayNumber(now) : start);
    if (start != NO_DATE && end != NO_DATE)
        rows.SetEnd(end);
    rows.Mask = 1 << DayOfWeekOf(rows.StartDay);
    ApplyRows(rows, false, app.Zone(), m_pattern);
    m_rows = rows;
    m_baseRows = rows;
}

CPatternObject::CPatternObject(COutlookApp& app, const CRecurrencePattern& stored, bool allDay, CEOID oid,
                               quint32 itemId)
    : m_app(app), m_oid(oid), m_itemId(itemId), m_allDay(allDay), m_pattern(stored)
{
}

// ---- rows and pattern, one made of the other when it is asked for

const CSeriesRows& CPatternObject::Rows() const
{
    if (!m_rows) {
        m_baseRows = RowsOf(m_pattern, m_allDay, m_app.Zone());
        m_rows = m_baseRows;
    }
    return *m_rows;
}

CSeriesRows& CPatternObject::Edit()
{
    Rows();
    return *m_rows;
}

void CPatternObject::Resolve() const
{
    if (!m_rows || SameSeries(*m_rows, m_baseRows))
        return;
    ApplyRows(*m_rows, m_allDay, m_app.Zone(), m_pattern);
    m_baseRows = *m_rows;
    m_resolved = true;
}

const CRecurrencePattern& CPatternObject::Pattern() const
{
    Resolve();
    return m_pattern;
}

void CPatternObject::put_Pattern(const CRecurrencePattern& pattern)
{
    const TimeZoneInformation zone = m_pattern.Zone();
    m_pattern = pattern;
    // In order of day, one of each: so they are stored and found.
    std::vector<CRecurrenceException>& exceptions = m_pattern.Exceptions;
    std::stable_sort(exceptions.begin(), exceptions.end(),
                     [](const CRecurrenceException& a, const CRecurrenceException& b) {
                         return a.OriginalDay < b.OriginalDay;
                     });
    const auto twice = std::unique(exceptions.begin(), exceptions.end(),
                                   [](const CRecurrenceException& a, const CRecurrenceException& b) {
                                       return a.OriginalDay == b.OriginalDay;
                                   });
    exceptions.erase(twice, exceptions.end());
    if (m_zonePut || pattern.Zone() == TimeZoneInformation())
        m_pattern.SetZone(zone);
    m_rows.reset();
    m_resolved = false;
    m_touched = m_wholePut = true;
}

void CPatternObject::put_Zone(const TimeZoneInformation& zone)
{
    Rows(); // the local dates stay
    m_pattern.SetZone(zone);
    ApplyRows(*m_rows, m_allDay, m_app.Zone(), m_pattern);
    m_baseRows = *m_rows;
    m_touched = m_zonePut = m_resolved = true;
}

void CPatternObject::SetAllDay(bool allDay)
{
    if (m_allDay == allDay)
        return;
    // Rows that were put are local days already; others are read anew, unshifted.
    if (m_rows && SameSeries(*m_rows, m_baseRows) && !m_resolved && (m_oid != 0 || m_wholePut))
        m_rows.reset();
    m_allDay = allDay;
    m_touched = true;
}

bool CPatternObject::IsTouched() const
{
    return m_touched || m_resolved || (m_rows && !SameSeries(*m_rows, m_baseRows));
}

CStatus CPatternObject::PatternToStore(const CRecurrencePattern* stored, CRecurrencePattern& pattern) const
{
    pattern = Pattern();
    if (m_rows && !m_wholePut && (m_resolved || m_oid == 0))
        ApplyRows(*m_rows, m_allDay, m_app.Zone(), pattern); // by the last all-day state
    const bool keep = stored && stored->Type >= 0 && !m_wholePut;
    if (keep) {
        pattern.Exceptions = stored->Exceptions;
        pattern.SkippedHeader = stored->SkippedHeader;
        pattern.SkippedTail = stored->SkippedTail;
    }
    const CStatus status = NormalizePattern(pattern, m_allDay);
    if (status && keep)
        KeepExceptions(*stored, pattern);
    return status;
}

void CPatternObject::Saved(const CRecurrencePattern& pattern, CEOID oid, quint32 itemId)
{
    m_pattern = pattern;
    m_oid = oid;
    m_itemId = itemId;
    m_rows.reset();
    m_touched = m_wholePut = m_zonePut = m_resolved = false;
}

void CPatternObject::CopyTo(CPatternObject& other) const
{
    other.m_pattern = Pattern();
    other.m_allDay = m_allDay;
    other.m_rows.reset();
    other.m_touched = other.m_wholePut = true;
}

// ---- what the owner sees and puts

void CPatternObject::put_RecurrenceType(OlRecurs type)
{
    CSeriesRows& rows = Edit();
    const bool wasYearly = rows.IsYearly();
    rows.Type = int(type);
    if (!wasYearly || !rows.IsYearly()) // every how many years no form asks, so it stays
        rows.Interval = rows.IsYearly() ? 12 : 1;
    const int day = DayOfMonthOf(rows.StartDay);
    rows.Mask = 1 << DayOfWeekOf(rows.StartDay);
    rows.DayOfMonth = day;
    rows.Instance = (day - 1) / 7 + 1;
    rows.Month = 0;
}

void CPatternObject::put_PatternStartDate(DATE date)
{
    if (date != NO_DATE)
        Edit().SetStartDay(date);
}

DATE CPatternObject::get_StartTime() const
{
    return Rows().StartMinute / 1440.0;
}

void CPatternObject::put_StartTime(DATE time)
{
    Edit().StartMinute = MinuteOfDay(time);
    m_startTimePut = IsDate(time) ? time : 0;
}

DATE CPatternObject::get_EndTime() const
{
    return (Rows().StartMinute + Rows().Minutes) % 1440 / 1440.0;
}

void CPatternObject::put_EndTime(DATE time)
{
    CSeriesRows& rows = Edit();
    if (IsDate(time) && DayNumber(time) != 0 &&
        DayNumber(m_startTimePut) != 0) { // both with their day: the whole span is told
        rows.Minutes = int(std::clamp<qint64>(MinutesBetween(m_startTimePut, time), 0, 0x7FFFFFFF - 1440));
        return;
    }
    const int within = (MinuteOfDay(time) - rows.StartMinute + 1440) % 1440;
    rows.Minutes = rows.Minutes / 1440 * 1440 + within;
}

DATE CPatternObject::get_PatternEndDate() const
{
    return get_NoEndDate() || Rows().EndDay == 0 ? NO_DATE : DATE(Rows().EndDay);
}

void CPatternObject::put_PatternEndDate(DATE date)
{
    CSeriesRows& rows = Edit();
    rows.EndKind = IsDate(date) ? PatternEndKind::Date : PatternEndKind::Never;
    rows.EndDay = IsDate(date) ? DayNumber(date) : 0;
}

void CPatternObject::put_NoEndDate(bool none)
{
    CSeriesRows& rows = Edit();
    if (none)
        rows.EndKind = PatternEndKind::Never;
    else if (rows.EndKind == PatternEndKind::Never)
        rows.EndKind = PatternEndKind::Date; // its date or count follows; without one it has no end
}

int CPatternObject::get_Occurrences() const
{
    const CRecurrencePattern& pattern = Pattern();
    if (pattern.EndKind == PatternEndKind::Count)
        return pattern.Occurrences;
    return get_NoEndDate() ? 0 : CountOccurrencesUpTo(pattern, DayNumber(pattern.PatternEnd));
}

void CPatternObject::put_Occurrences(int count)
{
    CSeriesRows& rows = Edit();
    rows.EndKind = PatternEndKind::Count;
    rows.Occurrences = count;
    rows.EndDay = 0;
}

int CPatternObject::get_MonthOfYear() const
{
    return Rows().Month ? Rows().Month : MonthOf(Rows().StartDay);
}

void CPatternObject::put_MonthOfYear(int month)
{
    CSeriesRows& rows = Edit();
    rows.Month = month >= 1 && month <= 12 && month != MonthOf(rows.StartDay) ? month : 0;
}

CStatus CPatternObject::GetOccurrence(DATE originalDay, std::unique_ptr<IAppointment>& occurrence)
{
    if (m_oid == 0)
        return {StatusKind::Invalid, QStringLiteral("The series was not saved yet.")};
    if (m_itemId >= kTaskTag)
        return {StatusKind::Invalid, QStringLiteral("A task has no occurrences of its own.")};
    return OpenOccurrence(m_app, m_itemId, IsDate(originalDay) ? DayNumber(originalDay) : kFarDay,
                          occurrence);
}
