// Searching all subjects beside SQLite's own LIKE scan of them, the wait for the first match, and
// the groups of tasks beside a bare read of the same rows. The volume is named by
// TESSERA_BENCH_VOLUME; bench/run.sh makes it.
#include "pim/item_search.h"
#include "pim/pim_store.h"
#include "records/property_numbers.h"
#include "settings/settings.h"

#include <QElapsedTimer>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <sqlite3.h>

namespace
{
// By share of the subjects: none, some thousands, all of them.
const char* const kTexts[] = {"zzqq", "telescope", " "};
constexpr int kViewLimit = 100; // the view's own

std::shared_ptr<CPropertyVolume> OpenVolume(benchmark::State& state)
{
    std::shared_ptr<CPropertyVolume> volume;
    const char* path = std::getenv("TESSERA_BENCH_VOLUME");
    if (!path || !CPropertyVolume::Open(QString::fromUtf8(path), PimSchema(), CPropertyVolume::Mode::MustExist, volume))
        state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
    return volume;
}

class CCount : public ISearchSink
{
public:
    bool ShouldStop() override { return Matches >= StopAt; }
    void OnMatch(const CPimItem&) override { ++Matches; }
    void OnProgress() override
    {
        Longest = std::max(Longest, Slice.nsecsElapsed());
        Slice.start();
    }
    int Matches = 0, StopAt = INT_MAX;
    QElapsedTimer Slice;
    qint64 Longest = 0; // nanoseconds without a chance for events
};

void Search(benchmark::State& state, int limit, int stopAt)
{
    CPimStore store;
    store.Initialize(OpenVolume(state));
    CSearchRequest request;
    request.Text = QString::fromLatin1(kTexts[state.range(0)]);
    request.Limit = limit;
    request.SearchTasks = stopAt == INT_MAX; // else the first one would be a task
    state.SetLabel(kTexts[state.range(0)]);
    CCount count;
    qint64 longest = 0;
    for (auto _ : state) {
        count = CCount();
        count.StopAt = stopAt;
        count.Slice.start();
        store.Search(request, &count);
        count.OnProgress();
        longest = std::max(longest, count.Longest);
    }
    state.counters["matches"] = count.Matches;
    state.counters["longest_slice_ms"] = double(longest) / 1e6;
}

void SearchContains(benchmark::State& state) { Search(state, kViewLimit, INT_MAX); }
BENCHMARK(SearchContains)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void SearchFirstMatch(benchmark::State& state) { Search(state, 0, 1); }
BENCHMARK(SearchFirstMatch)->DenseRange(1, 2)->Unit(benchmark::kMillisecond);

void LikeScan(benchmark::State& state)
{
    sqlite3* db = nullptr;
    const char* path = std::getenv("TESSERA_BENCH_VOLUME");
    if (!path || sqlite3_open_v2(path, &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
        return;
    }
    sqlite3_exec(db, "PRAGMA cache_size = -6000", nullptr, nullptr, nullptr); // as the volume's own
    sqlite3_stmt* queries[2] = {};
    const char* const sql[] = {"SELECT count(*) FROM \"Tasks Database\" WHERE subject LIKE ?1",
                               "SELECT count(*) FROM \"Appointments Database\" WHERE subject LIKE ?1"};
    const std::string pattern = std::string("%") + kTexts[state.range(0)] + "%";
    for (int i = 0; i < 2; ++i) {
        sqlite3_prepare_v2(db, sql[i], -1, &queries[i], nullptr);
        sqlite3_bind_text(queries[i], 1, pattern.c_str(), -1, SQLITE_STATIC);
    }
    state.SetLabel(kTexts[state.range(0)]);
    qint64 matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (sqlite3_stmt* query : queries) {
            if (sqlite3_step(query) == SQLITE_ROW)
                matches += sqlite3_column_int64(query, 0);
            sqlite3_reset(query);
        }
    }
    state.counters["matches"] = double(matches);
    for (sqlite3_stmt* query : queries)
        sqlite3_finalize(query);
    sqlite3_close(db);
}
BENCHMARK(LikeScan)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// ---- tasks

// By category, completion, priority, and in one group by due date.
void TaskGroups(benchmark::State& state)
{
    g_Settings.TasksView.Sort1 = int(state.range(0));
    g_Settings.TasksView.ItemsToView = 255;
    g_Settings.m_completedCutoff = 0;
    const auto volume = OpenVolume(state);
    CCategoryStore categories;
    categories.Open(volume);
    size_t tasks = 0;
    for (auto _ : state) {
        CTaskList list(categories);
        list.Load(volume);
        list.Groups();
        tasks = list.All().size();
    }
    state.counters["tasks"] = double(tasks);
    g_Settings = CSettings();
}
BENCHMARK(TaskGroups)->Arg(105)->Arg(106)->Arg(107)->Arg(0)->Unit(benchmark::kMillisecond);

// The same records with their categories, each into an item that is thrown away.
void BareReadOfTasks(benchmark::State& state)
{
    const auto volume = OpenVolume(state);
    CCategoryStore categories;
    categories.Open(volume);
    qint64 tasks = 0;
    for (auto _ : state) {
        CTaskReader reader(categories);
        reader.Open(volume);
        reader.Seek(SeekType::Beginning);
        for (tasks = 0;; ++tasks) {
            CCalendarTask task;
            if (reader.ReadTask(task) == 0)
                break;
        }
    }
    state.counters["tasks"] = double(tasks);
}
BENCHMARK(BareReadOfTasks)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
