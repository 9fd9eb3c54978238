// What the user's calendars cost: 5,000 events, and 500 series.

#include "system_actions/vdir_calendar_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>

namespace velarc {

namespace {

using namespace std::chrono_literals;

// A Monday.
const Instant kNow = std::chrono::sys_days(std::chrono::year(2026) / 6 / 1) + 12h;

QByteArray eventText(int number, const QByteArray &rule)
{
    const std::chrono::sys_days day =
        std::chrono::floor<std::chrono::days>(kNow) + std::chrono::days(number % 1460 - 730);
    const QByteArray start =
        icalOfUtc(day + std::chrono::hours(8 + number % 10)).chopped(1); // a wall time
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Bench//EN\r\nBEGIN:VEVENT\r\nUID:bench-"
        + QByteArray::number(number) + rule.left(1) + "\r\nDTSTAMP:20260101T000000Z\r\n"
        + "DTSTART;TZID=America/New_York:" + start + "\r\nDURATION:PT45M\r\n" + rule
        + "SUMMARY:Meeting number " + QByteArray::number(number)
        + "\r\nLOCATION:Room 12\r\nDESCRIPTION:" + QByteArray("Some words about it. ").repeated(10)
        + "\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Soon\r\nTRIGGER:-PT15M\r\n"
        + "END:VALARM\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

void writeEvent(const QString &folder, const QByteArray &name, const QByteArray &text)
{
    QFile file(folder + u'/' + QString::fromLatin1(name) + QStringLiteral(".ics"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        std::abort();
    }
}

class FullCalendar
{
public:
    FullCalendar() : store(std::make_unique<VdirCalendars>(m_folder.path()))
    {
        const QString folder = m_folder.filePath(QStringLiteral("Personal"));
        QDir().mkpath(folder);
        for (int number = 0; number < 5000; ++number) {
            writeEvent(folder, "plain-" + QByteArray::number(number), eventText(number, {}));
        }
        constexpr std::array kRules{"RRULE:FREQ=WEEKLY;BYDAY=MO,WE\r\n", "RRULE:FREQ=DAILY\r\n",
            "RRULE:FREQ=MONTHLY;BYDAY=2TU\r\n", "RRULE:FREQ=YEARLY\r\n",
            "RRULE:FREQ=WEEKLY;INTERVAL=2;COUNT=100\r\n"};
        for (int number = 0; number < 500; ++number) {
            writeEvent(folder, "series-" + QByteArray::number(number),
                eventText(number, kRules.at(static_cast<std::size_t>(number) % kRules.size())));
        }
    }

    // As another start of the program finds it.
    void reopen() { store = std::make_unique<VdirCalendars>(m_folder.path()); }

private:
    QTemporaryDir m_folder;

public:
    std::unique_ptr<VdirCalendars> store;
};

// Made once: that takes longer than what is measured.
FullCalendar &fullCalendar()
{
    static FullCalendar calendar;
    return calendar;
}

// As a list of the next days asks; argument: how many.
void calendarWindow(benchmark::State &state)
{
    FullCalendar &calendar = fullCalendar();
    const CalendarWindow window{kNow, kNow + std::chrono::days(state.range(0))};
    qsizetype found = calendar.store->events(window, {}).size();
    for (auto _ : state) {
        found = calendar.store->events(window, {}).size();
    }
    state.counters["events"] = static_cast<double>(found);
}
BENCHMARK(calendarWindow)->Arg(7)->Arg(90)->Unit(benchmark::kMillisecond);

// As the search for a title asks.
void calendarSearch(benchmark::State &state)
{
    FullCalendar &calendar = fullCalendar();
    const CalendarWindow window{kNow - std::chrono::days(30), kNow + std::chrono::days(365)};
    qsizetype found = calendar.store->events(window, {}).size();
    for (auto _ : state) {
        found = calendar.store->events(window, {}).size();
    }
    state.counters["events"] = static_cast<double>(found);
}
BENCHMARK(calendarSearch)->Unit(benchmark::kMillisecond);

// The first question of a program that has just started.
void calendarWindowCold(benchmark::State &state)
{
    FullCalendar &calendar = fullCalendar();
    const CalendarWindow window{kNow, kNow + 7 * 24h};
    for (auto _ : state) {
        state.PauseTiming();
        calendar.reopen();
        state.ResumeTiming();
        benchmark::DoNotOptimize(calendar.store->events(window, {}));
    }
}
BENCHMARK(calendarWindowCold)->Unit(benchmark::kMillisecond);

CalendarEvent newMeeting()
{
    CalendarEvent event;
    event.calendarIdentifier = QStringLiteral("Personal");
    event.title = QStringLiteral("A new meeting");
    event.startDate = kNow;
    event.endDate = kNow + 30min;
    return event;
}

void calendarCreate(benchmark::State &state)
{
    static FullCalendar calendar; // of its own, as it grows
    const CalendarEvent event = newMeeting();
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.store->save(event, {}));
    }
}
BENCHMARK(calendarCreate)->Unit(benchmark::kMillisecond);

void calendarFindByIdentifier(benchmark::State &state)
{
    FullCalendar &calendar = fullCalendar();
    const CalendarEvent event = calendar.store->save(newMeeting(), {});
    for (auto _ : state) {
        benchmark::DoNotOptimize(calendar.store->event(event.identifier, {}));
    }
}
BENCHMARK(calendarFindByIdentifier)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace velarc
