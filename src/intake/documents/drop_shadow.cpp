#include "intake/documents/drop_shadow.h"

#include "intake/documents/xml_tags.h"

#include <algorithm>
#include <array>

namespace velarc {

namespace {

constexpr std::string_view kElement = "feDropShadow";

// What says something about each primitive: its region, its colour space, its names' meaning.
constexpr std::array<std::string_view, 7> kOfAll{
    "x", "y", "width", "height", "color-interpolation-filters", "style", "class"};

// What is written anew, and so not handed on as it stands.
constexpr std::array<std::string_view, 5> kRewritten{"in", "result", "dx", "dy", "stdDeviation"};

template <typename Names> bool holds(const Names &names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

class Shadow
{
public:
    Shadow(const XmlTag &tag, std::size_t number)
        : m_tag(tag)
        , m_source("velarc-shadow-" + std::to_string(number) + "-source")
        , m_shape("velarc-shadow-" + std::to_string(number) + "-shape")
        , m_paint("velarc-shadow-" + std::to_string(number) + "-paint")
    {
        sortAttributes();
    }

    // The first primitive gives the input a name, since "what came before" has none.
    [[nodiscard]] std::string spelledOut()
    {
        put("feOffset", written("in") + " dx=\"0\" dy=\"0\"" + result(m_source));
        put("feGaussianBlur", in(m_source) + written("stdDeviation", "2"));
        put("feOffset", written("dx", "2") + written("dy", "2") + result(m_shape));
        put("feFlood", m_ofFlood + result(m_paint));
        put("feComposite",
            in(m_paint) + " in2=\"" + m_shape + "\" operator=\"in\"" + result(m_paint));
        open("feMerge", written("result"));
        m_out += '>';
        open("feMergeNode", in(m_paint), Common::Left);
        m_out += "/>";
        open("feMergeNode", in(m_source), Common::Left);
        m_out += "/></";
        m_out.append(m_tag.prefix()).append("feMerge>");
        return std::move(m_out);
    }

private:
    enum class Common
    {
        Given,
        Left
    };

    const XmlTag &m_tag;
    std::string m_source;
    std::string m_shape;
    std::string m_paint;
    std::string m_namespaces;
    std::string m_ofAll;
    std::string m_ofFlood;
    std::string m_out;

    void sortAttributes()
    {
        for (const XmlAttribute &attribute : m_tag.attributes) {
            const bool isNamespace =
                attribute.name == "xmlns" || attribute.name.substr(0, 6) == "xmlns:";
            if (!holds(kRewritten, attribute.name)) {
                std::string &group = isNamespace    ? m_namespaces
                    : holds(kOfAll, attribute.name) ? m_ofAll
                                                    : m_ofFlood;
                group.append(" ").append(attribute.whole);
            }
        }
    }

    // The attribute as it is written in the tag, else with `fallback`, else not at all.
    [[nodiscard]] std::string written(std::string_view name, std::string_view fallback = {}) const
    {
        for (const XmlAttribute &attribute : m_tag.attributes) {
            if (attribute.name == name) {
                return ' ' + std::string(attribute.whole);
            }
        }
        if (fallback.empty()) {
            return {};
        }
        return ' ' + std::string(name) + "=\"" + std::string(fallback) + '"';
    }

    [[nodiscard]] static std::string in(const std::string &name) { return " in=\"" + name + '"'; }
    [[nodiscard]] static std::string result(const std::string &name)
    {
        return " result=\"" + name + '"';
    }

    void open(
        std::string_view element, const std::string &attributes, Common common = Common::Given)
    {
        m_out.append("<").append(m_tag.prefix()).append(element).append(m_namespaces);
        if (common == Common::Given) {
            m_out += m_ofAll;
        }
        m_out += attributes;
    }

    void put(std::string_view element, const std::string &attributes)
    {
        open(element, attributes);
        m_out += "/>";
    }
};

// Where the element ends that `start` begins; what stands inside, such as an animation, goes.
std::size_t endOf(const XmlTag &start, XmlTagReader &tags)
{
    std::size_t end = start.end;
    bool isOpen = start.kind == XmlTag::Kind::Start;
    while (isOpen) {
        const auto tag = tags.next();
        if (!tag) {
            break;
        }
        end = tag->end;
        isOpen = tag->kind != XmlTag::Kind::End || tag->name != start.name;
    }
    return end;
}

} // namespace

std::string withShadowsSpelledOut(std::string_view svg)
{
    if (svg.find(kElement) == std::string_view::npos) {
        return std::string(svg);
    }
    std::string out;
    std::size_t copied = 0;
    std::size_t number = 0;
    XmlTagReader tags(svg);
    while (const auto tag = tags.next()) {
        if (tag->localName() == kElement && tag->kind != XmlTag::Kind::End) {
            out.append(svg.substr(copied, tag->begin - copied));
            out += Shadow(*tag, ++number).spelledOut();
            copied = endOf(*tag, tags);
        }
    }
    return out.append(svg.substr(copied));
}

} // namespace velarc
