// The monthly view from a key to the finished picture: to the next month and back with both in the
// cache, one day on, a frame of the scrolling list; and a month that is not in the cache beside what
// the load alone costs (the volume is named by TESSERA_BENCH_VOLUME).
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cstdlib>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "views/monthly_view.h"

namespace
{
constexpr int kItemsOfADay = 10;
const int kFirst = DayNumberOf(2026, 2, 1), kLast = DayNumberOf(2026, 4, 4); // two grids, 63 days
const int kStart = DayNumberOf(2026, 3, 17);

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

class CBenchMonth : public CMonthlyView
{
public:
    using CMonthlyView::CMonthlyView;
    using CMonthlyView::PaintView;
};

void FillDays()
{
    static const char* const subjects[] = {"Review of the draft %1", "Call back %1",
                                           "Planning for the next quarter with everyone %1", "Lunch %1",
                                           "Flight to Lisbon, gate closes early %1"};
    quint32 id = 0;
    for (int day = kFirst; day <= kLast; ++day) {
        CDayItems* items = PimStore().FindDay(day);
        for (int n = 0; n < kItemsOfADay; ++n) {
            auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
            item->ItemId = item->RecordOid = ++id;
            item->Subject = QString::fromLatin1(subjects[n % 5]).arg(id);
            item->AllDay = n == 0 && day % 3 == 0;
            item->Start = item->AllDay ? day : day + (7 + n * 1.3) / 24;
            item->End = item->AllDay ? day + 1 : item->Start + 1 / 24.0;
            item->ReminderSet = n % 2;
            item->Recurrence = n % 4 == 0;
            items->AddAppointment(std::move(item), false);
        }
        items->RecountSlots();
    }
}

// A view and the window's buffer that it paints into.
struct CBench {
    CBench(int width, int height, std::shared_ptr<CPropertyVolume> volume)
        : Window(width, height, QImage::Format_RGB32)
    {
        const int density = width > 640 || height > 320 ? 192 : 96;
        ForceDensity(density);
        g_ScreenMetrics.Init(density, {width, height});
        LoadResourceLibraries(QString());
        g_Settings.MonthView.StartDay = 0;
        PimStore().Initialize(volume);
        PimStore().LoadRange(kStart, kFirst, kLast);
        if (!volume)
            FillDays();
        View.resize(width, height);
        View.Create();
        View.Refresh();
        Paint();
    }
    ~CBench()
    {
        PimStore().Shutdown();
        ForceDensity(-1);
    }
    void Paint()
    {
        QPainter dc(&Window);
        View.PaintView(dc, Window.size());
    }
    void Key(int key)
    {
        View.OnKey(key);
        Paint();
    }
    QImage Window;
    CQuietHost Host;
    CBenchMonth View{Host, nullptr};
};

void TurnMonth(benchmark::State& state)
{
    CBench bench(int(state.range(0)), int(state.range(1)), nullptr);
    bool back = true;
    for (auto _ : state) {
        bench.Key(back ? '1' : '3');
        back = !back;
    }
}

void MoveSelection(benchmark::State& state)
{
    CBench bench(int(state.range(0)), int(state.range(1)), nullptr);
    bool back = true;
    for (auto _ : state) {
        bench.Key(back ? kKeyLeft : kKeyRight);
        back = !back;
    }
}

// The grid's share of that: the copy of a block and one cell.
void MoveSelectionInGrid(benchmark::State& state)
{
    CBench bench(int(state.range(0)), int(state.range(1)), nullptr);
    int n = 0;
    for (auto _ : state) {
        bench.View.Grid().SelectDate(kStart + ++n % 2);
        benchmark::DoNotOptimize(bench.View.Grid().Picture().constBits());
    }
}

void ScrollQuickList(benchmark::State& state)
{
    CBench bench(int(state.range(0)), int(state.range(1)), nullptr);
    CDayItems* day = PimStore().FindDay(kStart);
    for (int n = 0; n < 200; ++n) {
        auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
        item->ItemId = item->RecordOid = quint32(5000 + n);
        item->Subject = QStringLiteral("Planning for the next quarter, part %1").arg(n);
        item->Start = kStart + 0.5;
        item->End = kStart + 0.6;
        item->ReminderSet = true;
        day->AddAppointment(std::move(item), false);
    }
    bench.View.OnDataChanged(0, 0, 0);
    int n = 0;
    for (auto _ : state) {
        bench.View.Scroller().SetScroll(0, -(n++ * 7 % 900) - 1);
        bench.Paint();
    }
}

std::shared_ptr<CPropertyVolume> BenchVolume(benchmark::State& state)
{
    std::shared_ptr<CPropertyVolume> volume;
    const char* path = std::getenv("TESSERA_BENCH_VOLUME");
    if (!path || !CPropertyVolume::Open(QString::fromUtf8(path), PimSchema(),
                                        CPropertyVolume::Mode::MustExist, volume))
        state.SkipWithError("TESSERA_BENCH_VOLUME names no volume");
    return volume;
}

void ColdMonth(benchmark::State& state)
{
    const auto volume = BenchVolume(state);
    if (!volume)
        return;
    CBench bench(int(state.range(0)), int(state.range(1)), volume);
    bool back = true;
    for (auto _ : state) {
        PimStore().Clear();
        bench.Key(back ? '1' : '3');
        back = !back;
    }
}

void ColdMonthLoadAlone(benchmark::State& state)
{
    const auto volume = BenchVolume(state);
    if (!volume)
        return;
    PimStore().Initialize(volume);
    const int march = DayNumberOf(2026, 3, 1);
    bool back = true;
    for (auto _ : state) {
        PimStore().Clear();
        if (back)
            PimStore().LoadRange(kFirst, kFirst, kFirst + 27);
        else
            PimStore().LoadRange(march, march, march + 34);
        back = !back;
    }
    PimStore().Shutdown();
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->Args({240, 280})->Args({480, 640})->Args({640, 480})->Args({1080, 2160});
}
BENCHMARK(TurnMonth)->Apply(Sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveSelection)->Apply(Sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveSelectionInGrid)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(ScrollQuickList)->Apply(Sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(ColdMonth)->Args({480, 640})->Args({1080, 2160})->Unit(benchmark::kMillisecond);
BENCHMARK(ColdMonthLoadAlone)->Unit(benchmark::kMillisecond);
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
