#pragma once

// What a recurrence rule says of days.

#include "system_actions/recurrence_rule.h"

#include <chrono>
#include <vector>

namespace velarc {

[[nodiscard]] std::chrono::year_month_day firstOfMonth(const std::chrono::year_month_day &date);

[[nodiscard]] std::chrono::local_days newYear(int number);

// The first week of a year is the first with four days of it.
[[nodiscard]] std::chrono::local_days firstWeek(int number, std::chrono::weekday weekStart);

// The year that the week of `day` counts to.
[[nodiscard]] int weekYear(std::chrono::local_days day, std::chrono::weekday weekStart);

// Whether `list` holds the number, counted from 1, or from the end as -1 and so on.
[[nodiscard]] bool holdsPlace(const std::vector<int> &list, int fromStart, int size);

// Whether `list`, which is in order, holds the number.
[[nodiscard]] bool holds(const std::vector<int> &list, int number);

[[nodiscard]] bool allowsMonth(const RecurrenceRule &rule, const std::chrono::year_month_day &date);

// But for the month.
[[nodiscard]] bool allowsDay(const RecurrenceRule &rule, std::chrono::local_days day,
    const std::chrono::year_month_day &date);

} // namespace velarc
