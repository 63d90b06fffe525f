#include "editors/appointment_editor.h"
#include "editors/task_editor.h"
#include "platform/registry.h"
#include "shell_fixture.h"
#include "views/item_details_form.h"

#include <QTest>
#include <QTimer>

namespace
{
class ShowItem : public ShellFixture
{
protected:
    // Plays one step in each dialog that comes up, in order.
    void Watch(std::vector<std::function<void(CFormDialog&)>> steps)
    {
        m_steps = std::move(steps);
        QObject::connect(&m_watch, &QTimer::timeout, [this] {
            CFormDialog* now = CFormDialog::Current();
            if (!now || now == m_seen)
                return;
            m_seen = now;
            if (m_done == m_steps.size())
                return now->End(CFormDialog::kCancelled);
            m_steps[m_done++](*now);
            if (CFormDialog::Current() != now)
                return;
            now->End(CFormDialog::kCancelled);
            m_seen = nullptr;
        });
        m_watch.start(0);
    }
    quint32 AddTask()
    {
        const auto task = m_app->CreateTask();
        task->put_Subject("due");
        task->put_DueDate(kToday);
        EXPECT_TRUE(task->Save());
        return task->get_Oid();
    }
    void Serve(const QString& text)
    {
        CCommandRequest request;
        ParseCommandLine(request, text);
        m_frame->ShowItem(request, m_frame.get());
    }

    QTimer m_watch;
    std::vector<std::function<void(CFormDialog&)>> m_steps;
    size_t m_done = 0;
    CFormDialog* m_seen = nullptr;
};

template <class Form> std::function<void(CFormDialog&)> Expect()
{
    return [](CFormDialog& dialog) { EXPECT_TRUE(dynamic_cast<Form*>(&dialog)) << typeid(dialog).name(); };
}
} // namespace

TEST_F(ShowItem, RequestsOpenTheirForms)
{
    const quint32 appointment = Add("here", kToday), task = AddTask();
    Start();
    m_frame->show();
    Watch({Expect<CItemDetailsForm>(), Expect<CItemDetailsForm>(), Expect<CItemDetailsForm>(),
           Expect<CAppointmentEditor>(), Expect<CTaskEditor>(), Expect<CAppointmentEditor>(),
           Expect<CTaskEditor>()});
    const qint64 minutes = qint64(kToday) * 1440;
    Serve(QString("VIEW|%1|%2|APPT").arg(appointment).arg(minutes));
    Serve(QString("VIEW|%1|0|APPT").arg(qint32(appointment)));
    Serve(QString("VIEW|%1|0|TASK").arg(qint32(task)));
    Serve(QString("EDIT|%1|%2|APPT").arg(appointment).arg(minutes));
    Serve(QString("EDIT|%1|0|TASK").arg(qint32(task)));
    Serve(QString("CREATE|%1|%2|APPT|Work").arg(minutes + 600).arg(minutes + 660));
    Serve(QString("CREATE|%1|%2|TASK|Work").arg(minutes).arg(minutes));
    EXPECT_EQ(m_done, 7u);
    Serve("VIEW|4711|0|APPT");
    Serve("VIEW|4711|0|TASK");
    EXPECT_EQ(m_done, 7u) << "an item that is gone opens nothing";
}

TEST_F(ShowItem, AWindowThatCameForwardForAnotherProgramsItemFallsBack)
{
    const quint32 appointment = Add("here", kToday), task = AddTask();
    Start();
    m_frame->show();
    Watch(std::vector<std::function<void(CFormDialog&)>>(6, [](CFormDialog&) {}));
    const struct {
        QString Request;
        bool InFront, FallsBack;
    } cases[] = {{QString("VIEW|%1|0|APPT").arg(appointment), false, true},
                 {QString("VIEW|%1|0|TASK").arg(qint32(task)), false, true},
                 {QString("EDIT|%1|0|APPT").arg(appointment), false, true},
                 {QString("EDIT|%1|0|TASK").arg(qint32(task)), false, true},
                 {QString("VIEW|%1|0|APPT").arg(appointment), true, false},
                 {"CREATE|0|0|TASK", false, false},
                 {"OPEN|LIST", false, false}};
    for (const auto& c : cases) {
        QApplication::setActiveWindow(c.InFront ? m_frame.get() : nullptr);
        m_frame->OnInstanceMessage({kMessageShow, 5, 0, {}});
        EXPECT_FALSE(m_frame->isMinimized());
        CRegistry::WriteString(kRegistryKey, "CallCmdLine", c.Request);
        m_frame->OnInstanceMessage({kMessageRequest, 0, 0, {}});
        EXPECT_EQ(m_frame->isMinimized(), c.FallsBack) << c.Request.toStdString() << c.InFront;
    }
    EXPECT_EQ(m_done, 6u);
}

TEST_F(ShowItem, CommandsOpenFormsAndSaveThem)
{
    Start();
    m_frame->show();
    Watch({[](CFormDialog& form) {
               EXPECT_TRUE(dynamic_cast<CAppointmentEditor*>(&form));
               QTest::keyClicks(form.focusWidget() ? form.focusWidget() : &form, "Typed");
               QTest::keyClick(&form, Qt::Key_F1);
           },
           Expect<CTaskEditor>(),
           [](CFormDialog& form) {
               QTest::keyClicks(form.focusWidget(), "Due");
               QTest::keyClick(&form, Qt::Key_F1);
           }});
    m_frame->SendCommand(CmdNewAppointment);
    m_frame->SendCommand(CmdNewTask);
    m_frame->ShowView(kViewTasks, -1);
    g_Settings.TasksView.NewTaskDayOffset = 3;
    m_frame->SendCommand(CmdNewTask);
    EXPECT_EQ(m_done, 3u);
    m_frame->OnDatabaseChange(PimStore().DrainNotices());
    EXPECT_EQ(SubjectsOf(kToday), QStringList("Typed"));
    const CDayItems* const due = PimStore().FindDay(kToday + 3);
    ASSERT_TRUE(due);
    ASSERT_EQ(due->Tasks.size(), 1u);
    EXPECT_EQ(due->Tasks[0]->Subject, "Due");
}
