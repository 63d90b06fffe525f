// A week at a glance: seven tiles, each with its day's items as a plain list. The selected tile pops
// out and scrolls; a tap on it opens the day. A bar of the day's hours may stand above or below.
// Shape: one picture of all tiles, unselected; the popped-out tile lies over it.
// Nothing of the cache is kept between two paints.
#pragma once
#include "touch/timeline_bar.h"
#include "touch/touch_navigator.h"
#include "views/calendar_view.h"
#include "views/day_items_painter.h"
#include "views/sideways_stroke.h"
#include "views/week_tiles.h"

#include <QImage>
#include <array>
#include <memory>

class CWeeklyView : public CCalendarView, private ITouchClient
{
public:
    CWeeklyView(IViewHost& host, QWidget* parent);
    ~CWeeklyView() override;

    void OnCreate() override;
    int GetViewKind() const override { return kViewWeekly; }
    OverlayUnit GetOverlayUnit() const override { return kOverlayWeeks; }
    void OnClockChanged(int notice) override;
    void OnDataChanged(int dwParam, quint32 uType, quint32 oid) override;
    void Refresh() override;
    void OnResize() override;
    bool FillMenu(QMenu& menu) override;
    bool FillTouchMenu(CTouchMenu& menu) override;
    void OnDeactivate() override;
    void SetCursorDate(DATE date) override;
    void MoveDate(int delta) override;
    void GoToToday() override;
    bool OnKey(int key) override;

    // For tests and for what drives the view from outside.
    int FirstDay() const { return m_firstDay; }
    const CWeekTiles& Tiles() const { return m_tiles; }
    QRect PopOutRect() const { return m_popOutRect; }
    CTouchNavigator& Scroller() { return m_touch; }
    const CTimelineBar* Timeline() const { return m_timeline.get(); }

    int GetPartCount() const override { return CWeekTiles::kDays; }
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
    CTouchNavigator* Navigator() override { return &m_touch; }

private:
    int RenderContent(quint32 value, QPainter& dc, quint32 paintArgument, int scroll, int width,
                      int height) override;
    bool OnPress(quint32, int, int) override { return false; }
    void OnDragStart(quint32) override {}
    void OnTap(quint32 value, int x, int y) override;

    enum Ground { kPlain, kWeekend, kToday, kSelected, kGrounds };

    bool SetWeek(int day); // true when other days show now, or items were loaded
    void MoveTo(int day);
    void UpdateWeekTitle();
    void PrepareLook(); // colours, fonts and the parts' sizes: after a change of size or density
    void LayOutPopOut(bool keepScroll);
    void TakeTimeline();
    Ground GroundOf(int day) const;
    int Growth() const; // of the selected tile, on each side
    void PaintTiles();
    int PaintTile(QPainter& dc, const CDayItems& day, const QRect& tile, Ground ground, int scroll) const;

    int m_firstDay = 0;
    CWeekTiles m_tiles;
    QImage m_picture;
    bool m_pictureValid = false;
    std::unique_ptr<CTimelineBar> m_timeline;
    CTimelineDay m_timelineDay;
    QRect m_popOutRect; // empty for a day that the cache has not
    CTouchNavigator m_touch;
    CSidewaysStroke m_stroke;
    bool m_pressInPopOut = false;
    bool m_hidden = false; // another view is in front and may let our days go from the cache
    int m_wheel = 0;       // eighths of a degree that made no week yet
    std::array<CDayItemsPainter, kGrounds> m_painters;
    COLORREF m_colorTitleText = 0, m_colorTitleBack = 0;
};
