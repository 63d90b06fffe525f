// Which tile lies where, and which day stands on it; measured on a view of 240 by 270.
#include <gtest/gtest.h>

#include "views/week_tiles.h"

namespace
{
struct CCase {
    const char* What;
    bool WideFirst;
    int BarPlace;
    int Left, Top, Right, Bottom; // of the tiles' area; the latter two exclusive
};
const CCase kCases[] = {
    {"no bar", false, 0, 0, 0, 240, 270},          {"bar above", false, 1, 0, 21, 240, 270},
    {"bar below", false, 2, 0, 0, 240, 249},       {"wide, no bar", true, 0, 0, 0, 240, 270},
    {"wide, bar above", true, 1, 0, 21, 240, 270}, {"wide, bar below", true, 2, 0, 0, 240, 249},
};

QRect Edges(int left, int top, int right, int bottom)
{
    return {left, top, right - left, bottom - top};
}

CWeekTiles TilesOf(bool wideFirst, int barPlace, bool down = false, QSize client = {240, 270})
{
    return CWeekTiles({client, barPlace, 21, wideFirst, down});
}
} // namespace

TEST(WeekTiles, EveryTileLiesWhereItsLayoutPutsIt)
{
    for (const CCase& c : kCases) {
        const CWeekTiles tiles = TilesOf(c.WideFirst, c.BarPlace);
        ASSERT_EQ(tiles.Area(), Edges(c.Left, c.Top, c.Right, c.Bottom)) << c.What;
        const int T = c.Top, B = c.Bottom, W = 240, M = 120, r = (B - T) / (c.WideFirst ? 4 : 3);
        const QRect three[] = {Edges(0, T, M, T + r),
                               Edges(M + 1, T, W, T + r),
                               Edges(0, T + r + 1, M, T + 2 * r),
                               Edges(M + 1, T + r + 1, W, T + 2 * r),
                               Edges(0, T + 2 * r + 1, M, B),
                               Edges(M + 1, T + 2 * r + 1, W, T + 2 * r + 1 + r / 2),
                               Edges(M + 1, T + 2 * r + r / 2 + 2, W, B)};
        const QRect four[] = {Edges(0, T, W, T + r),
                              Edges(0, T + r + 1, M, T + 2 * r),
                              Edges(M + 1, T + r + 1, W, T + 2 * r),
                              Edges(0, T + 2 * r + 1, M, T + 3 * r),
                              Edges(M + 1, T + 2 * r + 1, W, T + 3 * r),
                              Edges(0, T + 3 * r + 1, M, B),
                              Edges(M + 1, T + 3 * r + 1, W, B)};
        for (int tile = 0; tile < 7; ++tile)
            EXPECT_EQ(tiles.Tile(tile), c.WideFirst ? four[tile] : three[tile]) << c.What << ' ' << tile;
    }
}

TEST(WeekTiles, TheSizesOfAKnownViewAreThese)
{
    const QRect three[] = {{0, 0, 120, 90},   {121, 0, 119, 90},   {0, 91, 120, 89},   {121, 91, 119, 89},
                           {0, 181, 120, 89}, {121, 181, 119, 45}, {121, 227, 119, 43}};
    const QRect four[] = {{0, 0, 240, 67},     {0, 68, 120, 66},  {121, 68, 119, 66}, {0, 135, 120, 66},
                          {121, 135, 119, 66}, {0, 202, 120, 68}, {121, 202, 119, 68}};
    for (int tile = 0; tile < 7; ++tile) {
        EXPECT_EQ(TilesOf(false, 0).Tile(tile), three[tile]) << tile;
        EXPECT_EQ(TilesOf(true, 0).Tile(tile), four[tile]) << tile;
    }
}

TEST(WeekTiles, DaysFollowAcrossOrDownTheColumns)
{
    const struct {
        bool Down, WideFirst;
        int Tiles[7];
    } cases[] = {{false, false, {0, 1, 2, 3, 4, 5, 6}},
                 {false, true, {0, 1, 2, 3, 4, 5, 6}},
                 {true, false, {0, 2, 4, 1, 3, 5, 6}},
                 {true, true, {0, 1, 3, 5, 2, 4, 6}}};
    for (const auto& c : cases) {
        const CWeekTiles tiles = TilesOf(c.WideFirst, 0, c.Down);
        for (int day = 0; day < 7; ++day)
            EXPECT_EQ(tiles.TileOfDay(day), c.Tiles[day]) << c.Down << c.WideFirst << ' ' << day;
    }
}

TEST(WeekTiles, ThePointsOfATileAreItsDaysAndTilesDoNotOverlap)
{
    for (const QSize client : {QSize(240, 270), QSize(320, 190), QSize(1080, 2060), QSize(241, 101)}) {
        for (const CCase& c : kCases) {
            for (const bool down : {false, true}) {
                const CWeekTiles tiles = TilesOf(c.WideFirst, c.BarPlace, down, client);
                for (int day = 0; day < 7; ++day) {
                    const QRect tile = tiles.TileForDay(day);
                    ASSERT_TRUE(tiles.Area().contains(tile)) << c.What;
                    EXPECT_EQ(tiles.DayAt(tile.topLeft()), day);
                    EXPECT_EQ(tiles.DayAt(tile.center()), day);
                    EXPECT_EQ(tiles.DayAt(tile.bottomRight()), day);
                    for (int other = day + 1; other < 7; ++other)
                        EXPECT_FALSE(tile.intersects(tiles.TileForDay(other))) << c.What;
                }
                EXPECT_EQ(tiles.DayAt({-1, 50}), -1);
                EXPECT_EQ(tiles.DayAt({0, client.height()}), -1);
                EXPECT_FALSE(tiles.Bar().intersects(tiles.Area()));
            }
        }
    }
}

TEST(WeekTiles, TheSelectedTileGrowsAndStaysAmongTheTiles)
{
    for (const CCase& c : kCases) {
        const CWeekTiles tiles = TilesOf(c.WideFirst, c.BarPlace);
        for (const int growth : {0, 2, 6, 12}) {
            for (int day = 0; day < 7; ++day) {
                const QRect tile = tiles.TileForDay(day), out = tiles.PopOut(day, growth);
                EXPECT_TRUE(tiles.Area().contains(out)) << c.What << ' ' << day << ' ' << growth;
                EXPECT_TRUE(out.contains(tile)) << c.What << ' ' << day << ' ' << growth;
                EXPECT_EQ(out.height(), tile.height() + 2 * growth);
                EXPECT_EQ(out.width(), std::min(240, tile.width() + 2 * growth));
            }
        }
    }
}
