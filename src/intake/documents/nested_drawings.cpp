#include "intake/documents/nested_drawings.h"

#include "intake/documents/rsvg_drawing.h"
#include "intake/documents/xml_tags.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace velarc {

namespace {

// Pixels along the longer side. Where a drawing holds many others they share one such square.
constexpr double kLargestSide = 1024;
constexpr double kSmallestSide = 128;

constexpr std::string_view kData = "data:image/svg+xml";
constexpr std::string_view kBase64 = ";base64";

struct Entity
{
    std::string_view name;
    char character;
};
constexpr std::array<Entity, 5> kEntities{
    {{"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}}};

// The data of an image that is a drawing.
struct NestedDrawing
{
    XmlAttribute attribute;
    std::string svg;
};

std::string withoutEntities(std::string_view value)
{
    std::string out;
    while (!value.empty()) {
        const auto entity = std::find_if(kEntities.begin(), kEntities.end(),
            [&](const Entity &known) { return value.substr(0, known.name.size()) == known.name; });
        const bool isEntity = entity != kEntities.end();
        out += isEntity ? entity->character : value.front();
        value.remove_prefix(isEntity ? entity->name.size() : 1);
    }
    return out;
}

std::string withoutPercents(const std::string &text)
{
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = at + 2 < text.size() ? g_ascii_xdigit_value(text[at + 1]) : -1;
        const int low = at + 2 < text.size() ? g_ascii_xdigit_value(text[at + 2]) : -1;
        const bool isEscape = text[at] == '%' && high >= 0 && low >= 0;
        out += isEscape ? static_cast<char>(16 * high + low) : text[at];
        at += isEscape ? 2 : 0;
    }
    return out;
}

std::string fromBase64(std::string text)
{
    std::erase_if(text, [](char c) { return g_ascii_isspace(c); });
    gsize length = 0;
    guchar *bytes = g_base64_decode(text.c_str(), &length);
    std::string out(reinterpret_cast<const char *>(bytes), length);
    g_free(bytes);
    return out;
}

std::string inBase64(const std::string &bytes)
{
    gchar *text = g_base64_encode(reinterpret_cast<const guchar *>(bytes.data()), bytes.size());
    std::string out(text);
    g_free(text);
    return out;
}

// The drawing behind an address of the form data:image/svg+xml[;...],...
std::string drawingOf(std::string_view address)
{
    const std::size_t begin = address.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos || address.substr(begin, kData.size()) != kData) {
        return {};
    }
    const std::size_t comma = address.find(',', begin);
    if (comma == std::string_view::npos) {
        return {};
    }
    const bool isBase64 = address.substr(begin, comma - begin).find(kBase64) < comma;
    const std::string text = withoutPercents(withoutEntities(address.substr(comma + 1)));
    return isBase64 ? fromBase64(text) : text;
}

std::vector<NestedDrawing> nestedDrawings(std::string_view svg)
{
    std::vector<NestedDrawing> found;
    XmlTagReader tags(svg);
    while (const auto tag = tags.next()) {
        if (tag->localName() != "image" && tag->localName() != "feImage") {
            continue;
        }
        for (const XmlAttribute &attribute : tag->attributes) {
            const bool isAddress = attribute.name == "href" || attribute.name.ends_with(":href");
            std::string drawing = isAddress ? drawingOf(attribute.value) : std::string();
            if (!drawing.empty()) {
                found.push_back({attribute, std::move(drawing)});
            }
        }
    }
    return found;
}

std::string enlarged(std::string svg, double side)
{
    const RsvgDrawing drawing = loadedDrawing(svg);
    if (drawing == nullptr) {
        return svg;
    }
    const OwnSize all = ownSizeOf(drawing.get());
    const auto own = all.pixels ? all.pixels : all.viewBox;
    if (!own || !(own->width > 0) || !(own->height > 0)) {
        return svg;
    }
    const double scale = side / std::max(own->width, own->height);
    return scale > 1 ? withRootOfSize(svg, *own, {own->width * scale, own->height * scale}) : svg;
}

} // namespace

std::string withNestedDrawingsEnlarged(
    std::string_view svg, std::string (*prepare)(std::string_view svg))
{
    if (svg.find(kData) == std::string_view::npos) {
        return std::string(svg);
    }
    const std::vector<NestedDrawing> nested = nestedDrawings(svg);
    const double side =
        std::max(kLargestSide / std::sqrt(static_cast<double>(nested.size())), kSmallestSide);
    std::string out;
    std::size_t copied = 0;
    for (const NestedDrawing &drawing : nested) {
        const auto begin = static_cast<std::size_t>(drawing.attribute.value.data() - svg.data());
        out.append(svg.substr(copied, begin - copied)).append(kData).append(kBase64).append(",");
        out += inBase64(enlarged(prepare(drawing.svg), side));
        copied = begin + drawing.attribute.value.size();
    }
    return out.append(svg.substr(copied));
}

} // namespace velarc
