#include "system_actions/calendar_action_fixture.h"

namespace velarc {
namespace {

using CalendarList = CalendarActionTest;
using std::chrono::days;

TEST_F(CalendarList, fiveHundredDaysAreNinetyAndTwentyFiveEvents)
{
    for (int day = 0; day < 100; ++day) {
        store->addEvent(u"Event "_s + QString::number(day), now() + days(day) + 1h);
    }
    const CalendarActionOutcome outcome = list(u"days: 500"_s);
    EXPECT_EQ(outcome.events.size(), 25);
    EXPECT_EQ(outcome.summary, u"Found 25 upcoming events."_s);
    EXPECT_EQ(store->windows.first().start, now());
    // The clocks go forward within.
    EXPECT_EQ(store->windows.first().end, now() + days(90) - 1h);
}

TEST_F(CalendarList, limitOfZeroIsOneWithinSevenDays)
{
    store->addEvent(u"Today"_s, now() + 1h);
    store->addEvent(u"Tomorrow"_s, now() + 24h);
    const CalendarActionOutcome outcome = list(u"limit: 0"_s);
    EXPECT_EQ(titlesOf(outcome), QStringList{u"Today"_s});
    EXPECT_EQ(outcome.summary, u"Found 1 upcoming event."_s);
    EXPECT_EQ(store->windows.first().end, now() + days(7));
}

TEST_F(CalendarList, oneDayIsCalledDaysToo)
{
    const CalendarActionOutcome outcome = list(u"days: 1"_s);
    EXPECT_EQ(outcome.summary, u"No upcoming events found in the next 1 days."_s);
    EXPECT_TRUE(outcome.events.isEmpty());
    EXPECT_EQ(outcome.primaryEventID, std::nullopt);
}

TEST_F(CalendarList, capitalsSortBeforeSmallLetters)
{
    for (const QString &title : {u"beta"_s, u"alpha"_s, u"Beta"_s, u"Alpha"_s}) {
        store->addEvent(title, now() + 1h);
    }
    EXPECT_EQ(titlesOf(list(u""_s)), (QStringList{u"Alpha"_s, u"Beta"_s, u"alpha"_s, u"beta"_s}));
}

TEST_F(CalendarList, titlesSortByCodePoints)
{
    store->addEvent(u"\U0001F4C5"_s, now() + 1h); // its units are below those of the other
    store->addEvent(u"\uFF21"_s, now() + 1h);
    EXPECT_EQ(titlesOf(list(u""_s)), (QStringList{u"\uFF21"_s, u"\U0001F4C5"_s}));
}

TEST_F(CalendarList, startDecidesBeforeTheTitle)
{
    store->addEvent(u"Alpha"_s, now() + 2h);
    store->addEvent(u"Zeta"_s, now() + 1h);
    const CalendarActionOutcome outcome = list(u""_s);
    EXPECT_EQ(titlesOf(outcome), (QStringList{u"Zeta"_s, u"Alpha"_s}));
    EXPECT_EQ(outcome.primaryEventID, u"Zeta"_s);
}

TEST_F(CalendarList, defaultsAreFiveEventsInSevenDays)
{
    for (int day = 0; day < 10; ++day) {
        store->addEvent(u"Event "_s + QString::number(day), now() + days(day) + 1h);
    }
    EXPECT_EQ(list(u"what comes up?"_s).events.size(), 5);
    EXPECT_EQ(list(u"limit: 20"_s).events.size(), 7);
}

TEST_F(CalendarList, negativeNumbersAreOne)
{
    store->addEvent(u"Today"_s, now() + 1h);
    store->addEvent(u"Later"_s, now() + 2h);
    EXPECT_EQ(list(u"limit: -4\ndays: -9"_s).events.size(), 1);
    EXPECT_EQ(store->windows.first().end, now() + days(1));
}

TEST_F(CalendarList, hugeNumbersAreClamped)
{
    EXPECT_EQ(list(u"limit: 9223372036854775807\ndays: 9223372036854775807"_s).summary,
        u"No upcoming events found in the next 90 days."_s);
}

TEST_F(CalendarList, eventThatRunsNowIsUpcoming)
{
    store->addEvent(u"Running"_s, now() - 10min);
    EXPECT_EQ(titlesOf(list(u""_s)), QStringList{u"Running"_s});
}

TEST_F(CalendarList, nothingIsWritten)
{
    list(u"title: x\nstart: 2026-03-02"_s);
    EXPECT_EQ(store->calls, (QStringList{u"access"_s, u"events"_s}));
}

} // namespace
} // namespace velarc
