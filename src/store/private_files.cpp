#include "store/private_files.h"

#include "base/locale_text.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

namespace velarc {

namespace {

using namespace std::chrono_literals;

constexpr auto kBetweenTries = 5ms;

constexpr mode_t kUserOnlyFolder = 0700;
constexpr mode_t kUserOnlyFile = 0600;
constexpr mode_t kOthers = 0077;

// What SQLite keeps beside a database. They move before it: a log that is left alone would be
// deleted by whoever opens the name next.
constexpr const char *kSideFiles[]{"-wal", "-shm"};

bool isThere(const QByteArray &path)
{
    struct stat found = {};
    return lstat(path.constData(), &found) == 0;
}

void closeToOthers(const QByteArray &path)
{
    struct stat found = {};
    if (stat(path.constData(), &found) == 0 && S_ISREG(found.st_mode)
        && (found.st_mode & kOthers) != 0) {
        chmod(path.constData(), found.st_mode & kUserOnlyFolder);
    }
}

QByteArray freeAsideName(const QByteArray &path, Instant now)
{
    QByteArray stamp = iso8601(now).toLatin1();
    stamp.replace("-", "").replace(":", "");
    const QByteArray wanted = path + ".corrupt-" + stamp;
    QByteArray name = wanted;
    for (int count = 2; isThere(name); ++count) {
        name = wanted + '-' + QByteArray::number(count);
    }
    return name;
}

} // namespace

bool makePrivateFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (mkdir(name.constData(), kUserOnlyFolder) == 0 || errno == EEXIST) {
        return true;
    }
    const QString parent = QFileInfo(path).path();
    return errno == ENOENT && parent != path && makePrivateFolder(parent)
        && (mkdir(name.constData(), kUserOnlyFolder) == 0 || errno == EEXIST);
}

void makePrivateFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // Only a file that is new is opened here: closing a descriptor of one that SQLite has open
    // would drop SQLite's locks.
    const int descriptor =
        open(name.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kUserOnlyFile);
    if (descriptor >= 0) {
        close(descriptor);
        return;
    }
    closeToOthers(name);
    for (const char *side : kSideFiles) {
        closeToOthers(name + side);
    }
}

bool setAside(const QString &path, Instant now)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray aside = freeAsideName(name, now);
    for (const char *side : kSideFiles) {
        std::rename((name + side).constData(), (aside + side).constData());
    }
    return std::rename(name.constData(), aside.constData()) == 0;
}

FolderLock::FolderLock(const QString &folder, std::chrono::milliseconds patience)
    : m_descriptor(open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (m_descriptor >= 0) {
        m_isHeld = flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
        const bool isTaken = !m_isHeld && errno == EWOULDBLOCK;
        if (!isTaken || std::chrono::steady_clock::now() >= end) {
            return;
        }
        std::this_thread::sleep_for(kBetweenTries);
    }
}

FolderLock::~FolderLock()
{
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

} // namespace velarc
