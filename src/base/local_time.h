#pragma once

// Between absolute time and what the clocks on the wall show in the system's time zone.
//
// The zone is asked anew at each call, so that a changed one is followed. Any thread.

#include "base/clock.h"

#include <chrono>
#include <optional>

namespace velarc {

// What a wall clock shows, in the Gregorian calendar.
using WallTime = std::chrono::local_time<std::chrono::milliseconds>;

// `time` as an Instant; none where that does not reach, which is before the year 1678 and from 2262
// on.
[[nodiscard]] std::optional<Instant> instantAt(
    std::chrono::sys_time<std::chrono::milliseconds> time);

// When the wall clocks show `time`. Where they are set back and show it twice, the first time;
// where they are set forward and never show it, as if they had not been. None where an Instant does
// not reach.
[[nodiscard]] std::optional<Instant> instantAtWallTime(WallTime time);

// When the wall clocks show the time of `instant` again, `added` days of the calendar later. None
// where an Instant does not reach.
[[nodiscard]] std::optional<Instant> addingDays(Instant instant, std::chrono::days added);

} // namespace velarc
