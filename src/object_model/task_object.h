// A task in memory, with the pattern of a recurring one.
#pragma once
#include "object_model/item_base.h"
#include "object_model/pattern_object.h"

std::span<const CEPROPID> TaskRows();

class CTaskObject : public ITask, private CItemBase
{
public:
    explicit CTaskObject(COutlookApp& app) : CItemBase(app) {}
    CTaskObject(COutlookApp& app, CEOID oid, quint32 itemId, const std::vector<CEPROPVAL>& rows);

    QString get_Subject() const override { return m_subject; }
    void put_Subject(const QString& text) override { Set(m_subject, text, Changed::Subject); }
    DATE get_StartDate() const override { return m_start; }
    void put_StartDate(DATE date) override { Set(m_start, WholeDay(date), Changed::Times); }
    DATE get_DueDate() const override { return m_due; }
    void put_DueDate(DATE date) override { Set(m_due, WholeDay(date), Changed::Times); }
    int get_Importance() const override { return m_importance; }
    void put_Importance(int importance) override { Set(m_importance, importance, Changed::Priority); }
    bool get_Complete() const override { return m_complete; }
    void put_Complete(bool complete) override;
    DATE get_DateCompleted() const override { return m_completed; }
    void put_DateCompleted(DATE date) override { Set(m_completed, date, Changed::Complete); }
    int get_Sensitivity() const override { return m_sensitivity; }
    void put_Sensitivity(int sensitivity) override { Set(m_sensitivity, sensitivity, Changed::Sensitivity); }
    QString get_Body() const override { return m_body; }
    void put_Body(const QString& text) override { Set(m_body, text, Changed::Body); }
    bool get_ReminderSet() const override { return m_reminderSet; }
    void put_ReminderSet(bool set) override { Set(m_reminderSet, set, Changed::Reminder); }
    DATE get_ReminderTime() const override { return m_reminderTime; }
    void put_ReminderTime(DATE time) override { Set(m_reminderTime, time, Changed::Reminder); }
    QString get_Categories() const override { return CategoryNames(); }
    void put_Categories(const QString& names) override { PutCategoryNames(names); }
    quint32 get_Oid() const override { return m_itemId; }
    CEOID RecordOid() const override { return m_oid; }
    bool get_IsRecurring() const override { return m_series != nullptr; }
    IRecurrencePattern* GetRecurrencePattern() override;
    void ClearRecurrencePattern() override;
    CStatus SkipRecurrence() override;
    CStatus Save() override;
    CStatus Delete() override { return DeleteRecord(kTasksDatabase); }
    std::unique_ptr<ITask> Copy() override;
    const CForeignData& Foreign() const override { return m_foreign; }
    void put_Foreign(const CForeignData& data) override;

private:
    static DATE WholeDay(DATE date) { return date == NO_DATE ? NO_DATE : DATE(DayNumber(date)); }
    DATE Anchor() const { return m_start != NO_DATE ? m_start : m_due; }
    bool MoveOn(const CRecurrencePattern& pattern);
    CStatus CheckDates() const;
    CStatus PutPattern(CRecordRows& rows, CRecurrencePattern& pattern);
    void PutRows(CRecordRows& rows) const;
    CStatus WriteAll(CRecurrencePattern& pattern, CEOID* oid, quint32* itemId);

    QString m_subject, m_body;
    DATE m_start = NO_DATE, m_due = NO_DATE;
    int m_importance = 1, m_sensitivity = 0;
    bool m_complete = false, m_reminderSet = false;
    DATE m_completed = NO_DATE;    // local time
    DATE m_reminderTime = NO_DATE; // local time
    CForeignData m_foreign;
    bool m_wasRecurring = false; // as stored
    std::unique_ptr<CPatternObject> m_series;
    std::unique_ptr<CPatternObject> m_cleared; // may still be held by the caller
};
