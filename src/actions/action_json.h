#pragma once

// The stored form of an action. Older forms still load; only today's form is written.

#include "actions/action.h"
#include "base/json.h"

namespace velarc {

// Reads an action from its JSON object. Every key may be missing; unknown keys are ignored.
//
// Errors: JsonError for a key of the wrong type or with an unknown spelling; for a destination that
// is of no known form its text is "Unsupported destination payload.".
[[nodiscard]] AIAction decodeAction(const Json &value);

// Writes all keys of today's form, in order. Reading it gives the same action.
[[nodiscard]] Json encodeAction(const AIAction &action);

[[nodiscard]] ActionDestination decodeDestination(const Json &value);
[[nodiscard]] Json encodeDestination(const ActionDestination &destination);

// The stored library: one array.
[[nodiscard]] QList<AIAction> decodeActions(const Json &value);
[[nodiscard]] Json encodeActions(const QList<AIAction> &actions);

// The bytes of the stored library: writeJson(encodeActions(actions)), but one action at a time, so
// that a large library never stands in memory as one tree of small values.
[[nodiscard]] QByteArray writeActions(const QList<AIAction> &actions);

// The value under `key` by its stored spelling. Throws JsonError for an unknown one.
template <typename Enum>
[[nodiscard]] std::optional<Enum> readEnum(const ObjectReader &object, const char *key)
{
    const auto spelling = object.text(key);
    if (!spelling) {
        return std::nullopt;
    }
    const auto value = fromStoredSpelling<Enum>(*spelling);
    if (!value) {
        throw JsonError(std::string(key) + " has an unknown spelling");
    }
    return value;
}

} // namespace velarc
