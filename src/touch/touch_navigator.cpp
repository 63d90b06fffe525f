#include "touch/touch_navigator.h"
#include "drawing/screen_metrics.h"
#include "platform/clock.h"
#include "touch/device_pixels.h"
#include "touch/i_touch_client.h"
#include "touch/timer_ids.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace
{
constexpr int kDragThreshold = 12;      // design pixels
constexpr int kFlingThreshold = 7;      // surface pixels over the last two moves
constexpr double kFlingStepMs = 45;     // a fling's speed is the finger's way in this time
constexpr double kMaxVelocity = 100000; // a spike of the clock must not leave the range of int
constexpr int kTapPauseMs = 50;
constexpr int kFirstReboundStep = 3;
} // namespace

CTouchNavigator::CTouchNavigator() : m_timers([this](int id) { OnTimer(id); }) {}

// ---- place and surface

void CTouchNavigator::Attach(quint32 clientValue, QWidget* window, ITouchClient* client, int x, int y,
                             int width, int height)
{
    m_clientValue = clientValue;
    m_hWnd = window;
    m_client = client;
    m_x = x;
    m_y = y;
    m_width = std::max(width, 0);
    m_height = std::max(height, 0);
    AllocateSurface();
}

bool CTouchNavigator::SetSize(int width, int height)
{
    return SetArea({m_x, m_y, width, height});
}

bool CTouchNavigator::SetPosition(int x, int y)
{
    return SetArea({x, y, m_width, m_height});
}

bool CTouchNavigator::SetArea(const QRect& area)
{
    const QRect wanted(area.x(), area.y(), std::max(area.width(), 0), std::max(area.height(), 0));
    if (wanted == Area())
        return false;
    m_x = wanted.x();
    m_y = wanted.y();
    m_width = wanted.width();
    m_height = wanted.height();
    AllocateSurface();
    return true;
}

void CTouchNavigator::AllocateSurface()
{
    m_surface.Clear();
    m_surface.Resize(m_width, m_height);
    Render();
    // A larger area must not open a gap under content that stands still.
    if (!m_touched && !m_dragging)
        BackWithinEnds();
}

void CTouchNavigator::Render()
{
    if (m_client && !m_surface.IsEmpty())
        m_contentHeight = m_client->RenderContent(m_clientValue, m_surface.Dc(), m_paintArgument, m_scroll,
                                                  m_width, m_height);
}

void CTouchNavigator::InvalidateArea()
{
    if (m_hWnd)
        m_hWnd->update(ToLogical(Area(), SurfaceFactor(m_hWnd)));
}

void CTouchNavigator::Redraw(bool invalidate)
{
    Render();
    if (invalidate)
        InvalidateArea();
}

void CTouchNavigator::PaintTo(QPainter& dc, int x, int y) const
{
    if (m_surface.IsEmpty())
        return;
    const QPainter::CompositionMode mode = dc.compositionMode();
    dc.setCompositionMode(QPainter::CompositionMode_Source);
    dc.drawImage(x, y, m_surface.Image());
    dc.setCompositionMode(mode);
}

// ---- scrolling from outside

bool CTouchNavigator::SetScroll(int, int offset)
{
    if (offset == m_scroll)
        return false;
    m_scroll = offset;
    Redraw(true);
    return true;
}

int CTouchNavigator::ClampScroll(int offset) const
{
    return std::clamp(offset, std::min(0, m_height - m_contentHeight), 0);
}

void CTouchNavigator::BackWithinEnds()
{
    SetScroll(0, ClampScroll(m_scroll));
}

void CTouchNavigator::StopMotion()
{
    m_timers.Kill(kTimerFling);
    m_timers.Kill(kTimerRebound);
    m_velocity = 0;
    m_dragging = false;
}

bool CTouchNavigator::ScrollBy(int distance)
{
    if (m_touched)
        return false;
    StopMotion();
    return SetScroll(0, ClampScroll(m_scroll + distance));
}

void CTouchNavigator::EnsureVisible(const QRect& rectangle)
{
    const int top = rectangle.y(), bottom = rectangle.y() + rectangle.height();
    int viewTop = -m_scroll;
    if (bottom > viewTop + m_height)
        viewTop += bottom - (viewTop + m_height) + 1;
    // A margin asked for around the first or last row must not pull the content off its end.
    SetScroll(0, ClampScroll(-std::min(top, viewTop)));
}

// ---- finger

bool CTouchNavigator::OnLButtonDown(int x, int y)
{
    if (!Area().contains(x, y)) {
        m_touched = false;
        m_touchY = -1;
        return false;
    }
    m_timers.Kill(kTimerFling);
    m_touched = true;
    m_pressHandled = false;
    m_stoppedFling = false;
    m_touchX = x;
    m_touchY = y - m_y;
    m_sampleY1 = m_sampleY2 = m_touchY;
    m_sampleTime0 = m_sampleTime1 = m_sampleTime2 = GetTickCount();
    if (!m_dragging) {
        m_timers.Set(kTimerPress, kPressMs);
    } else {
        Overscroll(false);
        m_velocity = 0;
        m_dragging = false;
        m_stoppedFling = true;
    }
    return true;
}

void CTouchNavigator::PressDelayOver()
{
    m_timers.Kill(kTimerPress);
    const bool changed = m_client && m_client->OnPress(m_clientValue, TouchPoint().x(), TouchPoint().y());
    m_pressHandled = true;
    if (changed)
        Redraw(true);
}

bool CTouchNavigator::OnMouseMove(int, int y)
{
    if (!m_touched)
        return false;
    const int finger = y - m_y;
    if (!m_dragging) {
        if (std::abs(m_touchY - finger) < D(kDragThreshold))
            return true;
        StartDrag();
    }
    m_sampleTime2 = m_sampleTime1;
    m_sampleY2 = m_sampleY1;
    m_sampleTime1 = m_sampleTime0;
    m_sampleY1 = m_touchY;
    m_sampleTime0 = GetTickCount();
    m_scroll += finger - m_touchY;
    m_touchY = finger;
    Redraw(true);
    return true;
}

void CTouchNavigator::StartDrag()
{
    m_dragging = true;
    m_timers.Kill(kTimerPress);
    if (m_client)
        m_client->OnDragStart(m_clientValue);
    m_pressHandled = false;
}

bool CTouchNavigator::OnLButtonUp(int, int y)
{
    if (!m_touched)
        return false;
    m_touched = false;
    if (m_dragging) {
        m_stoppedFling = false;
        Release(y);
    } else if (m_stoppedFling) {
        m_stoppedFling = false;
    } else {
        Tap();
    }
    return true;
}

void CTouchNavigator::Release(int y)
{
    const int delta = (y - m_y) - m_sampleY2;
    const quint32 time = m_sampleTime0 - m_sampleTime2;
    // Without a measurable time there is no speed, and the list stops like after a slow drag.
    if (std::abs(delta) < kFlingThreshold || time == 0) {
        if (!Overscroll(true))
            m_dragging = false;
        return;
    }
    m_velocity = std::clamp(std::trunc(kFlingStepMs / time * delta), -kMaxVelocity, kMaxVelocity);
    m_timers.Set(kTimerFling, kFlingMs);
}

// The action may run a loop of its own, so the touch is over before it begins.
void CTouchNavigator::Tap()
{
    m_timers.Kill(kTimerPress);
    const QPoint at = TouchPoint();
    if (!m_pressHandled) {
        if (m_client)
            m_client->OnPress(m_clientValue, at.x(), at.y());
        Redraw(false);
        if (m_hWnd)
            m_hWnd->repaint(ToLogical(Area(), SurfaceFactor(m_hWnd)));
        PauseFor(kTapPauseMs);
    }
    m_pressHandled = false;
    if (m_client)
        m_client->OnTap(m_clientValue, at.x(), at.y());
}

void CTouchNavigator::CancelTouch()
{
    m_timers.Kill(kTimerPress);
    m_touched = false;
    m_touchY = -1;
    m_pressHandled = false;
    m_stoppedFling = false;
    if (m_dragging && !m_timers.IsRunning(kTimerFling) && !Overscroll(true))
        m_dragging = false;
}

// ---- motion without a finger

bool CTouchNavigator::OnTimer(int id)
{
    switch (id) {
    case kTimerFling:
        FlingStep();
        return true;
    case kTimerPress:
        PressDelayOver();
        return true;
    case kTimerRebound:
        ReboundTimer();
        return true;
    default:
        return false;
    }
}

double CTouchNavigator::Decay(double velocity)
{
    const int speed = std::abs(int(velocity));
    if (speed > 200)
        return velocity * 0.7;
    if (speed > 100)
        return velocity * 0.8;
    return velocity * (speed > 40 ? 0.9 : 0.94);
}

void CTouchNavigator::FlingStep()
{
    m_velocity = Decay(m_velocity);
    m_scroll += int(std::ceil(m_velocity));
    Redraw(true);
    const int speed = std::abs(int(m_velocity));
    if (!Overscroll(true) && speed >= 2)
        return;
    m_timers.Kill(kTimerFling);
    if (speed < 2)
        m_dragging = false;
    m_velocity = 0;
}

bool CTouchNavigator::IsBeyondEnd() const
{
    return m_scroll >= 1 || m_scroll + m_contentHeight < m_height;
}

bool CTouchNavigator::Overscroll(bool animate)
{
    if (!IsBeyondEnd())
        return false;
    if (animate) {
        m_reboundStep = kFirstReboundStep;
        m_timers.Set(kTimerRebound, kReboundMs);
    } else {
        m_timers.Kill(kTimerRebound);
        Rebound(0);
    }
    return true;
}

void CTouchNavigator::ReboundTimer()
{
    Rebound(m_reboundStep);
    if (m_reboundStep > 0)
        --m_reboundStep;
    else
        m_timers.Kill(kTimerRebound);
}

// The factors are no smooth curve: the bottom end settles with a pause before its last jump.
void CTouchNavigator::Rebound(int step)
{
    static constexpr double kBottomFactors[] = {0, 0.02, 0.2, 0.5};
    static constexpr double kTopFactors[] = {0, 0.2, 0.4, 0.5};
    if (step == 0)
        m_dragging = false;
    const bool gapBelow = m_scroll + m_contentHeight < m_height;
    if (m_contentHeight > m_height && gapBelow) {
        const int gap = m_height - (m_scroll + m_contentHeight);
        m_scroll = step == 0 ? m_height - m_contentHeight : m_scroll + int(gap * kBottomFactors[step]);
    } else if (m_scroll < 1 && !gapBelow) {
        return;
    } else {
        m_scroll = step == 0 ? 0 : int(m_scroll * kTopFactors[step]);
    }
    Redraw(true);
}
