// Opening a volume: what kind of file it is, whether it may be written, and bringing its tables
// up to what the program needs.
#include "platform/sqlite_volume.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

// A calendar is nobody else's business; the log beside it takes the same rights.
void MakePrivateFile(const QString& path)
{
    const int file = open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file >= 0)
        close(file);
}

namespace
{
QString FreeBackupName(const QString& path, int version)
{
    const QString base = QStringLiteral("%1.version%2.backup").arg(path).arg(version);
    QString name = base;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1-%2").arg(base).arg(i);
    return name;
}

QString LogOf(const QString& path)
{
    return path + QStringLiteral("-wal");
}

quint64 NodeOf(const QString& path)
{
    struct stat info = {};
    return stat(QFile::encodeName(path).constData(), &info) == 0 ? quint64(info.st_ino) : 0;
}
} // namespace

CStatus CPropertyVolume::Open(const QString& path, const CVolumeSchema& schema, Mode mode,
                              std::shared_ptr<CPropertyVolume>& volume)
{
    auto opened = std::make_shared<CSqliteVolume>(QFileInfo(path).absoluteFilePath(), mode == Mode::ReadOnly);
    const CStatus status = opened->OpenFile(schema, mode);
    if (status)
        volume = std::move(opened);
    return status;
}

CStatus CSqliteVolume::OpenFile(const CVolumeSchema& schema, Mode mode)
{
    if (QFileInfo(m_path).isDir())
        return {StatusKind::Io, QStringLiteral("%1 is a folder, not a volume.").arg(m_path)};
    CStatus status = OpenConnection(mode);
    int version = 0;
    if (status)
        status = Identify(&version);
    if (m_readOnly && status.Kind() == StatusKind::Io) {
        status = OpenUnwritable();
        if (status)
            status = Identify(&version);
    }
    if (status && !m_readOnly)
        status = EnterWalMode();
    if (status)
        status = BringUpToDate(schema, version);
    if (!status) {
        m_db.Close();
        return status;
    }
    m_writeStates.resize(m_layout.size());
    m_logNode = NodeOf(LogOf(m_path));
    m_dataVersionQuery = m_db.Prepare("PRAGMA data_version");
    ChangedByOthers();
    return status;
}

bool CSqliteVolume::IsInPlace()
{
    int moved = 0;
    if (m_logAside)
        return false; // also when its file has come back: others would not see what it writes
    return m_copy || sqlite3_file_control(m_db.Handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK ||
           moved == 0;
}

void CSqliteVolume::SetAsideLog()
{
    const QString log = LogOf(m_path), kept = log + QStringLiteral(".old");
    if (IsInPlace() || m_logNode == 0 || NodeOf(log) != m_logNode)
        return; // the new file brought a log of its own
    m_logAside = true;
    (void)m_db.Execute("PRAGMA wal_checkpoint(TRUNCATE)"); // what was moved away is whole again
    QFile::remove(kept);
    QFile::rename(log, kept);
    QFile::remove(m_path + QStringLiteral("-shm"));
}

CStatus CSqliteVolume::OpenConnection(Mode mode)
{
    const QFileInfo info(m_path);
    if (mode != Mode::Create && !info.exists())
        return {StatusKind::NotFound, QStringLiteral("There is no volume %1.").arg(m_path)};
    if (mode == Mode::Create && !QDir().mkpath(info.absolutePath()))
        return {StatusKind::Io, QStringLiteral("The folder %1 cannot be made.").arg(info.absolutePath())};
    if (mode == Mode::Create)
        MakePrivateFile(m_path);
    int flags = SQLITE_OPEN_READONLY;
    if (mode != Mode::ReadOnly)
        flags = SQLITE_OPEN_READWRITE | (mode == Mode::Create ? SQLITE_OPEN_CREATE : 0);
    return m_db.Open(m_path, flags, m_path);
}

// A volume in a folder that may not be written: without a log it can be read as it lies; with one
// it is read from a private copy, since the log's index cannot be made beside it.
CStatus CSqliteVolume::OpenUnwritable()
{
    const QString log = m_path + QStringLiteral("-wal");
    if (QFileInfo(log).size() == 0) {
        const QByteArray address = "file:" + QUrl::toPercentEncoding(m_path, "/") + "?immutable=1";
        return m_db.Open(QString::fromUtf8(address), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, m_path);
    }
    m_copy = std::make_unique<QTemporaryDir>();
    const QString copy = m_copy->filePath(QStringLiteral("pim.vol"));
    if (!m_copy->isValid() || !QFile::copy(m_path, copy) || !QFile::copy(log, copy + QStringLiteral("-wal")))
        return {StatusKind::Io, QStringLiteral("The volume %1 cannot be read.").arg(m_path)};
    for (const QString& file : {copy, copy + QStringLiteral("-wal")})
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    return m_db.Open(copy, SQLITE_OPEN_READWRITE, m_path);
}

// Tells a volume from other files, and its version; 0 and an empty file mean a new one.
CStatus CSqliteVolume::Identify(int* version)
{
    const CStatement query = m_db.Prepare("SELECT (SELECT count(*) FROM sqlite_master),"
                                          " (SELECT application_id FROM pragma_application_id),"
                                          " (SELECT user_version FROM pragma_user_version)");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    const int code = sqlite3_step(query.get());
    if (code != SQLITE_ROW)
        return m_db.Error(code);
    const bool empty = sqlite3_column_int(query.get(), 0) == 0;
    const int application = sqlite3_column_int(query.get(), 1);
    *version = sqlite3_column_int(query.get(), 2);
    const bool blank = empty && application == 0 && *version == 0;
    // A blank one is a volume too: its making was cut off before the first commit.
    if (application != kVolumeApplicationId && !blank)
        return {StatusKind::Corrupt, QStringLiteral("%1 is not a volume of this program.").arg(m_path)};
    if (*version > kVolumeVersion)
        return {StatusKind::Invalid,
                QStringLiteral("The volume %1 was written by a newer version of this program (format %2; this one "
                               "knows format %3). It was left as it is.")
                    .arg(m_path)
                    .arg(*version)
                    .arg(kVolumeVersion)};
    return CStatus();
}

CStatus CSqliteVolume::EnterWalMode()
{
    // Two programs may make the file at once, and this change does not wait by itself.
    CStatus status;
    for (int attempt = 0; attempt < 100; ++attempt) {
        status = m_db.Execute("PRAGMA journal_mode = WAL");
        if (status || status.Kind() != StatusKind::Busy)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (status)
        status = m_db.Execute("PRAGMA synchronous = FULL; PRAGMA temp_store = MEMORY; PRAGMA secure_delete = FAST; PRAGMA cache_size = -6000;"
                              "PRAGMA journal_size_limit = 16777216; PRAGMA wal_autocheckpoint = 2000");
    return status;
}

CStatus CSqliteVolume::BringUpToDate(const CVolumeSchema& schema, int version)
{
    if (version == kVolumeVersion) {
        const CStatus status = ReadLayout(m_db, schema, m_layout);
        if (!status || m_readOnly || HoldsSchema(m_layout, schema))
            return status;
    } else if (m_readOnly && m_db.Number("SELECT count(*) FROM sqlite_master") == 0) {
        return CStatus(); // nothing in it yet, so every database is missing
    } else if (m_readOnly) {
        return {StatusKind::Invalid,
                QStringLiteral("The volume %1 is of an older format and must be opened for writing once.").arg(m_path)};
    }
    const bool old = version != kVolumeVersion &&
                     m_db.Number("SELECT count(*) FROM sqlite_master") > 0;
    if (old) {
        const CStatus status = Backup(FreeBackupName(m_path, version));
        if (!status)
            return status;
    }
    CStatus status = m_db.Execute("BEGIN IMMEDIATE");
    if (!status)
        return status;
    // Another program may have been quicker.
    status = Identify(&version);
    if (status)
        status = AddToLayout(m_db, schema);
    if (status)
        status = m_db.Execute(QByteArray("PRAGMA application_id = " + QByteArray::number(kVolumeApplicationId) +
                                         "; PRAGMA user_version = " + QByteArray::number(kVolumeVersion)));
    if (status)
        status = m_db.Execute("COMMIT");
    if (!status) {
        if (m_db.InTransaction())
            (void)m_db.Execute("ROLLBACK");
        return status;
    }
    return ReadLayout(m_db, schema, m_layout);
}
