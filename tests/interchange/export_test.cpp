// What goes out comes in again as the same, and in a form that other programs read.
#include "interchange/calendar_exporter.h"
#include "interchange/import_fixture.h"
#include "interchange/item_exporter.h"
#include "records/property_numbers.h"

namespace
{
struct CTrip {
    const char* Name;
    const char* Component; // of the UID "u"
    const char* Contains;  // lines of the export, each of them
};

const CTrip kTrips[] = {
    {"utc",
     "DTSTART:20260310T080000Z\nDTEND:20260310T090000Z\nSUMMARY:a\\, b\\; c\\\\d\nDESCRIPTION:one\\ntwo",
     "SUMMARY:a\\, b\\; c\\\\d\nDESCRIPTION:one\\ntwo\nDTEND:20260310T090000Z"},
    {"zone",
     "DTSTART;TZID=America/New_York:20260310T090000\nDTEND;TZID=America/New_York:20260310T100000\nSUMMARY:a",
     "BEGIN:VTIMEZONE\nTZID:America/New_York\nDTSTART;TZID=America/New_York:20260310T090000"},
    {"floating", "DTSTART:20260310T090000\nSUMMARY:a", "DTSTART:20260310T090000"},
    {"days", "DTSTART;VALUE=DATE:20260310\nDTEND;VALUE=DATE:20260312\nSUMMARY:a",
     "DTEND;VALUE=DATE:20260312"},
    {"series",
     "DTSTART;TZID=Europe/"
     "Berlin:20260310T090000\nRRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=TU,SU;COUNT=9\nSUMMARY:a\n"
     "EXDATE;TZID=Europe/Berlin:20260324T090000,20260325T090000",
     "RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=TU,SU;COUNT=9\nEXDATE;TZID=Europe/"
     "Berlin:20260324T090000,20260325T090000"},
    {"until",
     "DTSTART;TZID=Europe/Berlin:20260310T090000\nRRULE:FREQ=DAILY;UNTIL=20260401T070000Z\nSUMMARY:a",
     "RRULE:FREQ=DAILY;UNTIL=20260401T070000Z"},
    {"shorter months", "DTSTART:20260131T090000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=31\nSUMMARY:a",
     "RRULE:FREQ=MONTHLY;BYMONTHDAY=31"},
    {"30th or last",
     "DTSTART:20260228T090000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=28,29,30;BYSETPOS=-1\nSUMMARY:a",
     "RRULE:FREQ=MONTHLY;BYMONTHDAY=28,29,30;BYSETPOS=-1"},
    {"several records",
     "DTSTART:20260305T090000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=5,20;COUNT=7\nSUMMARY:a\nRDATE:"
     "20260307T100000Z",
     "RRULE:FREQ=MONTHLY;BYMONTHDAY=5,20;COUNT=7\nRDATE:20260307T100000Z"},
    {"no pattern",
     "DTSTART:20260302T090000Z\nRRULE:FREQ=YEARLY;BYYEARDAY=61,100;COUNT=6\nEXDATE:20260302T090000Z\nSUMMARY:"
     "a",
     "DTSTART:20260302T090000Z\nRRULE:FREQ=YEARLY;BYYEARDAY=61,100;COUNT=6\nEXDATE:20260302T090000Z"},
    {"start outside", "DTSTART:20260302T090000Z\nRRULE:FREQ=WEEKLY;BYDAY=WE\nSUMMARY:a",
     "RRULE:FREQ=WEEKLY;BYDAY=WE"},
    {"own zone", "DTSTART;TZID=Atlantis:20260310T090000\nRRULE:FREQ=DAILY;COUNT=3\nSUMMARY:a",
     "TZID:Atlantis"},
    {"parameters",
     "DTSTART:20260310T080000Z\nSUMMARY;LANGUAGE=de:a\nSUMMARY;LANGUAGE=fr:b\nX-ODD;P=\"q;r\":s,t\nGEO:1.0;2."
     "0",
     "SUMMARY;LANGUAGE=de:a\nSUMMARY;LANGUAGE=fr:b\nX-ODD;P=\"q;r\":s,t\nGEO:1.0;2.0"},
    {"people",
     "DTSTART:20260310T080000Z\nSUMMARY:a\nORGANIZER;CN=Ann:mailto:ann@x.org\nATTENDEE;CN=\"Bo; "
     "B\":mailto:bo@x.org\n"
     "ATTENDEE;CN=Cy;PARTSTAT=ACCEPTED:mailto:cy@x.org\nATTENDEE:mailto:di@x.org\nATTENDEE;CN=Ed:invalid:"
     "nomail",
     "ORGANIZER;CN=Ann:mailto:ann@x.org\nATTENDEE;CN=\"Bo; "
     "B\":mailto:bo@x.org\nATTENDEE;CN=Cy;PARTSTAT=ACCEPTED:mailto:cy@x.org\n"
     "ATTENDEE:mailto:di@x.org\nATTENDEE;CN=Ed:invalid:nomail"},
    {"state",
     "DTSTART:20260310T080000Z\nSUMMARY:a\nCLASS:CONFIDENTIAL\nSTATUS:TENTATIVE\nCATEGORIES:B,A\nSEQUENCE:3",
     "CLASS:CONFIDENTIAL\nSTATUS:TENTATIVE\nCATEGORIES:A,B\nSEQUENCE:3"},
    {"out of office",
     "DTSTART:20260310T080000Z\nSUMMARY:a\nTRANSP:OPAQUE\nX-MICROSOFT-CDO-BUSYSTATUS:OOF\nCLASS:PRIVATE",
     "X-MICROSOFT-CDO-BUSYSTATUS:OOF\nCLASS:PRIVATE"},
    {"alarms",
     "DTSTART:20260310T080000Z\nSUMMARY:a\nBEGIN:VALARM\nTRIGGER:-PT15M\nACTION:DISPLAY\nDESCRIPTION:"
     "Reminder\n"
     "END:VALARM\nBEGIN:VALARM\nTRIGGER;RELATED=END:PT5M\nACTION:AUDIO\nEND:VALARM",
     "TRIGGER:-PT15M\nTRIGGER;RELATED=END:PT5M\nACTION:AUDIO"},
    {"changed occurrences",
     "DTSTART;TZID=Europe/Berlin:20260310T090000\nRRULE:FREQ=DAILY;COUNT=5\nSUMMARY:a\nEND:VEVENT\n"
     "BEGIN:VEVENT\nUID:u\nDTSTAMP:20260101T000000Z\nRECURRENCE-ID:20260312T080000Z\nDTSTART:"
     "20260312T120000Z\nSUMMARY:moved\n"
     "X-MORE:1\nEND:VEVENT\nBEGIN:VEVENT\nUID:u\nRECURRENCE-ID;TZID=Europe/Berlin:20260313T090000\n"
     "DTSTART:20260313T080000Z\nSTATUS:CANCELLED",
     "RECURRENCE-ID:20260312T080000Z\nSUMMARY:moved\nX-MORE:1\nSTATUS:CANCELLED"},
    {"all later ones",
     "DTSTART:20260310T090000Z\nRRULE:FREQ=DAILY;COUNT=9\nSUMMARY:a\nEND:VEVENT\n"
     "BEGIN:VEVENT\nUID:u\nRECURRENCE-ID;RANGE=THISANDFUTURE:20260313T090000Z\nDTSTART:"
     "20260313T110000Z\nSUMMARY:b",
     "RECURRENCE-ID;RANGE=THISANDFUTURE:20260313T090000Z\nRRULE:FREQ=DAILY;COUNT=6"},
    {"alone", "RECURRENCE-ID:20260312T080000Z\nDTSTART:20260312T120000Z\nSUMMARY:a",
     "RECURRENCE-ID:20260312T080000Z"},
};

class ExportTest : public ImportTest
{
protected:
    std::string Export(const CExportRange& range = {})
    {
        QByteArray all;
        CCalendarExporter exporter(*m_app, *m_volume, [&](const QByteArray& bytes) {
            all += bytes;
            return true;
        });
        EXPECT_TRUE(exporter.Export(range).IsOk());
        return all.toStdString();
    }
    static std::string Unfolded(std::string text)
    {
        for (size_t at = 0; (at = text.find("\r\n ", at)) != std::string::npos;)
            text.erase(at, 3);
        return text;
    }
    static void ExpectLines(const std::string& content, const std::string& wanted, const char* name)
    {
        const std::string text = Unfolded(content);
        for (size_t at = 0; at <= wanted.size();) {
            const size_t end = std::min(wanted.find('\n', at), wanted.size());
            EXPECT_NE(text.find("\r\n" + wanted.substr(at, end - at) + "\r\n"), std::string::npos)
                << name << ": " << wanted.substr(at, end - at) << "\n"
                << text;
            at = end + 1;
        }
    }
};
} // namespace

TEST_F(ExportTest, ComesBackTheSame)
{
    const std::string zone = "BEGIN:VTIMEZONE\nTZID:Atlantis\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                             "TZOFFSETFROM:-0330\nTZOFFSETTO:-0330\nEND:STANDARD\nEND:VTIMEZONE\n";
    for (const CTrip& trip : kTrips) {
        FreshVolume();
        Import(zone + "BEGIN:VEVENT\nUID:u\n" + trip.Component + "\nEND:VEVENT");
        const std::string items = Items("u"), first = Export();
        ExpectLines(first, trip.Contains, trip.Name);
        FreshVolume();
        const CImported again = ImportBytes(first);
        EXPECT_EQ(again.LeftOut, 0) << trip.Name;
        EXPECT_EQ(Items("u"), items) << trip.Name << "\n" << first;
        EXPECT_EQ(Export(), first) << trip.Name;
        EXPECT_EQ(ImportBytes(first).Created + ImportBytes(first).Updated, 0) << trip.Name;
    }
}

TEST_F(ExportTest, TellsWhatWasChangedSince)
{
    Import("BEGIN:VEVENT\nUID:u\nDTSTART;TZID=Europe/"
           "Berlin:20260310T090000\nRRULE:FREQ=DAILY;COUNT=5\nSUMMARY:a\n"
           "STATUS:TENTATIVE\nBEGIN:VALARM\nTRIGGER:-PT5M\nACTION:EMAIL\nEND:VALARM\nEND:VEVENT\n"
           "BEGIN:VEVENT\nUID:u\nRECURRENCE-ID:20260312T080000Z\nDTSTART:20260312T120000Z\nSUMMARY:"
           "moved\nEND:VEVENT");
    auto item = Open("u");
    item->put_BusyStatus(3);
    item->put_ReminderSet(false);
    ASSERT_TRUE(item->Save().IsOk());
    std::unique_ptr<IAppointment> occurrence;
    for (const int day : {12, 13}) {
        ASSERT_TRUE(
            item->GetRecurrencePattern()->GetOccurrence(DayNumberOf(2026, 3, day), occurrence).IsOk());
        occurrence->put_Subject(QStringLiteral("mine"));
        ASSERT_TRUE(occurrence->Save().IsOk());
    }
    ASSERT_TRUE(item->GetRecurrencePattern()->GetOccurrence(DayNumberOf(2026, 3, 14), occurrence).IsOk());
    ASSERT_TRUE(occurrence->Delete().IsOk());
    const std::string items = Items("u"), first = Export();
    EXPECT_EQ(first.find("moved"), std::string::npos);
    EXPECT_EQ(first.find("TENTATIVE"), std::string::npos);
    EXPECT_EQ(first.find("VALARM"), std::string::npos);
    ExpectLines(
        first, "SUMMARY:mine\nX-MICROSOFT-CDO-BUSYSTATUS:OOF\nEXDATE;TZID=Europe/Berlin:20260314T090000", "");
    FreshVolume();
    ImportBytes(first);
    EXPECT_EQ(Items("u"), items);
    EXPECT_EQ(Export(), first);
}

TEST_F(ExportTest, ItemsThatWereMadeHereComeBackTheSame)
{
    auto item = m_app->CreateAppointment();
    item->put_Subject(QString(200, QChar(0x20AC)));
    item->put_Start(DayNumberOf(2026, 1, 30) + 0.375);
    item->put_End(DayNumberOf(2026, 1, 30) + 0.5);
    item->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Monthly);
    item->GetRecurrencePattern()->put_Occurrences(5);
    ASSERT_TRUE(item->Save().IsOk());
    auto task = m_app->CreateTask();
    task->put_Subject(QStringLiteral("t"));
    task->put_DueDate(DayNumberOf(2026, 3, 10));
    task->put_Importance(2);
    task->put_ReminderSet(true);
    task->put_ReminderTime(DayNumberOf(2026, 3, 9) + 0.5);
    ASSERT_TRUE(task->Save().IsOk());
    auto contact = m_app->CreateContact();
    contact->put_FileAs(QStringLiteral("Ann"));
    contact->put_Telephone(OlPhone::HomeFax, QStringLiteral("12"));
    contact->put_EmailAddress(1, QStringLiteral("a@x.org"));
    contact->put_Birthday(DayNumberOf(kContactYearUnknown, 2, 29));
    ASSERT_TRUE(contact->Save().IsOk());
    const std::string first = Export();
    ExpectLines(first, "PRIORITY:1\nTEL;TYPE=HOME,FAX:12\nBDAY:--02-29", "");
    EXPECT_NE(first.find("COUNT=5;BYMONTHDAY=28,29,30;BYSETPOS=-1\r\n"), std::string::npos);
    FreshVolume();
    const CImported imported = ImportBytes(first);
    EXPECT_EQ(imported.Counts(), "3 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(Export(), first);
}

TEST_F(ExportTest, ItemsThatWereMadeHereAreKnownWhenTheyComeBack)
{
    auto series = m_app->CreateAppointment();
    series->put_Subject(QStringLiteral("walk"));
    series->put_Start(DayNumberOf(2026, 3, 10) + 0.375);
    series->put_End(DayNumberOf(2026, 3, 10) + 0.5);
    series->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
    series->GetRecurrencePattern()->put_Occurrences(9);
    ASSERT_TRUE(series->Save().IsOk());
    std::unique_ptr<IAppointment> occurrence;
    ASSERT_TRUE(series->GetRecurrencePattern()->GetOccurrence(DayNumberOf(2026, 3, 12), occurrence).IsOk());
    occurrence->put_Start(DayNumberOf(2026, 3, 12) + 0.75);
    occurrence->put_End(DayNumberOf(2026, 3, 12) + 0.875);
    ASSERT_TRUE(occurrence->Save().IsOk());
    ASSERT_TRUE(series->GetRecurrencePattern()->GetOccurrence(DayNumberOf(2026, 3, 14), occurrence).IsOk());
    ASSERT_TRUE(occurrence->Delete().IsOk());
    auto allDay = m_app->CreateAppointment();
    allDay->put_AllDayEvent(true);
    allDay->put_Start(DayNumberOf(2026, 3, 10));
    allDay->put_End(DayNumberOf(2026, 3, 12));
    ASSERT_TRUE(allDay->Save().IsOk());
    auto task = m_app->CreateTask();
    task->put_DueDate(DayNumberOf(2026, 3, 10));
    ASSERT_TRUE(task->Save().IsOk());
    auto contact = m_app->CreateContact();
    contact->put_FileAs(QStringLiteral("Ann"));
    ASSERT_TRUE(contact->Save().IsOk());

    const std::string first = Export();
    // The moved occurrence is told with its series, and made anew with it.
    EXPECT_EQ(ImportBytes(first).Counts(), "1 created 4 updated 0 unchanged 0 left out");
    EXPECT_EQ(Export(), first);
    EXPECT_EQ(ImportBytes(first).Counts(), "0 created 0 updated 5 unchanged 0 left out");
    EXPECT_EQ(Export(), first);
}

TEST_F(ExportTest, ACopyTellsItsChangesAsItsOwn)
{
    Import(
        "BEGIN:VEVENT\nUID:first\nDTSTART:20260302T090000Z\nRRULE:FREQ=DAILY;COUNT=9\nSUMMARY:a\nEND:VEVENT\n"
        "BEGIN:VEVENT\nUID:first\nRECURRENCE-ID:20260304T090000Z\nDTSTART:20260304T110000Z\nX-KEPT:1\n"
        "SUMMARY:moved\nEND:VEVENT\nBEGIN:VEVENT\nUID:first\nRECURRENCE-ID:20260305T090000Z\n"
        "DTSTART:20260305T090000Z\nSTATUS:CANCELLED\nEND:VEVENT");
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(m_app->FindByUid(QStringLiteral("first")).at(0).ItemId, item));
    const auto copy = item->Copy();
    ASSERT_TRUE(copy->Save().IsOk());
    ASSERT_TRUE(item->Delete().IsOk());

    const std::string content = Export();
    EXPECT_EQ(content.find("first"), std::string::npos) << content;
    const std::string uid = copy->Foreign().Uid.toStdString();
    ExpectLines(content, "UID:" + uid + "\nX-KEPT:1\nSUMMARY:moved\nSTATUS:CANCELLED", "copy");
    ASSERT_TRUE(copy->Delete().IsOk());
    EXPECT_EQ(ImportBytes(content).Counts(), "3 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(Export(), content);
}

TEST_F(ExportTest, MeetingsTellMethodAndSequence)
{
    auto item = m_app->CreateAppointment();
    item->put_Subject(QStringLiteral("talk"));
    item->put_Start(DayNumberOf(2026, 3, 10) + 0.375);
    item->put_End(DayNumberOf(2026, 3, 10) + 0.5);
    item->get_Recipients()->Add(QStringLiteral("Bo"))->put_Address(QStringLiteral("bo@x.org"));
    QByteArray content;
    EXPECT_EQ(ExportMeeting(*item, MeetingMethod::Request, content).Kind(), StatusKind::Invalid);
    CForeignData foreign;
    foreign.Uid = QStringLiteral("m1");
    item->put_Foreign(foreign);
    ASSERT_TRUE(ExportMeeting(*item, MeetingMethod::Request, content).IsOk());
    ExpectLines(content.toStdString(),
                "METHOD:REQUEST\nUID:m1\nSEQUENCE:0\nDTSTART:20260310T080000Z\n"
                "ATTENDEE;CN=Bo;RSVP=TRUE:mailto:bo@x.org",
                "request");
    EXPECT_NE(content.indexOf(":invalid:nomail\r\n"), -1);
    item->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
    foreign.Sequence = 2;
    foreign.Organizer = QStringLiteral("me@x.org");
    item->put_Foreign(foreign);
    ASSERT_TRUE(item->Save().IsOk());
    std::unique_ptr<IAppointment> occurrence;
    ASSERT_TRUE(item->GetRecurrencePattern()->GetOccurrence(DayNumberOf(2026, 3, 12), occurrence).IsOk());
    ASSERT_TRUE(ExportMeeting(*occurrence, MeetingMethod::Cancel, content).IsOk());
    ExpectLines(content.toStdString(),
                "METHOD:CANCEL\nSTATUS:CANCELLED\nSEQUENCE:2\nORGANIZER:mailto:me@x.org", "cancel");
    EXPECT_NE(content.indexOf("RECURRENCE-ID"), -1);
    EXPECT_NE(content.indexOf(":20260312T090000"), -1);
    EXPECT_EQ(content.indexOf("RRULE:FREQ=DAILY"), -1);
}

TEST_F(ExportTest, OneItemIsAWholeFile)
{
    Import("BEGIN:VEVENT\nUID:u\nDTSTART:20260305T090000Z\nRRULE:FREQ=MONTHLY;BYMONTHDAY=5,20\nSUMMARY:"
           "a\nEND:VEVENT");
    QByteArray content;
    QString subject;
    const quint32 second = m_app->FindByUid(QStringLiteral("u")).back().ItemId; // of two records
    ASSERT_TRUE(ExportItem(*m_app, {OlItem::Appointment, second}, content, &subject).IsOk());
    EXPECT_EQ(subject, QStringLiteral("a"));
    ExpectLines(content.toStdString(), "RRULE:FREQ=MONTHLY;BYMONTHDAY=5,20\nEND:VCALENDAR", "");
    EXPECT_EQ(ExportItem(*m_app, {OlItem::Task, kTaskTag + 9}, content, nullptr).Kind(),
              StatusKind::NotFound);
}

TEST_F(ExportTest, TakesTheItemsOfSomeDays)
{
    Import("BEGIN:VEVENT\nUID:in\nDTSTART:20260301T090000Z\nRRULE:FREQ=WEEKLY\nSUMMARY:a\nEND:VEVENT\n"
           "BEGIN:VEVENT\nUID:night\nDTSTART;VALUE=DATE:20260309\nDTEND;VALUE=DATE:20260310\nEND:VEVENT\n"
           "BEGIN:VTODO\nUID:due\nDUE;VALUE=DATE:20260315\nEND:VTODO\nBEGIN:VTODO\nUID:never\nEND:VTODO\n"
           "BEGIN:VTODO\nUID:through\nDTSTART;VALUE=DATE:20260301\nDUE;VALUE=DATE:20260331\nEND:VTODO\n"
           "BEGIN:VTODO\nUID:past\nDTSTART;VALUE=DATE:20260301\nDUE;VALUE=DATE:20260309\nEND:VTODO\n"
           "BEGIN:VTODO\nUID:early\nDTSTART;VALUE=DATE:20260320\nDUE;VALUE=DATE:20260310\nEND:VTODO");
    CExportRange range;
    range.FirstDay = DayNumberOf(2026, 3, 10);
    range.LastDay = DayNumberOf(2026, 3, 15);
    const std::string content = Export(range);
    ExpectLines(content, "UID:in\nUID:due\nUID:through\nUID:early", "");
    EXPECT_EQ(content.find("past"), std::string::npos);
    EXPECT_EQ(content.find("night"), std::string::npos); // ends where the range begins
    EXPECT_EQ(content.find("never"), std::string::npos);
}

TEST(FoldedLines, KeepEveryByteWithin75OctetsAndNeverEndInASoftBreak)
{
    const std::string encoded = "FN;ENCODING=QUOTED-PRINTABLE:";
    for (int before = 0; before < 80; ++before) {
        std::string line = encoded + std::string(size_t(before), 'x');
        for (int n = 0; n < 60; ++n)
            line += n % 7 ? "=C3" : "\xC3\xB6";
        QByteArray text;
        FoldLines({line, std::string(200, '='), std::string()}, text);
        const QList<QByteArray> folded = text.split('\n');
        std::string unfolded;
        for (const QByteArray& part : folded) {
            EXPECT_LE(part.size(), 75 + 1); // its "\r" is still there
            unfolded += part.startsWith(' ') ? part.mid(1).trimmed().toStdString() : part.trimmed().toStdString();
            EXPECT_TRUE(part.contains("===") || !part.endsWith("=\r")) << before;
        }
        EXPECT_EQ(unfolded, line + std::string(200, '='));
    }
}
