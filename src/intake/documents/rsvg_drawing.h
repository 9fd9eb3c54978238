#pragma once

#include "intake/documents/svg_root.h"

#include <memory>
#include <optional>
#include <string_view>

using RsvgHandle = struct _RsvgHandle; // the renderer's own

namespace velarc {

struct UnrefDrawing
{
    void operator()(RsvgHandle *drawing) const;
};
using RsvgDrawing = std::unique_ptr<RsvgHandle, UnrefDrawing>;

// The drawing that `svg` holds, or none. `svg` need not stay. A reference to another file or to an
// address leads nowhere.
[[nodiscard]] RsvgDrawing loadedDrawing(std::string_view svg);

// What a drawing says about its own size, in pixels; the proportions alone matter where it gives a
// viewBox and no size.
struct OwnSize
{
    std::optional<DrawingSize> pixels; // where it gives both of them, none relative to something
    std::optional<DrawingSize> viewBox;
};
[[nodiscard]] OwnSize ownSizeOf(RsvgHandle *drawing);

} // namespace velarc
