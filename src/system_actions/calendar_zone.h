#pragma once

// Time zones as calendar files name them, and the way between a zone's wall time and UTC.

#include <QByteArray>
#include <QByteArrayView>

#include <chrono>
#include <memory>
#include <vector>

namespace velarc {

// What the clock on the wall shows, without a zone.
using WallTime = std::chrono::local_seconds;
using UtcTime = std::chrono::sys_seconds;

// Any thread; never changes once built. What the system knows of time zones is asked, as its data
// is kept up to date; the tables inside ICU are as old as the library.
class CalendarZone
{
public:
    explicit CalendarZone(QByteArray name) : m_name(std::move(name)) {}
    virtual ~CalendarZone() = default;
    CalendarZone(const CalendarZone &) = delete;
    CalendarZone &operator=(const CalendarZone &) = delete;

    // "Europe/Berlin", "UTC", or what a file calls the zone that it defines.
    [[nodiscard]] const QByteArray &name() const noexcept { return m_name; }

    // What the wall shows beyond UTC at that moment.
    [[nodiscard]] virtual std::chrono::seconds offsetAt(UtcTime utc) const = 0;

    [[nodiscard]] WallTime wallTimeAt(UtcTime utc) const;

    // By RFC 5545: of a wall time that comes twice the first one; one that is left out by a change
    // of the clock counts as if the change were still to come.
    [[nodiscard]] UtcTime utcTimeOf(WallTime wall) const;

private:
    QByteArray m_name;
};

using ZonePointer = std::shared_ptr<const CalendarZone>;

// A change of a zone's clock.
struct ZoneChange
{
    UtcTime at;
    std::chrono::seconds before; // the offsets
    std::chrono::seconds after;
};

// The zone of these changes: at least one, by time.
[[nodiscard]] ZonePointer zoneOfChanges(QByteArray name, std::vector<ZoneChange> changes);

[[nodiscard]] ZonePointer utcZone();

// The system's zone as it is set now. Its name is empty where it has none that others know.
[[nodiscard]] ZonePointer systemZone();

// The zone that the time zone database knows under `name`, be it behind another program's prefix as
// in "/vendor.example/2025a/Europe/Berlin"; nullptr if there is none.
[[nodiscard]] ZonePointer databaseZone(const QByteArray &name);

// The zone that Windows calls `name`, such as "W. Europe Standard Time"; nullptr if there is none.
[[nodiscard]] ZonePointer windowsZone(const QByteArray &name);

} // namespace velarc
