#include "interchange/calendar_exporter.h"

#include "records/occurrences.h"
#include "records/property_numbers.h"
#include "util/date_time.h"

#include <algorithm>

namespace
{
constexpr qsizetype kBlockBytes = 64 << 10;

TimeZoneInformation DeviceZone()
{
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    return zone;
}

bool Touches(DATE start, DATE end, const CExportRange& range)
{
    const int first = DayNumber(start);
    const int last =
        end > start && end == std::trunc(end) ? DayNumber(end) - 1 : DayNumber(std::max(start, end));
    return first <= range.LastDay && last >= range.FirstDay;
}

// Its dates are whole days, and it is there on the last one, too.
bool TaskTouches(const ITask& task, const CExportRange& range)
{
    if (task.get_StartDate() == NO_DATE && task.get_DueDate() == NO_DATE)
        return false;
    const int due = DayNumber(task.get_DueDate() != NO_DATE ? task.get_DueDate() : task.get_StartDate());
    const int start = task.get_StartDate() != NO_DATE ? DayNumber(task.get_StartDate()) : due;
    return std::min(start, due) <= range.LastDay && std::max(start, due) >= range.FirstDay;
}

bool SeriesTouches(const CRecurrencePattern& pattern, bool allDay, const TimeZoneInformation& device,
                   const CExportRange& range)
{
    std::vector<COccurrence> found;
    ExpandPattern(pattern, range.FirstDay - 1, range.LastDay + 1, found);
    return std::any_of(found.begin(), found.end(), [&](const COccurrence& occurrence) {
        const int shift = allDay ? 0 : ZoneShift(pattern, device, occurrence.Start);
        const auto shifted = [shift](DATE date) { return DateOfSigned(SignedOf(date) + shift / 1440.0); };
        return Touches(shifted(occurrence.Start), shifted(occurrence.End), range);
    });
}
} // namespace

CTextLines CalendarHead(const char* method)
{
    CTextLines lines{"BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Tessera//Tessera//EN"};
    if (method)
        lines.push_back(std::string("METHOD:") + method);
    return lines;
}

CCalendarExporter::CCalendarExporter(IPOutlookApp& app, CPropertyVolume& volume, Write write)
    : m_app(app), m_volume(volume), m_write(std::move(write)), m_device(DeviceZone()),
      m_events(m_device, GetLocalTime().wYear), m_tasks(m_events.ZoneTable(), m_events.Zones())
{
}

CStatus CCalendarExporter::Export(const CExportRange& range)
{
    CStatus status;
    if (range.Calendar) {
        status = Put(CalendarHead(nullptr), false);
        if (status)
            status = ExportEvents(range);
        if (status)
            status = ExportTasks(range);
        if (status)
            status = Put({"END:VCALENDAR"}, false);
    }
    if (status && range.Contacts)
        status = ExportContacts(range);
    if (status)
        status = m_volume.TakeReadFault();
    return status ? Put({}, true) : status;
}

CStatus CCalendarExporter::Put(const CTextLines& lines, bool flush)
{
    FoldLines(lines, m_pending);
    if (m_pending.isEmpty() || (!flush && m_pending.size() < kBlockBytes))
        return {};
    if (!m_write(m_pending))
        return {StatusKind::Io, QStringLiteral("The output cannot be written.")};
    m_pending.clear();
    return {};
}

// By identity: those of one UID, sequence and place among equals stand together.
std::vector<CCalendarExporter::CEntry> CCalendarExporter::Entries(const QString& database, quint32 tag)
{
    constexpr CEPROPID kIds[] = {Prop::RecId, Prop::Uid, Prop::Sequence, Prop::EqualsIndex};
    std::vector<CEntry> entries;
    std::vector<CEPROPVAL> rows;
    const auto records = m_volume.OpenDatabase(database, {}, true);
    if (!records)
        return entries;
    records->Seek(SeekType::Beginning);
    while (records->ReadRecordProps(kIds, rows) != 0) {
        const auto number = [&rows](size_t row) { return rows[row].Found() ? quint32(rows[row].Number) : 0; };
        CEntry entry{rows[1].Found() ? rows[1].Text : QString(), number(2), number(3), number(0) + tag};
        if (entry.Uid.isEmpty())
            entry.Uid = MadeUid(entry.ItemId);
        entries.push_back(std::move(entry));
    }
    const auto key = [](const CEntry& e) { return std::tie(e.Uid, e.EqualsIndex, e.Sequence, e.ItemId); };
    std::sort(entries.begin(), entries.end(),
              [&](const CEntry& a, const CEntry& b) { return key(a) < key(b); });
    return entries;
}

bool CCalendarExporter::TouchesRange(const std::vector<quint32>& ids, const CExportRange& range)
{
    for (const quint32 id : ids) {
        std::unique_ptr<IAppointment> item;
        if (!m_app.GetAppointmentFromOid(id, item))
            continue;
        const bool touches = item->get_IsRecurring() ? SeriesTouches(item->GetRecurrencePattern()->Pattern(),
                                                                     item->get_AllDayEvent(), m_device, range)
                                                     : Touches(item->get_Start(), item->get_End(), range);
        if (touches)
            return true;
    }
    return false;
}

CStatus CCalendarExporter::ExportEvents(const CExportRange& range)
{
    const std::vector<CEntry> entries = Entries(kAppointmentsDatabase, kAppointmentTag);
    for (size_t from = 0; from < entries.size();) {
        std::vector<quint32> ids;
        size_t to = from;
        // Changed occurrences without a series count as the first one's.
        for (; to < entries.size() && entries[to].Uid == entries[from].Uid &&
               entries[to].EqualsIndex == entries[from].EqualsIndex;
             ++to)
            ids.push_back(entries[to].ItemId);
        from = to;
        if (range.LastDay != 0 && !TouchesRange(ids, range))
            continue;
        CTextLines lines;
        CStatus status = m_events.Export(m_app, ids, lines);
        if (!status && status.Kind() == StatusKind::NotFound)
            continue; // deleted meanwhile
        if (status)
            status = Put(lines, false);
        if (!status)
            return status;
    }
    return {};
}

CStatus CCalendarExporter::ExportTasks(const CExportRange& range)
{
    for (const CEntry& entry : Entries(kTasksDatabase, kTaskTag)) {
        std::unique_ptr<ITask> task;
        if (const CStatus status = m_app.GetTaskFromOid(entry.ItemId, task); !status) {
            if (status.Kind() == StatusKind::NotFound)
                continue;
            return status;
        }
        if (range.LastDay != 0 && !TaskTouches(*task, range))
            continue;
        CTextLines lines;
        m_tasks.Export(*task, entry.Uid, lines);
        if (const CStatus status = Put(lines, false); !status)
            return status;
    }
    return {};
}

// A contact is on the days of its birthday and anniversary of any year.
CStatus CCalendarExporter::ExportContacts(const CExportRange& range)
{
    const auto inRange = [&range](DATE date) {
        if (date == NO_DATE)
            return false;
        int year = 0, month = 0, day = 0, first = 0, last = 0, m = 0, d = 0;
        CivilOfDayNumber(DayNumber(date), &year, &month, &day);
        CivilOfDayNumber(range.FirstDay, &first, &m, &d);
        CivilOfDayNumber(range.LastDay, &last, &m, &d);
        for (int y = std::max(first, year == kContactYearUnknown ? first : year); y <= last; ++y)
            if (const int on = ReturnInYear(y, month, day); on >= range.FirstDay && on <= range.LastDay)
                return true;
        return false;
    };
    for (const CEntry& entry : Entries(kContactsDatabase, kContactTag)) {
        std::unique_ptr<IContact> contact;
        if (const CStatus status = m_app.GetContactFromOid(entry.ItemId, contact); !status) {
            if (status.Kind() == StatusKind::NotFound)
                continue;
            return status;
        }
        if (range.LastDay != 0 && !inRange(contact->get_Birthday()) && !inRange(contact->get_Anniversary()))
            continue;
        CTextLines lines;
        m_cards.Export(*contact, entry.Uid, lines);
        if (const CStatus status = Put(lines, false); !status)
            return status;
    }
    return {};
}
