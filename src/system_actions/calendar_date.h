#pragma once

// The forms in which a calendar operation takes a date. Any thread.

#include "base/clock.h"

#include <QStringView>

#include <optional>

namespace velarc {

// "2025-05-01T09:00:00", a fraction of a second or none, then "Z" or an offset as "+02:00".
[[nodiscard]] std::optional<Instant> internetDate(QStringView value);

// A date as people write it, in the system's time zone; the forms stand in the table of the source.
[[nodiscard]] std::optional<Instant> writtenDate(QStringView value);

} // namespace velarc
