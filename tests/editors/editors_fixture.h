// The editors on a volume of the test's own, at a time and place that never change.
#pragma once
#include "editors/edit_item.h"
#include "forms/forms_fixture.h"
#include "forms/question.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "util/string_ids.h"

#include <QLineEdit>
#include <QTemporaryDir>

class CEditorsTest : public CFormsTest
{
protected:
    static inline const int kDay = DayNumberOf(2026, 3, 10); // a Tuesday

    CEditorsTest() : m_locale(MakeLocale("en_US"))
    {
        SetLocale(m_locale.get());
        SetTimeZone(&m_zone);
        FileTime time = 0;
        SystemTimeToFileTime({2026, 3, 0, 10, 9, 0, 0, 0}, &time);
        m_clock.Set(time);
        SetClock(&m_clock);
        static_cast<CSettingsValues&>(g_Settings) = CSettings();
        g_Settings.General.SlidingScreens = 0;
        EXPECT_TRUE(CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                          CPropertyVolume::Mode::Create, m_volume));
        PimStore().Initialize(m_volume);
        m_app = MakePOutlookApp(m_volume);
        EXPECT_TRUE(m_app->Logon());
    }
    ~CEditorsTest() override
    {
        SetAnswerer({});
        m_app.reset();
        PimStore().Shutdown();
        SetClock(nullptr);
        SetTimeZone(nullptr);
        SetLocale(nullptr);
    }
    quint32 AddAppointment(double start, double end, bool weekly = false)
    {
        const auto item = m_app->CreateAppointment();
        item->put_Subject("Meeting");
        item->put_Start(start);
        item->put_End(end);
        if (weekly) {
            CRecurrencePatternData data = MakeDefaultPattern(start);
            data.PatternType = CRecurrencePatternData::kWeekly;
            data.Days = {false, false, true, false, true, false, false};
            WritePatternData(data, *item->GetRecurrencePattern());
        }
        EXPECT_TRUE(item->Save());
        return item->get_Oid();
    }
    CAppointment Read(quint32 id)
    {
        CAppointment read(kKindAppointment, CAppointment::Blank{});
        std::unique_ptr<IAppointment> item;
        EXPECT_TRUE(m_app->GetAppointmentFromOid(id, item));
        if (item)
            PimStore().ReadAppointmentFromModel(*item, read);
        return read;
    }
    // What the hand does with the dialog that is open, once it is.
    void WithForm(const std::function<void(CFieldForm&)>& act)
    {
        QTimer::singleShot(0, &Window, [act] {
            auto* form = dynamic_cast<CFieldForm*>(CFormDialog::Current());
            ASSERT_NE(form, nullptr);
            act(*form);
            form->End(kLeftOpen);
        });
    }
    static bool Shows(const CFieldForm& form, quint32 id) { return Row(form, id) && !Row(form, id)->Hidden; }
    static void Type(CFieldForm& form, const char* text) // in the place of what stands there
    {
        auto* line = Live<QLineEdit>(form);
        ASSERT_NE(line, nullptr);
        line->selectAll();
        QTest::keyClicks(line, QLatin1String(text));
    }
    static void Done(CFieldForm& form) { Click(form, KeyCentre(form, 0)); }

    QTemporaryDir m_folder;
    std::unique_ptr<ILocale> m_locale;
    CFixedTimeZone m_zone{TimeZoneInformation()};
    CManualClock m_clock;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
};
