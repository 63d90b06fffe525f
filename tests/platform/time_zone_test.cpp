#include "platform/time_zone.h"

#include "platform/clock.h"
#include "platform/zone_rules.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>

std::ostream& operator<<(std::ostream& out, const SystemTime& rule)
{
    return out << rule.wMonth << " week " << rule.wDay << " day " << rule.wDayOfWeek << ' ' << rule.wHour << ':'
               << rule.wMinute;
}

namespace
{
SystemTime Rule(int month, int week, int weekday, int hour, int minute = 0)
{
    SystemTime rule;
    rule.wMonth = quint16(month);
    rule.wDay = quint16(week);
    rule.wDayOfWeek = quint16(weekday);
    rule.wHour = quint16(hour);
    rule.wMinute = quint16(minute);
    return rule;
}

FileTime Utc(int year, int month, int day, int hour = 0, int minute = 0)
{
    return (qint64(DayNumberOf(year, month, day) + 109205) * 1440 + hour * 60 + minute) * 600000000;
}

struct CZoneCase {
    const char* zone;
    int year;
    int bias;
    int daylightBias;
    SystemTime standard;
    SystemTime daylight;
};

const SystemTime kNone;
const CZoneCase kZones[] = {
    {"Europe/Berlin", 2024, -60, -60, Rule(10, 5, 0, 3), Rule(3, 5, 0, 2)},
    {"Europe/Berlin", 2500, -60, -60, Rule(10, 5, 0, 3), Rule(3, 5, 0, 2)},
    {"America/New_York", 2024, 300, -60, Rule(11, 1, 0, 2), Rule(3, 2, 0, 2)},
    {"Australia/Sydney", 2024, -600, -60, Rule(4, 1, 0, 3), Rule(10, 1, 0, 2)},
    {"Australia/Lord_Howe", 2024, -630, -30, Rule(4, 1, 0, 2), Rule(10, 1, 0, 2)},
    {"Europe/Dublin", 2024, 0, -60, Rule(10, 5, 0, 2), Rule(3, 5, 0, 1)},
    {"Africa/Casablanca", 2024, 0, -60, Rule(3, 2, 0, 3), Rule(4, 2, 0, 2)},
    {"Asia/Jerusalem", 2024, -120, -60, Rule(10, 5, 0, 2), Rule(3, 5, 5, 2)},
    {"America/Santiago", 2024, 240, -60, Rule(4, 1, 0, 0), Rule(9, 2, 0, 0)},
    {"America/St_Johns", 2024, 210, -60, Rule(11, 1, 0, 2), Rule(3, 2, 0, 2)},
    {"Asia/Kolkata", 2024, -330, 0, kNone, kNone},
    {"Asia/Kathmandu", 2024, -345, 0, kNone, kNone},
    {"Etc/UTC", 2024, 0, 0, kNone, kNone},
    {"UTC", 2024, 0, 0, kNone, kNone},
    // In this year the whole country moved for good.
    {"Europe/Istanbul", 2016, -180, 0, kNone, kNone},
    {"Europe/Istanbul", 2015, -120, -60, Rule(11, 2, 0, 4), Rule(3, 5, 0, 3)},
};

class CZoneVariable : public testing::Test
{
protected:
    void SetUp() override
    {
        const char* old = getenv("TZ");
        m_wasSet = old != nullptr;
        m_old = old;
        SetTimeZone(nullptr);
        SetClock(&m_clock);
        m_clock.Set(Utc(2024, 7, 1, 12));
    }
    void TearDown() override
    {
        if (m_wasSet)
            setenv("TZ", m_old.constData(), 1);
        else
            unsetenv("TZ");
        SetClock(nullptr);
        SetTimeZone(nullptr);
    }
    int BiasNow()
    {
        FileTime local = 0;
        EXPECT_TRUE(FileTimeToLocalFileTime(Utc(2024, 1, 1), &local));
        return int((Utc(2024, 1, 1) - local) / 600000000);
    }

    CManualClock m_clock;
    bool m_wasSet = false;
    QByteArray m_old;
};
} // namespace

TEST(ZoneRecord, FollowsTheRulesOfTheYear)
{
    for (const CZoneCase& c : kZones) {
        SCOPED_TRACE(testing::Message() << c.zone << ' ' << c.year);
        TimeZoneInformation zone;
        ASSERT_TRUE(ZoneRecordOf(c.zone, c.year, &zone));
        EXPECT_EQ(zone.Bias, c.bias);
        EXPECT_EQ(zone.StandardBias, 0);
        EXPECT_EQ(zone.DaylightBias, c.daylightBias);
        EXPECT_EQ(zone.StandardDate, c.standard);
        EXPECT_EQ(zone.DaylightDate, c.daylight);
    }
}

TEST(ZoneRecord, RefusesWhatIsNoZone)
{
    TimeZoneInformation zone;
    zone.Bias = 17;
    for (const char* name : {"", "Nowhere/Nothing", "../zoneinfo/UTC", "/etc/localtime", "Europe", "tzdata.zi", "a b"})
        EXPECT_FALSE(ZoneRecordOf(name, 2024, &zone)) << name;
    EXPECT_EQ(zone.Bias, 17);
}

TEST(ZoneRecord, ThePeriodFollowsTheClock)
{
    const struct {
        const char* zone;
        FileTime now;
        quint32 period;
    } cases[] = {
        {"Europe/Berlin", Utc(2024, 3, 31, 0, 59), kTimeZoneStandard},
        {"Europe/Berlin", Utc(2024, 3, 31, 1, 0), kTimeZoneDaylight},
        {"Europe/Berlin", Utc(2024, 10, 27, 0, 59), kTimeZoneDaylight},
        {"Europe/Berlin", Utc(2024, 10, 27, 1, 0), kTimeZoneStandard},
        {"Europe/Berlin", Utc(2024, 12, 31, 23, 30), kTimeZoneStandard},
        {"Australia/Sydney", Utc(2024, 1, 1), kTimeZoneDaylight},
        {"Australia/Sydney", Utc(2024, 4, 6, 15, 59), kTimeZoneDaylight},
        {"Australia/Sydney", Utc(2024, 4, 6, 16, 0), kTimeZoneStandard},
        {"Australia/Sydney", Utc(2024, 10, 5, 16, 0), kTimeZoneDaylight},
        {"Asia/Kolkata", Utc(2024, 7, 1), kTimeZoneUnknown},
    };
    CManualClock clock;
    SetClock(&clock);
    for (const auto& c : cases) {
        TimeZoneInformation record;
        ASSERT_TRUE(ZoneRecordOf(c.zone, 2024, &record));
        clock.Set(c.now);
        TimeZoneInformation read;
        EXPECT_EQ(CFixedTimeZone(record).GetTimeZoneInformation(&read), c.period) << c.zone << ' ' << c.now;
        EXPECT_EQ(read, record);
    }
    SetClock(nullptr);
}

TEST_F(CZoneVariable, IsReadAnewAtEachQuestion)
{
    const struct {
        const char* value;
        int bias;
    } cases[] = {
        {"Europe/Berlin", -120},
        {":Europe/Berlin", -120},
        {"/usr/share/zoneinfo/America/New_York", 240},
        {"CET-1CEST,M3.5.0,M10.5.0/3", -120},
        {"EST5EDT", 240},
        {"XXX4", 240},
        {"<+0330>-3:30", -210},
        {"AAA-10BBB,J60/0,J300/0", -660},
        {"", 0},
        {"Nowhere/Nothing", 0},
        {"CET-1CEST,M13.5.0,M10.5.0", 0},
        {"CET-1CEST,M3.5.0", 0},
        {"/nonexistent", 0},
        {"/etc/passwd", 0},
        {"../../etc/passwd", 0},
    };
    for (const auto& c : cases) {
        setenv("TZ", c.value, 1);
        EXPECT_EQ(BiasNow(), c.bias) << c.value;
    }
}

TEST_F(CZoneVariable, ANewYearBringsItsOwnRules)
{
    setenv("TZ", "Europe/Istanbul", 1);
    TimeZoneInformation zone;
    m_clock.Set(Utc(2015, 12, 31, 21, 59)); // 23:59 local
    EXPECT_EQ(GetTimeZoneInformation(&zone), kTimeZoneStandard);
    EXPECT_EQ(zone.StandardDate, Rule(11, 2, 0, 4));
    m_clock.Set(Utc(2015, 12, 31, 22, 0));
    EXPECT_EQ(GetTimeZoneInformation(&zone), kTimeZoneUnknown);
    // The year has one step only: the record is that of its own side.
    EXPECT_EQ(zone.Bias, -120);
    m_clock.Set(Utc(2016, 3, 27, 1, 0));
    GetTimeZoneInformation(&zone);
    EXPECT_EQ(zone.Bias, -180);
    m_clock.Set(Utc(2016, 3, 27, 0, 59)); // and a clock set back is followed
    GetTimeZoneInformation(&zone);
    EXPECT_EQ(zone.Bias, -120);
}

TEST_F(CZoneVariable, FileTimesTakeTheBiasOfNow)
{
    setenv("TZ", "Europe/Berlin", 1);
    FileTime local = 0;
    FileTime utc = 0;
    for (const auto& [now, hours] : {std::pair{Utc(2024, 7, 1), 2}, std::pair{Utc(2024, 12, 1), 1}}) {
        m_clock.Set(now);
        ASSERT_TRUE(FileTimeToLocalFileTime(Utc(2024, 1, 15, 12), &local));
        EXPECT_EQ(local, Utc(2024, 1, 15, 12 + hours));
        ASSERT_TRUE(LocalFileTimeToFileTime(local, &utc));
        EXPECT_EQ(utc, Utc(2024, 1, 15, 12));
    }
    EXPECT_FALSE(LocalFileTimeToFileTime(0, &utc));
    EXPECT_FALSE(FileTimeToLocalFileTime(-1, &local));
}

TEST_F(CZoneVariable, LocalTimeIsOfTheClock)
{
    setenv("TZ", "Asia/Kolkata", 1);
    m_clock.Set(Utc(2024, 2, 28, 23, 45));
    const SystemTime time = GetLocalTime();
    EXPECT_EQ(time.wMonth, 2);
    EXPECT_EQ(time.wDay, 29);
    EXPECT_EQ(time.wHour, 5);
    EXPECT_EQ(time.wMinute, 15);
    EXPECT_EQ(time.wDayOfWeek, 4);
    const quint32 before = GetTickCount();
    m_clock.Advance(90000);
    EXPECT_EQ(GetTickCount() - before, 90000u);
    EXPECT_EQ(GetLocalTime().wMinute, 16);
}

TEST(ZoneFile, SurvivesEveryCutAndFlip)
{
    QFile file(QStringLiteral("/usr/share/zoneinfo/Europe/Berlin"));
    if (!file.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "no zone files here";
    const QByteArray whole = file.readAll();
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("zone"));
    int read = 0;
    const auto tryBytes = [&](const QByteArray& bytes) {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        out.close();
        const auto rules = CZoneRules::FromFile(QFile::encodeName(path));
        if (!rules)
            return;
        ++read;
        for (const int year : {1900, 2024, 2100})
            (void)rules->TransitionsOf(year).size();
        (void)rules->OffsetAt(4000000000);
    };
    tryBytes(whole);
    EXPECT_EQ(read, 1);
    for (qsizetype i = 0; i < whole.size(); i += 3) {
        tryBytes(whole.left(i));
        QByteArray flipped = whole;
        flipped[i] = char(~flipped[i]);
        tryBytes(flipped);
    }
    EXPECT_FALSE(CZoneRules::FromFile("/nonexistent").has_value());
}
