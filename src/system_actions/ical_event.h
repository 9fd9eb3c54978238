#pragma once

// Events as calendar files tell them, and the series that they make.

#include "system_actions/ical_text.h"
#include "system_actions/ical_values.h"
#include "system_actions/recurrence_rule.h"

#include <QString>

#include <optional>
#include <vector>

namespace velarc {

// An RDATE: a further start, with a length of its own if it has one.
struct AddedTime
{
    IcalTime start;
    std::optional<IcalDuration> length;
};

// One VEVENT. It begins between the years 1600 and 2260.
struct IcalEvent
{
    QString uid; // empty where it has none
    std::size_t number = 0; // among the VEVENTs of its file
    QString title;
    std::optional<QString> location;
    std::optional<QString> notes;
    IcalTime start;
    IcalDuration length; // never negative
    bool isCancelled = false;

    // Of a series.
    std::vector<RecurrenceRule> rules;
    std::vector<AddedTime> added;
    std::vector<IcalTime> excluded;

    // Of an occurrence that differs from its series: which one it is, and whether those behind it
    // differ alike.
    std::optional<IcalTime> recurrenceId;
    bool isForFollowingToo = false;

    [[nodiscard]] bool isSeries() const { return !rules.empty() || !added.empty(); }
};

// The event that a VEVENT component tells; none for one without a start that can be read. A
// floating EXDATE is one of the event's own zone.
[[nodiscard]] std::optional<IcalEvent> eventOfIcal(const IcalComponent &component, ZoneBook &zones);

// Everything that shares one UID in a file.
struct IcalSeries
{
    QString uid;
    std::optional<IcalEvent> master; // an event that stands alone, or the series'; may be missing
    std::vector<IcalEvent> overrides;
};

// The VEVENTs of a file, in its order.
[[nodiscard]] std::vector<const IcalComponent *> eventComponents(const IcalComponent &file);

// The series of a file, in its order. An event without a UID gets the file's name and its number.
[[nodiscard]] std::vector<IcalSeries> seriesOfIcal(
    const IcalComponent &file, const QString &fileName, ZoneBook &zones);

} // namespace velarc
