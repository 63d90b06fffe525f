#include "forms/form_dialog.h"
#include "forms/message_dialog.h"
#include "object_model/object_model.h"
#include "pim/view_mask.h"
#include "records/property_numbers.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "views/item_row_list.h"
#include "views/search_options_form.h"
#include "views/search_view.h"
#include "views_fixture.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace
{
class Search : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        PimStore().Shutdown();
        ASSERT_TRUE(CPropertyVolume::Open(m_folder.filePath("pim.vol"), PimSchema(),
                                          CPropertyVolume::Mode::Create, m_volume));
        m_app = MakePOutlookApp(m_volume);
        ASSERT_TRUE(m_app->Logon());
        PimStore().Initialize(m_volume);
        PimStore().LoadRange(kToday, kToday, kToday);
        g_Settings.General.SlidingScreens = 0;
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    quint32 AddAppointment(const QString& subject, DATE start, double hours = 1)
    {
        const auto item = m_app->CreateAppointment();
        item->put_Subject(subject);
        item->put_Start(start);
        item->put_End(start + hours / 24);
        EXPECT_TRUE(item->Save());
        return item->get_Oid();
    }
    quint32 AddTask(const QString& subject, DATE due = NO_DATE)
    {
        const auto item = m_app->CreateTask();
        item->put_Subject(subject);
        if (due != NO_DATE)
            item->put_DueDate(due);
        EXPECT_TRUE(item->Save());
        return item->get_Oid();
    }
    CSearchView& Open(QSize size = {240, 280})
    {
        View = std::make_unique<CSearchView>(Host, nullptr);
        View->resize(size);
        View->Create();
        View->show();
        View->Refresh();
        return *View;
    }
    // One slice of the search, as its timer would run it.
    void Step() { View->Timers().Fire(CSearchView::kTimerSearch); }
    void Begin(const QString& text)
    {
        View->TextBox().setText(text);
        View->OnCommand(CmdSearchStart);
    }
    void Find(const QString& text)
    {
        Begin(text);
        while (View->IsSearching())
            Step();
    }
    QStringList Subjects() const
    {
        QStringList subjects;
        for (const auto& row : View->Rows())
            subjects << row->m_item->Subject;
        return subjects;
    }
    // What the volume's changes come to.
    void Tell()
    {
        if (PimStore().DrainNotices().Mask & kMaskSearch)
            View->OnDataChanged(0, 0, 0);
        while (View->Timers().IsRunning(CSearchView::kTimerFollow))
            View->Timers().Fire(CSearchView::kTimerFollow);
    }
    void Press(int key) { QTest::keyClick(View->window()->focusWidget(), Qt::Key(key)); }
    bool Edits() const { return View->window()->focusWidget() == &View->TextBox(); }
    bool Lists() const { return View->window()->focusWidget() == View.get(); }
    QPoint PlaceOf(int index, int x = 120) const
    {
        const CPaintingOrderItem& row = *View->Rows().GetAt(index);
        return {x, (row.m_top + row.m_bottom) / 2 + View->ListArea().y() + View->Scroller().Scroll()};
    }
    void Tap(QPoint at) { QTest::mouseClick(View.get(), Qt::LeftButton, {}, at); }
    // Runs what opens a page, and answers it: the texts of the messages that came.
    QStringList Messages(const std::function<void()>& act)
    {
        QStringList texts;
        QTimer::singleShot(0, View.get(), [&texts] {
            if (auto* message = dynamic_cast<CMessageDialog*>(CFormDialog::Current())) {
                texts << message->GetText();
                message->End(CFormDialog::kDone);
            }
        });
        act();
        return texts;
    }

    QTemporaryDir m_folder;
    std::shared_ptr<CPropertyVolume> m_volume;
    std::unique_ptr<IPOutlookApp> m_app;
    CRecordingHost Host;
    std::unique_ptr<CSearchView> View;
};
} // namespace

// ---- searching

TEST_F(Search, ResultsStandInTheOrderOfDaysAndTimes)
{
    AddAppointment("late x-ray", kToday + 20.0 / 24);
    AddAppointment("early x-ray", kToday + 8.0 / 24);
    AddTask("some time x-ray");
    AddTask("x-ray due today", kToday);
    AddAppointment("old x-ray", kToday - 400 + 0.5);
    AddTask("x-ray due tomorrow", kToday + 1);
    AddAppointment("something else", kToday + 0.5);
    Open();
    Find("X-RAY");
    EXPECT_EQ(Subjects(), QStringList({"old x-ray", "x-ray due today", "early x-ray", "late x-ray",
                                       "x-ray due tomorrow", "some time x-ray"}));
    EXPECT_EQ(View->Rows().GetAt(0)->m_date, kToday - 400);
    EXPECT_EQ(View->GetTitleText(), "Calendar Search");
}

TEST_F(Search, TheFirstMatchShowsBeforeTheRestIsSearched)
{
    for (int n = 0; n < 30; ++n)
        AddAppointment(QStringLiteral("match %1").arg(n), kToday + n);
    Open();
    Begin("match");
    EXPECT_EQ(View->StatusText(), "Searching...");
    Step();
    EXPECT_EQ(View->Rows().GetCount(), 1);
    EXPECT_TRUE(View->IsSearching());
    QString text, second;
    View->GetViewButtonText(text, second);
    EXPECT_EQ(text, "Stop");
    // Nothing but the window's own events is needed to go on.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !View->IsSearching(); }, 20000));
    EXPECT_EQ(View->Rows().GetCount(), 30);
    View->GetViewButtonText(text, second);
    EXPECT_EQ(text, "Search");
}

TEST_F(Search, AStopKeepsWhatWasFound)
{
    for (int n = 0; n < 30; ++n)
        AddAppointment(QStringLiteral("match %1").arg(n), kToday + n);
    Open();
    View->TextBox().setText("match");
    EXPECT_TRUE(View->OnViewButton());
    ASSERT_TRUE(View->IsSearching());
    Step();
    EXPECT_TRUE(View->OnViewButton());
    Step();
    EXPECT_FALSE(View->IsSearching());
    EXPECT_EQ(View->Rows().GetCount(), 1);
    EXPECT_FALSE(View->Timers().IsRunning(CSearchView::kTimerSearch));
}

TEST_F(Search, TheLimitEndsIt)
{
    g_Settings.SearchView.SearchLimit = 7;
    for (int n = 0; n < 20; ++n)
        AddAppointment("match", kToday + n);
    Open();
    Find("match");
    EXPECT_EQ(View->Rows().GetCount(), 7);
}

TEST_F(Search, AnotherSearchBeginsAnew)
{
    AddAppointment("red", kToday);
    AddAppointment("blue", kToday);
    Open();
    Find("red");
    EXPECT_EQ(Subjects(), QStringList({"red"}));
    Find("nowhere");
    EXPECT_EQ(View->Rows().GetCount(), 0);
    EXPECT_TRUE(View->StatusText().startsWith("No items matched your search criteria.  Change"));
    Begin("red"); // started again while it runs
    Begin("blue");
    while (View->IsSearching())
        Step();
    EXPECT_EQ(Subjects(), QStringList({"blue"}));
    View->OnCommand(CmdSearchClear);
    EXPECT_EQ(View->Rows().GetCount(), 0);
    EXPECT_TRUE(View->StatusText().startsWith("Enter a search phrase and tap on 'Search'."));
    EXPECT_TRUE(Edits());
    EXPECT_EQ(View->TextBox().text(), "blue");
}

TEST_F(Search, ATextOfOneCharacterIsTooShort)
{
    AddAppointment("x", kToday);
    Open();
    for (const char* text : {"", "x"}) {
        const QStringList told = Messages([&] { Begin(text); });
        EXPECT_EQ(told, QStringList({"Search text must be 2 characters or more"})) << text;
        EXPECT_FALSE(View->IsSearching());
        EXPECT_TRUE(Edits());
    }
    EXPECT_EQ(View->Rows().GetCount(), 0);
}

TEST_F(Search, WhoComesBackFindsItAsAtFirst)
{
    AddAppointment("red", kToday);
    Open();
    Find("red");
    Begin("re");
    View->OnDeactivate();
    EXPECT_FALSE(View->IsSearching());
    EXPECT_FALSE(QGuiApplication::overrideCursor());
    View->OnDataChanged(0, 0, 0); // out of sight
    View->Refresh();
    EXPECT_EQ(View->Rows().GetCount(), 0);
    EXPECT_EQ(View->TextBox().text(), "");
    EXPECT_TRUE(View->StatusText().startsWith("Enter a search phrase"));
    EXPECT_TRUE(Edits());
    EXPECT_TRUE(View->TextBox().isVisible());
}

// ---- following changes

TEST_F(Search, WhatIsDeletedLeavesTheList)
{
    const quint32 middle = AddAppointment("match 2", kToday + 2);
    AddAppointment("match 1", kToday + 1);
    AddTask("match 3", kToday + 3);
    Open();
    Find("match");
    PimStore().DrainNotices();
    Press(Qt::Key_Down);
    Press(Qt::Key_Down);
    ASSERT_EQ(View->SelectedIdentity().ItemId, middle);
    std::unique_ptr<IAppointment> item;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(middle, item));
    ASSERT_TRUE(item->Delete());
    Tell();
    EXPECT_EQ(Subjects(), QStringList({"match 1", "match 3"}));
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    AddAppointment("match 4", kToday);
    Tell();
    EXPECT_EQ(View->Rows().GetCount(), 2) << "what is new was not searched";
}

TEST_F(Search, ChangesAreReadAnewAndKeepTheSelection)
{
    const quint32 first = AddAppointment("match 1", kToday + 1);
    AddAppointment("match 2", kToday + 2);
    const quint32 task = AddTask("match 3", kToday + 3);
    Open();
    Find("match");
    PimStore().DrainNotices();
    Press(Qt::Key_Down);
    std::unique_ptr<IAppointment> appointment;
    ASSERT_TRUE(m_app->GetAppointmentFromOid(first, appointment));
    appointment->put_Start(kToday + 9.5);
    appointment->put_Subject("renamed");
    ASSERT_TRUE(appointment->Save());
    ASSERT_TRUE(PimStore().ToggleTaskComplete(*m_app, task));
    Tell();
    EXPECT_EQ(Subjects(), QStringList({"match 2", "match 3", "renamed"}));
    EXPECT_EQ(View->SelectedIdentity().ItemId, first);
    EXPECT_EQ(View->SelectedDay(), kToday + 9);
    EXPECT_TRUE(static_cast<const CTask&>(*View->Rows().GetAt(1)->m_item).Complete);
}

TEST_F(Search, ATaskThatIsDoneStaysUnderTheFinger)
{
    std::vector<quint32> tasks;
    for (int n = 0; n < 5; ++n)
        tasks.push_back(AddTask(QStringLiteral("match %1").arg(n), kToday + 3));
    Open();
    Find("match");
    const QStringList before = Subjects();
    const QImage picture = View->Snapshot();
    for (const quint32 task : tasks) {
        ASSERT_TRUE(PimStore().ToggleTaskComplete(*m_app, task));
        Tell();
        EXPECT_EQ(Subjects(), before);
    }
    EXPECT_NE(View->Snapshot(), picture);
}

TEST_F(Search, RowsThatComeAboveDoNotMoveWhatIsRead)
{
    for (int n = 0; n < 40; ++n)
        AddTask(QStringLiteral("match task %1").arg(n), kToday + 100 + n);
    AddAppointment("match long ago", kToday - 100);
    g_Settings.SearchView.SearchType = 2;
    Open();
    Find("match");
    g_Settings.SearchView.SearchType = 0;
    Begin("match");
    while (View->Rows().GetCount() < 40)
        Step();
    View->Scroller().SetScroll(0, -200);
    const CPaintingOrderItem* const shown = View->Rows().GetAt(View->Rows().FirstReaching(200));
    const int before = shown->m_top + View->Scroller().Scroll();
    while (View->IsSearching())
        Step();
    ASSERT_EQ(View->Rows().GetCount(), 41);
    EXPECT_EQ(Subjects().front(), "match long ago");
    EXPECT_EQ(shown->m_top + View->Scroller().Scroll(), before);
}

// The list grows row by row; it must come to the same as one that is laid out at once.
TEST_F(Search, RowsThatComeOneByOneStandAsIfLaidOutAtOnce)
{
    for (int n = 0; n < 12; ++n) {
        AddTask(QString("match with words ").repeated(n % 4 + 1), kToday + n * 5 % 12);
        AddAppointment(QString("match of days ").repeated(n % 3 + 1), kToday + n * 7 % 12);
    }
    Open();
    Find("match");
    ASSERT_EQ(View->Rows().GetCount(), 24);
    std::vector<int> tops;
    for (const auto& row : View->Rows())
        tops.push_back(row->m_top);
    const int height = View->Scroller().ContentHeight();
    View->resize(300, 280);
    View->OnResize();
    View->resize(240, 280);
    View->OnResize();
    std::vector<int> again;
    for (const auto& row : View->Rows())
        again.push_back(row->m_top);
    EXPECT_EQ(again, tops);
    EXPECT_EQ(View->Scroller().ContentHeight(), height);
}

// ---- focus, keys, finger

TEST_F(Search, KeysGoBetweenTextAndList)
{
    for (int n = 1; n <= 3; ++n)
        AddAppointment(QStringLiteral("match %1").arg(n), kToday + n);
    Open();
    EXPECT_TRUE(Edits());
    EXPECT_TRUE(View->WantsBackKey());
    Press(Qt::Key_Down);
    EXPECT_TRUE(Edits()) << "without rows";
    QTest::keyClicks(&View->TextBox(), "match");
    Press(Qt::Key_Return);
    while (View->IsSearching())
        Step();
    const auto selected = [this] { return View->SelectedRow() ? View->SelectedRow()->m_date - kToday : 0; };
    const struct {
        Qt::Key Key;
        bool Edit;
        int Selected;
    } steps[] = {{Qt::Key_Down, false, 1}, {Qt::Key_Down, false, 2}, {Qt::Key_Up, false, 1},
                 {Qt::Key_Up, true, 1},    {Qt::Key_Up, false, 3},   {Qt::Key_Down, true, 3},
                 {Qt::Key_Tab, false, 3},  {Qt::Key_Tab, true, 3},   {Qt::Key_Backtab, false, 3}};
    int n = 0;
    for (const auto& step : steps) {
        Press(step.Key);
        EXPECT_EQ(Edits(), step.Edit) << n;
        EXPECT_EQ(Lists(), !step.Edit) << n;
        EXPECT_EQ(selected(), step.Selected) << n++;
        EXPECT_EQ(View->WantsBackKey(), step.Edit);
    }
    Press(Qt::Key_Return);
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdOpenItem});
}

TEST_F(Search, TheBackKeyLeavesTheTextThenTheView)
{
    Open();
    View->TextBox().setText("ab");
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Lists());
    EXPECT_TRUE(Host.Commands.empty());
    EXPECT_FALSE(View->WantsBackKey()) << "now it is the frame's";
    QTest::keyClick(View.get(), Qt::Key_C, Qt::NoModifier);
    EXPECT_TRUE(Edits()) << "with an empty list whatever is typed is text";
    EXPECT_TRUE(View->TextBox().text().contains('c'));
    View->TextBox().clear();
    QTest::keyRelease(&View->TextBox(), Qt::Key_Escape);
    EXPECT_TRUE(Host.Commands.empty()) << "it went down elsewhere";
    Press(Qt::Key_Escape);
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdPreviousView});
}

TEST_F(Search, SoftKeysArePressedFromTheTextToo)
{
    Open();
    Press(Qt::Key_F1);
    Press(Qt::Key_F2);
    EXPECT_EQ(Host.Keys, (std::vector<int>{kKeyF1, kKeyF2}));
    CSoftKeyBar keys;
    View->FillSoftKeys(keys);
    ASSERT_EQ(keys.GetCount(), 3);
    EXPECT_EQ(keys.CommandAt(0), CmdSearchStart);
    EXPECT_EQ(keys.CommandAt(1), CmdToggleKeyboard);
    EXPECT_EQ(keys.CommandAt(2), CmdSearchOptions);
}

TEST_F(Search, ATapSelectsAndOpens)
{
    AddAppointment("match 1", kToday + 1);
    AddTask("match 2", kToday + 2);
    Open();
    Find("match");
    Tap({120, 270}); // below the rows
    EXPECT_TRUE(Host.Commands.empty()) << "nothing is selected";
    Tap(PlaceOf(0));
    EXPECT_EQ(View->SelectedRow(), View->Rows().GetAt(0));
    EXPECT_TRUE(Lists());
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdOpenItem});
    Host.Commands.clear();
    const CPaintingOrderItem& task = *View->Rows().GetAt(1);
    Tap(task.m_checkBox.center() + QPoint(0, task.m_top + View->ListArea().y()));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    Host.Commands.clear();
    Tap({120, 270});
    EXPECT_EQ(View->SelectedRow(), &task) << "it stays";
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdOpenItem});
    Tap({20, 4});
    EXPECT_TRUE(Edits()) << "the label is the text's";
}

TEST_F(Search, AfterTheDetailsTheListHasTheKeys)
{
    AddAppointment("match 1", kToday + 1);
    Open();
    Find("match");
    Press(Qt::Key_Down);
    View->TextBox().setFocus();
    bool opened = false;
    QTimer::singleShot(0, View.get(), [&] {
        opened = CFormDialog::Current();
        if (opened)
            CFormDialog::Current()->End(CFormDialog::kCancelled);
    });
    View->OnCommandOpenItem();
    EXPECT_TRUE(opened);
    EXPECT_TRUE(Lists());
}

// The live control lies exactly over the text that is painted beneath it.
TEST_F(Search, TheTextStandsWhereItIsPainted)
{
    const auto inkOf = [](const QImage& picture) {
        QRect ink;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qGray(picture.pixel(x, y)) < 128)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    };
    for (const int density : {96, 192}) {
        SetDensity(density);
        Open({density == 96 ? 240 : 480, 400});
        View->TextBox().setText("Illy gp");
        View->setFocus(); // no caret
        const QRect place = View->TextBox().geometry();
        const QRect painted = inkOf(View->Snapshot().copy(place)), live = inkOf(View->TextBox().grab().toImage());
        ASSERT_FALSE(painted.isEmpty());
        EXPECT_EQ(painted, live) << density;
        EXPECT_GE(place.y() + place.height() + 3, 38 * density / 96) << "room for a finger";
        EXPECT_LE(place.y() + place.height(), View->ListArea().y());
    }
}

// ---- menus

TEST_F(Search, MenusOfferWhatTheSelectionAllows)
{
    AddAppointment("match 1", kToday + 1);
    AddTask("match 2", kToday + 2);
    Host.OffersAll = true;
    Open();
    const auto touchMenu = [this] {
        CTouchMenu menu;
        EXPECT_FALSE(View->FillTouchMenu(menu));
        std::vector<int> commands;
        for (int n = 0; n < menu.GetRowCount(); ++n)
            commands.push_back(menu.GetRow(n).Command);
        return commands;
    };
    const auto shellMenu = [this](QMenu& menu) {
        EXPECT_FALSE(View->FillMenu(menu));
        const auto actions = menu.actions();
        QString text = actions[0]->text() + (actions[0]->isEnabled() ? "" : " (off)");
        for (const QAction* action : actions[0]->menu()->actions())
            text += ' ' + QString::number(action->data().toInt());
        return (text + (actions[2]->isEnabled() ? " | clear" : "")).toStdString();
    };
    QMenu none, appointment, task;
    EXPECT_EQ(touchMenu(), (std::vector<int>{CmdSearchOptions, CmdPreviousView}));
    EXPECT_EQ(shellMenu(none), "More (off)");
    Find("match");
    Press(Qt::Key_Down);
    EXPECT_EQ(touchMenu(), (std::vector<int>{CmdEdit, CmdOpenItem, CmdDelete, CmdDuplicate, CmdBeam, CmdSearchOptions,
                                             CmdSearchClear, CmdPreviousView}));
    EXPECT_EQ(shellMenu(appointment), "Appointment 40040 1255 40039 40403 40743 | clear");
    Press(Qt::Key_Down);
    EXPECT_EQ(shellMenu(task), "Task 40103 40040 1255 40039 40403 40743 | clear");
}

// ---- options

namespace
{
class Options : public Search
{
protected:
    // Chooses the index-th entry of a row, by its place among the rows that are none of headers.
    static void Choose(CSearchOptionsForm& form, int row, int index)
    {
        form.SelectRow(2 * row + 1);
        auto* list = form.findChild<QComboBox*>();
        list->setCurrentIndex(index);
        Q_EMIT list->activated(index);
    }
    int Run(CSearchOptionsForm& form, const std::function<void()>& act)
    {
        QTimer::singleShot(0, &form, act);
        return form.Run(View.get());
    }
};
} // namespace

TEST_F(Options, RowsShowAndTakeTheSettings)
{
    auto& values = g_Settings.SearchView;
    values = {1, 0, 3, 8, 75};
    Open();
    CSearchOptionsForm form;
    const int result = Run(form, [&] {
        QStringList shown;
        for (const CFieldRow& row : form.Rows())
            shown << row.Value;
        EXPECT_EQ(shown, QStringList({"Search For", "Appointments", "Search Mode", "Starts With", "Starting",
                                      "Two Months Ago", "Ending", "Six Months From Now", "Limit Result Count",
                                      "5 Items"}))
            << "of a count that is not offered, the first";
        EXPECT_EQ(form.Rows()[1].Choices.size(), 3);
        EXPECT_EQ(form.Rows()[5].Choices.size(), 10);
        EXPECT_EQ(form.Rows()[9].Choices, QStringList({"5 Items", "10 Items", "20 Items", "50 Items", "100 Items"}));
        Choose(form, 0, 2);
        Choose(form, 1, 1);
        Choose(form, 2, 5);
        Choose(form, 3, 0);
        Choose(form, 4, int(form.Rows()[9].Choices.indexOf("50 Items")));
        EXPECT_EQ(values.SearchType, 1) << "not before Done";
        QTest::keyClick(&form, Qt::Key_F1);
    });
    EXPECT_EQ(result, CFormDialog::kDone);
    EXPECT_EQ(values.SearchType, 2);
    EXPECT_EQ(values.SearchMode, 1);
    EXPECT_EQ(values.SearchStart, 5);
    EXPECT_EQ(values.SearchEnd, 0);
    EXPECT_EQ(values.SearchLimit, 50);
}

TEST_F(Options, ABeginAfterTheEndIsRefused)
{
    const struct {
        int Start, End;
        bool Allowed;
    } cases[] = {{0, 0, true}, {0, 1, true}, {9, 0, true}, {5, 5, false}, {5, 4, false}, {9, 1, false}, {4, 5, true}};
    Open();
    for (const auto& c : cases) {
        g_Settings.SearchView = {0, 1, 0, 0, 100};
        CSearchOptionsForm form;
        QStringList told;
        const int result = Run(form, [&] {
            Choose(form, 2, c.Start);
            Choose(form, 3, c.End);
            told = Messages([&] { QTest::keyClick(&form, Qt::Key_F1); });
            form.End(CFormDialog::kCancelled);
        });
        EXPECT_EQ(result == CFormDialog::kDone, c.Allowed) << c.Start << ' ' << c.End;
        EXPECT_EQ(told.join('|'), c.Allowed ? "" : "Search begin must be before search end");
        EXPECT_EQ(g_Settings.SearchView.SearchStart, c.Allowed ? c.Start : 0);
    }
}

TEST_F(Options, CancelLeavesTheSettings)
{
    Open();
    CSearchOptionsForm form;
    EXPECT_EQ(Run(form,
                  [&] {
                      Choose(form, 1, 0);
                      QTest::keyClick(&form, Qt::Key_F2);
                  }),
              CFormDialog::kCancelled);
    EXPECT_EQ(g_Settings.SearchView.SearchMode, 1);
}
