#pragma once

// Times and durations as calendar files write them.

#include "base/clock.h"
#include "system_actions/calendar_zone.h"
#include "system_actions/ical_text.h"

#include <map>
#include <optional>

namespace velarc {

enum class TimeForm
{
    Date, // a day, whatever the zone
    Floating, // a wall time, whatever the zone
    Zoned, // a wall time of one zone, which may be UTC
};

struct IcalTime
{
    WallTime wall; // of a date its midnight
    TimeForm form = TimeForm::Floating;
    ZonePointer zone; // of a zoned time alone

    // `system` is for what has no zone of its own.
    [[nodiscard]] UtcTime utc(const CalendarZone &system) const;
};

// A length as it is written: the days are counted on the wall, the rest is time that passes.
struct IcalDuration
{
    std::chrono::days days{0};
    std::chrono::seconds time{0};
};

// The zones that files name, each looked up once. One thread at a time.
class ZoneBook
{
public:
    // Learns the VTIMEZONE components of a calendar, for zoneFor() until the next call.
    void openCalendar(const IcalComponent &calendar);

    // A zone of the time zone database goes before one that the calendar defines: many programs
    // define what they name badly. nullptr for a name that nobody knows.
    [[nodiscard]] ZonePointer zoneFor(const QByteArray &name);

    // Whether the time zone database knows the name.
    [[nodiscard]] bool isInDatabase(const QByteArray &name);

private:
    std::map<QByteArray, ZonePointer> m_database; // by name, and so the next
    std::map<QByteArray, ZonePointer> m_windows;
    std::map<QByteArray, ZonePointer> m_defined; // by the text of the definition
    std::map<QByteArray, ZonePointer> m_ofCalendar; // by the name in the calendar at hand
};

// "20250310", "20250310T090000" or "20250310T090000Z". A time of a zone that nobody knows floats.
[[nodiscard]] std::optional<IcalTime> timeOfIcal(
    QByteArrayView value, const std::optional<QByteArray> &zoneName, ZoneBook &zones);
[[nodiscard]] std::optional<IcalTime> timeOfIcal(const IcalProperty &property, ZoneBook &zones);

// "P1DT2H"; none for what is no duration, and for one of more than a century.
[[nodiscard]] std::optional<IcalDuration> durationOfIcal(QByteArrayView value);

// The value without a zone: "20250310", "20250310T090000", and with `Z` behind it for UTC.
[[nodiscard]] QByteArray icalOfTime(const IcalTime &time);
[[nodiscard]] QByteArray icalOfUtc(UtcTime utc);

// `utc` in the form of `model` and, if that has one, in its zone. A wall time that would be read as
// another moment, the second of two alike, is given in UTC.
[[nodiscard]] IcalTime timeLike(const IcalTime &model, UtcTime utc, const CalendarZone &system);

// The property that says `time`.
[[nodiscard]] IcalProperty timeProperty(const QByteArray &name, const IcalTime &time);

// Between a moment and whole seconds; moments that Instant cannot hold are moved to its ends.
[[nodiscard]] UtcTime utcOfInstant(Instant instant);
[[nodiscard]] Instant instantOfUtc(UtcTime utc);

} // namespace velarc
