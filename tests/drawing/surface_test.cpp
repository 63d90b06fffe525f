#include "drawing/surface.h"

#include <gtest/gtest.h>

#include "drawing/art.h"
#include "drawing/paint.h"
#include "drawing/pixel_buffer.h"

namespace
{
TEST(OffscreenSurface, ResizeKeepsTheContentOfAnEqualSize)
{
    COffscreenSurface s(2, 1, kPaper);
    FillSolid(s.Dc(), {0, 0, 1, 1}, kInk);
    s.Resize(2, 1, kInk);
    EXPECT_EQ(Art(s.Image()), "#.\n");
    s.Resize(3, 1, kInk);
    EXPECT_EQ(Art(s.Image()), "###\n");
    FillSolid(s.Dc(), {0, 0, 1, 1}, kPaper);
    EXPECT_EQ(Art(s.Image()), ".##\n");
}

TEST(OffscreenSurface, AnEmptyOneTakesPaintingInSilence)
{
    COffscreenSurface s(-3, 5);
    EXPECT_TRUE(s.IsEmpty());
    BlendRect(s.Dc(), {0, 0, 5, 5}, kInk, 128);
    EXPECT_FALSE(CPixelBuffer().CaptureFrom(s.Dc(), {0, 0, 1, 1}));
}

TEST(DoubleBuffer, FlushesOnceAndInTheTargetsCoordinates)
{
    COffscreenSurface s(4, 2, kPaper);
    {
        CDoubleBuffer buffer(s.Dc(), {1, 0, 2, 2});
        FillSolid(buffer.Dc(), {0, 0, 4, 2}, kPaper);
        FillSolid(buffer.Dc(), {2, 1, 9, 9}, kInk);
        EXPECT_EQ(Art(s.Image()), "....\n....\n");
        buffer.Flush();
        EXPECT_EQ(Art(s.Image()), "....\n..#.\n");
        FillSolid(s.Dc(), {0, 0, 4, 2}, kPaper);
    }
    EXPECT_EQ(Art(s.Image()), "....\n....\n");
}

TEST(PixelBuffer, StrideIsAMultipleOfFourPixels)
{
    const int cases[][2] = {{1, 4}, {4, 4}, {5, 8}, {8, 8}, {237, 240}};
    for (const auto& [width, stride] : cases) {
        CPixelBuffer buffer;
        ASSERT_TRUE(buffer.Create(width, 3));
        EXPECT_EQ(buffer.Stride(), stride);
        EXPECT_EQ(buffer.Line(1) - buffer.Line(0), 3 * stride);
        ASSERT_TRUE(buffer.CreateBottomUp(width, 3));
        EXPECT_EQ(buffer.Line(1) - buffer.Line(0), -3 * stride);
    }
}

TEST(PixelBuffer, RefusesSizesThatCannotBe)
{
    CPixelBuffer buffer;
    for (const QSize size : {QSize(0, 1), QSize(1, 0), QSize(-4, 4), QSize(1 << 30, 1 << 30)}) {
        EXPECT_FALSE(buffer.Create(size.width(), size.height()));
        EXPECT_FALSE(buffer.IsValid());
    }
}

TEST(PixelBuffer, CapturesBlueFirstAndPutsBackTheSame)
{
    COffscreenSurface s(3, 2, kPaper);
    FillSolid(s.Dc(), {1, 0, 1, 1}, kInk);
    CPixelBuffer buffer;
    s.Dc().translate(1, 0);
    ASSERT_TRUE(buffer.CaptureFrom(s.Dc(), {0, 0, 5, 2})); // reaches past the edge
    EXPECT_EQ(buffer.Line(0)[0], BlueOf(kInk));
    EXPECT_EQ(buffer.Line(0)[1], GreenOf(kInk));
    EXPECT_EQ(buffer.Line(0)[2], RedOf(kInk));
    EXPECT_EQ(buffer.Line(1)[0], 255);
    EXPECT_EQ(buffer.Line(0)[3 * 2], 0); // outside reads black
    s.Dc().translate(-1, 0);
    buffer.PutTo(s.Dc(), 0, 1);
    EXPECT_EQ(Art(s.Image(), {{kColorBlack, 'b'}}), ".#.\n#.b\n");
}

TEST(PixelBuffer, TakesBitmapsOfAnyDepth)
{
    QImage bitmap(5, 2, QImage::Format_Mono);
    bitmap.setColorTable({qRgb(255, 255, 255), qRgb(10, 20, 30)});
    bitmap.fill(0);
    bitmap.setPixel(4, 1, 1);
    CPixelBuffer buffer;
    ASSERT_TRUE(buffer.CaptureBitmap(bitmap));
    COffscreenSurface s(5, 2, kInk);
    buffer.PutTo(s.Dc(), 0, 0);
    EXPECT_EQ(Art(s.Image()), ".....\n....#\n");
    EXPECT_FALSE(buffer.CaptureBitmap(QImage()));
}
} // namespace
