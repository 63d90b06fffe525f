// Each row of the settings pages, changed by finger and by keys: its key changes in the file, and no other.
#include "forms/forms_fixture.h"
#include "forms/reminder_values_dialog.h"
#include "pages/active_views_dialog.h"
#include "pages/settings_page.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimeEdit>
#include <algorithm>
#include <sstream>

namespace
{
using enum SettingsPageId;
constexpr auto kCheck = kRowCheck, kChoice = kRowChoice, kTime = kRowTime;

// The keys as the file names them, apart from the program's own table.
const struct CSettingsCase {
    SettingsPageId Page;
    quint32 Row, Type;
    const char *Section, *Key;
    int Count = 2; // of its entries
} kCases[] = {
    {General, StrForceClearType, kCheck, "General", "ForceClearType"},
    {General, StrIncludeSpecialEvents, kCheck, "General", "IncludeSpecialEvents"},
    {General, StrWeekStartDay, kChoice, "General", "WeekStartDay", 3},
    {General, StrFirstWeekInYear, kChoice, "General", "FirstWeekInYear", 4},
    {General, StrDefaultView, kChoice, "General", "DefaultView", 6},
    {General, StrTextInputMode, kChoice, "General", "TextInputMode", 6},
    {General, StrTextColorsToUse, kChoice, "General", "TextColorsToUse", 3},
    {General, StrViewSelectorMode, kCheck, "General", "ViewSelectorMode"},
    {General, StrSlidingScreens, kCheck, "General", "SlidingScreens"},
    {General, StrTouchNavAnimation, kCheck, "General", "TouchNavAnimation"},
    {General, StrTouchNavInvert, kCheck, "General", "TouchNavInvert"},
    {General, StrHumanTime, kChoice, "General", "HumanTime", 9},
    {General, StrReminderDefault, kChoice, "DefaultValues", "ReminderValue", 11},
    {General, StrNewAppointmentStart, kTime, "DefaultValues", "NewAppointmentStartTime"},
    {General, StrNewAppointmentDuration, kTime, "DefaultValues", "NewAppointmentDuration"},
    {General, StrForceQwerty, kCheck, "General", "ForceQWERTYKeyboard"},
    {General, StrTitlebarLocation, kChoice, "General", "CustomTitlebarLocation", 5},
    {General, StrTitlebarSize, kChoice, "General", "CustomTitlebarSize", 15},

    {Daily, StrTextSize, kChoice, "DailyView", "TextSize", 18},
    {Daily, StrDailyTitleFormat, kChoice, "DailyView", "ViewTitleFormat", 0},
    {Daily, StrIncludeTimelines, kChoice, "DailyView", "IncludeTimelines", 3},
    {Daily, StrPopOut, kChoice, "DailyView", "PopOut", 4},
    {Daily, StrLeadingRects, kChoice, "DailyView", "IncludeLeadingRects", 3},
    {Daily, StrPastAppointments, kChoice, "DailyView", "PastAppointments", 3},
    {Daily, StrSingleLine, kCheck, "DailyView", "SingleLine"},
    {Daily, StrOnlyStartTime, kCheck, "DailyView", "OnlyStartTime"},
    {Daily, StrIncludeLocation, kCheck, "DailyView", "IncludeLocation"},

    {List, StrListTitleFormat, kChoice, "ListView", "ListTitleFormat", 0},
    {List, StrDayTitleFormat, kChoice, "ListView", "DateTitleFormat", 0},
    {List, StrTextTitleSize, kChoice, "ListView", "TextTitleSize", 18},
    {List, StrTextSize, kChoice, "ListView", "TextSize", 18},
    {List, StrPopOut, kChoice, "ListView", "PopOut", 4},
    {List, StrLeadingRectColors, kChoice, "ListView", "LeadingRectColors", 3},
    {List, StrEmptyDays, kChoice, "ListView", "EmptyDays", 3},
    {List, StrStartOnToday, kCheck, "ListView", "StartOnToday"},
    {List, StrSingleLine, kCheck, "ListView", "OneLineMode"},
    {List, StrOnlyStartTime, kCheck, "ListView", "OnlyStartTime"},
    {List, StrIncludeLocation, kCheck, "ListView", "IncludeLocation"},

    {Weekly, StrWeekTitleFormat, kChoice, "WeekView", "ListTitleFormat", 0},
    {Weekly, StrDayTitleFormat, kChoice, "WeekView", "DateTitleFormat", 0},
    {Weekly, StrTextTitleSize, kChoice, "WeekView", "TextTitleSize", 18},
    {Weekly, StrTextSize, kChoice, "WeekView", "TextSize", 18},
    {Weekly, StrPopOut, kChoice, "WeekView", "PopOut", 4},
    {Weekly, StrIncludeTimelines, kChoice, "WeekView", "IncludeTimelinesBar", 3},
    {Weekly, StrLeadingRectColors, kChoice, "WeekView", "LeadingRectColors", 3},
    {Weekly, StrStartOnToday, kCheck, "WeekView", "StartOnToday"},
    {Weekly, StrVerticalScrolling, kCheck, "WeekView", "VerticalScrolling"},
    {Weekly, StrIncludeStartTime, kCheck, "WeekView", "IncludeStartTime"},
    {Weekly, StrHideNoAppointments, kCheck, "WeekView", "HideNoAppointments"},

    {Monthly, StrIncludeQuickView, kChoice, "MonthView", "IncludeQuickView", 4},
    {Monthly, StrQuickViewTextSize, kChoice, "MonthView", "QuickViewTextSize", 18},
    {Monthly, StrPopOut, kChoice, "MonthView", "PopOut", 4},
    {Monthly, StrItemsToShow, kChoice, "MonthView", "ItemsToShow", 3},
    {Monthly, StrScrollByWeeks, kCheck, "MonthView", "ScrollByWeeks"},
    {Monthly, StrHideEmptyTimelines, kCheck, "MonthView", "HideEmptyTimelines"},
    {Monthly, StrShowWeekNums, kCheck, "MonthView", "ShowWeekNums"},
    {Monthly, StrMonthDateFormat, kChoice, "MonthView", "DateFormat", 0},
    {Monthly, StrMonthStartDay, kChoice, "MonthView", "StartDay", 7},

    {Tasks, StrTasksDateFormat, kChoice, "TasksView", "DateFormat", 0},
    {Tasks, StrTextTitleSize, kChoice, "TasksView", "TextTitleSize", 18},
    {Tasks, StrTextSize, kChoice, "TasksView", "TextSize", 18},
    {Tasks, StrConfirmCompletion, kCheck, "Tasks", "ConfirmCompletion"},
    {Tasks, StrPopOut, kChoice, "TasksView", "PopOut", 4},
    {Tasks, StrIncludePreviewPane, kCheck, "TasksView", "IncludePreviewPane"},
    {Tasks, StrPreviewTextSize, kChoice, "TasksView", "PreviewTextSize", 18},
    {Tasks, StrNewTaskDayOffset, kChoice, "TasksView", "NewTaskDayOffset", 15},
    {Tasks, StrIgnoreCompleted, kChoice, "Tasks", "IgnoreCompletedTasksOlderThan", 8},

    {CalendarTasks, StrIncludeInCalendar, kCheck, "Tasks", "IncludeInCalendar"},
    {CalendarTasks, StrUndatedTasks, kCheck, "Tasks", "IncludeUndatedOnToday"},
    {CalendarTasks, StrOverdueTasks, kCheck, "Tasks", "IncludeOverdueOnToday"},
    {CalendarTasks, StrConfirmCompletion, kCheck, "Tasks", "ConfirmCompletion"},
    {CalendarTasks, StrIncludeActiveTasks, kCheck, "Tasks", "IncludeActiveTasks"},
    {CalendarTasks, StrIncludeCompletedTasks, kCheck, "Tasks", "IncludeCompleted"},
    {CalendarTasks, StrTasksSort1Field, kChoice, "Tasks", "Sort1", 5},
    {CalendarTasks, StrTasksSort1Direction, kChoice, "Tasks", "Sort1Direction"},
    {CalendarTasks, StrTasksSort2Field, kChoice, "Tasks", "Sort2", 5},
    {CalendarTasks, StrTasksSort2Direction, kChoice, "Tasks", "Sort2Direction"},
    {CalendarTasks, StrTasksSort3Field, kChoice, "Tasks", "Sort3", 5},
    {CalendarTasks, StrTasksSort3Direction, kChoice, "Tasks", "Sort3Direction"},
};

class SettingsPages : public CFormsTest
{
protected:
    SettingsPages() : m_locale(MakeLocale("en_US"))
    {
        SetLocale(m_locale.get());
        CRegistry::SetFolder(m_folder.path());
        g_Settings.General.SlidingScreens = 0;
    }
    ~SettingsPages() override
    {
        CRegistry::SetFolder({});
        SetLocale(nullptr);
    }
    QString Path() const { return m_folder.filePath("settings.ini"); }
    static int Stored(const CSettings& settings, const CSettingsCase& c)
    {
        const CSettingsSection* const section = settings.m_file.FindSection(c.Section);
        const auto value =
            section ? section->m_values.find(c.Key) : std::map<QString, QString>::const_iterator{};
        if (!section || value == section->m_values.end()) {
            ADD_FAILURE() << "not in the file";
            return -1;
        }
        return value->second.toInt();
    }
    // Everything that the file says of them.
    std::string Text(CSettings& settings)
    {
        settings.m_file.SetPath(Path());
        EXPECT_TRUE(settings.Save());
        const QByteArray bytes = settings.m_file.ToBytes();
        return QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.constData()), bytes.size() / 2)
            .toStdString();
    }
    static std::vector<std::string> Lines(const std::string& text)
    {
        std::istringstream stream(text);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }
    // The lines of which the second differs from the first.
    static std::vector<std::string> Changed(const std::string& first, const std::string& second)
    {
        const auto before = Lines(first), after = Lines(second);
        EXPECT_EQ(before.size(), after.size());
        std::vector<std::string> changed;
        for (size_t n = 0; n < std::min(before.size(), after.size()); ++n) {
            if (before[n] != after[n])
                changed.push_back(after[n]);
        }
        return changed;
    }
    // By finger: the row's box, or the row and then its control's keys.
    void Change(CSettingsPage& page, const CSettingsCase& c)
    {
        if (c.Type == kCheck) {
            const CFieldRow* const row = Row(page, c.Row);
            ASSERT_NE(row, nullptr);
            Select(page, c.Row); // which scrolls it into sight
            const QRect rect = page.RowRect(c.Row);
            Click(page, FieldIncludeBox(*row, rect).center());
        } else if (c.Type == kChoice) {
            Select(page, c.Row);
            auto* list = Live<QComboBox>(page);
            ASSERT_NE(list, nullptr);
            if (c.Count > 0) {
                EXPECT_EQ(list->count(), c.Count);
            }
            EXPECT_GT(list->count(), 1);
            QTest::keyClick(list, Qt::Key_Right);
        } else {
            Select(page, c.Row);
            auto* time = Live<QTimeEdit>(page);
            ASSERT_NE(time, nullptr);
            time->setTime(QTime(3, 45));
        }
    }
    QTemporaryDir m_folder;
    std::unique_ptr<ILocale> m_locale;
};
} // namespace

TEST_F(SettingsPages, EachRowChangesItsKeyAndNoOther)
{
    for (const CSettingsCase& c : kCases) {
        SCOPED_TRACE(std::string(c.Section) + '/' + c.Key + " on page " + std::to_string(int(c.Page)));
        CSettings settings, untouched;
        const std::string before = Text(untouched);
        const int old = Stored(untouched, c);
        CSettingsPage page(c.Page, settings);
        EXPECT_EQ(Run(page,
                      [&] {
                          Change(page, c);
                          Click(page, KeyCentre(page, 0));
                      }),
                  CFormDialog::kDone);
        const std::string after = Text(settings);
        const int now = Stored(settings, c);
        if (c.Type == kTime)
            EXPECT_EQ(now, 3 * 60 + 45);
        else
            EXPECT_EQ(now, c.Count > 0 ? (old + 1) % c.Count : old + 1);
        EXPECT_EQ(Changed(before, after).size(), 1u);

        CSettings again;
        again.m_file.SetPath(Path());
        again.Load(true);
        EXPECT_EQ(Text(again), after) << "through the file";
    }
}

TEST_F(SettingsPages, EveryRowHasItsCase)
{
    for (int page = 0; page < kSettingsPageCount; ++page) {
        for (const CSettingsRow& row : SettingsRowsOf(SettingsPageId(page))) {
            const auto known = [&](const CSettingsCase& c) {
                return int(c.Page) == page && c.Row == row.Row.Id && c.Type == row.Row.Type;
            };
            EXPECT_TRUE(!row.Value || std::any_of(std::begin(kCases), std::end(kCases), known))
                << page << ' ' << row.Row.Id;
        }
    }
}

TEST_F(SettingsPages, CancelLeavesEverything)
{
    CSettings settings;
    const std::string before = Text(settings);
    for (const CSettingsCase& c : {kCases[0], kCases[2], kCases[13]}) {
        CSettingsPage page(c.Page, settings);
        Run(page, [&] {
            Change(page, c);
            Click(page, KeyCentre(page, 1));
        });
    }
    EXPECT_EQ(Changed(before, Text(settings)), std::vector<std::string>{});
}

// What the file says may be out of every list; a look at the page alone does not change it.
TEST_F(SettingsPages, AValueThatNoListOffersStays)
{
    CSettings settings;
    settings.DailyView.TextSize = 99;
    settings.General.HumanTime = -4;
    settings.DefaultValues.NewAppointmentDuration = 5000;
    settings.General.ForceClearType = 7;
    const std::string before = Text(settings);
    for (const auto id : {General, Daily}) {
        CSettingsPage page(id, settings);
        Run(page, [&] {
            for (size_t n = 0; n < page.Rows().size(); ++n) {
                if (page.Rows()[n].CanSelect())
                    page.SelectRow(int(n));
            }
            Click(page, KeyCentre(page, 0));
        });
    }
    EXPECT_EQ(Changed(before, Text(settings)), std::vector<std::string>{});
}

TEST_F(SettingsPages, LinksOpenTheViewsAndTheReminders)
{
    CSettings settings;
    settings.DefaultValues.ReminderValue = 10;
    CSettingsPage page(General, settings);
    const auto in = [&](quint32 row, auto act) {
        QTimer::singleShot(0, &page, [act] { act(CFormDialog::Current()); });
        Select(page, row);
        Click(page, page.RowRect(row).center());
    };
    EXPECT_EQ(Run(page,
                  [&] {
                      in(StrRotationActiveViews, [](CFormDialog* dialog) {
                          auto* views = dynamic_cast<CActiveViewsDialog*>(dialog);
                          ASSERT_NE(views, nullptr);
                          Click(*views, views->RowRect(1).center());
                          QTest::keyClick(views, Qt::Key_F1);
                      });
                      EXPECT_EQ(Row(page, StrRotationActiveViews)->Value.toStdString(),
                                "Daily, Weekly, Monthly, Tasks");
                      in(StrReminderValues, [](CFormDialog* dialog) {
                          auto* values = dynamic_cast<CReminderValuesDialog*>(dialog);
                          ASSERT_NE(values, nullptr);
                          QTest::keyClick(values, Qt::Key_F1);
                      });
                      EXPECT_EQ(Row(page, StrReminderDefault)->Choices.size(), 11);
                      Click(page, KeyCentre(page, 0));
                  }),
              CFormDialog::kDone);
    EXPECT_EQ(settings.General.RotationActiveViews, 1 + 4 + 8 + 16);
    EXPECT_EQ(settings.DefaultValues.ReminderValue, 10);
}
