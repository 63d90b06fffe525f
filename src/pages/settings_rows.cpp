#include "pages/settings_rows.h"
#include "drawing/screen_metrics.h"
#include "settings/item_text.h"
#include "settings/title_formats.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace
{
constexpr int kSmallestText = 7, kTextSizeCount = 18;
constexpr int kSmallestTitlebar = 14, kTitlebarSizeCount = 15;
constexpr int kMostOffsetDays = 14;
constexpr int kLastNightHour = 8;
constexpr int kMostTitles = 20;

#define KEY(section, key)                                                                                    \
    [](CSettingsValues& values) -> qint32& { return values.section.key; }

// A choice stands under its label; on a page of few words the label alone would not tell which.
constexpr CSettingsRow Choice(quint32 id, qint32& (*value)(CSettingsValues&), SettingsList list, int first = 0,
                              int count = 0)
{
    return {{id, kIconLeft, kRowChoice, kRowHasHeader}, value, list, first, count};
}
constexpr CSettingsRow Texts(quint32 id, qint32& (*value)(CSettingsValues&), int first, int last)
{
    return Choice(id, value, SettingsList::Texts, first, last - first + 1);
}
constexpr CSettingsRow Check(quint32 id, qint32& (*value)(CSettingsValues&))
{
    return {{id, kIconLeft, kRowCheck, 0}, value};
}
constexpr CSettingsRow Header(quint32 id)
{
    return {{id, kIconLeft, kRowHeader, 0}, nullptr};
}
constexpr CSettingsRow Link(quint32 id)
{
    return {{id, kIconLeft, kRowLink, kRowHasHeader}, nullptr};
}
constexpr CSettingsRow Time(quint32 id, qint32& (*value)(CSettingsValues&), quint32 flags = 0)
{
    return {{id, kIconLeft, kRowTime, kRowHasHeader | flags}, value};
}
// Under the header of its level.
constexpr CSettingsRow Sort(quint32 id, qint32& (*value)(CSettingsValues&))
{
    return {{id, kIconLeft, kRowChoice, 0}, value, SettingsList::Texts, StrTaskSortDue, 5};
}
constexpr CSettingsRow SortDirection(quint32 id, qint32& (*value)(CSettingsValues&))
{
    return {{id, kIconLeft, kRowChoice, 0}, value, SettingsList::Texts, StrTaskSortAscending, 2};
}

const CSettingsRow kGeneral[] = {
    Check(StrForceClearType, KEY(General, ForceClearType)),
    Check(StrIncludeSpecialEvents, KEY(General, IncludeSpecialEvents)),
    Choice(StrWeekStartDay, KEY(General, WeekStartDay), SettingsList::WorkDays),
    Texts(StrFirstWeekInYear, KEY(General, FirstWeekInYear), StrWeekRegional, StrWeekFourDays),
    Texts(StrDefaultView, KEY(General, DefaultView), StrStartLastUsed, StrStartTasks),
    Texts(StrTextInputMode, KEY(General, TextInputMode), StrInputLast, StrInputAbcCaps),
    Texts(StrTextColorsToUse, KEY(General, TextColorsToUse), StrTextColorDefault, StrTextColorStatus),
    Check(StrViewSelectorMode, KEY(General, ViewSelectorMode)),
    Check(StrSlidingScreens, KEY(General, SlidingScreens)),
    Header(StrTouchNavigation),
    Check(StrTouchNavAnimation, KEY(General, TouchNavAnimation)),
    Check(StrTouchNavInvert, KEY(General, TouchNavInvert)),
    Link(StrRotationActiveViews),
    Choice(StrHumanTime, KEY(General, HumanTime), SettingsList::NightHours),
    Link(StrReminderValues),
    Choice(StrReminderDefault, KEY(DefaultValues, ReminderValue), SettingsList::ReminderDefault),
    Time(StrNewAppointmentStart, KEY(DefaultValues, NewAppointmentStartTime)),
    Time(StrNewAppointmentDuration, KEY(DefaultValues, NewAppointmentDuration), kRowDuration),
    Check(StrForceQwerty, KEY(General, ForceQWERTYKeyboard)),
    Texts(StrTitlebarLocation, KEY(General, CustomTitlebarLocation), StrTitlebarNone, StrTitlebarBottom),
    Choice(StrTitlebarSize, KEY(General, CustomTitlebarSize), SettingsList::TitlebarSizes),
};
const CSettingsRow kDaily[] = {
    Choice(StrTextSize, KEY(DailyView, TextSize), SettingsList::TextSizes),
    Choice(StrDailyTitleFormat, KEY(DailyView, ViewTitleFormat), SettingsList::Titles, kDailyTitleFormats),
    Texts(StrIncludeTimelines, KEY(DailyView, IncludeTimelines), StrTimelinesNone, StrTimelinesBottom),
    Texts(StrPopOut, KEY(DailyView, PopOut), StrPopOutNone, StrPopOutLarge),
    Texts(StrLeadingRects, KEY(DailyView, IncludeLeadingRects), StrRectsNone, StrRectsStatus),
    Texts(StrPastAppointments, KEY(DailyView, PastAppointments), StrPastRegular, StrPastInvisible),
    Check(StrSingleLine, KEY(DailyView, SingleLine)),
    Check(StrOnlyStartTime, KEY(DailyView, OnlyStartTime)),
    Check(StrIncludeLocation, KEY(DailyView, IncludeLocation)),
};
const CSettingsRow kList[] = {
    Choice(StrListTitleFormat, KEY(ListView, ListTitleFormat), SettingsList::Titles, kListTitleFormats),
    Choice(StrDayTitleFormat, KEY(ListView, DateTitleFormat), SettingsList::Titles, kDayTitleFormats),
    Choice(StrTextTitleSize, KEY(ListView, TextTitleSize), SettingsList::TextSizes),
    Choice(StrTextSize, KEY(ListView, TextSize), SettingsList::TextSizes),
    Texts(StrPopOut, KEY(ListView, PopOut), StrPopOutNone, StrPopOutLarge),
    Texts(StrLeadingRectColors, KEY(ListView, LeadingRectColors), StrRectsNone, StrRectsStatus),
    Texts(StrEmptyDays, KEY(ListView, EmptyDays), StrEmptyShow, StrEmptyCollapse),
    Check(StrStartOnToday, KEY(ListView, StartOnToday)),
    Check(StrSingleLine, KEY(ListView, OneLineMode)),
    Check(StrOnlyStartTime, KEY(ListView, OnlyStartTime)),
    Check(StrIncludeLocation, KEY(ListView, IncludeLocation)),
};
const CSettingsRow kWeekly[] = {
    Choice(StrWeekTitleFormat, KEY(WeekView, ListTitleFormat), SettingsList::Titles, kWeekTitleFormats),
    Choice(StrDayTitleFormat, KEY(WeekView, DateTitleFormat), SettingsList::Titles, kWeekDayFormats),
    Choice(StrTextTitleSize, KEY(WeekView, TextTitleSize), SettingsList::TextSizes),
    Choice(StrTextSize, KEY(WeekView, TextSize), SettingsList::TextSizes),
    Texts(StrPopOut, KEY(WeekView, PopOut), StrPopOutNone, StrPopOutLarge),
    Texts(StrIncludeTimelines, KEY(WeekView, IncludeTimelinesBar), StrTimelinesNone, StrTimelinesBottom),
    Texts(StrLeadingRectColors, KEY(WeekView, LeadingRectColors), StrRectsNone, StrRectsStatus),
    Check(StrStartOnToday, KEY(WeekView, StartOnToday)),
    Check(StrVerticalScrolling, KEY(WeekView, VerticalScrolling)),
    Check(StrIncludeStartTime, KEY(WeekView, IncludeStartTime)),
    Check(StrHideNoAppointments, KEY(WeekView, HideNoAppointments)),
};
const CSettingsRow kMonthly[] = {
    Texts(StrIncludeQuickView, KEY(MonthView, IncludeQuickView), StrQuickNever, StrQuickBeside),
    Choice(StrQuickViewTextSize, KEY(MonthView, QuickViewTextSize), SettingsList::TextSizes),
    Texts(StrPopOut, KEY(MonthView, PopOut), StrPopOutNone, StrPopOutLarge),
    Texts(StrItemsToShow, KEY(MonthView, ItemsToShow), StrMonthTimelines, StrMonthBoth),
    Check(StrScrollByWeeks, KEY(MonthView, ScrollByWeeks)),
    Check(StrHideEmptyTimelines, KEY(MonthView, HideEmptyTimelines)),
    Check(StrShowWeekNums, KEY(MonthView, ShowWeekNums)),
    Choice(StrMonthDateFormat, KEY(MonthView, DateFormat), SettingsList::Titles, kMonthTitleFormats),
    Choice(StrMonthStartDay, KEY(MonthView, StartDay), SettingsList::DayNames),
};
const CSettingsRow kTasks[] = {
    Choice(StrTasksDateFormat, KEY(TasksView, DateFormat), SettingsList::Titles, kTaskDateFormats),
    Choice(StrTextTitleSize, KEY(TasksView, TextTitleSize), SettingsList::TextSizes),
    Choice(StrTextSize, KEY(TasksView, TextSize), SettingsList::TextSizes),
    Check(StrConfirmCompletion, KEY(Tasks, ConfirmCompletion)),
    Texts(StrPopOut, KEY(TasksView, PopOut), StrPopOutNone, StrPopOutLarge),
    Check(StrIncludePreviewPane, KEY(TasksView, IncludePreviewPane)),
    Choice(StrPreviewTextSize, KEY(TasksView, PreviewTextSize), SettingsList::TextSizes),
    Choice(StrNewTaskDayOffset, KEY(TasksView, NewTaskDayOffset), SettingsList::Days),
    Texts(StrIgnoreCompleted, KEY(Tasks, IgnoreCompletedTasksOlderThan), StrIgnoreNone, StrIgnoreYear),
};
const CSettingsRow kCalendarTasks[] = {
    Check(StrIncludeInCalendar, KEY(Tasks, IncludeInCalendar)),
    Header(StrIncludeUnderToday),
    Check(StrUndatedTasks, KEY(Tasks, IncludeUndatedOnToday)),
    Check(StrOverdueTasks, KEY(Tasks, IncludeOverdueOnToday)),
    Check(StrConfirmCompletion, KEY(Tasks, ConfirmCompletion)),
    Check(StrIncludeActiveTasks, KEY(Tasks, IncludeActiveTasks)),
    Check(StrIncludeCompletedTasks, KEY(Tasks, IncludeCompleted)),
    Header(StrTasksSort1),
    Sort(StrTasksSort1Field, KEY(Tasks, Sort1)),
    SortDirection(StrTasksSort1Direction, KEY(Tasks, Sort1Direction)),
    Header(StrTasksSort2),
    Sort(StrTasksSort2Field, KEY(Tasks, Sort2)),
    SortDirection(StrTasksSort2Direction, KEY(Tasks, Sort2Direction)),
    Header(StrTasksSort3),
    Sort(StrTasksSort3Field, KEY(Tasks, Sort3)),
    SortDirection(StrTasksSort3Direction, KEY(Tasks, Sort3Direction)),
};
#undef KEY

// By page.
const std::span<const CSettingsRow> kPages[kSettingsPageCount] = {kGeneral, kDaily, kList,         kWeekly,
                                                                  kMonthly, kTasks, kCalendarTasks};

QStringList Numbers(int first, int count, int step = 1)
{
    QStringList texts;
    for (int n = 0; n < count; ++n)
        texts << QString::number((first + n) * step);
    return texts;
}

void AddTitles(QStringList& texts, int table)
{
    // Two days of which neither number can be taken for a month.
    const int year = SystemTimeOf(GetToday()).wYear;
    const DATE first = DayNumberOf(year, 4, 19), second = DayNumberOf(year, 4, 26);
    QString text;
    for (int index = 0; index < kMostTitles && FormatViewTitle(table, index, first, second, &text); ++index)
        texts << (text.isEmpty() ? GetString(StrTitleFormatNone) : text);
}

QStringList DayNames(std::initializer_list<int> days)
{
    QStringList texts;
    for (const int day : days)
        texts << Locale().DayName(day, false);
    return texts;
}

// Each text's value is its place, but for what is left out.
QStringList ListTexts(const CSettingsRow& row)
{
    QStringList texts;
    switch (row.List) {
    case SettingsList::Texts:
        for (int n = 0; n < row.Count; ++n)
            texts << GetString(row.First + n);
        return texts;
    case SettingsList::TextSizes:
        return Numbers(kSmallestText, kTextSizeCount, D(1));
    case SettingsList::Titles:
        AddTitles(texts, row.First);
        return texts;
    case SettingsList::WorkDays:
        return DayNames({0, 1, 6});
    case SettingsList::DayNames:
        return DayNames({0, 1, 2, 3, 4, 5, 6});
    case SettingsList::NightHours:
        texts << GetString(StrHumanTimeDisabled);
        for (int hour = 1; hour <= kLastNightHour; ++hour)
            texts << FormatTime(hour / 24.0, false);
        return texts;
    case SettingsList::TitlebarSizes:
        return Numbers(kSmallestTitlebar, kTitlebarSizeCount);
    case SettingsList::Days:
        return Numbers(0, kMostOffsetDays + 1);
    case SettingsList::ReminderDefault:
    case SettingsList::None:
        break;
    }
    return texts;
}
} // namespace

int CSettingsChoices::IndexOf(qint32 value) const
{
    const auto at = std::find(Values.begin(), Values.end(), value);
    return at == Values.end() ? -1 : int(at - Values.begin());
}

CSettingsChoices SettingsChoicesOf(const CSettingsRow& row, std::span<const int> reminders)
{
    CSettingsChoices choices;
    if (row.List == SettingsList::ReminderDefault) {
        choices = {{GetString(StrNoReminder)}, {0}};
        for (size_t n = 0; n < reminders.size(); ++n) {
            if (reminders[n] < 0)
                continue; // an empty place
            choices.Texts << FormatReminder(reminders[n]);
            choices.Values.push_back(qint32(n) + 1);
        }
        return choices;
    }
    choices.Texts = ListTexts(row);
    choices.Values.resize(size_t(choices.Texts.size()));
    std::iota(choices.Values.begin(), choices.Values.end(), 0);
    return choices;
}

std::span<const CSettingsRow> SettingsRowsOf(SettingsPageId page)
{
    return kPages[int(page)];
}

std::span<const FieldRowDesc> SettingsFieldRowsOf(SettingsPageId page)
{
    static const auto all = [] {
        std::array<std::vector<FieldRowDesc>, kSettingsPageCount> pages;
        for (int n = 0; n < kSettingsPageCount; ++n) {
            for (const CSettingsRow& row : kPages[n])
                pages[size_t(n)].push_back(row.Row);
        }
        return pages;
    }();
    return all[size_t(page)];
}
