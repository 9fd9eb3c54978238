#pragma once

// Reads JSON of hostile bytes token by token and builds nothing of it.
//
// Time in proportion to the length, whatever the shape; memory for the depth alone. Numbers stay as
// they were written, so none is too large. Any thread.

#include "base/json.h"

#include <bitset>
#include <cstdint>

namespace velarc {

struct JsonToken
{
    enum class Kind : std::uint8_t
    {
        ObjectStart,
        ObjectEnd,
        ArrayStart,
        ArrayEnd,
        Key,
        String,
        Number,
        Boolean,
        Null,
        End
    };

    Kind kind = Kind::End;
    QByteArrayView raw; // as it was written; of keys and strings what stands between the quotes
};

class JsonTokens
{
public:
    // `utf8` must outlive the tokens. Errors: JsonError for invalid UTF-8.
    explicit JsonTokens(QByteArrayView utf8, std::stop_token stop = {});

    // The next token; End behind the last.
    //
    // Stop:   asked about as it goes; CancellationError.
    // Errors: JsonError for malformed JSON, trailing text, and nesting beyond kMaxJsonDepth. It
    //         names the byte and quotes nothing.
    [[nodiscard]] JsonToken next();

private:
    enum class Expected : std::uint8_t
    {
        Value,
        ElementOrEnd,
        KeyOrEnd,
        CommaOrEnd,
        Nothing
    };

    const char *m_begin;
    const char *m_at;
    const char *m_end;
    std::bitset<kMaxJsonDepth> m_isObject; // of what is open, outermost first
    std::size_t m_depth = 0;
    Expected m_expected = Expected::Value;
    std::stop_token m_stop;
    unsigned m_tokens = 0;

    [[noreturn]] void fail(const char *what) const;
    [[nodiscard]] char peek() const { return m_at == m_end ? '\0' : *m_at; }
    void skipSpace();
    void require(char character);
    [[nodiscard]] QByteArrayView quoted();
    void skipEscape();
    void skipDigits();
    JsonToken key();
    JsonToken value();
    JsonToken scalar(JsonToken::Kind kind, QByteArrayView raw);
    JsonToken number();
    JsonToken literal(QByteArrayView word, JsonToken::Kind kind);
    JsonToken open(JsonToken::Kind kind);
    JsonToken close();
    JsonToken afterComma();
};

// An escape in a string: the character that it stands for and how many bytes of the text it takes.
struct JsonEscape
{
    char32_t character = 0; // half of a pair where the other half is missing
    qsizetype length = 0;
};

// The escape that begins with the backslash at `at` of a token's raw text.
[[nodiscard]] JsonEscape jsonEscapeAt(QByteArrayView raw, qsizetype at);

// Appends `character` in UTF-8; half of a pair becomes U+FFFD.
void appendUtf8(QByteArray &utf8, char32_t character);

// What the raw text of a key or a string stands for, in UTF-8.
[[nodiscard]] QByteArray unescapedJson(QByteArrayView raw);

} // namespace velarc
