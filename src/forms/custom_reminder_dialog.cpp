#include "forms/custom_reminder_dialog.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>
#include <limits>

namespace
{
constexpr FieldRowDesc kRows[] = {
    {StrReminderDaysLabel, kIconLeft, kRowText, kRowDigits},
    {StrReminderHoursLabel, kIconLeft, kRowText, kRowDigits},
    {StrReminderMinutesLabel, kIconLeft, kRowText, kRowDigits},
};
constexpr int kHour = 60, kDay = 1440;

// Of a number of minutes: the part that a row shows, and what one of it is worth.
struct CPart {
    int Value, Minutes;
};
CPart PartOf(int total, quint32 id)
{
    if (id == StrReminderDaysLabel)
        return {total / kDay, kDay};
    if (id == StrReminderHoursLabel)
        return {total / kHour % 24, kHour};
    return {total % kHour, 1};
}
} // namespace

CCustomReminderDialog::CCustomReminderDialog(int minutes)
    : CFieldForm(GetString(StrCustomReminder), kRows), m_total(std::max(minutes, 0))
{
    SetTitleFollowsRow(false);
}

int CCustomReminderDialog::Choose(QWidget* owner)
{
    return Run(owner) == kDone ? m_total : -1;
}

void CCustomReminderDialog::ExchangeText(quint32 id, QString& text, bool set)
{
    const CPart part = PartOf(m_total, id);
    if (!set) {
        text = QString::number(part.Value);
        return;
    }
    const qint64 total = m_total + (text.toLongLong() - part.Value) * part.Minutes;
    m_total = int(std::clamp<qint64>(total, 0, std::numeric_limits<int>::max()));
    for (const FieldRowDesc& row : kRows)
        ReloadRow(row.Id);
}
