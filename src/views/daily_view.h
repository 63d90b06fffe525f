// One day as a list of rows that scrolls under the finger, with the timeline bar above or below.
// Rows: the day's appointments in their order, then its tasks.
#pragma once
#include "touch/timeline_bar.h"
#include "views/item_row_view.h"

#include <memory>

class CDailyView : public CItemRowView
{
public:
    CDailyView(IViewHost& host, QWidget* parent);
    ~CDailyView() override;

    void OnCreate() override;
    int GetViewKind() const override { return kViewDaily; }
    OverlayUnit GetOverlayUnit() const override { return kOverlayDays; }
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void MoveDate(int delta) override;
    void GoToToday() override;
    bool OnKey(int key) override;

    // For tests and for what drives the view from outside.
    const CTimelineBar* Timeline() const { return m_timeline.get(); }
    QRect ListArea() const override; // below or above the bar
    QRect TimelineArea() const;      // empty without a bar

protected:
    void PaintView(QPainter& dc, QSize size) override;
    void BuildRows() override;
    void PrepareLook() override;
    void PaintEmptyList(QPainter& dc, const QRect& rect) override;
    void OnSelectionChanged() override; // tells the bar

private:
    bool GoToDay(int day);

    std::unique_ptr<CTimelineBar> m_timeline;
    CTimelineDay m_timelineDay;
    COLORREF m_colorText = 0;
};
