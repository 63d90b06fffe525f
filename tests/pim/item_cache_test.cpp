// Loading by month grids: growth, trimming, what is found at the edges of a range.
#include "pim_fixture.h"

#include "pim/item_cache.h"

#include <QFile>

namespace
{
class ItemCache : public PimTest
{
protected:
    QString Cached()
    {
        const CDayItems* first = nullptr;
        const CDayItems* last = nullptr;
        for (int day = Day("2024-01-01"); day < Day("2028-01-01"); ++day) {
            if (const CDayItems* found = m_store.FindDay(day)) {
                EXPECT_EQ(found->Day, day);
                first = first ? first : found;
                last = found;
            }
        }
        return first ? Iso(first->Day).left(10) + QStringLiteral(" to ") + Iso(last->Day).left(10)
                     : QStringLiteral("nothing");
    }
};
} // namespace

TEST_F(ItemCache, GrowsByMonthGridsAndLosesTheFarSide)
{
    struct Step {
        const char* First;
        const char* Last;
        bool Loaded;
        const char* Cached;
    };
    // Grids from Sunday: March is 1 March to 4 April, April 29 March to 2 May, May 26 April to 6 June,
    // February 1 to 28.
    const Step steps[] = {
        {"2026-03-10", "2026-03-10", true, "2026-03-01 to 2026-04-04"},
        {"2026-04-04", "2026-04-04", false, "2026-03-01 to 2026-04-04"}, // within what is there
        {"2026-04-05", "2026-04-05", true, "2026-03-01 to 2026-05-02"},  // appended
        {"2026-05-10", "2026-05-10", true, "2026-03-29 to 2026-06-06"},  // 98 days: March goes
        {"2026-03-10", "2026-03-11", true, "2026-03-01 to 2026-05-02"},  // in front; May goes
        {"2027-03-10", "2027-03-10", true, "2027-02-28 to 2027-04-03"},  // apart: cleared
        {"2027-02-10", "2027-04-10", true, "2027-01-31 to 2027-05-01"},  // beyond both sides: cleared
    };
    OpenStore();
    for (const Step& step : steps) {
        EXPECT_EQ(m_store.LoadRange(Day(step.First), Day(step.First), Day(step.Last)), step.Loaded)
            << step.First;
        EXPECT_EQ(Cached(), step.Cached) << step.First;
        EXPECT_EQ(m_store.CursorDate(), Day(step.First));
    }
}

TEST_F(ItemCache, ARequestOfManyMonthsStaysWhole)
{
    OpenStore();
    m_store.LoadRange(Day("2026-03-10"), Day("2026-03-10"), Day("2026-07-10"));
    EXPECT_EQ(Cached(), "2026-03-01 to 2026-08-01");
}

TEST_F(ItemCache, MonthAfterMonthInEitherDirectionHoldsEachItemOnce)
{
    const auto all = [this](const char* iso) {
        LoadDay(iso);
        return LinesOf(iso);
    };
    WriteSeries("Daily", Pattern("daily", "2020-01-01", 600, 30));
    WritePlain("Over the month", "2026-03-25 20:00", 20 * 1440);
    for (const char* day :
         {"2026-03-30", "2026-04-10", "2026-05-12", "2026-06-01", "2026-05-03", "2026-04-01", "2026-03-28"})
        EXPECT_EQ(all(day).filter("Daily").size(), 1) << day;
    EXPECT_EQ(all("2026-04-04").size(), 2);
    EXPECT_EQ(all("2026-04-14").size(), 2); // its last day
    EXPECT_EQ(all("2026-04-15").size(), 1);
}

TEST_F(ItemCache, FindsWhatBeganLongBefore)
{
    // Cached is 1 March to 4 April.
    WritePlain("31 days", "2026-01-31 12:00", 31 * 1440);
    WritePlain("Just gone", "2026-01-29 00:00", 31 * 1440);
    WritePlain("50 days", "2026-01-20 12:00", 50 * 1440);
    WritePlain("Years", "2001-01-01 12:00", 30 * 366 * 1440);
    WritePlain("Long, within", "2026-03-02 12:00", 40 * 1440);
    LoadDay("2026-03-10");
    EXPECT_EQ(LinesOf("2026-03-01"),
              (QStringList{"12:00-12:00 Years", "12:00-12:00 50 days", "12:00-12:00 31 days"}));
    EXPECT_EQ(LinesOf("2026-03-05").filter("Long, within").size(), 1);
}

TEST_F(ItemCache, EdgesOfTheRangeInFarZones)
{
    for (const char* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago", "UTC"}) {
        m_volume.reset();
        QFile::remove(m_folder.filePath("pim.vol"));
        UseZone(zone);
        WritePlain("First", "2026-03-01 00:00", 30);
        WritePlain("Last", "2026-04-04 23:30", 30);
        WritePlain("Before", "2026-02-28 23:00", 60);
        WritePlain("After", "2026-04-05 00:00", 60);
        WritePlain("Month", "2026-01-29 00:30", 31 * 1440);
        WritePlain("First day", "2026-03-01", 1440, true);
        WritePlain("Last day", "2026-04-04", 1440, true);
        LoadDay("2026-03-10");
        EXPECT_EQ(LinesOf("2026-03-01"),
                  (QStringList{"all day First day", "00:30-00:30 Month", "00:00-00:30 First"}))
            << zone;
        EXPECT_EQ(LinesOf("2026-04-04"), (QStringList{"all day Last day", "23:30-00:00 Last"})) << zone;
        m_store.Shutdown();
    }
}

TEST_F(ItemCache, HumanTimeCutsTheSmallHours)
{
    g_Settings.General.HumanTime = 4;
    WritePlain("Late", "2026-03-02 22:00", 330);
    WritePlain("Later", "2026-03-02 22:00", 390);
    LoadDay("2026-03-02");
    EXPECT_EQ(LinesOf("2026-03-03"), QStringList{"22:00-04:30 Later"});
    EXPECT_TRUE(m_store.FindDay(Day("2026-03-02"))->Appointments[0]->EndsPreviousDay !=
                m_store.FindDay(Day("2026-03-02"))->Appointments[1]->EndsPreviousDay);
}

TEST_F(ItemCache, WithoutAVolumeTheDaysAreEmpty)
{
    m_store.Initialize(nullptr);
    LoadDay("2026-03-10");
    EXPECT_TRUE(LinesOf("2026-03-10").isEmpty());
    EXPECT_EQ(Cached(), "2026-03-01 to 2026-04-04");
    EXPECT_EQ(m_store.DrainNotices().Mask, 0);
}

TEST_F(ItemCache, ColourOfTheFirstCategoryThatHasOne)
{
    g_Settings.m_categories["Family"].Color = 0x123456;
    OpenStore();
    const auto category = [this](int number, const char* name) {
        const std::vector<CEPROPVAL> rows = {{Prop::CategoryNumber, number},
                                             {Prop::CategoryName, QString(name)}};
        EXPECT_TRUE(m_volume->WriteRecord(kCategoryDatabase, 0, rows, {}, nullptr));
    };
    category(1, "Work");
    category(2, "Family");
    OpenStore();
    CAppointment item(kKindAppointment, CAppointment::Blank{});
    EXPECT_EQ(m_store.GetItemColor(item), g_Settings.ResolveColor(501));
    item.Categories.Insert(1);
    item.AllDay = true;
    EXPECT_EQ(m_store.GetItemColor(item), g_Settings.ResolveColor(502));
    item.Categories.Insert(2);
    EXPECT_EQ(m_store.GetItemColor(item), COLORREF(0x123456));
}

// ---- the next event

TEST_F(ItemCache, NextEventIsTheFirstEndOfTodayStillToCome)
{
    SetNow("2026-03-15 09:00");
    WritePlain("Over", "2026-03-15 07:00", 60);
    WritePlain("Running", "2026-03-15 08:30", 45);
    WritePlain("Later", "2026-03-15 12:00", 60);
    WritePlain("Whole day", "2026-03-15", 1440, true);
    g_Settings.DailyView.PastAppointments = 1;
    LoadDay("2026-03-15");
    ASSERT_FALSE(m_timers.empty());
    EXPECT_EQ(m_timers.back(), 15 * 60000);
    const auto past = [this](const char* subject) {
        for (const auto& item : m_store.FindDay(Day("2026-03-15"))->Appointments) {
            if (item->Subject == QLatin1String(subject))
                return item->Past;
        }
        ADD_FAILURE() << subject;
        return false;
    };
    EXPECT_TRUE(past("Over"));
    EXPECT_FALSE(past("Running"));

    SetNow("2026-03-15 09:10");
    EXPECT_FALSE(m_store.OnNextEventTimer(GetNow()));
    EXPECT_EQ(m_timers.back(), 5 * 60000);
    SetNow("2026-03-15 09:16");
    EXPECT_TRUE(m_store.OnNextEventTimer(GetNow()));
    EXPECT_TRUE(past("Running"));
    EXPECT_EQ(m_timers.back(), (3 * 60 + 44) * 60000);

    g_Settings.DailyView.PastAppointments = 0;
    m_store.OnNextEventTimer(GetNow());
    EXPECT_FALSE(past("Over"));
    EXPECT_EQ(m_timers.back(), (3 * 60 + 44) * 60000); // never a moment that is gone
}

TEST_F(ItemCache, NoEventStopsTheTimer)
{
    WritePlain("Tomorrow", "2026-03-16 07:00", 60);
    LoadDay("2026-03-15");
    EXPECT_EQ(m_timers.back(), -1);
    SetNow("2026-03-16 08:00"); // ends this very second: not at once again and again
    m_store.OnNextEventTimer(GetNow());
    EXPECT_EQ(m_timers.back(), 1000);
}
