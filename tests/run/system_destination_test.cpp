// Runs whose result goes to the calendar or a compose window, through the real gate to both.

#include "fakes/memory_calendar_store.h"
#include "fakes/recorded_compose.h"
#include "support/app_world.h"
#include "support/outcome.h"
#include "support/printers.h"
#include "support/wait_until.h"
#include "system_actions/orchestrator.h"
#include "system_actions/vdir_calendar_store.h"

#include <QDir>
#include <QTemporaryDir>

namespace velarc {
namespace {

using Kind = SystemDestinationKind;

class SystemDestinationTest : public AppWorld
{
protected:
    std::shared_ptr<MemoryCalendarStore> calendars = std::make_shared<MemoryCalendarStore>();
    std::shared_ptr<RecordedCompose> compose = std::make_shared<RecordedCompose>();
    AIAction action = testAction(u"Plan"_s);

    SystemDestinationTest()
    {
        launchOver(calendars);
        action.provider = AIProvider::AppleIntelligence;
    }

    void launchOver(std::shared_ptr<CalendarStore> store)
    {
        AppServices made = services();
        made.systemActions = std::make_shared<SystemActionOrchestrator>(
            std::make_shared<CalendarActionService>(std::move(store), clock), compose, clock);
        viewModel = std::make_unique<AppViewModel>(std::move(made));
    }

    // Has the engine answer `generated` to `input` and the result go to `kind`.
    void run(Kind kind, const QString &generated, const QString &input)
    {
        action.destination = ActionDestination::system(kind);
        onDevice->text = generated;
        viewModel->startRun(action, ExplicitInput{{input, {}}});
        letRunGoOn();
        ASSERT_TRUE(waitUntil([this] { return viewModel->homePhase() != HomePhase::Processing; }));
    }

    [[nodiscard]] EngineResult shown() const
    {
        const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
        return result == nullptr ? EngineResult() : *result;
    }

    [[nodiscard]] QString shownText() const { return std::get<TextPayload>(shown().payload).text; }

    [[nodiscard]] EngineError shownError() const
    {
        const auto *error = std::get_if<EngineError>(&viewModel->engineState());
        return error == nullptr ? EngineError() : *error;
    }
};

TEST_F(SystemDestinationTest, generatedEventStandsInTheCalendarAndOnTheScreen)
{
    run(Kind::CalendarCreateEvent, u"Title: Review\nStart: 2026-03-02 09:00"_s,
        u"review on monday"_s);
    ASSERT_EQ(calendars->allEvents.size(), 1);
    EXPECT_EQ(calendars->allEvents.first().title, u"Review"_s);
    EXPECT_EQ(shown().provider, u"Calendar"_s);
    EXPECT_TRUE(shownText().startsWith(u"Created calendar event \"Review\".\n\n1. Review\n"_s));
    const auto details = viewModel->latestRunDebugInfo();
    ASSERT_TRUE(details.has_value());
    EXPECT_EQ(details->requestText, u"Title: Review\nStart: 2026-03-02 09:00"_s);
    EXPECT_EQ(details->infoRows.value(1), (DebugInfoRow{u"Event count"_s, u"1"_s}));
}

TEST_F(SystemDestinationTest, inputIsTriedWhereTheGeneratedTextFindsNoEvent)
{
    calendars->addEvent(u"Dentist"_s, clock->now() + 1h);
    run(Kind::CalendarDeleteEvent, u"I would delete the appointment."_s, u"Dentist"_s);
    EXPECT_EQ(shownText(), u"Deleted calendar event \"Dentist\"."_s);
    EXPECT_TRUE(calendars->allEvents.isEmpty());
}

TEST_F(SystemDestinationTest, deniedAccessReachesTheScreen)
{
    calendars->grantsAccess = false;
    run(Kind::CalendarCreateEvent, u"Title: Review"_s, u"x"_s);
    EXPECT_EQ(shownError(),
        (EngineError{u"Destination failed: "_s + label(Kind::CalendarCreateEvent) + u'.',
            u"Calendar permission was denied."_s}));
    EXPECT_TRUE(calendars->allEvents.isEmpty());
}

TEST_F(SystemDestinationTest, storeThatFailsOnSavingGivesItsOwnReason)
{
    calendars->saveFailure = failureOf(CalendarStoreError(u"No space left on device"_s));
    run(Kind::CalendarCreateEvent, u"Title: Review"_s, u"x"_s);
    EXPECT_EQ(shownError().technical, u"No space left on device"_s);
    EXPECT_TRUE(calendars->allEvents.isEmpty());
}

TEST_F(SystemDestinationTest, failedRequestForAccessGivesItsOwnReason)
{
    calendars->accessFailure = failureOf(CalendarStoreError(u"The calendar server is gone."_s));
    run(Kind::CalendarEditEvent, u"Title: Review"_s, u"x"_s);
    EXPECT_EQ(shownError().technical, u"The calendar server is gone."_s);
}

TEST_F(SystemDestinationTest, cancelledRunWritesNoEvent)
{
    calendars->accessGate.close();
    action.destination = ActionDestination::system(Kind::CalendarCreateEvent);
    onDevice->text = u"Title: Review"_s;
    viewModel->startRun(action, ExplicitInput{{u"x"_s, {}}});
    ASSERT_TRUE(waitUntil([this] {
        letRunGoOn();
        return calendars->accessGate.waiting() == 1;
    }));
    viewModel->cancelRun();
    calendars->accessGate.open();
    letRunGoOn();
    EXPECT_EQ(calendars->calls, QStringList{u"access"_s});
    EXPECT_TRUE(std::holds_alternative<EngineReady>(viewModel->engineState()));
}

TEST_F(SystemDestinationTest, mailIsOpenedWithTheGeneratedText)
{
    run(Kind::MailCompose, u"To: ann@example.org\nSubject: Hi\nBody: Hello"_s, u"write to ann"_s);
    EXPECT_EQ(compose->mails, (QList<ComposeDraft>{{{u"ann@example.org"_s}, u"Hi"_s, u"Hello"_s}}));
    EXPECT_EQ(shown().provider, u"Mail"_s);
    EXPECT_EQ(shownText(), u"Compose window opened. Review and send to confirm."_s);
}

TEST_F(SystemDestinationTest, missingMailProgramReachesTheScreenAndTheInputStays)
{
    compose->failure = failureOf(
        CommunicationComposeError::unavailable(u"Mail compose service is unavailable."_s));
    viewModel->setQuickInput(u"write to ann"_s);
    run(Kind::MailCompose, u"Body: Hello"_s, u"write to ann"_s);
    EXPECT_EQ(shownError(),
        (EngineError{u"Destination failed: "_s + label(Kind::MailCompose) + u'.',
            u"Mail compose service is unavailable."_s}));
    EXPECT_EQ(viewModel->quickInput(), u"write to ann"_s);
}

TEST_F(SystemDestinationTest, mailThatIsTooLongReachesTheScreenAndTheInputStays)
{
    compose->failure = failureOf(
        CommunicationComposeError::failed(u"Text is too long to hand to the mail program."_s));
    viewModel->setQuickInput(u"write to ann"_s);
    run(Kind::MailCompose, u"Body: Hello"_s, u"write to ann"_s);
    EXPECT_EQ(shownError(),
        (EngineError{u"Destination failed: "_s + label(Kind::MailCompose) + u'.',
            u"Text is too long to hand to the mail program."_s}));
    EXPECT_EQ(viewModel->quickInput(), u"write to ann"_s);
    EXPECT_EQ(viewModel->latestRunDebugInfo(), std::nullopt);
}

TEST_F(SystemDestinationTest, runForAShortcutMakesTheEventToo)
{
    action.destination = ActionDestination::system(Kind::CalendarCreateEvent);
    onDevice->text = u"Title: Review"_s;
    const ResultPayload payload = outcomeOf(viewModel->runForShortcut(action, u"x"_s, {}));
    EXPECT_TRUE(payloadText(payload)->startsWith(u"Created calendar event \"Review\"."_s));
    EXPECT_EQ(calendars->allEvents.size(), 1);
}

// --- Calendars on disk ---------------------------------------------------------------------------

class SystemDestinationOnDisk : public SystemDestinationTest
{
protected:
    QTemporaryDir folder;
    QString root = folder.filePath(u"calendars"_s);

    SystemDestinationOnDisk()
    {
        launchOver(
            std::make_shared<BackgroundCalendarStore>(std::make_shared<VdirCalendars>(root)));
    }

    [[nodiscard]] QStringList eventFiles() const
    {
        return QDir(root + u"/Personal"_s).entryList({u"*.ics"_s}, QDir::Files);
    }
};

TEST_F(SystemDestinationOnDisk, eventIsMadeChangedAndRemovedByThreeRuns)
{
    run(Kind::CalendarCreateEvent, u"Title: Review\nStart: 2026-03-02 09:00"_s, u"x"_s);
    ASSERT_EQ(eventFiles().size(), 1) << shownError().technical.value_or(u""_s).toStdString();
    run(Kind::CalendarEditEvent, u"Title: review\nLocation: Room 4"_s, u"x"_s);
    EXPECT_TRUE(shownText().contains(u"   Location: Room 4\n"_s)) << shownText().toStdString();
    EXPECT_EQ(eventFiles().size(), 1);
    run(Kind::CalendarDeleteEvent, u"Title: REVIEW"_s, u"x"_s);
    EXPECT_EQ(shownText(), u"Deleted calendar event \"review\"."_s);
    EXPECT_TRUE(eventFiles().isEmpty());
}

TEST_F(SystemDestinationOnDisk, folderThatCannotBeMadeGivesItsOwnReason)
{
    QFile inTheWay(root);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    run(Kind::CalendarCreateEvent, u"Title: Review"_s, u"x"_s);
    EXPECT_EQ(shownError().technical, qt_error_string(ENOTDIR));
    EXPECT_EQ(shownError().message,
        u"Request failed for provider "_s + label(AIProvider::AppleIntelligence) + u'.');
    EXPECT_EQ(inTheWay.size(), 0);
}

} // namespace
} // namespace velarc
