// One occurrence of a stored series. Saving and deleting it change the series' record; what an
// occurrence cannot have of its own (categories, attendees) goes to the series, what it must leave
// alone (sensitivity, reminder, pattern) is not saved.
#pragma once
#include "object_model/appointment_object.h"

CStatus OpenOccurrence(COutlookApp& app, quint32 itemId, int originalDay,
                       std::unique_ptr<IAppointment>& occurrence);

class COccurrenceObject : public IAppointment
{
public:
    COccurrenceObject(COutlookApp& app, std::unique_ptr<CAppointmentObject> series, int originalDay);

    QString get_Subject() const override { return m_fields.Subject; }
    void put_Subject(const QString& text) override { Set(m_fields.Subject, text, Changed::Subject); }
    QString get_Location() const override { return m_fields.Location; }
    void put_Location(const QString& text) override { Set(m_fields.Location, text, Changed::Location); }
    DATE get_Start() const override { return m_fields.Start; }
    void put_Start(DATE date) override;
    DATE get_End() const override { return m_fields.End; }
    void put_End(DATE date) override { Set(m_fields.End, date, Changed::Times); }
    bool get_AllDayEvent() const override { return m_fields.AllDay; }
    void put_AllDayEvent(bool allDay) override { Set(m_fields.AllDay, allDay, Changed::Times); }
    int get_BusyStatus() const override { return m_fields.BusyStatus; }
    void put_BusyStatus(int status) override { Set(m_fields.BusyStatus, status, Changed::BusyStatus); }
    QString get_Body() const override { return m_fields.Body; }
    void put_Body(const QString& text) override { Set(m_fields.Body, text, Changed::Body); }
    CStatus Save() override;
    CStatus Delete() override;
    std::unique_ptr<IAppointment> Copy() override;
    int OccurrenceDay() const override { return m_day; }
    CStatus Send() override;
    CStatus Cancel() override;

    int get_Sensitivity() const override { return m_series->get_Sensitivity(); }
    void put_Sensitivity(int) override {}
    bool get_ReminderSet() const override { return m_series->get_ReminderSet(); }
    void put_ReminderSet(bool) override {}
    int get_ReminderMinutesBeforeStart() const override { return m_series->get_ReminderMinutesBeforeStart(); }
    void put_ReminderMinutesBeforeStart(int) override {}
    QString get_Categories() const override { return m_series->get_Categories(); }
    void put_Categories(const QString& names) override { m_series->put_Categories(names); }
    quint32 get_Oid() const override { return m_series->get_Oid(); }
    CEOID RecordOid() const override { return m_series->RecordOid(); }
    IRecipients* get_Recipients() override { return m_series->get_Recipients(); }
    bool get_IsRecurring() const override { return true; }
    IRecurrencePattern* GetRecurrencePattern() override { return m_series->GetRecurrencePattern(); }
    void ClearRecurrencePattern() override {}
    const CForeignData& Foreign() const override { return m_series->Foreign(); }
    void put_Foreign(const CForeignData&) override {}
    void put_Identity(const QString&, quint32) override {}

private:
    template <typename T> void Set(T& field, const T& value, unsigned changed)
    {
        if (field == value)
            return;
        field = value;
        m_changed |= changed;
    }
    void ReadFrom(const CRecurrencePattern& pattern);
    void PutInto(CRecurrenceException& exception, const CRecurrencePattern& pattern) const;
    // Changes the stored pattern in one transaction; `change` fails when the occurrence is gone.
    template <typename Change> CStatus ChangeSeries(Change change);

    COutlookApp& m_app;
    std::unique_ptr<CAppointmentObject> m_series;
    int m_day;
    unsigned m_changed = 0;
    CAppointmentFields m_fields; // of which an occurrence has its own
};
