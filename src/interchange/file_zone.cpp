#include "interchange/file_zone.h"

#include "interchange/file_moment.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <cmath>

namespace
{
constexpr int kFirstYear = 1900, kEndYear = 2100;
constexpr int kCycleYears = 28;
constexpr qint64 kCycleSeconds = (kCycleYears * 365 + 7) * kDaySeconds;
const qint64 kTableEnd = WallOf(kEndYear, 1, 1);
} // namespace

int CFileZone::OffsetAt(qint64 utc) const
{
    if (utc >= kTableEnd)
        utc -= ((utc - kTableEnd) / kCycleSeconds + 1) * kCycleSeconds;
    const auto after =
        std::upper_bound(m_changes.begin(), m_changes.end(), utc,
                         [](qint64 moment, const Change& change) { return moment < change.Utc; });
    return after == m_changes.begin() ? m_firstOffset : std::prev(after)->Offset;
}

qint64 CFileZone::ToUtc(qint64 wall) const
{
    // No offset is further than a day from UTC, and no two changes matter within two days.
    const int before = OffsetAt(wall - kDaySeconds), after = OffsetAt(wall + kDaySeconds);
    if (before == after || OffsetAt(wall - before) == before)
        return wall - before;
    if (OffsetAt(wall - after) == after)
        return wall - after;
    return wall - before;
}

std::shared_ptr<const CFileZone> MakeSystemZone(const QByteArray& ianaId, int currentYear)
{
    TimeZoneInformation record;
    if (!ZoneRecordOf(ianaId, currentYear, &record))
        return nullptr;
    const QTimeZone zone(ianaId);
    if (!zone.isValid())
        return nullptr;
    const QDateTime from = QDateTime::fromSecsSinceEpoch(WallOf(kFirstYear, 1, 1), Qt::UTC);
    const QDateTime to = QDateTime::fromSecsSinceEpoch(kTableEnd, Qt::UTC);
    std::vector<CFileZone::Change> changes;
    const int first = zone.offsetFromUtc(from);
    int last = first;
    for (const QTimeZone::OffsetData& data : zone.transitions(from, to)) {
        if (data.offsetFromUtc == last || !data.atUtc.isValid())
            continue;
        last = data.offsetFromUtc;
        changes.push_back({data.atUtc.toSecsSinceEpoch(), last});
    }
    return std::make_shared<CFileZone>(first, std::move(changes), record);
}

const std::shared_ptr<const CFileZone>& UtcZone()
{
    static const std::shared_ptr<const CFileZone> zone =
        std::make_shared<CFileZone>(0, std::vector<CFileZone::Change>{}, TimeZoneInformation{});
    return zone;
}

qint64 WallByRecord(qint64 utc, const TimeZoneInformation& record)
{
    const DATE local = UtcToLocal(DateOfWall(utc), record);
    return qint64(std::llround(SignedOf(local) * double(kDaySeconds))) - kUnixDay * kDaySeconds;
}
