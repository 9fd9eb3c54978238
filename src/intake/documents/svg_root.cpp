#include "intake/documents/svg_root.h"

#include "intake/documents/xml_tags.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace velarc {

namespace {

using Attributes = std::vector<std::pair<std::string_view, std::string>>;

std::optional<XmlTag> rootOf(std::string_view svg)
{
    auto root = XmlTagReader(svg).next();
    return root && root->localName() == "svg" ? root : std::nullopt;
}

// The text with each of `set` on the root, in the place of an attribute of that name.
std::string withAttributes(std::string_view svg, const XmlTag &root, const Attributes &set)
{
    std::string out(svg.substr(0, root.begin));
    out.append("<").append(root.name);
    for (const auto &[name, value] : set) {
        out.append(" ").append(name).append("=\"").append(value).append("\"");
    }
    for (const XmlAttribute &attribute : root.attributes) {
        const bool isReplaced = std::any_of(set.begin(), set.end(),
            [&](const auto &replacement) { return replacement.first == attribute.name; });
        if (!isReplaced) {
            out.append(" ").append(attribute.whole);
        }
    }
    out += root.kind == XmlTag::Kind::Empty ? "/>" : ">";
    return out.append(svg.substr(root.end));
}

// With a point in every locale.
std::string numberText(double number)
{
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
    return g_ascii_dtostr(text.data(), static_cast<int>(text.size()), number);
}

} // namespace

std::string withRootOfABrowser(std::string_view svg)
{
    const auto root = rootOf(svg);
    if (!root) {
        return std::string(svg);
    }
    Attributes set;
    if (!root->attribute("font-size")) {
        set.emplace_back("font-size", "16px"); // weaker than any style
    }
    if (!root->attribute("viewBox")) {
        set.emplace_back("preserveAspectRatio", "none");
    }
    return withAttributes(svg, *root, set);
}

std::string withRootOfSize(std::string_view svg, const DrawingSize &own, const DrawingSize &shown)
{
    const auto root = rootOf(svg);
    if (!root) {
        return std::string(svg);
    }
    Attributes set{{"width", numberText(shown.width)}, {"height", numberText(shown.height)}};
    if (!root->attribute("viewBox")) {
        set.emplace_back("viewBox", "0 0 " + numberText(own.width) + ' ' + numberText(own.height));
    }
    return withAttributes(svg, *root, set);
}

} // namespace velarc
