// What the settings do: each value that a page offers shows in the view that it governs.
#include "pim/category_store.h"
#include "pim/pim_store.h"
#include "settings/color_table.h"
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
void DownTwice(CMainFrame& frame)
{
    Down(frame);
    Down(frame);
}
void ToAnEmptyDay(CMainFrame& frame)
{
    for (int n = 0; n < 3; ++n)
        QTest::keyClick(frame.CurrentView(), Qt::Key_Right);
}

void ByPriority(CSettingsValues& values)
{
    values.Tasks.Sort1 = values.Tasks.Sort2 = 2;
    values.TasksView.Sort1 = values.TasksView.Sort2 = 102;
}
void ByPriorityThenSubject(CSettingsValues& values)
{
    ByPriority(values);
    values.Tasks.Sort2 = 4;
    values.TasksView.Sort2 = 104;
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
    {kD, KEY(General, DefaultView), {1, 2, 3, 4, 5}},
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
    {kD, KEY(Tasks, Sort2), {0, 4}, ByPriority},
    {kD, KEY(Tasks, Sort2Direction), {0, 1}, ByPriorityThenSubject},
    {kD, KEY(Tasks, Sort3), {0, 4}, ByPriority},
    {kD, KEY(Tasks, Sort3Direction), {0, 1}, ByPriority},
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
    {kT, KEY(TasksView, Sort2), {100, 104}, ByPriority},
    {kT, KEY(TasksView, Sort2Direction), {0, 1}, ByPriorityThenSubject},
    {kT, KEY(TasksView, Sort3), {100, 104}, ByPriority},
    {kT, KEY(TasksView, Sort3Direction), {0, 1}, ByPriority},
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
            int Busy = 2;
        } kItems[] = {
            {"Early", "Harbour", "Work", 7, 1},
            {"Dentist", "Main street", "Health", 11, 0.5},
            {"Night train", "Platform 2", "Travel", 21, 7},
            {"Yesterday", "There", "Work", -10, 2},
            {"Free", "", "", 13, 1, 0},
            {"Maybe", "", "", 14, 1, 1},
            {"Away", "Out", "", 15, 1, 3},
            {"Fair", "", "", 0, 24},
            {"Tomorrow", "Here", "Health", 35, 1},
            {"Next week", "Far", "Travel", 24 * 7 + 9.5, 2},
        };
        for (const auto& item : kItems) {
            const auto put = m_app->CreateAppointment();
            put->put_Subject(item.Subject);
            put->put_Location(item.Place);
            put->put_Categories(item.Categories);
            put->put_BusyStatus(item.Busy);
            put->put_AllDayEvent(item.Hours == 24);
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
            put->put_Body("With milk");
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
        static_cast<CSettingsValues&>(g_Settings) = CSettings();
        if (c.Before)
            c.Before(g_Settings);
        c.Value(g_Settings) = value;
        return PictureOf(c.View, c.After);
    }
    QByteArray PictureOf(int view, void (*after)(CMainFrame&))
    {
        g_Settings.General.SlidingScreens = 0;
        g_Settings.General.LastView = view;
        m_frame.reset();
        g_Settings.Save(); // what the frame reads
        Start().resize(480, 640);
        m_frame->show();
        CCategoryStore& store = PimStore().Categories();
        if (const CCategory* work = store.FindByName("Work"))
            store.SetColor(work->Id, Rgb(20, 120, 50));
        if (after)
            after(*m_frame);
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

// Of 79 colours each shows where it belongs, and the defaults bring the first look back.
TEST_F(SettingsAct, EveryColorShows)
{
    AddAll();
    const auto show = [](CSettingsValues& values, int textColors) {
        values = CSettings();
        values.General.TextColorsToUse = textColors;
        values.General.CustomTitlebarLocation = 2;
        values.DailyView.IncludeLeadingRects = values.ListView.LeadingRectColors = 1;
        values.DailyView.PastAppointments = 0;
        values.DailyView.PopOut = 2;
        values.ListView.OneLineMode = values.WeekView.HideNoAppointments = 0;
        values.ListView.IncludeLocation = 1;
        values.WeekView.LeadingRectColors = 1;
        values.MonthView.ShowWeekNums = 1;
        values.TasksView.Sort1 = 106; // in groups
    };
    // Without and with the colours of states, which stand before those of texts; then a day of nothing.
    const auto pictures = [&](int view) {
        std::vector<QByteArray> looks;
        for (const int textColors : {0, 2, 0}) {
            show(g_Settings, textColors);
            constexpr void (*kHands[])(CMainFrame&) = {Down, DownTwice, ToAnEmptyDay};
            looks.push_back(PictureOf(view, kHands[looks.size()]));
        }
        return looks;
    };
    std::map<int, std::vector<QByteArray>> first;
    for (int view = kViewDaily; view <= kViewTasks; ++view)
        first[view] = pictures(view);
    constexpr int kViews[] = {kD, kD, kT, kD, kL, kW, kM, kT}; // by the thousands
    for (const CColorKey& key : kColorKeys) {
        g_Settings.SetStoredColor(key.Id, Rgb(250, 30, 210));
        const int view = kViews[key.Id / 1000];
        EXPECT_TRUE(pictures(view) != first[view]) << key.Key;
        g_Settings.SetStoredColor(key.Id, key.Default);
    }
    g_Settings.SetStoredColor(3006, Rgb(1, 2, 3));
    g_Settings.ResetColors();
    for (const auto& [view, was] : first)
        EXPECT_TRUE(pictures(view) == was) << view;
}
