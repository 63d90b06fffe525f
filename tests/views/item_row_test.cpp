#include <QImage>
#include <QPainter>
#include <random>

#include "drawing/image_store.h"
#include "drawing/paint.h"
#include "drawing/picture_ids.h"
#include "pim/pim_store.h"
#include "views/item_row_painter.h"
#include "views_fixture.h"

namespace
{
constexpr QRgb kMarker = 0xFF123456;

class ItemRows : public CViewTest
{
protected:
    void Init(bool singleLine, int leading = 0, bool onlyStart = false)
    {
        Painter.InitRowPainter({singleLine, onlyStart, leading, 600, 601, 602, Rgb(0, 0, 20), Rgb(14, 37, 64),
                                Rgb(14, 37, 64), Rgb(42, 120, 18), Rgb(36, 112, 168)});
    }
    int Paint(QPainter* dc, CAppointment& item, int width, bool location = true, bool selected = false)
    {
        const QRect rect(0, 0, width, 0);
        return item.GetKind() == kKindAppointment
                   ? Painter.PaintAppointmentRow(dc, rect, item, kToday, location, selected)
                   : Painter.PaintSpecialRow(dc, rect, item, selected);
    }
    QImage Picture(CAppointment& item, int width = 240, bool location = true, bool selected = false)
    {
        QImage picture(width, 400, QImage::Format_RGB32);
        picture.fill(kMarker);
        QPainter dc(&picture);
        LastHeight = Paint(&dc, item, width, location, selected);
        return picture;
    }
    std::unique_ptr<CAppointment> Sample(const QString& subject = QStringLiteral("Lunch"))
    {
        return Appointment(1, subject, kToday + 0.5, kToday + 0.55);
    }
    static void SetAllIcons(CAppointment& item)
    {
        item.ReminderSet = item.HasNote = item.HasAttendees = item.Conflict = true;
        item.Sensitivity = 2;
        item.Recurrence = 1;
    }
    CItemRowPainter Painter;
    int LastHeight = 0;
};

QString RandomText(std::mt19937& random)
{
    static const QStringList words = {
        "Team",     "meeting", "Über", "façade", "a", "Donaudampfschifffahrtsgesellschaft",
        "🎂",        "日本",    "&",    "x\ny",   "Ω", "llllllll",
        "WWWWWWWW", "ř"};
    QStringList text;
    for (int n = int(random() % 14); n >= 0; --n)
        text << words[int(random() % size_t(words.size()))];
    return text.join(u' ');
}
} // namespace

TEST_F(ItemRows, MeasuredHeightIsThePaintedOneAndNothingIsPaintedBelow)
{
    std::mt19937 random(4711);
    for (int round = 0; round < 160; ++round) {
        SetDensity(round % 5 == 4 ? 192 : 96);
        Init(random() % 3 == 0, int(random() % 3), random() % 2);
        const auto item = Sample(RandomText(random));
        item->Kind = round % 7 == 6 ? kKindBirthday : kKindAppointment;
        item->Location = random() % 2 ? RandomText(random) : QString();
        item->AllDay = random() % 4 == 0;
        item->Past = random() % 4 == 0;
        item->ReminderSet = random() % 2;
        item->HasNote = random() % 2;
        item->Conflict = random() % 2;
        item->Recurrence = random() % 2;
        item->HasAttendees = random() % 2;
        const int width = 120 + int(random() % 300);
        const int measured = Paint(nullptr, *item, width);
        QImage picture(width, 2000, QImage::Format_RGB32);
        picture.fill(kMarker);
        QPainter dc(&picture);
        ASSERT_EQ(Paint(&dc, *item, width), measured) << item->Subject.toStdString() << " on " << width;
        int lowest = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < width; ++x)
                lowest = picture.pixel(x, y) == kMarker ? lowest : y;
        }
        ASSERT_LT(lowest, measured) << item->Subject.toStdString() << " on " << width;
    }
}

TEST_F(ItemRows, AtMostFiveIconsTheReminderRightmost)
{
    for (const bool single : {false, true}) {
        Init(single);
        const auto item = Sample();
        SetAllIcons(*item);
        const CRowIcons icons = Painter.LayOutStatusIcons(*item, 237, 2, 17);
        ASSERT_EQ(icons.Icons.size(), 5u);
        EXPECT_EQ(icons.Icons[0].ImageId, PictureReminder);
        EXPECT_EQ(icons.Icons[0].Rect.x() + icons.Icons[0].Rect.width(), 237);
        for (size_t n = 0; n < 5; ++n) {
            EXPECT_GE(icons.Icons[n].Rect.x(), 237 - icons.Width);
            EXPECT_LE(icons.Icons[n].Rect.bottom(), icons.Bottom);
            for (size_t m = 0; m < n; ++m)
                EXPECT_FALSE(icons.Icons[n].Rect.intersects(icons.Icons[m].Rect));
        }
        EXPECT_EQ(icons.Icons[2].Rect.y() > icons.Icons[1].Rect.y(), !single)
            << "the third opens a second line";
        item->ReminderSet = false;
        EXPECT_EQ(Painter.LayOutStatusIcons(*item, 237, 2, 17).Icons[0].ImageId, PicturePrivate);
    }
}

TEST_F(ItemRows, CategoryIconsFollowInColourAndTextKeepsOffThem)
{
    const COLORREF red = Rgb(250, 1, 2);
    for (int n = 0; n < 4; ++n) {
        const QString reference = QStringLiteral("icon %1").arg(n);
        PimStore().Categories().Add(QStringLiteral("Cat %1").arg(n), 100 + n);
        PimStore().Categories().SetImageName(100 + n, n == 1 ? QString() : reference);
        g_ImageStore.PutIcon(reference, MakeSolidImage(16, 16, n ? Rgb(0, 200, 0) : red, 255));
    }
    for (const int kind : {kKindAppointment, kKindBirthday}) {
        for (const bool single : {false, true}) {
            Init(single);
            const auto item = Sample();
            item->Kind = kind;
            item->AllDay = true;
            item->Categories.Insert(101);
            const QImage without = Picture(*item); // a category without an icon shows nothing
            const int height = LastHeight;
            for (const int number : {100, 102, 103})
                item->Categories.Insert(number);
            EXPECT_EQ(Painter.LayOutStatusIcons(*item, 237, 0, 17).Icons.size(), 3u);
            for (const bool selected : {false, true}) {
                const QImage with = Picture(*item, 240, true, selected);
                EXPECT_EQ(with.pixel(236, 10), qRgb(250, 1, 2)) << kind << single << selected;
                EXPECT_EQ(with.pixel(237, 10), without.pixel(237, 10));
            }
            EXPECT_GE(LastHeight, height);
            item->Subject = QString(200, u'W');
            const QImage picture = Picture(*item);
            for (int y = 0; y < 16; ++y) // the gap between the first two
                EXPECT_EQ(picture.pixel(237 - 16 - 1, y), kMarker) << kind << single << y;
        }
    }
    Init(true);
    const auto item = Sample();
    SetAllIcons(*item);
    item->Conflict = item->HasAttendees = false;
    item->Categories.Insert(100);
    item->Categories.Insert(102);
    const CRowIcons icons = Painter.LayOutStatusIcons(*item, 237, 0, 17);
    ASSERT_EQ(icons.Icons.size(), 5u);
    EXPECT_TRUE(icons.Icons[4].Picture);
    PimStore().Categories().Close();
    g_ImageStore.Clear();
}

TEST_F(ItemRows, TextNeverLiesUnderTheIcons)
{
    for (const bool single : {false, true}) {
        Init(single);
        const auto item =
            Sample(QStringLiteral("WWWW WWWW WWWW WWWW WWWW WWWW WWWW WWWW WWWW WWWW WWWW WWWW"));
        item->Location = item->Subject;
        SetAllIcons(*item);
        const int left = 237 - Painter.LayOutStatusIcons(*item, 237, 0, 17).Width + 2;
        const QImage with = Picture(*item).copy(left, 0, 240 - left, 400);
        item->Subject.clear();
        item->Location.clear();
        item->AllDay = true; // no time either
        EXPECT_EQ(Picture(*item).copy(left, 0, 240 - left, 400), with)
            << (single ? "single line" : "several lines");
    }
}

TEST_F(ItemRows, NoParenthesesAroundNothing)
{
    Init(true);
    const auto item = Sample();
    EXPECT_EQ(Picture(*item, 240, true), Picture(*item, 240, false));
    item->Location = QStringLiteral("Bistro");
    EXPECT_NE(Picture(*item, 240, true), Picture(*item, 240, false));
}

TEST_F(ItemRows, SelectedTextIgnoresTheTextColours)
{
    for (const bool single : {false, true}) {
        Init(single);
        const auto item = Sample();
        item->BusyStatus = 0;
        item->Location = QStringLiteral("Bistro");
        QList<QImage> selected, plain;
        for (const int colors : {0, 1, 2}) {
            g_Settings.General.TextColorsToUse = colors;
            selected << Picture(*item, 240, true, true);
            plain << Picture(*item, 240, true, false);
        }
        EXPECT_EQ(selected[0], selected[1]);
        EXPECT_EQ(selected[0], selected[2]);
        EXPECT_NE(plain[0], plain[2]);
        EXPECT_NE(plain[0], selected[0]);
    }
}

TEST_F(ItemRows, LeadingRectangleTakesItsColourAndReachesTheRowsEnd)
{
    for (const bool single : {false, true}) {
        for (const int mode : {1, 2}) {
            Init(single, mode);
            const auto item = Sample(QStringLiteral("Lunch with people from far away who stay rather long"));
            item->BusyStatus = 3;
            const QImage picture = Picture(*item, 160);
            const COLORREF wanted = mode == 1 ? PimStore().GetItemColor(*item) : Painter.StatusColor(3);
            EXPECT_EQ(picture.pixel(5, 2), ToQColor(wanted).rgb());
            EXPECT_EQ(picture.pixel(5, LastHeight - 3), ToQColor(wanted).rgb());
            EXPECT_EQ(picture.pixel(5, 1), kMarker);
            EXPECT_EQ(picture.pixel(5, LastHeight - 2), kMarker);
        }
    }
    EXPECT_EQ(Painter.StatusColor(4), kColorNotSet);
    EXPECT_EQ(Painter.StatusColor(-1), kColorNotSet);
    EXPECT_EQ(Painter.StatusColor(1), g_Settings.ResolveColor(1003));
    EXPECT_EQ(Painter.StatusColor(2), g_Settings.ResolveColor(1002));
}

TEST_F(ItemRows, TimeColumnIsMeasuredForItsText)
{
    Init(true, 0, false);
    const int both = Painter.TimeColumnWidth();
    Init(true, 0, true);
    EXPECT_LT(Painter.TimeColumnWidth(), both);
    const int start = Painter.TimeColumnWidth();
    Init(true, 2, true);
    EXPECT_EQ(Painter.TimeColumnWidth(), start + 6);
    Init(false);
    EXPECT_EQ(Painter.TimeColumnWidth(), 0);
}

TEST_F(ItemRows, ATaskTellsWhereItsCheckBoxIs)
{
    for (const bool single : {false, true}) {
        Init(single);
        CCalendarTask task;
        task.Subject = QStringLiteral("Pay the rent");
        for (const int priority : {0, 1, 2}) {
            task.Priority = priority;
            QImage picture(240, 100, QImage::Format_RGB32);
            picture.fill(kMarker);
            QPainter dc(&picture);
            QRect box;
            const int height = Painter.PaintTaskRow(&dc, {0, 10, 240, 0}, task, false, &box);
            EXPECT_EQ(height, Painter.PaintTaskRow(nullptr, {0, 10, 240, 0}, task, false));
            EXPECT_EQ(box.size(), QSize(15, 15));
            EXPECT_TRUE(QRect(0, 10, 240, height).contains(box));
        }
    }
}

TEST_F(ItemRows, AnItemWithoutTextsStillHasARow)
{
    for (const bool single : {false, true}) {
        Init(single);
        const auto item = Sample(QString());
        item->AllDay = true;
        EXPECT_GE(Paint(nullptr, *item, 240), 13);
        EXPECT_GE(Paint(nullptr, *item, 3), 13) << "a width that holds nothing";
    }
}
