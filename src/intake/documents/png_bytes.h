#pragma once

#include <cstddef>
#include <string>

namespace velarc {

// A picture in memory: rows of 32-bit pixels, 0x00RRGGBB in the machine's own byte order.
struct PixelRows
{
    const unsigned char *first = nullptr;
    std::ptrdiff_t bytesBetweenRows = 0;
    int width = 0;
    int height = 0;
};

// The picture as a PNG of three channels, packed for speed. Throws ConversionFailure.
[[nodiscard]] std::string pngOf(const PixelRows &pixels);

} // namespace velarc
