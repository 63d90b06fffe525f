// The forms of appointments and tasks, as a hand works them, on a volume of the test's own.
#include "editors/appointment_editor.h"
#include "editors/editors_fixture.h"
#include "editors/task_editor.h"

#include <QCheckBox>

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
