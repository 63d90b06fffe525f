// The form of a custom recurrence: one table, of which the pattern's kind shows its rows.
// Works on a copy; only "Done" makes it what GetData tells.
#pragma once
#include "forms/field_form.h"
#include "pim/recurrence_data.h"

class CRecurrenceEditor : public CFieldForm
{
public:
    explicit CRecurrenceEditor(const CRecurrencePatternData& data);
    const CRecurrencePatternData& GetData() const { return m_saved; }

protected:
    void InitRows() override { RelayoutRows(); }
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeText(quint32 id, QString& text, bool set) override;
    void ExchangeDate(quint32 id, DATE& date, bool set) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void GetLinkText(quint32 id, QString& text) override;
    void OnLinkTapped(quint32 id) override;
    void RelayoutRows() override;
    bool Save() override;

private:
    quint32* NumberOf(quint32 id);

    CRecurrencePatternData m_data, m_saved;
    quint32 m_keptInterval; // comes back when "Every weekday" is left
};
