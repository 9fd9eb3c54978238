#pragma once

// The four operations over calendars in memory, at ten in the morning of 2026-02-20 in New York.

#include "fakes/fake_clock.h"
#include "fakes/memory_calendar_store.h"
#include "support/outcome.h"
#include "support/printers.h"
#include "system_actions/calendar_action_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class CalendarActionTest : public ::testing::Test
{
protected:
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<MemoryCalendarStore> store = std::make_shared<MemoryCalendarStore>();
    CalendarActionService service{store, clock};
    std::stop_source stop;

    [[nodiscard]] Instant now() const { return clock->now(); }

    CalendarActionOutcome create(const QString &text)
    {
        return outcomeOf(service.createEvent(text, stop.get_token()));
    }
    CalendarActionOutcome list(const QString &text)
    {
        return outcomeOf(service.listUpcomingEvents(text, stop.get_token()));
    }
    CalendarActionOutcome edit(const QString &text)
    {
        return outcomeOf(service.editEvent(text, stop.get_token()));
    }
    CalendarActionOutcome remove(const QString &text)
    {
        return outcomeOf(service.deleteEvent(text, stop.get_token()));
    }

    // What the operation says when it fails; nothing may have been written then.
    template <typename Operation> QString refusalOf(Operation operation)
    {
        const QList<CalendarEvent> before = store->allEvents;
        try {
            operation();
        } catch (const UserFacingError &error) {
            EXPECT_EQ(store->allEvents, before);
            return error.message();
        }
        ADD_FAILURE() << "it did not fail";
        return {};
    }

    static QStringList titlesOf(const CalendarActionOutcome &outcome)
    {
        QStringList titles;
        for (const CalendarActionEvent &event : outcome.events) {
            titles.append(event.title);
        }
        return titles;
    }
};

// A wall time of 2026 in New York, in winter.
[[nodiscard]] inline Instant winterTime(
    unsigned month, unsigned day, std::chrono::minutes timeOfDay)
{
    const std::chrono::sys_days midnight =
        std::chrono::year(2026) / static_cast<int>(month) / static_cast<int>(day);
    return Instant(midnight + timeOfDay + 5h);
}

} // namespace velarc
