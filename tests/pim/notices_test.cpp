// What notices make of the cache: the masks, the drain, and that after any edits the days are those
// of a fresh load.
#include "pim_fixture.h"

#include <random>

namespace
{
class Notices : public PimTest
{
protected:
    // All that a day shows, without regard to the order of equals.
    static QStringList Content(CPimStore& store, int day)
    {
        QStringList content;
        const CDayItems* items = store.FindDay(day);
        if (!items)
            return {QStringLiteral("not cached")};
        for (const auto& item : items->Appointments) {
            content += QStringLiteral("%1 %2 %3 %4 %5 %6%7%8 %9")
                           .arg(item->ItemId)
                           .arg(Iso(item->Start), Iso(item->End), item->Subject)
                           .arg(item->Recurrence)
                           .arg(item->Conflict)
                           .arg(item->EndsPreviousDay)
                           .arg(item->AllDay)
                           .arg(items->AppointmentCount);
        }
        content.sort();
        return content;
    }
    void CompareWithFreshLoad(const char* what, int step)
    {
        CPimStore fresh;
        fresh.Initialize(m_volume);
        fresh.LoadRange(Day("2026-03-10"), Day("2026-03-10"), Day("2026-03-10"));
        for (int day = Day("2026-03-01"); day <= Day("2026-04-04"); ++day)
            ASSERT_EQ(Content(m_store, day), Content(fresh, day))
                << what << " " << step << " " << qPrintable(Iso(day));
    }
};

std::unique_ptr<IAppointment> RandomEdit(IPOutlookApp& app, std::mt19937& random, std::vector<quint32>& ids)
{
    std::unique_ptr<IAppointment> item;
    const auto start = [&random] {
        return Day("2026-02-20") + int(random() % 50) + double(random() % 48) / 48;
    };
    if (ids.empty() || random() % 3 == 0) {
        item = app.CreateAppointment();
        item->put_Start(start());
    } else if (!app.GetAppointmentFromOid(ids[random() % ids.size()], item)) {
        return nullptr;
    }
    item->put_Subject(QString::number(random() % 1000));
    switch (random() % 6) {
    case 0:
        item->put_Start(start());
        break;
    case 1:
        item->put_End(item->get_Start() + double(random() % 60) / 12);
        break;
    case 2:
        item->put_AllDayEvent(true);
        break;
    case 3: {
        IRecurrencePattern* pattern = item->GetRecurrencePattern();
        pattern->put_RecurrenceType(random() % 2 ? OlRecurs::Daily : OlRecurs::Weekly);
        pattern->put_Interval(1 + int(random() % 3));
        if (pattern->get_RecurrenceType() == OlRecurs::Weekly)
            pattern->put_DayOfWeekMask(1 + int(random() % 127));
        break;
    }
    case 4:
        item->put_BusyStatus(int(random() % 4));
        break;
    default:
        break;
    }
    return item;
}
} // namespace

TEST_F(Notices, AfterAnyEditsTheDaysAreThoseOfAFreshLoad)
{
    UseZone("Europe/Berlin");
    g_Settings.General.HumanTime = 3;
    OpenStore();
    LoadDay("2026-03-10");
    const auto app = MakePOutlookApp(m_volume);
    ASSERT_TRUE(app->Logon());
    std::mt19937 random(2026);
    std::vector<quint32> ids;
    for (int step = 0; step < 120; ++step) {
        for (quint32 edits = 1 + random() % 4; edits > 0; --edits) {
            std::unique_ptr<IAppointment> item = RandomEdit(*app, random, ids);
            ASSERT_TRUE(item);
            std::unique_ptr<IAppointment> occurrence;
            if (item->get_Oid() != 0 && random() % 5 == 0) {
                ASSERT_TRUE(item->Delete());
                std::erase(ids, item->get_Oid());
            } else if (item->get_IsRecurring() && item->get_Oid() != 0 && random() % 2 == 0 &&
                       item->GetRecurrencePattern()->GetOccurrence(Day("2026-03-01") + int(random() % 30),
                                                                   occurrence)) {
                occurrence->put_Start(occurrence->get_Start() + double(random() % 5) - 2);
                ASSERT_TRUE(random() % 2 ? occurrence->Save() : occurrence->Delete());
            } else {
                ASSERT_TRUE(item->Save());
                if (std::find(ids.begin(), ids.end(), item->get_Oid()) == ids.end())
                    ids.push_back(item->get_Oid());
            }
        }
        const CPimStore::CDrain drain = m_store.DrainNotices();
        EXPECT_GT(drain.Notices, 0);
        EXPECT_FALSE(drain.Overflowed);
        EXPECT_TRUE(drain.Mask & kMaskSearch);
        CompareWithFreshLoad("step", step);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(ids.size(), 20u); // the edits were not all deletions
}

TEST_F(Notices, Masks)
{
    const CEOID today = WritePlain("Today", "2026-03-10 10:00", 60);
    const CEOID other = WritePlain("Other", "2026-03-11 10:00", 60);
    const CEOID far = WritePlain("Far", "2026-08-11 10:00", 60);
    OpenStore();
    LoadDay("2026-03-10");
    constexpr int kViews = kMaskListWeek | kMaskMonth | kMaskSearch;
    EXPECT_EQ(m_store.OnDatabaseNotification(1, kNoticeChanged, today), kMaskDaily | kViews);
    EXPECT_EQ(m_store.OnDatabaseNotification(1, kNoticeChanged, other), kViews);
    EXPECT_EQ(m_store.OnDatabaseNotification(1, kNoticeChanged, far), kMaskSearch);
    EXPECT_EQ(m_store.OnDatabaseNotification(1, kNoticeCreated, 4711), kMaskSearch); // gone again
    EXPECT_EQ(m_store.OnDatabaseNotification(1, 1026, today), 0);
    EXPECT_EQ(m_store.OnDatabaseNotification(7, kNoticeChanged, today), 0);
    EXPECT_EQ(LinesOf("2026-03-10").size(), 1);
    m_timers.clear();
    EXPECT_EQ(m_store.OnDatabaseNotification(1, kNoticeDeleted, today), kMaskDaily | kViews);
    EXPECT_EQ(m_timers.size(), 1u); // armed anew
    EXPECT_EQ(LinesOf("2026-03-10"), QStringList());
}

TEST_F(Notices, ADrainTakesAllAtOnceAndNothingTwice)
{
    OpenStore();
    LoadDay("2026-03-10");
    EXPECT_EQ(m_store.DrainNotices().Notices, 0);
    const CEOID first = WritePlain("First", "2026-03-10 10:00", 60);
    const CEOID second = WritePlain("Second", "2026-03-12 10:00", 60);
    Delete(first);
    const CPimStore::CDrain drain = m_store.DrainNotices();
    EXPECT_EQ(drain.Notices, 3);
    EXPECT_EQ(drain.LastParam, 1);
    EXPECT_EQ(drain.LastType, kNoticeDeleted);
    EXPECT_EQ(drain.LastOid, first);
    EXPECT_EQ(LinesOf("2026-03-10"), QStringList());
    EXPECT_EQ(LinesOf("2026-03-12"), QStringList{"10:00-11:00 Second"});
    EXPECT_EQ(m_store.DrainNotices().Notices, 0);
    ASSERT_TRUE(m_volume->TouchRecord(kAppointmentsDatabase, second)); // only its categories changed
    EXPECT_EQ(m_store.DrainNotices().Mask, kMaskListWeek | kMaskMonth | kMaskSearch);
}

TEST_F(Notices, TooManyLoadTheSameDaysAnew)
{
    OpenStore();
    LoadDay("2026-03-10");
    ASSERT_TRUE(m_volume->Begin(false));
    for (int i = 0; i < 501; ++i)
        WritePlain(QString::number(i), "2026-03-10 10:00", 60);
    ASSERT_TRUE(m_volume->Commit());
    const CPimStore::CDrain drain = m_store.DrainNotices();
    EXPECT_TRUE(drain.Overflowed);
    EXPECT_EQ(drain.Mask, 31);
    EXPECT_EQ(LinesOf("2026-03-10").size(), 501);
    EXPECT_NE(m_store.FindDay(Day("2026-03-01")), nullptr);
    EXPECT_EQ(m_store.FindDay(Day("2026-02-28")), nullptr);
    EXPECT_EQ(m_store.FindDay(Day("2026-04-05")), nullptr);
    EXPECT_EQ(m_store.DrainNotices().Notices, 0);
    WritePlain("One more", "2026-03-10 10:00", 60);
    EXPECT_FALSE(m_store.DrainNotices().Overflowed);
    EXPECT_EQ(LinesOf("2026-03-10").size(), 502);
}

TEST_F(Notices, OfAnotherProcessAndANewCategory)
{
    OpenStore();
    const CEOID oid = WritePlain("Item", "2026-03-10 10:00", 60);
    m_store.DrainNotices();
    LoadDay("2026-03-10");
    std::shared_ptr<CPropertyVolume> other;
    ASSERT_TRUE(
        CPropertyVolume::Open(m_volume->Path(), PimSchema(), CPropertyVolume::Mode::MustExist, other));
    const auto app = MakePOutlookApp(other);
    ASSERT_TRUE(app->Logon());
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(app->GetAppointmentFromOid(ItemIdOf(oid), item));
    item->put_Categories("Fresh");
    ASSERT_TRUE(item->Save());
    EXPECT_TRUE(m_store.DrainNotices().Mask & kMaskDaily);
    const auto& items = m_store.FindDay(Day("2026-03-10"))->Appointments;
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(m_store.Categories().GetNamesText(items[0]->Categories), "Fresh");
}
