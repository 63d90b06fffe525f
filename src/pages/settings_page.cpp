#include "pages/settings_page.h"
#include "pages/active_views_dialog.h"
#include "settings/item_text.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int kMinutesOfDay = 24 * 60;
constexpr int kRotatedViews = 5;
const QString kSeparator = QStringLiteral(", ");
} // namespace

CSettingsPage::CSettingsPage(SettingsPageId page, CSettings& settings)
    : CFieldForm(TitleOf(page), SettingsFieldRowsOf(page)), m_table(SettingsRowsOf(page)), m_settings(settings),
      m_values(settings), m_reminders(CReminderValuesDialog::OfSettings(settings))
{
    SetTitleFollowsRow(false);
}

QString CSettingsPage::TitleOf(SettingsPageId page)
{
    return GetString(StrGeneralSettings + int(page));
}

const CSettingsRow* CSettingsPage::Find(quint32 id) const
{
    return &*std::find_if(m_table.begin(), m_table.end(),
                          [id](const CSettingsRow& row) { return row.Row.Id == id; });
}

CSettingsChoices CSettingsPage::ChoicesOf(quint32 id) const
{
    return SettingsChoicesOf(*Find(id), m_reminders);
}

// ---- rows

bool CSettingsPage::FillChoices(quint32 id, QStringList& list)
{
    list << ChoicesOf(id).Texts;
    return !list.isEmpty();
}

// A value that no list offers stands in the file as long as nothing else is chosen.
void CSettingsPage::ExchangeChoice(quint32 id, int& index, bool set)
{
    const CSettingsChoices choices = ChoicesOf(id);
    if (!set)
        index = choices.IndexOf(ValueOf(id));
    else if (index >= 0 && size_t(index) < choices.Values.size())
        ValueOf(id) = choices.Values[size_t(index)];
}

void CSettingsPage::ExchangeDate(quint32 id, DATE& date, bool set)
{
    qint32& minutes = ValueOf(id);
    const int shown = std::clamp<int>(minutes, 0, kMinutesOfDay - 1);
    if (!set) {
        date = shown / double(kMinutesOfDay);
        return;
    }
    const int chosen = int(std::lround((date - std::floor(date)) * kMinutesOfDay)) % kMinutesOfDay;
    if (chosen != shown)
        minutes = chosen;
}

void CSettingsPage::ExchangeInclude(quint32 id, bool& included, bool set)
{
    qint32& value = ValueOf(id);
    if (!set)
        included = value != 0;
    else if (included != (value != 0))
        value = included ? 1 : 0;
}

void CSettingsPage::GetLinkText(quint32 id, QString& text)
{
    QStringList parts;
    if (id == StrRotationActiveViews) {
        for (int kind = 0; kind < kRotatedViews; ++kind) {
            if (m_values.General.RotationActiveViews & (1 << kind))
                parts << GetString(StrViewDaily + kind);
        }
    } else {
        for (const int minutes : m_reminders) {
            if (minutes >= 0)
                parts << FormatReminder(minutes);
        }
    }
    text = parts.join(kSeparator);
}

void CSettingsPage::OnLinkTapped(quint32 id)
{
    if (id == StrRotationActiveViews) {
        CActiveViewsDialog dialog(m_values.General.RotationActiveViews);
        if (dialog.Run(this) == kDone)
            m_values.General.RotationActiveViews = dialog.GetActiveViews();
    } else if (id == StrReminderValues) {
        CReminderValuesDialog dialog(m_reminders);
        if (dialog.Run(this) != kDone)
            return;
        m_reminders = dialog.GetValues();
        if (ChoicesOf(StrReminderDefault).IndexOf(m_values.DefaultValues.ReminderValue) < 0)
            m_values.DefaultValues.ReminderValue = 0; // its value is gone
        ReloadRow(StrReminderDefault);
    }
}

bool CSettingsPage::Save()
{
    static_cast<CSettingsValues&>(m_settings) = m_values;
    CReminderValuesDialog::Store(m_reminders, m_settings);
    return true;
}
