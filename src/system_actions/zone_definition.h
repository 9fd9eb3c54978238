#pragma once

// Zones that calendar files define.

#include "system_actions/calendar_zone.h"
#include "system_actions/ical_text.h"

namespace velarc {

// What a VTIMEZONE component says, up to the end of the 22nd century; nullptr if it says nothing.
// Rules that change the clock more often than a thousand times count for the first of them.
[[nodiscard]] ZonePointer definedZone(const IcalComponent &definition);

// The other way: a VTIMEZONE component, with CRLF line ends, that holds from a year before `from`
// on. Empty for a zone without a name.
[[nodiscard]] QByteArray zoneDefinition(const CalendarZone &zone, UtcTime from);

} // namespace velarc
