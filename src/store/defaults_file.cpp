#include "store/defaults_file.h"

#include "store/private_files.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

namespace velarc {

namespace {

constexpr auto kCreateTable = "CREATE TABLE IF NOT EXISTS defaults("
                              "key TEXT PRIMARY KEY, value NOT NULL) WITHOUT ROWID";
constexpr auto kRead = "SELECT value FROM defaults WHERE key = ?1";
constexpr auto kWrite = "INSERT INTO defaults(key, value) VALUES(?1, ?2)"
                        " ON CONFLICT(key) DO UPDATE SET value = excluded.value";
constexpr auto kErase = "DELETE FROM defaults WHERE key = ?1";

// ?3 is the document that was seen. What is no document gives way, as it is not read either.
constexpr auto kWriteUnlessChanged =
    "INSERT INTO defaults(key, value) VALUES(?1, ?2)"
    " ON CONFLICT(key) DO UPDATE SET value = excluded.value"
    " WHERE typeof(defaults.value) <> 'blob' OR defaults.value IS ?3";

} // namespace

DefaultsFile::DefaultsFile(const QString &path, std::chrono::milliseconds patience)
    : m_path(path), m_patience(patience)
{
}

DefaultsFile::~DefaultsFile() = default;

DefaultsFile::Opened DefaultsFile::open(const QString &path, std::chrono::milliseconds patience)
{
    makePrivateFile(path);
    const auto mayRead = [](const Opened &opened) {
        return opened.outcome == Outcome::Refused || opened.outcome == Outcome::NoRoom;
    };
    Opened opened = openFor(Access::Writing, path, patience);
    if (mayRead(opened)) {
        opened = openFor(Access::Reading, path, patience);
    }
    // What is copied is the file without the log beside it, so nothing must stand in that.
    if (mayRead(opened) && QFileInfo(path + QStringLiteral("-wal")).size() == 0) {
        opened = openFor(Access::ReadingCopy, path, patience);
    }
    return opened;
}

DefaultsFile::Opened DefaultsFile::openFor(
    Access access, const QString &path, std::chrono::milliseconds patience)
{
    std::unique_ptr<DefaultsFile> file(new DefaultsFile(path, patience));
    Outcome outcome = file->connect(access);
    if (outcome == Outcome::Done && access == Access::Writing) {
        outcome = file->setUp();
    }
    if (outcome == Outcome::Done && access == Access::ReadingCopy) {
        outcome = file->copyToMemory();
    }
    if (outcome == Outcome::Done) {
        outcome = file->prepareStatements(access);
    }
    if (outcome != Outcome::Done) {
        file.reset();
    }
    return {outcome, std::move(file)};
}

// The file is made by makePrivateFile() only: SQLite would follow a dangling link, and give the
// file wider rights.
DefaultsFile::Outcome DefaultsFile::connect(Access access)
{
    QByteArray name = QFile::encodeName(m_path);
    int flags = SQLITE_OPEN_NOMUTEX;
    flags |= access == Access::Writing ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    if (access == Access::ReadingCopy) {
        name = QUrl::fromLocalFile(m_path).toEncoded() + "?immutable=1";
        flags |= SQLITE_OPEN_URI;
    }
    sqlite3 *connection = nullptr;
    const int code = sqlite3_open_v2(name.constData(), &connection, flags, nullptr);
    m_connection.reset(connection);
    if (code != SQLITE_OK) {
        return outcomeOf(code);
    }
    sqlite3_busy_timeout(connection, static_cast<int>(m_patience.count()));
    const bool isRefused =
        access == Access::Writing && sqlite3_db_readonly(connection, "main") == 1;
    return isRefused ? Outcome::Refused : Outcome::Done;
}

DefaultsFile::Outcome DefaultsFile::setUp()
{
    Outcome outcome = Outcome::Done;
    for (const char *sql : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=NORMAL", kCreateTable}) {
        if (outcome == Outcome::Done) {
            outcome = run(sql);
        }
    }
    return outcome;
}

// A file is read without locks only for as long as this takes: once there is room again, another
// process may write it.
DefaultsFile::Outcome DefaultsFile::copyToMemory()
{
    sqlite3 *memory = nullptr;
    int code = sqlite3_open(":memory:", &memory);
    SqliteConnection copy(memory);
    if (code == SQLITE_OK) {
        sqlite3_backup *backup = sqlite3_backup_init(memory, "main", m_connection.get(), "main");
        if (backup != nullptr) {
            sqlite3_backup_step(backup, -1);
            sqlite3_backup_finish(backup);
        }
        code = sqlite3_errcode(memory);
    }
    const Outcome outcome = outcomeOf(code);
    m_connection = std::move(copy);
    return outcome;
}

DefaultsFile::Outcome DefaultsFile::prepareStatements(Access access)
{
    sqlite3 *connection = m_connection.get();
    int code = prepare(connection, kRead, m_read);
    if (access == Access::Writing) {
        for (const auto &[sql, statement] :
            std::initializer_list<std::pair<const char *, SqliteStatement *>>{{kWrite, &m_write},
                {kErase, &m_erase}, {kWriteUnlessChanged, &m_writeUnlessChanged}}) {
            if (code == SQLITE_OK) {
                code = prepare(connection, sql, *statement);
            }
        }
    }
    // The table is there by now, so SQL that does not fit means a table of another make.
    if (code == SQLITE_ERROR && access == Access::Writing) {
        return Outcome::Damaged;
    }
    return outcomeOf(code);
}

DefaultsFile::Outcome DefaultsFile::run(const char *sql)
{
    return outcomeOf(sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr));
}

DefaultsFile::Outcome DefaultsFile::outcomeOf(int code)
{
    switch (code & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return Outcome::Done;
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        // The file is evidence from here on: closing it must not write to it.
        sqlite3_db_config(m_connection.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        return Outcome::Damaged;
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
        return Outcome::Refused;
    case SQLITE_FULL:
    case SQLITE_IOERR:
        return Outcome::NoRoom;
    default:
        return Outcome::Failed;
    }
}

bool DefaultsFile::hasMoved() const
{
    int moved = 0;
    sqlite3_file_control(m_connection.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

DefaultsFile::Outcome DefaultsFile::read(QByteArrayView key, std::optional<DefaultsValue> &value)
{
    StatementUse use(m_read);
    use.bindText(1, key);
    const int code = use.step();
    value = code == SQLITE_ROW ? std::optional(use.value()) : std::nullopt;
    return outcomeOf(code);
}

DefaultsFile::Outcome DefaultsFile::write(QByteArrayView key, const DefaultsValue &value)
{
    StatementUse use(m_write);
    use.bindText(1, key);
    use.bindValue(2, value);
    return outcomeOf(use.step());
}

DefaultsFile::Outcome DefaultsFile::erase(QByteArrayView key)
{
    StatementUse use(m_erase);
    use.bindText(1, key);
    return outcomeOf(use.step());
}

DefaultsFile::Outcome DefaultsFile::writeUnlessChanged(
    QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal)
{
    StatementUse use(m_writeUnlessChanged);
    use.bindText(1, key);
    use.bindBlob(2, proposal);
    if (seen) {
        use.bindBlob(3, *seen);
    }
    return outcomeOf(use.step());
}

} // namespace velarc
