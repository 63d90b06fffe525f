// The one table of all numeric preferences, in the order of the file: section, key, where the
// field lies, default. The constructor, Load and Save of CSettings all walk it.
#pragma once
#include "settings/settings_values.h"

#include <cstddef>
#include <cstdint>

struct CSettingKey {
    const char* Section;
    const char* Key;
    std::uint16_t Offset; // of the field in CSettingsValues
    qint32 Default;

    qint32& In(CSettingsValues& values) const
    {
        return *reinterpret_cast<qint32*>(reinterpret_cast<char*>(&values) + Offset);
    }
    qint32 In(const CSettingsValues& values) const { return In(const_cast<CSettingsValues&>(values)); }
};

// clang-format off
#define KEY(section, key, value) {#section, #key, std::uint16_t(offsetof(CSettingsValues, section.key)), value}
// clang-format on
inline constexpr CSettingKey kSettingKeys[] = {
    KEY(General, LastView, 0),
    KEY(General, ForceClearType, 1),
    KEY(General, WeekStartDay, 1),
    KEY(General, FirstWeekInYear, 0),
    KEY(General, DefaultView, 0),
    KEY(General, TextInputMode, 0),
    KEY(General, TextColorsToUse, 2),
    KEY(General, RotationActiveViews, 31),
    KEY(General, IncludeSpecialEvents, 1),
    KEY(General, HumanTime, 0),
    KEY(General, ViewSelectorMode, 1),
    KEY(General, ForceQWERTYKeyboard, 0),
    KEY(General, SlidingScreens, 1),
    KEY(General, TouchNavAnimation, 1),
    KEY(General, TouchNavInvert, 0),
    KEY(General, CustomTitlebarLocation, 1),
    KEY(General, CustomTitlebarSize, 0),

    KEY(DailyView, TextSize, 3),
    KEY(DailyView, ViewTitleFormat, 1),
    KEY(DailyView, IncludeTimelines, 1),
    KEY(DailyView, IncludeLeadingRects, 0),
    KEY(DailyView, SingleLine, 0),
    KEY(DailyView, OnlyStartTime, 0),
    KEY(DailyView, IncludeLocation, 1),
    KEY(DailyView, PastAppointments, 1),
    KEY(DailyView, PopOut, 0),

    KEY(ListView, ListTitleFormat, 0),
    KEY(ListView, DateTitleFormat, 3),
    KEY(ListView, TextSize, 2),
    KEY(ListView, TextTitleSize, 2),
    KEY(ListView, LeadingRectColors, 1),
    KEY(ListView, EmptyDays, 0),
    KEY(ListView, StartOnToday, 0),
    KEY(ListView, OneLineMode, 1),
    KEY(ListView, OnlyStartTime, 1),
    KEY(ListView, IncludeLocation, 0),
    KEY(ListView, PopOut, 0),

    KEY(WeekView, ListTitleFormat, 0),
    KEY(WeekView, DateTitleFormat, 0),
    KEY(WeekView, TextSize, 0),
    KEY(WeekView, TextTitleSize, 0),
    KEY(WeekView, IncludeTimelinesBar, 1),
    KEY(WeekView, LeadingRectColors, 1),
    KEY(WeekView, StartOnToday, 0),
    KEY(WeekView, VerticalScrolling, 0),
    KEY(WeekView, IncludeStartTime, 1),
    KEY(WeekView, HideNoAppointments, 1),
    KEY(WeekView, PopOut, 3),

    KEY(MonthView, IncludeQuickView, 1),
    KEY(MonthView, ItemsToShow, 0),
    KEY(MonthView, ScrollByWeeks, 0),
    KEY(MonthView, HideEmptyTimelines, 0),
    KEY(MonthView, DateFormat, 0),
    KEY(MonthView, ShowWeekNums, 0),
    KEY(MonthView, StartDay, 0), // the constructor takes the locale's
    KEY(MonthView, PopOut, 3),
    KEY(MonthView, QuickViewTextSize, 0),

    KEY(Tasks, IncludeInCalendar, 1),
    KEY(Tasks, IncludeUndatedOnToday, 1),
    KEY(Tasks, IncludeOverdueOnToday, 1),
    KEY(Tasks, ConfirmCompletion, 0),
    KEY(Tasks, IncludeActiveTasks, 1),
    KEY(Tasks, IncludeCompleted, 1),
    KEY(Tasks, Sort1, 0),
    KEY(Tasks, Sort2, 2),
    KEY(Tasks, Sort3, 4),
    KEY(Tasks, Sort1Direction, 0),
    KEY(Tasks, Sort2Direction, 0),
    KEY(Tasks, Sort3Direction, 0),
    KEY(Tasks, IgnoreCompletedTasksOlderThan, 3),

    KEY(TasksView, Sort1, 100),
    KEY(TasksView, Sort1Direction, 0),
    KEY(TasksView, Sort2, 102),
    KEY(TasksView, Sort2Direction, 0),
    KEY(TasksView, Sort3, 104),
    KEY(TasksView, Sort3Direction, 0),
    KEY(TasksView, DateFormat, 0),
    KEY(TasksView, TextSize, 2),
    KEY(TasksView, TextTitleSize, 2),
    KEY(TasksView, ItemsToView, 255),
    KEY(TasksView, IncludePreviewPane, 1),
    KEY(TasksView, PopOut, 0),
    KEY(TasksView, PreviewTextSize, 0),
    KEY(TasksView, NewTaskDayOffset, 7),

    KEY(SearchView, SearchType, 0),
    KEY(SearchView, SearchMode, 1),
    KEY(SearchView, SearchStart, 0),
    KEY(SearchView, SearchEnd, 0),
    KEY(SearchView, SearchLimit, 100),

    KEY(DefaultValues, NewAppointmentStartTime, 720),
    KEY(DefaultValues, NewAppointmentDuration, 60),
    KEY(DefaultValues, ReminderValue, 0),
    KEY(DefaultValues, ReminderVal0, 1),
    KEY(DefaultValues, ReminderVal1, 5),
    KEY(DefaultValues, ReminderVal2, 10),
    KEY(DefaultValues, ReminderVal3, 15),
    KEY(DefaultValues, ReminderVal4, 30),
    KEY(DefaultValues, ReminderVal5, 45),
    KEY(DefaultValues, ReminderVal6, 60),
    KEY(DefaultValues, ReminderVal7, 120),
    KEY(DefaultValues, ReminderVal8, 1440),
    KEY(DefaultValues, ReminderVal9, 10080),
};
#undef KEY

static_assert(sizeof(CSettingsValues) == sizeof kSettingKeys / sizeof kSettingKeys[0] * sizeof(qint32),
              "each field stands in the table once");
