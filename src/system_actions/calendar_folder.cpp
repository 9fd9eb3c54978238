#include "system_actions/calendar_folder.h"

#include "base/text.h"
#include "base/uuid.h"
#include "system_actions/ical_text.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t kUserOnly = 0600;
constexpr qsizetype kLongestTitle = 200;

// More than these are no person's.
constexpr std::size_t kMostCalendars = 1'000;
constexpr std::size_t kMostFiles = 200'000;

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

[[noreturn]] void throwSystemError(int error)
{
    throw CalendarStoreError(qt_error_string(error));
}

struct CloseFolder
{
    void operator()(DIR *folder) const { closedir(folder); }
};

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

bool mayHoldEvents(QByteArrayView name)
{
    return name.endsWith(".ics") && !name.startsWith('.') && !name.contains('/');
}

// Calls `take(name)` for what the folder holds, but for what is hidden.
template <typename Take> void forEachName(int folder, Take take)
{
    // A descriptor of its own, since reading a folder moves it on.
    const int copy = openat(folder, ".", kOpenFolder);
    const std::unique_ptr<DIR, CloseFolder> entries(copy < 0 ? nullptr : fdopendir(copy));
    if (!entries) {
        const int error = errno;
        if (copy >= 0) {
            close(copy);
        }
        throwSystemError(error);
    }
    while (const dirent *entry = readdir(entries.get())) {
        const QByteArray name(entry->d_name);
        if (!name.startsWith('.')) {
            take(name);
        }
    }
}

int openCalendar(const QString &path, const QByteArray &name)
{
    if (name.isEmpty() || name.startsWith('.') || name.contains('/')) {
        throwSystemError(ENOENT);
    }
    const int folder = open(QFile::encodeName(path).constData(), kOpenFolder);
    if (folder < 0) {
        throwSystemError(errno);
    }
    return folder;
}

// Up to `most` bytes; none if there are more.
std::optional<QByteArray> readAll(int file, qsizetype most)
{
    QByteArray bytes;
    QByteArray part(64 * 1024, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = ::read(file, part.data(), static_cast<std::size_t>(part.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 || bytes.size() + count > most) {
            return std::nullopt;
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(part.constData(), count);
    }
}

int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        bytes = bytes.sliced(std::max<ssize_t>(count, 0));
    }
    return fsync(file) == 0 ? 0 : errno;
}

// Of whatever file system: not each of them can rename without replacing.
int moveToFreeName(int folder, const QByteArray &from, const QByteArray &to)
{
    const int result =
        renameat2(folder, from.constData(), folder, to.constData(), RENAME_NOREPLACE);
    if (result == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return result;
    }
    if (linkat(folder, from.constData(), folder, to.constData(), 0) != 0) {
        return -1;
    }
    return unlinkat(folder, from.constData(), 0);
}

} // namespace

FileDescriptor::~FileDescriptor()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

FileDescriptor::FileDescriptor(FileDescriptor &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

FileStamp::FileStamp(const struct stat &status)
    : m_inode(status.st_ino)
    , m_size(status.st_size)
    , m_changed(nanoseconds(status.st_ctim))
    , m_written(nanoseconds(status.st_mtim))
{
}

bool FileStamp::isFresh() const
{
    constexpr qint64 kSlowestTick = 20'000'000;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now) - m_changed < kSlowestTick;
}

std::vector<QByteArray> CalendarFolder::namesIn(const QString &root)
{
    std::vector<QByteArray> names;
    const FileDescriptor folder(
        open(QFile::encodeName(root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) {
        if (errno == ENOENT) {
            return names;
        }
        throwSystemError(errno);
    }
    forEachName(folder.get(), [&](const QByteArray &name) {
        struct stat status = {};
        if (fstatat(folder.get(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0
            && S_ISDIR(status.st_mode) && names.size() < kMostCalendars) {
            names.push_back(name);
        }
    });
    std::sort(names.begin(), names.end());
    return names;
}

CalendarFolder::CalendarFolder(const QString &root, const QByteArray &name)
    : m_name(name)
    , m_path(root + u'/' + QFile::decodeName(name))
    , m_folder(openCalendar(m_path, name))
{
}

QString CalendarFolder::title() const
{
    const auto contents = read("displayname");
    const QString text = contents ? QString::fromUtf8(contents->bytes) : QString();
    const QList<QStringView> lines = splitLines(text);
    const QString title =
        lines.isEmpty() ? QString() : trimmed(lines.front()).left(kLongestTitle).toString();
    return title.isEmpty() ? QFile::decodeName(m_name) : title;
}

bool CalendarFolder::isWritable() const
{
    return faccessat(m_folder.get(), ".", W_OK | X_OK, AT_EACCESS) == 0;
}

std::vector<CalendarFolder::Entry> CalendarFolder::files() const
{
    std::vector<Entry> entries;
    forEachName(m_folder.get(), [&](const QByteArray &name) {
        if (entries.size() < kMostFiles) {
            if (auto entry = file(name)) {
                entries.push_back(*std::move(entry));
            }
        }
    });
    return entries;
}

std::optional<CalendarFolder::Entry> CalendarFolder::file(const QByteArray &name) const
{
    struct stat status = {};
    if (!mayHoldEvents(name)) {
        return std::nullopt;
    }
    if (fstatat(m_folder.get(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == EACCES) {
            throwSystemError(errno);
        }
        return std::nullopt;
    }
    return S_ISREG(status.st_mode) ? std::optional(Entry{name, FileStamp(status)}) : std::nullopt;
}

std::optional<CalendarFolder::Contents> CalendarFolder::read(const QByteArray &name) const
{
    // Not to hang on a pipe that took the place of a file.
    const FileDescriptor file(
        openat(m_folder.get(), name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > kMaxIcalBytes) {
        return std::nullopt;
    }
    auto bytes = readAll(file.get(), kMaxIcalBytes);
    return bytes ? std::optional(Contents{*std::move(bytes), FileStamp(status)}) : std::nullopt;
}

void CalendarFolder::writeNew(const QByteArray &name, const QByteArray &bytes) const
{
    const QByteArray written = writeBeside(bytes);
    settle(written, moveToFreeName(m_folder.get(), written, name));
}

bool CalendarFolder::replace(
    const QByteArray &name, const FileStamp &stamp, const QByteArray &bytes) const
{
    const QByteArray written = writeBeside(bytes);
    const auto present = file(name);
    if (!present || present->stamp != stamp) {
        unlinkat(m_folder.get(), written.constData(), 0);
        return false;
    }
    settle(
        written, renameat(m_folder.get(), written.constData(), m_folder.get(), name.constData()));
    return true;
}

void CalendarFolder::remove(const QByteArray &name) const
{
    if (unlinkat(m_folder.get(), name.constData(), 0) != 0) {
        throwSystemError(errno);
    }
}

// A hidden file, which nobody takes for an event.
QByteArray CalendarFolder::writeBeside(const QByteArray &bytes) const
{
    const QByteArray name = ".velarc-" + uuidText(newUuid()).toLatin1() + ".tmp";
    const FileDescriptor file(openat(m_folder.get(), name.constData(),
        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kUserOnly));
    if (!file.isOpen()) {
        throwSystemError(errno);
    }
    if (const int error = writeAll(file.get(), bytes); error != 0) {
        unlinkat(m_folder.get(), name.constData(), 0);
        throwSystemError(error);
    }
    return name;
}

// Ends a write: `result` says whether the file has its name now.
void CalendarFolder::settle(const QByteArray &written, int result) const
{
    if (result != 0) {
        const int error = errno;
        unlinkat(m_folder.get(), written.constData(), 0);
        throwSystemError(error);
    }
}

} // namespace velarc
