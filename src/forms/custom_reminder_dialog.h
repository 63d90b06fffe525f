// A reminder of one's own: days, hours and minutes before the start, normalized as soon as a
// field is left.
#pragma once
#include "forms/field_form.h"

class CCustomReminderDialog : public CFieldForm
{
public:
    explicit CCustomReminderDialog(int minutes); // negative counts as 0
    int Choose(QWidget* owner);                  // the minutes; -1 when it was cancelled
    int GetMinutes() const { return m_total; }

protected:
    void ExchangeText(quint32 id, QString& text, bool set) override;
    bool Save() override { return true; }

private:
    int m_total;
};
