#pragma once

// Dates in stored records: JSON numbers, seconds since 2001-01-01T00:00:00Z, with fractions.

#include "base/clock.h"
#include "base/json.h"

#include <optional>

namespace velarc {

// The moment that `value` tells, to the nearest nanosecond. What decodeDate() read,
// encodeDate() writes as the same number, as far as that is told in nanoseconds.
//
// Errors: JsonError if it is no number, or is a moment that an Instant cannot hold (it reaches
// from 1677 to 2262).
[[nodiscard]] Instant decodeDate(const Json &value);
[[nodiscard]] Json encodeDate(Instant instant);

// The date under `key`, as the members of ObjectReader do for other types.
[[nodiscard]] std::optional<Instant> readDate(const ObjectReader &object, const char *key);

} // namespace velarc
