// The volume over one SQLite connection: transactions, writing, notices.
// Only files of this folder include this header.
#pragma once
#include "platform/property_volume.h"
#include "platform/volume_layout.h"

#include <QTemporaryDir>

class CSqliteVolume : public CPropertyVolume, public std::enable_shared_from_this<CSqliteVolume>
{
public:
    CSqliteVolume(const QString& path, bool readOnly) : m_path(path), m_readOnly(readOnly) {}
    ~CSqliteVolume() override;

    CStatus OpenFile(const CVolumeSchema& schema, Mode mode);

    QString Path() const override { return m_path; }
    std::unique_ptr<CPropertyDatabase> OpenDatabase(const QString& name, const CSortOrder& order,
                                                    bool autoIncrement) override;
    CStatus Begin(bool durable) override;
    CStatus Commit() override;
    void Rollback() override;
    CStatus WriteRecord(const QString& database, CEOID oid, std::span<const CEPROPVAL> put,
                        std::span<const CEPROPID> remove, CEOID* written, quint32* recordNumber) override;
    CStatus DeleteRecord(const QString& database, CEOID oid) override;
    CStatus TouchRecord(const QString& database, CEOID oid) override;
    CStatus ReadWholeRecord(const QString& database, CEOID oid, std::vector<CEPROPVAL>& rows) override;
    qint64 RecordCount(const QString& database) override;
    bool ScanTexts(const QString& database, CEPROPID text, CEPROPID number, CScanPlace& place, int limit,
                   const CTextLook& look) override;
    qint64 LastChange() override;
    CStatus ReadChanges(qint64 after, int limit, std::vector<CVolumeChange>& changes) override;
    bool ChangedByOthers() override;
    bool IsInPlace() override;
    void SetAsideLog() override;
    void SetCommitHook(std::function<void()> hook) override { m_commitHook = std::move(hook); }
    CStatus Check(QStringList& faults) override;
    CStatus Backup(const QString& file) override;
    CStatus TakeReadFault() override;

    // For the open databases.
    CSqliteConnection& Connection() { return m_db; }
    // Rises with each write and rollback of this volume: what was read ahead is then stale.
    quint64 WriteCount() const { return m_writeCount; }
    void NoteReadFault(int code);

private:
    struct CLevel {
        bool durable = true;
        qint64 changes = 0; // logged before it began
        CStatus failure;    // set when a write failed half way; it can then only be rolled back
        size_t undo = 0;    // entries of m_undo before it began
    };
    // What one write within an inner level replaced. The library's savepoints would copy each page
    // that a level touches, which doubles the cost of an import.
    struct CUndo {
        CVolumeTable* table = nullptr;
        CEOID oid = 0;
        bool existed = false;
        std::vector<CEPROPVAL> rows;
    };
    struct CWriteState { // of one table
        qint64 nextRecord = -1; // -1: not read in this transaction
        CStatement insert;
    };

    // opening (volume_open.cpp)
    CStatus OpenConnection(Mode mode);
    CStatus OpenUnwritable();
    CStatus Identify(int* version);
    CStatus EnterWalMode();
    CStatus BringUpToDate(const CVolumeSchema& schema, int version);

    // writing
    CVolumeTable* FindTable(const QString& database);
    CStatus Step(sqlite3_stmt* statement);
    CStatus StepText(const char* sql);
    CStatus StartOutermost(bool durable);
    CStatus FinishOutermost();
    void Forget();
    void Fail(const CStatus& status);
    CStatus KeepForUndo(CVolumeTable& table, CEOID oid, bool existed);
    CStatus Undo(const CLevel& level);
    template <typename Work> CStatus InTransaction(Work work);
    CStatus LoadCounters();
    CStatus StoreCounters();
    CStatus PruneChanges();
    CStatus Insert(CVolumeTable& table, std::span<const CEPROPVAL> put, CEOID* written, quint32* recordNumber);
    CStatus Update(CVolumeTable& table, CEOID oid, std::span<const CEPROPVAL> put, std::span<const CEPROPID> remove);
    CStatus InsertRow(CVolumeTable& table, CEOID oid, std::span<const CEPROPVAL> put, qint64 recordNumber);
    CStatus DeleteRow(const CVolumeTable& table, CEOID oid);
    CStatus NextRecordNumber(CVolumeTable& table, std::span<const CEPROPVAL> put, qint64* number, bool* given);
    CStatus ReadRest(const CVolumeTable& table, CEOID oid, std::vector<CEPROPVAL>& rest);
    CStatus LogChange(const CVolumeTable& table, quint32 type, CEOID oid);
    CStatus RequireRecord(const CVolumeTable& table, CEOID oid);

    // checking (volume_check.cpp)
    CStatus CheckTable(const CVolumeTable& table, QStringList& faults);

    QString m_path;
    bool m_readOnly;
    std::unique_ptr<QTemporaryDir> m_copy; // of a volume that cannot be read where it lies
    CSqliteConnection m_db;
    quint64 m_logNode = 0; // the log's inode; 0 without one
    bool m_logAside = false;
    CVolumeLayout m_layout;
    std::vector<CWriteState> m_writeStates; // parallel to m_layout
    std::vector<CLevel> m_levels;
    std::vector<CUndo> m_undo; // of the inner levels, in order
    bool m_countersLoaded = false;
    qint64 m_nextOid = 0;
    qint64 m_nextChange = 0;
    qint64 m_changesLogged = 0; // in the transaction
    int m_synchronous = 2;
    quint64 m_writeCount = 0;
    qint64 m_dataVersion = 0;
    CStatement m_dataVersionQuery;
    CStatement m_log; // logs one change
    CStatus m_readFault;
    std::function<void()> m_commitHook;
};

std::unique_ptr<CPropertyDatabase> MakeSqliteDatabase(CSqliteVolume& volume, const CVolumeTable& table,
                                                      const CVolumeOrder* order, bool autoIncrement);

// Makes an empty file for its owner only; one that is there stays as it is.
void MakePrivateFile(const QString& path);

// Fills one property row from a result column; a NULL gives a row that is not found.
void ReadColumn(sqlite3_stmt* statement, int column, CEPROPID id, CEPROPVAL& row);
