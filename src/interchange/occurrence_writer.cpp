#include "interchange/occurrence_writer.h"

#include "interchange/import_limits.h"
#include "records/occurrences.h"

#include <algorithm>
#include <cmath>

namespace
{
const QString kBegin = QStringLiteral("BEGIN:X-TESSERA-OVERRIDE\n");
const QString kEnd = QStringLiteral("END:X-TESSERA-OVERRIDE\n");
const QString kId = QStringLiteral("RECURRENCE-ID:");
const QString kHash = QStringLiteral("X-TESSERA-HASH:");
constexpr size_t kMaxKept = 64u << 10;

// The text from a place up to the line's end.
QStringView LineAt(QStringView text, qsizetype from)
{
    const qsizetype end = text.indexOf(QLatin1Char('\n'), from);
    return text.mid(from, (end < 0 ? text.size() : end) - from);
}

CRecurrenceException& ExceptionOf(CRecurrencePattern& pattern, int day)
{
    auto at = std::lower_bound(pattern.Exceptions.begin(), pattern.Exceptions.end(), day,
                               [](const CRecurrenceException& e, int d) { return e.OriginalDay < d; });
    if (at == pattern.Exceptions.end() || at->OriginalDay != day) {
        at = pattern.Exceptions.insert(at, CRecurrenceException());
        at->OriginalDay = day;
    }
    pattern.ExceptionCount = int(pattern.Exceptions.size());
    return *at;
}

// Whether a single occurrence lies on another day, whatever the zones: it need not be opened.
bool IsFarFrom(const CForeignKey& key, const CImportedEvent& event)
{
    CFileMoment moment;
    return key.OccurrenceId.startsWith(QLatin1Char('S')) &&
           ParseMoment(key.OccurrenceId.mid(1).toStdString(), &moment) &&
           std::abs(DayOfWall(moment.Wall) - DayOfWall(event.RecurrenceId->Wall)) > 2;
}

// Moves what a pattern says of weekdays and dates along with its first day.
void MoveDays(CRecurrencePattern& pattern, int from, int to)
{
    if (from == to)
        return;
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(to, &year, &month, &day);
    const int shift = ((to - from) % 7 + 7) % 7;
    pattern.DayMask = ((pattern.DayMask << shift) | (pattern.DayMask >> (7 - shift))) & 0x7F;
    if (pattern.Type == PatternType::Monthly || pattern.Type == PatternType::Yearly)
        pattern.DayOfMonth = day;
    if (pattern.Type == PatternType::MonthlyNth || pattern.Type == PatternType::YearlyNth)
        pattern.Instance = (day - 1) / 7 + 1;
}
} // namespace

QString COccurrenceWriter::NameOf(const CImportedEvent& event)
{
    const CFileMoment& moment = *event.RecurrenceId;
    if (moment.IsDate || !event.RecurrenceZone)
        return OccurrenceName(moment.Wall, moment.IsDate);
    return OccurrenceName(event.RecurrenceZone->ToUtc(moment.Wall), false) + QLatin1Char('Z');
}

COccurrenceWriter::Result COccurrenceWriter::Put(const CImportedEvent& event, const CComponent& component,
                                                 CStatus* status)
{
    *status = CStatus();
    int day = 0;
    const bool isOpen =
        m_open.ItemId != 0 && m_open.Foreign.Uid == event.Uid && !m_standAlone && !event.ThisAndFuture;
    if (!isOpen || !Holds(event, &day)) {
        if (*status = Flush(); !*status)
            return Result::Failed;
        const std::vector<CForeignKey> keys = m_app.FindByUid(event.Uid);
        Result result = Result::Created;
        if (Seek(event, keys, &day, &result, status))
            return result;
        if (m_open.ItemId == 0 && event.ThisAndFuture && event.Dates.Rule && !event.Cancelled)
            return Result::NoSeries;
        if (m_open.ItemId == 0)
            return PutAlone(event, keys, status);
        if (event.ThisAndFuture)
            return PutFollowing(event, component, day, status);
    }
    Result known = Result::Created;
    if (IsKnown(event, NameOf(event), &known))
        return Result::Unchanged;
    const Result put =
        m_open.IsSeries ? PutInSeries(event, component, day) : PutInSingle(event, component, status);
    return put == Result::Created ? known : put;
}

// Opens the item that holds the occurrence, if there is one. True when the result is known already.
bool COccurrenceWriter::Seek(const CImportedEvent& event, const std::vector<CForeignKey>& keys, int* day,
                             Result* result, CStatus* status)
{
    const QString name = NameOf(event);
    m_leadZone.reset();
    m_standAlone = false;
    for (const CForeignKey& key : keys) {
        m_standAlone = m_standAlone || key.OccurrenceId.startsWith(QLatin1Char('R'));
        const QStringView named = QStringView(key.OccurrenceId).mid(1);
        if (named == name && key.OccurrenceId.startsWith(QLatin1Char('R'))) {
            *result = PutAlone(event, keys, status); // it has its item already
            return true;
        }
        if (named == name && key.OccurrenceId.startsWith(QLatin1Char('T')) && event.ThisAndFuture) {
            *result = event.Dates.Rule ? Result::NoSeries : PutFollowingAgain(event, key, status);
            return true;
        }
    }
    for (const CForeignKey& key : keys) {
        if (key.OccurrenceId.startsWith(QLatin1Char('R')) || IsFarFrom(key, event) || !Open(key))
            continue;
        // By its kept name too: its series may have new times since.
        Result known = Result::Created;
        if (IsKnown(event, name, &known)) {
            *result = Result::Unchanged;
            return true;
        }
        if (Holds(event, day))
            return false;
    }
    m_open = COpenItem();
    return false;
}

CStatus COccurrenceWriter::Flush()
{
    COpenItem open = std::move(m_open);
    m_open = COpenItem();
    if (!open.IsDirty)
        return {};
    if (open.IsSeries)
        open.Item->GetRecurrencePattern()->put_Pattern(open.Pattern);
    open.Item->put_Foreign(open.Foreign);
    return open.Item->Save();
}

CStatus COccurrenceWriter::Open(const CForeignKey& key)
{
    m_open = COpenItem();
    if (CStatus status = m_app.GetAppointmentFromOid(key.ItemId, m_open.Item); !status)
        return status;
    m_open.ItemId = key.ItemId;
    m_open.Foreign = m_open.Item->Foreign();
    m_open.AllDay = m_open.Item->get_AllDayEvent();
    m_open.IsSeries = m_open.Item->get_IsRecurring();
    if (m_open.IsSeries)
        m_open.Pattern = m_open.Item->GetRecurrencePattern()->Pattern();
    // Further records of one event leave what they share to the first.
    const bool follows = key.OccurrenceId.startsWith(QLatin1Char('P')) || m_open.Foreign.Text.isEmpty();
    if (follows && m_leadZone)
        m_open.Zone = m_leadZone;
    else
        m_open.Zone = ZoneOfItem(m_open.Foreign.Text, m_open.AllDay);
    m_leadZone = m_open.Zone;
    // What follows a change of all later ones is still named by the first series' moments.
    CFileMoment first;
    if (m_open.IsSeries && key.OccurrenceId.startsWith(QLatin1Char('T')) &&
        ParseMoment(key.OccurrenceId.mid(1).toStdString(), &first))
        m_open.Shift = WallOfDay(DayNumber(m_open.Pattern.PatternStart)) + m_open.Pattern.StartMinute * 60 -
                       WallInOpen(first.Wall, first.IsUtc ? UtcZone() : nullptr);
    const QString& text = m_open.Foreign.Text;
    for (qsizetype at = text.indexOf(kBegin); at >= 0; at = text.indexOf(kBegin, at + kBegin.size())) {
        const QStringView id = LineAt(text, at + kBegin.size());
        const QStringView hash = LineAt(text, at + kBegin.size() + id.size() + 1);
        if (!id.startsWith(kId) || !hash.startsWith(kHash))
            continue;
        const QStringView value = hash.mid(kHash.size());
        const qsizetype semicolon = value.indexOf(QLatin1Char(';'));
        m_open.Changes.insert(
            id.mid(kId.size()).toString(),
            {QByteArray::fromHex(value.left(semicolon).toLatin1()), value.mid(semicolon + 1).toUInt()});
    }
    return {};
}

// The zone by its name as it is kept with the item.
std::shared_ptr<const CFileZone> COccurrenceWriter::ZoneOfItem(const QString& kept, bool allDay)
{
    if (allDay)
        return nullptr;
    int depth = 0;
    for (qsizetype at = 0; at < kept.size();) {
        const QStringView text = LineAt(kept, at);
        at += text.size() + 1;
        depth += text.startsWith(QLatin1String("BEGIN:")) ? 1
                 : text.startsWith(QLatin1String("END:")) ? -1
                                                          : 0;
        if (depth > 0 || !text.startsWith(QLatin1String("DTSTART"), Qt::CaseInsensitive))
            continue; // those of changed occurrences are their own
        const std::string line = text.toUtf8().toStdString();
        return m_zones.Find(CPropertyLine(line).Parameter("TZID"));
    }
    return UtcZone();
}

qint64 COccurrenceWriter::WallInOpen(qint64 wall, const std::shared_ptr<const CFileZone>& zone) const
{
    if (!zone || zone == m_open.Zone)
        return wall;
    const qint64 utc = zone->ToUtc(wall);
    return m_open.Zone ? m_open.Zone->ToWall(utc) : WallByRecord(utc, m_device);
}

// Whether the open item has the occurrence that the event changes, and on which day.
bool COccurrenceWriter::Holds(const CImportedEvent& event, int* day) const
{
    const CFileMoment& moment = *event.RecurrenceId;
    if (m_open.IsSeries) {
        const qint64 wall = moment.IsDate ? moment.Wall : WallInOpen(moment.Wall, event.RecurrenceZone);
        return HoldsAt(wall, moment.IsDate, day) || HoldsAt(wall + m_open.Shift, moment.IsDate, day);
    }
    const QString name = QLatin1Char('S') + NameOf(event);
    if (m_open.Foreign.OccurrenceId == name)
        return true;
    const DATE shown = DateOfWall(m_writer.DeviceWall(moment.Wall, event.RecurrenceZone));
    const DATE start = m_open.Item->get_Start();
    *day = DayNumber(shown);
    if (moment.IsDate || m_open.AllDay)
        return DayNumber(start) == *day;
    return std::fabs(start - shown) < 1.0 / 1440;
}

bool COccurrenceWriter::HoldsAt(qint64 wall, bool isDate, int* day) const
{
    *day = DayOfWall(wall);
    const bool sameTime = isDate || m_open.AllDay || SecondOfWall(wall) / 60 == m_open.Pattern.StartMinute;
    return sameTime && *day <= DayNumber(m_open.Pattern.PatternEnd) && PatternHitsDay(m_open.Pattern, *day);
}

bool COccurrenceWriter::IsKnown(const CImportedEvent& event, const QString& name, Result* result) const
{
    const auto change = m_open.Changes.constFind(name);
    if (change == m_open.Changes.constEnd())
        return false;
    *result = Result::Updated;
    return change->Hash == CItemWriter::HashBytes(event.Hash) || change->Sequence > event.Sequence;
}

COccurrenceWriter::Result COccurrenceWriter::PutInSeries(const CImportedEvent& event,
                                                         const CComponent& component, int day)
{
    if (m_open.Pattern.Exceptions.size() >= size_t(ImportLimit::ChangedOccurrences) &&
        m_open.Changes.size() >= ImportLimit::ChangedOccurrences)
        return Result::TooMany;
    PutException(event, ExceptionOf(m_open.Pattern, day));
    KeepChange(event, component);
    m_open.IsDirty = true;
    return Result::Created;
}

void COccurrenceWriter::PutException(const CImportedEvent& event, CRecurrenceException& exception) const
{
    const int day = exception.OriginalDay;
    exception = CRecurrenceException();
    exception.OriginalDay = day;
    exception.Deleted = event.Cancelled;
    if (event.Cancelled)
        return;
    const IAppointment& series = *m_open.Item;
    exception.Start = DateOfWall(WallInOpen(event.Dates.Start, event.Zone));
    exception.End = DateOfWall(WallInOpen(event.Dates.End, event.Zone));
    exception.HasSubject = event.Subject != series.get_Subject();
    exception.HasLocation = event.Location != series.get_Location();
    exception.HasBusyStatus = event.BusyStatus != series.get_BusyStatus();
    exception.HasAllDay = event.Dates.AllDay != m_open.AllDay;
    exception.HasNoteFlag = event.Note != series.get_Body();
    if (exception.HasSubject)
        exception.Subject = event.Subject;
    if (exception.HasLocation)
        exception.Location = event.Location;
    if (exception.HasBusyStatus)
        exception.BusyStatus = event.BusyStatus;
    if (exception.HasAllDay)
        exception.AllDay = event.Dates.AllDay;
    if (exception.HasNoteFlag)
        exception.Note = event.Note;
    exception.HasNote = exception.HasNoteFlag && !event.Note.isEmpty();
}

// An occurrence that is an item of its own.
COccurrenceWriter::Result COccurrenceWriter::PutInSingle(const CImportedEvent& event,
                                                         const CComponent& component, CStatus* status)
{
    const bool isItemItself = m_open.Foreign.OccurrenceId.isEmpty();
    if (event.Cancelled && !isItemItself) {
        *status = m_open.Item->Delete();
        m_open = COpenItem();
        return *status ? Result::Created : Result::Failed;
    }
    if (event.Cancelled) {
        // Deleted, it would come back with the next import of the same file.
        m_open.Item->put_Subject(CItemWriter::CancelledSubject(m_open.Item->get_Subject()));
        m_open.Item->put_BusyStatus(0);
    } else {
        m_writer.PutValues(event, *m_open.Item, false);
        m_writer.PutDates(event, event.Dates.Start, event.Dates.End, *m_open.Item);
    }
    KeepChange(event, component);
    m_open.IsDirty = true;
    return Result::Created;
}

// The occurrence's lines, as a part of what is kept with its item.
void COccurrenceWriter::KeepChange(const CImportedEvent& event, const CComponent& component)
{
    QString& text = m_open.Foreign.Text;
    const QString name = NameOf(event);
    const QString head = kBegin + kId + name + QLatin1Char('\n');
    const qsizetype at = m_open.Changes.contains(name) ? text.indexOf(head) : -1;
    if (at >= 0) {
        const qsizetype end = text.indexOf(kEnd, at);
        text.remove(at, end < 0 ? text.size() - at : end + kEnd.size() - at);
    }
    const QByteArray hash = CItemWriter::HashBytes(event.Hash);
    text += head + kHash + QString::fromLatin1(hash.toHex()) + QLatin1Char(';') +
            QString::number(event.Sequence) + QLatin1Char('\n');
    if (component.Text.size() <= kMaxKept && text.size() <= ImportLimit::KeptChars)
        text += QString::fromStdString(component.Text);
    text += kEnd;
    m_open.Changes.insert(name, {hash, event.Sequence});
}

// ---- the change of an occurrence and all later ones

COccurrenceWriter::Result COccurrenceWriter::PutFollowing(const CImportedEvent& event,
                                                          const CComponent& component, int day,
                                                          CStatus* status)
{
    if (!m_open.IsSeries || event.Cancelled) {
        *status = CStatus(StatusKind::Invalid,
                          QStringLiteral("no series can take a change of all later occurrences"));
        return Result::Failed;
    }
    CRecurrencePattern before = m_open.Pattern, after = m_open.Pattern;
    const int passed = CountOccurrencesUpTo(before, day - 1);
    std::erase_if(before.Exceptions, [&](const CRecurrenceException& e) { return e.OriginalDay >= day; });
    before.EndKind = PatternEndKind::Date;
    before.PatternEnd = LastOccurrenceUpTo(before, day - 1);
    std::erase_if(after.Exceptions, [&](const CRecurrenceException& e) { return e.OriginalDay < day; });
    if (after.EndKind == PatternEndKind::Count)
        after.Occurrences = std::max(after.Occurrences - passed, 1);
    after.PatternStart = day;
    CImportedEvent following = event;
    following.Sequence = m_open.Foreign.Sequence;
    const quint32 index = m_open.Foreign.EqualsIndex;
    const CPlannedRecord record = Following(event, std::move(after));
    following.Zone = m_open.Zone;
    m_open.IsDirty = true;
    if (passed == 0) { // nothing remains of the series as it was
        m_writer.PutValues(event, *m_open.Item, false);
        m_open.Pattern = record.Pattern;
        KeepChange(event, component);
        *status = Flush();
        return *status ? Result::Created : Result::Failed;
    }
    m_open.Pattern = before;
    *status = Flush();
    if (*status)
        *status = m_writer.Write(following, record, index, event.Kept, QString(), nullptr);
    return *status ? Result::Created : Result::Failed;
}

// The record of all later ones, made of the pattern they had and the event's times.
CPlannedRecord COccurrenceWriter::Following(const CImportedEvent& event, CRecurrencePattern pattern) const
{
    const qint64 start = WallInOpen(event.Dates.Start, event.Zone),
                 end = WallInOpen(event.Dates.End, event.Zone);
    const int from = DayNumber(pattern.PatternStart), to = DayOfWall(start);
    for (CRecurrenceException& exception : pattern.Exceptions)
        exception.OriginalDay += to - from;
    pattern.PatternStart = to;
    pattern.StartMinute = SecondOfWall(start) / 60;
    pattern.EndMinute = pattern.StartMinute + int((end - start) / 60);
    if (pattern.EndKind == PatternEndKind::Date)
        pattern.PatternEnd += to - from;
    MoveDays(pattern, from, to);
    CPlannedRecord record;
    record.IsSeries = true;
    record.Pattern = std::move(pattern);
    record.OccurrenceId = QLatin1Char('T') + NameOf(event);
    return record;
}

// They were changed by an earlier import already.
COccurrenceWriter::Result COccurrenceWriter::PutFollowingAgain(const CImportedEvent& event,
                                                               const CForeignKey& key, CStatus* status)
{
    if (key.ContentHash == CItemWriter::HashBytes(event.Hash))
        return Result::Unchanged;
    if (*status = Open(key); !*status)
        return Result::Failed;
    CImportedEvent following = event;
    following.Sequence = m_open.Foreign.Sequence;
    const CPlannedRecord record = Following(event, m_open.Pattern);
    following.Zone = m_open.Zone;
    const COpenItem open = std::move(m_open);
    m_open = COpenItem();
    *status =
        m_writer.Write(following, record, open.Foreign.EqualsIndex, event.Kept, QString(), open.Item.get());
    return *status ? Result::Updated : Result::Failed;
}

// ---- no series

COccurrenceWriter::Result COccurrenceWriter::PutAlone(const CImportedEvent& event,
                                                      const std::vector<CForeignKey>& keys, CStatus* status)
{
    m_open = COpenItem();
    const QString id = QLatin1Char('R') + NameOf(event);
    const auto at = std::find_if(keys.begin(), keys.end(),
                                 [&](const CForeignKey& key) { return key.OccurrenceId == id; });
    const bool exists = at != keys.end();
    if (exists && (at->ContentHash == CItemWriter::HashBytes(event.Hash) || at->Sequence > event.Sequence))
        return Result::Unchanged;
    if (event.Cancelled && !exists)
        return Result::NotThere;
    if (!exists && keys.size() >= size_t(ImportLimit::EqualUids))
        return Result::TooMany;
    std::unique_ptr<IAppointment> item;
    if (exists)
        if (*status = m_app.GetAppointmentFromOid(at->ItemId, item); !*status)
            return Result::Failed;
    if (event.Cancelled) {
        *status = item->Delete();
        return *status ? Result::Updated : Result::Failed;
    }
    CPlannedRecord record;
    record.OccurrenceId = id;
    record.Start = event.Dates.Start;
    record.End = event.Dates.End;
    *status = m_writer.Write(event, record, 0, event.Kept, QString(), item.get());
    if (!*status)
        return Result::Failed;
    return exists ? Result::Updated : Result::Created;
}
