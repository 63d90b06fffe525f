// Which item of the volume an event of a file is, and what a second import does.
#include "interchange/import_fixture.h"

namespace
{
std::string Event(const std::string& uid, const std::string& lines, const std::string& subject = "x")
{
    return "BEGIN:VEVENT\nUID:" + uid + "\nSUMMARY:" + subject + "\n" + lines + "\nEND:VEVENT\n";
}
const std::string kDaily =
    "DTSTART;TZID=Europe/Berlin:20260310T080000\nDURATION:PT1H\nRRULE:FREQ=DAILY;COUNT=5";
const std::string kSeries = "|x|daily 1 from 2026-03-10 count 5 to 2026-03-14 at 08:00-09:00 bias -60";
const std::string kMove = "RECURRENCE-ID;TZID=Europe/Berlin:20260312T080000\nDTSTART;TZID=Europe/"
                          "Berlin:20260312T100000\nDURATION:PT2H";
const std::string kMoved = "; 2026-03-12 is 2026-03-12 10:00..2026-03-12 12:00 'y'\n";
} // namespace

TEST_F(ImportTest, SecondImportChangesNothing)
{
    const std::string files[] = {
        Event("a", "DTSTART:20260310T080000\nDTSTAMP:20260101T000000Z"),
        Event("b", kDaily) + Event("b", kMove, "y"),
        Event("c", kMove, "y"),
        Event("d", "DTSTART:20260310") + Event("d", "DTSTART:20260311") +
            Event("d", "DTSTART:20260312\nSEQUENCE:2"),
        "BEGIN:VEVENT\nSUMMARY:no identity\nDTSTART:20260310\nEND:VEVENT\nBEGIN:VEVENT\nSUMMARY:no identity\n"
        "DTSTART:20260310\nEND:VEVENT",
        Event("e", "DTSTART:20260101T080000\nRRULE:FREQ=MONTHLY;BYDAY=TH;BYMONTHDAY=1;COUNT=2"),
        Event("f", kDaily) + Event("f", "RECURRENCE-ID;TZID=Europe/"
                                        "Berlin:20260313T080000\nDTSTART;TZID=Europe/Berlin:20260313T080000\n"
                                        "STATUS:CANCELLED"),
        Event("g", kDaily) + Event("g",
                                   "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260313T080000\n"
                                   "DTSTART;TZID=Europe/Berlin:20260313T090000\nDURATION:PT1H",
                                   "y"),
        Event("h", kDaily) + Event("h",
                                   "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260310T080000\n"
                                   "DTSTART;TZID=Europe/Berlin:20260311T090000\nDURATION:PT1H",
                                   "y"),
    };
    for (const std::string& file : files) {
        const CImported first = Import(file);
        EXPECT_GT(first.Created, 0) << file;
        const qint64 records = RecordCount(), change = m_volume->LastChange();
        const CImported second = Import(file);
        EXPECT_EQ(second.Created + second.Updated, 0) << file;
        EXPECT_EQ(second.Unchanged, first.Created + first.Updated + first.Unchanged) << file;
        EXPECT_EQ(RecordCount(), records) << file;
        EXPECT_EQ(m_volume->LastChange(), change) << file;
    }
}

TEST_F(ImportTest, TimeStampAloneIsNoChange)
{
    Import(Event("a", "DTSTART:20260310T080000\nDTSTAMP:20260101T000000Z"));
    const CImported again = Import(Event("a", "DTSTART:20260310T080000\nDTSTAMP:20260202T000000Z"));
    EXPECT_EQ(again.Counts(), "0 created 0 updated 1 unchanged 0 left out");
}

TEST_F(ImportTest, ChangedEventUpdatesItsItem)
{
    Import(Event("a", "DTSTART:20260310T080000\nLOCATION:here\nDESCRIPTION:note\nCATEGORIES:Work"));
    const CEOID before = Open("a")->RecordOid();
    const CImported again = Import(Event("a", "DTSTART:20260311T080000"));
    EXPECT_EQ(again.Counts(), "0 created 1 updated 0 unchanged 0 left out");
    EXPECT_EQ(Items("a"), "|x|2026-03-11 08:00..2026-03-11 08:00\n");
    const auto item = Open("a");
    EXPECT_EQ(item->RecordOid(), before);
    EXPECT_EQ(item->get_Location() + item->get_Body() + item->get_Categories(), QString());

    Import(Event("a", kDaily)); // becomes a series
    EXPECT_EQ(Items("a"), kSeries + "\n");
    Import(Event("a", "DTSTART:20260311T080000")); // and one item again
    EXPECT_EQ(Items("a"), "|x|2026-03-11 08:00..2026-03-11 08:00\n");
}

TEST_F(ImportTest, ManyRecordsOfOneEventAreReplacedTogether)
{
    const std::string several = "DTSTART:20260310T080000\nRRULE:FREQ=MONTHLY;COUNT=4;BYMONTHDAY=";
    Import(Event("a", several + "10,20,25"));
    EXPECT_EQ(m_app->FindByUid(QStringLiteral("a")).size(), 3u);
    Import(Event("a", several + "10,21"));
    EXPECT_EQ(Items("a"), "|x|monthly 1 day 10 from 2026-03-10 to 2026-04-10 at 08:00-08:00 bias -60\n"
                          "P2|x|monthly 1 day 21 from 2026-03-21 to 2026-04-21 at 08:00-08:00 bias -60\n");
}

TEST_F(ImportTest, HigherSequenceWins)
{
    const std::string old = Event("a", "DTSTART:20260310\nSEQUENCE:1", "old");
    const std::string late = Event("a", "DTSTART:20260311\nSEQUENCE:2", "new");
    Import(old + late);
    EXPECT_EQ(Items("a"), "|new|2026-03-11..2026-03-12 all-day\n");
    EXPECT_EQ(Import(old).Counts(), "0 created 0 updated 1 unchanged 0 left out");
    EXPECT_EQ(Items("a"), "|new|2026-03-11..2026-03-12 all-day\n");

    Import(Event("b", "DTSTART:20260311\nSEQUENCE:2", "new") +
           Event("b", "DTSTART:20260310\nSEQUENCE:1", "old"));
    EXPECT_EQ(Items("b"), "|new|2026-03-11..2026-03-12 all-day\n");
}

TEST_F(ImportTest, EqualSequenceKeepsAll)
{
    Import(Event("a", "DTSTART:20260310", "one") + Event("a", "DTSTART:20260311", "two"));
    EXPECT_EQ(Items("a"), "|one|2026-03-10..2026-03-11 all-day\n|two|2026-03-11..2026-03-12 all-day\n");
}

TEST_F(ImportTest, UidOfThousandsOfItemsNamesNone)
{
    std::string file;
    for (int n = 0; n < 3000; ++n)
        file += Event("same", "DTSTART:20260310", "item " + std::to_string(n));
    EXPECT_EQ(Import(file).Counts(), "3000 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(Import(file).Counts(), "0 created 0 updated 3000 unchanged 0 left out");
    EXPECT_EQ(RecordCount(), 3000);
}

// ---- changed occurrences

TEST_F(ImportTest, ChangedOccurrenceFindsItsSeriesWhereverItStands)
{
    const std::string filler = Event("other", "DTSTART:20260310");
    const struct {
        const char* Uid;
        std::string File;
    } kCases[] = {{"after", Event("after", kDaily) + Event("after", kMove, "y")},
                  {"far", Event("far", kDaily) + filler + filler + Event("far", kMove, "y")},
                  {"before", Event("before", kMove, "y") + filler + Event("before", kDaily)}};
    for (const auto& c : kCases) {
        const CImported told = Import(c.File);
        EXPECT_EQ(told.LeftOut, 0) << c.Uid;
        EXPECT_EQ(Items(c.Uid), kSeries + kMoved) << c.Uid;
    }
    // In files of their own, in either order.
    Import(Event("split", kDaily));
    Import(Event("split", kMove, "y"));
    EXPECT_EQ(Items("split"), kSeries + kMoved);
    Import(Event("late", kMove, "y"));
    EXPECT_EQ(Items("late"), "R20260312T070000Z|y|2026-03-12 10:00..2026-03-12 12:00\n");
    Import(Event("late", kDaily));
    EXPECT_EQ(Items("late"),
              kSeries + "; 2026-03-12 gone\nR20260312T070000Z|y|2026-03-12 10:00..2026-03-12 12:00\n");
}

TEST_F(ImportTest, SecondChangeFindsTheSeriesOfUtc)
{
    const std::string series = "DTSTART:20260310T080000Z\nRRULE:FREQ=DAILY;COUNT=5";
    Import(Event("a", series) + Event("a", "RECURRENCE-ID:20260311T080000Z\nDTSTART:20260311T090000Z"));
    Import(Event("a", series) + Event("a", "RECURRENCE-ID:20260312T080000Z\nDTSTART:20260312T100000Z"));
    EXPECT_EQ(Items("a"),
              "|x|daily 1 from 2026-03-10 count 5 to 2026-03-14 at 08:00-08:00 bias 0; 2026-03-11 is "
              "2026-03-11 09:00..2026-03-11 09:00; 2026-03-12 is 2026-03-12 10:00..2026-03-12 10:00\n");
}

TEST_F(ImportTest, OccurrenceThatStandsAloneStaysSo)
{
    Import(Event("a", kMove, "y"));
    Import(Event("a", kDaily));
    EXPECT_EQ(Import(Event("a", kMove, "y")).Counts(), "0 created 0 updated 1 unchanged 0 left out");
    Import(Event("a", kDaily) + Event("a", kMove, "z"));
    EXPECT_EQ(Items("a"),
              kSeries + "; 2026-03-12 gone\nR20260312T070000Z|z|2026-03-12 10:00..2026-03-12 12:00\n");
}

TEST_F(ImportTest, ChangedSeriesKeepsTheChangesOfItsFile)
{
    Import(Event("a", kMove, "y") + Event("a", kDaily));
    const CImported again = Import(Event("a", kMove, "y") + Event("a", kDaily + "\nLOCATION:there"));
    EXPECT_EQ(again.Created, 1); // the occurrence, put into the new series
    EXPECT_EQ(again.Updated, 1);
    EXPECT_EQ(Items("a"), kSeries + "; 2026-03-12 is 2026-03-12 10:00..2026-03-12 12:00 'y' @''\n");
}

TEST_F(ImportTest, OccurrenceIsFoundByItsMoment)
{
    const std::string start = "\nDTSTART;TZID=Europe/Berlin:20260312T100000\nDURATION:PT2H";
    const struct {
        const char* Id;
        bool Found;
    } kCases[] = {{"RECURRENCE-ID:20260312T070000Z", true},
                  {"RECURRENCE-ID;VALUE=DATE:20260312", true},
                  {"RECURRENCE-ID:20260312T080000", true},
                  {"RECURRENCE-ID;TZID=America/New_York:20260312T030000", true},
                  {"RECURRENCE-ID:20260312T080000Z", false},
                  {"RECURRENCE-ID;VALUE=DATE:20260320", false}};
    int n = 0;
    for (const auto& c : kCases) {
        const std::string uid = "case" + std::to_string(n++);
        Import(Event(uid, kDaily) + Event(uid, c.Id + start, "y"));
        EXPECT_EQ(Items(uid).starts_with(kSeries + kMoved), c.Found) << c.Id << "\n" << Items(uid);
        EXPECT_EQ(m_app->FindByUid(QString::fromStdString(uid)).size(), c.Found ? 1u : 2u) << c.Id;
    }
}

TEST_F(ImportTest, CancelledAndLaterOccurrences)
{
    Import(Event("a", kDaily) +
           Event("a", "RECURRENCE-ID:20260312T070000Z\nDTSTART:20260312T070000Z\nSTATUS:CANCELLED"));
    EXPECT_EQ(Items("a"), kSeries + "; 2026-03-12 gone\n");

    Import(Event("b", kDaily) + Event("b", kMove, "y") +
           Event("b",
                 "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260313T080000\n"
                 "DTSTART;TZID=Europe/Berlin:20260313T110000\nDURATION:PT30M",
                 "later"));
    EXPECT_EQ(Items("b"), "|x|daily 1 from 2026-03-10 to 2026-03-12 at 08:00-09:00 bias -60" + kMoved +
                              "T20260313T070000Z|later|daily 1 from 2026-03-13 count 2 to 2026-03-14 at "
                              "11:00-11:30 bias -60\n");

    // A changed one among the later ones is still named by the first series; then the later ones change
    // again.
    const std::string all =
        "RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Berlin:20260312T080000\nDURATION:PT30M\n"
        "DTSTART;TZID=Europe/Berlin:";
    Import(Event("c", kDaily) + Event("c", all + "20260312T090000", "later") +
           Event("c", "RECURRENCE-ID:20260313T070000Z\nDTSTART:20260313T130000Z", "one"));
    const std::string first = "|x|daily 1 from 2026-03-10 to 2026-03-11 at 08:00-09:00 bias -60\n";
    EXPECT_EQ(Items("c"),
              first + "T20260312T070000Z|later|daily 1 from 2026-03-12 count 3 to 2026-03-14 at 09:00-09:30 "
                      "bias -60; 2026-03-13 is 2026-03-13 14:00..2026-03-13 14:00 'one'\n");
    EXPECT_EQ(Import(Event("c", kDaily) + Event("c", all + "20260312T093000", "later")).Counts(),
              "0 created 1 updated 1 unchanged 0 left out");
    EXPECT_EQ(m_app->FindByUid(QStringLiteral("c")).size(), 2u);
}

TEST_F(ImportTest, CancelledItem)
{
    Import(Event("a", "DTSTART:20260310\nSTATUS:CANCELLED"));
    EXPECT_EQ(Items("a"), "|Cancelled: x|2026-03-10..2026-03-11 all-day\n");
    EXPECT_EQ(Open("a")->get_BusyStatus(), 0);

    // The only occurrence of an item without a rule is the item.
    const std::string lone =
        Event("e", "DTSTART:20260313T070000Z") +
        Event("e", "RECURRENCE-ID:20260313T070000Z\nDTSTART:20260313T070000Z\nSTATUS:CANCELLED", "");
    Import(lone);
    EXPECT_EQ(Items("e"), "|Cancelled: x|2026-03-13 08:00..2026-03-13 08:00\n");
    EXPECT_EQ(Import(lone).Counts(), "0 created 0 updated 2 unchanged 0 left out");

    // A cancellation by itself: of an item that is there, and of one that never was.
    Import(Event("b", "DTSTART:20260310"));
    const CImported told = Import("METHOD:CANCEL\n" + Event("b", "DTSTART:20260310\nSEQUENCE:1") +
                                  Event("c", "DTSTART:20260310"));
    EXPECT_EQ(told.Counts(), "0 created 1 updated 0 unchanged 1 left out");
    EXPECT_EQ(Items("b"), "|Cancelled: x|2026-03-10..2026-03-11 all-day\n");
    EXPECT_EQ(Items("c"), "");

    Import(Event("d", kDaily));
    Import("METHOD:CANCEL\n" + Event("d", kMove));
    EXPECT_EQ(Items("d"), kSeries + "; 2026-03-12 gone\n");
    EXPECT_EQ(Import("METHOD:REPLY\n" + Event("d", kDaily, "answer")).Counts(),
              "0 created 0 updated 0 unchanged 1 left out");
}

TEST_F(ImportTest, OwnersChangesOutliveTheSameFile)
{
    const std::string file = Event("a", "DTSTART:20260310T080000");
    Import(file);
    const auto item = Open("a");
    item->put_Subject(QStringLiteral("mine"));
    ASSERT_TRUE(item->Save().IsOk());
    Import(file);
    EXPECT_EQ(Items("a"), "|mine|2026-03-10 08:00..2026-03-10 08:00\n");
}

TEST_F(ImportTest, InterruptedImportGoesOnLater)
{
    std::string file;
    for (int n = 0; n < 5000; ++n)
        file += Event("many" + std::to_string(n), "DTSTART:20260310");
    const CImported first = ImportBytes(Calendar(file), [](qint64 bytes) { return bytes < 200000; });
    EXPECT_EQ(first.Result, ImportResult::Interrupted);
    EXPECT_GT(first.Created, 0);
    EXPECT_LT(first.Created, 5000);
    EXPECT_EQ(RecordCount(), first.Created);
    const CImported second = Import(file);
    EXPECT_EQ(second.Result, ImportResult::Done);
    EXPECT_EQ(second.Unchanged, first.Created);
    EXPECT_EQ(RecordCount(), 5000);
}
