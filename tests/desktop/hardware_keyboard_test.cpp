#include "desktop/hardware_keyboard.h"
#include "settings/settings.h"

#include <gtest/gtest.h>

TEST(HardwareKeyboard, AMachineOfTouchAloneHasNone)
{
    const struct {
        bool TouchScreen;
        const char* Devices;
        bool Keyboard;
    } cases[] = {
        {false, "", true},
        {true, "", false},
        {true, "N: Name=\"touch\"\nB: EV=b\nB: KEY=420 0 0 0 0 0\nB: ABS=2608000 3\n", false},
        {true, "N: Name=\"power and volume\"\nB: KEY=10000000000000 0\nB: REL=100\n", false},
        {true, "B: KEY=402000007 ff9f207ac14057ff febeffdfffefffff fffffffffffffffe\r\n", true},
        {true, "B: KEY=7f0000 0 0 0 3ff0000\n", true}, // words of 32 bits
        {true, "B: KEY=\nB: KEY=zz\nB: REL=143\n", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HasKeyboardAmong(c.TouchScreen, c.Devices), c.Keyboard) << c.Devices;
}

TEST(HardwareKeyboard, TheUserMaySayThatOneIsThere)
{
    ReplaceHardwareKeyboard(false);
    EXPECT_FALSE(HasHardwareKeyboard());
    g_Settings.General.ForceQWERTYKeyboard = 1;
    EXPECT_TRUE(HasHardwareKeyboard());
    g_Settings.General.ForceQWERTYKeyboard = 0;
    ReplaceHardwareKeyboard({});
}
