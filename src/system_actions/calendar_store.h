#pragma once

// The user's calendars as an operation on them needs them: plain values in, plain values out.

#include "base/clock.h"
#include "base/errors.h"

#include <QCoroTask>
#include <QList>
#include <QString>

#include <optional>
#include <stop_token>

namespace velarc {

// A failure of the calendars themselves, with the platform's own sentence.
class CalendarStoreError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

struct CalendarInfo
{
    QString identifier; // unique within the store, stable from run to run
    QString title;
    bool allowsContentModifications = false;

    friend bool operator==(const CalendarInfo &, const CalendarInfo &) = default;
};

// One event, or one occurrence of a series.
struct CalendarEvent
{
    QString identifier; // empty until it is saved; of an occurrence, its own and not its series'
    QString calendarIdentifier; // of the calendar that holds it, or shall hold it
    QString title; // empty where it has none
    // Of an all-day event: midnight of its first day, and one second before the midnight that ends
    // its last, in the system's time zone. Floating times are read in that zone as well.
    Instant startDate;
    Instant endDate; // never before the start
    bool isAllDay = false;
    std::optional<QString> location;
    std::optional<QString> notes;

    friend bool operator==(const CalendarEvent &, const CalendarEvent &) = default;
};

// Half open: what begins at `end` lies outside, an event of no length at `start` inside.
struct CalendarWindow
{
    Instant start;
    Instant end;
};

// All calendars of the user.
//
// Main thread only; the work is done off it, one call after the other.
//
// Stop:     a stopped token ends the wait with CancellationError, from the event loop. A save or a
//           removal that has begun by then may still be carried out.
// Errors:   CalendarStoreError; nothing in the calendars has changed then.
// Lifetime: the store need not outlive the task; arguments are copied into it.
class CalendarStore
{
public:
    CalendarStore() = default;
    virtual ~CalendarStore() = default;
    CalendarStore(const CalendarStore &) = delete;
    CalendarStore &operator=(const CalendarStore &) = delete;

    // Whether the user lets the program read and change events. The system may ask them.
    [[nodiscard]] virtual QCoro::Task<bool> requestFullAccessToEvents(std::stop_token stop) = 0;

    // Every calendar that holds events, in the store's own order.
    [[nodiscard]] virtual QCoro::Task<QList<CalendarInfo>> calendars(std::stop_token stop) = 0;

    // Where a new event goes when nobody names a calendar. It need not be writable.
    [[nodiscard]] virtual QCoro::Task<std::optional<CalendarInfo>> defaultCalendarForNewEvents(
        std::stop_token stop) = 0;

    // The events of all calendars that lie in the window, be it in part, each occurrence of a
    // series by itself; in no order.
    [[nodiscard]] virtual QCoro::Task<QList<CalendarEvent>> events(
        CalendarWindow window, std::stop_token stop) = 0;

    // A series' identifier means its first occurrence.
    [[nodiscard]] virtual QCoro::Task<std::optional<CalendarEvent>> eventWithIdentifier(
        QString identifier, std::stop_token stop) = 0;

    // Makes the event in its calendar when it has no identifier yet, in the system's time zone.
    // Else changes this event, of a series this occurrence alone: what the record does not hold
    // stays as it is, the time zone the event is written in too. An all-day event stays one, from
    // the day of its start to the day of its end, both included; so an end at midnight takes the
    // day that begins there with it. Returns the event as it now stands.
    [[nodiscard]] virtual QCoro::Task<CalendarEvent> save(
        CalendarEvent event, std::stop_token stop) = 0;

    // Takes away this event, of a series this occurrence alone.
    [[nodiscard]] virtual QCoro::Task<void> remove(CalendarEvent event, std::stop_token stop) = 0;
};

} // namespace velarc
