#include "fixture.h"

#include "records/property_numbers.h"

class TaskModel : public ObjectModel
{
protected:
    std::unique_ptr<ITask> GetTask(quint32 itemId)
    {
        std::unique_ptr<ITask> task;
        const CStatus status = m_app->GetTaskFromOid(itemId, task);
        EXPECT_TRUE(status) << status.Text().toStdString();
        return task;
    }
    CReadRecord ReadTask(const ITask& task)
    {
        CReadRecord record;
        EXPECT_TRUE(m_volume->ReadWholeRecord(kTasksDatabase, task.RecordOid(), record.Rows));
        return record;
    }
    std::unique_ptr<ITask> Task(const char* start, const char* due)
    {
        std::unique_ptr<ITask> task = m_app->CreateTask();
        task->put_Subject("task");
        task->put_StartDate(*start ? At(start) : NO_DATE);
        task->put_DueDate(*due ? At(due) : NO_DATE);
        return task;
    }
    // Every second day, `count` times from the task's date on.
    std::unique_ptr<ITask> Series(const char* start, const char* due, int count)
    {
        std::unique_ptr<ITask> task = Task(start, due);
        IRecurrencePattern* pattern = task->GetRecurrencePattern();
        pattern->put_RecurrenceType(OlRecurs::Daily);
        pattern->put_Interval(2);
        pattern->put_Occurrences(count);
        EXPECT_TRUE(task->Save());
        return task;
    }
    static QString State(const ITask& task)
    {
        return IsoOf(task.get_StartDate()) + " to " + IsoOf(task.get_DueDate()) +
               (task.get_Complete() ? " complete" : " active");
    }
};

TEST_F(TaskModel, WhatWasPutComesBackInANewProgram)
{
    auto task = Task("2026-07-01", "2026-07-03");
    task->put_Body("note");
    task->put_Importance(2);
    task->put_Sensitivity(2);
    task->put_ReminderSet(true);
    task->put_ReminderTime(At("2026-07-02 09:30"));
    task->put_Categories("Work, Home");
    ASSERT_TRUE(task->Save());
    const quint32 id = task->get_Oid();
    EXPECT_EQ(id, kTaskTag + 1);
    Reopen();
    const auto read = GetTask(id);
    EXPECT_EQ(read->get_Subject(), "task");
    EXPECT_EQ(State(*read), "2026-07-01 to 2026-07-03 active");
    EXPECT_EQ(read->get_Body(), "note");
    EXPECT_EQ(read->get_Importance(), 2);
    EXPECT_EQ(read->get_Sensitivity(), 2);
    EXPECT_TRUE(read->get_ReminderSet());
    EXPECT_EQ(IsoOf(read->get_ReminderTime()), "2026-07-02 09:30");
    EXPECT_EQ(read->get_Categories(), "Work, Home");
    EXPECT_FALSE(read->get_IsRecurring());
    // Dates stand as they are, the reminder in UTC.
    EXPECT_EQ(ReadTask(*read).Number(Prop::TaskDue), FileTimeOfDate(At("2026-07-03")));
    EXPECT_EQ(ReadTask(*read).Number(Prop::TaskReminderTime), FileTimeOfDate(At("2026-07-02 07:30")));
}

TEST_F(TaskModel, DatesAreWholeDaysOrNone)
{
    const struct {
        const char *start, *due, *state;
        bool saved;
    } cases[] = {
        {"", "", "none to none active", true},
        {"", "2026-07-03 15:00", "none to 2026-07-03 active", true},
        {"2026-07-03 23:59", "", "2026-07-03 to none active", true},
        {"1600-01-01", "", "1600-01-01 to none active", false},
    };
    for (const auto& c : cases) {
        auto task = Task(c.start, c.due);
        EXPECT_EQ(task->Save().IsOk(), c.saved) << c.state;
        EXPECT_EQ(State(*task), c.state);
        if (c.saved) {
            EXPECT_EQ(State(*GetTask(task->get_Oid())), c.state);
            EXPECT_EQ(ReadTask(*task).Has(Prop::TaskDue), *c.due != 0);
        } else {
            EXPECT_EQ(task->RecordOid(), 0u);
        }
    }
}

TEST_F(TaskModel, CompletingKeepsTheMomentAndActivatingTakesItAway)
{
    auto task = Task("", "2026-07-03");
    ASSERT_TRUE(task->Save());
    Notices();
    task->put_Complete(true);
    ASSERT_TRUE(task->Save());
    EXPECT_EQ(Notices(), "1 1030");
    auto read = GetTask(task->get_Oid());
    EXPECT_TRUE(read->get_Complete());
    EXPECT_EQ(IsoOf(read->get_DateCompleted()), "2026-01-10 12:00");
    read->put_Subject("later"); // what was not put stays
    ASSERT_TRUE(read->Save());
    read = GetTask(task->get_Oid());
    EXPECT_EQ(IsoOf(read->get_DateCompleted()), "2026-01-10 12:00");
    read->put_Complete(false);
    ASSERT_TRUE(read->Save());
    EXPECT_FALSE(ReadTask(*read).Has(Prop::TaskCompletedDate));
    EXPECT_FALSE(GetTask(task->get_Oid())->get_Complete());
}

TEST_F(TaskModel, ACompletedSeriesGoesOnToItsNextDate)
{
    const struct {
        const char *start, *due;
        const char* states[3]; // after each completion
    } cases[] = {
        {"2026-07-01",
         "2026-07-02",
         {"2026-07-03 to 2026-07-04 active", "2026-07-05 to 2026-07-06 active",
          "2026-07-05 to 2026-07-06 complete"}},
        {"",
         "2026-07-02",
         {"none to 2026-07-04 active", "none to 2026-07-06 active", "none to 2026-07-06 complete"}},
        {"2026-07-01",
         "",
         {"2026-07-03 to none active", "2026-07-05 to none active", "2026-07-05 to none complete"}},
        {"", "", {"none to 2026-01-12 active", "none to 2026-01-14 active", "none to 2026-01-14 complete"}},
    };
    for (const auto& c : cases) {
        const quint32 id = Series(c.start, c.due, 3)->get_Oid();
        for (const char* state : c.states) {
            auto task = GetTask(id);
            task->put_Complete(true);
            task->put_ReminderSet(false);
            ASSERT_TRUE(task->Save());
            EXPECT_EQ(State(*task), state);
            EXPECT_EQ(State(*GetTask(id)), state);
            EXPECT_TRUE(GetTask(id)->get_IsRecurring());
        }
    }
}

TEST_F(TaskModel, SkippingMovesOnlyWhileThereIsADate)
{
    const quint32 id = Series("", "2026-07-02", 2)->get_Oid();
    auto task = GetTask(id);
    task->put_ReminderSet(true);
    task->put_ReminderTime(At("2026-07-02 08:00"));
    ASSERT_TRUE(task->Save());
    ASSERT_TRUE(GetTask(id)->SkipRecurrence());
    EXPECT_EQ(State(*GetTask(id)), "none to 2026-07-04 active");
    EXPECT_EQ(IsoOf(GetTask(id)->get_ReminderTime()), "2026-07-04 08:00");
    EXPECT_EQ(GetTask(id)->SkipRecurrence().Kind(), StatusKind::NotFound);
    EXPECT_EQ(State(*GetTask(id)), "none to 2026-07-04 active");
    const auto plain = Task("", "2026-07-02");
    ASSERT_TRUE(plain->Save());
    EXPECT_EQ(plain->SkipRecurrence().Kind(), StatusKind::NotFound);
}

TEST_F(TaskModel, DeletedDaysOfTheSeriesAreSkipped)
{
    auto task = Series("", "2026-07-02", 4);
    CRecurrencePattern pattern = task->GetRecurrencePattern()->Pattern();
    CRecurrenceException deleted;
    deleted.OriginalDay = DayNumber(At("2026-07-04"));
    pattern.Exceptions.push_back(deleted);
    task->GetRecurrencePattern()->put_Pattern(pattern);
    ASSERT_TRUE(task->Save());
    ASSERT_TRUE(GetTask(task->get_Oid())->SkipRecurrence());
    EXPECT_EQ(State(*GetTask(task->get_Oid())), "none to 2026-07-06 active");
}

TEST_F(TaskModel, AFailedSaveLeavesRecordAndObject)
{
    const quint32 id = Series("", "2026-07-02", 5)->get_Oid();
    Notices();
    for (int n = 1;; ++n) {
        auto task = GetTask(id);
        task->put_Complete(true);
        FailVolumeWrite(n);
        const CStatus status = task->Save();
        if (!FailVolumeWrite(0)) {
            EXPECT_TRUE(status);
            EXPECT_GT(n, 1);
            break;
        }
        EXPECT_FALSE(status);
        EXPECT_EQ(State(*task), "none to 2026-07-02 complete");
        EXPECT_EQ(State(*GetTask(id)), "none to 2026-07-02 active");
        EXPECT_EQ(Notices(), "");
    }
    EXPECT_EQ(State(*GetTask(id)), "none to 2026-07-04 active");
}

TEST_F(TaskModel, ClearingThePatternLeavesAPlainTask)
{
    auto task = Series("", "2026-07-02", 5);
    std::unique_ptr<IAppointment> occurrence;
    EXPECT_FALSE(task->GetRecurrencePattern()->GetOccurrence(At("2026-07-04"), occurrence));
    task->ClearRecurrencePattern();
    ASSERT_TRUE(task->Save());
    const CReadRecord record = ReadTask(*task);
    EXPECT_FALSE(record.Has(Prop::Recurring) || record.Has(Prop::TaskRecurrence) ||
                 record.Has(Prop::TaskZone));
    EXPECT_EQ(State(*GetTask(task->get_Oid())), "none to 2026-07-02 active");
}

TEST_F(TaskModel, ACopyIsOfItsOwnAndDeletingTakesCategoriesAlong)
{
    auto task = Series("2026-07-01", "2026-07-02", 5);
    CForeignData foreign;
    foreign.Uid = "one";
    task->put_Foreign(foreign);
    task->put_Body("stays behind");
    task->put_Categories("Work");
    ASSERT_TRUE(task->Save());
    ASSERT_EQ(m_app->FindTasksByUid("one").size(), 1u);
    EXPECT_EQ(m_app->FindTasksByUid("one")[0].ItemId, task->get_Oid());
    EXPECT_TRUE(m_app->FindByUid("one").empty());
    EXPECT_TRUE(m_app->HasAnyUid());
    const auto copy = task->Copy();
    ASSERT_TRUE(copy->Save());
    ASSERT_TRUE(task->Delete());
    std::unique_ptr<ITask> gone;
    EXPECT_EQ(m_app->GetTaskFromOid(task->get_Oid(), gone).Kind(), StatusKind::NotFound);
    const auto read = GetTask(copy->get_Oid());
    EXPECT_EQ(State(*read), "2026-07-01 to 2026-07-02 active");
    EXPECT_EQ(read->get_Categories(), "Work");
    EXPECT_EQ(read->get_Body(), "");
    EXPECT_EQ(read->Foreign().Uid, copy->Foreign().Uid);
    EXPECT_NE(read->Foreign().Uid, "one");
    EXPECT_TRUE(read->get_IsRecurring());
    EXPECT_EQ(m_volume->RecordCount(kCategoryAssocDatabase), 1);
    EXPECT_EQ(m_app->CreateTask()->Delete().Kind(), StatusKind::Invalid);
}
