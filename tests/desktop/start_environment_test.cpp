#include "desktop/start_environment.h"

#include <gtest/gtest.h>

TEST(StartEnvironment, HidesTheDesktopAndRestoresIt)
{
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    {
        CStartEnvironment environment;
        EXPECT_FALSE(qgetenv("XDG_CURRENT_DESKTOP").contains("GNOME"));
    }
    EXPECT_EQ(qgetenv("XDG_CURRENT_DESKTOP"), "ubuntu:GNOME");
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"));

    qunsetenv("XDG_CURRENT_DESKTOP");
    qputenv("QT_QPA_PLATFORMTHEME", "gtk3");
    CStartEnvironment environment;
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"));
    environment.Restore();
    environment.Restore();
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP"));
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORMTHEME"), "gtk3");
    qunsetenv("QT_QPA_PLATFORMTHEME");
}

TEST(StartEnvironment, KnowsHandhelds)
{
    const struct {
        const char *Desktops, *MachineInfo, *Chassis;
        bool Handheld;
    } cases[] = {
        {"Phosh:GNOME", "", "", true},
        {"KDE:plasma-mobile", "", "", true},
        {"sxmo-de-sway", "", "", true},
        {"GNOME", "", "10\n", false},
        {"GNOME", "", "11\n", true},
        {"GNOME", "", "30\n", true},
        {"GNOME", "PRETTY_HOSTNAME=x\nCHASSIS=\"handset\"\n", "3", true},
        {"", "CHASSIS=laptop", "11", false},
        {"", "", "", false},
        {"GNOME-Phoshy", "", "x", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsHandheld(c.Desktops, c.MachineInfo, c.Chassis), c.Handheld)
            << c.Desktops << c.MachineInfo << c.Chassis;
}
