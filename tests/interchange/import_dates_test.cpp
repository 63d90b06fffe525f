// What becomes of the dates and rules of a file.
#include "interchange/import_fixture.h"

TEST_F(ImportTest, PutsDatesIntoRecords)
{
    const struct {
        const char* Name;
        const char* Lines; // of one event, without its UID and subject
        const char* Items;
    } kCases[] = {
        {"UTC", "DTSTART:20260310T080000Z\nDTEND:20260310T093000Z",
         "|x|2026-03-10 09:00..2026-03-10 10:30\n"},
        {"floating", "DTSTART:20260310T080000\nDURATION:PT45M", "|x|2026-03-10 08:00..2026-03-10 08:45\n"},
        {"zone", "DTSTART;TZID=America/New_York:20260310T080000", "|x|2026-03-10 13:00..2026-03-10 13:00\n"},
        {"zone in odd case", "DTSTART;TZID=america/new_YORK:20260310T080000",
         "|x|2026-03-10 13:00..2026-03-10 13:00\n"},
        {"zone behind a path", "DTSTART;TZID=/softwarestudio.org/Tzfile/Asia/Tokyo:20260310T080000",
         "|x|2026-03-10 00:00..2026-03-10 00:00\n"},
        {"desktop's name", "DTSTART;TZID=Eastern Standard Time:20260310T080000",
         "|x|2026-03-10 13:00..2026-03-10 13:00\n"},
        {"skipped hour", "DTSTART;TZID=Europe/Berlin:20260329T023000",
         "|x|2026-03-29 03:30..2026-03-29 03:30\n"},
        {"doubled hour", "DTSTART;TZID=Europe/London:20261025T013000",
         "|x|2026-10-25 02:30..2026-10-25 02:30\n"},
        {"day", "DTSTART;VALUE=DATE:20260310", "|x|2026-03-10..2026-03-11 all-day\n"},
        {"days", "DTSTART:20260310\nDTEND:20260313", "|x|2026-03-10..2026-03-13 all-day\n"},
        {"day of no length", "DTSTART:20260310\nDTEND:20260310", "|x|2026-03-10..2026-03-11 all-day\n"},
        {"day called, time given", "DTSTART;VALUE=DATE:20260310T080000",
         "|x|2026-03-10 08:00..2026-03-10 08:00\n"},
        {"end before start", "DTSTART:20260310T080000\nDTEND:20260309T080000",
         "|x|2026-03-10 08:00..2026-03-10 08:00\n"},
        {"two starts", "DTSTART:20260310T080000\nDTSTART:20260311T080000",
         "|x|2026-03-10 08:00..2026-03-10 08:00\n"},
        {"day over a clock change", "DTSTART;TZID=Europe/Berlin:20260328T120000\nDURATION:P1D",
         "|x|2026-03-28 12:00..2026-03-29 12:00\n"},
        {"hours over a clock change", "DTSTART;TZID=Europe/Berlin:20260328T120000\nDURATION:PT24H",
         "|x|2026-03-28 12:00..2026-03-29 13:00\n"},
        {"daily", "DTSTART;TZID=Europe/Berlin:20260310T080000\nDURATION:PT1H\nRRULE:FREQ=DAILY",
         "|x|daily 1 from 2026-03-10 at 08:00-09:00 bias -60\n"},
        {"series keeps its zone",
         "DTSTART;TZID=America/New_York:20260310T080000\nDURATION:PT1H\nRRULE:FREQ=DAILY;COUNT=3",
         "|x|daily 1 from 2026-03-10 count 3 to 2026-03-12 at 08:00-09:00 bias 300\n"},
        {"over midnight", "DTSTART:20260310T233000\nDURATION:PT1H\nRRULE:FREQ=WEEKLY",
         "|x|weekly 1 mask 4 from 2026-03-10 at 23:30-24:30 bias -60\n"},
        {"UNTIL in UTC",
         "DTSTART;TZID=America/New_York:20260310T200000\nRRULE:FREQ=DAILY;UNTIL=20260313T000000Z",
         "|x|daily 1 from 2026-03-10 to 2026-03-12 at 20:00-20:00 bias 300\n"},
        {"UNTIL just before",
         "DTSTART;TZID=America/New_York:20260310T200000\nRRULE:FREQ=DAILY;UNTIL=20260312T235959Z",
         "|x|daily 1 from 2026-03-10 to 2026-03-11 at 20:00-20:00 bias 300\n"},
        {"UNTIL as a day", "DTSTART:20260310T200000\nRRULE:FREQ=DAILY;UNTIL=20260312",
         "|x|daily 1 from 2026-03-10 to 2026-03-12 at 20:00-20:00 bias -60\n"},
        {"UNTIL far away", "DTSTART:20260310T200000\nRRULE:FREQ=DAILY;UNTIL=99991231T235959Z",
         "|x|daily 1 from 2026-03-10 at 20:00-20:00 bias -60\n"},
        {"UNTIL before the start", "DTSTART:20260310T200000\nRRULE:FREQ=DAILY;UNTIL=20260301",
         "|x|2026-03-10 20:00..2026-03-10 20:00\n"},
        {"days of several months", "DTSTART;VALUE=DATE:20260131\nRRULE:FREQ=MONTHLY;COUNT=3",
         "|x|monthly 1 day 31 from 2026-01-31 to 2026-05-31 at 00:00-24:00 bias -60 all-day\n"},
        {"two series", "DTSTART:20260310T080000\nRRULE:FREQ=MONTHLY;BYMONTHDAY=10,20;COUNT=3",
         "|x|monthly 1 day 10 from 2026-03-10 to 2026-04-10 at 08:00-08:00 bias -60\n"
         "P2|x|monthly 1 day 20 from 2026-03-20 to 2026-03-20 at 08:00-08:00 bias -60\n"},
        {"weeks from Monday", "DTSTART:20260310T080000\nRRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=TU,SU",
         "|x|weekly 2 mask 4 from 2026-03-10 at 08:00-08:00 bias -60\n"
         "P2|x|weekly 2 mask 1 from 2026-03-15 at 08:00-08:00 bias -60\n"},
        {"no pattern", "DTSTART:20260101T080000\nRRULE:FREQ=MONTHLY;BYDAY=TH;BYMONTHDAY=1;COUNT=2",
         "S20260101T080000|x|2026-01-01 08:00..2026-01-01 08:00\nS20261001T080000|x|2026-10-01 "
         "08:00..2026-10-01 08:00\n"},
        {"start not of the rule", "DTSTART:20260310T080000\nRRULE:FREQ=WEEKLY;BYDAY=MO",
         "S20260310T080000|x|2026-03-10 08:00..2026-03-10 08:00\n|x|weekly 1 mask 2 from 2026-03-16 at "
         "08:00-08:00 bias -60\n"},
        {"dates beside",
         "DTSTART:20260310T080000\nRRULE:FREQ=DAILY;COUNT=2\nRDATE:20260311T080000,20260320T100000",
         "|x|daily 1 from 2026-03-10 count 2 to 2026-03-11 at 08:00-08:00 bias -60\n"
         "S20260320T100000|x|2026-03-20 10:00..2026-03-20 10:00\n"},
        {"only dates", "DTSTART:20260310T080000\nDURATION:PT1H\nRDATE;VALUE=PERIOD:20260312T080000/PT2H",
         "|x|2026-03-10 08:00..2026-03-10 09:00\nS20260312T080000|x|2026-03-12 08:00..2026-03-12 10:00\n"},
        {"excluded in many forms",
         "DTSTART;TZID=Europe/Berlin:20260310T080000\nRRULE:FREQ=DAILY;COUNT=9\nEXDATE;TZID=Europe/"
         "Berlin:20260311T080000\n"
         "EXDATE:20260312T070000Z\nEXDATE;VALUE=DATE:20260313,20260314\nEXDATE:20260315T090000",
         "|x|daily 1 from 2026-03-10 count 9 to 2026-03-18 at 08:00-08:00 bias -60; 2026-03-11 gone; "
         "2026-03-12 gone; "
         "2026-03-13 gone; 2026-03-14 gone\n"},
        {"excluded start", "DTSTART:20260310T080000\nRRULE:FREQ=WEEKLY;BYDAY=MO\nEXDATE:20260310T080000",
         "|x|weekly 1 mask 2 from 2026-03-16 at 08:00-08:00 bias -60\n"},
        {"rule below a day", "DTSTART:20260310T080000\nRRULE:FREQ=HOURLY",
         "|x|2026-03-10 08:00..2026-03-10 08:00\n"},
        {"year before 1601", "DTSTART:15000101", ""},
        {"impossible day", "DTSTART:20260230", ""},
        {"words", "DTSTART:Next Year", ""},
    };
    int n = 0;
    for (const auto& c : kCases) {
        const std::string uid = "case" + std::to_string(n++);
        Import("BEGIN:VEVENT\nUID:" + uid + "\nSUMMARY:x\n" + c.Lines + "\nEND:VEVENT");
        EXPECT_EQ(Items(uid), c.Items) << c.Name;
    }
}

TEST_F(ImportTest, ReadsZoneBlocks)
{
    const std::string block =
        "BEGIN:VTIMEZONE\nTZID:My own\nBEGIN:STANDARD\nDTSTART:16010101T030000\n"
        "RRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\nTZOFFSETFROM:+0300\nTZOFFSETTO:+0200\nEND:STANDARD\n"
        "BEGIN:DAYLIGHT\nDTSTART:16010101T020000\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=3\n"
        "TZOFFSETFROM:+0200\nTZOFFSETTO:+0300\nEND:DAYLIGHT\nEND:VTIMEZONE\n";
    const auto event = [](const std::string& uid, const std::string& start) {
        return "BEGIN:VEVENT\nUID:" + uid + "\nSUMMARY:x\nDTSTART;TZID=My own:" + start + "\nEND:VEVENT\n";
    };
    // The block may come late, and another of the same name replaces it for what follows.
    const CImported told = Import(event("early", "20260110T120000") + block +
                                  event("winter", "20260110T120000") + event("summer", "20260710T120000") +
                                  "BEGIN:VTIMEZONE\nTZID:My own\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                                  "TZOFFSETFROM:-0800\nTZOFFSETTO:-0800\nEND:STANDARD\nEND:VTIMEZONE\n" +
                                  event("redefined", "20260110T120000"));
    EXPECT_EQ(told.Counts(), "4 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(Items("winter"), "|x|2026-01-10 11:00..2026-01-10 11:00\n");
    EXPECT_EQ(Items("summer"), "|x|2026-07-10 11:00..2026-07-10 11:00\n");
    EXPECT_EQ(Items("redefined"), "|x|2026-01-10 21:00..2026-01-10 21:00\n");
    EXPECT_EQ(Items("early"), "|x|2026-01-10 21:00..2026-01-10 21:00\n");

    Import(block + "BEGIN:VEVENT\nUID:series\nSUMMARY:x\nDTSTART;TZID=My "
                   "own:20260110T120000\nRRULE:FREQ=DAILY\nEND:VEVENT");
    const auto series = Open("series");
    const TimeZoneInformation zone = series->GetRecurrencePattern()->Pattern().Zone();
    EXPECT_EQ(zone.Bias, -120);
    EXPECT_EQ(zone.DaylightBias, -60);
    EXPECT_EQ(zone.DaylightDate.wMonth, 3);
    EXPECT_EQ(zone.DaylightDate.wDay, 5);
    EXPECT_EQ(zone.StandardDate.wHour, 3);
}

TEST_F(ImportTest, UnknownZoneFloatsAndSaysSo)
{
    const CImported told =
        Import("BEGIN:VEVENT\nUID:a\nSUMMARY:x\nDTSTART;TZID=Nowhere/Land:20260310T120000\nEND:VEVENT\n"
               "BEGIN:VEVENT\nUID:b\nSUMMARY:x\nDTSTART;TZID=Nowhere/Land:20260311T120000\nEND:VEVENT");
    EXPECT_EQ(Items("a"), "|x|2026-03-10 12:00..2026-03-10 12:00\n");
    ASSERT_EQ(told.Told.size(), 1u);
    EXPECT_NE(told.Told[0].find("Nowhere/Land"), std::string::npos);
}

TEST_F(ImportTest, FollowsRulesWithoutPatternOnlySoFar)
{
    const CImported told =
        Import("BEGIN:VEVENT\nUID:far\nSUMMARY:x\nDTSTART:20260101T080000\nRRULE:FREQ=YEARLY;BYYEARDAY=100\n"
               "END:VEVENT\nBEGIN:VEVENT\nUID:many\nSUMMARY:x\nDTSTART:20260101T080000\n"
               "RRULE:FREQ=DAILY;BYHOUR=8,9\nEND:VEVENT");
    EXPECT_EQ(m_app->FindByUid(QStringLiteral("far")).size(), 11u); // ten years and the start
    EXPECT_EQ(m_app->FindByUid(QStringLiteral("many")).size(), 500u);
    EXPECT_EQ(told.LeftOut, 2);
    EXPECT_EQ(Open("many")->Foreign().SourceRule, QStringLiteral("FREQ=DAILY;BYHOUR=8,9"));
}
