// What is searched, how, between which days, and how many results are enough.
// Shape: works on a copy of the settings of the search view; they change when the form closes by Done.
#pragma once
#include "forms/field_form.h"
#include "settings/settings.h"

class CSearchOptionsForm : public CFieldForm
{
public:
    CSearchOptionsForm();

protected:
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    bool Save() override; // refuses a begin after the end, with a message

private:
    decltype(CSettingsValues::SearchView) m_values;
};
