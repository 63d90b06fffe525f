// An open database: a place in one sort order.
// A place is a key (the order's values, then the identifier), never an open statement. Records
// are read ahead in small, then growing blocks; a block is dropped after a write of this volume
// and when it is no longer fresh, and reading goes on from the key.
#include "platform/packed_properties.h"
#include "platform/sqlite_volume.h"

#include <ctime>

namespace
{
constexpr int kFirstBlock = 4; // a seek mostly wants one record and a look at the next
constexpr int kLargestBlock = 128;
constexpr qint64 kBlockBytes = 1 << 20;
constexpr qint64 kFreshMilliseconds = 20; // longer than a pass takes between two reads

qint64 CoarseMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

struct CKeyValue {
    int type = SQLITE_NULL;
    qint64 number = 0;
    QByteArray bytes;

    void Read(sqlite3_stmt* statement, int column)
    {
        type = sqlite3_column_type(statement, column);
        if (type == SQLITE_INTEGER)
            number = sqlite3_column_int64(statement, column);
        else if (type != SQLITE_NULL)
            bytes = QByteArray(static_cast<const char*>(sqlite3_column_blob(statement, column)),
                               sqlite3_column_bytes(statement, column));
    }
    void Bind(sqlite3_stmt* statement, int index) const
    {
        if (type == SQLITE_INTEGER)
            sqlite3_bind_int64(statement, index, number);
        else if (type == SQLITE_NULL)
            sqlite3_bind_null(statement, index);
        else if (type == SQLITE_TEXT)
            sqlite3_bind_text(statement, index, bytes.constData(), int(bytes.size()), SQLITE_STATIC);
        else
            sqlite3_bind_blob(statement, index, bytes.constData(), int(bytes.size()), SQLITE_STATIC);
    }
    bool operator==(const CKeyValue& other) const
    {
        return type == other.type && (type == SQLITE_INTEGER ? number == other.number : bytes == other.bytes);
    }
};

// The conditions under which a query runs through the order; ?1 and ?2 are the keys.
enum Stage {
    kStageAll,
    kStageOid,         // one record
    kStageOidFrom,     // by identifier from ?3
    kStageValueFrom,   // first value at or after ?1
    kStageSame,        // equal keys, identifier from ?3
    kStageNextSecond,  // equal first key, second after ?2
    kStageAnySecond,   // the same when ?2 is nothing, which stands first
    kStageNextFirst,
    kStageCount
};
} // namespace

class CSqliteDatabase : public CPropertyDatabase
{
public:
    CSqliteDatabase(CSqliteVolume& volume, const CVolumeTable& table, const CVolumeOrder* order, bool autoIncrement)
        : m_volume(volume), m_table(table), m_order(order), m_autoIncrement(autoIncrement)
    {
        if (m_order) {
            m_keyCount = int(m_order->properties.size());
            m_first = Column(m_order->properties[0]);
            if (m_keyCount == 2)
                m_second = Column(m_order->properties[1]);
        }
    }

    CEOID Seek(SeekType type, const CEPROPVAL& value) override;
    CEOID ReadRecordProps(std::span<const CEPROPID> ids, std::vector<CEPROPVAL>& rows) override;

private:
    struct CPlace {
        enum class Kind { Beginning, At, After, End };
        Kind kind = Kind::Beginning;
        CKeyValue first, second;
        CEOID oid = 0;
    };
    struct CRecord {
        CKeyValue first, second;
        CEOID oid = 0;
        std::vector<CEPROPVAL> rows;
    };

    const QByteArray& Column(CEPROPID id) const { return m_table.columns[size_t(m_table.columnOf.value(id))].column; }
    void TakeIds(std::span<const CEPROPID> ids);
    QByteArray StageCondition(Stage stage) const;
    sqlite3_stmt* Query(Stage stage);
    bool Run(Stage stage, const CKeyValue& first, const CKeyValue& second, qint64 oid, int limit);
    void ReadRow(sqlite3_stmt* statement, CRecord& record, qint64* bytes);
    void Load(int limit);
    void Drop() { m_next = m_count = 0; }
    bool IsFresh() const;
    CEOID SeekOid(CEOID oid);
    CEOID SeekValue(const CEPROPVAL& value, bool equal);
    CEOID TakePlace(bool found);

    CSqliteVolume& m_volume;
    const CVolumeTable& m_table;
    const CVolumeOrder* m_order;
    bool m_autoIncrement;
    int m_keyCount = 0;
    QByteArray m_first, m_second; // column names of the order

    std::vector<CEPROPID> m_ids; // asked last; a seek reads them along
    std::vector<int> m_columns;  // result column of each, -1 in the packed rest
    int m_restColumn = -1;
    QByteArray m_select;
    CStatement m_queries[kStageCount];

    CPlace m_place; // of the next record
    std::vector<CRecord> m_block;
    size_t m_next = 0;
    size_t m_count = 0;
    int m_limit = kFirstBlock;
    quint64 m_blockWrites = 0;
    qint64 m_blockTime = 0;
};

std::unique_ptr<CPropertyDatabase> MakeSqliteDatabase(CSqliteVolume& volume, const CVolumeTable& table,
                                                      const CVolumeOrder* order, bool autoIncrement)
{
    return std::make_unique<CSqliteDatabase>(volume, table, order, autoIncrement);
}

// ---- queries

void CSqliteDatabase::TakeIds(std::span<const CEPROPID> ids)
{
    m_ids.assign(ids.begin(), ids.end());
    m_columns.clear();
    m_restColumn = -1;
    m_select = "SELECT oid";
    int next = 1;
    for (const QByteArray* key : {&m_first, &m_second}) {
        if (!key->isEmpty()) {
            m_select += ", " + *key;
            ++next;
        }
    }
    bool rest = false;
    for (const CEPROPID id : m_ids) {
        if (m_table.columnOf.contains(id)) {
            m_select += ", " + Column(id);
            m_columns.push_back(next++);
        } else {
            m_columns.push_back(-1);
            rest = true;
        }
    }
    if (rest) {
        m_select += ", rest";
        m_restColumn = next;
    }
    m_select += " FROM " + m_table.table;
    for (CStatement& query : m_queries)
        query.reset();
    Drop();
}

QByteArray CSqliteDatabase::StageCondition(Stage stage) const
{
    if (stage == kStageOid)
        return " WHERE oid = ?3 LIMIT ?4";
    if (!m_order)
        return stage == kStageAll ? " ORDER BY oid LIMIT ?4" : " WHERE oid >= ?3 ORDER BY oid LIMIT ?4";
    const QByteArray index = m_order->index.isEmpty() ? QByteArray() : " INDEXED BY " + m_order->index;
    const QByteArray inOrder = m_keyCount == 2 ? m_first + ", " + m_second + ", oid" : m_first + ", oid";
    switch (stage) {
    case kStageAll:
        return index + " WHERE " + m_first + " IS NOT NULL ORDER BY " + inOrder + " LIMIT ?4";
    case kStageValueFrom:
        return index + " WHERE " + m_first + " >= ?1 ORDER BY " + inOrder + " LIMIT ?4";
    case kStageSame:
        return index + " WHERE " + m_first + " = ?1" + (m_keyCount == 2 ? " AND " + m_second + " IS ?2" : "") +
               " AND oid >= ?3 ORDER BY oid LIMIT ?4";
    case kStageNextSecond:
        return index + " WHERE " + m_first + " = ?1 AND " + m_second + " > ?2 ORDER BY " + m_second + ", oid LIMIT ?4";
    case kStageAnySecond:
        return index + " WHERE " + m_first + " = ?1 AND " + m_second + " IS NOT NULL ORDER BY " + m_second +
               ", oid LIMIT ?4";
    default:
        return index + " WHERE " + m_first + " > ?1 ORDER BY " + inOrder + " LIMIT ?4";
    }
}

sqlite3_stmt* CSqliteDatabase::Query(Stage stage)
{
    CStatement& query = m_queries[stage];
    if (!query) {
        if (m_select.isEmpty())
            TakeIds({});
        query = m_volume.Connection().Prepare(m_select + StageCondition(stage));
    }
    return query.get();
}

void CSqliteDatabase::ReadRow(sqlite3_stmt* statement, CRecord& record, qint64* bytes)
{
    record.oid = CEOID(sqlite3_column_int64(statement, 0));
    if (m_keyCount >= 1)
        record.first.Read(statement, 1);
    if (m_keyCount == 2)
        record.second.Read(statement, 2);
    record.rows.resize(m_ids.size());
    std::vector<CEPROPVAL> rest;
    if (m_restColumn >= 0) {
        CEPROPVAL packed;
        ReadColumn(statement, m_restColumn, PropType::Blob, packed);
        UnpackProperties(packed.Bytes, rest);
    }
    for (size_t i = 0; i < m_ids.size(); ++i) {
        CEPROPVAL& row = record.rows[i];
        if (m_columns[i] >= 0) {
            ReadColumn(statement, m_columns[i], m_ids[i], row);
            *bytes += row.Text.size() * 2 + row.Bytes.size();
            continue;
        }
        row = CEPROPVAL();
        row.propid = m_ids[i];
        row.wFlags = CEDB_PROPNOTFOUND;
        for (CEPROPVAL& other : rest) {
            if (other.propid == m_ids[i])
                row = other;
        }
    }
}

// Appends records to the block; false when the file failed.
bool CSqliteDatabase::Run(Stage stage, const CKeyValue& first, const CKeyValue& second, qint64 oid, int limit)
{
    sqlite3_stmt* statement = Query(stage);
    if (!statement) {
        m_volume.NoteReadFault(sqlite3_extended_errcode(m_volume.Connection().Handle()));
        return false;
    }
    const CStatementReset reset(statement);
    // Parameters that a stage does not name are refused by the library, which does no harm.
    first.Bind(statement, 1);
    second.Bind(statement, 2);
    sqlite3_bind_int64(statement, 3, oid);
    sqlite3_bind_int(statement, 4, limit);
    qint64 bytes = 0;
    int code = SQLITE_ROW;
    while (bytes < kBlockBytes && (code = sqlite3_step(statement)) == SQLITE_ROW) {
        if (m_count == m_block.size())
            m_block.emplace_back();
        ReadRow(statement, m_block[m_count++], &bytes);
    }
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        m_volume.NoteReadFault(code);
    return code == SQLITE_ROW || code == SQLITE_DONE;
}

// Fills the block from the place on.
void CSqliteDatabase::Load(int limit)
{
    Drop();
    m_blockWrites = m_volume.WriteCount();
    m_blockTime = CoarseMilliseconds();
    const qint64 oid = qint64(m_place.oid) + (m_place.kind == CPlace::Kind::After ? 1 : 0);
    const CKeyValue& first = m_place.first;
    const CKeyValue& second = m_place.second;
    const auto room = [&] { return limit - int(m_count); };
    switch (m_place.kind) {
    case CPlace::Kind::End:
        return;
    case CPlace::Kind::Beginning:
        Run(kStageAll, {}, {}, 0, limit);
        return;
    case CPlace::Kind::At:
        if (!m_autoIncrement || (m_order && first.type == SQLITE_NULL)) {
            Run(kStageOid, {}, {}, oid, 1);
            return;
        }
        break;
    case CPlace::Kind::After:
        if (m_order && first.type == SQLITE_NULL)
            return; // found by identifier outside of the order
        break;
    }
    if (!m_order) {
        Run(kStageOidFrom, {}, {}, oid, limit);
        return;
    }
    bool good = Run(kStageSame, first, second, oid, limit);
    if (good && m_keyCount == 2 && room() > 0)
        good = Run(second.type == SQLITE_NULL ? kStageAnySecond : kStageNextSecond, first, second, 0, room());
    if (good && room() > 0)
        Run(kStageNextFirst, first, {}, 0, room());
}

bool CSqliteDatabase::IsFresh() const
{
    return m_blockWrites == m_volume.WriteCount() && CoarseMilliseconds() - m_blockTime <= kFreshMilliseconds;
}

// ---- operations

// The place becomes the first record of the block; its rows stay for the read that follows.
CEOID CSqliteDatabase::TakePlace(bool found)
{
    m_limit = kFirstBlock;
    if (!found || m_count == 0) {
        Drop();
        m_place = CPlace();
        m_place.kind = CPlace::Kind::End;
        return 0;
    }
    const CRecord& record = m_block[0];
    m_place.kind = CPlace::Kind::At;
    m_place.first = record.first;
    m_place.second = record.second;
    m_place.oid = record.oid;
    return record.oid;
}

CEOID CSqliteDatabase::SeekOid(CEOID oid)
{
    Drop();
    m_blockWrites = m_volume.WriteCount();
    m_blockTime = CoarseMilliseconds();
    return TakePlace(Run(kStageOid, {}, {}, oid, 1));
}

CEOID CSqliteDatabase::SeekValue(const CEPROPVAL& value, bool equal)
{
    CKeyValue key;
    const CEPROPID id = m_order ? m_order->properties[0] : CEPROPID(PropType::UInt32);
    switch (StorageOf(id)) {
    case PropStorage::Number:
        key.type = SQLITE_INTEGER;
        key.number = NormalizedNumber(id, value.Number);
        break;
    case PropStorage::Text:
        key.type = SQLITE_TEXT;
        key.bytes = value.Text.toUtf8();
        break;
    case PropStorage::Bytes:
        key.type = SQLITE_BLOB;
        key.bytes = value.Bytes;
        break;
    }
    Drop();
    m_blockWrites = m_volume.WriteCount();
    m_blockTime = CoarseMilliseconds();
    const int limit = m_autoIncrement ? kFirstBlock : 1;
    const bool read = m_order ? Run(kStageValueFrom, key, {}, 0, limit) : Run(kStageOidFrom, {}, {}, key.number, limit);
    const bool same = m_count > 0 && (m_order ? m_block[0].first == key : m_block[0].oid == CEOID(key.number));
    return TakePlace(read && (!equal || same));
}

CEOID CSqliteDatabase::Seek(SeekType type, const CEPROPVAL& value)
{
    switch (type) {
    case SeekType::CeOid:
        return SeekOid(CEOID(value.Number));
    case SeekType::Beginning:
        m_place = CPlace();
        Load(m_autoIncrement ? kFirstBlock : 1);
        return TakePlace(true);
    case SeekType::ValueFirstEqual:
        return SeekValue(value, true);
    case SeekType::ValueGreaterOrEqual:
        return SeekValue(value, false);
    }
    return 0;
}

CEOID CSqliteDatabase::ReadRecordProps(std::span<const CEPROPID> ids, std::vector<CEPROPVAL>& rows)
{
    if (!std::equal(ids.begin(), ids.end(), m_ids.begin(), m_ids.end()) || m_select.isEmpty())
        TakeIds(ids);
    if (m_next >= m_count || !IsFresh()) {
        Load(m_autoIncrement ? m_limit : 1);
        m_limit = std::min(m_limit * 4, kLargestBlock);
    }
    if (m_next >= m_count) {
        rows.clear();
        return 0;
    }
    CRecord& record = m_block[m_next++];
    std::swap(rows, record.rows);
    m_place.first = record.first;
    m_place.second = record.second;
    m_place.oid = record.oid;
    m_place.kind = m_autoIncrement ? CPlace::Kind::After : CPlace::Kind::At;
    return record.oid;
}
