#include "shell/time_watcher.h"
#include "touch/timer_ids.h"
#include "util/date_time.h"

CTimeWatcher::CTimeWatcher() : m_timers([this](int) { Check(); }) {}

void CTimeWatcher::See()
{
    m_day = GetToday();
    m_period = GetTimeZoneInformation(&m_zone);
}

void CTimeWatcher::Bind(std::function<void(int)> changed)
{
    m_changed = std::move(changed);
    See();
}

void CTimeWatcher::Start()
{
    m_timers.Set(kTimer, kClockWatchMs);
    Check();
}

void CTimeWatcher::Stop()
{
    m_timers.Kill(kTimer);
}

void CTimeWatcher::Check()
{
    const int day = m_day;
    const quint32 period = m_period;
    const TimeZoneInformation zone = m_zone;
    See();
    const int notice =
        (m_day != day ? kClockNewDay : 0) | (m_period != period || m_zone != zone ? kClockNewZone : 0);
    if (notice && m_changed)
        m_changed(notice);
}
