// One page of the settings: a form whose rows edit a copy of the settings, taken back by "Done".
// Ownership: the settings are the caller's, and outlive the page.
#pragma once
#include "forms/field_form.h"
#include "forms/reminder_values_dialog.h"
#include "pages/settings_rows.h"
#include "settings/settings.h"

class CSettingsPage : public CFieldForm
{
public:
    CSettingsPage(SettingsPageId page, CSettings& settings);
    static QString TitleOf(SettingsPageId page);

protected:
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void ExchangeDate(quint32 id, DATE& date, bool set) override;
    void ExchangeInclude(quint32 id, bool& included, bool set) override;
    void GetLinkText(quint32 id, QString& text) override;
    void OnLinkTapped(quint32 id) override;
    bool Save() override;

private:
    const CSettingsRow* Find(quint32 id) const;
    CSettingsChoices ChoicesOf(quint32 id) const;
    qint32& ValueOf(quint32 id) { return Find(id)->Value(m_values); }

    std::span<const CSettingsRow> m_table;
    CSettings& m_settings;
    CSettingsValues m_values;
    CReminderValuesDialog::CValues m_reminders;
};
