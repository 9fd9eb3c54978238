// Five thousand events and five hundred series, in each store.

#include "calendar_worlds.h"

#include "system_actions/calendar_backend.h"
#include "system_actions/eds_calendar_store.h"

namespace velarc {

namespace {

QList<QByteArray> crowd()
{
    QList<QByteArray> events;
    for (int number = 0; number < 5000; ++number) {
        const QDate day = QDate(2024, 1, 1).addDays(number % 1000);
        events.append("UID:plain-" + QByteArray::number(number)
            + "\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Plain " + QByteArray::number(number)
            + "\r\nDTSTART;TZID=Europe/Berlin:" + day.toString(u"yyyyMMdd"_s).toLatin1()
            + "T100000\r\nDURATION:PT1H\r\n");
    }
    for (int number = 0; number < 500; ++number) {
        events.append("UID:series-" + QByteArray::number(number)
            + "\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Series " + QByteArray::number(number)
            + "\r\nDTSTART;TZID=America/New_York:20200106T090000\r\nDURATION:PT1H\r\n"
              "RRULE:FREQ=WEEKLY\r\n");
    }
    return events;
}

struct FilledStore
{
    std::unique_ptr<FolderWorld>
        folder; // none for the server, to which only its own user may speak
    std::shared_ptr<CalendarStore> store;
};

class CalendarCrowd : public testing::TestWithParam<std::function<FilledStore()>>
{
};

TEST_P(CalendarCrowd, everyEventIsFoundAndOneCanBeChanged)
{
    const FilledStore filled = GetParam()();
    const auto store = filled.store;
    const CalendarWindow window{utc("2025-05-05 00:00"), utc("2025-05-12 00:00")};
    EXPECT_EQ(outcomeOf(store->events(window, {})).size(), 7 * 5 + 500);
    constexpr int kMondays = 153; // from the first of 2024 to the last of November 2026
    const CalendarWindow years{utc("2024-01-01 00:00"), utc("2026-12-01 00:00")};
    EXPECT_EQ(outcomeOf(store->events(years, {})).size(), 5000 + 500 * kMondays);

    CalendarEvent event = outcomeOf(store->eventWithIdentifier(u"plain-4321"_s, {})).value();
    EXPECT_EQ(event.title, u"Plain 4321"_s);
    event.title = u"Changed"_s;
    event.startDate = utc("2025-05-05 12:00");
    event.endDate = utc("2025-05-05 13:00");
    EXPECT_EQ(outcomeOf(store->save(event, {})), event);
    EXPECT_TRUE(outcomeOf(store->events(window, {})).contains(event));

    const QString one = u"series-7#20250505T130000Z"_s;
    outcomeOf(store->remove(outcomeOf(store->eventWithIdentifier(one, {})).value(), {}));
    EXPECT_EQ(outcomeOf(store->events(window, {})).size(), 7 * 5 + 500);
}

FilledStore filledFolder()
{
    auto folder = std::make_unique<FolderWorld>();
    folder->put(crowd());
    auto store = folder->open();
    return {std::move(folder), std::move(store)};
}

// Before the server is started, or it would be asked five thousand times.
FilledStore filledServer()
{
    writeFile(qEnvironmentVariable("XDG_DATA_HOME") + u"/evolution/calendar/system/calendar.ics"_s,
        calendarWith(crowd()));
    return {nullptr,
        std::make_shared<BackgroundCalendarStore>(
            std::make_shared<EdsCalendars>(loadCalendarServer()))};
}

INSTANTIATE_TEST_SUITE_P(Folder, CalendarCrowd, testing::Values(&filledFolder));
INSTANTIATE_TEST_SUITE_P(CrowdOfServer, CalendarCrowd, testing::Values(&filledServer));

} // namespace

} // namespace velarc
