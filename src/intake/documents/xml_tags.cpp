#include "intake/documents/xml_tags.h"

namespace velarc {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEndsOfName = " \t\r\n=/><\"'";

} // namespace

std::string_view XmlTag::prefix() const
{
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon + 1);
}

std::string_view XmlTag::localName() const
{
    return name.substr(prefix().size());
}

std::optional<std::string_view> XmlTag::attribute(std::string_view called) const
{
    for (const XmlAttribute &attribute : attributes) {
        if (attribute.name == called) {
            return attribute.value;
        }
    }
    return std::nullopt;
}

std::optional<XmlTag> XmlTagReader::next()
{
    for (;;) {
        m_at = m_xml.find('<', m_at);
        if (m_at == std::string_view::npos) {
            m_at = m_xml.size();
            return std::nullopt;
        }
        bool isOver = true;
        if (looksAt("<!--")) {
            m_at += 4;
            isOver = stepBehind("-->");
        } else if (looksAt("<![CDATA[")) {
            isOver = stepBehind("]]>");
        } else if (looksAt("<?")) {
            isOver = stepBehind("?>");
        } else if (looksAt("<!")) {
            isOver = stepOverDeclaration();
        } else {
            return takeTag();
        }
        if (!isOver) {
            return std::nullopt;
        }
    }
}

bool XmlTagReader::looksAt(std::string_view start) const
{
    return m_xml.substr(m_at, start.size()) == start;
}

bool XmlTagReader::stepBehind(std::string_view end)
{
    const std::size_t found = m_xml.find(end, m_at);
    m_at = found == std::string_view::npos ? m_xml.size() : found + end.size();
    return found != std::string_view::npos;
}

// A document type may hold declarations of its own in brackets, and those '>' in quotes.
bool XmlTagReader::stepOverDeclaration()
{
    int depth = 0;
    while (m_at < m_xml.size()) {
        if (looksAt("<!--")) {
            m_at += 4;
            stepBehind("-->");
            continue;
        }
        if (looksAt("<?")) {
            stepBehind("?>");
            continue;
        }
        const char here = m_xml[m_at++];
        if (here == '"' || here == '\'') {
            stepBehind(std::string_view(&here, 1));
        } else if (here == '<') {
            ++depth;
        } else if (here == '>' && --depth == 0) {
            return true;
        }
    }
    return false;
}

bool XmlTagReader::stepOverBlanks()
{
    m_at = m_xml.find_first_not_of(kBlanks, m_at);
    m_at = m_at == std::string_view::npos ? m_xml.size() : m_at;
    return m_at < m_xml.size();
}

std::string_view XmlTagReader::takeName()
{
    const std::size_t begin = m_at;
    m_at = m_xml.find_first_of(kEndsOfName, m_at);
    m_at = m_at == std::string_view::npos ? m_xml.size() : m_at;
    return m_xml.substr(begin, m_at - begin);
}

bool XmlTagReader::takeAttribute(XmlTag &tag)
{
    XmlAttribute attribute;
    const std::size_t begin = m_at;
    attribute.name = takeName();
    if (attribute.name.empty() || !stepOverBlanks() || m_xml[m_at] != '=') {
        return false;
    }
    ++m_at;
    if (!stepOverBlanks() || (m_xml[m_at] != '"' && m_xml[m_at] != '\'')) {
        return false;
    }
    const char quote = m_xml[m_at++];
    const std::size_t value = m_at;
    if (!stepBehind(std::string_view(&quote, 1))) {
        return false;
    }
    attribute.value = m_xml.substr(value, m_at - 1 - value);
    attribute.whole = m_xml.substr(begin, m_at - begin);
    tag.attributes.push_back(attribute);
    return true;
}

std::optional<XmlTag> XmlTagReader::takeTag()
{
    XmlTag tag;
    tag.begin = m_at++;
    if (m_at < m_xml.size() && m_xml[m_at] == '/') {
        tag.kind = XmlTag::Kind::End;
        ++m_at;
    }
    tag.name = takeName();
    while (stepOverBlanks() && m_xml[m_at] != '>') {
        if (looksAt("/>")) {
            tag.kind = XmlTag::Kind::Empty;
            ++m_at;
        } else if (!takeAttribute(tag)) {
            return std::nullopt;
        }
    }
    if (m_at == m_xml.size()) {
        return std::nullopt;
    }
    tag.end = ++m_at;
    return tag;
}

} // namespace velarc
