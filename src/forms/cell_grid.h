// A grid of big cells of which one is selected: a caption, and cells of picture above text.
// Shape: the owner gives an area; the cells tile it evenly, in whole pixels, gaps between them.
// Units: surface pixels; rectangles with exclusive right and bottom edges.
// The grid sends nothing: its owner hands it points and keys, and asks for the selection.
#pragma once
#include "touch/painted_accessible.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <vector>

class QPainter;

struct CCell {
    QString Text;    // never cut: two lines, then a smaller font
    QString Hint;    // explains it, below
    int ImageId = 0; // 0: no picture
    QString Badge;   // in the picture's place: the cell's number
};

class CCellGrid
{
public:
    CCellGrid(int columns, int rows) : m_columns(columns), m_rows(rows) {}

    void SetShape(int columns, int rows); // before SetArea; for a page that was turned
    void SetCaption(const QString& caption) { m_caption = caption; }
    void AddCell(CCell cell); // row by row; no more than there is room for
    int GetCount() const { return int(m_cells.size()); }
    const CCell& GetCell(int index) const { return m_cells[size_t(index)]; }

    int HeightFor(int width) const; // that the fullest cell asks for, in every row
    int GetRows() const { return m_rows; }
    int HeightOfRows(int cellHeight) const; // with caption and gaps
    void SetArea(const QRect& area);
    QRect CellRect(int index) const; // empty before SetArea
    int HitTest(QPoint at) const;    // -1 on no cell
    // An arrow moves the selection within its row or column, around the ends; true when it was one.
    bool OnKey(int key);
    void Select(int index); // -1: none
    int GetSelected() const { return m_selected; }

    void Paint(QPainter& dc) const;

private:
    struct Parts; // of one cell, as tall as they want to be
    Parts PartsOf(const CCell& cell, int width) const;
    int CaptionHeight() const;
    void PaintCell(QPainter& dc, const CCell& cell, const QRect& rect, const Parts& parts, int tallest,
                   bool selected) const;
    int Step(int index, int key) const;

    QString m_caption;
    std::vector<CCell> m_cells;
    int m_columns, m_rows;
    int m_selected = 0;
    QRect m_area;
    std::vector<QRect> m_rects;
};

// A cell as readers of the screen are told of it; k divides surface pixels.
CPaintedPart CellPart(const CCellGrid& grid, int index, int k);
