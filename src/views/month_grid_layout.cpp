#include "views/month_grid_layout.h"
#include "drawing/screen_metrics.h"

#include <algorithm>

namespace
{
constexpr int kPortraitRow = 29, kLandscapeRow = 20; // design pixels of a row above a list
constexpr int kLeastListHeight = 40;                 // design pixels, the bar of hours included
constexpr int kWeekColumn = 12;
constexpr int kTimelineHeight = 7;
constexpr int kMostIconRows = 2;
} // namespace

QuickListMode QuickListModeOf(int includeQuickView, bool landscape)
{
    switch (includeQuickView) {
    case kQuickListNone:
    case kQuickListBelow:
    case kQuickListBeside:
        return QuickListMode(includeQuickView);
    default:
        return landscape ? kQuickListBeside : kQuickListBelow;
    }
}

// ---- the grid

CMonthGridLayout::CMonthGridLayout(const CMonthGridSetup& setup) : m_setup(setup)
{
    const int rows = std::max(1, setup.RowCount);
    m_setup.RowCount = rows;
    m_width = std::max(0, setup.Client.width() - setup.SideWidth);
    if (setup.QuickList == kQuickListBelow) {
        const int row = D(setup.Landscape ? kLandscapeRow : kPortraitRow);
        const int wanted = setup.TitleRowHeight + rows * (row + 1);
        m_height = std::max(0, std::min(wanted, setup.Client.height() - D(kLeastListHeight))) + 1;
    } else {
        m_height = setup.Client.height() + 1;
    }
    if (setup.WeekNumbers) {
        const int rest = std::max(0, m_width - D(kWeekColumn));
        m_cellWidth = rest / kColumns;
        m_left = rest % kColumns + D(kWeekColumn) + 1;
    } else {
        m_cellWidth = m_width / kColumns;
        m_extra = m_width % kColumns / 2;
    }
    m_rowHeight = std::max(0, m_height - setup.TitleRowHeight) / rows;
}

int CMonthGridLayout::Left(int column) const
{
    return column == 0 ? m_left : m_left + column * m_cellWidth + m_extra;
}

int CMonthGridLayout::Right(int column) const
{
    if (column == kColumns - 1)
        return m_width;
    return Left(column) + m_cellWidth + (column == 0 ? m_extra : 0) - 1;
}

int CMonthGridLayout::Top(int row) const
{
    return m_setup.TitleRowHeight + row * m_rowHeight + 1;
}

QRect CMonthGridLayout::Cell(int row, int column) const
{
    const bool toEnd = m_setup.QuickList != kQuickListBelow && row == m_setup.RowCount - 1;
    const int left = Left(column), top = Top(row);
    const int bottom = toEnd ? m_height : top + m_rowHeight - 1;
    return {left, top, std::max(0, Right(column) - left), std::max(0, bottom - top)};
}

QRect CMonthGridLayout::TitleCell(int column) const
{
    const int left = Left(column);
    const int right = column == kColumns - 1 ? m_width : Left(column + 1);
    return {left, 0, std::max(0, right - left), m_setup.TitleRowHeight};
}

QRect CMonthGridLayout::WeekNumberCell(int row) const
{
    if (!m_setup.WeekNumbers)
        return {};
    const int bottom = row == m_setup.RowCount - 1 ? m_height : Top(row) + m_rowHeight - 1;
    return {0, Top(row), m_left - 1, std::max(0, bottom - Top(row))};
}

QRect CMonthGridLayout::PopOut(const QRect& cell, int growth) const
{
    QRect grown = cell.adjusted(-growth, -growth, growth, growth);
    const int right = m_width, bottom = std::min(m_height, m_setup.Client.height());
    if (grown.x() + grown.width() > right)
        grown.moveLeft(right - grown.width());
    if (grown.y() + grown.height() > bottom)
        grown.moveTop(bottom - grown.height());
    if (grown.x() < 0)
        grown.moveLeft(0);
    return grown;
}

bool CMonthGridLayout::CellAt(QPoint at, int* row, int* column) const
{
    for (*row = 0; *row < m_setup.RowCount; ++*row) {
        for (*column = 0; *column < kColumns; ++*column) {
            if (Cell(*row, *column).adjusted(0, 0, 1, 1).contains(at) && at.x() < m_width)
                return true;
        }
    }
    return false;
}

QRect CMonthGridLayout::Bar(int barHeight) const
{
    if (m_setup.QuickList == kQuickListBelow)
        return {0, m_height, m_setup.Client.width(), barHeight};
    if (m_setup.QuickList == kQuickListBeside)
        return {m_width + 1, 0, std::max(0, m_setup.Client.width() - m_width - 1), barHeight};
    return {};
}

QRect CMonthGridLayout::List(int barHeight) const
{
    const QRect bar = Bar(barHeight);
    if (bar.isNull())
        return {};
    const int top = bar.y() + bar.height();
    return {bar.x(), top, bar.width(), std::max(0, m_setup.Client.height() - top)};
}

// ---- a cell

CMonthCellParts PartsOfCell(const QRect& cell, const CMonthCellSetup& setup)
{
    CMonthCellParts parts;
    parts.Number = QRect(cell.topLeft() + QPoint(D(1), D(1)), setup.Number);
    parts.Check = QPoint(parts.Number.x() + parts.Number.width() + D(2), cell.y() + D(2));
    int left, top;
    if (setup.TimelineBelow) {
        left = cell.x() + D(1);
        top = cell.y() + setup.Number.height();
    } else {
        left = cell.x() + cell.width() / 2;
        if (setup.CheckWidth > 0)
            left = std::max(left, parts.Check.x() + setup.CheckWidth + D(1));
        top = cell.y() + D(1);
    }
    const int right = cell.x() + cell.width() - D(3);
    parts.Timeline = {left, top, std::max(0, right - left), D(kTimelineHeight)};
    return parts;
}

std::vector<QPoint> CategoryIconPlaces(const QRect& cell, int timelineBottom, const std::vector<QSize>& icons)
{
    std::vector<QPoint> places;
    const int right = cell.x() + cell.width() - D(1);
    int x = right, row = 0;
    for (const QSize& icon : icons) {
        if (x - icon.width() < cell.x()) {
            if (++row == kMostIconRows)
                break;
            x = right;
        }
        x -= icon.width();
        const int y = cell.y() + cell.height() - D(1) - icon.height() - row * (icon.height() + 1);
        if (y < timelineBottom || x < cell.x())
            break;
        places.push_back({x, y});
    }
    return places;
}
