// A hand that strokes sideways over each view of dates, waits and lifts.
#include <QMouseEvent>

#include "touch/timer_ids.h"
#include "views/daily_view.h"
#include "views/list_view.h"
#include "views/monthly_view.h"
#include "views/weekly_view.h"
#include "views_fixture.h"

namespace
{
class DateRun : public CViewTest
{
protected:
    void TearDown() override
    {
        View.reset();
        CViewTest::TearDown();
    }
    void Open(int kind)
    {
        PimStore().LoadRange(kToday, kToday - 7, kToday + 7);
        if (kind == kViewDaily)
            View = std::make_unique<CDailyView>(Host, nullptr);
        else if (kind == kViewList)
            View = std::make_unique<CListView>(Host, nullptr);
        else if (kind == kViewWeekly)
            View = std::make_unique<CWeeklyView>(Host, nullptr);
        else
            View = std::make_unique<CMonthlyView>(Host, nullptr);
        View->resize(240, 280);
        View->Create();
        View->Refresh();
        View->show();
    }
    void Send(QEvent::Type type, QPoint at)
    {
        const bool release = type == QEvent::MouseButtonRelease, move = type == QEvent::MouseMove;
        QMouseEvent event(type, at, at, move ? Qt::NoButton : Qt::LeftButton,
                          release ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(View.get(), &event);
    }
    // The shown day is the cursor; months show one of their own, so only the month counts.
    static int Shown(int kind)
    {
        const int day = DayNumber(PimStore().CursorDate());
        const SystemTime time = SystemTimeOf(day);
        return kind == kViewMonthly ? time.wYear * 12 + time.wMonth : day;
    }

    CRecordingHost Host;
    std::unique_ptr<CCalendarView> View;
};
} // namespace

TEST_F(DateRun, AHeldStrokeRunsThroughTheViewsOwnUnits)
{
    const struct {
        int Kind, Unit, Y; // what a step adds to Shown(); off the popped-out tile
    } views[] = {{kViewDaily, 1, 60}, {kViewList, 7, 60}, {kViewWeekly, 7, 200}, {kViewMonthly, 1, 60}};
    const struct {
        int StrokeTo, HoldAt, Animated, Invert, Period, Ticks, Steps;
    } cases[] = {
        {70, 70, 0, 0, -1, 0, 1},     // lifted before the first tick: the neighbour
        {170, 170, 0, 0, -1, 0, -1},  //
        {70, 70, 0, 1, -1, 0, -1},    //
        {70, 70, 0, 0, 800, 3, 3},    // the first tick only shows the strip
        {70, 40, 0, 0, 400, 4, 4},    //
        {70, 2, 0, 0, 100, 6, 6},     //
        {70, 2, 1, 0, 25, 9, 3},      // four ticks a step
        {70, 40, 1, 0, 100, 5, 2},    //
        {170, 150, 0, 0, 800, 3, -3}, //
        {170, 180, 0, 0, 400, 2, -2}, //
        {170, 170, 1, 1, 100, 5, 2},  //
        {70, 2, 0, 1, 100, 4, -4},    //
        {70, 120, 0, 0, 0, 1, 1},     // the middle holds still
    };
    for (const auto& v : views) {
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << "view " << v.Kind << " hold at " << c.HoldAt << " animated "
                                            << c.Animated << " invert " << c.Invert << " ticks " << c.Ticks);
            g_Settings.General.TouchNavAnimation = c.Animated;
            g_Settings.General.TouchNavInvert = c.Invert;
            Open(v.Kind);
            CNumberedTimers& timers = View->DateOverlay().Timers();
            Send(QEvent::MouseButtonPress, {120, v.Y});
            const int before = Shown(v.Kind); // a press on a tile chooses its day
            Send(QEvent::MouseMove, {c.StrokeTo < 120 ? 71 : 169, v.Y});
            EXPECT_FALSE(View->DateOverlay().IsRunning()) << "one pixel is missing";
            Send(QEvent::MouseMove, {c.StrokeTo, v.Y});
            ASSERT_TRUE(View->DateOverlay().IsRunning());
            EXPECT_EQ(timers.PeriodOf(kTimerOverlay), CDateOverlay::kFirstMs);
            Send(QEvent::MouseMove, {c.HoldAt, v.Y});
            for (int n = 0; n < c.Ticks; ++n) {
                timers.Fire(kTimerOverlay);
                EXPECT_EQ(timers.PeriodOf(kTimerOverlay), c.Period > 0 ? c.Period : -1);
            }
            EXPECT_EQ(Shown(v.Kind), before) << "nothing moves before the finger lifts";
            Send(QEvent::MouseButtonRelease, {c.HoldAt, v.Y});
            EXPECT_EQ(Shown(v.Kind), before + c.Steps * v.Unit);
            EXPECT_FALSE(View->DateOverlay().IsRunning());
            EXPECT_EQ(timers.PeriodOf(kTimerOverlay), -1);
            EXPECT_TRUE(Host.Commands.empty());
        }
    }
}

TEST_F(DateRun, AFingerThatAnotherViewCameUnderMovesNoDate)
{
    for (int kind : {kViewDaily, kViewList, kViewWeekly, kViewMonthly}) {
        for (const bool running : {false, true}) {
            SCOPED_TRACE(testing::Message() << "view " << kind << " running " << running);
            Open(kind);
            Send(QEvent::MouseButtonPress, {120, 200});
            if (running)
                Send(QEvent::MouseMove, {170, 200});
            EXPECT_EQ(View->DateOverlay().IsRunning(), running);
            const DATE before = PimStore().CursorDate();
            View->Leave();
            Send(QEvent::MouseMove, {40, 200});
            EXPECT_FALSE(View->DateOverlay().IsRunning());
            Send(QEvent::MouseButtonRelease, {40, 200});
            EXPECT_EQ(PimStore().CursorDate(), before);
            EXPECT_TRUE(Host.Commands.empty());
        }
    }
}

// A second finger, or a first one whose lifting never came: its tap on the tile opens the day.
TEST_F(DateRun, APressEndsTheRunOfAnEarlierFinger)
{
    for (int kind : {kViewDaily, kViewList, kViewWeekly, kViewMonthly}) {
        SCOPED_TRACE(kind);
        Open(kind);
        Send(QEvent::MouseButtonPress, {120, 200});
        Send(QEvent::MouseMove, {170, 200});
        ASSERT_TRUE(View->DateOverlay().IsRunning());
        Send(QEvent::MouseButtonPress, {120, 60});
        EXPECT_FALSE(View->DateOverlay().IsRunning());
        const DATE before = PimStore().CursorDate();
        Send(QEvent::MouseButtonRelease, {120, 60});
        EXPECT_EQ(PimStore().CursorDate(), before);
    }
}

TEST_F(DateRun, AThumbsArcWhileItScrollsMovesNoDate)
{
    for (int kind : {kViewDaily, kViewList, kViewWeekly, kViewMonthly}) {
        Open(kind);
        const int before = Shown(kind);
        Send(QEvent::MouseButtonPress, {120, 60});
        Send(QEvent::MouseMove, {66, 87});
        EXPECT_FALSE(View->DateOverlay().IsRunning()) << kind;
        Send(QEvent::MouseButtonRelease, {66, 87});
        EXPECT_EQ(Shown(kind), before) << kind;
    }
}
