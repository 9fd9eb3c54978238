#include "intake/documents/rsvg_drawing.h"

#include <gio/gio.h>
#include <librsvg/rsvg.h>

namespace velarc {

namespace {

constexpr double kDotsPerInch = 96;

} // namespace

void UnrefDrawing::operator()(RsvgHandle *drawing) const
{
    g_object_unref(drawing);
}

RsvgDrawing loadedDrawing(std::string_view svg)
{
    GInputStream *stream =
        g_memory_input_stream_new_from_data(svg.data(), static_cast<gssize>(svg.size()), nullptr);
    RsvgDrawing drawing(rsvg_handle_new_from_stream_sync(
        stream, nullptr, RSVG_HANDLE_FLAGS_NONE, nullptr, nullptr));
    g_object_unref(stream);
    if (drawing != nullptr) {
        rsvg_handle_set_dpi(drawing.get(), kDotsPerInch);
    }
    return drawing;
}

OwnSize ownSizeOf(RsvgHandle *drawing)
{
    OwnSize own;
    DrawingSize pixels;
    if (rsvg_handle_get_intrinsic_size_in_pixels(drawing, &pixels.width, &pixels.height)
        && pixels.width > 0 && pixels.height > 0) {
        own.pixels = pixels;
    }
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength width = {};
    RsvgLength height = {};
    RsvgRectangle viewBox = {};
    rsvg_handle_get_intrinsic_dimensions(
        drawing, &hasWidth, &width, &hasHeight, &height, &hasViewBox, &viewBox);
    if (hasViewBox) {
        own.viewBox = DrawingSize{viewBox.width, viewBox.height};
    }
    return own;
}

} // namespace velarc
