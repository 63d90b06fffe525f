#include "touch/white_picture.h"
#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/screen_metrics.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <vector>

namespace
{
constexpr double kEnoughContrast = 3;
constexpr quint32 kEdgeAlpha = 170; // of black over the ground's colour
constexpr int kInkRange = 180;      // how far the pictures' ink lies below white

double LinearOf(quint32 channel)
{
    const double c = channel / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double Luminance(COLORREF color)
{
    return 0.2126 * LinearOf(RedOf(color)) + 0.7152 * LinearOf(GreenOf(color)) +
           0.0722 * LinearOf(BlueOf(color));
}

// How much ink stands at each pixel: dark strokes count whole, white grounds not at all.
std::vector<quint8> InkOf(const CAlphaImage& image)
{
    std::vector<quint8> ink(size_t(image.Width()) * size_t(image.Height()));
    for (size_t n = 0; n < ink.size(); ++n) {
        const int luma = (image.Red()[n] * 77 + image.Green()[n] * 151 + image.Blue()[n] * 28) >> 8;
        ink[n] = quint8(image.Alpha()[n] * std::min(255 - luma, kInkRange) / kInkRange);
    }
    return ink;
}

// The strongest neighbour within `radius` to each side, along one axis of the plane.
std::vector<quint8> Spread(const std::vector<quint8>& plane, int count, int lines, int step, int lineStep,
                           int radius)
{
    std::vector<quint8> result(plane.size());
    for (int line = 0; line < lines; ++line) {
        for (int n = 0; n < count; ++n) {
            quint8 most = 0;
            for (int m = std::max(n - radius, 0); m <= std::min(n + radius, count - 1); ++m)
                most = std::max(most, plane[size_t(line * lineStep + m * step)]);
            result[size_t(line * lineStep + n * step)] = most;
        }
    }
    return result;
}

CAlphaImage SolidInk(int width, int height, const std::vector<quint8>& alpha, COLORREF color)
{
    CAlphaImage image;
    if (image.CreateSolid(width, height, color, 0))
        std::copy(alpha.begin(), alpha.end(), image.EditAlpha());
    return image;
}

struct WhitePicture {
    CAlphaImage White, Edge;
};

WhitePicture MakeWhitePicture(const CAlphaImage& image, COLORREF ground)
{
    const int width = image.Width(), height = image.Height();
    const std::vector<quint8> ink = InkOf(image);
    WhitePicture made;
    made.White = SolidInk(width, height, ink, kColorWhite);
    if (Contrast(kColorWhite, ground) < kEnoughContrast) {
        const auto across = Spread(ink, width, height, 1, width, D(1));
        made.Edge = SolidInk(width, height, Spread(across, height, width, width, 1, D(1)),
                             Blend(kColorBlack, ground, kEdgeAlpha));
    }
    return made;
}
} // namespace

double Contrast(COLORREF a, COLORREF b)
{
    const double first = Luminance(a), second = Luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

void DrawWhitePicture(QPainter& dc, QPoint at, int imageId, COLORREF ground)
{
    const CAlphaImage& image = g_ImageStore.Image(imageId);
    if (!image.IsValid())
        return;
    static std::map<std::tuple<int, COLORREF, int>, WhitePicture> made;
    const auto [entry, isNew] = made.try_emplace({imageId, ground, g_ScreenMetrics.Multiple()});
    if (isNew)
        entry->second = MakeWhitePicture(image, ground);
    DrawImage(entry->second.Edge, dc, at.x(), at.y());
    DrawImage(entry->second.White, dc, at.x(), at.y());
}
