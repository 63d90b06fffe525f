#include "util/string_store.h"

#include "util/catalogue.h"
#include "util/string_ids.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace
{
QStringList LinesOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll()).split('\n');
}

std::map<int, QString> TextsOf(const QString& path)
{
    std::map<int, QString> texts;
    for (const QString& line : LinesOf(path)) {
        const QStringList fields = line.split('\t');
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        EXPECT_TRUE(texts.emplace(fields[0].toInt(), fields.value(1)).second)
            << "twice " << fields[0].toStdString();
    }
    return texts;
}

class CStringStoreTest : public ::testing::Test
{
protected:
    void TearDown() override { LoadLanguageLibrary(QString(), QString(), QString()); }

    bool MakeCatalogue(const QString& path, const std::map<int, QString>& texts)
    {
        return ::MakeCatalogue(m_folder.filePath("source.ts"), path, texts);
    }

    QTemporaryDir m_folder;
    QString m_install = m_folder.filePath("install"), m_share = m_folder.filePath("share");
};
} // namespace

// A number that stands twice would give one text to two places.
TEST_F(CStringStoreTest, EveryNumberHasANameAndAText)
{
    const std::map<int, QString> texts = TextsOf("resources/strings/strings.tsv");
    std::map<int, QString> names;
    static const QRegularExpression line("^    (Str\\w+) = (\\d+),$");
    for (const QString& text : LinesOf("src/util/string_ids.h")) {
        const QRegularExpressionMatch match = line.match(text);
        if (!match.hasMatch())
            continue;
        const int number = match.captured(2).toInt();
        EXPECT_TRUE(names.emplace(number, match.captured(1)).second) << match.captured(1).toStdString();
        EXPECT_TRUE(number == StrColorNames || !GetString(number).isEmpty())
            << match.captured(1).toStdString();
    }
    ASSERT_GT(names.size(), 500u);
    for (const auto& [number, text] : texts) {
        QString built = GetString(number);
        EXPECT_EQ(built.replace('\\', "\\\\").replace('\n', "\\n"), text) << number;
        EXPECT_TRUE(names.count(number) || number > StrColorNames) << number << " has no name";
    }
}

TEST_F(CStringStoreTest, EnglishTexts)
{
    EXPECT_EQ(GetString(StrNoAvailableItems), "No available items");
    EXPECT_EQ(GetString(40365), "Are you sure you would like to delete the appointment ");
    EXPECT_EQ(GetString(40628), "HH 'hour(s) and' mm 'minute(s)'");
    for (const int number : {0, -1, 127, 129, 40820, 2147483647})
        EXPECT_TRUE(GetString(number).isEmpty()) << number;
}

TEST_F(CStringStoreTest, LanguageLibraries)
{
    const QString active = m_install + "/ActiveLang.qm", german = m_share + "/translations/tessera_de.qm";
    ASSERT_TRUE(MakeCatalogue(german, {{StrSubject, "Betreff"}, {StrNote, "Notiz"}}));
    LoadLanguageLibrary(m_install, m_share, "de_AT");
    EXPECT_EQ(GetString(StrSubject), "Betreff");
    EXPECT_EQ(GetString(StrLocation), "Location"); // one missing text is English

    ASSERT_TRUE(MakeCatalogue(active, {{StrSubject, "Sujet"}}));
    LoadLanguageLibrary(m_install, m_share, "de_AT");
    EXPECT_EQ(GetString(StrSubject), "Sujet");
    EXPECT_EQ(GetString(StrNote), "Note"); // the catalogue of the locale is not under it

    LoadLanguageLibrary(QString(), m_share, "en_US");
    EXPECT_EQ(GetString(StrSubject), "Subject");
    LoadLanguageLibrary(QString(), m_share, "fr_FR");
    EXPECT_EQ(GetString(StrSubject), "Subject");

    QFile broken(active);
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly) && broken.write("no catalogue") > 0);
    broken.close();
    LoadLanguageLibrary(m_install, m_share, "de_DE"); // then the locale's
    EXPECT_EQ(GetString(StrSubject), "Betreff");
}

TEST_F(CStringStoreTest, FillsItsPlacesInOrderOrByNumber)
{
    struct Case {
        const char* Format;
        QStringList Texts;
        const char* Filled;
    };
    const Case cases[] = {
        {"Day %d of every %d month(s) effective %s",
         {"3", "2", "%s"},
         "Day 3 of every 2 month(s) effective %s"},
        {"am %2$d. %1$s, %3$s", {"July", "4", "x"}, "am 4. July, x"},
        {"%s and %s", {"one"}, "one and "},
        {"100% %x %1$ %", {"one"}, "100% %x %1$ %"},
        {"%0$s%9$s", {"one"}, "%0$s"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FillText(c.Format, c.Texts), c.Filled) << c.Format;
}
