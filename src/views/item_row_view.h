// The base of the views that are a scrolling list of item rows: the list under the finger, the
// selection by press, key and right click, the item's menu, and the stroke that moves the date.
// Ownership: rows borrow from the day cache; BuildRows is called whenever that may have changed.
#pragma once
#include "touch/touch_navigator.h"
#include "views/calendar_view.h"
#include "views/item_row_list.h"
#include "views/sideways_stroke.h"

class CItemRowView : public CCalendarView, protected ITouchClient, protected IOwnRowPainter
{
public:
    CItemRowView(IViewHost& host, QWidget* parent);
    ~CItemRowView() override;

    void OnCreate() override;
    void OnResize() override;
    void OnDeactivate() override;

    // For tests and for what drives the view from outside.
    CTouchNavigator& Scroller() { return m_touch; }
    const CPaintingOrderList& Rows() const { return m_list.Rows(); }
    const CPaintingOrderItem* SelectedRow() const { return m_selected; }
    const CRowBitmapCache& RowCache() const { return m_list.Pictures(); }
    void ForgetPictures() { m_list.ForgetPictures(); }
    CPaintingOrderItem* RowAt(int x, int y) const; // content coordinates
    virtual QRect ListArea() const;                // all of the view, or what is left of it
    int GetPartCount() const override { return Rows().GetCount(); }
    CPaintedPart GetPart(int index) const override;
    void PressPart(int index) override;

protected:
    virtual void BuildRows() = 0;   // Forget, then the list's rows from the cache
    virtual void PrepareLook() = 0; // colours, fonts and parts: after a change of size or density
    virtual void PaintEmptyList(QPainter& dc, const QRect& rect) = 0;
    virtual void OnSelectionChanged() {}
    virtual QString NameOfOwnRow(const CPaintingOrderItem&) const { return {}; } // that is none of an item's
    virtual void OnRowTap(QPoint at); // on the selected row: its menu
    virtual void RunItemMenu();
    virtual QSize CheckBoxMargin() const; // around it that still hits

    void PaintView(QPainter& dc, QSize size) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnContextMenu(QPoint at) override;
    CTouchNavigator* Navigator() override { return &m_touch; }

    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;
    int PaintOwnRow(QPainter*, CPaintingOrderItem&, const QRect&, bool) override { return 0; }

    void ForgetRows();
    void Select(CPaintingOrderItem* row);
    CPimItem* SelectedItem() const { return m_selected ? m_selected->m_item : nullptr; }
    void ShowRow(const CPaintingOrderItem& row, int direction); // scrolls until it shows, with a margin
    // Selects the row above or below; it stops at the ends.
    void SelectNeighbour(int direction);

    CItemRowList m_list;
    CTouchNavigator m_touch;
    CSidewaysStroke m_stroke;
    bool m_hidden = false;    // another view is in front; there are no rows meanwhile
    CItemIdentity m_leftItem; // what was selected when that one came
    int m_leftDay = 0;
};
