#include "intake/documents/conversions.h"
#include "intake/documents/png_bytes.h"
#include "intake/documents/quiet_log.h"
#include "intake/documents/rsvg_drawing.h"
#include "intake/documents/svg_source.h"
#include "intake/documents/xml_tags.h"

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace velarc {

namespace {

struct Unref
{
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t *cairo) const { cairo_destroy(cairo); }
};
template <typename Object> using Owned = std::unique_ptr<Object, Unref>;

bool keepsProportions(std::string_view svg)
{
    const auto root = XmlTagReader(svg).next();
    const auto kept = root ? root->attribute("preserveAspectRatio") : std::nullopt;
    const std::size_t begin = kept ? kept->find_first_not_of(" \t\r\n") : std::string_view::npos;
    return begin == std::string_view::npos || kept->substr(begin, 4) != "none";
}

// How large the drawing is on the picture, and the size in its own pixels that it is laid out in.
struct Placement
{
    DrawingSize shown;
    DrawingSize layout;
};

// As a browser sizes an img that keeps proportions: by the drawing's own width and height, else by
// the proportions of its viewBox, else it fills the picture.
Placement placementOf(const OwnSize &own, std::string_view svg, PixelSize size)
{
    const DrawingSize whole{double(size.width), double(size.height)};
    const auto proportions = own.pixels        ? own.pixels
        : own.viewBox && keepsProportions(svg) ? own.viewBox
                                               : std::nullopt;
    if (!proportions) {
        return {whole, whole};
    }
    const double scale =
        std::min(size.width / proportions->width, size.height / proportions->height);
    const DrawingSize shown{proportions->width * scale, proportions->height * scale};
    return {shown, own.pixels.value_or(shown)};
}

void draw(RsvgHandle *drawing, const Placement &placed, cairo_t *cairo, PixelSize size)
{
    const auto &[shown, layout] = placed;
    cairo_translate(cairo, (size.width - shown.width) / 2, (size.height - shown.height) / 2);
    cairo_rectangle(cairo, 0, 0, shown.width, shown.height);
    cairo_clip(cairo);
    cairo_scale(cairo, shown.width / layout.width, shown.height / layout.height);
    const RsvgRectangle viewport{0, 0, layout.width, layout.height};
    GError *error = nullptr;
    if (!rsvg_handle_render_document(drawing, cairo, &viewport, &error)) {
        const std::string reason = error != nullptr ? error->message : "no reason given";
        g_clear_error(&error);
        throw ConversionFailure(reason);
    }
}

// A viewBox without an area means that nothing is shown.
bool showsAnything(const OwnSize &own)
{
    return !own.viewBox || (own.viewBox->width > 0 && own.viewBox->height > 0);
}

} // namespace

std::string pngOfSvg(std::string_view svg, PixelSize size)
{
    silenceLibraries();
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
    const Owned<cairo_t> cairo(cairo_create(surface.get()));
    cairo_set_source_rgb(cairo.get(), 1, 1, 1);
    cairo_paint(cairo.get());

    const std::string text = preparedSvg(svg);
    if (const RsvgDrawing drawing = loadedDrawing(text)) {
        const OwnSize own = ownSizeOf(drawing.get());
        if (showsAnything(own)) {
            draw(drawing.get(), placementOf(own, text, size), cairo.get(), size);
        }
    }
    cairo_surface_flush(surface.get());
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) {
        throw ConversionFailure(cairo_status_to_string(cairo_status(cairo.get())));
    }
    return pngOf({cairo_image_surface_get_data(surface.get()),
        cairo_image_surface_get_stride(surface.get()), size.width, size.height});
}

} // namespace velarc
