// The search view with the window's events between its slices, as a person has it: the wait for the
// first match on the screen, the whole search, and the longest time during which no event was handled.
// The volume is named by TESSERA_BENCH_VOLUME; bench/run.sh makes it.
#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLineEdit>
#include <benchmark/benchmark.h>
#include <ctime>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "views/search_view.h"

namespace
{
// By share of the subjects: none, some thousands, all of them.
const char* const kTexts[] = {"zzqq", "telescope", "e "};

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

// By the clock, and of that what was our own: the machine may have other things to do.
struct CElapsed {
    double Wall = 0, Cpu = 0; // milliseconds
};
class CStopwatch
{
public:
    CStopwatch() : m_cpu(std::clock()) { m_wall.start(); }
    CElapsed Elapsed() const
    {
        return {double(m_wall.nsecsElapsed()) / 1e6, double(std::clock() - m_cpu) * 1e3 / CLOCKS_PER_SEC};
    }

private:
    QElapsedTimer m_wall;
    std::clock_t m_cpu;
};

// The appointments alone, or a task would be the first match.
void SearchInWindow(benchmark::State& state)
{
    std::shared_ptr<CPropertyVolume> volume;
    const char* path = std::getenv("TESSERA_BENCH_VOLUME");
    if (!path || !CPropertyVolume::Open(QString::fromUtf8(path), PimSchema(), CPropertyVolume::Mode::MustExist,
                                        volume))
        return state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
    const QSize size(int(state.range(2)), int(state.range(3)));
    const int density = size.width() > 320 ? 192 : 96;
    ForceDensity(density);
    g_ScreenMetrics.Init(density, size);
    LoadResourceLibraries(QString());
    g_Settings.SearchView.SearchType = 1;
    g_Settings.SearchView.SearchLimit = qint32(state.range(1));
    PimStore().Initialize(volume);
    CElapsed first, longest;
    int found = 0;
    {
        CQuietHost host;
        CSearchView view(host, nullptr);
        view.resize(size);
        view.Create();
        view.show();
        view.Refresh();
        view.TextBox().setText(QString::fromLatin1(kTexts[state.range(0)]));
        QCoreApplication::processEvents();
        for (auto _ : state) {
            CStopwatch all, turn;
            bool shown = false;
            view.OnCommand(CmdSearchStart);
            while (view.IsSearching()) {
                QCoreApplication::processEvents(); // a slice, and what it leaves to paint
                if (!shown && !view.Rows().IsEmpty()) {
                    QCoreApplication::sendPostedEvents();
                    shown = true;
                    const CElapsed wait = all.Elapsed();
                    first = {first.Wall + wait.Wall, first.Cpu + wait.Cpu};
                }
                const CElapsed busy = turn.Elapsed();
                longest = {std::max(longest.Wall, busy.Wall), std::max(longest.Cpu, busy.Cpu)};
                turn = CStopwatch();
            }
            QCoreApplication::processEvents();
            found = view.Rows().GetCount();
        }
    }
    PimStore().Shutdown();
    ForceDensity(-1);
    state.SetLabel(kTexts[state.range(0)]);
    state.counters["matches"] = found;
    const double runs = double(state.iterations());
    state.counters["first_ms"] = first.Wall / runs;
    state.counters["first_cpu_ms"] = first.Cpu / runs;
    state.counters["longest_ms"] = longest.Wall;
    state.counters["longest_cpu_ms"] = longest.Cpu;
}
BENCHMARK(SearchInWindow)
    ->Args({0, 100, 240, 320})
    ->Args({1, 100, 240, 320})
    ->Args({2, 100, 240, 320})
    ->Args({1, 100, 1080, 2160})
    ->Args({1, 1000, 1080, 2160})
    ->Args({2, 0, 480, 640}) // without a limit: every subject
    ->Unit(benchmark::kMillisecond);
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
