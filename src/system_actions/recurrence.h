#pragma once

// Which occurrences a series has, and when they are.
//
// Follows RFC 5545: rules are counted on the wall clock of the series' zone and converted then, and
// the start is the first occurrence whatever the rules say. Any thread; pure functions.

#include "system_actions/ical_event.h"

#include <optional>
#include <stop_token>
#include <vector>

namespace velarc {

// One occurrence, or an event that stands alone.
struct Occurrence
{
    const IcalEvent *event = nullptr; // that tells its title and so on: the master, or an override
    // Of a series: when it is due, before anything is changed about it. By this it is known.
    std::optional<IcalTime> due;
    UtcTime start;
    UtcTime end;
};

// Both ends belong to it.
struct UtcWindow
{
    UtcTime first;
    UtcTime last;
};

// What a series may cost, whatever its rules say: they are steps of some ten nanoseconds each.
struct ExpansionBounds
{
    int steps = 200'000;
    std::size_t occurrences = 10'000; // the earliest are kept
};

// What touches the window, in no order: what ends at its start does so only if it has no length.
// What was cancelled of a series is left out. The result points into `series`.
//
// Stop: CancellationError.
[[nodiscard]] std::vector<Occurrence> occurrencesIn(const IcalSeries &series, UtcWindow window,
    const CalendarZone &system, ExpansionBounds bounds, std::stop_token stop);

// The earliest in the order in which they are due; none for a series that has none left.
[[nodiscard]] std::optional<Occurrence> firstOccurrence(
    const IcalSeries &series, const CalendarZone &system, std::stop_token stop);

// The one that is due at that moment.
[[nodiscard]] std::optional<Occurrence> occurrenceDueAt(
    const IcalSeries &series, UtcTime due, const CalendarZone &system, std::stop_token stop);

// How an occurrence is called within its series: "20250310T090000Z"; "20250310" in an all-day
// series, "20250310T090000" where it floats.
[[nodiscard]] QString occurrenceName(const IcalTime &due);

// The other way; none for what is no such name.
[[nodiscard]] std::optional<IcalTime> dueOfOccurrenceName(QStringView name);

} // namespace velarc
