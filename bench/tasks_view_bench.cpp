// The tasks view with 5,000 tasks in 50 categories: a frame while it scrolls, all rows built and the
// frame painted, and a changed task from its notice to the painted frame (its writing is not counted).
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "object_model/object_model.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "views/tasks_view.h"

namespace
{
constexpr int kTasks = 5000, kCategories = 50;

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

// 5,000 tasks, and a view of them in the size that the arguments tell.
class CBench
{
public:
    explicit CBench(benchmark::State& state)
    {
        const QSize size(int(state.range(1)), int(state.range(2)));
        const int density = size.width() > 320 ? 192 : 96;
        ForceDensity(density);
        g_ScreenMetrics.Init(density, size);
        LoadResourceLibraries(QString());
        g_Settings.TasksView.Sort1 = qint32(state.range(0));
        if (!CPropertyVolume::Open(m_folder.filePath(QStringLiteral("pim.vol")), PimSchema(),
                                   CPropertyVolume::Mode::Create, m_volume))
            return;
        Model = MakePOutlookApp(m_volume);
        if (!Model->Logon() || !Model->BeginBatch())
            return;
        for (int n = 0; n < kTasks; ++n) {
            auto task = Model->CreateTask();
            task->put_Subject(QStringLiteral("Review of the draft %1").arg(n * 1231 % kTasks));
            task->put_DueDate(GetToday() - 30 + n % 90);
            task->put_Importance(n % 3);
            task->put_Categories(QStringLiteral("Category %1").arg(n % kCategories));
            if (!task->Save())
                return;
            Oid = task->get_Oid();
        }
        if (!Model->CommitBatch())
            return;
        PimStore().Initialize(m_volume);
        View = std::make_unique<CTasksView>(m_host, nullptr);
        View->resize(size);
        View->Create();
        View->Refresh();
    }
    ~CBench()
    {
        View.reset();
        PimStore().Shutdown();
        Model.reset();
        ForceDensity(-1);
    }
    std::unique_ptr<IPOutlookApp> Model;
    std::unique_ptr<CTasksView> View;
    quint32 Oid = 0;

private:
    CQuietHost m_host;
    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
};

void ScrollFrame(benchmark::State& state)
{
    CBench bench(state);
    if (!bench.View)
        return state.SkipWithError("no volume");
    int scroll = 0;
    for (auto _ : state) {
        scroll -= 37;
        if (-scroll > bench.View->Scroller().ContentHeight() - bench.View->height())
            scroll = 0;
        bench.View->Scroller().SetScroll(0, scroll);
        benchmark::DoNotOptimize(bench.View->Snapshot());
    }
}

void RebuildAll(benchmark::State& state)
{
    CBench bench(state);
    if (!bench.View)
        return state.SkipWithError("no volume");
    for (auto _ : state) {
        PimStore().RebuildTaskGroups();
        bench.View->OnDataChanged(0, 0, 0);
        benchmark::DoNotOptimize(bench.View->Snapshot());
    }
}

void NoticeToFrame(benchmark::State& state)
{
    CBench bench(state);
    std::unique_ptr<ITask> task;
    if (!bench.View || !bench.Model->GetTaskFromOid(bench.Oid, task))
        return state.SkipWithError("no volume");
    int n = 0;
    for (auto _ : state) {
        state.PauseTiming();
        task->put_Subject(QStringLiteral("Changed %1").arg(++n));
        if (!task->Save())
            return state.SkipWithError("the task cannot be saved");
        state.ResumeTiming();
        const CPimStore::CDrain drain = PimStore().DrainNotices();
        bench.View->OnDataChanged(drain.LastParam, drain.LastType, drain.LastOid);
        benchmark::DoNotOptimize(bench.View->Snapshot());
    }
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    for (const int sort : {100, 105}) {
        bench->Args({sort, 240, 320});
        bench->Args({sort, 1080, 2160});
    }
    bench->Unit(benchmark::kMillisecond);
}
BENCHMARK(ScrollFrame)->Apply(Sizes);
BENCHMARK(RebuildAll)->Apply(Sizes);
BENCHMARK(NoticeToFrame)->Apply(Sizes);
} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    g_ImageStore.Clear();
    return 0;
}
