// Every preference as a plain number: one struct per section, one field per key, both named as
// in the settings file. What a key may hold and its default stand in settings_table.h.
// Values are not tested for their range when they are loaded; whoever uses one does that.
#pragma once
#include <QtGlobal>

struct CSettingsValues {
    struct {
        qint32 LastView; // ViewKind
        qint32 ForceClearType;
        qint32 WeekStartDay;    // first work day: 0 Sunday, 1 Monday, 2 Saturday
        qint32 FirstWeekInYear; // 0 regional, 1 first of January, 2 first full, 3 four days
        qint32 DefaultView;     // 0 last used, else ViewKind + 1
        qint32 TextInputMode;
        qint32 TextColorsToUse;     // 0 default, 1 category, 2 status
        qint32 RotationActiveViews; // bit n is ViewKind n
        qint32 IncludeSpecialEvents;
        qint32 HumanTime; // 0 disabled, or the hour 1 to 8
        qint32 ViewSelectorMode;
        qint32 ForceQWERTYKeyboard;
        qint32 SlidingScreens;
        qint32 TouchNavAnimation;
        qint32 TouchNavInvert;
        qint32 CustomTitlebarLocation; // 0 none, 1 left, 2 top, 3 right, 4 bottom
        qint32 CustomTitlebarSize;     // index into 14 .. 28
    } General;
    struct {
        qint32 TextSize;            // text sizes: index into 7 .. 24
        qint32 ViewTitleFormat;     // title table 400
        qint32 IncludeTimelines;    // 0 no, 1 on top, 2 at the bottom
        qint32 IncludeLeadingRects; // 0 no, 1 category colours, 2 status colours
        qint32 SingleLine;
        qint32 OnlyStartTime;
        qint32 IncludeLocation;
        qint32 PastAppointments; // 0 regular, 1 struck out, 2 invisible
        qint32 PopOut;           // 0 none .. 3 large
    } DailyView;
    struct {
        qint32 ListTitleFormat; // title table 0
        qint32 DateTitleFormat; // title table 1
        qint32 TextSize;
        qint32 TextTitleSize;
        qint32 LeadingRectColors;
        qint32 EmptyDays; // 0 show, 1 hide, 2 collapse
        qint32 StartOnToday;
        qint32 OneLineMode;
        qint32 OnlyStartTime;
        qint32 IncludeLocation;
        qint32 PopOut;
    } ListView;
    struct {
        qint32 ListTitleFormat; // title table 100
        qint32 DateTitleFormat; // title table 101
        qint32 TextSize;
        qint32 TextTitleSize;
        qint32 IncludeTimelinesBar;
        qint32 LeadingRectColors;
        qint32 StartOnToday;
        qint32 VerticalScrolling;
        qint32 IncludeStartTime;
        qint32 HideNoAppointments;
        qint32 PopOut;
    } WeekView;
    struct {
        qint32 IncludeQuickView; // 0 never, 1 by orientation, 2 below, 3 beside
        qint32 ItemsToShow;      // 0 timelines, 1 category icons, 2 both
        qint32 ScrollByWeeks;
        qint32 HideEmptyTimelines;
        qint32 DateFormat; // title table 200
        qint32 ShowWeekNums;
        qint32 StartDay; // 0 Sunday .. 6 Saturday
        qint32 PopOut;
        qint32 QuickViewTextSize;
    } MonthView;
    struct {
        qint32 IncludeInCalendar;
        qint32 IncludeUndatedOnToday;
        qint32 IncludeOverdueOnToday;
        qint32 ConfirmCompletion;
        qint32 IncludeActiveTasks;
        qint32 IncludeCompleted;
        qint32 Sort1; // 0 due, 1 start, 2 priority, 3 completion, 4 subject
        qint32 Sort2;
        qint32 Sort3;
        qint32 Sort1Direction; // 0 ascending, 1 descending
        qint32 Sort2Direction;
        qint32 Sort3Direction;
        qint32 IgnoreCompletedTasksOlderThan;
    } Tasks;
    struct {
        qint32 Sort1; // 100 and up, the tasks view's own sort codes
        qint32 Sort1Direction;
        qint32 Sort2;
        qint32 Sort2Direction;
        qint32 Sort3;
        qint32 Sort3Direction;
        qint32 DateFormat; // title table 300
        qint32 TextSize;
        qint32 TextTitleSize;
        qint32 PreviewTextSize;
        qint32 ItemsToView; // 1, 2, 4 .. 128 or 255, tested as a whole
        qint32 IncludePreviewPane;
        qint32 PopOut;
        qint32 NewTaskDayOffset;
    } TasksView;
    struct {
        qint32 SearchType; // 0 both, 1 appointments, 2 tasks
        qint32 SearchMode; // 0 starts with, 1 contains
        qint32 SearchStart;
        qint32 SearchEnd;
        qint32 SearchLimit;
    } SearchView;
    struct {
        qint32 NewAppointmentStartTime; // minutes after midnight
        qint32 NewAppointmentDuration;  // minutes
        qint32 ReminderValue;           // 0 none, 1 to 10 the choices below
        qint32 ReminderVal0;            // minutes; -1 is an empty place
        qint32 ReminderVal1;
        qint32 ReminderVal2;
        qint32 ReminderVal3;
        qint32 ReminderVal4;
        qint32 ReminderVal5;
        qint32 ReminderVal6;
        qint32 ReminderVal7;
        qint32 ReminderVal8;
        qint32 ReminderVal9;
    } DefaultValues;
};
