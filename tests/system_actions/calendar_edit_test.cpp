#include "system_actions/calendar_action_fixture.h"

namespace velarc {
namespace {

using std::chrono::days;

class CalendarEdit : public CalendarActionTest
{
protected:
    CalendarEdit()
    {
        CalendarEvent &review = store->addEvent(u"Review"_s, winterTime(3, 2, 9h));
        review.identifier = u"R-1"_s;
        review.location = u"Room 4"_s;
        review.notes = u"Bring the plan"_s;
    }

    [[nodiscard]] const CalendarEvent &review() const { return store->allEvents.first(); }
};
using CalendarDelete = CalendarEdit;

const QString kNotFound = u"Could not find a matching calendar event."_s;
const QString kNothingToFind = u"Provide EventID or Title to edit or delete an event."_s;

TEST_F(CalendarEdit, unknownIdentifierIsFinal)
{
    EXPECT_EQ(refusalOf([&] { edit(u"eventid: X\ntitle: Review"_s); }), kNotFound);
    EXPECT_EQ(store->calls, (QStringList{u"access"_s, u"identifier X"_s}));
}

TEST_F(CalendarEdit, startBehindTheEndMovesTheEndHalfAnHourBehindIt)
{
    edit(u"eventid: R-1\nstart: 2026-03-03 14:00"_s);
    EXPECT_EQ(review().startDate, winterTime(3, 3, 14h));
    EXPECT_EQ(review().endDate, winterTime(3, 3, 14h + 30min));
}

TEST_F(CalendarEdit, endBeforeTheStartIsRefused)
{
    EXPECT_EQ(refusalOf([&] { edit(u"eventid: R-1\nend: 2026-03-02 08:00"_s); }),
        u"End date must be after start date."_s);
    EXPECT_FALSE(store->calls.contains(u"save"_s));
}

TEST_F(CalendarEdit, startAtTheEndLeavesTheEnd)
{
    edit(u"eventid: R-1\nstart: 2026-03-02 09:30"_s);
    EXPECT_EQ(review().startDate, review().endDate);
}

TEST_F(CalendarEdit, startWithinTheEventLeavesTheEnd)
{
    edit(u"eventid: R-1\nstart: 2026-03-02 08:00"_s);
    EXPECT_EQ(review().endDate, winterTime(3, 2, 9h + 30min));
    edit(u"eventid: R-1\nstart: 2026-03-02 09:15"_s);
    EXPECT_EQ(review().endDate, winterTime(3, 2, 9h + 30min));
}

TEST_F(CalendarEdit, bothDatesAreTakenAsTheyAre)
{
    edit(u"eventid: R-1\nstart: 2026-03-04 10:00\nend: 2026-03-04 10:00"_s);
    EXPECT_EQ(review().startDate, winterTime(3, 4, 10h));
    EXPECT_EQ(review().endDate, winterTime(3, 4, 10h));
    EXPECT_EQ(refusalOf([&] { edit(u"id: R-1\nstart: 2026-03-04\nend: 2026-03-03"_s); }),
        u"End date must be after start date."_s);
}

TEST_F(CalendarEdit, whatTheTextDoesNotNameStays)
{
    const CalendarEvent before = review();
    const CalendarActionOutcome outcome = edit(u"eventid: R-1"_s);
    EXPECT_EQ(review(), before);
    EXPECT_EQ(outcome.summary, u"Updated calendar event \"Review\"."_s);
    EXPECT_EQ(outcome.primaryEventID, u"R-1"_s);
    EXPECT_EQ(outcome.events.size(), 1);
}

TEST_F(CalendarEdit, placeAndNotesAreReplaced)
{
    edit(u"eventid: R-1\nlocation: Room 5\nnotes: None"_s);
    EXPECT_EQ(review().location, u"Room 5"_s);
    EXPECT_EQ(review().notes, u"None"_s);
    EXPECT_EQ(review().title, u"Review"_s);
}

TEST_F(CalendarEdit, eventNeverMovesBetweenCalendars)
{
    store->addCalendar(u"Work"_s);
    edit(u"eventid: R-1\ncalendar: Work"_s);
    EXPECT_EQ(review().calendarIdentifier, u"id of Personal"_s);
}

TEST_F(CalendarEdit, identifierIsFoundUnderEitherKey)
{
    edit(u"id:  R-1 \ntitle: Audit"_s);
    EXPECT_EQ(review().title, u"Audit"_s);
}

TEST_F(CalendarEdit, titleFindsTheEventAndIsWrittenAsTyped)
{
    const CalendarActionOutcome outcome = edit(u"title: REVIEW\nlocation: Room 5"_s);
    EXPECT_EQ(review().title, u"REVIEW"_s);
    EXPECT_EQ(outcome.summary, u"Updated calendar event \"REVIEW\"."_s);
}

TEST_F(CalendarEdit, freeFirstLineFindsTheEvent)
{
    edit(u"Review\nlocation: Room 5"_s);
    EXPECT_EQ(review().location, u"Room 5"_s);
}

TEST_F(CalendarEdit, earliestOfOneTitleIsTakenEvenIfItHasPassed)
{
    store->addEvent(u"review"_s, now() - days(20)).identifier = u"R-0"_s;
    store->addEvent(u"Review"_s, now() - days(40)).identifier = u"too old"_s;
    EXPECT_EQ(edit(u"title: Review"_s).primaryEventID, u"R-0"_s);
}

TEST_F(CalendarEdit, searchGoesFromThirtyDaysBackToAYearAhead)
{
    edit(u"title: Review"_s);
    EXPECT_EQ(store->windows.first().start, now() - days(30));
    EXPECT_EQ(store->windows.first().end, now() + days(365));
}

TEST_F(CalendarEdit, unknownTitleIsNotFound)
{
    EXPECT_EQ(refusalOf([&] { edit(u"title: Reviews"_s); }), kNotFound);
    EXPECT_EQ(refusalOf([&] { edit(u"title: Réview"_s); }), kNotFound);
}

TEST_F(CalendarEdit, searchComesBeforeTheDates)
{
    EXPECT_EQ(
        refusalOf([&] { edit(u"title: x\nstart: 2026-03-02\nend: 2026-03-01"_s); }), kNotFound);
}

TEST_F(CalendarEdit, neitherIdentifierNorTitleIsRefused)
{
    EXPECT_EQ(refusalOf([&] { edit(u"start: 2026-03-02"_s); }), kNothingToFind);
    EXPECT_EQ(refusalOf([&] { edit(u""_s); }), kNothingToFind);
    EXPECT_FALSE(store->calls.contains(u"events"_s));
}

TEST_F(CalendarEdit, eventWithoutATitleIsCalledUntitled)
{
    store->allEvents.first().title = u" "_s;
    EXPECT_EQ(edit(u"eventid: R-1"_s).summary, u"Updated calendar event \"Untitled Event\"."_s);
    EXPECT_EQ(remove(u"eventid: R-1"_s).summary, u"Deleted calendar event \"Untitled Event\"."_s);
}

TEST_F(CalendarEdit, failedSavePassesUntouched)
{
    store->saveFailure = std::make_exception_ptr(CalendarStoreError(u"Read-only."_s));
    EXPECT_EQ(refusalOf([&] { edit(u"eventid: R-1\ntitle: Audit"_s); }), u"Read-only."_s);
}

TEST_F(CalendarEdit, oneTitleIsFoundAmongFiveThousand)
{
    for (int index = 0; index < 5000; ++index) {
        store->addEvent(u"Event "_s + QString::number(index), now() + 1h);
    }
    store->addEvent(u"Needle"_s, now() + 2h);
    EXPECT_EQ(edit(u"title: needle"_s).primaryEventID, u"Needle"_s);
}

TEST_F(CalendarDelete, numberAloneIsATitle)
{
    EXPECT_EQ(refusalOf([&] { remove(u"42"_s); }), kNotFound);
    store->addEvent(u"42"_s, now() + 1h);
    EXPECT_EQ(remove(u"42"_s).summary, u"Deleted calendar event \"42\"."_s);
}

TEST_F(CalendarDelete, numberBehindAColonIsNoTitle)
{
    EXPECT_EQ(refusalOf([&] { remove(u"number: 42"_s); }), kNothingToFind);
}

TEST_F(CalendarDelete, eventIsGoneAndItsIdentifierIsTold)
{
    const CalendarActionOutcome outcome = remove(u"title: review"_s);
    EXPECT_TRUE(store->allEvents.isEmpty());
    EXPECT_EQ(outcome.summary, u"Deleted calendar event \"Review\"."_s);
    EXPECT_EQ(outcome.primaryEventID, u"R-1"_s);
    EXPECT_TRUE(outcome.events.isEmpty());
}

TEST_F(CalendarDelete, unknownIdentifierIsFinal)
{
    EXPECT_EQ(refusalOf([&] { remove(u"eventid: X\ntitle: Review"_s); }), kNotFound);
}

TEST_F(CalendarDelete, failedRemovalPassesUntouched)
{
    store->saveFailure = std::make_exception_ptr(CalendarStoreError(u"Read-only."_s));
    EXPECT_EQ(refusalOf([&] { remove(u"eventid: R-1"_s); }), u"Read-only."_s);
}

TEST_F(CalendarDelete, stopBeforeTheRemovalRemovesNothing)
{
    store->accessGate.close();
    store->accessGate.ignoreStops();
    store->saveGate.ignoreStops();
    const auto outcome = watch(service.deleteEvent(u"id: R-1"_s, stop.get_token()));
    stop.request_stop();
    store->accessGate.open();
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
    EXPECT_EQ(store->allEvents.size(), 1);
}

} // namespace
} // namespace velarc
