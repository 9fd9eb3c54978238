#pragma once

// The calendars of the desktop's own calendar server, through a plugin.

#include "system_actions/calendar_backend.h"
#include "system_actions/eds/calendar_server.h"
#include "system_actions/event_file.h"

namespace velarc {

// What the session bus offers. Blocks.
struct SessionBus
{
    bool isThere = false;
    bool hasCalendarServer = false; // its services run, or can be started
};
[[nodiscard]] SessionBus askSessionBus();

// The server through the plugin; nullptr where the plugin is not installed. Blocks.
[[nodiscard]] std::unique_ptr<CalendarServer> loadCalendarServer();

// A calendar's identifier is the server's own for it.
class EdsCalendars final : public CalendarBackend
{
public:
    explicit EdsCalendars(std::unique_ptr<CalendarServer> server);

    [[nodiscard]] bool requestAccess(std::stop_token stop) override;
    [[nodiscard]] QList<CalendarInfo> calendars(std::stop_token stop) override;
    [[nodiscard]] std::optional<CalendarInfo> defaultCalendar(std::stop_token stop) override;
    [[nodiscard]] QList<CalendarEvent> events(CalendarWindow window, std::stop_token stop) override;
    [[nodiscard]] std::optional<CalendarEvent> event(
        const QString &identifier, std::stop_token stop) override;
    [[nodiscard]] CalendarEvent save(const CalendarEvent &event, std::stop_token stop) override;
    void remove(const CalendarEvent &event, std::stop_token stop) override;

private:
    // One event of the server, among all that shares its UID. Moving it keeps the pointers valid.
    struct Place
    {
        EventFile file;
        const IcalSeries *series = nullptr;
        Occurrence occurrence;
    };

    std::unique_ptr<CalendarServer> m_server;
    ZoneBook m_zones;

    [[nodiscard]] ServerCalendars allCalendars(const std::stop_token &stop);
    [[nodiscard]] CalendarInfo infoOf(const ServerCalendar &calendar, const std::stop_token &stop);
    [[nodiscard]] EventFile fileOf(
        const QString &calendar, const QList<QByteArray> &components, const std::stop_token &stop);
    [[nodiscard]] QByteArray zonesOf(
        const QString &calendar, const IcalComponent &events, const std::stop_token &stop);
    [[nodiscard]] std::optional<Place> find(
        const QString &calendar, const QString &identifier, const std::stop_token &stop);
    [[nodiscard]] Place placeOf(const CalendarEvent &event, const std::stop_token &stop);
    [[nodiscard]] std::optional<CalendarEvent> record(
        const QString &calendar, const QString &identifier, const std::stop_token &stop);
    [[nodiscard]] CalendarEvent create(const CalendarEvent &event, const std::stop_token &stop);
};

} // namespace velarc
