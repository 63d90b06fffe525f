// What the settings do: each value that a page offers shows in the view that it governs.
#include "pim/category_store.h"
#include "pim/pim_store.h"
#include "shell_fixture.h"

#include <QTest>
#include <set>

namespace
{
#define KEY(section, key)                                                                                    \
#section "/" #key, [](CSettingsValues & values) -> qint32& { return values.section.key; }

void Forward(CMainFrame& frame)
{
    frame.SendCommand(CmdDateForward);
}
void Down(CMainFrame& frame)
{
    QTest::keyClick(frame.CurrentView(), Qt::Key_Down);
}

constexpr int kD = kViewDaily, kL = kViewList, kW = kViewWeekly, kM = kViewMonthly, kT = kViewTasks;

// No two of the values may look alike; the first number is the view, and what else must be set for it.
const struct CLookCase {
    int View;
    const char* Name;
    qint32& (*Value)(CSettingsValues&);
    std::vector<int> Values;
    void (*Before)(CSettingsValues&) = nullptr;
    void (*After)(CMainFrame&) = nullptr; // what the hand does before one looks
} kLooks[] = {
    {kD, KEY(General, TextColorsToUse), {0, 1, 2}},
    {kD, KEY(General, IncludeSpecialEvents), {0, 1}},
    {kD, KEY(General, CustomTitlebarLocation), {0, 1, 2, 3, 4}},
    {kD, KEY(General, CustomTitlebarSize), {0, 1, 7, 14}},
    {kD, KEY(General, HumanTime), {0, 5}, nullptr, Forward},
    {kD, KEY(DailyView, PopOut), {0, 1, 2, 3}, nullptr, Down},
    {kL, KEY(ListView, PopOut), {0, 1, 2, 3}, nullptr, Down},
    {kT, KEY(TasksView, PopOut), {0, 1, 2, 3}, nullptr, Down},
    {kD, KEY(DailyView, TextSize), {0, 1, 3, 9, 17}},
    {kD, KEY(DailyView, ViewTitleFormat), {0, 1, 2, 3, 4, 5, 6}},
    {kD, KEY(DailyView, IncludeTimelines), {0, 1, 2}},
    {kD, KEY(DailyView, IncludeLeadingRects), {0, 1, 2}},
    {kD, KEY(DailyView, SingleLine), {0, 1}},
    {kD, KEY(DailyView, OnlyStartTime), {0, 1}},
    {kD, KEY(DailyView, IncludeLocation), {0, 1}},
    {kD, KEY(DailyView, PastAppointments), {0, 1, 2}},
    {kD, KEY(Tasks, IncludeInCalendar), {0, 1}},
    {kD, KEY(Tasks, IncludeUndatedOnToday), {0, 1}},
    {kD, KEY(Tasks, IncludeOverdueOnToday), {0, 1}},
    {kD, KEY(Tasks, IncludeActiveTasks), {0, 1}},
    {kD, KEY(Tasks, IncludeCompleted), {0, 1}},
    {kD, KEY(Tasks, Sort1), {0, 2, 4}},
    {kD, KEY(Tasks, Sort1Direction), {0, 1}},
    {kL, KEY(ListView, ListTitleFormat), {1, 2, 3, 4, 5}},
    {kL, KEY(ListView, DateTitleFormat), {0, 1, 2, 3, 4, 5, 6}},
    {kL, KEY(ListView, TextSize), {0, 2, 9, 17}},
    {kL, KEY(ListView, TextTitleSize), {0, 2, 9, 17}},
    {kL, KEY(ListView, LeadingRectColors), {0, 1, 2}},
    {kL, KEY(ListView, EmptyDays), {0, 1, 2}},
    {kL, KEY(ListView, StartOnToday), {0, 1}},
    {kL, KEY(ListView, OneLineMode), {0, 1}},
    {kL, KEY(ListView, OnlyStartTime), {0, 1}},
    {kL, KEY(ListView, IncludeLocation), {0, 1}, [](CSettingsValues& v) { v.ListView.OneLineMode = 0; }},
    {kL, KEY(General, WeekStartDay), {0, 1, 2}},
    {kW, KEY(WeekView, ListTitleFormat), {1, 2, 3, 4, 5}},
    {kW, KEY(WeekView, DateTitleFormat), {1, 2, 3, 4}},
    {kW, KEY(WeekView, TextSize), {0, 4}},
    {kW, KEY(WeekView, TextTitleSize), {0, 4}},
    {kW, KEY(WeekView, IncludeTimelinesBar), {0, 1, 2}},
    {kW, KEY(WeekView, LeadingRectColors), {0, 1, 2}},
    {kW, KEY(WeekView, StartOnToday), {0, 1}},
    {kW, KEY(WeekView, VerticalScrolling), {0, 1}},
    {kW, KEY(WeekView, IncludeStartTime), {0, 1}},
    {kW, KEY(WeekView, HideNoAppointments), {0, 1}},
    {kW, KEY(WeekView, PopOut), {0, 1, 2, 3}},
    {kM, KEY(MonthView, IncludeQuickView), {0, 2, 3}},
    {kM, KEY(MonthView, QuickViewTextSize), {0, 4, 10}},
    {kM, KEY(MonthView, ItemsToShow), {0, 1}},
    {kM, KEY(MonthView, ScrollByWeeks), {0, 1}, nullptr, Forward},
    {kM, KEY(MonthView, HideEmptyTimelines), {0, 1}},
    {kM, KEY(MonthView, ShowWeekNums), {0, 1}},
    {kM, KEY(MonthView, DateFormat), {0, 1, 2, 3}},
    {kM, KEY(MonthView, StartDay), {0, 1, 2, 3, 4, 5, 6}},
    {kM, KEY(MonthView, PopOut), {0, 1, 2, 3}},
    {kM, KEY(General, FirstWeekInYear), {1, 2}, [](CSettingsValues& v) { v.MonthView.ShowWeekNums = 1; }},
    {kT, KEY(TasksView, DateFormat), {1, 2, 3, 4, 5}},
    {kT, KEY(TasksView, TextSize), {0, 2, 9}},
    {kT, KEY(TasksView, TextTitleSize), {0, 2, 9}, [](CSettingsValues& v) { v.TasksView.Sort1 = 106; }},
    {kT, KEY(TasksView, IncludePreviewPane), {0, 1}},
    {kT, KEY(TasksView, PreviewTextSize), {0, 5}, nullptr, Down},
    {kT, KEY(TasksView, Sort1), {100, 101, 102}},
    {kT, KEY(TasksView, Sort1Direction), {0, 1}},
    {kT, KEY(TasksView, ItemsToView), {1, 2, 4, 255}},
    {kT, KEY(Tasks, IgnoreCompletedTasksOlderThan), {0, 1, 3}},
};
#undef KEY

class SettingsAct : public ShellFixture
{
protected:
    void AddAll()
    {
        const struct {
            const char *Subject, *Place, *Categories;
            double Start, Hours;
        } kItems[] = {
            {"Early", "Harbour", "Work", 7, 1},
            {"Dentist", "Main street", "Health", 11, 0.5},
            {"Night train", "Platform 2", "Travel", 21, 7},
            {"Yesterday", "There", "Work", -10, 2},
            {"Tomorrow", "Here", "Health", 35, 1},
            {"Next week", "Far", "Travel", 24 * 7 + 9.5, 2},
        };
        for (const auto& item : kItems) {
            const auto put = m_app->CreateAppointment();
            put->put_Subject(item.Subject);
            put->put_Location(item.Place);
            put->put_Categories(item.Categories);
            put->put_Start(kToday + item.Start / 24);
            put->put_End(kToday + (item.Start + item.Hours) / 24);
            ASSERT_TRUE(put->Save());
        }
        const struct {
            const char* Subject;
            int Start, Due, Done; // days; -1: not yet
        } kTasks[] = {
            {"Bake", 0, 0, -1},         {"Answer", kToday, kToday + 2, -1}, {"Call", 0, kToday - 3, -1},
            {"Draw", 0, kToday + 0, 0}, {"Erase", 0, kToday - 40, 40},
        };
        for (const auto& task : kTasks) {
            const auto put = m_app->CreateTask();
            put->put_Subject(task.Subject);
            put->put_Importance(task.Subject[0] == 'C' ? 2 : 1);
            if (task.Start != 0)
                put->put_StartDate(task.Start);
            if (task.Due != 0)
                put->put_DueDate(task.Due);
            if (task.Done >= 0) {
                put->put_Complete(true);
                put->put_DateCompleted(kToday - task.Done);
            }
            ASSERT_TRUE(put->Save());
        }
        const auto friendOfOurs = m_app->CreateContact();
        friendOfOurs->put_FileAs("Ann");
        friendOfOurs->put_Birthday(DayNumberOf(1990, 3, 10));
        ASSERT_TRUE(friendOfOurs->Save());
    }
    QByteArray Picture(const CLookCase& c, int value)
    {
        CSettings values;
        static_cast<CSettingsValues&>(g_Settings) = values;
        g_Settings.General.SlidingScreens = 0;
        g_Settings.General.LastView = c.View;
        if (c.Before)
            c.Before(g_Settings);
        c.Value(g_Settings) = value;
        g_Settings.Save();
        m_frame.reset();
        Start().resize(480, 640);
        m_frame->show();
        CCategoryStore& store = PimStore().Categories();
        if (const CCategory* work = store.FindByName("Work"))
            store.SetColor(work->Id, Rgb(20, 120, 50));
        if (c.After)
            c.After(*m_frame);
        const QImage picture = m_frame->Snapshot();
        return {reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()};
    }
};
} // namespace

TEST_F(SettingsAct, EveryValueLooksItsOwnWay)
{
    AddAll();
    for (const CLookCase& c : kLooks) {
        std::set<QByteArray> pictures;
        for (const int value : c.Values)
            pictures.insert(Picture(c, value));
        EXPECT_EQ(pictures.size(), c.Values.size()) << c.Name << " in view " << c.View;
    }
}
