#pragma once

// Between events in calendar files and the records that operations work on.

#include "system_actions/calendar_store.h"
#include "system_actions/recurrence.h"

namespace velarc {

// The UID of an event that stands alone; of an occurrence, with its name behind a hash sign.
[[nodiscard]] QString eventIdentifier(const QString &uid, const std::optional<IcalTime> &due);

[[nodiscard]] CalendarEvent recordOf(
    const IcalSeries &series, const Occurrence &occurrence, const QString &calendarIdentifier);

// What a store says when the event to be changed has gone meanwhile.
[[nodiscard]] CalendarStoreError eventIsGone();

// How an identifier may be read: a UID may hold a hash sign itself.
struct EventReference
{
    QString uid;
    std::optional<IcalTime> due;
};
[[nodiscard]] QList<EventReference> readingsOf(const QString &identifier);

// What the reference means in its series; without `due` the first occurrence.
[[nodiscard]] std::optional<Occurrence> occurrenceOf(const IcalSeries &series,
    const std::optional<IcalTime> &due, const CalendarZone &system, std::stop_token stop);

// The records of every series in the window. The earliest occurrences are kept where hostile rules
// make more of them than anybody reads. One thread.
//
// Stop: CancellationError.
class RecordCollector
{
public:
    RecordCollector(CalendarWindow window, ZonePointer system, std::stop_token stop);

    void take(const IcalSeries &series, const QString &calendarIdentifier);
    [[nodiscard]] QList<CalendarEvent> finish() { return std::move(m_records); }

private:
    UtcWindow m_window;
    ZonePointer m_system;
    std::stop_token m_stop;
    std::optional<std::chrono::nanoseconds> m_most; // that the thread may have cost when it ends
    int m_taken = 0;
    bool m_isPlenty = false;
    QList<CalendarEvent> m_records;
};

} // namespace velarc
