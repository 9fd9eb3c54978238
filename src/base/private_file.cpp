#include "base/private_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace velarc {

namespace {

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace

QString temporaryFilePath(const QString &name)
{
    const QString folder = QDir::tempPath(); // empty where TMPDIR names none
    return folder.isEmpty() ? QString() : QDir(folder).filePath(name);
}

bool writeNewPrivateFile(const QString &path, QByteArrayView bytes)
{
    const QByteArray name = QFile::encodeName(path);
    constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
    // With O_EXCL a link under the name is an existing file, wherever it leads.
    const int descriptor =
        ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly);
    if (descriptor < 0) {
        return false;
    }
    const bool isWritten = writeAll(descriptor, bytes);
    const bool isClosed = ::close(descriptor) == 0;
    if (isWritten && isClosed) {
        return true;
    }
    ::unlink(name.constData());
    return false;
}

bool replacePrivateFile(const QString &path, QByteArrayView bytes)
{
    const QFileInfo present(path);
    if (present.exists() && !present.isFile()) {
        return false; // opening a pipe would wait for a reader
    }
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        && file.write(bytes.data(), bytes.size()) == bytes.size() && file.commit();
}

} // namespace velarc
