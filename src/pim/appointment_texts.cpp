// What the store reads of single appointments: texts, attendees, one occurrence, exact values.
#include "pim/pim_store_private.h"

#include "pim/filter_match.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

namespace
{
std::unique_ptr<IAppointment> OpenAppointment(const CPoomSession& session, quint32 itemId)
{
    std::unique_ptr<IAppointment> item;
    if (!session.App() || !session.App()->GetAppointmentFromOid(itemId, item))
        return nullptr;
    return item;
}

// The occurrence of a series that has an original day; null for the item itself.
std::unique_ptr<IAppointment> OpenOccurrence(IAppointment& item, int originalDay)
{
    std::unique_ptr<IAppointment> occurrence;
    if (originalDay == 0 || !item.get_IsRecurring() ||
        !item.GetRecurrencePattern()->GetOccurrence(originalDay, occurrence))
        return nullptr;
    return occurrence;
}
} // namespace

CPoomSession::CPoomSession(const std::shared_ptr<CPropertyVolume>& volume)
{
    if (volume)
        m_app = MakePOutlookApp(volume);
    if (m_app && !m_app->Logon())
        m_app.reset();
    if (m_app)
        m_app->SetTransport(PimStore().Transport());
}

CPoomSession::~CPoomSession()
{
    if (m_app)
        m_app->Logoff();
}

bool CPimStore::GetItemTexts(quint32 itemId, DATE date, int occurrenceDay, int kind, QString& note,
                             QString& attendees)
{
    Q_UNUSED(date);
    if (kind != kKindAppointment && kind != kKindTask)
        return true;
    const CPoomSession session(d->Volume);
    if (std::unique_ptr<ITask> task; kind == kKindTask) {
        if (session.App() && session.App()->GetTaskFromOid(itemId, task))
            note = task->get_Body();
        return true;
    }
    std::unique_ptr<IAppointment> item = OpenAppointment(session, itemId);
    if (!item)
        return true;
    const std::unique_ptr<IAppointment> occurrence = OpenOccurrence(*item, occurrenceDay);
    note = occurrence ? occurrence->get_Body() : item->get_Body();
    QStringList names;
    IRecipients* recipients = item->get_Recipients();
    for (int i = 1; i <= recipients->get_Count(); ++i)
        names += recipients->Item(i)->get_Name();
    attendees = names.join(QStringLiteral("; "));
    return true;
}

bool CPimStore::ReadAttendees(quint32 itemId, std::vector<CAttendee>& attendees)
{
    attendees.clear();
    const CPoomSession session(d->Volume);
    const std::unique_ptr<IAppointment> item = OpenAppointment(session, itemId);
    if (!item)
        return false;
    IRecipients* recipients = item->get_Recipients();
    for (int i = 1; i <= recipients->get_Count(); ++i)
        attendees.push_back({recipients->Item(i)->get_Name(), recipients->Item(i)->get_Address()});
    return true;
}

bool CPimStore::ReadReminderMinutes(CAppointment& item)
{
    const CPoomSession session(d->Volume);
    const std::unique_ptr<IAppointment> stored = OpenAppointment(session, item.ItemId);
    if (!stored)
        return false;
    const std::unique_ptr<IAppointment> occurrence = OpenOccurrence(*stored, item.OriginalDay);
    item.ReminderMinutes = (occurrence ? *occurrence : *stored).get_ReminderMinutesBeforeStart();
    return true;
}

bool CPimStore::ReadOccurrence(quint32 itemId, int day, CAppointment& item)
{
    CAppointmentReader reader(d->Categories);
    CRecurrencePattern pattern;
    CEOID oid = 0;
    CAppointment read(kKindAppointment, CAppointment::Blank{});
    const CEPROPVAL recId(Prop::RecId, qint64(itemId - kAppointmentTag));
    if (!reader.Open(d->Volume, Prop::RecId) || reader.Seek(SeekType::ValueFirstEqual, recId) == 0 ||
        !reader.ReadAppointment(read, pattern, oid, -1, -1))
        return false;
    read.Visible = MatchesFilter(g_Settings.GetActiveFilter(), read.Categories);
    if (read.Recurrence == 0) {
        read.CopyTo(item);
        return true;
    }
    // Best is one that was moved to the day, then the one that the pattern puts there, wherever it
    // shows now, then one that runs on into the day.
    enum { kNone, kRunsOn, kOriginal, kMovedHere } best = kNone;
    const auto offer = [&](const CAppointment& instance) {
        const bool startsHere = DayNumber(instance.Start) == day;
        const auto rank = instance.Recurrence == 2 && startsHere      ? kMovedHere
                          : startsHere || instance.OriginalDay == day ? kOriginal
                                                                      : kRunsOn;
        if (rank <= best)
            return;
        best = rank;
        instance.CopyTo(item);
    };
    std::unique_ptr<CAppointment> override;
    while (reader.NextInstance(read, override, day, day, pattern))
        offer(override ? *override : read);
    for (const CRecurrenceException& exception : pattern.Exceptions) {
        if (!exception.Deleted && exception.OriginalDay == day)
            offer(*reader.MakeOverride(read, pattern, exception));
    }
    return best != kNone;
}

void CPimStore::ReadAppointmentFromModel(IAppointment& item, CAppointment& appointment)
{
    constexpr int kShortestNote = 3; // what is shorter is an empty line
    appointment.Kind = kKindAppointment;
    appointment.ItemId = item.get_Oid();
    appointment.RecordOid = item.RecordOid();
    appointment.Subject = item.get_Subject();
    if (appointment.Subject.isEmpty())
        appointment.Subject = GetString(StringId::StrNoSubject);
    appointment.Location = item.get_Location();
    appointment.AllDay = item.get_AllDayEvent();
    appointment.Start = item.get_Start();
    appointment.End = item.get_End();
    if (appointment.AllDay && appointment.End != NO_DATE)
        appointment.End -= 1.0;
    appointment.BusyStatus = item.get_BusyStatus();
    appointment.Sensitivity = item.get_Sensitivity();
    appointment.Recurrence = item.get_IsRecurring() ? 1 : 0;
    appointment.HasNote = item.get_Body().size() >= kShortestNote;
    appointment.ReminderSet = item.get_ReminderSet();
    appointment.ReminderMinutes = item.get_ReminderMinutesBeforeStart();
    appointment.HasAttendees = item.get_Recipients()->get_Count() != 0;
    appointment.Categories.Clear();
    d->Categories.BeginPass();
    d->Categories.ReadItemCategories(appointment);
    appointment.Visible = MatchesFilter(g_Settings.GetActiveFilter(), appointment.Categories);
}
