#include "platform/system_time.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace
{
SystemTime At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    SystemTime time;
    time.wYear = quint16(year);
    time.wMonth = quint16(month);
    time.wDay = quint16(day);
    time.wHour = quint16(hour);
    time.wMinute = quint16(minute);
    time.wSecond = quint16(second);
    return time;
}

struct CDateCase {
    SystemTime time;
    double date;
    int weekday;
};

const CDateCase kDates[] = {
    {At(1899, 12, 30), 0, 6},
    {At(1899, 12, 30, 12), 0.5, 6},
    {At(1899, 12, 31, 6), 1.25, 0},
    {At(1899, 12, 29), -1, 5},
    {At(1899, 12, 29, 6), -1.25, 5},
    {At(100, 1, 1), -657434, 5},
    {At(100, 1, 1, 18), -657434.75, 5},
    {At(1601, 1, 1), -109205, 1},
    {At(1900, 2, 28), 60, 3},
    {At(1900, 3, 1), 61, 4},
    {At(2000, 2, 29), 36585, 2},
    {At(2024, 2, 29, 23, 59, 59), 45351 + 86399 / 86400.0, 4},
    {At(4501, 1, 1), 949998, 6},
    {At(9999, 12, 31, 23, 59, 59), 2958465 + 86399 / 86400.0, 5},
};
} // namespace

TEST(VariantTime, ConvertsBothWays)
{
    for (const CDateCase& c : kDates) {
        SCOPED_TRACE(c.date);
        DATE date = 0;
        ASSERT_TRUE(SystemTimeToVariantTime(c.time, &date));
        EXPECT_EQ(date, c.date);
        SystemTime back;
        ASSERT_TRUE(VariantTimeToSystemTime(c.date, &back));
        SystemTime wanted = c.time;
        wanted.wDayOfWeek = quint16(c.weekday);
        EXPECT_EQ(back, wanted);
    }
}

TEST(VariantTime, RefusesWhatIsNoDate)
{
    const SystemTime bad[] = {At(99, 12, 31),     At(10000, 1, 1),      At(2023, 2, 29),     At(1900, 2, 29),
                              At(2024, 0, 1),     At(2024, 13, 1),      At(2024, 4, 31),     At(2024, 1, 0),
                              At(2024, 1, 1, 24), At(2024, 1, 1, 0, 60), At(2024, 1, 1, 0, 0, 60)};
    for (const SystemTime& time : bad) {
        DATE date = 7;
        EXPECT_FALSE(SystemTimeToVariantTime(time, &date)) << time.wYear << '-' << time.wMonth << '-' << time.wDay;
        EXPECT_EQ(date, 7);
    }
    const double noDates[] = {-657435, 2958466, std::nan(""), std::numeric_limits<double>::infinity(), -1e300};
    for (const double date : noDates) {
        SystemTime time = At(2000, 1, 1);
        EXPECT_FALSE(VariantTimeToSystemTime(date, &time)) << date;
        EXPECT_EQ(time, At(2000, 1, 1));
    }
}

TEST(VariantTime, RoundsToTheNearestSecond)
{
    SystemTime time;
    ASSERT_TRUE(VariantTimeToSystemTime(100 + 0.4 / 86400, &time));
    EXPECT_EQ(time.wSecond, 0);
    ASSERT_TRUE(VariantTimeToSystemTime(100 + 0.6 / 86400, &time));
    EXPECT_EQ(time.wSecond, 1);
    // Carries into the next day, also where days run backwards.
    ASSERT_TRUE(VariantTimeToSystemTime(100.999999, &time));
    EXPECT_EQ(DayNumberOf(time.wYear, time.wMonth, time.wDay), 101);
    EXPECT_EQ(time.wHour, 0);
    ASSERT_TRUE(VariantTimeToSystemTime(-5.999999, &time));
    EXPECT_EQ(DayNumberOf(time.wYear, time.wMonth, time.wDay), -4);
    EXPECT_EQ(time.wHour, 0);
}

TEST(FileTime, ConvertsBothWays)
{
    const struct {
        SystemTime time;
        FileTime fileTime;
    } cases[] = {
        {At(1601, 1, 1), 0},
        {At(1970, 1, 1), 116444736000000000},
        {At(2024, 2, 29, 12, 30, 15), 133536834150000000},
        {At(9999, 12, 31, 23, 59, 59), 2650467743990000000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fileTime);
        FileTime fileTime = -1;
        ASSERT_TRUE(SystemTimeToFileTime(c.time, &fileTime));
        EXPECT_EQ(fileTime, c.fileTime);
        SystemTime back;
        ASSERT_TRUE(FileTimeToSystemTime(c.fileTime, &back));
        back.wDayOfWeek = 0;
        EXPECT_EQ(back, c.time);
    }
    SystemTime time;
    ASSERT_TRUE(FileTimeToSystemTime(12340000, &time));
    EXPECT_EQ(time.wSecond, 1);
    EXPECT_EQ(time.wMilliseconds, 234);
}

TEST(FileTime, RefusesOutOfRange)
{
    FileTime fileTime = 5;
    EXPECT_FALSE(SystemTimeToFileTime(At(1600, 12, 31), &fileTime));
    EXPECT_FALSE(SystemTimeToFileTime(At(2023, 2, 29), &fileTime));
    EXPECT_EQ(fileTime, 5);
    SystemTime time;
    EXPECT_FALSE(FileTimeToSystemTime(-1, &time));
    EXPECT_FALSE(FileTimeToSystemTime(2650467744000000000, &time));
    EXPECT_EQ(time, SystemTime());
}

TEST(DayNumber, EveryDayFollowsTheOneBefore)
{
    int year = 100;
    int month = 1;
    int day = 1;
    for (int number = -657434; number <= 2958465; ++number) {
        int y = 0;
        int m = 0;
        int d = 0;
        CivilOfDayNumber(number, &y, &m, &d);
        ASSERT_TRUE(y == year && m == month && d == day) << number;
        ASSERT_EQ(DayNumberOf(y, m, d), number);
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (++day > lengths[month - 1]) {
            day = 1;
            if (++month > 12) {
                month = 1;
                ++year;
            }
        }
    }
}
