#pragma once

#include <string>
#include <string_view>

namespace velarc {

// The drawing's text as the renderer is to read it: inflated if it came compressed, in an encoding
// that keeps ASCII, and spelled out where the renderer would take it otherwise than a browser.
//
// Errors: ConversionFailure for a compressed drawing of more than 64 MiB.
[[nodiscard]] std::string preparedSvg(std::string_view bytes);

} // namespace velarc
