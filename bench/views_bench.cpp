// The daily view at the size of a phone of today (1080 x 2160): a scroll frame over cached rows
// beside a memcpy of the surface, the window's share included; and the first layout of a day of
// 1,400 items, which is part of the start.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cstring>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "settings/settings.h"
#include "touch/device_pixels.h"
#include "views/daily_view.h"

namespace
{
constexpr QSize kPhone(1080, 2160);
constexpr int kDensity = 384;
constexpr int kManyItems = 1400;
constexpr int kDay = 46098;

class CQuietHost : public IViewHost
{
public:
    void SendCommand(int) override {}
    void UpdateTitle() override {}
    void RebuildSoftKeys() override {}
    void ShowDaily(int) override {}
    void PressSoftKey(int) override {}
};

void FillDay(int count)
{
    static const char* const subjects[] = {"Review of the draft %1", "Call back %1",
                                           "Planning for the next quarter with everyone %1", "Lunch %1",
                                           "Flight to Lisbon, gate closes early %1"};
    PimStore().Initialize(nullptr);
    PimStore().LoadRange(kDay, kDay, kDay);
    CDayItems* day = PimStore().FindDay(kDay);
    for (int n = 0; n < count; ++n) {
        auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
        item->ItemId = item->RecordOid = quint32(n + 1);
        item->Subject = QString::fromLatin1(subjects[n % 5]).arg(n);
        item->Location = n % 3 ? QStringLiteral("Room %1").arg(n % 40) : QString();
        item->Start = kDay + (8 + n * 0.005) / 24;
        item->End = item->Start + 1 / 24.0;
        item->ReminderSet = n % 2;
        item->Recurrence = n % 4 == 0;
        item->HasNote = n % 5 == 0;
        day->AddAppointment(std::move(item), false);
    }
    day->RecountSlots();
}

struct CBenchView {
    explicit CBenchView(int items, int density = kDensity, QSize size = kPhone)
    {
        ForceDensity(density);
        g_ScreenMetrics.Init(density, size);
        LoadResourceLibraries(QString());
        FillDay(items);
        View.resize(size);
    }
    ~CBenchView()
    {
        PimStore().Shutdown();
        ForceDensity(-1);
    }
    CQuietHost Host;
    CDailyView View{Host, nullptr};
};

void Memcpy(benchmark::State& state)
{
    QImage from(kPhone, QImage::Format_RGB32), to(kPhone, QImage::Format_RGB32);
    from.fill(1);
    to.fill(2);
    for (auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), size_t(from.sizeInBytes()));
        benchmark::DoNotOptimize(to.constBits());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Memcpy)->Unit(benchmark::kMicrosecond);

// The rows into the scroller's surface; range 0 is the pop-out setting.
void ScrollFrame(benchmark::State& state)
{
    g_Settings.DailyView.PopOut = int(state.range(0));
    CBenchView bench(60);
    bench.View.OnCreate();
    bench.View.Refresh();
    CTouchNavigator& scroller = bench.View.Scroller();
    const int way = scroller.ContentHeight() - kPhone.height();
    for (int scroll = 0; scroll > -kPhone.height(); scroll -= 100)
        scroller.SetScroll(0, scroll);
    int n = 0;
    for (auto _ : state)
        scroller.SetScroll(0, -(n++ * 3 % std::min(way, kPhone.height() / 2)) - 1);
    g_Settings.DailyView.PopOut = 0;
}
BENCHMARK(ScrollFrame)->Arg(0)->Arg(3)->Unit(benchmark::kMicrosecond);

// The same and on to the window's own buffer.
void ScrollFrameToWindow(benchmark::State& state)
{
    CBenchView bench(60);
    bench.View.OnCreate();
    bench.View.Refresh();
    CTouchNavigator& scroller = bench.View.Scroller();
    QImage window(kPhone, QImage::Format_RGB32);
    QPainter dc(&window);
    for (int scroll = 0; scroll > -kPhone.height(); scroll -= 100)
        scroller.SetScroll(0, scroll);
    int n = 0;
    for (auto _ : state) {
        scroller.SetScroll(0, -(n++ * 3 % (kPhone.height() / 2)) - 1);
        scroller.PaintTo(dc, 0, scroller.Area().y());
    }
}
BENCHMARK(ScrollFrameToWindow)->Unit(benchmark::kMicrosecond);

void FirstLayoutOfManyRows(benchmark::State& state)
{
    CBenchView bench(kManyItems, 96, QSize(int(state.range(0)), 640));
    for (auto _ : state) {
        bench.View.OnCreate();
        bench.View.Refresh();
    }
}
BENCHMARK(FirstLayoutOfManyRows)->Arg(240)->Arg(480)->Unit(benchmark::kMillisecond);

void ReloadOfManyRows(benchmark::State& state)
{
    CBenchView bench(kManyItems, 96, QSize(480, 640));
    bench.View.OnCreate();
    bench.View.Refresh();
    for (auto _ : state)
        bench.View.OnDataChanged(0, 0, 0);
}
BENCHMARK(ReloadOfManyRows)->Unit(benchmark::kMillisecond);
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
