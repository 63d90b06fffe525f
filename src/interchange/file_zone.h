// A zone as a file means it: exact offsets for every moment, and the record for a series.
// Units: seconds; an offset is what is added to UTC.
// Shape: the changes of two centuries in order; times before take the first offset, times after
//   are looked up 28 years earlier, which has the same weekdays.
#pragma once
#include "platform/time_zone.h"

#include <QByteArray>
#include <memory>
#include <vector>

struct CComponent;

class CFileZone
{
public:
    struct Change {
        qint64 Utc;
        int Offset; // from that moment on
    };

    CFileZone(int firstOffset, std::vector<Change> changes, const TimeZoneInformation& record)
        : m_firstOffset(firstOffset), m_changes(std::move(changes)), m_record(record)
    {
    }

    // A time in the skipped hour moves forward, a doubled one is the first.
    qint64 ToUtc(qint64 wall) const;
    qint64 ToWall(qint64 utc) const { return utc + OffsetAt(utc); }
    int OffsetAt(qint64 utc) const;
    // The rules of the current year.
    const TimeZoneInformation& Record() const { return m_record; }

private:
    int m_firstOffset;
    std::vector<Change> m_changes;
    TimeZoneInformation m_record;
};

// A zone of the system by its IANA name; null when there is none.
std::shared_ptr<const CFileZone> MakeSystemZone(const QByteArray& ianaId, int currentYear);
// A zone from its block in a file; null when the block says nothing usable. `budget` counts down by
// the days that its rules cost.
std::shared_ptr<const CFileZone> MakeBlockZone(const CComponent& block, int currentYear, qint64* budget);

// UTC as a zone.
const std::shared_ptr<const CFileZone>& UtcZone();
// Wall time of a moment by a record's rules, which are the same for all years.
qint64 WallByRecord(qint64 utc, const TimeZoneInformation& record);
