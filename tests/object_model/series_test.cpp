#include "fixture.h"

#include "records/property_numbers.h"
#include "records/recurrence_blob.h"

namespace
{
// A pattern as one line: type, interval, mask, day, instance; start..end, end kind, count; minutes.
QString TextOf(const CRecurrencePattern& p)
{
    return QString("%1 every %2 mask %3 day %4 nth %5, %6 to %7, kind %8 count %9")
               .arg(p.Type)
               .arg(p.Interval)
               .arg(p.DayMask)
               .arg(p.DayOfMonth)
               .arg(p.Instance)
               .arg(IsoOf(p.PatternStart), IsoOf(p.PatternEnd))
               .arg(p.EndKind)
               .arg(p.Occurrences) +
           QString(", %1-%2").arg(p.StartMinute).arg(p.EndMinute);
}

QString ExceptionsOf(const CRecurrencePattern& p)
{
    QStringList texts;
    for (const CRecurrenceException& e : p.Exceptions)
        texts += e.Deleted ? "-" + IsoOf(e.OriginalDay) : IsoOf(e.OriginalDay) + ">" + IsoOf(e.Start);
    return texts.join(' ');
}
} // namespace

TEST_F(ObjectModel, WhatIsWrittenDecodesToWhatWasPut)
{
    using P = IRecurrencePattern;
    const struct {
        const char* start;
        std::function<void(P&)> put;
        const char* expected;
    } cases[] = {
        {"2026-01-07 10:00", [](P& p) { p.put_RecurrenceType(OlRecurs::Daily); },
         "0 every 1 mask 0 day 0 nth 0, 2026-01-07 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-01-07 10:00", [](P&) {}, // as it is made: weekly on the start's day
         "1 every 1 mask 8 day 0 nth 0, 2026-01-07 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-01-07 10:00", // the start is not hit: the first occurrence is the start
         [](P& p) { p.put_DayOfWeekMask(0x22), p.put_Interval(2), p.put_PatternEndDate(At("2026-02-08")); },
         "1 every 2 mask 34 day 0 nth 0, 2026-01-09 to 2026-02-06, kind 0 count 5, 600-660"},
        {"2026-01-31 10:00", [](P& p) { p.put_RecurrenceType(OlRecurs::Monthly), p.put_Occurrences(3); },
         "2 every 1 mask 0 day 31 nth 0, 2026-01-31 to 2026-03-31, kind 1 count 3, 600-660"},
        {"2026-01-31 10:00", [](P& p) { p.put_RecurrenceType(OlRecurs::MonthlyNth); },
         "3 every 1 mask 64 day 0 nth 5, 2026-01-31 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-01-31 10:00", [](P& p) { p.put_RecurrenceType(OlRecurs::Yearly), p.put_DayOfMonth(15); },
         "5 every 12 mask 0 day 15 nth 0, 2027-01-15 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-11-22 10:00", // another month: in its next year
         [](P& p) {
             p.put_RecurrenceType(OlRecurs::Yearly), p.put_MonthOfYear(3), p.put_DayOfMonth(31),
                 p.put_Interval(24);
         },
         "5 every 24 mask 0 day 31 nth 0, 2027-03-31 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-01-07 10:00",
         [](P& p) {
             p.put_RecurrenceType(OlRecurs::YearlyNth), p.put_MonthOfYear(11), p.put_Instance(4),
                 p.put_DayOfWeekMask(0x10);
         },
         "6 every 12 mask 16 day 0 nth 4, 2026-11-26 to 4500-12-31, kind 2 count 1, 600-660"},
        {"2026-01-07 10:00", // a count that 16 bits do not hold becomes a date
         [](P& p) { p.put_RecurrenceType(OlRecurs::Daily), p.put_Occurrences(70000); },
         "0 every 1 mask 0 day 0 nth 0, 2026-01-07 to 2217-09-02, kind 0 count 65535, 600-660"},
        {"2026-01-07 10:00", // and past all calendars no end at all
         [](P& p) { p.put_RecurrenceType(OlRecurs::Daily), p.put_Occurrences(2000000000); },
         "0 every 1 mask 0 day 0 nth 0, 2026-01-07 to 4500-12-31, kind 2 count 65535, 600-660"},
        {"2026-01-07 10:00", // an end before the start leaves the first occurrence
         [](P& p) { p.put_RecurrenceType(OlRecurs::Daily), p.put_PatternEndDate(At("2020-01-01")); },
         "0 every 1 mask 0 day 0 nth 0, 2026-01-07 to 2026-01-07, kind 0 count 1, 600-660"},
        {"2026-01-07 10:00", // values out of range
         [](P& p) { p.put_Interval(-2), p.put_DayOfWeekMask(0), p.put_Occurrences(-1); },
         "1 every 1 mask 8 day 0 nth 0, 2026-01-07 to 2026-01-07, kind 1 count 1, 600-660"},
        {"2026-01-07 10:00", // times of day, over midnight
         [](P& p) { p.put_StartTime(23.5 / 24), p.put_EndTime(1.0 / 24); },
         "1 every 1 mask 8 day 0 nth 0, 2026-01-07 to 4500-12-31, kind 2 count 1, 1410-1500"},
        {"2026-01-07 10:00", // the same with their days, over several of them
         [](P& p) { p.put_StartTime(At("2026-01-07 08:00")), p.put_EndTime(At("2026-01-09 07:00")); },
         "1 every 1 mask 8 day 0 nth 0, 2026-01-07 to 4500-12-31, kind 2 count 1, 480-3300"},
    };
    for (const auto& c : cases) {
        auto item = Plain(c.start, "2026-01-07 11:00");
        item->put_End(item->get_Start() + 1.0 / 24);
        c.put(*item->GetRecurrencePattern());
        ASSERT_TRUE(item->Save());
        const CReadRecord record = Read(*item);
        const CRecurrencePattern pattern = record.Pattern();
        EXPECT_EQ(TextOf(pattern).toStdString(), c.expected);
        // The record's own start is the first occurrence; every series has its zone.
        EXPECT_EQ(IsoOf(ReadStart(*item)), IsoOf(pattern.PatternStart + pattern.StartMinute / 1440.0));
        EXPECT_EQ(record.Number(Prop::Duration), pattern.EndMinute - pattern.StartMinute);
        EXPECT_EQ(record.Find(Prop::Zone)->Bytes.size(), 48);
        EXPECT_TRUE(pattern.Zone() == BerlinZone());
        EXPECT_EQ(record.Number(Prop::Recurring), 1);
    }
}

TEST_F(ObjectModel, PutTypeResetsTheRuleAndNotTheEnds)
{
    auto item = Plain("2026-01-31 10:00", "2026-01-31 11:00");
    IRecurrencePattern& p = *item->GetRecurrencePattern();
    p.put_Interval(3);
    p.put_DayOfWeekMask(0x7F);
    p.put_PatternEndDate(At("2027-01-01"));
    p.put_RecurrenceType(OlRecurs::Monthly);
    EXPECT_EQ(p.get_Interval(), 1);
    EXPECT_EQ(p.get_DayOfMonth(), 31);
    p.put_RecurrenceType(OlRecurs::YearlyNth);
    EXPECT_EQ(p.get_Interval(), 12);
    EXPECT_EQ(p.get_DayOfWeekMask(), 0x40);
    EXPECT_EQ(p.get_Instance(), 5);
    EXPECT_EQ(p.get_MonthOfYear(), 1);
    EXPECT_EQ(IsoOf(p.get_PatternStartDate()), "2026-01-31");
    EXPECT_EQ(IsoOf(p.get_PatternEndDate()), "2027-01-01");
    EXPECT_FALSE(p.get_NoEndDate());
    p.put_NoEndDate(true);
    EXPECT_EQ(p.get_PatternEndDate(), NO_DATE);
    p.put_NoEndDate(false);
    p.put_Occurrences(4);
    EXPECT_EQ(p.get_Occurrences(), 4);
}

TEST_F(ObjectModel, AllDaySeriesRunFromMidnightToMidnightAndAreNeverShifted)
{
    auto item = Plain("2026-01-05", "2026-01-07");
    item->put_AllDayEvent(true);
    item->GetRecurrencePattern()->put_Interval(2);
    ASSERT_TRUE(item->Save());
    const CRecurrencePattern pattern = Read(*item).Pattern();
    EXPECT_EQ(pattern.StartMinute, 0);
    EXPECT_EQ(pattern.EndMinute, 2880);
    for (const TimeZoneInformation& zone : {NewYorkZone(), SydneyZone()}) {
        SetZone(zone);
        EXPECT_EQ(IsoOf(Get(item->get_Oid())->get_Start()), "2026-01-05");
        EXPECT_EQ(Occurrences(*item, "2026-07-01", "2026-07-31").join(' '), "2026-07-06 2026-07-20");
    }
    // Switched to times and back.
    auto edited = Get(item->get_Oid());
    edited->put_AllDayEvent(false);
    edited->put_Start(At("2026-01-05 22:00"));
    edited->put_End(At("2026-01-06 02:00"));
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(IsoOf(Get(item->get_Oid())->get_Start()), "2026-01-05 22:00");
    edited->put_AllDayEvent(true);
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(Read(*item).Pattern().EndMinute % 1440, 0);
    EXPECT_EQ(Read(*item).Pattern().StartMinute, 0);
}

TEST_F(ObjectModel, ASeriesKeepsItsZoneForLife)
{
    auto item = Plain("2026-01-05 22:00", "2026-01-05 23:00"); // Mondays, made in New York
    SetZone(NewYorkZone());
    item = Plain("2026-01-05 22:00", "2026-01-05 23:00");
    item->GetRecurrencePattern()->put_PatternEndDate(At("2026-03-30"));
    ASSERT_TRUE(item->Save());
    SetZone(BerlinZone());
    EXPECT_EQ(Occurrences(*item, "2026-03-01", "2026-03-31").join(", "),
              "2026-03-03 04:00, 2026-03-10 03:00, 2026-03-17 03:00, 2026-03-24 03:00, 2026-03-31 04:00");
    auto edited = Get(item->get_Oid());
    IRecurrencePattern& p = *edited->GetRecurrencePattern();
    EXPECT_EQ(IsoOf(edited->get_Start()), "2026-01-06 04:00"); // on Tuesdays here
    EXPECT_EQ(p.get_DayOfWeekMask(), 0x04);
    EXPECT_EQ(IsoOf(p.get_PatternEndDate()), "2026-03-31");
    // Put as a form does: all of it anew, in local time.
    const QByteArray before = Read(*item).Find(Prop::Recurrence)->Bytes;
    const auto putAll = [&](const char* start, int mask) {
        edited->put_Start(At(start));
        edited->put_End(edited->get_Start() + 1.0 / 24);
        p.put_StartTime(edited->get_Start());
        p.put_EndTime(edited->get_End());
        p.put_PatternStartDate(edited->get_Start());
        p.put_RecurrenceType(OlRecurs::Weekly);
        p.put_DayOfWeekMask(mask);
    };
    putAll("2026-01-06 04:00", 0x04);
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(Read(*item).Find(Prop::Recurrence)->Bytes, before);
    putAll("2026-01-06 04:30", 0x14); // Tuesdays and Thursdays
    ASSERT_TRUE(edited->Save());
    const CRecurrencePattern pattern = Read(*item).Pattern();
    EXPECT_TRUE(pattern.Zone() == NewYorkZone());
    EXPECT_EQ(pattern.DayMask, 0x0A); // the evenings before
    EXPECT_EQ(pattern.StartMinute, 22 * 60 + 30);
    EXPECT_EQ(Occurrences(*item, "2026-01-05", "2026-01-14").join(", "),
              "2026-01-06 04:30, 2026-01-08 04:30, 2026-01-13 04:30");
    EXPECT_EQ(IsoOf(Get(item->get_Oid())->GetRecurrencePattern()->get_PatternEndDate()), "2026-03-31");
}

TEST_F(ObjectModel, DaysOfTheMonthAreTurnedBackToo)
{
    SetZone(NewYorkZone());
    auto item = Plain("2026-01-31 22:00", "2026-01-31 23:00");
    item->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Monthly);
    ASSERT_TRUE(item->Save());
    SetZone(BerlinZone());
    auto edited = Get(item->get_Oid());
    EXPECT_EQ(edited->GetRecurrencePattern()->get_DayOfMonth(), 1);
    edited->put_Start(At("2026-02-01 05:00"));
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(Read(*item).Pattern().DayOfMonth, 31);
    EXPECT_EQ(Occurrences(*item, "2026-02-01", "2026-04-02").join(", "),
              "2026-02-01 05:00, 2026-03-01 05:00, 2026-04-01 05:00");
}

// ---- what an edit leaves alone

TEST_F(ObjectModel, AnUntouchedPatternIsNotWritten)
{
    auto item = Series();
    // What no preset and no row can hold: a foreign blob and the rule as it was imported.
    CRecurrencePattern foreign = Read(*item).Pattern();
    foreign.SkippedTail = "tail";
    foreign.PatternStart -= 2; // not on an occurrence
    CForeignData data;
    data.SourceRule = "FREQ=WEEKLY;BYDAY=MO,WE;BYMONTH=1";
    item->put_Foreign(data);
    ASSERT_TRUE(item->Save());
    const CEPROPVAL row(Prop::Recurrence, WriteRecurrence(foreign));
    CEOID oid = item->RecordOid();
    ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, oid, {&row, 1}, {}, &oid));
    auto edited = Get(item->get_Oid());
    IRecurrencePattern& p = *edited->GetRecurrencePattern();
    edited->put_Subject("other");
    edited->put_Start(edited->get_Start()); // rows put as they are
    edited->put_End(edited->get_End());
    edited->put_AllDayEvent(false);
    p.put_StartTime(edited->get_Start());
    p.put_EndTime(edited->get_End());
    p.put_PatternStartDate(edited->get_Start());
    p.put_RecurrenceType(OlRecurs::Weekly);
    p.put_DayOfWeekMask(0x0A);
    p.put_NoEndDate(true);
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(Read(*item).Find(Prop::Recurrence)->Bytes, row.Bytes);
    EXPECT_EQ(Read(*item).Text(Prop::SourceRule), data.SourceRule);
    EXPECT_EQ(Read(*item).Text(Prop::Subject), "other");
    ASSERT_TRUE(Occurrence(item->get_Oid(), "2026-01-07")->Delete());
    EXPECT_EQ(Read(*item).Text(Prop::SourceRule), data.SourceRule);
    // Touched, it is written by the rules, and the imported rule is gone.
    edited = Get(item->get_Oid());
    edited->GetRecurrencePattern()->put_Interval(2);
    ASSERT_TRUE(edited->Save());
    EXPECT_FALSE(Read(*item).Has(Prop::SourceRule));
    const CRecurrencePattern written = Read(*item).Pattern();
    EXPECT_EQ(written.SkippedTail, QByteArray("tail"));
    EXPECT_EQ(IsoOf(written.PatternStart), "2026-01-05");
}

TEST_F(ObjectModel, ExceptionsGoOnlyWithTheirDays)
{
    const struct {
        const char* what;
        std::function<void(IAppointment&)> put;
        const char* left;
    } cases[] = {
        {"subject", [](IAppointment& a) { a.put_Subject("x"); },
         "-2026-01-07 2026-01-12>2026-01-13 10:00 -2026-01-19"},
        {"start time", [](IAppointment& a) { a.put_Start(At("2026-01-05 12:00")); },
         "-2026-01-07 2026-01-12>2026-01-13 10:00 -2026-01-19"},
        {"mask", [](IAppointment& a) { a.GetRecurrencePattern()->put_DayOfWeekMask(0x02); },
         "2026-01-12>2026-01-13 10:00 -2026-01-19"},
        {"interval", [](IAppointment& a) { a.GetRecurrencePattern()->put_Interval(2); },
         "-2026-01-07 -2026-01-19"},
        {"end", [](IAppointment& a) { a.GetRecurrencePattern()->put_PatternEndDate(At("2026-01-18")); },
         "-2026-01-07 2026-01-12>2026-01-13 10:00"},
        {"type", [](IAppointment& a) { a.GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily); },
         "-2026-01-07 2026-01-12>2026-01-13 10:00 -2026-01-19"},
    };
    for (const auto& c : cases) {
        const auto item = Series();
        const quint32 id = item->get_Oid();
        ASSERT_TRUE(Occurrence(id, "2026-01-07")->Delete());
        auto moved = Occurrence(id, "2026-01-12");
        moved->put_Start(At("2026-01-13 10:00"));
        ASSERT_TRUE(moved->Save());
        auto edited = Get(id); // opened before the last deletion, saved after it
        c.put(*edited);
        ASSERT_TRUE(Occurrence(id, "2026-01-19")->Delete());
        ASSERT_TRUE(edited->Save());
        EXPECT_EQ(ExceptionsOf(Read(*item).Pattern()).toStdString(), c.left) << c.what;
    }
}

TEST_F(ObjectModel, AnExceptionOnAForeignDayStaysWhileTheDaysDo)
{
    const auto item = Series();
    CRecurrencePattern foreign = Read(*item).Pattern();
    CRecurrenceException beside; // on a Friday, which the pattern has not
    beside.OriginalDay = DayNumber(At("2026-01-09"));
    beside.Deleted = false;
    beside.Start = beside.End = At("2026-01-10 08:00");
    foreign.Exceptions.push_back(beside);
    const CEPROPVAL row(Prop::Recurrence, WriteRecurrence(foreign));
    CEOID oid = item->RecordOid();
    ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, oid, {&row, 1}, {}, &oid));
    auto edited = Get(item->get_Oid());
    edited->put_End(At("2026-01-05 12:00"));
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(ExceptionsOf(Read(*item).Pattern()), "2026-01-09>2026-01-10 08:00");
}

TEST_F(ObjectModel, AChangedOccurrenceThatWasNotMovedFollowsTheSeries)
{
    const auto item = Series();
    auto occurrence = Occurrence(item->get_Oid(), "2026-01-07");
    occurrence->put_Subject("special");
    ASSERT_TRUE(occurrence->Save());
    auto edited = Get(item->get_Oid());
    edited->put_Start(At("2026-01-05 14:00"));
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(ExceptionsOf(Read(*item).Pattern()), "2026-01-07>2026-01-07 14:00");
}

TEST_F(ObjectModel, ClearingThePatternLeavesAPlainItem)
{
    const auto item = Series();
    auto edited = Get(item->get_Oid());
    edited->put_Start(At("2026-02-03 09:00"));
    IRecurrencePattern* held = edited->GetRecurrencePattern();
    edited->ClearRecurrencePattern();
    EXPECT_EQ(held->get_DayOfWeekMask(), 0x0A); // what the caller holds may still be asked
    EXPECT_FALSE(edited->get_IsRecurring());
    ASSERT_TRUE(edited->Save());
    const CReadRecord record = Read(*item);
    for (CEPROPID id : {Prop::Recurring, Prop::Recurrence, Prop::Zone})
        EXPECT_FALSE(record.Has(id));
    EXPECT_EQ(IsoOf(ReadStart(*item)), "2026-02-03 09:00");
    EXPECT_EQ(IsoOf(Get(item->get_Oid())->get_End()), "2026-02-03 10:00");
    edited->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
    ASSERT_TRUE(edited->Save());
    EXPECT_EQ(Occurrences(*item, "2026-02-01", "2026-02-04").join(", "),
              "2026-02-03 09:00, 2026-02-04 09:00");
}

// ---- whole patterns, as importers put them

TEST_F(ObjectModel, AWholePatternIsStoredInItsZone)
{
    CRecurrencePattern pattern;
    pattern.Type = PatternType::Weekly;
    pattern.PatternStart = At("2026-01-06");
    pattern.DayMask = 0x02;
    pattern.StartMinute = 600;
    pattern.EndMinute = 660;
    pattern.EndKind = PatternEndKind::Count;
    pattern.Occurrences = 4;
    for (const char* day : {"2026-01-19", "2026-01-26"}) {
        CRecurrenceException e;
        e.OriginalDay = DayNumber(At(day));
        pattern.Exceptions.push_back(e);
    }
    pattern.Exceptions[1].Deleted = false;
    pattern.Exceptions[1].Start = At("2026-01-27 10:00");
    pattern.Exceptions[1].End = At("2026-01-27 11:00");
    pattern.Exceptions[1].HasSubject = true;
    pattern.Exceptions[1].Subject = "moved";

    const auto item = m_app->CreateAppointment();
    item->GetRecurrencePattern()->put_Zone(NewYorkZone());
    item->GetRecurrencePattern()->put_Pattern(pattern);
    EXPECT_EQ(IsoOf(item->get_Start()), "2026-01-12 16:00");
    ASSERT_TRUE(item->Save());
    const CRecurrencePattern read = Read(*item).Pattern();
    EXPECT_EQ(TextOf(read),
              "1 every 1 mask 2 day 0 nth 0, 2026-01-12 to 2026-02-02, kind 1 count 4, 600-660");
    EXPECT_EQ(ExceptionsOf(read), "-2026-01-19 2026-01-26>2026-01-27 10:00");
    EXPECT_TRUE(read.Zone() == NewYorkZone());
    EXPECT_EQ(Occurrences(*item, "2026-01-01", "2026-12-31").join(", "),
              "2026-01-12 16:00, 2026-01-27 16:00, 2026-02-02 16:00");

    // Put again with other exceptions: those replace all.
    auto again = Get(item->get_Oid());
    pattern.Exceptions.resize(1);
    again->GetRecurrencePattern()->put_Pattern(pattern);
    ASSERT_TRUE(again->Save());
    EXPECT_EQ(ExceptionsOf(Read(*item).Pattern()), "-2026-01-19");
    EXPECT_TRUE(Read(*item).Pattern().Zone() == NewYorkZone());

    // UTC is a zone that was put, too; a pattern without any stands in the device's.
    const auto utc = m_app->CreateAppointment();
    utc->GetRecurrencePattern()->put_Zone(PlainZone(0));
    utc->GetRecurrencePattern()->put_Pattern(pattern);
    ASSERT_TRUE(utc->Save());
    EXPECT_TRUE(Read(*utc).Pattern().Zone() == PlainZone(0));
    const auto floating = m_app->CreateAppointment();
    floating->GetRecurrencePattern()->put_Pattern(pattern);
    ASSERT_TRUE(floating->Save());
    EXPECT_TRUE(Read(*floating).Pattern().Zone() == BerlinZone());
}

TEST_F(ObjectModel, ExceptionsAreStoredInOrderAndOnceADay)
{
    CRecurrencePattern pattern;
    pattern.Type = PatternType::Daily;
    pattern.PatternStart = At("2026-01-01");
    for (int i = 0; i < 70000; ++i) {
        CRecurrenceException e;
        e.OriginalDay = DayNumber(pattern.PatternStart) + i * 7 % 50;
        pattern.Exceptions.push_back(e);
    }
    const auto item = m_app->CreateAppointment();
    item->GetRecurrencePattern()->put_Pattern(pattern);
    ASSERT_TRUE(item->Save());
    EXPECT_EQ(Read(*item).Pattern().Exceptions.size(), 50u);
    EXPECT_EQ(Occurrences(*item, "2026-01-01", "2026-02-20").join(' '), "2026-02-20");
    for (int i = 0; i < 70000; ++i)
        pattern.Exceptions[size_t(i)].OriginalDay = i;
    item->GetRecurrencePattern()->put_Pattern(pattern);
    EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid); // rather than losing some of them
    EXPECT_EQ(Read(*item).Pattern().Exceptions.size(), 50u);
}

TEST_F(ObjectModel, WildDatesInTheRowsAreRefused)
{
    for (DATE wild : {double(NAN), double(INFINITY), -1e300, 1e9}) {
        auto item = Get(Series()->get_Oid());
        IRecurrencePattern& p = *item->GetRecurrencePattern();
        p.put_StartTime(wild);
        p.put_EndTime(wild);
        p.put_PatternEndDate(wild);
        EXPECT_TRUE(p.get_NoEndDate());
        std::unique_ptr<IAppointment> one;
        EXPECT_EQ(p.GetOccurrence(wild, one).Kind(), StatusKind::NotFound);
        p.put_PatternStartDate(wild);
        EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid);
        item->put_Start(wild);
        EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid);
    }
}

TEST_F(ObjectModel, PatternsThatCannotBeStoredAreRefused)
{
    for (int type : {-1, 4, 7}) {
        CRecurrencePattern pattern;
        pattern.Type = type;
        pattern.PatternStart = At("2026-01-01");
        const auto item = m_app->CreateAppointment();
        item->GetRecurrencePattern()->put_Pattern(pattern);
        EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid);
    }
    for (DATE start : {NO_DATE, -300000.0, double(NAN)}) {
        CRecurrencePattern pattern;
        pattern.Type = PatternType::Daily;
        pattern.PatternStart = start;
        const auto item = m_app->CreateAppointment();
        item->GetRecurrencePattern()->put_Pattern(pattern);
        EXPECT_EQ(item->Save().Kind(), StatusKind::Invalid) << start;
    }
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 0);
}
