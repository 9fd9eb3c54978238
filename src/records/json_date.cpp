#include "records/json_date.h"

#include <cmath>
#include <limits>

namespace velarc {

namespace {

using std::chrono::nanoseconds;

static_assert(std::ratio_equal_v<Instant::period, std::nano>);

constexpr std::int64_t kNanosecondsInSecond = 1'000'000'000;

// From the epoch of Instant to that of the stored form.
constexpr std::int64_t kReferenceSeconds = 978'307'200;

// Whole seconds since the epoch of Instant which leave room for any fraction.
constexpr std::int64_t kLastSecond =
    std::numeric_limits<std::int64_t>::max() / kNanosecondsInSecond - 1;
constexpr std::int64_t kFirstSecond = -kLastSecond;

} // namespace

Instant decodeDate(const Json &value)
{
    const double seconds = decodeNumber(value);
    const double whole = std::floor(seconds);
    const bool fits = whole >= static_cast<double>(kFirstSecond - kReferenceSeconds)
        && whole <= static_cast<double>(kLastSecond - kReferenceSeconds);
    if (!fits) {
        throw JsonError("the date is out of range");
    }
    // The whole seconds and the fraction apart: their product with 10^9 would lose digits.
    const std::int64_t fraction = std::llround((seconds - whole) * kNanosecondsInSecond);
    const std::int64_t sinceEpoch = static_cast<std::int64_t>(whole) + kReferenceSeconds;
    return Instant(nanoseconds(sinceEpoch * kNanosecondsInSecond + fraction));
}

Json encodeDate(Instant instant)
{
    const std::int64_t count = instant.time_since_epoch().count();
    std::int64_t whole = count / kNanosecondsInSecond - kReferenceSeconds;
    std::int64_t fraction = count % kNanosecondsInSecond;
    // Both of one sign: -1 + 0.9 is not quite -0.1.
    if (whole < 0 && fraction > 0) {
        ++whole;
        fraction -= kNanosecondsInSecond;
    }
    return static_cast<double>(whole)
        + static_cast<double>(fraction) / static_cast<double>(kNanosecondsInSecond);
}

std::optional<Instant> readDate(const ObjectReader &object, const char *key)
{
    const Json *found = object.find(key);
    return found == nullptr ? std::nullopt : std::optional(decodeDate(*found));
}

} // namespace velarc
