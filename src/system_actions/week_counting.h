#pragma once

// How years are cut into weeks: a week counts to the year that holds most of its days.
//
// Pure functions; any thread.

#include <chrono>

namespace velarc {

// The first day of the year.
[[nodiscard]] std::chrono::local_days newYear(int number);

// The day on which the first week of the year begins: the first week with four days of it.
[[nodiscard]] std::chrono::local_days firstWeek(int number, std::chrono::weekday weekStart);

// The year that the week of `day` counts to.
[[nodiscard]] int weekYear(std::chrono::local_days day, std::chrono::weekday weekStart);

} // namespace velarc
