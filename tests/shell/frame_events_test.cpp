#include "platform/registry.h"
#include "shell_fixture.h"
#include "touch/timer_ids.h"
#include "views/daily_view.h"

#include <QTest>

// What happens to a frame by itself: the clock, the window, menus under which things change, notices.

namespace
{
using FrameEvents = ShellFixture;
}

// ---- clock, resizing, keys

TEST_F(FrameEvents, ANewDayGoesToToday)
{
    CMainFrame& frame = Start();
    frame.show();
    EXPECT_TRUE(frame.TimeWatcher().IsRunning());
    frame.SendCommand(CmdDateBack);
    SetTime(2026, 3, 11, 0);
    frame.TimeWatcher().Timers().Fire(CTimeWatcher::kTimer);
    EXPECT_EQ(PimStore().CursorDate(), kToday + 1);
    frame.hide();
    EXPECT_FALSE(frame.TimeWatcher().IsRunning());
}

TEST_F(FrameEvents, TheEndOfAnAppointmentRepaintsTheDay)
{
    g_Settings.DailyView.PastAppointments = 2;
    Add("ends at eleven", kToday, 10);
    CMainFrame& frame = Start();
    auto* view = static_cast<CDailyView*>(frame.CurrentView());
    ASSERT_EQ(view->Rows().GetCount(), 1);
    EXPECT_EQ(frame.Timers().PeriodOf(kTimerNextEvent), 2 * 3600000);
    SetTime(2026, 3, 10, 12);
    frame.Timers().Fire(kTimerNextEvent);
    EXPECT_EQ(view->Rows().GetCount(), 0);
    EXPECT_FALSE(frame.Timers().IsRunning(kTimerNextEvent));
}

TEST_F(FrameEvents, ResizingMovesEveryViewAndKeepsTheDay)
{
    CMainFrame& frame = Start();
    frame.SendCommand(CmdDateForward);
    frame.show();
    for (const QSize size : {QSize(320, 240), QSize(900, 500), QSize(60, 41), QSize(3, 3)}) {
        frame.resize(size);
        QCoreApplication::processEvents();
        const CFrameLayout layout = frame.Layout();
        EXPECT_EQ(frame.CurrentView()->geometry(), layout.View) << size.width();
        EXPECT_EQ(frame.Snapshot().size(), size);
        EXPECT_EQ(g_ScreenMetrics.m_landscape, size.width() > size.height());
    }
    EXPECT_EQ(PimStore().CursorDate(), kToday + 1);
}

TEST_F(FrameEvents, RowsAreLaidOutOnceForASize)
{
    Add("selected", kToday, 8);
    Add("other", kToday);
    CMainFrame& frame = Start();
    auto* view = static_cast<CDailyView*>(frame.CurrentView());
    const auto picture = [view] {
        const QImage* row = view->RowCache().Find(view->Rows().GetAt(1));
        return row ? row->cacheKey() : 0;
    };
    const qint64 first = picture();
    ASSERT_NE(first, 0);
    const struct {
        const char* What;
        std::function<void()> Do;
        bool Anew;
    } steps[] = {{"shown", [&] { frame.show(); }, false},
                 {"resized", [&] { frame.resize(300, 200); }, true},
                 {"hidden", [&] { frame.hide(); }, false},
                 {"resized while hidden", [&] { frame.resize(260, 200); }, false},
                 {"shown again", [&] { frame.show(); }, true}};
    for (const auto& step : steps) {
        const qint64 before = picture();
        step.Do();
        QCoreApplication::processEvents();
        EXPECT_EQ(picture() != before, step.Anew) << step.What;
        EXPECT_EQ(view->Scroller().Area(), view->ListArea()) << step.What;
    }
}

TEST_F(FrameEvents, ASnapshotIsWhatTheWindowShows)
{
    Add("here", kToday);
    for (const int density : {96, 192}) {
        ForceDensity(density);
        for (int location = 0; location <= 4; ++location) {
            g_Settings.General.CustomTitlebarLocation = location;
            CMainFrame& frame = Start();
            frame.resize(kSize * (density / 96));
            frame.show();
            QCoreApplication::processEvents();
            EXPECT_EQ(frame.grab().toImage().convertToFormat(QImage::Format_RGB32), frame.Snapshot())
                << density << ' ' << location;
            m_frame.reset();
            QFile::remove(SettingsFile());
        }
    }
}

TEST_F(FrameEvents, TheBackKeyActsOnceItWasPressedHere)
{
    CMainFrame& frame = Start();
    frame.show();
    frame.ShowView(kViewDaily, -1);
    EXPECT_EQ(frame.PreviousView(), kViewDaily);
    QTest::keyRelease(frame.CurrentView(), Qt::Key_Escape);
    EXPECT_EQ(frame.PreviousView(), kViewDaily) << "its press went to a menu";
    QTest::keyClick(frame.CurrentView(), Qt::Key_Escape);
    EXPECT_EQ(frame.PreviousView(), -1);
    EXPECT_FALSE(frame.isMinimized());
}

TEST_F(FrameEvents, TheMenuOffersWhatWorks)
{
    Add("here", kToday);
    CMainFrame& frame = Start();
    frame.show();
    QStringList rows;
    QTimer::singleShot(0, [&] {
        CTouchMenu* menu = CTouchMenu::Current();
        ASSERT_TRUE(menu);
        for (int i = 0; i < menu->GetRowCount(); ++i) {
            rows << menu->GetRow(i).Text;
            EXPECT_TRUE(CMainFrame::OffersCommand(menu->GetRow(i).Command))
                << menu->GetRow(i).Text.toStdString();
        }
        frame.SendCommand(CmdMenu); // not a second one over the first
        menu->Choose(CmdExit);
    });
    frame.SendCommand(CmdMenu);
    for (const char* row : {"Delete", "Duplicate", "Beam"})
        EXPECT_TRUE(rows.contains(row)) << row;
    EXPECT_EQ(rows.value(rows.size() - 1), "Exit Calendar");
    EXPECT_TRUE(frame.Timers().IsRunning(kTimerExit));
}

TEST_F(FrameEvents, ClosingUnderAMenuOrQuestionUnwindsFirst)
{
    for (const int command : {CmdMenu, CmdDelete}) {
        Add("here", kToday);
        CMainFrame& frame = Start();
        frame.show();
        bool upInside = false;
        QTimer::singleShot(0, [&] {
            frame.close();
            upInside = frame.IsUp() && frame.CurrentView();
        });
        frame.SendCommand(command); // returns, because the menu or dialog was left
        EXPECT_TRUE(upInside) << "the view whose menu runs still lives";
        EXPECT_TRUE(WaitFor([&] { return !frame.IsUp(); }));
        m_frame.reset();
    }
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 2) << "nobody said yes";
}

TEST_F(FrameEvents, AMenusCommandIsNotMeantForAnotherItem)
{
    const quint32 first = Add("first", kToday, 9);
    Add("second", kToday, 11);
    CMainFrame& frame = Start();
    frame.show();
    frame.StartNotices();
    QTimer::singleShot(0, [&] {
        std::unique_ptr<IAppointment> item;
        ASSERT_TRUE(m_app->GetAppointmentFromOid(first, item));
        ASSERT_TRUE(item->Delete());
        ASSERT_TRUE(WaitFor([&] { return SubjectsOf(kToday) == QStringList{"second"}; }));
        CTouchMenu::Current()->Choose(CmdDuplicate);
    });
    frame.SendCommand(CmdMenu);
    EXPECT_EQ(m_volume->RecordCount(kAppointmentsDatabase), 1);
}

TEST_F(FrameEvents, ARequestUnderAMenuLeavesTheMenu)
{
    CMainFrame& frame = Start();
    frame.show();
    CRegistry::WriteString(kRegistryKey, "CallCmdLine", "OPEN|DAILY|" + QString::number((kToday + 2) * 1440));
    QTimer::singleShot(0, [&] { frame.OnInstanceMessage({kMessageRequest, 0, 0, {}}); });
    frame.SendCommand(CmdMenu);
    EXPECT_EQ(CTouchMenu::Current(), nullptr);
    EXPECT_TRUE(WaitFor([&] { return PimStore().CursorDate() == kToday + 2; }));
}

// ---- notices

TEST_F(FrameEvents, ItemsOfAnotherProgramAppearByThemselves)
{
    CMainFrame& frame = Start();
    frame.show();
    frame.StartNotices();
    std::shared_ptr<CPropertyVolume> other;
    ASSERT_TRUE(CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                      CPropertyVolume::Mode::MustExist, other));
    m_app = MakePOutlookApp(other);
    ASSERT_TRUE(m_app->Logon());
    Add("from outside", kToday);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday) == QStringList{"from outside"}; }));
    EXPECT_EQ(static_cast<CDailyView*>(frame.CurrentView())->Rows().GetCount(), 1);
}

TEST_F(FrameEvents, WhatWasWrittenBeforeTheWatchIsNotLost)
{
    CMainFrame& frame = Start();
    Add("in between", kToday);
    EXPECT_TRUE(SubjectsOf(kToday).isEmpty());
    frame.StartNotices();
    EXPECT_TRUE(WaitFor([&] { return !SubjectsOf(kToday).isEmpty(); }));
}

TEST(NoticePump, LongDrainsRestLonger)
{
    EXPECT_EQ(CNoticePump::RestAfter(0), 0);
    EXPECT_EQ(CNoticePump::RestAfter(9), 0);
    EXPECT_EQ(CNoticePump::RestAfter(100), 300);
    EXPECT_EQ(CNoticePump::RestAfter(100000), 1500);
}
