#include "fakes/memory_calendar_store.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

MemoryCalendarStore::MemoryCalendarStore()
{
    addCalendar(u"Personal"_s);
    defaultCalendar = allCalendars.first();
}

void MemoryCalendarStore::addCalendar(const QString &title)
{
    allCalendars.append({u"id of "_s + title, title, true});
}

CalendarEvent &MemoryCalendarStore::addEvent(const QString &title, Instant start)
{
    CalendarEvent event;
    event.identifier = title;
    event.calendarIdentifier = u"id of Personal"_s;
    event.title = title;
    event.startDate = start;
    event.endDate = start + 30min;
    return allEvents.emplaceBack(event);
}

QCoro::Task<bool> MemoryCalendarStore::requestFullAccessToEvents(std::stop_token stop)
{
    calls.append(u"access"_s);
    co_await accessGate.pass(std::move(stop));
    if (accessFailure) {
        std::rethrow_exception(accessFailure);
    }
    co_return bool(grantsAccess);
}

QCoro::Task<QList<CalendarInfo>> MemoryCalendarStore::calendars(std::stop_token)
{
    calls.append(u"calendars"_s);
    const QList<CalendarInfo> answer = allCalendars;
    co_return answer;
}

QCoro::Task<std::optional<CalendarInfo>> MemoryCalendarStore::defaultCalendarForNewEvents(
    std::stop_token)
{
    calls.append(u"default"_s);
    const std::optional<CalendarInfo> answer = defaultCalendar;
    co_return answer;
}

QCoro::Task<QList<CalendarEvent>> MemoryCalendarStore::events(
    CalendarWindow window, std::stop_token)
{
    calls.append(u"events"_s);
    windows.append(window);
    co_return eventsIn(window);
}

QCoro::Task<std::optional<CalendarEvent>> MemoryCalendarStore::eventWithIdentifier(
    QString identifier, std::stop_token)
{
    calls.append(u"identifier "_s + identifier);
    const auto found = find(identifier);
    co_return found == allEvents.end() ? std::nullopt : std::optional(*found);
}

QCoro::Task<CalendarEvent> MemoryCalendarStore::save(CalendarEvent event, std::stop_token stop)
{
    calls.append(u"save"_s);
    co_await saveGate.pass(std::move(stop));
    throwSaveFailure();
    event.title = titleAfterSaving.value_or(event.title);
    const auto found = find(event.identifier);
    if (event.identifier.isEmpty() || found == allEvents.end()) {
        event.identifier = u"event "_s + QString::number(allEvents.size() + 1);
        allEvents.append(event);
    } else {
        *found = event;
    }
    const CalendarEvent saved = event;
    co_return saved;
}

QCoro::Task<void> MemoryCalendarStore::remove(CalendarEvent event, std::stop_token stop)
{
    calls.append(u"remove"_s);
    co_await saveGate.pass(std::move(stop));
    throwSaveFailure();
    allEvents.erase(find(event.identifier));
}

QList<CalendarEvent> MemoryCalendarStore::eventsIn(const CalendarWindow &window) const
{
    QList<CalendarEvent> found;
    std::copy_if(allEvents.begin(), allEvents.end(), std::back_inserter(found),
        [&](const CalendarEvent &event) {
            const bool isLater = event.startDate >= window.end;
            const bool isOver = event.endDate <= window.start && event.startDate < window.start;
            return !isLater && !isOver;
        });
    return found;
}

QList<CalendarEvent>::iterator MemoryCalendarStore::find(const QString &identifier)
{
    return std::find_if(allEvents.begin(), allEvents.end(),
        [&](const CalendarEvent &event) { return event.identifier == identifier; });
}

void MemoryCalendarStore::throwSaveFailure() const
{
    if (saveFailure) {
        std::rethrow_exception(saveFailure);
    }
}

} // namespace velarc
