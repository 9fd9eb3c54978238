#include "engines/json_reader.h"

#include <charconv>
#include <cmath>
#include <string>

namespace velarc {

namespace {

const char *nameOf(JsonToken::Kind kind)
{
    switch (kind) {
    case JsonToken::Kind::ObjectStart:
        return "an object";
    case JsonToken::Kind::ArrayStart:
        return "an array";
    case JsonToken::Kind::Key:
        return "a key";
    case JsonToken::Kind::String:
        return "a string";
    case JsonToken::Kind::Number:
        return "a number";
    case JsonToken::Kind::Boolean:
        return "a boolean";
    case JsonToken::Kind::Null:
        return "null";
    case JsonToken::Kind::ObjectEnd:
    case JsonToken::Kind::ArrayEnd:
    case JsonToken::Kind::End:
        break;
    }
    return "an end";
}

template <typename Number> std::optional<Number> wholeNumber(QByteArrayView raw)
{
    Number number{};
    const auto [end, error] = std::from_chars(raw.begin(), raw.end(), number);
    return error == std::errc() && end == raw.end() ? std::optional(number) : std::nullopt;
}

// What `raw` stands for: a view of the document where nothing is escaped.
QByteArray plainText(QByteArrayView raw)
{
    return raw.contains('\\') ? unescapedJson(raw)
                              : QByteArray::fromRawData(raw.data(), raw.size());
}

} // namespace

JsonReader::JsonReader(QByteArrayView utf8, std::stop_token stop)
    : m_tokens(utf8, std::move(stop)), m_next(m_tokens.next())
{
}

QByteArray JsonReader::utf8()
{
    return unescapedJson(take(JsonToken::Kind::String).raw);
}

QString JsonReader::text()
{
    return QString::fromUtf8(plainText(take(JsonToken::Kind::String).raw));
}

qint64 JsonReader::integer()
{
    const QByteArrayView raw = take(JsonToken::Kind::Number).raw;
    if (const auto integer = wholeNumber<qint64>(raw)) {
        return *integer;
    }
    // The least integer itself is out: those just below it round to the same number.
    constexpr double kTwoTo63 = 9223372036854775808.0;
    const auto number = wholeNumber<double>(raw);
    if (!number || !(std::abs(*number) < kTwoTo63) || std::trunc(*number) != *number) {
        throw JsonError("expected an integer, found another number");
    }
    return static_cast<qint64>(*number);
}

void JsonReader::skip()
{
    int open = 0;
    do {
        switch (m_next.kind) {
        case JsonToken::Kind::ObjectStart:
        case JsonToken::Kind::ArrayStart:
            ++open;
            break;
        case JsonToken::Kind::ObjectEnd:
        case JsonToken::Kind::ArrayEnd:
            --open;
            break;
        case JsonToken::Kind::Key:
        case JsonToken::Kind::String:
        case JsonToken::Kind::Number:
        case JsonToken::Kind::Boolean:
        case JsonToken::Kind::Null:
        case JsonToken::Kind::End:
            break;
        }
        m_next = m_tokens.next();
    } while (open > 0);
}

bool JsonReader::skippedNull()
{
    if (m_next.kind != JsonToken::Kind::Null) {
        return false;
    }
    skip();
    return true;
}

JsonToken JsonReader::take(JsonToken::Kind kind)
{
    if (m_next.kind != kind) {
        throw JsonError(std::string("expected ") + nameOf(kind) + ", found " + nameOf(m_next.kind));
    }
    return std::exchange(m_next, m_tokens.next());
}

QByteArray JsonReader::takeKey()
{
    return plainText(take(JsonToken::Kind::Key).raw);
}

void readJson(JsonReader &reader, QByteArray &utf8)
{
    utf8 = reader.utf8();
}

void readJson(JsonReader &reader, QString &text)
{
    text = reader.text();
}

void readJson(JsonReader &reader, qint64 &integer)
{
    integer = reader.integer();
}

} // namespace velarc
