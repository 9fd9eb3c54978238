#pragma once

// The three conversions of the helper. Each reads bytes of unknown origin, so each runs behind the
// limits and the fence of sandbox.h, in a process that may die at any time without harm.
//
// Errors: ConversionFailure with a sentence; running out of memory or time ends the process.

#include <stdexcept>
#include <string>
#include <string_view>

namespace velarc {

class ConversionFailure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct PixelSize
{
    int width = 0;
    int height = 0;
};

// Writes the text of each page in UTF-8, in order, each ended by a form feed, as soon as the page
// is read. A page that cannot be read counts as a blank one. `pdf` must stay in place meanwhile.
void writePdfText(std::string_view pdf);

// The drawing as a PNG of exactly `size`: as large as it fits with its proportions, centred, on
// white. Bytes that are no SVG give a white picture. Nothing else is read, nothing is fetched.
[[nodiscard]] std::string pngOfSvg(std::string_view svg, PixelSize size);

// Writes `text` (UTF-8) as a PDF in US Letter, `title` at the head of each page.
//
// A line feed ends a line, and so do the other separators of lines and paragraphs; a form feed
// starts a page; other control characters fall away. Equal input gives equal bytes.
void writeTextPdf(std::string_view text, std::string_view title);

} // namespace velarc
