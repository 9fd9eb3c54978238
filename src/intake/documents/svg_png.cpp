#include "intake/documents/conversions.h"
#include "intake/documents/png_bytes.h"
#include "intake/documents/svg_source.h"
#include "intake/documents/xml_tags.h"

#include <cairo.h>
#include <gio/gio.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace velarc {

namespace {

constexpr double kDotsPerInch = 96;
constexpr double kPixelsPerEm = 16; // what a browser takes where no size of type is set

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t *cairo) const { cairo_destroy(cairo); }
};
template <typename Object> using Owned = std::unique_ptr<Object, Unref>;

GLogWriterOutput stayQuiet(GLogLevelFlags, const GLogField *, gsize, gpointer)
{
    return G_LOG_WRITER_HANDLED;
}

// What a drawing says about its own width or height.
struct Extent
{
    std::optional<double> pixels;
    double share = 1; // of what it is given, for a percentage
};

struct UnitSize
{
    RsvgUnit unit;
    double pixels;
};
constexpr std::array<UnitSize, 8> kUnits{{
    {RSVG_UNIT_PX, 1},
    {RSVG_UNIT_EM, kPixelsPerEm},
    {RSVG_UNIT_EX, kPixelsPerEm / 2},
    {RSVG_UNIT_IN, kDotsPerInch},
    {RSVG_UNIT_CM, kDotsPerInch / 2.54},
    {RSVG_UNIT_MM, kDotsPerInch / 25.4},
    {RSVG_UNIT_PT, kDotsPerInch / 72},
    {RSVG_UNIT_PC, kDotsPerInch / 6},
}};

Extent extentOf(gboolean isGiven, const RsvgLength &length)
{
    Extent extent;
    if (!isGiven || length.length <= 0) {
        return extent;
    }
    if (length.unit == RSVG_UNIT_PERCENT) {
        extent.share = length.length;
    }
    for (const UnitSize &known : kUnits) {
        if (known.unit == length.unit) {
            extent.pixels = length.length * known.pixels;
        }
    }
    return extent;
}

bool keepsProportions(std::string_view svg)
{
    const auto root = XmlTagReader(svg).next();
    const auto kept = root ? root->attribute("preserveAspectRatio") : std::nullopt;
    const std::size_t begin = kept ? kept->find_first_not_of(" \t\r\n") : std::string_view::npos;
    return begin == std::string_view::npos || kept->substr(begin, 4) != "none";
}

// Where on the picture the drawing goes, and the size in its own pixels that it is laid out in.
struct Placement
{
    double width = 0;
    double height = 0;
    double layoutWidth = 0;
    double layoutHeight = 0;
    double widthShare = 1;
    double heightShare = 1;
};

// As a browser sizes an img that keeps proportions: by the drawing's own width and height, else by
// the proportions of its viewBox, else it fills the picture.
Placement placementOf(RsvgHandle *drawing, std::string_view svg, PixelSize size)
{
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength givenWidth = {};
    RsvgLength givenHeight = {};
    RsvgRectangle viewBox = {};
    rsvg_handle_get_intrinsic_dimensions(
        drawing, &hasWidth, &givenWidth, &hasHeight, &givenHeight, &hasViewBox, &viewBox);
    const Extent width = extentOf(hasWidth, givenWidth);
    const Extent height = extentOf(hasHeight, givenHeight);
    const bool hasSize = width.pixels && height.pixels;
    const bool hasRatio =
        hasViewBox && viewBox.width > 0 && viewBox.height > 0 && keepsProportions(svg);

    Placement placed{double(size.width), double(size.height), width.pixels.value_or(size.width),
        height.pixels.value_or(size.height), width.share, height.share};
    if (hasSize || hasRatio) {
        const double ownWidth = hasSize ? *width.pixels : viewBox.width;
        const double ownHeight = hasSize ? *height.pixels : viewBox.height;
        const double scale = std::min(size.width / ownWidth, size.height / ownHeight);
        placed.width = ownWidth * scale;
        placed.height = ownHeight * scale;
    }
    if (hasRatio && !hasSize) {
        placed.layoutWidth = placed.width;
        placed.layoutHeight = placed.height;
        placed.widthShare = placed.heightShare = 1;
    }
    return placed;
}

void draw(RsvgHandle *drawing, const Placement &placed, cairo_t *cairo, PixelSize size)
{
    cairo_translate(cairo, (size.width - placed.width) / 2, (size.height - placed.height) / 2);
    cairo_rectangle(cairo, 0, 0, placed.width, placed.height);
    cairo_clip(cairo);
    cairo_scale(cairo, placed.width / (placed.layoutWidth * placed.widthShare),
        placed.height / (placed.layoutHeight * placed.heightShare));
    const RsvgRectangle viewport{0, 0, placed.layoutWidth, placed.layoutHeight};
    GError *error = nullptr;
    if (!rsvg_handle_render_document(drawing, cairo, &viewport, &error)) {
        const std::string reason = error != nullptr ? error->message : "no reason given";
        g_clear_error(&error);
        throw ConversionFailure(reason);
    }
}

// No base address: a reference to another file or to an address leads nowhere.
Owned<RsvgHandle> loaded(std::string_view svg)
{
    const Owned<GInputStream> stream(
        g_memory_input_stream_new_from_data(svg.data(), static_cast<gssize>(svg.size()), nullptr));
    return Owned<RsvgHandle>(rsvg_handle_new_from_stream_sync(
        stream.get(), nullptr, RSVG_HANDLE_FLAGS_NONE, nullptr, nullptr));
}

} // namespace

std::string pngOfSvg(std::string_view svg, PixelSize size)
{
    g_log_set_writer_func(&stayQuiet, nullptr, nullptr);
    const Owned<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
    const Owned<cairo_t> cairo(cairo_create(surface.get()));
    cairo_set_source_rgb(cairo.get(), 1, 1, 1);
    cairo_paint(cairo.get());

    const std::string text = preparedSvg(svg);
    if (const Owned<RsvgHandle> drawing = loaded(text)) {
        rsvg_handle_set_dpi(drawing.get(), kDotsPerInch);
        draw(drawing.get(), placementOf(drawing.get(), text, size), cairo.get(), size);
    }
    cairo_surface_flush(surface.get());
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) {
        throw ConversionFailure(cairo_status_to_string(cairo_status(cairo.get())));
    }
    return pngOf({cairo_image_surface_get_data(surface.get()),
        cairo_image_surface_get_stride(surface.get()), size.width, size.height});
}

} // namespace velarc
