#include <QImage>
#include <QPainter>

#include "drawing/paint.h"
#include "touch/timeline_bar.h"
#include "touch_fixture.h"

namespace
{
constexpr COLORREF kBlue = Rgb(10, 20, 200), kGreen = Rgb(10, 200, 20);
constexpr QRgb kRed = 0xFFFF0000;

CTimelineDay SampleDay()
{
    CTimelineDay day;
    for (int hour = 9; hour < 12; ++hour)
        day.Slots[size_t(hour)] = {5, kBlue};
    day.Slots[14] = {6, kGreen};
    day.AppointmentCount = 2;
    return day;
}

QImage Painted(CTimelineBar& bar, const CTimelineDay& day, int width = 400)
{
    QImage picture(width, CTimelineBar::Height(), QImage::Format_RGB32);
    QPainter dc(&picture);
    bar.Paint(dc, 0, 0, width, day);
    return picture;
}

int CountOf(const QImage& picture, QRgb color)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == color;
    }
    return count;
}
} // namespace

class Timeline : public CTouchTest
{
};

TEST_F(Timeline, MeasuresFollowTheDensity)
{
    const struct {
        int Density, Bar, Strip, Cell;
    } cases[] = {{96, 21, 102, 4}, {192, 36, 204, 8}, {384, 66, 408, 16}};
    for (const auto& c : cases) {
        g_ScreenMetrics.Init(c.Density, {240, 320});
        const QRect strip = CTimelineBar::StripRect(0, 0);
        EXPECT_EQ(CTimelineBar::Height(), c.Bar);
        EXPECT_EQ(strip.width(), c.Strip);
        EXPECT_EQ(strip.y(), (c.Bar - strip.height()) / 2);
        const QRect inner = CTimelineBar::InnerRect(strip);
        int x = inner.x();
        for (int hour = 0; hour < 24; ++hour, x += c.Cell)
            ASSERT_EQ(CTimelineBar::CellRect(strip, hour), QRect(x, inner.y(), c.Cell, inner.height()));
        EXPECT_EQ(x, inner.x() + inner.width()) << "the cells tile the inner area";
    }
}

TEST_F(Timeline, CellsTakeTheColourOfTheirHour)
{
    CTimelineBar bar({});
    const QImage picture = Painted(bar, SampleDay());
    const QRect strip = CTimelineBar::StripRect(0, 0);
    for (int hour = 0; hour < 24; ++hour) {
        const COLORREF wanted = hour >= 9 && hour < 12 ? kBlue : hour == 14 ? kGreen : kColorWhite;
        EXPECT_EQ(picture.pixel(CTimelineBar::CellRect(strip, hour).center()), ToQColor(wanted).rgb())
            << hour;
    }
}

TEST_F(Timeline, AllDayIsALineAtTheInnerBottom)
{
    CTimelineBar bar({});
    CTimelineDay day;
    day.Slots[24] = {9, kGreen};
    const QImage picture = Painted(bar, day);
    const QRect inner = CTimelineBar::InnerRect(CTimelineBar::StripRect(0, 0));
    EXPECT_EQ(CountOf(picture, ToQColor(kGreen).rgb()), 2 * inner.width());
    EXPECT_EQ(picture.pixel(inner.x(), inner.y() + inner.height() - 1), ToQColor(kGreen).rgb());
}

TEST_F(Timeline, BracketMarksTheSelectedItemOnly)
{
    CTimelineBar bar({});
    EXPECT_EQ(CountOf(Painted(bar, SampleDay()), kRed), 0);
    bar.SetSelected(99);
    EXPECT_EQ(CountOf(Painted(bar, SampleDay()), kRed), 0);
    bar.SetSelected(5);
    const QImage picture = Painted(bar, SampleDay());
    const QRect strip = CTimelineBar::StripRect(0, 0), inner = CTimelineBar::InnerRect(strip);
    const int left = CTimelineBar::CellRect(strip, 9).x() - 2,
              right = CTimelineBar::CellRect(strip, 12).x() + 1;
    for (const int y : {inner.y() - 2, inner.y() + inner.height() + 1}) {
        EXPECT_EQ(picture.pixel(left, y), kRed);
        EXPECT_EQ(picture.pixel(right - 1, y), kRed);
        EXPECT_NE(picture.pixel(left - 1, y), kRed);
        EXPECT_NE(picture.pixel(right, y), kRed);
    }
    int first, last;
    CTimelineBar::FindRun(SampleDay(), 5, first, last);
    EXPECT_EQ(std::pair(first, last), std::pair(9, 11));
    CTimelineBar::FindRun(SampleDay(), 0, first, last);
    EXPECT_EQ(first, -1) << "an empty slot is nobody's";
}

TEST_F(Timeline, ThePictureIsMadeAnewWhenTheDayChanges)
{
    CTimelineBar bar({});
    CTimelineDay day = SampleDay();
    const QImage before = Painted(bar, day);
    EXPECT_EQ(Painted(bar, day), before);
    day.AppointmentCount = 1412;
    EXPECT_NE(Painted(bar, day), before);
    day = CTimelineDay();
    EXPECT_EQ(CountOf(Painted(bar, day), ToQColor(kBlue).rgb()), 0);
    EXPECT_EQ(Painted(bar, day, 120).width(), 120);
}

TEST_F(Timeline, ANarrowBarHasItsCountsBelowTheStrip)
{
    for (const int density : {96, 192}) {
        g_ScreenMetrics.Init(density, {320, 240});
        CTimelineBar wide({}), narrow({}, true);
        EXPECT_LT(CTimelineBar::VerticalWidth(), CTimelineBar::Width());
        EXPECT_EQ(narrow.OwnHeight(), CTimelineBar::VerticalHeight());
        EXPECT_EQ(wide.OwnHeight(), CTimelineBar::Height());
        for (const int width : {CTimelineBar::VerticalWidth(), CTimelineBar::VerticalWidth() + 40}) {
            QImage picture(width, CTimelineBar::VerticalHeight(), QImage::Format_RGB32);
            QPainter dc(&picture);
            narrow.Paint(dc, 0, 0, width, SampleDay());
            const QRect strip = CTimelineBar::StripRect((width - CTimelineBar::VerticalWidth()) / 2, 0);
            EXPECT_EQ(picture.pixel(CTimelineBar::CellRect(strip, 10).center()), ToQColor(kBlue).rgb());
            EXPECT_EQ(picture.pixel(CTimelineBar::CellRect(strip, 14).center()), ToQColor(kGreen).rgb());
            EXPECT_LE(strip.x() + strip.width() + S(3), width);
        }
    }
}
