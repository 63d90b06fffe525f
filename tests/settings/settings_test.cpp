#include "settings/settings.h"

#include "fake_locale.h"
#include "platform/clock.h"
#include "platform/registry.h"
#include "platform/time_zone.h"
#include "settings/settings_path.h"
#include "settings/settings_table.h"
#include "util/date_time.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace
{
QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

// Settings of their own folder, in a fixed locale.
class CSettingsTest : public ::testing::Test
{
protected:
    void SetUp() override { CRegistry::SetFolder(m_folder.filePath("config")); }
    void TearDown() override { CRegistry::SetFolder(QString()); }

    CSettings LoadedFrom(const QByteArray& text, bool withFilters = true)
    {
        QFile file(Path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.close();
        return Loaded(withFilters);
    }
    CSettings Loaded(bool withFilters = true)
    {
        CSettings settings;
        settings.m_file.SetPath(Path());
        settings.SetCategoryNames(m_names);
        settings.Load(withFilters);
        return settings;
    }
    QString Path() const { return m_folder.filePath("ZELVCalendar.ini"); }
    QString Saved() const
    {
        return QString::fromUtf16(reinterpret_cast<const char16_t*>(ReadFile(Path()).constData()));
    }
    // A section as it was saved, its lines joined by "|".
    std::string SavedSection(const QString& name) const
    {
        const QString text = Saved();
        const qsizetype head = text.indexOf("\r\n[" + name + "]\r\n");
        if (head < 0)
            return "absent";
        const qsizetype begin = head + name.size() + 6;
        const qsizetype end = text.indexOf("\r\n[", begin);
        return text.mid(begin, end < 0 ? -1 : end - begin).trimmed().replace("\r\n", "|").toStdString();
    }

    CFakeLocale m_locale;
    QTemporaryDir m_folder;
    const ICategoryNames* m_names = nullptr;
};

class CTwoNames : public ICategoryNames
{
public:
    std::optional<qint32> NumberOf(const QString& name) const override
    {
        const QString lower = name.toLower();
        return lower == "work"   ? std::optional<qint32>(7)
               : lower == "home" ? std::optional<qint32>(3)
                                 : std::nullopt;
    }
    std::optional<QString> NameOf(qint32 number) const override
    {
        return number == 7   ? std::optional<QString>("Work")
               : number == 3 ? std::optional<QString>("Home")
                             : std::nullopt;
    }
};
} // namespace

TEST_F(CSettingsTest, WithoutAFileTheDefaultsAreSaved)
{
    CSettings settings = Loaded();
    EXPECT_EQ(settings.m_filters.size(), 20u);
    EXPECT_TRUE(settings.m_categories.empty());
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(Saved().replace("\r\n", "\n").toUtf8(), ReadFile("tests/data/settings/defaults.txt"));
}

TEST_F(CSettingsTest, EveryKeyIsToldInTheDocs)
{
    const QString page = QString::fromUtf8(ReadFile("docs/formats.md"));
    for (const CSettingKey& key : kSettingKeys) {
        const qsizetype row = page.indexOf(QString("\n| `%1` |").arg(key.Section));
        const QString line = page.mid(row, page.indexOf('\n', row + 1) - row);
        EXPECT_TRUE(line.contains(QString("`%1=%2`").arg(key.Key).arg(key.Default))) << key.Key;
    }
}

TEST_F(CSettingsTest, EveryKeyComesBack)
{
    // Each number of the default file is replaced by one of its own, then loaded and saved.
    QStringList lines = QString::fromUtf8(ReadFile("tests/data/settings/defaults.txt")).split('\n');
    for (qsizetype i = 0; !lines[i].startsWith("[Filters]"); ++i) {
        if (lines[i].contains('='))
            lines[i] = lines[i].section('=', 0, 0) + '=' + QString::number(i % 2 ? 1000 + i : -1000 - i);
    }
    for (QString& line : lines) {
        if (line.startsWith("Color"))
            line = line.section('=', 0, 0) + QString("=%1,2,3").arg(line.size());
    }
    CSettings settings = LoadedFrom(lines.join("\n").toUtf8());
    EXPECT_EQ(settings.General.LastView, -1002);
    EXPECT_EQ(settings.GetReminderVal(9), settings.DefaultValues.ReminderVal9);
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(Saved().replace("\r\n", "\n").toUtf8(), lines.join("\n").toUtf8());
}

TEST_F(CSettingsTest, ValuesOfFilesThatAreNotWhole)
{
    CSettings settings = LoadedFrom("[General]\nLastView=5\nHumanTime=x\nFuture=1\n[Strange]\na=b\n");
    EXPECT_EQ(settings.General.LastView, 0);
    EXPECT_EQ(settings.General.HumanTime, 0);
    EXPECT_EQ(settings.General.RotationActiveViews, 31);
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(SavedSection("Strange"), "absent");
    EXPECT_FALSE(Saved().contains("Future"));
    EXPECT_TRUE(Saved().contains("\r\nLastView=0\r\n"));
    // A reload keeps what the file does not name.
    settings.General.HumanTime = 4;
    settings.m_file.SetPath(m_folder.filePath("none.ini"));
    settings.Load(true);
    EXPECT_EQ(settings.General.HumanTime, 4);
}

TEST_F(CSettingsTest, QuickTexts)
{
    struct {
        const char* What;
        const char* Section;
        const char* Items;
    } const cases[] = {
        {"one list is replaced", "[MyTextLocations]\nItem0=Here\nItem1= There \n", "Here|There"},
        {"up to the gap", "[MyTextLocations]\nItem0=Here\nItem2=Lost\n", "Here"},
        {"blank ones are dropped", "[MyTextLocations]\nItem0=\nItem1=Here\n", "Here"},
        {"only blank ones keep the default", "[MyTextLocations]\nItem0=\nItem1=  \n", nullptr},
        {"no first one keeps the default", "[MyTextLocations]\nItem1=Here\n", nullptr},
    };
    const CSettings defaults;
    for (const auto& c : cases) {
        const CSettings settings = LoadedFrom(c.Section);
        const QStringList wanted = c.Items ? QString(c.Items).split('|') : defaults.m_myTextLocations;
        EXPECT_EQ(settings.m_myTextLocations, wanted) << c.What;
        EXPECT_EQ(settings.m_myTextNotes, defaults.m_myTextNotes) << c.What;
    }
}

TEST_F(CSettingsTest, CategoriesAreRenumberedByName)
{
    CSettings settings =
        LoadedFrom("[Categories]\nCategory0=zoo\nColor0=1,2,3\nCategory1=Plain\nCategory2=Art\n"
                   "Image2=zip:art.zip:pen\nColor2=[-1]\nCategory4=Lost\nColor4=9,9,9\n");
    ASSERT_EQ(settings.m_categories.size(), 3u);
    EXPECT_EQ(settings.m_categories["zoo"].Color, Rgb(1, 2, 3));
    EXPECT_EQ(settings.m_categories["Plain"], CCategorySettings());
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(SavedSection("Categories"), "Category0=Art|Image0=zip:art.zip:pen|Category1=zoo|Color1=1,2,3");
}

TEST_F(CSettingsTest, FiltersWithCategories)
{
    CTwoNames names;
    m_names = &names;
    CSettings settings = LoadedFrom("[Filters]\n"
                                    "Filter0=Mine@@!@@2@@!@@work, Home , Gone,,@@!@@1@@!@@HOME\n"
                                    "Filter1=Short@@!@@3\n"
                                    "Filter2=\n"
                                    "Filter19=Last\n"
                                    "CurrentIndex=1\n");
    ASSERT_EQ(settings.m_filters.size(), 20u);
    const CFilter& mine = settings.m_filters[0];
    EXPECT_EQ(mine.IncludeIds, (std::set<qint32>{3, 7}));
    EXPECT_EQ(mine.ExcludeIds, std::set<qint32>{3});
    EXPECT_EQ(mine.IncludeMode, CFilter::kOnly);
    EXPECT_EQ(mine.ExcludeMode, CFilter::kAllOf);
    EXPECT_TRUE(settings.m_filters[1].IsNoCategories());
    EXPECT_EQ(settings.m_filters[2].Name, "");
    EXPECT_EQ(settings.m_filters[3].Name, "Filter Number: 4");
    EXPECT_EQ(settings.m_filters[19].Name, "Last");
    EXPECT_EQ(&settings.GetActiveFilter(), &settings.m_filters[1]);
    EXPECT_TRUE(settings.m_activeFilter.IsNoCategories());
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(SavedSection("Filters").substr(0, 116),
              "Filter0=Mine@@!@@2@@!@@Home, Work@@!@@1@@!@@Home|Filter1=Short@@!@@3@@!@@@@!@@0@@!@@|"
              "Filter2=@@!@@0@@!@@@@!@@0@@!@@|");
}

TEST_F(CSettingsTest, FiltersSurviveWithoutCategories)
{
    const char* text = "[Filters]\nFilter0=Mine@@!@@2@@!@@Work ,Gone@@!@@1@@!@@  x\nCurrentIndex=0\n";
    for (const bool withFilters : {true, false}) { // read but not understood, or never read
        CSettings settings = LoadedFrom(text, withFilters);
        EXPECT_EQ(settings.m_filters.size(), withFilters ? 20u : 0u);
        ASSERT_TRUE(settings.Save());
        const std::string saved = SavedSection("Filters");
        EXPECT_EQ(saved.substr(0, 49), "Filter0=Mine@@!@@2@@!@@Work ,Gone@@!@@1@@!@@  x|F");
        EXPECT_EQ(saved.substr(saved.rfind('|')), "|CurrentIndex=0");
    }
}

TEST_F(CSettingsTest, CurrentFilter)
{
    struct {
        const char* Index;
        int Current;
    } const cases[] = {{"0", 0}, {"19", 19}, {"20", -1}, {"-1", -1}, {"-7", -1}, {"4000000000", -1}};
    for (const auto& c : cases) {
        CSettings settings = LoadedFrom(QByteArray("[Filters]\nCurrentIndex=") + c.Index + "\n");
        EXPECT_EQ(settings.m_currentFilterIndex, c.Current) << c.Index;
        settings.m_filters.clear(); // whatever the index: past the end means the filter in force
        EXPECT_EQ(&settings.GetActiveFilter(), &settings.m_activeFilter) << c.Index;
    }
}

TEST_F(CSettingsTest, FilterStates)
{
    CFilter filter;
    EXPECT_FALSE(filter.IsActive());
    filter.ExcludeMode = CFilter::kOnly;
    EXPECT_TRUE(filter.IsActive());
    filter.Name = "kept";
    filter.IncludeIds = {1};
    filter.SetNoCategories();
    EXPECT_TRUE(filter.IsActive() && filter.IsNoCategories() && filter.IncludeIds.empty());
    filter.Clear();
    EXPECT_FALSE(filter.IsActive());
    EXPECT_EQ(filter.Name, "kept");
    filter.FromText("", nullptr);
    EXPECT_EQ(filter.Name, "kept");

    filter.Name = "odd@@!@"; // would run into the separator
    CFilter read;
    read.FromText(filter.ToText(nullptr), nullptr);
    EXPECT_EQ(read.Name, "odd@@");
    EXPECT_FALSE(read.IsActive());
}

TEST_F(CSettingsTest, CompletedCutoff)
{
    CManualClock clock(FileTimeOfDate(45000.75));
    struct : ITimeZone {
        quint32 GetTimeZoneInformation(TimeZoneInformation* zone) const override
        {
            *zone = TimeZoneInformation();
            return kTimeZoneUnknown;
        }
    } utc;
    SetTimeZone(&utc);
    SetClock(&clock);
    const double cutoffs[] = {0, 949998.0, 44993, 44986, 44969, 44908, 44818, 44635, 0, 0};
    for (int value = 0; value < 10; ++value) {
        const QByteArray text = "[Tasks]\nIgnoreCompletedTasksOlderThan=" + QByteArray::number(value) + "\n";
        EXPECT_EQ(LoadedFrom(text).m_completedCutoff, cutoffs[value]) << value;
    }
    EXPECT_EQ(LoadedFrom("[Tasks]\nIgnoreCompletedTasksOlderThan=-2147483648\n").m_completedCutoff, 0.0);
    SetClock(nullptr);
    SetTimeZone(nullptr);
}

TEST_F(CSettingsTest, MonthStartsOnTheLocalesDay)
{
    const char* given[] = {"0", "5", "6", "", "x", "9"};
    const int wanted[] = {1, 6, 0, 1, 1, 0};
    for (int i = 0; i < 6; ++i) {
        m_locale.Values[LocaleValue::FirstDayOfWeek] = given[i];
        EXPECT_EQ(CSettings().MonthView.StartDay, wanted[i]) << given[i];
    }
}

TEST_F(CSettingsTest, Reminders)
{
    CSettings settings;
    EXPECT_EQ(settings.GetReminderIndex(1), 0);
    EXPECT_EQ(settings.GetReminderIndex(10080), 9);
    EXPECT_EQ(settings.GetReminderIndex(35), -1);
    settings.SetReminderVal(3, -1);
    EXPECT_EQ(settings.DefaultValues.ReminderVal3, -1);
    settings.SetReminderVal(10, 5);
    settings.SetReminderVal(-1, 5);
    EXPECT_EQ(settings.GetReminderVal(10), -1);
    EXPECT_EQ(settings.DefaultValues.ReminderValue, 0);
}

TEST_F(CSettingsTest, InstallFolder)
{
    qputenv("XDG_DATA_HOME", m_folder.filePath("data").toUtf8());
    CSettings settings;
    settings.Load(true);
    EXPECT_EQ(settings.m_file.Path(), m_folder.filePath("data/tessera/ZELVCalendar.ini"));
    settings.General.HumanTime = 3;
    EXPECT_TRUE(settings.Save()); // makes the folder
    ASSERT_TRUE(CRegistry::WriteString(kRegistryKey, "InstallPath", m_folder.filePath("installed")));
    settings.Load(true);
    EXPECT_EQ(settings.m_installFolder, m_folder.filePath("installed"));
    EXPECT_EQ(settings.m_file.Path(),
              m_folder.filePath("data/tessera/ZELVCalendar.ini")); // once chosen it stays
    CSettings other;
    other.Load(true);
    EXPECT_EQ(other.m_file.Path(), m_folder.filePath("installed/ZELVCalendar.ini"));
    EXPECT_EQ(other.General.HumanTime, 0);
    qunsetenv("XDG_DATA_HOME");
}

TEST_F(CSettingsTest, TextsFollowTheLocaleUntilTheyAreTheUsers)
{
    CSettings settings;
    settings.m_myTextSubjects = QStringList{"mine"};
    m_locale.Values[LocaleValue::DateOrder] = "1";
    m_locale.Values[LocaleValue::DateSeparator] = ".";
    m_locale.Values[LocaleValue::TimeMode] = "1";
    settings.RefreshTexts();
    EXPECT_EQ(settings.m_shortDateFormats[0], "dd.MM.yyyy");
    EXPECT_EQ(settings.m_shortDateFormats[1], "dd.MM");
    EXPECT_EQ(settings.m_timeFormats[1], "HH:mm");
    EXPECT_EQ(settings.m_myTextSubjects, QStringList{"mine"});
    EXPECT_EQ(settings.m_myTextNotes.size(), 10);
}
