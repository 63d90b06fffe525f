#include <gtest/gtest.h>

#include "drawing/screen_metrics.h"
#include "touch/device_pixels.h"
#include "views/task_row_layout.h"

namespace
{
void SetDensity(int density)
{
    ForceDensity(density);
    g_ScreenMetrics.Init(density, {240, 320});
}
constexpr QSize kIcon(13, 13);
} // namespace

TEST(TaskRowLayout, PartsStandWhereTheTableSays)
{
    const struct {
        int Density;
        QSize Row, CheckBox;
        int DateColumn;
        QSize Priority;
        int Icons;
        QRect Box, LastIcon, Date, Prio, Subject;
    } cases[] = {
        {96, {240, 18}, {15, 15}, 30, {}, 0, {221, 1, 15, 15}, {}, {2, 0, 30, 18}, {}, {36, 0, 183, 18}},
        {96, {240, 18}, {15, 15}, 0, {}, 0, {221, 1, 15, 15}, {}, {}, {}, {5, 0, 214, 18}},
        {96,
         {240, 18},
         {15, 15},
         30,
         {9, 13},
         1,
         {221, 1, 15, 15},
         {206, 2, 13, 13},
         {2, 0, 30, 18},
         {34, 2, 9, 13},
         {45, 0, 159, 18}},
        {96,
         {240, 18},
         {15, 15},
         30,
         {},
         4,
         {221, 1, 15, 15},
         {161, 2, 13, 13},
         {2, 0, 30, 18},
         {},
         {36, 0, 123, 18}},
        {192, {480, 36}, {30, 30}, 60, {}, 0, {442, 3, 30, 30}, {}, {4, 0, 60, 36}, {}, {72, 0, 366, 36}},
    };
    for (const auto& c : cases) {
        SetDensity(c.Density);
        const auto layout = CTaskRowLayout::Of(
            {c.Row, c.CheckBox, c.DateColumn, c.Priority, std::vector<QSize>(size_t(c.Icons), kIcon)});
        EXPECT_EQ(layout.CheckBox, c.Box);
        EXPECT_EQ(layout.Date, c.Date);
        EXPECT_EQ(layout.Priority, c.Prio);
        EXPECT_EQ(layout.Subject, c.Subject);
        ASSERT_EQ(int(layout.Icons.size()), c.Icons);
        if (c.Icons) {
            EXPECT_EQ(layout.Icons.back(), c.LastIcon);
        }
    }
    ForceDensity(-1);
}

TEST(TaskRowLayout, NothingOverlapsHoweverManyIconsThereAre)
{
    SetDensity(96);
    for (int width = 0; width <= 400; width += 20) {
        for (int icons = 0; icons <= 7; ++icons) {
            const auto layout = CTaskRowLayout::Of(
                {{width, 18}, {15, 15}, 40, {9, 13}, std::vector<QSize>(size_t(icons), kIcon)});
            EXPECT_EQ(int(layout.Icons.size()), std::min(icons, kMostTaskIcons));
            int right = layout.CheckBox.x();
            for (const QRect& icon : layout.Icons) {
                EXPECT_LT(icon.right(), right);
                right = icon.x();
            }
            EXPECT_GE(layout.Subject.width(), 0);
            EXPECT_LE(layout.Subject.width() == 0 ? right : layout.Subject.right(), right);
            EXPECT_GT(layout.Subject.x(), layout.Priority.right());
            EXPECT_GT(layout.Priority.x(), layout.Date.right());
        }
    }
    ForceDensity(-1);
}

TEST(TaskRowLayout, ATitleHasItsCountAtTheRight)
{
    const struct {
        int Density;
        QSize Row, Box, Picture;
        int Count;
        QRect BoxAt, Title, PictureAt, CountAt;
    } cases[] = {
        {96,
         {240, 19},
         {11, 11},
         {13, 13},
         24,
         {2, 4, 11, 11},
         {15, 0, 180, 19},
         {197, 3, 13, 13},
         {212, 0, 24, 19}},
        {192,
         {480, 38},
         {22, 22},
         {26, 26},
         48,
         {4, 8, 22, 22},
         {30, 0, 360, 38},
         {394, 6, 26, 26},
         {424, 0, 48, 38}},
    };
    for (const auto& c : cases) {
        SetDensity(c.Density);
        const auto layout = CGroupTitleLayout::Of(c.Row, c.Box, c.Picture, c.Count);
        EXPECT_EQ(layout.Box, c.BoxAt);
        EXPECT_EQ(layout.Title, c.Title);
        EXPECT_EQ(layout.Picture, c.PictureAt);
        EXPECT_EQ(layout.Count, c.CountAt);
    }
    ForceDensity(-1);
}

TEST(TaskRowLayout, ThePaneTakesItsHeightFromTheList)
{
    const struct {
        int Density;
        QSize View;
        bool HasPane;
        int Pane;
    } cases[] = {{96, {240, 268}, true, 60},   {96, {320, 160}, true, 60}, {96, {240, 268}, false, 0},
                 {192, {480, 536}, true, 120}, {96, {240, 40}, true, 40},  {96, {1, 1}, true, 1}};
    for (const auto& c : cases) {
        SetDensity(c.Density);
        const auto layout = CTasksLayout::Of(c.View, c.HasPane);
        EXPECT_EQ(layout.Pane, QRect(0, c.View.height() - c.Pane, c.View.width(), c.Pane));
        EXPECT_EQ(layout.List, QRect(0, 0, c.View.width(), c.View.height() - c.Pane));
    }
    ForceDensity(-1);
}
