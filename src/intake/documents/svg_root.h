#pragma once

#include <string>
#include <string_view>

namespace velarc {

struct DrawingSize
{
    double width = 0;
    double height = 0;
};

// `svg` (in an encoding that keeps ASCII) with a root element that the renderer takes as a browser
// does: letters are 16 pixels high where the drawing sets no size, and a drawing without a viewBox
// fills what it is given, whatever its proportions. A text without a root comes back as it is.
[[nodiscard]] std::string withRootOfABrowser(std::string_view svg);

// `svg` with `shown` as the size that it gives itself; `own` is the one it had. What it shows
// stays.
[[nodiscard]] std::string withRootOfSize(
    std::string_view svg, const DrawingSize &own, const DrawingSize &shown);

} // namespace velarc
