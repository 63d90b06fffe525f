#include "object_model/appointment_record.h"

#include "object_model/series_rows.h"
#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

#include <algorithm>

namespace
{
constexpr qint64 kLongSpanMinutes = 31 * 1440; // longer ones are found by an order of their own
constexpr int kFirstDay = -109204;             // stored times begin in 1601
constexpr int kLastDay = 2958463;
constexpr qint64 kMaxMinutes = 0x7FFFFFFF;

enum Row {
    kStart,
    kDuration,
    kRecurring,
    kSensitivity,
    kBusyStatus,
    kAllDay,
    kZone,
    kRecurrence,
    kNote,
    kSubject,
    kLocation,
    kReminderSet,
    kReminderMinutes,
    kAttendees,
    kForeign // and on: kForeignRows
};
constexpr CEPROPID kOwnIds[kForeign] = {
    Prop::Start,    Prop::Duration,    Prop::Recurring,       Prop::Sensitivity, Prop::BusyStatus,
    Prop::AllDay,   Prop::Zone,        Prop::Recurrence,      Prop::Note,        Prop::Subject,
    Prop::Location, Prop::ReminderSet, Prop::ReminderMinutes, Prop::Attendees,
};
constexpr auto kIds = WithForeignRows(kOwnIds);

// The day that a plain all-day item means, as every reader finds it.
DATE AllDayStart(FileTime utc)
{
    SystemTime utcTime, localTime;
    FileTime local = 0;
    if (!FileTimeToLocalFileTime(utc, &local) || !FileTimeToSystemTime(utc, &utcTime) ||
        !FileTimeToSystemTime(local, &localTime))
        return NO_DATE;
    NormalizeUtcAllDay(utcTime, localTime);
    return DayNumber(DateOf(localTime));
}

void ReadPlainTimes(const std::vector<CEPROPVAL>& rows, const TimeZoneInformation& device,
                    CAppointmentFields& fields)
{
    if (!rows[kStart].Found())
        return;
    const FileTime utc = rows[kStart].Number;
    const qint64 minutes =
        rows[kDuration].Found() ? std::clamp<qint64>(rows[kDuration].Number, 0, kMaxMinutes) : 0;
    if (fields.AllDay) {
        fields.Start = AllDayStart(utc);
        if (fields.Start != NO_DATE)
            fields.End = fields.Start + double(std::max<qint64>((minutes + 1439) / 1440, 1));
        return;
    }
    fields.Start = UtcToLocal(ToWholeMinute(DateOfFileTime(utc)), device);
    fields.End = PlusMinutes(fields.Start, minutes);
}

void PutDuration(CRecordRows& rows, qint64 minutes)
{
    minutes = std::clamp<qint64>(minutes, 0, kMaxMinutes);
    rows.Number(Prop::Duration, minutes);
    if (minutes > kLongSpanMinutes)
        rows.Number(Prop::LongSpan, minutes);
    else
        rows.Remove(Prop::LongSpan);
}
} // namespace

std::span<const CEPROPID> AppointmentRows()
{
    return kIds;
}

bool ReadFields(const std::vector<CEPROPVAL>& rows, const TimeZoneInformation& device,
                CAppointmentFields& fields, CRecurrencePattern& pattern)
{
    const auto number = [&rows](Row row, qint64 otherwise) {
        return rows[row].Found() ? rows[row].Number : otherwise;
    };
    fields.AllDay = number(kAllDay, 0) != 0;
    fields.Sensitivity = int(number(kSensitivity, 0));
    fields.BusyStatus = int(number(kBusyStatus, 2));
    fields.ReminderSet = number(kReminderSet, 0) != 0;
    fields.ReminderMinutes = int(number(kReminderMinutes, 0));
    fields.Subject = rows[kSubject].Text;
    fields.Location = rows[kLocation].Text;
    fields.Body = rows[kNote].Text;
    fields.Attendees = rows[kAttendees].Bytes;
    fields.Foreign = ReadForeign(std::span(rows).subspan(kForeign));
    ReadPlainTimes(rows, device, fields);
    if (number(kRecurring, 0) == 0)
        return false;
    ParseRecurrenceZone(pattern, BytesOf(rows[kZone].Bytes));
    ParseRecurrence(pattern, BytesOf(rows[kRecurrence].Bytes));
    return pattern.Type >= 0;
}

// ---- times

CStatus NormalizeTimes(CAppointmentFields& fields)
{
    if (fields.Start == NO_DATE) {
        fields.End = NO_DATE;
        return {};
    }
    if (!(fields.Start >= kFirstDay && fields.Start < kLastDay))
        return {StatusKind::Invalid,
                QStringLiteral("The appointment's start is no date that can be stored.")};
    if (!(fields.End >= fields.Start && fields.End < kLastDay) || fields.End == NO_DATE)
        fields.End = fields.Start;
    if (fields.AllDay) {
        fields.Start = DayNumber(fields.Start);
        fields.End = std::max(std::ceil(fields.End), fields.Start + 1);
        return {};
    }
    fields.Start = ToWholeMinute(fields.Start);
    fields.End = ToWholeMinute(fields.End);
    return {};
}

void PutPlainTimes(CRecordRows& rows, const CAppointmentFields& fields, const TimeZoneInformation& device)
{
    rows.Number(Prop::AllDay, fields.AllDay ? 1 : 0);
    if (fields.Start == NO_DATE) {
        for (CEPROPID id : {Prop::Start, Prop::Duration, Prop::LongSpan})
            rows.Remove(id);
        return;
    }
    // An all-day item is kept at the midnight of UTC, which means the same day in every zone.
    rows.Number(Prop::Start, FileTimeOfDate(fields.AllDay ? fields.Start : LocalToUtc(fields.Start, device)));
    PutDuration(rows, MinutesBetween(fields.Start, fields.End));
}

void PutSeries(CRecordRows& rows, const CRecurrencePattern& pattern)
{
    const DATE first = PlusMinutes(pattern.PatternStart, pattern.StartMinute);
    rows.Number(Prop::Recurring, 1);
    rows.Number(Prop::Start, FileTimeOfDate(LocalToUtc(first, pattern.Zone())));
    PutDuration(rows, qint64(pattern.EndMinute) - pattern.StartMinute);
    rows.Bytes(Prop::Zone, WriteRecurrenceZone(pattern));
    rows.Bytes(Prop::Recurrence, WriteRecurrence(pattern));
}

void PutFields(CRecordRows& rows, const CAppointmentFields& fields, unsigned changed)
{
    if (changed & Changed::Subject)
        rows.Text(Prop::Subject, fields.Subject);
    if (changed & Changed::Location)
        rows.Text(Prop::Location, fields.Location);
    if (changed & Changed::BusyStatus)
        rows.Number(Prop::BusyStatus, fields.BusyStatus);
    if (changed & Changed::Sensitivity)
        rows.Number(Prop::Sensitivity, fields.Sensitivity);
    if (changed & Changed::Reminder) {
        rows.Number(Prop::ReminderSet, fields.ReminderSet ? 1 : 0);
        rows.Number(Prop::ReminderMinutes, fields.ReminderMinutes);
    }
    if (changed & Changed::Body) {
        rows.Text(Prop::Note, fields.Body);
        rows.Remove(Prop::NoteDocument); // it would tell the old text
    }
    if (changed & Changed::Foreign)
        return PutForeign(rows, fields.Foreign);
    rows.Number(Prop::LastChange, Clock().GetUtcTime());
    if (changed & Changed::Identity) {
        rows.Text(Prop::Uid, fields.Foreign.Uid);
        rows.Number(Prop::Sequence, fields.Foreign.Sequence);
    }
}
