#pragma once

// What the helper takes from itself before it looks at a document.

#include <chrono>
#include <string>
#include <vector>

namespace velarc {

// Caps processor time and, outside of sanitizer builds, the address space; no core file. A limit
// that is tighter already stays.
void limitResources(std::chrono::seconds cpuTime);

// From here on files can be read in `readable` (and all below) only, none can be written, no
// connection can be made and no program be started, for as long as the process lives. Where the
// kernel lacks a part of this, the rest holds.
void closeOff(const std::vector<std::string> &readable);

// The system's own folders that the libraries read.
[[nodiscard]] std::vector<std::string> systemFolders();

// The same, and the folders that fontconfig keeps fonts and its cache in.
[[nodiscard]] std::vector<std::string> systemAndFontFolders();

} // namespace velarc
