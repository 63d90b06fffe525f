#include "fixture.h"

#include "records/property_numbers.h"

TEST_F(ObjectModel, OneOccurrenceIsChangedAndTheSeriesLeftAlone)
{
    auto series = Series();
    series->put_Body("series' note");
    series->put_Sensitivity(2);
    series->put_ReminderSet(true);
    ASSERT_TRUE(series->Save());
    const quint32 id = series->get_Oid();
    auto one = Occurrence(id, "2026-01-07");
    EXPECT_EQ(one->get_Oid(), id);
    EXPECT_EQ(IsoOf(one->get_Start()), "2026-01-07 10:00");
    EXPECT_EQ(one->get_Body(), "series' note");
    one->put_Subject("special");
    one->put_Location("elsewhere");
    one->put_BusyStatus(0);
    one->put_Body("its own note");
    one->put_Start(At("2026-01-08 16:00"));
    one->put_Sensitivity(0);
    one->put_ReminderSet(false);
    one->ClearRecurrencePattern();
    Notices();
    ASSERT_TRUE(one->Save());
    EXPECT_EQ(Notices(), "0 1030");

    Reopen();
    one = Occurrence(id, "2026-01-07");
    EXPECT_EQ(one->get_Subject() + one->get_Location() + one->get_Body(), "specialelsewhereits own note");
    EXPECT_EQ(IsoOf(one->get_Start()) + " " + IsoOf(one->get_End()), "2026-01-08 16:00 2026-01-08 17:00");
    EXPECT_EQ(one->get_BusyStatus(), 0);
    const auto whole = Get(id);
    EXPECT_EQ(whole->get_Subject() + whole->get_Body(), "seriesseries' note");
    EXPECT_EQ(whole->get_Sensitivity(), 2);
    EXPECT_TRUE(whole->get_ReminderSet());
    EXPECT_EQ(Occurrences(*whole, "2026-01-05", "2026-01-13").join(", "),
              "2026-01-05 10:00, 2026-01-08 16:00, 2026-01-12 10:00");
    const CRecurrencePattern pattern = Read(*whole).Pattern();
    ASSERT_EQ(pattern.Exceptions.size(), 1u); // found as a deletion and as a change
    EXPECT_EQ(pattern.ExceptionCount, 1);

    // By the day it is shown on too; put back as it was, nothing of it is kept.
    one = Occurrence(id, "2026-01-08");
    ASSERT_TRUE(one);
    one->put_Subject("series");
    one->put_Location("");
    one->put_BusyStatus(2);
    one->put_Body("series' note");
    one->put_Start(At("2026-01-07 10:00"));
    ASSERT_TRUE(one->Save());
    EXPECT_TRUE(Read(*whole).Pattern().Exceptions.empty());
}

TEST_F(ObjectModel, OccurrencesAreFoundByTheirOriginalDayFirst)
{
    const quint32 id = Series()->get_Oid();
    const auto move = [&](const char* day, const char* to) {
        auto one = Occurrence(id, day);
        ASSERT_TRUE(one);
        one->put_Start(At(to));
        ASSERT_TRUE(one->Save());
    };
    move("2026-01-05", "2026-01-06 10:00"); // Monday to Tuesday
    move("2026-01-07", "2026-01-12 08:00"); // onto the next Monday
    ASSERT_TRUE(Occurrence(id, "2026-01-14")->Delete());
    move("2026-01-21", "2026-01-14 08:00"); // onto the deleted day, which stays deleted
    const struct {
        const char *day, *start; // null: not found
    } cases[] = {{"2026-01-05", "2026-01-06 10:00"},
                 {"2026-01-06", "2026-01-06 10:00"},
                 {"2026-01-07", "2026-01-12 08:00"},
                 {"2026-01-12", "2026-01-12 10:00"},
                 {"2026-01-14", nullptr},
                 {"2026-01-13", nullptr},
                 {"2025-12-31", nullptr}};
    for (const auto& c : cases) {
        std::unique_ptr<IAppointment> one;
        const CStatus status = Get(id)->GetRecurrencePattern()->GetOccurrence(At(c.day), one);
        EXPECT_EQ(status.Kind(), c.start ? StatusKind::Ok : StatusKind::NotFound) << c.day;
        EXPECT_EQ(one ? IsoOf(one->get_Start()) : QString(), c.start ? c.start : "") << c.day;
    }
    const auto unsaved = m_app->CreateAppointment();
    std::unique_ptr<IAppointment> one;
    EXPECT_EQ(unsaved->GetRecurrencePattern()->GetOccurrence(At("2026-01-05"), one).Kind(),
              StatusKind::Invalid);
}

TEST_F(ObjectModel, DeletingAMovedOccurrenceKeepsItsDeletion)
{
    const quint32 id = Series()->get_Oid();
    auto one = Occurrence(id, "2026-01-05");
    one->put_Start(At("2026-01-06 10:00"));
    ASSERT_TRUE(one->Save());
    const auto stale = Occurrence(id, "2026-01-05");
    ASSERT_TRUE(one->Delete());
    const CRecurrencePattern pattern = Read(*Get(id)).Pattern();
    ASSERT_EQ(pattern.Exceptions.size(), 1u);
    EXPECT_TRUE(pattern.Exceptions[0].Deleted);
    EXPECT_EQ(Occurrences(*Get(id), "2026-01-01", "2026-01-08").join(", "), "2026-01-07 10:00");
    // Who still holds it cannot bring it back, nor delete it twice.
    stale->put_Subject("ghost");
    EXPECT_EQ(stale->Save().Kind(), StatusKind::NotFound);
    EXPECT_EQ(stale->Delete().Kind(), StatusKind::NotFound);
    EXPECT_FALSE(Occurrence(id, "2026-01-06"));
}

TEST_F(ObjectModel, TwoEditorsOfOneOccurrenceKeepEachOthersWork)
{
    const quint32 id = Series()->get_Oid();
    auto a = Occurrence(id, "2026-01-05"), b = Occurrence(id, "2026-01-05");
    a->put_Subject("by a");
    ASSERT_TRUE(a->Save());
    b->put_Start(At("2026-01-05 13:00"));
    ASSERT_TRUE(b->Save());
    const auto read = Occurrence(id, "2026-01-05");
    EXPECT_EQ(read->get_Subject(), "by a");
    EXPECT_EQ(IsoOf(read->get_Start()), "2026-01-05 13:00");
}

TEST_F(ObjectModel, AllDayAndTimedOccurrencesOfTheOtherKind)
{
    SetZone(NewYorkZone());
    const quint32 id = Series()->get_Oid();
    SetZone(BerlinZone()); // 16:00 here
    auto one = Occurrence(id, "2026-01-05");
    EXPECT_EQ(IsoOf(one->get_Start()), "2026-01-05 16:00");
    one->put_Start(At("2026-01-05"));
    one->put_End(At("2026-01-06"));
    one->put_AllDayEvent(true);
    ASSERT_TRUE(one->Save());
    one = Occurrence(id, "2026-01-07");
    one->put_Start(At("2026-01-07 17:15"));
    ASSERT_TRUE(one->Save());
    EXPECT_EQ(Occurrences(*Get(id), "2026-01-05", "2026-01-08").join(", "), "2026-01-05, 2026-01-07 17:15");
    SetZone(NewYorkZone());
    EXPECT_EQ(Occurrences(*Get(id), "2026-01-05", "2026-01-08").join(", "), "2026-01-05, 2026-01-07 11:15");
    EXPECT_TRUE(Occurrence(id, "2026-01-05")->get_AllDayEvent());
    // The end before the start, again no duration.
    one = Occurrence(id, "2026-01-12");
    one->put_End(At("2026-01-11"));
    ASSERT_TRUE(one->Save());
    EXPECT_EQ(one->get_End(), one->get_Start());
    EXPECT_EQ(IsoOf(Occurrence(id, "2026-01-12")->get_End()), "2026-01-12 10:00");
}

TEST_F(ObjectModel, CategoriesAndAttendeesOfAnOccurrenceAreTheSeries)
{
    const quint32 id = Series()->get_Oid();
    auto one = Occurrence(id, "2026-01-05");
    one->put_Categories("Work");
    one->get_Recipients()->Add("Ada");
    ASSERT_TRUE(one->Save());
    EXPECT_EQ(Get(id)->get_Categories(), "Work");
    EXPECT_EQ(Get(id)->get_Recipients()->get_Count(), 1);
    EXPECT_TRUE(Read(*one).Pattern().Exceptions.empty());
}

TEST_F(ObjectModel, AnOccurrenceIsCopiedAsAPlainItem)
{
    const quint32 id = Series()->get_Oid();
    auto one = Occurrence(id, "2026-01-07");
    one->put_Subject("special");
    auto copy = one->Copy();
    ASSERT_TRUE(copy->Save());
    EXPECT_FALSE(copy->get_IsRecurring());
    EXPECT_EQ(IsoOf(copy->get_Start()) + copy->get_Subject(), "2026-01-07 10:00special");
    const auto whole = Get(id)->Copy();
    ASSERT_TRUE(whole->Save());
    EXPECT_EQ(Occurrences(*whole, "2026-01-05", "2026-01-08").join(", "),
              "2026-01-05 10:00, 2026-01-07 10:00");
}
