// One connection to an SQLite file, its prepared statements and its errors as statuses.
// Ownership: statements are shared; the connection closes when the last of them is gone.
// Only files of this folder include this header.
#pragma once
#include "platform/status.h"

#include <QByteArray>
#include <QHash>
#include <memory>
#include <sqlite3.h>

using CStatement = std::shared_ptr<sqlite3_stmt>;

class CSqliteConnection
{
public:
    CSqliteConnection() = default;
    ~CSqliteConnection();
    CSqliteConnection(const CSqliteConnection&) = delete;
    CSqliteConnection& operator=(const CSqliteConnection&) = delete;

    // `name` is a path, or a file: address with SQLITE_OPEN_URI; `shown` stands in messages.
    CStatus Open(const QString& name, int flags, const QString& shown);
    void Close();

    sqlite3* Handle() const { return m_db; }
    CStatus Execute(const char* sql);
    CStatus Execute(const QByteArray& sql) { return Execute(sql.constData()); }
    // Null on failure, LastError tells. Kept for the next time; the number kept is bounded.
    CStatement Prepare(const QByteArray& sql);
    // The first column of the first row, or `missing`.
    qint64 Number(const QByteArray& sql, qint64 missing = 0);

    CStatus Error(int code) const;
    CStatus LastError() const { return Error(m_db ? sqlite3_extended_errcode(m_db) : SQLITE_CANTOPEN); }
    bool InTransaction() const { return m_db && sqlite3_get_autocommit(m_db) == 0; }

private:
    sqlite3* m_db = nullptr;
    QString m_shown;
    QHash<QByteArray, CStatement> m_statements;
};

// Returns a statement to its start, whatever way the caller leaves.
class CStatementReset
{
public:
    explicit CStatementReset(sqlite3_stmt* statement) : m_statement(statement) {}
    ~CStatementReset() { sqlite3_reset(m_statement); }
    CStatementReset(const CStatementReset&) = delete;
    CStatementReset& operator=(const CStatementReset&) = delete;

private:
    sqlite3_stmt* m_statement;
};

QByteArray QuotedName(const QByteArray& name); // "a ""name"""
