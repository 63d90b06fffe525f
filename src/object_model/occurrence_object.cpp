#include "object_model/occurrence_object.h"

#include "object_model/outlook_app.h"
#include "records/occurrences.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>

namespace
{
template <typename List> auto PlaceOf(List& exceptions, int day)
{
    return std::lower_bound(exceptions.begin(), exceptions.end(), day,
                            [](const CRecurrenceException& e, int d) { return e.OriginalDay < d; });
}

const CRecurrenceException* FindException(const CRecurrencePattern& pattern, int day)
{
    const auto at = PlaceOf(pattern.Exceptions, day);
    return at != pattern.Exceptions.end() && at->OriginalDay == day ? &*at : nullptr;
}

// The exception of that day, made when there is none; sorted as the blob wants them.
CRecurrenceException& ExceptionOf(CRecurrencePattern& pattern, int day)
{
    auto at = PlaceOf(pattern.Exceptions, day);
    if (at == pattern.Exceptions.end() || at->OriginalDay != day) {
        at = pattern.Exceptions.insert(at, CRecurrenceException());
        at->OriginalDay = day;
    }
    return *at;
}

CStatus NoOccurrence()
{
    return {StatusKind::NotFound, QStringLiteral("The series has no occurrence on that day.")};
}

bool IsThere(const CRecurrencePattern& pattern, int day)
{
    const CRecurrenceException* exception = FindException(pattern, day);
    return exception ? !exception->Deleted : PatternHitsDay(pattern, day);
}

// The original day of an occurrence that was moved to that day; 0 if none was.
int MovedTo(const CRecurrencePattern& pattern, const CAppointmentObject& series,
            const TimeZoneInformation& device, int day)
{
    for (const CRecurrenceException& e : pattern.Exceptions) {
        const bool allDay = e.HasAllDay ? e.AllDay : series.get_AllDayEvent();
        if (!e.Deleted && DayNumber(allDay ? e.Start : ToDevice(pattern, device, e.Start)) == day)
            return e.OriginalDay;
    }
    return 0;
}
} // namespace

CStatus OpenOccurrence(COutlookApp& app, quint32 itemId, int originalDay,
                       std::unique_ptr<IAppointment>& occurrence)
{
    std::unique_ptr<CAppointmentObject> series;
    const CStatus status = app.Load(itemId, series);
    if (!status)
        return status;
    if (!series->Series())
        return NoOccurrence();
    const CRecurrencePattern& pattern = series->Series()->Pattern();
    int day = originalDay;
    if (!IsThere(pattern, day)) {
        const bool deleted = FindException(pattern, day) != nullptr;
        day = deleted ? 0 : MovedTo(pattern, *series, app.Zone(), day);
        if (day == 0)
            return NoOccurrence();
    }
    occurrence = std::make_unique<COccurrenceObject>(app, std::move(series), day);
    return {};
}

COccurrenceObject::COccurrenceObject(COutlookApp& app, std::unique_ptr<CAppointmentObject> series,
                                     int originalDay)
    : m_app(app), m_series(std::move(series)), m_day(originalDay)
{
    ReadFrom(m_series->Series()->Pattern());
}

void COccurrenceObject::ReadFrom(const CRecurrencePattern& pattern)
{
    static const CRecurrenceException kNone;
    const CRecurrenceException* found = FindException(pattern, m_day);
    const CRecurrenceException& e = found ? *found : kNone;
    m_fields.Subject = e.HasSubject ? e.Subject : m_series->get_Subject();
    m_fields.Location = e.HasLocation ? e.Location : m_series->get_Location();
    m_fields.BusyStatus = e.HasBusyStatus ? e.BusyStatus : m_series->get_BusyStatus();
    m_fields.AllDay = e.HasAllDay ? e.AllDay : m_series->get_AllDayEvent();
    // A foreign note cannot be read; the series' text stands in for it, and its bytes stay.
    const bool ownNote = e.HasNoteFlag && (!e.Note.isEmpty() || !e.HasNote);
    m_fields.Body = ownNote ? e.Note : m_series->get_Body();
    const DATE start = found ? e.Start : PlusMinutes(m_day, pattern.StartMinute % 1440);
    const DATE end = found ? e.End : PlusMinutes(start, std::max(pattern.EndMinute - pattern.StartMinute, 0));
    m_fields.Start = m_fields.AllDay ? start : ToDevice(pattern, m_app.Zone(), start);
    m_fields.End = PlusMinutes(m_fields.Start, std::max<qint64>(MinutesBetween(start, end), 0));
}

void COccurrenceObject::put_Start(DATE date)
{
    if (date == NO_DATE || date == m_fields.Start)
        return;
    m_fields.End = PlusMinutes(date, MinutesBetween(m_fields.Start, m_fields.End));
    m_fields.Start = date;
    m_changed |= Changed::Times;
}

// Only what was put here is changed, so that a change made elsewhere meanwhile stands.
void COccurrenceObject::PutInto(CRecurrenceException& e, const CRecurrencePattern& pattern) const
{
    if (m_changed & Changed::Times) {
        const bool allDay = m_fields.AllDay;
        e.Start = allDay ? m_fields.Start : ToPatternZone(pattern, m_app.Zone(), m_fields.Start);
        e.End = PlusMinutes(e.Start, MinutesBetween(m_fields.Start, m_fields.End));
        e.HasAllDay = allDay != m_series->get_AllDayEvent();
        e.AllDay = e.HasAllDay && allDay;
    }
    if (m_changed & Changed::Subject) {
        e.HasSubject = m_fields.Subject != m_series->get_Subject();
        e.Subject = e.HasSubject ? m_fields.Subject : QString();
    }
    if (m_changed & Changed::Location) {
        e.HasLocation = m_fields.Location != m_series->get_Location();
        e.Location = e.HasLocation ? m_fields.Location : QString();
    }
    if (m_changed & Changed::BusyStatus) {
        e.HasBusyStatus = m_fields.BusyStatus != m_series->get_BusyStatus();
        e.BusyStatus = e.HasBusyStatus ? m_fields.BusyStatus : 0;
    }
    if (m_changed & Changed::Body && m_fields.Body == m_series->get_Body())
        ClearOccurrenceNote(e);
    else if (m_changed & Changed::Body)
        SetOccurrenceNote(e, m_fields.Body);
}

template <typename Change> CStatus COccurrenceObject::ChangeSeries(Change change)
{
    return m_app.InTransaction([&]() -> CStatus {
        CRecurrencePattern pattern;
        CStatus status = m_app.ReadPattern(ItemTable::Appointments, RecordOid(), pattern);
        if (status && !IsThere(pattern, m_day))
            status = NoOccurrence();
        if (!status)
            return status;
        CRecordRows& rows = m_app.EmptyRows();
        change(pattern, rows);
        pattern.ExceptionCount = int(pattern.Exceptions.size());
        rows.Bytes(Prop::Recurrence, WriteRecurrence(pattern));
        rows.Number(Prop::LastChange, Clock().GetUtcTime());
        CEOID written = 0;
        status = rows.Write(m_app.Volume(), kAppointmentsDatabase, RecordOid(), &written, nullptr);
        return status ? m_series->SaveCategories() : status;
    });
}

CStatus COccurrenceObject::Save()
{
    if (m_changed & Changed::Times) {
        const CStatus status = NormalizeTimes(m_fields);
        if (!status)
            return status;
    }
    const CStatus status = ChangeSeries([this](CRecurrencePattern& pattern, CRecordRows& rows) {
        m_series->PutRecipients(rows);
        const bool present = FindException(pattern, m_day) != nullptr;
        CRecurrenceException& e = ExceptionOf(pattern, m_day);
        CRecurrenceException untouched;
        untouched.OriginalDay = m_day;
        untouched.Deleted = false;
        untouched.Start = PlusMinutes(m_day, pattern.StartMinute % 1440);
        untouched.End = PlusMinutes(untouched.Start, std::max(pattern.EndMinute - pattern.StartMinute, 0));
        if (!present)
            e = untouched;
        PutInto(e, pattern);
        if (e == untouched) // all is as in the series again
            pattern.Exceptions.erase(PlaceOf(pattern.Exceptions, m_day));
    });
    if (status)
        m_changed = 0;
    return status;
}

CStatus COccurrenceObject::Delete()
{
    return ChangeSeries([this](CRecurrencePattern& pattern, CRecordRows&) {
        CRecurrenceException deleted;
        deleted.OriginalDay = m_day;
        ExceptionOf(pattern, m_day) = deleted;
    });
}

std::unique_ptr<IAppointment> COccurrenceObject::Copy()
{
    std::unique_ptr<IAppointment> whole = m_series->Copy();
    whole->ClearRecurrencePattern();
    whole->put_Subject(m_fields.Subject);
    whole->put_Location(m_fields.Location);
    whole->put_BusyStatus(m_fields.BusyStatus);
    whole->put_Start(m_fields.Start);
    whole->put_End(m_fields.End);
    whole->put_AllDayEvent(m_fields.AllDay);
    CForeignData foreign = whole->Foreign();
    foreign.SourceRule.clear();
    whole->put_Foreign(foreign);
    return whole;
}

CStatus COccurrenceObject::Send()
{
    return m_app.Transport() ? m_app.Transport()->SendRequest(*this) : CStatus();
}
CStatus COccurrenceObject::Cancel()
{
    return m_app.Transport() ? m_app.Transport()->SendCancel(*this) : CStatus();
}
