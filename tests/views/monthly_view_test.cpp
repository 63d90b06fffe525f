#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>

#include "touch/command_ids.h"
#include "touch/timer_ids.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "views/daily_view.h"
#include "views/monthly_view.h"
#include "views_fixture.h"

namespace
{
class Monthly : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        g_Settings.MonthView.StartDay = 0;
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    CMonthlyView& Open(QSize size = {240, 280}, bool landscape = false)
    {
        g_ScreenMetrics.m_landscape = landscape;
        View = std::make_unique<CMonthlyView>(Host, nullptr);
        View->resize(size);
        View->Create();
        View->Refresh();
        return *View;
    }
    static int Cursor() { return DayNumber(PimStore().CursorDate()); }
    QString Title() const { return View->GetTitleText(); }
    void Send(QEvent::Type type, QPoint at, Qt::MouseButton button)
    {
        const Qt::MouseButtons down = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, at, button, down, Qt::NoModifier);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    void Press(QPoint at) { Send(QEvent::MouseButtonPress, at, Qt::LeftButton); }
    void MoveTo(QPoint at) { Send(QEvent::MouseMove, at, Qt::NoButton); }
    void Release(QPoint at) { Send(QEvent::MouseButtonRelease, at, Qt::LeftButton); }
    void Tap(QPoint at)
    {
        Press(at);
        Release(at);
    }
    QPoint CellPoint(int day) { return View->Grid().CellOf(day).center(); }
    QPoint RowPoint(int row)
    {
        return View->ListArea().topLeft() + QPoint(60, View->Rows()[size_t(row)].Rect.center().y());
    }
    void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    quint32 Selected() const { return View->SelectedIdentity().ItemId; }
    // What the user does in the menu that the next step opens.
    void InMenu(std::function<void(CTouchMenu&)> act)
    {
        QTimer::singleShot(0, View.get(), [act] {
            ASSERT_NE(CTouchMenu::Current(), nullptr);
            act(*CTouchMenu::Current());
        });
    }
    CRecordingHost Host;
    std::unique_ptr<CMonthlyView> View;
};
} // namespace

// ---- dates

TEST_F(Monthly, KeysMoveTheDateAndTheTitleFollows)
{
    const struct {
        int Key;
        int Day;
        const char* Title;
    } cases[] = {
        {Qt::Key_Left, Day(2026, 3, 16), "March 2026"},
        {Qt::Key_Right, Day(2026, 3, 18), "March 2026"},
        {Qt::Key_Up, Day(2026, 3, 10), "March 2026"},
        {Qt::Key_Down, Day(2026, 3, 24), "March 2026"},
        {Qt::Key_1, Day(2026, 2, 17), "February 2026"},
        {Qt::Key_3, Day(2026, 4, 17), "April 2026"},
        {Qt::Key_PageUp, Day(2026, 2, 17), "February 2026"},
        {Qt::Key_PageDown, Day(2026, 4, 17), "April 2026"},
        {Qt::Key_4, Day(2025, 3, 17), "March 2025"},
        {Qt::Key_6, Day(2027, 3, 17), "March 2027"},
    };
    for (const auto& c : cases) {
        PimStore().LoadRange(kToday, kToday, kToday);
        Open();
        EXPECT_EQ(Title(), QStringLiteral("March 2026"));
        Key(c.Key);
        EXPECT_EQ(Cursor(), c.Day) << c.Key;
        EXPECT_EQ(Title(), QLatin1String(c.Title)) << c.Key;
        EXPECT_TRUE(View->Grid().IsPoppedOut(CellPoint(c.Day))) << c.Key;
        Key(Qt::Key_2);
        EXPECT_EQ(Cursor(), kToday) << c.Key;
    }
}

TEST_F(Monthly, ArrowsKeepTheGridWhileItHasTheDay)
{
    PimStore().LoadRange(Day(2026, 3, 31), Day(2026, 3, 31), Day(2026, 3, 31));
    Open();
    Key(Qt::Key_Right);
    EXPECT_EQ(Cursor(), Day(2026, 4, 1));
    EXPECT_EQ(View->Grid().FirstDay(), Day(2026, 3, 1)) << "the first of April stands on March's grid";
    EXPECT_EQ(Title(), QStringLiteral("March 2026"));
    Key(Qt::Key_Down);
    EXPECT_EQ(Cursor(), Day(2026, 4, 8));
    EXPECT_EQ(View->Grid().FirstDay(), Day(2026, 3, 29));
    EXPECT_EQ(Title(), QStringLiteral("April 2026"));
}

TEST_F(Monthly, MonthsEndWhereTheShorterOneDoes)
{
    PimStore().LoadRange(Day(2026, 1, 31), Day(2026, 1, 31), Day(2026, 1, 31));
    Open();
    View->MoveDate(1);
    EXPECT_EQ(Cursor(), Day(2026, 2, 28));
    EXPECT_EQ(View->Grid().RowCount(), 4);
    View->MoveDate(-1);
    EXPECT_EQ(Cursor(), Day(2026, 1, 28));
    View->MoveDate(0);
    EXPECT_EQ(Cursor(), kToday);
}

TEST_F(Monthly, AMonthChosenByOneOfItsDaysKeepsTheDayOfTheMonth)
{
    const struct {
        int From, Chosen, Day;
    } cases[] = {{Day(2026, 3, 17), Day(2026, 6, 1), Day(2026, 6, 17)},
                 {Day(2026, 3, 31), Day(2026, 6, 1), Day(2026, 6, 30)},
                 {Day(2026, 3, 30), Day(2028, 2, 1), Day(2028, 2, 29)},
                 {Day(2026, 3, 30), Day(2025, 2, 28), Day(2025, 2, 28)},
                 {Day(2026, 1, 1), Day(2025, 12, 31), Day(2025, 12, 1)}};
    for (const auto& c : cases) {
        PimStore().LoadRange(c.From, c.From, c.From);
        Open();
        View->GoToMonth(c.Chosen);
        EXPECT_EQ(Cursor(), c.Day);
        EXPECT_FALSE(View->Grid().CellOf(c.Day).isEmpty());
    }
}

TEST_F(Monthly, MonthsOfAWindowOfWeeksMoveFiveWeeks)
{
    g_Settings.MonthView.ScrollByWeeks = 1;
    Open();
    const int first = View->Grid().FirstDay();
    View->MoveDate(1);
    EXPECT_EQ(Cursor(), Day(2026, 4, 17));
    EXPECT_EQ(View->Grid().FirstDay(), first + 35);
    EXPECT_EQ(Title(), QStringLiteral("April 2026"));
    View->MoveDate(-1);
    EXPECT_EQ(View->Grid().FirstDay(), first);
    EXPECT_EQ(Title(), QStringLiteral("March 2026"));
}

TEST_F(Monthly, TheFirstAndLastDatesHoldTheView)
{
    for (const auto& [day, key] :
         {std::pair(Day(9999, 12, 31), Qt::Key_3), std::pair(Day(100, 1, 1), Qt::Key_1)}) {
        PimStore().LoadRange(day, day, day);
        Open();
        for (int n = 0; n < 8; ++n) {
            for (const int k : {int(key), int(Qt::Key_6), int(Qt::Key_4), int(Qt::Key_Up), int(Qt::Key_Down)})
                Key(k);
        }
        EXPECT_NE(SystemTimeOf(Cursor()).wYear, 0);
        EXPECT_NE(SystemTimeOf(View->Grid().FirstDay()).wYear, 0);
        EXPECT_NE(SystemTimeOf(View->Grid().LastDay()).wYear, 0);
        EXPECT_FALSE(View->Snapshot().isNull());
    }
}

TEST_F(Monthly, TheTitleHasTheChosenFormat)
{
    const char* const titles[] = {"March 2026", "March, 26", "Mar 2026", "Mar, 26", "March 2026"};
    for (int format = 0; format < 5; ++format) {
        g_Settings.MonthView.DateFormat = format;
        Open();
        EXPECT_EQ(Title(), QLatin1String(titles[format]));
    }
}

TEST_F(Monthly, ADateSetElsewhereShowsWithItsMonth)
{
    Open();
    View->SetCursorDate(Day(2026, 7, 30));
    View->Refresh();
    EXPECT_EQ(Title(), QStringLiteral("July 2026"));
    View->SetCursorDate(Day(2026, 8, 1)); // stands on July's grid, too
    View->Refresh();
    EXPECT_EQ(Title(), QStringLiteral("August 2026"));
}

// ---- finger and mouse

TEST_F(Monthly, ATapSelectsASecondOneOpensTheDay)
{
    Open();
    const int day = Day(2026, 3, 11);
    Tap(CellPoint(day));
    EXPECT_EQ(Cursor(), day);
    EXPECT_EQ(Host.Shown, std::vector<int>());
    Press(CellPoint(day));
    Release(CellPoint(day) + QPoint(0, 60));
    EXPECT_EQ(Host.Shown, std::vector<int>()) << "lifted elsewhere";
    Tap(CellPoint(day));
    EXPECT_EQ(Host.Shown, std::vector<int>{kViewMonthly});
    Key(Qt::Key_Return);
    EXPECT_EQ(Host.Shown.size(), 2u);
    Tap(CellPoint(Day(2026, 4, 3)));
    EXPECT_EQ(Cursor(), Day(2026, 4, 3));
    EXPECT_EQ(Title(), QStringLiteral("March 2026")) << "the grid turns only when gone to";
}

TEST_F(Monthly, StrokesTurnTheMonth)
{
    const struct {
        const char* What;
        int Invert;
        QPoint Way;
        const char* Title;
    } cases[] = {{"left", 0, {-50, 10}, "April 2026"},
                 {"right", 0, {50, 0}, "February 2026"},
                 {"inverted", 1, {-50, 0}, "February 2026"},
                 {"short", 0, {-49, 0}, "March 2026"},
                 {"an arc", 0, {-60, 40}, "March 2026"}};
    for (const auto& c : cases) {
        g_Settings.General.TouchNavInvert = c.Invert;
        PimStore().LoadRange(kToday, kToday, kToday);
        Host.Shown.clear();
        Open();
        const QPoint from = CellPoint(kToday);
        Press(from);
        MoveTo(from + c.Way / 2);
        MoveTo(from + c.Way);
        Release(from + c.Way);
        EXPECT_EQ(Title(), QLatin1String(c.Title)) << c.What;
        EXPECT_TRUE(Host.Shown.empty()) << c.What;
    }
}

TEST_F(Monthly, TheWheelTurnsMonthsOverTheGridAndScrollsTheList)
{
    for (int n = 0; n < 40; ++n)
        AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), n * 0.3);
    Open();
    const auto wheel = [this](QPoint at, int delta) {
        QWheelEvent event(at, at, {}, {0, delta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(View.get(), &event);
    };
    wheel(View->ListArea().center(), -120);
    EXPECT_EQ(View->Scroller().Scroll(), -60);
    EXPECT_EQ(Title(), QStringLiteral("March 2026"));
    wheel(CellPoint(kToday), -60);
    EXPECT_EQ(Title(), QStringLiteral("March 2026"));
    wheel(CellPoint(kToday), -60);
    EXPECT_EQ(Title(), QStringLiteral("April 2026"));
    EXPECT_EQ(View->Scroller().Scroll(), 0);
    wheel({40, 40}, 240);
    EXPECT_EQ(Title(), QStringLiteral("February 2026"));
}

// ---- quick view list

TEST_F(Monthly, TheListHoldsWhatTheDailyViewHolds)
{
    for (int n = 0; n < 6; ++n)
        AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), 8 + n);
    PimStore().FindDay(kToday)->Appointments[2]->Visible = false;
    auto task = std::make_unique<CCalendarTask>();
    task->ItemId = 77;
    PimStore().FindDay(kToday)->AddTask(std::move(task), true);
    for (const bool withTasks : {true, false}) {
        g_Settings.Tasks.IncludeInCalendar = withTasks;
        CDailyView daily(Host, nullptr);
        daily.resize(240, 280);
        daily.Create();
        daily.Refresh();
        Open();
        ASSERT_EQ(int(View->Rows().size()), daily.Rows().GetCount());
        for (int n = 0; n < daily.Rows().GetCount(); ++n)
            EXPECT_EQ(View->Rows()[size_t(n)].Item, daily.Rows().GetAt(n)->m_identity);
    }
}

TEST_F(Monthly, RowsAreSelectedByFingerAndByShiftedArrows)
{
    for (int n = 0; n < 30; ++n)
        AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), 8);
    Open();
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    Press(RowPoint(1));
    View->Scroller().OnTimer(kTimerPress);
    EXPECT_EQ(Selected(), View->Rows()[1].Item.ItemId);
    EXPECT_EQ(View->Timeline()->Selected(), Selected());
    EXPECT_EQ(View->SelectedDay(), kToday);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), View->Rows()[2].Item.ItemId);
    EXPECT_EQ(Cursor(), kToday);
    for (int n = 0; n < 60; ++n)
        Key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), View->Rows().back().Item.ItemId);
    EXPECT_LT(View->Scroller().Scroll(), 0) << "the row was brought into view";
    Key(Qt::Key_Left);
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    EXPECT_EQ(View->Scroller().Scroll(), 0);
    Key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(View->GetSelectedItem(), nullptr) << "an empty day";
}

TEST_F(Monthly, ATapOnTheCheckBoxTogglesATapBesideOpensTheMenu)
{
    auto task = std::make_unique<CCalendarTask>();
    task->ItemId = task->RecordOid = 77;
    task->Subject = QStringLiteral("Pay the rent");
    PimStore().FindDay(kToday)->AddTask(std::move(task), true);
    Open();
    const QRect box = View->Rows()[0].CheckBox.translated(View->ListArea().topLeft());
    ASSERT_FALSE(box.isEmpty());
    Tap(box.center() + QPoint(box.width() / 2 + 8, 0));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    EXPECT_EQ(Selected(), 77u);
    InMenu([](CTouchMenu& menu) { menu.Choose(CmdDelete); });
    Tap(box.center() + QPoint(box.width() / 2 + 12, 0));
    EXPECT_EQ(Host.Commands, (std::vector<int>{CmdToggleTask, CmdDelete}));
    Key(Qt::Key_9);
    EXPECT_EQ(Host.Commands.back(), CmdToggleTask);
}

TEST_F(Monthly, ARightClickOpensTheMenuOfWhatLiesUnderIt)
{
    AddToday(5, QStringLiteral("Dentist"), 9);
    Open();
    const auto rightClick = [this](QPoint at) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, at);
        QCoreApplication::sendEvent(View.get(), &event);
    };
    InMenu([](CTouchMenu& menu) { menu.Choose(CmdDuplicate); });
    rightClick(RowPoint(0));
    EXPECT_EQ(Selected(), 5u);
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdDuplicate});
    InMenu([this](CTouchMenu& menu) {
        PimStore().FindDay(kToday)->RemoveByOid(5, true); // meanwhile the item goes
        View->OnDataChanged(0, 0, 0);
        menu.Choose(CmdDelete);
    });
    rightClick(RowPoint(0));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdDuplicate}) << "the command was not meant for another";
}

TEST_F(Monthly, AChangeKeepsSelectionAndPlaceOfTheList)
{
    for (int n = 0; n < 40; ++n)
        AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), 8);
    Open();
    View->Scroller().SetScroll(0, -100);
    Press(RowPoint(10) + QPoint(0, -100));
    View->Scroller().OnTimer(kTimerPress);
    const quint32 selected = Selected();
    ASSERT_NE(selected, 0u);
    AddToday(99, QStringLiteral("New"), 7);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(Selected(), selected);
    EXPECT_EQ(View->Rows().size(), 41u);
    EXPECT_EQ(View->Scroller().Scroll(), -100);
    View->Scroller().CancelTouch();
    PimStore().FindDay(kToday)->Appointments.resize(3);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->Scroller().Scroll(), 0) << "what is left of the list shows";
}

TEST_F(Monthly, AHiddenViewHoldsNoItemsAndComesBackUpToDate)
{
    AddToday(5, QStringLiteral("Dentist"), 9);
    Open();
    Press(RowPoint(0));
    View->Scroller().OnTimer(kTimerPress);
    ASSERT_EQ(Selected(), 5u);
    View->OnDeactivate();
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    const int far = Day(2030, 1, 5);
    PimStore().LoadRange(far, far, far);
    View->OnDataChanged(0, 0, 0);
    View->resize(300, 200);
    EXPECT_EQ(Cursor(), far) << "a view that nobody sees moves nothing";
    EXPECT_EQ(PimStore().FindDay(kToday), nullptr);
    View->Refresh();
    EXPECT_EQ(Title(), QStringLiteral("January 2030"));
    EXPECT_FALSE(View->Grid().CellOf(far).isEmpty());
}

// ---- sizes

TEST_F(Monthly, EverySizeAndSettingPaintsWithinTheView)
{
    for (int n = 0; n < 12; ++n)
        AddToday(quint32(n + 1), QStringLiteral("A subject that is too long for its line %1").arg(n), 8 + n);
    for (const int density : {96, 192, 288}) {
        SetDensity(density);
        for (const int include : {0, 1, 2, 3}) {
            for (const bool landscape : {false, true}) {
                g_Settings.MonthView.IncludeQuickView = include;
                g_Settings.MonthView.ShowWeekNums = landscape;
                g_Settings.MonthView.ItemsToShow = include % 3;
                Open({240, 280}, landscape);
                for (const QSize size : {QSize(480, 600), QSize(320, 200), QSize(40, 30), QSize(1, 1)}) {
                    View->resize(size);
                    EXPECT_EQ(View->Snapshot().size(), size);
                    Tap({size.width() / 2, size.height() / 3});
                    Key(Qt::Key_3);
                    Key(Qt::Key_Down, Qt::ShiftModifier);
                    PimStore().LoadRange(kToday, kToday, kToday);
                }
                EXPECT_EQ(View->QuickList(), QuickListModeOf(include, landscape));
                EXPECT_EQ(View->Timeline() == nullptr, include == 0);
            }
        }
    }
}

TEST_F(Monthly, TheListBesideTakesItsShareOfTheWidth)
{
    g_Settings.MonthView.IncludeQuickView = 3;
    const struct {
        int Density, Width, Side;
        bool CountsBelow;
    } cases[] = {{96, 306, 108, true}, {192, 612, 216, true}, {96, 800, 240, false}, {96, 1900, 260, false}};
    for (const auto& c : cases) {
        SetDensity(c.Density);
        Open({c.Width, 500}, true);
        EXPECT_EQ(View->Grid().Layout().Width(), c.Width - c.Side);
        EXPECT_EQ(View->TimelineArea().x(), c.Width - c.Side + 1);
        EXPECT_EQ(View->TimelineArea().height(),
                  c.CountsBelow ? CTimelineBar::VerticalHeight() : CTimelineBar::Height());
        EXPECT_EQ(View->ListArea().x(), View->TimelineArea().x());
        EXPECT_EQ(View->ListArea().y(), View->TimelineArea().height());
    }
}

TEST_F(Monthly, AMonthOfSixWeeksTakesItsRoomFromTheList)
{
    Open();
    const QRect march = View->ListArea();
    View->SetCursorDate(Day(2026, 8, 5));
    View->Refresh();
    EXPECT_EQ(View->ListArea().y(), march.y() + 30);
    EXPECT_EQ(View->Scroller().Area(), View->ListArea());
    EXPECT_EQ(View->ListArea().y() + View->ListArea().height(), 280);
}
