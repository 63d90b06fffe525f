#include "pages/icon_grid_layout.h"
#include "touch/virtual_keys.h"

#include <algorithm>

CIconGridLayout::CIconGridLayout(int width, const Sizes& sizes, const std::vector<int>& groups)
    : m_sizes(sizes), m_width(width)
{
    const int pitch = sizes.Cell + sizes.Spacing;
    m_columns = std::max((width - sizes.Spacing) / pitch, 1);
    m_left = std::max((width - m_columns * pitch + sizes.Spacing) / 2, 0);
    for (const int count : groups) {
        if (count <= 0)
            continue;
        m_groups.push_back({m_count, count, m_height});
        m_count += count;
        m_height = CellTop(m_groups.back(), (count + m_columns - 1) / m_columns);
    }
}

int CIconGridLayout::CellTop(const Group& group, int row) const
{
    return group.Top + m_sizes.Heading + m_sizes.Spacing + row * (m_sizes.Cell + m_sizes.Spacing);
}

QRect CIconGridLayout::HeadingRect(int group) const
{
    return {0, m_groups[size_t(group)].Top, m_width, m_sizes.Heading};
}

int CIconGridLayout::GroupOf(int cell) const
{
    const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), cell,
                                        [](int c, const Group& group) { return c < group.First; });
    return int(after - m_groups.begin()) - 1;
}

QRect CIconGridLayout::CellRect(int cell) const
{
    if (cell < 0 || cell >= m_count)
        return {};
    const Group& group = m_groups[size_t(GroupOf(cell))];
    const int row = (cell - group.First) / m_columns, column = (cell - group.First) % m_columns;
    return {m_left + column * (m_sizes.Cell + m_sizes.Spacing), CellTop(group, row), m_sizes.Cell,
            m_sizes.Cell};
}

int CIconGridLayout::HitTest(QPoint at) const
{
    for (const Group& group : m_groups) {
        const int top = CellTop(group, 0), pitch = m_sizes.Cell + m_sizes.Spacing;
        if (at.y() < top || at.x() < m_left)
            continue;
        const int row = (at.y() - top) / pitch, column = (at.x() - m_left) / pitch;
        const int cell = row * m_columns + column;
        if (column < m_columns && cell < group.Count && CellRect(group.First + cell).contains(at))
            return group.First + cell;
    }
    return -1;
}

int CIconGridLayout::RowStep(int cell, int direction) const
{
    const size_t n = size_t(GroupOf(cell));
    const Group& group = m_groups[n];
    const int column = (cell - group.First) % m_columns, row = (cell - group.First) / m_columns + direction;
    const int lastRow = (group.Count - 1) / m_columns;
    if (row >= 0 && row <= lastRow)
        return group.First + std::min(row * m_columns + column, group.Count - 1);
    if (direction < 0 ? n == 0 : n + 1 == m_groups.size())
        return cell;
    const Group& next = m_groups[n + size_t(direction)];
    const int first = direction < 0 ? (next.Count - 1) / m_columns * m_columns : 0;
    return next.First + std::min(first + column, next.Count - 1);
}

int CIconGridLayout::Step(int cell, int key) const
{
    switch (key) {
    case kKeyLeft:
        return std::max(cell - 1, 0);
    case kKeyRight:
        return std::min(cell + 1, m_count - 1);
    case kKeyUp:
        return RowStep(cell, -1);
    case kKeyDown:
        return RowStep(cell, 1);
    case kKeyHome:
        return 0;
    case kKeyEnd:
        return m_count - 1;
    default:
        return cell;
    }
}
