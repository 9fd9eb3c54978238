#pragma once

// The helper's two ends: what it is given and what it answers, as bytes.

#include <memory>
#include <string_view>
#include <vector>

namespace velarc {

// All of standard input.
//
// A regular file is mapped, so that it is in memory once however large it is; anything else is read
// to its end. The bytes stay where they are for as long as the object lives.
class StandardInput
{
public:
    StandardInput(); // throws ConversionFailure if it cannot be read
    ~StandardInput();
    StandardInput(const StandardInput &) = delete;
    StandardInput &operator=(const StandardInput &) = delete;

    [[nodiscard]] std::string_view bytes() const { return m_bytes; }

private:
    void *m_mapping = nullptr;
    std::vector<char> m_read;
    std::string_view m_bytes;

    bool map();
    void readToEnd();
};

// Writes `bytes` to standard output at once. Throws ConversionFailure if nobody takes them.
void writeOut(std::string_view bytes);

} // namespace velarc
