#pragma once

// A store with its calendars, for the promises that every store keeps.

#include "support/outcome.h"
#include "system_actions/calendar_store.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <functional>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class CalendarWorld
{
public:
    virtual ~CalendarWorld() = default;

    // A store over the calendars as they are now, as a program that starts has it.
    [[nodiscard]] virtual std::shared_ptr<CalendarStore> open() = 0;

    // Has another program put events into the default calendar. Each is what stands between the
    // lines that begin and end a VEVENT, with CRLF.
    virtual void put(const QList<QByteArray> &events) = 0;

    // What the store wrote, all events of the default calendar one behind the other.
    [[nodiscard]] virtual QByteArray written() = 0;

    // The title of a calendar that cannot be written; a test may skip where none can be had.
    [[nodiscard]] virtual QString readOnlyCalendar() = 0;
};

[[nodiscard]] std::unique_ptr<CalendarWorld> makeFolderWorld();

// In a session whose bus can start the calendar server.
[[nodiscard]] std::unique_ptr<CalendarWorld> makeServerWorld();

// Moments in the zone that tests run in, and in others. "2025-03-10 09:00".
[[nodiscard]] inline Instant at(const char *text, const char *zone = "America/New_York")
{
    const QDateTime wall = QDateTime::fromString(QString::fromLatin1(text), u"yyyy-MM-dd HH:mm"_s);
    const QDateTime there(wall.date(), wall.time(), QTimeZone(zone));
    return Instant(std::chrono::seconds(there.toSecsSinceEpoch()));
}

// The day-light-saving tests speak of UTC.
[[nodiscard]] inline Instant utc(const char *text)
{
    return at(text, "UTC");
}

class CalendarContract
    : public testing::TestWithParam<std::function<std::unique_ptr<CalendarWorld>()>>
{
protected:
    CalendarContract() : world(GetParam()()), store(world->open()) {}

    [[nodiscard]] CalendarInfo defaultCalendar();
    [[nodiscard]] CalendarEvent make(const QString &title, Instant start, Instant end);
    [[nodiscard]] CalendarEvent save(const CalendarEvent &event);
    void remove(const CalendarEvent &event);
    [[nodiscard]] std::optional<CalendarEvent> find(const QString &identifier);

    // By start, and then by title.
    [[nodiscard]] QList<CalendarEvent> events(Instant from, Instant to);
    // The one event of that title in the years around 2025.
    [[nodiscard]] CalendarEvent only(const QString &title);
    [[nodiscard]] QStringList starts(Instant from, Instant to); // in UTC

    const std::unique_ptr<CalendarWorld> world;
    std::shared_ptr<CalendarStore> store;
};

} // namespace velarc
