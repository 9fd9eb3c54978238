#pragma once

// What a target of the fuzzer is made of.

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Called for each input; the name is the fuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace velarc {

// The input as a program gets text from outside: UTF-8, what is none of it replaced.
[[nodiscard]] inline QString fuzzedText(const std::uint8_t *data, std::size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

// Ends the process where a promise is broken, in every build.
inline void promise(bool isKept)
{
    if (!isKept) {
        std::abort();
    }
}

} // namespace velarc
