#include "touch/screen_transition.h"
#include "drawing/screen_metrics.h"
#include "settings/settings.h"
#include "touch/timer_ids.h"

#include <QPainter>

CScreenTransition::CScreenTransition(std::function<void()> changed)
    : m_changed(std::move(changed)), m_timers([this](int id) { OnTransitionTimer(id); })
{
}

void CScreenTransition::StartTransition(int direction, const QImage& old)
{
    Stop();
    if (direction == 0 || !g_Settings.General.SlidingScreens || old.width() <= D(kStep))
        return;
    m_old = old;
    m_direction = direction;
    m_position = direction < 0 ? old.width() - D(kStep) : D(kStep);
}

void CScreenTransition::Stop()
{
    m_timers.KillAll();
    m_old = m_new = QImage();
    m_position = m_direction = 0;
}

void CScreenTransition::SetPicture(const QImage& picture)
{
    if (!IsRunning())
        return;
    if (picture.size() != m_old.size())
        return Stop(); // the window has another size now
    m_new = picture;
    m_timers.Set(kTimerTransition, kTransitionMs);
}

bool CScreenTransition::PaintTransition(QPainter& dc) const
{
    if (!IsRunning() || m_new.isNull())
        return false;
    const QImage& left = m_direction < 0 ? m_old : m_new;
    const QImage& right = m_direction < 0 ? m_new : m_old;
    const int width = m_old.width(), height = m_old.height();
    dc.drawImage(QPoint(0, 0), left, QRect(width - m_position, 0, m_position, height));
    dc.drawImage(QPoint(m_position, 0), right, QRect(0, 0, width - m_position, height));
    return true;
}

bool CScreenTransition::OnTransitionTimer(int id)
{
    if (id != kTimerTransition)
        return false;
    m_timers.Kill(kTimerTransition);
    if (!IsRunning())
        return true;
    m_position += m_direction * D(kStep);
    if (m_position > 0 && m_position < m_old.width())
        m_timers.Set(kTimerTransition, kTransitionMs);
    else
        Stop();
    m_changed();
    return true;
}
