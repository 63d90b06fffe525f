#include "drawing/alpha_image.h"

#include <gtest/gtest.h>

#include "drawing/paint.h"

namespace
{
TEST(AlphaImage, KeepsColoursThatTransparencyHides)
{
    QImage source(2, 1, QImage::Format_ARGB32);
    source.setPixel(0, 0, qRgba(1, 2, 3, 0));
    source.setPixel(1, 0, qRgba(200, 100, 50, 77));
    const CAlphaImage image = CAlphaImage::FromImage(source);
    ASSERT_TRUE(image.IsValid());
    EXPECT_EQ(image.Red()[0], 1);
    EXPECT_EQ(image.Green()[1], 100);
    EXPECT_EQ(image.Blue()[1], 50);
    EXPECT_EQ(image.Alpha()[1], 77);
    EXPECT_EQ(image.ToImage(), source);
}

TEST(AlphaImage, AnEditOfThePlanesReachesThePixels)
{
    CAlphaImage image = MakeSolidImage(2, 1, Rgb(1, 2, 3), 4);
    EXPECT_EQ(image.Pixels()[1], 0x04010203u);
    image.EditAlpha()[1] = 0xFF;
    EXPECT_EQ(image.Pixels()[1], 0xFF010203u);
}

TEST(AlphaImage, ImpossibleSizesAndPicturesGiveAnEmptyOne)
{
    CAlphaImage image = MakeSolidImage(1, 1, 0, 0);
    for (const QSize size : {QSize(0, 3), QSize(3, -1), QSize(CAlphaImage::kMaxSide + 1, 1)}) {
        EXPECT_FALSE(image.Create(size.width(), size.height()));
        EXPECT_FALSE(image.IsValid());
        EXPECT_EQ(image.Red(), nullptr);
        EXPECT_EQ(image.EditAlpha(), nullptr);
    }
    EXPECT_FALSE(CAlphaImage::FromImage(QImage()).IsValid());
    EXPECT_TRUE(CAlphaImage().ToImage().isNull());
}
} // namespace
