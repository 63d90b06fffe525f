#include "drawing/paint.h"
#include "drawing/text.h"
#include "forms/cell_grid.h"
#include "forms/form_parts.h"
#include "forms_fixture.h"
#include "settings/color_scheme.h"
#include "touch/virtual_keys.h"

#include <QPainter>

namespace
{
using CellGrid = CFormsTest;

CCellGrid MakeGrid(int columns, int rows, int count)
{
    CCellGrid grid(columns, rows);
    for (int n = 0; n < count; ++n)
        grid.AddCell({QString::number(n), {}, 0, {}});
    return grid;
}

QImage PaintOn(const CCellGrid& grid, QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter dc(&picture);
    grid.Paint(dc);
    return picture;
}

// Counts the pixels of a colour.
int CountOf(const QImage& picture, const QRect& rect, COLORREF color)
{
    int count = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            count += picture.pixel(x, y) == ToQColor(color).rgb();
    }
    return count;
}
} // namespace

TEST_F(CellGrid, CellsTileTheirArea)
{
    for (const QSize shape : {QSize(2, 1), QSize(6, 4), QSize(3, 4), QSize(1, 3)}) {
        for (const QRect area : {QRect(10, 20, 220, 150), QRect(0, 0, 301, 199)}) {
            CCellGrid grid = MakeGrid(shape.width(), shape.height(), shape.width() * shape.height());
            EXPECT_EQ(grid.HitTest(area.center()), -1) << "no area yet";
            grid.SetArea(area);
            QRect all;
            for (int n = 0; n < grid.GetCount(); ++n) {
                const QRect cell = grid.CellRect(n);
                EXPECT_EQ(grid.HitTest(cell.center()), n);
                EXPECT_EQ(grid.HitTest(cell.bottomRight() + QPoint(1, 0)), -1) << "a gap";
                if (n % shape.width() > 0) {
                    EXPECT_EQ(cell.x() - grid.CellRect(n - 1).right() - 1, 8);
                }
                if (n >= shape.width()) {
                    EXPECT_EQ(cell.y() - grid.CellRect(n - shape.width()).bottom() - 1, 8);
                }
                EXPECT_LE(std::abs(cell.width() - grid.CellRect(0).width()), 1);
                all |= cell;
            }
            EXPECT_EQ(all, area);
        }
    }
    CCellGrid grid = MakeGrid(2, 2, 3);
    grid.SetArea({0, 0, 1, 1}); // smaller than its gaps
    EXPECT_EQ(grid.HitTest({0, 0}), -1);
    EXPECT_TRUE(grid.CellRect(3).isEmpty() && grid.CellRect(-1).isEmpty());
}

TEST_F(CellGrid, ArrowsWalkAroundTheEnds)
{
    const struct {
        int Columns, Rows, Count, From, Key, To;
    } cases[] = {
        {6, 2, 12, 0, kKeyLeft, 5},  {6, 2, 12, 5, kKeyRight, 0}, {6, 2, 12, 11, kKeyRight, 6},
        {6, 2, 12, 7, kKeyLeft, 6},  {6, 2, 12, 1, kKeyUp, 7},    {6, 2, 12, 7, kKeyDown, 1},
        {2, 1, 2, 0, kKeyDown, 0},   {2, 1, 2, 0, kKeyRight, 1},  {1, 3, 3, 2, kKeyDown, 0},
        {1, 3, 3, 1, kKeyLeft, 1},   {3, 4, 12, 0, kKeyUp, 9},    {3, 2, 4, 3, kKeyRight, 3}, // a short row
        {3, 2, 4, 1, kKeyDown, 1},   {3, 2, 4, 0, kKeyUp, 3},     {3, 2, 4, 0, kKeyLeft, 2},
        {2, 1, 2, -1, kKeyRight, 0}, {2, 1, 2, 7, kKeyRight, 0}, // nothing was selected
    };
    for (const auto& c : cases) {
        CCellGrid grid = MakeGrid(c.Columns, c.Rows, c.Count);
        grid.Select(c.From);
        EXPECT_TRUE(grid.OnKey(c.Key));
        EXPECT_EQ(grid.GetSelected(), c.To) << c.From << " of " << c.Count << " by " << c.Key;
    }
    CCellGrid grid = MakeGrid(2, 1, 2);
    EXPECT_FALSE(grid.OnKey(kKeyReturn));
    EXPECT_FALSE(CCellGrid(2, 1).OnKey(kKeyLeft)) << "no cells";
}

TEST_F(CellGrid, TextIsNeverCut)
{
    const struct {
        const char* Text;
        int Width, Font, Lines;
    } cases[] = {
        {"Series", 100, 4, 1},
        {"Delete this single occurrence", 130, 4, 2},
        {"Full Screen Editor", 96, 4, 2},
        {"  ", 100, 0, 0},
        {"one two three four five", 72, 6, 3}, // the smaller font, and as many lines as it takes
        {"Incomprehensibilities", 60, 6, 3},   // no place to break it
    };
    for (const auto& c : cases) {
        const CFittedText fitted = FitText(QString::fromUtf8(c.Text), {4, 6}, c.Width);
        EXPECT_EQ(fitted.Font, c.Font) << c.Text;
        EXPECT_EQ(fitted.Lines.size(), c.Lines) << c.Text << ": " << fitted.Lines.join('/').toStdString();
        EXPECT_EQ(fitted.Lines.join(QString()).remove(' '), QString::fromUtf8(c.Text).remove(' '));
        for (const QString& line : fitted.Lines)
            EXPECT_LE(TextWidth(g_ImageStore.Font(fitted.Font), line), c.Width + 1) << line.toStdString();
    }
    EXPECT_TRUE(FitText(QStringLiteral("text"), {4}, 0).Lines.isEmpty());
}

TEST_F(CellGrid, TheFullestCellSetsTheHeight)
{
    CCellGrid grid = MakeGrid(2, 2, 1);
    const int bare = grid.HeightFor(220);
    EXPECT_EQ(bare, 40 + 8 + 40) << "a finger's size at least";
    grid.AddCell(
        {QStringLiteral("Series"), QStringLiteral("Delete this single occurrence"), 0, QStringLiteral("2")});
    const int full = grid.HeightFor(220);
    EXPECT_GT(full, bare);
    EXPECT_GT(grid.HeightFor(120), full) << "more lines";
    grid.SetCaption(QStringLiteral("Hour"));
    EXPECT_GT(grid.HeightFor(220), full);
}

TEST_F(CellGrid, TheSelectedCellHasItsFrameAndGradient)
{
    CCellGrid grid = MakeGrid(2, 1, 2);
    grid.SetArea({4, 4, 108, 60});
    for (const int selected : {0, 1}) {
        grid.Select(selected);
        const QImage picture = PaintOn(grid, {116, 68});
        for (const int n : {0, 1}) {
            const QRect cell = grid.CellRect(n);
            const QRgb frame = picture.pixel(cell.topLeft()),
                       inner = picture.pixel(cell.topLeft() + QPoint(1, 1));
            EXPECT_EQ(inner == ToQColor(GetHighlightColor()).rgb(), n == selected);
            EXPECT_EQ(frame == ToQColor(kFormHairLine).rgb(), n != selected);
            EXPECT_EQ(frame, picture.pixel(cell.bottomRight()));
            EXPECT_NE(frame, inner);
        }
    }
}

TEST_F(CellGrid, ALowCellGivesUpItsBadgeFirst)
{
    CCellGrid grid(1, 1);
    grid.AddCell({QStringLiteral("Series"), QStringLiteral("Delete series"), 0, QStringLiteral("2")});
    grid.Select(-1);
    const int full = grid.HeightFor(120);
    for (const int height : {full, full - 20, 8}) {
        const QRect area(0, 10, 120, height);
        grid.SetArea(area);
        const QImage picture = PaintOn(grid, {120, 150});
        EXPECT_EQ(CountOf(picture, area, GetHighlightColor()) > 0, height == full) << height;
        EXPECT_EQ(CountOf(picture, {0, 10 + height, 120, 140 - height}, kColorWhite), 120 * (140 - height))
            << "nothing is painted below the cell";
    }
}
