// A frame on a volume of the test's own, at a time and place that never change.
#pragma once
#include "drawing/screen_metrics.h"
#include "object_model/object_model.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "settings/settings_path.h"
#include "shell/command_request.h"
#include "shell/main_frame.h"
#include "forms/question.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/virtual_keys.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

class ShellFixture : public testing::Test
{
protected:
    static inline const int kToday = DayNumberOf(2026, 3, 10);
    static constexpr QSize kSize{240, 320};

    ShellFixture() : m_locale(MakeLocale("en_US"))
    {
        SetLocale(m_locale.get());
        SetTimeZone(&m_zone);
        SetTime(2026, 3, 10, 9);
        SetClock(&m_clock);
        QFile::remove(SettingsFile());
        static_cast<CSettingsValues&>(g_Settings) = CSettings();
        g_Settings.m_currentFilterIndex = -1;
        g_CommandRequest = CCommandRequest();
        ForceDensity(96);
        EXPECT_TRUE(CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                          CPropertyVolume::Mode::Create, m_volume));
        m_app = MakePOutlookApp(m_volume);
        EXPECT_TRUE(m_app->Logon());
    }
    ~ShellFixture() override
    {
        m_frame.reset();
        SetAnswerer({});
        ForceDensity(-1);
        SetClock(nullptr);
        SetTimeZone(nullptr);
        SetLocale(nullptr);
    }

    static QString SettingsFile() { return FindInstallFolder() + '/' + kSettingsFileName; }
    void SetTime(int year, int month, int day, int hour)
    {
        FileTime time = 0;
        SystemTimeToFileTime({quint16(year), quint16(month), 0, quint16(day), quint16(hour), 0, 0, 0}, &time);
        m_clock.Set(time);
    }
    quint32 Add(const char* subject, int day, double hour = 10)
    {
        const auto item = m_app->CreateAppointment();
        item->put_Subject(subject);
        item->put_Start(day + hour / 24);
        item->put_End(day + (hour + 1) / 24);
        const CStatus saved = item->Save();
        EXPECT_TRUE(saved) << saved.Text().toStdString();
        return item->get_Oid();
    }
    // What a second process would have asked for; empty: a plain start.
    CMainFrame& Start(const QString& request = QLatin1String(""))
    {
        ParseCommandLine(g_CommandRequest, request);
        m_frame = std::make_unique<CMainFrame>(CFrameSetup{m_volume});
        m_frame->resize(kSize);
        m_created = m_frame->OnCreate();
        return *m_frame;
    }
    QStringList SubjectsOf(int day)
    {
        QStringList subjects;
        if (const CDayItems* items = PimStore().FindDay(day)) {
            for (const auto& item : items->Appointments)
                subjects << item->Subject;
        }
        return subjects;
    }
    static bool WaitFor(const std::function<bool()>& done, int milliseconds = 5000)
    {
        const QDeadlineTimer end(milliseconds);
        while (!done() && !end.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return done();
    }

    QTemporaryDir m_folder;
    CManualClock m_clock;
    CFixedTimeZone m_zone{TimeZoneInformation()};
    std::unique_ptr<ILocale> m_locale;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
    std::unique_ptr<CMainFrame> m_frame;
    bool m_created = false;
};
