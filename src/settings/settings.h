// All preferences: one global object, read directly by every part, changed by the settings
// pages (which work on a copy), loaded at start and saved as a whole.
// Errors: none are reported; a key that the file has not leaves its field as it was.
#pragma once
#include "platform/system_time.h"
#include "settings/color_scheme.h"
#include "settings/filter.h"
#include "settings/fonts.h"
#include "settings/settings_file.h"
#include "settings/settings_values.h"

#include <QString>
#include <QStringList>
#include <map>
#include <vector>

struct CCategorySettings {
    QString ImageName;
    COLORREF Color = kColorNotSet;
    bool operator==(const CCategorySettings&) const = default;
};

class CSettings : public CSettingsValues, public CColorScheme
{
public:
    static constexpr int kFilterCount = 20;
    static constexpr int kReminderCount = 10;

    CSettings();
    void Load(bool withFilters);
    // A late step of its own, because names of categories must be known: SetCategoryNames first.
    void LoadFilters();
    bool Save();

    // The names that filters are read and written with; borrowed. Null while the categories cannot
    // be read: names that none has are dropped from a filter.
    void SetCategoryNames(const ICategoryNames* names) { m_categoryNames = names; }
    const CFilter& GetActiveFilter() const;
    // Puts filter `index` in force; any other number means unfiltered.
    void SetActiveFilter(int index);

    // After a change of language or locale: date formats, and the quick texts that are still ours.
    void RefreshTexts();

    qint32 GetReminderVal(int index) const; // -1 past the ten
    void SetReminderVal(int index, qint32 minutes);
    int GetReminderIndex(qint32 minutes) const; // -1 when not among the ten

    QString m_shortDateFormats[2]; // pictures: with the year, without
    QString m_timeFormats[2];      // pictures: plain, compact
    QString m_installFolder;
    CSettingsFile m_file;
    CFilter m_activeFilter;
    std::vector<CFilter> m_filters; // 20 once loaded
    qint32 m_currentFilterIndex = -1;
    DATE m_completedCutoff = 0;                        // completed tasks before it are ignored
    std::map<QString, CCategorySettings> m_categories; // by name
    QStringList m_myTextSubjects, m_myTextLocations, m_myTextNotes;

private:
    void ComputeCompletedCutoff();
    void LoadCategories();
    void SaveCategories();

    const ICategoryNames* m_categoryNames = nullptr;
    QStringList m_ownQuickTexts[3]; // as RefreshTexts filled them last
};

extern CSettings g_Settings;
