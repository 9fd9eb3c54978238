#include "support/process_memory.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace velarc {

namespace {

// Larger mappings are reserved address space, such as a sanitizer's shadow.
constexpr std::uint64_t kLargestMapping = 512ULL << 20;

struct Mapping
{
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

std::vector<Mapping> writableMappings()
{
    std::vector<Mapping> found;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields(line);
        Mapping mapping;
        char dash = 0;
        std::string rights;
        fields >> std::hex >> mapping.start >> dash >> mapping.end >> rights;
        if (rights.size() > 1 && rights[1] == 'w'
            && mapping.end - mapping.start < kLargestMapping) {
            found.push_back(mapping);
        }
    }
    return found;
}

bool standsAt(const unsigned char *bytes, std::string_view key)
{
    for (std::size_t at = 0; at < key.size(); ++at) {
        if (bytes[2 * at] != static_cast<unsigned char>(key[at]) || bytes[2 * at + 1] != 0) {
            return false;
        }
    }
    return true;
}

bool standsIn(const std::vector<unsigned char> &bytes, std::size_t size, std::string_view key)
{
    for (std::size_t at = 0; at + 2 * key.size() <= size; ++at) {
        if (standsAt(bytes.data() + at, key)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool standsInMemoryAsUtf16(std::string_view key)
{
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    if (memory < 0) {
        throw std::runtime_error("the process cannot read its own memory");
    }
    // Read piece by piece into one buffer, whose own pieces are wiped again. Pieces overlap by a
    // key.
    std::vector<unsigned char> piece(1 << 20);
    const auto own = reinterpret_cast<std::uint64_t>(piece.data());
    bool isThere = false;
    for (const Mapping &mapping : writableMappings()) {
        const std::uint64_t step = piece.size() - 2 * key.size();
        for (std::uint64_t at = mapping.start; at < mapping.end; at += step) {
            if (at < own + piece.size() && own < at + piece.size()) {
                continue; // the buffer itself
            }
            const std::uint64_t wanted = std::min<std::uint64_t>(piece.size(), mapping.end - at);
            const ssize_t got = pread(memory, piece.data(), wanted, static_cast<off_t>(at));
            isThere = isThere || (got > 0 && standsIn(piece, static_cast<std::size_t>(got), key));
        }
    }
    close(memory);
    explicit_bzero(piece.data(), piece.size());
    return isThere;
}

} // namespace velarc
