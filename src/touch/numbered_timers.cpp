#include "touch/numbered_timers.h"

#include <QThread>
#include <QTimerEvent>

void CNumberedTimers::Set(int id, int milliseconds)
{
    Kill(id);
    m_timers[id] = {startTimer(milliseconds, Qt::PreciseTimer), milliseconds};
}

void CNumberedTimers::Kill(int id)
{
    const auto found = m_timers.find(id);
    if (found == m_timers.end())
        return;
    killTimer(found->second.QtId);
    m_timers.erase(found);
}

void CNumberedTimers::KillAll()
{
    while (!m_timers.empty())
        Kill(m_timers.begin()->first);
}

int CNumberedTimers::PeriodOf(int id) const
{
    const auto found = m_timers.find(id);
    return found == m_timers.end() ? -1 : found->second.Period;
}

void CNumberedTimers::Fire(int id)
{
    if (IsRunning(id))
        m_expired(id);
}

void CNumberedTimers::timerEvent(QTimerEvent* event)
{
    for (const auto& [id, timer] : m_timers) {
        if (timer.QtId == event->timerId()) {
            m_expired(id);
            return;
        }
    }
}

namespace
{
std::function<void(int)>& PauseInForce()
{
    static std::function<void(int)> pause;
    return pause;
}
} // namespace

void PauseFor(int milliseconds)
{
    if (const auto& pause = PauseInForce())
        pause(milliseconds);
    else
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

void SetPause(std::function<void(int)> pause)
{
    PauseInForce() = std::move(pause);
}
