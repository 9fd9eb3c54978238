#include "store/sqlite_statement.h"

#include <sqlite3.h>

namespace velarc {

void SqliteCloser::operator()(sqlite3 *connection) const
{
    sqlite3_close_v2(connection);
}

void SqliteFinalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

int prepare(sqlite3 *connection, const char *sql, SqliteStatement &statement)
{
    sqlite3_stmt *made = nullptr;
    const int code =
        sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr);
    statement.reset(made);
    return code;
}

StatementUse::StatementUse(const SqliteStatement &statement) : m_statement(statement.get()) {}

StatementUse::~StatementUse()
{
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

void StatementUse::bindText(int place, QByteArrayView utf8)
{
    sqlite3_bind_text64(m_statement, place, utf8.data(), static_cast<sqlite3_uint64>(utf8.size()),
        SQLITE_STATIC, SQLITE_UTF8);
}

void StatementUse::bindBlob(int place, QByteArrayView bytes)
{
    // No bytes at all may come without an address, which SQLite would take for NULL.
    sqlite3_bind_blob64(m_statement, place, bytes.isEmpty() ? "" : bytes.data(),
        static_cast<sqlite3_uint64>(bytes.size()), SQLITE_STATIC);
}

void StatementUse::bindValue(int place, const DefaultsValue &value)
{
    if (const auto *document = std::get_if<QByteArray>(&value)) {
        bindBlob(place, *document);
    } else if (const auto *flag = std::get_if<bool>(&value)) {
        sqlite3_bind_int(m_statement, place, *flag ? 1 : 0);
    } else {
        sqlite3_bind_null(m_statement, place);
    }
}

int StatementUse::step()
{
    return sqlite3_step(m_statement);
}

DefaultsValue StatementUse::value() const
{
    switch (sqlite3_column_type(m_statement, 0)) {
    case SQLITE_BLOB: {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, 0));
        return QByteArray(bytes, sqlite3_column_bytes(m_statement, 0));
    }
    case SQLITE_INTEGER:
        return sqlite3_column_int64(m_statement, 0) != 0;
    default:
        return ForeignValue();
    }
}

} // namespace velarc
