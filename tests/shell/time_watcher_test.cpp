#include "platform/clock.h"
#include "shell/time_watcher.h"
#include "touch/timer_ids.h"

#include <gtest/gtest.h>
#include <vector>

namespace
{
class TimeWatcher : public testing::Test
{
protected:
    TimeWatcher() : m_zone(ZoneOf(-60))
    {
        SetTimeZone(&m_zone);
        SetNow({2026, 3, 0, 28, 22, 30, 0, 0}); // 23:30 in the zone, the night that daylight time begins
        SetClock(&m_clock);
        m_watcher.Bind([this](int notice) { m_told.push_back(notice); });
    }
    ~TimeWatcher() override
    {
        SetClock(nullptr);
        SetTimeZone(nullptr);
    }
    static TimeZoneInformation ZoneOf(int bias)
    {
        TimeZoneInformation zone;
        zone.Bias = bias;
        zone.DaylightBias = -60;
        zone.StandardDate = {0, 10, 0, 5, 3, 0, 0, 0};
        zone.DaylightDate = {0, 3, 0, 5, 2, 0, 0, 0};
        return zone;
    }
    void SetNow(const SystemTime& utc)
    {
        FileTime time = 0;
        ASSERT_TRUE(SystemTimeToFileTime(utc, &time));
        m_clock.Set(time);
    }
    std::vector<int> Fire()
    {
        m_watcher.Timers().Fire(CTimeWatcher::kTimer);
        return std::exchange(m_told, {});
    }

    CManualClock m_clock;
    CFixedTimeZone m_zone;
    CTimeWatcher m_watcher;
    std::vector<int> m_told;
};
using Notices = std::vector<int>;
} // namespace

TEST_F(TimeWatcher, TellsOfANewDayAndANewZoneOnce)
{
    m_watcher.Start();
    EXPECT_EQ(m_watcher.Timers().PeriodOf(CTimeWatcher::kTimer), 60000);
    EXPECT_EQ(Fire(), Notices());
    m_clock.Advance(29 * 60000);
    EXPECT_EQ(Fire(), Notices());
    m_clock.Advance(60000);
    EXPECT_EQ(Fire(), Notices{kClockNewDay});
    EXPECT_EQ(Fire(), Notices());
    m_clock.Advance(2 * 3600000);
    EXPECT_EQ(Fire(), Notices{kClockNewZone}) << "daylight time has begun";
    const CFixedTimeZone other(ZoneOf(300));
    SetTimeZone(&other);
    EXPECT_EQ(Fire(), Notices{kClockNewDay | kClockNewZone}) << "west of here it is still yesterday";
    EXPECT_EQ(Fire(), Notices());
}

TEST_F(TimeWatcher, SeesAtTheStartWhatItMissedWhileItRested)
{
    m_watcher.Start();
    m_watcher.Stop();
    EXPECT_FALSE(m_watcher.IsRunning());
    m_clock.Advance(24 * 3600000);
    EXPECT_EQ(m_told, Notices());
    m_watcher.Start();
    EXPECT_EQ(m_told, (Notices{kClockNewDay | kClockNewZone}));
}
