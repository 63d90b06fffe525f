#include <gtest/gtest.h>

#include "drawing/screen_metrics.h"
#include "views/month_grid_layout.h"

namespace
{
struct Edges {
    int Left, Top, Right, Bottom;
    bool operator==(const Edges&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Edges& e)
{
    return out << e.Left << ' ' << e.Top << ' ' << e.Right << ' ' << e.Bottom;
}
Edges EdgesOf(const QRect& rect)
{
    return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}

// Grid, and the cells first, second, last of the second row, first and last of the last row.
const struct GridCase {
    const char* What;
    int Density;
    CMonthGridSetup Setup;
    QSize Grid;
    Edges First, Second, SecondRowLast, LastRowFirst, Last;
} kGrids[] = {
    {"portrait, five weeks",
     96,
     {{226, 280}, kQuickListBelow, 0, 16, 5, false, false},
     {226, 167},
     {0, 17, 32, 46},
     {33, 17, 64, 46},
     {193, 47, 226, 76},
     {0, 137, 32, 166},
     {193, 137, 226, 166}},
    {"portrait, four weeks",
     96,
     {{240, 280}, kQuickListBelow, 0, 16, 4, false, false},
     {240, 137},
     {0, 17, 34, 46},
     {35, 17, 68, 46},
     {205, 47, 240, 76},
     {0, 107, 34, 136},
     {205, 107, 240, 136}},
    {"portrait, six weeks",
     96,
     {{240, 280}, kQuickListBelow, 0, 16, 6, false, false},
     {240, 197},
     {0, 17, 34, 46},
     {35, 17, 68, 46},
     {205, 47, 240, 76},
     {0, 167, 34, 196},
     {205, 167, 240, 196}},
    {"portrait, week numbers",
     96,
     {{240, 280}, kQuickListBelow, 0, 16, 6, false, true},
     {240, 197},
     {17, 17, 48, 46},
     {49, 17, 80, 46},
     {209, 47, 240, 76},
     {17, 167, 48, 196},
     {209, 167, 240, 196}},
    {"low window",
     96,
     {{240, 150}, kQuickListBelow, 0, 16, 6, false, false},
     {240, 111},
     {0, 17, 34, 31},
     {35, 17, 68, 31},
     {205, 32, 240, 46},
     {0, 92, 34, 106},
     {205, 92, 240, 106}},
    {"list below in landscape",
     96,
     {{320, 200}, kQuickListBelow, 0, 16, 5, true, false},
     {320, 122},
     {0, 17, 46, 37},
     {47, 17, 91, 37},
     {272, 38, 320, 58},
     {0, 101, 46, 121},
     {272, 101, 320, 121}},
    {"list beside",
     96,
     {{306, 200}, kQuickListBeside, 108, 16, 5, true, false},
     {198, 201},
     {0, 17, 28, 53},
     {29, 17, 56, 53},
     {169, 54, 198, 90},
     {0, 165, 28, 201},
     {169, 165, 198, 201}},
    {"list beside, six weeks, numbers",
     96,
     {{306, 200}, kQuickListBeside, 108, 16, 6, true, true},
     {198, 201},
     {17, 17, 42, 46},
     {43, 17, 68, 46},
     {173, 47, 198, 76},
     {17, 167, 42, 201},
     {173, 167, 198, 201}},
    {"no list",
     96,
     {{240, 280}, kQuickListNone, 0, 16, 5, false, false},
     {240, 281},
     {0, 17, 34, 69},
     {35, 17, 68, 69},
     {205, 70, 240, 122},
     {0, 229, 34, 281},
     {205, 229, 240, 281}},
    {"no list, four weeks, numbers",
     96,
     {{241, 281}, kQuickListNone, 0, 16, 4, false, true},
     {241, 282},
     {18, 17, 49, 82},
     {50, 17, 81, 82},
     {210, 83, 241, 148},
     {18, 215, 49, 282},
     {210, 215, 241, 282}},
    {"portrait at 192",
     192,
     {{452, 560}, kQuickListBelow, 0, 30, 5, false, false},
     {452, 326},
     {0, 31, 65, 89},
     {66, 31, 129, 89},
     {386, 90, 452, 148},
     {0, 267, 65, 325},
     {386, 267, 452, 325}},
    {"week numbers at 192",
     192,
     {{480, 560}, kQuickListBelow, 0, 30, 6, false, true},
     {480, 385},
     {26, 31, 90, 89},
     {91, 31, 155, 89},
     {416, 90, 480, 148},
     {26, 326, 90, 384},
     {416, 326, 480, 384}},
    {"list beside at 192",
     192,
     {{612, 400}, kQuickListBeside, 216, 30, 5, true, false},
     {396, 401},
     {0, 31, 57, 104},
     {58, 31, 113, 104},
     {338, 105, 396, 178},
     {0, 327, 57, 401},
     {338, 327, 396, 401}},
    {"list beside, numbers at 192",
     192,
     {{640, 400}, kQuickListBeside, 216, 30, 6, true, true},
     {424, 401},
     {26, 31, 82, 91},
     {83, 31, 139, 91},
     {368, 92, 424, 152},
     {26, 336, 82, 401},
     {368, 336, 424, 401}},
    {"no list at 192, four weeks",
     192,
     {{640, 400}, kQuickListNone, 0, 30, 4, true, false},
     {640, 401},
     {0, 31, 91, 122},
     {92, 31, 182, 122},
     {547, 123, 640, 214},
     {0, 307, 91, 401},
     {547, 307, 640, 401}},
    {"a phone",
     192,
     {{1052, 2080}, kQuickListBelow, 0, 30, 6, false, false},
     {1052, 385},
     {0, 31, 150, 89},
     {151, 31, 300, 89},
     {901, 90, 1052, 148},
     {0, 326, 150, 384},
     {901, 326, 1052, 384}},
    {"a phone at 384",
     384,
     {{1080, 2000}, kQuickListBelow, 0, 60, 5, false, true},
     {1080, 646},
     {52, 61, 198, 177},
     {199, 61, 345, 177},
     {934, 178, 1080, 294},
     {52, 529, 198, 645},
     {934, 529, 1080, 645}},
};

class MonthLayout : public testing::Test
{
protected:
    void TearDown() override { g_ScreenMetrics.Init(96, {240, 320}); }
    static void SetDensity(int density) { g_ScreenMetrics.Init(density, {240, 320}); }
};
} // namespace

TEST_F(MonthLayout, CellsLieWhereTheRulesPutThem)
{
    for (const GridCase& c : kGrids) {
        SCOPED_TRACE(c.What);
        SetDensity(c.Density);
        const CMonthGridLayout grid(c.Setup);
        const int last = c.Setup.RowCount - 1;
        EXPECT_EQ(QSize(grid.Width(), grid.Height()), c.Grid);
        EXPECT_EQ(EdgesOf(grid.Cell(0, 0)), c.First);
        EXPECT_EQ(EdgesOf(grid.Cell(0, 1)), c.Second);
        EXPECT_EQ(EdgesOf(grid.Cell(1, 6)), c.SecondRowLast);
        EXPECT_EQ(EdgesOf(grid.Cell(last, 0)), c.LastRowFirst);
        EXPECT_EQ(EdgesOf(grid.Cell(last, 6)), c.Last);
    }
}

TEST_F(MonthLayout, CellsAreOneFreePixelApartAndEveryHitIsOneCell)
{
    for (const GridCase& c : kGrids) {
        SCOPED_TRACE(c.What);
        SetDensity(c.Density);
        const CMonthGridLayout grid(c.Setup);
        for (int row = 0; row < grid.RowCount(); ++row) {
            for (int column = 0; column < 7; ++column) {
                const Edges cell = EdgesOf(grid.Cell(row, column));
                if (column < 6) {
                    ASSERT_EQ(EdgesOf(grid.Cell(row, column + 1)).Left, cell.Right + 1);
                }
                if (row + 1 < grid.RowCount()) {
                    ASSERT_EQ(EdgesOf(grid.Cell(row + 1, column)).Top, cell.Bottom + 1);
                }
                int hitRow, hitColumn;
                for (const QPoint at : {grid.Cell(row, column).topLeft(), grid.Cell(row, column).center(),
                                        QPoint(std::min(cell.Right, grid.Width() - 1), cell.Bottom)}) {
                    ASSERT_TRUE(grid.CellAt(at, &hitRow, &hitColumn));
                    ASSERT_EQ(std::pair(hitRow, hitColumn), std::pair(row, column));
                }
            }
        }
        int row, column;
        EXPECT_FALSE(grid.CellAt({5, grid.TitleRowHeight()}, &row, &column)) << "the line below the names";
        EXPECT_FALSE(grid.CellAt({grid.Width(), grid.TitleRowHeight() + 5}, &row, &column));
        if (c.Setup.WeekNumbers) {
            EXPECT_FALSE(grid.CellAt({3, grid.TitleRowHeight() + 5}, &row, &column));
            EXPECT_EQ(grid.WeekNumberCell(1).y(), grid.Cell(1, 0).y());
            EXPECT_EQ(grid.WeekNumberCell(0).height(), grid.Cell(0, 0).height());
            EXPECT_EQ(EdgesOf(grid.WeekNumberCell(1)).Right, grid.Cell(1, 0).x() - 1);
            EXPECT_EQ(EdgesOf(grid.WeekNumberCell(grid.RowCount() - 1)).Bottom, grid.Height());
        } else {
            EXPECT_TRUE(grid.WeekNumberCell(0).isEmpty());
        }
    }
}

TEST_F(MonthLayout, NamesStandOverTheirColumnsUpToTheEdge)
{
    for (const GridCase& c : kGrids) {
        SCOPED_TRACE(c.What);
        SetDensity(c.Density);
        const CMonthGridLayout grid(c.Setup);
        int x = grid.Cell(0, 0).x();
        for (int column = 0; column < 7; ++column) {
            EXPECT_EQ(EdgesOf(grid.TitleCell(column)).Left, x);
            x = EdgesOf(grid.TitleCell(column)).Right;
            EXPECT_EQ(grid.TitleCell(column).height(), c.Setup.TitleRowHeight);
        }
        EXPECT_EQ(x, grid.Width());
    }
}

TEST_F(MonthLayout, BarAndListTakeTheRest)
{
    for (const GridCase& c : kGrids) {
        SCOPED_TRACE(c.What);
        SetDensity(c.Density);
        const CMonthGridLayout grid(c.Setup);
        const QRect bar = grid.Bar(36), list = grid.List(36);
        const QSize client = c.Setup.Client;
        switch (c.Setup.QuickList) {
        case kQuickListNone:
            EXPECT_TRUE(bar.isEmpty() && list.isEmpty());
            break;
        case kQuickListBelow:
            EXPECT_EQ(bar, QRect(0, grid.Height(), client.width(), 36));
            EXPECT_EQ(EdgesOf(list), (Edges{0, grid.Height() + 36, client.width(),
                                            std::max(client.height(), grid.Height() + 36)}));
            break;
        case kQuickListBeside:
            EXPECT_EQ(EdgesOf(bar), (Edges{grid.Width() + 1, 0, client.width(), 36}));
            EXPECT_EQ(EdgesOf(list), (Edges{grid.Width() + 1, 36, client.width(), client.height()}));
            break;
        }
    }
}

TEST_F(MonthLayout, AGrownCellStaysInsideLeftRightAndBottom)
{
    SetDensity(96);
    const CMonthGridLayout grid({{240, 280}, kQuickListNone, 0, 16, 5, false, false});
    const struct {
        int Row, Column;
        QPoint Moved; // against the cell grown on all sides
    } cases[] = {{2, 3, {0, 0}}, {0, 0, {6, 0}}, {0, 6, {-6, 0}}, {4, 3, {0, -7}}, {4, 6, {-6, -7}}};
    for (const auto& c : cases) {
        const QRect cell = grid.Cell(c.Row, c.Column);
        EXPECT_EQ(grid.PopOut(cell, 6), cell.adjusted(-6, -6, 6, 6).translated(c.Moved))
            << c.Row << ' ' << c.Column;
        const QRect same = grid.PopOut(cell, 0);
        EXPECT_EQ(same.size(), cell.size());
        EXPECT_LE(EdgesOf(same).Bottom, 280) << "what grows not must still be seen whole";
    }
    EXPECT_LT(grid.PopOut(grid.Cell(0, 3), 6).y(), grid.TitleRowHeight()) << "upwards it may cover the names";
}

TEST_F(MonthLayout, WindowsTooSmallForAGridDoNoHarm)
{
    for (const QSize size : {QSize(0, 0), QSize(5, 3), QSize(30, 500), QSize(500, 20)}) {
        for (const QuickListMode mode : {kQuickListNone, kQuickListBelow, kQuickListBeside}) {
            const CMonthGridLayout grid({size, mode, mode == kQuickListBeside ? 108 : 0, 16, 6, false, true});
            for (int row = 0; row < 6; ++row) {
                for (int column = 0; column < 7; ++column) {
                    const QRect cell = grid.Cell(row, column);
                    EXPECT_TRUE(cell.width() >= 0 && cell.height() >= 0);
                }
            }
            EXPECT_GE(grid.List(21).height(), 0);
            EXPECT_GE(grid.Width(), 0);
        }
    }
}

TEST_F(MonthLayout, WhatShowsBesideFollowsSettingAndOrientation)
{
    const struct {
        int Setting;
        bool Landscape;
        QuickListMode Mode;
    } cases[] = {{0, false, kQuickListNone},   {0, true, kQuickListNone},   {1, false, kQuickListBelow},
                 {1, true, kQuickListBeside},  {2, false, kQuickListBelow}, {2, true, kQuickListBelow},
                 {3, false, kQuickListBeside}, {3, true, kQuickListBeside}, {99, true, kQuickListBeside}};
    for (const auto& c : cases)
        EXPECT_EQ(QuickListModeOf(c.Setting, c.Landscape), c.Mode) << c.Setting << c.Landscape;
}

// ---- inside a cell

TEST_F(MonthLayout, PartsOfACell)
{
    const struct {
        const char* What;
        int Density;
        QRect Cell;
        CMonthCellSetup Setup;
        Edges Number, Timeline;
        QPoint Check;
    } cases[] = {
        {"plain",
         96,
         {100, 50, 34, 29},
         {{12, 12}, 0, false},
         {101, 51, 113, 63},
         {117, 51, 131, 58},
         {115, 52}},
        {"tasks push the hours",
         96,
         {100, 50, 34, 29},
         {{12, 12}, 9, false},
         {101, 51, 113, 63},
         {125, 51, 131, 58},
         {115, 52}},
        {"a wide cell has room for both",
         96,
         {0, 0, 80, 29},
         {{12, 12}, 9, false},
         {1, 1, 13, 13},
         {40, 1, 77, 8},
         {15, 2}},
        {"beside a list",
         96,
         {100, 50, 28, 36},
         {{12, 12}, 9, true},
         {101, 51, 113, 63},
         {101, 62, 125, 69},
         {115, 52}},
        {"twice the density",
         192,
         {0, 0, 66, 58},
         {{24, 24}, 18, false},
         {2, 2, 26, 26},
         {50, 2, 60, 16},
         {30, 4}},
        {"too narrow", 96, {0, 0, 20, 29}, {{12, 12}, 9, false}, {1, 1, 13, 13}, {25, 1, 25, 8}, {15, 2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.What);
        SetDensity(c.Density);
        const CMonthCellParts parts = PartsOfCell(c.Cell, c.Setup);
        EXPECT_EQ(EdgesOf(parts.Number), c.Number);
        EXPECT_EQ(EdgesOf(parts.Timeline), c.Timeline);
        EXPECT_EQ(parts.Check, c.Check);
    }
}

TEST_F(MonthLayout, IconsFillTwoRowsFromTheLowerRightCorner)
{
    const QSize icon(16, 16);
    const QRect cell(100, 50, 34, 60); // its lower right corner for pictures: 133, 109
    const struct {
        const char* What;
        QRect Cell;
        int TimelineBottom;
        int Icons;
        std::vector<QPoint> Places;
    } cases[] = {
        {"none", cell, 58, 0, {}},
        {"one", cell, 58, 1, {{117, 93}}},
        {"two rows of two", cell, 58, 4, {{117, 93}, {101, 93}, {117, 76}, {101, 76}}},
        {"a third row there is not", cell, 58, 6, {{117, 93}, {101, 93}, {117, 76}, {101, 76}}},
        {"no room under the hours", {100, 50, 34, 29}, 58, 3, {{117, 62}, {101, 62}}},
        {"not even one", {100, 50, 34, 20}, 58, 3, {}},
        {"narrower than an icon", {100, 50, 12, 60}, 58, 2, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CategoryIconPlaces(c.Cell, c.TimelineBottom, std::vector<QSize>(size_t(c.Icons), icon)),
                  c.Places)
            << c.What;
}
