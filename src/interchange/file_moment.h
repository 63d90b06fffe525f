// A date or a date with a time as a file writes it, and its arithmetic.
// Units: wall seconds are seconds since 1 January 1970 on the clock of some zone, without any
//   notion of an offset; UTC seconds are the same on the clock of UTC. Days count from that day.
#pragma once
#include "util/date_time.h"

#include <string_view>

constexpr qint64 kDaySeconds = 86400;
constexpr int kUnixDay = 25569; // day number of 1 January 1970

struct CFileMoment {
    qint64 Wall = 0;
    bool IsDate = false; // no time; Wall is a midnight
    bool IsUtc = false;
    bool operator==(const CFileMoment&) const = default;
};

// Reads 20260310, 20260310T090000, 20260310T0900 and their Z forms; years 1 to 9999.
bool ParseMoment(std::string_view text, CFileMoment* moment);

inline qint64 WallOf(int year, int month, int day)
{
    return qint64(DayNumberOf(year, month, day) - kUnixDay) * kDaySeconds;
}
inline qint64 FloorDiv(qint64 a, qint64 b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}
// Day number and minute of the day of a wall time.
inline int DayOfWall(qint64 wall)
{
    return int(FloorDiv(wall, kDaySeconds)) + kUnixDay;
}
inline int SecondOfWall(qint64 wall)
{
    return int(wall - FloorDiv(wall, kDaySeconds) * kDaySeconds);
}
inline qint64 WallOfDay(int dayNumber)
{
    return qint64(dayNumber - kUnixDay) * kDaySeconds;
}
inline DATE DateOfWall(qint64 wall)
{
    return DateOfSigned(DayOfWall(wall) + SecondOfWall(wall) / double(kDaySeconds));
}
int YearOfWall(qint64 wall);
// Whether the records can hold that day.
bool IsStorable(qint64 wall);
