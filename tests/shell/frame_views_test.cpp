// The way between the views, the filters, the sorts, and the file that goes away under the window.
#include "settings/settings_file.h"
#include "shell_fixture.h"
#include "util/string_ids.h"
#include "util/string_store.h"
#include "views/daily_view.h"

#include <QMenu>
#include <QTest>
#include <filesystem>

namespace
{
using FrameViews = ShellFixture;

int Kind(const CMainFrame& frame)
{
    return frame.CurrentView()->GetViewKind();
}

QStringList TextsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts << (action->isSeparator() ? "-" : action->text());
    return texts;
}

// With what stands in the menus below it; what is greyed has a mark before it.
QString AllTextsOf(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions()) {
        const QString text = action->isSeparator() ? "-" : (action->isEnabled() ? "" : "!") + action->text();
        texts << (action->menu() ? text + " (" + AllTextsOf(*action->menu()) + ")" : text);
    }
    return texts.join(", ");
}
} // namespace

TEST_F(FrameViews, TheTabKeyLeadsToNoViewBelow)
{
    Start().show();
    for (const int command :
         {CmdShowSearch, CmdShowList, CmdShowTasks, CmdShowWeekly, CmdShowMonthly, CmdShowDaily}) {
        m_frame->SendCommand(command);
        if (command == CmdShowSearch)
            continue; // between its text and its results
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            QTest::keyClick(m_frame->focusWidget(), key);
            EXPECT_EQ(m_frame->focusWidget(), m_frame->CurrentView()) << command;
        }
    }
}

TEST_F(FrameViews, CommandsShowThoseViewsThatThereAre)
{
    CMainFrame& frame = Start();
    const struct {
        int Command, View;
    } cases[] = {{CmdShowMonthly, kViewMonthly}, {CmdShowList, kViewList},     {CmdShowWeekly, kViewWeekly},
                 {CmdShowTasks, kViewTasks},     {CmdShowSearch, kViewSearch}, {CmdShowDaily, kViewDaily}};
    for (const auto& c : cases) {
        EXPECT_EQ(CMainFrame::OffersCommand(c.Command), CMainFrame::HasView(c.View)) << c.Command;
        const int before = Kind(frame);
        frame.SendCommand(c.Command);
        EXPECT_EQ(Kind(frame), CMainFrame::HasView(c.View) ? c.View : before) << c.Command;
    }
}

TEST_F(FrameViews, TheViewButtonRunsThroughTheActiveViewsAndReturns)
{
    g_Settings.General.ViewSelectorMode = 0;
    CMainFrame& frame = Start();
    const struct {
        int Active, From, Next;
    } cases[] = {{1, kViewDaily, kViewDaily},
                 {9, kViewDaily, kViewMonthly},
                 {9, kViewMonthly, kViewDaily},
                 {8, kViewMonthly, kViewDaily}};
    for (const auto& c : cases) {
        g_Settings.General.RotationActiveViews = c.Active;
        frame.ShowView(c.From, -1);
        EXPECT_EQ(frame.ViewButtonText(), c.Next == kViewDaily ? "Daily" : "Monthly");
        frame.SendCommand(CmdViewButton);
        EXPECT_EQ(Kind(frame), c.Next) << c.Active << " from " << c.From;
    }
    g_Settings.General.ViewSelectorMode = 1;
    frame.ShowView(kViewMonthly, -1);
    EXPECT_EQ(frame.ViewButtonText(), "View");
    frame.ShowDaily(kViewMonthly);
    EXPECT_EQ(frame.ViewButtonText(), "Monthly");
    frame.SendCommand(CmdViewButton);
    EXPECT_EQ(Kind(frame), kViewMonthly);
    EXPECT_EQ(frame.ViewButtonText(), "View") << "back, there is nothing to return to";
}

TEST_F(FrameViews, TheBackKeyGoesToTheViewBeforeOnce)
{
    CMainFrame& frame = Start();
    frame.SendCommand(CmdShowMonthly);
    frame.SendCommand(CmdDateForward);
    const DATE cursor = PimStore().CursorDate();
    QTest::keyClick(&frame, Qt::Key_Escape);
    EXPECT_EQ(Kind(frame), kViewDaily);
    EXPECT_EQ(PimStore().CursorDate(), cursor) << "the views share the date";
    EXPECT_EQ(frame.PreviousView(), -1);
    QTest::keyClick(&frame, Qt::Key_Escape);
    EXPECT_EQ(Kind(frame), kViewDaily);
}

TEST_F(FrameViews, ATurnedScreenMovesAllViews)
{
    g_Settings.General.CustomTitlebarLocation = kTitleTop;
    CMainFrame& frame = Start();
    frame.SendCommand(CmdShowMonthly);
    frame.show();
    frame.resize(kSize.transposed());
    EXPECT_TRUE(WaitFor([&] { return frame.FindView(kViewDaily)->width() == kSize.height(); }));
    EXPECT_EQ(frame.FindView(kViewMonthly)->geometry(), frame.FindView(kViewDaily)->geometry());
    EXPECT_EQ(frame.FindView(kViewDaily)->geometry(), QRect(0, 14, 320, 186));
}

TEST_F(FrameViews, TwentyFiltersOfTheFileActAtOnce)
{
    for (int i = 0; i < 20; ++i) {
        const auto item = m_app->CreateAppointment();
        item->put_Subject("item " + QString::number(i));
        item->put_Start(kToday + (8 + i % 10) / 24.0);
        item->put_End(kToday + (9 + i % 10) / 24.0);
        item->put_Categories("Cat" + QString::number(i));
        ASSERT_TRUE(item->Save());
    }
    {
        CSettingsFile file(SettingsFile());
        for (int i = 0; i < 20; ++i)
            file.SetString("Filters", "Filter" + QString::number(i),
                           QString("F & %1@@!@@0@@!@@Cat%1, Cat%2@@!@@0@@!@@").arg(i).arg((i + 1) % 20));
        file.SetInt("Filters", "CurrentIndex", 3);
        ASSERT_TRUE(file.Save(SettingsFile()));
    }
    CMainFrame& frame = Start();
    auto* view = static_cast<CDailyView*>(frame.CurrentView());
    EXPECT_EQ(view->Rows().GetCount(), 2) << "the stored filter is in force from the start";
    EXPECT_TRUE(frame.TitleText().endsWith(" *"));
    for (int i = 0; i < 20; ++i) {
        frame.SendCommand(CmdFilterFirst + i);
        ASSERT_EQ(view->Rows().GetCount(), 2) << i;
        for (const auto& row : view->Rows())
            EXPECT_TRUE(row->m_item->Subject == "item " + QString::number(i) ||
                        row->m_item->Subject == "item " + QString::number((i + 1) % 20));
        EXPECT_TRUE(frame.TitleText().endsWith(" *"));
    }
    QMenu menu;
    frame.FillShellMenu(menu);
    const QMenu* filters = nullptr;
    for (const QAction* action : menu.actions())
        filters = action->menu() ? action->menu() : filters;
    ASSERT_TRUE(filters);
    EXPECT_EQ(TextsOf(*filters).last(), "F && 19");
    EXPECT_TRUE(filters->actions().last()->isChecked());
    EXPECT_EQ(TextsOf(*filters).contains(GetString(StrManageFilters)),
              CMainFrame::OffersCommand(CmdManageFilters));
    for (const int unfiltered : {int(CmdNoFilter), int(CmdFilterLast)}) { // the last is past the list
        frame.SendCommand(CmdFilterFirst);
        frame.SendCommand(unfiltered);
        EXPECT_EQ(view->Rows().GetCount(), 20);
        EXPECT_FALSE(frame.TitleText().endsWith(" *"));
    }
    frame.SendCommand(CmdFilterFirst + 7);
    m_frame.reset();
    Start();
    EXPECT_EQ(g_Settings.m_currentFilterIndex, 7) << "kept by the settings";
}

TEST_F(FrameViews, EachViewsShellMenuHasItsRowsBeforeTheCommonOnes)
{
    const auto item = m_app->CreateAppointment();
    item->put_Subject("Dentist");
    item->put_Start(kToday + 0.5);
    item->put_End(kToday + 0.6);
    ASSERT_TRUE(item->Save());
    const QString folds = "Expand All, Collapse All, -, ";
    const struct {
        int Command, Key;
        QString Own;
    } cases[] = {
        {CmdShowDaily, 0, "Delete, More (Duplicate, Beam), "},
        {CmdShowList, 0, "More (" + folds + "!Duplicate, !Beam), "}, // the day is selected
        {CmdShowList, Qt::Key_Down, "Delete, More (" + folds + "Duplicate, Beam), "},
        {CmdShowWeekly, 0, ""},
        {CmdShowMonthly, 0, ""},
    };
    CMainFrame& frame = Start();
    g_Settings.m_filters.resize(1);
    for (const auto& c : cases) {
        frame.SendCommand(c.Command);
        if (c.Key)
            QTest::keyClick(frame.CurrentView(), Qt::Key(c.Key));
        QMenu menu;
        frame.FillShellMenu(menu);
        const QString wanted = "New Appointment, New Task, " + c.Own +
                               "-, Go To, Filters (Unfiltered, Manage Filters, -, Filter Number: 1), -, "
                               "Search, Settings, Exit Calendar";
        EXPECT_EQ(AllTextsOf(menu).toStdString(), wanted.toStdString());
    }
}

TEST_F(FrameViews, SortCommandsStoreTheirChoice)
{
    CMainFrame& frame = Start();
    if (!CMainFrame::HasView(kViewTasks))
        EXPECT_FALSE(CMainFrame::OffersCommand(CmdSort1First)) << "nothing to sort";
    else
        frame.SendCommand(CmdShowTasks);
    const auto& stored = g_Settings.TasksView;
    const struct {
        int Command;
        const qint32& Field;
        int Value;
    } cases[] = {{40377, stored.Sort1, 100}, {40384, stored.Sort1, 107},
                 {40386, stored.Sort1Direction, 1}, {40385, stored.Sort1Direction, 0},
                 {40391, stored.Sort2, 104}, {40393, stored.Sort2Direction, 1},
                 {40396, stored.Sort3, 102}, {40400, stored.Sort3Direction, 1}};
    for (const auto& c : cases) {
        const int before = c.Field;
        frame.SendCommand(c.Command);
        EXPECT_EQ(c.Field, CMainFrame::HasView(kViewTasks) ? c.Value : before) << c.Command;
    }
}

TEST_F(FrameViews, AFileThatGoesAwayIsToldOnceAndItsSuccessorShown)
{
    Add("old", kToday);
    const QString path = m_volume->Path(), aside = path + ".aside", other = m_folder.filePath("other.vol");
    {
        std::shared_ptr<CPropertyVolume> second;
        ASSERT_TRUE(CPropertyVolume::Open(other, PimSchema(), CPropertyVolume::Mode::Create, second));
        const auto app = MakePOutlookApp(second);
        ASSERT_TRUE(app->Logon());
        const auto item = app->CreateAppointment();
        item->put_Subject("new");
        item->put_Start(kToday + 0.5);
        item->put_End(kToday + 0.6);
        ASSERT_TRUE(item->Save());
    }
    CMainFrame& frame = Start();
    QStringList told;
    SetAnswerer([&](const QString& text, const QString&) {
        told << text;
        return 1;
    });
    frame.StartNotices();
    frame.OnVolumeDisplaced();
    EXPECT_EQ(told, QStringList()) << "it is where it was";

    ASSERT_TRUE(QFile::rename(path, aside));
    for (int i = 0; i < 3; ++i)
        frame.OnVolumeDisplaced();
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told[0].contains(path));
    EXPECT_EQ(SubjectsOf(kToday), QStringList{"old"}) << "what it held stays in sight";
    frame.SendCommand(CmdDuplicate);
    EXPECT_EQ(told.size(), 2) << "a change is refused";

    QFile junk(path);
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(5000, 'x'));
    junk.close();
    for (int i = 0; i < 4; ++i)
        frame.OnVolumeDisplaced();
    EXPECT_EQ(told.size(), 3) << "no calendar, told once";
    std::filesystem::rename(other.toStdString(), path.toStdString());
    for (int i = 0; i < 4; ++i)
        frame.OnVolumeDisplaced();
    EXPECT_EQ(SubjectsOf(kToday), QStringList{"new"});
    EXPECT_EQ(told.size(), 4);
    frame.SendCommand(CmdDuplicate);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday).size() == 2; })) << "it is followed and written";
    EXPECT_EQ(told.size(), 4);
    std::shared_ptr<CPropertyVolume> kept;
    ASSERT_TRUE(CPropertyVolume::Open(aside, PimSchema(), CPropertyVolume::Mode::MustExist, kept));
    EXPECT_EQ(kept->RecordCount(kAppointmentsDatabase), 1) << "what was moved away is whole";
}

TEST_F(FrameViews, AFileThatComesBackIsOpenedAnew)
{
    Add("here", kToday);
    const QString path = m_volume->Path();
    CMainFrame& frame = Start();
    int told = 0;
    SetAnswerer([&](const QString&, const QString&) { return ++told; });
    frame.StartNotices();
    ASSERT_TRUE(QFile::rename(path, path + ".aside"));
    frame.OnVolumeDisplaced();
    ASSERT_TRUE(QFile::rename(path + ".aside", path));
    for (int i = 0; i < 3; ++i)
        frame.OnVolumeDisplaced();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(SubjectsOf(kToday), QStringList{"here"});
    frame.SendCommand(CmdDuplicate);
    EXPECT_TRUE(WaitFor([&] { return SubjectsOf(kToday).size() == 2; }));
    std::shared_ptr<CPropertyVolume> other;
    ASSERT_TRUE(CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::MustExist, other));
    EXPECT_EQ(other->RecordCount(kAppointmentsDatabase), 2) << "others see it";
}
