#pragma once

// One SQLite file of defaults, open. Its statements are prepared once.
//
// Never prints. One thread.

#include "store/sqlite_statement.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace velarc {

class DefaultsFile
{
public:
    enum class Outcome
    {
        Done,
        Refused, // the file is there for reading at most
        Damaged, // it is no database, a broken one, or one of another make
        NoRoom, // the disk is full, or fails
        Failed, // held by others for too long, or the like
    };

    struct Opened;

    // Opens the file at `path`, making it if it is not there. What is made is the user's alone from
    // the first moment, and an existing file is narrowed to that. A file that cannot be written, or
    // has no room beside it for what that takes, is opened for reading. Every call on the file
    // waits for others that hold it, `patience` at most.
    [[nodiscard]] static Opened open(const QString &path, std::chrono::milliseconds patience);

    ~DefaultsFile();
    DefaultsFile(const DefaultsFile &) = delete;
    DefaultsFile &operator=(const DefaultsFile &) = delete;

    [[nodiscard]] const QString &path() const { return m_path; }
    [[nodiscard]] bool isWritable() const { return m_write != nullptr; }

    // Whether the file has been moved or removed since it was opened.
    [[nodiscard]] bool hasMoved() const;

    [[nodiscard]] Outcome read(QByteArrayView key, std::optional<DefaultsValue> &value);
    [[nodiscard]] Outcome write(QByteArrayView key, const DefaultsValue &value);
    [[nodiscard]] Outcome erase(QByteArrayView key);
    [[nodiscard]] Outcome writeUnlessChanged(
        QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal);

private:
    enum class Access
    {
        Writing,
        Reading,
        ReadingCopy, // where not even the side files of a reader can be made
    };

    DefaultsFile(const QString &path, std::chrono::milliseconds patience);
    [[nodiscard]] static Opened openFor(
        Access access, const QString &path, std::chrono::milliseconds patience);
    [[nodiscard]] Outcome connect(Access access);
    [[nodiscard]] Outcome setUp();
    [[nodiscard]] Outcome copyToMemory();
    [[nodiscard]] Outcome prepareStatements(Access access);
    [[nodiscard]] Outcome run(const char *sql);
    [[nodiscard]] Outcome outcomeOf(int code);

    QString m_path;
    std::chrono::milliseconds m_patience;
    SqliteConnection m_connection; // outlives the statements below
    SqliteStatement m_read;
    SqliteStatement m_write;
    SqliteStatement m_erase;
    SqliteStatement m_writeUnlessChanged;
};

struct DefaultsFile::Opened
{
    Outcome outcome = Outcome::Failed;
    std::unique_ptr<DefaultsFile> file; // set if Done
};

} // namespace velarc
