// A view on days that a test fills by hand, at a time, place and language that never change.
#pragma once
#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "drawing/image_store.h"
#include "drawing/screen_metrics.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "platform/time_zone.h"
#include "settings/fake_locale.h"
#include "settings/settings.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/numbered_timers.h"
#include "views/i_view_host.h"

class CRecordingHost : public IViewHost
{
public:
    void SendCommand(int command) override { Commands.push_back(command); }
    // A frame without editors, unless a test asks for more.
    bool Offers(int command) const override
    {
        return OffersAll || (command != CmdNewAppointment && command != CmdNewTask && command != CmdEdit &&
                             command != CmdOpenItem && command != CmdBeam);
    }
    bool OffersAll = false;
    void UpdateTitle() override { ++Titles; }
    void RebuildSoftKeys() override {}
    void ShowDaily(int returnView) override { Shown.push_back(returnView); }
    void PressSoftKey(int key) override { Keys.push_back(key); }
    std::vector<int> Commands, Keys, Shown;
    int Titles = 0;
};

class CViewTest : public testing::Test
{
protected:
    static int Day(int year, int month, int day) { return DayNumberOf(year, month, day); }
    static inline const int kToday = DayNumberOf(2026, 3, 17); // a Tuesday

    void SetUp() override
    {
        SetTimeZone(&m_zone);
        FileTime now;
        SystemTimeToFileTime({2026, 3, 2, 17, 10, 0, 0, 0}, &now);
        Time.Set(now);
        SetClock(&Time);
        SetPause([](int) {});
        Defaults();
        SetDensity(96);
        PimStore().Initialize(nullptr);
        PimStore().LoadRange(kToday, kToday, kToday);
    }
    void TearDown() override
    {
        PimStore().Shutdown();
        Defaults();
        SetDensity(96);
        ForceDensity(-1);
        SetPause({});
        SetClock(nullptr);
        SetTimeZone(nullptr);
    }
    static void Defaults() { static_cast<CSettingsValues&>(g_Settings) = CSettings(); }
    static void SetDensity(int density)
    {
        ForceDensity(density);
        g_ScreenMetrics.Init(density, {240, 320});
        LoadResourceLibraries(QString());
    }

    static std::unique_ptr<CAppointment> Appointment(quint32 id, const QString& subject, DATE start, DATE end)
    {
        auto item = std::make_unique<CAppointment>(kKindAppointment, CAppointment::Blank());
        item->ItemId = item->RecordOid = id;
        item->Subject = subject;
        item->Start = start;
        item->End = end;
        return item;
    }
    // Today, from `hour` for an hour; stays the cache's.
    static CAppointment& AddToday(quint32 id, const QString& subject, double hour)
    {
        return Add(Appointment(id, subject, kToday + hour / 24, kToday + (hour + 1) / 24));
    }
    static CAppointment& Add(std::unique_ptr<CAppointment> item, int day = kToday)
    {
        CAppointment& added = *item;
        PimStore().FindDay(day)->AddAppointment(std::move(item), true);
        return added;
    }

    CManualClock Time;
    CFakeLocale Names;

private:
    CFixedTimeZone m_zone{TimeZoneInformation()};
};
