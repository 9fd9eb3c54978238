// The four operations over calendars that are real: what the user asks for stands in the store.

#include "calendar_world.h"

#include "fakes/fake_clock.h"
#include "system_actions/calendar_action_service.h"

#include <gmock/gmock.h>

namespace velarc {

namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

// At ten in the morning of 2026-02-20 in New York.
class CalendarServiceContract : public CalendarContract
{
protected:
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    CalendarActionService service{store, clock};

    CalendarActionOutcome create(const QString &text)
    {
        return outcomeOf(service.createEvent(text, {}));
    }
    CalendarActionOutcome list(const QString &text)
    {
        return outcomeOf(service.listUpcomingEvents(text, {}));
    }
    CalendarActionOutcome edit(const QString &text)
    {
        return outcomeOf(service.editEvent(text, {}));
    }
    CalendarActionOutcome remove(const QString &text)
    {
        return outcomeOf(service.deleteEvent(text, {}));
    }

    // What the operation says when it fails; nothing may have been written then.
    template <typename Operation> QString refusalOf(Operation operation)
    {
        const QByteArray before = world->written();
        try {
            operation();
        } catch (const UserFacingError &error) {
            EXPECT_EQ(world->written(), before);
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

const QString kNotFound = u"Could not find a matching calendar event."_s;

const QByteArray kMondays = "UID:mondays\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Stand-up\r\n"
                            "DTSTART;TZID=America/New_York:20251103T090000\r\n"
                            "DURATION:PT30M\r\nRRULE:FREQ=WEEKLY\r\n";

TEST_P(CalendarServiceContract, eventIsCreatedListedEditedAndDeleted)
{
    const CalendarActionOutcome created =
        create(u"title: Review\nstart: 2026-02-23 09:00\nlocation: Room 4\nnotes: Plan"_s);
    ASSERT_THAT(created.events, SizeIs(1));
    EXPECT_EQ(created.summary, u"Created calendar event \"Review\"."_s);
    EXPECT_EQ(created.events[0].startDate, at("2026-02-23 09:00"));
    EXPECT_EQ(created.events[0].endDate, at("2026-02-23 09:30"));
    EXPECT_EQ(list(u""_s).events, created.events);

    const QString identifier = created.primaryEventID.value();
    const auto edited = edit(u"eventid: "_s + identifier + u"\nstart: 2026-02-24 11:00"_s);
    EXPECT_EQ(edited.primaryEventID, identifier);
    EXPECT_EQ(edited.events.value(0).endDate, at("2026-02-24 11:30"));
    EXPECT_EQ(list(u""_s).events, edited.events);

    EXPECT_EQ(remove(u"title: REVIEW"_s).primaryEventID, identifier);
    EXPECT_EQ(list(u""_s).summary, u"No upcoming events found in the next 7 days."_s);
    EXPECT_EQ(refusalOf([&] { remove(u"title: Review"_s); }), kNotFound);
}

TEST_P(CalendarServiceContract, titleFindsTheEarliestFromThirtyDaysBackOn)
{
    create(u"title: Review\nstart: 2026-01-10 09:00"_s); // too long ago
    const QString past = create(u"title: REVIEW\nstart: 2026-02-01 09:00"_s).primaryEventID.value();
    create(u"title: Review\nstart: 2026-03-01 09:00"_s);
    EXPECT_EQ(edit(u"title: review\nlocation: Room 5"_s).primaryEventID, past);
    EXPECT_EQ(find(past)->location, u"Room 5"_s);
    EXPECT_EQ(find(past)->title, u"review"_s);
}

TEST_P(CalendarServiceContract, unknownIdentifierIsFinal)
{
    create(u"title: Review\nstart: 2026-02-23 09:00"_s);
    EXPECT_EQ(refusalOf([&] { edit(u"eventid: X\ntitle: Review"_s); }), kNotFound);
}

TEST_P(CalendarServiceContract, oneOccurrenceOfASeriesIsEditedAndOneDeleted)
{
    world->put({kMondays});
    const auto edited = edit(u"title: Stand-up\nlocation: Room 5"_s);
    EXPECT_EQ(edited.primaryEventID, u"mondays#20260126T140000Z"_s); // 25 days ago
    EXPECT_EQ(remove(u"eventid: mondays#20260223T140000Z"_s).summary,
        u"Deleted calendar event \"Stand-up\"."_s);
    const CalendarActionOutcome left = list(u"days: 14\nlimit: 10"_s);
    ASSERT_EQ(titlesOf(left), QStringList{u"Stand-up"_s});
    EXPECT_EQ(left.primaryEventID, u"mondays#20260302T140000Z"_s);
    EXPECT_EQ(left.events[0].location, std::nullopt);
}

TEST_P(CalendarServiceContract, readOnlyCalendarIsPassedOverWithoutAWord)
{
    const QString closed = world->readOnlyCalendar();
    const auto created = create(u"title: Review\ncalendar: "_s + closed);
    EXPECT_EQ(
        find(created.primaryEventID.value())->calendarIdentifier, defaultCalendar().identifier);
}

TEST_P(CalendarServiceContract, endBeforeTheStartChangesNothing)
{
    create(u"title: Review\nstart: 2026-02-23 09:00"_s);
    for (const auto &text : {u"title: Review\nend: 2026-02-23 08:00"_s,
             u"title: x\nstart: 2026-03-02\nend: 2026-03-01"_s}) {
        EXPECT_EQ(refusalOf([&] { text.startsWith(u"title: x"_s) ? create(text) : edit(text); }),
            u"End date must be after start date."_s);
    }
}

TEST_P(CalendarServiceContract, whatIsStoppedWritesNothing)
{
    std::stop_source stop;
    auto running = watch(service.createEvent(u"title: Review"_s, stop.get_token()));
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(outcomeOf<CalendarActionOutcome>(running)), CancellationError);
    EXPECT_THAT(list(u""_s).events, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Folder, CalendarServiceContract, testing::Values(&makeFolderWorld));
INSTANTIATE_TEST_SUITE_P(Server, CalendarServiceContract, testing::Values(&makeServerWorld));

} // namespace

} // namespace velarc
