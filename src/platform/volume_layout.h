// The tables of a volume's file: what they are called, what of a schema they hold, and how the
// rest of it is added.
// Shape: databases (id, name, next_record) and columns (database, id, name) are the catalogue;
//   records_<n> holds the records of one database, a column p<hex> per property; an index
//   order_<n>_<hex>[_<hex>][_unique] per sort order, without the records that lack the first
//   property; an index scan_<n>_<hex>_<hex> per text scan, by the number and holding the text; a view under the database's own name shows readable columns.
//   counters has the next object identifier and the next change; changes logs writes.
#pragma once
#include "platform/property_volume.h"
#include "platform/sqlite_connection.h"

#include <QHash>

constexpr int kVolumeApplicationId = 0x54737261;
constexpr int kVolumeVersion = 1; // of the tables above; never lowered

struct CVolumeOrder {
    std::vector<CEPROPID> properties;
    bool unique = false;
    QByteArray index; // name; empty when a volume that may not be written lacks it
};

struct CVolumeColumn {
    CEPROPID id = 0;
    QByteArray name;   // readable
    QByteArray column; // p<hex>
};

struct CVolumeTable {
    int id = 0;            // in the file
    int schemaIndex = -1;  // in the caller's schema, -1 when that does not know it
    QString name;
    QByteArray table;
    std::vector<CVolumeColumn> columns;
    QHash<CEPROPID, int> columnOf;
    std::vector<CVolumeOrder> orders;
    std::vector<CTextScan> scans;
    CEPROPID recordNumber = 0; // the column of that type, 0 when there is none
};

using CVolumeLayout = std::vector<CVolumeTable>;

CStatus ReadLayout(CSqliteConnection& db, const CVolumeSchema& schema, CVolumeLayout& layout);
// Whether every database, column, order and scan of the schema is there.
bool HoldsSchema(const CVolumeLayout& layout, const CVolumeSchema& schema);
// Adds what is missing; properties that now have a column move there out of the packed rest.
// Within a transaction of the caller.
CStatus AddToLayout(CSqliteConnection& db, const CVolumeSchema& schema);
// The orders of a database: the schema's, and one by record number where it has such a column.
std::vector<CSortOrder> OrdersOf(const CDatabaseSchema& database);
