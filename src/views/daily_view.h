// One day as a list of rows that scrolls under the finger, with the timeline bar above or below.
// Rows: the day's appointments in their order, then its tasks. A row's height is known once it
//   was measured and is kept in the row; its picture is kept in the row cache while near.
#pragma once
#include "touch/timeline_bar.h"
#include "touch/touch_navigator.h"
#include "views/calendar_view.h"
#include "views/row_bitmap_cache.h"
#include "views/sideways_stroke.h"

#include <memory>

class CDailyView : public CCalendarView, private ITouchClient
{
public:
    CDailyView(IViewHost& host, QWidget* parent);
    ~CDailyView() override;

    void OnCreate() override;
    int GetViewKind() const override { return kViewDaily; }
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    void OnResize() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void OnDeactivate() override;
    void MoveDate(int delta) override;
    void GoToToday() override;
    bool OnKey(int key) override;

    // For tests and for what drives the view from outside.
    CTouchNavigator& Scroller() { return m_touch; }
    const CPaintingOrderList& Rows() const { return m_rows; }
    const CPaintingOrderItem* SelectedRow() const { return m_selected; }
    const CRowBitmapCache& RowCache() const { return m_rowCache; }
    const CTimelineBar* Timeline() const { return m_timeline.get(); }
    QRect ListArea() const;                        // below or above the bar
    QRect TimelineArea() const;                    // empty without a bar
    CPaintingOrderItem* RowAt(int x, int y) const; // content coordinates

protected:
    void PaintView(QPainter& dc, QSize size) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnContextMenu(QPoint at) override;
    CTouchNavigator* Navigator() override { return &m_touch; }

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32 value) override;
    void OnTap(quint32 value, int x, int y) override;

    void BuildRows();
    void AddRow(CPimItem& item, int day);
    void ForgetRows();
    void Select(CPaintingOrderItem* row);
    void PrepareLook(); // colours, fonts and the bar's height: after a change of size or density

    int RowPad() const;                                 // by which a popped-out row grows up and down
    QRect RowRect(const CPaintingOrderItem& row) const; // content coordinates
    void LayOutRows(int width);                         // measures every row

    int PaintItem(QPainter* dc, CPaintingOrderItem& row, const QRect& rect, bool selected);
    QImage RowPicture(CPaintingOrderItem& row);
    QImage SelectedPicture(CPaintingOrderItem& row);
    void PaintRow(QPainter& dc, CPaintingOrderItem& row, int scroll);
    void PaintSelectedRow(QPainter& dc, CPaintingOrderItem& row, int scroll);

    bool GoToDay(int day);
    void SelectNeighbour(int direction);
    bool HitsCheckBox(const CPaintingOrderItem& row, QPoint at) const;
    void RunItemMenu();

    CPaintingOrderList m_rows;
    std::unique_ptr<CTimelineBar> m_timeline;
    CTimelineDay m_timelineDay;
    bool m_dirty = true;   // rows have no places yet
    bool m_hidden = false; // another view is in front and may let our items go from the cache
    CTouchNavigator m_touch;
    CRowBitmapCache m_rowCache;
    CSidewaysStroke m_stroke;
    int m_rowWidth = 0;        // the rows' places are for this width
    int m_contentHeight = 0;
    COLORREF m_colorText = 0, m_colorBack = 0, m_colorSelection = 0, m_colorSeparator = 0;
};
