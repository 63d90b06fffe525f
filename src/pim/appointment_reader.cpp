#include "pim/appointment_reader.h"

#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>

namespace
{
enum Row {
    kStart,
    kDuration,
    kRecurring,
    kSensitivity,
    kBusyStatus,
    kAllDay,
    kZone,
    kRecurrence,
    kRecId,
    kNote,
    kNoteDocument,
    kSubject,
    kLocation,
    kReminderSet,
    kAttendees,
    kUid,
    kRowCount
};
constexpr CEPROPID kRows[kRowCount] = {
    Prop::Start,    Prop::Duration,    Prop::Recurring, Prop::Sensitivity, Prop::BusyStatus,   Prop::AllDay,
    Prop::Zone,     Prop::Recurrence,  Prop::RecId,     Prop::Note,        Prop::NoteDocument, Prop::Subject,
    Prop::Location, Prop::ReminderSet, Prop::Attendees, Prop::Uid};

constexpr qint64 kTicksPerMinute = 600000000;
constexpr qint64 kMaxDuration = 0x7FFFFFFF; // minutes; what is longer is damaged
// A time moves by more than a day between the outermost zones.
constexpr int kZoneReachDays = 2;

int YearOf(int day)
{
    int year = 0, month = 0, dayOfMonth = 0;
    CivilOfDayNumber(day, &year, &month, &dayOfMonth);
    return year;
}

// A series that comes once a year reads as a running anniversary.
QString WithAge(const QString& subject, const CRecurrencePattern& pattern, int day)
{
    return QStringLiteral("%1 (%2)").arg(subject).arg(YearOf(day) - YearOf(DayNumber(pattern.PatternStart)));
}

SystemTime ToMinutes(FileTime time)
{
    SystemTime broken;
    FileTimeToSystemTime(time, &broken);
    broken.wSecond = broken.wMilliseconds = 0;
    return broken;
}

int DurationOf(const std::vector<CEPROPVAL>& rows)
{
    return rows[kDuration].Found() ? int(std::clamp<qint64>(rows[kDuration].Number, 0, kMaxDuration)) : 0;
}

bool Touches(const CAppointment& item, int firstDay, int lastDay)
{
    return std::max(DayNumber(item.End), DayNumber(item.Start)) >= firstDay &&
           DayNumber(item.Start) <= lastDay;
}
} // namespace

bool HasNoteContent(std::span<const uchar> document)
{
    static constexpr uchar kEmptyForm[] = {0xFE, 0xFF, 0x0D, 0, 0x0A, 0, 0x0D, 0, 0x0A, 0, 0, 0};
    const size_t length = document.size();
    if (length == 0)
        return false;
    if (length != 4 && length != 8 && length != 12)
        return true;
    // The mark, pairs of line ends as far as they go, and the closing zero.
    const bool body = std::equal(document.begin(), document.end() - 2, kEmptyForm);
    return !(body && document[length - 2] == 0 && document[length - 1] == 0);
}

DATE ShiftedByMinutes(DATE date, int minutes)
{
    const qint64 moment = std::llround(SignedOf(date) * 1440.0) + minutes;
    const qint64 day = moment / 1440 - (moment % 1440 < 0 ? 1 : 0);
    const double time = double(moment - day * 1440) * 60.0 / 86400.0;
    return day >= 0 ? double(day) + time : double(day) - time;
}

CAppointmentReader::CAppointmentReader(CCategoryStore& categories) : m_categories(categories)
{
    const quint32 period = GetTimeZoneInformation(&m_zone);
    m_biasNow = m_zone.Bias;
    if (period == kTimeZoneStandard)
        m_biasNow += m_zone.StandardBias;
    else if (period == kTimeZoneDaylight)
        m_biasNow += m_zone.DaylightBias;
    m_daylightNow = IsDaylightTime(m_zone, GetLocalTime());
    m_categories.BeginPass();
}

bool CAppointmentReader::Open(const std::shared_ptr<CPropertyVolume>& volume, CEPROPID sort)
{
    EndIteration();
    return CPimDatabase::Open(volume, kAppointmentsDatabase, true, {{sort}, sort == Prop::RecId});
}

// ---- one record

bool CAppointmentReader::ReadAppointment(CAppointment& item, CRecurrencePattern& pattern, CEOID& oid,
                                         int firstDay, int lastDay)
{
    oid = ReadRecordProps(std::span(kRows, m_uidSink ? kRowCount : kUid), m_rows);
    m_storedStart = 0;
    if (oid == 0)
        return false;
    item.AllDay = m_rows[kAllDay].Found() && m_rows[kAllDay].Number != 0;
    item.Recurrence = m_rows[kRecurring].Found() && m_rows[kRecurring].Number != 0 ? 1 : 0;
    ReadDates(m_rows, item);
    if (firstDay != -1 && lastDay != -1 && item.Recurrence == 0 && !Touches(item, firstDay, lastDay))
        return false;
    if (m_rows[kSensitivity].Found())
        item.Sensitivity = int(m_rows[kSensitivity].Number);
    if (m_rows[kBusyStatus].Found())
        item.BusyStatus = int(m_rows[kBusyStatus].Number);
    if (m_rows[kZone].Found())
        ParseRecurrenceZone(pattern, BytesOf(m_rows[kZone].Bytes));
    if (m_rows[kRecurrence].Found())
        ParseRecurrence(pattern, BytesOf(m_rows[kRecurrence].Bytes));
    item.RecordOid = oid;
    if (m_rows[kRecId].Found())
        item.ItemId = quint32(m_rows[kRecId].Number) + kAppointmentTag;
    m_categories.ReadItemCategories(item);
    ReadTexts(m_rows, item);
    if (m_uidSink)
        m_uidSink(oid, m_rows[kUid].Found() ? m_rows[kUid].Text : QString());
    return true;
}

void CAppointmentReader::ReadDates(const std::vector<CEPROPVAL>& rows, CAppointment& item)
{
    if (!rows[kStart].Found())
        return;
    m_storedStart = rows[kStart].Number;
    if (item.Recurrence != 0)
        return;
    SystemTime start = ToMinutes(m_storedStart - m_biasNow * kTicksPerMinute);
    if (item.AllDay)
        NormalizeUtcAllDay(ToMinutes(m_storedStart), start);
    else
        CorrectToDaylightOfDate(m_daylightNow, m_zone, start);
    item.Start = DateOf(start);
    // By the calendar, on local time: a change of the clocks within leaves the wall time alone.
    item.End = ShiftedByMinutes(item.Start, DurationOf(rows));
}

void CAppointmentReader::TakeRecordDates(CAppointment& item, const CRecurrencePattern& pattern) const
{
    if (item.Recurrence == 0 || !m_rows[kStart].Found())
        return;
    const bool ownDay = item.AllDay && pattern.PatternStart != NO_DATE; // in every zone the same
    item.Start = ownDay ? DayNumber(pattern.PatternStart)
                        : ShiftedByMinutes(UtcToLocal(DateOfFileTime(m_storedStart), m_zone), 0);
    item.End = ShiftedByMinutes(item.Start, DurationOf(m_rows));
    const int first = DayNumber(pattern.PatternStart);
    const bool stands = std::none_of(pattern.Exceptions.begin(), pattern.Exceptions.end(), [&](const auto& x) {
        return x.Deleted && x.OriginalDay == first;
    });
    item.OriginalDay = stands && pattern.PatternStart != NO_DATE ? first : 0;
    item.OriginalStart = item.Start;
}

void CAppointmentReader::ReadTexts(std::vector<CEPROPVAL>& rows, CAppointment& item) const
{
    item.HasNote = (rows[kNote].Found() && !rows[kNote].Text.isEmpty()) ||
                   (rows[kNoteDocument].Found() && HasNoteContent(BytesOf(rows[kNoteDocument].Bytes)));
    if (rows[kSubject].Found())
        item.Subject = std::move(rows[kSubject].Text);
    if (rows[kLocation].Found())
        item.Location = std::move(rows[kLocation].Text);
    item.ReminderSet = rows[kReminderSet].Found() && rows[kReminderSet].Number != 0;
    item.HasAttendees = rows[kAttendees].Found() && !rows[kAttendees].Bytes.isEmpty();
}

// ---- occurrences

void CAppointmentReader::EndIteration()
{
    m_instances.clear();
    m_lastItemId = 0;
    m_instanceIndex = -1;
}

void CAppointmentReader::ExpandOccurrences(const CAppointment& item, int firstDay, int lastDay,
                                           const CRecurrencePattern& pattern)
{
    m_instances.clear();
    m_subject = item.Subject;
    m_foreignZone = !(pattern.Zone() == m_zone);
    const int reach = m_foreignZone ? kZoneReachDays : 0;
    ExpandPattern(pattern, firstDay - reach, lastDay + reach, m_instances);
}

int CAppointmentReader::ShiftOf(const CRecurrencePattern& pattern, DATE start) const
{
    return m_foreignZone ? ZoneShift(pattern, m_zone, start) : 0;
}

bool CAppointmentReader::NextInstance(CAppointment& item, std::unique_ptr<CAppointment>& override,
                                      int firstDay, int lastDay, const CRecurrencePattern& pattern)
{
    override.reset();
    const bool first = m_instanceIndex < 0 || item.ItemId != m_lastItemId;
    m_instanceIndex = first ? 0 : m_instanceIndex + 1;
    m_lastItemId = item.ItemId;
    if (item.Recurrence == 0) {
        if (first && Touches(item, firstDay, lastDay))
            return true;
        EndIteration();
        return false;
    }
    if (first)
        ExpandOccurrences(item, firstDay, lastDay, pattern);
    for (; size_t(m_instanceIndex) < m_instances.size(); ++m_instanceIndex) {
        const COccurrence& instance = m_instances[size_t(m_instanceIndex)];
        if (instance.ExceptionIndex >= 0) {
            item.Subject = m_subject;
            override = MakeOverride(item, pattern, pattern.Exceptions[size_t(instance.ExceptionIndex)]);
            if (Touches(*override, firstDay, lastDay))
                return true;
            override.reset();
            continue;
        }
        const int shift = item.AllDay ? 0 : ShiftOf(pattern, instance.Start);
        item.Start = shift ? ShiftedByMinutes(instance.Start, shift) : instance.Start;
        item.End = shift ? ShiftedByMinutes(instance.End, shift) : instance.End;
        item.OriginalDay = instance.OriginalDay;
        item.OriginalStart = item.Start;
        if (!Touches(item, firstDay, lastDay))
            continue;
        if (pattern.IsYearly())
            item.Subject = WithAge(m_subject, pattern, instance.OriginalDay);
        return true;
    }
    item.Subject = m_subject;
    EndIteration();
    return false;
}

std::unique_ptr<CAppointment> CAppointmentReader::MakeOverride(const CAppointment& item,
                                                               const CRecurrencePattern& pattern,
                                                               const CRecurrenceException& exception) const
{
    auto changed = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
    item.CopyTo(*changed);
    changed->Recurrence = 2;
    changed->Start = exception.Start;
    changed->End = exception.End;
    if (exception.HasSubject)
        changed->Subject = exception.Subject;
    if (pattern.IsYearly())
        changed->Subject = WithAge(changed->Subject, pattern, exception.OriginalDay);
    if (exception.HasLocation)
        changed->Location = exception.Location;
    if (exception.HasBusyStatus)
        changed->BusyStatus = exception.BusyStatus;
    if (exception.HasAllDay)
        changed->AllDay = exception.AllDay;
    if (exception.HasNoteFlag)
        changed->HasNote = exception.HasNote;
    changed->OriginalDay = exception.OriginalDay;
    changed->OriginalStart =
        exception.OriginalDay + std::clamp(pattern.StartMinute, 0, 1439) * 60.0 / 86400.0;
    const bool foreign = !(pattern.Zone() == m_zone);
    if (foreign && !item.AllDay)
        changed->OriginalStart =
            ShiftedByMinutes(changed->OriginalStart, ZoneShift(pattern, m_zone, changed->OriginalStart));
    if (foreign && !changed->AllDay) {
        const int shift = ZoneShift(pattern, m_zone, exception.Start);
        changed->Start = ShiftedByMinutes(exception.Start, shift);
        changed->End = ShiftedByMinutes(exception.End, shift);
    }
    return changed;
}
