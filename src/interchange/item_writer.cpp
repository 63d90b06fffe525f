#include "interchange/item_writer.h"

#include <QtEndian>

namespace
{
const QString kCancelled = QStringLiteral("Cancelled: ");

CForeignData ForeignOf(const CImportedEvent& event, quint32 equalsIndex, const QString& kept,
                       const QString& sourceRule)
{
    CForeignData foreign;
    foreign.Uid = event.Uid;
    foreign.Sequence = event.Sequence;
    foreign.EqualsIndex = equalsIndex;
    foreign.Organizer = event.Organizer;
    foreign.ContentHash = CItemWriter::HashBytes(event.Hash);
    foreign.LastChange = event.LastChange;
    foreign.Text = kept;
    foreign.SourceRule = sourceRule;
    return foreign;
}
} // namespace

QString CItemWriter::CancelledSubject(const QString& subject)
{
    return subject.startsWith(kCancelled) ? subject : kCancelled + subject;
}

QByteArray CItemWriter::HashBytes(quint64 hash)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToLittleEndian(hash, bytes.data());
    return bytes;
}

CStatus CItemWriter::Write(const CImportedEvent& event, const CPlannedRecord& record, quint32 equalsIndex,
                           const QString& kept, const QString& sourceRule, IAppointment* reused)
{
    std::unique_ptr<IAppointment> created;
    if (!reused)
        created = m_app.CreateAppointment();
    IAppointment& item = reused ? *reused : *created;
    PutValues(event, item, !reused);
    if (record.IsSeries) {
        item.put_AllDayEvent(event.Dates.AllDay);
        IRecurrencePattern* const pattern = item.GetRecurrencePattern();
        CRecurrencePattern whole = record.Pattern;
        whole.SetZone(ZoneRecord(event.Zone));
        pattern->put_Zone(ZoneRecord(event.Zone));
        pattern->put_Pattern(whole);
    } else {
        if (reused && item.get_IsRecurring())
            item.ClearRecurrencePattern();
        PutDates(event, record.Start, record.End, item);
    }
    CForeignData foreign = ForeignOf(event, equalsIndex, kept, sourceRule);
    foreign.OccurrenceId = record.OccurrenceId;
    item.put_Foreign(foreign);
    return item.Save();
}

CStatus CItemWriter::WriteTask(const CImportedEvent& event, const CRecurrencePattern* pattern,
                               quint32 equalsIndex, const QString& kept, const QString& sourceRule,
                               ITask* reused)
{
    std::unique_ptr<ITask> created;
    if (!reused)
        created = m_app.CreateTask();
    ITask& item = reused ? *reused : *created;
    const CImportedTask& task = event.Task;
    const auto day = [](const std::optional<qint64>& wall) { return wall ? DateOfWall(*wall) : NO_DATE; };
    item.put_Subject(event.Cancelled ? CancelledSubject(event.Subject) : event.Subject);
    item.put_Body(event.Note);
    item.put_StartDate(day(task.Start));
    item.put_DueDate(day(task.Due));
    item.put_Importance(task.Priority);
    item.put_Sensitivity(event.Sensitivity);
    item.put_Complete(task.Complete);
    item.put_DateCompleted(day(task.Completed));
    item.put_ReminderSet(task.Reminder.has_value());
    item.put_ReminderTime(day(task.Reminder));
    item.put_Categories(event.Categories.join(QStringLiteral(", ")));
    if (pattern) {
        CRecurrencePattern whole = *pattern;
        whole.SetZone(m_device);
        item.GetRecurrencePattern()->put_Zone(m_device);
        item.GetRecurrencePattern()->put_Pattern(whole);
    } else {
        item.ClearRecurrencePattern();
    }
    item.put_Foreign(ForeignOf(event, equalsIndex, kept, sourceRule));
    return item.Save();
}

void CItemWriter::PutValues(const CImportedEvent& event, IAppointment& item, bool isNew) const
{
    item.put_Subject(event.Cancelled ? CancelledSubject(event.Subject) : event.Subject);
    if (!isNew || !event.Location.isEmpty())
        item.put_Location(event.Location);
    if (!isNew || !event.Note.isEmpty())
        item.put_Body(event.Note);
    item.put_BusyStatus(event.BusyStatus);
    item.put_Sensitivity(event.Sensitivity);
    item.put_ReminderSet(event.ReminderMinutes.has_value());
    if (!isNew || event.ReminderMinutes)
        item.put_ReminderMinutesBeforeStart(event.ReminderMinutes.value_or(0));
    if (!isNew || !event.Categories.isEmpty())
        item.put_Categories(event.Categories.join(QStringLiteral(", ")));
    if (isNew && event.Attendees.empty())
        return;
    IRecipients* const recipients = item.get_Recipients();
    for (int i = recipients->get_Count(); i >= 1; --i)
        (void)recipients->Remove(i);
    for (const CAttendee& attendee : event.Attendees)
        if (IRecipient* const added = recipients->Add(attendee.Name))
            added->put_Address(attendee.Address);
}

void CItemWriter::PutDates(const CImportedEvent& event, qint64 start, qint64 end, IAppointment& item) const
{
    item.put_AllDayEvent(event.Dates.AllDay);
    item.put_Start(DateOfWall(DeviceWall(start, event.Zone)));
    item.put_End(DateOfWall(DeviceWall(end, event.Zone)));
}
