// The walk over one text of all records, for searching.
// By number it goes through the index that holds the text too; by identifier through the file as it
// lies. One statement that ends with the call, and no copy of what is only looked at.
#include "platform/sqlite_volume.h"

bool CSqliteVolume::ScanTexts(const QString& database, CEPROPID text, CEPROPID number, CScanPlace& place, int limit,
                              const CTextLook& look)
{
    const CVolumeTable* table = FindTable(database);
    if (!table || !table->columnOf.contains(text) || (number != 0 && !table->columnOf.contains(number)))
        return false;
    const auto column = [&](CEPROPID id) { return table->columns[size_t(table->columnOf.value(id))].column; };
    QByteArray sql = "SELECT oid, " + column(text);
    if (number != 0) {
        const QByteArray by = column(number);
        sql += ", " + by + " FROM " + table->table + " WHERE " + by + " IS NOT NULL AND (" + by +
               ", oid) > (?3, ?1) ORDER BY " + by + ", oid LIMIT ?2";
    } else {
        sql += ", 0 FROM " + table->table + " WHERE oid > ?1 ORDER BY oid LIMIT ?2";
    }
    const CStatement query = m_db.Prepare(sql);
    if (!query) {
        NoteReadFault(sqlite3_extended_errcode(m_db.Handle()));
        return false;
    }
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, place.Oid);
    sqlite3_bind_int(query.get(), 2, limit);
    if (number != 0)
        sqlite3_bind_int64(query.get(), 3, place.Number);
    int rows = 0;
    int code = SQLITE_ROW;
    for (; (code = sqlite3_step(query.get())) == SQLITE_ROW; ++rows) {
        place = {sqlite3_column_int64(query.get(), 2), CEOID(sqlite3_column_int64(query.get(), 0))};
        const auto* shown = reinterpret_cast<const char*>(sqlite3_column_text(query.get(), 1));
        if (shown)
            look(place.Oid, {shown, size_t(sqlite3_column_bytes(query.get(), 1))}, place.Number);
    }
    if (code != SQLITE_DONE)
        NoteReadFault(code);
    return code == SQLITE_DONE && rows == limit;
}
