// The form of a task. Its dates may be missing: a box of each row tells, and NO_DATE in the task.
#pragma once
#include "editors/item_editor.h"
#include "object_model/object_model.h"

class CTaskEditor : public CItemEditor
{
public:
    // `app` reads the stored recurrence of a task that is no new one; null for a new one.
    CTaskEditor(IPOutlookApp* app, const CTask& task, const QString& note, const QString& category);
    const CTask& GetItem() const { return m_task; }

protected:
    CPimItem& Item() override { return m_task; }
    DATE PatternDate() override { return m_task.Start; }
    void InitRows() override;
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeDate(quint32 id, DATE& date, bool set) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void ExchangeInclude(quint32 id, bool& included, bool set) override;
    bool Save() override;

private:
    void SetStart(DATE date);
    void SetDue(DATE date);

    CTaskListEntry m_task;
    bool m_startIncluded = true, m_dueIncluded = true, m_reminderIncluded = false;
};
