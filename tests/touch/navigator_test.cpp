#include <QPainter>
#include <cmath>

#include "touch/touch_navigator.h"
#include "touch_fixture.h"

namespace
{
constexpr int kWidth = 100, kHeight = 200, kLeft = 10, kTop = 20;

class Navigator : public CTouchTest
{
protected:
    void SetUp() override
    {
        CTouchTest::SetUp();
        Attach(1000);
    }
    void Attach(int contentHeight)
    {
        Client.ContentHeight = contentHeight;
        Nav.Attach(7, nullptr, &Client, kLeft, kTop, kWidth, kHeight);
    }
    // y counts from the area's top.
    void Down(int y) { ASSERT_TRUE(Nav.OnLButtonDown(kLeft + 50, kTop + y)); }
    void Move(int y, int after = 10)
    {
        Time.Advance(after);
        Nav.OnMouseMove(kLeft + 50, kTop + y);
    }
    void Up(int y) { Nav.OnLButtonUp(kLeft + 50, kTop + y); }
    void Fire(int timer) { Nav.Timers().Fire(timer); }
    bool Runs(int timer) { return Nav.Timers().IsRunning(timer); }
    // A drag to `scroll` that ends without a fling.
    void DragTo(int scroll)
    {
        Down(100);
        Move(100 + scroll - Nav.Scroll());
        const int at = 100 + scroll - 0;
        Move(at);
        Move(at);
        Up(at);
    }

    CRecordingClient Client;
    CTouchNavigator Nav;
};
} // namespace

TEST_F(Navigator, TapTellsPressThenTapOnce)
{
    struct {
        const char* Name;
        bool Long;
        std::vector<int> Pauses;
    } const cases[] = {{"short", false, {50}}, {"long", true, {}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        Client.Calls.clear();
        Pauses.clear();
        Nav.SetScroll(0, -30);
        Down(40);
        EXPECT_EQ(Nav.Timers().PeriodOf(kTimerPress), 100);
        if (c.Long)
            Fire(kTimerPress);
        EXPECT_FALSE(c.Long && Runs(kTimerPress)) << "the press delay is one shot";
        Up(40);
        EXPECT_EQ(Client.Story(), "press 60,70; tap 60,70");
        EXPECT_EQ(Pauses, c.Pauses) << "only a press that was not seen yet is shown for a moment";
        EXPECT_FALSE(Runs(kTimerPress));
    }
}

TEST_F(Navigator, ThresholdIsTwelveDesignPixels)
{
    for (const auto& [density, threshold] : {std::pair{96, 12}, {192, 24}, {288, 36}}) {
        SCOPED_TRACE(density);
        g_ScreenMetrics.Init(density, {240, 320});
        Client.Calls.clear();
        Down(100);
        Move(100 - threshold + 1);
        EXPECT_FALSE(Nav.IsDragging());
        Up(100 - threshold + 1);
        EXPECT_TRUE(Client.Story().endsWith(QLatin1String("tap 60,100"))) << Client.Story().toStdString();

        Client.Calls.clear();
        Down(100);
        Move(100 - threshold);
        EXPECT_TRUE(Nav.IsDragging());
        EXPECT_EQ(Nav.Scroll(), -threshold) << "the way to the threshold is made up for";
        EXPECT_FALSE(Runs(kTimerPress));
        Move(100 - threshold);
        Move(100 - threshold);
        Up(100 - threshold);
        EXPECT_EQ(Client.Story(), "drag");
        EXPECT_FALSE(Nav.IsDragging());
        Nav.SetScroll(0, 0);
    }
}

TEST_F(Navigator, DragGoesBeyondBothEndsAndAcrossTheTopEdge)
{
    Down(100);
    Move(150);
    EXPECT_EQ(Nav.Scroll(), 50);
    Move(-1); // one above the area, where a touch must not get lost
    EXPECT_EQ(Nav.Scroll(), -101);
    Move(-40);
    EXPECT_EQ(Nav.Scroll(), -140);
    Move(-900);
    EXPECT_EQ(Nav.Scroll(), -1000);
}

TEST_F(Navigator, PressOutsideRefusesWhatFollows)
{
    EXPECT_FALSE(Nav.OnLButtonDown(kLeft + 50, kTop - 1));
    EXPECT_FALSE(Nav.OnLButtonDown(kLeft + kWidth, kTop + 5));
    EXPECT_FALSE(Nav.OnMouseMove(kLeft + 50, kTop + 50));
    EXPECT_FALSE(Nav.OnLButtonUp(kLeft + 50, kTop + 50));
    EXPECT_EQ(Client.Story(), "");
}

TEST_F(Navigator, SpeedOfAFlingIsTheWayOfTheLastTwoMoves)
{
    struct {
        int FirstMs, SecondMs, Way;
        double Velocity; // 0: no fling
    } const cases[] = {
        {10, 10, -40, -90},                  // 45 / 20 * -40
        {20, 25, -40, -40}, {7, 9, 40, 112}, // 112.5 cut
        {10, 10, 6, 0},                      // less than 7 pixels
        {10, 10, -6, 0},    {10, 10, 7, 15}, // 15.75 cut
        {0, 0, 40, 0},                       // no time measured: stops, divides by nothing
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.FirstMs << '+' << c.SecondMs << "ms " << c.Way);
        Nav.SetScroll(0, -400);
        Down(100);
        Move(60, 30); // passes the threshold
        Move(60 + c.Way / 2, c.FirstMs);
        Time.Advance(c.SecondMs);
        Nav.OnMouseMove(kLeft + 50, kTop + 60 + c.Way);
        // The older of the two samples is where the finger was before both moves.
        Up(60 + c.Way);
        EXPECT_EQ(Nav.Velocity(), c.Velocity);
        EXPECT_EQ(Runs(kTimerFling), c.Velocity != 0);
        EXPECT_EQ(Nav.Timers().PeriodOf(kTimerFling), c.Velocity != 0 ? 70 : -1);
        EXPECT_EQ(Nav.IsDragging(), c.Velocity != 0);
        Nav.ScrollBy(1); // stops whatever moves
    }
}

TEST_F(Navigator, DecayFollowsTheSpeed)
{
    const std::pair<double, double> cases[] = {
        {201, 0.7}, {200.9, 0.8}, {101, 0.8}, {100.9, 0.9}, {41, 0.9}, {40.9, 0.94}, {3, 0.94},
    };
    for (const auto& [speed, factor] : cases) {
        EXPECT_DOUBLE_EQ(CTouchNavigator::Decay(speed), speed * factor);
        EXPECT_DOUBLE_EQ(CTouchNavigator::Decay(-speed), -speed * factor);
    }
}

TEST_F(Navigator, FlingRunsOutAndLandsOnTheSumOfItsSteps)
{
    Attach(100000);
    Nav.SetScroll(0, -5000);
    Down(100);
    Move(60, 30);
    Move(40, 10);
    Move(20, 10);
    Up(20);
    ASSERT_EQ(Nav.Velocity(), -90);
    double velocity = -90;
    int scroll = Nav.Scroll(), steps = 0;
    while (Runs(kTimerFling)) {
        velocity *= std::abs(int(velocity)) > 40 ? 0.9 : 0.94;
        scroll += int(std::ceil(velocity));
        Fire(kTimerFling);
        ASSERT_EQ(Nav.Scroll(), scroll) << "step " << steps;
        ASSERT_LT(++steps, 200);
    }
    EXPECT_LT(std::abs(int(velocity)), 2);
    EXPECT_FALSE(Nav.IsDragging());
    EXPECT_EQ(Nav.Velocity(), 0);
}

TEST_F(Navigator, ReboundStepsAreExact)
{
    struct {
        const char* Name;
        int From;
        std::vector<int> Steps;
    } const cases[] = {
        {"top", 101, {50, 20, 4, 0}}, {"bottom", -901, {-851, -841, -841, -800}}, // gaps 101, 51, 41, 41
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        Nav.SetScroll(0, c.From > 0 ? 0 : -800);
        Down(100);
        const int at = 100 + c.From - Nav.Scroll();
        Move(at);
        Move(at);
        Move(at);
        Up(at);
        ASSERT_EQ(Nav.Scroll(), c.From);
        ASSERT_EQ(Nav.Timers().PeriodOf(kTimerRebound), 50);
        std::vector<int> seen;
        while (Runs(kTimerRebound)) {
            Fire(kTimerRebound);
            seen.push_back(Nav.Scroll());
        }
        EXPECT_EQ(seen, c.Steps);
        EXPECT_FALSE(Nav.IsDragging());
    }
}

TEST_F(Navigator, FlingAgainstAnEndRebounds)
{
    Nav.SetScroll(0, -100);
    Down(50);
    Move(80, 30);
    Move(100, 10);
    Move(120, 10);
    Up(120);
    ASSERT_EQ(Nav.Velocity(), 90);
    int steps = 0;
    while (Runs(kTimerFling) && ++steps < 50)
        Fire(kTimerFling);
    EXPECT_GT(Nav.Scroll(), 0);
    EXPECT_TRUE(Runs(kTimerRebound));
    while (Runs(kTimerRebound))
        Fire(kTimerRebound);
    EXPECT_EQ(Nav.Scroll(), 0);
    EXPECT_FALSE(Nav.IsDragging());
}

TEST_F(Navigator, PressOnAFlyingListOnlyStopsIt)
{
    Nav.SetScroll(0, -400);
    Down(100);
    Move(60, 30);
    Move(40, 10);
    Move(20, 10);
    Up(20);
    Fire(kTimerFling);
    ASSERT_TRUE(Runs(kTimerFling));
    Client.Calls.clear();
    const int scroll = Nav.Scroll();
    Down(100);
    EXPECT_FALSE(Runs(kTimerFling));
    EXPECT_FALSE(Runs(kTimerPress));
    Up(100);
    EXPECT_EQ(Client.Story(), "");
    EXPECT_EQ(Nav.Scroll(), scroll);
    Down(100);
    Up(100);
    EXPECT_EQ(Client.Calls.size(), 2) << "the touch after that is a tap again";
}

TEST_F(Navigator, PressDuringAReboundLetsItGoOn)
{
    // A fling that dies of its own right behind the end is over, and what rebounds is no list in flight.
    Nav.SetScroll(0, -3);
    Down(100);
    Move(112, 30);
    Move(112, 30);
    Move(112, 30);
    Up(112);
    ASSERT_TRUE(Runs(kTimerRebound));
    Fire(kTimerRebound);
    while (Nav.IsDragging())
        Fire(kTimerRebound);
    EXPECT_EQ(Nav.Scroll(), 0);

    DragTo(60);
    ASSERT_TRUE(Nav.IsDragging()) << "a list pulled beyond its end counts as moving";
    Client.Calls.clear();
    Down(100);
    EXPECT_FALSE(Runs(kTimerRebound));
    EXPECT_EQ(Nav.Scroll(), 0) << "and snaps back under the finger";
    Up(100);
    EXPECT_EQ(Client.Story(), "");
}

TEST_F(Navigator, ShortContentReturnsToTheTop)
{
    Attach(50);
    for (const int scroll : {40, -40}) {
        DragTo(scroll);
        ASSERT_EQ(Nav.Scroll(), scroll);
        while (Runs(kTimerRebound))
            Fire(kTimerRebound);
        EXPECT_EQ(Nav.Scroll(), 0);
    }
}

TEST_F(Navigator, EnsureVisibleMovesNoFurtherThanNeeded)
{
    struct {
        int From;
        QRect Rect;
        int Scroll;
    } const cases[] = {
        {0, {0, 50, 10, 40}, 0},        // already there
        {0, {0, 180, 10, 40}, -21},     // excess plus one
        {-500, {0, 100, 10, 40}, -100}, // above
        {-500, {0, -8, 10, 0}, 0},      // a margin above the first row
        {-500, {0, 995, 10, 13}, -800}, // a margin below the last row
        {0, {0, 300, 10, 400}, -300},   // taller than the area: its top wins
    };
    for (const auto& c : cases) {
        Nav.SetScroll(0, c.From);
        Nav.EnsureVisible(c.Rect);
        EXPECT_EQ(Nav.Scroll(), c.Scroll) << c.From << " to " << c.Rect.y() << '+' << c.Rect.height();
    }
}

TEST_F(Navigator, WheelStaysWithinTheEnds)
{
    EXPECT_FALSE(Nav.ScrollBy(50));
    EXPECT_TRUE(Nav.ScrollBy(-50));
    EXPECT_EQ(Nav.Scroll(), -50);
    Nav.ScrollBy(-5000);
    EXPECT_EQ(Nav.Scroll(), -800);
    Attach(50);
    EXPECT_FALSE(Nav.ScrollBy(-10) && Nav.Scroll() != 0);
}

TEST_F(Navigator, ALargerAreaLeavesNoGap)
{
    Nav.SetScroll(0, -800);
    EXPECT_FALSE(Nav.SetSize(kWidth, kHeight));
    EXPECT_TRUE(Nav.SetSize(kWidth, 600));
    EXPECT_EQ(Nav.Scroll(), -400);
    EXPECT_TRUE(Nav.SetArea({0, 0, kWidth, 2000}));
    EXPECT_EQ(Nav.Scroll(), 0);
    EXPECT_EQ(Nav.Surface().size(), QSize(kWidth, 2000));
}

TEST_F(Navigator, CancelledTouchNeitherTapsNorFlings)
{
    Down(100);
    Nav.CancelTouch();
    Up(100);
    EXPECT_EQ(Client.Story(), "");
    EXPECT_FALSE(Runs(kTimerPress));

    Down(100);
    Move(160);
    Nav.CancelTouch();
    Up(160);
    EXPECT_FALSE(Runs(kTimerFling));
    while (Runs(kTimerRebound))
        Fire(kTimerRebound);
    EXPECT_EQ(Nav.Scroll(), 0);
    EXPECT_FALSE(Nav.IsDragging());
}

TEST_F(Navigator, WithoutAClientTheFingerIsStillTracked)
{
    CTouchNavigator bare;
    bare.Attach(0, nullptr, nullptr, 0, 0, 100, 100);
    EXPECT_TRUE(bare.OnLButtonDown(5, 50));
    EXPECT_TRUE(bare.OnLButtonUp(5, 50));
    EXPECT_FALSE(bare.OnTimer(102));
    bare.OnLButtonDown(5, 50);
    EXPECT_TRUE(bare.OnMouseMove(5, 80));
    EXPECT_EQ(bare.Scroll(), 30);
}
