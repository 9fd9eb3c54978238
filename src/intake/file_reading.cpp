#include "intake/file_reading.h"

#include "base/async.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace velarc {

namespace {

constexpr qint64 kPieceBytes = qint64(4) * 1024 * 1024;

class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0) {
            ::close(m_number);
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

qint64 memoryOfTheMachine()
{
    return qint64(::sysconf(_SC_PHYS_PAGES)) * qint64(::sysconf(_SC_PAGESIZE));
}

ssize_t readPiece(int descriptor, char *into, qint64 count)
{
    for (;;) {
        const ssize_t got = ::read(descriptor, into, static_cast<size_t>(count));
        if (got >= 0 || errno != EINTR) {
            return got;
        }
    }
}

} // namespace

std::optional<QByteArray> readToEnd(
    int descriptor, qint64 expected, qint64 growthBound, const std::stop_token &stop)
{
    // One byte more than told finds the end without a second piece.
    QByteArray bytes(expected + 1, Qt::Uninitialized);
    qint64 length = 0;
    for (;;) {
        throwIfStopped(stop);
        const ssize_t got = readPiece(
            descriptor, bytes.data() + length, std::min(kPieceBytes, bytes.size() - length));
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            bytes.truncate(length);
            return bytes;
        }
        length += got;
        if (length > expected + growthBound) {
            return std::nullopt;
        }
        if (length == bytes.size()) {
            bytes.resize(length + kPieceBytes);
        }
    }
}

std::optional<QByteArray> readRegularFile(const QByteArray &path, const std::stop_token &stop)
{
    if (path.contains('\0')) {
        return std::nullopt; // it would be cut there and name another file
    }
    // Without O_NONBLOCK, opening a pipe waits for somebody who writes.
    const Descriptor file(
        ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)); // NOLINT(*-vararg)
    struct stat status
    {
    };
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > memoryOfTheMachine()) {
        return std::nullopt;
    }
    return readToEnd(file.number(), status.st_size, kGrowthBound, stop);
}

} // namespace velarc
