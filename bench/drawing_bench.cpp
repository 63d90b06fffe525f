// Our exact blend against QPainter's own SourceOver, on the same pixels: a whole surface of a
// handheld of old (480 x 640) and of today (1080 x 2160).
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cstring>

#include "drawing/alpha_image.h"
#include "drawing/paint.h"
#include "drawing/surface.h"

namespace
{
// Pixels of every alpha, the same in each run.
QImage Noise(QSize size)
{
    QImage image(size, QImage::Format_ARGB32);
    quint32 seed = 1;
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            seed = seed * 1664525u + 1013904223u;
            line[x] = seed;
        }
    }
    return image;
}

QSize SizeOf(const benchmark::State& state)
{
    return QSize(int(state.range(0)), int(state.range(1)));
}

void OurDrawImage(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    COffscreenSurface surface(size.width(), size.height(), 0x345678);
    const CAlphaImage image = CAlphaImage::FromImage(Noise(size));
    for (auto _ : state)
        DrawImage(image, surface.Dc(), 0, 0);
    benchmark::DoNotOptimize(surface.Image().constBits());
}

void PainterDrawImage(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    COffscreenSurface surface(size.width(), size.height(), 0x345678);
    const QImage image = Noise(size).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        surface.Dc().drawImage(0, 0, image);
    benchmark::DoNotOptimize(surface.Image().constBits());
}

void OurBlendRect(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    COffscreenSurface surface(size.width(), size.height(), 0x345678);
    for (auto _ : state)
        BlendRect(surface.Dc(), QRect(QPoint(), size), 0x56789A, 128);
    benchmark::DoNotOptimize(surface.Image().constBits());
}

void PainterFillAlpha(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    COffscreenSurface surface(size.width(), size.height(), 0x345678);
    QColor veil = ToQColor(0x56789A);
    veil.setAlpha(128);
    for (auto _ : state)
        surface.Dc().fillRect(QRect(QPoint(), size), veil);
    benchmark::DoNotOptimize(surface.Image().constBits());
}

void CopySurface(benchmark::State& state)
{
    const QSize size = SizeOf(state);
    const QImage from = Noise(size);
    QImage to(size, QImage::Format_ARGB32);
    to.fill(0);
    for (auto _ : state)
        std::memcpy(to.bits(), from.constBits(), size_t(from.sizeInBytes()));
    benchmark::DoNotOptimize(to.constBits());
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->Args({480, 640})->Args({1080, 2160})->Unit(benchmark::kMicrosecond);
}
} // namespace

BENCHMARK(OurDrawImage)->Apply(Sizes);
BENCHMARK(PainterDrawImage)->Apply(Sizes);
BENCHMARK(OurBlendRect)->Apply(Sizes);
BENCHMARK(PainterFillAlpha)->Apply(Sizes);
BENCHMARK(CopySurface)->Apply(Sizes);
BENCHMARK_MAIN();
