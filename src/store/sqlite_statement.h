#pragma once

// SQLite's handles, owned.

#include "store/defaults_domain.h"

#include <QByteArrayView>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace velarc {

struct SqliteCloser
{
    void operator()(sqlite3 *connection) const;
};
using SqliteConnection = std::unique_ptr<sqlite3, SqliteCloser>;

struct SqliteFinalizer
{
    void operator()(sqlite3_stmt *statement) const;
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteFinalizer>;

// Compiles `sql` for many uses. Gives SQLite's result code; `statement` is set if that is
// SQLITE_OK.
[[nodiscard]] int prepare(sqlite3 *connection, const char *sql, SqliteStatement &statement);

// One use of a prepared statement, which is ready for the next one when this ends. What is bound
// must outlive it. Places count from 1.
class StatementUse
{
public:
    explicit StatementUse(const SqliteStatement &statement);
    ~StatementUse();
    StatementUse(const StatementUse &) = delete;
    StatementUse &operator=(const StatementUse &) = delete;

    void bindText(int place, QByteArrayView utf8);
    void bindBlob(int place, QByteArrayView bytes);
    void bindValue(int place, const DefaultsValue &value); // a foreign one binds as NULL

    // SQLITE_ROW, SQLITE_DONE or an error.
    [[nodiscard]] int step();

    // The first column of the row: a BLOB is a document, an INTEGER a boolean.
    [[nodiscard]] DefaultsValue value() const;

private:
    sqlite3_stmt *m_statement;
};

} // namespace velarc
