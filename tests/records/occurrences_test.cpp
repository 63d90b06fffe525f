#include "pattern_text.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <random>

namespace
{
const QStringList kTypes = {"daily", "weekly", "monthly", "ordinal", "-", "yearly", "yearly-ordinal"};

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString SharedData(const QString& name)
{
    const QString folder = qEnvironmentVariable("TESSERA_DATA", "../shared/data");
    return folder + '/' + name;
}

std::string Text(const QStringList& days)
{
    return days.join(' ').toStdString();
}

CRecurrencePattern PatternOfCase(const QJsonObject& c)
{
    const QString type = c["type"].toString();
    const bool yearly = type.startsWith("yearly");
    QString text = type == "monthly_day" || type == "yearly_date" ? "monthly"
                   : type.endsWith("nth")                         ? "ordinal"
                                                                  : type;
    text +=
        QString(" every %1 from %2").arg(c["every"].toInt() * (yearly ? 12 : 1)).arg(c["start"].toString());
    if (c.contains("day"))
        text += QString(" day %1").arg(c["day"].toInt());
    if (c.contains("nth"))
        text += QString(" nth %1").arg(c["nth"].isString() ? 5 : c["nth"].toInt());
    QStringList names;
    for (const QJsonValue day : c["weekdays"].toArray())
        names += day.toString();
    if (!names.isEmpty())
        text += " days " + names.join(',');
    if (c.contains("until"))
        text += " until " + c["until"].toString();
    if (c.contains("count"))
        text += QString(" count %1").arg(c["count"].toInt());
    names.clear();
    for (const QJsonValue day : c["excluded"].toArray())
        names += day.toString();
    names.sort();
    if (!names.isEmpty())
        text += " without " + names.join(',');
    return PatternOf(text);
}

CRecurrencePattern RandomPattern(std::mt19937& random)
{
    const auto pick = [&random](int low, int high) { return low + int(random() % unsigned(high - low + 1)); };
    constexpr int kKinds[] = {0, 1, 2, 3, 5, 6};
    CRecurrencePattern p;
    p.Type = kKinds[pick(0, 5)];
    p.Interval = p.Type >= 5 ? 12 * pick(1, 3) : pick(1, 5);
    p.PatternStart = DayNumberOf(2020, 1, 1) + pick(0, 1000);
    p.DayMask = pick(1, 127);
    p.DayOfMonth = pick(1, 31);
    p.Instance = pick(1, 5);
    p.StartMinute = pick(0, 1439);
    p.EndMinute = p.StartMinute + (pick(0, 2) ? pick(0, 600) : pick(0, 40 * 1440));
    p.EndKind = PatternEndKind::Date;
    p.PatternEnd = p.PatternStart + pick(0, 2000);
    for (int i = pick(0, 5); i > 0; --i) {
        CRecurrenceException e;
        e.OriginalDay = DayNumber(p.PatternStart) + pick(0, 200);
        p.Exceptions.push_back(e);
    }
    std::sort(p.Exceptions.begin(), p.Exceptions.end(),
              [](auto& a, auto& b) { return a.OriginalDay < b.OriginalDay; });
    return p;
}
} // namespace

TEST(Expand, CasesInText)
{
    const QByteArray text = ReadFile("tests/records/data/recurrence.txt");
    ASSERT_FALSE(text.isEmpty()) << "run from the source folder";
    QString pattern;
    int from = 0, to = 0, cases = 0;
    for (const QString& line : QString::fromUtf8(text).split('\n')) {
        const QStringList words = line.split(' ', Qt::SkipEmptyParts);
        if (line.startsWith("pattern "))
            pattern = line.mid(8);
        if (line.startsWith("range "))
            from = DayOf(words[1]), to = DayOf(words[2]);
        if (!line.startsWith("days"))
            continue;
        ++cases;
        EXPECT_EQ(Expand(PatternOf(pattern), from, to), words.mid(1))
            << Text(Expand(PatternOf(pattern), from, to)) << pattern.toStdString();
    }
    EXPECT_GE(cases, 20);
}

// The shared cases, also from every later start.
TEST(Expand, SharedCases)
{
    const QJsonArray cases =
        QJsonDocument::fromJson(ReadFile(SharedData("recurrence_cases.json")))["cases"].toArray();
    if (cases.isEmpty())
        GTEST_SKIP() << "no shared data";
    for (const QJsonValue value : cases) {
        const QJsonObject c = value.toObject();
        const std::string id = c["id"].toString().toStdString();
        const CRecurrencePattern pattern = PatternOfCase(c);
        const int from = DayOf(c["window"][0].toString()), to = DayOf(c["window"][1].toString()) - 1;
        QStringList expected;
        for (const QJsonValue day : (c.contains("expected") ? c["expected"] : c["expected_record"]).toArray())
            expected += day.toString();
        ASSERT_EQ(Expand(pattern, from, to), expected) << id;
        ASSERT_EQ(ExpandByDays(pattern, from, to), expected) << id;
        QStringList rest = expected;
        for (int day = from; day <= to; ++day) {
            ASSERT_EQ(Expand(pattern, day, to), rest) << id << ' ' << IsoOf(day).toStdString();
            if (!rest.isEmpty() && rest.first() == IsoOf(day))
                rest.removeFirst();
        }
    }
}

TEST(Expand, RandomPatternsAgainstDays)
{
    std::mt19937 random(20261122);
    for (int round = 0; round < 1500; ++round) {
        const CRecurrencePattern p = RandomPattern(random);
        const int start = DayNumber(p.PatternStart);
        const int from = start - 30 + int(random() % 2000), to = from + int(random() % 60);
        ASSERT_EQ(Expand(p, from, to), ExpandByDays(p, from, to))
            << kTypes[p.Type].toStdString() << " every " << p.Interval << " mask " << p.DayMask << " round "
            << round;
        int count = 0, last = 0;
        for (int day = start; day <= from; ++day)
            if (RuleHits(p, day)) {
                ++count;
                last = day;
                ASSERT_EQ(DayOfOccurrence(p, count), day) << round;
            }
        EXPECT_EQ(CountOccurrencesUpTo(p, from), count) << round;
        EXPECT_EQ(LastOccurrenceUpTo(p, from), last) << round;
        for (int day = from; day < from + 20; ++day)
            EXPECT_EQ(PatternHitsDay(p, day), RuleHits(p, day) && day <= p.PatternEnd) << round;
    }
}

TEST(Expand, MovedAndChangedOccurrencesShowWhereTheyAreNow)
{
    CRecurrencePattern p =
        PatternOf("weekly every 1 days MO from 2024-01-01 at 10:00 without 2024-01-08,2024-01-15");
    CRecurrenceException& moved = p.Exceptions[0];
    moved.Deleted = false;
    moved.Start = DayOf("2024-01-30") + 0.5;
    moved.End = moved.Start + 0.25;
    EXPECT_EQ(Text(Expand(p, DayOf("2024-01-01"), DayOf("2024-01-31"))),
              "2024-01-01 2024-01-22 2024-01-29 2024-01-30");
    // The range holds the new day and not the original one, and the other way round.
    EXPECT_EQ(Text(Expand(p, DayOf("2024-01-30"), DayOf("2024-01-30"))), "2024-01-30");
    EXPECT_EQ(Text(Expand(p, DayOf("2024-01-08"), DayOf("2024-01-08"))), "");
    std::vector<COccurrence> found;
    ExpandPattern(p, DayOf("2024-01-30"), DayOf("2024-01-30"), found);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].OriginalDay, DayOf("2024-01-08"));
    EXPECT_EQ(found[0].ExceptionIndex, 0);
    // It ends before it starts: shown on its first day.
    p.Exceptions[0].End = p.Exceptions[0].Start - 3;
    EXPECT_EQ(Text(Expand(p, DayOf("2024-01-30"), DayOf("2024-01-30"))), "2024-01-30");
}

TEST(Expand, TimesCrossMidnight)
{
    std::vector<COccurrence> found;
    const CRecurrencePattern p = PatternOf("daily every 7 from 2024-01-01 at 23:30 lasting 60");
    ExpandPattern(p, DayOf("2024-01-09"), DayOf("2024-01-09"), found);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].Start, DateOf({2024, 1, 0, 8, 23, 30, 0, 0}));
    EXPECT_EQ(found[0].End, DateOf({2024, 1, 0, 9, 0, 30, 0, 0}));
}

TEST(Expand, HostileNumbersEndQuickly)
{
    std::mt19937 random(7);
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < 20000; ++round) {
        CRecurrencePattern p;
        p.Type = int(random() % 8) - 1;
        p.Interval = int(random());
        p.PatternStart = double(int(random())) / (round % 2 ? 1 : 700);
        p.PatternEnd = double(int(random()));
        p.DayMask = int(random());
        p.DayOfMonth = int(random());
        p.Instance = int(random());
        p.StartMinute = int(random());
        p.EndMinute = int(random());
        std::vector<COccurrence> found;
        const int day = int(random());
        ExpandPattern(p, day, day < 0x7FFFFF00 ? day + 31 : day, found);
        ExpandPattern(p, 45000, 45031, found);
        for (const COccurrence& o : found)
            ASSERT_LE(o.Start, o.End);
        CountOccurrencesUpTo(p, day);
        LastOccurrenceUpTo(p, 46000);
        DayOfOccurrence(p, day);
    }
    EXPECT_LT(timer.elapsed(), 20000); // none of them walks from its start
}

TEST(Rule, CountsAreArithmetic)
{
    const CRecurrencePattern daily = PatternOf("daily every 1 from 1990-01-01");
    EXPECT_EQ(DayOfOccurrence(daily, 1000000), DayOf("1990-01-01") + 999999);
    EXPECT_EQ(CountOccurrencesUpTo(daily, DayOf("1990-01-01") + 999999), 1000000);
    EXPECT_EQ(DayOfOccurrence(daily, 0x7FFFFFFF), 0); // past the calendar
    EXPECT_EQ(DayOfOccurrence(daily, 0), 0);
    EXPECT_EQ(LastOccurrenceUpTo(daily, DayOf("1989-12-31")), 0);
}

TEST(Rule, StepsBetweenWeekdays)
{
    const struct {
        int day, mask, interval, next, prev;
    } cases[] = {{0, 0, 1, -1, -1},  {3, 0x08, 1, 7, 7}, {3, 0x08, 3, 21, 21}, {5, 0x02, 2, 10, 4},
                 {1, 0x41, 2, 5, 1}, {6, 0x41, 2, 8, 6}, {0, 0x41, 2, 6, 8},   {2, 0x7F, 4, 1, 1}};
    for (const auto& c : cases) {
        EXPECT_EQ(NextWeekday(c.day, c.mask, c.interval), c.next) << c.day << ' ' << c.mask;
        EXPECT_EQ(PrevWeekday(c.day, c.mask, c.interval), c.prev) << c.day << ' ' << c.mask;
    }
    EXPECT_EQ(IsoOf(DayInLaterMonth(DayOf("2024-01-15"), 31, 1)), QString("2024-02-29"));
    EXPECT_EQ(IsoOf(OrdinalDay(DayOf("2024-02-17"), 0x20, 5)), QString("2024-02-23"));
}

TEST(Zones, ShiftGoesThroughUtc)
{
    const auto zone = [](int bias, int daylightMonth, int daylightWeek, int standardMonth, int standardWeek,
                         int hour) {
        TimeZoneInformation z;
        z.Bias = bias;
        if (!daylightMonth)
            return z;
        z.DaylightBias = -60;
        z.DaylightDate = {0, quint16(daylightMonth), 0, quint16(daylightWeek), 2, 0, 0, 0};
        z.StandardDate = {0, quint16(standardMonth), 0, quint16(standardWeek), quint16(hour), 0, 0, 0};
        return z;
    };
    const TimeZoneInformation berlin = zone(-60, 3, 5, 10, 5, 3), newYork = zone(300, 3, 2, 11, 1, 2),
                              tokyo = zone(-540, 0, 0, 0, 0, 0);
    const struct {
        TimeZoneInformation pattern, device;
        int month, day, hour, shift;
    } cases[] = {{newYork, berlin, 1, 10, 10, 360},  {newYork, berlin, 3, 20, 10, 300},
                 {newYork, berlin, 7, 1, 10, 360},   {newYork, berlin, 10, 28, 10, 300},
                 {berlin, tokyo, 1, 1, 8, 480},      {berlin, tokyo, 7, 1, 8, 420},
                 {newYork, berlin, 10, 24, 22, 300}, // in Berlin the clocks have just gone back
                 {berlin, berlin, 3, 29, 2, 0}};
    for (const auto& c : cases) {
        CRecurrencePattern p;
        p.SetZone(c.pattern);
        EXPECT_EQ(ZoneShift(p, c.device, DayNumberOf(2026, c.month, c.day) + c.hour / 24.0), c.shift)
            << c.month << ' ' << c.day;
    }
}
