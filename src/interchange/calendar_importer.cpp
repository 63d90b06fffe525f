#include "interchange/calendar_importer.h"

#include "interchange/content_hash.h"
#include "interchange/import_limits.h"
#include "records/occurrences.h"

#include <algorithm>

namespace
{
constexpr int kBatchItems = 2000;
constexpr int kProgressItems = 64;
constexpr size_t kToldZones = 100;
const QString kContentUid = QStringLiteral("@content");
const QString kTooManyChanges = QStringLiteral("its series has too many changed occurrences");

quint64 UidHash(const QString& uid)
{
    return HashOf({reinterpret_cast<const char*>(uid.constData()), size_t(uid.size()) * sizeof(QChar)});
}

// What such a message says of an event is not the event.
bool IsMessageAboutOthersItem(const std::string& method)
{
    return method == "REPLY" || method == "REFRESH" || method == "COUNTER" || method == "DECLINECOUNTER";
}

TimeZoneInformation DeviceZone()
{
    TimeZoneInformation zone;
    GetTimeZoneInformation(&zone);
    return zone;
}
} // namespace

CCalendarImporter::CCalendarImporter(IPOutlookApp& app, CImportReport& report)
    : m_app(app), m_report(report), m_device(DeviceZone()), m_currentYear(GetLocalTime().wYear),
      m_ruleBudget(ImportLimit::RuleDays), m_zones(m_currentYear), m_events(m_zones, m_device, report),
      m_writer(app, m_device), m_occurrences(app, m_writer, m_zones, m_device), m_contacts(app, report)
{
}

ImportResult CCalendarImporter::Import(CLineReader::ReadBytes read, const Progress& progress)
{
    m_volumeHasUids = m_app.HasAnyUid();
    CComponentReader reader(std::move(read), m_report);
    CComponent component;
    int items = 0;
    bool interrupted = false;
    if (const CStatus begun = m_app.BeginBatch(); !begun) {
        m_failure = begun.Text();
        return ImportResult::WriteFailed;
    }
    while (!m_failed && !interrupted && reader.Next(component)) {
        if (component.Name == "VTIMEZONE")
            m_zones.AddBlock(component);
        else if (component.Name == "VCARD")
            TakeContact(component);
        else
            TakeComponent(component, reader.Method(), false);
        if (++items % kProgressItems == 0)
            interrupted = progress && !progress(reader.BytesRead());
        NextBatch(false);
    }
    if (!m_failed && !interrupted)
        TakeRest();
    NextBatch(true);
    if (m_failed)
        return ImportResult::WriteFailed;
    if (interrupted)
        return ImportResult::Interrupted;
    if (reader.Failed())
        return ImportResult::ReadFailed;
    return reader.SawCalendar() ? ImportResult::Done : ImportResult::NothingInIt;
}

// Closes a full batch and begins the next one.
bool CCalendarImporter::NextBatch(bool atEnd)
{
    if (m_failed) {
        if (atEnd)
            m_app.AbandonBatch();
        return false;
    }
    if (!atEnd && m_inBatch < kBatchItems)
        return true;
    m_inBatch = 0;
    CStatus status = m_occurrences.Flush();
    if (status)
        status = m_app.CommitBatch();
    if (status && !atEnd)
        status = m_app.BeginBatch();
    if (status)
        return true;
    m_failed = true;
    m_failure = status.Text();
    m_app.AbandonBatch();
    return false;
}

// A full or failing disk ends the import; anything else leaves out one item.
void CCalendarImporter::Fail(const CStatus& status, int line)
{
    if (status.Kind() == StatusKind::Full || status.Kind() == StatusKind::Io ||
        status.Kind() == StatusKind::Corrupt) {
        m_failed = true;
        m_failure = status.Text();
        return;
    }
    m_report.LeftOut(line, status.Text());
}

void CCalendarImporter::TakeContact(const CComponent& component)
{
    ++m_inBatch;
    if (const CStatus status = m_contacts.Take(component); !status)
        Fail(status, component.FirstLine);
}

void CCalendarImporter::TakeComponent(const CComponent& component, const std::string& method, bool atEnd)
{
    if (!atEnd)
        m_method = method;
    if (IsMessageAboutOthersItem(method)) {
        m_report.LeftOut(
            component.FirstLine,
            QStringLiteral("an answer to an invitation: %1").arg(QString::fromStdString(method)));
        return;
    }
    m_report.Hold();
    if (!m_events.Read(component, &m_event)) {
        m_report.Release();
        return;
    }
    if (!m_event.UnknownZone.empty()) {
        if (!atEnd) {
            m_report.Drop();
            SetAside(component, 0, false);
            return;
        }
        if (m_toldZones.size() < kToldZones && m_toldZones.emplace(m_event.UnknownZone, true).second)
            m_report.Note(m_event.Line,
                          QStringLiteral("the time zone is not known, its times are read as local: %1")
                              .arg(QString::fromStdString(m_event.UnknownZone)));
    }
    if (m_event.IsTask) {
        m_report.Release();
        TakeTask(m_event, method);
        return;
    }
    if (!m_event.RecurrenceId) {
        m_report.Release();
        const quint64 uidHash = UidHash(m_event.Uid);
        TakeEvent(m_event, method);
        if (!m_waiting.empty())
            TakeWaiting(uidHash);
        return;
    }
    const quint64 uidHash = UidHash(m_event.Uid);
    if (!atEnd && !m_seen.contains(uidHash)) {
        m_report.Drop();
        SetAside(component, uidHash, true);
        return;
    }
    m_report.Release();
    TakeOccurrence(m_event, component, method);
}

void CCalendarImporter::SetAside(const CComponent& component, quint64 uidHash, bool isOccurrence)
{
    const qint64 place = m_spool.Put(component);
    if (place < 0)
        m_report.LeftOut(component.FirstLine, QStringLiteral("the temporary file cannot be written"));
    else if (isOccurrence)
        m_waiting.emplace(uidHash, place);
    else
        m_unknownZones.push_back(place);
}

// The series has come: the occurrences that waited for it.
void CCalendarImporter::TakeWaiting(quint64 uidHash)
{
    std::vector<qint64> places;
    const auto range = m_waiting.equal_range(uidHash);
    for (auto at = range.first; at != range.second; ++at)
        places.push_back(at->second);
    m_waiting.erase(range.first, range.second);
    std::sort(places.begin(), places.end());
    CComponent component;
    for (const qint64 place : places)
        if (!m_failed && m_spool.Take(place, &component))
            TakeComponent(component, m_method, true);
}

void CCalendarImporter::TakeRest()
{
    CComponent component;
    std::vector<qint64> places = std::move(m_unknownZones);
    m_unknownZones.clear();
    for (const qint64 place : places) {
        if (m_failed || !NextBatch(false) || !m_spool.Take(place, &component))
            continue;
        TakeComponent(component, m_method, true);
    }
    places.clear();
    for (const auto& [hash, place] : m_waiting)
        places.push_back(place);
    m_waiting.clear();
    std::sort(places.begin(), places.end());
    for (const qint64 place : places) {
        if (m_failed || !NextBatch(false) || !m_spool.Take(place, &component))
            continue;
        TakeComponent(component, m_method, true);
    }
}

// ---- one event

void CCalendarImporter::TakeEvent(CImportedEvent& event, const std::string& method)
{
    const auto [place, isFirst] = m_seen.try_emplace(UidHash(event.Uid));
    Seen& seen = place->second;
    if (!isFirst && event.Sequence < seen.Sequence) {
        ++m_report.Unchanged;
        return;
    }
    const bool isRaised = !isFirst && event.Sequence > seen.Sequence;
    if (isFirst || isRaised)
        seen = {event.Sequence, 0};
    if (seen.Count >= ImportLimit::EqualUids) {
        TakeByContent(event, method);
        return;
    }
    const quint32 index = seen.Count++;
    if (const CStatus flushed = m_occurrences.Flush(); !flushed)
        Fail(flushed, event.Line);
    std::vector<CForeignKey> keys;
    if (m_volumeHasUids || isRaised || method == "CANCEL")
        keys = m_app.FindByUid(event.Uid);
    const Known known = Sort(keys, event, index);
    const bool same =
        known.Lead && known.LeadIsSame && known.Lead->ContentHash == CItemWriter::HashBytes(event.Hash);
    if (known.Superseded || same) {
        ++m_report.Unchanged;
        return;
    }
    if (method == "CANCEL") {
        if (!known.Any) {
            m_report.LeftOut(event.Line, QStringLiteral("it cancels an item that is not there"));
            return;
        }
        event.Cancelled = true;
        event.BusyStatus = 0;
    }
    ++m_inBatch;
    if (WriteEvent(event, known, keys, index))
        ++(known.Lead ? m_report.Updated : m_report.Created);
}

// A UID that so many items share names none of them: their content does.
void CCalendarImporter::TakeByContent(CImportedEvent& event, const std::string& method)
{
    if (event.Uid.endsWith(kContentUid)) {
        m_report.LeftOut(event.Line, QStringLiteral("the same item once more"));
        return;
    }
    event.Kept += QStringLiteral("UID:") + event.Uid + QLatin1Char('\n');
    event.Uid = QString::asprintf("%016llx%016llx", static_cast<unsigned long long>(event.Hash),
                                  static_cast<unsigned long long>(UidHash(event.Uid))) +
                kContentUid;
    TakeEvent(event, method);
}

CCalendarImporter::Known CCalendarImporter::Sort(const std::vector<CForeignKey>& keys,
                                                 const CImportedEvent& event, quint32 index) const
{
    Known known;
    // The item itself leads its records, else the first of its occurrences.
    const auto leads = [](const CForeignKey* lead, const CForeignKey& key) {
        return !lead || key.OccurrenceId.isEmpty() || (!lead->OccurrenceId.isEmpty() && key.Oid < lead->Oid);
    };
    std::vector<const CForeignKey*> older;
    const CForeignKey* olderLead = nullptr;
    for (const CForeignKey& key : keys) {
        known.Any = true;
        if (key.OccurrenceId.startsWith(QLatin1Char('R')))
            continue;
        known.Superseded = known.Superseded || key.Sequence > event.Sequence;
        if (key.Sequence == event.Sequence && key.EqualsIndex == index) {
            known.Lead = leads(known.Lead, key) ? &key : known.Lead;
            known.Others.push_back(&key);
        } else if (key.Sequence < event.Sequence) {
            olderLead = leads(olderLead, key) ? &key : olderLead;
            older.push_back(&key);
        }
    }
    known.LeadIsSame = known.Lead != nullptr;
    if (!known.Lead)
        known.Lead = olderLead;
    known.Others.insert(known.Others.end(), older.begin(), older.end());
    std::erase(known.Others, known.Lead);
    return known;
}

bool CCalendarImporter::WriteEvent(const CImportedEvent& event, const Known& known,
                                   const std::vector<CForeignKey>& keys, quint32 index)
{
    CSeriesBuilder builder(m_currentYear, &m_ruleBudget, m_report);
    CSeriesPlan plan = builder.Build(event.Dates);
    KeepPlaceOfLoneOccurrences(event, keys, plan);
    for (const CForeignKey* other : known.Others) {
        std::unique_ptr<IAppointment> item;
        CStatus status = m_app.GetAppointmentFromOid(other->ItemId, item);
        if (status)
            status = item->Delete();
        if (!status && status.Kind() != StatusKind::NotFound)
            Fail(status, event.Line);
    }
    std::unique_ptr<IAppointment> reused;
    if (known.Lead && !m_app.GetAppointmentFromOid(known.Lead->ItemId, reused))
        reused.reset();
    if (plan.Records.empty()) {
        m_report.Note(event.Line, QStringLiteral("every occurrence of it is excluded"));
        if (reused)
            if (const CStatus status = reused->Delete(); !status)
                Fail(status, event.Line);
        return false;
    }
    for (size_t i = 0; i < plan.Records.size() && !m_failed; ++i) {
        const bool leads = i == 0;
        QString kept = leads ? event.Kept : QString();
        if (leads && plan.KeepsRule) // which counts from where the event began
            kept += QStringLiteral("X-TESSERA-START:") + OccurrenceName(event.Dates.Start, event.Dates.AllDay) +
                    QLatin1Char('\n');
        if (leads && plan.KeepsExcluded)
            kept += event.ExcludedText;
        const CStatus status = m_writer.Write(event, plan.Records[i], index, kept,
                                              leads && plan.KeepsRule ? event.RuleText : QString(),
                                              leads ? reused.get() : nullptr);
        if (!status) {
            Fail(status, event.Line);
            return false;
        }
    }
    return !m_failed;
}

// A changed occurrence goes into its series, or stands alone when there is none.
void CCalendarImporter::TakeOccurrence(CImportedEvent& event, const CComponent& component,
                                       const std::string& method)
{
    event.Cancelled = event.Cancelled || method == "CANCEL";
    const QString name = COccurrenceWriter::NameOf(event);
    const quint64 identity = UidHash(event.Uid + QLatin1Char('\n') + name);
    const auto [seen, isFirst] = m_occurrencesSeen.try_emplace(identity, event.Sequence);
    if (!isFirst && event.Sequence <= seen->second) {
        m_report.LeftOut(event.Line, QStringLiteral("a second change of the same occurrence"));
        return;
    }
    seen->second = event.Sequence;
    const quint64 uidHash = UidHash(event.Uid);
    if (m_fullUids.contains(uidHash)) {
        m_report.LeftOut(event.Line, kTooManyChanges);
        return;
    }
    ++m_inBatch;
    CStatus status;
    switch (m_occurrences.Put(event, component, &status)) {
    case COccurrenceWriter::Result::Created:
        ++m_report.Created;
        break;
    case COccurrenceWriter::Result::Updated:
        ++m_report.Updated;
        break;
    case COccurrenceWriter::Result::Unchanged:
        ++m_report.Unchanged;
        break;
    case COccurrenceWriter::Result::NotThere:
        m_report.LeftOut(event.Line, QStringLiteral("it cancels an occurrence that is not there"));
        break;
    case COccurrenceWriter::Result::NoSeries:
        WriteFollowing(event);
        break;
    case COccurrenceWriter::Result::TooMany:
        m_fullUids.insert(uidHash);
        m_report.LeftOut(event.Line, kTooManyChanges);
        break;
    case COccurrenceWriter::Result::Failed:
        Fail(status, event.Line);
        break;
    }
}

// All later ones with a rule of their own, as an export tells them: a series beside the first.
void CCalendarImporter::WriteFollowing(const CImportedEvent& event)
{
    CStatus status;
    const QString id = QLatin1Char('T') + COccurrenceWriter::NameOf(event);
    CSeriesPlan plan = CSeriesBuilder(m_currentYear, &m_ruleBudget, m_report).Build(event.Dates);
    if (plan.Records.empty())
        return;
    plan.Records[0].OccurrenceId = id;
    std::unique_ptr<IAppointment> reused;
    for (const CForeignKey& key : m_app.FindByUid(event.Uid)) {
        if (key.OccurrenceId != id)
            continue;
        if (key.ContentHash == CItemWriter::HashBytes(event.Hash)) {
            ++m_report.Unchanged;
            return;
        }
        if (status)
            status = m_app.GetAppointmentFromOid(key.ItemId, reused);
    }
    if (status)
        status = m_writer.Write(event, plan.Records[0], 0, event.Kept, QString(), reused.get());
    if (!status)
        Fail(status, event.Line);
    else
        ++(reused ? m_report.Updated : m_report.Created);
}

// An occurrence that came before its series stands alone; the series must not show it again.
void CCalendarImporter::KeepPlaceOfLoneOccurrences(const CImportedEvent& event,
                                                   const std::vector<CForeignKey>& keys, CSeriesPlan& plan)
{
    for (const CForeignKey& key : keys) {
        CFileMoment moment;
        if (!key.OccurrenceId.startsWith(QLatin1Char('R')) ||
            !ParseMoment(QStringView(key.OccurrenceId).mid(1).toLatin1().toStdString(), &moment))
            continue;
        const qint64 wall = moment.IsUtc && event.Zone ? event.Zone->ToWall(moment.Wall) : moment.Wall;
        const int day = DayOfWall(wall);
        if (!moment.IsDate && !event.Dates.AllDay && SecondOfWall(wall) != SecondOfWall(event.Dates.Start))
            continue;
        for (CPlannedRecord& record : plan.Records) {
            if (!record.IsSeries || !PatternHitsDay(record.Pattern, day))
                continue;
            auto& exceptions = record.Pattern.Exceptions;
            const auto at =
                std::lower_bound(exceptions.begin(), exceptions.end(), day,
                                 [](const CRecurrenceException& e, int d) { return e.OriginalDay < d; });
            if (at == exceptions.end() || at->OriginalDay != day)
                exceptions.insert(at, CRecurrenceException())->OriginalDay = day;
            record.Pattern.ExceptionCount = int(exceptions.size());
            break;
        }
    }
}
