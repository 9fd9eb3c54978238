#include "system_actions/calendar_backend.h"

#include "base/call_end.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct Done
{
};

QCoro::Task<void> whenDone(QCoro::Task<Done> running)
{
    co_await running;
}

} // namespace

BackgroundCalendarStore::BackgroundCalendarStore(
    std::shared_ptr<CalendarBackend> backend, std::chrono::milliseconds bound)
    : m_backend(std::move(backend)), m_bound(bound)
{
}

BackgroundCalendarStore::~BackgroundCalendarStore()
{
    m_ending.request_stop();
}

// The work may outlive the store, but for its end: the worker waits for that.
template <typename Work> auto BackgroundCalendarStore::perform(Work work, std::stop_token stop)
{
    auto end = std::make_unique<CallEnd>(stop, m_ending.get_token(), m_bound);
    auto running =
        m_worker.run([backend = m_backend, work = std::move(work)](
                         std::stop_token ended) { return work(*backend, std::move(ended)); },
            end->token());
    return outcomeWithin(
        std::move(end), std::move(running), CalendarStoreError(u"The calendar does not answer."_s));
}

QCoro::Task<bool> BackgroundCalendarStore::requestFullAccessToEvents(std::stop_token stop)
{
    return perform([](CalendarBackend &backend,
                       std::stop_token ended) { return backend.requestAccess(std::move(ended)); },
        std::move(stop));
}

QCoro::Task<QList<CalendarInfo>> BackgroundCalendarStore::calendars(std::stop_token stop)
{
    return perform([](CalendarBackend &backend,
                       std::stop_token ended) { return backend.calendars(std::move(ended)); },
        std::move(stop));
}

QCoro::Task<std::optional<CalendarInfo>> BackgroundCalendarStore::defaultCalendarForNewEvents(
    std::stop_token stop)
{
    return perform([](CalendarBackend &backend,
                       std::stop_token ended) { return backend.defaultCalendar(std::move(ended)); },
        std::move(stop));
}

QCoro::Task<QList<CalendarEvent>> BackgroundCalendarStore::events(
    CalendarWindow window, std::stop_token stop)
{
    return perform([window](CalendarBackend &backend,
                       std::stop_token ended) { return backend.events(window, std::move(ended)); },
        std::move(stop));
}

QCoro::Task<std::optional<CalendarEvent>> BackgroundCalendarStore::eventWithIdentifier(
    QString identifier, std::stop_token stop)
{
    return perform(
        [identifier = std::move(identifier)](CalendarBackend &backend, std::stop_token ended) {
            return backend.event(identifier, std::move(ended));
        },
        std::move(stop));
}

QCoro::Task<CalendarEvent> BackgroundCalendarStore::save(CalendarEvent event, std::stop_token stop)
{
    return perform([event = std::move(event)](CalendarBackend &backend,
                       std::stop_token ended) { return backend.save(event, std::move(ended)); },
        std::move(stop));
}

QCoro::Task<void> BackgroundCalendarStore::remove(CalendarEvent event, std::stop_token stop)
{
    return whenDone(perform(
        [event = std::move(event)](CalendarBackend &backend, std::stop_token ended) {
            backend.remove(event, std::move(ended));
            return Done();
        },
        std::move(stop)));
}

} // namespace velarc
