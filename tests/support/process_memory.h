#pragma once

// What stands in this process's own memory.

#include <string_view>

namespace velarc {

// Whether the Latin-1 text `key` stands in writable memory with two bytes a character, as a
// QString holds it. It makes no such copy itself.
[[nodiscard]] bool standsInMemoryAsUtf16(std::string_view key);

} // namespace velarc
