// Rules of files: what they mean day by day, and that the patterns made of them mean the same.
#include "interchange/rule_patterns.h"
#include "records/occurrences.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <gtest/gtest.h>
#include <libical/ical.h>
#include <random>

namespace
{
CRecurRule Parsed(const std::string& text)
{
    CRecurRule rule;
    QString reason, note;
    EXPECT_TRUE(ParseRule(text, &rule, &reason, &note)) << text << ": " << reason.toStdString();
    return rule;
}

qint64 Moment(const std::string& text)
{
    CFileMoment moment;
    EXPECT_TRUE(ParseMoment(text, &moment)) << text;
    return moment.Wall;
}

std::string DayText(int dayNumber)
{
    int year = 0, month = 0, day = 0;
    CivilOfDayNumber(dayNumber, &year, &month, &day);
    return QString::asprintf("%04d-%02d-%02d", year, month, day).toStdString();
}

// COUNT and UNTIL applied, at most that many.
std::vector<int> WalkDays(const CRecurRule& rule, qint64 start, int lastDay, size_t most = 100000)
{
    std::vector<int> days;
    qint64 budget = 100'000'000, wall = 0;
    CRuleWalk walk(rule, start, &budget);
    while (days.size() < most && (rule.Count == 0 || days.size() < size_t(rule.Count)) &&
           walk.Next(lastDay, &wall)) {
        if (rule.Until &&
            (rule.Until->IsDate ? DayOfWall(wall) > DayOfWall(rule.Until->Wall) : wall > rule.Until->Wall))
            break;
        days.push_back(DayOfWall(wall));
    }
    return days;
}

std::string Texts(const std::vector<int>& days)
{
    std::string text;
    for (const int day : days)
        text += DayText(day) + " ";
    return text;
}
} // namespace

TEST(Rule, MeansTheseDays)
{
    const struct {
        const char* Rule;
        const char* Start;
        const char* Days; // the first ones
    } kCases[] = {
        {"FREQ=YEARLY;BYDAY=20MO", "19970519T090000", "1997-05-19 1998-05-18 1999-05-17 "},
        {"FREQ=MONTHLY;INTERVAL=18;BYMONTHDAY=10,11,12", "19970910T090000",
         "1997-09-10 1997-09-11 1997-09-12 1999-03-10 "},
        {"FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8", "19961105T090000",
         "1996-11-05 2000-11-07 2004-11-02 "},
        {"FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13", "19970902T090000", "1998-02-13 1998-03-13 1998-11-13 "},
        {"FREQ=MONTHLY;BYDAY=TU,WE,TH;BYSETPOS=3", "19970904T090000", "1997-09-04 1997-10-07 1997-11-06 "},
        {"FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO", "19970805T090000",
         "1997-08-05 1997-08-10 1997-08-19 1997-08-24 "},
        {"FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU", "19970805T090000",
         "1997-08-05 1997-08-17 1997-08-19 1997-08-31 "},
        {"FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO", "19970512T090000", "1997-05-12 1998-05-11 1999-05-17 "},
        {"FREQ=YEARLY;BYYEARDAY=1,100,-1", "20240101T090000", "2024-01-01 2024-04-09 2024-12-31 2025-01-01 "},
        {"FREQ=MONTHLY;BYMONTHDAY=-3", "19970928T090000", "1997-09-28 1997-10-29 1997-11-28 "},
        {"FREQ=MONTHLY;BYDAY=5MO", "20260301T090000", "2026-03-30 2026-06-29 2026-08-31 "},
        {"FREQ=MONTHLY;BYMONTHDAY=31", "20260131T090000", "2026-01-31 2026-03-31 2026-05-31 "},
        {"FREQ=YEARLY", "20240229T090000", "2024-02-29 2028-02-29 "},
        {"FREQ=DAILY;BYMONTH=1;UNTIL=20260103T090000Z", "20260101T090000",
         "2026-01-01 2026-01-02 2026-01-03 "},
        {"freq=weekly;byday=mo, we", "20260302T090000", "2026-03-02 2026-03-04 2026-03-09 "},
        {"FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1", "20260101T090000",
         "2026-01-30 2026-02-27 2026-03-31 "},
    };
    for (const auto& c : kCases) {
        const std::string wanted = c.Days;
        const auto days =
            WalkDays(Parsed(c.Rule), Moment(c.Start), DayNumberOf(2040, 1, 1), wanted.size() / 11);
        EXPECT_EQ(Texts(days), wanted) << c.Rule;
    }
}

TEST(Rule, RefusesWhatMakesNoSense)
{
    for (const char* text :
         {"", "FREQ=SOMETIMES", "FREQ=WEEKLY;BYDAY=XX,MO", "INTERVAL=2", "FREQ=DAILY;UNTIL=tomorrow",
          "FREQ=MONTHLY;BYMONTHDAY=77", "FREQ=WEEKLY;COUNT=-3", "FREQ=DAILY;INTERVAL=0",
          "FREQ=WEEKLY;INTERVAL=-1", "FREQ=HOURLY", "FREQ=SECONDLY;COUNT=2", "FREQ=DAILY;COUNT=99999999999",
          "FREQ=YEARLY;BYMONTH=13", "FREQ=DAILY;BYHOUR=1,2,3;BYMINUTE=1,2,3,4,5,6,7,8,9"}) {
        CRecurRule rule;
        QString reason, note;
        EXPECT_FALSE(ParseRule(text, &rule, &reason, &note)) << text;
        EXPECT_FALSE(reason.isEmpty()) << text;
    }
    CRecurRule rule;
    QString reason, note;
    EXPECT_TRUE(ParseRule("RRULE:Anything;FREQ=WEEKLY;BYDAY=FR", &rule, &reason, &note));
    EXPECT_FALSE(note.isEmpty());
}

TEST(Rule, WalkIsBoundedByItsBudget)
{
    qint64 budget = 10000, wall = 0;
    CRuleWalk walk(Parsed("FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30"), Moment("16010101T000000"), &budget);
    EXPECT_FALSE(walk.Next(DayNumberOf(4500, 1, 1), &wall));
    EXPECT_TRUE(walk.IsExhausted());
}

// Every answer of the shared cases, when they are there.
TEST(Rule, AgreesWithSharedCases)
{
    const QString folder = qEnvironmentVariable("TESSERA_DATA", QStringLiteral("../shared/data"));
    QFile file(folder + QStringLiteral("/recurrence_cases.json"));
    if (!file.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "no shared data";
    int checked = 0;
    const QJsonArray cases =
        QJsonDocument::fromJson(file.readAll()).object()[QLatin1String("cases")].toArray();
    for (const QJsonValue& value : cases) {
        const QJsonObject c = value.toObject();
        const auto day = [](const QJsonValue& text) {
            return Moment(text.toString().remove(QLatin1Char('-')).toStdString());
        };
        const CRecurRule rule = Parsed(c[QLatin1String("rrule")].toString().toStdString());
        const QJsonArray window = c[QLatin1String("window")].toArray();
        const int from = DayOfWall(day(window[0])), to = DayOfWall(day(window[1]));
        std::set<int> excluded;
        for (const QJsonValue& out : c[QLatin1String("excluded")].toArray())
            excluded.insert(DayOfWall(day(out)));
        std::vector<int> got, wanted;
        for (const int d : WalkDays(rule, day(c[QLatin1String("start")]), to - 1))
            if (d >= from && !excluded.contains(d))
                got.push_back(d);
        const bool two = c.contains(QLatin1String("expected_rrule"));
        for (const QJsonValue& d : c[QLatin1String(two ? "expected_rrule" : "expected")].toArray())
            wanted.push_back(DayOfWall(day(d)));
        EXPECT_EQ(Texts(got), Texts(wanted)) << c[QLatin1String("id")].toString().toStdString();
        ++checked;
    }
    EXPECT_GT(checked, 100);
}

// Rules made at random, against the library's own iterator.
TEST(Rule, AgreesWithTheLibrary)
{
    std::mt19937 random(20260301);
    const auto pick = [&](int n) { return int(random() % unsigned(n)); };
    const char* const names[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    for (int n = 0; n < 400; ++n) {
        const int kind = pick(4);
        std::string text = std::string("FREQ=") + (kind == 0   ? "DAILY"
                                                   : kind == 1 ? "WEEKLY"
                                                   : kind == 2 ? "MONTHLY"
                                                               : "YEARLY");
        text += ";INTERVAL=" + std::to_string(1 + pick(3));
        const int shape = pick(5);
        const std::string weekdays = std::string(names[pick(4)]) + "," + names[4 + pick(3)];
        if (kind == 1 && shape < 3)
            text += ";BYDAY=" + weekdays + ";WKST=" + names[pick(2)]; // the library is wrong for others
        if (kind >= 2 && shape == 0)
            text += std::string(kind == 3 ? ";BYMONTH=" + std::to_string(1 + pick(12)) : "") +
                    ";BYMONTHDAY=" + std::to_string(1 + pick(28)) + ",-" + std::to_string(1 + pick(3));
        if (kind >= 2 && shape == 1)
            text += std::string(kind == 3 ? ";BYMONTH=" + std::to_string(1 + pick(12)) : "") +
                    ";BYDAY=" + std::to_string(1 + pick(5)) + names[pick(7)] + ",-1" + names[pick(7)];
        if (kind == 2 && shape == 2)
            text += ";BYDAY=" + weekdays + ";BYSETPOS=" + std::to_string(1 + pick(3));
        if (kind == 3 && shape >= 3)
            text += ";BYMONTH=" + std::to_string(1 + pick(6)) + "," + std::to_string(7 + pick(6));
        const int year = 1990 + pick(40), month = 1 + pick(12), day = 1 + pick(28);
        const auto own =
            WalkDays(Parsed(text), WallOf(year, month, day) + 36000, DayNumberOf(2100, 1, 1), 40);

        const icaltimetype start = icaltime_from_string(
            QString::asprintf("%04d%02d%02dT100000", year, month, day).toLatin1().constData());
        icalrecur_iterator* iterator =
            icalrecur_iterator_new(icalrecurrencetype_from_string(text.c_str()), start);
        ASSERT_TRUE(iterator) << text;
        std::vector<int> theirs;
        while (theirs.size() < own.size()) {
            const icaltimetype next = icalrecur_iterator_next(iterator);
            if (icaltime_is_null_time(next))
                break;
            theirs.push_back(DayNumberOf(next.year, next.month, next.day));
        }
        icalrecur_iterator_free(iterator);
        EXPECT_EQ(Texts(own), Texts(theirs)) << text << " from " << year << "-" << month << "-" << day;
    }
}

TEST(RulePatterns, MeanTheSameAsTheRule)
{
    const struct {
        const char* Rule;
        size_t Parts; // 0: no pattern holds it
        bool Shorter;
    } kCases[] = {
        {"FREQ=DAILY", 1, false},
        {"FREQ=DAILY;INTERVAL=3", 1, false},
        {"FREQ=DAILY;BYDAY=MO,TU,WE,TH,FR", 1, false},
        {"FREQ=WEEKLY", 1, false},
        {"FREQ=WEEKLY;BYDAY=MO,WE,SU", 1, false},
        {"FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE", 1, false},
        {"FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,SU", 2, false},
        {"FREQ=WEEKLY;INTERVAL=3;WKST=SU;BYDAY=MO,SU", 1, false},
        {"FREQ=WEEKLY;INTERVAL=3;WKST=TH;BYDAY=MO,WE,FR,SA", 2, false},
        {"FREQ=WEEKLY;BYMONTH=3", 0, false},
        {"FREQ=MONTHLY", 1, false},
        {"FREQ=MONTHLY;BYMONTHDAY=1,15", 2, false},
        {"FREQ=MONTHLY;BYMONTHDAY=-1", 1, false},
        {"FREQ=MONTHLY;BYMONTHDAY=1,-1", 2, false},
        {"FREQ=MONTHLY;BYMONTHDAY=31", 1, true},
        {"FREQ=MONTHLY;BYMONTHDAY=30,31", 0, false},
        {"FREQ=MONTHLY;BYMONTHDAY=-2", 0, false},
        {"FREQ=MONTHLY;BYDAY=2MO", 1, false},
        {"FREQ=MONTHLY;BYDAY=1MO,3MO,-1FR", 3, false},
        {"FREQ=MONTHLY;BYDAY=4MO,-1MO", 0, false},
        {"FREQ=MONTHLY;BYDAY=5MO", 0, false},
        {"FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=1", 1, false},
        {"FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1", 1, false},
        {"FREQ=MONTHLY;BYDAY=MO,TU;BYSETPOS=5", 0, false},
        {"FREQ=MONTHLY;BYDAY=MO", 1, false},
        {"FREQ=MONTHLY;INTERVAL=2;BYDAY=MO", 0, false},
        {"FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13", 0, false},
        {"FREQ=YEARLY", 1, false},
        {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=29", 1, true},
        {"FREQ=YEARLY;BYMONTH=2,5;BYMONTHDAY=3,4", 4, false},
        {"FREQ=YEARLY;BYMONTH=11;BYDAY=4TH", 1, false},
        {"FREQ=YEARLY;BYMONTH=3,10;BYDAY=-1SU", 2, false},
        {"FREQ=YEARLY;BYDAY=20MO", 0, false},
        {"FREQ=YEARLY;BYYEARDAY=100", 0, false},
        {"FREQ=DAILY;BYHOUR=9,12", 0, false},
    };
    for (const auto& c : kCases) {
        for (const char* start :
             {"20240110T100000", "20230131T100000", "20250309T100000", "20240525T100000"}) {
            const CRecurRule rule = Parsed(c.Rule);
            const bool monthEnd =
                std::string(c.Rule) == "FREQ=MONTHLY" && std::string(start).substr(6, 2) == "31";
            const CRulePatterns patterns = PatternsOf(rule, Moment(start));
            EXPECT_EQ(patterns.Parts.size(), c.Parts) << c.Rule << " from " << start;
            EXPECT_EQ(patterns.ShowsOnShorterMonths, c.Shorter || monthEnd) << c.Rule << " from " << start;
            if (patterns.Parts.empty() || patterns.ShowsOnShorterMonths)
                continue;
            const int last = DayNumberOf(2034, 12, 31);
            std::vector<int> shown;
            for (CRecurrencePattern part : patterns.Parts) {
                part.PatternEnd = last;
                std::vector<COccurrence> occurrences;
                ExpandPattern(part, DayOfWall(Moment(start)), last, occurrences);
                for (const COccurrence& occurrence : occurrences)
                    shown.push_back(DayNumber(occurrence.Start));
            }
            std::sort(shown.begin(), shown.end());
            EXPECT_EQ(Texts(shown), Texts(WalkDays(rule, Moment(start), last)))
                << c.Rule << " from " << start;
        }
    }
}
