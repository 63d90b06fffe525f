// Our exact blend against QPainter's own SourceOver, on the same pixels: a whole surface of a
// handheld of old (480 x 640) and of today (1080 x 2160). Then the cost of a line of text.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <benchmark/benchmark.h>
#include <cstring>

#include "drawing/alpha_image.h"
#include "drawing/paint.h"
#include "drawing/surface.h"
#include "drawing/text.h"

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

enum TextWay : int { WayNew, WayKept, WayElided, WayWrapped, WayPainter };

void TextLine(benchmark::State& state)
{
    const auto way = TextWay(state.range(0));
    COffscreenSurface surface(460, 64);
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans Condensed")});
    font.setPixelSize(16);
    surface.Dc().setFont(font);
    const QRect rect(0, 0, way == WayElided ? 120 : way == WayWrapped ? 160 : 460, 64);
    const unsigned flags = way == WayWrapped ? 0x810 : 0x40824;
    int i = 0;
    for (auto _ : state) {
        // Texts that differ are not found among the kept ones.
        QString text = QStringLiteral("Meet with the board about budget 0000");
        if (way != WayKept)
            text.replace(33, 4, QString::number(1000 + ++i % 9000));
        if (way == WayPainter)
            surface.Dc().drawText(rect, Qt::AlignVCenter | Qt::TextSingleLine, text);
        else
            DrawText(surface.Dc(), text, rect, flags);
    }
    benchmark::DoNotOptimize(surface.Image().constBits());
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
BENCHMARK(TextLine)
    ->ArgName("new_kept_elided_wrapped_painter")
    ->DenseRange(WayNew, WayPainter)
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
