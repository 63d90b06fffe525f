// A list of item rows that scrolls: the rows, their places, their pictures, and which of them is
// selected and stands out. A view adds rows of its own kinds (titles, placeholders) between them.
// Rows: in the order in which they are added, or by a key when inserted, parted by a line. A row's height is known once it was
//   measured and is kept in the row; its picture is kept while it is near the visible part.
// Units: surface pixels; content coordinates begin at the top of the list.
// Ownership: the list owns its rows, which borrow their items from the day cache: whoever lets the
//   cache change builds the rows anew. The painter and the client are borrowed.
#pragma once
#include "views/item_row_painter.h"
#include "views/painting_order.h"
#include "views/row_bitmap_cache.h"

#include <QPoint>

class QPainter;

struct CItemRowListLook {
    COLORREF Back = kColorWhite, Selection = 0, Separator = 0;
    int PopOut = 0; // 0 to 3
    COLORREF PopOutEdge = 0x1F0F0A;
    bool IncludeLocation = false;
    int TopMargin = 0, BottomMargin = 0; // pixels above the first and below the last row
};

// Who paints the rows that are none of an item's, or all of them; without a painter it measures.
class IOwnRowPainter
{
public:
    virtual ~IOwnRowPainter() = default;
    virtual bool PaintsItemRows() const { return false; } // true: the items' rows, too
    virtual int PaintOwnRow(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected) = 0;
};

class CItemRowList
{
public:
    explicit CItemRowList(CItemRowPainter& painter, IOwnRowPainter* ownRows = nullptr)
        : m_rowPainter(painter), m_ownRows(ownRows)
    {
    }

    void SetLook(const CItemRowListLook& look); // forgets places and pictures
    void Clear();                               // the selection, too
    // Null, and no row, for an item that the filters hide.
    CPaintingOrderItem* AddItem(CPimItem& item, int day);
    CPaintingOrderItem* AddOwn(CPimRecord& record, int day);
    // Ascending by order, before rows of equal order. What was measured of the others stays, so that a
    // list may grow row by row.
    CPaintingOrderItem* InsertItem(CPimItem& item, int day, int order);
    void Renew(CPaintingOrderItem& row, int day); // its item is another, in the same place
    void Remove(CPaintingOrderItem* row); // the selection goes with it
    void Select(CPaintingOrderItem* row); // null for none
    CPaintingOrderItem* Selected() const { return m_selected; }
    // The row above (-1) or below (1) the selected one, or the first one from that end; null without rows.
    CPaintingOrderItem* Neighbour(int direction) const;

    const CPaintingOrderList& Rows() const { return m_rows; }
    const CRowBitmapCache& Pictures() const { return m_pictures; }
    void ForgetPictures() { m_pictures.Clear(); }
    void ForgetPlaces() { m_placed = m_measured = false; } // some row's height has changed

    // Gives every row its place for that width, if it has none; Render does so by itself.
    void LayOut(int width);
    int ContentHeight() const { return m_contentHeight; }
    int Pad() const; // by which the selected row grows up and down
    QRect RowRect(const CPaintingOrderItem& row) const;
    // The selected row reaches over its neighbours.
    CPaintingOrderItem* RowAt(int y) const;
    // Whether the point lies in the check box of a task's row, or in the margin around it.
    bool HitsCheckBox(const CPaintingOrderItem& row, QPoint at, QSize margin) const;

    // Paints what shows with the list moved down by `scroll`; the result is the content's height.
    int Render(QPainter& dc, int scroll, int width, int height);

private:
    CPaintingOrderItem* Add(CPimRecord* record, CPimItem* item, int day);
    int PaintItem(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected);
    QImage RowPicture(CPaintingOrderItem& row);
    QImage SelectedPicture(CPaintingOrderItem& row);
    void PaintRow(QPainter& dc, CPaintingOrderItem& row, int scroll);
    void PaintSelectedRow(QPainter& dc, int scroll, int height);

    CItemRowPainter& m_rowPainter;
    IOwnRowPainter* m_ownRows;
    CItemRowListLook m_look;
    CPaintingOrderList m_rows;
    CPaintingOrderItem* m_selected = nullptr;
    CRowBitmapCache m_pictures;
    bool m_placed = false;
    bool m_measured = false; // every row that has a height has the right one
    int m_width = 0; // that the rows' places are for
    int m_contentHeight = 0;
};
