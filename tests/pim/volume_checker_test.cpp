// The check finds each kind of fault, and none in what the object model writes.
#include "pim_fixture.h"

#include "pim/volume_checker.h"
#include "records/recurrence_blob.h"

namespace
{
class VolumeChecker : public PimTest
{
protected:
    VolumeChecker() { OpenStore(); }
    QStringList Faults()
    {
        QStringList faults;
        EXPECT_TRUE(CheckVolume(*m_volume, faults));
        return faults;
    }
    void Write(const QString& database, const std::vector<CEPROPVAL>& rows, CEOID oid = 0)
    {
        ASSERT_TRUE(m_volume->WriteRecord(database, oid, rows, {}, nullptr));
    }
};
} // namespace

TEST_F(VolumeChecker, WhatTheObjectModelWritesIsSound)
{
    const auto app = MakePOutlookApp(m_volume);
    ASSERT_TRUE(app->Logon());
    for (int i = 0; i < 12; ++i) {
        auto item = app->CreateAppointment();
        item->put_Start(At("2026-03-10 10:00") + i);
        item->put_End(item->get_Start() + i * 5);
        item->put_AllDayEvent(i % 4 == 3);
        item->put_Categories(i % 2 ? "Work" : "Home, Work");
        item->get_Recipients()->Add("Ann")->put_Address("ann@example.org");
        if (i % 3 == 0)
            item->GetRecurrencePattern()->put_RecurrenceType(OlRecurs(i / 3));
        ASSERT_TRUE(item->Save());
        std::unique_ptr<IAppointment> occurrence;
        if (i % 3 == 0 && item->GetRecurrencePattern()->GetOccurrence(Day("2026-03-10") + i, occurrence)) {
            occurrence->put_Subject("Changed");
            occurrence->put_Body("Note");
            ASSERT_TRUE(occurrence->Save());
        }
    }
    EXPECT_EQ(Faults(), QStringList());
}

TEST_F(VolumeChecker, EachFaultIsTold)
{
    const CRecurrencePattern daily = Pattern("daily", "2026-03-01", 600, 60, "2026-03-31");
    const QByteArray blob = WriteRecurrence(daily), zone = WriteRecurrenceZone(daily);
    CRecurrencePattern changed = daily;
    changed.Exceptions.resize(1);
    changed.Exceptions[0] = {Day("2026-03-05"), At("2026-03-05 12:00"), At("2026-03-05 11:00"), false};
    CRecurrencePattern reversed = daily;
    reversed.PatternEnd = Day("2026-02-01");
    QByteArray unknown = blob;
    unknown[6] = 9;
    const auto series = [&zone](const QByteArray& bytes, const QByteArray& zoneBytes) {
        return std::vector<CEPROPVAL>{
            {Prop::Recurring, 1}, {Prop::Recurrence, bytes}, {Prop::Zone, zoneBytes}};
    };
    struct Case {
        std::vector<CEPROPVAL> Rows;
        const char* Fault;
    };
    const Case cases[] = {
        {{{Prop::Recurring, 1}}, "recurrence of the series is missing"},
        {{{Prop::Recurrence, blob}}, "without being a series"},
        {series(blob.left(blob.size() - 6), zone), "cut off"},
        {series(blob, zone.left(40)), "zone of the series is cut off"},
        {series(unknown, zone), "unknown type"},
        {series(WriteRecurrence(reversed), zone), "ends before it begins"},
        {series(WriteRecurrence(changed), zone), "changed occurrence ends before it begins"},
        {{{Prop::BusyStatus, 7}}, "busy status is out of range"},
        {{{Prop::Attendees, QByteArray("\x05\x00\x41", 3)}}, "attendees are cut off"},
        {{{Prop::LongSpan, 99}}, "index of long appointments"},
        {{{Prop::Start, qint64(-5)}}, "start is no date"},
    };
    ASSERT_EQ(Faults(), QStringList());
    for (const Case& c : cases) {
        const CEOID oid = WritePlain("Item", "2026-03-10 10:00", 60);
        Write(kAppointmentsDatabase, c.Rows, oid);
        const QStringList faults = Faults();
        ASSERT_EQ(faults.size(), 1) << c.Fault << ": " << qPrintable(faults.join('\n'));
        EXPECT_TRUE(faults[0].contains(c.Fault)) << qPrintable(faults[0]);
        EXPECT_TRUE(faults[0].contains(QString::number(oid)));
        Delete(oid);
    }
}

TEST_F(VolumeChecker, HalfAnItemAndLooseAssociations)
{
    Write(kAppointmentsDatabase, {{Prop::Subject, QStringLiteral("No dates")}});
    Write(kCategoryDatabase, {{Prop::CategoryNumber, 1}, {Prop::CategoryName, QStringLiteral("Work")}});
    Write(kCategoryAssocDatabase, {{Prop::AssocItem, kAppointmentTag + 1}, {Prop::AssocCategory, 1}});
    EXPECT_EQ(Faults().size(), 1);
    Write(kCategoryAssocDatabase, {{Prop::AssocItem, kAppointmentTag + 1}, {Prop::AssocCategory, 2}});
    Write(kCategoryAssocDatabase, {{Prop::AssocItem, kTaskTag + 1}, {Prop::AssocCategory, 1}});
    const QStringList faults = Faults();
    ASSERT_EQ(faults.size(), 3) << qPrintable(faults.join('\n'));
    EXPECT_TRUE(faults[0].contains("no start"));
    EXPECT_TRUE(faults[1].contains("category that is not there"));
    EXPECT_TRUE(faults[2].contains("item that is not there"));
}
