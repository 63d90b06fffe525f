#include "object_model/appointment_object.h"

#include "object_model/outlook_app.h"
#include "records/property_numbers.h"

CAppointmentObject::CAppointmentObject(COutlookApp& app, CEOID oid, quint32 itemId,
                                       const std::vector<CEPROPVAL>& rows)
    : CItemBase(app, oid, itemId)
{
    CRecurrencePattern pattern;
    m_wasRecurring = ReadFields(rows, app.Zone(), m_fields, pattern);
    if (m_wasRecurring)
        m_series = std::make_unique<CPatternObject>(app, pattern, m_fields.AllDay, oid, itemId);
}

// ---- dates

void CAppointmentObject::put_Start(DATE date)
{
    if (m_series && date != NO_DATE) {
        m_series->Edit().SetStart(date);
        return;
    }
    if (date == m_fields.Start)
        return;
    if (date != NO_DATE && m_fields.Start != NO_DATE && m_fields.End != NO_DATE)
        m_fields.End = PlusMinutes(date, MinutesBetween(m_fields.Start, m_fields.End));
    m_fields.Start = date;
    m_changed |= Changed::Times;
}

DATE CAppointmentObject::get_End() const
{
    if (m_series)
        return m_series->Rows().End();
    return m_fields.End == NO_DATE ? m_fields.Start : m_fields.End;
}

void CAppointmentObject::put_End(DATE date)
{
    if (m_series && date != NO_DATE)
        m_series->Edit().SetEnd(date);
    else
        Set(m_fields.End, date, Changed::Times);
}

void CAppointmentObject::put_AllDayEvent(bool allDay)
{
    Set(m_fields.AllDay, allDay, Changed::Times);
    if (m_series)
        m_series->SetAllDay(allDay);
}

IRecurrencePattern* CAppointmentObject::GetRecurrencePattern()
{
    if (!m_series) {
        m_series = std::make_unique<CPatternObject>(m_app, m_fields.Start, m_fields.End);
        m_series->SetAllDay(m_fields.AllDay);
    }
    return m_series.get();
}

void CAppointmentObject::ClearRecurrencePattern()
{
    if (!m_series)
        return;
    m_fields.Start = m_series->Rows().Start();
    m_fields.End = m_series->Rows().End();
    m_changed |= Changed::Times;
    m_cleared = std::move(m_series);
}

// ---- what lies in other rows and records

IRecipients* CAppointmentObject::get_Recipients()
{
    if (!m_recipients)
        m_recipients = std::make_unique<CRecipients>(m_fields.Attendees);
    return m_recipients.get();
}

void CAppointmentObject::put_Foreign(const CForeignData& data)
{
    m_fields.Foreign = data;
    m_changed |= Changed::Foreign;
}

void CAppointmentObject::put_Identity(const QString& uid, quint32 sequence)
{
    m_fields.Foreign.Uid = uid;
    m_fields.Foreign.Sequence = sequence;
    m_changed |= Changed::Identity;
}

// ---- saving

CStatus CAppointmentObject::PutTimes(CRecordRows& rows, CRecurrencePattern& pattern)
{
    if (!m_series) {
        if (!(m_changed & Changed::Times) && !m_wasRecurring)
            return {};
        const CStatus status = NormalizeTimes(m_fields);
        if (!status)
            return status;
        PutPlainTimes(rows, m_fields, m_app.Zone());
        for (CEPROPID id : {Prop::Recurring, Prop::Recurrence, Prop::Zone})
            rows.Remove(id);
        if (m_wasRecurring && !(m_changed & Changed::Foreign))
            rows.Remove(Prop::SourceRule);
        return {};
    }
    if (!m_series->IsTouched()) {
        pattern = m_series->Pattern();
        return {};
    }
    CRecurrencePattern stored;
    CStatus status = m_wasRecurring ? m_app.ReadPattern(ItemTable::Appointments, m_oid, stored) : CStatus();
    if (status)
        status = m_series->PatternToStore(m_wasRecurring ? &stored : nullptr, pattern);
    if (!status)
        return status;
    PutSeries(rows, pattern);
    rows.Number(Prop::AllDay, m_fields.AllDay ? 1 : 0);
    if (!(m_changed & Changed::Foreign))
        rows.Remove(Prop::SourceRule); // it would tell the old series
    return {};
}

void CAppointmentObject::PutRecipients(CRecordRows& rows) const
{
    if (!m_recipients)
        return;
    const QByteArray list = m_recipients->Stored();
    if (list != m_fields.Attendees)
        rows.Bytes(Prop::Attendees, list);
}

CStatus CAppointmentObject::WriteAll(CRecurrencePattern& pattern, CEOID* oid, quint32* itemId)
{
    CRecordRows& rows = m_app.EmptyRows();
    CStatus status = PutTimes(rows, pattern);
    if (!status)
        return status;
    PutFields(rows, m_fields, m_changed);
    PutRecipients(rows);
    return WriteRecord(rows, kAppointmentsDatabase, kAppointmentTag, m_fields.Foreign, oid, itemId);
}

CStatus CAppointmentObject::Save()
{
    CEOID oid = m_oid;
    quint32 itemId = m_itemId;
    CRecurrencePattern pattern;
    const CStatus status = m_app.InTransaction([&] { return WriteAll(pattern, &oid, &itemId); });
    if (!status)
        return status;
    const bool touched = m_series ? m_series->IsTouched() : m_wasRecurring;
    if (touched && !(m_changed & Changed::Foreign))
        m_fields.Foreign.SourceRule.clear();
    Saved(oid, itemId);
    m_wasRecurring = m_series != nullptr;
    if (m_recipients)
        m_fields.Attendees = m_recipients->Stored();
    if (m_series)
        m_series->Saved(pattern, oid, itemId);
    return status;
}

std::unique_ptr<IAppointment> CAppointmentObject::Copy()
{
    auto copy = std::make_unique<CAppointmentObject>(m_app);
    copy->m_fields = m_fields;
    copy->m_fields.Body.clear();
    copy->m_fields.Foreign = ForeignOfCopy(m_fields.Foreign);
    copy->m_changed |= Changed::Foreign;
    copy->m_categories = get_Categories();
    copy->m_fields.Attendees.clear();
    if (IRecipients* recipients = get_Recipients(); recipients->get_Count() > 0)
        copy->m_recipients = std::make_unique<CRecipients>(m_recipients->Stored());
    if (m_series) {
        copy->m_fields.Start = m_series->Rows().Start();
        copy->m_fields.End = m_series->Rows().End();
        copy->GetRecurrencePattern();
        m_series->CopyTo(*copy->m_series);
    }
    return copy;
}

CStatus CAppointmentObject::Send()
{
    return m_app.Transport() ? m_app.Transport()->SendRequest(*this) : CStatus();
}
CStatus CAppointmentObject::Cancel()
{
    return m_app.Transport() ? m_app.Transport()->SendCancel(*this) : CStatus();
}
