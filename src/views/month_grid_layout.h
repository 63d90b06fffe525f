// Where the parts of the monthly view lie: the grid with its cells, and what stands in a cell.
// Shape: pure arithmetic from sizes to rectangles, for painting and for finding what was hit.
// Units: surface pixels. Rectangles end before their right and bottom edge; between two cells a
//   line of one pixel stays free, which counts to the cell before it when a finger hits it.
#pragma once
#include <QPoint>
#include <QRect>
#include <QSize>
#include <vector>

enum QuickListMode { kQuickListNone = 0, kQuickListBelow = 2, kQuickListBeside = 3 };
QuickListMode QuickListModeOf(int includeQuickView, bool landscape);

struct CMonthGridSetup {
    QSize Client; // of the whole view
    QuickListMode QuickList = kQuickListNone;
    int SideWidth = 0;      // kept free at the right, 0 unless the list is beside the grid
    int TitleRowHeight = 0; // of the days' names
    int RowCount = 5;
    bool Landscape = false;
    bool WeekNumbers = false;
};

class CMonthGridLayout
{
public:
    static constexpr int kColumns = 7;

    CMonthGridLayout() = default;
    explicit CMonthGridLayout(const CMonthGridSetup& setup);

    int Width() const { return m_width; }
    int Height() const { return m_height; } // a grid of full height ends a pixel below the view
    int RowCount() const { return m_setup.RowCount; }
    int TitleRowHeight() const { return m_setup.TitleRowHeight; }
    bool IsBeside() const { return m_setup.SideWidth > 0; }

    QRect Cell(int row, int column) const;
    QRect TitleCell(int column) const;                 // of a day's name
    QRect WeekNumberCell(int row) const;               // empty without week numbers
    QRect PopOut(const QRect& cell, int growth) const; // moved back inside the grid
    bool CellAt(QPoint at, int* row, int* column) const;
    // Of the bar of hours and of the list, in the view; empty without a list.
    QRect Bar(int barHeight) const;
    QRect List(int barHeight) const;

private:
    int Left(int column) const;
    int Right(int column) const;
    int Top(int row) const;

    CMonthGridSetup m_setup;
    int m_width = 0, m_height = 0;
    int m_cellWidth = 0, m_extra = 0; // what the first column has more
    int m_left = 0;                   // of the first column
    int m_rowHeight = 0;
};

// Inside a cell.
struct CMonthCellParts {
    QRect Number;
    QPoint Check;   // top left of the picture of tasks
    QRect Timeline; // as given to PaintMiniTimeline, framed
};
struct CMonthCellSetup {
    QSize Number;               // of the text "22"
    int CheckWidth = 0;         // 0 without tasks
    bool TimelineBelow = false; // beside a list: below the number, not behind it
};
CMonthCellParts PartsOfCell(const QRect& cell, const CMonthCellSetup& setup);
// The top left of each icon, from the bottom right corner leftwards, in two rows at most; fewer than
// there are icons when the place is used up.
std::vector<QPoint> CategoryIconPlaces(const QRect& cell, int timelineBottom,
                                       const std::vector<QSize>& icons);
