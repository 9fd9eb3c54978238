#pragma once

// A calendar that is a folder: a file for each event, as other programs keep theirs as well.
//
// Worker thread; blocks. No link is followed, neither of a folder nor of a file.
//
// Errors: CalendarStoreError with the system's own sentence.

#include "system_actions/calendar_store.h"

#include <QByteArray>

#include <sys/stat.h>

#include <optional>
#include <vector>

namespace velarc {

// An open file of the system, closed at the end.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor = -1) noexcept : m_descriptor(descriptor) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor &&other) noexcept;
    FileDescriptor &operator=(FileDescriptor &&) = delete;

    [[nodiscard]] int get() const noexcept { return m_descriptor; }
    [[nodiscard]] bool isOpen() const noexcept { return m_descriptor >= 0; }

private:
    int m_descriptor;
};

// What tells one state of a file from the next.
class FileStamp
{
public:
    FileStamp() = default;
    explicit FileStamp(const struct stat &status);

    // Whether the file may have been written since without another stamp: the system's clock for
    // files ticks slowly.
    [[nodiscard]] bool isFresh() const;

    friend bool operator==(const FileStamp &, const FileStamp &) = default;

private:
    ino_t m_inode = 0;
    off_t m_size = -1;
    qint64 m_changed = 0; // in nanoseconds, both
    qint64 m_written = 0;
};

class CalendarFolder
{
public:
    struct Entry
    {
        QByteArray name;
        FileStamp stamp;
    };
    struct Contents
    {
        QByteArray bytes;
        FileStamp stamp;
    };

    // The folders in `root` that are calendars, by name; none where `root` is missing.
    [[nodiscard]] static std::vector<QByteArray> namesIn(const QString &root);

    // The calendar of that name; it must be there.
    CalendarFolder(const QString &root, const QByteArray &name);

    [[nodiscard]] QString title() const; // what the file "displayname" says, else the name
    [[nodiscard]] bool isWritable() const;

    // The files that may hold events.
    [[nodiscard]] std::vector<Entry> files() const;
    [[nodiscard]] std::optional<Entry> file(const QByteArray &name) const;

    // None for what cannot be read, is no file, or is beyond the bound for calendar files.
    [[nodiscard]] std::optional<Contents> read(const QByteArray &name) const;

    // Both write a file of mode 0600 that is there whole or not at all, also after a power cut,
    // which may take back the change itself if it comes within seconds. A new file takes nobody's
    // place. replace() gives false, and changes nothing, if the file is no longer the one of that
    // stamp.
    void writeNew(const QByteArray &name, const QByteArray &bytes) const;
    [[nodiscard]] bool replace(
        const QByteArray &name, const FileStamp &stamp, const QByteArray &bytes) const;

    void remove(const QByteArray &name) const;

    // The folder's path, for those who lock it.
    [[nodiscard]] const QString &path() const { return m_path; }

private:
    QByteArray m_name;
    QString m_path;
    FileDescriptor m_folder;

    [[nodiscard]] QByteArray writeBeside(const QByteArray &bytes) const;
    void settle(const QByteArray &name, int result) const;
};

} // namespace velarc
