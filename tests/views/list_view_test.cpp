#include <QContextMenuEvent>
#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>

#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "touch/command_ids.h"
#include "touch/timer_ids.h"
#include "touch/touch_menu.h"
#include "touch/virtual_keys.h"
#include "views/daily_view.h"
#include "views/list_view.h"
#include "views/monthly_view.h"
#include "views/weekly_view.h"
#include "views_fixture.h"

namespace
{
constexpr int kTitle = 0, kPlaceholder = 1;

class List : public CViewTest
{
protected:
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    CListView& Open(QSize size = {240, 200})
    {
        View = std::make_unique<CListView>(Host, nullptr);
        View->resize(size);
        View->OnCreate();
        View->Refresh();
        return *View;
    }
    void LoadWeek() { PimStore().LoadRange(kToday, kToday - 7, kToday + 14); }
    static CAppointment& AddOn(int day, quint32 id, double hour = 9)
    {
        return Add(Appointment(id, QStringLiteral("Item %1").arg(id), day + hour / 24, day + (hour + 1) / 24),
                   day);
    }
    static void AddTask(int day, quint32 id)
    {
        auto task = std::make_unique<CCalendarTask>();
        task->ItemId = task->RecordOid = id;
        task->Subject = QStringLiteral("Task %1").arg(id);
        PimStore().FindDay(day)->AddTask(std::move(task), true);
    }
    static int KindOf(const CPaintingOrderItem& row) { return row.GetItem()->GetKind(); }
    // "T" a title, "-" a placeholder, else the item's number.
    QString Shape() const
    {
        QString text;
        for (const auto& row : View->Rows())
            text += KindOf(*row) == kTitle         ? QStringLiteral("T")
                    : KindOf(*row) == kPlaceholder ? QStringLiteral("-")
                                                   : QString::number(row->m_identity.ItemId);
        return text;
    }
    const CPaintingOrderItem* RowOf(quint32 id) const
    {
        for (const auto& row : View->Rows()) {
            if (row->m_identity.ItemId == id)
                return row.get();
        }
        return nullptr;
    }
    const CPaintingOrderItem* TitleOf(int day) const
    {
        for (const auto& row : View->Rows()) {
            if (KindOf(*row) == kTitle && row->m_date == day)
                return row.get();
        }
        return nullptr;
    }
    QPoint PlaceOf(const CPaintingOrderItem& row, int x = 100) const
    {
        return {x, (row.m_top + row.m_bottom) / 2 + View->Scroller().Scroll()};
    }
    void Send(QEvent::Type type, QPoint at)
    {
        const bool release = type == QEvent::MouseButtonRelease, move = type == QEvent::MouseMove;
        QMouseEvent event(type, at, at, move ? Qt::NoButton : Qt::LeftButton,
                          release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    void Tap(QPoint at)
    {
        Send(QEvent::MouseButtonPress, at);
        Send(QEvent::MouseButtonRelease, at);
    }
    static int Cursor() { return DayNumber(PimStore().CursorDate()); }

    CRecordingHost Host;
    std::unique_ptr<CListView> View;
};
} // namespace

// ---- rows

TEST_F(List, TheSevenDaysBeginWhereTheSettingsSay)
{
    const struct {
        int WeekStart;
        bool OnToday;
        int Date, First; // days from today, a Tuesday
    } cases[] = {
        {0, false, 0, -2}, {1, false, 0, -1}, {2, false, 0, -3}, {0, false, -2, -2}, {0, false, 4, -2},
        {0, false, 5, 5},  {1, false, 5, -1}, {1, false, 6, 6},  {2, false, 4, 4},   {2, false, -3, -3},
        {0, true, 0, 0},   {1, true, 0, 0},   {2, true, 6, 0},   {1, true, -1, -7},  {1, true, 7, 7},
    };
    for (const auto& c : cases) {
        g_Settings.General.WeekStartDay = c.WeekStart;
        g_Settings.ListView.StartOnToday = c.OnToday;
        PimStore().LoadRange(kToday + c.Date, kToday + c.Date, kToday + c.Date);
        Open();
        EXPECT_EQ(View->FirstDay(), kToday + c.First) << c.WeekStart << c.OnToday << ' ' << c.Date;
        EXPECT_EQ(View->Rows().GetAt(0)->m_date, kToday + c.First);
        EXPECT_EQ(Cursor(), kToday + c.Date);
    }
}

TEST_F(List, EmptyDaysShowAsChosen)
{
    const struct {
        int EmptyDays, IncludeTasks;
        const char* Shape;
    } cases[] = {{0, 1, "T-T12T-T7T-T-T-"},
                 {1, 1, "T12T7"},
                 {0, 0, "T-T12T-T-T-T-T-"},
                 {1, 0, "T12"},
                 {2, 1, "TT12TT7T-TT"}};
    for (const auto& c : cases) {
        g_Settings.ListView.EmptyDays = c.EmptyDays;
        g_Settings.Tasks.IncludeInCalendar = c.IncludeTasks;
        PimStore().Clear();
        LoadWeek();
        AddOn(kToday, 1, 8);
        AddOn(kToday, 2, 9);
        AddTask(kToday + 2, 7);
        AddOn(kToday + 3, 9).Visible = false;
        for (const int day : {0, 2})
            PimStore().FindDay(kToday + day)->Collapsed = false;
        Open();
        EXPECT_EQ(Shape(), c.Shape) << c.EmptyDays << c.IncludeTasks;
    }
}

TEST_F(List, AnEmptyWeekWithoutItsDaysSaysSo)
{
    g_Settings.ListView.EmptyDays = 1;
    Open();
    EXPECT_TRUE(View->Rows().IsEmpty());
    EXPECT_EQ(View->GetSelectedItem(), nullptr);
    EXPECT_EQ(View->Scroller().ContentHeight(), 0);
    const QImage picture = View->Snapshot();
    int ink = 0;
    for (int x = 0; x < 200; ++x) {
        for (int y = 0; y < 30; ++y)
            ink += picture.pixel(x, y) != 0xFFFFFFFF;
    }
    EXPECT_GT(ink, 50);
    for (const int key : {int(kKeyReturn), int('9')})
        View->OnKey(key);
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
    View->OnKey(kKeyDown); // from an empty list the days go on, too
    EXPECT_EQ(Cursor(), kToday + 1);
}

TEST_F(List, RowsFollowOneAnotherBelowTheMargin)
{
    for (const int density : {96, 192}) {
        SetDensity(density);
        LoadWeek();
        Open({480, 400});
        int top = D(1);
        for (const auto& row : View->Rows()) {
            EXPECT_EQ(row->m_top, top);
            EXPECT_GE(row->m_bottom, top + D(13));
            top = row->m_bottom + D(1);
        }
        EXPECT_EQ(View->Scroller().ContentHeight(), top);
    }
}

// ---- collapsing

TEST_F(List, ATapOnTheBoxTogglesTheDayAndKeepsThePlace)
{
    LoadWeek();
    for (quint32 n = 1; n <= 9; ++n)
        AddOn(kToday, n, 8 + n * 0.2);
    Open({240, 120});
    const int edge = D(2) + g_ImageStore.Image(PictureExpanded).Width() + D(8);
    ASSERT_TRUE(View->IsOnExpandBox(edge));
    ASSERT_FALSE(View->IsOnExpandBox(edge + 1));
    for (const bool collapsed : {true, false}) {
        const int scroll = View->Scroller().Scroll();
        Tap(PlaceOf(*TitleOf(kToday), edge));
        EXPECT_EQ(PimStore().FindDay(kToday)->Collapsed, collapsed);
        EXPECT_EQ(RowOf(1) == nullptr, collapsed);
        EXPECT_EQ(View->SelectedRow(), TitleOf(kToday));
        EXPECT_EQ(View->Scroller().Scroll(), scroll);
    }
    Tap(PlaceOf(*TitleOf(kToday), edge + 1));
    EXPECT_FALSE(PimStore().FindDay(kToday)->Collapsed) << "beside the box the menu opens";
    EXPECT_TRUE(View->OnKey(kKeyReturn));
    EXPECT_TRUE(PimStore().FindDay(kToday)->Collapsed);
}

TEST_F(List, AllDaysOpenAndCloseByCommand)
{
    LoadWeek();
    AddOn(kToday, 1);
    Open();
    View->OnCommand(CmdTasksCollapseAll);
    EXPECT_EQ(Shape(), "TTTTTTT");
    EXPECT_FALSE(PimStore().FindDay(kToday + 7)->Collapsed) << "not of the seven";
    View->OnCommand(CmdTasksExpandAll);
    EXPECT_EQ(Shape(), "T-T1T-T-T-T-T-");
    CTouchMenu menu;
    EXPECT_TRUE(View->FillTouchMenu(menu));
    std::vector<int> commands;
    for (int n = 0; n < menu.GetRowCount(); ++n)
        commands.push_back(menu.GetRow(n).Command);
    for (const int wanted : {CmdTasksExpandAll, CmdTasksCollapseAll})
        EXPECT_EQ(std::count(commands.begin(), commands.end(), wanted), 1);
}

// ---- selection

TEST_F(List, TheSelectionIsFoundAgainByItemAndDay)
{
    LoadWeek();
    AddOn(kToday, 1);
    AddOn(kToday + 1, 1);
    AddOn(kToday + 1, 2);
    Open({240, 300});
    EXPECT_EQ(View->SelectedRow(), TitleOf(kToday));
    View->OnKey(kKeyDown);
    View->OnKey(kKeyDown);
    View->OnKey(kKeyDown);
    ASSERT_EQ(View->SelectedIdentity().ItemId, 1u);
    ASSERT_EQ(View->SelectedDay(), kToday + 1);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->SelectedDay(), kToday + 1);
    PimStore().FindDay(kToday + 1)->RemoveByOid(1, true);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->SelectedIdentity().ItemId, 1u);
    EXPECT_EQ(View->SelectedDay(), kToday) << "where the item has gone to";
    PimStore().FindDay(kToday)->RemoveByOid(1, true);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->SelectedRow(), TitleOf(kToday + 1)) << "the cursor's day, when the item is gone";
}

TEST_F(List, WhatIsPressedBringsTheCursorDate)
{
    LoadWeek();
    AddOn(kToday + 1, 5);
    Open({240, 300});
    const QPoint at = PlaceOf(*RowOf(5));
    Send(QEvent::MouseButtonPress, at);
    View->Scroller().OnTimer(kTimerPress);
    EXPECT_EQ(View->SelectedIdentity().ItemId, 5u);
    EXPECT_EQ(Cursor(), kToday + 1);
    EXPECT_EQ(View->FirstDay(), kToday - 1);
}

TEST_F(List, KeysWalkThroughDaysAndOverTheWeeksEnds)
{
    AddOn(kToday, 1);
    Open({240, 300});
    for (int n = 0; n < 30 && View->FirstDay() == kToday - 1; ++n)
        View->OnKey(kKeyDown);
    EXPECT_EQ(View->FirstDay(), kToday + 6);
    EXPECT_EQ(View->SelectedRow(), TitleOf(kToday + 6));
    EXPECT_EQ(Cursor(), kToday + 6);
    View->OnKey(kKeyUp);
    EXPECT_EQ(View->FirstDay(), kToday - 1);
    EXPECT_EQ(View->SelectedRow(), TitleOf(kToday + 5));
}

TEST_F(List, TheSelectedRowIsAlwaysInSight)
{
    LoadWeek();
    for (quint32 n = 1; n <= 60; ++n)
        AddOn(kToday + int(n % 5), n, 8 + n * 0.1);
    Open({240, 150});
    for (const int direction : {kKeyDown, kKeyUp}) {
        for (int n = 0; n < 70; ++n) {
            View->OnKey(direction);
            const int top = View->SelectedRow()->m_top + View->Scroller().Scroll();
            const int bottom = View->SelectedRow()->m_bottom + View->Scroller().Scroll();
            ASSERT_GE(top, 0) << n;
            ASSERT_LE(bottom, 150) << n;
        }
    }
}

TEST_F(List, KeysGoToDates)
{
    const struct {
        int Key, Day;
    } cases[] = {{kKeyLeft, kToday - 7},     {kKeyRight, kToday + 7}, {kKeyPageUp, kToday - 7},
                 {kKeyPageDown, kToday + 7}, {'1', Day(2026, 2, 17)}, {'3', Day(2026, 4, 17)},
                 {'4', Day(2025, 3, 17)},    {'6', Day(2027, 3, 17)}, {'2', kToday},
                 {kKeyHome, kToday}};
    for (const auto& c : cases) {
        PimStore().LoadRange(kToday, kToday, kToday);
        Open();
        EXPECT_TRUE(View->OnKey(c.Key));
        EXPECT_EQ(Cursor(), c.Day) << c.Key;
        EXPECT_TRUE(View->FirstDay() <= c.Day && c.Day < View->FirstDay() + 7);
    }
    View->OnKey('5');
    View->OnKey('9');
    EXPECT_EQ(Host.Commands, std::vector<int>({CmdGoTo, CmdToggleTask}));
    EXPECT_FALSE(View->OnKey('7'));
}

TEST_F(List, ADateFurtherDownOpensAtTheTop)
{
    LoadWeek();
    for (int day = -1; day < 6; ++day) {
        for (quint32 n = 1; n <= 12; ++n)
            AddOn(kToday + day, quint32((day + 2) * 100) + n, 8 + n * 0.2);
    }
    PimStore().LoadRange(kToday + 2, kToday + 2, kToday + 2);
    Open();
    EXPECT_EQ(View->SelectedRow(), TitleOf(kToday + 2));
    EXPECT_EQ(View->Scroller().Scroll(), -TitleOf(kToday + 2)->m_top);
    View->OnKey(kKeyDown);
    View->Refresh();
    EXPECT_EQ(View->SelectedIdentity().ItemId, 401u) << "the same day, the same row";
    PimStore().LoadRange(kToday - 1, kToday - 1, kToday - 1);
    View->Refresh();
    EXPECT_EQ(View->Scroller().Scroll(), 0);
}

TEST_F(List, TheCheckBoxHasAWideMargin)
{
    LoadWeek();
    AddTask(kToday, 7);
    Open({240, 300});
    const CPaintingOrderItem& row = *RowOf(7);
    const QRect box = row.m_checkBox.translated(0, row.m_top + View->Scroller().Scroll());
    Tap(box.topRight() + QPoint(8, 0));
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdToggleTask});
}

// ---- pictures

TEST_F(List, AScrolledFrameIsTheSameAsOnePaintedAnew)
{
    LoadWeek();
    for (quint32 n = 1; n <= 40; ++n)
        AddOn(kToday + int(n % 4), n, 8 + n * 0.1);
    for (const int popOut : {0, 2}) {
        g_Settings.ListView.PopOut = popOut;
        Open();
        for (const int scroll : {0, -7, -300, -299, 40, -2000, 0}) {
            View->Scroller().SetScroll(0, scroll);
            const QImage scrolled = View->Snapshot();
            View->ForgetPictures();
            View->Scroller().Redraw(false);
            ASSERT_EQ(View->Snapshot(), scrolled) << "at " << scroll << ", pop-out " << popOut;
        }
    }
}

// ---- with the other views

TEST_F(List, AllViewsShareTheDateAndItsItems)
{
    PimStore().LoadRange(kToday + 3, kToday - 14, kToday + 20);
    for (int day = 1; day <= 6; ++day) {
        for (int n = 0; n < day % 3; ++n)
            AddOn(kToday + day, quint32(day * 10 + n));
    }
    Open({240, 300});
    CDailyView daily(Host, nullptr);
    CWeeklyView weekly(Host, nullptr);
    CMonthlyView monthly(Host, nullptr);
    CCalendarView* const views[] = {View.get(), &daily, &weekly, &monthly};
    for (CCalendarView* view : views) {
        view->resize(240, 280);
        view->Create();
        view->Refresh();
    }
    int expected = kToday + 3;
    for (CCalendarView* mover : views) {
        mover->OnKey('3');
        mover->OnKey('1');
        mover->MoveDate(-1);
        mover->MoveDate(1);
        mover->OnKey(kKeyRight);
        mover->OnKey(kKeyLeft);
        for (CCalendarView* view : views) {
            view->Refresh();
            EXPECT_EQ(Cursor(), expected) << mover->GetViewKind() << " to " << view->GetViewKind();
        }
        EXPECT_EQ(View->SelectedRow(), TitleOf(expected));
        EXPECT_TRUE(
            weekly.PopOutRect().contains(weekly.Tiles().TileForDay(expected - weekly.FirstDay()).center()));
    }
    for (int day = kToday + 1; day <= kToday + 6; ++day) {
        PimStore().LoadRange(day, day, day);
        for (CCalendarView* view : views)
            view->Refresh();
        std::vector<quint32> listed, shown, quick;
        for (const auto& row : View->Rows()) {
            if (row->m_item && row->m_date == day)
                listed.push_back(row->m_identity.ItemId);
        }
        for (const auto& row : daily.Rows())
            shown.push_back(row->m_identity.ItemId);
        for (const auto& row : monthly.Rows())
            quick.push_back(row.Item.ItemId);
        EXPECT_EQ(listed.size(), size_t((day - kToday) % 3));
        EXPECT_EQ(listed, shown);
        EXPECT_EQ(listed, quick);
    }
}

TEST_F(List, TitlesTellTheRangeAndResizingKeepsTheDays)
{
    Open();
    const QString before = View->GetTitleText();
    EXPECT_TRUE(before.contains(QStringLiteral(" - "))) << qPrintable(before);
    View->OnKey(kKeyRight);
    EXPECT_NE(View->GetTitleText(), before);
    const int rows = View->Rows().GetCount();
    View->resize(480, 90);
    View->OnResize();
    EXPECT_EQ(View->Rows().GetCount(), rows);
    EXPECT_EQ(View->Snapshot().size(), QSize(480, 90));
    View->resize(1, 1);
    View->OnResize();
    EXPECT_EQ(View->Snapshot().size(), QSize(1, 1));
}
