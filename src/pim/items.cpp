#include "pim/items.h"

#include "settings/settings.h"

#include <algorithm>

void CPimRecord::CopyIdsTo(CPimRecord& other) const
{
    other.ItemId = ItemId;
    other.RecordOid = RecordOid;
}

void CCategorySet::Insert(qint32 number)
{
    const auto at = std::lower_bound(m_numbers.begin(), m_numbers.end(), number);
    if (at == m_numbers.end() || *at != number)
        m_numbers.insert(at, number);
}

bool CCategorySet::Contains(qint32 number) const
{
    return std::binary_search(m_numbers.begin(), m_numbers.end(), number);
}

void CCategorizedRecord::CopyCategoriesTo(CCategorizedRecord& other) const
{
    other.Categories = Categories;
    CopyIdsTo(other);
}

void CPimItem::CopyCommonTo(CPimItem& other) const
{
    other.Subject = Subject;
    other.Start = Start;
    other.End = End;
    other.HasNote = HasNote;
    other.Recurrence = Recurrence;
    other.ReminderSet = ReminderSet;
    other.Sensitivity = Sensitivity;
    CopyCategoriesTo(other);
}

CAppointment::CAppointment(int kind) : Kind(kind)
{
    const auto& defaults = g_Settings.DefaultValues;
    ReminderSet = defaults.ReminderValue != 0;
    if (defaults.ReminderValue > 0 && defaults.ReminderValue <= CSettings::kReminderCount)
        ReminderMinutes = std::max(g_Settings.GetReminderVal(defaults.ReminderValue - 1), 0);
    // Whole and half hours only; a value outside the day stands for its nearest end.
    const int minutes = std::clamp(defaults.NewAppointmentStartTime, 0, 1439);
    const int rounded = minutes / 60 * 60 + (minutes % 60 != 0 ? 30 : 0);
    Start = GetToday() + rounded / 1440.0;
    End = Start + std::max(defaults.NewAppointmentDuration, 0) / 1440.0;
}

void CAppointment::CopyTo(CAppointment& other) const
{
    other.Location = Location;
    other.EndsPreviousDay = EndsPreviousDay;
    other.Past = Past;
    other.HasAttendees = HasAttendees;
    other.Conflict = Conflict;
    other.AllDay = AllDay;
    other.BusyStatus = BusyStatus;
    other.ReminderMinutes = ReminderMinutes;
    other.OriginalDay = OriginalDay;
    other.OriginalStart = OriginalStart;
    other.Visible = Visible;
    CopyCommonTo(other);
}
