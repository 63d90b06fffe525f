#include <QImage>
#include <QPainter>

#include "platform/locale.h"
#include "settings/fake_locale.h"
#include "settings/settings.h"
#include "touch/date_overlay.h"
#include "touch/screen_transition.h"
#include "touch/timer_ids.h"
#include "touch/virtual_keys.h"
#include "touch_fixture.h"
#include "util/date_time.h"

namespace
{
const int kDay = DayNumberOf(2026, 1, 31);

class Overlay : public CTouchTest
{
protected:
    void SetUp() override
    {
        CTouchTest::SetUp();
        static_cast<CSettingsValues&>(g_Settings) = CSettings();
        g_Settings.General.TouchNavAnimation = 0;
    }
    void TearDown() override
    {
        static_cast<CSettingsValues&>(g_Settings) = CSettings();
        CTouchTest::TearDown();
    }
    void Start(int key, int unit = kOverlayDays, QPoint at = {10, 100}, int day = kDay)
    {
        QImage view(240, 300, QImage::Format_RGB32);
        view.fill(Qt::white);
        Dates.StartGesture(unit, key, day, at, view);
    }
    void Tick(int times = 1)
    {
        while (times-- > 0)
            Dates.OnTimer(kTimerOverlay);
    }
    int Period() { return Dates.Timers().PeriodOf(kTimerOverlay); }
    int Lift()
    {
        Direction = 99;
        return Dates.OnLButtonUp(&Direction);
    }
    int Changes = 0, Direction = 0;
    CFakeLocale Names;
    CDateOverlay Dates{[this](const QRect&) { ++Changes; }};
};
} // namespace

TEST_F(Overlay, TheSpeedFollowsThePlace)
{
    const struct {
        int X, Width, Speed; // inverted, which is as it is computed
    } cases[] = {{0, 240, -3},  {31, 240, -2}, {80, 240, -1}, {81, 240, 0},  {95, 240, 0}, {96, 240, 0},
                 {143, 240, 0}, {144, 240, 1}, {160, 240, 2}, {192, 240, 3}, {239, 240, 4}, {-50, 240, -3},
                 {999, 240, 4}, {1079, 1080, 4}, {648, 1080, 1}, {0, 1080, -3}, {2, 5, 0}, {0, 0, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(CDateOverlay::SpeedOf(c.X, c.Width, true), c.Speed) << c.X << " of " << c.Width;
        EXPECT_EQ(CDateOverlay::SpeedOf(c.X, c.Width, false), -c.Speed) << c.X << " of " << c.Width;
    }
}

TEST_F(Overlay, TheFasterTheShorter)
{
    constexpr int kPeriods[] = {0, 800, 400, 100, 50};
    for (int speed = 1; speed <= 4; ++speed) {
        for (int sign : {-1, 1}) {
            EXPECT_EQ(CDateOverlay::PeriodOf(sign * speed, false), kPeriods[speed]);
            EXPECT_EQ(CDateOverlay::PeriodOf(sign * speed, true), kPeriods[speed] / 4);
        }
    }
}

TEST_F(Overlay, StepsOfAllUnits)
{
    const struct {
        int Unit, From, Steps, To;
    } cases[] = {
        {kOverlayDays, kDay, 1, kDay + 1},
        {kOverlayDays, kDay, -2, kDay - 2},
        {kOverlayWeeks, kDay, 2, kDay + 14},
        {kOverlayMonths, kDay, 1, DayNumberOf(2026, 2, 1)},
        {kOverlayMonths, kDay, -1, DayNumberOf(2025, 12, 1)},
        {kOverlayMonths, kDay, 2, DayNumberOf(2026, 3, 1)},
        {kOverlayMonths, DayNumberOf(2026, 12, 5), 1, DayNumberOf(2027, 1, 1)},
        {kOverlayMonths, DayNumberOf(2026, 1, 5), -2, DayNumberOf(2025, 11, 1)},
        {kOverlayDays, DayNumberOf(9999, 12, 31), 1, DayNumberOf(9999, 12, 31)},
        {kOverlayMonths, DayNumberOf(9999, 12, 3), 1, DayNumberOf(9999, 12, 3)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CDateOverlay::StepDate(c.Unit, c.From, c.Steps), c.To) << c.Unit << " " << c.Steps;
}

TEST_F(Overlay, LiftedBeforeTheFirstTickItIsTheNeighbour)
{
    const struct {
        int Key, Invert, Day, Direction;
    } cases[] = {{kKeyLeft, 0, kDay + 1, -1},
                 {kKeyRight, 0, kDay - 1, 1},
                 {kKeyLeft, 1, kDay - 1, 1},
                 {kKeyRight, 1, kDay + 1, -1},
                 {kKeyUp, 0, CDateOverlay::kFirstDate, 0},
                 {kKeyDown, 1, CDateOverlay::kLastDate, 0}};
    for (const auto& c : cases) {
        g_Settings.General.TouchNavInvert = c.Invert;
        Start(c.Key);
        EXPECT_EQ(Period(), c.Direction == 0 ? -1 : CDateOverlay::kFirstMs);
        EXPECT_EQ(Lift(), c.Day);
        EXPECT_EQ(Direction, c.Direction);
        EXPECT_FALSE(Dates.IsRunning());
        EXPECT_EQ(Period(), -1);
    }
}

TEST_F(Overlay, RunsWhileTheFingerIsNearAnEdge)
{
    Start(kKeyLeft);
    Tick();
    EXPECT_TRUE(Dates.IsMoved());
    EXPECT_EQ(Dates.GetSpeed(), 3);
    EXPECT_EQ(Period(), 100);
    EXPECT_EQ(Dates.GetDate(), kDay + 1) << "the first tick only shows";
    Tick(5);
    EXPECT_EQ(Dates.GetDate(), kDay + 6);
    Dates.OnMouseMove({120, 100});
    EXPECT_EQ(Dates.GetSpeed(), 0);
    EXPECT_EQ(Period(), -1);
    Dates.OnMouseMove({150, 100});
    EXPECT_EQ(Period(), 800);
    Tick(2);
    EXPECT_GT(Changes, 0);
    EXPECT_EQ(Lift(), kDay + 4);
    EXPECT_EQ(Direction, 0) << "the dates have run, nothing is to slide";
}

TEST_F(Overlay, AnAnimatedStepHasFourPartsAndIsFinishedWhenItTurns)
{
    g_Settings.General.TouchNavAnimation = 1;
    Start(kKeyLeft, kOverlayWeeks);
    Tick();
    EXPECT_EQ(Period(), 25);
    EXPECT_EQ(Dates.GetPhase(), 3);
    Tick(3);
    EXPECT_EQ(Dates.GetDate(), kDay + 7);
    Tick();
    EXPECT_EQ(Dates.GetDate(), kDay + 14);
    Tick();
    Dates.OnMouseMove({120, 100});
    EXPECT_EQ(Dates.GetDate(), kDay + 14) << "hardly begun";
    EXPECT_EQ(Dates.GetPhase(), 3);
    Dates.OnMouseMove({10, 100});
    Tick(2);
    Dates.OnMouseMove({230, 100});
    EXPECT_EQ(Dates.GetDate(), kDay + 21) << "half way and more";
    EXPECT_EQ(Dates.GetPhase(), 3);
}

TEST_F(Overlay, TheStripTellsTheDateBetweenItsNeighbours)
{
    SetLocale(&Names);
    const struct {
        int Unit;
        QString Middle;
    } cases[] = {{kOverlayDays, Names.DayName(0, true) + QStringLiteral(" 1")},
                 {kOverlayMonths, Names.MonthName(2, true, false) + QStringLiteral(" 2026")},
                 {kOverlayWeeks, GetDateFormat(DateFlag::Short, SystemTimeOf(kDay + 7))}};
    for (const auto& c : cases) {
        Start(kKeyLeft, c.Unit, {120, 100});
        Tick();
        EXPECT_EQ(Dates.TextOf(0), c.Middle);
        EXPECT_NE(Dates.TextOf(-1), Dates.TextOf(0));
        EXPECT_EQ(Dates.StripRect(), QRect(0, 0, 240, 100));
        for (int offset : {-1, 0, 1}) {
            const QRect box = Dates.BoxOf(offset).Rect;
            EXPECT_TRUE(Dates.StripRect().contains(box)) << offset;
            EXPECT_EQ(box.intersected(Dates.BoxOf(offset + 1).Rect), QRect()) << offset;
        }
        QImage picture(240, 300, QImage::Format_RGB32);
        QPainter dc(&picture);
        Dates.Paint(dc);
        EXPECT_LT(qGray(picture.pixel(2, 2)), 60) << "white dates on a white view";
        EXPECT_EQ(picture.pixel(2, 101), qRgb(255, 255, 255)) << "below it the view stands";
    }
    Start(kKeyLeft, kOverlayDays, {120, 100}, DayNumberOf(9999, 12, 30));
    EXPECT_EQ(Dates.TextOf(1), QString()) << "no day after the last";
    SetLocale(nullptr);
}

// ---- the slide

class Slide : public Overlay
{
protected:
    static QImage Picture(QColor color, QSize size = {240, 20})
    {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(color);
        return picture;
    }
    int Changed = 0;
    CScreenTransition Transition{[this] { ++Changed; }};
};

TEST_F(Slide, RunsInFixedStepsToItsEnd)
{
    g_Settings.General.SlidingScreens = 1;
    for (int direction : {-1, 1}) {
        Changed = 0;
        Transition.StartTransition(direction, Picture(Qt::red));
        EXPECT_TRUE(Transition.NeedsPicture());
        EXPECT_FALSE(Transition.Timers().IsRunning(kTimerTransition)) << "the new picture is missing";
        Transition.SetPicture(Picture(Qt::blue));
        for (int edge : {50, 100, 150, 200}) {
            edge = direction < 0 ? 240 - edge : edge;
            EXPECT_EQ(Transition.GetPosition(), edge);
            EXPECT_EQ(Transition.Timers().PeriodOf(kTimerTransition), kTransitionMs);
            QImage window = Picture(Qt::black);
            QPainter dc(&window);
            ASSERT_TRUE(Transition.PaintTransition(dc));
            const QColor left = direction < 0 ? Qt::red : Qt::blue, right = direction < 0 ? Qt::blue : Qt::red;
            EXPECT_EQ(window.pixelColor(0, 0), left);
            EXPECT_EQ(window.pixelColor(edge - 1, 10), left);
            EXPECT_EQ(window.pixelColor(edge, 10), right);
            EXPECT_EQ(window.pixelColor(239, 19), right);
            Transition.Timers().Fire(kTimerTransition);
        }
        EXPECT_FALSE(Transition.IsRunning());
        EXPECT_FALSE(Transition.Timers().IsRunning(kTimerTransition));
        EXPECT_EQ(Changed, 4);
    }
}

TEST_F(Slide, NothingIsKeptWhereNothingSlides)
{
    g_Settings.General.SlidingScreens = 0;
    Transition.StartTransition(1, Picture(Qt::red));
    EXPECT_FALSE(Transition.IsRunning());
    g_Settings.General.SlidingScreens = 1;
    Transition.StartTransition(0, Picture(Qt::red));
    EXPECT_FALSE(Transition.IsRunning());
    Transition.StartTransition(1, Picture(Qt::red, {40, 20}));
    EXPECT_FALSE(Transition.IsRunning()) << "narrower than a step";
    Transition.StartTransition(1, Picture(Qt::red));
    Transition.SetPicture(Picture(Qt::blue, {320, 20}));
    EXPECT_FALSE(Transition.IsRunning()) << "the window was turned";
    EXPECT_FALSE(Transition.OnTransitionTimer(kTimerFling));
}
