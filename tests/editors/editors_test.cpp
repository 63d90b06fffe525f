// The forms of appointments and tasks, as a hand works them, on a volume of the test's own.
#include "editors/appointment_editor.h"
#include "editors/edit_item.h"
#include "editors/task_editor.h"
#include "forms/forms_fixture.h"
#include "forms/question.h"
#include "pim/pim_store.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTimeEdit>

namespace
{
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
} // namespace

TEST_F(CEditorsTest, ANewAppointmentStartsAsTheSettingsSay)
{
    g_Settings.DefaultValues.NewAppointmentStartTime = 505;
    g_Settings.DefaultValues.NewAppointmentDuration = 25;
    const CAppointmentEditor plain(kDay, false);
    EXPECT_NEAR(plain.GetItem().Start, kDay + 505 / 1440.0, 1e-9);
    EXPECT_NEAR(plain.GetItem().End, kDay + 530 / 1440.0, 1e-9);
    const CAppointmentEditor timed(kDay + 0.25, true, kDay + 0.75);
    EXPECT_EQ(timed.GetItem().Start, kDay + 0.25);
    EXPECT_EQ(timed.GetItem().End, kDay + 0.75);
    EXPECT_EQ(DayNumber(CAppointmentEditor(NO_DATE, true).GetItem().Start), kDay);
}

TEST_F(CEditorsTest, DoneSavesWhatWasTypedAndCancelNothing)
{
    const quint32 id = AddAppointment(kDay + 0.5, kDay + 0.75);
    for (const bool done : {false, true}) {
        WithForm([&](CFieldForm& form) {
            Select(form, StrSubject);
            Type(form, "Dentist");
            Choose(form, StrStatus, 3);
            Choose(form, StrPrivate, 1);
            Choose(form, StrReminder, 5);
            Choose(form, StrAllDay, 1);
            EXPECT_EQ(Row(form, StrStartDate)->Type, kRowDate);
            EXPECT_EQ(Row(form, StrEndDate)->Type, kRowDate);
            done ? Done(form) : form.End(CFormDialog::kCancelled);
        });
        EXPECT_EQ(EditAppointment(id, kDay, &Window), done ? 1 : 0);
        const CAppointment read = Read(id);
        EXPECT_EQ(read.Subject, done ? "Dentist" : "Meeting");
        EXPECT_EQ(read.BusyStatus, done ? 3 : 2);
        EXPECT_EQ(read.IsPrivate(), done);
        EXPECT_EQ(read.AllDay, done);
        EXPECT_EQ(read.ReminderSet && read.ReminderMinutes == 30, done);
    }
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(id, item));
    EXPECT_EQ(DayNumber(item->get_Start()), kDay);
}

TEST_F(CEditorsTest, AReminderOfNoListedLengthIsACustomOne)
{
    const quint32 id = AddAppointment(kDay + 0.5, kDay + 0.75);
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(id, item));
    item->put_ReminderSet(true);
    item->put_ReminderMinutesBeforeStart(35);
    ASSERT_TRUE(item->Save());
    WithForm([](CFieldForm& form) {
        EXPECT_EQ(Row(form, StrReminder)->Value, "Custom Reminder");
        EXPECT_TRUE(Shows(form, StrCustomReminder));
        EXPECT_EQ(Row(form, StrCustomReminder)->Value, "35 minutes");
        Choose(form, StrReminder, 1);
        EXPECT_FALSE(Shows(form, StrCustomReminder));
        Done(form);
    });
    EditAppointment(id, kDay, &Window);
    EXPECT_EQ(Read(id).ReminderMinutes, 1);
}

TEST_F(CEditorsTest, OfASeriesOneOccurrenceOrAllOfItIsEdited)
{
    const quint32 id = AddAppointment(kDay + 0.5, kDay + 0.75, true);
    SetAnswerer([](const QString&, const QString&) { return 1; });
    WithForm([](CFieldForm& form) {
        for (const quint32 id : {StrPrivate, StrRecurring, StrReminder, StrCustomReminder, StrCustomPattern})
            EXPECT_EQ(Row(form, id), nullptr) << id;
        Select(form, StrSubject);
        Type(form, "Moved");
        Done(form);
    });
    EditAppointment(id, kDay + 2, &Window);
    EXPECT_EQ(Read(id).Subject, "Meeting");
    CAppointment occurrence(kKindAppointment, CAppointment::Blank{});
    ASSERT_TRUE(PimStore().ReadOccurrence(id, kDay + 2, occurrence));
    EXPECT_EQ(occurrence.Subject, "Moved");
    SetAnswerer([](const QString&, const QString&) { return 2; });
    WithForm([](CFieldForm& form) {
        EXPECT_EQ(Row(form, StrRecurring)->Index, kPresetCustom);
        EXPECT_TRUE(Shows(form, StrCustomPattern));
        EXPECT_TRUE(Row(form, StrCustomPattern)->Value.contains("Tuesday and Thursday"))
            << Row(form, StrCustomPattern)->Value.toStdString();
        Choose(form, StrRecurring, kPresetNone);
        EXPECT_FALSE(Shows(form, StrCustomPattern));
        Done(form);
    });
    EditAppointment(id, kDay, &Window);
    EXPECT_FALSE(Read(id).IsRecurring());
}

TEST_F(CEditorsTest, AnItemThatGoesWhileItsFormIsOpenIsToldAndNothingElseIsLost)
{
    const quint32 id = AddAppointment(kDay + 0.5, kDay + 0.75),
                  other = AddAppointment(kDay + 1.5, kDay + 1.75);
    int told = 0;
    SetAnswerer([&told](const QString&, const QString&) { return ++told, 0; });
    WithForm([&](CFieldForm& form) {
        std::unique_ptr<IAppointment> item;
        ASSERT_TRUE(m_app->GetAppointmentFromOid(id, item));
        ASSERT_TRUE(item->Delete());
        Done(form);
    });
    EditAppointment(id, kDay, &Window);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Read(other).Subject, "Meeting");
    EXPECT_EQ(EditAppointment(id, kDay, &Window), CFormDialog::kCancelled) << "gone";
}

TEST_F(CEditorsTest, ATaskWithoutADueDateHasNoStart)
{
    CTaskListEntry task;
    task.Subject = "Paint";
    CTaskEditor editor(nullptr, task, QString(), QString());
    EXPECT_EQ(Run(editor,
                  [&] {
                      EXPECT_FALSE(Row(editor, StrEndDate)->Included);
                      EXPECT_FALSE(Shows(editor, StrStartDate));
                      Select(editor, StrEndDate);
                      Live<QCheckBox>(editor)->click();
                      EXPECT_TRUE(Shows(editor, StrStartDate));
                      EXPECT_FALSE(Row(editor, StrStartDate)->Included);
                      Choose(editor, StrPriority, 2);
                      Done(editor);
                  }),
              CFormDialog::kDone);
    EXPECT_EQ(editor.GetItem().End, kDay);
    EXPECT_EQ(editor.GetItem().Start, NO_DATE);
    EXPECT_EQ(editor.GetItem().Priority, 2);
}
