#include "system_actions/ical_text.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestLine = 75; // in bytes, by RFC 5545

// The next line with its end; `rest` begins behind it.
QByteArrayView takeLine(QByteArrayView &rest)
{
    const qsizetype feed = rest.indexOf('\n');
    const QByteArrayView line = feed < 0 ? rest : rest.first(feed + 1);
    rest = rest.sliced(line.size());
    return line;
}

QByteArrayView withoutEnd(QByteArrayView line)
{
    while (line.endsWith('\n') || line.endsWith('\r')) {
        line.chop(1);
    }
    return line;
}

bool continues(QByteArrayView line)
{
    return line.startsWith(' ') || line.startsWith('\t');
}

// The colon or semicolon that ends what began at `from`, outside quotes; the size if there is none.
qsizetype endOfPart(QByteArrayView line, qsizetype from, QByteArrayView ends)
{
    bool isQuoted = false;
    for (qsizetype at = from; at < line.size(); ++at) {
        isQuoted ^= line[at] == '"';
        if (!isQuoted && ends.contains(line[at])) {
            return at;
        }
    }
    return line.size();
}

IcalProperty propertyOf(const QByteArray &raw, const QByteArray &line)
{
    IcalProperty property{raw, {}, {}, {}};
    const qsizetype nameEnd = endOfPart(line, 0, ";:");
    const qsizetype colon = endOfPart(line, nameEnd, ":");
    if (colon < line.size()) {
        property.name = line.first(nameEnd).trimmed().toUpper();
        property.parameters = line.sliced(nameEnd, colon - nameEnd);
        property.value = line.sliced(colon + 1);
    }
    return property;
}

const IcalProperty *propertyIn(const IcalNode &node, QByteArrayView name)
{
    const auto *property = std::get_if<IcalProperty>(&node.content);
    return property != nullptr && property->name == name ? property : nullptr;
}

// Reads line by line; the components that have not ended yet lie on a stack.
class Reader
{
public:
    Reader() { m_open.emplace_back(); }

    [[nodiscard]] bool take(const QByteArray &raw, const QByteArray &line)
    {
        IcalProperty property = propertyOf(raw, line);
        if (property.name == "BEGIN") {
            return begin(std::move(property));
        }
        if (property.name == "END") {
            return end(property);
        }
        m_open.back().nodes.push_back({std::move(property)});
        return true;
    }

    [[nodiscard]] std::optional<IcalComponent> finish()
    {
        if (m_open.size() != 1 || !m_hasComponents) {
            return std::nullopt;
        }
        return std::move(m_open.front());
    }

private:
    std::vector<IcalComponent> m_open;
    bool m_hasComponents = false;

    [[nodiscard]] bool begin(IcalProperty property)
    {
        m_open.push_back({property.value.trimmed().toUpper(), std::move(property.raw), {}, {}});
        m_hasComponents = true;
        return m_open.size() <= kMaxIcalDepth + 1;
    }

    [[nodiscard]] bool end(const IcalProperty &property)
    {
        if (m_open.size() == 1 || m_open.back().name != property.value.trimmed().toUpper()) {
            return false;
        }
        IcalComponent ended = std::move(m_open.back());
        m_open.pop_back();
        ended.end = property.raw;
        m_open.back().nodes.push_back({std::move(ended)});
        return true;
    }
};

void append(QByteArray &bytes, const IcalComponent &component)
{
    bytes += component.begin;
    for (const IcalNode &node : component.nodes) {
        if (const auto *property = std::get_if<IcalProperty>(&node.content)) {
            bytes += property->raw;
        } else {
            append(bytes, std::get<IcalComponent>(node.content));
        }
    }
    bytes += component.end;
}

// A new line ends as the one that begins its component.
void takeLineEnds(IcalProperty &property, const QByteArray &begin)
{
    if (!begin.endsWith("\r\n")) {
        property.raw.replace("\r\n", "\n");
    }
}

QByteArray folded(QByteArrayView line)
{
    QByteArray lines;
    qsizetype room = kLongestLine;
    while (line.size() > room) {
        qsizetype cut = room;
        while (cut > 1 && (static_cast<unsigned char>(line[cut]) & 0xC0U) == 0x80U) {
            --cut; // not inside a character
        }
        lines += line.first(cut);
        lines += "\r\n ";
        line = line.sliced(cut);
        room = kLongestLine - 1;
    }
    lines += line;
    return lines + "\r\n";
}

} // namespace

std::optional<QByteArray> IcalProperty::parameter(QByteArrayView capitals) const
{
    for (qsizetype at = 0; at < parameters.size();) {
        const qsizetype end = endOfPart(parameters, at + 1, ";");
        const QByteArray part = parameters.sliced(at + 1, end - at - 1);
        at = end;
        const qsizetype equals = part.indexOf('=');
        if (equals < 0 || part.first(equals).trimmed().toUpper() != capitals) {
            continue;
        }
        QByteArray value = part.sliced(equals + 1);
        value.truncate(endOfPart(value, 0, ","));
        value = value.trimmed();
        const bool isQuoted = value.size() > 1 && value.startsWith('"') && value.endsWith('"');
        return isQuoted ? value.sliced(1, value.size() - 2) : value;
    }
    return std::nullopt;
}

const IcalProperty *IcalComponent::find(QByteArrayView capitals) const
{
    for (const IcalNode &node : nodes) {
        if (const IcalProperty *property = propertyIn(node, capitals)) {
            return property;
        }
    }
    return nullptr;
}

std::vector<const IcalProperty *> IcalComponent::all(QByteArrayView capitals) const
{
    std::vector<const IcalProperty *> found;
    for (const IcalNode &node : nodes) {
        if (const IcalProperty *property = propertyIn(node, capitals)) {
            found.push_back(property);
        }
    }
    return found;
}

std::vector<const IcalComponent *> IcalComponent::components(QByteArrayView capitals) const
{
    std::vector<const IcalComponent *> found;
    for (const IcalNode &node : nodes) {
        const auto *component = std::get_if<IcalComponent>(&node.content);
        if (component != nullptr && component->name == capitals) {
            found.push_back(component);
        }
    }
    return found;
}

void IcalComponent::set(IcalProperty property)
{
    takeLineEnds(property, begin);
    const auto isSame = [name = property.name](
                            const IcalNode &node) { return propertyIn(node, name) != nullptr; };
    const auto first = std::find_if(nodes.begin(), nodes.end(), isSame);
    if (first == nodes.end()) {
        add(std::move(property));
        return;
    }
    first->content = std::move(property);
    nodes.erase(std::remove_if(first + 1, nodes.end(), isSame), nodes.end());
}

void IcalComponent::add(IcalProperty property)
{
    takeLineEnds(property, begin);
    const auto isProperty = [](const IcalNode &node) {
        return std::holds_alternative<IcalProperty>(node.content);
    };
    const auto isSame = [&name = property.name](
                            const IcalNode &node) { return propertyIn(node, name) != nullptr; };
    auto last = std::find_if(nodes.rbegin(), nodes.rend(), isSame);
    if (last == nodes.rend()) {
        last = std::find_if(nodes.rbegin(), nodes.rend(), isProperty);
    }
    nodes.insert(last.base(), IcalNode{std::move(property)});
}

void IcalComponent::removeAll(QByteArrayView capitals)
{
    std::erase_if(
        nodes, [&](const IcalNode &node) { return propertyIn(node, capitals) != nullptr; });
}

std::optional<IcalComponent> readIcal(QByteArrayView bytes)
{
    constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
    if (bytes.size() > kMaxIcalBytes || bytes.contains('\0')) {
        return std::nullopt;
    }
    Reader reader;
    QByteArrayView rest = bytes;
    for (int lines = 0; !rest.isEmpty(); ++lines) {
        QByteArrayView part = takeLine(rest);
        QByteArray raw = part.toByteArray();
        if (lines == 0 && part.startsWith(kByteOrderMark)) {
            part = part.sliced(kByteOrderMark.size());
        }
        QByteArray line = withoutEnd(part).toByteArray();
        while (continues(rest) && lines <= kMaxIcalLines) {
            part = takeLine(rest);
            raw += part;
            line += withoutEnd(part).sliced(1);
            ++lines;
        }
        if (lines > kMaxIcalLines || !reader.take(raw, line)) {
            return std::nullopt;
        }
    }
    return reader.finish();
}

QByteArray writeIcal(const IcalComponent &component)
{
    QByteArray bytes;
    append(bytes, component);
    return bytes;
}

IcalProperty icalProperty(
    const QByteArray &name, const QByteArray &parameters, const QByteArray &value)
{
    return {folded(name + parameters + ':' + value), name, parameters, value};
}

QString textOfIcal(QByteArrayView value)
{
    QByteArray text;
    text.reserve(value.size());
    for (qsizetype at = 0; at < value.size(); ++at) {
        if (value[at] != '\\' || at + 1 == value.size()) {
            text += value[at];
            continue;
        }
        const char escaped = value[++at];
        text += escaped == 'n' || escaped == 'N' ? '\n' : escaped;
    }
    return QString::fromUtf8(text);
}

QByteArray icalOfText(const QString &text)
{
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    QByteArray value;
    for (const char byte : lines.toUtf8()) {
        if (byte == '\n') {
            value += "\\n";
        } else if (byte == '\\' || byte == ';' || byte == ',') {
            value += '\\';
            value += byte;
        } else if (static_cast<unsigned char>(byte) >= 0x20 || byte == '\t') {
            value += byte;
        }
    }
    return value;
}

} // namespace velarc
