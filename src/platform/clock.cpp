#include "platform/clock.h"

#include "platform/time_zone.h"

#include <chrono>

namespace
{
constexpr qint64 kUnixEpoch = 116444736000000000; // 1 January 1970 as a file time

class CSystemClock : public IClock
{
public:
    FileTime GetUtcTime() const override
    {
        using namespace std::chrono;
        const auto since = system_clock::now().time_since_epoch();
        return kUnixEpoch + duration_cast<nanoseconds>(since).count() / 100;
    }
    quint32 GetTickCount() const override
    {
        using namespace std::chrono;
        return quint32(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    }
};

const IClock* g_clock = nullptr;
} // namespace

const IClock& Clock()
{
    static const CSystemClock system;
    return g_clock ? *g_clock : system;
}

void SetClock(const IClock* clock) { g_clock = clock; }

SystemTime GetLocalTime()
{
    SystemTime time;
    FileTime local = 0;
    if (FileTimeToLocalFileTime(Clock().GetUtcTime(), &local))
        FileTimeToSystemTime(local, &time);
    return time;
}

quint32 GetTickCount() { return Clock().GetTickCount(); }
