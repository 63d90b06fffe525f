#include "platform/volume_layout.h"

#include "platform/packed_properties.h"

#include <algorithm>

namespace
{
QByteArray ColumnName(CEPROPID id) { return "p" + QByteArray::number(id, 16).rightJustified(8, '0'); }

QByteArray IndexName(int table, const CSortOrder& order)
{
    QByteArray name = "order_" + QByteArray::number(table);
    for (const CEPROPID id : order.Properties)
        name += '_' + ColumnName(id).mid(1);
    return order.Unique ? name + "_unique" : name;
}

bool ParseIndexName(const QByteArray& name, int* table, CVolumeOrder* order)
{
    QList<QByteArray> parts = name.split('_');
    if (parts.size() < 3 || parts.takeFirst() != "order")
        return false;
    bool good = false;
    *table = parts.takeFirst().toInt(&good);
    if (!good)
        return false;
    order->index = name;
    order->unique = parts.last() == "unique";
    if (order->unique)
        parts.removeLast();
    for (const QByteArray& part : parts) {
        order->properties.push_back(part.toUInt(&good, 16));
        if (!good)
            return false;
    }
    return order->properties.size() == 1 || order->properties.size() == 2;
}

QByteArray ScanName(int table, const CTextScan& scan)
{
    return "scan_" + QByteArray::number(table) + '_' + ColumnName(scan.Number).mid(1) + '_' +
           ColumnName(scan.Text).mid(1);
}

const char* SqlType(CEPROPID id)
{
    switch (StorageOf(id)) {
    case PropStorage::Text:
        return " TEXT";
    case PropStorage::Bytes:
        return " BLOB";
    default:
        return " INTEGER";
    }
}

QByteArray ColumnText(sqlite3_stmt* row, int column)
{
    return QByteArray(static_cast<const char*>(sqlite3_column_blob(row, column)),
                      sqlite3_column_bytes(row, column));
}

CVolumeTable* TableById(CVolumeLayout& layout, qint64 id)
{
    const auto found = std::find_if(layout.begin(), layout.end(), [id](const CVolumeTable& t) { return t.id == id; });
    return found == layout.end() ? nullptr : &*found;
}

// Runs a query and hands each row on.
template <typename Row> CStatus ForEachRow(CSqliteConnection& db, const QByteArray& sql, Row row)
{
    const CStatement statement = db.Prepare(sql);
    if (!statement)
        return db.LastError();
    const CStatementReset reset(statement.get());
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement.get())) == SQLITE_ROW)
        row(statement.get());
    return code == SQLITE_DONE ? CStatus() : db.Error(code);
}

CStatus RunBound(CSqliteConnection& db, const QByteArray& sql, qint64 first, qint64 second, const QByteArray& text)
{
    const CStatement statement = db.Prepare(sql);
    if (!statement)
        return db.LastError();
    const CStatementReset reset(statement.get());
    sqlite3_bind_int64(statement.get(), 1, first);
    sqlite3_bind_int64(statement.get(), 2, second);
    sqlite3_bind_text(statement.get(), 3, text.constData(), int(text.size()), SQLITE_TRANSIENT);
    const int code = sqlite3_step(statement.get());
    return code == SQLITE_DONE ? CStatus() : db.Error(code);
}

CStatus CreateTable(CSqliteConnection& db, int id, const CDatabaseSchema& database)
{
    const QByteArray name = database.Name.toUtf8();
    CStatus status = RunBound(db, "INSERT INTO databases(id, next_record, name) VALUES(?1, ?2, ?3)", id, 1, name);
    if (!status)
        return status;
    // Scalars first: what lies behind a long text is slow to reach.
    std::vector<CPropertyColumn> columns = database.Columns;
    std::stable_sort(columns.begin(), columns.end(), [](const CPropertyColumn& a, const CPropertyColumn& b) {
        return StorageOf(a.Id) < StorageOf(b.Id);
    });
    QByteArray sql = "CREATE TABLE records_" + QByteArray::number(id) + "(oid INTEGER PRIMARY KEY";
    for (const CPropertyColumn& column : columns)
        sql += ", " + ColumnName(column.Id) + SqlType(column.Id);
    status = db.Execute(QByteArray(sql + ", rest BLOB)"));
    for (const CPropertyColumn& column : columns) {
        if (status)
            status = RunBound(db, "INSERT INTO columns(database, id, name) VALUES(?1, ?2, ?3)", id, column.Id,
                              column.Name);
    }
    return status;
}

CStatus MoveOutOfRest(CSqliteConnection& db, const CVolumeTable& table, const std::vector<CEPROPID>& added)
{
    std::vector<std::pair<qint64, QByteArray>> packed;
    CStatus status = ForEachRow(db, "SELECT oid, rest FROM " + table.table + " WHERE rest IS NOT NULL",
                                [&packed](sqlite3_stmt* row) {
                                    packed.emplace_back(sqlite3_column_int64(row, 0), ColumnText(row, 1));
                                });
    for (const auto& [oid, bytes] : packed) {
        std::vector<CEPROPVAL> rows;
        UnpackProperties(bytes, rows);
        for (const CEPROPID id : added) {
            const auto found =
                std::find_if(rows.begin(), rows.end(), [id](const CEPROPVAL& row) { return row.propid == id; });
            if (!status || found == rows.end())
                continue;
            const CEPROPVAL value = *found;
            rows.erase(found);
            const CStatement update =
                db.Prepare("UPDATE " + table.table + " SET " + ColumnName(id) + " = ?1, rest = ?2 WHERE oid = ?3");
            if (!update)
                return db.LastError();
            const CStatementReset reset(update.get());
            const QByteArray text = value.Text.toUtf8();
            const QByteArray rest = PackProperties(rows);
            if (StorageOf(id) == PropStorage::Number)
                sqlite3_bind_int64(update.get(), 1, value.Number);
            else if (StorageOf(id) == PropStorage::Text)
                sqlite3_bind_text(update.get(), 1, text.constData(), int(text.size()), SQLITE_TRANSIENT);
            else
                sqlite3_bind_blob(update.get(), 1, value.Bytes.constData(), int(value.Bytes.size()), SQLITE_TRANSIENT);
            if (rest.isEmpty())
                sqlite3_bind_null(update.get(), 2);
            else
                sqlite3_bind_blob(update.get(), 2, rest.constData(), int(rest.size()), SQLITE_TRANSIENT);
            sqlite3_bind_int64(update.get(), 3, oid);
            const int code = sqlite3_step(update.get());
            if (code != SQLITE_DONE)
                status = db.Error(code);
        }
    }
    return status;
}

CStatus AddColumns(CSqliteConnection& db, const CVolumeTable& table, const CDatabaseSchema& database)
{
    std::vector<CEPROPID> added;
    CStatus status;
    for (const CPropertyColumn& column : database.Columns) {
        if (!status || table.columnOf.contains(column.Id))
            continue;
        status = db.Execute(QByteArray("ALTER TABLE " + table.table + " ADD COLUMN " + ColumnName(column.Id) +
                                       SqlType(column.Id)));
        if (status)
            status = RunBound(db, "INSERT INTO columns(database, id, name) VALUES(?1, ?2, ?3)", table.id, column.Id,
                              column.Name);
        added.push_back(column.Id);
    }
    return status && !added.empty() ? MoveOutOfRest(db, table, added) : status;
}

CStatus AddOrders(CSqliteConnection& db, int id, const CDatabaseSchema& database)
{
    CStatus status;
    for (const CSortOrder& order : OrdersOf(database)) {
        QByteArray columns;
        for (const CEPROPID property : order.Properties)
            columns += (columns.isEmpty() ? "" : ", ") + ColumnName(property);
        if (status && !columns.isEmpty())
            status = db.Execute(QByteArray((order.Unique ? "CREATE UNIQUE INDEX IF NOT EXISTS "
                                                         : "CREATE INDEX IF NOT EXISTS ") +
                                           IndexName(id, order) + " ON records_" + QByteArray::number(id) + "(" +
                                           columns + ") WHERE " + ColumnName(order.Properties[0]) + " IS NOT NULL"));
    }
    for (const CTextScan& scan : database.Scans) {
        const QByteArray number = ColumnName(scan.Number);
        if (status)
            status = db.Execute(QByteArray("CREATE INDEX IF NOT EXISTS " + ScanName(id, scan) + " ON records_" +
                                           QByteArray::number(id) + "(" + number + ", oid, " + ColumnName(scan.Text) +
                                           ") WHERE " + number + " IS NOT NULL"));
    }
    return status;
}

CStatus MakeView(CSqliteConnection& db, const CVolumeTable& table)
{
    const QByteArray view = QuotedName(table.name.toUtf8());
    QByteArray sql = "CREATE VIEW " + view + " AS SELECT oid AS \"CEOID\"";
    for (const CVolumeColumn& column : table.columns) {
        QByteArray value = column.column;
        if (PropTypeOf(column.id) == PropType::FileTime)
            value = "datetime(" + value + " / 10000000 - 11644473600, 'unixepoch')";
        sql += ", " + value + " AS " + QuotedName(column.name);
    }
    sql += ", rest AS \"Rest\" FROM " + table.table;
    const CStatus status = db.Execute(QByteArray("DROP VIEW IF EXISTS " + view));
    return status ? db.Execute(sql) : status;
}
} // namespace

std::vector<CSortOrder> OrdersOf(const CDatabaseSchema& database)
{
    std::vector<CSortOrder> orders = database.Orders;
    for (const CPropertyColumn& column : database.Columns) {
        const auto isThat = [&column](const CSortOrder& order) {
            return order.Properties == std::vector<CEPROPID>{column.Id};
        };
        if (PropTypeOf(column.Id) == PropType::RecordNumber && std::none_of(orders.begin(), orders.end(), isThat))
            orders.push_back({{column.Id}, true});
    }
    return orders;
}

CStatus ReadLayout(CSqliteConnection& db, const CVolumeSchema& schema, CVolumeLayout& layout)
{
    layout.clear();
    CStatus status = ForEachRow(db, "SELECT id, name FROM databases ORDER BY id", [&](sqlite3_stmt* row) {
        CVolumeTable table;
        table.id = sqlite3_column_int(row, 0);
        table.name = QString::fromUtf8(ColumnText(row, 1));
        table.table = "records_" + QByteArray::number(table.id);
        for (size_t i = 0; i < schema.size(); ++i) {
            if (schema[i].Name == table.name)
                table.schemaIndex = int(i);
        }
        layout.push_back(std::move(table));
    });
    if (!status)
        return status;
    status = ForEachRow(db, "SELECT database, id, name FROM columns ORDER BY database, id", [&](sqlite3_stmt* row) {
        CVolumeTable* table = TableById(layout, sqlite3_column_int64(row, 0));
        const CEPROPID id = CEPROPID(sqlite3_column_int64(row, 1));
        if (!table)
            return;
        table->columnOf.insert(id, int(table->columns.size()));
        table->columns.push_back({id, ColumnText(row, 2), ColumnName(id)});
        if (PropTypeOf(id) == PropType::RecordNumber && table->recordNumber == 0)
            table->recordNumber = id;
    });
    for (CVolumeTable& table : layout) {
        for (const CTextScan& scan : table.schemaIndex >= 0 ? schema[size_t(table.schemaIndex)].Scans
                                                            : std::vector<CTextScan>()) {
            const QByteArray name = ScanName(table.id, scan);
            if (status && db.Number("SELECT count(*) FROM sqlite_master WHERE name = '" + name + '\'') == 1)
                table.scans.push_back(scan);
        }
    }
    if (!status)
        return status;
    return ForEachRow(db, "SELECT name FROM sqlite_master WHERE type = 'index' AND name LIKE 'order\\_%' ESCAPE '\\'",
                      [&](sqlite3_stmt* row) {
                          int id = 0;
                          CVolumeOrder order;
                          if (!ParseIndexName(ColumnText(row, 0), &id, &order))
                              return;
                          CVolumeTable* table = TableById(layout, id);
                          if (table && std::all_of(order.properties.begin(), order.properties.end(), [&](CEPROPID p) {
                                  return table->columnOf.contains(p);
                              }))
                              table->orders.push_back(std::move(order));
                      });
}

bool HoldsSchema(const CVolumeLayout& layout, const CVolumeSchema& schema)
{
    for (const CDatabaseSchema& database : schema) {
        const auto table = std::find_if(layout.begin(), layout.end(),
                                        [&](const CVolumeTable& t) { return t.name == database.Name; });
        if (table == layout.end())
            return false;
        for (const CPropertyColumn& column : database.Columns) {
            if (!table->columnOf.contains(column.Id))
                return false;
        }
        for (const CSortOrder& order : OrdersOf(database)) {
            const auto isThat = [&order](const CVolumeOrder& other) {
                return other.properties == order.Properties && other.unique == order.Unique;
            };
            if (!order.Properties.empty() && std::none_of(table->orders.begin(), table->orders.end(), isThat))
                return false;
        }
        if (table->scans != database.Scans)
            return false;
    }
    return true;
}

CStatus AddToLayout(CSqliteConnection& db, const CVolumeSchema& schema)
{
    CStatus status = db.Execute(
        "CREATE TABLE IF NOT EXISTS databases(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE,"
        " next_record INTEGER NOT NULL);"
        "CREATE TABLE IF NOT EXISTS columns(database INTEGER NOT NULL, id INTEGER NOT NULL, name TEXT NOT NULL,"
        " PRIMARY KEY(database, id)) WITHOUT ROWID;"
        "CREATE TABLE IF NOT EXISTS counters(only_row INTEGER PRIMARY KEY CHECK(only_row = 1),"
        " next_oid INTEGER NOT NULL, next_change INTEGER NOT NULL);"
        "INSERT OR IGNORE INTO counters VALUES(1, 1, 1);"
        "CREATE TABLE IF NOT EXISTS changes(sequence INTEGER PRIMARY KEY, database INTEGER NOT NULL,"
        " type INTEGER NOT NULL, oid INTEGER NOT NULL)");
    CVolumeLayout layout;
    if (status)
        status = ReadLayout(db, schema, layout);
    for (const CDatabaseSchema& database : schema) {
        const auto table = std::find_if(layout.begin(), layout.end(),
                                        [&](const CVolumeTable& t) { return t.name == database.Name; });
        int id = 1;
        if (table != layout.end())
            id = table->id;
        else
            id = int(db.Number("SELECT coalesce(max(id), 0) + 1 FROM databases"));
        if (status)
            status = table != layout.end() ? AddColumns(db, *table, database) : CreateTable(db, id, database);
        if (status)
            status = AddOrders(db, id, database);
    }
    if (status)
        status = ReadLayout(db, schema, layout);
    for (const CVolumeTable& table : layout) {
        if (status)
            status = MakeView(db, table);
    }
    return status;
}
