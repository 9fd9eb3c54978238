#include "fakes/fake_clock.h"
#include "fakes/memory_calendar_store.h"
#include "fakes/recorded_compose.h"
#include "support/outcome.h"
#include "support/printers.h"
#include "system_actions/orchestrator.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = SystemDestinationKind;

class OrchestratorTest : public ::testing::Test
{
protected:
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<MemoryCalendarStore> store = std::make_shared<MemoryCalendarStore>();
    std::shared_ptr<RecordedCompose> compose = std::make_shared<RecordedCompose>();
    SystemActionOrchestrator orchestrator{
        std::make_shared<CalendarActionService>(store, clock), compose, clock};

    SystemActionExecutionResult execute(Kind kind, const QString &text)
    {
        return outcomeOf(orchestrator.execute(kind, text, {}));
    }

    QString refusalOf(Kind kind)
    {
        try {
            execute(kind, u"title: Review"_s);
        } catch (const SystemActionOrchestratorError &error) {
            return error.message();
        }
        ADD_FAILURE() << "it was not refused";
        return {};
    }

    // With plain blanks, whichever the locale's data has.
    static QString textOf(const SystemActionExecutionResult &result)
    {
        QString text = std::get<TextPayload>(result.payload).text;
        return text.replace(u'\u202F', u' ');
    }

    static QString row(const SystemActionExecutionResult &result, const QString &key)
    {
        for (const DebugInfoRow &row : result.debugInfo->infoRows) {
            if (row.key == key) {
                return row.value;
            }
        }
        return u"there is no such row"_s;
    }

    static QStringList rowKeys(const SystemActionExecutionResult &result)
    {
        QStringList keys;
        for (const DebugInfoRow &row : result.debugInfo->infoRows) {
            keys.append(row.key);
        }
        return keys;
    }
};

TEST_F(OrchestratorTest, upcomingEventsAreBehindTheGate)
{
    EXPECT_EQ(refusalOf(Kind::CalendarListUpcomingEvents),
        u"List Upcoming Events is not supported on this platform."_s);
    EXPECT_TRUE(store->calls.isEmpty());
}

TEST_F(OrchestratorTest, unsendingIsBehindTheGate)
{
    EXPECT_EQ(refusalOf(Kind::MessagesUnsendRecent),
        u"Unsend Recent Message is not supported on this platform."_s);
}

TEST_F(OrchestratorTest, everyHiddenKindIsRefusedByItsLabel)
{
    int refused = 0;
    for (const Kind kind : allSystemDestinationKinds()) {
        if (tier(kind) == SystemDestinationTier::Hidden) {
            EXPECT_EQ(refusalOf(kind), label(kind) + u" is not supported on this platform."_s);
            ++refused;
        }
    }
    EXPECT_EQ(refused, 6);
    EXPECT_TRUE(store->calls.isEmpty());
    EXPECT_TRUE(compose->mails.isEmpty());
}

TEST_F(OrchestratorTest, createdEventIsToldInFull)
{
    const QString text = u"title: Review\nstart: 2026-03-02 09:00\nlocation:  Room 4"_s;
    const SystemActionExecutionResult result = execute(Kind::CalendarCreateEvent, text);
    EXPECT_EQ(textOf(result),
        u"Created calendar event \"Review\".\n\n"
        u"1. Review\n"
        u"   Start: Mar 2, 2026, 9:00 AM\n"
        u"   End: Mar 2, 2026, 9:30 AM\n"
        u"   Location: Room 4\n"
        u"   Event ID: event 1"_s);
    EXPECT_EQ(result.providerLabel, u"Calendar"_s);
    EXPECT_EQ(result.debugInfo->requestText, text);
    EXPECT_EQ(result.debugInfo->responseText, std::get<TextPayload>(result.payload).text);
    EXPECT_EQ(rowKeys(result),
        (QStringList{u"Provider"_s, u"Event count"_s, u"Primary Event ID"_s, u"Timestamp"_s}));
    EXPECT_EQ(row(result, u"Provider"_s), u"Calendar"_s);
    EXPECT_EQ(row(result, u"Event count"_s), u"1"_s);
    EXPECT_EQ(row(result, u"Primary Event ID"_s), u"event 1"_s);
    EXPECT_EQ(row(result, u"Timestamp"_s), u"2026-02-20T15:00:00Z"_s);
}

TEST_F(OrchestratorTest, placeOfBlanksIsLeftOut)
{
    store->addEvent(u"Review"_s, clock->now() + 1h).location = u" \t"_s;
    EXPECT_FALSE(
        textOf(execute(Kind::CalendarEditEvent, u"title: Review"_s)).contains(u"Location"_s));
}

TEST_F(OrchestratorTest, editedEventIsTold)
{
    store->addEvent(u"Review"_s, clock->now() + 1h);
    const auto result = execute(Kind::CalendarEditEvent, u"title: review\nlocation: Room 5"_s);
    EXPECT_TRUE(textOf(result).startsWith(u"Updated calendar event \"review\".\n\n1. review\n"_s));
    EXPECT_EQ(row(result, u"Event count"_s), u"1"_s);
}

TEST_F(OrchestratorTest, deletedEventIsTheBareSummary)
{
    store->addEvent(u"Review"_s, clock->now() + 1h).identifier = u"R-1"_s;
    const auto result = execute(Kind::CalendarDeleteEvent, u"title: Review"_s);
    EXPECT_EQ(textOf(result), u"Deleted calendar event \"Review\"."_s);
    EXPECT_EQ(row(result, u"Event count"_s), u"0"_s);
    EXPECT_EQ(row(result, u"Primary Event ID"_s), u"R-1"_s);
}

TEST_F(OrchestratorTest, eventWithoutAnIdentifierHasNone)
{
    store->addEvent(u"Review"_s, clock->now() + 1h).identifier.clear();
    EXPECT_EQ(row(execute(Kind::CalendarDeleteEvent, u"title: Review"_s), u"Primary Event ID"_s),
        u"n/a"_s);
}

TEST_F(OrchestratorTest, mailIsHandedOverAsItWasRead)
{
    const QString text = u"to: ann@example.org, bob@example.org\nsubject: Hi\nbody: Hello"_s;
    const SystemActionExecutionResult result = execute(Kind::MailCompose, text);
    const ComposeDraft expected{{u"ann@example.org"_s, u"bob@example.org"_s}, u"Hi"_s, u"Hello"_s};
    EXPECT_EQ(compose->mails, QList<ComposeDraft>{expected});
    EXPECT_EQ(textOf(result), u"Compose window opened. Review and send to confirm."_s);
    EXPECT_EQ(result.providerLabel, u"Mail"_s);
    EXPECT_EQ(result.debugInfo->requestText, text);
    EXPECT_EQ(result.debugInfo->responseText, textOf(result));
    EXPECT_EQ(rowKeys(result),
        (QStringList{u"Provider"_s, u"Recipients"_s, u"Subject"_s, u"Timestamp"_s}));
    EXPECT_EQ(row(result, u"Provider"_s), u"Mail"_s);
    EXPECT_EQ(row(result, u"Recipients"_s), u"ann@example.org, bob@example.org"_s);
    EXPECT_EQ(row(result, u"Subject"_s), u"Hi"_s);
    EXPECT_EQ(row(result, u"Timestamp"_s), u"2026-02-20T15:00:00Z"_s);
}

TEST_F(OrchestratorTest, mailToNobodyHasNoRecipients)
{
    const SystemActionExecutionResult result = execute(Kind::MailCompose, u"Hello"_s);
    EXPECT_EQ(row(result, u"Recipients"_s), u"n/a"_s);
    EXPECT_EQ(row(result, u"Subject"_s), u"n/a"_s);
}

TEST_F(OrchestratorTest, messageHasNoSubject)
{
    const auto result =
        execute(Kind::MessagesCompose, u"to: +15551234; +15559876\nsubject: Hi\nbody: Hello"_s);
    const ComposeDraft expected{{u"+15551234"_s, u"+15559876"_s}, std::nullopt, u"Hello"_s};
    EXPECT_EQ(compose->messages, QList<ComposeDraft>{expected});
    EXPECT_TRUE(compose->mails.isEmpty());
    EXPECT_EQ(result.providerLabel, u"Messages"_s);
    EXPECT_EQ(row(result, u"Recipients"_s), u"+15551234, +15559876"_s);
    EXPECT_EQ(row(result, u"Subject"_s), u"n/a"_s);
}

TEST_F(OrchestratorTest, everyOutcomeOfAComposeWindowHasItsText)
{
    const QList<std::pair<ComposeOutcome, QString>> texts{
        {ComposeOutcome::Sent, u"Message was sent."_s},
        {ComposeOutcome::Saved, u"Draft was saved."_s},
        {ComposeOutcome::Closed, u"Compose window closed without sending."_s},
        {ComposeOutcome::Opened, u"Compose window opened. Review and send to confirm."_s},
    };
    for (const auto &[outcome, text] : texts) {
        compose->outcome = outcome;
        EXPECT_EQ(textOf(execute(Kind::MailCompose, u"x"_s)), text);
        EXPECT_EQ(textOf(execute(Kind::MessagesCompose, u"x"_s)), text);
    }
}

TEST_F(OrchestratorTest, failuresOfTheServicesPassUntouched)
{
    EXPECT_THROW(execute(Kind::CalendarDeleteEvent, u"title: x"_s), CalendarActionServiceError);
    store->saveFailure = std::make_exception_ptr(CalendarStoreError(u"The disk is full."_s));
    EXPECT_THROW(execute(Kind::CalendarCreateEvent, u"title: x"_s), CalendarStoreError);
    compose->failure = std::make_exception_ptr(CommunicationComposeError::busy());
    EXPECT_THROW(execute(Kind::MailCompose, u"x"_s), CommunicationComposeError);
    EXPECT_THROW(execute(Kind::MessagesCompose, u"x"_s), CommunicationComposeError);
}

TEST_F(OrchestratorTest, itMayGoBeforeItsTaskEnds)
{
    store->accessGate.close();
    auto passing = std::make_unique<SystemActionOrchestrator>(
        std::make_shared<CalendarActionService>(store, clock), compose, clock);
    const auto outcome = watch(passing->execute(Kind::CalendarCreateEvent, u"x"_s, {}));
    passing.reset();
    store->accessGate.open();
    EXPECT_EQ(outcomeOf(outcome).providerLabel, u"Calendar"_s);
}

TEST(ComposeErrors, theirTextsAreFixedOrCarried)
{
    EXPECT_EQ(CommunicationComposeError::unavailable(u"a"_s).message(), u"a"_s);
    EXPECT_EQ(CommunicationComposeError::failed(u"b"_s).message(), u"b"_s);
    EXPECT_EQ(
        CommunicationComposeError::busy().message(), u"Another compose sheet is already open."_s);
    EXPECT_EQ(
        CommunicationComposeError::noPresenter().message(), u"Unable to present compose UI."_s);
}

} // namespace
} // namespace velarc
