#pragma once

// What of a desktop's session the environment names. Any thread.

namespace velarc {

// Whether there is a session bus. Where none is named, asking the libraries for one would start
// one.
[[nodiscard]] bool hasSessionBus();

// Whether a window could be opened. Where none is named, Qt ends the process as if it had crashed.
[[nodiscard]] bool hasDisplay();

} // namespace velarc
