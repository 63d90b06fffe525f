// Soundness of a volume, and copies of it.
#include "platform/packed_properties.h"
#include "platform/sqlite_volume.h"

#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace
{
QString TextOf(sqlite3_stmt* row, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(row, column)));
}

CStatus CopyPages(const CSqliteConnection& from, const CSqliteConnection& to)
{
    sqlite3_backup* backup = sqlite3_backup_init(to.Handle(), "main", from.Handle(), "main");
    if (!backup)
        return to.LastError();
    const int code = sqlite3_backup_step(backup, -1);
    const int finished = sqlite3_backup_finish(backup);
    if (code == SQLITE_DONE && finished == SQLITE_OK)
        return CStatus();
    return to.Error(finished != SQLITE_OK ? finished : code);
}
} // namespace

CStatus CSqliteVolume::Check(QStringList& faults)
{
    const CStatement integrity = m_db.Prepare("PRAGMA integrity_check(100)");
    if (!integrity)
        return m_db.LastError();
    {
        const CStatementReset reset(integrity.get());
        int code = SQLITE_ROW;
        while ((code = sqlite3_step(integrity.get())) == SQLITE_ROW) {
            const QString line = TextOf(integrity.get(), 0);
            if (line != QLatin1String("ok"))
                faults.push_back(line);
        }
        if (code != SQLITE_DONE)
            return m_db.Error(code);
    }
    CStatus status;
    for (const CVolumeTable& table : m_layout) {
        if (status)
            status = CheckTable(table, faults);
    }
    if (!status || m_layout.empty())
        return status;
    QByteArray oids;
    for (const CVolumeTable& table : m_layout)
        oids += (oids.isEmpty() ? "SELECT oid FROM " : " UNION ALL SELECT oid FROM ") + table.table;
    const qint64 nextOid = m_db.Number("SELECT next_oid FROM counters");
    if (!oids.isEmpty() && m_db.Number("SELECT count(*) - count(DISTINCT oid) FROM (" + oids + ")") != 0)
        faults.push_back(QStringLiteral("An object identifier stands for more than one record."));
    if (!oids.isEmpty() && m_db.Number("SELECT max(oid) FROM (" + oids + ")") >= nextOid)
        faults.push_back(QStringLiteral("The counter of object identifiers is behind the records."));
    if (LastChange() >= m_db.Number("SELECT next_change FROM counters"))
        faults.push_back(QStringLiteral("The counter of changes is behind the log."));
    if (m_db.Number("SELECT count(*) FROM changes WHERE database NOT IN (SELECT id FROM databases)"
                    " OR oid >= (SELECT next_oid FROM counters)") != 0)
        faults.push_back(QStringLiteral("The log of changes names records that never were."));
    return status;
}

CStatus CSqliteVolume::CheckTable(const CVolumeTable& table, QStringList& faults)
{
    const auto tell = [&](qint64 oid, const QString& what) {
        faults.push_back(QStringLiteral("%1, record %2: %3").arg(table.name).arg(oid).arg(what));
    };
    QByteArray sql = "SELECT oid, rest";
    for (const CVolumeColumn& column : table.columns)
        sql += ", typeof(" + column.column + ")";
    const CStatement query = m_db.Prepare(sql + " FROM " + table.table + " ORDER BY oid");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(query.get())) == SQLITE_ROW) {
        const qint64 oid = sqlite3_column_int64(query.get(), 0);
        if (oid < 1 || oid > 0xFFFFFFFF)
            tell(oid, QStringLiteral("the identifier is out of range"));
        CEPROPVAL rest;
        ReadColumn(query.get(), 1, PropType::Blob, rest);
        std::vector<CEPROPVAL> rows;
        if (!UnpackProperties(rest.Bytes, rows))
            tell(oid, QStringLiteral("the packed properties are cut off"));
        for (size_t i = 0; i < table.columns.size(); ++i) {
            const QString type = TextOf(query.get(), int(i) + 2);
            const PropStorage storage = StorageOf(table.columns[i].id);
            const char* wanted = storage == PropStorage::Number ? "integer"
                                 : storage == PropStorage::Text ? "text"
                                                                : "blob";
            if (type != QLatin1String(wanted) && type != QLatin1String("null"))
                tell(oid, QStringLiteral("%1 is of type %2").arg(QString::fromUtf8(table.columns[i].name), type));
        }
    }
    if (code != SQLITE_DONE)
        return m_db.Error(code);
    if (table.recordNumber != 0) {
        const QByteArray column = table.columns[size_t(table.columnOf.value(table.recordNumber))].column;
        if (m_db.Number("SELECT count(*) - count(DISTINCT " + column + ") FROM " + table.table) != 0)
            faults.push_back(QStringLiteral("%1: a record number is missing or stands twice").arg(table.name));
    }
    return CStatus();
}

CStatus CSqliteVolume::Backup(const QString& file)
{
    const QFileInfo target(file);
    const bool same = target.absoluteFilePath() == m_path ||
                      (target.exists() && target.canonicalFilePath() == QFileInfo(m_path).canonicalFilePath());
    if (same)
        return {StatusKind::Invalid, QStringLiteral("A volume cannot be copied onto itself.")};
    if (target.isDir())
        return {StatusKind::Invalid, QStringLiteral("%1 is a folder.").arg(file)};
    // Copied beside the target first, so that a failure leaves an older copy as it was.
    const QString partial = target.absoluteFilePath() + QStringLiteral(".partial");
    QFile::remove(partial);
    MakePrivateFile(partial);
    CStatus status;
    {
        CSqliteConnection copy;
        status = copy.Open(partial, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, partial);
        if (status)
            status = CopyPages(m_db, copy);
        // The copy is one file that can be read where nothing can be written.
        if (status)
            status = copy.Execute("PRAGMA journal_mode = DELETE");
    }
    if (status) {
        const QByteArray from = QFile::encodeName(partial);
        if (std::rename(from.constData(), QFile::encodeName(target.absoluteFilePath()).constData()) != 0)
            status = {StatusKind::Io, QStringLiteral("The copy %1 cannot be put in place.").arg(file)};
    }
    if (!status)
        QFile::remove(partial);
    return status;
}
