#pragma once

// The four calendar operations, each from one plain text, against the user's calendars.

#include "system_actions/calendar_store.h"
#include "system_actions/system_actions.h"

#include <memory>

namespace velarc {

struct CalendarActionEvent
{
    QString identifier;
    QString title;
    Instant startDate;
    Instant endDate;
    std::optional<QString> location;
    std::optional<QString> notes;

    friend bool operator==(const CalendarActionEvent &, const CalendarActionEvent &) = default;
};

[[nodiscard]] std::size_t qHash(const CalendarActionEvent &event, std::size_t seed = 0);

struct CalendarActionOutcome
{
    QString summary; // the sentence shown
    QList<CalendarActionEvent> events; // those concerned, in order
    std::optional<QString> primaryEventID; // of the first or only event concerned

    friend bool operator==(const CalendarActionOutcome &, const CalendarActionOutcome &) = default;
};

// Main thread only; never blocks. Each operation asks for access before it reads the text.
//
// Stop:     CancellationError, from the event loop; nothing is written that had not begun to be.
// Errors:   CalendarActionServiceError, or CalendarStoreError as the store throws it; nothing in
// the
//           calendars has changed then.
class CalendarActionServing
{
public:
    CalendarActionServing() = default;
    virtual ~CalendarActionServing() = default;
    CalendarActionServing(const CalendarActionServing &) = delete;
    CalendarActionServing &operator=(const CalendarActionServing &) = delete;

    // Makes one event: by default an hour from now, half an hour long, in the default calendar,
    // titled with the whole text.
    [[nodiscard]] virtual QCoro::Task<CalendarActionOutcome> createEvent(
        QString text, std::stop_token stop) = 0;

    // The next events: by default five, of seven days.
    [[nodiscard]] virtual QCoro::Task<CalendarActionOutcome> listUpcomingEvents(
        QString text, std::stop_token stop) = 0;

    // Changes the event of that identifier, else the earliest of that title from 30 days back to
    // 365 days ahead. What the text does not name stays as it is.
    [[nodiscard]] virtual QCoro::Task<CalendarActionOutcome> editEvent(
        QString text, std::stop_token stop) = 0;

    // Removes the event, which is found likewise.
    [[nodiscard]] virtual QCoro::Task<CalendarActionOutcome> deleteEvent(
        QString text, std::stop_token stop) = 0;
};

// Lifetime: the service need not outlive its tasks.
class CalendarActionService final : public CalendarActionServing
{
public:
    CalendarActionService(
        std::shared_ptr<CalendarStore> eventStore, std::shared_ptr<const Clock> clock);

    [[nodiscard]] QCoro::Task<CalendarActionOutcome> createEvent(
        QString text, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<CalendarActionOutcome> listUpcomingEvents(
        QString text, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<CalendarActionOutcome> editEvent(
        QString text, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<CalendarActionOutcome> deleteEvent(
        QString text, std::stop_token stop) override;

private:
    std::shared_ptr<CalendarStore> m_eventStore;
    std::shared_ptr<const Clock> m_clock;
};

} // namespace velarc
