#include "shell/frame_layout.h"
#include "shell/view_rotation.h"

#include <gtest/gtest.h>
#include <ostream>

void PrintTo(const QRect& rect, std::ostream* out)
{
    *out << rect.x() << ',' << rect.y() << ' ' << rect.width() << 'x' << rect.height();
}

TEST(FrameLayout, EachLocationHasItsStrip)
{
    const struct {
        int Location;
        QRect Title, View;
    } cases[] = {
        {0, {}, {0, 0, 240, 280}},
        {1, {0, 0, 14, 280}, {14, 0, 226, 280}},
        {2, {0, 0, 240, 14}, {0, 14, 240, 266}},
        {3, {226, 0, 14, 280}, {0, 0, 226, 280}},
        {4, {0, 266, 240, 14}, {0, 0, 240, 266}},
        {5, {}, {0, 0, 240, 280}},
        {-1, {}, {0, 0, 240, 280}},
    };
    for (const auto& c : cases) {
        const CFrameLayout layout = CFrameLayout::Of({240, 320}, c.Location, 14, 40);
        EXPECT_EQ(layout.Title, c.Title) << c.Location;
        EXPECT_EQ(layout.View, c.View) << c.Location;
        EXPECT_EQ(layout.Keys, QRect(0, 280, 240, 40)) << c.Location;
    }
}

TEST(FrameLayout, TheThreeTileAnyClient)
{
    for (const QSize client : {QSize(240, 320), QSize(321, 241), QSize(1080, 2160), QSize(50, 45),
                               QSize(10, 30), QSize(1, 1), QSize(0, 0)}) {
        for (int location = 0; location <= 4; ++location) {
            for (const int width : {14, 28, 112}) {
                const CFrameLayout layout = CFrameLayout::Of(client, location, width, 40);
                qint64 area = 0;
                for (const QRect& part : {layout.Title, layout.View, layout.Keys}) {
                    EXPECT_GE(part.width(), 0);
                    EXPECT_GE(part.height(), 0);
                    EXPECT_TRUE(part.isEmpty() || QRect(QPoint(0, 0), client).contains(part));
                    area += part.isEmpty() ? 0 : qint64(part.width()) * part.height();
                }
                EXPECT_FALSE(layout.Title.intersects(layout.View));
                EXPECT_FALSE(layout.Title.intersects(layout.Keys));
                EXPECT_EQ(area, qint64(client.width()) * client.height())
                    << client.width() << 'x' << client.height() << ' ' << location;
            }
        }
    }
}

TEST(FrameLayout, StripWidthsFollowTheList)
{
    EXPECT_EQ(TitleStripWidth(0), 14);
    EXPECT_EQ(TitleStripWidth(14), 28);
    EXPECT_EQ(TitleStripWidth(99), 28);
    EXPECT_EQ(TitleStripWidth(-3), 14);
}

TEST(ViewRotation, NextActiveView)
{
    const struct {
        int View, Active, Next;
    } cases[] = {
        {0, 31, 1},      {1, 31, 2},          {3, 31, 4}, {4, 31, 0}, {5, 31, 0},
        {0, 1, 0},       {2, 4, 0},           {4, 16, 0}, {1, 0, 0},  {0, 9, 3},
        {3, 9, 0},       {1, 18, 4},          {4, 18, 1}, {2, 3, 0},  {2, 2, 1},
        {5, 8, 3},       {5, 0, 0},           {0, 96, 0}, {-1, 2, 1}, {-7, 31, 0},
        {1 << 30, 8, 3}, {0x7FFFFFFF, 16, 4}, {3, -1, 4}, {4, 30, 1}, {-0x7FFFFFFF, 0, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(NextViewInRotation(c.View, c.Active), c.Next) << c.View << " of " << c.Active;
    EXPECT_EQ(ViewName(0), "Daily");
    EXPECT_EQ(ViewName(5), "Search");
    EXPECT_TRUE(ViewName(6).isEmpty());
}
