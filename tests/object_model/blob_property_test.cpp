// Whatever is put through the object model stands in the bytes of the record.
#include "fixture.h"

#include "records/property_numbers.h"

#include <random>

namespace
{
struct CPutChange {
    QString Subject, Location, Note;
    int BusyStatus = 2;
    DATE Start = 0, End = 0;
};
} // namespace

TEST_F(ObjectModel, RandomSeriesStandInTheirBlobsAsTheyWerePut)
{
    constexpr OlRecurs kTypes[] = {OlRecurs::Daily,      OlRecurs::Weekly, OlRecurs::Monthly,
                                   OlRecurs::MonthlyNth, OlRecurs::Yearly, OlRecurs::YearlyNth};
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto pick = [&random](int low, int high) {
            return low + int(random() % unsigned(high - low + 1));
        };
        const int minute = pick(0, 95) * 15, minutes = pick(0, 200) * 15;
        auto item = m_app->CreateAppointment();
        item->put_Subject("series");
        item->put_Start(At("2026-01-10") + pick(0, 300) + minute / 1440.0);
        item->put_End(item->get_Start() + minutes / 1440.0);
        IRecurrencePattern& p = *item->GetRecurrencePattern();
        const OlRecurs type = kTypes[pick(0, 5)];
        const bool yearly = type >= OlRecurs::Yearly;
        const int interval = yearly ? 12 * pick(1, 2) : pick(1, 9);
        const int mask = pick(1, 127), day = pick(1, 31), instance = pick(1, 5), count = pick(1, 40);
        p.put_RecurrenceType(type);
        p.put_Interval(interval);
        const bool ordinal = type == OlRecurs::MonthlyNth || type == OlRecurs::YearlyNth;
        const bool byDay = type == OlRecurs::Monthly || type == OlRecurs::Yearly;
        const bool masked = ordinal || type == OlRecurs::Weekly;
        if (masked)
            p.put_DayOfWeekMask(mask);
        if (byDay)
            p.put_DayOfMonth(day);
        if (ordinal)
            p.put_Instance(instance);
        const bool counted = pick(0, 1);
        if (counted)
            p.put_Occurrences(count);
        ASSERT_TRUE(item->Save());
        const quint32 id = item->get_Oid();

        // Some occurrences are deleted or changed.
        std::map<int, std::optional<CPutChange>> changes;
        std::vector<COccurrence> days;
        ExpandPattern(p.Pattern(), DayNumber(p.get_PatternStartDate()),
                      DayNumber(p.get_PatternStartDate()) + 400, days);
        for (const COccurrence& at : days) {
            if (pick(0, 3) != 0)
                continue;
            std::unique_ptr<IAppointment> one;
            ASSERT_TRUE(Get(id)->GetRecurrencePattern()->GetOccurrence(at.OriginalDay, one));
            if (pick(0, 2) == 0) {
                ASSERT_TRUE(one->Delete());
                changes[at.OriginalDay];
                continue;
            }
            const CPutChange put{QString("subject %1").arg(at.OriginalDay),
                                 QString(pick(0, 1), u'x'),
                                 QString(pick(0, 300), u'n'),
                                 pick(0, 3),
                                 at.OriginalDay + pick(-3, 3) + pick(0, 95) / 96.0,
                                 0};
            one->put_Subject(put.Subject);
            one->put_Location(put.Location);
            one->put_Body(put.Note);
            one->put_BusyStatus(put.BusyStatus);
            one->put_Start(put.Start);
            one->put_End(put.Start + 1 / 24.0);
            ASSERT_TRUE(one->Save());
            changes[at.OriginalDay] = put;
        }

        const CRecurrencePattern read = Read(*Get(id)).Pattern();
        const int expected[] = {int(type),
                                interval,
                                masked ? mask : 0,
                                byDay ? day : 0,
                                ordinal ? instance : 0,
                                minute,
                                minute + minutes,
                                counted ? PatternEndKind::Count : PatternEndKind::Never,
                                int(changes.size())};
        const int got[] = {read.Type,        read.Interval,  read.DayMask, read.DayOfMonth,    read.Instance,
                           read.StartMinute, read.EndMinute, read.EndKind, read.ExceptionCount};
        for (size_t i = 0; i < std::size(got); ++i)
            ASSERT_EQ(got[i], expected[i]) << "field " << i;
        ASSERT_TRUE(!counted || read.Occurrences == count);
        ASSERT_EQ(read.Exceptions.size(), changes.size());
        for (const CRecurrenceException& e : read.Exceptions) {
            ASSERT_TRUE(changes.contains(e.OriginalDay));
            const std::optional<CPutChange>& put = changes[e.OriginalDay];
            ASSERT_EQ(e.Deleted, !put.has_value());
            if (!put)
                continue;
            EXPECT_EQ(IsoOf(e.Start), IsoOf(put->Start));
            EXPECT_EQ(IsoOf(e.End), IsoOf(put->Start + 1 / 24.0));
            EXPECT_TRUE(e.HasSubject && e.Subject == put->Subject);
            EXPECT_EQ(e.HasLocation ? e.Location : QString(), put->Location);
            EXPECT_EQ(e.HasBusyStatus ? e.BusyStatus : item->get_BusyStatus(), put->BusyStatus);
            EXPECT_EQ(e.Note, put->Note);
        }
    }
}
