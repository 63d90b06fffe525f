// Which days the grid shows, what stays painted and what is painted anew.
#include "drawing/paint.h"
#include "views/month_grid.h"
#include "views_fixture.h"

namespace
{
// Names as one chooses them.
class CNamedDays : public CFakeLocale
{
public:
    explicit CNamedDays(QString (*name)(const QString&)) : m_name(name) {}
    QString DayName(int dayOfWeek, bool abbreviated) const override
    {
        return m_name(CFakeLocale::DayName(dayOfWeek, abbreviated));
    }

private:
    QString (*m_name)(const QString&);
};

class MonthGrid : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        g_Settings.MonthView.StartDay = 0;
        g_Settings.MonthView.PopOut = 3;
        Open();
    }
    void Open(QSize size = {240, 280}, QuickListMode mode = kQuickListBelow)
    {
        Grid = CMonthGrid();
        Grid.Init();
        Grid.SetShape(size, mode, 0);
    }
    QRgb At(int day) // a point of the cell that nothing else is painted on
    {
        const QRect cell = Grid.CellOf(day);
        return Grid.Picture().pixel(cell.x() + 3, cell.y() + cell.height() - 4);
    }
    static QRgb Color(int id) { return ToQColor(g_Settings.ResolveColor(id)).rgb(); }
    CMonthGrid Grid;
};
} // namespace

TEST_F(MonthGrid, WholeWeeksOfAMonthForEveryFirstDay)
{
    const struct {
        int StartDay, Year, Month;
        int FirstMonth, FirstDay, Rows;
    } cases[] = {
        {0, 2026, 2, 2, 1, 4},   {1, 2027, 2, 2, 1, 4},    {6, 2025, 2, 2, 1, 4},  {0, 2026, 3, 3, 1, 5},
        {1, 2026, 3, 2, 23, 6},  {6, 2026, 3, 2, 28, 5},   {0, 2026, 8, 7, 26, 6}, {1, 2027, 8, 7, 26, 6},
        {6, 2026, 5, 4, 25, 6},  {1, 2026, 2, 1, 26, 5},   {0, 2024, 2, 1, 28, 5}, {6, 2026, 1, 12, 27, 6},
        {1, 2025, 12, 12, 1, 5}, {0, 2025, 12, 11, 30, 5}, {6, 2024, 2, 1, 27, 5},
    };
    for (const auto& c : cases) {
        g_Settings.MonthView.StartDay = c.StartDay;
        SCOPED_TRACE(testing::Message() << c.StartDay << ' ' << c.Year << '-' << c.Month);
        for (const int dayOfMonth : {1, 15, 28}) {
            Open();
            Grid.SelectDate(Day(c.Year, c.Month, dayOfMonth));
            const int year = c.FirstMonth > c.Month ? c.Year - 1 : c.Year;
            EXPECT_EQ(Grid.FirstDay(), Day(year, c.FirstMonth, c.FirstDay));
            EXPECT_EQ(Grid.RowCount(), c.Rows);
            EXPECT_EQ(Grid.LastDay(), Grid.FirstDay() + 7 * c.Rows - 1);
            EXPECT_EQ(DayOfWeekOf(Grid.FirstDay()), c.StartDay);
        }
        int index = 0;
        for (int day = Grid.FirstDay(); day <= Grid.LastDay(); ++day, ++index) {
            EXPECT_EQ(Grid.CellOf(day), Grid.Layout().Cell(index / 7, index % 7));
            EXPECT_EQ(Grid.DayAt(Grid.CellOf(day).center()), day);
        }
        EXPECT_EQ(Grid.Layout().RowCount(), c.Rows);
        EXPECT_TRUE(Grid.CellOf(Grid.FirstDay() - 1).isEmpty());
        EXPECT_TRUE(Grid.CellOf(Grid.LastDay() + 1).isEmpty());
    }
}

TEST_F(MonthGrid, ADayOfTheNextMonthTurnsTheGridOnlyWhenGoneTo)
{
    Grid.SelectDate(Day(2026, 3, 17));
    const int march = Grid.FirstDay();
    EXPECT_FALSE(Grid.SelectDate(Day(2026, 4, 2))) << "it stands on the grid";
    EXPECT_EQ(Grid.FirstDay(), march);
    Grid.GoToDate(Day(2026, 4, 2));
    EXPECT_EQ(Grid.FirstDay(), Day(2026, 3, 29));
    Grid.GoToDate(Day(2026, 3, 30));
    EXPECT_EQ(Grid.FirstDay(), march) << "and back, though it stands on April's grid";
    Grid.GoToDate(Day(2026, 12, 28));
    Grid.GoToDate(Day(2027, 1, 2));
    EXPECT_EQ(Grid.FirstDay(), Day(2026, 12, 27)) << "January comes after December";
    Grid.GoToDate(Day(2026, 12, 31));
    EXPECT_EQ(Grid.FirstDay(), Day(2026, 11, 29));
    EXPECT_TRUE(Grid.SelectDate(Day(2031, 7, 4)));
    EXPECT_EQ(Grid.FirstDay(), Day(2031, 6, 29));
}

TEST_F(MonthGrid, FiveWeeksMoveByWholeWeeks)
{
    g_Settings.MonthView.ScrollByWeeks = 1;
    Grid.SelectDate(Day(2026, 8, 12)); // a month of six weeks
    const int first = Day(2026, 7, 26);
    EXPECT_EQ(Grid.FirstDay(), first);
    EXPECT_EQ(Grid.RowCount(), 5);
    const struct {
        int Select, Shift;
    } cases[] = {{34, 0}, {35, 7}, {41, 7}, {42, 14}, {0, 0}, {-1, -7}, {-7, -7}, {-8, -14}, {-70, -70}};
    for (const auto& c : cases) {
        Open();
        Grid.SelectDate(Day(2026, 8, 12));
        Grid.SelectDate(first + c.Select);
        EXPECT_EQ(Grid.FirstDay(), first + c.Shift) << c.Select;
        EXPECT_FALSE(Grid.CellOf(first + c.Select).isEmpty()) << c.Select;
        EXPECT_EQ(Grid.MonthDay(), first + c.Select) << "the selected day's month is the one that counts";
    }
    EXPECT_TRUE(Grid.SelectDate(Day(2026, 7, 31)) && !Grid.SelectDate(Day(2026, 7, 30)));
    EXPECT_TRUE(Grid.SelectDate(Day(2026, 8, 1))) << "another month stands out now";
}

TEST_F(MonthGrid, CellsTakeTheColourOfTheirDay)
{
    g_Settings.MonthView.PopOut = 0;
    Grid.SelectDate(Day(2026, 3, 4));
    EXPECT_EQ(At(Day(2026, 3, 3)), Color(6001));
    EXPECT_EQ(At(kToday), Color(6002));
    EXPECT_EQ(At(Day(2026, 4, 2)), Color(6003));
    EXPECT_EQ(At(Day(2026, 3, 8)), Color(6004));
    EXPECT_EQ(At(Day(2026, 3, 4)), Color(6005)) << "the lower half of the selected cell";
    EXPECT_EQ(At(Day(2026, 4, 4)), Color(6003)) << "another month's weekend is another month's day";
    Grid.SelectDate(kToday);
    EXPECT_EQ(At(kToday), Color(6005));
    EXPECT_EQ(At(Day(2026, 3, 4)), Color(6001));
}

TEST_F(MonthGrid, TheWeekendFollowsTheFirstWorkDay)
{
    const struct {
        int WeekStartDay;
        QSet<int> Weekend; // 0 Sunday
    } cases[] = {{0, {5, 6}}, {1, {6, 0}}, {2, {4, 5}}};
    for (const auto& c : cases) {
        g_Settings.General.WeekStartDay = c.WeekStartDay;
        Open();
        g_Settings.MonthView.PopOut = 0;
        Grid.SelectDate(Day(2026, 3, 1));
        for (int day = Day(2026, 3, 8); day < Day(2026, 3, 15); ++day)
            EXPECT_EQ(At(day), Color(c.Weekend.contains(DayOfWeekOf(day)) ? 6004 : 6001))
                << c.WeekStartDay << ' ' << DayOfWeekOf(day);
    }
}

TEST_F(MonthGrid, MovingTheSelectionLeavesThePictureAsIfPaintedAtOnce)
{
    AddToday(1, QStringLiteral("A"), 9);
    Grid.SelectDate(kToday);
    Grid.Picture();
    for (const int popOut : {0, 1, 3}) {
        g_Settings.MonthView.PopOut = popOut;
        Open();
        Grid.SelectDate(kToday);
        Grid.Picture();
        for (const int day : {Day(2026, 3, 18), Day(2026, 3, 1), Day(2026, 3, 7), Day(2026, 4, 4),
                              Day(2026, 3, 29), Day(2026, 3, 16)}) {
            Grid.SelectDate(day);
            const QImage moved = Grid.Picture().copy();
            Grid.Invalidate();
            ASSERT_EQ(Grid.Picture(), moved) << popOut << ' ' << day;
        }
    }
}

TEST_F(MonthGrid, ChangesCoverTheOldAndTheNewCellOnly)
{
    Grid.SelectDate(kToday);
    EXPECT_EQ(Grid.TakeChanges(), Grid.Picture().rect());
    EXPECT_TRUE(Grid.TakeChanges().isEmpty());
    const QImage before = Grid.Picture().copy();
    Grid.SelectDate(kToday + 1);
    const QRect changes = Grid.TakeChanges();
    const QImage after = Grid.Picture().copy();
    EXPECT_LT(changes.width() * changes.height(), before.width() * before.height() / 5);
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (!changes.contains(x, y)) {
                ASSERT_EQ(before.pixel(x, y), after.pixel(x, y)) << x << ' ' << y;
            }
        }
    }
}

TEST_F(MonthGrid, ThePoppedOutCellHasAnEdgeAndAShadowUnlessSwitchedOff)
{
    Grid.SelectDate(kToday);
    const QRect cell = Grid.CellOf(kToday), grown = cell.adjusted(-6, -6, 6, 6);
    const QRgb edge = ToQColor(0x1F0F0A).rgb();
    const QImage popped = Grid.Picture().copy();
    for (const QPoint at : {grown.topLeft(), grown.bottomRight(), grown.topRight(), grown.bottomLeft()})
        EXPECT_EQ(popped.pixel(at), edge);
    EXPECT_NE(popped.pixel(grown.topLeft() + QPoint(1, 1)), edge);
    EXPECT_TRUE(Grid.IsPoppedOut(grown.topLeft()));
    EXPECT_FALSE(Grid.IsPoppedOut(grown.topLeft() - QPoint(1, 0)));
    const QPoint shadow(grown.right() + 2, grown.center().y());
    EXPECT_LT(qGray(popped.pixel(shadow)), qGray(popped.pixel(shadow + QPoint(2, 0))));

    g_Settings.MonthView.PopOut = 0;
    Grid.Invalidate();
    const QImage flat = Grid.Picture().copy();
    EXPECT_TRUE(Grid.IsPoppedOut(cell.center()));
    EXPECT_FALSE(Grid.IsPoppedOut(cell.topLeft() - QPoint(1, 1)));
    EXPECT_EQ(flat.pixel(cell.x() - 1, cell.center().y()), 0xFFFFFFFF) << "the line beside it";
    EXPECT_EQ(flat.pixel(cell.x() + cell.width(), cell.center().y()), 0xFFFFFFFF);
}

TEST_F(MonthGrid, ADayThatTheStoreHasNotStaysBlank)
{
    Grid.SelectDate(kToday);
    const QRect cell = Grid.CellOf(kToday);
    PimStore().Clear();
    Grid.Invalidate();
    EXPECT_EQ(Grid.Picture().pixel(cell.center()), 0xFFFFFFFF);
    EXPECT_FALSE(Grid.IsPoppedOut(cell.center()));
}

TEST_F(MonthGrid, WhatStandsInACellFollowsTheSettings)
{
    const int day = Day(2026, 3, 4);
    Grid.SelectDate(kToday);
    Add(Appointment(1, QStringLiteral("A"), day + 0.5, day + 0.7), day);
    const auto timelineAt = [this](int of) {
        Grid.Invalidate();
        const QRect cell = Grid.CellOf(of);
        return Grid.Picture().pixel(cell.x() + cell.width() / 2, cell.y() + 4) == Color(6011);
    };
    EXPECT_TRUE(timelineAt(day));
    EXPECT_TRUE(timelineAt(day + 1));
    g_Settings.MonthView.HideEmptyTimelines = 1;
    EXPECT_TRUE(timelineAt(day));
    EXPECT_FALSE(timelineAt(day + 1));
    g_Settings.MonthView.ItemsToShow = 1;
    EXPECT_FALSE(timelineAt(day)) << "icons only";
    g_Settings.MonthView.ItemsToShow = 2;
    EXPECT_TRUE(timelineAt(day));
}

TEST_F(MonthGrid, IconsOfTheDaysCategoriesStandInTheirCorner)
{
    PimStore().Categories().Add(QStringLiteral("Work"), 1);
    PimStore().Categories().Add(QStringLiteral("Home"), 2);
    g_Settings.m_categories[QStringLiteral("Sport")] = {QStringLiteral("zip:a:b:sport.png"), kColorNotSet};
    PimStore().Categories().Add(QStringLiteral("Sport"), 3);
    CAlphaImage red;
    red.CreateSolid(16, 16, Rgb(250, 1, 2), 255);
    g_ImageStore.PutIcon(QStringLiteral("zip:a:b:sport.png"), red);
    const int day = Day(2026, 3, 4);
    Grid.SelectDate(kToday);
    CAppointment& item = Add(Appointment(1, QStringLiteral("A"), day + 0.5, day + 0.7), day);
    item.Categories.Insert(1);
    item.Categories.Insert(3);
    const QRect cell = Grid.CellOf(day);
    const QPoint corner(cell.x() + cell.width() - 2, cell.y() + cell.height() - 2);
    const auto shows = [&](int itemsToShow) {
        g_Settings.MonthView.ItemsToShow = itemsToShow;
        Grid.Invalidate();
        const QImage picture = Grid.Picture();
        return picture.pixel(corner) == ToQColor(Rgb(250, 1, 2)).rgb() &&
               picture.pixel(corner - QPoint(15, 15)) == ToQColor(Rgb(250, 1, 2)).rgb() &&
               picture.pixel(corner - QPoint(16, 0)) != ToQColor(Rgb(250, 1, 2)).rgb();
    };
    EXPECT_FALSE(shows(0));
    EXPECT_TRUE(shows(1));
    EXPECT_TRUE(shows(2));
    item.Visible = false;
    EXPECT_FALSE(shows(2)) << "what the filter hides has no icon either";
    g_Settings.m_categories.clear();
}

TEST_F(MonthGrid, NamesOfDaysAreShortenedUntilTheyFit)
{
    const auto dotted = [](const QString& name) { return QString(name + u'.'); };
    const auto same = [](const QString& name) { return name; };
    const auto letter = [](const QString& name) { return name.left(1); };
    const struct {
        int Width;
        QString (*Names)(const QString&);
        QString (*Shown)(const QString&);
    } cases[] = {{420, dotted, dotted}, {210, dotted, same}, {210, same, same}, {112, same, letter}};
    for (const auto& c : cases) {
        const auto titleRow = [&](QString (*names)(const QString&), int width) {
            const CNamedDays locale(names);
            Open({width, 280});
            Grid.SelectDate(kToday);
            return Grid.Picture().copy(0, 0, width, Grid.Layout().TitleRowHeight());
        };
        EXPECT_EQ(titleRow(c.Names, c.Width), titleRow(c.Shown, c.Width)) << c.Width;
        if (c.Names != c.Shown) {
            EXPECT_NE(titleRow(c.Names, 420), titleRow(c.Shown, 420));
        }
    }
}
