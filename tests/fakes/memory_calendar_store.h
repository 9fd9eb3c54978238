#pragma once

// The user's calendars in memory, steered by a test.

#include "fakes/gate.h"
#include "system_actions/calendar_store.h"

namespace velarc {

class MemoryCalendarStore final : public CalendarStore
{
public:
    Gate accessGate;
    Gate saveGate;
    bool grantsAccess = true;
    std::exception_ptr accessFailure;
    std::exception_ptr saveFailure; // of a removal too
    QList<CalendarInfo> allCalendars;
    std::optional<CalendarInfo> defaultCalendar;
    QList<CalendarEvent> allEvents; // what is stored, series written out
    std::optional<QString> titleAfterSaving; // as a store that changes it has it
    QStringList calls; // in their order
    QList<CalendarWindow> windows; // those asked for

    // With the default calendar "Personal".
    MemoryCalendarStore();

    // Puts a writable calendar behind the others.
    void addCalendar(const QString &title);
    // Puts an event of half an hour into the default calendar; its identifier is its title.
    CalendarEvent &addEvent(const QString &title, Instant start);

    [[nodiscard]] QCoro::Task<bool> requestFullAccessToEvents(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QList<CalendarInfo>> calendars(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<std::optional<CalendarInfo>> defaultCalendarForNewEvents(
        std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QList<CalendarEvent>> events(
        CalendarWindow window, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<std::optional<CalendarEvent>> eventWithIdentifier(
        QString identifier, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<CalendarEvent> save(
        CalendarEvent event, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<void> remove(CalendarEvent event, std::stop_token stop) override;

private:
    [[nodiscard]] QList<CalendarEvent> eventsIn(const CalendarWindow &window) const;
    [[nodiscard]] QList<CalendarEvent>::iterator find(const QString &identifier);
    void throwSaveFailure() const;
};

} // namespace velarc
