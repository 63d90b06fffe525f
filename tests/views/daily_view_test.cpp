#include <QContextMenuEvent>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include "drawing/paint.h"
#include "touch/command_ids.h"
#include "touch/timer_ids.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "views/daily_view.h"
#include "views_fixture.h"

namespace
{
class Daily : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        g_Settings.DailyView.IncludeTimelines = 0;
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    // Subjects A, B, .. of today, an hour each from 8:00 on.
    void Fill(int count)
    {
        for (int n = 0; n < count; ++n)
            AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), 8 + n * 0.25);
    }
    CDailyView& Open(QSize size = {240, 200})
    {
        View = std::make_unique<CDailyView>(Host, nullptr);
        View->resize(size);
        View->OnCreate();
        View->Refresh();
        return *View;
    }
    quint32 SelectedId() const { return View->SelectedIdentity().ItemId; }
    void Press(QPoint at) { Send(QEvent::MouseButtonPress, at, Qt::LeftButton); }
    void MoveTo(QPoint at) { Send(QEvent::MouseMove, at, Qt::NoButton); }
    void Release(QPoint at) { Send(QEvent::MouseButtonRelease, at, Qt::LeftButton); }
    void Send(QEvent::Type type, QPoint at, Qt::MouseButton button)
    {
        const Qt::MouseButtons down = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, at, button, down, Qt::NoModifier);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    // Taps a row; `act` is what the user does in the menu that may open.
    void Tap(int row, std::function<void(CTouchMenu*)> act = {})
    {
        const CPaintingOrderItem& item = *View->Rows().GetAt(row);
        const QPoint at(100,
                        View->ListArea().y() + (item.m_top + item.m_bottom) / 2 + View->Scroller().Scroll());
        if (act)
            QTimer::singleShot(0, View.get(), [act] { act(CTouchMenu::Current()); });
        Press(at);
        Release(at);
    }
    CRecordingHost Host;
    std::unique_ptr<CDailyView> View;
};
} // namespace

// ---- rows

TEST_F(Daily, RowsFollowOneAnotherPartedByALine)
{
    Fill(5);
    Open();
    int top = 0;
    for (const auto& row : View->Rows()) {
        EXPECT_EQ(row->m_top, top);
        EXPECT_GT(row->m_bottom, top + 20);
        top = row->m_bottom + 1;
    }
    EXPECT_EQ(View->Scroller().ContentHeight(), top + 2);
    const QImage picture = View->Snapshot();
    for (const auto& row : View->Rows())
        EXPECT_EQ(picture.pixel(3, row->m_bottom), ToQColor(Rgb(222, 225, 221)).rgb());
    EXPECT_EQ(picture.pixel(3, View->Rows().GetAt(1)->m_top + 1), 0xFFFFFFFF);
}

TEST_F(Daily, HiddenItemsLeaveTheEmptyText)
{
    Open();
    const QImage empty = View->Snapshot();
    Fill(2);
    for (const auto& item : PimStore().FindDay(kToday)->Appointments)
        item->Visible = false;
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->Snapshot(), empty);
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    EXPECT_EQ(View->Scroller().ContentHeight(), 0);
    int ink = 0;
    for (int x = 0; x < empty.width(); ++x) {
        for (int y = 80; y < 120; ++y)
            ink += empty.pixel(x, y) != 0xFFFFFFFF;
    }
    EXPECT_GT(ink, 50) << "the text stands in the middle";
    Press({100, 100});
    Release({100, 100});
    View->OnKey(kKeyDown);
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    EXPECT_TRUE(Host.Commands.empty());
}

TEST_F(Daily, PastAppointmentsShowAsChosen)
{
    Fill(3);
    PimStore().FindDay(kToday)->Appointments.front()->Past = true;
    QList<QImage> pictures;
    for (const int choice : {0, 1, 2}) {
        g_Settings.DailyView.PastAppointments = choice;
        Open();
        EXPECT_EQ(View->Rows().GetCount(), choice == 2 ? 2 : 3);
        pictures << View->Snapshot();
    }
    EXPECT_EQ(pictures[0], pictures[1]) << "the flag alone says what is past";
    EXPECT_NE(pictures[1], pictures[2]);
}

TEST_F(Daily, TasksFollowWhenWanted)
{
    Fill(1);
    auto task = std::make_unique<CCalendarTask>();
    task->ItemId = 77;
    task->Subject = QStringLiteral("Pay the rent");
    PimStore().FindDay(kToday)->Tasks.push_back(std::move(task));
    Open();
    ASSERT_EQ(View->Rows().GetCount(), 2);
    EXPECT_EQ(View->Rows().GetAt(1)->m_identity.Kind, kKindTask);
    g_Settings.Tasks.IncludeInCalendar = 0;
    View->Refresh();
    EXPECT_EQ(View->Rows().GetCount(), 1);
}

TEST_F(Daily, AListFliesOnNeitherHiddenNorOnAnotherDay)
{
    const struct {
        const char* What;
        std::function<void()> Do;
    } cases[] = {{"hidden", [&] { View->OnDeactivate(); }},
                 {"next day", [&] { View->MoveDate(1); }},
                 {"day by key", [&] { View->OnKey(kKeyLeft); }},
                 {"today", [&] { View->GoToToday(); }}};
    for (const auto& c : cases) {
        PimStore().LoadRange(kToday, kToday, kToday);
        Fill(40);
        Open();
        Press({100, 150});
        for (const int y : {130, 110, 90, 70}) {
            Time.Advance(10);
            MoveTo({100, y});
        }
        Release({100, 70});
        CNumberedTimers& timers = View->Scroller().Timers();
        ASSERT_TRUE(timers.IsRunning(kTimerFling)) << c.What;
        c.Do();
        EXPECT_FALSE(timers.IsRunning(kTimerFling)) << c.What;
        EXPECT_FALSE(View->Scroller().IsDragging()) << c.What;
    }
}

TEST_F(Daily, ARefreshUnderTheFingerLeavesItsDragOne)
{
    Fill(40);
    Open();
    Press({100, 150});
    MoveTo({100, 100});
    View->Refresh();
    EXPECT_TRUE(View->Scroller().IsDragging());
    Release({100, 98});
    EXPECT_EQ(CTouchMenu::Current(), nullptr);
    EXPECT_FALSE(View->Scroller().IsDragging());
}

TEST_F(Daily, EveryPointOfARowHitsIt)
{
    Fill(4);
    for (const int popOut : {0, 3}) {
        g_Settings.DailyView.PopOut = popOut;
        Open();
        const int pad = 2 * popOut;
        for (const auto& row : View->Rows()) {
            EXPECT_EQ(View->RowAt(10, (row->m_top + row->m_bottom) / 2), row.get());
            EXPECT_EQ(View->RowAt(10, row->m_bottom), row.get());
        }
        const CPaintingOrderItem* first = View->Rows().GetAt(0);
        ASSERT_EQ(View->SelectedRow(), first);
        EXPECT_EQ(View->RowAt(10, first->m_bottom + pad), first)
            << "a popped-out row reaches over its neighbour";
        EXPECT_EQ(View->RowAt(10, first->m_bottom + pad + 1), View->Rows().GetAt(1));
        EXPECT_EQ(View->RowAt(10, View->Rows().GetAt(3)->m_bottom + 1), nullptr);
    }
}

// ---- pictures

TEST_F(Daily, AScrolledFrameIsTheSameAsOnePaintedAnew)
{
    Fill(40);
    for (const int popOut : {0, 2}) {
        g_Settings.DailyView.PopOut = popOut;
        Open();
        View->OnKey(kKeyDown);
        for (const int scroll : {0, -7, -300, -299, 40, -2000, -310, 0}) {
            View->Scroller().SetScroll(0, scroll);
            const QImage scrolled = View->Snapshot();
            View->ForgetPictures();
            View->Scroller().Redraw(false);
            ASSERT_EQ(View->Snapshot(), scrolled) << "at " << scroll << ", pop-out " << popOut;
        }
    }
}

TEST_F(Daily, RowPicturesAreKeptOneScreenAround)
{
    Fill(200);
    Open();
    const int rowHeight = View->Rows().GetAt(0)->m_bottom + 1;
    const int screen = 200 / rowHeight + 2;
    for (int scroll = 0; scroll > -5000; scroll -= 60) {
        View->Scroller().SetScroll(0, scroll);
        ASSERT_LE(View->RowCache().GetCount(), 3 * screen);
    }
    EXPECT_GE(View->RowCache().GetCount(), 200 / rowHeight);
    for (const auto& row : View->Rows())
        EXPECT_FALSE(View->RowCache().Find(row.get()) && row->m_bottom < 5000 - 60 - 200 - 1);
    View->OnDeactivate();
    EXPECT_EQ(View->RowCache().GetCount(), 0);
    EXPECT_EQ(View->RowCache().Selected(), nullptr);
}

TEST_F(Daily, APoppedOutRowSticksOutByItsSize)
{
    Fill(5);
    const QRgb edge = ToQColor(0x1F0F0A).rgb();
    for (const int popOut : {0, 1, 2, 3}) {
        g_Settings.DailyView.PopOut = popOut;
        Open();
        View->OnKey(kKeyDown);
        const CPaintingOrderItem& row = *View->SelectedRow();
        const QImage picture = View->Snapshot();
        const int top = row.m_top - 2 * popOut, bottom = row.m_bottom + 2 * popOut;
        EXPECT_EQ(picture.pixel(120, top) == edge, popOut != 0) << popOut;
        EXPECT_EQ(picture.pixel(120, bottom - 1) == edge, popOut != 0);
        EXPECT_EQ(picture.pixel(0, top - 2), 0xFFFFFFFF);
        if (popOut) {
            EXPECT_EQ(qGray(picture.pixel(230, bottom)), 127) << "a shadow of half black below";
            EXPECT_EQ(picture.pixel(0, bottom + 1), 0xFFFFFFFF) << "that begins a little to the right";
        }
    }
}

TEST_F(Daily, TheBarTakesItsHeightFromTheList)
{
    Fill(2);
    for (const int density : {96, 192}) {
        SetDensity(density);
        for (const int place : {0, 1, 2}) {
            g_Settings.DailyView.IncludeTimelines = place;
            Open({240, 300});
            const QRect bar = View->TimelineArea(), list = View->ListArea();
            EXPECT_EQ(View->Timeline() != nullptr, place != 0);
            EXPECT_EQ(bar.height() + list.height(), 300);
            EXPECT_EQ(View->Scroller().Area(), list);
            EXPECT_EQ(list.y(), place == 1 ? bar.height() : 0);
            EXPECT_EQ(bar.y(), place == 2 ? list.height() : 0);
        }
    }
}

TEST_F(Daily, TheBarFollowsTheSelection)
{
    g_Settings.DailyView.IncludeTimelines = 1;
    Fill(2);
    Open();
    EXPECT_EQ(View->Timeline()->Selected(), 1u);
    View->OnKey(kKeyDown);
    EXPECT_EQ(View->Timeline()->Selected(), 2u);
    View->OnKey(kKeyRight);
    EXPECT_EQ(View->Timeline()->Selected(), 0u) << "an empty day";
}

TEST_F(Daily, SingleLineRowsAreAllOfOneHeight)
{
    g_Settings.DailyView.SingleLine = 1;
    Fill(3);
    PimStore().FindDay(kToday)->Appointments.back()->Subject = QString(300, u'x');
    Open();
    const auto height = [this](int n) {
        return View->Rows().GetAt(n)->m_bottom - View->Rows().GetAt(n)->m_top;
    };
    EXPECT_EQ(height(0), height(1));
    EXPECT_EQ(height(0), height(2));
}

TEST_F(Daily, ResizingWrapsTheRowsAnewAndLeavesNoGap)
{
    for (int n = 0; n < 20; ++n)
        AddToday(quint32(n + 1),
                 QStringLiteral("A subject that takes two lines on a narrow screen %1").arg(n), 8 + n * 0.1);
    Open({160, 200});
    const int narrow = View->Scroller().ContentHeight();
    View->Scroller().SetScroll(0, 200 - narrow);
    View->resize(480, 300);
    View->OnResize();
    EXPECT_LT(View->Scroller().ContentHeight(), narrow);
    EXPECT_EQ(View->Scroller().Area(), QRect(0, 0, 480, 300));
    EXPECT_EQ(View->Scroller().Scroll(), 300 - View->Scroller().ContentHeight());
}

// ---- selection

TEST_F(Daily, SelectionIsKeptByIdentity)
{
    Fill(4);
    Open();
    View->OnKey(kKeyDown);
    View->OnKey(kKeyDown);
    ASSERT_EQ(SelectedId(), 3u);
    PimStore().FindDay(kToday)->RemoveByOid(1, true);
    AddToday(9, QStringLiteral("New"), 6);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(SelectedId(), 3u);
    PimStore().FindDay(kToday)->RemoveByOid(3, true);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(SelectedId(), 9u) << "the first row, when its own is gone";
}

TEST_F(Daily, KeysWalkTheRowsAndStopAtTheEnds)
{
    Fill(12);
    Open();
    const int step[] = {kKeyUp, kKeyDown, kKeyDown, kKeyUp};
    const quint32 wanted[] = {1, 2, 3, 2};
    for (int n = 0; n < 4; ++n) {
        EXPECT_TRUE(View->OnKey(step[n]));
        EXPECT_EQ(SelectedId(), wanted[n]);
    }
    for (int n = 0; n < 20; ++n)
        View->OnKey(kKeyDown);
    EXPECT_EQ(SelectedId(), 12u);
    const int bottom = View->SelectedRow()->m_bottom + View->Scroller().Scroll();
    EXPECT_LE(bottom, 200);
    EXPECT_EQ(View->Scroller().Scroll(), 200 - View->Scroller().ContentHeight())
        << "no gap below the last row";
    for (int n = 0; n < 20; ++n)
        View->OnKey(kKeyUp);
    EXPECT_EQ(View->Scroller().Scroll(), 0);
}

// ---- dates

TEST_F(Daily, KeysMoveTheDate)
{
    struct {
        int From, Key, To;
    } const cases[] = {
        {kToday, kKeyLeft, kToday - 1},
        {kToday, kKeyRight, kToday + 1},
        {Day(2026, 3, 31), '1', Day(2026, 2, 28)},
        {Day(2026, 3, 31), '3', Day(2026, 4, 30)},
        {Day(2026, 5, 5), '4', Day(2025, 5, 5)},
        {Day(2026, 5, 5), '6', Day(2027, 5, 5)},
        {Day(2024, 2, 29), '6', Day(2025, 2, 28)},
        {Day(2026, 5, 5), '2', kToday},
    };
    Open();
    for (const auto& c : cases) {
        View->SetCursorDate(c.From + 0.4);
        View->Refresh();
        Host.Titles = 0;
        EXPECT_TRUE(View->OnKey(c.Key)) << c.Key;
        EXPECT_EQ(PimStore().CursorDate(), c.To) << c.Key;
        EXPECT_GE(Host.Titles, 1);
    }
    for (const int key : {int('7'), int(kKeyEscape)})
        EXPECT_FALSE(View->OnKey(key)) << key << " is not the view's";
    Host.Commands.clear();
    EXPECT_TRUE(View->OnKey('5') && View->OnKey(kKeyReturn));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdGoTo}) << "Enter without a selection opens nothing";
}

TEST_F(Daily, MovesShowTheOtherDaysItemsAndTitle)
{
    Fill(2);
    Open();
    EXPECT_EQ(View->GetTitleText(), "Tuesday, Mar 17 2026");
    View->MoveDate(1);
    EXPECT_EQ(View->GetTitleText(), "Wednesday, Mar 18 2026");
    EXPECT_EQ(View->Rows().GetCount(), 0);
    View->MoveDate(-1);
    EXPECT_EQ(View->Rows().GetCount(), 2);
    g_Settings.DailyView.ViewTitleFormat = 99;
    View->Refresh();
    EXPECT_EQ(View->GetTitleText(), "Tuesday, Mar 17 2026") << "a number that no format has";
}

TEST_F(Daily, TodayEmptiesTheCacheAndLoadsFiveWeeks)
{
    Fill(2);
    Open();
    View->OnKey(kKeyRight);
    View->OnClockChanged(1);
    EXPECT_EQ(PimStore().CursorDate(), kToday);
    EXPECT_EQ(View->Rows().GetCount(), 0) << "what was not in the volume is gone with the cache";
    for (int day = kToday - 2; day <= kToday + 32; ++day)
        EXPECT_NE(PimStore().FindDay(day), nullptr) << day - kToday;
}

TEST_F(Daily, ADayThatLeftTheCacheIsLoadedAgain)
{
    Open();
    PimStore().Clear();
    View->Refresh();
    EXPECT_NE(PimStore().FindDay(kToday), nullptr);
}

// ---- finger

TEST_F(Daily, StrokesMoveADayOnceEach)
{
    struct {
        const char* Name;
        QPoint To;
        bool Invert;
        int Days;
    } const cases[] = {
        {"49 pixels", {120 - 49, 100}, false, 0},          {"50 to the left", {120 - 50, 100}, false, 1},
        {"50 to the right", {120 + 50, 100}, false, -1},   {"inverted", {120 - 50, 100}, true, -1},
        {"half as far down", {120 - 50, 125}, false, 0},   {"a little down", {120 - 50, 124}, false, 1},
        {"a thumb's arc", {120 + 60, 100 - 90}, false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        g_Settings.General.TouchNavInvert = c.Invert;
        Open({240, 240});
        View->SetCursorDate(kToday);
        View->Refresh();
        Press({120, 100});
        MoveTo(c.To);
        EXPECT_EQ(View->DateOverlay().IsRunning(), c.Days != 0);
        Release(c.To);
        EXPECT_EQ(PimStore().CursorDate(), kToday + c.Days);
        EXPECT_FALSE(View->Scroller().IsTouched());
        EXPECT_TRUE(Host.Commands.empty());
    }
}

// A hand that strokes to the left, waits at the edge and lifts; then the new day slides in.
TEST_F(Daily, AHeldStrokeRunsThroughDaysAndAQuickOneSlides)
{
    g_Settings.General.TouchNavAnimation = 0;
    g_Settings.General.SlidingScreens = 1;
    Open({240, 240});
    View->show();
    CNumberedTimers& timers = View->DateOverlay().Timers();
    Press({120, 100});
    MoveTo({60, 100});
    EXPECT_EQ(timers.PeriodOf(kTimerOverlay), CDateOverlay::kFirstMs);
    MoveTo({5, 130});
    for (int n = 0; n < 4; ++n)
        timers.Fire(kTimerOverlay);
    EXPECT_EQ(PimStore().CursorDate(), kToday) << "not before it lifts";
    Release({5, 130});
    EXPECT_EQ(PimStore().CursorDate(), kToday + 4);
    EXPECT_FALSE(View->Transition().IsRunning());

    Press({120, 100});
    MoveTo({180, 100});
    Release({180, 100});
    EXPECT_EQ(PimStore().CursorDate(), kToday + 3);
    EXPECT_TRUE(View->Transition().NeedsPicture());
    const QImage shown = View->grab().toImage();
    EXPECT_FALSE(View->Transition().NeedsPicture());
    CNumberedTimers& slide = View->Transition().Timers();
    for (int n = 0; n < 10 && View->Transition().IsRunning(); ++n)
        slide.Fire(kTimerTransition);
    EXPECT_FALSE(View->Transition().IsRunning());
    EXPECT_NE(View->grab().toImage(), shown);

    Press({120, 100});
    MoveTo({60, 100});
    View->resize(320, 200);
    EXPECT_FALSE(View->DateOverlay().IsRunning()) << "the picture under it is none any more";
    Release({60, 100});
    EXPECT_EQ(PimStore().CursorDate(), kToday + 3);
}

TEST_F(Daily, TapSelectsAndItsMenuSendsTheCommand)
{
    Fill(3);
    struct {
        Qt::Key Down;
        int Times, Command;
    } const cases[] = {
        {Qt::Key_Down, 1, CmdDelete}, {Qt::Key_Down, 2, CmdDuplicate}, {Qt::Key_Escape, 0, CmdNone}};
    for (const auto& c : cases) {
        Open();
        View->show();
        Host.Commands.clear();
        QString title;
        Tap(1, [&](CTouchMenu* menu) {
            ASSERT_NE(menu, nullptr);
            title = menu->GetTitle();
            for (int n = 0; n < c.Times; ++n)
                QTest::keyClick(menu, c.Down);
            QTest::keyClick(menu, c.Times ? Qt::Key_Return : Qt::Key_Escape);
        });
        EXPECT_EQ(title, "Item 1");
        EXPECT_EQ(SelectedId(), 2u);
        EXPECT_EQ(Host.Commands, c.Command == CmdNone ? std::vector<int>() : std::vector<int>{c.Command});
    }
}

TEST_F(Daily, ACommandIsDroppedWhenItsItemWentMeanwhile)
{
    Fill(3);
    Open();
    View->show();
    Tap(1, [this](CTouchMenu* menu) {
        PimStore().FindDay(kToday)->RemoveByOid(2, true);
        View->OnDataChanged(0, 0, 0);
        menu->Choose(CmdDelete);
    });
    EXPECT_TRUE(Host.Commands.empty()) << "another item must not be deleted in its place";
}

TEST_F(Daily, ATapOnEmptySpaceClearsTheSelection)
{
    Fill(1);
    Open();
    ASSERT_EQ(SelectedId(), 1u);
    Press({100, 180});
    Release({100, 180});
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    EXPECT_TRUE(Host.Commands.empty());
}

TEST_F(Daily, ATapOnTheCheckBoxTogglesWithoutAMenu)
{
    auto task = std::make_unique<CCalendarTask>();
    task->ItemId = 77;
    task->Subject = QStringLiteral("Pay the rent");
    PimStore().FindDay(kToday)->Tasks.push_back(std::move(task));
    Fill(1);
    Open();
    const CPaintingOrderItem& row = *View->Rows().GetAt(1);
    const QRect box = row.m_checkBox.translated(0, row.m_top);
    for (const QPoint at : {box.center(), box.topLeft() - QPoint(4, 4)}) {
        Host.Commands.clear();
        Press(at);
        Release(at);
        EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    }
    for (const bool complete : {false, true}) { // beside it the menu opens
        static_cast<CTask*>(row.m_item)->Complete = complete;
        Host.Commands.clear();
        QStringList texts;
        View->show();
        QTimer::singleShot(0, View.get(), [&] {
            CTouchMenu* menu = CTouchMenu::Current();
            for (int i = 0; i < menu->GetRowCount(); ++i)
                texts << menu->GetRow(i).Text;
            menu->Choose(CmdToggleTask);
        });
        Press(box.topRight() + QPoint(6, 0));
        Release(box.topRight() + QPoint(6, 0));
        EXPECT_EQ(texts, (QStringList{complete ? "Activate task" : "Complete Task", "Delete", "Duplicate"}));
        EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    }
    Host.Commands.clear();
    EXPECT_TRUE(View->OnKey('9'));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
}

TEST_F(Daily, RightClickAndMenuKeyOpenTheItemsMenu)
{
    Fill(3);
    Open();
    View->show();
    for (const bool byKey : {false, true}) {
        QString title;
        QTimer::singleShot(0, View.get(), [&] {
            title = CTouchMenu::Current()->GetTitle();
            CTouchMenu::Current()->Choose(CmdDuplicate);
        });
        const QPoint at(100, View->Rows().GetAt(2)->m_top + 5);
        QContextMenuEvent event(byKey ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse, at, at);
        QCoreApplication::sendEvent(View.get(), &event);
        EXPECT_EQ(title, "Item 2");
        EXPECT_EQ(Host.Commands, std::vector<int>{CmdDuplicate});
        Host.Commands.clear();
    }
}

TEST_F(Daily, ARightClickEndsTheTouchThatIsUnderWay)
{
    Fill(3);
    Open();
    const QPoint at(100, View->ListArea().y() + 5);
    Press(at);
    bool second = false;
    QTimer::singleShot(0, View.get(), [&] {
        CTouchMenu* menu = CTouchMenu::Current();
        QTimer look; // runs only under a second menu
        QObject::connect(&look, &QTimer::timeout, View.get(), [&] {
            second = true;
            CTouchMenu::Current()->Choose(CmdNone);
        });
        look.start(0);
        Release(at); // the finger's button goes up over the menu
        menu->Choose(CmdNone);
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, at);
    QCoreApplication::sendEvent(View.get(), &event);
    EXPECT_FALSE(second) << "a menu over the menu";
    EXPECT_FALSE(View->Scroller().IsTouched());
}

TEST_F(Daily, SpecialEventsOpenNoMenu)
{
    auto birthday = Appointment(5, QStringLiteral("Ada"), kToday, kToday + 1);
    birthday->Kind = kKindBirthday;
    birthday->AllDay = true;
    Add(std::move(birthday));
    Open();
    Tap(0);
    EXPECT_EQ(SelectedId(), 5u);
    EXPECT_TRUE(Host.Commands.empty());
}

TEST_F(Daily, TheFingerMenuOffersWhatTheSelectionAllows)
{
    Fill(1);
    Open();
    CTouchMenu with;
    EXPECT_TRUE(View->FillTouchMenu(with));
    ASSERT_EQ(with.GetRowCount(), 2);
    EXPECT_EQ(with.GetRow(0).Command, CmdDelete);
    EXPECT_EQ(with.GetRow(0).ImageId, 711);
    EXPECT_EQ(with.GetRow(1).Command, CmdDuplicate);
    EXPECT_FALSE(with.GetRow(1).Text.isEmpty());
    View->MoveDate(1);
    CTouchMenu without;
    EXPECT_TRUE(View->FillTouchMenu(without));
    EXPECT_EQ(without.GetRowCount(), 0);
}

TEST_F(Daily, ADraggedListScrollsAndSelectsNothing)
{
    Fill(30);
    Open();
    Press({100, 150});
    MoveTo({100, 140});
    MoveTo({100, 100});
    EXPECT_EQ(View->Scroller().Scroll(), -50);
    EXPECT_EQ(SelectedId(), 1u);
    Release({100, 100});
    EXPECT_TRUE(Host.Commands.empty());
}

// ---- the window

TEST_F(Daily, KeysArriveThroughTheWindow)
{
    Fill(3);
    Open();
    QTest::keyClick(View.get(), Qt::Key_Down);
    EXPECT_EQ(SelectedId(), 2u);
    QTest::keyClick(View.get(), Qt::Key_F1);
    QTest::keyClick(View.get(), Qt::Key_F2);
    EXPECT_EQ(Host.Keys, std::vector<int>({112, 113}));
    QKeyEvent other(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(View.get(), &other);
    EXPECT_FALSE(other.isAccepted()) << "the frame gets what the view leaves";
}

TEST_F(Daily, TheWindowShowsTheSurfacePixelForPixel)
{
    g_Settings.DailyView.IncludeTimelines = 1;
    Fill(6);
    Open();
    EXPECT_EQ(View->grab().toImage().convertToFormat(QImage::Format_RGB32), View->Snapshot());
}

TEST_F(Daily, AForcedDensityDoublesEveryMeasure)
{
    Fill(3);
    SetDensity(192);
    Open({480, 640});
    EXPECT_EQ(View->Snapshot().size(), QSize(480, 640));
    const CPaintingOrderItem& row = *View->Rows().GetAt(1);
    EXPECT_EQ(row.m_top - View->Rows().GetAt(0)->m_bottom, 2);
    EXPECT_GT(row.m_bottom - row.m_top, 50);
}

// Another view in front lets days go from the cache; nothing of ours may point into them.
TEST_F(Daily, AHiddenViewHoldsNoRows)
{
    Fill(5);
    Open();
    View->OnDeactivate();
    EXPECT_TRUE(View->Rows().IsEmpty());
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    PimStore().Clear();
    View->resize(300, 200);
    QTest::mouseClick(View.get(), Qt::LeftButton, {}, {20, 20});
    EXPECT_FALSE(View->Snapshot().isNull());
    EXPECT_TRUE(Host.Commands.empty());
    View->Refresh();
    EXPECT_NE(View->GetSelectedItem() == nullptr, View->Rows().GetCount() > 0);
}
