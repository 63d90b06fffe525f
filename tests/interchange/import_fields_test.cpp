// What becomes of the texts and states of an event, and what is kept beside them.
#include "interchange/import_fixture.h"

namespace
{
std::string Event(const std::string& lines)
{
    return "BEGIN:VEVENT\nUID:a\nDTSTART:20260310T080000Z\n" + lines + "\nEND:VEVENT\n";
}
} // namespace

TEST_F(ImportTest, FillsEveryField)
{
    Import(Event(
        "SUMMARY;LANGUAGE=en:Lunch\\, early\nSUMMARY;LANGUAGE=de:Mittag\nLOCATION:Caf\xC3\xA9\n"
        "DESCRIPTION:one\\ntwo\nCLASS:CONFIDENTIAL\nTRANSP:TRANSPARENT\nCATEGORIES:Work,Home\\, "
        "too\ncategories:WORK\n"
        "ORGANIZER;CN=Ann:mailto:ann@example.org\nATTENDEE;CN=Bob:MAILTO:bob@example.org\n"
        "ATTENDEE;PARTSTAT=ACCEPTED;CN=\"Cy: X\":mailto:cy@example.org\nATTENDEE:mailto:dee@example.org\n"
        "URL:http://example.org\nX-THING;A=B:1\nDTSTAMP:20260101T000000Z\nLAST-MODIFIED:20260201T120000Z\n"
        "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Reminder\nTRIGGER:-PT15M\nEND:VALARM\n"
        "BEGIN:VALARM\nACTION:EMAIL\nTRIGGER:-P1D\nEND:VALARM"));
    EXPECT_EQ(Item("a"),
              "subject=Lunch, early\nlocation=Caf\xC3\xA9\nnote=one\ntwo\nbusy=0\nsensitivity=2\n"
              "categories=Work, Home; too\nreminder=15\norganizer=ann@example.org\n"
              "attendees=Bob<bob@example.org>Cy: X<cy@example.org>dee@example.org<dee@example.org>\n"
              "kept=SUMMARY;LANGUAGE=en:\nSUMMARY;LANGUAGE=de:Mittag\nCLASS:CONFIDENTIAL\nORGANIZER;CN=Ann:\n"
              "ATTENDEE;PARTSTAT=ACCEPTED;CN=\"Cy: "
              "X\":mailto:cy@example.org\nURL:http://example.org\nX-THING;A=B:1\n"
              "BEGIN:VALARM\nACTION:EMAIL\nTRIGGER:-P1D\nEND:VALARM\n");
    EXPECT_EQ(Open("a")->Foreign().LastChange, 134144208000000000LL);
}

TEST_F(ImportTest, BusyStatusAndReminder)
{
    const struct {
        const char* Lines;
        int Busy, Reminder; // -1 none
        int LeftOut;
    } kCases[] = {
        {"TRANSP:OPAQUE", 2, -1, 0},
        {"STATUS:TENTATIVE", 1, -1, 0},
        {"STATUS:TENTATIVE\nTRANSP:TRANSPARENT", 0, -1, 0},
        {"TRANSP:OPAQUE\nX-MICROSOFT-CDO-BUSYSTATUS:OOF", 3, -1, 0},
        {"STATUS:CANCELLED", 0, -1, 0},
        {"BEGIN:VALARM\nTRIGGER:PT0S\nEND:VALARM", 2, 0, 0},
        {"BEGIN:VALARM\nTRIGGER;RELATED=START:-P1W\nEND:VALARM", 2, 10080, 0},
        {"BEGIN:VALARM\nTRIGGER:PT5M\nEND:VALARM", 2, -1, 0},
        {"BEGIN:VALARM\nTRIGGER;RELATED=END:-PT5M\nEND:VALARM", 2, -1, 0},
        {"BEGIN:VALARM\nTRIGGER;VALUE=DATE-TIME:20260310T070000Z\nEND:VALARM\nBEGIN:VALARM\nTRIGGER:-"
         "PT5M\nEND:VALARM",
         2, 5, 0},
        {"BEGIN:VALARM\nTRIGGER:soon\nEND:VALARM", 2, -1, 1},
        {"BEGIN:VALARM\nTRIGGER:-P9999999999D\nEND:VALARM", 2, -1, 1},
        {"BEGIN:VALARM\nEND:VALARM", 2, -1, 1},
    };
    int n = 0;
    for (const auto& c : kCases) {
        const std::string uid = "case" + std::to_string(n++);
        const CImported told =
            Import("BEGIN:VEVENT\nUID:" + uid + "\nDTSTART:20260310\n" + c.Lines + "\nEND:VEVENT");
        const auto item = Open(uid);
        ASSERT_TRUE(item);
        EXPECT_EQ(item->get_BusyStatus(), c.Busy) << c.Lines;
        EXPECT_EQ(item->get_ReminderSet() ? item->get_ReminderMinutesBeforeStart() : -1, c.Reminder)
            << c.Lines;
        EXPECT_EQ(told.LeftOut, c.LeftOut) << c.Lines;
    }
}

TEST_F(ImportTest, SaysSoWhenATextIsCut)
{
    const CImported told = Import(Event("SUMMARY:" + std::string(40000, 'x')));
    EXPECT_EQ(told.Counts(), "1 created 0 updated 0 unchanged 1 left out");
    EXPECT_EQ(Open("a")->get_Subject().size(), 32000);
}

TEST_F(ImportTest, KeepsWhatTheRecordHasNoPlaceFor)
{
    const struct {
        const char* Name;
        const char* Lines;
        const char* Kept;
    } kCases[] = {
        {"zone's name", "DTSTART;TZID=Europe/Berlin:20260310T080000", "DTSTART;TZID=Europe/Berlin:\n"},
        {"floating", "DTSTART:20260310T080000", "DTSTART:\n"},
        {"UTC", "DTSTART:20260310T080000Z", ""},
        {"a rule that was refused", "DTSTART:20260310T080000Z\nRRULE:FREQ=HOURLY", "RRULE:FREQ=HOURLY\n"},
        {"lists of dates", "DTSTART:20260310T080000Z\nRDATE:20260312T080000Z", "RDATE:20260312T080000Z\n"},
        {"excluded without effect",
         "DTSTART:20260310T080000Z\nRRULE:FREQ=DAILY;COUNT=2\nEXDATE:20260401T080000Z",
         "EXDATE:20260401T080000Z\n"},
        {"excluded with effect",
         "DTSTART:20260310T080000Z\nRRULE:FREQ=DAILY;COUNT=2\nEXDATE:20260311T080000Z", ""},
        {"own alarm text",
         "DTSTART:20260310\nBEGIN:VALARM\nTRIGGER:-PT5M\nACTION:DISPLAY\nDESCRIPTION:Go\nEND:VALARM",
         "BEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Go\nEND:VALARM\n"},
        {"other components", "DTSTART:20260310\nBEGIN:X-BOX\nBEGIN:VALARM\nA:1\nEND:VALARM\nEND:X-BOX",
         "BEGIN:X-BOX\nBEGIN:VALARM\nA:1\nEND:VALARM\nEND:X-BOX\n"},
    };
    int n = 0;
    for (const auto& c : kCases) {
        const std::string uid = "case" + std::to_string(n++);
        Import("BEGIN:VEVENT\nUID:" + uid + "\n" + c.Lines + "\nEND:VEVENT");
        EXPECT_EQ(Open(uid)->Foreign().Text.toStdString(), c.Kept) << c.Name;
    }
    const std::string picture(3'000'000, 'A');
    Import("BEGIN:VEVENT\nUID:big\nDTSTART:20260310\nATTACH;ENCODING=BASE64;VALUE=BINARY:" + picture +
           "\nEND:VEVENT");
    EXPECT_EQ(Open("big")->Foreign().Text.size(), 36 + 3'000'000 + 1);

    // A changed occurrence's own lines are kept with its series.
    Import("BEGIN:VEVENT\nUID:series\nDTSTART:20260310T080000Z\nRRULE:FREQ=DAILY\nEND:VEVENT\n"
           "BEGIN:VEVENT\nUID:series\nRECURRENCE-ID:20260311T080000Z\nDTSTART:20260311T090000Z\nX-OWN:1\nEND:"
           "VEVENT");
    const QString kept = Open("series")->Foreign().Text;
    EXPECT_TRUE(
        kept.startsWith(QStringLiteral("BEGIN:X-TESSERA-OVERRIDE\nRECURRENCE-ID:20260311T080000Z\n")));
    EXPECT_TRUE(kept.contains(QStringLiteral("\nX-OWN:1\nEND:X-TESSERA-OVERRIDE\n")));
}

TEST_F(ImportTest, NeighboursOfFaultsArrive)
{
    const CImported told =
        ImportBytes("BEGIN:VCALENDAR\r\nEND:VEVENT\r\n" + Event("SUMMARY:one").replace(17, 1, "1") +
                    "BEGIN:VEVENT\nDTSTART:20260312\nSUMMARY:never closed\n" +
                    Event("SUMMARY:two").replace(17, 1, "2") + "junk without a colon\nEND:VCALENDAR\n");
    EXPECT_EQ(told.Counts(), "2 created 0 updated 0 unchanged 1 left out");
    EXPECT_EQ(Items("1") + Items("2"),
              "|one|2026-03-10 09:00..2026-03-10 09:00\n|two|2026-03-10 09:00..2026-03-10 09:00\n");
    EXPECT_EQ(ImportBytes("<html></html>").Result, ImportResult::NothingInIt);
}
