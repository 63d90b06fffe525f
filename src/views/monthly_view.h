// A month, or five weeks, as a grid of days, with the selected day's hours in a bar and its items in a
// list that scrolls, below the grid or beside it.
// Rows: the selected day's appointments in their order, then its tasks; they name their items by identity.
#pragma once
#include "touch/timeline_bar.h"
#include "touch/touch_navigator.h"
#include "views/calendar_view.h"
#include "views/day_items_painter.h"
#include "views/month_grid.h"
#include "views/sideways_stroke.h"

#include <memory>
#include <vector>

class CMonthlyView : public CCalendarView, private ITouchClient
{
public:
    CMonthlyView(IViewHost& host, QWidget* parent);
    ~CMonthlyView() override;

    void OnCreate() override;
    int GetViewKind() const override { return kViewMonthly; }
    OverlayUnit GetOverlayUnit() const override { return kOverlayMonths; }
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

    // Goes to the month that `inMonth` lies in, and there to the cursor's day of the month.
    void GoToMonth(int inMonth);

    // For tests and for what drives the view from outside.
    CMonthGrid& Grid() { return m_grid; }
    CTouchNavigator& Scroller() { return m_touch; }
    const std::vector<CDayItemRow>& Rows() const { return m_rows; }
    const CTimelineBar* Timeline() const { return m_timeline.get(); }
    QuickListMode QuickList() const { return m_quickList; }
    QRect TimelineArea() const;
    QRect ListArea() const;

    // The days of the grid, then the rows of the list.
    int GetPartCount() const override;
    CPaintedPart GetPart(int index) const override;
    void PressPart(int index) override;

protected:
    void PaintView(QPainter& dc, QSize size) override;
    void OnLButtonDown(QPoint at) override;
    void OnMouseMove(QPoint at) override;
    void OnLButtonUp(QPoint at) override;
    void OnContextMenu(QPoint at) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    CTouchNavigator* Navigator() override { return m_quickList == kQuickListNone ? nullptr : &m_touch; }

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32 value, int x, int y) override;
    void OnDragStart(quint32 value) override;
    void OnTap(quint32 value, int x, int y) override;

    void PrepareLook(); // colours, fonts and the parts' sizes: after a change of size or density
    void ForgetRows();
    void BuildRows();
    void ShowRows();           // of the day that the cursor is on, from the top
    QRect ContentRect() const; // of the rows, in content coordinates
    const CDayItemRow* RowAt(QPoint content) const;
    void SelectRow(const CDayItemRow* row);
    void SelectNeighbour(int direction);
    void UpdateMonthTitle();
    void Invalidate(const QRect& surface);

    void SelectDay(int day); // the grid stays while the day stands on it
    void GoToDate(int day);  // the grid shows the day's month
    void ChangeMonth(int direction);
    void OpenMenu(); // of the selected row, or without one of the day

    CMonthGrid m_grid;
    QuickListMode m_quickList = kQuickListNone;
    std::unique_ptr<CTimelineBar> m_timeline;
    CTimelineDay m_timelineDay;
    CDayItemsPainter m_painter;
    std::vector<CDayItemRow> m_rows;
    std::unique_ptr<CPaintingOrderItem> m_selectedRow; // m_selected, when there is one
    CTouchNavigator m_touch;
    CSidewaysStroke m_stroke;
    bool m_tapInPopOut = false;
    bool m_hidden = false; // another view is in front and may let our items go from the cache
    int m_wheel = 0;       // eighths of a degree that made no month yet
    COLORREF m_colorGap = 0;
};
