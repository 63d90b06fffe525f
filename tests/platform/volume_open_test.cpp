#include "platform/volume_fixture.h"

#include <QDir>
#include <QFile>
#include <functional>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using CVolumeOpenTest = CVolumeTest;
using Mode = CPropertyVolume::Mode;

CStatus TryOpen(const QString& path, Mode mode, const CVolumeSchema& schema = TestSchema())
{
    std::shared_ptr<CPropertyVolume> volume;
    return CPropertyVolume::Open(path, schema, mode, volume);
}

void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What another program does to the file.
void RunSql(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

qint64 AskSql(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    sqlite3_stmt* statement = nullptr;
    qint64 result = -1;
    if (sqlite3_open(QFile::encodeName(path).constData(), &db) == SQLITE_OK &&
        sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW)
        result = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return result;
}

// Runs as somebody who may write nothing here; the exit status is the result.
int AsNobody(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(99);
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}
} // namespace

TEST_F(CVolumeOpenTest, WhatIsMissingIsToldAndNotMade)
{
    EXPECT_EQ(TryOpen(Path(), Mode::MustExist).Kind(), StatusKind::NotFound);
    EXPECT_EQ(TryOpen(Path(), Mode::ReadOnly).Kind(), StatusKind::NotFound);
    EXPECT_FALSE(QFile::exists(Path()));
    for (const auto mode : {Mode::Create, Mode::MustExist, Mode::ReadOnly}) {
        const CStatus status = TryOpen(m_folder.path(), mode);
        EXPECT_EQ(status.Kind(), StatusKind::Io);
        EXPECT_TRUE(status.Text().endsWith("is a folder, not a volume.")) << status.Text().toStdString();
    }
    EXPECT_TRUE(TryOpen(m_folder.filePath(QStringLiteral("a/b/c.vol")), Mode::Create).IsOk());
    EXPECT_EQ(TryOpen(m_folder.filePath(QStringLiteral("a/b/c.vol/d.vol")), Mode::Create).Kind(), StatusKind::Io);
    // An empty file is what a start that was cut off leaves: a volume with nothing in it.
    for (const Mode mode : {Mode::ReadOnly, Mode::MustExist, Mode::Create}) {
        WriteFile(Path(), "");
        {
            const auto volume = Open(mode);
            std::vector<CVolumeChange> changes;
            EXPECT_TRUE(volume->ReadChanges(0, 10, changes).IsOk());
            EXPECT_EQ(volume->LastChange(), 0);
            EXPECT_EQ(volume->RecordCount(kThings), 0);
            ExpectSound(*volume);
        }
        QFile::remove(Path());
    }
}

TEST_F(CVolumeOpenTest, OtherFilesAreRefusedAndLeftAsTheyAre)
{
    const QByteArray text = QByteArray("BEGIN:VCALENDAR\r\n").repeated(400);
    WriteFile(Path(), text);
    for (const Mode mode : {Mode::Create, Mode::MustExist, Mode::ReadOnly}) {
        const CStatus status = TryOpen(Path(), mode);
        EXPECT_EQ(status.Kind(), StatusKind::Corrupt);
        EXPECT_TRUE(status.Text().contains(QStringLiteral("is not a volume"))) << status.Text().toStdString();
        EXPECT_EQ(ReadFile(Path()), text);
    }
    const QString other = m_folder.filePath(QStringLiteral("other.db"));
    RunSql(other, "CREATE TABLE music(title); INSERT INTO music VALUES('x')");
    const QByteArray before = ReadFile(other);
    EXPECT_EQ(TryOpen(other, Mode::Create).Kind(), StatusKind::Corrupt);
    EXPECT_EQ(ReadFile(other), before);
}

TEST_F(CVolumeOpenTest, ANewerVersionIsRefused)
{
    Put(*Open(), kThings, {{kNumber, 1}});
    RunSql(Path(), "PRAGMA user_version = 1000");
    const QByteArray before = ReadFile(Path());
    for (const Mode mode : {Mode::Create, Mode::MustExist, Mode::ReadOnly}) {
        const CStatus status = TryOpen(Path(), mode);
        EXPECT_EQ(status.Kind(), StatusKind::Invalid);
        EXPECT_TRUE(status.Text().contains(QStringLiteral("newer version"))) << status.Text().toStdString();
    }
    EXPECT_EQ(ReadFile(Path()), before);
}

TEST_F(CVolumeOpenTest, AnOlderVersionIsCopiedAndBroughtUpToDate)
{
    std::string dump;
    {
        const auto volume = Open();
        Put(*volume, kThings, {{kNumber, 1}, {0x7777001F, QStringLiteral("kept")}});
        dump = Dump(*volume, kThings);
    }
    RunSql(Path(), "DROP INDEX order_1_10420040; DROP VIEW \"PairDB\"; PRAGMA user_version = 0");
    EXPECT_EQ(TryOpen(Path(), Mode::ReadOnly).Kind(), StatusKind::Invalid);
    const auto volume = Open(Mode::MustExist);
    EXPECT_EQ(Dump(*volume, kThings), dump);
    EXPECT_NE(volume->OpenDatabase(kThings, {{kStart}}, true), nullptr);
    ExpectSound(*volume);
    const QString backup = Path() + QStringLiteral(".version0.backup");
    ASSERT_TRUE(QFile::exists(backup));
    EXPECT_EQ(AskSql(backup, "PRAGMA user_version"), 0);
    EXPECT_EQ(AskSql(backup, "SELECT count(*) FROM records_1"), 1);
    EXPECT_EQ(AskSql(Path(), "PRAGMA user_version"), 1);
}

TEST_F(CVolumeOpenTest, AFailedMigrationLeavesTheOldVolume)
{
    Put(*Open(), kThings, {{kNumber, 1}});
    RunSql(Path(), "UPDATE counters SET only_row = 1; DROP INDEX order_2_00010013_00020003_unique;"
                   "INSERT INTO records_2(oid, p00010013, p00020003) VALUES(90, 1, 1), (91, 1, 1);"
                   "PRAGMA user_version = 0");
    EXPECT_FALSE(TryOpen(Path(), Mode::MustExist).IsOk()); // the unique order cannot be made
    EXPECT_EQ(AskSql(Path(), "PRAGMA user_version"), 0);
    EXPECT_EQ(AskSql(Path(), "SELECT count(*) FROM records_2"), 2);
}

TEST_F(CVolumeOpenTest, NewColumnsAndOrdersAreAdded)
{
    constexpr CEPROPID kNew = 0x7777001F;
    constexpr CEPROPID kNewNumber = 0x77780013;
    std::string dump;
    {
        const auto volume = Open();
        Put(*volume, kThings,
            {{kNumber, 1}, {kNew, QStringLiteral("was packed")}, {kNewNumber, 5}, {0x77790013, 6}});
        Put(*volume, kThings, {{kNumber, 2}});
        dump = Dump(*volume, kThings);
    }
    CVolumeSchema larger = TestSchema();
    larger[0].Columns.push_back({kNew, "New \"text\""});
    larger[0].Columns.push_back({kNewNumber, "NewNumber"});
    larger[0].Orders.push_back({{kNew}});
    larger[0].Scans.push_back({kNewNumber, kNew});
    larger.push_back({QStringLiteral("Third"), {{kText, "Text"}}, {}});
    std::shared_ptr<CPropertyVolume> volume;
    // A reader makes do without; what it lacks stays where it was.
    ASSERT_TRUE(CPropertyVolume::Open(Path(), larger, Mode::ReadOnly, volume));
    EXPECT_EQ(Dump(*volume, kThings), dump);
    EXPECT_EQ(volume->OpenDatabase(kThings, {{kNew}}, true), nullptr);
    ASSERT_TRUE(CPropertyVolume::Open(Path(), larger, Mode::MustExist, volume));
    EXPECT_EQ(Dump(*volume, kThings), dump);
    const auto db = volume->OpenDatabase(kThings, {{kNew}}, true);
    EXPECT_EQ(db->Seek(SeekType::ValueFirstEqual, {kNew, QStringLiteral("was packed")}), 1u);
    EXPECT_EQ(AskSql(Path(), "SELECT count(*) FROM sqlite_master WHERE name = 'scan_1_77780013_7777001f'"), 1);
    EXPECT_EQ(Put(*volume, QStringLiteral("Third"), {{kText, QStringLiteral("x")}}), 3u);
    ExpectSound(*volume);
    volume.reset();
    EXPECT_EQ(AskSql(Path(), "SELECT count(*) FROM records_1 WHERE p7777001f = 'was packed' AND rest NOT NULL"), 1);
    EXPECT_EQ(AskSql(Path(), "SELECT \"NewNumber\" FROM \"Things Database\" WHERE \"New \"\"text\"\"\" NOT NULL"), 5);
    // A program with the smaller schema still sees all of it and keeps it in place.
    volume = Open(Mode::MustExist);
    EXPECT_EQ(Dump(*volume, kThings), dump);
    Put(*volume, kThings, {{kNewNumber, 7}}, 2);
    volume.reset();
    EXPECT_EQ(AskSql(Path(), "SELECT p77780013 FROM records_1 WHERE oid = 2"), 7);
}

TEST_F(CVolumeOpenTest, AReaderWritesNothing)
{
    Put(*Open(), kThings, {{kStart, 1}});
    const auto volume = Open(Mode::ReadOnly);
    std::vector<CEPROPVAL> rows = {{kNumber, 2}};
    EXPECT_EQ(volume->Begin().Kind(), StatusKind::Io);
    EXPECT_EQ(volume->WriteRecord(kThings, 0, rows, {}, nullptr).Kind(), StatusKind::Io);
    EXPECT_EQ(volume->DeleteRecord(kThings, 1).Kind(), StatusKind::Io);
    EXPECT_EQ(volume->RecordCount(kThings), 1);
}

TEST_F(CVolumeOpenTest, AVolumeThatMayNotBeWrittenCanBeRead)
{
    auto writer = Open();
    Put(*writer, kThings, {{kStart, 1}});
    const QString sealed = m_folder.filePath(QStringLiteral("sealed"));
    ASSERT_TRUE(QDir().mkpath(sealed));
    const QString path = sealed + QStringLiteral("/pim #1?.vol"); // a name that an address must escape
    const auto read = [path] {
        std::shared_ptr<CPropertyVolume> volume;
        if (!CPropertyVolume::Open(path, TestSchema(), Mode::ReadOnly, volume))
            return 50;
        const auto db = volume->OpenDatabase(kThings, {{kStart}}, true);
        return int(ReadAll(*db).size());
    };
    const auto seal = [&](bool on) {
        for (const QString& name : QDir(sealed).entryList(QDir::Files))
            chmod(QFile::encodeName(sealed + u'/' + name).constData(), on ? 0444 : 0600);
        chmod(QFile::encodeName(sealed).constData(), on ? 0555 : 0755);
        chmod(QFile::encodeName(m_folder.path()).constData(), 0755);
    };
    // With a log that holds a record which the file does not, as a kill leaves it.
    ASSERT_TRUE(QFile::copy(Path(), path));
    ASSERT_TRUE(QFile::copy(Path() + QStringLiteral("-wal"), path + QStringLiteral("-wal")));
    seal(true);
    EXPECT_EQ(AsNobody(read), 1);
    seal(false);
    writer.reset();
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-wal"));
    ASSERT_TRUE(QFile::copy(Path(), path));
    seal(true);
    EXPECT_EQ(AsNobody(read), 1);
    EXPECT_EQ(AsNobody([path] {
                  const CStatus status = TryOpen(path, Mode::MustExist);
                  return status.Kind() == StatusKind::Io ? 0 : 1;
              }),
              0);
    seal(false);
}

TEST_F(CVolumeOpenTest, WritingIntoALostFileIsAnError)
{
    for (const bool replaced : {false, true}) {
        auto volume = Open();
        Put(*volume, kThings, {{kNumber, 1}});
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(Path() + QString::fromLatin1(suffix));
        if (replaced)
            WriteFile(Path(), "something else");
        std::vector<CEPROPVAL> rows = {{kNumber, 2}};
        const CStatus status = volume->WriteRecord(kThings, 0, rows, {}, nullptr);
        EXPECT_EQ(status.Kind(), StatusKind::Io);
        EXPECT_TRUE(status.Text().contains(QStringLiteral("deleted"))) << status.Text().toStdString();
        volume.reset();
        QFile::remove(Path());
    }
}

TEST_F(CVolumeOpenTest, DamageIsFoundAndTold)
{
    {
        const auto volume = Open();
        ASSERT_TRUE(volume->Begin(false));
        for (int i = 0; i < 2000; ++i)
            Put(*volume, kThings, {{kStart, i}, {kText, QString(100, QChar(u'a' + i % 26))}});
        ASSERT_TRUE(volume->Commit());
    }
    const QByteArray whole = ReadFile(Path());
    for (const bool cut : {false, true}) {
        QByteArray bytes = whole;
        if (cut)
            bytes.truncate(bytes.size() / 2);
        else
            bytes.replace(8 * 4096, 30 * 4096, QByteArray(30 * 4096, 'Z'));
        WriteFile(Path(), bytes);
        std::shared_ptr<CPropertyVolume> volume;
        const CStatus status = CPropertyVolume::Open(Path(), TestSchema(), Mode::MustExist, volume);
        if (!status) {
            EXPECT_EQ(status.Kind(), StatusKind::Corrupt);
            continue;
        }
        QStringList faults;
        const CStatus checked = volume->Check(faults);
        EXPECT_TRUE(checked.Kind() == StatusKind::Corrupt || !faults.isEmpty());
        const auto db = volume->OpenDatabase(kThings, {}, true);
        EXPECT_LT(ReadAll(*db).size(), 2000u);
        EXPECT_EQ(volume->TakeReadFault().Kind(), StatusKind::Corrupt);
        EXPECT_TRUE(volume->TakeReadFault().IsOk());
    }
    // Faults of content, not of pages.
    WriteFile(Path(), whole);
    RunSql(Path(), "UPDATE records_1 SET rest = x'010203', p10420040 = 'soon' WHERE oid = 5;"
                   "UPDATE counters SET next_oid = 7; INSERT INTO records_2(oid) VALUES(9)");
    const auto volume = Open(Mode::MustExist);
    QStringList faults;
    ASSERT_TRUE(volume->Check(faults));
    const std::string text = faults.join(u'\n').toStdString();
    for (const char* part : {"record 5: the packed", "record 5: Start is of type text", "more than one record",
                             "counter of object identifiers", "names records that never were"})
        EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
}

TEST_F(CVolumeOpenTest, ABackupIsOneWholeFile)
{
    const auto volume = Open();
    Put(*volume, kThings, {{kNumber, 1}});
    const QString copy = m_folder.filePath(QStringLiteral("copy.vol"));
    ASSERT_TRUE(volume->Backup(copy));
    for (const QString& file : {Path(), Path() + QStringLiteral("-wal"), copy}) {
        struct stat info{};
        ASSERT_EQ(stat(QFile::encodeName(file).constData(), &info), 0);
        EXPECT_EQ(info.st_mode & 0777, 0600u) << file.toStdString(); // for its owner only
    }
    Put(*volume, kThings, {{kNumber, 2}});
    EXPECT_EQ(AskSql(copy, "SELECT count(*) FROM records_1"), 1);
    ASSERT_TRUE(volume->Backup(copy)); // over an older one
    EXPECT_EQ(AskSql(copy, "SELECT count(*) FROM records_1"), 2);
    EXPECT_EQ(volume->Backup(Path()).Kind(), StatusKind::Invalid);
    EXPECT_EQ(volume->Backup(m_folder.path()).Kind(), StatusKind::Invalid);
    EXPECT_FALSE(volume->Backup(m_folder.filePath(QStringLiteral("no/such/folder.vol"))).IsOk());
    EXPECT_EQ(QDir(m_folder.path()).entryList({QStringLiteral("*partial*")}).size(), 0);
    std::shared_ptr<CPropertyVolume> opened;
    ASSERT_TRUE(CPropertyVolume::Open(copy, TestSchema(), Mode::MustExist, opened));
    EXPECT_EQ(Dump(*opened, kThings), Dump(*volume, kThings));
}
