// Transactions, reading of whole records, and notices.
#include "platform/sqlite_volume.h"

#include "platform/packed_properties.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace
{
constexpr qint64 kChangesKept = 100000; // a reader further behind loads everything anew anyway
constexpr qint64 kPruneEvery = 1024;
} // namespace

CSqliteVolume::~CSqliteVolume()
{
    if (m_db.InTransaction())
        (void)m_db.Execute("ROLLBACK");
    m_dataVersionQuery.reset();
    m_log.reset();
    m_writeStates.clear();
    m_db.Close();
}

CVolumeTable* CSqliteVolume::FindTable(const QString& database)
{
    for (CVolumeTable& table : m_layout) {
        if (table.name == database)
            return &table;
    }
    return nullptr;
}

std::unique_ptr<CPropertyDatabase> CSqliteVolume::OpenDatabase(const QString& name, const CSortOrder& order,
                                                               bool autoIncrement)
{
    const CVolumeTable* table = FindTable(name);
    if (!table)
        return nullptr;
    if (order.Properties.empty())
        return MakeSqliteDatabase(*this, *table, nullptr, autoIncrement);
    for (const CVolumeOrder& known : table->orders) {
        if (known.properties == order.Properties)
            return MakeSqliteDatabase(*this, *table, &known, autoIncrement);
    }
    return nullptr;
}

// ---- transactions

CStatus CSqliteVolume::StepText(const char* sql)
{
    const CStatement statement = m_db.Prepare(sql);
    if (!statement)
        return m_db.LastError();
    const CStatementReset reset(statement.get());
    return Step(statement.get());
}

CStatus CSqliteVolume::StartOutermost(bool durable)
{
    // A program that goes on writing into a file without a name loses what its owner enters.
    if (!IsInPlace())
        return {StatusKind::Io,
                QStringLiteral("The volume %1 was moved, replaced or deleted while it was open.").arg(m_path)};
    const int synchronous = durable ? 2 : 1;
    if (synchronous != m_synchronous) {
        CStatus status = m_db.Execute(durable ? "PRAGMA synchronous = FULL"
                                              : "PRAGMA synchronous = NORMAL; PRAGMA cache_size = -24000");
        if (!status)
            return status;
        m_synchronous = synchronous;
    }
    Forget();
    return StepText("BEGIN IMMEDIATE");
}

CStatus CSqliteVolume::Begin(bool durable)
{
    if (m_readOnly)
        return {StatusKind::Io, QStringLiteral("The volume %1 is open for reading only.").arg(m_path)};
    if (!m_levels.empty() && !m_levels.back().failure)
        return m_levels.back().failure;
    const CStatus status = m_levels.empty() ? StartOutermost(durable) : CStatus();
    if (status)
        m_levels.push_back({durable, m_changesLogged, CStatus(), m_undo.size()});
    return status;
}

CStatus CSqliteVolume::Commit()
{
    if (m_levels.empty())
        return {StatusKind::Invalid, QStringLiteral("No transaction is open.")};
    CStatus status = m_levels.back().failure;
    if (status && m_levels.size() == 1)
        status = FinishOutermost();
    if (!status) {
        Rollback();
        return status;
    }
    m_levels.pop_back();
    if (m_levels.size() <= 1)
        m_undo.clear();
    if (m_levels.empty()) {
        const bool changed = m_changesLogged > 0;
        Forget();
        if (changed && m_commitHook)
            m_commitHook();
    }
    return status;
}

CStatus CSqliteVolume::FinishOutermost()
{
    CStatus status = m_countersLoaded ? StoreCounters() : CStatus();
    if (status && m_changesLogged > 0)
        status = PruneChanges();
    return status ? StepText("COMMIT") : status;
}

void CSqliteVolume::Rollback()
{
    if (m_levels.empty())
        return;
    ++m_writeCount;
    const CLevel level = std::move(m_levels.back());
    m_levels.pop_back();
    if (!m_levels.empty()) {
        // A full disk may have ended the whole transaction already; then all levels have failed.
        const CStatus status = m_db.InTransaction() ? Undo(level) : level.failure;
        if (!status)
            Fail(status);
        return;
    }
    if (m_db.InTransaction())
        (void)m_db.Execute("ROLLBACK");
    Forget();
}

CStatus CSqliteVolume::KeepForUndo(CVolumeTable& table, CEOID oid, bool existed)
{
    if (m_levels.size() < 2)
        return CStatus();
    m_undo.push_back({&table, oid, existed, {}});
    return existed ? ReadWholeRecord(table.name, oid, m_undo.back().rows) : CStatus();
}

// Takes the writes of an inner level back, the last first, and their places in the log.
CStatus CSqliteVolume::Undo(const CLevel& level)
{
    CStatus status;
    while (status && m_undo.size() > level.undo) {
        const CUndo undo = std::move(m_undo.back());
        m_undo.pop_back();
        status = DeleteRow(*undo.table, undo.oid);
        if (status && undo.existed)
            status = InsertRow(*undo.table, undo.oid, undo.rows, 0);
    }
    const qint64 logged = m_changesLogged - level.changes;
    if (!status || logged == 0)
        return status;
    m_nextChange -= logged;
    m_changesLogged = level.changes;
    return m_db.Execute(QByteArray("DELETE FROM changes WHERE sequence >= " + QByteArray::number(m_nextChange)));
}

void CSqliteVolume::Fail(const CStatus& status)
{
    if (m_levels.empty())
        return;
    m_levels.back().failure = status;
    if (!m_db.InTransaction()) {
        for (CLevel& level : m_levels)
            level.failure = status;
    }
}

void CSqliteVolume::Forget()
{
    m_countersLoaded = false;
    m_changesLogged = 0;
    m_undo.clear();
    for (CWriteState& state : m_writeStates)
        state.nextRecord = -1;
}

// ---- counters, kept in memory within a transaction

CStatus CSqliteVolume::LoadCounters()
{
    if (m_countersLoaded)
        return CStatus();
    m_nextOid = m_db.Number("SELECT next_oid FROM counters", -1);
    m_nextChange = m_db.Number("SELECT next_change FROM counters", -1);
    if (m_nextOid < 1 || m_nextChange < 1)
        return {StatusKind::Corrupt, QStringLiteral("The volume %1 has lost its counters.").arg(m_path)};
    m_countersLoaded = true;
    return CStatus();
}

CStatus CSqliteVolume::StoreCounters()
{
    const CStatement counters = m_db.Prepare("UPDATE counters SET next_oid = ?1, next_change = ?2");
    if (!counters)
        return m_db.LastError();
    const CStatementReset reset(counters.get());
    sqlite3_bind_int64(counters.get(), 1, m_nextOid);
    sqlite3_bind_int64(counters.get(), 2, m_nextChange);
    CStatus status = Step(counters.get());
    for (size_t i = 0; i < m_writeStates.size() && status; ++i) {
        if (m_writeStates[i].nextRecord < 0)
            continue;
        const CStatement database = m_db.Prepare("UPDATE databases SET next_record = ?1 WHERE id = ?2");
        if (!database)
            return m_db.LastError();
        const CStatementReset resetDatabase(database.get());
        sqlite3_bind_int64(database.get(), 1, m_writeStates[i].nextRecord);
        sqlite3_bind_int64(database.get(), 2, m_layout[i].id);
        status = Step(database.get());
    }
    return status;
}

CStatus CSqliteVolume::PruneChanges()
{
    if (m_nextChange / kPruneEvery == (m_nextChange - m_changesLogged) / kPruneEvery)
        return CStatus();
    const CStatement prune = m_db.Prepare("DELETE FROM changes WHERE sequence < ?1");
    if (!prune)
        return m_db.LastError();
    const CStatementReset reset(prune.get());
    sqlite3_bind_int64(prune.get(), 1, m_nextChange - kChangesKept);
    return Step(prune.get());
}

// ---- reading whole records

void ReadColumn(sqlite3_stmt* statement, int column, CEPROPID id, CEPROPVAL& row)
{
    row.propid = id;
    row.wFlags = 0;
    row.Number = 0;
    if (!row.Text.isEmpty())
        row.Text.clear();
    if (!row.Bytes.isEmpty())
        row.Bytes.clear();
    if (sqlite3_column_type(statement, column) == SQLITE_NULL) {
        row.wFlags = CEDB_PROPNOTFOUND;
        return;
    }
    switch (StorageOf(id)) {
    case PropStorage::Number:
        row.Number = sqlite3_column_int64(statement, column);
        break;
    case PropStorage::Text: {
        const char* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        row.Text = QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
        break;
    }
    case PropStorage::Bytes: {
        const char* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        row.Bytes = QByteArray(bytes, sqlite3_column_bytes(statement, column));
        break;
    }
    }
}

CStatus CSqliteVolume::ReadWholeRecord(const QString& database, CEOID oid, std::vector<CEPROPVAL>& rows)
{
    rows.clear();
    const CVolumeTable* table = FindTable(database);
    if (!table)
        return {StatusKind::NotFound, QStringLiteral("There is no database %1.").arg(database)};
    QByteArray sql = "SELECT rest";
    for (const CVolumeColumn& column : table->columns)
        sql += ", " + column.column;
    const CStatement query = m_db.Prepare(sql + " FROM " + table->table + " WHERE oid = ?1");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, oid);
    const int code = sqlite3_step(query.get());
    if (code == SQLITE_DONE)
        return {StatusKind::NotFound, QStringLiteral("There is no record %1 in %2.").arg(oid).arg(database)};
    if (code != SQLITE_ROW)
        return m_db.Error(code);
    for (size_t i = 0; i < table->columns.size(); ++i) {
        CEPROPVAL row;
        ReadColumn(query.get(), int(i) + 1, table->columns[i].id, row);
        if (row.Found())
            rows.push_back(std::move(row));
    }
    CEPROPVAL rest;
    ReadColumn(query.get(), 0, PropType::Blob, rest);
    UnpackProperties(rest.Bytes, rows);
    return CStatus();
}

qint64 CSqliteVolume::RecordCount(const QString& database)
{
    const CVolumeTable* table = FindTable(database);
    return table ? m_db.Number("SELECT count(*) FROM " + table->table) : 0;
}

void CSqliteVolume::NoteReadFault(int code)
{
    if (m_readFault)
        m_readFault = m_db.Error(code);
}

CStatus CSqliteVolume::TakeReadFault() { return std::exchange(m_readFault, CStatus()); }

// ---- notices

qint64 CSqliteVolume::LastChange() { return m_db.Number("SELECT max(sequence) FROM changes"); }

CStatus CSqliteVolume::ReadChanges(qint64 after, int limit, std::vector<CVolumeChange>& changes)
{
    changes.clear();
    if (m_layout.empty())
        return CStatus();
    QByteArray known;
    for (const CVolumeTable& table : m_layout) {
        if (table.schemaIndex >= 0)
            known += (known.isEmpty() ? "" : ",") + QByteArray::number(table.id);
    }
    const CStatement query = m_db.Prepare("SELECT sequence, database, type, oid FROM changes WHERE sequence > ?1"
                                          " AND database IN (" + known + ") ORDER BY sequence LIMIT ?2");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, after);
    sqlite3_bind_int64(query.get(), 2, limit);
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(query.get())) == SQLITE_ROW) {
        CVolumeChange change;
        change.Sequence = sqlite3_column_int64(query.get(), 0);
        const int id = sqlite3_column_int(query.get(), 1);
        for (const CVolumeTable& table : m_layout) {
            if (table.id == id)
                change.Database = table.schemaIndex;
        }
        change.Type = quint32(sqlite3_column_int64(query.get(), 2));
        change.Oid = CEOID(sqlite3_column_int64(query.get(), 3));
        changes.push_back(change);
    }
    return code == SQLITE_DONE ? CStatus() : m_db.Error(code);
}

bool CSqliteVolume::ChangedByOthers()
{
    if (!m_dataVersionQuery)
        return false;
    const CStatementReset reset(m_dataVersionQuery.get());
    if (sqlite3_step(m_dataVersionQuery.get()) != SQLITE_ROW)
        return false;
    const qint64 version = sqlite3_column_int64(m_dataVersionQuery.get(), 0);
    if (version == m_dataVersion)
        return false;
    m_dataVersion = version;
    return true;
}
