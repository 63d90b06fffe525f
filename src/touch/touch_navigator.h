// Makes tall content scroll under the finger: one surface of the visible area, painted by the
// client, and the press, tap, drag, fling and rebound that follow from the owner's events.
// Units: surface pixels in the owner window's coordinates; only the drag threshold is scaled.
// Ownership: window and client are borrowed and may be null (the finger is tracked, nothing is
//   painted then); the surface and the timers are the navigator's.
// Each step is one short function, so that a test may drive it with a clock of its own.
#pragma once
#include "drawing/surface.h"
#include "touch/numbered_timers.h"

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QWidget>

class ITouchClient;
class QPainter;

class CTouchNavigator
{
public:
    CTouchNavigator();

    void Attach(quint32 clientValue, QWidget* window, ITouchClient* client, int x, int y, int width,
                int height);
    bool SetSize(int width, int height); // false when unchanged
    bool SetPosition(int x, int y);
    bool SetArea(const QRect& area);

    // True when the navigator took the event.
    bool OnLButtonDown(int x, int y);
    bool OnMouseMove(int x, int y);
    bool OnLButtonUp(int x, int y);
    bool OnTimer(int id);
    // The finger was taken away from the navigator (a sideways stroke, a lost window): no tap, no
    // fling; content beyond an end goes back.
    void CancelTouch();
    void StopMotion(); // fling and rebound end where they are

    void Redraw(bool invalidate);
    bool SetScroll(int x, int offset);          // x is ignored
    bool ScrollBy(int distance);                // wheel: stays within both ends; false when nothing moved
    void EnsureVisible(const QRect& rectangle); // in content coordinates, exclusive edges
    void EnsureVisible(QPoint point) { EnsureVisible(QRect(point, QSize(0, 0))); }
    void PaintTo(QPainter& dc, int x, int y) const; // opaque, in surface pixels
    void SetPaintArgument(quint32 argument) { m_paintArgument = argument; }

    QRect Area() const { return {m_x, m_y, m_width, m_height}; }
    const QImage& Surface() const { return m_surface.Image(); }
    int Scroll() const { return m_scroll; }
    int ContentHeight() const { return m_contentHeight; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    double Velocity() const { return m_velocity; }
    bool IsDragging() const { return m_dragging; }
    bool IsTouched() const { return m_touched; }
    bool IsPressHandled() const { return m_pressHandled; }
    CNumberedTimers& Timers() { return m_timers; }

    static double Decay(double velocity);

private:
    void AllocateSurface();
    void InvalidateArea();
    void Render();
    void BackWithinEnds();
    int ClampScroll(int offset) const;
    void StartDrag();
    void PressDelayOver();
    void FlingStep();
    void Release(int y);
    void Tap();
    bool IsBeyondEnd() const;
    bool Overscroll(bool animate);
    void ReboundTimer();
    void Rebound(int step);
    QPoint TouchPoint() const { return {m_touchX, m_touchY - m_scroll}; }

    QPointer<QWidget> m_hWnd;
    int m_x = 0, m_y = 0, m_width = 0, m_height = 0;
    COffscreenSurface m_surface;
    bool m_pressHandled = false; // OnPress has fired for this touch
    bool m_stoppedFling = false; // this touch only stopped a moving list
    bool m_touched = false;      // a touch is under way
    int m_touchY = -1;           // last finger position below m_y
    int m_touchX = 0;
    int m_scroll = 0; // 0 at the top, negative when scrolled down
    quint32 m_paintArgument = 0;
    int m_contentHeight = 0;
    double m_velocity = 0; // pixels per timer step
    bool m_dragging = false;
    int m_reboundStep = 0;
    quint32 m_sampleTime0 = 0, m_sampleTime1 = 0, m_sampleTime2 = 0; // newest first
    int m_sampleY1 = 0, m_sampleY2 = 0;
    ITouchClient* m_client = nullptr;
    quint32 m_clientValue = 0;
    CNumberedTimers m_timers;
};
