#include "calendar_world.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>

namespace velarc {

CalendarInfo CalendarContract::defaultCalendar()
{
    return outcomeOf(store->defaultCalendarForNewEvents({})).value();
}

CalendarEvent CalendarContract::save(const CalendarEvent &event)
{
    return outcomeOf(store->save(event, {}));
}

CalendarEvent CalendarContract::make(const QString &title, Instant start, Instant end)
{
    CalendarEvent event;
    event.calendarIdentifier = defaultCalendar().identifier;
    event.title = title;
    event.startDate = start;
    event.endDate = end;
    return save(event);
}

void CalendarContract::remove(const CalendarEvent &event)
{
    outcomeOf(store->remove(event, {}));
}

std::optional<CalendarEvent> CalendarContract::find(const QString &identifier)
{
    return outcomeOf(store->eventWithIdentifier(identifier, {}));
}

QList<CalendarEvent> CalendarContract::events(Instant from, Instant to)
{
    QList<CalendarEvent> found = outcomeOf(store->events({from, to}, {}));
    std::sort(
        found.begin(), found.end(), [](const CalendarEvent &left, const CalendarEvent &right) {
            return std::tie(left.startDate, left.title) < std::tie(right.startDate, right.title);
        });
    return found;
}

CalendarEvent CalendarContract::only(const QString &title)
{
    QList<CalendarEvent> found = events(utc("2024-06-01 00:00"), utc("2026-06-01 00:00"));
    found.removeIf([&](const CalendarEvent &event) { return event.title != title; });
    EXPECT_EQ(found.size(), 1);
    return found.value(0);
}

QStringList CalendarContract::starts(Instant from, Instant to)
{
    QStringList found;
    for (const CalendarEvent &event : events(from, to)) {
        const auto seconds =
            std::chrono::floor<std::chrono::seconds>(event.startDate).time_since_epoch();
        found.append(QDateTime::fromSecsSinceEpoch(seconds.count(), Qt::UTC)
                         .toString(u"yyyy-MM-dd HH:mm"_s));
    }
    return found;
}

namespace {

const QByteArray kWeekly = "UID:weekly\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Stand-up\r\n"
                           "DTSTART;TZID=America/New_York:20250303T090000\r\nDTEND;TZID=America/"
                           "New_York:20250303T093000\r\n"
                           "RRULE:FREQ=WEEKLY;COUNT=4\r\nX-OTHER-PROGRAM:keep me\r\n";

using ::testing::ElementsAre;

TEST_P(CalendarContract, accessIsGrantedWhereNobodyForbidsIt)
{
    EXPECT_TRUE(outcomeOf(store->requestFullAccessToEvents({})));
}

TEST_P(CalendarContract, firstUseFindsWritableDefaultCalendar)
{
    const CalendarInfo calendar = defaultCalendar();
    EXPECT_EQ(calendar.title, u"Personal"_s);
    EXPECT_TRUE(calendar.allowsContentModifications);
    EXPECT_TRUE(outcomeOf(store->calendars({})).contains(calendar));
}

TEST_P(CalendarContract, emptyCalendarsHaveNoEvents)
{
    EXPECT_TRUE(events(utc("2000-01-01 00:00"), utc("2100-01-01 00:00")).isEmpty());
}

TEST_P(CalendarContract, newEventIsFoundAsItWasMadeByAnotherStart)
{
    CalendarEvent event;
    event.calendarIdentifier = defaultCalendar().identifier;
    event.title = u"Zahnärztin; \"Dr. Ü\", \\ 🦷"_s;
    event.startDate = at("2025-05-01 09:00");
    event.endDate = at("2025-05-01 09:30");
    event.location = u"Hauptstraße 1, 10115 Berlin"_s;
    event.notes = u"first line\nsecond: line; with, signs\n\nlast"_s;
    const CalendarEvent saved = save(event);
    EXPECT_FALSE(saved.identifier.isEmpty());
    event.identifier = saved.identifier;
    EXPECT_EQ(saved, event);

    store = world->open();
    EXPECT_EQ(find(saved.identifier), event);
    EXPECT_THAT(events(at("2025-05-01 00:00"), at("2025-05-02 00:00")), ElementsAre(event));
}

TEST_P(CalendarContract, eventsOfOneTitleAreTwoEvents)
{
    const CalendarEvent first = make(u"Twin"_s, at("2025-05-01 09:00"), at("2025-05-01 10:00"));
    const CalendarEvent second = make(u"Twin"_s, at("2025-05-01 09:00"), at("2025-05-01 10:00"));
    EXPECT_NE(first.identifier, second.identifier);
    EXPECT_EQ(events(at("2025-05-01 00:00"), at("2025-05-02 00:00")).size(), 2);
}

TEST_P(CalendarContract, eventOfNoLengthIsKeptAndFound)
{
    const CalendarEvent event = make(u"Moment"_s, at("2025-05-01 09:00"), at("2025-05-01 09:00"));
    EXPECT_EQ(event.endDate, event.startDate);
    EXPECT_THAT(events(at("2025-05-01 09:00"), at("2025-05-01 10:00")), ElementsAre(event));
    EXPECT_TRUE(events(at("2025-05-01 08:00"), at("2025-05-01 09:00")).isEmpty());
}

TEST_P(CalendarContract, windowHoldsWhatLiesInItInPart)
{
    const CalendarEvent event = make(u"Long"_s, at("2025-05-01 09:00"), at("2025-05-01 12:00"));
    EXPECT_THAT(events(at("2025-05-01 11:00"), at("2025-05-01 18:00")), ElementsAre(event));
    EXPECT_THAT(events(at("2025-05-01 06:00"), at("2025-05-01 09:01")), ElementsAre(event));
    EXPECT_TRUE(events(at("2025-05-01 06:00"), at("2025-05-01 09:00")).isEmpty());
    EXPECT_TRUE(events(at("2025-05-01 12:00"), at("2025-05-01 18:00")).isEmpty());
}

TEST_P(CalendarContract, unknownIdentifierFindsNothing)
{
    EXPECT_EQ(find(u"X"_s), std::nullopt);
    EXPECT_EQ(find(u"../../etc/passwd"_s), std::nullopt);
    EXPECT_EQ(find(u"X#20250310T090000Z"_s), std::nullopt);
}

TEST_P(CalendarContract, editChangesWhatTheRecordSaysAndNothingElse)
{
    CalendarEvent event = make(u"Review"_s, at("2025-05-01 09:00"), at("2025-05-01 10:00"));
    event.title = u"Budget review"_s;
    event.location = u"Room 2"_s;
    EXPECT_EQ(save(event), event);
    event.startDate = at("2025-05-02 15:00");
    event.endDate = at("2025-05-02 16:30");
    event.notes = u"bring the figures"_s;
    EXPECT_EQ(save(event), event);

    store = world->open();
    EXPECT_EQ(find(event.identifier), event);
    EXPECT_TRUE(events(at("2025-05-01 00:00"), at("2025-05-02 00:00")).isEmpty());
}

TEST_P(CalendarContract, editKeepsWhatAnotherProgramWroteAndTheZoneItWroteIn)
{
    world->put(
        {"UID:foreign\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Call\r\nX-OTHER-PROGRAM:keep me\r\n"
         "PRIORITY:3\r\nDTSTART;TZID=Europe/Berlin:20250501T150000\r\n"
         "DURATION:PT45M\r\n"});
    CalendarEvent event = only(u"Call"_s);
    EXPECT_EQ(event.startDate, at("2025-05-01 15:00", "Europe/Berlin"));
    EXPECT_EQ(event.endDate, at("2025-05-01 15:45", "Europe/Berlin"));
    event.startDate = at("2025-05-02 10:00");
    event.endDate = at("2025-05-02 11:00");
    EXPECT_EQ(save(event), event);

    const QByteArray written = world->written();
    EXPECT_TRUE(written.contains("X-OTHER-PROGRAM:keep me")) << written.toStdString();
    EXPECT_TRUE(written.contains("PRIORITY:3")) << written.toStdString();
    EXPECT_TRUE(written.contains("TZID=Europe/Berlin:20250502T160000")) << written.toStdString();
}

TEST_P(CalendarContract, deletedEventIsGone)
{
    const CalendarEvent event = make(u"Gone"_s, at("2025-05-01 09:00"), at("2025-05-01 10:00"));
    const CalendarEvent other = make(u"Stays"_s, at("2025-05-01 09:00"), at("2025-05-01 10:00"));
    remove(event);
    EXPECT_EQ(find(event.identifier), std::nullopt);
    EXPECT_EQ(find(other.identifier), other);
    EXPECT_THROW(remove(event), CalendarStoreError);
    EXPECT_THROW(static_cast<void>(save(event)), CalendarStoreError);
}

TEST_P(CalendarContract, readOnlyCalendarSaysSoAndTakesNothing)
{
    const QString title = world->readOnlyCalendar();
    const QList<CalendarInfo> all = outcomeOf(store->calendars({}));
    const auto calendar = std::find_if(
        all.begin(), all.end(), [&](const CalendarInfo &each) { return each.title == title; });
    ASSERT_NE(calendar, all.end());
    EXPECT_FALSE(calendar->allowsContentModifications);
    CalendarEvent event;
    event.calendarIdentifier = calendar->identifier;
    event.title = u"Refused"_s;
    event.startDate = at("2025-05-01 09:00");
    event.endDate = at("2025-05-01 10:00");
    try {
        static_cast<void>(save(event));
        ADD_FAILURE() << "it was saved";
    } catch (const CalendarStoreError &error) {
        EXPECT_FALSE(error.message().isEmpty());
    }
    EXPECT_TRUE(events(at("2025-05-01 00:00"), at("2025-05-02 00:00")).isEmpty());
}

TEST_P(CalendarContract, unknownCalendarTakesNothing)
{
    CalendarEvent event;
    event.calendarIdentifier = u"no such calendar"_s;
    event.startDate = event.endDate = at("2025-05-01 09:00");
    EXPECT_THROW(static_cast<void>(save(event)), CalendarStoreError);
}

TEST_P(CalendarContract, eachOccurrenceOfASeriesIsAnEventOfItsOwn)
{
    world->put({kWeekly});
    const QList<CalendarEvent> found = events(utc("2025-01-01 00:00"), utc("2026-01-01 00:00"));
    ASSERT_EQ(found.size(), 4);
    EXPECT_EQ(found[0].identifier, u"weekly#20250303T140000Z"_s);
    EXPECT_EQ(found[1].identifier, u"weekly#20250310T130000Z"_s); // the clock was changed
    for (const CalendarEvent &event : found) {
        EXPECT_EQ(event.endDate - event.startDate, 30min);
        EXPECT_EQ(find(event.identifier), event);
    }
    EXPECT_EQ(find(u"weekly"_s), found[0]);
    EXPECT_EQ(find(u"weekly#20250304T140000Z"_s), std::nullopt);
}

TEST_P(CalendarContract, editOfOneOccurrenceLeavesTheOthersAlone)
{
    world->put({kWeekly});
    CalendarEvent second = events(utc("2025-03-09 00:00"), utc("2025-03-11 00:00")).value(0);
    second.title = u"Stand-up, later"_s;
    second.startDate = at("2025-03-11 11:00");
    second.endDate = at("2025-03-11 11:15");
    EXPECT_EQ(save(second), second);

    store = world->open();
    EXPECT_EQ(find(second.identifier), second);
    EXPECT_THAT(starts(utc("2025-01-01 00:00"), utc("2026-01-01 00:00")),
        ElementsAre(u"2025-03-03 14:00"_s, u"2025-03-11 15:00"_s, u"2025-03-17 13:00"_s,
            u"2025-03-24 13:00"_s));
    EXPECT_TRUE(world->written().contains("X-OTHER-PROGRAM:keep me"));

    second.notes = u"changed once more"_s;
    second.startDate = at("2025-03-12 11:00");
    second.endDate = at("2025-03-12 11:15");
    EXPECT_EQ(save(second), second);
    EXPECT_THAT(starts(utc("2025-03-10 00:00"), utc("2025-03-14 00:00")),
        ElementsAre(u"2025-03-12 15:00"_s));
}

TEST_P(CalendarContract, removalOfOneOccurrenceLeavesTheOthers)
{
    world->put({kWeekly});
    remove(events(utc("2025-03-09 00:00"), utc("2025-03-11 00:00")).value(0));
    const QStringList rest{u"2025-03-03 14:00"_s, u"2025-03-17 13:00"_s, u"2025-03-24 13:00"_s};
    EXPECT_EQ(starts(utc("2025-01-01 00:00"), utc("2026-01-01 00:00")), rest);
    store = world->open();
    EXPECT_EQ(starts(utc("2025-01-01 00:00"), utc("2026-01-01 00:00")), rest);
    EXPECT_EQ(find(u"weekly#20250310T130000Z"_s), std::nullopt);
}

TEST_P(CalendarContract, removalOfAChangedOccurrenceTakesItAway)
{
    world->put({kWeekly});
    CalendarEvent second = events(utc("2025-03-09 00:00"), utc("2025-03-11 00:00")).value(0);
    second.startDate = at("2025-03-11 11:00");
    second.endDate = at("2025-03-11 11:15");
    remove(save(second));
    EXPECT_THAT(starts(utc("2025-01-01 00:00"), utc("2026-01-01 00:00")),
        ElementsAre(u"2025-03-03 14:00"_s, u"2025-03-17 13:00"_s, u"2025-03-24 13:00"_s));
}

TEST_P(CalendarContract, firstOccurrenceIsTheFirstThatIsLeft)
{
    world->put({kWeekly});
    remove(find(u"weekly"_s).value());
    EXPECT_EQ(find(u"weekly"_s).value().identifier, u"weekly#20250310T130000Z"_s);
}

TEST_P(CalendarContract, seriesGoesWithItsLastOccurrence)
{
    world->put({kWeekly});
    for (int count = 0; count < 4; ++count) {
        remove(find(u"weekly"_s).value());
    }
    EXPECT_EQ(find(u"weekly"_s), std::nullopt);
    EXPECT_FALSE(world->written().contains("UID:weekly"));
}

TEST_P(CalendarContract, occurrencesKeepTheirWallTimeThroughChangesOfTheClock)
{
    world->put({"UID:gap\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Night\r\n"
                "DTSTART;TZID=America/New_York:20250308T023000\r\nDURATION:PT15M\r\n"
                "RRULE:FREQ=DAILY;COUNT=3\r\n",
        "UID:overlap\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Night\r\n"
        "DTSTART;TZID=America/New_York:20251101T013000\r\nDURATION:PT15M\r\n"
        "RRULE:FREQ=DAILY;COUNT=3\r\n"});
    EXPECT_THAT(starts(utc("2025-03-01 00:00"), utc("2025-04-01 00:00")),
        ElementsAre(u"2025-03-08 07:30"_s, u"2025-03-09 07:30"_s, u"2025-03-10 06:30"_s));
    EXPECT_THAT(starts(utc("2025-10-01 00:00"), utc("2025-12-01 00:00")),
        ElementsAre(u"2025-11-01 05:30"_s, u"2025-11-02 05:30"_s, u"2025-11-03 06:30"_s));
}

TEST_P(CalendarContract, momentsAroundAChangeOfTheClockAreKept)
{
    // The second 01:30 of that night, which no wall time names.
    const CalendarEvent event = make(u"Late"_s, utc("2025-11-02 06:30"), utc("2025-11-02 07:30"));
    store = world->open();
    EXPECT_EQ(find(event.identifier), event);
    EXPECT_EQ(event.startDate, utc("2025-11-02 06:30"));
}

TEST_P(CalendarContract, allDayEventCoversItsDaysInTheSystemsZone)
{
    world->put({"UID:fair\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Fair\r\n"
                "DTSTART;VALUE=DATE:20250310\r\nDTEND;VALUE=DATE:20250312\r\n"});
    CalendarEvent event = only(u"Fair"_s);
    EXPECT_TRUE(event.isAllDay);
    EXPECT_EQ(event.startDate, at("2025-03-10 00:00"));
    EXPECT_EQ(event.endDate, at("2025-03-12 00:00") - 1s);
    event.startDate = at("2025-03-20 15:00");
    event.endDate = at("2025-03-20 15:30");
    const CalendarEvent moved = save(event);
    EXPECT_TRUE(moved.isAllDay);
    EXPECT_EQ(moved.startDate, at("2025-03-20 00:00"));
    EXPECT_EQ(moved.endDate, at("2025-03-21 00:00") - 1s);
    EXPECT_TRUE(world->written().contains("DTSTART;VALUE=DATE:20250320"));
    EXPECT_THAT(events(at("2025-03-20 23:00"), at("2025-03-21 00:00")), ElementsAre(moved));
    EXPECT_TRUE(events(at("2025-03-21 00:00"), at("2025-03-22 00:00")).isEmpty());
}

TEST_P(CalendarContract, occurrencesOfAnAllDaySeriesAreNamedByTheirDay)
{
    world->put({"UID:birthday\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Birthday\r\n"
                "DTSTART;VALUE=DATE:19800229\r\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=-1\r\n"});
    const CalendarEvent event = events(at("2025-02-01 00:00"), at("2025-04-01 00:00")).value(0);
    EXPECT_EQ(event.identifier, u"birthday#20250228"_s);
    EXPECT_EQ(event.startDate, at("2025-02-28 00:00"));
    EXPECT_EQ(find(event.identifier), event);
    remove(event);
    EXPECT_TRUE(events(at("2025-02-01 00:00"), at("2025-04-01 00:00")).isEmpty());
    EXPECT_EQ(events(at("2026-02-01 00:00"), at("2026-04-01 00:00")).size(), 1);
}

TEST_P(CalendarContract, floatingTimesAreReadInTheSystemsZone)
{
    world->put(
        {"UID:floating\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Pill\r\n"
         "DTSTART:20250310T080000\r\nDTEND:20250310T081500\r\nRRULE:FREQ=DAILY;COUNT=2\r\n"});
    const QList<CalendarEvent> found = events(at("2025-03-10 00:00"), at("2025-03-12 00:00"));
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].startDate, at("2025-03-10 08:00"));
    EXPECT_EQ(found[1].identifier, u"floating#20250311T080000"_s);
    remove(found[1]);
    EXPECT_EQ(find(found[1].identifier), std::nullopt);
}

TEST_P(CalendarContract, changedOccurrenceIsFoundAtItsNewTimeFarFromItsOldOne)
{
    world->put({kWeekly});
    CalendarEvent second = find(u"weekly#20250310T130000Z"_s).value();
    second.startDate = at("2025-07-01 11:00");
    second.endDate = at("2025-07-01 12:00");
    EXPECT_EQ(save(second), second);
    EXPECT_THAT(events(at("2025-07-01 00:00"), at("2025-07-02 00:00")), ElementsAre(second));
    EXPECT_TRUE(events(utc("2025-03-10 00:00"), utc("2025-03-11 00:00")).isEmpty());
}

TEST_P(CalendarContract, stoppedCallEndsAsStopped)
{
    std::stop_source stop;
    auto running =
        watch(store->events({utc("2025-01-01 00:00"), utc("2026-01-01 00:00")}, stop.get_token()));
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(outcomeOf<QList<CalendarEvent>>(running)), CancellationError);
    EXPECT_TRUE(events(utc("2025-01-01 00:00"), utc("2026-01-01 00:00")).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Folder, CalendarContract, testing::Values(&makeFolderWorld));
INSTANTIATE_TEST_SUITE_P(Server, CalendarContract, testing::Values(&makeServerWorld));

} // namespace

} // namespace velarc
