// The order within a day, conflicts and hour slots, each against its plain definition.
#include "pim_fixture.h"

#include "pim/day_order.h"

#include <list>
#include <random>

namespace
{
std::unique_ptr<CAppointment> Make(quint32 id, DATE start, DATE end, bool allDay = false, int busy = 2)
{
    auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank{});
    item->ItemId = item->RecordOid = id;
    item->Start = start;
    item->End = end;
    item->AllDay = allDay;
    item->BusyStatus = busy;
    return item;
}

class FixedColors : public IItemColors
{
public:
    COLORREF GetItemColor(const CPimItem& item) const override { return item.ItemId * 16; }
};

// The rule as it is told: a walk from the head.
void InsertByWalk(std::list<const CAppointment*>& list, const CAppointment* n)
{
    if (list.empty() || CompareInDay(*list.front(), *n) < 0) {
        list.push_front(n);
        return;
    }
    auto behind = list.begin();
    while (std::next(behind) != list.end() && CompareInDay(**std::next(behind), *n) >= 1)
        ++behind;
    list.insert(std::next(behind), n);
}

std::vector<quint32> Ids(const CDayItems& day)
{
    std::vector<quint32> ids;
    for (const auto& item : day.Appointments)
        ids.push_back(item->ItemId);
    return ids;
}

// Few different starts, so that ties abound; some days before, so that all-day items and those
// that run on from yesterday stand in no simple order.
std::unique_ptr<CAppointment> Random(std::mt19937& random, quint32 id, int day)
{
    const bool allDay = random() % 4 == 0;
    const DATE start = day - int(random() % 3) + (allDay ? 0 : double(random() % 12) / 24);
    return Make(id, start, start + double(random() % 8) / 24, allDay, int(random() % 4));
}
} // namespace

TEST(DayOrder, AllDayFirstAndLaterAddedAheadBehindTheHead)
{
    CDayItems day(100);
    for (quint32 id = 1; id <= 3; ++id)
        day.AddAppointment(Make(id, 100.5, 100.6), false);
    day.AddAppointment(Make(4, 100, 101, true), false);
    day.AddAppointment(Make(5, 100.25, 100.5), false);
    EXPECT_EQ(Ids(day), (std::vector<quint32>{4, 5, 1, 3, 2}));
}

TEST(DayOrder, ManyAtOnceStandAsTheWalkFromTheHeadPutsThem)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        CDayItems day(100);
        std::vector<std::unique_ptr<CAppointment>> kept;
        std::list<const CAppointment*> walked;
        const quint32 count = random() % (round % 10 == 0 ? 900 : 40);
        for (quint32 id = 1; id <= count; ++id) {
            kept.push_back(Random(random, id, 100));
            InsertByWalk(walked, kept.back().get());
            day.Defer(std::make_unique<CAppointment>(*kept.back()));
            if (random() % 20 == 0) // a list that stands already, and more for it
                day.Settle();
        }
        day.Settle();
        std::vector<quint32> expected;
        for (const CAppointment* item : walked)
            expected.push_back(item->ItemId);
        ASSERT_EQ(Ids(day), expected) << "round " << round;
    }
}

TEST(DayOrder, OneItemWithOneStartStandsOnce)
{
    CDayItems day(100);
    for (const auto& [id, start] : {std::pair(1u, 100.5), {1u, 100.25}, {2u, 100.5}, {1u, 100.5}})
        day.Defer(Make(id, start, start + 0.1));
    day.Settle();
    EXPECT_EQ(Ids(day), (std::vector<quint32>{1, 2, 1}));
    day.Defer(Make(2, 100.5, 100.9));
    day.Defer(Make(2, 100.75, 100.9));
    day.Settle();
    EXPECT_EQ(Ids(day), (std::vector<quint32>{1, 2, 1, 2}));
}

TEST(DayItems, ConflictsAreThoseOfEachPair)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        CDayItems day(100);
        for (quint32 id = 1; id <= 1 + random() % 30; ++id)
            day.Defer(Random(random, id, 100));
        day.Settle();
        for (const auto& a : day.Appointments) {
            bool expected = false;
            for (const auto& b : day.Appointments) {
                if (a != b && !a->AllDay && !b->AllDay && a->BusyStatus != 0 && b->BusyStatus != 0)
                    expected = expected || (b->Start < a->End && b->End > a->Start);
            }
            ASSERT_EQ(a->Conflict, expected) << "round " << round << " item " << a->ItemId;
        }
    }
}

TEST(DayItems, HourSlots)
{
    struct Case {
        const char* Start;
        const char* End;
        int First, Last; // slots taken; last below first for none
    };
    const Case cases[] = {
        {"2026-03-01 22:00", "2026-03-03 02:00", 0, 23},  {"2026-03-01 22:00", "2026-03-02 02:04", 0, 1},
        {"2026-03-01 22:00", "2026-03-02 02:05", 0, 2},   {"2026-03-01 22:00", "2026-03-02 00:04", 0, -1},
        {"2026-03-02 21:30", "2026-03-03 00:00", 21, 23}, {"2026-03-02 10:00", "2026-03-02 12:00", 10, 11},
        {"2026-03-02 10:00", "2026-03-02 12:14", 10, 11}, {"2026-03-02 10:00", "2026-03-02 12:15", 10, 12},
        {"2026-03-02 10:00", "2026-03-02 10:05", 10, 10}, {"2026-03-02 10:59", "2026-03-02 11:00", 10, 10},
    };
    const FixedColors colors;
    for (const Case& c : cases) {
        CDayItems day(Day("2026-03-02"), &colors);
        day.AddAppointment(Make(3, At(c.Start), At(c.End)), true);
        for (int hour = 0; hour < 25; ++hour) {
            const CHourSlot expected = hour >= c.First && hour <= c.Last ? CHourSlot{3, 48} : CHourSlot{};
            EXPECT_EQ(day.HourSlots[hour], expected) << c.Start << " to " << c.End << ", hour " << hour;
        }
    }
}

TEST(DayItems, AllDaySlotHasTheFirstColourAndTheLastItemAndHiddenOnesDoNotCount)
{
    const FixedColors colors;
    CDayItems day(100, &colors);
    day.AddAppointment(Make(1, 100, 101, true), false);
    day.AddAppointment(Make(2, 100, 101, true), false);
    day.AddAppointment(Make(3, 100, 101, true), false);
    day.Appointments[2]->Visible = false; // in order 1, 3, 2
    day.RecountSlots();
    EXPECT_EQ(day.HourSlots[24], (CHourSlot{3, 16}));
    EXPECT_EQ(day.AppointmentCount, 2);
}

TEST(DayItems, RemovingTakesEveryCopyAndRecounts)
{
    const FixedColors colors;
    CDayItems day(100, &colors);
    day.AddAppointment(Make(1, 100.5, 100.6), true);
    day.AddAppointment(Make(2, 100.55, 100.7), true);
    EXPECT_TRUE(day.Appointments[0]->Conflict);
    day.RemoveByOid(1, true);
    ASSERT_EQ(Ids(day), std::vector<quint32>{2});
    EXPECT_FALSE(day.Appointments[0]->Conflict);
    EXPECT_EQ(day.AppointmentCount, 1);
    EXPECT_EQ(day.FindByOid(2), day.Appointments[0].get());
    EXPECT_EQ(day.FindAppointment(2, 100.5), nullptr);
}
