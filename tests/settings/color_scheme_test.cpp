#include "settings/color_scheme.h"

#include "settings/color_table.h"
#include "settings/settings_file.h"
#include "settings/system_colors.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <gtest/gtest.h>

namespace
{
constexpr COLORREF kLight = Rgb(200, 100, 50);
constexpr COLORREF kText = Rgb(1, 2, 3);

class CColorSchemeTest : public ::testing::Test
{
protected:
    void SetUp() override { SetSystemColors(kLight, kText); }
    void TearDown() override { SetSystemColors(SystemColor::Highlight, SystemColor::HighlightText); }
    CColorScheme m_scheme;
};
} // namespace

TEST_F(CColorSchemeTest, UnsetColorsFollowTheHighlight)
{
    struct {
        int Id;
        COLORREF Color;
    } const cases[] = {
        {504, kLight},
        {3007, kLight},
        {3012, kLight},
        {4011, kLight},
        {5004, kLight},
        {5011, kLight},
        {6005, kLight},
        {6022, kLight},
        {7005, kLight},
        {503, kText},
        {505, kText},
        {6006, kText},
        {4006, SystemColor::TitleBand},
        {3008, Rgb(31, 16, 8)},     // 40 parts of 255
        {5003, Rgb(238, 206, 191)}, // 80 parts, the rest white
        {6001, Rgb(238, 206, 191)},
        {5005, Rgb(223, 164, 134)}, // 150
        {6004, Rgb(223, 164, 134)},
        {5010, Rgb(245, 226, 216)}, // 48
        {6002, Rgb(245, 226, 216)},
    };
    for (const auto& c : cases) {
        bool hasRule = false;
        EXPECT_EQ(m_scheme.ResolveColor(c.Id), c.Color) << c.Id;
        EXPECT_EQ(m_scheme.DefaultColor(c.Id, &hasRule), c.Color) << c.Id;
        EXPECT_TRUE(hasRule) << c.Id;
        EXPECT_EQ(m_scheme.GetStoredColor(c.Id), kColorNotSet) << c.Id;
    }
}

TEST_F(CColorSchemeTest, DerivedColorsFollowTheUsersOwn)
{
    m_scheme.SetStoredColor(3007, Rgb(255, 0, 0));
    m_scheme.SetStoredColor(6005, 0);
    EXPECT_EQ(m_scheme.ResolveColor(3008), Rgb(40, 0, 0));
    EXPECT_EQ(m_scheme.ResolveColor(6001), Rgb(175, 175, 175));
    EXPECT_EQ(m_scheme.ResolveColor(5003), Rgb(238, 206, 191)); // another highlight
    m_scheme.SetStoredColor(6001, 5);
    EXPECT_EQ(m_scheme.ResolveColor(6001), 5u);
    m_scheme.ResetColors();
    EXPECT_EQ(m_scheme.ResolveColor(6005), kLight);
}

TEST_F(CColorSchemeTest, NoEntryAndNoRule)
{
    bool hasRule = true;
    EXPECT_EQ(m_scheme.GetStoredColor(6018), kColorNotSet);
    EXPECT_EQ(m_scheme.ResolveColor(6018), kColorBlack);
    EXPECT_EQ(m_scheme.DefaultColor(501, &hasRule), kColorBlack);
    EXPECT_FALSE(hasRule);
    m_scheme.SetStoredColor(501, kColorNotSet);
    EXPECT_EQ(m_scheme.ResolveColor(501), kColorBlack);
}

TEST_F(CColorSchemeTest, StepsThroughAllNumbers)
{
    std::set<int> seen;
    int steps = 0;
    for (int id = CColorScheme::NextColorId(0); id != -1 && steps < 200;
         id = CColorScheme::NextColorId(id), ++steps)
        seen.insert(id);
    std::set<int> wanted = {500, 1000, 2000, 3000, 4000, 5000, 6000, 7000}; // bases of the groups
    for (const auto& [id, color] : m_scheme.m_colorValues)
        wanted.insert(id);
    wanted.erase(6017); // stepped over together with the unused 6018
    EXPECT_EQ(seen, wanted);
}

TEST_F(CColorSchemeTest, EveryColorHasAName)
{
    for (const CColorKey& color : kColorKeys)
        EXPECT_FALSE(GetString(StrColorNames + color.Id).isEmpty()) << color.Id;
    EXPECT_TRUE(GetString(StrColorNames + 6018).isEmpty());
}

TEST_F(CColorSchemeTest, LoadsAndSaves)
{
    CSettingsFile file;
    file.LoadBytes(
        "[Colors-Current]\nColorDailyViewBk=[-1]\nOther=1,1,1\nColorTasksViewBk=300,0,0\nAnother=2,2,2\n");
    m_scheme.LoadColors(file);
    EXPECT_EQ(m_scheme.GetStoredColor(3006), kColorNotSet);
    EXPECT_EQ(m_scheme.GetStoredColor(7001), 300u); // spills over into green
    EXPECT_EQ(m_scheme.GetStoredColor(4005), kColorWhite);
    EXPECT_EQ(m_scheme.GetStoredColor(0), Rgb(2, 2, 2)); // unknown keys share one value
    CSettingsFile saved;
    m_scheme.SaveColors(saved);
    const CSettingsSection* section = saved.FindSection("Colors-Current");
    ASSERT_TRUE(section);
    EXPECT_EQ(section->m_keyOrder.size(), 81);
    EXPECT_TRUE(std::is_sorted(section->m_keyOrder.begin(), section->m_keyOrder.end()));
    EXPECT_EQ(section->m_values.at("Other"), "2,2,2");
    EXPECT_EQ(section->m_values.at("ColorTasksViewBk"), "44,1,0");
    EXPECT_EQ(section->m_values.at("ColorDailyViewBk"), "[-1]");
}
