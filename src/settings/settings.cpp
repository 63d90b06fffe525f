#include "settings/settings.h"

#include "platform/locale.h"
#include "settings/item_text.h"
#include "settings/settings_path.h"
#include "settings/settings_table.h"
#include "util/date_time.h"
#include "util/string_ids.h"
#include "util/string_store.h"

CSettings g_Settings;

namespace
{
constexpr int kQuickTextCount = 10;
constexpr int kSearchView = 5;

struct QuickTextList {
    const char* Section;
    QStringList CSettings::*List;
    int FirstText; // string number of the first default, the others follow
};
constexpr QuickTextList kQuickTextLists[] = {
    {"MyTextSubjects", &CSettings::m_myTextSubjects, StrQuickSubject0},
    {"MyTextLocations", &CSettings::m_myTextLocations, StrQuickLocation0},
    {"MyTextNotes", &CSettings::m_myTextNotes, StrQuickNote0},
};

QString Name(const char* text)
{
    return QString::fromLatin1(text);
}
QString Numbered(const char* text, int number)
{
    return Name(text) + QString::number(number);
}

// The locale counts from Monday, the settings from Sunday.
int LocaleStartDay()
{
    const int first = NumberOfText(GetLocaleInfo(LocaleValue::FirstDayOfWeek));
    return first >= 0 && first <= 6 ? (first + 1) % 7 : 0;
}

// The items up to the first number that is absent, blank ones left out.
QStringList ReadItems(const CSettingsFile& file, const QString& section)
{
    QStringList items;
    QString item;
    for (int i = 0; file.GetString(section, Numbered("Item", i), &item); ++i) {
        if (!item.isEmpty())
            items += item;
    }
    return items;
}
} // namespace

CSettings::CSettings()
{
    for (const CSettingKey& key : kSettingKeys)
        key.In(*this) = key.Default;
    MonthView.StartDay = LocaleStartDay();
    RefreshTexts();
}

void CSettings::RefreshTexts()
{
    m_shortDateFormats[0] = GetDatePattern(false);
    m_shortDateFormats[1] = GetDatePattern(true);
    m_timeFormats[0] = GetTimePattern(false);
    m_timeFormats[1] = GetTimePattern(true);
    for (size_t i = 0; i < std::size(kQuickTextLists); ++i) {
        QStringList& list = this->*kQuickTextLists[i].List;
        if (list != m_ownQuickTexts[i])
            continue;
        list.clear();
        for (int n = 0; n < kQuickTextCount; ++n)
            list += GetString(kQuickTextLists[i].FirstText + n);
        m_ownQuickTexts[i] = list;
    }
}

// ---- load

void CSettings::Load(bool withFilters)
{
    m_filters.clear();
    m_categories.clear();
    m_installFolder = FindInstallFolder();
    if (m_file.Path().isEmpty() && !m_installFolder.isEmpty())
        m_file.SetPath(m_installFolder + u'/' + kSettingsFileName);
    m_file.Load();

    for (const CSettingKey& key : kSettingKeys)
        m_file.GetInt(Name(key.Section), Name(key.Key), &key.In(*this));
    if (General.LastView == kSearchView)
        General.LastView = 0;
    LoadCategories();
    for (const QuickTextList& texts : kQuickTextLists) {
        const QStringList items = ReadItems(m_file, Name(texts.Section));
        if (!items.isEmpty())
            this->*texts.List = items;
    }
    LoadColors(m_file);
    if (withFilters)
        LoadFilters();
    ComputeCompletedCutoff();
}

void CSettings::LoadCategories()
{
    const QString section = Name("Categories");
    QString name;
    for (int i = 0; m_file.GetString(section, Numbered("Category", i), &name); ++i) {
        CCategorySettings category;
        m_file.GetColor(section, Numbered("Color", i), &category.Color);
        m_file.GetString(section, Numbered("Image", i), &category.ImageName);
        m_categories[name] = category;
    }
}

void CSettings::LoadFilters()
{
    const QString section = Name("Filters");
    m_filters.assign(kFilterCount, CFilter());
    for (int i = 0; i < kFilterCount; ++i) {
        QString text;
        if (m_file.GetString(section, Numbered("Filter", i), &text))
            m_filters[size_t(i)].FromText(text, m_categoryNames);
        else
            m_filters[size_t(i)].Name = GetString(StrFilterNumber) + u' ' + QString::number(i + 1);
    }
    qint32 current = -1;
    m_file.GetInt(section, Name("CurrentIndex"), &current);
    SetActiveFilter(current);
}

void CSettings::ComputeCompletedCutoff()
{
    static constexpr int kDays[] = {7, 14, 31, 92, 182, 365}; // for the values from 2 on
    const qint32 value = Tasks.IgnoreCompletedTasksOlderThan;
    if (value == 1)
        m_completedCutoff = NO_DATE; // later than any task: all are ignored
    else if (value >= 2 && value < 2 + int(std::size(kDays)))
        m_completedCutoff = GetToday() - kDays[value - 2];
    else
        m_completedCutoff = 0;
}

// ---- save

bool CSettings::Save()
{
    // Filters that were never looked at are still in the file's model only.
    if (m_filters.empty())
        LoadFilters();
    m_file.Clear();
    for (const CSettingKey& key : kSettingKeys)
        m_file.SetInt(Name(key.Section), Name(key.Key), key.In(std::as_const(*this)));
    SaveCategories();

    const QString filters = Name("Filters");
    m_file.AddSection(filters);
    for (size_t i = 0; i < m_filters.size(); ++i)
        m_file.SetString(filters, Numbered("Filter", int(i)), m_filters[i].ToText(m_categoryNames));
    m_file.SetInt(filters, Name("CurrentIndex"), m_currentFilterIndex);

    for (const QuickTextList& texts : kQuickTextLists) {
        const QStringList& list = this->*texts.List;
        for (qsizetype i = 0; i < list.size(); ++i)
            m_file.SetString(Name(texts.Section), Numbered("Item", int(i)), list[i]);
    }
    SaveColors(m_file);
    return m_file.Save();
}

void CSettings::SaveCategories()
{
    const QString section = Name("Categories");
    int number = 0;
    for (const auto& [name, category] : m_categories) {
        if (category.Color == kColorNotSet && category.ImageName.isEmpty())
            continue;
        m_file.SetString(section, Numbered("Category", number), name);
        if (category.Color != kColorNotSet)
            m_file.SetColor(section, Numbered("Color", number), category.Color);
        if (!category.ImageName.isEmpty())
            m_file.SetString(section, Numbered("Image", number), category.ImageName);
        ++number;
    }
}

// ---- filters and reminders

const CFilter& CSettings::GetActiveFilter() const
{
    const bool listed = m_currentFilterIndex >= 0 && size_t(m_currentFilterIndex) < m_filters.size();
    return listed ? m_filters[size_t(m_currentFilterIndex)] : m_activeFilter;
}

void CSettings::SetActiveFilter(int index)
{
    const bool listed = index >= 0 && size_t(index) < m_filters.size();
    m_currentFilterIndex = listed ? index : -1;
    m_activeFilter = listed ? m_filters[size_t(index)] : CFilter();
}

qint32 CSettings::GetReminderVal(int index) const
{
    return index >= 0 && index < kReminderCount ? (&DefaultValues.ReminderVal0)[index] : -1;
}

void CSettings::SetReminderVal(int index, qint32 minutes)
{
    if (index >= 0 && index < kReminderCount)
        (&DefaultValues.ReminderVal0)[index] = minutes;
}

int CSettings::GetReminderIndex(qint32 minutes) const
{
    for (int i = 0; i < kReminderCount; ++i) {
        if (GetReminderVal(i) == minutes)
            return i;
    }
    return -1;
}
