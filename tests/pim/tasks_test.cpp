// Tasks: reading, order, groups, the days that show them, and what writing and notices do.
#include "pim_fixture.h"

#include "pim/item_cache.h"

namespace
{
class TaskTest : public PimTest
{
protected:
    TaskTest()
    {
        OpenStore();
        m_app = MakePOutlookApp(m_volume);
        EXPECT_TRUE(m_app->Logon());
    }
    struct COptions {
        const char* Start = "";
        const char* Due = "";
        int Priority = 1;
        const char* Completed = ""; // the moment of it
        const char* Categories = "";
    };
    quint32 Write(const char* subject, const COptions& options)
    {
        const auto task = m_app->CreateTask();
        task->put_Subject(subject);
        task->put_StartDate(*options.Start ? At(options.Start) : NO_DATE);
        task->put_DueDate(*options.Due ? At(options.Due) : NO_DATE);
        task->put_Importance(options.Priority);
        task->put_Categories(options.Categories);
        if (*options.Completed) {
            task->put_Complete(true);
            task->put_DateCompleted(At(options.Completed));
        }
        EXPECT_TRUE(task->Save());
        return task->get_Oid();
    }
    QStringList TasksOf(const char* iso)
    {
        QStringList texts;
        for (const auto& task : m_store.FindDay(Day(iso))->Tasks)
            texts += task->Subject;
        return texts;
    }
    // "name: a b (visible count)", one per group.
    QStringList Groups()
    {
        QStringList texts;
        for (const auto& group : m_store.GetTaskGroups()) {
            QStringList subjects;
            for (const auto& task : group->Tasks)
                subjects += task->Subject;
            texts +=
                QStringLiteral("%1: %2 (%3)").arg(group->Name, subjects.join(' ')).arg(group->VisibleCount);
        }
        return texts;
    }
    void Fresh()
    {
        m_store.Shutdown();
        OpenStore();
        LoadDay("2026-03-15");
    }

    std::unique_ptr<IPOutlookApp> m_app;
};
} // namespace

TEST_F(TaskTest, ReadsWhatTheRecordHolds)
{
    UseZone("Europe/Berlin");
    const auto moment = FileTimeOfDate(At("2026-03-14 10:30"));
    const std::vector<CEPROPVAL> rows = {{Prop::Subject, QStringLiteral("task")},
                                         {Prop::Sensitivity, 2},
                                         {Prop::ReminderSet, 1},
                                         {Prop::TaskStart, FileTimeOfDate(At("2026-03-01"))},
                                         {Prop::TaskDue, FileTimeOfDate(At("2026-03-16"))},
                                         {Prop::TaskPriority, 2},
                                         {Prop::TaskCompletedDate, moment},
                                         {Prop::Recurring, 1},
                                         {Prop::TaskReminderTime, moment},
                                         {Prop::Note, QStringLiteral("note")}};
    CEOID oid = 0;
    ASSERT_TRUE(m_volume->WriteRecord(kTasksDatabase, 0, rows, {}, &oid));
    CCategoryStore categories;
    CTaskReader reader(categories);
    ASSERT_TRUE(reader.Open(m_volume));
    CCalendarTask task;
    EXPECT_EQ(reader.ReadTask(task), oid);
    EXPECT_EQ(task.Subject, "task");
    EXPECT_EQ(Iso(task.Start), "2026-03-01 00:00"); // dates, not moved by the zone
    EXPECT_EQ(Iso(task.End), "2026-03-16 00:00");
    EXPECT_EQ(Iso(task.ReminderTime), "2026-03-14 11:30");
    EXPECT_EQ(task.Priority, 2);
    EXPECT_TRUE(task.Complete); // by its date alone
    EXPECT_TRUE(task.IsPrivate() && task.IsRecurring() && task.HasNote);
    EXPECT_EQ(task.ItemId, kTaskTag + 1);
    CCalendarTask none;
    EXPECT_EQ(reader.ReadTask(none), 0u);
}

TEST_F(TaskTest, ShowsOnTheDaysThatTheSettingsTell)
{
    const int today = Day("2026-03-15");
    const struct {
        const char *start, *due;
        bool complete;
        int active, overdue, undated, completed; // the settings
        const char *from, *single, *dueDay;
    } cases[] = {
        {"", "2026-03-20", false, 1, 1, 1, 1, "", "", "2026-03-20"},
        {"", "2026-03-10", false, 1, 1, 1, 1, "", "2026-03-15", "2026-03-10"},
        {"", "2026-03-10", false, 1, 0, 1, 1, "", "", "2026-03-10"},
        {"", "2026-03-10", true, 1, 1, 1, 1, "", "", "2026-03-10"},
        {"", "2026-03-10", true, 1, 1, 1, 0, "", "", ""},
        {"2026-03-12", "2026-03-20", false, 1, 1, 1, 1, "2026-03-12", "", "2026-03-20"},
        {"2026-03-12", "2026-03-20", false, 0, 1, 1, 1, "", "", "2026-03-20"},
        {"", "", false, 1, 1, 1, 1, "", "2026-03-15", ""},
        {"2026-03-12", "", false, 1, 1, 1, 1, "", "2026-03-15", ""},
        {"", "", false, 1, 1, 0, 1, "", "", ""},
    };
    const auto dayOf = [](const char* iso) { return *iso ? Day(iso) : CTaskDays::kNone; };
    for (const auto& c : cases) {
        auto& settings = g_Settings.Tasks;
        settings.IncludeActiveTasks = c.active;
        settings.IncludeOverdueOnToday = c.overdue;
        settings.IncludeUndatedOnToday = c.undated;
        settings.IncludeCompleted = c.completed;
        CCalendarTask task;
        task.Start = *c.start ? At(c.start) : NO_DATE;
        task.End = *c.due ? At(c.due) : NO_DATE;
        task.Complete = c.complete;
        const CTaskDays days = DaysOfTask(task, today);
        SCOPED_TRACE(testing::Message() << c.start << " to " << c.due);
        EXPECT_EQ(days.ActiveFrom, dayOf(c.from));
        EXPECT_EQ(days.Single, dayOf(c.single));
        EXPECT_EQ(days.Due, dayOf(c.dueDay));
    }
}

TEST_F(TaskTest, StandsOnEachOfItsDaysOnceAndInOrder)
{
    Write("later", {.Start = "2026-03-13", .Due = "2026-03-18"});
    Write("urgent", {.Due = "2026-03-16", .Priority = 2});
    Write("due", {.Due = "2026-03-16"});
    Write("overdue", {.Due = "2026-03-09"});
    Write("undated", {});
    LoadDay("2026-03-15");
    EXPECT_EQ(TasksOf("2026-03-09"), QStringList{"overdue"});
    EXPECT_EQ(TasksOf("2026-03-12"), QStringList());
    EXPECT_EQ(TasksOf("2026-03-15"), QStringList({"overdue", "later", "undated"}));
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList({"urgent", "due", "later"}));
    EXPECT_EQ(TasksOf("2026-03-18"), QStringList{"later"});
    EXPECT_EQ(m_store.FindDay(Day("2026-03-16"))->TaskCount, 3);
    LoadDay("2026-04-20"); // the days that come in by another load
    EXPECT_EQ(TasksOf("2026-03-16").size(), 3);
    SetNow("2026-03-16 00:30"); // what belongs to today goes along
    LoadDay("2026-03-16");
    EXPECT_EQ(TasksOf("2026-03-15"), QStringList{"later"});
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList({"overdue", "urgent", "due", "later", "undated"}));
    g_Settings.Tasks.IncludeInCalendar = 0;
    Fresh();
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList());
}

TEST_F(TaskTest, OldCompletedTasksAreLeftOutUntilTheyChange)
{
    const quint32 old = Write("old", {.Due = "2026-03-10", .Completed = "2026-01-31"});
    Write("kept", {.Due = "2026-03-10", .Completed = "2026-02-01"});
    Write("active", {.Due = "2026-03-10"});
    g_Settings.m_completedCutoff = At("2026-02-01");
    LoadDay("2026-03-10");
    EXPECT_EQ(TasksOf("2026-03-10"), QStringList({"active", "kept"}));
    std::unique_ptr<ITask> task;
    ASSERT_TRUE(m_app->GetTaskFromOid(old, task));
    task->put_Subject("a changed one");
    ASSERT_TRUE(task->Save());
    m_store.DrainNotices();
    EXPECT_EQ(TasksOf("2026-03-10").size(), 3);
    g_Settings.m_completedCutoff = NO_DATE;
    Fresh();
    EXPECT_EQ(TasksOf("2026-03-10"), QStringList{"active"});
}

TEST_F(TaskTest, ComparesByEachKeyBothWays)
{
    CCalendarTask a, b;
    a.Subject = "alpha";
    b.Subject = "BETA";
    a.Start = a.End = At("2026-03-01");
    b.Start = b.End = At("2026-03-02");
    a.Priority = 2;
    a.Complete = true;
    for (const int key : {0, 1, 2, 3, 4, 100, 101, 102, 103, 104}) {
        EXPECT_GT(a.CompareBy(b, key, 0), 0) << key; // the earlier, higher, complete one stands before
        EXPECT_LT(b.CompareBy(a, key, 0), 0) << key;
        EXPECT_LT(a.CompareBy(b, key, 1), 0) << key;
        EXPECT_EQ(a.CompareBy(a, key, 1), 0) << key;
    }
    for (const int key : {5, 105, 106, 107, -1})
        EXPECT_EQ(a.CompareBy(b, key, 0), 0) << key;
    b.Start = b.End = a.Start;
    b.Priority = a.Priority;
    g_Settings.Tasks.Sort3 = 7;
    EXPECT_GT(a.Compare(b), 0); // equal in all levels: by the subject
}

TEST_F(TaskTest, GroupsFollowTheSortSettings)
{
    Write("b", {.Due = "2026-03-10", .Priority = 2, .Categories = "Work, Home"});
    Write("a", {.Due = "2026-03-20", .Priority = 0, .Completed = "2026-03-14"});
    Write("c", {.Due = "2026-03-05", .Categories = "Work"});
    const struct {
        int sort, direction;
        QStringList groups;
    } cases[] = {
        {100, 0, {": c b a (3)"}},
        {104, 1, {": c b a (3)"}},
        {104, 0, {": a b c (3)"}},
        {105, 0, {"Home: b (1)", "Work: b c (2)", "No category: a (1)"}},
        {105, 1, {"No category: a (1)", "Work: b c (2)", "Home: b (1)"}},
        {106, 0, {"Completed tasks: a (1)", "Active tasks: b c (2)"}},
        {107, 0, {"Low Priority: a (1)", "Normal Priority: c (1)", "High Priority: b (1)"}},
        {107, 1, {"High Priority: b (1)", "Normal Priority: c (1)", "Low Priority: a (1)"}},
    };
    OpenStore();
    for (const auto& c : cases) {
        g_Settings.TasksView.Sort1 = c.sort;
        g_Settings.TasksView.Sort1Direction = c.direction;
        m_store.RebuildTaskGroups();
        EXPECT_EQ(Groups(), c.groups) << c.sort << " " << c.direction;
    }
}

TEST_F(TaskTest, ItemsToViewIsOneValueNotBits)
{
    const struct {
        const char* due;
        bool complete;
        std::vector<int> matches;
    } cases[] = {
        {"2026-03-14", false, {255, 1, 2}},
        {"2026-03-15", true, {255, 4, 8, 16, 32, 64}},
        {"2026-03-21", false, {255, 2, 16, 32, 64}},
        {"2026-03-22", false, {255, 2, 32, 64}},
        {"2026-04-13", false, {255, 2, 32, 64}},
        {"2026-04-14", false, {255, 2, 64}},
        {"", false, {255, 2, 64, 128}},
    };
    for (const auto& c : cases) {
        CCalendarTask task;
        task.End = *c.due ? At(c.due) : NO_DATE;
        task.Complete = c.complete;
        for (const int value : {255, 1, 2, 4, 8, 16, 32, 64, 128, 3, 6, 0}) {
            g_Settings.TasksView.ItemsToView = value;
            const bool wanted = std::count(c.matches.begin(), c.matches.end(), value) != 0;
            EXPECT_EQ(MatchesItemsToView(task), wanted) << c.due << " " << value;
        }
    }
    Write("overdue", {.Due = "2026-03-14"});
    Write("undated", {});
    g_Settings.TasksView.ItemsToView = 255;
    EXPECT_EQ(Groups(), QStringList{": overdue undated (2)"});
    g_Settings.TasksView.ItemsToView = 1;
    m_store.RefreshTaskMatches();
    EXPECT_EQ(Groups(), QStringList{": overdue undated (1)"});
}

TEST_F(TaskTest, NoticesMoveATaskOnDaysAndInGroups)
{
    const quint32 id = Write("one", {.Due = "2026-03-16"});
    Write("two", {.Due = "2026-03-17"});
    LoadDay("2026-03-15");
    m_store.DrainNotices();
    Groups();
    constexpr int kAll = kMaskDaily | kMaskListWeek | kMaskMonth | kMaskTasks | kMaskSearch;
    std::unique_ptr<ITask> task;
    ASSERT_TRUE(m_app->GetTaskFromOid(id, task));
    task->put_DueDate(At("2026-03-18"));
    ASSERT_TRUE(task->Save());
    const CPimStore::CDrain drain = m_store.DrainNotices();
    EXPECT_EQ(drain.Mask, kAll);
    EXPECT_EQ(drain.LastParam, 2);
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList());
    EXPECT_EQ(TasksOf("2026-03-18"), QStringList{"one"});
    EXPECT_EQ(m_store.FindDay(Day("2026-03-16"))->TaskCount, 0);
    EXPECT_EQ(Groups(), QStringList{": two one (2)"});
    task->put_DueDate(At("2027-03-18"));
    ASSERT_TRUE(task->Save());
    EXPECT_EQ(m_store.DrainNotices().Mask, kAll);
    EXPECT_EQ(TasksOf("2026-03-18"), QStringList());
    task->put_DueDate(At("2027-03-19"));
    ASSERT_TRUE(task->Save());
    EXPECT_EQ(m_store.DrainNotices().Mask, kMaskTasks | kMaskSearch); // on no cached day
    ASSERT_TRUE(task->Delete());
    m_store.DrainNotices();
    EXPECT_EQ(Groups(), QStringList{": two (1)"});
}

TEST_F(TaskTest, TogglingClearsTheReminderAndMovesASeries)
{
    CCalendarTask task;
    task.Subject = "new";
    task.Start = At("2026-03-14");
    task.End = At("2026-03-16");
    task.ReminderSet = true;
    task.ReminderTime = At("2026-03-16 08:00");
    task.Priority = 2;
    LoadDay("2026-03-15");
    ASSERT_TRUE(m_store.SaveTask(m_app.get(), task, "note", kPresetNone, nullptr));
    EXPECT_FALSE(m_store.SaveTask(nullptr, task, "note", kPresetNone, nullptr));
    m_store.DrainNotices();
    ASSERT_EQ(TasksOf("2026-03-16"), QStringList{"new"});
    const quint32 id = m_store.FindDay(Day("2026-03-16"))->Tasks[0]->ItemId;
    const auto shown = [&](const char* day) { return m_store.FindDay(Day(day))->Tasks[0].get(); };
    EXPECT_TRUE(shown("2026-03-16")->ReminderSet);
    ASSERT_TRUE(m_store.ToggleTaskComplete(*m_app, id));
    m_store.DrainNotices();
    EXPECT_TRUE(shown("2026-03-16")->Complete);
    EXPECT_FALSE(shown("2026-03-16")->ReminderSet);
    ASSERT_TRUE(m_store.ToggleTaskComplete(*m_app, id));
    std::unique_ptr<ITask> model;
    ASSERT_TRUE(m_app->GetTaskFromOid(id, model));
    model->GetRecurrencePattern()->put_Occurrences(2); // weekly
    ASSERT_TRUE(model->Save());
    ASSERT_TRUE(m_store.ToggleTaskComplete(*m_app, id));
    m_store.DrainNotices();
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList());
    EXPECT_FALSE(shown("2026-03-23")->Complete);
    CCalendarTask read;
    ASSERT_TRUE(m_app->GetTaskFromOid(id, model));
    m_store.ReadTaskFromModel(*model, read);
    EXPECT_EQ(Iso(read.Start), "2026-03-21 00:00");
    EXPECT_TRUE(read.IsRecurring() && read.HasNote);
    EXPECT_FALSE(m_store.ToggleTaskComplete(*m_app, kTaskTag + 99));
}

TEST_F(TaskTest, DeletingSkipsTheDateOfASeriesAndDuplicatingKeepsTheNote)
{
    LoadDay("2026-03-15");
    const quint32 id = Write("plain", {.Due = "2026-03-16"});
    std::unique_ptr<ITask> task;
    ASSERT_TRUE(m_app->GetTaskFromOid(id, task));
    task->put_Body("note");
    task->GetRecurrencePattern()->put_Occurrences(2);
    ASSERT_TRUE(task->Save());
    ASSERT_TRUE(m_store.DuplicateItem(*m_app, id));
    m_store.DrainNotices();
    EXPECT_EQ(TasksOf("2026-03-16"), QStringList({"plain", "plain"}));
    EXPECT_TRUE(m_store.FindDay(Day("2026-03-16"))->Tasks[1]->HasNote);
    ASSERT_TRUE(m_store.DeleteTask(*m_app, id, nullptr));
    m_store.DrainNotices();
    EXPECT_EQ(TasksOf("2026-03-23"), QStringList{"plain"});
    ASSERT_TRUE(m_store.DeleteTask(*m_app, id, nullptr)); // it was the last date
    m_store.DrainNotices();
    EXPECT_EQ(TasksOf("2026-03-23"), QStringList());
    EXPECT_FALSE(m_store.DeleteTask(*m_app, id, nullptr));
}

TEST_F(TaskTest, SortingManyIsTheOrderOfComparing)
{
    const QStringList subjects = {"b", "B2", "a", "abcde", "ABCDF", "", "\u00e4", "Abcd", "Sixteen letters a", "sixteen Letters A2", "\U0001F600", "\uff21"};
    unsigned state = 1;
    const auto next = [&state](unsigned below) { return (state = state * 1103515245 + 12345) / 65536 % below; };
    std::vector<CCalendarTask> tasks(200);
    for (const bool twoUnits : {false, true}) {
        for (CCalendarTask& task : tasks) {
            task.Subject = subjects[next(twoUnits ? 12 : 10)];
            task.End = next(3) == 0 ? NO_DATE : 46000 + next(4);
            task.Start = next(2) == 0 ? NO_DATE : 45990 + next(3);
            task.Priority = int(next(3));
            task.Complete = next(2) == 0;
        }
        for (const auto& [key1, key2, direction] :
             {std::array{105, 0, 0}, {106, 1, 1}, {107, 3, 0}, {0, 2, 1}, {4, 0, 1}, {2, 104, 0}, {103, 102, 1}}) {
            g_Settings.TasksView.Sort1 = key1;
            g_Settings.TasksView.Sort2 = key2;
            g_Settings.TasksView.Sort2Direction = direction;
            std::vector<const CTask*> sorted, expected;
            for (const CCalendarTask& task : tasks)
                sorted.push_back(&task);
            expected = sorted;
            SortForGroups(sorted);
            std::stable_sort(expected.begin(), expected.end(),
                             [](const auto* a, const auto* b) { return CompareInGroups(*a, *b) > 0; });
            EXPECT_EQ(sorted, expected) << key1 << " " << key2 << " " << direction;
        }
    }
}
