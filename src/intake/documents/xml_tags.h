#pragma once

// The tags of an XML text as they are written, one after the other.
//
// No parser: entities stay unread, and nothing is checked that does not decide where a tag begins
// and ends. Comments, CDATA sections, processing instructions and the document type are stepped
// over. The views point into the text. Linear in its length.

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace velarc {

struct XmlAttribute
{
    std::string_view name;
    std::string_view value; // between the quotes
    std::string_view whole; // name="value"
};

struct XmlTag
{
    enum class Kind
    {
        Start,
        Empty,
        End
    };

    Kind kind = Kind::Start;
    std::size_t begin = 0; // of '<' in the text
    std::size_t end = 0; // behind '>'
    std::string_view name;
    std::vector<XmlAttribute> attributes;

    [[nodiscard]] std::string_view prefix() const; // with its colon, or ""
    [[nodiscard]] std::string_view localName() const;
    [[nodiscard]] std::optional<std::string_view> attribute(std::string_view called) const;
};

class XmlTagReader
{
public:
    explicit XmlTagReader(std::string_view xml) : m_xml(xml) {}

    // The next tag; none at the end, or where the text breaks off inside of one.
    [[nodiscard]] std::optional<XmlTag> next();

private:
    std::string_view m_xml;
    std::size_t m_at = 0;

    [[nodiscard]] bool looksAt(std::string_view start) const;
    bool stepBehind(std::string_view end);
    bool stepOverDeclaration();
    bool stepOverBlanks();
    [[nodiscard]] std::string_view takeName();
    bool takeAttribute(XmlTag &tag);
    [[nodiscard]] std::optional<XmlTag> takeTag();
};

} // namespace velarc
