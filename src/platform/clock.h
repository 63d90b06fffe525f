// The clock in force: the system's, or the one a test or --now has put.
#pragma once
#include "platform/system_time.h"

class IClock
{
public:
    virtual ~IClock() = default;
    virtual FileTime GetUtcTime() const = 0;
    virtual quint32 GetTickCount() const = 0; // milliseconds, wraps
};

const IClock& Clock();
void SetClock(const IClock* clock); // nullptr returns to the system's

// Now in local time by the clock and the zone in force (the zone's rule of now).
SystemTime GetLocalTime();
quint32 GetTickCount();

// A clock that stands still until it is moved.
class CManualClock : public IClock
{
public:
    explicit CManualClock(FileTime utc = 0) : m_utc(utc) {}
    void Set(FileTime utc) { m_utc = utc; }
    void Advance(int milliseconds)
    {
        m_utc += qint64(milliseconds) * 10000;
        m_tick += quint32(milliseconds);
    }
    FileTime GetUtcTime() const override { return m_utc; }
    quint32 GetTickCount() const override { return m_tick; }

private:
    FileTime m_utc;
    quint32 m_tick = 0;
};
