// Where the seven tiles of the weekly view and its bar of hours lie.
// Shape: pure arithmetic from sizes to rectangles, for painting and for finding what was hit. Tiles
//   are numbered by place, days by their order in the week.
// Units: surface pixels; between two tiles a line of one pixel stays free.
#pragma once
#include <QPoint>
#include <QRect>
#include <QSize>

struct CWeekTilesSetup {
    QSize Client;
    int BarPlace = 0; // 0 no bar, 1 above the tiles, 2 below them
    int BarHeight = 0;
    bool WideFirst = false;      // four rows, the first tile as wide as the view
    bool DownTheColumns = false; // days follow one another downwards
};

class CWeekTiles
{
public:
    static constexpr int kDays = 7;

    CWeekTiles() = default;
    explicit CWeekTiles(const CWeekTilesSetup& setup) : m_setup(setup) {}

    QRect Area() const; // of all tiles
    QRect Bar() const;  // empty without a bar
    QRect Tile(int tile) const;
    int TileOfDay(int day) const; // both from 0
    QRect TileForDay(int day) const { return Tile(TileOfDay(day)); }
    int DayAt(QPoint at) const; // -1 between the tiles
    // The day's tile grown on all sides, and moved back to where the tiles are.
    QRect PopOut(int day, int growth) const;

private:
    CWeekTilesSetup m_setup;
};
