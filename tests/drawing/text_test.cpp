#include "drawing/text.h"

#include <QFontMetrics>
#include <QPainter>
#include <gtest/gtest.h>

#include "drawing/art.h"
#include "drawing/surface.h"

namespace
{
QFont TestFont(int pixels = 13, QFont::Weight weight = QFont::Normal)
{
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Liberation Sans")});
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

// What a call left on the surface: the rectangle around all that is not paper.
QRect InkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (ColorAt(image, x, y) != kPaper)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

class Text : public testing::Test
{
protected:
    Text() : m_surface(kWidth, kHeight, kPaper) { m_surface.Dc().setFont(TestFont()); }

    QRect Ink(const QString& text, const QRect& rect, unsigned flags)
    {
        m_surface.Dc().fillRect(0, 0, kWidth, kHeight, Qt::white);
        DrawText(m_surface.Dc(), text, rect, flags);
        return InkOf(m_surface.Image());
    }
    QSize Measure(const QString& text, int width, unsigned flags)
    {
        QRect rect(3, 5, width, 1);
        const int height = DrawText(m_surface.Dc(), text, rect, flags | kTextCalcRect);
        EXPECT_EQ(rect.topLeft(), QPoint(3, 5));
        EXPECT_EQ(rect.height(), height);
        return rect.size();
    }

    static constexpr int kWidth = 300;
    static constexpr int kHeight = 200;
    COffscreenSurface m_surface;
};

const QString kTexts[] = {
    QStringLiteral("Meet with Ann"),
    QStringLiteral("Äpfel, Öl & Überraschung für alle"),
    QString::fromUtf8("\xF0\x9F\x8E\x82 cake \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB done"),
    QString::fromUtf8("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD7\xA2\xD7\x95\xD7\x9C\xD7\x9D, abc 12:30"),
    QString::fromUtf8("\xE4\xBC\x9A\xE8\xAD\xB0\xE3\x81\xAE\xE4\xBA\x88\xE5\xAE\x9A\xE8\xA1\xA8"),
    QStringLiteral("Donaudampfschifffahrtsgesellschaftskapitaenswitwe"),
    QStringLiteral("one\ntwo\r\nthree\rfour"),
    QStringLiteral("   leading and trailing   "),
};

TEST_F(Text, NothingIsDrawnOutsideItsRectangle)
{
    for (const QString& text : kTexts) {
        for (const unsigned flags : {0x40024u, 0x8024u, 0x24u, 0x10u, 0x11u, 0x12u, 0x25u, 0x26u, 0x0u}) {
            for (const int width : {1, 7, 40, 130}) {
                const QRect rect(50, 40, width, 30);
                const QRect ink = Ink(text, rect, flags | kTextNoPrefix);
                EXPECT_TRUE(rect.contains(ink) || ink.isEmpty())
                    << text.toStdString() << " " << flags << " " << width;
            }
        }
    }
}

TEST_F(Text, MeasuringTellsWhatDrawingNeeds)
{
    for (const QString& text : kTexts) {
        for (const unsigned flags : {kTextSingleLine | kTextNoPrefix, kTextWordBreak | kTextNoPrefix}) {
            const QSize size = Measure(text, 120, flags);
            EXPECT_GT(size.width(), 0);
            const QRect ink =
                Ink(text, QRect(20, 20, flags & kTextWordBreak ? 120 : size.width(), size.height()),
                    flags | kTextNoClip);
            // Slanted and accented glyphs may lean out by a pixel.
            const QRect room(19, 19, size.width() + 2, size.height() + 2);
            EXPECT_TRUE(room.contains(ink)) << text.toStdString();
            if (flags & kTextWordBreak) {
                EXPECT_LE(size.width(), 120) << text.toStdString();
            }
        }
    }
}

TEST_F(Text, DrawingReturnsTheMeasuredHeight)
{
    for (const QString& text : kTexts) {
        for (const unsigned flags : {0x820u, 0x40824u, 0x810u, 0x814u}) {
            const int height = Measure(text, 90, flags).height();
            EXPECT_EQ(DrawText(m_surface.Dc(), text, QRect(0, 0, 90, 500), flags), height);
        }
    }
}

TEST_F(Text, EveryWrappedLineCounts)
{
    const int line = LineHeight(TestFont());
    EXPECT_EQ(Measure(QStringLiteral("one"), 200, kTextWordBreak).height(), line);
    EXPECT_EQ(Measure(QStringLiteral("one\ntwo\nthree"), 200, kTextWordBreak).height(), 3 * line);
    EXPECT_EQ(Measure(QStringLiteral("one\n\nthree"), 200, kTextWordBreak).height(), 3 * line);
    EXPECT_EQ(Measure(QStringLiteral("one\r\ntwo"), 200, 0).height(), 2 * line);
    const QString words = QStringLiteral("some words that do not fit on one line of this width");
    int before = 0;
    for (int width = 400; width >= 20; width -= 20) {
        const int height = Measure(words, width, kTextWordBreak).height();
        EXPECT_GE(height, before);
        before = height;
    }
    EXPECT_GT(before, 8 * line);
    EXPECT_EQ(Measure(words, 20, 0).height(), line); // without word break nothing wraps
}

TEST_F(Text, ASingleLineTakesBreaksAsBlanks)
{
    EXPECT_EQ(Measure(QStringLiteral("one\r\ntwo\nthree"), 10, kTextSingleLine),
              MeasureText(TestFont(), QStringLiteral("one two three")));
}

TEST_F(Text, TheBaselineDoesNotMoveForAnotherFontsCharacter)
{
    const QRect rect(0, 20, 250, 40);
    const QRect plain = Ink(QStringLiteral("xx"), rect, 0x824);
    m_surface.Dc().fillRect(0, 0, kWidth, kHeight, Qt::white);
    const QString mixed = QString::fromUtf8("xx     \xE4\xBC\x9A\xF0\x9F\x8E\x82");
    EXPECT_EQ(DrawText(m_surface.Dc(), mixed, rect, 0x824), LineHeight(TestFont()));
    EXPECT_EQ(InkOf(m_surface.Image().copy(0, 0, plain.right() + 2, kHeight)), plain);
}

TEST_F(Text, AlignmentMovesTheSameInk)
{
    const QString text = QStringLiteral("HIH");
    const QSize size = MeasureText(TestFont(), text);
    const QRect rect(10, 10, 101, 61);
    const QRect left = Ink(text, rect, 0x820);
    EXPECT_EQ(Ink(text, rect, 0x820 | kTextRight), left.translated(rect.width() - size.width(), 0));
    EXPECT_EQ(Ink(text, rect, 0x820 | kTextCentre), left.translated((rect.width() - size.width()) / 2, 0));
    EXPECT_EQ(Ink(text, rect, 0x820 | kTextVCentre), left.translated(0, (rect.height() - size.height()) / 2));
    EXPECT_EQ(Ink(text, rect, 0x820 | kTextBottom), left.translated(0, rect.height() - size.height()));
}

TEST_F(Text, RightToLeftStandsWhereItIsTold)
{
    const QString text = QString::fromUtf8("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D");
    const QRect rect(10, 10, 200, 30);
    EXPECT_LT(Ink(text, rect, 0x820).right(), 80);
    EXPECT_GT(Ink(text, rect, 0x820 | kTextRight).left(), 150);
    EXPECT_LT(Ink(text, rect, 0x810).right(), 80);
}

TEST_F(Text, TheEllipsisComesOnlyWhenTheTextIsTooWide)
{
    const QString text = QStringLiteral("a rather long subject of an appointment");
    const QSize size = MeasureText(TestFont(), text);
    const QRect whole = Ink(text, QRect(0, 0, size.width(), 30), 0x40824);
    EXPECT_EQ(whole, Ink(text, QRect(0, 0, size.width(), 30), 0x824));
    EXPECT_EQ(Ink(text, QRect(0, 0, size.width() + 50, 30), 0x40824), whole);
    const QString cut = QFontMetrics(TestFont()).elidedText(text, Qt::ElideRight, 100);
    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
    EXPECT_EQ(Ink(text, QRect(0, 0, 100, 30), 0x40824), Ink(cut, QRect(0, 0, 100, 30), 0x824));
    // Asked again for another width, the kept layout must not answer.
    EXPECT_EQ(Ink(text, QRect(0, 0, size.width(), 30), 0x40824), whole);
    // Measuring tells the whole text.
    EXPECT_EQ(Measure(text, 100, 0x40824), size);
}

TEST_F(Text, PrefixesVanishUnlessTold)
{
    const auto width = [&](const char* text, unsigned flags) {
        return Measure(QString::fromUtf8(text), 200, flags | kTextSingleLine).width();
    };
    EXPECT_EQ(width("&Open & Close", 0), width("Open  Close", kTextNoPrefix));
    EXPECT_EQ(width("R&&D", 0), width("R&D", kTextNoPrefix));
    EXPECT_EQ(width("end&", 0), width("end", kTextNoPrefix));
}

TEST_F(Text, EmptyTextIsNothing)
{
    EXPECT_EQ(Measure(QString(), 50, kTextWordBreak), QSize(0, 0));
    EXPECT_EQ(DrawText(m_surface.Dc(), QString(), QRect(0, 0, 10, 10), kTextSingleLine), 0);
    EXPECT_EQ(MeasureText(TestFont(), QString()), QSize(0, 0));
    EXPECT_TRUE(Ink(QStringLiteral("text"), QRect(0, 0, 0, 0), kTextWordBreak).isEmpty());
    EXPECT_TRUE(Ink(QStringLiteral("text"), QRect(0, 0, -5, 10), 0x40824).isEmpty());
}

TEST_F(Text, EqualTextsInOtherFontsAreNotTakenForEachOther)
{
    const QString text = QStringLiteral("Appointment");
    const int thin = MeasureText(TestFont(13), text).width();
    EXPECT_GT(MeasureText(TestFont(26), text).width(), thin);
    EXPECT_GT(MeasureText(TestFont(13, QFont::Bold), text).width(), thin);
    EXPECT_EQ(MeasureText(TestFont(13), text).width(), thin);
}

TEST_F(Text, TheCallersClipStands)
{
    m_surface.Dc().setClipRect(0, 0, 30, 200);
    const QRect ink =
        Ink(QStringLiteral("a text longer than its rectangle is wide"), QRect(10, 10, 80, 20), 0x820);
    EXPECT_LE(ink.right(), 29);
    EXPECT_EQ(m_surface.Dc().clipBoundingRect(), QRectF(0, 0, 30, 200));
}
} // namespace
