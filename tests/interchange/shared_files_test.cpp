// Real and broken files, when they are there: nothing is lost, and a second import changes nothing.
#include "interchange/import_fixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{
QString DataFolder()
{
    return qEnvironmentVariable("TESSERA_DATA", QStringLiteral("../shared/data"));
}

std::string BytesOfFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll().toStdString();
}
} // namespace

class SharedFilesTest : public ImportTest
{
};

TEST_F(SharedFilesTest, RealCalendarsArriveWhole)
{
    const QDir folder(DataFolder() + QStringLiteral("/calendars"));
    const QStringList files = folder.entryList({QStringLiteral("*.ics")});
    if (files.isEmpty())
        GTEST_SKIP() << "no shared data";
    for (const QString& name : files) {
        const std::string bytes = BytesOfFile(folder.filePath(name));
        const QString beside = folder.filePath(name.chopped(4) + QStringLiteral(".expected.json"));
        const QJsonObject answers =
            QJsonDocument::fromJson(QByteArray::fromStdString(BytesOfFile(beside))).object();
        const QJsonObject inventory = answers[QLatin1String("inventory")].toObject();
        const int items = inventory[QLatin1String("events")].toInt() +
                          int(answers[QLatin1String("tasks")].toArray().size());
        FreshVolume();
        const int unreadable = int(answers[QLatin1String("unreadable")].toArray().size());
        const CImported first = ImportBytes(bytes);
        const qint64 arrived = first.Created + first.Updated + first.Unchanged;
        EXPECT_GE(arrived, items - unreadable - 1) << name.toStdString();
        EXPECT_LE(arrived, items) << name.toStdString();
        const qint64 change = m_volume->LastChange();
        const CImported second = ImportBytes(bytes);
        EXPECT_EQ(second.Created + second.Updated, 0) << name.toStdString();
        EXPECT_EQ(second.Unchanged, arrived) << name.toStdString();
        EXPECT_EQ(m_volume->LastChange(), change) << name.toStdString();
    }
}

TEST_F(SharedFilesTest, BrokenFilesLoseNothingElse)
{
    const QDir folder(DataFolder() + QStringLiteral("/malformed"));
    if (!folder.exists())
        GTEST_SKIP() << "no shared data";
    const QByteArray index =
        QByteArray::fromStdString(BytesOfFile(folder.filePath(QStringLiteral("index.json"))));
    const QJsonArray files = QJsonDocument::fromJson(index).object()[QLatin1String("files")].toArray();
    for (const QJsonValue& value : files) {
        const QJsonObject file = value.toObject();
        const QString name = file[QLatin1String("file")].toString();
        if (!name.endsWith(QLatin1String(".ics")))
            continue;
        FreshVolume();
        const CImported told = ImportBytes(BytesOfFile(folder.filePath(name)));
        const qint64 arrived = RecordCount();
        EXPECT_GE(arrived, file[QLatin1String("records_min")].toInt()) << name.toStdString();
        EXPECT_LE(arrived, file[QLatin1String("records_max")].toInt()) << name.toStdString();
        if (file[QLatin1String("message")].toBool()) {
            EXPECT_TRUE(!told.Told.empty() || told.Result == ImportResult::NothingInIt) << name.toStdString();
        }
    }
}
