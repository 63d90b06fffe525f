// The plain list of a day's items, as the month's quick list and the week's tiles show it.
#include <QPainter>

#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "views/day_items_painter.h"
#include "views/mini_timeline.h"
#include "views_fixture.h"

namespace
{
constexpr COLORREF kGround = Rgb(1, 200, 3);

class DayItems : public CViewTest
{
protected:
    void SetUp() override
    {
        CViewTest::SetUp();
        Look.Font = 501;
        Look.Background = kGround;
        Look.HighlightText = Rgb(255, 255, 0);
        Look.AppointmentText = Rgb(0, 0, 20);
        Look.GeneralText = Rgb(9, 9, 90);
        Look.Selection = Rgb(20, 20, 200);
        g_Settings.General.TextColorsToUse = 0;
        g_Settings.WeekView.LeadingRectColors = 0;
    }
    const CDayItems& Today() { return *PimStore().FindDay(kToday); }
    static CCalendarTask& AddTask(quint32 id, DATE due, const QString& subject = QStringLiteral("Task"))
    {
        auto task = std::make_unique<CCalendarTask>();
        task->ItemId = task->RecordOid = id;
        task->Subject = subject;
        task->End = due;
        CCalendarTask& added = *task;
        PimStore().FindDay(kToday)->AddTask(std::move(task), true);
        return added;
    }
    QImage Paint(int scroll = 0, const CItemIdentity& selected = {}, QSize size = {200, 120})
    {
        CDayItemsPainter painter;
        painter.Init(Look);
        QImage picture(size, QImage::Format_RGB32);
        QPainter dc(&picture);
        Bottom = painter.PaintDayItems(dc, Today(), picture.rect(), scroll, selected, &Rows);
        LineHeight = painter.LineHeight();
        return picture;
    }
    static int Count(const QImage& picture, const QRect& part, COLORREF color)
    {
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x)
                count += picture.valid(x, y) && picture.pixel(x, y) == ToQColor(color).rgb();
        }
        return count;
    }
    // Pixels that are not ground, from the row's left end to where the first gap of `gap` begins.
    static int InkWidth(const QImage& picture, const QRect& row)
    {
        int last = row.x();
        for (int x = row.left(); x <= row.right(); ++x) {
            for (int y = row.top(); y <= row.bottom(); ++y) {
                if (picture.pixel(x, y) != ToQColor(kGround).rgb())
                    last = x;
            }
        }
        return last - row.x();
    }
    CDayItemsLook Look;
    std::vector<CDayItemRow> Rows;
    int Bottom = 0, LineHeight = 0;
};
} // namespace

TEST_F(DayItems, VisibleItemsHaveALineEach)
{
    AddToday(1, QStringLiteral("A"), 8);
    AddToday(2, QStringLiteral("Hidden"), 9).Visible = false;
    AddToday(3, QStringLiteral("C"), 10);
    AddTask(4, kToday);
    AddTask(5, kToday).Visible = false;
    Paint();
    ASSERT_EQ(Rows.size(), 3u);
    const quint32 ids[] = {1, 3, 4};
    for (size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(Rows[n].Item.ItemId, ids[n]);
        EXPECT_EQ(Rows[n].Rect, QRect(1, int(n) * LineHeight, 198, LineHeight));
        EXPECT_EQ(Rows[n].CheckBox.isEmpty(), n != 2);
    }
    EXPECT_EQ(Bottom, 3 * LineHeight);
    EXPECT_GE(LineHeight, g_ImageStore.Image(PictureSmallRecurring).Height() + 2);
    Look.IncludeTasks = false;
    Paint();
    EXPECT_EQ(Rows.size(), 2u);
}

TEST_F(DayItems, TwoLinesAreForWhatHasATimeOrADate)
{
    Look.TwoLines = true;
    AddToday(1, QStringLiteral("A"), 8);
    AddTask(4, kToday);
    AddTask(5, NO_DATE);
    const QImage picture = Paint();
    ASSERT_EQ(Rows.size(), 3u);
    const int heights[] = {2, 1, 2};
    int top = 0;
    for (size_t n = 0; n < 3; ++n) {
        EXPECT_EQ(Rows[n].Rect.y(), top);
        EXPECT_EQ(Rows[n].Rect.height(), heights[n] * LineHeight);
        top += heights[n] * LineHeight;
        EXPECT_EQ(picture.pixel(50, top), ToQColor(0xC0C0C0).rgb());
        top += 2;
    }
    EXPECT_EQ(Bottom, top);
    EXPECT_LT(Rows[2].CheckBox.y() + Rows[2].CheckBox.height(), Rows[2].Rect.y() + LineHeight + 1);
}

TEST_F(DayItems, AScrolledListShowsTheSameMovedUp)
{
    for (int n = 0; n < 12; ++n)
        AddToday(quint32(n + 1), QStringLiteral("Item %1").arg(n), 8 + n).ReminderSet = n % 2;
    const QImage whole = Paint(0, {}, {200, 400});
    const int bottom = Bottom;
    const QImage part = Paint(-47, {}, {200, 120});
    EXPECT_EQ(part, whole.copy(0, 47, 200, 120));
    EXPECT_EQ(Bottom, bottom) << "the content is as high wherever it stands";
}

TEST_F(DayItems, WhatStandsOnALineFollowsTheWeeksSettings)
{
    CAppointment& item = AddToday(1, QStringLiteral("Dentist"), 9);
    g_Settings.WeekView.IncludeStartTime = 1;
    const QImage withTime = Paint();
    g_Settings.WeekView.IncludeStartTime = 0;
    const QImage without = Paint();
    EXPECT_GT(InkWidth(withTime, Rows[0].Rect), InkWidth(without, Rows[0].Rect) + 20);
    g_Settings.WeekView.IncludeStartTime = 1;
    item.AllDay = true;
    const QImage allDay = Paint();
    const int picture = g_ImageStore.Image(PictureSmallAllDay).Width();
    EXPECT_EQ(InkWidth(allDay, Rows[0].Rect), InkWidth(without, Rows[0].Rect) + picture + 2);
}

TEST_F(DayItems, ALeadingBarHasTheCategorysOrTheStatusColour)
{
    CAppointment& item = AddToday(1, QStringLiteral("Dentist"), 9);
    item.BusyStatus = 3;
    const struct {
        int Setting;
        COLORREF Color;
    } cases[] = {{1, PimStore().GetItemColor(item)}, {2, g_Settings.ResolveColor(1004)}};
    for (const auto& c : cases) {
        g_Settings.WeekView.LeadingRectColors = c.Setting;
        const QImage picture = Paint();
        EXPECT_EQ(Count(picture, {1, 1, 3, LineHeight - 2}, c.Color), 3 * (LineHeight - 2)) << c.Setting;
        EXPECT_EQ(Count(picture, {4, 0, 2, LineHeight}, kGround), 2 * LineHeight) << "text keeps off it";
    }
    g_Settings.WeekView.LeadingRectColors = 0;
    EXPECT_EQ(Count(Paint(), {1, 1, 3, LineHeight - 2}, cases[1].Color), 0);
}

TEST_F(DayItems, TextTakesTheColourOfTheSettings)
{
    CAppointment& item = AddToday(1, QStringLiteral("IIIII"), 9);
    item.BusyStatus = 1;
    const COLORREF colors[] = {Look.AppointmentText, PimStore().GetItemColor(item),
                               g_Settings.ResolveColor(1003)};
    for (int setting = 0; setting < 3; ++setting) {
        g_Settings.General.TextColorsToUse = setting;
        EXPECT_GT(Count(Paint(), {0, 0, 200, 20}, colors[setting]), 4) << setting;
    }
    Look.UseHighlightColors = true;
    EXPECT_GT(Count(Paint(), {0, 0, 200, LineHeight}, Look.HighlightText), 4);
    Look.UseHighlightColors = false;
    const QImage selected = Paint(0, CItemIdentity::Of(item));
    EXPECT_GT(Count(selected, {0, 0, 200, LineHeight}, Look.HighlightText), 4);
    EXPECT_EQ(selected.pixel(198, 0), ToQColor(Look.Selection).rgb());
    EXPECT_EQ(selected.pixel(0, 0), ToQColor(kGround).rgb());
    EXPECT_EQ(selected.pixel(100, LineHeight), ToQColor(kGround).rgb());
}

TEST_F(DayItems, TasksTellTheirDateUnlessItIsTheDay)
{
    const struct {
        const char* What;
        DATE Due;
        bool Complete;
        int Color;
        bool Dated;
    } cases[] = {{"today", double(kToday), false, 2001, false},
                 {"later", kToday + 3.0, false, 2001, true},
                 {"overdue", kToday - 3.0, false, 2002, true},
                 {"done", kToday - 3.0, true, 2001, true},
                 {"undated", NO_DATE, false, 2003, true}};
    int plain = 0;
    for (const auto& c : cases) {
        PimStore().FindDay(kToday)->RemoveTasks();
        AddTask(7, c.Due, QStringLiteral("IIIII")).Complete = c.Complete;
        const QImage picture = Paint();
        EXPECT_GT(Count(picture, Rows[0].Rect, g_Settings.ResolveColor(c.Color)), 4) << c.What;
        const int width = InkWidth(picture, Rows[0].Rect);
        if (!plain)
            plain = width;
        EXPECT_EQ(width > plain + 20, c.Dated) << c.What;
    }
}

TEST_F(DayItems, FivePicturesAtMostStandAtTheRightEnd)
{
    CAppointment& item = AddToday(1, QString(200, u'W'), 9);
    item.ReminderSet = item.HasNote = item.HasAttendees = item.Conflict = true;
    item.Sensitivity = 2;
    item.Recurrence = 1;
    const QImage all = Paint();
    item.Conflict = false; // the sixth
    EXPECT_EQ(Paint(), all);
    item.HasAttendees = false;
    EXPECT_NE(Paint(), all);
    EXPECT_GT(InkWidth(all, Rows[0].Rect), 190);
}

TEST_F(DayItems, AnEmptyDaySaysSoWhenWanted)
{
    g_Settings.WeekView.HideNoAppointments = 1;
    EXPECT_EQ(Count(Paint(), {0, 0, 200, 120}, kGround), 200 * 120);
    EXPECT_EQ(Bottom, 0);
    g_Settings.WeekView.HideNoAppointments = 0;
    EXPECT_GT(Count(Paint(), {0, 0, 200, LineHeight}, Look.GeneralText), 4);
    EXPECT_TRUE(Rows.empty());
    EXPECT_EQ(Bottom, LineHeight);
}

// ---- the mini-timeline

TEST_F(DayItems, HoursOfTheMiniTimelineTileItsWidth)
{
    CDayItems day;
    const COLORREF blue = Rgb(0, 0, 250), red = Rgb(250, 0, 0);
    EXPECT_FALSE(HasSlots(day));
    for (const int width : {27, 50, 77, 12}) {
        for (int hour = 0; hour < 24; ++hour)
            day.HourSlots[hour] = {1, blue};
        day.HourSlots[24] = {};
        QImage picture(100, 7, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter dc(&picture);
        PaintMiniTimeline(dc, {3, 0, width, 7}, day, {kColorWhite, kColorBlack}, true);
        EXPECT_EQ(Count(picture, picture.rect(), blue), width * 5) << "one by one without a gap";
        EXPECT_EQ(Count(picture, picture.rect(), kColorBlack), (width + 2) * 2 + 5 * 2);
        day.HourSlots[24] = {2, red};
        PaintMiniTimeline(dc, {3, 0, width, 7}, day, {kColorWhite, kColorBlack}, true);
        EXPECT_EQ(Count(picture, picture.rect(), red), width * 2);
        EXPECT_EQ(picture.pixel(10, 5), ToQColor(red).rgb()) << "along the lower edge";
    }
    EXPECT_TRUE(HasSlots(day));
    QImage picture(40, 7, QImage::Format_RGB32);
    QPainter dc(&picture);
    PaintMiniTimeline(dc, {0, 0, 40, 7}, CDayItems(), {kColorWhite, kColorBlack}, false);
    EXPECT_EQ(Count(picture, picture.rect(), kColorBlack), 80) << "without a frame only above and below";
}
