#include "interchange/event_exporter.h"

#include "interchange/content_hash.h"
#include "interchange/item_writer.h"
#include "interchange/occurrence_writer.h"
#include "interchange/rule_text.h"
#include "records/occurrences.h"
#include "records/property_numbers.h"

#include <QSysInfo>
#include <algorithm>

namespace
{
const QString kMade = QStringLiteral("@tessera");

QString MachineName()
{
    const QByteArray id = QSysInfo::machineUniqueId();
    return QString::asprintf(
        "%016llx", static_cast<unsigned long long>(HashOf({id.constData(), size_t(id.size())}, 0x7E55E7A)));
}

bool IsOccurrence(const QString& id, char kind)
{
    return id.startsWith(QLatin1Char(kind));
}

std::string HoleOf(const CKeptLines& kept)
{
    for (const std::string& line : kept.Lines)
        if (NameOfLine(line) == "DTSTART")
            return line;
    return {};
}

// The start of the event as it came, where its records do not tell it.
bool KeptStart(const CKeptLines& kept, qint64* wall)
{
    CFileMoment moment;
    for (const std::string& line : kept.Lines)
        if (NameOfLine(line) == "X-TESSERA-START" && ParseMoment(CPropertyLine(line).Value, &moment)) {
            *wall = moment.Wall;
            return true;
        }
    return false;
}

qint64 OriginalWall(const CRecurrencePattern& pattern, int day)
{
    return WallOfDay(day) + pattern.StartMinute * 60;
}

// What was told of an occurrence of one series, as told of a copy's.
CTextLines UnderUid(CTextLines lines, const QString& uid)
{
    int depth = 0;
    for (std::string& line : lines) {
        const std::string name = NameOfLine(line);
        depth += name == "BEGIN" ? 1 : name == "END" ? -1 : 0;
        if (depth == 0 && name == "UID")
            line = "UID:" + uid.toStdString();
    }
    return lines;
}

bool SameValues(const CItemValues& a, const CItemValues& b)
{
    return a.Subject == b.Subject && a.Location == b.Location && a.Note == b.Note &&
           a.Categories == b.Categories && a.Attendees == b.Attendees && a.BusyStatus == b.BusyStatus &&
           a.Sensitivity == b.Sensitivity && a.ReminderMinutes == b.ReminderMinutes;
}
} // namespace

QString MadeUid(quint32 itemId)
{
    return MachineName() + QLatin1Char('-') + QString::number(itemId) + kMade;
}

CEventExporter::CPart::CPart(std::shared_ptr<IAppointment> item)
    : Item(std::move(item)), Id(Item->Foreign().OccurrenceId), Kept(Item->Foreign().Text)
{
    if (Item->get_IsRecurring())
        Series = &Item->GetRecurrencePattern()->Pattern();
}

CEventExporter::CEventExporter(const TimeZoneInformation& device, int year)
    : m_device(device), m_year(year), m_zones(year), m_zoneWriter(m_zones, device, year),
      m_reader(m_zones, device, m_unheard)
{
}

CStatus CEventExporter::Export(IPOutlookApp& app, const std::vector<quint32>& itemIds, CTextLines& lines)
{
    std::vector<CPart> parts, lone, following;
    for (const quint32 id : itemIds) {
        std::unique_ptr<IAppointment> item;
        if (const CStatus status = app.GetAppointmentFromOid(id, item); !status) {
            if (status.Kind() == StatusKind::NotFound && itemIds.size() > 1)
                continue; // deleted meanwhile
            return status;
        }
        CPart part(std::move(item));
        (IsOccurrence(part.Id, 'R')   ? lone
         : IsOccurrence(part.Id, 'T') ? following
                                      : parts)
            .push_back(std::move(part));
    }
    std::stable_sort(parts.begin(), parts.end(), [](const CPart& a, const CPart& b) {
        return std::make_pair(!a.Id.isEmpty(), a.Item->RecordOid()) <
               std::make_pair(!b.Id.isEmpty(), b.Item->RecordOid());
    });
    const auto byId = [](const CPart& a, const CPart& b) { return a.Id < b.Id; };
    std::sort(lone.begin(), lone.end(), byId);
    std::sort(following.begin(), following.end(), byId);

    CTextLines inner;
    std::vector<qint64> loneStarts; // UTC, or days
    for (CPart& part : lone) {
        CFileMoment moment;
        if (ParseMoment(part.Id.mid(1).toStdString(), &moment))
            loneStarts.push_back(moment.Wall);
    }
    if (!parts.empty())
        ExportWhole(parts, loneStarts, inner);
    for (CPart& part : following) {
        Place(part, HoleOf(part.Kept), nullptr);
        CFileMoment moment;
        CTextLines head;
        if (ParseMoment(part.Id.mid(1).toStdString(), &moment))
            head.push_back(std::string("RECURRENCE-ID;RANGE=THISANDFUTURE") +
                           (moment.IsDate ? ";VALUE=DATE:" : ":") + part.Id.mid(1).toStdString());
        ExportAlone(part, head, loneStarts, inner);
    }
    for (CPart& part : lone)
        ExportLone(part, inner);
    m_zoneWriter.TakeBlocks(lines);
    lines.insert(lines.end(), inner.begin(), inner.end());
    return {};
}

// Finds the form of the part's times, and them.
void CEventExporter::Place(CPart& part, const std::string& hole, const TimeZoneInformation* record)
{
    const bool allDay = part.Item->get_AllDayEvent();
    TimeZoneInformation own;
    if (part.Series) {
        own = part.Series->Zone();
        record = &own;
    }
    part.Form = m_zoneWriter.FormOf(hole, allDay, record);
    if (part.Series) {
        part.Start = OriginalWall(*part.Series, DayNumber(part.Series->PatternStart));
        part.End = part.Start + qint64(part.Series->EndMinute - part.Series->StartMinute) * 60;
        return;
    }
    const DATE start = part.Item->get_Start(), end = part.Item->get_End();
    part.Start = m_zoneWriter.FromDevice(part.Form, start);
    part.End = m_zoneWriter.FromDevice(part.Form, end);
    // An hour that comes twice can be told by UTC alone.
    if (part.Form.Form == CTimeForm::Named &&
        (WallOfDate(m_zoneWriter.ToDevice(part.Form, part.Start)) != WallOfDate(start) ||
         WallOfDate(m_zoneWriter.ToDevice(part.Form, part.End)) != WallOfDate(end))) {
        part.Form = {CTimeForm::Utc, {}, UtcZone()};
        part.Start = m_zoneWriter.FromDevice(part.Form, start);
        part.End = m_zoneWriter.FromDevice(part.Form, end);
    }
}

CItemValues CEventExporter::NamedValues(CPart& part) const
{
    CItemValues values = ValuesOf(*part.Item);
    if (values.Uid.isEmpty())
        values.Uid = MadeUid(part.Item->get_Oid());
    return values;
}

void CEventExporter::AddComponent(const CTextLines& inner, CTextLines& lines)
{
    lines.push_back("BEGIN:VEVENT");
    AddKept(inner, lines);
    lines.push_back("END:VEVENT");
}

CTextLines CEventExporter::DateHead(const CTimeForm& form, qint64 start, qint64 end) const
{
    CTextLines head{form.Line("DTSTART", start)};
    if (end > start)
        head.push_back(form.Line("DTEND", end));
    return head;
}

bool CEventExporter::ReadBack(const CTextLines& lines, CImportedEvent* event)
{
    return m_reader.Read(ComponentOf("VEVENT", lines), event);
}

// ---- an item whose records are all of one event

void CEventExporter::ExportWhole(std::vector<CPart>& parts, const std::vector<qint64>& lone,
                                 CTextLines& lines)
{
    CPart& lead = parts.front();
    const std::string hole = HoleOf(lead.Kept);
    TimeZoneInformation record;
    const auto series =
        std::find_if(parts.begin(), parts.end(), [](const CPart& part) { return part.Series; });
    if (series != parts.end())
        record = series->Series->Zone();
    for (CPart& part : parts)
        Place(part, hole, series != parts.end() ? &record : nullptr);
    const QString rule = lead.Item->Foreign().SourceRule;
    const auto keepsList = [](const std::string& line) {
        return NameOfLine(line) == "RDATE" || NameOfLine(line) == "EXDATE";
    };
    if (parts.size() == 1 && rule.isEmpty() &&
        std::none_of(lead.Kept.Lines.begin(), lead.Kept.Lines.end(), keepsList)) {
        ExportAlone(lead, {}, lone, lines);
        return;
    }
    qint64 start = lead.Start;
    if (!rule.isEmpty() && !KeptStart(lead.Kept, &start))
        for (const CPart& part : parts)
            start = std::min(start, part.Start);
    CDateLines dates;
    dates.Head = DateHead(lead.Form, start, start + (lead.End - lead.Start));
    if (!rule.isEmpty())
        dates.Head.push_back("RRULE:" + rule.toStdString());
    else if (lead.Series)
        dates.Head.push_back("RRULE:" + RuleTextOf(*lead.Series, lead.Form));
    CChanges changes;
    for (CPart& part : parts)
        if (part.Series)
            CollectChanges(part, lead, lone, changes);
    CDateLines joined = dates;
    if (!Join(parts, dates, joined, changes)) {
        // They have gone their own ways since.
        for (CPart& part : parts)
            ExportAlone(part, {}, lone, lines);
        return;
    }
    AddComponent(EventLines(NamedValues(lead), lead.Kept, joined), lines);
    for (const CTextLines& component : changes.Components)
        AddKept(component, lines);
}

// Tells what of the dates that the lines give is not there or changed. False when the records
// are no longer those that the lines would make.
bool CEventExporter::Join(std::vector<CPart>& parts, const CDateLines& dates, CDateLines& joined,
                          CChanges& changes)
{
    CPart& lead = parts.front();
    const CItemValues values = NamedValues(lead);
    CImportedEvent event;
    if (!ReadBack(EventLines(values, lead.Kept, dates), &event))
        return false;
    const CSeriesPlan plan = CSeriesBuilder(m_year, &m_budget, m_unheard).Build(event.Dates);
    const auto isExcluded = [&](qint64 wall) {
        return std::any_of(
            event.Dates.Excluded.begin(), event.Dates.Excluded.end(), [&](const CListedDate& date) {
                return date.IsDate || event.Dates.AllDay ? DayOfWall(date.Wall) == DayOfWall(wall)
                                                         : date.Wall == wall;
            });
    };
    std::map<QString, CPart*> left;
    for (CPart& part : parts)
        left[part.Id] = &part;
    std::vector<qint64> added;
    const auto compare = [&](CPart& part, qint64 start, qint64 end) {
        CItemValues own = NamedValues(part);
        if (part.Start == start && part.End == end && part.Form.Form == lead.Form.Form &&
            SameValues(own, values))
            return;
        own.Uid = values.Uid;
        CDateLines occurrence;
        occurrence.KeepsRules = false;
        occurrence.Head = {lead.Form.Line("RECURRENCE-ID", start)};
        AddKept(DateHead(part.Form, part.Start, part.End), occurrence.Head);
        AddComponent(EventLines(own, part.Kept, occurrence), changes.Components.emplace_back());
    };
    for (size_t i = 0; i < plan.Records.size(); ++i) {
        const CPlannedRecord& planned = plan.Records[i];
        auto at = left.find(planned.OccurrenceId);
        if (at == left.end() && i == 0 && !planned.IsSeries)
            at = left.find(lead.Id);
        CPart* const part = at == left.end() ? nullptr : at->second;
        if (part)
            left.erase(at);
        if (planned.IsSeries) {
            if (!part || !part->Series || part->Series->Type != planned.Pattern.Type ||
                part->Series->Interval != planned.Pattern.Interval ||
                part->Series->PatternStart != planned.Pattern.PatternStart ||
                part->Series->StartMinute != planned.Pattern.StartMinute)
                return false;
            continue;
        }
        if (part && part->Series)
            return false;
        if (!part)
            changes.Deleted.push_back(planned.Start);
        else
            compare(*part, planned.Start, planned.End);
    }
    for (const auto& [id, part] : left) {
        CFileMoment moment;
        if (part->Series || !ParseMoment(id.mid(1).toStdString(), &moment))
            return false;
        added.push_back(moment.Wall);
        compare(*part, moment.Wall, moment.Wall + (lead.End - lead.Start));
    }
    for (const qint64 wall : added)
        joined.Lists.push_back(lead.Form.Line("RDATE", wall));
    std::sort(changes.Deleted.begin(), changes.Deleted.end());
    for (const qint64 wall : changes.Deleted)
        if (!isExcluded(wall))
            joined.Lists.push_back(lead.Form.Line("EXDATE", wall));
    return true;
}

// ---- one record

void CEventExporter::ExportAlone(CPart& part, const CTextLines& head, const std::vector<qint64>& lone,
                                 CTextLines& lines)
{
    CDateLines dates;
    dates.Head = head;
    AddKept(DateHead(part.Form, part.Start, part.End), dates.Head);
    CChanges changes;
    if (part.Series) {
        dates.Head.push_back("RRULE:" + RuleTextOf(*part.Series, part.Form));
        dates.KeepsRules = false;
        CollectChanges(part, part, lone, changes);
        for (const qint64 wall : changes.Deleted)
            dates.Lists.push_back(part.Form.Line("EXDATE", wall));
    }
    AddComponent(EventLines(NamedValues(part), part.Kept, dates), lines);
    for (const CTextLines& component : changes.Components)
        AddKept(component, lines);
}

// A changed occurrence whose series never came.
void CEventExporter::ExportLone(CPart& part, CTextLines& lines)
{
    Place(part, HoleOf(part.Kept), nullptr);
    CDateLines dates;
    CFileMoment moment;
    const std::string name = part.Id.mid(1).toStdString();
    if (ParseMoment(name, &moment))
        dates.Head.push_back((moment.IsDate ? "RECURRENCE-ID;VALUE=DATE:" : "RECURRENCE-ID:") + name);
    AddKept(DateHead(part.Form, part.Start, part.End), dates.Head);
    if (part.Series)
        dates.Head.push_back("RRULE:" + RuleTextOf(*part.Series, part.Form));
    AddComponent(EventLines(NamedValues(part), part.Kept, dates), lines);
}

void CEventExporter::ExportMessage(IAppointment& item, const CItemValues& values, CTextLines& lines)
{
    CPart part(std::shared_ptr<IAppointment>(&item, [](IAppointment*) {})); // borrowed
    const std::string hole = HoleOf(part.Kept);
    part.Kept = CKeptLines(QString::fromStdString(hole));
    CTextLines inner;
    CDateLines dates;
    Place(part, hole, nullptr);
    if (const int day = item.OccurrenceDay(); day != 0) {
        const qint64 original = OriginalWall(*part.Series, day);
        dates.Head = {part.Form.Line("RECURRENCE-ID", original)};
        CTimeForm form = part.Form;
        if (item.get_AllDayEvent() != (form.Form == CTimeForm::Date))
            form = m_zoneWriter.FormOf({}, item.get_AllDayEvent(), &m_device);
        AddKept(DateHead(form, m_zoneWriter.FromDevice(form, item.get_Start()),
                         m_zoneWriter.FromDevice(form, item.get_End())),
                dates.Head);
        AddComponent(EventLines(values, part.Kept, dates), inner);
    } else {
        dates.Head = DateHead(part.Form, part.Start, part.End);
        if (part.Series)
            dates.Head.push_back("RRULE:" + RuleTextOf(*part.Series, part.Form));
        for (const CRecurrenceException& exception :
             part.Series ? part.Series->Exceptions : std::vector<CRecurrenceException>())
            if (exception.Deleted)
                dates.Lists.push_back(
                    part.Form.Line("EXDATE", OriginalWall(*part.Series, exception.OriginalDay)));
        AddComponent(EventLines(values, part.Kept, dates), inner);
        for (const CRecurrenceException& exception :
             part.Series ? part.Series->Exceptions : std::vector<CRecurrenceException>())
            if (!exception.Deleted)
                AddKept(OccurrenceLines(part, values, part.Kept, exception), inner);
    }
    m_zoneWriter.TakeBlocks(lines);
    AddKept(inner, lines);
}

// ---- occurrences of a series

qint64 CEventExporter::WallOfName(const std::string& name, const CTimeForm& form, bool* isDate) const
{
    CFileMoment moment;
    if (!ParseMoment(name, &moment))
        return 0;
    *isDate = moment.IsDate;
    if (!moment.IsUtc)
        return moment.Wall;
    return form.Zone ? form.Zone->ToWall(moment.Wall) : WallByRecord(moment.Wall, m_device);
}

// What the file said of the occurrence of that day; null when it said nothing or it was not kept.
const CKeptLines::CChange* CEventExporter::KeptChangeOf(CPart& part, int day, CImportedEvent* event)
{
    qint64 shift = 0;
    bool isDate = false;
    if (IsOccurrence(part.Id, 'T'))
        shift = part.Start - WallOfName(part.Id.mid(1).toStdString(), part.Form, &isDate);
    const qint64 wall = OriginalWall(*part.Series, day);
    for (const CKeptLines::CChange& change : part.Kept.Changes) {
        const qint64 named = WallOfName(change.Name, part.Form, &isDate);
        const bool byDay = isDate || part.Form.Form == CTimeForm::Date;
        const auto fits = [&](qint64 w) { return byDay ? DayOfWall(w) == day : w / 60 == wall / 60; };
        if ((fits(named) || fits(named + shift)) && !change.Lines.empty() && ReadBack(change.Lines, event) &&
            !event->ThisAndFuture)
            return &change;
    }
    return nullptr;
}

bool CEventExporter::StillFits(const CPart& part, const CItemValues& series, const CRecurrenceException& e,
                               const CImportedEvent& event)
{
    if (e.Deleted || event.Cancelled)
        return e.Deleted && event.Cancelled;
    const auto wall = [&](qint64 own) {
        if (event.Dates.AllDay || part.Form.Form == CTimeForm::Date || !event.Zone)
            return own;
        return m_zoneWriter.FromDevice(part.Form, DateOfWall(WallByRecord(event.Zone->ToUtc(own), m_device)));
    };
    const bool allDay = e.HasAllDay ? e.AllDay : part.Item->get_AllDayEvent();
    return WallOfDate(e.Start) / 60 == wall(event.Dates.Start) / 60 &&
           WallOfDate(e.End) / 60 == wall(event.Dates.End) / 60 && allDay == event.Dates.AllDay &&
           (e.HasSubject ? e.Subject : series.Subject) == event.Subject &&
           (e.HasLocation ? e.Location : series.Location) == event.Location &&
           (e.HasBusyStatus ? e.BusyStatus : series.BusyStatus) == event.BusyStatus &&
           (e.HasNoteFlag ? e.Note : series.Note) == event.Note;
}

CTextLines CEventExporter::OccurrenceLines(CPart& part, CItemValues values, const CKeptLines& kept,
                                           const CRecurrenceException& e)
{
    if (e.HasSubject)
        values.Subject = e.Subject;
    if (e.HasLocation)
        values.Location = e.Location;
    if (e.HasBusyStatus)
        values.BusyStatus = e.BusyStatus;
    if (e.HasNoteFlag)
        values.Note = e.Note;
    CTimeForm form = part.Form;
    const bool allDay = e.HasAllDay ? e.AllDay : part.Item->get_AllDayEvent();
    if (allDay != (form.Form == CTimeForm::Date))
        form = m_zoneWriter.FormOf({}, allDay, part.Series ? &m_zoneWriter.Device() : nullptr);
    CDateLines dates;
    dates.KeepsRules = false;
    dates.Head = {part.Form.Line("RECURRENCE-ID", OriginalWall(*part.Series, e.OriginalDay))};
    AddKept(DateHead(form, WallOfDate(e.Start), WallOfDate(e.End)), dates.Head);
    CTextLines lines;
    AddComponent(EventLines(values, kept, dates), lines);
    return lines;
}

void CEventExporter::CollectChanges(CPart& part, CPart& lead, const std::vector<qint64>& lone,
                                    CChanges& changes)
{
    const CItemValues series = ValuesOf(*part.Item);
    CItemValues named = series;
    named.Uid = NamedValues(lead).Uid;
    for (const CRecurrenceException& exception : part.Series->Exceptions) {
        const qint64 wall = OriginalWall(*part.Series, exception.OriginalDay);
        CImportedEvent event;
        const CKeptLines::CChange* const kept = KeptChangeOf(part, exception.OriginalDay, &event);
        if (kept && StillFits(part, series, exception, event)) {
            AddComponent(event.Uid == named.Uid ? kept->Lines : UnderUid(kept->Lines, named.Uid),
                         changes.Components.emplace_back());
            m_zoneWriter.FormOf(HoleOf(CKeptLines(event.Kept)), event.Dates.AllDay, nullptr); // its zone
        } else if (!exception.Deleted) {
            changes.Components.push_back(OccurrenceLines(part, named, lead.Kept, exception));
        } else {
            const qint64 name = part.Form.Zone ? part.Form.Zone->ToUtc(wall) : wall;
            if (std::find(lone.begin(), lone.end(), name) == lone.end())
                changes.Deleted.push_back(wall);
        }
    }
}
