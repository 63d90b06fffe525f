// A frame of the slide from one day's picture to another's, and of the strip of dates that runs under
// a finger, as the window paints them.
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "settings/settings.h"
#include "touch/date_overlay.h"
#include "touch/device_pixels.h"
#include "touch/screen_transition.h"
#include "touch/timer_ids.h"
#include "touch/virtual_keys.h"
#include "util/date_time.h"

namespace
{
QSize SizeOf(const benchmark::State& state)
{
    const QSize size(int(state.range(0)), int(state.range(1)));
    const int density = size.width() > 320 ? 192 : 96;
    ForceDensity(density);
    g_ScreenMetrics.Init(density, size);
    LoadResourceLibraries(QString());
    return size;
}

QImage Picture(QSize size, QRgb color)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

void SlideFrame(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    g_Settings.General.SlidingScreens = 1;
    const QImage old = Picture(size, 0xFFFFFFFF), coming = Picture(size, 0xFFE0E8F0);
    QImage window = Picture(size, 0xFF000000);
    CScreenTransition transition([] {});
    int direction = 1;
    for (auto _ : state) {
        if (!transition.IsRunning()) {
            direction = -direction;
            transition.StartTransition(direction, old);
            transition.SetPicture(coming);
        }
        QPainter dc(&window);
        transition.PaintTransition(dc);
        dc.end();
        transition.OnTransitionTimer(kTimerTransition);
    }
}

// The finger stays at the edge, where the dates run fastest.
void OverlayFrame(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    g_Settings.General.TouchNavAnimation = 1;
    QImage window = Picture(size, 0xFF000000);
    CDateOverlay overlay([](const QRect&) {});
    overlay.StartGesture(int(state.range(2)), kKeyLeft, DayNumberOf(2026, 3, 17), {1, 50},
                         Picture(size, 0xFFFFFFFF));
    for (auto _ : state) {
        overlay.OnTimer(kTimerOverlay);
        QPainter dc(&window);
        dc.setClipRect(overlay.StripRect());
        overlay.Paint(dc);
    }
}

BENCHMARK(SlideFrame)->Args({240, 280})->Args({480, 640})->Args({1080, 2160})->Unit(benchmark::kMillisecond);
BENCHMARK(OverlayFrame)
    ->Args({240, 280, kOverlayDays})
    ->Args({1080, 2160, kOverlayDays})
    ->Args({1080, 2160, kOverlayWeeks})
    ->Args({1080, 2160, kOverlayMonths})
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
