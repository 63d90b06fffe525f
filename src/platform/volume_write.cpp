// Writing records of a volume.
#include "platform/sqlite_volume.h"

#include "platform/packed_properties.h"

#include <algorithm>

namespace
{
// Item identifiers carry two tag bits above the record number.
constexpr qint64 kMaxRecordNumber = 0x3FFFFFFF;
constexpr qint64 kMaxOid = 0xFFFFFFFF;

int g_failCountdown = 0;
StatusKind g_failKind = StatusKind::Full;
bool g_failed = false;

bool FailureIsDue()
{
    if (g_failCountdown == 0 || --g_failCountdown > 0)
        return false;
    g_failed = true;
    return true;
}

// Texts must live until the statement has run; their bytes are borrowed by it.
class CBinder
{
public:
    explicit CBinder(sqlite3_stmt* statement) : m_statement(statement) {}

    int Bind(int index, const CEPROPVAL& row)
    {
        switch (StorageOf(row.propid)) {
        case PropStorage::Number:
            return sqlite3_bind_int64(m_statement, index, NormalizedNumber(row.propid, row.Number));
        case PropStorage::Text:
            m_texts.push_back(row.Text.toUtf8());
            return sqlite3_bind_text64(m_statement, index, m_texts.back().constData(),
                                       sqlite3_uint64(m_texts.back().size()), SQLITE_STATIC, SQLITE_UTF8);
        case PropStorage::Bytes:
            return BindBytes(index, row.Bytes);
        }
        return SQLITE_MISUSE;
    }

    int BindRest(int index, std::span<const CEPROPVAL> rows)
    {
        if (rows.empty())
            return sqlite3_bind_null(m_statement, index);
        return BindBytes(index, PackProperties(rows));
    }

private:
    int BindBytes(int index, const QByteArray& bytes)
    {
        m_texts.push_back(bytes);
        return sqlite3_bind_blob64(m_statement, index, m_texts.back().constData(), sqlite3_uint64(bytes.size()),
                                   SQLITE_STATIC);
    }

    sqlite3_stmt* m_statement;
    std::vector<QByteArray> m_texts;
};

const CEPROPVAL* FindRow(std::span<const CEPROPVAL> rows, CEPROPID id)
{
    for (const CEPROPVAL& row : rows) {
        if (row.propid == id && row.Found())
            return &row;
    }
    return nullptr;
}
} // namespace

bool FailVolumeWrite(int n, StatusKind kind)
{
    const bool failed = g_failed;
    g_failCountdown = n;
    g_failKind = kind;
    g_failed = false;
    return failed;
}

CStatus CSqliteVolume::Step(sqlite3_stmt* statement)
{
    if (FailureIsDue())
        return {g_failKind, QStringLiteral("A write to the volume %1 failed as a test asked.").arg(m_path)};
    const int code = sqlite3_step(statement);
    return code == SQLITE_DONE ? CStatus() : m_db.Error(code);
}

template <typename Work> CStatus CSqliteVolume::InTransaction(Work work)
{
    const bool own = m_levels.empty();
    CStatus status;
    if (own)
        status = Begin(true);
    else
        status = m_levels.back().failure;
    if (!status)
        return status;
    status = LoadCounters();
    if (status)
        status = work();
    ++m_writeCount;
    // What is refused before anything was written leaves the rest of the transaction sound.
    if (!status && status.Kind() != StatusKind::Invalid && status.Kind() != StatusKind::NotFound)
        Fail(status);
    if (!own)
        return status;
    if (status)
        return Commit();
    Rollback();
    return status;
}

CStatus CSqliteVolume::WriteRecord(const QString& database, CEOID oid, std::span<const CEPROPVAL> put,
                                   std::span<const CEPROPID> remove, CEOID* written, quint32* recordNumber)
{
    CVolumeTable* table = FindTable(database);
    if (!table)
        return {StatusKind::NotFound, QStringLiteral("There is no database %1.").arg(database)};
    CEOID result = oid;
    quint32 number = 0;
    const CStatus status = InTransaction([&] {
        return oid == 0 ? Insert(*table, put, &result, &number) : Update(*table, oid, put, remove);
    });
    if (status && written)
        *written = result;
    if (status && recordNumber && oid == 0)
        *recordNumber = number;
    return status;
}

CStatus CSqliteVolume::NextRecordNumber(CVolumeTable& table, std::span<const CEPROPVAL> put, qint64* number,
                                        bool* given)
{
    *number = 0;
    if (table.recordNumber == 0)
        return CStatus();
    qint64& next = m_writeStates[size_t(&table - m_layout.data())].nextRecord;
    if (next < 0)
        next = m_db.Number("SELECT next_record FROM databases WHERE id = " + QByteArray::number(table.id), 1);
    const CEPROPVAL* row = FindRow(put, table.recordNumber);
    *given = row != nullptr;
    *number = row ? NormalizedNumber(row->propid, row->Number) : next;
    if (*number > kMaxRecordNumber && !row)
        return {StatusKind::Full, QStringLiteral("The volume %1 has no record numbers left.").arg(m_path)};
    if (*number < kMaxRecordNumber)
        next = std::max(next, *number + 1);
    return CStatus();
}

CStatus CSqliteVolume::Insert(CVolumeTable& table, std::span<const CEPROPVAL> put, CEOID* written,
                              quint32* recordNumber)
{
    if (m_nextOid > kMaxOid)
        return {StatusKind::Full, QStringLiteral("The volume %1 has no identifiers left.").arg(m_path)};
    qint64 number = 0;
    bool given = false;
    CStatus status = NextRecordNumber(table, put, &number, &given);
    if (status)
        status = InsertRow(table, CEOID(m_nextOid), put, given ? 0 : number);
    if (!status)
        return status;
    *written = CEOID(m_nextOid++);
    *recordNumber = quint32(number);
    status = KeepForUndo(table, *written, false);
    return status ? LogChange(table, kNoticeCreated, *written) : status;
}

// A record number of 0 is one that `put` holds, or none.
CStatus CSqliteVolume::InsertRow(CVolumeTable& table, CEOID oid, std::span<const CEPROPVAL> put, qint64 recordNumber)
{
    CStatement& insert = m_writeStates[size_t(&table - m_layout.data())].insert;
    if (!insert) {
        QByteArray sql = "INSERT INTO " + table.table + "(oid, rest";
        for (const CVolumeColumn& column : table.columns)
            sql += ", " + column.column;
        sql += ") VALUES(?, ?" + QByteArray(", ?").repeated(qsizetype(table.columns.size())) + ")";
        insert = m_db.Prepare(sql);
        if (!insert)
            return m_db.LastError();
    }
    sqlite3_stmt* statement = insert.get();
    const CStatementReset reset(statement);
    sqlite3_clear_bindings(statement);
    CBinder binder(statement);
    std::vector<CEPROPVAL> rest;
    int code = sqlite3_bind_int64(statement, 1, oid);
    for (const CEPROPVAL& row : put) {
        const auto column = table.columnOf.constFind(row.propid);
        if (column == table.columnOf.constEnd())
            PutProperty(rest, row);
        else if (row.Found() && code == SQLITE_OK)
            code = binder.Bind(*column + 3, row);
    }
    if (recordNumber != 0 && code == SQLITE_OK)
        code = binder.Bind(table.columnOf.value(table.recordNumber) + 3, CEPROPVAL(table.recordNumber, recordNumber));
    if (code == SQLITE_OK)
        code = binder.BindRest(2, rest);
    return code == SQLITE_OK ? Step(statement) : m_db.Error(code);
}

CStatus CSqliteVolume::DeleteRow(const CVolumeTable& table, CEOID oid)
{
    const CStatement statement = m_db.Prepare("DELETE FROM " + table.table + " WHERE oid = ?1");
    if (!statement)
        return m_db.LastError();
    const CStatementReset reset(statement.get());
    sqlite3_bind_int64(statement.get(), 1, oid);
    return Step(statement.get());
}

CStatus CSqliteVolume::ReadRest(const CVolumeTable& table, CEOID oid, std::vector<CEPROPVAL>& rest)
{
    const CStatement query = m_db.Prepare("SELECT rest FROM " + table.table + " WHERE oid = ?1");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, oid);
    const int code = sqlite3_step(query.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        return m_db.Error(code);
    if (code == SQLITE_ROW) {
        CEPROPVAL packed;
        ReadColumn(query.get(), 0, PropType::Blob, packed);
        UnpackProperties(packed.Bytes, rest);
    }
    return CStatus();
}

CStatus CSqliteVolume::Update(CVolumeTable& table, CEOID oid, std::span<const CEPROPVAL> put,
                              std::span<const CEPROPID> remove)
{
    // The last word on each property wins; what is removed is a row that is not found.
    std::vector<CEPROPVAL> rows;
    const auto add = [&rows](const CEPROPVAL& row) {
        const auto same = std::find_if(rows.begin(), rows.end(),
                                       [&row](const CEPROPVAL& other) { return other.propid == row.propid; });
        if (same != rows.end())
            *same = row;
        else
            rows.push_back(row);
    };
    for (const CEPROPVAL& row : put)
        add(row);
    for (const CEPROPID id : remove) {
        CEPROPVAL row(id, qint64(0));
        row.wFlags = CEDB_PROPNOTFOUND;
        add(row);
    }
    QByteArray sql;
    bool touchesRest = false;
    for (const CEPROPVAL& row : rows) {
        const auto column = table.columnOf.constFind(row.propid);
        if (column == table.columnOf.constEnd())
            touchesRest = true;
        else
            sql += (sql.isEmpty() ? "" : ", ") + table.columns[size_t(*column)].column + " = ?";
    }
    CStatus status = RequireRecord(table, oid);
    std::vector<CEPROPVAL> rest;
    if (status && touchesRest) {
        sql += sql.isEmpty() ? "rest = ?" : ", rest = ?";
        status = ReadRest(table, oid, rest);
    }
    qint64 number = 0;
    bool given = false;
    if (status && FindRow(rows, table.recordNumber))
        status = NextRecordNumber(table, rows, &number, &given);
    if (status)
        status = KeepForUndo(table, oid, true);
    if (!status)
        return status;
    if (sql.isEmpty())
        return LogChange(table, kNoticeChanged, oid);
    const CStatement update = m_db.Prepare("UPDATE " + table.table + " SET " + sql + " WHERE oid = ?");
    if (!update)
        return m_db.LastError();
    const CStatementReset reset(update.get());
    sqlite3_clear_bindings(update.get());
    CBinder binder(update.get());
    int code = SQLITE_OK;
    int index = 0;
    for (const CEPROPVAL& row : rows) {
        if (!table.columnOf.contains(row.propid)) {
            PutProperty(rest, row);
            continue;
        }
        ++index;
        if (row.Found() && code == SQLITE_OK)
            code = binder.Bind(index, row);
    }
    if (touchesRest && code == SQLITE_OK)
        code = binder.BindRest(++index, rest);
    if (code != SQLITE_OK)
        return m_db.Error(code);
    sqlite3_bind_int64(update.get(), index + 1, oid);
    status = Step(update.get());
    return status ? LogChange(table, kNoticeChanged, oid) : status;
}

CStatus CSqliteVolume::RequireRecord(const CVolumeTable& table, CEOID oid)
{
    const CStatement query = m_db.Prepare("SELECT 1 FROM " + table.table + " WHERE oid = ?1");
    if (!query)
        return m_db.LastError();
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, oid);
    const int code = sqlite3_step(query.get());
    if (code == SQLITE_DONE)
        return {StatusKind::NotFound, QStringLiteral("There is no record %1 in %2.").arg(oid).arg(table.name)};
    return code == SQLITE_ROW ? CStatus() : m_db.Error(code);
}

CStatus CSqliteVolume::LogChange(const CVolumeTable& table, quint32 type, CEOID oid)
{
    if (!m_log)
        m_log = m_db.Prepare("INSERT INTO changes(sequence, database, type, oid) VALUES(?1, ?2, ?3, ?4)");
    if (!m_log) {
        Fail(m_db.LastError());
        return m_db.LastError();
    }
    const CStatementReset reset(m_log.get());
    sqlite3_bind_int64(m_log.get(), 1, m_nextChange);
    sqlite3_bind_int64(m_log.get(), 2, table.id);
    sqlite3_bind_int64(m_log.get(), 3, type);
    sqlite3_bind_int64(m_log.get(), 4, oid);
    const CStatus status = Step(m_log.get());
    if (!status) {
        Fail(status);
        return status;
    }
    ++m_nextChange;
    ++m_changesLogged;
    return status;
}

CStatus CSqliteVolume::DeleteRecord(const QString& database, CEOID oid)
{
    CVolumeTable* table = FindTable(database);
    if (!table)
        return {StatusKind::NotFound, QStringLiteral("There is no database %1.").arg(database)};
    return InTransaction([&] {
        CStatus status = RequireRecord(*table, oid);
        if (status)
            status = KeepForUndo(*table, oid, true);
        if (status)
            status = DeleteRow(*table, oid);
        return status ? LogChange(*table, kNoticeDeleted, oid) : status;
    });
}

CStatus CSqliteVolume::TouchRecord(const QString& database, CEOID oid)
{
    CVolumeTable* table = FindTable(database);
    if (!table)
        return {StatusKind::NotFound, QStringLiteral("There is no database %1.").arg(database)};
    return InTransaction([&] {
        const CStatus status = RequireRecord(*table, oid);
        return status ? LogChange(*table, kNoticeChanged, oid) : status;
    });
}
