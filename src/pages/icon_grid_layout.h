// Where the icon picker's headings and cells lie: groups below one another, each a heading and rows of
// equal cells under it. Pure arithmetic.
// Units: surface pixels of the content, from its top left corner; cells count on through the groups.
#pragma once
#include <QRect>
#include <vector>

class CIconGridLayout
{
public:
    struct Sizes {
        int Heading = 0; // height
        int Cell = 0;    // side
        int Spacing = 0; // between cells, and around them
    };
    CIconGridLayout() = default;
    CIconGridLayout(int width, const Sizes& sizes, const std::vector<int>& groups); // cells of each

    int CellCount() const { return m_count; }
    int GroupCount() const { return int(m_groups.size()); }
    int Height() const { return m_height; }
    int Columns() const { return m_columns; }
    QRect HeadingRect(int group) const;
    QRect CellRect(int cell) const;
    int HitTest(QPoint at) const; // -1 on no cell

    // The cell that an arrow, Home or End leads to: sideways in reading order, up and down by rows, over
    // a heading into the next group's nearest cell; the same one where there is no further.
    int Step(int cell, int key) const;
    int GroupOf(int cell) const;

private:
    struct Group {
        int First = 0, Count = 0; // cells
        int Top = 0;
    };
    int CellTop(const Group& group, int row) const;
    int RowStep(int cell, int direction) const;

    Sizes m_sizes;
    std::vector<Group> m_groups; // none is empty
    int m_width = 0, m_left = 0, m_columns = 1, m_count = 0, m_height = 0;
};
