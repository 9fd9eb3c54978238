#include "support/app_world.h"
#include "support/environment.h"
#include "support/wait_until.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace velarc {
namespace {

using Kind = SystemDestinationKind;

struct Shared
{
    bool ended = false;
    std::optional<QUrl> url;
};

QCoro::Task<void> keep(QCoro::Task<std::optional<QUrl>> task, std::shared_ptr<Shared> shared)
{
    shared->url = co_await task;
    shared->ended = true;
}

class ResultDeliveryTest : public AppWorld
{
protected:
    AIAction action = testAction(u"Any"_s);

    ResultDeliveryTest()
    {
        launch();
        keys->keys[AIProvider::OpenAI] = "sk";
        action.provider = AIProvider::OpenAI;
    }

    void run(const QString &input)
    {
        viewModel->startRun(action, ExplicitInput{PreparedRunInput{input, {}}});
        letRunGoOn();
        static_cast<void>(
            waitUntil([this] { return viewModel->homePhase() != HomePhase::Processing; }));
    }

    void answerWith(const ResultPayload &payload) { openAI->answer.result.payload = payload; }

    [[nodiscard]] ResultPayload shown() const
    {
        const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
        return result == nullptr ? ResultPayload() : result->payload;
    }

    [[nodiscard]] QString shownText() const { return payloadText(shown()).value_or(QString()); }

    [[nodiscard]] QString errorDetail() const
    {
        const auto *error = std::get_if<EngineError>(&viewModel->engineState());
        return error == nullptr ? QString() : error->technical.value_or(QString());
    }

    std::optional<QUrl> share()
    {
        const auto shared = std::make_shared<Shared>();
        static_cast<void>(keep(viewModel->shareableFileURL({}), shared));
        EXPECT_TRUE(waitUntil([&] { return shared->ended; }));
        return shared->url;
    }

    // When each toast from now on is shown.
    std::shared_ptr<QList<Instant>> toastTimes()
    {
        viewModel->setHomeAutomationOptions({true, true});
        auto times = std::make_shared<QList<Instant>>();
        QObject::connect(
            viewModel.get(), &AppState::clipboardToastChanged, viewModel.get(), [this, times] {
                if (viewModel->clipboardToast()) {
                    times->append(clock->now());
                }
            });
        return times;
    }

    void advanceTo(Instant time)
    {
        clock->advance(std::chrono::duration_cast<std::chrono::milliseconds>(time - clock->now()));
    }

    [[nodiscard]] static QByteArray bytesOf(const QUrl &url)
    {
        QFile file(url.toLocalFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static constexpr auto kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner
        | QFileDevice::ReadUser | QFileDevice::WriteUser;
};

TEST_F(ResultDeliveryTest, resultThatIsShownIsCopiedNowhere)
{
    run(u"x"_s);
    EXPECT_TRUE(copied->texts.isEmpty());
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(ResultDeliveryTest, copyingDestinationCopiesAndSaysSo)
{
    action.destination = ActionDestination::output(OutputDestination::CopyToClipboard);
    run(u"x"_s);
    EXPECT_EQ(copied->texts, QStringList{u"from OpenAI"_s});
    EXPECT_EQ(note(), u"Output copied to clipboard."_s);
    EXPECT_EQ(viewModel->clipboardToast(), std::nullopt);
}

TEST_F(ResultDeliveryTest, copyingDestinationWithAutomaticCopyCopiesOnceAndShowsNoToast)
{
    viewModel->setHomeAutomationOptions({true, true});
    for (const auto destination :
        {OutputDestination::CopyToClipboard, OutputDestination::ShareImmediately}) {
        copied->texts.clear();
        action.destination = ActionDestination::output(destination);
        run(u"x"_s);
        EXPECT_EQ(copied->texts.size(), 1);
        EXPECT_EQ(viewModel->clipboardToast(), std::nullopt);
    }
    EXPECT_EQ(note(), u"Output is ready to share."_s);
}

TEST_F(ResultDeliveryTest, noteOfACopyingDestinationReplacesAFallbackNote)
{
    onDevice->failure = failureOf(UserFacingError(u"no"_s));
    action.provider = AIProvider::AppleIntelligence;
    action.destination = ActionDestination::output(OutputDestination::CopyToClipboard);
    run(u"x"_s);
    EXPECT_EQ(note(), u"Output copied to clipboard."_s);
}

TEST_F(ResultDeliveryTest, systemActionActsOnWhatTheEngineWroteAndItsAnswerIsShown)
{
    action.destination = ActionDestination::system(Kind::CalendarCreateEvent);
    answerWith(TextPayload{u" Title: A \n"_s});
    run(u"typed"_s);
    EXPECT_EQ(systemActions->texts, QStringList{u"Title: A"_s});
    EXPECT_EQ(shownText(), u"did Title: A"_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Calendar"_s);
    EXPECT_EQ(viewModel->latestRunDebugInfo()->requestText, u"Title: A"_s);
}

TEST_F(ResultDeliveryTest, composeActionWhoseEngineWroteBlanksGetsTheTrimmedInput)
{
    action.destination = ActionDestination::system(Kind::MailCompose);
    answerWith(TextPayload{u" \n"_s});
    run(u" to: a@b "_s);
    EXPECT_EQ(systemActions->texts, QStringList{u"to: a@b"_s});
}

TEST_F(ResultDeliveryTest, imageWithASystemDestinationHandsOverTheInput)
{
    action.destination = ActionDestination::system(Kind::MailCompose);
    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"typed"_s);
    EXPECT_EQ(systemActions->texts, QStringList{u"typed"_s});
}

struct RetryRow
{
    Kind kind;
    CalendarFailure failure;
    bool isRetried;
};

class RetryTest
    : public ResultDeliveryTest
    , public ::testing::WithParamInterface<RetryRow>
{
};

TEST_P(RetryTest, calendarFailureAboutTheTextIsRetriedOnceWithTheUsersOwn)
{
    action.destination = ActionDestination::system(GetParam().kind);
    systemActions->failures = {failureOf(CalendarActionServiceError(GetParam().failure)), nullptr};
    run(u"typed"_s);
    if (GetParam().isRetried) {
        EXPECT_EQ(systemActions->texts, (QStringList{u"from OpenAI"_s, u"typed"_s}));
        EXPECT_EQ(shownText(), u"did typed"_s);
    } else {
        EXPECT_EQ(systemActions->texts, QStringList{u"from OpenAI"_s});
        EXPECT_EQ(errorDetail(), CalendarActionServiceError(GetParam().failure).message());
    }
}

INSTANTIATE_TEST_SUITE_P(EveryRule, RetryTest,
    ::testing::Values(RetryRow{Kind::CalendarCreateEvent, CalendarFailure::InvalidInput, true},
        RetryRow{Kind::CalendarListUpcomingEvents, CalendarFailure::EventNotFound, true},
        RetryRow{Kind::CalendarEditEvent, CalendarFailure::EventNotFound, true},
        RetryRow{Kind::CalendarDeleteEvent, CalendarFailure::MissingEventIdentifierOrTitle, true},
        RetryRow{Kind::CalendarCreateEvent, CalendarFailure::AccessDenied, false},
        RetryRow{Kind::CalendarCreateEvent, CalendarFailure::NoWritableCalendar, false},
        RetryRow{Kind::MailCompose, CalendarFailure::InvalidInput, false}));

TEST_F(ResultDeliveryTest, engineTextThatEqualsTheInputIsNotRetried)
{
    action.destination = ActionDestination::system(Kind::CalendarEditEvent);
    answerWith(TextPayload{u"typed"_s});
    systemActions->failures = {
        failureOf(CalendarActionServiceError(CalendarFailure::EventNotFound))};
    run(u" typed "_s);
    EXPECT_EQ(systemActions->texts.size(), 1);
}

TEST_F(ResultDeliveryTest, failureOfTheRetryIsTheOneThatIsShown)
{
    action.destination = ActionDestination::system(Kind::CalendarEditEvent);
    systemActions->failures = {
        failureOf(CalendarActionServiceError(CalendarFailure::EventNotFound)),
        failureOf(CalendarActionServiceError(CalendarFailure::MissingEventIdentifierOrTitle))};
    run(u"typed"_s);
    EXPECT_EQ(errorDetail(), u"Provide EventID or Title to edit or delete an event."_s);
}

TEST_F(ResultDeliveryTest, runCancelledDuringTheFirstAttemptIsNotRetried)
{
    action.destination = ActionDestination::system(Kind::CalendarEditEvent);
    systemActions->failures = {
        failureOf(CalendarActionServiceError(CalendarFailure::EventNotFound))};
    systemActions->gate.close();
    systemActions->gate.ignoreStops();
    viewModel->startRun(action, ExplicitInput{PreparedRunInput{u"typed"_s, {}}});
    letRunGoOn();
    viewModel->cancelRun();
    systemActions->gate.open();
    turnEventLoop();
    EXPECT_EQ(systemActions->texts.size(), 1);
}

TEST_F(ResultDeliveryTest, copyCommandCopiesWhateverIsShown)
{
    run(u"x"_s);
    viewModel->copyResult();
    EXPECT_EQ(copied->texts, QStringList{u"from OpenAI"_s});
    EXPECT_EQ(note(), u"Copied result to clipboard."_s);

    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"x"_s);
    viewModel->copyResult();
    EXPECT_EQ(copied->images, QList<QByteArray>{QByteArrayLiteral("png")});
}

TEST_F(ResultDeliveryTest, copyOfAPdfPutsItsPathOnTheClipboard)
{
    action.outputFormat = OutputFormat::Pdf;
    run(u"x"_s);
    viewModel->copyResult();
    EXPECT_EQ(copied->texts, QStringList{u"/tmp/result.pdf"_s});
}

TEST_F(ResultDeliveryTest, copyCommandWithoutAResultDoesNothing)
{
    viewModel->copyResult();
    EXPECT_TRUE(copied->texts.isEmpty());
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(ResultDeliveryTest, sharedTextIsAPrivateFileOfItsOwn)
{
    answerWith(TextPayload{u"gr\u00FC\u00DFe"_s});
    run(u"x"_s);
    const auto url = share();
    ASSERT_TRUE(url);
    const QFileInfo file(url->toLocalFile());
    EXPECT_EQ(file.dir(), QDir(QDir::tempPath()));
    EXPECT_TRUE(QRegularExpression(u"^velarc-result-[0-9A-F]{8}\\.txt$"_s)
                    .match(file.fileName())
                    .hasMatch());
    EXPECT_EQ(file.permissions(), kOwnerOnly);
    EXPECT_EQ(bytesOf(*url),
        QByteArrayLiteral("gr\xC3\xBC\xC3\x9F"
                          "e"));
    QFile::remove(url->toLocalFile());
}

TEST_F(ResultDeliveryTest, imageSharedTwiceMakesTwoPrivateFiles)
{
    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"x"_s);
    const auto first = share();
    const auto second = share();
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    for (const QUrl &url : {*first, *second}) {
        EXPECT_TRUE(QFileInfo(url.toLocalFile()).fileName().startsWith(u"velarc-image-"_s));
        EXPECT_EQ(QFileInfo(url.toLocalFile()).permissions(), kOwnerOnly);
        EXPECT_EQ(bytesOf(url), QByteArrayLiteral("png"));
        QFile::remove(url.toLocalFile());
    }
}

TEST_F(ResultDeliveryTest, folderThatTakesNoFileLeavesNothingToShareAndNoNote)
{
    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"x"_s);
    const auto note = viewModel->statusNote();
    const ScopedVariable folder("TMPDIR", "/proc"); // not even for root
    EXPECT_EQ(share(), std::nullopt);
    EXPECT_EQ(viewModel->statusNote(), note);
}

TEST_F(ResultDeliveryTest, withoutATemporaryFolderNothingIsSharedFromWhereTheProgramWasStarted)
{
    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"x"_s);
    const QTemporaryDir started;
    const QString before = QDir::currentPath();
    const ScopedVariable none("TMPDIR", started.filePath(u"none"_s).toStdString());
    ASSERT_TRUE(QDir::setCurrent(started.path()));
    EXPECT_EQ(share(), std::nullopt);
    EXPECT_TRUE(QDir(started.path()).isEmpty());
    QDir::setCurrent(before);
}

TEST_F(ResultDeliveryTest, sharedPdfIsTheFileThatStands)
{
    action.outputFormat = OutputFormat::Pdf;
    run(u"x"_s);
    EXPECT_EQ(share(), QUrl(u"file:///tmp/result.pdf"_s));
}

TEST_F(ResultDeliveryTest, withoutAResultThereIsNothingToShare)
{
    EXPECT_EQ(share(), std::nullopt);
}

TEST_F(ResultDeliveryTest, toastGoesAfterItsTime)
{
    const auto shownAt = toastTimes();
    run(u"x"_s);
    ASSERT_TRUE(viewModel->clipboardToast());
    EXPECT_EQ(viewModel->clipboardToast()->message, u"Response copied"_s);
    advanceTo(shownAt->last() + 1349ms);
    EXPECT_TRUE(viewModel->clipboardToast());
    clock->advance(1ms);
    EXPECT_EQ(viewModel->clipboardToast(), std::nullopt);
}

TEST_F(ResultDeliveryTest, laterToastStaysItsFullTime)
{
    const auto shownAt = toastTimes();
    run(u"x"_s);
    clock->advance(300ms);
    run(u"y"_s);
    ASSERT_EQ(shownAt->size(), 2);
    const auto later = viewModel->clipboardToast();
    ASSERT_TRUE(later);
    ASSERT_LT(clock->now(), shownAt->first() + 1350ms);
    advanceTo(shownAt->first() + 1350ms);
    EXPECT_EQ(viewModel->clipboardToast(), later) << "the first one's end is not its own";
    advanceTo(shownAt->last() + 1349ms);
    EXPECT_EQ(viewModel->clipboardToast(), later);
    clock->advance(1ms);
    EXPECT_EQ(viewModel->clipboardToast(), std::nullopt);
}

TEST_F(ResultDeliveryTest, toastThatStandsWhenTheStateGoesTouchesNothing)
{
    viewModel->setHomeAutomationOptions({true, true});
    run(u"x"_s);
    viewModel.reset();
    clock->advance(2s);
    EXPECT_EQ(scope->running(), 0U);
}

TEST_F(ResultDeliveryTest, refineRunsOnTheOutputAndTheWish)
{
    run(u"x"_s);
    viewModel->setRefinePrompt(u" shorter \n"_s);
    viewModel->runRefine();
    letRunGoOn();
    const QString composed = u"Previous output:\nfrom OpenAI\n\nRefine request:\nshorter"_s;
    EXPECT_EQ(openAI->textRequests.last().prompt, composed);
    EXPECT_EQ(viewModel->quickInput(), composed);
    EXPECT_EQ(viewModel->refinePrompt(), QString());
    EXPECT_EQ(shownText(), u"from OpenAI"_s);
}

TEST_F(ResultDeliveryTest, refineOfASystemActionKeepsItsEngineAndGoesThroughItAgain)
{
    action.destination = ActionDestination::system(Kind::CalendarEditEvent);
    run(u"x"_s);
    viewModel->setRefinePrompt(u"later"_s);
    viewModel->runRefine();
    letRunGoOn();
    EXPECT_EQ(
        systemActions->kinds, (QList<Kind>{Kind::CalendarEditEvent, Kind::CalendarEditEvent}));
    EXPECT_EQ(openAI->textRequests.size(), 2) << "by the same engine";
}

TEST_F(ResultDeliveryTest, imageAndBlankResultsCannotBeRefined)
{
    answerWith(ImagePayload{QByteArrayLiteral("png")});
    run(u"x"_s);
    viewModel->runRefine();
    letRunGoOn();
    answerWith(TextPayload{u" "_s});
    run(u"x"_s);
    viewModel->runRefine();
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.size(), 2);
}

TEST_F(ResultDeliveryTest, retryUsesTheActionAsItStoodAndItsInput)
{
    openAI->answer.failure = failureOf(UserFacingError(u"down"_s));
    run(u"x"_s);
    openAI->answer.failure = nullptr;
    viewModel->setQuickInput(u"changed meanwhile"_s);
    viewModel->retryRun();
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.last().prompt, u"x"_s);
    EXPECT_EQ(shownText(), u"from OpenAI"_s);
}

TEST_F(ResultDeliveryTest, retryAfterRestartDoesNothing)
{
    run(u"x"_s);
    viewModel->restart();
    viewModel->retryRun();
    viewModel->runRefine();
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.size(), 1);
}

} // namespace
} // namespace velarc
