#include "base/json.h"

#include "base/async.h"
#include "base/uuid.h"

#include <cmath>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velarc {

namespace {

// A stop is asked about once in so many values.
constexpr unsigned kValuesBetweenStopTests = 4096;

// Below this many keys comparing each with each is cheaper than hashing.
constexpr std::size_t kFewKeys = 32;

// An object's members while they are read. The library's own container keeps its keys constant, so
// that growing it copies every value below it.
using Members = std::vector<std::pair<std::string, Json>>;

// For each member the place of the first one of the same key; a few are compared each with each.
class FirstPlaces
{
public:
    explicit FirstPlaces(const Members &members) : m_members(members)
    {
        if (members.size() > kFewKeys) {
            m_places.reserve(members.size());
        }
    }

    std::size_t of(std::size_t index)
    {
        const std::string &key = m_members[index].first;
        if (m_members.size() > kFewKeys) {
            return m_places.try_emplace(key, index).first->second;
        }
        std::size_t earlier = 0;
        while (m_members[earlier].first != key) {
            ++earlier;
        }
        return earlier;
    }

private:
    const Members &m_members;
    std::unordered_map<std::string_view, std::size_t> m_places;
};

// Of equal keys keeps the last value, in the first one's place.
void dropRepeatedKeys(Members &members)
{
    FirstPlaces firstPlaces(members);
    for (std::size_t index = 0; index < members.size(); ++index) {
        const std::size_t first = firstPlaces.of(index);
        if (first != index) {
            members[first].second = std::move(members[index].second);
            members[index].second = Json::value_t::discarded;
        }
    }
    std::erase_if(members, [](const auto &member) { return member.second.is_discarded(); });
}

Json objectOf(Members members)
{
    dropRepeatedKeys(members);
    Json object = Json::object();
    Json::object_t::Container &kept = object.get_ref<Json::object_t &>();
    kept.reserve(members.size());
    for (auto &[key, value] : members) {
        kept.emplace_back(std::move(key), std::move(value));
    }
    return object;
}

// Builds a value from the parser's events. The library's own builder looks each key up among the
// earlier ones, which takes quadratic time on a large object, and nests without bound.
class Builder final : public nlohmann::json_sax<Json>
{
public:
    explicit Builder(std::stop_token stop) : m_stop(std::move(stop)) {}

    [[nodiscard]] Json take() { return std::move(m_root); }
    [[nodiscard]] const std::string &error() const { return m_error; }

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override { return add(value); }
    bool number_float(number_float_t value, const string_t &) override { return add(value); }
    bool string(string_t &value) override { return add(std::move(value)); }
    bool binary(binary_t &) override { return false; }

    bool key(string_t &value) override
    {
        m_open.back().key = std::move(value);
        return true;
    }

    bool start_object(std::size_t) override { return open(Shape::Object); }
    bool start_array(std::size_t) override { return open(Shape::Array); }

    bool end_object() override
    {
        Members members = std::move(m_open.back().members);
        m_open.pop_back();
        place(objectOf(std::move(members)));
        return true;
    }

    bool end_array() override
    {
        Json::array_t elements = std::move(m_open.back().elements);
        m_open.pop_back();
        place(std::move(elements));
        return true;
    }

    bool parse_error(
        std::size_t, const std::string &, const nlohmann::detail::exception &error) override
    {
        m_error = error.what();
        return false;
    }

private:
    enum class Shape
    {
        Object,
        Array
    };

    // An object or array that has not ended: what of it was read.
    struct Open
    {
        Shape shape;
        std::string key; // of the member to come
        Members members;
        Json::array_t elements;
    };

    std::vector<Open> m_open; // outermost first
    Json m_root;
    std::string m_error;
    std::stop_token m_stop;
    unsigned m_values = 0;

    void place(Json value)
    {
        if (m_open.empty()) {
            m_root = std::move(value);
        } else if (Open &parent = m_open.back(); parent.shape == Shape::Array) {
            parent.elements.push_back(std::move(value));
        } else {
            parent.members.emplace_back(std::move(parent.key), std::move(value));
        }
    }

    template <typename Value> bool add(Value &&value)
    {
        throwIfStoppedNow();
        place(std::forward<Value>(value));
        return true;
    }

    bool open(Shape shape)
    {
        if (m_open.size() >= kMaxJsonDepth) {
            m_error = "nested too deeply";
            return false;
        }
        throwIfStoppedNow();
        m_open.push_back(Open{shape, {}, {}, {}});
        return true;
    }

    void throwIfStoppedNow()
    {
        if (++m_values % kValuesBetweenStopTests == 0) {
            throwIfStopped(m_stop);
        }
    }
};

[[noreturn]] void throwWrongType(const char *wanted, const Json &value)
{
    throw JsonError(std::string("expected ") + wanted + ", found " + value.type_name());
}

} // namespace

Json parseJson(QByteArrayView utf8, std::stop_token stop)
{
    // The library takes a zero byte for the end of the text.
    if (utf8.contains('\0')) {
        throw JsonError("a zero byte");
    }
    Builder builder(std::move(stop));
    if (!Json::sax_parse(utf8.begin(), utf8.end(), &builder)) {
        throw JsonError(builder.error());
    }
    return builder.take();
}

QByteArray writeJson(const Json &value)
{
    const std::string text = value.dump(-1, ' ', false, Json::error_handler_t::replace);
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

QString jsonText(const Json &string)
{
    const auto &utf8 = string.get_ref<const std::string &>();
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

Json jsonFromText(QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
    return std::string(utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

QString decodeText(const Json &value)
{
    if (!value.is_string()) {
        throwWrongType("a string", value);
    }
    return jsonText(value);
}

bool decodeBoolean(const Json &value)
{
    if (!value.is_boolean()) {
        throwWrongType("a boolean", value);
    }
    return value.get<bool>();
}

qint64 decodeInteger(const Json &value)
{
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        if (number <= static_cast<std::uint64_t>(std::numeric_limits<qint64>::max())) {
            return static_cast<qint64>(number);
        }
    } else if (value.is_number_integer()) {
        return value.get<std::int64_t>();
    } else if (value.is_number_float()) {
        // The least integer itself is out: those just below it round to the same number.
        constexpr double kTwoTo63 = 9223372036854775808.0;
        const auto number = value.get<double>();
        if (number > -kTwoTo63 && number < kTwoTo63 && std::trunc(number) == number) {
            return static_cast<qint64>(number);
        }
    }
    throwWrongType("an integer", value);
}

double decodeNumber(const Json &value)
{
    if (!value.is_number()) {
        throwWrongType("a number", value);
    }
    return value.get<double>();
}

QUuid decodeUuid(const Json &value)
{
    const auto uuid = uuidFromText(decodeText(value));
    if (!uuid) {
        throw JsonError("expected a UUID");
    }
    return *uuid;
}

ObjectReader::ObjectReader(const Json &value) : m_object(value)
{
    if (!value.is_object()) {
        throwWrongType("an object", value);
    }
}

const Json *ObjectReader::find(const char *key) const
{
    const auto found = m_object.find(key);
    return found == m_object.end() || found->is_null() ? nullptr : &*found;
}

std::optional<QString> ObjectReader::text(const char *key) const
{
    const Json *found = find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeText(*found));
}

std::optional<bool> ObjectReader::boolean(const char *key) const
{
    const Json *found = find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeBoolean(*found));
}

std::optional<qint64> ObjectReader::integer(const char *key) const
{
    const Json *found = find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeInteger(*found));
}

std::optional<double> ObjectReader::number(const char *key) const
{
    const Json *found = find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeNumber(*found));
}

std::optional<QUuid> ObjectReader::uuid(const char *key) const
{
    const Json *found = find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeUuid(*found));
}

} // namespace velarc
