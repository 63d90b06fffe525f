#include "platform/sqlite_connection.h"

#include <QFile>

namespace
{
constexpr int kMaxStatements = 200;
constexpr int kBusyMilliseconds = 10000;

// Counting each allocation costs a lock; nothing here asks for the counts.
void ConfigureOnce()
{
    static const bool done = [] {
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
        return sqlite3_initialize() == SQLITE_OK;
    }();
    Q_UNUSED(done);
}
} // namespace

QByteArray QuotedName(const QByteArray& name)
{
    QByteArray quoted = name;
    quoted.replace('"', "\"\"");
    return '"' + quoted + '"';
}

CSqliteConnection::~CSqliteConnection() { Close(); }

void CSqliteConnection::Close()
{
    m_statements.clear();
    if (m_db)
        sqlite3_close_v2(m_db);
    m_db = nullptr;
}

CStatus CSqliteConnection::Open(const QString& name, int flags, const QString& shown)
{
    ConfigureOnce();
    Close();
    m_shown = shown;
    const int code = sqlite3_open_v2(QFile::encodeName(name).constData(), &m_db,
                                     flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    if (code != SQLITE_OK) {
        const CStatus status = Error(code);
        Close();
        return status;
    }
    sqlite3_busy_timeout(m_db, kBusyMilliseconds);
    // The file may come from anywhere: nothing in it may run by itself or be trusted.
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    return CStatus();
}

CStatus CSqliteConnection::Execute(const char* sql)
{
    const int code = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    return code == SQLITE_OK ? CStatus() : Error(code);
}

CStatement CSqliteConnection::Prepare(const QByteArray& sql)
{
    const auto kept = m_statements.constFind(sql);
    if (kept != m_statements.constEnd())
        return *kept;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(m_db, sql.constData(), int(sql.size()) + 1, SQLITE_PREPARE_PERSISTENT, &statement,
                           nullptr) != SQLITE_OK)
        return nullptr;
    CStatement shared(statement, sqlite3_finalize);
    if (m_statements.size() >= kMaxStatements)
        m_statements.clear();
    m_statements.insert(sql, shared);
    return shared;
}

qint64 CSqliteConnection::Number(const QByteArray& sql, qint64 missing)
{
    const CStatement statement = Prepare(sql);
    if (!statement)
        return missing;
    const CStatementReset reset(statement.get());
    return sqlite3_step(statement.get()) == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 0) : missing;
}

CStatus CSqliteConnection::Error(int code) const
{
    const QString detail = QString::fromUtf8(m_db ? sqlite3_errmsg(m_db) : sqlite3_errstr(code));
    const auto text = [&](const char* sentence) {
        return QString::fromUtf8(sentence).arg(m_shown) + QStringLiteral(" (%1)").arg(detail);
    };
    switch (code & 0xFF) {
    case SQLITE_NOTADB:
        return {StatusKind::Corrupt, QStringLiteral("%1 is not a volume of this program.").arg(m_shown)};
    case SQLITE_CORRUPT:
        return {StatusKind::Corrupt, text("The volume %1 is damaged.")};
    case SQLITE_FULL:
        return {StatusKind::Full, text("There is no room left for the volume %1.")};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {StatusKind::Busy, QStringLiteral("Another program is writing to the volume %1.").arg(m_shown)};
    case SQLITE_CONSTRAINT:
        return {StatusKind::Invalid, text("The volume %1 already has such a record.")};
    case SQLITE_TOOBIG:
    case SQLITE_MISMATCH:
    case SQLITE_RANGE:
        return {StatusKind::Invalid, text("The volume %1 cannot hold this value.")};
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return {StatusKind::Io, text("The volume %1 cannot be written.")};
    case SQLITE_CANTOPEN:
        return {StatusKind::Io, text("The volume %1 cannot be opened.")};
    default:
        return {StatusKind::Io, text("The volume %1 cannot be read or written.")};
    }
}
