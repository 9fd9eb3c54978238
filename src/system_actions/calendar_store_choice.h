#pragma once

// Which calendars the program uses.

#include "system_actions/calendar_backend.h"

#include <functional>

namespace velarc {

// The desktop's calendar server where its services are on the session bus and it has a default
// calendar, else the calendars in the folder for data. The choice that holds when the first event
// is made on a session bus is kept in the folder for state, and stands from then on: a server that
// was chosen and cannot be reached is a failure, so that events never part into two places.
//
// Main thread only; nothing is asked before the first operation.
[[nodiscard]] std::shared_ptr<CalendarStore> makeCalendarStore();

// The same with what it depends on; for tests. Worker thread but for the constructor.
class ChosenCalendars final : public CalendarBackend
{
public:
    struct Sources
    {
        QString choiceFile;
        std::function<bool()> isOnSessionBus;
        // nullptr where there is no server, or nothing to talk to it with.
        std::function<std::unique_ptr<CalendarBackend>()> server;
        std::function<std::unique_ptr<CalendarBackend>()> folder;
    };
    explicit ChosenCalendars(Sources sources);

    [[nodiscard]] bool requestAccess(std::stop_token stop) override;
    [[nodiscard]] QList<CalendarInfo> calendars(std::stop_token stop) override;
    [[nodiscard]] std::optional<CalendarInfo> defaultCalendar(std::stop_token stop) override;
    [[nodiscard]] QList<CalendarEvent> events(CalendarWindow window, std::stop_token stop) override;
    [[nodiscard]] std::optional<CalendarEvent> event(
        const QString &identifier, std::stop_token stop) override;
    [[nodiscard]] CalendarEvent save(const CalendarEvent &event, std::stop_token stop) override;
    void remove(const CalendarEvent &event, std::stop_token stop) override;

private:
    enum class Kind
    {
        Server,
        Folder,
    };

    Sources m_sources;
    std::unique_ptr<CalendarBackend> m_chosen;
    Kind m_kind = Kind::Folder;

    [[nodiscard]] CalendarBackend &chosen(const std::stop_token &stop);
    [[nodiscard]] std::optional<Kind> remembered() const;
    void remember() const;
};

} // namespace velarc
