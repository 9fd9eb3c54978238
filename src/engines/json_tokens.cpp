#include "engines/json_tokens.h"

#include "base/async.h"

#include <array>
#include <string>
#include <utility>

namespace velarc {

namespace {

using Kind = JsonToken::Kind;

// A stop is asked about once in so many tokens.
constexpr unsigned kTokensBetweenStopTests = 4096;

constexpr QByteArrayView kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::size_t kByteValues = 256;
constexpr unsigned char kFirstPrintable = 0x20;
constexpr qsizetype kHexDigits = 4;
constexpr qsizetype kShortEscape = 2; // a backslash and a letter
constexpr qsizetype kLongEscape = 2 + kHexDigits;

constexpr char32_t kFirstHighSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kReplacement = 0xFFFD;

// Whether a byte of a string needs no look.
constexpr std::array<bool, kByteValues> kIsPlain = [] {
    std::array<bool, kByteValues> plain{};
    for (std::size_t byte = kFirstPrintable; byte < kByteValues; ++byte) {
        plain[byte] = byte != '"' && byte != '\\';
    }
    return plain;
}();

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

int hexValue(char character)
{
    if (isDigit(character)) {
        return character - '0';
    }
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool isHighSurrogate(char32_t character)
{
    return character >= kFirstHighSurrogate && character < kFirstLowSurrogate;
}

bool isLowSurrogate(char32_t character)
{
    return character >= kFirstLowSurrogate && character <= kLastSurrogate;
}

char32_t codeUnitAt(QByteArrayView raw, qsizetype firstDigit)
{
    char32_t unit = 0;
    for (const char digit : raw.sliced(firstDigit, kHexDigits)) {
        unit = unit * 16 + static_cast<char32_t>(hexValue(digit));
    }
    return unit;
}

char shortEscape(char letter)
{
    switch (letter) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return letter; // a quote, a backslash or a slash
    }
}

} // namespace

JsonTokens::JsonTokens(QByteArrayView utf8, std::stop_token stop)
    : m_begin(utf8.data()), m_at(m_begin), m_end(m_begin + utf8.size()), m_stop(std::move(stop))
{
    if (!utf8.isValidUtf8()) {
        throw JsonError("JSON that is not UTF-8");
    }
    if (utf8.startsWith(kByteOrderMark)) {
        m_at += kByteOrderMark.size();
    }
}

JsonToken JsonTokens::next()
{
    if (++m_tokens % kTokensBetweenStopTests == 0) {
        throwIfStopped(m_stop);
    }
    skipSpace();
    switch (m_expected) {
    case Expected::Value:
        return value();
    case Expected::ElementOrEnd:
        return peek() == ']' ? close() : value();
    case Expected::KeyOrEnd:
        return peek() == '}' ? close() : key();
    case Expected::CommaOrEnd:
        return peek() == ',' ? afterComma() : close();
    case Expected::Nothing:
        break;
    }
    if (m_at != m_end) {
        fail("text behind the value");
    }
    return JsonToken{Kind::End, {}};
}

void JsonTokens::fail(const char *what) const
{
    throw JsonError("malformed JSON at byte " + std::to_string(m_at - m_begin) + ": " + what);
}

void JsonTokens::skipSpace()
{
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t')) {
        ++m_at;
    }
}

void JsonTokens::require(char character)
{
    if (m_at == m_end || *m_at != character) {
        const std::string what = std::string("expected ") + character;
        fail(what.c_str());
    }
    ++m_at;
}

QByteArrayView JsonTokens::quoted()
{
    require('"');
    const char *begin = m_at;
    for (;;) {
        while (m_at != m_end && kIsPlain[static_cast<unsigned char>(*m_at)]) {
            ++m_at;
        }
        if (peek() != '\\') {
            break;
        }
        skipEscape();
    }
    const QByteArrayView raw(begin, m_at);
    require('"');
    return raw;
}

void JsonTokens::skipEscape()
{
    constexpr QByteArrayView kLetters = "\"\\/bfnrt";
    require('\\');
    if (peek() != 'u') {
        if (m_at == m_end || !kLetters.contains(*m_at)) {
            fail("unknown escape");
        }
        ++m_at;
        return;
    }
    ++m_at;
    for (qsizetype digit = 0; digit < kHexDigits; ++digit) {
        if (hexValue(peek()) < 0) {
            fail("expected a hexadecimal digit");
        }
        ++m_at;
    }
}

void JsonTokens::skipDigits()
{
    if (!isDigit(peek())) {
        fail("expected a digit");
    }
    while (isDigit(peek())) {
        ++m_at;
    }
}

JsonToken JsonTokens::key()
{
    const QByteArrayView raw = quoted();
    skipSpace();
    require(':');
    m_expected = Expected::Value;
    return JsonToken{Kind::Key, raw};
}

JsonToken JsonTokens::value()
{
    switch (peek()) {
    case '{':
        return open(Kind::ObjectStart);
    case '[':
        return open(Kind::ArrayStart);
    case '"':
        return scalar(Kind::String, quoted());
    case 't':
        return literal("true", Kind::Boolean);
    case 'f':
        return literal("false", Kind::Boolean);
    case 'n':
        return literal("null", Kind::Null);
    default:
        return number();
    }
}

JsonToken JsonTokens::scalar(Kind kind, QByteArrayView raw)
{
    m_expected = m_depth == 0 ? Expected::Nothing : Expected::CommaOrEnd;
    return JsonToken{kind, raw};
}

JsonToken JsonTokens::number()
{
    const char *begin = m_at;
    if (peek() == '-') {
        ++m_at;
    } else if (!isDigit(peek())) {
        fail("expected a value");
    }
    if (peek() == '0') {
        ++m_at;
    } else {
        skipDigits();
    }
    if (peek() == '.') {
        ++m_at;
        skipDigits();
    }
    if (peek() == 'e' || peek() == 'E') {
        ++m_at;
        if (peek() == '+' || peek() == '-') {
            ++m_at;
        }
        skipDigits();
    }
    return scalar(Kind::Number, QByteArrayView(begin, m_at));
}

JsonToken JsonTokens::literal(QByteArrayView word, Kind kind)
{
    if (!QByteArrayView(m_at, m_end).startsWith(word)) {
        fail("unknown word");
    }
    m_at += word.size();
    return scalar(kind, word);
}

JsonToken JsonTokens::open(Kind kind)
{
    if (m_depth == kMaxJsonDepth) {
        fail("nested too deeply");
    }
    m_isObject[m_depth] = kind == Kind::ObjectStart;
    m_expected = m_isObject[m_depth] ? Expected::KeyOrEnd : Expected::ElementOrEnd;
    ++m_depth;
    ++m_at;
    return JsonToken{kind, QByteArrayView(m_at - 1, 1)};
}

JsonToken JsonTokens::close()
{
    const bool isObject = m_isObject[m_depth - 1];
    require(isObject ? '}' : ']');
    --m_depth;
    return scalar(isObject ? Kind::ObjectEnd : Kind::ArrayEnd, QByteArrayView(m_at - 1, 1));
}

JsonToken JsonTokens::afterComma()
{
    ++m_at;
    skipSpace();
    return m_isObject[m_depth - 1] ? key() : value();
}

JsonEscape jsonEscapeAt(QByteArrayView raw, qsizetype at)
{
    if (raw[at + 1] != 'u') {
        return {static_cast<unsigned char>(shortEscape(raw[at + 1])), kShortEscape};
    }
    const char32_t first = codeUnitAt(raw, at + kShortEscape);
    const QByteArrayView rest = raw.sliced(at + kLongEscape);
    if (isHighSurrogate(first) && rest.startsWith("\\u")) {
        const char32_t second = codeUnitAt(rest, kShortEscape);
        if (isLowSurrogate(second)) {
            return {
                QChar::surrogateToUcs4(static_cast<char16_t>(first), static_cast<char16_t>(second)),
                2 * kLongEscape};
        }
    }
    return {first, kLongEscape};
}

void appendUtf8(QByteArray &utf8, char32_t character)
{
    if (character >= kFirstHighSurrogate && character <= kLastSurrogate) {
        character = kReplacement;
    }
    const auto append = [&utf8](char32_t bits) {
        utf8 += static_cast<char>(static_cast<unsigned char>(bits));
    };
    const auto appendRest = [&](int shift) { append(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        appendRest(0);
    } else if (character < 0x10000) {
        append(0xE0 | (character >> 12));
        appendRest(6);
        appendRest(0);
    } else {
        append(0xF0 | (character >> 18));
        appendRest(12);
        appendRest(6);
        appendRest(0);
    }
}

QByteArray unescapedJson(QByteArrayView raw)
{
    qsizetype backslash = raw.indexOf('\\');
    if (backslash < 0) {
        return raw.toByteArray();
    }
    QByteArray text;
    text.reserve(raw.size());
    qsizetype from = 0;
    while (backslash >= 0) {
        text += raw.sliced(from, backslash - from);
        const JsonEscape escape = jsonEscapeAt(raw, backslash);
        appendUtf8(text, escape.character);
        from = backslash + escape.length;
        backslash = raw.indexOf('\\', from);
    }
    text += raw.sliced(from);
    return text;
}

} // namespace velarc
