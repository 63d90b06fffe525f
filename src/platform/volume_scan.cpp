// The walk over one text of all records, for searching.
// By identifier, the way the file lies: an order of its own would jump to each record. One
// statement that ends with the call, and no copy of what is only looked at.
#include "platform/sqlite_volume.h"

CEOID CSqliteVolume::ScanTexts(const QString& database, CEPROPID text, CEPROPID number, CEOID after, int limit,
                               const CTextLook& look)
{
    const CVolumeTable* table = FindTable(database);
    if (!table || !table->columnOf.contains(text) || (number != 0 && !table->columnOf.contains(number)))
        return 0;
    const auto column = [&](CEPROPID id) { return table->columns[size_t(table->columnOf.value(id))].column; };
    const CStatement query = m_db.Prepare("SELECT oid, " + column(text) + (number ? ", " + column(number) : ", 0") +
                                          " FROM " + table->table + " WHERE oid > ?1 ORDER BY oid LIMIT ?2");
    if (!query) {
        NoteReadFault(sqlite3_extended_errcode(m_db.Handle()));
        return 0;
    }
    const CStatementReset reset(query.get());
    sqlite3_bind_int64(query.get(), 1, after);
    sqlite3_bind_int(query.get(), 2, limit);
    CEOID last = 0;
    int rows = 0;
    int code = SQLITE_ROW;
    for (; (code = sqlite3_step(query.get())) == SQLITE_ROW; ++rows) {
        last = CEOID(sqlite3_column_int64(query.get(), 0));
        const auto* shown = reinterpret_cast<const char*>(sqlite3_column_text(query.get(), 1));
        if (shown && sqlite3_column_type(query.get(), 2) != SQLITE_NULL)
            look(last, {shown, size_t(sqlite3_column_bytes(query.get(), 1))}, sqlite3_column_int64(query.get(), 2));
    }
    if (code != SQLITE_DONE)
        NoteReadFault(code);
    return code == SQLITE_DONE && rows == limit ? last : 0;
}
