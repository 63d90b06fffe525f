#include "drawing/blend_span.h"

#include <gtest/gtest.h>
#include <vector>

#include "drawing/art.h"
#include "drawing/paint.h"
#include "drawing/surface.h"

namespace
{
// The blend as told: exact division by 255 with rounding, written without the shifts.
quint32 Expected(quint32 a, quint32 b, quint32 alpha)
{
    return (2 * (a * alpha + b * (255 - alpha)) + 255) / 510;
}

TEST(Blend, AllValuesRoundAsTheDivisionDoes)
{
    for (quint32 alpha = 0; alpha < 256; ++alpha) {
        for (quint32 a = 0; a < 256; ++a) {
            for (quint32 b = 0; b < 256; ++b)
                ASSERT_EQ(BlendChannel(a, b, alpha), Expected(a, b, alpha)) << a << " " << b << " " << alpha;
        }
    }
}

// Every pair of colours in every plane, against the formula for one colour.
TEST(BlendSpan, AgreesWithTheSingleBlendForAllValues)
{
    std::vector<quint32> source(256);
    std::vector<quint32> ground(256);
    for (quint32 alpha = 0; alpha < 256; ++alpha) {
        for (quint32 a = 0; a < 256; ++a) {
            const quint32 red = a;
            const quint32 green = 255 - a;
            const quint32 blue = a ^ 0x55;
            for (quint32 b = 0; b < 256; ++b) {
                source[b] = alpha << 24 | red << 16 | green << 8 | blue;
                ground[b] = 0xFF000000 | b << 16 | (b ^ 0xAA) << 8 | (255 - b);
            }
            std::vector<quint32> result = ground;
            BlendSpan(result.data(), source.data(), 256);
            std::vector<quint32> oneColor = ground;
            BlendColorSpan(oneColor.data(), 256, source[0], alpha);
            ASSERT_EQ(result, oneColor);
            for (quint32 b = 0; b < 256; ++b) {
                const quint32 expected = 0xFF000000 | BlendChannel(red, b, alpha) << 16 |
                                         BlendChannel(green, b ^ 0xAA, alpha) << 8 |
                                         BlendChannel(blue, 255 - b, alpha);
                ASSERT_EQ(result[b], expected) << a << " " << b << " " << alpha;
            }
        }
    }
}

TEST(BlendSpan, TouchesNothingOutsideTheRun)
{
    for (int count = 0; count < 40; ++count) {
        std::vector<quint32> ground(42, 0xFF123456);
        std::vector<quint32> source(42, 0x80FFFFFF);
        BlendSpan(ground.data() + 1, source.data(), count);
        BlendColorSpan(ground.data() + 1, count, 0xFFFFFF, 128);
        EXPECT_EQ(ground[0], 0xFF123456);
        EXPECT_EQ(ground[size_t(count) + 1], 0xFF123456);
        if (count > 0) {
            EXPECT_NE(ground[1], 0xFF123456);
            EXPECT_EQ(ground[1], ground[size_t(count)]) << count;
        }
    }
}

TEST(BlendRect, IsTheBlendOfEachPixelInsideTheRectangle)
{
    COffscreenSurface surface(19, 3, Rgb(1, 2, 3));
    BlendRect(surface.Dc(), QRect(1, 1, 17, 1), kColorWhite, 128);
    const COLORREF veiled = Blend(kColorWhite, Rgb(1, 2, 3), 128);
    EXPECT_EQ(Art(surface.Image(), {{Rgb(1, 2, 3), 'o'}, {veiled, 'v'}}), "ooooooooooooooooooo\n"
                                                                          "ovvvvvvvvvvvvvvvvvo\n"
                                                                          "ooooooooooooooooooo\n");
}
} // namespace
