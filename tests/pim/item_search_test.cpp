// The search by subject: what fits, within which days, in which order, and how it ends.
#include "pim_fixture.h"

#include "pim/item_search.h"

namespace
{
// Gathers subjects; does what a test asks for in between.
class CGather : public ISearchSink
{
public:
    bool ShouldStop() override { return Stop; }
    void OnMatch(const CPimItem& item) override
    {
        Subjects += item.Subject;
        Days.push_back(ResultDay(item));
        if (item.GetKind() == kKindTask) {
            auto task = std::make_unique<CCalendarTask>();
            static_cast<const CTask&>(item).CopyTo(*task);
            Items.push_back(std::move(task));
        } else {
            auto copy = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank{});
            static_cast<const CAppointment&>(item).CopyTo(*copy);
            Items.push_back(std::move(copy));
        }
        Stop = Stop || Subjects.size() == StopAt;
    }
    void OnProgress() override
    {
        ++Slices;
        if (Between)
            Between();
    }

    QStringList Subjects;
    std::vector<DATE> Days;
    std::vector<std::unique_ptr<CPimItem>> Items;
    std::function<void()> Between;
    bool Stop = false;
    qsizetype StopAt = -1;
    int Slices = 0;
};

class SearchTest : public PimTest
{
protected:
    SearchTest() { OpenStore(); }
    CEOID WriteTask(const QString& subject, const char* start = nullptr, const char* due = nullptr)
    {
        std::vector<CEPROPVAL> rows = {{Prop::Subject, subject}};
        if (start)
            rows.emplace_back(Prop::TaskStart, FileTimeOfDate(At(start)));
        if (due)
            rows.emplace_back(Prop::TaskDue, FileTimeOfDate(At(due)));
        CEOID oid = 0;
        EXPECT_TRUE(m_volume->WriteRecord(kTasksDatabase, 0, rows, {}, &oid));
        return oid;
    }
    static CSearchRequest Request(const QString& text)
    {
        CSearchRequest request;
        request.Text = text;
        return request;
    }
    QStringList Find(const CSearchRequest& request)
    {
        CGather found;
        m_store.Search(request, &found);
        return found.Subjects;
    }
    // The same in the smallest slices, so that something can happen between them.
    void Run(CItemSearch& search, CGather& found)
    {
        while (search.RunSlice(found, 0))
            found.OnProgress();
    }
};
} // namespace

TEST_F(SearchTest, FitsBySubjectInLowerCase)
{
    WritePlain("ABC", "2026-03-10 10:00", 60, false, {{Prop::Location, QStringLiteral("Zoo")}});
    WritePlain("CAB", "2026-03-11 10:00", 60);
    WritePlain(QStringLiteral("Prüfung ÄRZTE"), "2026-03-12 10:00", 60);
    WritePlain(QStringLiteral("300 \u212A"), "2026-03-13 10:00", 60); // the sign of kelvins, in lower case a k
    WritePlain(QString(300, u'x') + QStringLiteral("End"), "2026-03-14 10:00", 60);
    WritePlain("", "2026-03-15 10:00", 60);
    const struct {
        const char* Text;
        bool Contains;
        const char* Found; // the first letters of each
    } cases[] = {{"ab", false, "A"}, {"ab", true, "AC"}, {"AB", true, "AC"},      {"cab", true, "C"},
                 {"ä", true, "P"},   {"Ä", true, "P"},   {"prüfung", false, "P"}, {"rüf", false, ""},
                 {"k", true, "3"},   {"xend", true, "x"}, {"xxx", false, "x"},    {"zoo", true, ""},
                 {"", true, ""},     {"abcd", true, ""},  {"%", true, ""}};
    for (const auto& c : cases) {
        CSearchRequest request = Request(c.Text);
        request.Contains = c.Contains;
        QString first;
        for (const QString& subject : Find(request))
            first += subject[0];
        EXPECT_EQ(first, c.Found) << c.Text << (c.Contains ? " contained" : " at the start");
    }
}

TEST_F(SearchTest, KeepsTheOrderOfTheDatabases)
{
    WritePlain("x third", "2026-03-12 10:00", 60);
    WritePlain("x first", "2025-03-10 10:00", 60);
    WriteTask("x task one", nullptr, "2026-09-01");
    WriteSeries("x second", Pattern("daily", "2025-06-01", 600, 30));
    WriteTask("x task two");
    CSearchRequest request = Request("x");
    EXPECT_EQ(Find(request), QStringList({"x task one", "x task two", "x first", "x second", "x third"}));
    const struct {
        bool Tasks, Appointments;
        int Limit;
        qsizetype Found;
    } cases[] = {{true, true, 1, 1},  {true, true, 2, 2},  {true, true, 4, 4}, {true, true, 0, 5},
                 {true, false, 0, 2}, {false, true, 0, 3}, {false, true, 2, 2}, {false, false, 0, 0}};
    const QStringList all = Find(request);
    for (const auto& c : cases) {
        request.SearchTasks = c.Tasks;
        request.SearchAppointments = c.Appointments;
        request.Limit = c.Limit;
        EXPECT_EQ(Find(request), all.mid(c.Tasks ? 0 : 2, c.Found)) << c.Tasks << c.Appointments << c.Limit;
    }
}

TEST_F(SearchTest, BoundsAreInclusiveDays)
{
    // Today is 2026-03-15; a month back and ahead is 31 days. Far from UTC the days are still local.
    UseZone("Pacific/Auckland");
    SetNow("2026-03-15 09:00");
    WritePlain("x-32", "2026-02-11 23:30", 60);
    WritePlain("x-31", "2026-02-12 00:00", 60);
    WritePlain("x0", "2026-03-15 23:30", 60);
    WritePlain("x1", "2026-03-16 00:00", 60, true);
    WritePlain("x366", "2027-03-16 00:00", 60);
    WriteSeries("xs", Pattern("daily", "2026-02-01", 600, 30)); // by its record, however long it runs
    WriteTask("t none");
    WriteTask("t due 0", nullptr, "2026-03-15");
    WriteTask("t -31 to 1", "2026-02-12", "2026-03-16");
    const struct {
        int Start, End;
        QStringList Appointments, Tasks;
    } cases[] = {
        {0, 0, {"xs", "x-32", "x-31", "x0", "x1", "x366"}, {"t none", "t due 0", "t -31 to 1"}},
        {5, 0, {"x0", "x1", "x366"}, {}}, // the task that is due today has no start
        {4, 0, {"x-31", "x0", "x1", "x366"}, {"t -31 to 1"}},
        {4, 5, {"x-31", "x0"}, {}},
        {0, 5, {"xs", "x-32", "x-31", "x0"}, {"t due 0"}},
        {5, 5, {"x0"}, {}},
        {6, 5, {}, {}},
        {1, 9, {"xs", "x-32", "x-31", "x0", "x1"}, {"t -31 to 1"}},
        {-1, 99, {"xs", "x-32", "x-31", "x0", "x1", "x366"}, {"t none", "t due 0", "t -31 to 1"}},
    };
    for (const auto& c : cases) {
        CSearchRequest request = Request("x");
        request.StartRange = c.Start;
        request.EndRange = c.End;
        EXPECT_EQ(Find(request), c.Appointments) << c.Start << " to " << c.End;
        request.Text = "t ";
        EXPECT_EQ(Find(request), c.Tasks) << c.Start << " to " << c.End;
    }
}

TEST_F(SearchTest, ASeriesStandsAtItsRecordsStart)
{
    UseZone("Europe/Berlin");
    WriteSeries("timed", Pattern("daily", "2026-01-05", 600, 30), false, "America/New_York");
    WriteSeries("whole day", Pattern("daily", "2026-01-05", 0, 1440), true, "Asia/Tokyo");
    CRecurrencePattern gone = Pattern("daily", "2026-01-05", 600, 30);
    gone.Exceptions.push_back({.OriginalDay = Day("2026-01-05")});
    gone.ExceptionCount = 1;
    WriteSeries("first gone", gone);
    const struct {
        const char *Subject, *Start, *End;
        int OriginalDay;
    } cases[] = {{"timed", "2026-01-05 16:00", "2026-01-05 16:30", Day("2026-01-05")},
                 {"whole day", "2026-01-05 00:00", "2026-01-06 00:00", Day("2026-01-05")},
                 {"first gone", "2026-01-05 10:00", "2026-01-05 10:30", 0}};
    for (const auto& c : cases) {
        CGather found;
        m_store.Search(Request(c.Subject), &found);
        ASSERT_EQ(found.Items.size(), 1u) << c.Subject;
        const auto& item = static_cast<const CAppointment&>(*found.Items[0]);
        EXPECT_EQ(Iso(item.Start), c.Start);
        EXPECT_EQ(Iso(item.End), c.End);
        EXPECT_EQ(item.OriginalDay, c.OriginalDay) << c.Subject;
    }
}

TEST_F(SearchTest, StopsWhenAsked)
{
    for (int i = 0; i < 5; ++i)
        WritePlain(QStringLiteral("x%1").arg(i), "2026-03-10 10:00", 60);
    CGather none;
    none.Stop = true;
    m_store.Search(Request("x"), &none);
    EXPECT_EQ(none.Subjects, QStringList());
    EXPECT_EQ(none.Slices, 0);
    CGather two;
    two.StopAt = 2;
    m_store.Search(Request("x"), &two);
    EXPECT_EQ(two.Subjects, QStringList({"x0", "x1"})); // what was found stays
    m_store.Search(Request("x"), nullptr);
    CItemSearch search(m_volume, m_store.Categories(), Request("x"));
    CGather stopped;
    stopped.StopAt = 3;
    Run(search, stopped);
    stopped.Stop = false;
    EXPECT_FALSE(search.RunSlice(stopped)); // it does not come back to life
    EXPECT_EQ(search.Found(), 3);
}

TEST_F(SearchTest, TellsTheFirstMatchAtOnce)
{
    for (int i = 0; i < 5; ++i)
        WritePlain(QStringLiteral("x%1").arg(i), "2026-03-10 10:00", 60);
    CItemSearch search(m_volume, m_store.Categories(), Request("x"));
    CGather found;
    EXPECT_TRUE(search.RunSlice(found, 60000));
    EXPECT_EQ(found.Subjects.size(), 1);
    EXPECT_FALSE(search.RunSlice(found, 60000));
    EXPECT_EQ(found.Subjects.size(), 5);
}

TEST_F(SearchTest, FollowsWhatChangesMeanwhile)
{
    std::vector<CEOID> oids;
    for (int i = 0; i < 5; ++i)
        oids.push_back(WritePlain(QStringLiteral("x%1").arg(i), "2026-03-10 10:00", 60));
    CItemSearch search(m_volume, m_store.Categories(), Request("x"));
    CGather found;
    found.Between = [&] {
        if (found.Subjects.size() != 1)
            return;
        Delete(oids[2]);
        const CEPROPVAL other(Prop::Subject, QStringLiteral("no longer"));
        ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, oids[3], std::span(&other, 1), {}, nullptr));
        WritePlain("x too late", "2026-03-10 10:00", 60);
    };
    Run(search, found);
    EXPECT_EQ(found.Subjects, QStringList({"x0", "x1", "x4"}));
}

TEST_F(SearchTest, OutlivesTheStoreThatItBeganWith)
{
    for (int i = 0; i < 3; ++i)
        WritePlain(QStringLiteral("x%1").arg(i), "2026-03-10 10:00", 60);
    CGather found;
    found.Between = [&] {
        m_store.Shutdown();
        m_volume.reset();
    };
    m_store.Search(Request("x"), &found);
    EXPECT_EQ(found.Subjects.size(), 3);
    CGather none; // and without a volume there is nothing
    m_store.Search(Request("x"), &none);
    EXPECT_EQ(none.Subjects.size(), 0);
}

TEST_F(SearchTest, ASearchWithinASearchLeavesItWhole)
{
    for (int i = 0; i < 3; ++i)
        WritePlain(QStringLiteral("x%1").arg(i), "2026-03-10 10:00", 60);
    CGather outer, inner;
    outer.Between = [&] {
        if (inner.Subjects.isEmpty())
            m_store.Search(Request("x"), &inner);
    };
    m_store.Search(Request("x"), &outer);
    EXPECT_EQ(inner.Subjects.size(), 3);
    EXPECT_EQ(outer.Subjects, inner.Subjects);
}

TEST_F(SearchTest, GoesThroughManyRecordsInSlices)
{
    std::vector<CEOID> oids;
    ASSERT_TRUE(m_volume->Begin(false));
    for (int i = 0; i < 3500; ++i) {
        const std::vector<CEPROPVAL> rows = {{Prop::Start, FileTimeOfDate(Day("2026-03-10") - i)},
                                             {Prop::Subject, i % 1000 == 999 ? QStringLiteral("hit %1").arg(i)
                                                                             : QStringLiteral("miss")}};
        CEOID oid = 0;
        ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, 0, rows, {}, &oid));
        oids.push_back(oid);
    }
    ASSERT_TRUE(m_volume->Commit());
    CItemSearch search(m_volume, m_store.Categories(), Request("hit"));
    CGather found;
    bool moved = false;
    found.Between = [&] { // behind all others, where the search has not been
        if (moved || found.Subjects.size() != 1)
            return;
        const CEPROPVAL later(Prop::Start, FileTimeOfDate(Day("2026-04-10")));
        moved = bool(m_volume->WriteRecord(kAppointmentsDatabase, oids[2999], std::span(&later, 1), {}, nullptr));
    };
    Run(search, found);
    EXPECT_TRUE(moved);
    EXPECT_EQ(found.Subjects, QStringList({"hit 2999", "hit 1999", "hit 999"}));
    EXPECT_GE(found.Slices, 4);
}

TEST_F(SearchTest, ResultsFollowNotices)
{
    const CEOID plain = WritePlain("x plain", "2026-03-10 10:00", 60);
    const CEOID moved = WritePlain("x moved", "2026-03-11 10:00", 60);
    const CEOID task = WriteTask("x task", nullptr, "2026-03-12");
    const CEOID gone = WriteTask("x gone", "2026-03-01");
    CGather found;
    m_store.Search(Request("x"), &found);
    ASSERT_EQ(found.Subjects, QStringList({"x task", "x gone", "x plain", "x moved"}));
    EXPECT_EQ(Iso(found.Days[0]), "2026-03-12 00:00"); // due
    EXPECT_EQ(Iso(found.Days[1]), "2026-03-01 00:00"); // without that its start
    EXPECT_EQ(Iso(found.Days[2]), "2026-03-10 00:00");
    for (const auto& item : found.Items)
        EXPECT_EQ(m_store.RefreshFound(*item), FoundState::Same) << item->Subject.toStdString();
    const CEPROPVAL complete(Prop::TaskComplete, 1);
    ASSERT_TRUE(m_volume->WriteRecord(kTasksDatabase, task, std::span(&complete, 1), {}, nullptr));
    ASSERT_TRUE(m_volume->DeleteRecord(kTasksDatabase, gone));
    const CEPROPVAL start(Prop::Start, FileTimeOfDate(At("2026-04-01 08:00")));
    ASSERT_TRUE(m_volume->WriteRecord(kAppointmentsDatabase, moved, std::span(&start, 1), {}, nullptr));
    EXPECT_EQ(m_store.RefreshFound(*found.Items[0]), FoundState::Changed);
    EXPECT_TRUE(static_cast<const CTask&>(*found.Items[0]).Complete);
    EXPECT_EQ(m_store.RefreshFound(*found.Items[1]), FoundState::Gone);
    EXPECT_EQ(found.Items[1]->Subject, "x gone");
    EXPECT_EQ(m_store.RefreshFound(*found.Items[2]), FoundState::Same);
    EXPECT_EQ(m_store.RefreshFound(*found.Items[3]), FoundState::Changed);
    EXPECT_EQ(Iso(ResultDay(*found.Items[3])), "2026-04-01 00:00");
    Delete(plain);
    EXPECT_EQ(m_store.RefreshFound(*found.Items[2]), FoundState::Gone);
}

TEST_F(SearchTest, TakesItsRequestFromTheSettings)
{
    CSearchRequest request;
    request.TakeSettings();
    EXPECT_TRUE(request.Contains && request.SearchTasks && request.SearchAppointments);
    EXPECT_EQ(request.Limit, 100);
    for (const int type : {0, 1, 2}) {
        g_Settings.SearchView.SearchType = type;
        g_Settings.SearchView.SearchMode = 0;
        g_Settings.SearchView.SearchStart = 3;
        g_Settings.SearchView.SearchEnd = 7;
        request.TakeSettings();
        EXPECT_EQ(request.SearchAppointments, type != 2);
        EXPECT_EQ(request.SearchTasks, type != 1);
        EXPECT_FALSE(request.Contains);
        EXPECT_EQ(SearchDay(request.StartRange, 1000, kSearchDayFirst), 1000 - 61);
        EXPECT_EQ(SearchDay(request.EndRange, 1000, kSearchDayLast), 1000 + 61);
    }
}
