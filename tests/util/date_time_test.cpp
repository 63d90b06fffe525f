#include "util/date_time.h"

#include <gtest/gtest.h>

namespace
{
SystemTime Rule(int month, int weekday, int week, int hour)
{
    SystemTime rule;
    rule.wMonth = quint16(month);
    rule.wDayOfWeek = quint16(weekday);
    rule.wDay = quint16(week);
    rule.wHour = quint16(hour);
    return rule;
}

TimeZoneInformation Zone(int bias, int daylightBias, const SystemTime& standard, const SystemTime& daylight)
{
    TimeZoneInformation zone;
    zone.Bias = bias;
    zone.DaylightBias = daylightBias;
    zone.StandardDate = standard;
    zone.DaylightDate = daylight;
    return zone;
}

const TimeZoneInformation kBerlin = Zone(-60, -60, Rule(10, 0, 5, 3), Rule(3, 0, 5, 2));
const TimeZoneInformation kNewYork = Zone(300, -60, Rule(11, 0, 1, 2), Rule(3, 0, 2, 2));
const TimeZoneInformation kSydney = Zone(-600, -60, Rule(4, 0, 1, 3), Rule(10, 0, 1, 2));
const TimeZoneInformation kLordHowe = Zone(-630, -30, Rule(4, 0, 1, 2), Rule(10, 0, 1, 2));
const TimeZoneInformation kTokyo = Zone(-540, 0, SystemTime(), SystemTime());

DATE At(int year, int month, int day, int hour = 0, int minute = 0)
{
    return DayNumberOf(year, month, day) + (hour * 60 + minute) / 1440.0;
}

SystemTime TimeAt(int year, int month, int day, int hour = 0, int minute = 0)
{
    return SystemTimeOf(At(year, month, day, hour, minute));
}

QString Text(DATE date)
{
    const SystemTime t = SystemTimeOf(date);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d", t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute);
}
} // namespace

TEST(CDateTime, RefusesWhatTheCalendarHasNot)
{
    EXPECT_TRUE(CDateTime(2024, 2, 29, 23, 59, 59).IsValid());
    const int bad[][6] = {{2023, 2, 29, 0, 0, 0}, {2024, 2, 31, 0, 0, 0}, {2024, 13, 1, 0, 0, 0},
                          {2024, 1, 1, 24, 0, 0}, {2024, 1, 1, 0, 60, 0}, {99, 1, 1, 0, 0, 0},
                          {2024, 0, 1, 0, 0, 0},  {2024, 1, -1, 0, 0, 0}, {70000, 1, 1, 0, 0, 0},
                          {67560, 1, 1, 0, 0, 0}}; // 67560 is 2024 in 16 bits
    for (const auto& b : bad) {
        const CDateTime date(b[0], b[1], b[2], b[3], b[4], b[5]);
        EXPECT_FALSE(date.IsValid()) << b[0] << ' ' << b[1] << ' ' << b[2];
        EXPECT_EQ(date.GetYear(), -1);
        EXPECT_EQ(date.GetDayOfWeek(), -1);
        EXPECT_EQ(date.Format(QStringLiteral("yyyy")), QStringLiteral("Invalid DateTime"));
    }
    EXPECT_EQ(CDateTime(2026, 11, 22, 0, 0, 0).GetDayOfWeek(), 1); // a Sunday
    EXPECT_EQ(CDateTime(4501, 1, 1, 0, 0, 0).m_date, NO_DATE);
}

TEST(CDateTime, SpansCrossDayZeroInOrder)
{
    CDateTime date(1899, 12, 31, 6, 0, 0); // 1.25
    // Half days downwards; below zero the fraction still counts from the day's start.
    const DATE expected[] = {0.75, 0.25, -1.75, -1.25};
    for (DATE value : expected) {
        date -= CDateTimeSpan(0.5);
        EXPECT_DOUBLE_EQ(date.m_date, value);
    }
    date += CDateTimeSpan(2.0);
    EXPECT_DOUBLE_EQ(date.m_date, 1.25);
    EXPECT_EQ(CDateTimeSpan(3615898).m_status, 1);
    EXPECT_EQ(CDateTimeSpan(-3615897).m_status, 0);
    date += CDateTimeSpan(4e6);
    EXPECT_FALSE(date.IsValid());
}

TEST(Months, OneMonthEarlierAndLaterIsClamped)
{
    const struct {
        int year, month, day;
        const char *prev, *next;
    } cases[] = {{2024, 3, 31, "2024-02-29 00:00", "2024-04-30 00:00"},
                 {2023, 3, 30, "2023-02-28 00:00", "2023-04-30 00:00"},
                 {2024, 3, 15, "2024-02-15 00:00", "2024-04-15 00:00"},
                 {2023, 1, 31, "2022-12-31 00:00", "2023-02-28 00:00"},
                 {2023, 12, 31, "2023-11-30 00:00", "2024-01-31 00:00"},
                 {2024, 2, 29, "2024-01-29 00:00", "2024-03-29 00:00"}};
    for (const auto& c : cases) {
        const int day = DayNumberOf(c.year, c.month, c.day);
        EXPECT_EQ(Text(GetSameDayPrevMonth(day)), QLatin1String(c.prev));
        EXPECT_EQ(Text(GetSameDayNextMonth(day)), QLatin1String(c.next));
    }
}

TEST(Months, BoundsOfMonthAndWeek)
{
    SystemTime first, last;
    GetMonthBounds(TimeAt(2024, 2, 17), &first, &last);
    EXPECT_EQ(Text(DateOf(first)), QStringLiteral("2024-02-01 00:00"));
    EXPECT_EQ(Text(DateOf(last)), QStringLiteral("2024-02-29 00:00"));
    const int sunday = DayNumberOf(2026, 11, 22);
    for (int firstDay = 0; firstDay <= 6; ++firstDay)
        for (int day = sunday; day < sunday + 14; ++day) {
            GetWeekBounds(SystemTimeOf(day), &first, &last, firstDay);
            EXPECT_EQ(first.wDayOfWeek, firstDay);
            EXPECT_EQ(DayNumber(DateOf(last)) - DayNumber(DateOf(first)), 6);
            EXPECT_LE(DayNumber(DateOf(first)), day);
            EXPECT_GE(DayNumber(DateOf(last)), day);
        }
}

TEST(AddMinutes, CarriesIntoDaysAndMonths)
{
    SystemTime time = TimeAt(2024, 2, 28, 23, 30);
    AddMinutes(time, 60);
    EXPECT_EQ(Text(DateOf(time)), QStringLiteral("2024-02-29 00:30"));
    EXPECT_EQ(time.wDayOfWeek, 4);
    AddMinutes(time, 3 * 1440 - 31);
    EXPECT_EQ(Text(DateOf(time)), QStringLiteral("2024-03-02 23:59"));
    AddMinutes(time, -4 * 1440);
    EXPECT_EQ(Text(DateOf(time)), QStringLiteral("2024-02-27 23:59"));
}

TEST(Zones, TransitionsAreTheNthOrLastWeekday)
{
    EXPECT_EQ(Text(GetTransitionDate(kBerlin.DaylightDate, 2026)), QStringLiteral("2026-03-29 02:00"));
    EXPECT_EQ(Text(GetTransitionDate(kBerlin.StandardDate, 2027)), QStringLiteral("2027-10-31 03:00"));
    EXPECT_EQ(Text(GetTransitionDate(kNewYork.DaylightDate, 2026)), QStringLiteral("2026-03-08 02:00"));
    EXPECT_EQ(Text(GetTransitionDate(kNewYork.StandardDate, 2026)), QStringLiteral("2026-11-01 02:00"));
    EXPECT_TRUE(IsDaylightTime(kBerlin, TimeAt(2026, 7, 1)));
    EXPECT_FALSE(IsDaylightTime(kBerlin, TimeAt(2026, 10, 25, 3)));
    EXPECT_TRUE(IsDaylightTime(kSydney, TimeAt(2026, 1, 1)));
    EXPECT_FALSE(IsDaylightTime(kSydney, TimeAt(2026, 4, 5, 3))); // exactly the change: standard
    EXPECT_FALSE(IsDaylightTime(kTokyo, TimeAt(2026, 7, 1)));
    SystemTime garbage = Rule(60000, 900, 77, 99);
    EXPECT_FALSE(IsDaylightTime(Zone(0, -60, garbage, Rule(3, 0, 5, 2)), TimeAt(2026, 7, 1)));
}

// What is stored by LocalToUtc and read back by the bias that holds now, then corrected, is the
// same wall time, on every quarter of an hour of the days around each change.
TEST(Zones, WallTimesComeBackInBothSeasonsOfNow)
{
    for (const TimeZoneInformation* zone : {&kBerlin, &kNewYork, &kSydney, &kLordHowe, &kTokyo})
        for (const DATE now : {At(2026, 1, 10, 12), At(2026, 7, 10, 12)}) {
            const bool daylightNow = IsDaylightTime(*zone, SystemTimeOf(now));
            const int biasNow = zone->Bias + (daylightNow ? zone->DaylightBias : zone->StandardBias);
            int shifted = 0;
            for (int month : {1, 3, 4, 7, 10, 11})
                for (int quarter = 0; quarter < 31 * 96; ++quarter) {
                    const DATE wall = At(2026, month, 1) + quarter / 96.0;
                    SystemTime read = SystemTimeOf(LocalToUtc(wall, *zone));
                    AddMinutes(read, -biasNow);
                    CorrectToDaylightOfDate(daylightNow, *zone, read);
                    const DATE back = DateOf(read);
                    EXPECT_EQ(Text(back), Text(UtcToLocal(LocalToUtc(wall, *zone), *zone)));
                    if (Text(back) == Text(wall))
                        continue;
                    // Only the skipped time moves, forward by the length of the gap.
                    EXPECT_NEAR(back - wall, -zone->DaylightBias / 1440.0, 1e-6) << Text(wall).toStdString();
                    ++shifted;
                }
            const int gap = zone->StandardDate.wMonth ? -zone->DaylightBias / 15 : 0;
            EXPECT_EQ(shifted, gap);
        }
}

TEST(Zones, TheDoubledHourIsTheFirst)
{
    EXPECT_EQ(Text(LocalToUtc(At(2026, 10, 25, 2, 30), kBerlin)), QStringLiteral("2026-10-25 00:30"));
    EXPECT_EQ(Text(UtcToLocal(At(2026, 10, 25, 1, 30), kBerlin)), QStringLiteral("2026-10-25 02:30"));
    EXPECT_EQ(Text(LocalToUtc(At(2026, 3, 29, 2, 30), kBerlin)), QStringLiteral("2026-03-29 01:30"));
}

TEST(Zones, AllDayMidnightsMeanOneDay)
{
    const struct {
        SystemTime utc, local;
        const char* day;
    } cases[] = {
        {TimeAt(2026, 5, 4, 0), TimeAt(2026, 5, 4, 2), "2026-05-04 00:00"},  // east of UTC
        {TimeAt(2026, 5, 4, 0), TimeAt(2026, 5, 3, 20), "2026-05-04 00:00"}, // west
        {TimeAt(2026, 5, 3, 22), TimeAt(2026, 5, 3, 23),
         "2026-05-04 00:00"}, // stored at the writer's midnight
        {TimeAt(2026, 5, 4, 12), TimeAt(2026, 5, 4, 13), "2026-05-04 00:00"}, // exactly twelve stays
        {TimeAt(2026, 5, 3, 22), TimeAt(2026, 5, 4, 0), "2026-05-04 00:00"},  // already local midnight
    };
    for (const auto& c : cases) {
        SystemTime local = c.local;
        NormalizeUtcAllDay(c.utc, local);
        EXPECT_EQ(Text(DateOf(local)), QLatin1String(c.day));
    }
}

TEST(Units, MinutesAndFileTimesGoBothWays)
{
    for (DATE date : {At(1601, 1, 1), At(1899, 12, 29, 6), At(1899, 12, 30, 6), At(2026, 11, 22, 23, 59),
                      At(4500, 12, 31)}) {
        const DATE stored = DateOf(SystemTimeOf(date));
        EXPECT_EQ(MinutesSince1601ToDate(DateToMinutesSince1601(stored)), stored);
        EXPECT_EQ(DateOfFileTime(FileTimeOfDate(stored)), stored);
        FileTime ticks = 0;
        ASSERT_TRUE(SystemTimeToFileTime(SystemTimeOf(stored), &ticks));
        EXPECT_EQ(FileTimeOfDate(stored), ticks);
    }
    EXPECT_EQ(MinutesSince1601ToDate(0), -109205.0);
}
