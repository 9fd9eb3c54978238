#include "system_actions/calendar_action_fixture.h"

namespace velarc {
namespace {

using CalendarCreate = CalendarActionTest;

constexpr const char *kDenied = "Calendar permission was denied.";

TEST_F(CalendarCreate, emptyTextMakesANewEventInAnHour)
{
    const CalendarActionOutcome outcome = create(u""_s);
    ASSERT_EQ(store->allEvents.size(), 1);
    const CalendarEvent &event = store->allEvents.first();
    EXPECT_EQ(event.title, u"New Event"_s);
    EXPECT_EQ(event.startDate, now() + 1h);
    EXPECT_EQ(event.endDate, now() + 90min);
    EXPECT_EQ(event.calendarIdentifier, u"id of Personal"_s);
    EXPECT_EQ(event.location, std::nullopt);
    EXPECT_EQ(event.notes, std::nullopt);
    EXPECT_EQ(outcome.summary, u"Created calendar event \"New Event\"."_s);
}

TEST_F(CalendarCreate, outcomeHoldsTheOneEventAsItWasSaved)
{
    const CalendarActionOutcome outcome =
        create(u"title: Review\nstart: 2026-03-02 09:00\nend: 2026-03-02 10:00\nlocation: Room 4\n"
               u"body: Bring the plan"_s);
    const CalendarActionEvent expected{u"event 1"_s, u"Review"_s, winterTime(3, 2, 9h),
        winterTime(3, 2, 10h), u"Room 4"_s, u"Bring the plan"_s};
    EXPECT_EQ(outcome.events, QList<CalendarActionEvent>{expected});
    EXPECT_EQ(outcome.primaryEventID, u"event 1"_s);
}

TEST_F(CalendarCreate, zeroLengthIsAccepted)
{
    const auto outcome = create(u"title: Review\nstart: 2025-05-01 09:00\nend: 2025-05-01 09:00"_s);
    EXPECT_EQ(outcome.events.first().startDate, outcome.events.first().endDate);
    EXPECT_EQ(store->allEvents.size(), 1);
}

TEST_F(CalendarCreate, endBeforeTheStartIsRefused)
{
    EXPECT_EQ(refusalOf([&] { create(u"start: 2026-03-02 09:00\nend: 2026-03-02 08:59"_s); }),
        u"End date must be after start date."_s);
    EXPECT_FALSE(store->calls.contains(u"default"_s));
}

TEST_F(CalendarCreate, endBeforeTheDefaultStartIsRefused)
{
    EXPECT_EQ(refusalOf([&] { create(u"title: Review\nend: 2026-02-20 10:30"_s); }),
        u"End date must be after start date."_s);
}

TEST_F(CalendarCreate, withoutAnEndItLastsHalfAnHour)
{
    const auto outcome = create(u"title: Review\nstart: 2026-03-08 01:45"_s);
    EXPECT_EQ(outcome.events.first().endDate - outcome.events.first().startDate, 30min);
}

TEST_F(CalendarCreate, readOnlyCalendarIsPassedOverWithoutAWord)
{
    store->addCalendar(u"Work"_s);
    store->allCalendars.last().allowsContentModifications = false;
    const CalendarActionOutcome outcome = create(u"title: Review\ncalendar: Work"_s);
    EXPECT_EQ(store->allEvents.first().calendarIdentifier, u"id of Personal"_s);
    EXPECT_EQ(outcome.summary, u"Created calendar event \"Review\"."_s);
}

TEST_F(CalendarCreate, calendarIsFoundWithoutRegardToCase)
{
    store->addCalendar(u"Work"_s);
    create(u"title: Review\ncalendar: work"_s);
    EXPECT_EQ(store->allEvents.first().calendarIdentifier, u"id of Work"_s);
}

TEST_F(CalendarCreate, accentsOfACalendarNameCount)
{
    store->addCalendar(u"Büro"_s);
    create(u"title: Review\ncalendar: buro"_s);
    EXPECT_EQ(store->allEvents.first().calendarIdentifier, u"id of Personal"_s);
    create(u"title: Review\ncalendar: BÜRO"_s);
    EXPECT_EQ(store->allEvents.last().calendarIdentifier, u"id of Büro"_s);
}

TEST_F(CalendarCreate, firstWritableCalendarOfTheNameIsTaken)
{
    store->allCalendars = {
        {u"1"_s, u"work"_s, false}, {u"2"_s, u"Work"_s, true}, {u"3"_s, u"WORK"_s, true}};
    create(u"title: Review\ncalendar: Work"_s);
    EXPECT_EQ(store->allEvents.first().calendarIdentifier, u"2"_s);
}

TEST_F(CalendarCreate, unknownCalendarNameIsPassedOver)
{
    create(u"title: Review\ncalendar: Elsewhere"_s);
    EXPECT_EQ(store->allEvents.first().calendarIdentifier, u"id of Personal"_s);
}

TEST_F(CalendarCreate, defaultCalendarIsNotAskedWhetherItIsWritable)
{
    store->defaultCalendar->allowsContentModifications = false;
    create(u"title: Review"_s);
    EXPECT_EQ(store->allEvents.size(), 1);
}

TEST_F(CalendarCreate, withoutADefaultCalendarItFails)
{
    store->defaultCalendar.reset();
    EXPECT_EQ(refusalOf([&] { create(u"title: Review\ncalendar: Elsewhere"_s); }),
        u"No writable calendar is available."_s);
}

TEST_F(CalendarCreate, namedCalendarNeedsNoDefaultOne)
{
    store->defaultCalendar.reset();
    create(u"title: Review\ncalendar: personal"_s);
    EXPECT_EQ(store->allEvents.size(), 1);
}

TEST_F(CalendarCreate, textWithoutATitleIsTheTitle)
{
    create(u" Lunch at 12:30\nwith Sam "_s);
    EXPECT_EQ(store->allEvents.first().title, u"Lunch at 12:30\nwith Sam"_s);
}

TEST_F(CalendarCreate, savedTitleIsShown)
{
    store->titleAfterSaving = u"Review (tentative)"_s;
    EXPECT_EQ(
        create(u"title: Review"_s).summary, u"Created calendar event \"Review (tentative)\"."_s);
}

TEST_F(CalendarCreate, titleThatWasAskedForStandsInForALostOne)
{
    store->titleAfterSaving = u"  "_s;
    EXPECT_EQ(create(u"title: Review"_s).summary, u"Created calendar event \"Review\"."_s);
}

TEST_F(CalendarCreate, accessIsAskedForFirstAndEachTime)
{
    create(u"title: One"_s);
    create(u"title: Two"_s);
    EXPECT_EQ(store->calls,
        (QStringList{u"access"_s, u"default"_s, u"save"_s, u"access"_s, u"default"_s, u"save"_s}));
}

TEST_F(CalendarCreate, deniedAccessEndsEveryOperationBeforeItsTextIsLookedAt)
{
    store->grantsAccess = false;
    const QString denied = QString::fromUtf8(kDenied);
    EXPECT_EQ(refusalOf([&] { create(u"start: 2026-03-02\nend: 2026-03-01"_s); }), denied);
    EXPECT_EQ(refusalOf([&] { list(u""_s); }), denied);
    EXPECT_EQ(refusalOf([&] { edit(u""_s); }), denied);
    EXPECT_EQ(refusalOf([&] { remove(u""_s); }), denied);
    EXPECT_EQ(store->calls, QStringList(4, u"access"_s));
}

TEST_F(CalendarCreate, failedRequestForAccessPassesUntouched)
{
    store->accessFailure =
        std::make_exception_ptr(CalendarStoreError(u"The calendar server is gone."_s));
    EXPECT_THROW(create(u"title: Review"_s), CalendarStoreError);
    EXPECT_EQ(refusalOf([&] { create(u"title: Review"_s); }), u"The calendar server is gone."_s);
}

TEST_F(CalendarCreate, failedSavePassesUntouched)
{
    store->saveFailure = std::make_exception_ptr(CalendarStoreError(u"The disk is full."_s));
    EXPECT_THROW(create(u"title: Review"_s), CalendarStoreError);
    EXPECT_EQ(refusalOf([&] { create(u"title: Review"_s); }), u"The disk is full."_s);
}

TEST_F(CalendarCreate, hourFromNowIsCountedFromTheGrant)
{
    store->accessGate.close();
    const auto outcome = watch(service.createEvent(u""_s, stop.get_token()));
    clock->advance(10min);
    store->accessGate.open();
    EXPECT_EQ(outcomeOf(outcome).events.first().startDate, clock->now() + 1h);
}

TEST_F(CalendarCreate, stopDuringTheRequestWritesNothing)
{
    store->accessGate.close();
    const auto outcome = watch(service.createEvent(u"title: Review"_s, stop.get_token()));
    stop.request_stop();
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
    EXPECT_EQ(store->calls, QStringList{u"access"_s});
}

TEST_F(CalendarCreate, stopThatTheStoreDoesNotHearWritesNothing)
{
    store->accessGate.close();
    store->accessGate.ignoreStops();
    store->saveGate.ignoreStops();
    const auto outcome = watch(service.createEvent(u"title: Review"_s, stop.get_token()));
    stop.request_stop();
    store->accessGate.open();
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
    EXPECT_TRUE(store->allEvents.isEmpty());
}

TEST_F(CalendarCreate, serviceMayGoBeforeItsTaskEnds)
{
    store->accessGate.close();
    auto passing = std::make_unique<CalendarActionService>(store, clock);
    const auto outcome = watch(passing->createEvent(u"title: Review"_s, stop.get_token()));
    passing.reset();
    store->accessGate.open();
    EXPECT_EQ(outcomeOf(outcome).summary, u"Created calendar event \"Review\"."_s);
}

TEST(CalendarActionEventRecord, isHashedOverAllFields)
{
    const Instant start{1h};
    const CalendarActionEvent event{u"id"_s, u"t"_s, start, start, u"l"_s, u"n"_s};
    EXPECT_EQ(qHash(event), qHash(CalendarActionEvent(event)));
    QList<CalendarActionEvent> others(6, event);
    others[0].identifier = u"x"_s;
    others[1].title = u"x"_s;
    others[2].startDate += 1s;
    others[3].endDate += 1s;
    others[4].location.reset();
    others[5].notes = u"x"_s;
    for (const CalendarActionEvent &other : others) {
        EXPECT_NE(other, event);
        EXPECT_NE(qHash(other), qHash(event));
    }
}

} // namespace
} // namespace velarc
