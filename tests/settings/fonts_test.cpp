#include "settings/fonts.h"

#include "settings/settings.h"

#include <gtest/gtest.h>

TEST(Fonts, FollowTheTableAndTheTextSizes)
{
    const CSettings before = g_Settings;
    g_Settings = CSettings();
    g_Settings.ListView.TextSize = 2;
    g_Settings.ListView.TextTitleSize = 5;
    g_Settings.MonthView.QuickViewTextSize = 1;
    g_Settings.DailyView.TextSize = 17;
    g_Settings.WeekView.TextSize = 3;
    g_Settings.WeekView.TextTitleSize = 4;
    g_Settings.TasksView.TextSize = 6;
    g_Settings.TasksView.TextTitleSize = 7;
    g_Settings.TasksView.PreviewTextSize = 8;
    g_Settings.General.CustomTitlebarSize = 9;
    struct {
        int Id, Weight, Single, Double;
    } const cases[] = {
        {0, 0, 14, 28},     {1, 700, 14, 28},    {2, 0, 13, 26},     {3, 0, 12, 24},     {4, 600, 14, 28},
        {5, 600, 14, 28},   {6, 600, 13, 26},    {100, 0, 15, 31},   {101, 700, 16, 32}, {102, 700, 19, 38},
        {200, 0, 14, 28},   {201, 0, 12, 24},    {300, 700, 15, 30}, {400, 0, 13, 26},   {500, 700, 10, 20},
        {501, 0, 15, 30},   {502, 700, 11, 22},  {600, 0, 30, 61},   {601, 700, 31, 62}, {602, 700, 31, 62},
        {700, 0, 17, 34},   {701, 0, 18, 36},    {800, 0, 20, 40},   {801, 700, 21, 42}, {802, 0, 22, 44},
        {900, 700, 11, 22}, {1000, 700, 21, 42}, {7, 100, 0, 0},     {-1, 100, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GetFontSpec(c.Id, 1).Weight, c.Weight) << c.Id;
        EXPECT_EQ(GetFontSpec(c.Id, 1).PixelHeight, c.Single) << c.Id;
        EXPECT_EQ(GetFontSpec(c.Id, 2).PixelHeight, c.Double) << c.Id;
        EXPECT_EQ(GetFontSpec(c.Id, 2).StrikeOut, c.Id == 602) << c.Id;
    }
    EXPECT_EQ(GetFontSpec(100, 4).PixelHeight, 63); // four times, less one pixel
    const int escapements[] = {0, 900, 0, 2700, 0, 0};
    for (int location = 0; location < 6; ++location) {
        g_Settings.General.CustomTitlebarLocation = location;
        EXPECT_EQ(GetFontSpec(1000, 2).Escapement, escapements[location]) << location;
        EXPECT_EQ(GetFontSpec(1, 2).Escapement, 0);
    }
    for (const qint32 size : {-2147483647 - 1, -50, 1000000, 2147483647}) { // a file may say anything
        g_Settings.DailyView.TextSize = size;
        EXPECT_GT(GetFontSpec(600, 4).PixelHeight, 0) << size;
        EXPECT_LE(GetFontSpec(600, 4).PixelHeight, 400) << size;
        g_Settings.General.CustomTitlebarSize = size;
        EXPECT_EQ(GetFontSpec(1000, 1).PixelHeight, size < 0 ? 12 : 26) << "stays within its strip";
    }
    g_Settings = before;
}
