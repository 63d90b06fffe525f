#include <QImage>
#include <QKeyEvent>
#include <QPainter>

#include "drawing/image_store.h"
#include "touch/command_ids.h"
#include "touch/device_pixels.h"
#include "touch/soft_key_bar.h"
#include "touch/virtual_keys.h"
#include "touch/white_picture.h"
#include "touch_fixture.h"

class SoftKeys : public CTouchTest
{
};

TEST_F(SoftKeys, KeysTileTheBarAtEveryWidth)
{
    for (const int count : {1, 2, 3, 5, 7}) {
        for (const int width : {240, 241, 320, 479, 1080}) {
            const QRect bar(3, 7, width, CSoftKeyBar::Height());
            int x = bar.x();
            for (int n = 0; n < count; ++n) {
                const QRect key = CSoftKeyBar::KeyRect(bar, n, count);
                ASSERT_EQ(key.x(), x) << count << " keys on " << width;
                ASSERT_EQ(key.height(), bar.height());
                ASSERT_LE(std::abs(key.width() - width / count), 1);
                x += key.width();
            }
            EXPECT_EQ(x, bar.x() + width);
        }
    }
}

TEST_F(SoftKeys, HitAtEachCentreIsItsOwnKeyAndNoSeparator)
{
    CSoftKeyBar keys;
    for (const int command : {int(CmdViewButton), int(CmdNone), int(CmdGoTo), int(CmdMenu)})
        keys.AddButton(command, 0);
    const QRect bar(0, 280, 240, 40);
    for (int n = 0; n < 4; ++n)
        EXPECT_EQ(keys.HitTest(bar, CSoftKeyBar::KeyRect(bar, n, 4).center()), n == 1 ? -1 : n);
    EXPECT_EQ(keys.HitTest(bar, {10, 279}), -1);
    EXPECT_EQ(keys.HitTest(bar, {240, 300}), -1);
    EXPECT_EQ(keys.FirstCommand(), CmdViewButton);
    EXPECT_EQ(keys.LastCommand(), CmdMenu);
    keys.Clear();
    EXPECT_EQ(keys.HitTest(bar, bar.center()), -1);
    EXPECT_EQ(keys.FirstCommand(), CmdNone);
}

TEST_F(SoftKeys, ATextStandsBesideItsPictureOrAlone)
{
    const auto inked = [](int width, int imageId, const QString& text) {
        CSoftKeyBar keys;
        keys.AddButton(1, imageId, false, text);
        QImage picture(width, 40, QImage::Format_RGB32), bare(width, 40, QImage::Format_RGB32);
        QPainter dc(&picture), bareDc(&bare);
        keys.Paint(dc, picture.rect());
        CSoftKeyBar none;
        none.AddButton(1, 0);
        none.Paint(bareDc, bare.rect());
        QRect box; // of all that differs from the bar's ground
        for (int x = 0; x < width; ++x) {
            for (int y = 0; y < 40; ++y) {
                if (picture.pixel(x, y) != bare.pixel(x, y))
                    box |= QRect(x, y, 1, 1);
            }
        }
        return box;
    };
    const QString text = QStringLiteral("Cancel");
    const QRect alone = inked(200, 0, text), image = inked(200, 706, QString()), both = inked(200, 706, text);
    EXPECT_FALSE(alone.isEmpty() || image.isEmpty());
    EXPECT_GT(both.width(), alone.width() + image.width());
    EXPECT_LE(std::abs(both.center().x() - 100), 3);
    EXPECT_LE(std::abs(inked(70, 706, text).width() - alone.width()), 1) << "no room for both";
    const QRect cut = inked(30, 706, text);
    EXPECT_TRUE(cut.left() >= 3 && cut.right() <= 26) << "an ellipsis keeps it within the key";
}

TEST_F(SoftKeys, OnlyThePressedKeyIsLighter)
{
    CSoftKeyBar keys;
    keys.AddButton(1, 0);
    keys.AddButton(2, 0);
    const QRect bar(0, 0, 80, 40);
    const auto at = [&](int x) {
        QImage picture(bar.size(), QImage::Format_RGB32);
        QPainter dc(&picture);
        keys.Paint(dc, bar);
        return qGray(picture.pixel(x, 30));
    };
    const int plain = at(20);
    EXPECT_TRUE(keys.SetPressed(0));
    EXPECT_FALSE(keys.SetPressed(0));
    EXPECT_GT(at(20), plain + 30);
    EXPECT_EQ(at(60), plain);
    keys.SetPressed(17);
    EXPECT_EQ(at(20), plain);
}

TEST_F(SoftKeys, WhitePicturesStandOutFromAnyGround)
{
    for (const COLORREF bar : {Rgb(36, 112, 168), Rgb(240, 200, 60), Rgb(255, 255, 255), Rgb(0, 0, 0)}) {
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(QColor(int(RedOf(bar)), int(GreenOf(bar)), int(BlueOf(bar))));
        QPainter dc(&picture);
        DrawWhitePicture(dc, {10, 10}, 136, bar);
        double most = 1;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                const QRgb pixel = picture.pixel(x, y);
                most = std::max(most, Contrast(Rgb(qRed(pixel), qGreen(pixel), qBlue(pixel)), bar));
            }
        }
        EXPECT_GE(most, 3) << bar;
    }
}

TEST(DevicePixels, FactorIsTheRatioRoundedUp)
{
    const std::pair<double, int> cases[] = {{0.5, 1}, {1, 1}, {1.0000001, 1}, {1.25, 2}, {2, 2},
                                            {2.6, 3}, {3, 3}, {4, 4},         {7, 4}};
    for (const auto& [ratio, factor] : cases)
        EXPECT_EQ(SurfaceFactorOf(ratio), factor) << ratio;
}

TEST(DevicePixels, LogicalRectanglesCoverTheirPixels)
{
    EXPECT_EQ(ToLogical({0, 0, 7, 9}, 3), QRect(0, 0, 3, 3));
    EXPECT_EQ(ToLogical({-1, -3, 2, 3}, 3), QRect(-1, -1, 2, 1));
    EXPECT_EQ(ToLogical({4, 5, 6, 7}, 1), QRect(4, 5, 6, 7));
    EXPECT_EQ(ToSurface(QPointF(10.5, 3.25), 2), QPoint(21, 6));
}

TEST(DevicePixels, BlitIsPixelForPixel)
{
    for (const int k : {1, 2, 3}) {
        QImage board(30 * k, 20 * k, QImage::Format_RGB32);
        for (int y = 0; y < board.height(); ++y) {
            for (int x = 0; x < board.width(); ++x)
                board.setPixel(x, y, (x + y) % 2 ? 0xFFFFFFFF : 0xFF000000);
        }
        QImage window(board.size(), QImage::Format_RGB32);
        window.setDevicePixelRatio(k);
        window.fill(Qt::red);
        QPainter dc(&window);
        BlitSurface(dc, board, {0, 0}, k);
        dc.end();
        window.setDevicePixelRatio(1);
        EXPECT_EQ(window, board) << k;
    }
}

TEST(VirtualKeys, BothDigitRowsAndTheBackKey)
{
    const auto of = [](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return VirtualKeyOf(QKeyEvent(QEvent::KeyPress, key, modifiers));
    };
    EXPECT_EQ(of(Qt::Key_4), 52);
    EXPECT_EQ(of(Qt::Key_4, Qt::KeypadModifier), 52);
    EXPECT_EQ(of(Qt::Key_C), 67);
    EXPECT_EQ(of(Qt::Key_Back), kKeyEscape);
    EXPECT_EQ(of(Qt::Key_Enter), 13);
    EXPECT_EQ(of(Qt::Key_F2), 113);
    EXPECT_EQ(of(Qt::Key_F3), 114);
    EXPECT_EQ(of(Qt::Key_VolumeUp), kKeyNone);
    EXPECT_EQ(of(Qt::Key_C, Qt::ShiftModifier), 67);
    for (const auto modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        EXPECT_EQ(of(Qt::Key_C, modifier), kKeyNone);
}
