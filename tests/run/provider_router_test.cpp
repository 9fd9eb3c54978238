#include "base/errors.h"
#include "engines/on_device_services.h"
#include "records/run_errors.h"
#include "support/app_world.h"
#include "support/wait_until.h"

namespace velarc {
namespace {

class ProviderRouterTest : public AppWorld
{
protected:
    ProviderRouterTest() { launch(); }

    AIAction action = testAction(u"Any Name"_s);

    void changeSettings(const std::function<void(ProviderSettings &)> &change)
    {
        ProviderSettings settings = viewModel->providerSettings();
        change(settings);
        viewModel->setProviderSettings(settings);
    }

    void begin(const PreparedRunInput &input)
    {
        viewModel->startRun(action, ExplicitInput{input});
        letRunGoOn();
    }

    // Runs to its end, worker included.
    void run(const PreparedRunInput &input = {u"hello"_s, {}})
    {
        begin(input);
        ASSERT_TRUE(waitUntil([this] { return viewModel->homePhase() != HomePhase::Processing; }));
    }

    void failOnDevice()
    {
        onDevice->failure =
            failureOf(AppleIntelligenceServiceError::unavailable(u"Device is not eligible"_s));
    }

    [[nodiscard]] QString shownText() const
    {
        const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
        return result == nullptr ? QString() : payloadText(result->payload).value_or(QString());
    }

    [[nodiscard]] EngineError shownError() const
    {
        const auto *error = std::get_if<EngineError>(&viewModel->engineState());
        return error == nullptr ? EngineError() : *error;
    }

    // Every step text that is shown during a run.
    [[nodiscard]] QStringList stepsOf(const std::function<void()> &runIt)
    {
        QStringList steps;
        const auto connection =
            QObject::connect(viewModel.get(), &AppState::engineStateChanged, viewModel.get(), [&] {
                if (const auto *processing =
                        std::get_if<EngineProcessing>(&viewModel->engineState())) {
                    steps.append(processing->step);
                }
            });
        runIt();
        QObject::disconnect(connection);
        return steps;
    }

    [[nodiscard]] static QList<DebugInfoRow> withoutTimestamp(QList<DebugInfoRow> rows)
    {
        rows.removeIf([](const DebugInfoRow &row) { return row.key == u"Timestamp"_s; });
        return rows;
    }

    static InputAttachment picture()
    {
        InputAttachment attachment;
        attachment.kind = InputAttachmentKind::Image;
        attachment.filename = u"a.png"_s;
        return attachment;
    }

    static InputAttachment document(const QString &text)
    {
        InputAttachment attachment;
        attachment.kind = InputAttachmentKind::Pdf;
        attachment.filename = u"a.pdf"_s;
        attachment.extractedText = text;
        return attachment;
    }
};

TEST_F(ProviderRouterTest, engineIsTheActionsOwnElseTheSettingsElseTheOnDeviceOne)
{
    action.provider = AIProvider::Gemini;
    EXPECT_EQ(viewModel->resolvedProvider(action), AIProvider::Gemini);
    action.provider = AIProvider::UseDefault;
    changeSettings([](auto &settings) { settings.defaultProvider = AIProvider::Anthropic; });
    EXPECT_EQ(viewModel->resolvedProvider(action), AIProvider::Anthropic);
    changeSettings([](auto &settings) { settings.defaultProvider = AIProvider::UseDefault; });
    EXPECT_EQ(viewModel->resolvedProvider(action), AIProvider::AppleIntelligence);
}

TEST_F(ProviderRouterTest, actionOnTheDefaultEngineIgnoresItsOwnModelAndOneOnOpenAIUsesItTrimmed)
{
    changeSettings([](auto &settings) { settings.defaultProvider = AIProvider::OpenAI; });
    action.modelOverrideID = u" gpt-4o "_s;
    EXPECT_EQ(viewModel->resolvedModel(action), u"gpt-5"_s);
    action.provider = AIProvider::OpenAI;
    EXPECT_EQ(viewModel->resolvedModel(action), u"gpt-4o"_s);
    action.modelOverrideID = u"  "_s;
    EXPECT_EQ(viewModel->resolvedModel(action), u"gpt-5"_s);
}

TEST_F(ProviderRouterTest, engineWithoutModelsHasNoModel)
{
    action.provider = AIProvider::LocalFallback;
    EXPECT_EQ(viewModel->resolvedModel(action), std::nullopt);
}

TEST_F(ProviderRouterTest, openAIGetsPromptModelKeyAttachmentsAndTheLimit)
{
    keys->keys[AIProvider::OpenAI] = "sk-stored";
    action.provider = AIProvider::OpenAI;
    const QStringList steps = stepsOf([this] { run({u"hello"_s, {picture()}}); });
    EXPECT_EQ(shownText(), u"from OpenAI"_s);
    ASSERT_EQ(openAI->textRequests.size(), 1);
    const CloudTextRequest &request = openAI->textRequests.first();
    EXPECT_EQ(request.prompt, u"hello"_s);
    EXPECT_EQ(request.model, u"gpt-5"_s);
    EXPECT_EQ(request.apiKey.bytes(), QByteArrayView("sk-stored"));
    EXPECT_EQ(request.attachments, QList<InputAttachment>{picture()});
    EXPECT_EQ(openAI->tokenLimits, QList<int>{2048});
    EXPECT_EQ(steps.last(), u"Generating with OpenAI"_s);
}

TEST_F(ProviderRouterTest, geminiIsToldTheFormat)
{
    keys->keys[AIProvider::Gemini] = "AIza";
    action.provider = AIProvider::Gemini;
    action.outputFormat = OutputFormat::Json;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(gemini->formats, QList<OutputFormat>{OutputFormat::Json});
    EXPECT_EQ(gemini->textRequests.first().model, u"gemini-2.5-flash"_s);
    EXPECT_EQ(steps.last(), u"Generating with Gemini"_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Gemini"_s);
}

TEST_F(ProviderRouterTest, anthropicGetsTheLimit)
{
    keys->keys[AIProvider::Anthropic] = "sk-ant";
    action.provider = AIProvider::Anthropic;
    action.modelOverrideID = u"claude-sonnet-4-5"_s;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(anthropic->tokenLimits, QList<int>{2048});
    EXPECT_EQ(anthropic->textRequests.first().model, u"claude-sonnet-4-5"_s);
    EXPECT_EQ(steps.last(), u"Generating with Anthropic"_s);
}

TEST_F(ProviderRouterTest, cloudEngineWithoutAKeyAsksToConnectWhateverTheFlagSays)
{
    ProviderConnectionState connections;
    connections.anthropic.isConnected = true;
    viewModel->setProviderConnections(connections);
    action.provider = AIProvider::Anthropic;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(shownError().message, u"Anthropic is not connected."_s);
    EXPECT_EQ(viewModel->suggestedConnectionProvider(), AIProvider::Anthropic);
    EXPECT_TRUE(anthropic->textRequests.isEmpty());
    EXPECT_FALSE(steps.contains(u"Generating with Anthropic"_s));
}

TEST_F(ProviderRouterTest, failureOfACloudEngineIsFinal)
{
    keys->keys[AIProvider::Gemini] = "AIza";
    keys->keys[AIProvider::OpenAI] = "sk";
    gemini->answer.failure = failureOf(UserFacingError(u"quota"_s));
    action.provider = AIProvider::Gemini;
    run();
    EXPECT_EQ(shownError().message, u"Request failed for provider Gemini."_s);
    EXPECT_EQ(shownError().technical, u"quota"_s);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
}

TEST_F(ProviderRouterTest, localEngineMakesItsResultFromTheFinishedPrompt)
{
    action.name = u"Plain"_s;
    action.provider = AIProvider::LocalFallback;
    action.systemPrompt = u"Do: {User_Input}"_s;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(shownText(), u"[Local Preview Response]\nAction: Plain\n\nDo: hello"_s);
    EXPECT_EQ(steps.last(), u"Generating with local preview engine"_s);
    const GenerationDebugInfo details = *viewModel->latestRunDebugInfo();
    EXPECT_EQ(details.requestText, u"Prompt:\nDo: hello"_s);
    EXPECT_EQ(details.responseText, shownText());
    EXPECT_EQ(details.infoRows,
        (QList<DebugInfoRow>{{u"Provider"_s, u"Local Preview Engine"_s},
            {u"Endpoint"_s, u"local-fallback://text"_s}, {u"Input attachments"_s, u"0"_s},
            {u"Timestamp"_s, u"2026-02-20T15:00:00Z"_s}, {u"Model"_s, u"local-fallback"_s}}));
}

TEST_F(ProviderRouterTest, localRunWithTwoPicturesAndNoTextCountsThem)
{
    action.provider = AIProvider::LocalFallback;
    run({QString(), {picture(), picture()}});
    EXPECT_TRUE(shownText().contains(u"Attached images: 2."_s));
    EXPECT_EQ(viewModel->latestRunDebugInfo()->infoRows.at(2).value, u"2"_s);
    EXPECT_FALSE(viewModel->latestRunDebugInfo()->requestText.contains(u"Attached"_s));
}

TEST_F(ProviderRouterTest, localResultCountsNoUsage)
{
    action.provider = AIProvider::LocalFallback;
    run();
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
}

TEST_F(ProviderRouterTest, onDeviceEngineGetsTheSummaryTheRawTemplateAndTheUseCase)
{
    action.provider = AIProvider::AppleIntelligence;
    action.systemPrompt = u"Sort {User_Input}"_s;
    action.modelOverrideID = u"gpt-5"_s;
    changeSettings([](auto &settings) { settings.appleUseCase = u"contentTagging"_s; });
    run({u"x"_s, {document(u"hello"_s)}});
    const OnDeviceTextRequest &request = onDevice->requests.first();
    EXPECT_EQ(request.prompt, u"Sort x\n\nAttached documents:\n[PDF a.pdf]\nhello"_s);
    EXPECT_EQ(request.instructions, u"Sort {User_Input}"_s);
    EXPECT_EQ(request.useCase, u"contentTagging"_s);
    EXPECT_EQ(shownText(), u"from the device"_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Apple Intelligence"_s);
    const GenerationDebugInfo details = *viewModel->latestRunDebugInfo();
    EXPECT_EQ(details.requestText, u"Prompt:\nSort x"_s);
    EXPECT_EQ(withoutTimestamp(details.infoRows),
        (QList<DebugInfoRow>{{u"Provider"_s, u"Apple Intelligence"_s},
            {u"Endpoint"_s, u"apple-intelligence://generate"_s}, {u"Input attachments"_s, u"1"_s},
            {u"Model"_s, u"contentTagging"_s}}));
}

TEST_F(ProviderRouterTest, blankUseCaseHasNoRow)
{
    action.provider = AIProvider::AppleIntelligence;
    changeSettings([](auto &settings) { settings.appleUseCase = u" "_s; });
    run();
    EXPECT_EQ(viewModel->latestRunDebugInfo()->infoRows.size(), 4);
}

TEST_F(ProviderRouterTest, switchedOffEngineRunsLocallyAndSaysSoEvenWithAnOpenAIKey)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    action.provider = AIProvider::AppleIntelligence;
    changeSettings([](auto &settings) { settings.enableAppleIntelligence = false; });
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(
        note(), u"Apple Intelligence is disabled in settings. Local preview engine was used."_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Local Preview Engine"_s);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    EXPECT_EQ(steps.last(), u"Selecting provider"_s) << "there is no step text";
}

TEST_F(ProviderRouterTest, failedOnDeviceEngineGoesToOpenAIOnItsDefaultModel)
{
    failOnDevice();
    keys->keys[AIProvider::OpenAI] = "sk";
    action.provider = AIProvider::AppleIntelligence;
    action.modelOverrideID = u"ignored"_s;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(note(), u"Apple Intelligence unavailable. OpenAI was used instead."_s);
    EXPECT_EQ(shownText(), u"from OpenAI"_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"OpenAI"_s);
    EXPECT_EQ(openAI->textRequests.first().model, u"gpt-5"_s);
    EXPECT_EQ(steps.mid(2),
        (QStringList{
            u"Generating with Apple Intelligence"_s, u"Apple unavailable, trying OpenAI"_s}));
}

TEST_F(ProviderRouterTest, failedOnDeviceEngineWithoutAKeyGoesToTheLocalOne)
{
    failOnDevice();
    keys->keys[AIProvider::OpenAI] = "  ";
    action.provider = AIProvider::AppleIntelligence;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(note(), u"Apple Intelligence unavailable. Local preview engine was used instead."_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Local Preview Engine"_s);
    EXPECT_EQ(steps.last(), u"Generating with Apple Intelligence"_s);
}

TEST_F(ProviderRouterTest, failureOfOpenAIBehindTheOnDeviceEngineIsShownUnderTheResolvedEngine)
{
    failOnDevice();
    keys->keys[AIProvider::OpenAI] = "sk";
    openAI->answer.failure = failureOf(UserFacingError(u"OpenAI is down"_s));
    action.provider = AIProvider::AppleIntelligence;
    run();
    EXPECT_EQ(shownError().message, u"Request failed for provider Apple Intelligence."_s);
    EXPECT_EQ(shownError().technical, u"OpenAI is down"_s);
}

TEST_F(ProviderRouterTest, runCancelledWhileTheOnDeviceEngineWorksSpendsNoOpenAICall)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    failOnDevice();
    onDevice->gate.close();
    onDevice->gate.ignoreStops();
    action.provider = AIProvider::AppleIntelligence;
    begin({u"hello"_s, {}});
    viewModel->cancelRun();
    onDevice->gate.open();
    turnEventLoop();
    EXPECT_EQ(keys->count(CredentialCall::Operation::Read), 0);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    EXPECT_EQ(note(), u"Canceled."_s);
}

TEST_F(ProviderRouterTest, runCancelledWhileTheKeyIsReadSendsNothing)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    keys->gate.close();
    keys->gate.ignoreStops();
    action.provider = AIProvider::OpenAI;
    begin({u"hello"_s, {}});
    viewModel->cancelRun();
    keys->gate.open();
    turnEventLoop();
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    EXPECT_EQ(scope->running(), 0U);
}

TEST_F(ProviderRouterTest, noteOfAFallbackIsNotWrittenByAStaleRun)
{
    failOnDevice();
    keys->keys[AIProvider::OpenAI] = "sk";
    openAI->answer.gate.close();
    openAI->answer.gate.ignoreStops();
    action.provider = AIProvider::AppleIntelligence;
    begin({u"hello"_s, {}});
    viewModel->restart();
    openAI->answer.gate.open();
    turnEventLoop();
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

struct RefusalRow
{
    AIProvider provider;
    const char16_t *sentence;
};

class ImageRefusalTest
    : public ProviderRouterTest
    , public ::testing::WithParamInterface<RefusalRow>
{
};

TEST_P(ImageRefusalTest, engineWithoutImagesRefusesByNameAndSendsNothing)
{
    keys->keys[AIProvider::Gemini] = "AIza";
    keys->keys[AIProvider::Anthropic] = "sk-ant";
    action.provider = GetParam().provider;
    action.outputFormat = OutputFormat::Image;
    run();
    EXPECT_EQ(shownError().technical, QString::fromUtf16(GetParam().sentence));
    EXPECT_TRUE(gemini->textRequests.isEmpty());
    EXPECT_TRUE(anthropic->textRequests.isEmpty());
    EXPECT_EQ(keys->count(CredentialCall::Operation::Read), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryEngine, ImageRefusalTest,
    ::testing::Values(RefusalRow{AIProvider::Gemini, u"Gemini does not support Image output."},
        RefusalRow{AIProvider::Anthropic, u"Anthropic does not support Image output."},
        RefusalRow{
            AIProvider::LocalFallback, u"Local Preview Engine does not support Image output."}));

class ImageChainTest : public ProviderRouterTest
{
protected:
    ImageChainTest()
    {
        action.outputFormat = OutputFormat::Image;
        action.provider = AIProvider::AppleIntelligence;
        openAI->answer.result.payload = ImagePayload{QByteArrayLiteral("cloud png")};
        onDeviceImages->failure = failureOf(AppleImageServiceError::unavailable(u"no"_s));
    }
};

TEST_F(ImageChainTest, openAIMakesImagesOnTheActionsModel)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    action.provider = AIProvider::OpenAI;
    action.modelOverrideID = u"gpt-image-1"_s;
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(openAI->imageRequests.first().model, u"gpt-image-1"_s);
    EXPECT_EQ(openAI->imageRequests.first().prompt, u"hello"_s);
    EXPECT_EQ(steps.last(), u"Generating image with OpenAI"_s);
}

TEST_F(ImageChainTest, switchedOffEngineFailsEvenWithAnOpenAIKey)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    changeSettings([](auto &settings) { settings.enableAppleIntelligence = false; });
    run();
    EXPECT_EQ(shownError().technical,
        u"Apple Intelligence is disabled. Connect OpenAI to generate images."_s);
    EXPECT_TRUE(openAI->imageRequests.isEmpty());
}

TEST_F(ImageChainTest, failedEngineGoesToOpenAI)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    const QStringList steps = stepsOf([this] { run(); });
    EXPECT_EQ(note(), u"Apple image generation unavailable. OpenAI was used instead."_s);
    EXPECT_EQ(openAI->imageRequests.first().model, u"gpt-5"_s);
    EXPECT_EQ(steps.mid(2),
        (QStringList{u"Generating image with Apple Intelligence"_s,
            u"Apple unavailable, trying OpenAI image generation"_s}));
}

TEST_F(ImageChainTest, failedEngineWithoutAKeySuggestsOpenAI)
{
    run();
    EXPECT_EQ(shownError().message, u"Request failed for provider Apple Intelligence."_s);
    EXPECT_EQ(shownError().technical,
        u"Apple image generation is unavailable. Connect OpenAI to generate images."_s);
    EXPECT_EQ(viewModel->suggestedConnectionProvider(), AIProvider::OpenAI);
}

TEST_F(ImageChainTest, failureOfOpenAIIsShown)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    openAI->answer.failure = failureOf(UserFacingError(u"down"_s));
    run();
    EXPECT_EQ(shownError().technical, u"down"_s);
}

TEST_F(ImageChainTest, imageOfTheDeviceIsTheResultWhereThereIsOne)
{
    onDeviceImages->failure = nullptr;
    run();
    const auto &result = std::get<EngineResult>(viewModel->engineState());
    EXPECT_EQ(std::get<ImagePayload>(result.payload).png, QByteArrayLiteral("png"));
    const GenerationDebugInfo details = *viewModel->latestRunDebugInfo();
    EXPECT_EQ(details.responseText, u"[Binary PNG image received: 3 bytes]"_s);
    EXPECT_EQ(withoutTimestamp(details.infoRows),
        (QList<DebugInfoRow>{{u"Provider"_s, u"Apple Intelligence"_s},
            {u"Model"_s, u"apple-image-playground"_s},
            {u"Endpoint"_s, u"apple-image-playground://generate"_s}}));
}

} // namespace
} // namespace velarc
