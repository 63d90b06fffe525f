// The libraries that the build made, as the program finds them.
#include "drawing/image_store.h"

#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "drawing/picture_ids.h"
#include "drawing/screen_metrics.h"
#include "settings/settings.h"

namespace
{
struct Group {
    int first;
    int last; // inclusive
    int width;
    int height;
};

// Every number that anything asks for, with its size in design pixels.
const Group kPictures[] = {
    {111, 112, 13, 13}, {136, 137, 13, 13}, {156, 156, 20, 13}, {164, 164, 13, 13}, {180, 181, 15, 15},
    {182, 183, 9, 13},  {187, 189, 13, 13}, {190, 190, 15, 15}, {191, 191, 9, 9},   {199, 200, 11, 11},
    {201, 201, 13, 13}, {234, 234, 15, 15}, {237, 245, 11, 11}, {246, 252, 16, 16}, {254, 255, 12, 12},
    {300, 305, 48, 48}, {400, 410, 40, 40}, {500, 502, 40, 40}, {601, 602, 16, 28}, {603, 603, 228, 104},
    {604, 605, 48, 32}, {700, 733, 24, 24},
};

class ImageStore : public testing::Test
{
protected:
    void TearDown() override
    {
        qunsetenv("TESSERA_SHARE");
        g_ScreenMetrics.Init(96, QSize());
        g_ImageStore.Clear();
    }
    void SetDensity(int density) { g_ScreenMetrics.Init(density, QSize()); }
    QString BuiltLibrary(const char* name)
    {
        return ShareFolders().first() + QLatin1Char('/') + QLatin1String(name);
    }
};

class ImageStoreAtDensity : public ImageStore, public testing::WithParamInterface<int>
{
};

TEST_P(ImageStoreAtDensity, HoldsEveryPictureAtItsSizeAndNoOther)
{
    SetDensity(GetParam());
    ASSERT_TRUE(LoadResourceLibraries(QString()));
    const int multiple = GetParam() / 96;
    qsizetype count = 0;
    for (const Group& group : kPictures) {
        for (int id = group.first; id <= group.last; ++id, ++count) {
            const CAlphaImage& image = g_ImageStore.Image(id);
            ASSERT_TRUE(image.IsValid()) << id;
            EXPECT_EQ(image.Width(), group.width * multiple) << id;
            EXPECT_EQ(image.Height(), group.height * multiple) << id;
            const quint8* alpha = image.Alpha();
            EXPECT_GT(std::count(alpha, alpha + image.Width() * image.Height(), 255), 0) << id;
        }
    }
    const QDir folder(QStringLiteral(":/pictures/%1").arg(GetParam()));
    EXPECT_EQ(folder.entryList(QDir::Files).size(), count);
}

INSTANTIATE_TEST_SUITE_P(Densities, ImageStoreAtDensity, testing::Values(96, 192, 288, 384));

TEST_F(ImageStore, AMissingNumberIsAnEmptyImage)
{
    ASSERT_TRUE(LoadResourceLibraries(QString()));
    EXPECT_FALSE(g_ImageStore.Image(99999).IsValid());
    EXPECT_FALSE(g_ImageStore.Image(-1).IsValid());
}

TEST_F(ImageStore, TakesTheOtherDensityWhenThereIsNoOtherLibrary)
{
    const QTemporaryDir folder;
    const QString library = folder.filePath(QStringLiteral("ZELVCalendarVGARes.rcc"));
    ASSERT_TRUE(QFile::copy(BuiltLibrary("ZELVCalendarVGARes.rcc"), library));
    qputenv("TESSERA_SHARE", folder.path().toUtf8());
    ASSERT_TRUE(LoadResourceLibraries(QString()));
    EXPECT_EQ(g_ImageStore.Image(PicturePriorityHigh).Width(), 2 * 9);
}

TEST_F(ImageStore, TheInstallFolderComesFirstButTheRightDensityBeforeIt)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy(BuiltLibrary("ZELVCalendarQVGARes.rcc"),
                            folder.filePath(QStringLiteral("ZELVCalendarVGARes.rcc"))));
    ASSERT_TRUE(LoadResourceLibraries(folder.path()));
    EXPECT_EQ(g_ImageStore.Image(PictureReminder).Width(), 13);
    SetDensity(192); // the folder's library holds only pictures for 96
    ASSERT_TRUE(LoadResourceLibraries(folder.path()));
    EXPECT_EQ(g_ImageStore.Image(PictureReminder).Width(), 13);
    ASSERT_TRUE(LoadResourceLibraries(QString()));
    EXPECT_EQ(g_ImageStore.Image(PictureReminder).Width(), 26);
}

TEST_F(ImageStore, WithoutAnyUsableLibraryThereAreNoPictures)
{
    const QTemporaryDir folder;
    QFile broken(folder.filePath(QStringLiteral("ZELVCalendarQVGARes.rcc")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("qres, but not really a library");
    broken.close();
    ASSERT_TRUE(LoadResourceLibraries(QString()));
    qputenv("TESSERA_SHARE", folder.path().toUtf8());
    EXPECT_FALSE(LoadResourceLibraries(folder.path()));
    EXPECT_FALSE(g_ImageStore.Image(PictureReminder).IsValid());
}

TEST_F(ImageStore, FontsFollowSettingsAndDensity)
{
    const auto textSize = g_Settings.DailyView.TextSize;
    g_Settings.DailyView.TextSize = 3;
    EXPECT_EQ(g_ImageStore.Font(600).pixelSize(), 16);
    EXPECT_EQ(g_ImageStore.Font(601).pixelSize(), 17);
    EXPECT_EQ(g_ImageStore.Font(601).weight(), QFont::Bold);
    EXPECT_FALSE(g_ImageStore.Font(601).strikeOut());
    EXPECT_TRUE(g_ImageStore.Font(602).strikeOut());
    EXPECT_EQ(g_ImageStore.Font(4).weight(), QFont::DemiBold);
    EXPECT_EQ(g_ImageStore.Font(0).families().first(), QStringLiteral("Tahoma"));
    SetDensity(192);
    EXPECT_EQ(g_ImageStore.Font(600).pixelSize(), 16); // until the store is emptied
    g_ImageStore.Clear();
    EXPECT_EQ(g_ImageStore.Font(600).pixelSize(), 33);
    EXPECT_EQ(g_ImageStore.FontHeight(600), 33);
    EXPECT_EQ(g_ImageStore.FontHeight(12345), 0);
    EXPECT_GT(QFontMetrics(g_ImageStore.Font(12345)).height(), 0);
    for (const int forced : {1, 0}) { // smooth, or as the system says
        g_ImageStore.Clear();
        g_Settings.General.ForceClearType = forced;
        EXPECT_EQ(g_ImageStore.Font(0).styleStrategy(), forced ? QFont::PreferAntialias : QFont::PreferDefault);
    }
    g_Settings.General.ForceClearType = 1;
    g_Settings.DailyView.TextSize = textSize;
}
} // namespace
