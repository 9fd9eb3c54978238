#pragma once

#include <string>
#include <string_view>

namespace velarc {

// `text` as it is laid out on pages: valid UTF-8 whose lines end with a line feed, whichever
// separator of lines or paragraphs ended them, and whose only other controls are tabs and form
// feeds. What is no UTF-8 or no character becomes U+FFFD.
[[nodiscard]] std::string pageText(std::string_view text);

// `text` on one line: separators, tabs and form feeds become blanks, other controls fall away.
[[nodiscard]] std::string lineText(std::string_view text);

} // namespace velarc
