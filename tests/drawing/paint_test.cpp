#include "drawing/paint.h"

#include <QPainter>
#include <QPixmap>
#include <gtest/gtest.h>

#include "drawing/art.h"
#include "drawing/surface.h"

namespace
{
TEST(FillTwoTone, LowerHalfTakesTheColour)
{
    COffscreenSurface s(4, 4, kPaper);
    FillTwoTone(s.Dc(), {0, 0, 4, 4}, kInk, kPaper, 255, false);
    EXPECT_EQ(Art(s.Image()), "....\n"
                              "....\n"
                              "####\n"
                              "####\n");
}

TEST(FillTwoTone, RightHalfTakesTheColourAndTheOddPixel)
{
    COffscreenSurface s(5, 2, kPaper);
    FillTwoTone(s.Dc(), {0, 0, 5, 2}, kInk, kColorWhite, 50, true);
    EXPECT_EQ(Art(s.Image(), {{Blend(kColorWhite, kInk, 50), 'l'}}), "ll###\n"
                                                                     "ll###\n");
}

TEST(FillTwoTone, OnePixelHasNoUpperHalf)
{
    COffscreenSurface s(2, 3, kPaper);
    FillTwoTone(s.Dc(), {0, 1, 2, 1}, kInk, kPaper, 255, false);
    EXPECT_EQ(Art(s.Image()), "..\n##\n..\n");
}

TEST(FillSolid, IgnoresEmptyAndReversedRectangles)
{
    COffscreenSurface s(3, 2, kPaper);
    FillSolid(s.Dc(), {0, 0, 0, 2}, kInk);
    FillSolid(s.Dc(), {0, 0, 2, -1}, kInk);
    FrameRect(s.Dc(), {0, 0, -2, 2}, kInk);
    FillGradient(s.Dc(), {2, 0, -1, 2}, kInk, kInk, kGradientLeftToRight);
    BlendRect(s.Dc(), {0, 0, 3, 0}, kInk, 255);
    EXPECT_EQ(Art(s.Image()), "...\n...\n");
}

TEST(FrameRect, IsOnePixelWideInsideTheRectangle)
{
    COffscreenSurface s(5, 4, kPaper);
    FrameRect(s.Dc(), {1, 0, 4, 4}, kInk);
    EXPECT_EQ(Art(s.Image()), ".####\n"
                              ".#..#\n"
                              ".#..#\n"
                              ".####\n");
}

TEST(FillGradient, BothEndsAreExactAndSteps)
{
    const COLORREF first = Rgb(0, 100, 255);
    const COLORREF last = Rgb(30, 10, 0);
    for (const GradientMode mode : {kGradientLeftToRight, kGradientTopToBottom}) {
        COffscreenSurface s(9, 9, kPaper);
        FillGradient(s.Dc(), {0, 0, 9, 9}, first, last, mode);
        quint32 red = 0;
        for (int i = 0; i < 9; ++i) {
            const COLORREF here =
                mode == kGradientLeftToRight ? ColorAt(s.Image(), i, 4) : ColorAt(s.Image(), 4, i);
            EXPECT_EQ(here,
                      mode == kGradientLeftToRight ? ColorAt(s.Image(), i, 0) : ColorAt(s.Image(), 0, i));
            EXPECT_GE(RedOf(here), red);
            red = RedOf(here);
        }
        EXPECT_EQ(ColorAt(s.Image(), 0, 0), first);
        EXPECT_EQ(ColorAt(s.Image(), 8, 8), last);
    }
}

TEST(FillShade, SwapExchangesTheEnds)
{
    const COLORREF color = Rgb(200, 150, 100);
    const COLORREF dark = Blend(color, kColorBlack, 100);
    COffscreenSurface s(2, 5, kPaper);
    FillShade(s.Dc(), {0, 0, 1, 5}, color, kGradientTopToBottom, false);
    FillShade(s.Dc(), {1, 0, 1, 5}, color, kGradientTopToBottom, true);
    EXPECT_EQ(ColorAt(s.Image(), 0, 0), color);
    EXPECT_EQ(ColorAt(s.Image(), 0, 4), dark);
    EXPECT_EQ(ColorAt(s.Image(), 1, 0), dark);
    EXPECT_EQ(ColorAt(s.Image(), 1, 4), color);
}

// A painter that is moved and clipped, with each operation that writes pixels directly.
TEST(DirectPainting, HeedsTranslationClipAndTheSurfacesEdges)
{
    const CAlphaImage block = MakeSolidImage(9, 9, kInk, 255);
    const char* const expected = "......\n"
                                 "..##..\n"
                                 ".....#\n"
                                 "......\n";
    QRegion clip(QRect(2, 1, 2, 1));
    clip += QRect(5, 2, 1, 1);
    for (int way = 0; way < 4; ++way) {
        COffscreenSurface s(6, 4, kPaper);
        QPainter& dc = s.Dc();
        dc.setClipRegion(clip);
        dc.translate(-2, -3);
        const QRect rect(0, 0, 9, 9);
        if (way == 0)
            DrawImage(block, dc, 0, 0);
        else if (way == 1)
            BlendRect(dc, rect, kInk, 255);
        else if (way == 2)
            FillGradient(dc, rect, kInk, kInk, kGradientLeftToRight);
        else
            DrawImage(block, dc, 0, 0, 20, 20);
        EXPECT_EQ(Art(s.Image()), expected) << way;
    }
}

TEST(DirectPainting, GoesToTheSurfaceOfTheLivingPainterAlone)
{
    COffscreenSurface s(2, 1, kPaper);
    QPainter& dc = s.Dc();
    const QImage before = s.Copy(QRect(0, 0, 2, 1));
    BlendRect(dc, {0, 0, 1, 1}, kInk, 255);
    FillSolid(dc, {1, 0, 1, 1}, kInk);
    EXPECT_EQ(Art(s.Image()), "##\n");
    EXPECT_EQ(Art(before), "..\n");
}

CAlphaImage Checker()
{
    CAlphaImage image;
    image.Create(2, 2);
    for (int i = 0; i < 4; ++i) {
        image.EditRed()[i] = quint8(RedOf(kInk));
        image.EditGreen()[i] = quint8(GreenOf(kInk));
        image.EditBlue()[i] = quint8(BlueOf(kInk));
        image.EditAlpha()[i] = i == 0 || i == 3 ? 255 : 0;
    }
    return image;
}

TEST(DrawImage, LeavesWhatIsTransparent)
{
    COffscreenSurface s(4, 3, kPaper);
    EXPECT_TRUE(DrawImage(Checker(), s.Dc(), 1, 0));
    EXPECT_EQ(Art(s.Image()), ".#..\n"
                              "..#.\n"
                              "....\n");
}

TEST(DrawImage, StretchesByWholeRowsAndColumns)
{
    COffscreenSurface s(6, 5, kPaper);
    EXPECT_TRUE(DrawImage(Checker(), s.Dc(), 0, 1, 5, 3));
    EXPECT_EQ(Art(s.Image()), "......\n"
                              "###...\n"
                              "###...\n"
                              "...##.\n"
                              "......\n");
}

TEST(DrawImage, ShrinksByTheSameRule)
{
    COffscreenSurface s(2, 2, kPaper);
    CAlphaImage image;
    image.Create(4, 1);
    image.EditAlpha()[2] = 255; // target column 1 takes source column 2
    EXPECT_TRUE(DrawImage(image, s.Dc(), 0, 0, 2, 1));
    EXPECT_EQ(Art(s.Image(), {{kColorBlack, 'b'}}), ".b\n..\n");
}

TEST(DrawImage, BlendsWhatIsBetween)
{
    COffscreenSurface s(1, 1, Rgb(17, 99, 200));
    DrawImage(MakeSolidImage(1, 1, Rgb(250, 3, 77), 0x80), s.Dc(), 0, 0);
    EXPECT_EQ(ColorAt(s.Image(), 0, 0), Blend(Rgb(250, 3, 77), Rgb(17, 99, 200), 0x80));
}

TEST(DrawImage, WithoutAnImageDrawsNothingAndSaysSo)
{
    COffscreenSurface s(2, 1, kPaper);
    EXPECT_FALSE(DrawImage(CAlphaImage(), s.Dc(), 0, 0));
    EXPECT_FALSE(DrawImage(CAlphaImage(), s.Dc(), 0, 0, 2, 1));
    EXPECT_EQ(Art(s.Image()), "..\n");
}

TEST(OtherDevices, TakeTheSamePicture)
{
    QPixmap pixmap(4, 2);
    pixmap.fill(Qt::white);
    QPainter dc(&pixmap);
    dc.scale(2, 2);
    DrawImage(Checker(), dc, 0, 0, 1, 1);
    BlendRect(dc, {1, 0, 1, 1}, kInk, 255);
    dc.end();
    EXPECT_EQ(Art(pixmap.toImage()), "#.##\n"
                                     ".###\n");
}

TEST(DrawSelectionBackground, FollowsEachChangeOfColourAndSize)
{
    const COLORREF first = Rgb(36, 112, 168);
    const COLORREF second = Rgb(200, 10, 10);
    COffscreenSurface s(3, 8, kPaper);
    const auto topAndBottom = [&](int height, COLORREF color) {
        s.Resize(0, 0);
        s.Resize(3, 8, kPaper);
        DrawSelectionBackground(s.Dc(), {1, 1, 2, height}, color);
        EXPECT_EQ(ColorAt(s.Image(), 0, 1), kPaper);
        EXPECT_EQ(ColorAt(s.Image(), 1, 0), kPaper);
        EXPECT_EQ(ColorAt(s.Image(), 1, 1), color);
        EXPECT_EQ(ColorAt(s.Image(), 2, height), Blend(color, kColorBlack, 100));
        EXPECT_EQ(ColorAt(s.Image(), 2, height + 1), kPaper);
    };
    topAndBottom(5, first);
    topAndBottom(5, first);
    topAndBottom(6, first);
    topAndBottom(6, second);
    topAndBottom(5, first);
}
} // namespace
