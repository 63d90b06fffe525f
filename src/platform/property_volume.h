// The volume of property databases: one SQLite file, the only place that speaks SQL.
// Shape: a volume holds databases by name; a database holds records; a record has an object
//   identifier (CEOID, unique across the volume, never reused) and property rows. A property is
//   named by 32 bits, identifier above, type below.
// Units: file times are 100 ns since 1601 UTC; strings are UTF-16; record numbers count from 1
//   in each database.
// Errors: every operation that can lose something returns a CStatus; a failed write leaves the
//   volume as it was and notifies nobody.
// Each seek and each read is complete in itself: no statement stays open between two of them.
#pragma once
#include "platform/status.h"
#include "platform/system_time.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

using CEOID = quint32;
using CEPROPID = quint32;

namespace PropType
{
constexpr quint16 Int32 = 0x03;
constexpr quint16 Bool = 0x0B;
constexpr quint16 UInt32 = 0x13;
constexpr quint16 String = 0x1F;
constexpr quint16 FileTime = 0x40;
constexpr quint16 Blob = 0x41;
constexpr quint16 Document = 0x64; // the same counted form as Blob
constexpr quint16 RecordNumber = 0x66;
} // namespace PropType

constexpr quint16 PropTypeOf(CEPROPID id) { return quint16(id & 0xFFFF); }
constexpr quint16 CEDB_PROPNOTFOUND = 0x0100;

// One property row. `Number` carries every scalar type (booleans as 0 or 1, file times whole).
struct CEPROPVAL {
    CEPROPID propid = 0;
    quint16 wFlags = 0;
    qint64 Number = 0;
    QString Text;
    QByteArray Bytes;

    CEPROPVAL() = default;
    CEPROPVAL(CEPROPID id, qint64 number) : propid(id), Number(number) {}
    CEPROPVAL(CEPROPID id, QString text) : propid(id), Text(std::move(text)) {}
    CEPROPVAL(CEPROPID id, QByteArray bytes) : propid(id), Bytes(std::move(bytes)) {}
    bool Found() const { return (wFlags & CEDB_PROPNOTFOUND) == 0; }
};

// What the volume must know of a database before it is made: the caller's own schema.
struct CPropertyColumn {
    CEPROPID Id;
    const char* Name; // readable, for the view beside the table
};
struct CSortOrder {
    std::vector<CEPROPID> Properties; // one or two; records without the first are not in the order
    bool Unique = false;
    bool operator==(const CSortOrder&) const = default;
};
// A text that is kept apart in order of a number, so that ScanTexts need not read whole records.
struct CTextScan {
    CEPROPID Number, Text;
    bool operator==(const CTextScan&) const = default;
};
struct CDatabaseSchema {
    QString Name;
    std::vector<CPropertyColumn> Columns; // other properties go into the packed rest
    std::vector<CSortOrder> Orders;
    std::vector<CTextScan> Scans;
};
using CVolumeSchema = std::vector<CDatabaseSchema>;

enum class SeekType : quint32 {
    CeOid = 1,            // by object identifier, whatever the order
    Beginning = 2,
    ValueFirstEqual = 32,
    ValueGreaterOrEqual = 512,
};

// Change kinds, as notices carry them.
constexpr quint32 kNoticeCreated = 1025;
constexpr quint32 kNoticeDeleted = 1027;
constexpr quint32 kNoticeChanged = 1030;

struct CVolumeChange {
    qint64 Sequence = 0;
    int Database = 0; // index in the schema
    quint32 Type = 0;
    CEOID Oid = 0;
};

class CPropertyVolume;

// One open database: a place in one sort order. Borrows the volume, which must outlive it.
class CPropertyDatabase
{
public:
    virtual ~CPropertyDatabase() = default;
    // The CEOID found, or 0. `value` is the first property of the order.
    virtual CEOID Seek(SeekType type, const CEPROPVAL& value = {}) = 0;
    // Reads the record at the place, rows in the order of `ids`, absent ones flagged; with
    // auto-increment the place then moves to the next record. 0 at the end. `rows` is reused.
    // A blob or text is a copy. The place survives other reads and writes between two calls.
    virtual CEOID ReadRecordProps(std::span<const CEPROPID> ids, std::vector<CEPROPVAL>& rows) = 0;
};

class CPropertyVolume
{
public:
    enum class Mode { MustExist, Create, ReadOnly };

    // A file that is no volume, of a newer version or damaged is refused with a text; an older
    // version is migrated in one transaction after a backup copy.
    static CStatus Open(const QString& path, const CVolumeSchema& schema, Mode mode,
                        std::shared_ptr<CPropertyVolume>& volume);
    virtual ~CPropertyVolume() = default;

    virtual QString Path() const = 0;
    // Null when the volume has no such database or order. An empty order goes by CEOID. Besides the
    // schema's orders there is one by record number in each database that has such a column.
    virtual std::unique_ptr<CPropertyDatabase> OpenDatabase(const QString& name, const CSortOrder& order,
                                                            bool autoIncrement) = 0;

    // Writing. Transactions nest; the outermost commits. `durable` false is for batches. A rollback
    // takes back what was written since its own Begin; after a write that failed for want of room
    // or by the disk, Commit of that level refuses and rolls it back.
    virtual CStatus Begin(bool durable = true) = 0;
    virtual CStatus Commit() = 0;
    virtual void Rollback() = 0;
    // Writes the given properties and removes those of `remove`; `oid` 0 makes a record, whose
    // record number (the schema's column of that type) is assigned unless given. Logs one change.
    virtual CStatus WriteRecord(const QString& database, CEOID oid, std::span<const CEPROPVAL> put,
                                std::span<const CEPROPID> remove, CEOID* written, quint32* recordNumber = nullptr) = 0;
    virtual CStatus DeleteRecord(const QString& database, CEOID oid) = 0;
    // Logs a change of a record whose own rows stayed as they were.
    virtual CStatus TouchRecord(const QString& database, CEOID oid) = 0;
    // All properties of a record, the ones outside the schema too.
    virtual CStatus ReadWholeRecord(const QString& database, CEOID oid, std::vector<CEPROPVAL>& rows) = 0;
    virtual qint64 RecordCount(const QString& database) = 0;
    // Shows one text of every record without copying it, in order of `number` and CEOID, or of CEOID
    // alone when `number` is 0: those behind `place`, which moves on, `limit` at most. Records without
    // the text, or without the number, are passed over. Both must have a column. Nothing may be read or
    // written while it is shown.
    // Result: false at the end.
    struct CScanPlace {
        qint64 Number = std::numeric_limits<qint64>::min();
        CEOID Oid = 0;
    };
    using CTextLook = std::function<void(CEOID oid, std::string_view utf8, qint64 number)>;
    virtual bool ScanTexts(const QString& database, CEPROPID text, CEPROPID number, CScanPlace& place, int limit,
                           const CTextLook& look) = 0;

    // Notices. Sequence numbers rise; those after `after` come in order, `limit` at most.
    virtual qint64 LastChange() = 0;
    virtual CStatus ReadChanges(qint64 after, int limit, std::vector<CVolumeChange>& changes) = 0;
    // Cheap: whether another connection has committed since the last call.
    virtual bool ChangedByOthers() = 0;

    // Whether the file at Path is still the one that is open. One that was moved, replaced or deleted
    // goes on being read and is written no more.
    virtual bool IsInPlace() = 0;
    // For one that is not: brings its log into the file that was moved away and takes it from the old
    // place, where another file would take the changes for its own; it is kept under a name with ".old".
    // The volume is then read only, even if its file comes back.
    virtual void SetAsideLog() = 0;

    // Called (from Commit) after each commit of this process that logged a change.
    virtual void SetCommitHook(std::function<void()> hook) = 0;

    virtual CStatus Check(QStringList& faults) = 0;       // soundness of the file and its indexes
    virtual CStatus Backup(const QString& file) = 0;      // consistent while others write

    // Seeks and reads give nothing when the file fails them; this is the first such fault since
    // the last call, for whoever must tell an empty volume from a broken one.
    virtual CStatus TakeReadFault() = 0;
};

// For tests of those who write: the n-th statement that writes (commits count) from now on fails
// once with `kind`, in any volume of this process. 0 switches it off. Result: whether the one
// asked for before has happened.
bool FailVolumeWrite(int n, StatusKind kind = StatusKind::Full);
