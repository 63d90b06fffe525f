// Month grid, week numbers and weekend columns: what follows settings about weeks.
#include "settings/month_grid.h"
#include "settings/settings.h"
#include "settings/week_number.h"

#include "fake_locale.h"
#include "util/date_time.h"

#include <QDate>
#include <gtest/gtest.h>

namespace
{
int DayOf(const QDate& date)
{
    return DayNumberOf(date.year(), date.month(), date.day());
}

class CWeeksTest : public ::testing::Test
{
protected:
    void TearDown() override { g_Settings = m_before; }
    CFakeLocale m_locale;
    CSettings m_before = g_Settings;
};
} // namespace

TEST_F(CWeeksTest, MonthGridIsWholeWeeksAroundTheMonth)
{
    for (int startDay = 0; startDay < 7; ++startDay) {
        g_Settings.MonthView.StartDay = startDay;
        for (QDate first(1999, 1, 1); first.year() < 2031; first = first.addMonths(1)) {
            const QDate last = first.addMonths(1).addDays(-1);
            const int start = GetMonthGridStart(DayOf(first.addDays(14)));
            const int end = GetMonthGridEnd(DayOf(last));
            EXPECT_EQ(DayOfWeekOf(start), startDay);
            EXPECT_EQ((end - start + 1) % 7, 0);
            EXPECT_TRUE(start <= DayOf(first) && start > DayOf(first) - 7) << first.toString().toStdString();
            EXPECT_TRUE(end >= DayOf(last) && end < DayOf(last) + 7) << first.toString().toStdString();
        }
    }
    g_Settings.MonthView.StartDay = 0;
    EXPECT_EQ(GetMonthGridEnd(DayNumberOf(2015, 2, 10)) - GetMonthGridStart(DayNumberOf(2015, 2, 10)) + 1,
              28);
    g_Settings.MonthView.StartDay = 2147483647; // a file may say anything
    EXPECT_LE(GetMonthGridStart(DayNumberOf(2015, 2, 10)), DayNumberOf(2015, 2, 1));
    g_Settings.MonthView.StartDay = -3;
    EXPECT_GT(GetMonthGridStart(DayNumberOf(2015, 2, 10)), DayNumberOf(2015, 2, 1) - 7);
}

TEST_F(CWeeksTest, FourDayWeeksFromMondayAreTheInternationalOnes)
{
    g_Settings.MonthView.StartDay = 1;
    for (int year = 1990; year < 2040; ++year) {
        // A year that begins on a Sunday counts that day's week as its first.
        const int shift = QDate(year, 1, 1).dayOfWeek() == 7 ? 1 : 0;
        for (QDate date(year, 1, 4); date <= QDate(year, 12, 28); date = date.addDays(1)) {
            const int week = GetWeekNumber(kFirstFourDayWeek, DayOf(date) + 0.9);
            const int wanted = date.weekNumber() + shift;
            ASSERT_EQ(week, shift && wanted == 53 ? 1 : wanted) << date.toString().toStdString();
        }
    }
}

TEST_F(CWeeksTest, WeekNumbers)
{
    struct {
        int Rule, StartDay;
        int Year, Month, Day;
        int Week;
        const char* What;
    } const cases[] = {
        {0, 1, 2024, 1, 1, 1, "1 January is a Monday"},
        {0, 1, 2024, 1, 7, 1, "its Sunday"},
        {0, 1, 2024, 1, 8, 2, "the next Monday"},
        {0, 1, 2024, 12, 29, 52, "last Sunday"},
        {0, 1, 2024, 12, 30, 1, "53 becomes 1"},
        {0, 0, 2023, 1, 1, 1, "1 January is a Sunday"},
        {0, 0, 2022, 1, 1, 1, "a week of one day"},
        {0, 0, 2022, 1, 2, 2, "the week after it"},
        {0, 0, 2000, 12, 31, 54, "a leap year from a Saturday has 54, which stays"},
        {0, 0, 2000, 12, 30, 1, "its 53 becomes 1"},
        {1, 1, 2023, 1, 1, 1, "before the first full week"},
        {1, 1, 2023, 1, 2, 1, "the first full week"},
        {1, 1, 2023, 1, 9, 2, "the second"},
        {1, 1, 2024, 12, 30, 53, "53 stays"},
        {1, 0, 2024, 1, 6, 1, "six days before the first full week"},
        {2, 1, 2023, 1, 1, 1, "a Sunday counts back to its Monday"},
        {2, 1, 2023, 1, 2, 2, "so the next day is in the second week"},
        {2, 1, 2026, 1, 1, 1, "a Thursday begins week 1"},
        {2, 1, 2026, 1, 5, 2, "its next Monday"},
        {2, 1, 2021, 1, 1, 1, "a Friday counts from the Monday after it"},
        {2, 1, 2021, 1, 4, 1, "that Monday"},
        {2, 1, 2020, 12, 31, 53, "53 stays before a Friday"},
        {2, 1, 2024, 12, 30, 1, "53 becomes 1 before a Wednesday"},
        {2, 0, 2020, 1, 1, 1, "weeks from Sunday"},
        {2, 0, 2020, 1, 5, 2, "weeks from Sunday"},
    };
    for (const auto& c : cases) {
        g_Settings.MonthView.StartDay = c.StartDay;
        EXPECT_EQ(GetWeekNumber(c.Rule, DayNumberOf(c.Year, c.Month, c.Day)), c.Week)
            << c.Year << '-' << c.Month << '-' << c.Day << " rule " << c.Rule << ": " << c.What;
    }
}

TEST_F(CWeeksTest, RuleOfWeekNumbers)
{
    const char* given[] = {"0", "1", "2", "", "7"};
    const int wanted[] = {0, 1, 2, 0, 0};
    for (int i = 0; i < 5; ++i) {
        g_Settings.General.FirstWeekInYear = 0;
        m_locale.Values[LocaleValue::FirstWeekOfYear] = given[i];
        EXPECT_EQ(GetWeekNumberMode(), wanted[i]) << given[i];
    }
    for (int setting = 1; setting <= 3; ++setting) {
        g_Settings.General.FirstWeekInYear = setting;
        EXPECT_EQ(GetWeekNumberMode(), setting - 1);
    }
}

TEST_F(CWeeksTest, WeekendColumns)
{
    const int firsts[] = {5, 6, 4, 5}, seconds[] = {6, 0, 5, 6};
    for (int setting = 0; setting < 4; ++setting) {
        int first = -1, second = -1;
        g_Settings.General.WeekStartDay = setting;
        GetWeekendColumns(&first, &second);
        EXPECT_EQ(first, firsts[setting]) << setting;
        EXPECT_EQ(second, seconds[setting]) << setting;
    }
}
