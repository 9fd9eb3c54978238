#pragma once

#include <string>
#include <string_view>

namespace velarc {

// `svg` (in an encoding that keeps ASCII) with each drawing that it holds as the data of an image
// made as large as a picture needs it: the renderer draws it at the size that it gives itself and
// enlarges the pixels. `prepare` is applied to each of them first.
[[nodiscard]] std::string withNestedDrawingsEnlarged(
    std::string_view svg, std::string (*prepare)(std::string_view svg));

} // namespace velarc
