// Tasks of a file: what their records hold, and which is which in a second import.
#include "import_fixture.h"

#include "platform/locale.h"
#include "records/property_numbers.h"

namespace
{
class ImportTasks : public ImportTest
{
protected:
    std::unique_ptr<ITask> OpenTask(const std::string& uid, size_t index = 0)
    {
        const std::vector<CForeignKey> keys = m_app->FindTasksByUid(QString::fromStdString(uid));
        std::unique_ptr<ITask> task;
        EXPECT_LT(index, keys.size()) << uid;
        if (index < keys.size()) {
            EXPECT_TRUE(m_app->GetTaskFromOid(keys[index].ItemId, task).IsOk());
        }
        return task;
    }
    static std::string Date(DATE date)
    {
        if (date == NO_DATE)
            return "-";
        const SystemTime t = SystemTimeOf(date);
        const QString day = QString::asprintf("%04d-%02d-%02d", t.wYear, t.wMonth, t.wDay);
        const QString time = QString::asprintf(" %02d:%02d", t.wHour, t.wMinute);
        return (t.wHour || t.wMinute ? day + time : day).toStdString();
    }
    // "start due state completed priority reminder kept"
    std::string Text(const std::string& uid)
    {
        const auto task = OpenTask(uid);
        if (!task)
            return {};
        std::string kept = task->Foreign().Text.toStdString();
        std::replace(kept.begin(), kept.end(), '\n', ',');
        return Date(task->get_StartDate()) + " " + Date(task->get_DueDate()) +
               (task->get_Complete() ? " complete " : " active ") + Date(task->get_DateCompleted()) + " " +
               std::to_string(task->get_Importance()) + " " +
               (task->get_ReminderSet() ? Date(task->get_ReminderTime()) : "-") + " " + kept;
    }
    static std::string Todo(const std::string& lines, const std::string& uid = "t")
    {
        return "BEGIN:VTODO\nUID:" + uid + "\n" + lines + "END:VTODO\n";
    }
    qint64 TaskCount() { return m_volume->RecordCount(kTasksDatabase); }
};
} // namespace

TEST_F(ImportTasks, DatesStateAndPriority)
{
    const struct {
        const char *lines, *text;
    } cases[] = {
        {"SUMMARY:s\n", "- - active - 1 - "},
        {"DUE;VALUE=DATE:20260310\n", "- 2026-03-10 active - 1 - "},
        {"DTSTART;VALUE=DATE:20260301\nDUE;VALUE=DATE:20260310\n", "2026-03-01 2026-03-10 active - 1 - "},
        {"DUE:20260310T233000Z\n", "- 2026-03-11 active - 1 - DUE:20260310T233000Z,"}, // the day in Berlin
        {"DTSTART:20260310T100000\nDURATION:P2D\n",
         "2026-03-10 2026-03-12 active - 1 - DTSTART:20260310T100000,DURATION:P2D,"},
        {"STATUS:COMPLETED\nPRIORITY:1\n", "- - complete - 2 - "},
        {"COMPLETED:20260309T113000Z\nSTATUS:NEEDS-ACTION\nPRIORITY:9\n",
         "- - complete 2026-03-09 12:30 0 - "},
        {"STATUS:IN-PROCESS\nPERCENT-COMPLETE:40\nPRIORITY:3\n",
         "- - active - 2 - STATUS:IN-PROCESS,PERCENT-COMPLETE:40,PRIORITY:3,"},
        {"PRIORITY:5\n", "- - active - 1 - "},
        {"PRIORITY:0\n", "- - active - 1 - PRIORITY:0,"},
        {"DUE:20260310T100000\nBEGIN:VALARM\nTRIGGER;RELATED=END:-PT30M\nEND:VALARM\n",
         "- 2026-03-10 active - 1 2026-03-10 09:30 BEGIN:VALARM,TRIGGER;RELATED=END:-PT30M,END:VALARM,"
         "DUE:20260310T100000,"},
        {"BEGIN:VALARM\nTRIGGER;VALUE=DATE-TIME:20260310T080000Z\nEND:VALARM\n",
         "- - active - 1 2026-03-10 09:00 BEGIN:VALARM,TRIGGER;VALUE=DATE-TIME:20260310T080000Z,END:VALARM,"},
    };
    for (const auto& c : cases) {
        FreshVolume();
        EXPECT_EQ(Import(Todo(c.lines)).Counts(), "1 created 0 updated 0 unchanged 0 left out") << c.lines;
        EXPECT_EQ(Text("t"), c.text) << c.lines;
    }
}

TEST_F(ImportTasks, WhatCannotBeReadIsToldAndTheTaskArrives)
{
    const struct {
        const char *lines, *told;
    } cases[] = {
        {"DUE:soon\n", "a date of the task that cannot be read or held"},
        {"DTSTART:99991231T000000\n", "a date of the task that cannot be read or held"},
        {"RRULE:FREQ=DAILY\n", "the rule of a task without a date"},
        {"DTSTART:20260310\nRRULE:FREQ=HOURLY\n", "the rule is not used"},
    };
    for (const auto& c : cases) {
        FreshVolume();
        const CImported result = Import(Todo(c.lines));
        EXPECT_EQ(result.Counts(), "1 created 0 updated 0 unchanged 1 left out") << c.lines;
        ASSERT_FALSE(result.Told.empty()) << c.lines;
        EXPECT_NE(result.Told[0].find(c.told), std::string::npos) << result.Told[0];
        EXPECT_EQ(TaskCount(), 1);
    }
}

TEST_F(ImportTasks, ARuleOfOnePatternRecursAnotherIsKept)
{
    const CImported one = Import(Todo("DTSTART:20260310T100000\nDUE:20260312T100000\n"
                                      "RRULE:FREQ=DAILY;INTERVAL=2;COUNT=4\nEXDATE:20260312T100000\n"));
    EXPECT_EQ(one.LeftOut, 0);
    auto task = OpenTask("t");
    ASSERT_TRUE(task->get_IsRecurring());
    ASSERT_TRUE(task->SkipRecurrence().IsOk()); // over the excluded day
    EXPECT_EQ(Text("t").substr(0, 21), "2026-03-14 2026-03-16");
    ASSERT_TRUE(OpenTask("t")->SkipRecurrence().IsOk());
    EXPECT_EQ(OpenTask("t")->SkipRecurrence().Kind(), StatusKind::NotFound);

    const CImported other =
        Import(Todo("DTSTART;VALUE=DATE:20260310\nRRULE:FREQ=YEARLY;BYYEARDAY=69\n", "o"));
    EXPECT_EQ(other.Created, 1);
    EXPECT_EQ(other.LeftOut, 0);
    ASSERT_EQ(other.Told.size(), 1u);
    EXPECT_NE(other.Told[0].find("no pattern holds it"), std::string::npos);
    task = OpenTask("o");
    EXPECT_FALSE(task->get_IsRecurring());
    EXPECT_EQ(task->Foreign().SourceRule, "FREQ=YEARLY;BYYEARDAY=69");
    EXPECT_EQ(Text("o").substr(0, 12), "2026-03-10 -");
}

TEST_F(ImportTasks, IdentityIsThatOfEventsButNotTheirs)
{
    const std::string event = "BEGIN:VEVENT\nUID:t\nDTSTART:20260310T100000\nEND:VEVENT\n";
    const std::string file = event + Todo("SUMMARY:a\n") + Todo("SUMMARY:b\n");
    EXPECT_EQ(Import(file).Counts(), "3 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(TaskCount(), 2);
    EXPECT_EQ(RecordCount(), 1);
    EXPECT_EQ(Import(file).Counts(), "0 created 0 updated 3 unchanged 0 left out");
    auto task = OpenTask("t");
    task->put_Complete(true); // the owner's doing stands while the file says nothing new
    ASSERT_TRUE(task->Save().IsOk());
    EXPECT_EQ(Import(file).Unchanged, 3);
    EXPECT_TRUE(OpenTask("t")->get_Complete());
    EXPECT_EQ(Import(Todo("SUMMARY:a2\n")).Counts(), "0 created 1 updated 0 unchanged 0 left out");
    EXPECT_FALSE(OpenTask("t")->get_Complete());
    EXPECT_EQ(Import(Todo("SEQUENCE:1\nSUMMARY:c\n")).Counts(), "0 created 1 updated 0 unchanged 0 left out");
    EXPECT_EQ(TaskCount(), 1);
    EXPECT_EQ(Import(Todo("SUMMARY:a\n")).Unchanged, 1); // an older one
    EXPECT_EQ(OpenTask("t")->get_Subject(), "c");
    EXPECT_EQ(Import(Todo("RECURRENCE-ID:20260310\n", "u")).LeftOut, 1);
    EXPECT_EQ(Import("METHOD:CANCEL\n" + Todo("SEQUENCE:1\nSUMMARY:d\n")).Updated, 1);
    EXPECT_EQ(OpenTask("t")->get_Subject(), "Cancelled: d");
}

TEST_F(ImportTasks, AZoneThatComesLaterCounts)
{
    const std::string zone = "BEGIN:VTIMEZONE\nTZID:Far\nBEGIN:STANDARD\nDTSTART:16010101T000000\n"
                             "TZOFFSETFROM:-1000\nTZOFFSETTO:-1000\nEND:STANDARD\nEND:VTIMEZONE\n";
    EXPECT_EQ(Import(Todo("DUE;TZID=Far:20260310T200000\n") + zone).Counts(),
              "1 created 0 updated 0 unchanged 0 left out");
    EXPECT_EQ(Text("t").substr(0, 12), "- 2026-03-11");
}
