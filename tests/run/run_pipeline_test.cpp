#include "run/run_fixture.h"

namespace velarc {
namespace {

TEST_F(RunPipelineTest, runWithoutAnActionAsksForOneAndChangesNothingElse)
{
    state().setQuickInput(u"hello"_s);
    pipeline().runSelectedAction();
    letRunGoOn();
    EXPECT_EQ(note(), u"Create or select an action first."_s);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_FALSE(pipeline().hasExecutionTask());
}

TEST_F(RunPipelineTest, runOfTheSelectedActionShowsItsResult)
{
    run.selection->action = action;
    state().setQuickInput(u"hello"_s);
    pipeline().runSelectedAction();
    letRunGoOn();
    EXPECT_EQ(shownText(), u"generated"_s);
    EXPECT_EQ(shownResult()->provider, u"Local Preview Engine"_s);
    EXPECT_EQ(state().homePhase(), HomePhase::Output);
    EXPECT_EQ(state().activeProviderLabel(), u"Local Preview Engine"_s);
    EXPECT_FALSE(pipeline().hasExecutionTask());
    EXPECT_FALSE(pipeline().activeExecutionID().has_value());
}

TEST_F(RunPipelineTest, whatACallerWritesRightAfterStartRunIsWrittenBeforeTheFirstStep)
{
    startOn(u"hello"_s);
    state().setStatusNote(u"Continued action in host app."_s);
    state().setQuickInput(u"written behind"_s);
    EXPECT_EQ(state().homePhase(), HomePhase::Input);
    turnEventLoop();
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_EQ(pipeline().lastPreparedInput()->userText, u"written behind"_s);
    EXPECT_EQ(state().homePhase(), HomePhase::Processing);
}

TEST_F(RunPipelineTest, blankCanvasWithTextOnTheClipboardRunsOnThatTextAndShowsItTrimmed)
{
    run.clipboard->payload.text = u"  from elsewhere\n"_s;
    startOn(u" \n "_s);
    letRunGoOn();
    EXPECT_EQ(state().quickInput(), u"from elsewhere"_s);
    EXPECT_EQ(run.generating->textRequests.first().prompt, u"from elsewhere"_s);
    EXPECT_EQ(shownText(), u"generated"_s);
}

TEST_F(RunPipelineTest, blankCanvasAndEmptyClipboardSayThatThereIsNothingToRun)
{
    state().setHomePhase(HomePhase::Output);
    startOn(u"  "_s);
    letRunGoOn();
    EXPECT_EQ(note(), u"Nothing to run yet. Type input, paste, or drop PNG/PDF/SVG."_s);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(pipeline().activeAction(), std::nullopt);
    EXPECT_FALSE(pipeline().hasExecutionTask());
}

TEST_F(RunPipelineTest, runThatFindsNoInputLeavesTheEarlierActionAndInputAsTheyWere)
{
    startOn(u"first"_s);
    letRunGoOn();
    state().setQuickInput(QString());
    pipeline().startRun(testAction(u"Other"_s), SmartInput{});
    letRunGoOn();
    EXPECT_EQ(pipeline().activeAction()->name, u"Sort Things"_s);
    EXPECT_EQ(pipeline().lastPreparedInput()->userText, u"first"_s);
}

TEST_F(RunPipelineTest, clipboardWithoutUsableContentCountsAsNoInputAndItsNoticesAreShown)
{
    run.clipboard->payload.fileURLs = {QUrl(u"file:///notes.docx"_s)};
    run.clipboard->intake.notices = {u"one"_s, u"two"_s};
    startOn(QString());
    letRunGoOn();
    EXPECT_EQ(state().inputAttachmentNotice(), u"one\ntwo"_s);
    EXPECT_EQ(note(), u"Nothing to run yet. Type input, paste, or drop PNG/PDF/SVG."_s);
}

TEST_F(RunPipelineTest, clipboardWithoutNoticesLeavesTheStandingNotice)
{
    state().setInputAttachmentNotice(u"standing"_s);
    run.clipboard->payload.text = u"text"_s;
    startOn(QString());
    letRunGoOn();
    EXPECT_EQ(state().inputAttachmentNotice(), u"standing"_s);
}

TEST_F(RunPipelineTest, clipboardOnlyIgnoresTheCanvas)
{
    run.clipboard->payload.text = u"clip"_s;
    state().setQuickInput(u"canvas"_s);
    pipeline().startRun(action, ClipboardOnlyInput{});
    letRunGoOn();
    EXPECT_EQ(pipeline().lastPreparedInput()->userText, u"clip"_s);
}

TEST_F(RunPipelineTest, clipboardAttachmentsTravelWithTheRun)
{
    run.clipboard->payload.imagePNGData = QByteArrayLiteral("png");
    run.clipboard->intake.attachments = {imageNamed(u"clipboard.png"_s)};
    startOn(QString());
    letRunGoOn();
    EXPECT_EQ(state().quickAttachments(), run.clipboard->intake.attachments);
    EXPECT_EQ(run.generating->textRequests.first().attachments, run.clipboard->intake.attachments);
}

TEST_F(RunPipelineTest, whiteSpaceOnTheCanvasWithAttachmentsRunsWithAnEmptyText)
{
    state().setQuickAttachments({imageNamed(u"a.png"_s)});
    startOn(u"  \t"_s);
    letRunGoOn();
    EXPECT_EQ(pipeline().lastPreparedInput()->userText, QString());
    EXPECT_EQ(pipeline().lastPreparedInput()->attachments.size(), 1);
    EXPECT_EQ(state().quickInput(), QString());
}

TEST_F(RunPipelineTest, explicitTextIsTakenAsItStandsAndReplacesTheCanvas)
{
    state().setQuickAttachments({imageNamed(u"a.png"_s)});
    const PreparedRunInput given{u"  spaced "_s, {}};
    pipeline().startRun(action, ExplicitInput{given});
    letRunGoOn();
    EXPECT_EQ(state().quickInput(), u"  spaced "_s);
    EXPECT_TRUE(state().quickAttachments().isEmpty());
    EXPECT_EQ(pipeline().lastPreparedInput(), given);
}

TEST_F(RunPipelineTest, explicitInputWithoutContentIsNoInput)
{
    pipeline().startRun(action, ExplicitInput{PreparedRunInput{u" "_s, {}}});
    letRunGoOn();
    EXPECT_EQ(note(), u"Nothing to run yet. Type input, paste, or drop PNG/PDF/SVG."_s);
}

TEST_F(RunPipelineTest, everyRunSelectsItsActionAndMarksTheHint)
{
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.selection->selected, QList<QUuid>{action.id});
    EXPECT_EQ(run.selection->hintsMarked, 1);
}

TEST_F(RunPipelineTest, twoStepsStandForNinetyMillisecondsEach)
{
    startOn(u"hello"_s);
    turnEventLoop();
    EXPECT_EQ(step(), u"Preparing payload"_s);
    run.clock->advance(89ms);
    turnEventLoop();
    EXPECT_EQ(step(), u"Preparing payload"_s);
    run.clock->advance(1ms);
    turnEventLoop();
    EXPECT_EQ(step(), u"Selecting provider"_s);
    run.clock->advance(89ms);
    turnEventLoop();
    EXPECT_EQ(step(), u"Selecting provider"_s);
    run.clock->advance(1ms);
    turnEventLoop();
    EXPECT_EQ(shownText(), u"generated"_s);
}

struct RoutingStepRow
{
    SystemDestinationKind kind;
    const char16_t *step;
};

class RoutingStepTest
    : public RunPipelineTest
    , public ::testing::WithParamInterface<RoutingStepRow>
{
};

TEST_P(RoutingStepTest, systemDestinationHasAThirdStepOfNinetyMilliseconds)
{
    action.destination = ActionDestination::system(GetParam().kind);
    startOn(u"hello"_s);
    letOneStepPass();
    letOneStepPass();
    EXPECT_EQ(step(), QString::fromUtf16(GetParam().step));
    run.clock->advance(89ms);
    turnEventLoop();
    EXPECT_TRUE(run.delivering->deliveries.isEmpty());
    run.clock->advance(1ms);
    turnEventLoop();
    EXPECT_EQ(run.delivering->deliveries.size(), 1);
    EXPECT_EQ(shownText(), u"generated"_s);
}

using Kind = SystemDestinationKind;

INSTANTIATE_TEST_SUITE_P(EveryKind, RoutingStepTest,
    ::testing::Values(RoutingStepRow{Kind::CalendarCreateEvent, u"Routing to Calendar"},
        RoutingStepRow{Kind::CalendarListUpcomingEvents, u"Routing to Calendar"},
        RoutingStepRow{Kind::CalendarEditEvent, u"Routing to Calendar"},
        RoutingStepRow{Kind::CalendarDeleteEvent, u"Routing to Calendar"},
        RoutingStepRow{Kind::MailCompose, u"Routing to Mail"},
        RoutingStepRow{Kind::MailListInboxThreads, u"Routing to Mail"},
        RoutingStepRow{Kind::MailSearchMessages, u"Routing to Mail"},
        RoutingStepRow{Kind::MessagesCompose, u"Routing to Messages"},
        RoutingStepRow{Kind::MessagesSearchConversations, u"Routing to Messages"},
        RoutingStepRow{Kind::MessagesEditScheduled, u"Routing to Messages"},
        RoutingStepRow{Kind::MessagesUnsendRecent, u"Routing to Messages"}));

TEST_F(RunPipelineTest, beginningARunClearsWhatTheLastOneLeft)
{
    state().setStatusNote(u"old note"_s);
    state().setRefinePrompt(u"shorter"_s);
    state().setLatestRunDebugInfo(GenerationDebugInfo{});
    state().setSuggestedConnectionProvider(AIProvider::OpenAI);
    startOn(u"hello"_s);
    turnEventLoop();
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_EQ(state().refinePrompt(), QString());
    EXPECT_EQ(state().latestRunDebugInfo(), std::nullopt);
    EXPECT_EQ(state().suggestedConnectionProvider(), AIProvider::OpenAI);
    letRunGoOn();
    EXPECT_EQ(state().suggestedConnectionProvider(), std::nullopt);
}

TEST_F(RunPipelineTest, promptHoldsTheInputAndAttachmentsPlayNoPartInIt)
{
    action.systemPrompt = u"Sort: {User_Input}"_s;
    state().setQuickAttachments({imageNamed(u"a.png"_s)});
    startOn(u"b a"_s);
    letRunGoOn();
    EXPECT_EQ(run.generating->textRequests.first().prompt, u"Sort: b a"_s);
}

TEST_F(RunPipelineTest, clipboardIsReadForThePromptOnlyWhereItsVariableStands)
{
    run.clipboard->payload.text = u"pasted"_s;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.clipboard->textReads, 0);

    action.systemPrompt = u"{User_Input} {Clipboard}"_s;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.clipboard->textReads, 1);
    EXPECT_EQ(run.generating->textRequests.last().prompt, u"hello pasted"_s);

    action.systemPrompt = u"{User_Input}"_s;
    startOn(u"see {Clipboard}"_s);
    letRunGoOn();
    EXPECT_EQ(
        run.generating->textRequests.last().prompt, u"see pasted\n\nInput:\nsee {Clipboard}"_s);
}

TEST_F(RunPipelineTest, labelOfTheResolvedEngineStandsWhileItWorks)
{
    run.generating->provider = AIProvider::Gemini;
    run.generating->model = u"gemini-2.5-pro"_s;
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(state().activeProviderLabel(), u"Gemini"_s);
    EXPECT_EQ(run.generating->textRequests.first().provider, AIProvider::Gemini);
    EXPECT_EQ(run.generating->textRequests.first().model, u"gemini-2.5-pro"_s);
}

TEST_F(RunPipelineTest, labelOfTheResultIsTheEngineThatReallyRan)
{
    run.generating->provider = AIProvider::AppleIntelligence;
    run.generating->answer.provider = AIProvider::OpenAI;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(state().activeProviderLabel(), u"OpenAI"_s);
    EXPECT_EQ(shownResult()->provider, u"OpenAI"_s);
}

TEST_F(RunPipelineTest, labelAndDetailsOfDeliveryReplaceTheEngines)
{
    run.generating->answer.debugInfo = GenerationDebugInfo{u"engine"_s, {}, {}};
    RoutedExecutionResult routed;
    routed.payload = TextPayload{u"Event created."_s};
    routed.providerLabel = u"Calendar"_s;
    routed.debugInfo = GenerationDebugInfo{u"calendar"_s, {}, {}};
    run.delivering->answer = routed;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(shownText(), u"Event created."_s);
    EXPECT_EQ(state().activeProviderLabel(), u"Calendar"_s);
    EXPECT_EQ(state().latestRunDebugInfo()->requestText, u"calendar"_s);
}

TEST_F(RunPipelineTest, detailsOfTheEngineStandWhereDeliveryHasNone)
{
    run.generating->answer.debugInfo = GenerationDebugInfo{u"engine"_s, {}, {}};
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(state().latestRunDebugInfo()->requestText, u"engine"_s);
}

TEST_F(RunPipelineTest, imageActionTakesTheImagePathWithoutAttachments)
{
    action.outputFormat = OutputFormat::Image;
    run.generating->answer.payload = ImagePayload{QByteArrayLiteral("png")};
    startOn(u"a cat"_s);
    letRunGoOn();
    EXPECT_EQ(run.generating->imageRequests.size(), 1);
    EXPECT_TRUE(run.generating->textRequests.isEmpty());
    EXPECT_TRUE(std::holds_alternative<ImagePayload>(shownResult()->payload));
}

TEST_F(RunPipelineTest, systemActionOfFormatJsonRunsAsTextAndTheStoredActionStaysAsItWas)
{
    action.outputFormat = OutputFormat::Json;
    action.destination = ActionDestination::system(Kind::MailCompose);
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.generating->textRequests.first().action.outputFormat, OutputFormat::Text);
    EXPECT_EQ(pipeline().activeAction()->outputFormat, OutputFormat::Json);
}

TEST_F(RunPipelineTest, pdfActionTurnsTheTextIntoAFileUnderTheActionsName)
{
    action.outputFormat = OutputFormat::Pdf;
    startOn(u"hello"_s);
    letRunGoOn();
    ASSERT_EQ(run.delivering->exports.size(), 1);
    EXPECT_EQ(run.delivering->exports.first().first, u"generated"_s);
    EXPECT_EQ(run.delivering->exports.first().second, u"Sort Things"_s);
    const auto pdf = std::get<PdfPayload>(shownResult()->payload);
    EXPECT_EQ(pdf.url, QUrl(u"file:///result.pdf"_s));
    EXPECT_EQ(pdf.previewText, u"generated"_s);
}

TEST_F(RunPipelineTest, pdfOfAnActionWithABlankNameHasATitleOfItsOwn)
{
    action.name = u"  "_s;
    action.outputFormat = OutputFormat::Pdf;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.delivering->exports.first().second, u"Velarc Result"_s);
}

TEST_F(RunPipelineTest, pdfPayloadIsExportedAgainFromItsPreviewText)
{
    action.outputFormat = OutputFormat::Pdf;
    run.generating->answer.payload = PdfPayload{QUrl(u"file:///engine.pdf"_s), u"preview"_s};
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.delivering->exports.first().first, u"preview"_s);
}

TEST_F(RunPipelineTest, imageWhereAPdfWasAskedForFailsTheRun)
{
    action.outputFormat = OutputFormat::Pdf;
    run.generating->answer.payload = ImagePayload{QByteArrayLiteral("png")};
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(shownError()->message, u"Request failed for provider Local Preview Engine."_s);
    EXPECT_EQ(shownError()->technical, u"Could not initialize PDF context."_s);
    EXPECT_TRUE(run.usage->results.isEmpty());
}

TEST_F(RunPipelineTest, usageIsCountedBeforeDelivery)
{
    run.delivering->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.usage->results.size(), 1);
    EXPECT_EQ(run.delivering->deliveries.size(), 1);
    EXPECT_FALSE(shownResult().has_value());
}

TEST_F(RunPipelineTest, failedSystemActionNamesItsKindAndTheUsageOfTheGenerationStands)
{
    action.name = u"My Calendar Thing"_s;
    action.destination = ActionDestination::system(Kind::CalendarCreateEvent);
    run.delivering->failure = failureOf(SystemActionError(u"Calendar permission was denied."_s));
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(shownError()->message, u"Destination failed: Create Calendar Event."_s);
    EXPECT_EQ(shownError()->technical, u"Calendar permission was denied."_s);
    EXPECT_EQ(state().homePhase(), HomePhase::Output);
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_EQ(run.usage->results.size(), 1);
    EXPECT_EQ(state().latestRunDebugInfo(), std::nullopt);
}

TEST_F(RunPipelineTest, systemErrorOfAnActionWithoutSystemDestinationIsAFailedRequest)
{
    run.delivering->failure = failureOf(SystemActionError(u"odd"_s));
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(shownError()->message, u"Request failed for provider Local Preview Engine."_s);
}

TEST_F(RunPipelineTest, otherFailureOfASystemActionIsAFailedRequest)
{
    action.destination = ActionDestination::system(Kind::MailCompose);
    run.generating->provider = AIProvider::Anthropic;
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(UserFacingError(u"HTTP 500"_s)));
    turnEventLoop();
    EXPECT_EQ(shownError()->message, u"Request failed for provider Anthropic."_s);
    EXPECT_EQ(shownError()->technical, u"HTTP 500"_s);
    EXPECT_EQ(state().activeProviderLabel(), u"Anthropic"_s);
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_FALSE(pipeline().hasExecutionTask());
}

TEST_F(RunPipelineTest, missingConnectionIsOfferedAndTheInputIsKeptForRetry)
{
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(ProviderConnectionRequiredError(AIProvider::Gemini)));
    turnEventLoop();
    EXPECT_EQ(shownError()->message, u"Gemini is not connected."_s);
    EXPECT_EQ(shownError()->technical, u"Add your API key to continue."_s);
    EXPECT_EQ(note(), u"Connect Gemini to run this action."_s);
    EXPECT_EQ(state().suggestedConnectionProvider(), AIProvider::Gemini);
    EXPECT_EQ(pipeline().lastPreparedInput()->userText, u"hello"_s);
}

struct SuggestionRow
{
    OutputFormat format;
    AIProvider provider;
    bool openAIIsConnected;
    bool suggestsOpenAI;
};

class SuggestionTest
    : public RunPipelineTest
    , public ::testing::WithParamInterface<SuggestionRow>
{
};

TEST_P(SuggestionTest, failedOnDeviceImageSuggestsOpenAIOnlyIfItIsNotConnected)
{
    action.outputFormat = GetParam().format;
    action.provider = GetParam().provider;
    ProviderConnectionState connections;
    connections.openAI.isConnected = GetParam().openAIIsConnected;
    state().setProviderConnections(connections);
    run.generating->gate.close();
    startOn(u"a cat"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(UserFacingError(u"no"_s)));
    turnEventLoop();
    EXPECT_EQ(
        state().suggestedConnectionProvider() == AIProvider::OpenAI, GetParam().suggestsOpenAI);
}

INSTANTIATE_TEST_SUITE_P(EveryCombination, SuggestionTest,
    ::testing::Values(
        SuggestionRow{OutputFormat::Image, AIProvider::AppleIntelligence, false, true},
        SuggestionRow{OutputFormat::Image, AIProvider::AppleIntelligence, true, false},
        SuggestionRow{OutputFormat::Text, AIProvider::AppleIntelligence, false, false},
        SuggestionRow{OutputFormat::Image, AIProvider::Gemini, false, false}));

TEST_F(RunPipelineTest, failureWithoutASentenceOfItsOwnShowsWhatItSays)
{
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(std::runtime_error("out of \xC3\xA4pples")));
    turnEventLoop();
    EXPECT_EQ(shownError()->technical, u"out of \u00E4pples"_s);
}

TEST_F(RunPipelineTest, secondRunDuringTheFirstLeavesNoTraceOfTheFirst)
{
    run.generating->gate.close();
    startOn(u"first"_s);
    letRunGoOn();
    pipeline().startRun(testAction(u"Other"_s), SmartInput{});
    run.generating->answer = textResult(u"second"_s);
    QStringList seen;
    QObject::connect(&state(), &AppState::engineStateChanged, &state(),
        [&] { seen.append(step() + shownText() + (shownError() ? u"error"_s : QString())); });
    letRunGoOn();
    run.generating->gate.open();
    letRunGoOn();
    EXPECT_EQ(shownText(), u"second"_s);
    EXPECT_EQ(seen,
        (QStringList{
            u"Preparing payload"_s, u"Selecting provider"_s, u"Generating"_s, u"second"_s}));
    EXPECT_EQ(state().statusNote(), std::nullopt);
}

TEST_F(RunPipelineTest, engineThatIgnoresTheStopAndAnswersLateWritesNothing)
{
    run.generating->gate.ignoreStops();
    run.generating->gate.close();
    startOn(u"first"_s);
    letRunGoOn();
    pipeline().cancelRun();
    turnEventLoop();
    run.generating->gate.open();
    letRunGoOn();
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(note(), u"Canceled."_s);
    EXPECT_TRUE(run.usage->results.isEmpty());
    EXPECT_TRUE(run.delivering->deliveries.isEmpty());
}

TEST_F(RunPipelineTest, staleRunThatFailsIsDropped)
{
    run.generating->gate.ignoreStops();
    run.generating->gate.close();
    startOn(u"first"_s);
    letRunGoOn();
    pipeline().restart();
    run.generating->gate.letOneOn(failureOf(UserFacingError(u"late"_s)));
    letRunGoOn();
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(state().statusNote(), std::nullopt);
}

TEST_F(RunPipelineTest, cancellingDuringAPauseShowsTheCanvasAtOnce)
{
    startOn(u"hello"_s);
    turnEventLoop();
    run.clock->advance(40ms);
    pipeline().cancelRun();
    EXPECT_EQ(note(), u"Canceled."_s);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(state().activeProviderLabel(), u"None"_s);
    EXPECT_FALSE(pipeline().hasExecutionTask());
    letRunGoOn();
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_TRUE(run.generating->textRequests.isEmpty());
    EXPECT_EQ(state().quickInput(), u"hello"_s);
    EXPECT_EQ(pipeline().activeAction()->name, action.name);
}

TEST_F(RunPipelineTest, cancelReplacesANoteThatStands)
{
    run.generating->gate.close();
    run.generating->noteBeforeWaiting = u"Fallback note."_s;
    startOn(u"hello"_s);
    letRunGoOn();
    ASSERT_EQ(note(), u"Fallback note."_s);
    pipeline().cancelRun();
    EXPECT_EQ(note(), u"Canceled."_s);
}

TEST_F(RunPipelineTest, cancelledGenerationWhoseEngineLeftANoteKeepsThatNote)
{
    run.generating->gate.close();
    run.generating->noteBeforeWaiting = u"Fallback note."_s;
    startOn(u"hello"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(CancellationError()));
    turnEventLoop();
    EXPECT_EQ(note(), u"Fallback note."_s);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_FALSE(pipeline().hasExecutionTask());
}

TEST_F(RunPipelineTest, cancelledGenerationWithoutANoteSaysSo)
{
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    run.generating->gate.letOneOn(failureOf(CancellationError()));
    turnEventLoop();
    EXPECT_EQ(note(), u"Canceled."_s);
    EXPECT_EQ(state().activeProviderLabel(), u"None"_s);
}

TEST_F(RunPipelineTest, cancelWithoutARunDoesNothing)
{
    state().setStatusNote(u"standing"_s);
    pipeline().cancelRun();
    EXPECT_EQ(note(), u"standing"_s);
    startOn(u"hello"_s);
    letRunGoOn();
    pipeline().cancelRun();
    EXPECT_EQ(shownText(), u"generated"_s);
}

TEST_F(RunPipelineTest, returnToInputDropsTheResultAndKeepsWhatRetryNeeds)
{
    startOn(u"hello"_s);
    letRunGoOn();
    state().setRefinePrompt(u"shorter"_s);
    state().setStatusNote(u"note"_s);
    state().setSuggestedConnectionProvider(AIProvider::OpenAI);
    pipeline().returnToInput();
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(state().refinePrompt(), QString());
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_EQ(state().latestRunDebugInfo(), std::nullopt);
    EXPECT_EQ(state().suggestedConnectionProvider(), std::nullopt);
    EXPECT_EQ(state().activeProviderLabel(), u"None"_s);
    EXPECT_TRUE(pipeline().activeAction().has_value());
    EXPECT_TRUE(pipeline().lastPreparedInput().has_value());
}

TEST_F(RunPipelineTest, returnToInputLeavesARunInProgressAlone)
{
    startOn(u"hello"_s);
    turnEventLoop();
    pipeline().returnToInput();
    EXPECT_EQ(state().homePhase(), HomePhase::Processing);
    letRunGoOn();
    EXPECT_EQ(shownText(), u"generated"_s);
}

TEST_F(RunPipelineTest, restartDropsTheRunAndWhatRetryWouldUseButNotTheCanvas)
{
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    pipeline().restart();
    run.generating->gate.open();
    letRunGoOn();
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_FALSE(pipeline().activeAction().has_value());
    EXPECT_FALSE(pipeline().lastPreparedInput().has_value());
    EXPECT_EQ(state().quickInput(), u"hello"_s);
    EXPECT_EQ(state().statusNote(), std::nullopt);
}

TEST_F(RunPipelineTest, newRunFromAShownResultDoesNotPassThroughTheCanvas)
{
    startOn(u"hello"_s);
    letRunGoOn();
    QList<HomePhase> phases;
    QObject::connect(&state(), &AppState::homePhaseChanged, &state(),
        [&] { phases.append(state().homePhase()); });
    startOn(u"again"_s);
    letRunGoOn();
    EXPECT_FALSE(phases.contains(HomePhase::Input));
    EXPECT_EQ(phases.last(), HomePhase::Output);
}

TEST_F(RunPipelineTest, automaticCopySaysSoAndShowsTheToast)
{
    state().setHomeAutomationOptions({true, true});
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.delivering->copied, QList<ResultPayload>{TextPayload{u"generated"_s}});
    EXPECT_EQ(note(), u"Output copied to clipboard automatically."_s);
    EXPECT_EQ(run.delivering->toasts, QStringList{u"Response copied"_s});
}

TEST_F(RunPipelineTest, automaticCopyFollowsAFallbackNoteInTheSameLine)
{
    state().setHomeAutomationOptions({true, true});
    run.generating->noteBeforeWaiting = u"OpenAI was used instead."_s;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(note(), u"OpenAI was used instead. Output copied to clipboard automatically."_s);
}

TEST_F(RunPipelineTest, destinationThatCopiedAlreadyIsNotCopiedAgain)
{
    state().setHomeAutomationOptions({true, true});
    RoutedExecutionResult routed;
    routed.payload = TextPayload{u"generated"_s};
    routed.copiedByDestination = true;
    run.delivering->answer = routed;
    run.delivering->noteOfDestination = u"Output copied to clipboard."_s;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_TRUE(run.delivering->copied.isEmpty());
    EXPECT_TRUE(run.delivering->toasts.isEmpty());
    EXPECT_EQ(note(), u"Output copied to clipboard."_s);
}

TEST_F(RunPipelineTest, clipboardThatTakesNothingLeavesNoteAndToastAway)
{
    state().setHomeAutomationOptions({true, true});
    run.delivering->copies = false;
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(state().statusNote(), std::nullopt);
    EXPECT_TRUE(run.delivering->toasts.isEmpty());
}

TEST_F(RunPipelineTest, withoutAutomaticCopyNothingIsCopied)
{
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_TRUE(run.delivering->copied.isEmpty());
}

TEST_F(RunPipelineTest, scopeThatEndsStopsTheRunInItsWait)
{
    run.generating->gate.close();
    startOn(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(run.scope->running(), 1U);
    EXPECT_TRUE(run.scope->finish(2s));
    EXPECT_EQ(run.scope->running(), 0U);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(note(), u"Canceled."_s);
}

} // namespace
} // namespace velarc
