#include "editors/appointment_editor.h"
#include "drawing/picture_ids.h"
#include "forms/contact_picker.h"
#include "forms/custom_reminder_dialog.h"
#include "forms/extended_text_entry_dialog.h"
#include "forms/question.h"
#include "pim/pim_store.h"
#include "settings/item_text.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>

namespace
{
constexpr FieldRowDesc kRows[] = {
    {StrSubject, PictureFormSubject, kRowText, kRowEntry},
    {StrLocation, PictureFormLocation, kRowText, kRowEntry},
    {StrStartDate, PictureFormStart, kRowDateTime, 0},
    {StrEndDate, PictureFormEnd, kRowDateTime, 0},
    {StrAllDay, PictureAllDay, kRowChoice, 0},
    {StrReminder, PictureReminder, kRowChoice, 0},
    {StrCustomReminder, kIconNone, kRowLink, 0},
    {StrPrivate, PicturePrivate, kRowChoice, 0},
    {StrStatus, PictureFormStatus, kRowChoice, kRowMarked},
    {StrRecurring, PictureRecurring, kRowChoice, 0},
    {StrCustomPattern, kIconNone, kRowLink, 0},
    {StrCategories, PictureFormCategories, kRowLink, 0},
    {StrAttendees, PictureAttendees, kRowLink, 0},
    {StrNote, PictureNote, kRowText, kRowEntry | kRowMultiLine},
};
constexpr int kMinutesPerDay = 1440;
constexpr int kStatusCount = 4;
constexpr int kCustomReminder = CSettings::kReminderCount + 1; // of the reminder list

int PositionOfReminder(int minutes) // among the settings' values; -1 none
{
    for (int n = 0; n < CSettings::kReminderCount; ++n) {
        if (g_Settings.GetReminderVal(n) == minutes)
            return n;
    }
    return -1;
}
} // namespace

CAppointmentEditor::CAppointmentEditor(DATE date, bool hasTime, DATE end, const QString& category)
    : CItemEditor(GetString(StrAppointment), kRows)
{
    if (date == NO_DATE) {
        date = GetToday();
        hasTime = false;
    }
    m_day = DayNumber(date);
    const auto& defaults = g_Settings.DefaultValues;
    m_item.Start = hasTime ? date
                           : m_day + std::clamp(defaults.NewAppointmentStartTime, 0, kMinutesPerDay - 1) /
                                         double(kMinutesPerDay);
    m_item.End = m_item.Start + std::max(defaults.NewAppointmentDuration, 0) / double(kMinutesPerDay);
    if (hasTime && end != NO_DATE)
        m_item.End = end;
    SeedCategories(category);
    SeedEnd();
}

CAppointmentEditor::CAppointmentEditor(IPOutlookApp& app, IAppointment& target, int day, bool onlyOccurrence)
    : CItemEditor(GetString(StrAppointment), kRows), m_item(kKindAppointment, CAppointment::Blank{}),
      m_day(day), m_onlyOccurrence(onlyOccurrence)
{
    PimStore().ReadAppointmentFromModel(target, m_item);
    m_note = target.get_Body();
    PimStore().ReadAttendees(m_item.ItemId, m_attendees);
    SeedEnd();
    if (!onlyOccurrence) {
        PimStore().GetPresetIndex(&app, &m_item, nullptr, m_preset, m_pattern);
        m_patternStored = m_preset != kPresetNone;
    }
}

void CAppointmentEditor::SeedEnd()
{
    SeedPattern();
    m_customReminder = m_item.ReminderSet && PositionOfReminder(m_item.ReminderMinutes) < 0;
}

// ---- rows

void CAppointmentEditor::InitRows()
{
    CItemEditor::InitRows();
    SetRowVisible(StrCustomReminder, m_customReminder, false);
    if (!m_onlyOccurrence)
        return;
    for (const quint32 row : {StrPrivate, StrRecurring, StrCustomPattern, StrReminder, StrCustomReminder})
        RemoveRow(row);
}

bool CAppointmentEditor::FillChoices(quint32 id, QStringList& list)
{
    switch (id) {
    case StrAllDay:
        AddStrings(list, StrRegularEvent, 2);
        return true;
    case StrStatus:
        AddStrings(list, StrFree, kStatusCount);
        return true;
    case StrReminder:
        list << GetString(StrNoReminder);
        for (int n = 0; n < CSettings::kReminderCount; ++n) {
            if (const int minutes = g_Settings.GetReminderVal(n); minutes >= 0)
                list << FormatReminder(minutes);
        }
        list << GetString(StrCustomReminder);
        return true;
    default:
        return CItemEditor::FillChoices(id, list);
    }
}

void CAppointmentEditor::ExchangeText(quint32 id, QString& text, bool set)
{
    if (id != StrLocation)
        return CItemEditor::ExchangeText(id, text, set);
    (set ? m_item.Location : text) = set ? text : m_item.Location;
}

void CAppointmentEditor::ExchangeDate(quint32 id, DATE& date, bool set)
{
    DATE& held = id == StrStartDate ? m_item.Start : m_item.End;
    if (!set) {
        date = held;
        return;
    }
    const DATE old = held;
    held = date;
    if (id != StrStartDate || old == date)
        return;
    m_item.End = date + (m_item.End - old);
    MovePattern(old, date);
    ReloadRow(StrRecurring);
    ReloadRow(StrCustomPattern);
    ReloadRow(StrEndDate);
}

void CAppointmentEditor::ExchangeChoice(quint32 id, int& index, bool set)
{
    if (id == StrAllDay)
        ExchangeAllDay(index, set);
    else if (id == StrReminder)
        ExchangeReminder(index, set);
    else if (id == StrStatus)
        (set ? m_item.BusyStatus : index) = set ? index : m_item.BusyStatus;
    else
        CItemEditor::ExchangeChoice(id, index, set);
}

void CAppointmentEditor::ExchangeAllDay(int& index, bool set)
{
    if (set)
        m_item.AllDay = index == 1;
    else
        index = m_item.AllDay ? 1 : 0;
    for (const quint32 row : {StrStartDate, StrEndDate})
        SetRowType(row, m_item.AllDay ? kRowDate : kRowDateTime);
}

// A list with empty places is shorter than the positions that are counted here: those behind a
// place mean the next entry. Only ten filled places keep the last entry the custom one.
void CAppointmentEditor::ExchangeReminder(int& index, bool set)
{
    if (!set) {
        const int position = PositionOfReminder(m_item.ReminderMinutes);
        index = !m_item.ReminderSet ? 0 : position >= 0 && !m_customReminder ? position + 1 : kCustomReminder;
        return;
    }
    m_item.ReminderSet = index != 0;
    m_customReminder = index == kCustomReminder;
    if (index > 0 && index < kCustomReminder)
        m_item.ReminderMinutes = std::max(g_Settings.GetReminderVal(index - 1), 0);
    ReloadRow(StrCustomReminder);
    SetRowVisible(StrCustomReminder, m_customReminder);
}

// ---- links

void CAppointmentEditor::GetLinkText(quint32 id, QString& text)
{
    if (id == StrAttendees)
        text = FillText(GetString(StrAttendeeCount), {QString::number(m_attendees.size())});
    else if (id == StrCustomReminder)
        text = m_customReminder ? FormatReminder(m_item.ReminderMinutes) : QString();
    else
        CItemEditor::GetLinkText(id, text);
}

void CAppointmentEditor::OnLinkTapped(quint32 id)
{
    if (id == StrLocation) {
        OpenExtendedText(CExtendedTextEntryDialog::kLocation);
    } else if (id == StrAttendees) {
        CContactPicker picker(m_attendees);
        if (picker.Run(this) != kDone)
            return;
        m_attendees = picker.GetAttendees();
        m_attendeesChanged = true;
    } else if (id == StrCustomReminder) {
        if (const int minutes = CCustomReminderDialog(m_item.ReminderMinutes).Choose(this); minutes != -1)
            m_item.ReminderMinutes = minutes;
    } else {
        CItemEditor::OnLinkTapped(id);
    }
}

bool CAppointmentEditor::Save()
{
    if (m_item.AllDay) {
        m_item.Start = DayNumber(m_item.Start);
        m_item.End = DayNumber(m_item.End) + 1;
    }
    const CPoomSession session(PimStore().Volume());
    CDialogQuestions questions(this);
    if (!session.App())
        questions.ShowMessage(GetString(StrSaveFailed), GetString(StrSaveFailedCaption));
    PimStore().SaveAppointment(session.App(), m_item, m_note, m_preset, m_onlyOccurrence, &m_pattern,
                               m_attendeesChanged ? &m_attendees : nullptr, m_day, &questions);
    return true; // the writer has told what went wrong
}
