// The list view and the weekly view from a key to the finished picture: a frame of the scrolling list
// with its rows' pictures kept and without, a day opened and closed, a week turned and a tile chosen.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"
#include "views/list_view.h"
#include "views/weekly_view.h"

namespace
{
constexpr int kItemsOfADay = 40;
const int kStart = DayNumberOf(2026, 3, 17);
const int kFirst = kStart - 14, kLast = kStart + 20;

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

template <class View> class CPaintable : public View
{
public:
    using View::PaintView;
    using View::View;
};

void FillDays()
{
    static const char* const subjects[] = {"Review of the draft %1", "Call back %1",
                                           "Planning for the next quarter with everyone %1", "Lunch %1",
                                           "Flight to Lisbon, gate closes early %1"};
    quint32 id = 0;
    for (int day = kFirst; day <= kLast; ++day) {
        CDayItems* items = PimStore().FindDay(day);
        for (int n = 0; items && n < kItemsOfADay; ++n) {
            auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
            item->ItemId = item->RecordOid = ++id;
            item->Subject = QString::fromLatin1(subjects[n % 5]).arg(id);
            item->Location = QStringLiteral("Room %1").arg(n);
            item->Start = day + (6 + n * 0.4) / 24;
            item->End = item->Start + 1 / 24.0;
            item->ReminderSet = n % 2;
            item->Recurrence = n % 4 == 0;
            items->AddAppointment(std::move(item), false);
        }
        if (items)
            items->RecountSlots();
    }
}

// A view and the window's buffer that it paints into.
template <class View> struct CBench {
    CBench(int width, int height) : Window(width, height, QImage::Format_RGB32)
    {
        const int density = width > 640 || height > 320 ? 192 : 96;
        ForceDensity(density);
        g_ScreenMetrics.Init(density, {width, height});
        LoadResourceLibraries(QString());
        PimStore().Initialize(nullptr);
        PimStore().LoadRange(kStart, kFirst, kLast);
        FillDays();
        Shown.resize(width, height);
        Shown.Create();
        Shown.Refresh();
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
        Shown.PaintView(dc, Window.size());
    }
    void Key(int key)
    {
        Shown.OnKey(key);
        Paint();
    }
    QImage Window;
    CQuietHost Host;
    CPaintable<View> Shown{Host, nullptr};
};

void ScrollList(benchmark::State& state)
{
    g_Settings.ListView.OneLineMode = state.range(2) ? 1 : 0;
    CBench<CListView> bench(int(state.range(0)), int(state.range(1)));
    int n = 0;
    for (auto _ : state) {
        bench.Shown.Scroller().SetScroll(0, -(n++ * 23 % 3000) - 1);
        bench.Paint();
    }
}

// A screen further each time: every row that shows is painted anew.
void LeapThroughList(benchmark::State& state)
{
    CBench<CListView> bench(int(state.range(0)), int(state.range(1)));
    const int screen = int(state.range(1));
    int n = 0;
    for (auto _ : state) {
        bench.Shown.Scroller().SetScroll(0, n++ % 2 ? -3 * screen : 0);
        bench.Paint();
    }
}

void ToggleDay(benchmark::State& state)
{
    CBench<CListView> bench(int(state.range(0)), int(state.range(1)));
    for (auto _ : state)
        bench.Key(kKeyReturn);
}

void TurnWeekOfTiles(benchmark::State& state)
{
    CBench<CWeeklyView> bench(int(state.range(0)), int(state.range(1)));
    bool back = true;
    for (auto _ : state) {
        bench.Key(back ? kKeyPageUp : kKeyPageDown);
        back = !back;
    }
}

void SelectTile(benchmark::State& state)
{
    CBench<CWeeklyView> bench(int(state.range(0)), int(state.range(1)));
    bool back = true;
    for (auto _ : state) {
        bench.Key(back ? kKeyLeft : kKeyRight);
        back = !back;
    }
}

void ScrollTile(benchmark::State& state)
{
    CBench<CWeeklyView> bench(int(state.range(0)), int(state.range(1)));
    int n = 0;
    for (auto _ : state) {
        bench.Shown.Scroller().SetScroll(0, -(n++ * 7 % 400) - 1);
        bench.Paint();
    }
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->Args({240, 280})->Args({480, 640})->Args({1080, 2160})->Unit(benchmark::kMillisecond);
}
BENCHMARK(ScrollList)
    ->Args({240, 280, 1})
    ->Args({1080, 2160, 1})
    ->Args({1080, 2160, 0})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(LeapThroughList)->Apply(Sizes);
BENCHMARK(ToggleDay)->Apply(Sizes);
BENCHMARK(TurnWeekOfTiles)->Apply(Sizes);
BENCHMARK(SelectTile)->Apply(Sizes);
BENCHMARK(ScrollTile)->Apply(Sizes);
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
