#pragma once

#include <string>
#include <string_view>

namespace velarc {

// `svg` (in UTF-8 or another encoding that keeps ASCII) with each feDropShadow element spelled out
// in the primitives that it stands for: the renderer does not know it and would leave out all that
// the filter is applied to. A text that is not well-formed comes back with what could be read
// changed.
[[nodiscard]] std::string withShadowsSpelledOut(std::string_view svg);

} // namespace velarc
