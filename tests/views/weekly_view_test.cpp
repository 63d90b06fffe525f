#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "drawing/paint.h"
#include "touch/command_ids.h"
#include "touch/virtual_keys.h"
#include "views/weekly_view.h"
#include "views_fixture.h"

namespace
{
class Week : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        g_Settings.General.WeekStartDay = 1;
    }
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    CWeeklyView& Open(QSize size = {240, 280})
    {
        View = std::make_unique<CWeeklyView>(Host, nullptr);
        View->resize(size);
        View->OnCreate();
        View->Refresh();
        return *View;
    }
    void Fill(int day, int count)
    {
        for (int n = 0; n < count; ++n)
            Add(Appointment(quint32(n + 1), QStringLiteral("Item %1").arg(n), day + 0.3 + n * 0.01,
                            day + 0.35 + n * 0.01),
                day);
    }
    QPoint MiddleOf(int day) const { return View->Tiles().TileForDay(day - View->FirstDay()).center(); }
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
    void Wheel(QPoint at, int notches)
    {
        QWheelEvent event(at, at, {}, {0, 120 * notches}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    QRgb TileColor(int day) const
    {
        const QRect tile = View->Tiles().TileForDay(day - View->FirstDay());
        return View->Snapshot().pixel(tile.x() + tile.width() / 2, tile.y() + 4);
    }
    static int Cursor() { return DayNumber(PimStore().CursorDate()); }
    static QRgb Color(int id) { return ToQColor(g_Settings.ResolveColor(id)).rgb(); }

    CRecordingHost Host;
    std::unique_ptr<CWeeklyView> View;
};
} // namespace

TEST_F(Week, TheWeekBeginsWhereTheSettingsSay)
{
    const struct {
        int WeekStart;
        bool OnToday;
        int Date, First; // days from today, a Tuesday
    } cases[] = {
        {0, false, 0, -2}, {1, false, 0, -1}, {2, false, 0, -3}, {0, false, 5, 5},
        {1, false, 5, -1}, {1, false, 6, 6},  {2, false, 4, 4},  {2, false, 3, -3},
        {0, true, 0, 0},   {1, true, 6, 0},   {2, true, -1, -7}, {1, true, 7, 7},
    };
    for (const auto& c : cases) {
        g_Settings.General.WeekStartDay = c.WeekStart;
        g_Settings.WeekView.StartOnToday = c.OnToday;
        PimStore().LoadRange(kToday + c.Date, kToday + c.Date, kToday + c.Date);
        Open();
        EXPECT_EQ(View->FirstDay(), kToday + c.First) << c.WeekStart << c.OnToday << ' ' << c.Date;
        for (int n = 0; n < 7; ++n) {
            const CDayItems* day = PimStore().FindDay(View->FirstDay() + n);
            ASSERT_NE(day, nullptr);
            View->Snapshot();
            EXPECT_EQ(day->CellRect, View->Tiles().TileForDay(n));
        }
        EXPECT_TRUE(View->PopOutRect().contains(MiddleOf(kToday + c.Date)));
    }
}

TEST_F(Week, TilesTellTodayAndTheWeekend)
{
    g_Settings.WeekView.PopOut = 0;
    for (const int weekStart : {0, 1, 2}) {
        g_Settings.General.WeekStartDay = weekStart;
        PimStore().LoadRange(kToday + 1, kToday, kToday);
        Open({480, 560});
        const int weekend[3][2] = {{5, 6}, {6, 0}, {4, 5}}; // days of the week, 0 Sunday
        for (int n = 0; n < 7; ++n) {
            const int day = View->FirstDay() + n;
            if (day == Cursor())
                continue;
            const int weekday = DayOfWeekOf(day);
            const bool free = weekday == weekend[weekStart][0] || weekday == weekend[weekStart][1];
            EXPECT_EQ(TileColor(day), Color(day == kToday ? 5010
                                            : free        ? 5005
                                                          : 5003))
                << weekStart << ' ' << n;
        }
    }
}

TEST_F(Week, EmptyDaysAreBareOrSaySo)
{
    QImage pictures[2];
    for (const int hide : {0, 1}) {
        g_Settings.WeekView.HideNoAppointments = hide;
        Open();
        pictures[hide] = View->Snapshot();
    }
    for (int n = 0; n < 7; ++n) {
        const QRect tile = View->Tiles().TileForDay(n).adjusted(12, 8, -30, -20);
        EXPECT_NE(pictures[0].copy(tile), pictures[1].copy(tile)) << n;
    }
}

TEST_F(Week, StartTimesAreLeftOutWhenUnwanted)
{
    QImage pictures[2];
    for (const int times : {0, 1}) {
        g_Settings.WeekView.IncludeStartTime = times;
        PimStore().Clear();
        PimStore().LoadRange(kToday, kToday, kToday);
        Fill(kToday + 1, 1);
        Open();
        pictures[times] = View->Snapshot().copy(View->Tiles().TileForDay(2));
    }
    EXPECT_NE(pictures[0], pictures[1]);
}

TEST_F(Week, TheSelectedTileAloneIsPaintedForAStep)
{
    Fill(kToday, 3);
    Open();
    const QImage before = View->Snapshot();
    View->OnKey(kKeyRight);
    const QImage after = View->Snapshot();
    EXPECT_NE(before, after);
    View->OnKey(kKeyLeft);
    EXPECT_EQ(View->Snapshot(), before);
    Open();
    EXPECT_EQ(View->Snapshot(), before) << "the same as painted anew";
}

TEST_F(Week, KeysFollowTheLayout)
{
    const struct {
        int Vertical, Key, Days;
    } cases[] = {{0, kKeyLeft, -1},   {0, kKeyRight, 1},    {0, kKeyUp, -7}, {0, kKeyDown, 7},
                 {1, kKeyLeft, -7},   {1, kKeyRight, 7},    {1, kKeyUp, -1}, {1, kKeyDown, 1},
                 {0, kKeyPageUp, -7}, {1, kKeyPageDown, 7}, {0, '1', -28},   {0, '3', 31},
                 {0, '4', -365},      {0, '6', 365},        {0, '2', 0},     {1, kKeyHome, 0}};
    for (const auto& c : cases) {
        g_Settings.WeekView.VerticalScrolling = c.Vertical;
        PimStore().LoadRange(kToday, kToday, kToday);
        Open();
        EXPECT_TRUE(View->OnKey(c.Key));
        EXPECT_EQ(Cursor() - kToday, c.Days) << c.Vertical << ' ' << c.Key;
        EXPECT_TRUE(View->PopOutRect().contains(MiddleOf(Cursor())));
    }
    View->OnKey('5');
    EXPECT_EQ(Host.Commands, std::vector<int>{CmdGoTo});
    View->OnKey(kKeyReturn);
    EXPECT_EQ(Host.Shown, std::vector<int>{kViewWeekly});
    EXPECT_FALSE(View->OnKey('7'));
}

TEST_F(Week, ATapSelectsATileAndASecondOneOpensTheDay)
{
    for (int day = kToday - 1; day <= kToday + 5; ++day) {
        PimStore().LoadRange(day == kToday ? kToday + 1 : kToday, kToday, kToday);
        Open();
        Host.Shown.clear();
        Tap(MiddleOf(day));
        EXPECT_EQ(Cursor(), day);
        EXPECT_TRUE(Host.Shown.empty()) << "the first tap only selects";
        Tap(MiddleOf(day));
        EXPECT_EQ(Host.Shown, std::vector<int>{kViewWeekly});
    }
}

TEST_F(Week, AStrokeThatBeginsInTheSelectedTileMovesNoDate)
{
    Open();
    const QPoint inside = MiddleOf(kToday);
    Send(QEvent::MouseButtonPress, inside);
    Send(QEvent::MouseMove, inside - QPoint(50, 0));
    Send(QEvent::MouseButtonRelease, inside - QPoint(50, 0));
    EXPECT_EQ(Cursor(), kToday);
}

TEST_F(Week, OnlyTheSelectedTileScrolls)
{
    Fill(kToday, 30);
    Open();
    EXPECT_GT(View->Scroller().ContentHeight(), View->Scroller().Height());
    EXPECT_EQ(View->Scroller().Area(), View->PopOutRect());
    const QPoint at = MiddleOf(kToday);
    const QRect rest = View->Tiles().TileForDay(4);
    const QImage before = View->Snapshot();
    Wheel(at, -1);
    EXPECT_LT(View->Scroller().Scroll(), 0);
    EXPECT_EQ(Cursor(), kToday);
    EXPECT_NE(View->Snapshot(), before);
    EXPECT_EQ(View->Snapshot().copy(rest), before.copy(rest));
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::ShiftModifier);
    for (int n = 0; n < 5; ++n)
        QCoreApplication::sendEvent(View.get(), &up);
    EXPECT_EQ(View->Scroller().Scroll(), 0);
    Wheel(MiddleOf(kToday + 4), -1);
    EXPECT_EQ(Cursor(), kToday + 7) << "elsewhere the wheel turns weeks";
    EXPECT_EQ(View->Scroller().Scroll(), 0);
}

TEST_F(Week, ANoticeKeepsThePlaceInTheTile)
{
    Fill(kToday, 30);
    Open();
    View->Scroller().SetScroll(0, -60);
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->Scroller().Scroll(), -60);
    PimStore().FindDay(kToday)->Appointments.clear();
    View->OnDataChanged(0, 0, 0);
    EXPECT_EQ(View->Scroller().Scroll(), 0);
    View->OnDeactivate();
    PimStore().Clear();
    View->OnDataChanged(0, 0, 0); // hidden, and nothing in the cache
    PimStore().LoadRange(kToday + 40, kToday + 40, kToday + 40);
    View->Refresh();
    EXPECT_TRUE(View->PopOutRect().contains(MiddleOf(kToday + 40)));
}

TEST_F(Week, AnySizeIsFilled)
{
    Fill(kToday, 5);
    for (const int place : {0, 1, 2}) {
        g_Settings.WeekView.IncludeTimelinesBar = place;
        Open();
        for (const QSize size :
             {QSize(240, 320), QSize(320, 170), QSize(30, 30), QSize(1, 1), QSize(900, 600)}) {
            View->resize(size);
            View->OnResize();
            EXPECT_EQ(View->Snapshot().size(), size);
            EXPECT_EQ(View->Tiles().Area().height() + View->Tiles().Bar().height(), size.height());
        }
    }
}
