#pragma once

// Changes to events in calendar files. What is not changed stays as it was written.
//
// Any thread; pure functions.

#include "system_actions/calendar_store.h"
#include "system_actions/recurrence.h"

namespace velarc {

// A change as a file tells of it: in which time zone the system is, and when it was made.
struct EditContext
{
    ZonePointer system;
    UtcTime now;
};
[[nodiscard]] EditContext editNow();

// A VEVENT with a UID, in the system's time zone.
[[nodiscard]] IcalComponent newEvent(
    const CalendarEvent &event, const QString &uid, const EditContext &context);

// A calendar file that holds the event, and the time zone that it names.
[[nodiscard]] QByteArray newCalendarFile(
    const IcalComponent &event, const CalendarEvent &record, const EditContext &context);

// Makes `component`, which tells `event`, tell of `wanted` where that differs from `present`.
void changeEvent(IcalComponent &component, const IcalEvent &event, const CalendarEvent &present,
    const CalendarEvent &wanted, const EditContext &context);

// A VEVENT for this occurrence alone, from the component that told of it so far.
[[nodiscard]] IcalComponent overrideOf(
    const IcalComponent &component, const Occurrence &occurrence, const EditContext &context);

// Makes the series do without the occurrence that is due at that time.
void exclude(IcalComponent &master, const IcalTime &due, const EditContext &context);

} // namespace velarc
