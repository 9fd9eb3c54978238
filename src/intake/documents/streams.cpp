#include "intake/documents/streams.h"

#include "intake/documents/conversions.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace velarc {

namespace {

constexpr std::size_t kFirstPiece = 64 * 1024;

} // namespace

StandardInput::StandardInput()
{
    if (!map()) {
        readToEnd();
    }
}

StandardInput::~StandardInput()
{
    if (m_mapping != nullptr) {
        munmap(m_mapping, m_bytes.size());
    }
}

bool StandardInput::map()
{
    struct stat found = {};
    if (fstat(STDIN_FILENO, &found) != 0 || !S_ISREG(found.st_mode) || found.st_size <= 0
        || lseek(STDIN_FILENO, 0, SEEK_CUR) != 0) {
        return false;
    }
    const auto size = static_cast<std::size_t>(found.st_size);
    void *mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, STDIN_FILENO, 0);
    if (mapping == MAP_FAILED) {
        return false;
    }
    m_mapping = mapping;
    m_bytes = std::string_view(static_cast<const char *>(mapping), size);
    return true;
}

void StandardInput::readToEnd()
{
    std::size_t filled = 0;
    m_read.resize(kFirstPiece);
    for (;;) {
        const ssize_t count = read(STDIN_FILENO, m_read.data() + filled, m_read.size() - filled);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            throw ConversionFailure("standard input cannot be read");
        }
        filled += count < 0 ? 0 : static_cast<std::size_t>(count);
        if (filled == m_read.size()) {
            m_read.resize(2 * filled);
        }
    }
    m_bytes = std::string_view(m_read.data(), filled);
}

void writeOut(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            throw ConversionFailure("standard output takes nothing");
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

} // namespace velarc
