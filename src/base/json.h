#pragma once

// JSON as this program reads and writes it, over nlohmann's library.
//
// Keys keep their order. Bytes from outside are hostile: reading costs time in proportion to their
// length, whatever their shape, and nests at most kMaxJsonDepth deep. Any thread.

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QUuid>

#include <nlohmann/json.hpp>

#include <optional>
#include <stdexcept>
#include <stop_token>

namespace velarc {

using Json = nlohmann::ordered_json;

// Arrays and objects nested deeper are malformed.
inline constexpr int kMaxJsonDepth = 512;

// A text that is no JSON, or JSON that is not what a record needs. The text tells developers what
// is wrong; it is shown to nobody.
class JsonError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Reads one document of UTF-8. Of two equal keys the later value stands, in the earlier's place.
//
// Stop:   asked about as it goes; CancellationError.
// Errors: JsonError for malformed JSON, invalid UTF-8, trailing text and too deep nesting.
[[nodiscard]] Json parseJson(QByteArrayView utf8, std::stop_token stop = {});

// Writes `value` in its shortest form.
[[nodiscard]] QByteArray writeJson(const Json &value);

[[nodiscard]] QString jsonText(const Json &string); // of a string value
[[nodiscard]] Json jsonFromText(QStringView text);

// Reads the fields of one JSON object: strict about types, tolerant of absence.
//
// A missing key and a null read as none; a value of the wrong type throws JsonError. The object
// must outlive the reader. Looking a key up costs time in proportion to the object's keys.
class ObjectReader
{
public:
    // Throws JsonError if `value` is no object.
    explicit ObjectReader(const Json &value);

    // The value under `key`, or nullptr.
    [[nodiscard]] const Json *find(const char *key) const;

    [[nodiscard]] std::optional<QString> text(const char *key) const;
    [[nodiscard]] std::optional<bool> boolean(const char *key) const;

    // 3 and 3.0 are the integer 3; 3.5, 1e300 and true are none.
    [[nodiscard]] std::optional<qint64> integer(const char *key) const;

    [[nodiscard]] std::optional<double> number(const char *key) const;
    [[nodiscard]] std::optional<QUuid> uuid(const char *key) const;

    // As decodeElement does for each element of an array.
    template <typename Decode>
    [[nodiscard]] auto list(const char *key, Decode decodeElement) const
        -> std::optional<QList<decltype(decodeElement(std::declval<const Json &>()))>>;

    // For fields that must be there: throws JsonError for none.
    template <typename Value>
    [[nodiscard]] static Value required(std::optional<Value> value, const char *key);

private:
    const Json &m_object;
};

// Decoders of single values; each throws JsonError for the wrong type.
[[nodiscard]] QString decodeText(const Json &value);
[[nodiscard]] bool decodeBoolean(const Json &value);
[[nodiscard]] qint64 decodeInteger(const Json &value);
[[nodiscard]] double decodeNumber(const Json &value);
[[nodiscard]] QUuid decodeUuid(const Json &value);

template <typename Decode>
auto ObjectReader::list(const char *key, Decode decodeElement) const
    -> std::optional<QList<decltype(decodeElement(std::declval<const Json &>()))>>
{
    const Json *found = find(key);
    if (found == nullptr) {
        return std::nullopt;
    }
    if (!found->is_array()) {
        throw JsonError(std::string(key) + " is no array");
    }
    QList<decltype(decodeElement(std::declval<const Json &>()))> elements;
    elements.reserve(static_cast<qsizetype>(found->size()));
    for (const Json &element : *found) {
        elements.append(decodeElement(element));
    }
    return elements;
}

template <typename Value> Value ObjectReader::required(std::optional<Value> value, const char *key)
{
    if (!value) {
        throw JsonError(std::string(key) + " is missing");
    }
    return *std::move(value);
}

} // namespace velarc
