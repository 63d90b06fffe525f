// The rows of the settings pages: what each is called, which list it offers, and the key behind it.
// Tables only; the page itself is pages/settings_page.h.
#pragma once
#include "forms/field_row.h"
#include "settings/settings_values.h"

#include <QStringList>
#include <span>
#include <vector>

enum class SettingsPageId { General, Daily, List, Weekly, Monthly, Tasks, CalendarTasks };
constexpr int kSettingsPageCount = 7;

// How the values of a Choice row are called. A value is the index into its list.
enum class SettingsList {
    None,
    Texts,           // strings that follow one another
    TextSizes,       // 7 to 24, as large as they are on this screen
    Titles,          // the formats of a title table, as they look
    WorkDays,        // first day of the working week
    DayNames,        // from Sunday
    NightHours,      // disabled, or an hour of the night
    TitlebarSizes,   // 14 to 28
    Days,            // 0 to 14
    ReminderDefault, // none, then the reminder values but for empty places
};

struct CSettingsRow {
    FieldRowDesc Row;
    qint32& (*Value)(CSettingsValues&); // null: headers and links
    SettingsList List = SettingsList::None;
    int First = 0, Count = 0; // of Texts: string and number; of Titles: the table
};

std::span<const CSettingsRow> SettingsRowsOf(SettingsPageId page);
// The rows as a form takes them; they live as long as the program.
std::span<const FieldRowDesc> SettingsFieldRowsOf(SettingsPageId page);

// The texts of a Choice row's list, in order, and the stored value that each of them means.
struct CSettingsChoices {
    QStringList Texts;
    std::vector<qint32> Values;
    int IndexOf(qint32 value) const; // -1: it is not offered
};
// `reminders`: the minutes of the ten reminder values, -1 for an empty place.
CSettingsChoices SettingsChoicesOf(const CSettingsRow& row, std::span<const int> reminders);
