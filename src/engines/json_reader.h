#pragma once

// Reads the wanted fields of a JSON document of hostile bytes into records, in one pass.
//
// A record tells its fields once:
//
//     void readJson(JsonReader &reader, Usage &usage)
//     {
//         reader.object(field("input", usage.input), field("output", usage.output));
//     }
//
// Strict about types, tolerant of absence: a missing field and a null leave a target in its first
// state, a wrong type throws JsonError, unknown fields are passed over. Of two equal keys the later
// stands. A function as the target reads its value itself, and is not called for a null.
// Any thread.

#include "engines/json_tokens.h"

#include <QList>
#include <QString>

#include <optional>
#include <type_traits>
#include <utility>

namespace velarc {

// A key and where its value goes.
template <typename Target> struct JsonField
{
    QByteArrayView name;
    Target &target;
};

template <typename Target> [[nodiscard]] JsonField<Target> field(const char *name, Target &target)
{
    return {name, target};
}

class JsonReader
{
public:
    // `utf8` must outlive the reader.
    //
    // Stop:   asked about as it goes; CancellationError.
    // Errors: each function throws JsonError for malformed JSON and for a value of another type.
    explicit JsonReader(QByteArrayView utf8, std::stop_token stop = {});

    // Each reads the value that stands next.
    template <typename... Targets> void object(JsonField<Targets>... fields);
    template <typename ReadElement> void array(ReadElement readElement);
    [[nodiscard]] QString text();
    [[nodiscard]] QByteArray utf8(); // of a string
    [[nodiscard]] qint64 integer(); // 3 and 3.0 are the integer 3; 3.5, 1e300 and true are none
    void skip();

private:
    JsonTokens m_tokens;
    JsonToken m_next;

    bool skippedNull();
    JsonToken take(JsonToken::Kind kind);
    [[nodiscard]] QByteArray takeKey(); // a view of the document where nothing is escaped
    template <typename Target> bool readIfNamed(const QByteArray &key, JsonField<Target> field);
};

// One overload for each kind of target; records bring their own.
void readJson(JsonReader &reader, QByteArray &utf8);
void readJson(JsonReader &reader, QString &text);
void readJson(JsonReader &reader, qint64 &integer);

template <typename Value> void readJson(JsonReader &reader, std::optional<Value> &value)
{
    readJson(reader, value.emplace());
}

// Reads a whole document.
template <typename Record>
[[nodiscard]] Record recordFromJson(QByteArrayView utf8, std::stop_token stop)
{
    JsonReader reader(utf8, std::move(stop));
    Record record;
    readJson(reader, record);
    return record;
}

template <typename... Targets> void JsonReader::object(JsonField<Targets>... fields)
{
    take(JsonToken::Kind::ObjectStart);
    while (m_next.kind == JsonToken::Kind::Key) {
        const QByteArray key = takeKey();
        if (!(readIfNamed(key, fields) || ...)) {
            skip();
        }
    }
    take(JsonToken::Kind::ObjectEnd);
}

template <typename ReadElement> void JsonReader::array(ReadElement readElement)
{
    take(JsonToken::Kind::ArrayStart);
    while (m_next.kind != JsonToken::Kind::ArrayEnd) {
        readElement();
    }
    take(JsonToken::Kind::ArrayEnd);
}

template <typename Target>
bool JsonReader::readIfNamed(const QByteArray &key, JsonField<Target> field)
{
    if (key != field.name) {
        return false;
    }
    if constexpr (std::is_invocable_v<Target &>) {
        if (!skippedNull()) {
            field.target();
        }
    } else {
        field.target = Target();
        if (!skippedNull()) {
            readJson(*this, field.target);
        }
    }
    return true;
}

} // namespace velarc
