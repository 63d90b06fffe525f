// What one record says: dates in any zone, notes, series with changes, ages.
#include "pim_fixture.h"

#include "pim/appointment_reader.h"
#include "records/recurrence_blob.h"

#include <QFile>

namespace
{
class AppointmentReader : public PimTest
{
};

CRecurrenceException Changed(const char* originalDay, const char* start, const char* end)
{
    CRecurrenceException exception;
    exception.OriginalDay = Day(originalDay);
    exception.Start = At(start);
    exception.End = At(end);
    exception.Deleted = false;
    return exception;
}

CRecurrenceException Gone(const char* originalDay)
{
    CRecurrenceException exception;
    exception.OriginalDay = Day(originalDay);
    return exception;
}
} // namespace

TEST(NoteDocument, EmptyForms)
{
    const std::pair<const char*, bool> cases[] = {
        {"", false},
        {"FEFF0000", false},
        {"FEFF0D000A000000", false},
        {"FEFF0D000A000D000A000000", false},
        {"FEFF0100", true},
        {"FEFE0000", true},
        {"FEFF0D000B000000", true},
        {"FEFF0D000A000D000A000100", true},
        {"00", true},
        {"FEFF000000", true},
        {"0000000000000000", true},
    };
    for (const auto& [hex, content] : cases)
        EXPECT_EQ(HasNoteContent(BytesOf(QByteArray::fromHex(hex))), content) << hex;
}

TEST(ShiftedByMinutes, KeepsEqualMomentsEqual)
{
    EXPECT_EQ(ShiftedByMinutes(At("2026-03-01 23:30"), 45), At("2026-03-02 00:15"));
    EXPECT_EQ(ShiftedByMinutes(At("2026-03-02 00:15"), -45), At("2026-03-01 23:30"));
    for (int minute = 0; minute < 1440; ++minute)
        ASSERT_EQ(ShiftedByMinutes(Day("2026-03-01"), minute), Day("2026-03-01") + minute * 60 / 86400.0);
}

TEST_F(AppointmentReader, TimesFollowTheZoneOfTheirOwnDate)
{
    struct Case {
        const char* Zone;
        const char* Now;
        const char* Utc;
        int Minutes;
        const char* Start;
        const char* End;
    };
    const Case cases[] = {
        {"America/New_York", "2026-03-01 09:00", "2026-03-02 15:00", 60, "2026-03-02 10:00",
         "2026-03-02 11:00"},
        {"America/New_York", "2026-03-01 09:00", "2026-03-20 14:00", 60, "2026-03-20 10:00",
         "2026-03-20 11:00"},
        {"America/New_York", "2026-07-01 09:00", "2026-03-02 15:00", 60, "2026-03-02 10:00",
         "2026-03-02 11:00"},
        {"America/New_York", "2026-07-01 09:00", "2026-03-20 14:00", 60, "2026-03-20 10:00",
         "2026-03-20 11:00"},
        // The clocks go forward in between: the wall time keeps its duration.
        {"America/New_York", "2026-03-01 09:00", "2026-03-08 04:00", 240, "2026-03-07 23:00",
         "2026-03-08 03:00"},
        {"Australia/Sydney", "2026-03-01 09:00", "2026-06-30 23:30", 60, "2026-07-01 09:30",
         "2026-07-01 10:30"},
        {"Asia/Kolkata", "2026-03-01 09:00", "2026-03-02 18:00", 60, "2026-03-02 23:30", "2026-03-03 00:30"},
    };
    for (const Case& c : cases) {
        UseZone(c.Zone);
        SetNow(c.Now);
        OpenStore();
        const std::vector<CEPROPVAL> rows = {{Prop::Start, FileTimeOfDate(At(c.Utc))},
                                             {Prop::Duration, c.Minutes}};
        CEOID oid = 0;
        ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid));
        CAppointment item(kKindAppointment, CAppointment::Blank{});
        ASSERT_TRUE(m_store.ReadOccurrence(ItemIdOf(oid), 0, item));
        EXPECT_EQ(Iso(item.Start), c.Start) << c.Zone << " at " << c.Now;
        EXPECT_EQ(Iso(item.End), c.End) << c.Zone << " at " << c.Now;
        EXPECT_EQ(item.Start, At(c.Start)); // the very double
    }
}

TEST_F(AppointmentReader, AllDayStaysOnItsDayInEveryZone)
{
    for (const char* zone : {"Pacific/Kiritimati", "Asia/Kolkata", "Europe/Berlin", "UTC", "America/New_York",
                             "Pacific/Pago_Pago"}) {
        for (const char* now : {"2026-01-15 09:00", "2026-07-15 09:00"}) {
            m_store.Shutdown();
            m_volume.reset();
            QFile::remove(m_folder.filePath("pim.vol"));
            UseZone(zone);
            SetNow(now);
            WritePlain("Plain", "2026-03-10", 1440, true);
            CRecurrencePattern pattern = Pattern("weekly", "2026-03-10", 0, 1440);
            pattern.Exceptions = {Changed("2026-03-24", "2026-03-25", "2026-03-26")};
            WriteSeries("Series", pattern, true, "Europe/Berlin");
            LoadDay("2026-03-10");
            EXPECT_EQ(LinesOf("2026-03-09"), QStringList()) << zone;
            EXPECT_EQ(LinesOf("2026-03-10"), (QStringList{"all day Plain", "all day Series"})) << zone;
            EXPECT_EQ(LinesOf("2026-03-11"), QStringList()) << zone;
            EXPECT_EQ(LinesOf("2026-03-24"), QStringList()) << zone;
            EXPECT_EQ(LinesOf("2026-03-25"), QStringList{"all day Series"}) << zone;
        }
    }
}

TEST_F(AppointmentReader, AnAllDayTimeNearMidnightMeansTheNearerDay)
{
    OpenStore();
    UseZone("America/New_York");
    const std::pair<const char*, const char*> cases[] = {{"2026-03-09 22:00", "2026-03-10"},
                                                         {"2026-03-10 00:00", "2026-03-10"},
                                                         {"2026-03-10 12:59", "2026-03-10"},
                                                         {"2026-03-10 13:00", "2026-03-11"},
                                                         {"2026-03-10 05:00", "2026-03-10"}};
    for (const auto& [utc, day] : cases) {
        const std::vector<CEPROPVAL> rows = {
            {Prop::Start, FileTimeOfDate(At(utc))}, {Prop::Duration, 1440}, {Prop::AllDay, 1}};
        CEOID oid = 0;
        ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid));
        CAppointment item(kKindAppointment, CAppointment::Blank{});
        ASSERT_TRUE(m_store.ReadOccurrence(ItemIdOf(oid), 0, item));
        EXPECT_EQ(Iso(DayNumber(item.Start)), Iso(Day(day))) << utc;
    }
}

TEST_F(AppointmentReader, ASeriesOfAnotherZoneMovesWithTheClocksOfBoth)
{
    UseZone("Europe/Berlin");
    WriteSeries("Call", Pattern("daily", "2020-01-01", 19 * 60, 60), false, "America/New_York");
    LoadDay("2026-03-10");
    EXPECT_EQ(LinesOf("2026-03-07"), QStringList{"01:00-02:00 Call"});
    EXPECT_EQ(LinesOf("2026-03-20"), QStringList{"00:00-01:00 Call"}); // New York has summer time, Berlin not
    EXPECT_EQ(LinesOf("2026-04-02"), QStringList{"01:00-02:00 Call"});
    // The first and the last cached day have theirs, which begins on another day at home.
    EXPECT_EQ(LinesOf("2026-03-01").size(), 1);
    EXPECT_EQ(LinesOf("2026-04-04").size(), 1);
    const CAppointment& item = *m_store.FindDay(Day("2026-03-07"))->Appointments[0];
    EXPECT_EQ(Iso(item.OriginalDay), Iso(Day("2026-03-06")));
    EXPECT_EQ(Iso(item.OriginalStart), "2026-03-07 01:00");
}

TEST_F(AppointmentReader, ChangedOccurrences)
{
    CRecurrencePattern pattern = Pattern("weekly", "2026-03-03", 600, 60); // Tuesdays
    CRecurrenceException moved = Changed("2026-03-10", "2026-03-12 15:00", "2026-03-12 16:30");
    moved.HasSubject = moved.HasLocation = moved.HasBusyStatus = true;
    moved.Subject = "Moved";
    moved.Location = "Elsewhere";
    moved.BusyStatus = 3;
    SetOccurrenceNote(moved, "Its own");
    CRecurrenceException whole = Changed("2026-03-24", "2026-03-24", "2026-03-25");
    whole.HasAllDay = whole.AllDay = true;
    pattern.Exceptions = {moved, Gone("2026-03-17"), whole,
                          Changed("2026-05-12", "2026-03-04 08:00", "2026-03-04 09:00")};
    const quint32 id = ItemIdOf(WriteSeries("Weekly", pattern));
    LoadDay("2026-03-10");
    EXPECT_EQ(LinesOf("2026-03-03"), QStringList{"10:00-11:00 Weekly"});
    EXPECT_EQ(LinesOf("2026-03-04"), QStringList{"08:00-09:00 Weekly"}); // from May
    EXPECT_EQ(LinesOf("2026-03-10"), QStringList());
    EXPECT_EQ(LinesOf("2026-03-12"), QStringList{"15:00-16:30 Moved"});
    EXPECT_EQ(LinesOf("2026-03-17"), QStringList());
    EXPECT_EQ(LinesOf("2026-03-24"), QStringList{"all day Weekly"});
    const CAppointment& item = *m_store.FindDay(Day("2026-03-12"))->Appointments[0];
    EXPECT_EQ(item.Recurrence, 2);
    EXPECT_EQ(item.Location, "Elsewhere");
    EXPECT_EQ(item.BusyStatus, 3);
    EXPECT_TRUE(item.HasNote);
    EXPECT_EQ(item.OriginalDay, Day("2026-03-10"));
    EXPECT_EQ(Iso(item.OriginalStart), "2026-03-10 10:00");

    // One occurrence by itself.
    const auto occurrence = [&](const char* day) {
        CAppointment one(kKindAppointment, CAppointment::Blank{});
        return m_store.ReadOccurrence(id, Day(day), one) ? Iso(one.Start) + u' ' + one.Subject : QString();
    };
    EXPECT_EQ(occurrence("2026-03-03"), "2026-03-03 10:00 Weekly");
    EXPECT_EQ(occurrence("2026-03-10"), "2026-03-12 15:00 Moved"); // by its original day
    EXPECT_EQ(occurrence("2026-03-12"), "2026-03-12 15:00 Moved"); // by the day it shows on
    EXPECT_EQ(occurrence("2026-03-17"), QString());
    EXPECT_EQ(occurrence("2026-03-18"), QString());
}

TEST_F(AppointmentReader, OneOccurrenceAmongThoseThatRunOn)
{
    CRecurrencePattern pattern = Pattern("daily", "2026-03-01", 600, 1500); // each runs into the next
    pattern.Exceptions = {Changed("2026-03-20", "2026-03-25 08:00", "2026-03-25 09:00")};
    const quint32 id = ItemIdOf(WriteSeries("Shift", pattern));
    const auto occurrence = [&](const char* day) {
        CAppointment one(kKindAppointment, CAppointment::Blank{});
        return m_store.ReadOccurrence(id, Day(day), one) ? Iso(one.Start) : QString();
    };
    EXPECT_EQ(occurrence("2026-03-10"), "2026-03-10 10:00");
    EXPECT_EQ(occurrence("2026-03-20"), "2026-03-25 08:00"); // not the one that runs on from the 19th
    EXPECT_EQ(occurrence("2026-03-21"), "2026-03-21 10:00");
    EXPECT_EQ(occurrence("2026-03-25"), "2026-03-25 08:00");
}

TEST_F(AppointmentReader, AYearlySeriesTellsItsAge)
{
    CRecurrencePattern birthday = Pattern("yearly", "2000-03-10", 0, 1440);
    CRecurrencePattern named = Pattern("yearly", "1990-03-11", 600, 60);
    CRecurrenceException changed = Changed("2026-03-11", "2026-03-12 10:00", "2026-03-12 11:00");
    changed.HasSubject = true;
    changed.Subject = "Ben, later";
    named.Exceptions = {changed};
    CRecurrencePattern monthly = Pattern("monthly", "2020-03-13", 600, 60);
    monthly.Interval = 12;
    WriteSeries("Anna", birthday, true);
    WriteSeries("Ben", named);
    WriteSeries("Cleo", monthly);
    WriteSeries("Rent", Pattern("monthly", "2020-03-14", 600, 60));
    LoadDay("2026-03-10");
    EXPECT_EQ(LinesOf("2026-03-10"), QStringList{"all day Anna (26)"});
    EXPECT_EQ(LinesOf("2026-03-12"), QStringList{"10:00-11:00 Ben, later (36)"});
    EXPECT_EQ(LinesOf("2026-03-13"), QStringList{"10:00-11:00 Cleo (6)"});
    EXPECT_EQ(LinesOf("2026-03-14"), QStringList{"10:00-11:00 Rent"});
    LoadDay("2006-03-10");
    EXPECT_EQ(LinesOf("2006-03-10"), QStringList{"all day Anna (6)"});
}

TEST_F(AppointmentReader, FlagsAndDefaults)
{
    const CEOID bare = WritePlain("Bare", "2026-03-10 10:00", 60);
    std::vector<CEPROPVAL> rows = {{Prop::Sensitivity, 2}, {Prop::BusyStatus, 0}, {Prop::ReminderSet, 1}};
    rows.emplace_back(Prop::Note, QStringLiteral("text"));
    rows.emplace_back(Prop::Location, QStringLiteral("Here"));
    rows.emplace_back(Prop::Attendees, WriteAttendees({{"A", "a@example.org"}}));
    const CEOID full = WritePlain("", "2026-03-10 11:00", 60, false, rows);
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    ASSERT_TRUE(m_store.ReadOccurrence(ItemIdOf(bare), 0, item));
    EXPECT_TRUE(item.BusyStatus == 2 && item.Sensitivity == 0 && !item.HasNote && !item.ReminderSet &&
                !item.HasAttendees);
    ASSERT_TRUE(m_store.ReadOccurrence(ItemIdOf(full), 0, item));
    EXPECT_TRUE(item.BusyStatus == 0 && item.IsPrivate() && item.HasNote && item.ReminderSet &&
                item.HasAttendees);
    EXPECT_EQ(item.Location, "Here");
    EXPECT_TRUE(item.Subject.isEmpty());
    EXPECT_FALSE(m_store.ReadOccurrence(12345, 0, item));
}

TEST_F(AppointmentReader, DamagedSeriesShowNothingAndDoNoHarm)
{
    const QByteArray whole = WriteRecurrence(Pattern("daily", "2026-03-01", 600, 60));
    for (int length = 0; length < whole.size(); ++length) {
        std::vector<CEPROPVAL> rows = {{Prop::Recurring, 1}};
        rows.emplace_back(Prop::Recurrence, whole.left(length));
        WritePlain(QString::number(length), "2026-03-10 10:00", 60, false, rows);
    }
    WritePlain("Sound", "2026-03-10 10:00", 60);
    LoadDay("2026-03-10");
    EXPECT_TRUE(LinesOf("2026-03-10").contains("10:00-11:00 Sound"));
}
