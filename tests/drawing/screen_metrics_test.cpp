#include "drawing/screen_metrics.h"

#include <gtest/gtest.h>

namespace
{
struct Case {
    int density;
    int forced;
    int multiple;
};

class ScreenMetrics : public testing::TestWithParam<Case>
{
};

TEST_P(ScreenMetrics, ScalesByTheDensityInForce)
{
    const auto [density, forced, multiple] = GetParam();
    CScreenMetrics metrics;
    metrics.Init(density, QSize(240, 320), forced);
    EXPECT_EQ(metrics.Multiple(), multiple);
    EXPECT_EQ(metrics.Density(), 96 * multiple);
    EXPECT_EQ(metrics.m_lowRes, multiple == 1);
    EXPECT_EQ(metrics.m_highRes, multiple > 1);
    for (const int x : {-7, -1, 0, 1, 3, 40}) {
        EXPECT_EQ(metrics.Double(x), multiple * x);
        EXPECT_EQ(metrics.ScaleX(x), multiple * x);
        EXPECT_EQ(metrics.ScaleY(x), multiple * x);
    }
}

INSTANTIATE_TEST_SUITE_P(Densities, ScreenMetrics,
                         testing::Values(Case{96, -1, 1}, Case{191, -1, 1}, Case{192, -1, 2},
                                         Case{287, -1, 2}, Case{288, -1, 3}, Case{383, -1, 3},
                                         Case{384, -1, 4}, Case{1000, -1, 4}, Case{0, -1, 1},
                                         Case{96, 192, 2}, Case{384, 96, 1}));

TEST(ScreenMetricsScale, NeverLosesANonZeroMeasure)
{
    CScreenMetrics metrics;
    EXPECT_EQ(metrics.ScaleX(0.2), 1);
    EXPECT_EQ(metrics.ScaleX(-0.2), -1);
    EXPECT_EQ(metrics.ScaleX(0), 0);
    EXPECT_EQ(metrics.ScaleX(1.9), 1);
    metrics.Init(192, QSize());
    EXPECT_EQ(metrics.ScaleY(0.75), 1);
    EXPECT_EQ(metrics.ScaleY(-1.75), -3);
}

TEST(ScreenMetricsOrientation, FollowsTheSizeAndKeepsItWhenNoneIsKnown)
{
    CScreenMetrics metrics;
    metrics.Init(96, QSize(320, 240));
    EXPECT_TRUE(metrics.m_landscape);
    metrics.Init(96, QSize());
    EXPECT_TRUE(metrics.m_landscape);
    metrics.Init(96, QSize(240, 240));
    EXPECT_FALSE(metrics.m_landscape);
}

TEST(ScreenMetricsInit, CanGoBackToALowDensity)
{
    CScreenMetrics metrics;
    metrics.Init(288, QSize(1, 2));
    metrics.Init(96, QSize(1, 2));
    EXPECT_TRUE(metrics.m_lowRes);
    EXPECT_EQ(metrics.ScaleX(5), 5);
}
} // namespace
