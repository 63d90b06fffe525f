#include "desktop/desktop_colors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(DesktopColors, KdeFilesNameThePair)
{
    const CHighlight known{Rgb(61, 174, 233), Rgb(252, 252, 252)};
    EXPECT_EQ(ParseKdeColors(
                  "[Colors:Button]\nBackgroundNormal=1,2,3\n\n[Colors:Selection]\nBackgroundAlternate=9,9,9\n"
                  "BackgroundNormal=61,174,233\r\nForegroundNormal=252, 252, "
                  "252\n[Colors:View]\nBackgroundNormal=4,5,6\n"),
              known);
    for (const char* broken :
         {"", "[Colors:Selection]\n", "[Colors:Selection]\nBackgroundNormal=61,174\n",
          "[Colors:Selection]\nBackgroundNormal=61,174,999\n", "[Colors:View]\nBackgroundNormal=1,2,3\n"})
        EXPECT_FALSE(ParseKdeColors(broken).IsKnown()) << broken;
}

TEST(DesktopColors, StyleSheetsNameTheSelectedGround)
{
    EXPECT_EQ(ParseGtkColors("@define-color theme_selected_bg_color #3584e4;\n@define-color "
                             "theme_selected_fg_color #ffffff;\n"),
              (CHighlight{Rgb(0x35, 0x84, 0xE4), kColorWhite}));
    EXPECT_EQ(ParseGtkColors("@define-color accent_bg_color #fd0;"),
              (CHighlight{Rgb(0xFF, 0xDD, 0), kColorBlack}))
        << "without a text colour the readable one";
    EXPECT_EQ(
        ParseGtkColors(
            "@define-color theme_selected_bg_color #111111;@define-color theme_selected_bg_color #222222;")
            .Back,
        Rgb(0x22, 0x22, 0x22));
    for (const char* broken :
         {"", "@define-color theme_selected_bg_color @blue_3;",
          "@define-color theme_selected_bg_color #12345", "@define-color theme_selected_bg_color #gggggg;"})
        EXPECT_FALSE(ParseGtkColors(broken).IsKnown()) << broken;
}

TEST(DesktopColors, ThePortalsFractionsOutOfRangeMeanNone)
{
    EXPECT_EQ(AccentHighlight(0, 0.5, 1).Back, Rgb(0, 128, 255));
    EXPECT_FALSE(AccentHighlight(-1, -1, -1).IsKnown());
    EXPECT_FALSE(AccentHighlight(0, 1.1, 0).IsKnown());
    EXPECT_FALSE(AccentHighlight(0, std::numeric_limits<double>::quiet_NaN(), 0).IsKnown());
}

TEST(DesktopColors, TextIsWhiteAsLongAsItCanBe)
{
    EXPECT_EQ(ReadableOn(Rgb(0xE9, 0x54, 0x20)), kColorWhite);
    EXPECT_EQ(ReadableOn(Rgb(0x35, 0x84, 0xE4)), kColorWhite);
    EXPECT_EQ(ReadableOn(Rgb(0xFF, 0xDD, 0x00)), kColorBlack);
    EXPECT_EQ(ReadableOn(kColorWhite), kColorBlack);
    EXPECT_EQ(ReadableOn(kColorBlack), kColorWhite);
}

TEST(DesktopColors, TheUsersOwnSheetWinsOverTheThemes)
{
    QTemporaryDir home;
    const auto write = [&](const QString& name, const QByteArray& text) {
        const QString path = home.path() + '/' + name;
        QDir().mkpath(path.section('/', 0, -2));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    const std::vector<std::pair<const char*, QByteArray>> places = {
        {"XDG_CONFIG_HOME", (home.path() + "/config").toUtf8()},
        {"XDG_DATA_HOME", (home.path() + "/data").toUtf8()},
        {"XDG_CURRENT_DESKTOP", "XFCE"}};
    std::vector<std::pair<const char*, QByteArray>> saved;
    for (const auto& [name, value] : places) {
        saved.emplace_back(name, qgetenv(name));
        qputenv(name, value);
    }
    CHighlight found;
    const auto take = [&](const CHighlight& highlight) { found = highlight; };
    write("data/themes/Odd/gtk-3.0/gtk.css", "@define-color theme_selected_bg_color #010203;");
    write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-theme-name=Odd\n");
    FetchHighlight(take);
    EXPECT_EQ(found.Back, Rgb(1, 2, 3));
    write("config/gtk-3.0/gtk.css", "@define-color theme_selected_bg_color #040506;");
    FetchHighlight(take);
    EXPECT_EQ(found.Back, Rgb(4, 5, 6));
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    write("config/kdeglobals", "[Colors:Selection]\nBackgroundNormal=7,8,9\n");
    FetchHighlight(take);
    EXPECT_EQ(found.Back, Rgb(7, 8, 9));
    for (const auto& [name, value] : saved)
        value.isNull() ? (void)qunsetenv(name) : (void)qputenv(name, value);
}
