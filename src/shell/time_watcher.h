// Watches the clock and the time zone while the window is visible, and tells of a new day or zone.
#pragma once
#include "platform/time_zone.h"
#include "touch/numbered_timers.h"

#include <functional>

enum ClockNotice { kClockNewDay = 1, kClockNewZone = 2 };

class CTimeWatcher
{
public:
    CTimeWatcher();

    void Bind(std::function<void(int notice)> changed); // takes the present as what was seen last
    void Start();                                       // looks at once: hours may have gone by meanwhile
    void Stop();
    bool IsRunning() const { return m_timers.IsRunning(kTimer); }
    void Check();
    CNumberedTimers& Timers() { return m_timers; }

    static constexpr int kTimer = 1;

private:
    void See();

    std::function<void(int)> m_changed;
    int m_day = 0;
    quint32 m_period = 0;
    TimeZoneInformation m_zone;
    CNumberedTimers m_timers;
};
