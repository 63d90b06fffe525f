// An appointment in memory, plain or a whole series.
#pragma once
#include "object_model/appointment_record.h"
#include "object_model/pattern_object.h"
#include "object_model/recipients_object.h"

class COutlookApp;

class CAppointmentObject : public IAppointment, private CItemBase
{
public:
    explicit CAppointmentObject(COutlookApp& app) : CItemBase(app) {}
    CAppointmentObject(COutlookApp& app, CEOID oid, quint32 itemId, const std::vector<CEPROPVAL>& rows);

    QString get_Subject() const override { return m_fields.Subject; }
    void put_Subject(const QString& text) override { Set(m_fields.Subject, text, Changed::Subject); }
    QString get_Location() const override { return m_fields.Location; }
    void put_Location(const QString& text) override { Set(m_fields.Location, text, Changed::Location); }
    DATE get_Start() const override { return m_series ? m_series->Rows().Start() : m_fields.Start; }
    void put_Start(DATE date) override;
    DATE get_End() const override;
    void put_End(DATE date) override;
    bool get_AllDayEvent() const override { return m_fields.AllDay; }
    void put_AllDayEvent(bool allDay) override;
    int get_BusyStatus() const override { return m_fields.BusyStatus; }
    void put_BusyStatus(int status) override { Set(m_fields.BusyStatus, status, Changed::BusyStatus); }
    int get_Sensitivity() const override { return m_fields.Sensitivity; }
    void put_Sensitivity(int sensitivity) override
    {
        Set(m_fields.Sensitivity, sensitivity, Changed::Sensitivity);
    }
    QString get_Body() const override { return m_fields.Body; }
    void put_Body(const QString& text) override { Set(m_fields.Body, text, Changed::Body); }
    bool get_ReminderSet() const override { return m_fields.ReminderSet; }
    void put_ReminderSet(bool set) override { Set(m_fields.ReminderSet, set, Changed::Reminder); }
    int get_ReminderMinutesBeforeStart() const override { return m_fields.ReminderMinutes; }
    void put_ReminderMinutesBeforeStart(int minutes) override
    {
        Set(m_fields.ReminderMinutes, minutes, Changed::Reminder);
    }
    QString get_Categories() const override { return CategoryNames(); }
    void put_Categories(const QString& names) override { PutCategoryNames(names); }
    quint32 get_Oid() const override { return m_itemId; }
    CEOID RecordOid() const override { return m_oid; }
    IRecipients* get_Recipients() override;
    bool get_IsRecurring() const override { return m_series != nullptr; }
    IRecurrencePattern* GetRecurrencePattern() override;
    void ClearRecurrencePattern() override;
    CStatus Save() override;
    CStatus Delete() override { return DeleteRecord(kAppointmentsDatabase); }
    std::unique_ptr<IAppointment> Copy() override;
    CStatus Send() override;
    CStatus Cancel() override;
    const CForeignData& Foreign() const override { return m_fields.Foreign; }
    void put_Foreign(const CForeignData& data) override;
    void put_Identity(const QString& uid, quint32 sequence) override;

    // For its occurrences, which keep these in the series.
    CStatus SaveCategories() { return SaveCategoriesOf(m_itemId, false); }
    void PutRecipients(CRecordRows& rows) const;
    const CPatternObject* Series() const { return m_series.get(); }

private:
    CStatus PutTimes(CRecordRows& rows, CRecurrencePattern& pattern);
    CStatus WriteAll(CRecurrencePattern& pattern, CEOID* oid, quint32* itemId);

    bool m_wasRecurring = false; // as stored
    CAppointmentFields m_fields;
    std::unique_ptr<CPatternObject> m_series;
    std::unique_ptr<CPatternObject> m_cleared; // may still be held by the caller
    std::unique_ptr<CRecipients> m_recipients; // once asked for
};
