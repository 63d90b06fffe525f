// Titles of views and short texts of items.
#include "settings/item_text.h"
#include "settings/title_formats.h"

#include "fake_locale.h"
#include "util/date_time.h"

#include <gtest/gtest.h>

namespace
{
const DATE kFirst = DayNumberOf(2009, 1, 5);   // a Monday
const DATE kSecond = DayNumberOf(2009, 1, 11); // a Sunday

struct TitleCase {
    int Table, Index;
    const char* American;
    const char* German;
};
const TitleCase kTitles[] = {
    {0, 0, "01/05 - 01/11", "05.01 - 11.01"},
    {0, 1, "01/05 - 01/11", "01.05 - 01.11"},
    {0, 2, "01/05 - 01/11/09", "01.05 - 01.11.09"},
    {0, 3, "05/01 - 11/01", "05.01 - 11.01"},
    {0, 4, "05/01 - 11/01/09", "05.01 - 11.01.09"},
    {0, 5, "Jan 05 - Jan 11", nullptr},
    {100, 0, "01/05 - 01/11", "05.01 - 11.01"},
    {100, 4, "05/01 - 11/01/09", "05.01 - 11.01.09"},
    {1, 0, "Monday, Jan 05", nullptr},
    {1, 1, "Monday, Jan 05 2009", nullptr},
    {1, 2, "Mon, Jan 05 2009", nullptr},
    {1, 3, "Mon, Jan 05", nullptr},
    {1, 4, "1/5/2009", "05.01.09"},
    {1, 5, "Monday, January 5, 2009", "Montag, 5. Januar 2009"},
    {1, 6, "Mon, 05 Jan 2009", nullptr},
    {400, 0, "Monday, Jan 05", nullptr},
    {400, 6, "Mon, 05 Jan 2009", nullptr},
    {101, 0, "Mon,01/05", nullptr},
    {101, 1, "Mon,01/05", nullptr},
    {101, 2, "01/05", "01.05"},
    {101, 3, "Mon,05/01", nullptr},
    {101, 4, "05/01", "05.01"},
    {200, 0, "January 2009", "Januar 2009"},
    {200, 1, "January, 09", "Januar, 09"},
    {200, 2, "Jan 2009", nullptr},
    {200, 3, "Jan, 09", nullptr},
    {300, 0, "01/11", "11.01"},
    {300, 1, "01/11", "01.11"},
    {300, 2, "01/05-01/11", "01.05-01.11"},
    {300, 3, "11/01", "11.01"},
    {300, 4, "05/01-11/01", "05.01-11.01"},
    {300, 5, "", ""},
};
} // namespace

TEST(TitleFormats, Tables)
{
    CFakeLocale american;
    const std::unique_ptr<ILocale> german = MakeLocale("de_DE");
    for (const TitleCase& c : kTitles) {
        QString text = "as before";
        SetLocale(&american);
        EXPECT_TRUE(FormatViewTitle(c.Table, c.Index, kFirst + 0.7, kSecond, &text))
            << c.Table << ' ' << c.Index;
        EXPECT_EQ(text.toStdString(), c.American) << c.Table << ' ' << c.Index;
        if (!c.German)
            continue;
        SetLocale(german.get());
        EXPECT_TRUE(FormatViewTitle(c.Table, c.Index, kFirst + 0.7, kSecond, &text))
            << c.Table << ' ' << c.Index;
        EXPECT_EQ(text.toStdString(), c.German) << c.Table << ' ' << c.Index << " in German";
    }
}

TEST(TitleFormats, RefusesWhatTheTablesHaveNot)
{
    CFakeLocale locale;
    const int counts[][2] = {{0, 6},   {100, 6}, {1, 7}, {400, 7}, {101, 5},
                             {200, 4}, {300, 6}, {2, 0}, {-1, 0},  {500, 0}};
    for (const auto& [table, count] : counts) {
        for (const int index : {-2147483647, -1, count, count + 1, 2147483647}) {
            QString text = "kept";
            EXPECT_FALSE(FormatViewTitle(table, index, kFirst, kSecond, &text)) << table << ' ' << index;
            EXPECT_EQ(text, "kept");
        }
    }
}

TEST(TitleFormats, TaskDatesThatAreNotSet)
{
    CFakeLocale locale;
    struct {
        int Index;
        DATE Start, Due;
        const char* Text;
    } const cases[] = {
        {1, kFirst, NO_DATE, ""},        {3, NO_DATE, NO_DATE, ""},           {2, NO_DATE, NO_DATE, ""},
        {2, NO_DATE, kSecond, "-01/11"}, {2, kFirst, NO_DATE, "01/05-01/01"}, {4, NO_DATE, kSecond, "-11/01"},
        {0, kFirst, NO_DATE, ""},
    };
    for (const auto& c : cases) {
        QString text = "x";
        EXPECT_TRUE(FormatViewTitle(300, c.Index, c.Start, c.Due, &text));
        EXPECT_EQ(text.toStdString(), c.Text) << c.Index;
    }
}

TEST(TitleFormats, RegionalIndexByTheOrderOfDates)
{
    CFakeLocale locale;
    const char* orders[] = {"0", "1", "2", ""};
    const char* wanted[] = {"01/05 - 01/11", "05/01 - 11/01", "01/05 - 01/11", "05/01 - 11/01"};
    for (int i = 0; i < 4; ++i) {
        QString text;
        locale.Values[LocaleValue::DateOrder] = orders[i];
        EXPECT_TRUE(FormatViewTitle(0, 0, kFirst, kSecond, &text));
        EXPECT_EQ(text, wanted[i]) << orders[i];
    }
}

TEST(ItemText, PrefixAndTimeColumn)
{
    CFakeLocale locale;
    const double day = kFirst, ten = 10 / 24.0, half = 15.5 / 24.0;
    struct {
        const char* What;
        double Start, End;
        bool Night; // ends in the night that is kept on this day
        const char* Prefix;
        const char* Wide;
        const char* Compact;
        const char* OnlyStart;
    } const cases[] = {
        {"within the day", day + ten, day + half, false, "10:00 AM: ", "10:00 AM-3:30 PM", "10:00a-03:30p",
         "10:00 AM"},
        {"ends tomorrow", day + ten, day + 1 + half, false, "10:00 AM: ", "10:00 AM-Multiday", "10:00a-M.D",
         "10:00 AM"},
        {"since yesterday", day - 1 + ten, day + half, false, ">3:30 PM: ", "Multiday-3:30 PM", "M.D-03:30p",
         "Multiday"},
        {"yesterday to tomorrow", day - 1 + ten, day + 1 + half, false, "M.D: ", "Multiday", "M.D",
         "Multiday"},
        {"a night kept here", day + half, day + 1 + ten, true, "3:30 PM: ", "3:30 PM-10:00 AM",
         "03:30p-10:00a", "3:30 PM"},
        {"a later night", day - 1 + half, day + 1 + ten, true, "M.D: ", "Multiday-10:00 AM", "M.D-10:00a",
         "Multiday"},
        {"two nights are too long", day + half, day + 2 + ten, true, "3:30 PM: ", "3:30 PM-Multiday",
         "03:30p-M.D", "3:30 PM"},
        {"begins later than the row", day + 1, day + 1, false, "12:00 AM: ", "12:00 AM-Multiday",
         "12:00a-M.D", "12:00 AM"},
    };
    for (const auto& c : cases) {
        const int row = int(day);
        EXPECT_EQ(FormatRowPrefix(row, false, c.Start, c.End), c.Prefix) << c.What;
        EXPECT_EQ(FormatRowPrefix(row, true, c.Start, c.End), "AllDay: ") << c.What;
        EXPECT_EQ(FormatTimeRange(c.Start, c.End, row, false, false, c.Night), c.Wide) << c.What;
        EXPECT_EQ(FormatTimeRange(c.Start, c.End, row, true, false, c.Night), c.Compact) << c.What;
        EXPECT_EQ(FormatTimeRange(c.Start, c.End, row, false, true, c.Night), c.OnlyStart) << c.What;
    }
    locale.Values[LocaleValue::TimeMode] = "1";
    EXPECT_EQ(FormatTime(day + half, true), "15:30");
}

TEST(ItemText, GermanTimes)
{
    const std::unique_ptr<ILocale> german = MakeLocale("de_DE");
    SetLocale(german.get());
    EXPECT_EQ(FormatTimeRange(kFirst + 9.5 / 24, kFirst + 17 / 24.0, int(kFirst), false, false, false),
              "09:30-17:00");
    EXPECT_EQ(FormatTime(kFirst + 9.5 / 24, true), "09:30");
    EXPECT_EQ(GetDatePattern(false), "dd.MM.yyyy");
    EXPECT_EQ(GetLocaleText(LocaleValue::DateSeparator), ".");
    SetLocale(nullptr);
}

TEST(ItemText, Pictures)
{
    CFakeLocale locale;
    struct {
        const char* Order;
        const char* WithYear;
        const char* Without;
    } const dates[] = {
        {"0", "MM/dd/yyyy", "MM/dd"},  {"1", "dd/MM/yyyy", "dd/MM"},  {"2", "yyyy/MM/dd", "MM/dd"},
        {"49", "dd/MM/yyyy", "dd/MM"}, {"50", "yyyy/MM/dd", "MM/dd"}, {"48", "MM/dd/yyyy", "MM/dd"},
        {"-3", "MM/dd/yyyy", "MM/dd"}, {"", "MM/dd/yyyy", "MM/dd"},   {"7", "MM/dd/yyyy", "MM/dd"},
    };
    for (const auto& c : dates) {
        locale.Values[LocaleValue::DateOrder] = c.Order;
        EXPECT_EQ(GetDatePattern(false), c.WithYear) << c.Order;
        EXPECT_EQ(GetDatePattern(true), c.Without) << c.Order;
    }
    const char* modes[] = {"0", "48", "7", "-1", "1", "49", "2"};
    for (int i = 0; i < 7; ++i) {
        locale.Values[LocaleValue::TimeMode] = modes[i];
        EXPECT_EQ(GetTimePattern(true), i < 4 ? "hh:mmt" : "HH:mm") << modes[i];
        EXPECT_EQ(GetTimePattern(false), i < 4 ? "hh:mm tt" : "HH:mm") << modes[i];
    }
}

TEST(ItemText, Reminders)
{
    struct {
        int Minutes;
        const char* Text;
    } const cases[] = {
        {0, "0 minutes"},   {1, "1 minutes"},   {90, "90 minutes"}, {60, "1 hours"},
        {120, "2 hours"},   {1500, "25 hours"}, {1440, "1 days"},   {2880, "2 days"},
        {10080, "1 weeks"}, {14400, "10 days"}, {20160, "2 weeks"}, {1441, "1441 minutes"},
        {-60, "-1 hours"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FormatReminder(c.Minutes), c.Text) << c.Minutes;
}
