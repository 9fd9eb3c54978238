#pragma once

// Zones that a calendar file defines by itself.

#include "system_actions/calendar_zone.h"
#include "system_actions/ical_text.h"

namespace velarc {

// What a VTIMEZONE component says, up to the end of the 22nd century; nullptr if it says nothing.
// Rules that change the clock more often than a thousand times count for the first of them.
[[nodiscard]] ZonePointer definedZone(const IcalComponent &definition);

} // namespace velarc
