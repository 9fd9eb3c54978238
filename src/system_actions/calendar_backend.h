#pragma once

// A calendar store as it is written: calls that take their time, on one worker thread.

#include "base/worker.h"
#include "system_actions/calendar_store.h"

#include <memory>

namespace velarc {

// As CalendarStore, but blocking, and called from one thread at a time.
//
// Stop:   CancellationError, as far as the call can be broken off.
// Errors: CalendarStoreError.
class CalendarBackend
{
public:
    CalendarBackend() = default;
    virtual ~CalendarBackend() = default;
    CalendarBackend(const CalendarBackend &) = delete;
    CalendarBackend &operator=(const CalendarBackend &) = delete;

    [[nodiscard]] virtual bool requestAccess(std::stop_token stop) = 0;
    [[nodiscard]] virtual QList<CalendarInfo> calendars(std::stop_token stop) = 0;
    [[nodiscard]] virtual std::optional<CalendarInfo> defaultCalendar(std::stop_token stop) = 0;
    [[nodiscard]] virtual QList<CalendarEvent> events(
        CalendarWindow window, std::stop_token stop) = 0;
    [[nodiscard]] virtual std::optional<CalendarEvent> event(
        const QString &identifier, std::stop_token stop) = 0;
    [[nodiscard]] virtual CalendarEvent save(const CalendarEvent &event, std::stop_token stop) = 0;
    virtual void remove(const CalendarEvent &event, std::stop_token stop) = 0;
};

// One calendar that cannot be read does not hide the others.
class EachCalendar
{
public:
    template <typename Use> void attempt(Use use)
    {
        try {
            use();
            m_hasSucceeded = true;
        } catch (const CalendarStoreError &error) {
            m_failure = m_failure ? m_failure : std::optional(error);
        }
    }

    [[nodiscard]] bool hasSucceeded() const { return m_hasSucceeded; }
    void throwIfFailed() const
    {
        if (m_failure) {
            throw CalendarStoreError(*m_failure);
        }
    }

private:
    std::optional<CalendarStoreError> m_failure;
    bool m_hasSucceeded = false;
};

// Does a backend's calls off the main thread.
//
// Bound: a call that has not ended after `bound` fails.
class BackgroundCalendarStore final : public CalendarStore
{
public:
    explicit BackgroundCalendarStore(std::shared_ptr<CalendarBackend> backend,
        std::chrono::milliseconds bound = std::chrono::seconds(60));
    ~BackgroundCalendarStore() override;

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
    const std::shared_ptr<CalendarBackend> m_backend;
    const std::chrono::milliseconds m_bound;
    std::stop_source m_ending;
    SerialWorker m_worker;

    template <typename Work> auto perform(Work work, std::stop_token stop);
};

} // namespace velarc
