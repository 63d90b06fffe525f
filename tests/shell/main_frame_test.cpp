#include "platform/registry.h"
#include "shell/instance_handover.h"
#include "shell/view_rotation.h"
#include "shell_fixture.h"
#include "touch/timer_ids.h"
#include "views/daily_view.h"

#include <QTest>

namespace
{
using MainFrame = ShellFixture;

void Post(const QString& text)
{
    CRegistry::WriteString(kRegistryKey, "CallCmdLine", text);
}

QString MinutesOf(int day)
{
    return QString::number(qint64(day) * 1440);
}

std::vector<int> CommandsOf(const CSoftKeyBar& keys)
{
    std::vector<int> commands;
    for (int i = 0; i < keys.GetCount(); ++i)
        commands.push_back(keys.CommandAt(i));
    return commands;
}
} // namespace

// ---- start

TEST_F(MainFrame, ComesUpOnTodayWithKeysAndTitle)
{
    Add("here", kToday);
    CMainFrame& frame = Start();
    ASSERT_TRUE(m_created);
    EXPECT_EQ(PimStore().CursorDate(), kToday);
    EXPECT_EQ(SubjectsOf(kToday), QStringList{"here"});
    EXPECT_EQ(CommandsOf(frame.SoftKeys()), (std::vector<int>{CmdViewButton, CmdDateBack, CmdGoTo,
                                                           CmdDateForward, CmdMenu}));
    EXPECT_TRUE(frame.TitleText().contains("2026")) << frame.TitleText().toStdString();
    EXPECT_EQ(frame.windowTitle(), "Tessera") << "the strip has the view's own";
    EXPECT_EQ(frame.CurrentView()->geometry(), QRect(14, 0, 226, 280));
}

TEST_F(MainFrame, WithoutAStripTheWindowHasTheTitle)
{
    g_Settings.General.CustomTitlebarLocation = kTitleNone;
    CMainFrame& frame = Start();
    EXPECT_EQ(frame.windowTitle(), frame.CurrentView()->GetTitleText());
    EXPECT_EQ(frame.CurrentView()->geometry(), QRect(0, 0, 240, 280));
}

TEST_F(MainFrame, RequestsChooseTheFirstDate)
{
    const struct {
        QString Request;
        int Day;
    } cases[] = {{"OPEN|DAILY|" + MinutesOf(kToday + 40), kToday + 40},
                 {"OPEN|DAILY", kToday},
                 {"OPEN|LIST|1367997120", kToday},
                 {"OPEN|MONTHLY|" + MinutesOf(kToday - 3), kToday - 3},
                 {"OPEN|DAILY|2147483647", kToday},
                 {"OPEN|DAILY|-2147483647", kToday},
                 {"OPEN|DAILY|-1440", kToday}};
    for (const auto& c : cases) {
        g_CommandRequest = CCommandRequest();
        Start(c.Request);
        EXPECT_EQ(PimStore().CursorDate(), c.Day) << c.Request.toStdString();
        const int asked = g_CommandRequest.View == -1 ? kViewDaily : g_CommandRequest.View;
        EXPECT_EQ(g_Settings.General.LastView, CMainFrame::HasView(asked) ? asked : kViewDaily);
        g_Settings.General.LastView = kViewDaily;
        m_frame.reset();
    }
}

TEST_F(MainFrame, AnEmptyCalendarComesUpWithoutAVolume)
{
    m_volume.reset();
    Start();
    EXPECT_TRUE(m_created);
    EXPECT_FALSE(m_frame->Snapshot().isNull());
    m_frame->SendCommand(CmdDateForward);
    EXPECT_EQ(PimStore().CursorDate(), kToday + 1);
    m_frame->SendCommand(CmdDelete);
    m_frame->SendCommand(CmdDuplicate);
}

TEST_F(MainFrame, ARequestForOneItemShowsNoWindowAndSavesNothing)
{
    Start("VIEW|5|0|APPT");
    EXPECT_FALSE(m_created);
    m_frame.reset();
    EXPECT_FALSE(QFile::exists(SettingsFile()));
}

// ---- end

TEST_F(MainFrame, ASecondCloseDoesNotFail)
{
    CMainFrame& frame = Start();
    g_Settings.DailyView.PopOut = 3;
    frame.Shutdown(true);
    EXPECT_TRUE(QFile::exists(SettingsFile()));
    EXPECT_FALSE(PimStore().IsOpen());
    frame.Shutdown(true);
    frame.close();
    frame.SendCommand(CmdDateForward);
    frame.OnClockNotice(kClockNewDay);
    frame.OnInstanceMessage({kMessageRequest, 0, 0, {}});
    EXPECT_EQ(frame.CurrentView(), nullptr);
    m_frame.reset();
    g_Settings.DailyView.PopOut = 0;
    g_Settings.Load(false);
    EXPECT_EQ(g_Settings.DailyView.PopOut, 3);
}

TEST_F(MainFrame, GoesDownAndComesUpAgain)
{
    Add("here", kToday);
    CMainFrame& frame = Start();
    frame.Shutdown(false);
    g_Settings.General.CustomTitlebarLocation = kTitleBottom;
    g_Settings.Save();
    ASSERT_TRUE(frame.OnCreate());
    EXPECT_EQ(SubjectsOf(kToday), QStringList{"here"});
    EXPECT_EQ(frame.CurrentView()->geometry(), QRect(0, 0, 240, 266));
}

TEST_F(MainFrame, ExitWaitsForTheTimer)
{
    CMainFrame& frame = Start();
    frame.show();
    frame.SendCommand(CmdExit);
    EXPECT_EQ(frame.Timers().PeriodOf(kTimerExit), 150);
    EXPECT_TRUE(frame.IsUp());
    frame.Timers().Fire(kTimerExit);
    EXPECT_FALSE(frame.IsUp());
}

// ---- requests of other processes

TEST_F(MainFrame, APostedRequestMovesTheView)
{
    CMainFrame& frame = Start();
    Post("OPEN|DAILY|" + MinutesOf(kToday + 9));
    frame.OnInstanceMessage({kMessageRequest, 0, 0, {}});
    EXPECT_EQ(PimStore().CursorDate(), kToday + 9);
    EXPECT_FALSE(CRegistry::ReadString(kRegistryKey, "CallCmdLine"));
    frame.OnInstanceMessage({kMessageRequest, 0, 0, {}});
    EXPECT_EQ(PimStore().CursorDate(), kToday + 9) << "a request is served once";
    for (const char* ignored : {"VIEW|5|0|APPT", "SHOWSOFTKEYDIALOG", "REPORTLOGPIXELS", "OPEN|DAILY",
                                "OPEN|DAILY|-2147483647", "x"}) {
        Post(ignored);
        frame.OnInstanceMessage({kMessageRequest, 0, 0, {}});
        EXPECT_EQ(PimStore().CursorDate(), kToday + 9) << ignored;
    }
}

TEST_F(MainFrame, PostedTextsOf260CharactersAreRefusedAndDeleted)
{
    const struct {
        QString Text;
        bool Read;
    } cases[] = {{"OPEN|DAILY|" + QString(259 - 11, '1'), true},
                 {"OPEN|DAILY|" + QString(260 - 11, '1'), false},
                 {"", false},
                 {"a", true}};
    for (const auto& c : cases) {
        Post(c.Text);
        CCommandRequest request;
        request.View = 4;
        EXPECT_EQ(ReadPostedCommandLine(request), c.Read) << c.Text.size();
        EXPECT_NE(request.View, 4) << "cleared in any case";
        EXPECT_FALSE(CRegistry::ReadString(kRegistryKey, "CallCmdLine"));
    }
    CCommandRequest request;
    EXPECT_FALSE(ReadPostedCommandLine(request)) << "nothing was posted";
}

// ---- commands

TEST_F(MainFrame, DatesMoveByCommandAndSoftKey)
{
    CMainFrame& frame = Start();
    frame.SendCommand(CmdDateForward);
    EXPECT_EQ(PimStore().CursorDate(), kToday + 1);
    QTest::mouseClick(&frame, Qt::LeftButton, {}, {90, 300});
    QTest::mouseClick(&frame, Qt::LeftButton, {}, {90, 300});
    EXPECT_EQ(PimStore().CursorDate(), kToday - 1) << "the second key goes back";
    QTest::mouseClick(&frame, Qt::LeftButton, {}, {150, 300});
    EXPECT_EQ(PimStore().CursorDate(), kToday) << "the fourth goes forward";
    QTest::mousePress(&frame, Qt::LeftButton, {}, {150, 300});
    EXPECT_EQ(frame.SoftKeys().Pressed(), 3);
    QTest::mouseRelease(&frame, Qt::LeftButton, {}, {150, 279});
    EXPECT_EQ(frame.SoftKeys().Pressed(), -1);
    EXPECT_EQ(PimStore().CursorDate(), kToday) << "the finger left the key";
    frame.SendCommand(CmdDateForward);
    frame.SendCommand(CmdToday);
    EXPECT_EQ(PimStore().CursorDate(), kToday);
}

TEST_F(MainFrame, WhatThisBuildHasNoHandlerForIsIgnored)
{
    CMainFrame& frame = Start();
    for (const int command : {int(CmdNone), 0, 2, 999, 1101, 40413, 99999}) {
        EXPECT_FALSE(CMainFrame::OffersCommand(command)) << command;
        frame.SendCommand(command);
    }
    frame.SendCommand(CmdPreviousView);
    EXPECT_EQ(PimStore().CursorDate(), kToday);
    EXPECT_EQ(frame.CurrentView()->GetViewKind(), kViewDaily);
}

TEST_F(MainFrame, DeletingAsksAndTheNoticeTakesTheRow)
{
    Add("first", kToday, 9);
    Add("second", kToday, 11);
    CMainFrame& frame = Start();
    frame.StartNotices();
    QStringList asked;
    int answer = 0;
    SetAnswerer([&](const QString& text, const QString& caption) {
        asked << caption + ": " + text;
        return answer;
    });
    frame.SendCommand(CmdDelete);
    EXPECT_EQ(asked, QStringList{"Delete?: Are you sure you would like to delete the appointment first ?"});
    EXPECT_EQ(SubjectsOf(kToday).size(), 2);
    answer = 1;
    frame.SendCommand(CmdDelete);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday) == QStringList{"second"}; }));
    auto* view = static_cast<CDailyView*>(frame.CurrentView());
    EXPECT_EQ(view->Rows().GetCount(), 1);
    frame.SendCommand(CmdDuplicate);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday).size() == 2; }));
    EXPECT_EQ(SubjectsOf(kToday), (QStringList{"second", "second"}));
}

TEST_F(MainFrame, OfASeriesTheChosenPartGoes)
{
    const auto series = m_app->CreateAppointment();
    series->put_Subject("daily");
    series->put_Start(kToday - 1 + 9 / 24.0);
    series->put_End(kToday - 1 + 10 / 24.0);
    series->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
    series->GetRecurrencePattern()->put_Occurrences(5);
    ASSERT_TRUE(series->Save());
    CMainFrame& frame = Start();
    frame.StartNotices();
    int secondAnswer = 0; // Cancel
    SetAnswerer(
        [&](const QString&, const QString& caption) { return caption == "Delete?" ? 1 : secondAnswer; });
    frame.SendCommand(CmdDelete);
    EXPECT_EQ(SubjectsOf(kToday).size(), 1);
    secondAnswer = 1; // this occurrence
    frame.SendCommand(CmdDelete);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday).isEmpty(); }));
    EXPECT_EQ(SubjectsOf(kToday + 1).size(), 1);
    frame.SendCommand(CmdDateForward);
    secondAnswer = 2; // the series
    frame.SendCommand(CmdDelete);
    EXPECT_TRUE(
        WaitFor([&] { return SubjectsOf(kToday + 1).isEmpty() && SubjectsOf(kToday - 1).isEmpty(); }));
}

TEST_F(MainFrame, ATaskIsCompletedAndTheNoticeBringsItBack)
{
    const auto task = m_app->CreateTask();
    task->put_Subject("rent");
    task->put_DueDate(kToday);
    ASSERT_TRUE(task->Save());
    CMainFrame& frame = Start();
    frame.StartNotices();
    const auto isComplete = [] {
        const auto& tasks = PimStore().FindDay(kToday)->Tasks;
        return tasks.size() == 1 && tasks[0]->Complete;
    };
    QStringList asked;
    int answer = 0;
    SetAnswerer([&](const QString& text, const QString& caption) {
        asked << caption + ": " + text;
        return answer;
    });
    for (const int key : {Qt::Key_9, Qt::Key_C}) { // to and fro
        const bool before = isComplete();
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&frame, &press);
        EXPECT_TRUE(WaitFor([&] { return isComplete() != before; })) << key;
    }
    EXPECT_EQ(asked, QStringList());
    g_Settings.Tasks.ConfirmCompletion = 1;
    frame.SendCommand(CmdToggleTask);
    // A key that is held completes once: no question follows.
    for (QWidget* to : std::initializer_list<QWidget*>{&frame, frame.CurrentView()}) {
        for (const int key : {Qt::Key_9, Qt::Key_C, Qt::Key_Return}) {
            QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(to, &repeat);
        }
    }
    answer = 1;
    frame.SendCommand(CmdToggleTask);
    EXPECT_TRUE(WaitFor(isComplete));
    frame.SendCommand(CmdToggleTask);
    EXPECT_TRUE(WaitFor([&] { return !isComplete(); }));
    const QString complete = "Complete Task?: Are you sure you would like to complete the task rent ?";
    EXPECT_EQ(asked,
              (QStringList{complete, complete,
                           "Activate Task?: Are you sure you would like to activate the task rent ?"}));
}

TEST_F(MainFrame, OfARecurringTaskThePresentDateOrAllGoes)
{
    const auto task = m_app->CreateTask();
    task->put_Subject("rent");
    task->put_DueDate(kToday);
    task->GetRecurrencePattern()->put_RecurrenceType(OlRecurs::Daily);
    ASSERT_TRUE(task->Save());
    CMainFrame& frame = Start();
    frame.StartNotices();
    const auto countOn = [](int day) { return PimStore().FindDay(day)->Tasks.size(); };
    QStringList asked;
    int answer = 0;
    SetAnswerer([&](const QString& text, const QString& caption) {
        asked << text;
        return caption == "Delete?" ? 1 : answer;
    });
    frame.SendCommand(CmdDelete);
    EXPECT_EQ(asked.value(0), "Are you sure you would like to delete the task rent ?");
    EXPECT_EQ(countOn(kToday), 1u);
    answer = 1;
    frame.SendCommand(CmdDelete);
    EXPECT_TRUE(WaitFor([&] { return countOn(kToday) == 0 && countOn(kToday + 1) == 1; }));
    frame.SendCommand(CmdDateForward);
    answer = 2;
    frame.SendCommand(CmdDelete);
    EXPECT_TRUE(WaitFor([&] { return countOn(kToday + 1) == 0 && countOn(kToday + 2) == 0; }));
    EXPECT_EQ(m_volume->RecordCount(kTasksDatabase), 0);
}
