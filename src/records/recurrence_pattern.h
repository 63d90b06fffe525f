// The recurrence of one item, as its blob tells it.
// Stored bytes fill these fields as they stand: any of them may be out of its range.
// Units: PatternStart and PatternEnd are midnights in the pattern's own zone; StartMinute and
//   EndMinute are minutes after midnight (the end past 1440 when it crosses midnight).
#pragma once
#include "util/date_time.h"

#include <QByteArray>
#include <QString>
#include <vector>

namespace PatternType
{
constexpr int Daily = 0, Weekly = 1, Monthly = 2, MonthlyNth = 3, Yearly = 5, YearlyNth = 6;
}
namespace PatternEndKind
{
constexpr int Date = 0, Count = 1, Never = 2;
}

struct CRecurrenceException {
    int OriginalDay = 0; // day number of the occurrence it stands for
    DATE Start = 0, End = 0;
    bool Deleted = true; // until a record of changes clears it
    bool HasSubject = false, HasLocation = false, HasBusyStatus = false, HasAllDay = false, HasNoteFlag = false;
    QString Subject, Location;
    int BusyStatus = 0;
    bool AllDay = false;
    bool HasNote = false;
    QString Note;            // decoded from the record's note bytes when they are ours, else empty
    QByteArray SkippedBytes; // what a foreign record holds that we do not read, kept for writing:
                             // 16 bits of its flags, then their bytes (see recurrence_blob.cpp)

    bool operator==(const CRecurrenceException&) const = default;
};

struct CRecurrencePattern {
    int Type = -1;
    int Interval = 1; // days, weeks or months
    DATE PatternStart = NO_DATE;
    int EndKind = PatternEndKind::Never;
    DATE PatternEnd = NO_DATE;
    int Occurrences = 1;
    int DayMask = 0; // bit 0 Sunday .. bit 6 Saturday
    int DayOfMonth = 0;
    int Instance = 0; // 1..5, 5 is last
    int ExceptionCount = 0;
    int StartMinute = 0, EndMinute = 0;
    std::vector<CRecurrenceException> Exceptions; // sorted by OriginalDay
    qint16 ZoneBias = 0, ZoneStandardBias = 0, ZoneDaylightBias = 0;
    SystemTime ZoneStandardDate, ZoneDaylightDate;
    // What a foreign blob holds that we do not read, kept for writing; empty when it is all zero.
    QByteArray SkippedHeader; // up to the exceptions, the fields that we read blanked
    QByteArray SkippedTail;   // behind the last exception

    TimeZoneInformation Zone() const;
    void SetZone(const TimeZoneInformation& zone);
    bool IsYearly() const { return Type == PatternType::Yearly || (Type == PatternType::Monthly && Interval == 12); }
    bool operator==(const CRecurrencePattern&) const = default;
};
