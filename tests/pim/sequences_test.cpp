// Random work through the object model, held after each step against a plain calendar: by the
// living cache, which hears of it by notices, and by a fresh load of the same days.
#include "pim_fixture.h"
#include "sequence_model.h"

#include <QFileInfo>
#include <random>

namespace
{
constexpr int kSequences = 1000; // of each parameter
constexpr int kSteps = 25;
constexpr const char* kCategories[] = {"Home", "Work"};
constexpr int kBatch = 50; // sequences on one volume

QString MemoryFolder()
{
    const QString shared = QStringLiteral("/dev/shm");
    const bool there = QFileInfo(shared).isWritable();
    return (there ? shared : QDir::tempPath()) + QStringLiteral("/tessera_sequences_XXXXXX");
}

int MinuteOf(DATE date)
{
    return int(std::llround(date * 1440.0));
}

DATE DateOfMinute(int minute)
{
    return minute / 1440 + minute % 1440 / 1440.0;
}

std::string Told(const CDayLines& lines)
{
    QString told;
    for (const auto& [day, shown] : lines) {
        told += Iso(day).left(10) + u':';
        for (const auto& [start, end, subject] : shown)
            told += QString(" [%1 to %2 %3]").arg(Iso(DateOfMinute(start)), Iso(DateOfMinute(end)), subject);
        told += u'\n';
    }
    return told.toStdString();
}

class Sequences : public PimTest, public testing::WithParamInterface<int>
{
protected:
    int Pick(int low, int high) { return low + int(m_random() % unsigned(high - low + 1)); }
    bool OneIn(int n) { return Pick(1, n) == 1; }
    QString NewSubject() { return QString("s%1").arg(++m_subjects); }
    // No hour that a change of the clocks skips or doubles.
    int PickMinuteOfDay() { return Pick(16, 90) * 15; }
    // One that no other occurrence begins at: of equal starts of one item one copy shows.
    int PickOddMinute() { return PickMinuteOfDay() + Pick(1, 14); }
    int PickDay() { return Pick(m_first, m_last); }

    void StartVolume();
    void RunSequence();
    void Step();
    void CheckAll();
    void CheckDays(CPimStore& store, const char* which);
    void CheckConflicts(const CDayItems& day);
    void CheckOccurrence();

    CPlainRule PickRule(int first);
    static void PutRule(IRecurrencePattern& pattern, const CPlainRule& rule);
    void CreateAppointment();
    void ChangeAppointment(CPlainAppointment& item);
    void ChangeOccurrence(CPlainAppointment& item);
    void CreateTask();
    void ChangeTask(CPlainTask& task);
    void ChangeFilter();
    QString PickCategory() { return OneIn(3) ? QString() : QString::fromLatin1(kCategories[Pick(0, 1)]); }
    std::unique_ptr<IAppointment> Get(const CPlainAppointment& item);
    std::unique_ptr<ITask> Get(const CPlainTask& task);
    void Log(const QString& text) { m_log += text + u'\n'; }

    std::mt19937 m_random;
    QTemporaryDir m_memory{MemoryFolder()};
    std::unique_ptr<IPOutlookApp> m_app;
    CPlainCalendar m_plain;
    int m_first = 0, m_last = 0, m_limit = 0, m_today = 0;
    int m_subjects = 0, m_volumes = 0;
    QString m_log;
};
} // namespace

// ---- frame

void Sequences::StartVolume()
{
    static constexpr const char* kZones[] = {"Europe/Berlin", "America/New_York", "UTC", "Australia/Sydney",
                                             "Asia/Kolkata"};
    UseZone(kZones[m_volumes % int(std::size(kZones))]);
    SetNow("2026-03-15 09:00");
    m_store.Shutdown();
    m_app.reset();
    m_volume.reset();
    const QString path = m_memory.filePath(QStringLiteral("%1.vol").arg(++m_volumes));
    ASSERT_TRUE(CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::Create, m_volume));
    OpenStore();
    LoadDay("2026-03-15");
    m_store.GetTaskGroups();
    m_today = Day("2026-03-15");
    m_first = Day("2026-03-01");
    m_last = Day("2026-03-31");
    ASSERT_TRUE(m_store.FindDay(m_first) && m_store.FindDay(m_last));
    m_limit = m_last + 40;
    m_app = MakePOutlookApp(m_volume);
    ASSERT_TRUE(m_app->Logon());
    auto item = m_app->CreateAppointment(); // makes the categories
    item->put_Start(m_today);
    item->put_Categories("Home, Work");
    ASSERT_TRUE(item->Save() && item->Delete());
    m_store.DrainNotices();
}

void Sequences::RunSequence()
{
    m_log.clear();
    m_app = MakePOutlookApp(m_volume);
    ASSERT_TRUE(m_app->Logon());
    for (int i = 0; i < kSteps && !HasFailure(); ++i) {
        Step();
        CheckAll();
    }
    // All goes again, so that the volume serves many sequences.
    for (const CPlainAppointment& item : m_plain.Appointments)
        ASSERT_TRUE(Get(item)->Delete());
    for (const CPlainTask& task : m_plain.Tasks)
        ASSERT_TRUE(Get(task)->Delete());
    m_plain.Appointments.clear();
    m_plain.Tasks.clear();
    CheckAll();
}

void Sequences::Step()
{
    const size_t appointments = m_plain.Appointments.size(), tasks = m_plain.Tasks.size();
    const int what = Pick(0, 9);
    if (OneIn(15))
        return ChangeFilter();
    if (what <= 1 || (appointments == 0 && what <= 6))
        return CreateAppointment();
    if (what == 2 || tasks == 0)
        return CreateTask();
    if (what >= 7)
        return ChangeTask(m_plain.Tasks[size_t(Pick(0, int(tasks) - 1))]);
    // Often the newest, so that much happens to one.
    CPlainAppointment& item =
        m_plain.Appointments[size_t(OneIn(2) ? int(appointments) - 1 : Pick(0, int(appointments) - 1))];
    if (item.Rule && what >= 4)
        ChangeOccurrence(item);
    else
        ChangeAppointment(item);
}

void Sequences::ChangeFilter()
{
    m_plain.Wanted = PickCategory();
    Log("filter " + m_plain.Wanted);
    g_Settings.m_currentFilterIndex = -1;
    g_Settings.m_activeFilter.Clear();
    if (!m_plain.Wanted.isEmpty()) {
        const CCategory* category = m_store.Categories().FindByName(m_plain.Wanted);
        ASSERT_TRUE(category);
        g_Settings.m_activeFilter.IncludeIds.insert(category->Id);
    }
    m_store.ReapplyFilter();
}

std::unique_ptr<IAppointment> Sequences::Get(const CPlainAppointment& item)
{
    std::unique_ptr<IAppointment> found;
    EXPECT_TRUE(m_app->GetAppointmentFromOid(item.Id, found));
    return found;
}

std::unique_ptr<ITask> Sequences::Get(const CPlainTask& task)
{
    std::unique_ptr<ITask> found;
    EXPECT_TRUE(m_app->GetTaskFromOid(task.Id, found));
    return found;
}

// ---- appointments

CPlainRule Sequences::PickRule(int first)
{
    CPlainRule rule;
    rule.What = CPlainRule::Kind(OneIn(2) ? Pick(0, 1) : Pick(0, 4));
    rule.First = first;
    rule.Interval = rule.What == CPlainRule::Yearly ? 12 : Pick(1, 3);
    rule.Mask = rule.What == CPlainRule::MonthlyNth ? 1 << Pick(0, 6) : Pick(1, 127);
    rule.DayOfMonth = OneIn(3) ? 31 : Pick(1, 31);
    rule.Instance = Pick(1, 5);
    if (OneIn(3))
        rule.Until = first + Pick(0, 50);
    else if (OneIn(3))
        rule.Count = Pick(1, 12);
    return rule;
}

void Sequences::PutRule(IRecurrencePattern& pattern, const CPlainRule& rule)
{
    constexpr OlRecurs kTypes[] = {OlRecurs::Daily, OlRecurs::Weekly, OlRecurs::Monthly, OlRecurs::MonthlyNth,
                                   OlRecurs::Yearly};
    pattern.put_PatternStartDate(rule.First);
    pattern.put_RecurrenceType(kTypes[rule.What]);
    pattern.put_Interval(rule.Interval);
    if (rule.What == CPlainRule::Weekly || rule.What == CPlainRule::MonthlyNth)
        pattern.put_DayOfWeekMask(rule.Mask);
    if (rule.What == CPlainRule::Monthly)
        pattern.put_DayOfMonth(rule.DayOfMonth);
    if (rule.What == CPlainRule::Yearly) // in the start's month
        pattern.put_DayOfMonth(rule.DayOfMonth);
    if (rule.What == CPlainRule::MonthlyNth)
        pattern.put_Instance(rule.Instance);
    if (rule.Until)
        pattern.put_PatternEndDate(*rule.Until);
    else if (rule.Count)
        pattern.put_Occurrences(*rule.Count);
    else
        pattern.put_NoEndDate(true);
}

void Sequences::CreateAppointment()
{
    CPlainAppointment made;
    made.Subject = NewSubject();
    made.AllDay = OneIn(4);
    const int day = PickDay() - (OneIn(3) ? Pick(0, 40) : 0);
    made.Start = day * 1440 + (made.AllDay ? 0 : PickMinuteOfDay());
    made.Minutes = made.AllDay ? Pick(1, 3) * 1440 : Pick(0, 12) * 15 + (OneIn(8) ? 1440 * Pick(1, 2) : 0);
    auto item = m_app->CreateAppointment();
    item->put_Subject(made.Subject);
    item->put_Start(DateOfMinute(made.Start));
    item->put_End(DateOfMinute(made.Start + made.Minutes));
    item->put_AllDayEvent(made.AllDay);
    item->put_Categories(made.Category = PickCategory());
    Log(QString("create %1 at %2 for %3 all day %4")
            .arg(made.Subject, Iso(DateOfMinute(made.Start)))
            .arg(made.Minutes)
            .arg(made.AllDay));
    if (OneIn(2)) {
        const CPlainRule rule = PickRule(day);
        Log(rule.Text());
        PutRule(*item->GetRecurrencePattern(), rule);
        made.SetRule(rule, m_limit);
    }
    ASSERT_TRUE(item->Save());
    made.Id = item->get_Oid();
    m_plain.Appointments.push_back(made);
}

void Sequences::ChangeAppointment(CPlainAppointment& plain)
{
    auto item = Get(plain);
    const int what = Pick(0, 8);
    Log(QString("change %1 by %2").arg(plain.Subject).arg(what));
    if (what == 0) {
        ASSERT_TRUE(item->Delete());
        m_plain.Appointments.erase(m_plain.Appointments.begin() + (&plain - m_plain.Appointments.data()));
        return;
    }
    if (what == 1) {
        item->put_Categories(plain.Category = PickCategory());
    } else if (what == 2) {
        item->put_Subject(plain.Subject = NewSubject());
    } else if (what <= 4) { // another time, of a plain one another day
        const int day = plain.Rule ? plain.Start / 1440 : PickDay();
        const int minute = plain.AllDay ? 0 : PickMinuteOfDay();
        const int minutes = plain.AllDay ? Pick(1, 3) * 1440 : Pick(0, 12) * 15;
        item->put_Start(DateOfMinute(day * 1440 + minute));
        item->put_End(DateOfMinute(day * 1440 + minute + minutes));
        if (plain.Rule) {
            plain.SetTime(minute, minutes);
        } else {
            plain.Start = day * 1440 + minute;
            plain.Minutes = minutes;
        }
    } else if (plain.Rule && what == 5) {
        item->ClearRecurrencePattern();
        plain.Rule.reset();
        plain.Days.clear();
        plain.Changes.clear();
    } else {
        const CPlainRule rule = PickRule(plain.Start / 1440);
        Log(rule.Text());
        PutRule(*item->GetRecurrencePattern(), rule);
        plain.SetRule(rule, m_limit);
    }
    ASSERT_TRUE(item->Save());
}

void Sequences::ChangeOccurrence(CPlainAppointment& plain)
{
    const std::vector<int> days = plain.LiveDays();
    if (days.empty())
        return;
    const int day = days[size_t(Pick(0, int(days.size()) - 1))];
    std::unique_ptr<IAppointment> one;
    ASSERT_TRUE(Get(plain)->GetRecurrencePattern()->GetOccurrence(day, one));
    const auto at = plain.Changes.try_emplace(day);
    CPlainChange& change = at.first->second;
    if (at.second) {
        change.Start = plain.OccurrenceStart(day);
        change.End = change.Start + plain.Minutes;
    }
    const int what = Pick(0, 3);
    Log(QString("occurrence %1 of %2 by %3").arg(Iso(day).left(10), plain.Subject).arg(what));
    if (what == 0) {
        ASSERT_TRUE(one->Delete());
        change.Deleted = true;
        return;
    }
    if (what != 1) {
        const int length = change.End - change.Start;
        if (!plain.AllDay)
            change.Start = PickDay() * 1440 + PickOddMinute();
        change.End = change.Start + length + (plain.AllDay ? 1440 : 0);
        one->put_Start(DateOfMinute(change.Start));
        one->put_End(DateOfMinute(change.End));
        Log(QString("to %1").arg(Iso(DateOfMinute(change.Start))));
    }
    if (what != 2) {
        change.Subject = NewSubject();
        one->put_Subject(*change.Subject);
    }
    ASSERT_TRUE(one->Save());
}

// ---- tasks

void Sequences::CreateTask()
{
    CPlainTask made;
    made.Subject = NewSubject();
    if (!OneIn(5))
        made.Due = PickDay();
    if (made.Due && OneIn(2))
        made.Start = *made.Due - Pick(0, 6);
    auto task = m_app->CreateTask();
    task->put_Subject(made.Subject);
    task->put_StartDate(made.Start ? DATE(*made.Start) : NO_DATE);
    task->put_DueDate(made.Due ? DATE(*made.Due) : NO_DATE);
    Log(QString("task %1 from %2 to %3")
            .arg(made.Subject)
            .arg(made.Start.value_or(0))
            .arg(made.Due.value_or(0)));
    task->put_Categories(made.Category = PickCategory());
    if (made.Due && OneIn(2)) {
        const CPlainRule rule = PickRule(made.Anchor());
        Log(rule.Text());
        made.Days = rule.Days(m_limit + (kSteps + 1) * 366);
        PutRule(*task->GetRecurrencePattern(), rule);
    }
    ASSERT_TRUE(task->Save());
    made.Id = task->get_Oid();
    m_plain.Tasks.push_back(made);
}

void Sequences::ChangeTask(CPlainTask& plain)
{
    auto task = Get(plain);
    const int what = Pick(0, 8);
    Log(QString("change task %1 by %2").arg(plain.Subject).arg(what));
    if (what == 0) {
        ASSERT_TRUE(task->Delete());
        m_plain.Tasks.erase(m_plain.Tasks.begin() + (&plain - m_plain.Tasks.data()));
        return;
    }
    if (what <= 3) {
        const bool complete = !plain.Complete;
        ASSERT_TRUE(m_store.ToggleTaskComplete(*m_app, plain.Id));
        if (!complete || plain.Days.empty() || !plain.MoveOn())
            plain.Complete = complete;
        return;
    }
    if (what <= 6 && !plain.Days.empty()) {
        EXPECT_EQ(task->SkipRecurrence().IsOk(), plain.MoveOn());
        return;
    }
    if (what == 7 && plain.Due)
        task->put_DueDate(*(plain.Due = PickDay()));
    else if (OneIn(2))
        task->put_Categories(plain.Category = PickCategory());
    else
        task->put_Subject(plain.Subject = NewSubject());
    ASSERT_TRUE(task->Save());
}

// ---- what must hold

void Sequences::CheckAll()
{
    if (OneIn(3)) { // another month is looked at before the change is told
        const int day = m_today + Pick(-50, 50);
        m_store.LoadRange(day, day, day);
    }
    m_store.DrainNotices();
    m_store.LoadRange(m_today, m_first, m_last);
    CheckDays(m_store, "the living cache");
    CPimStore fresh;
    fresh.Initialize(m_volume);
    fresh.LoadRange(m_today, m_first, m_last);
    CheckDays(fresh, "a fresh load");
    CheckOccurrence();
}

void Sequences::CheckDays(CPimStore& store, const char* which)
{
    CDayLines appointments, tasks;
    for (int i = m_first; i <= m_last; ++i) {
        const CDayItems* day = store.FindDay(i);
        ASSERT_TRUE(day);
        int visible = 0, visibleTasks = 0;
        for (const auto& item : day->Appointments) {
            appointments[i].emplace_back(MinuteOf(item->Start), MinuteOf(item->End),
                                         Marked(item->Subject, item->Visible));
            visible += item->Visible;
        }
        for (const auto& task : day->Tasks) {
            const auto date = [](DATE value) { return value == NO_DATE ? 0 : int(value); };
            tasks[i].emplace_back(date(task->Start), date(task->End),
                                  Marked(task->Subject + (task->Complete ? " done" : ""), task->Visible));
            visibleTasks += task->Visible;
        }
        ASSERT_EQ(day->AppointmentCount, visible);
        ASSERT_EQ(day->TaskCount, visibleTasks);
        CheckConflicts(*day);
    }
    for (CDayLines* lines : {&appointments, &tasks}) {
        for (auto& [day, shown] : *lines)
            std::sort(shown.begin(), shown.end());
    }
    if (const CDayLines plain = m_plain.AppointmentDays(m_first, m_last); plain != appointments) {
        FAIL() << which << " shows\n" << Told(appointments) << "instead of\n" << Told(plain);
    }
    if (const CDayLines plain = m_plain.TaskDays(m_first, m_last, m_today); plain != tasks) {
        FAIL() << which << " shows the tasks\n" << Told(tasks) << "instead of\n" << Told(plain);
    }
    size_t grouped = 0;
    int wanted = 0, visible = 0;
    for (const auto& group : store.GetTaskGroups()) {
        grouped += group->Tasks.size();
        visible += group->VisibleCount;
    }
    for (const CPlainTask& task : m_plain.Tasks)
        wanted += m_plain.IsVisible(task.Category);
    ASSERT_EQ(grouped, m_plain.Tasks.size()) << which;
    ASSERT_EQ(visible, wanted) << which;
}

void Sequences::CheckConflicts(const CDayItems& day)
{
    for (const auto& a : day.Appointments) {
        bool conflict = false;
        for (const auto& b : day.Appointments)
            conflict =
                conflict || (a != b && !a->AllDay && !b->AllDay && b->Start < a->End && b->End > a->Start);
        ASSERT_EQ(a->Conflict, conflict) << a->Subject.toStdString();
    }
}

// By its original day an occurrence is there or not, with the times and the subject it should have.
void Sequences::CheckOccurrence()
{
    for (const CPlainAppointment& plain : m_plain.Appointments) {
        if (!plain.Rule)
            continue;
        auto day = plain.Days.begin();
        std::advance(day, Pick(0, int(plain.Days.size()) - 1));
        const auto change = plain.Changes.find(*day);
        const bool changed = change != plain.Changes.end();
        std::unique_ptr<IAppointment> one;
        ASSERT_EQ(Get(plain)->GetRecurrencePattern()->GetOccurrence(*day, one).IsOk(),
                  !changed || !change->second.Deleted);
        if (!one)
            continue;
        const int start = changed ? change->second.Start : plain.OccurrenceStart(*day);
        EXPECT_EQ(Iso(one->get_Start()), Iso(DateOfMinute(start)));
        EXPECT_EQ(Iso(one->get_End()),
                  Iso(DateOfMinute(changed ? change->second.End : start + plain.Minutes)));
        EXPECT_EQ(one->get_Subject(),
                  changed ? change->second.Subject.value_or(plain.Subject) : plain.Subject);
    }
}

TEST_P(Sequences, AgreeWithAPlainCalendar)
{
    g_Settings.General.HumanTime = 0;
    auto& tasks = g_Settings.Tasks;
    tasks.IncludeInCalendar = tasks.IncludeUndatedOnToday = tasks.IncludeOverdueOnToday = 1;
    tasks.IncludeActiveTasks = tasks.IncludeCompleted = 1;
    g_Settings.m_completedCutoff = 0;
    g_Settings.TasksView.ItemsToView = 255;
    g_Settings.TasksView.Sort1 = 100;
    for (int i = 0; i < kSequences && !HasFailure(); ++i) {
        const unsigned seed = unsigned(GetParam() * kSequences + i);
        m_random.seed(seed);
        if (i % kBatch == 0)
            StartVolume();
        RunSequence();
        if (HasFailure())
            ADD_FAILURE() << "sequence of seed " << seed << ":\n" << m_log.toStdString();
        QStringList faults;
        if (i % kBatch == kBatch - 1) {
            ASSERT_TRUE(m_volume->Check(faults));
        }
        ASSERT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Sequences, testing::Values(0, 1));
