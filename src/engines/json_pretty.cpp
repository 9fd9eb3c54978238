#include "engines/json_pretty.h"

#include "engines/json_tokens.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kIndentation = 2;
constexpr char32_t kFirstPrintable = 0x20;
constexpr char32_t kDelete = 0x7F;

// Whether an escaped character says more as it was written.
bool staysEscaped(char32_t character)
{
    return character < kFirstPrintable || character == kDelete || character == '"'
        || character == '\\' || QChar::isSurrogate(character);
}

class Printer
{
public:
    explicit Printer(qsizetype bytes) { m_text.reserve(bytes + bytes / 4); }

    void add(const JsonToken &token)
    {
        switch (token.kind) {
        case JsonToken::Kind::ObjectStart:
        case JsonToken::Kind::ArrayStart:
            beginValue();
            m_text += token.raw;
            ++m_depth;
            m_isFirst = true;
            return;
        case JsonToken::Kind::ObjectEnd:
        case JsonToken::Kind::ArrayEnd:
            --m_depth;
            if (!m_isFirst) {
                beginLine();
            }
            m_text += token.raw;
            m_isFirst = false;
            return;
        case JsonToken::Kind::Key:
            beginElement();
            addString(token.raw);
            m_text += ": ";
            m_followsKey = true;
            return;
        case JsonToken::Kind::String:
            beginValue();
            addString(token.raw);
            return;
        case JsonToken::Kind::Number:
        case JsonToken::Kind::Boolean:
        case JsonToken::Kind::Null:
            beginValue();
            m_text += token.raw;
            return;
        case JsonToken::Kind::End:
            return;
        }
    }

    [[nodiscard]] QString text() const { return QString::fromUtf8(m_text); }

private:
    QByteArray m_text;
    qsizetype m_depth = 0;
    qsizetype m_indentation = 0; // bytes of it so far
    bool m_isFirst = false; // of its object or array
    bool m_followsKey = false;

    void beginValue()
    {
        if (!std::exchange(m_followsKey, false) && m_depth > 0) {
            beginElement();
        }
    }

    void beginElement()
    {
        if (!std::exchange(m_isFirst, false)) {
            m_text += ',';
        }
        beginLine();
    }

    void beginLine()
    {
        const qsizetype indentation = m_depth * kIndentation;
        m_indentation += indentation;
        if (m_indentation > kMaxIndentationBytes) {
            throw JsonError("too many blanks to print");
        }
        m_text += '\n';
        m_text.resize(m_text.size() + indentation, ' ');
    }

    void addString(QByteArrayView raw)
    {
        m_text += '"';
        qsizetype from = 0;
        qsizetype backslash = raw.indexOf('\\');
        while (backslash >= 0) {
            m_text += raw.sliced(from, backslash - from);
            const JsonEscape escape = jsonEscapeAt(raw, backslash);
            from = backslash + escape.length;
            if (staysEscaped(escape.character)) {
                m_text += raw.sliced(backslash, escape.length);
            } else {
                appendUtf8(m_text, escape.character);
            }
            backslash = raw.indexOf('\\', from);
        }
        m_text += raw.sliced(from);
        m_text += '"';
    }
};

bool opens(const JsonToken &token)
{
    return token.kind == JsonToken::Kind::ObjectStart || token.kind == JsonToken::Kind::ArrayStart;
}

QString printed(QByteArrayView utf8, std::stop_token stop)
{
    JsonTokens tokens(utf8, std::move(stop));
    JsonToken token = tokens.next();
    if (!opens(token)) {
        throw JsonError("neither an object nor an array");
    }
    Printer printer(utf8.size());
    while (token.kind != JsonToken::Kind::End) {
        printer.add(token);
        token = tokens.next();
    }
    return printer.text();
}

} // namespace

QString prettyJSONText(const std::optional<QByteArray> &data, std::stop_token stop)
{
    if (!data) {
        return u"<empty body>"_s;
    }
    try {
        return printed(*data, std::move(stop));
    } catch (const JsonError &) {
        return data->isValidUtf8() ? QString::fromUtf8(*data) : u"<non-utf8 body>"_s;
    }
}

} // namespace velarc
