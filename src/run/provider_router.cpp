#include "run/provider_router.h"

#include "base/locale_text.h"
#include "base/text.h"
#include "base/worker.h"
#include "engines/local_fallback_engine.h"
#include "engines/on_device_services.h"
#include "records/attachment_summary.h"
#include "records/run_errors.h"
#include "run/app_state.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

struct ProviderRouter::Members
{
    QPointer<AppState> state;
    EngineServices services;
};

namespace {

constexpr int kMaximumOutputTokens = 2048;

// What every road of one request needs. The frames hold it, so that the router may go earlier.
struct Road
{
    EngineServices services;
    ProviderSettings settings; // as they stood when the request was made
    std::shared_ptr<RunProgress> progress;
    std::stop_token stop;
};

using RoadHandle = std::shared_ptr<const Road>;

QString modelOrDefault(const Road &road, const std::optional<QString> &model, AIProvider provider)
{
    return model.value_or(defaultModelID(road.settings, provider));
}

// The key as it is stored; none where it is absent or blank.
QCoro::Task<std::optional<Secret>> storedKey(RoadHandle road, AIProvider provider)
{
    auto key = co_await road->services.credentialStore->apiKey(provider, road->stop);
    road->progress->ensureActive();
    if (key && key->trimmed().isEmpty()) {
        key.reset();
    }
    co_return key;
}

QCoro::Task<Secret> requireAPIKey(RoadHandle road, AIProvider provider)
{
    auto key = co_await storedKey(road, provider);
    if (!key) {
        throw ProviderConnectionRequiredError(provider);
    }
    co_return *std::move(key);
}

GenerationDebugInfo onDeviceDebugInfo(const QString &prompt, const QString &output,
    const QString &engine, const QString &endpoint, qsizetype attachments, Instant now)
{
    return GenerationDebugInfo{u"Prompt:\n"_s + prompt, output,
        {{u"Provider"_s, engine}, {u"Endpoint"_s, endpoint},
            {u"Input attachments"_s, QString::number(attachments)},
            {u"Timestamp"_s, iso8601(now)}}};
}

QCoro::Task<GenerationResult> localResult(RoadHandle road, TextGeneration request)
{
    const QString modelID = u"local-fallback"_s;
    const QString prompt = request.prompt;
    const qsizetype attachments = request.attachments.size();
    auto work = [request = std::move(request)](const std::stop_token &) {
        return LocalFallbackEngine::generate(
            request.action, textWithAttachmentSummary(request.prompt, request.attachments));
    };
    const QString output = co_await road->services.localWorker->run(std::move(work), road->stop);
    GenerationResult result;
    result.payload = TextPayload{output};
    result.provider = AIProvider::LocalFallback;
    result.modelID = modelID;
    result.debugInfo = onDeviceDebugInfo(prompt, output, label(AIProvider::LocalFallback),
        u"local-fallback://text"_s, attachments, road->services.clock->now());
    result.debugInfo->infoRows.append({u"Model"_s, modelID});
    co_return result;
}

QCoro::Task<GenerationResult> onDeviceText(RoadHandle road, TextGeneration request)
{
    const QString useCase = road->settings.appleUseCase;
    OnDeviceTextRequest onDevice{textWithAttachmentSummary(request.prompt, request.attachments),
        request.action.systemPrompt, useCase};
    const QString output = co_await road->services.appleIntelligenceService->generateText(
        std::move(onDevice), road->stop);
    GenerationResult result;
    result.payload = TextPayload{output};
    result.provider = AIProvider::AppleIntelligence;
    result.modelID = useCase;
    result.debugInfo = onDeviceDebugInfo(request.prompt, output,
        label(AIProvider::AppleIntelligence), u"apple-intelligence://generate"_s,
        request.attachments.size(), road->services.clock->now());
    if (!isBlank(useCase)) {
        result.debugInfo->infoRows.append({u"Model"_s, useCase});
    }
    co_return result;
}

QCoro::Task<GenerationResult> openAIText(
    RoadHandle road, TextGeneration request, QString model, Secret key)
{
    CloudTextRequest cloud{std::move(request.prompt), std::move(model), std::move(key),
        std::move(request.attachments)};
    co_return co_await road->services.openAIService->generateText(
        std::move(cloud), kMaximumOutputTokens, road->stop);
}

// What follows a failure of the on-device engine; the failure itself is dropped.
QCoro::Task<GenerationResult> textWithoutOnDevice(RoadHandle road, TextGeneration request)
{
    road->progress->ensureActive();
    auto key = co_await storedKey(road, AIProvider::OpenAI);
    if (!key) {
        GenerationResult result = co_await localResult(road, std::move(request));
        road->progress->note(
            u"Apple Intelligence unavailable. Local preview engine was used instead."_s);
        co_return result;
    }
    road->progress->step(u"Apple unavailable, trying OpenAI"_s);
    QString model = defaultModelID(road->settings, AIProvider::OpenAI);
    GenerationResult result =
        co_await openAIText(road, std::move(request), std::move(model), *std::move(key));
    road->progress->note(u"Apple Intelligence unavailable. OpenAI was used instead."_s);
    co_return result;
}

QCoro::Task<GenerationResult> onDeviceTextChain(RoadHandle road, TextGeneration request)
{
    if (!road->settings.enableAppleIntelligence) {
        road->progress->note(
            u"Apple Intelligence is disabled in settings. Local preview engine was used."_s);
        co_return co_await localResult(road, std::move(request));
    }
    road->progress->step(u"Generating with Apple Intelligence"_s);
    std::optional<GenerationResult> result;
    try {
        result = co_await onDeviceText(road, request);
    } catch (const std::exception &) {
        // Whatever it was, the next engine is tried.
    }
    if (result) {
        co_return *std::move(result);
    }
    co_return co_await textWithoutOnDevice(road, std::move(request));
}

QCoro::Task<GenerationResult> openAITextRoad(RoadHandle road, TextGeneration request)
{
    Secret key = co_await requireAPIKey(road, AIProvider::OpenAI);
    road->progress->step(u"Generating with OpenAI"_s);
    QString model = modelOrDefault(*road, request.model, AIProvider::OpenAI);
    co_return co_await openAIText(road, std::move(request), std::move(model), std::move(key));
}

QCoro::Task<GenerationResult> geminiTextRoad(RoadHandle road, TextGeneration request)
{
    Secret key = co_await requireAPIKey(road, AIProvider::Gemini);
    road->progress->step(u"Generating with Gemini"_s);
    CloudTextRequest cloud{std::move(request.prompt),
        modelOrDefault(*road, request.model, AIProvider::Gemini), std::move(key),
        std::move(request.attachments)};
    co_return co_await road->services.geminiService->generateText(
        std::move(cloud), request.action.outputFormat, road->stop);
}

QCoro::Task<GenerationResult> anthropicTextRoad(RoadHandle road, TextGeneration request)
{
    Secret key = co_await requireAPIKey(road, AIProvider::Anthropic);
    road->progress->step(u"Generating with Anthropic"_s);
    CloudTextRequest cloud{std::move(request.prompt),
        modelOrDefault(*road, request.model, AIProvider::Anthropic), std::move(key),
        std::move(request.attachments)};
    co_return co_await road->services.anthropicService->generateText(
        std::move(cloud), kMaximumOutputTokens, road->stop);
}

QCoro::Task<GenerationResult> localTextRoad(RoadHandle road, TextGeneration request)
{
    road->progress->step(u"Generating with local preview engine"_s);
    return localResult(std::move(road), std::move(request));
}

QCoro::Task<GenerationResult> textRoad(RoadHandle road, TextGeneration request)
{
    switch (request.provider) {
    case AIProvider::OpenAI:
        return openAITextRoad(std::move(road), std::move(request));
    case AIProvider::Gemini:
        return geminiTextRoad(std::move(road), std::move(request));
    case AIProvider::Anthropic:
        return anthropicTextRoad(std::move(road), std::move(request));
    case AIProvider::AppleIntelligence:
        return onDeviceTextChain(std::move(road), std::move(request));
    case AIProvider::LocalFallback:
    case AIProvider::UseDefault:
        return localTextRoad(std::move(road), std::move(request));
    }
    Q_UNREACHABLE();
}

QCoro::Task<GenerationResult> openAIImage(
    RoadHandle road, QString prompt, QString model, Secret key)
{
    CloudImageRequest cloud{std::move(prompt), std::move(model), std::move(key)};
    co_return co_await road->services.openAIService->generateImage(std::move(cloud), road->stop);
}

QCoro::Task<GenerationResult> openAIImageRoad(RoadHandle road, ImageGeneration request)
{
    Secret key = co_await requireAPIKey(road, AIProvider::OpenAI);
    road->progress->step(u"Generating image with OpenAI"_s);
    QString model = modelOrDefault(*road, request.model, AIProvider::OpenAI);
    co_return co_await openAIImage(
        road, std::move(request.prompt), std::move(model), std::move(key));
}

QCoro::Task<GenerationResult> onDeviceImage(RoadHandle road, QString prompt)
{
    const QByteArray png =
        co_await road->services.appleImageService->generateImage(prompt, road->stop);
    const QString modelID = u"apple-image-playground"_s;
    GenerationResult result;
    result.payload = ImagePayload{png};
    result.provider = AIProvider::AppleIntelligence;
    result.modelID = modelID;
    result.debugInfo = GenerationDebugInfo{u"Prompt:\n"_s + prompt,
        u"[Binary PNG image received: "_s + QString::number(png.size()) + u" bytes]"_s,
        {{u"Provider"_s, label(AIProvider::AppleIntelligence)}, {u"Model"_s, modelID},
            {u"Endpoint"_s, u"apple-image-playground://generate"_s},
            {u"Timestamp"_s, iso8601(road->services.clock->now())}}};
    co_return result;
}

QCoro::Task<GenerationResult> imageWithoutOnDevice(RoadHandle road, QString prompt)
{
    road->progress->ensureActive();
    auto key = co_await storedKey(road, AIProvider::OpenAI);
    if (!key) {
        throw AppleImageServiceError::unavailable(
            u"Apple image generation is unavailable. Connect OpenAI to generate images."_s);
    }
    road->progress->step(u"Apple unavailable, trying OpenAI image generation"_s);
    QString model = defaultModelID(road->settings, AIProvider::OpenAI);
    GenerationResult result =
        co_await openAIImage(road, std::move(prompt), std::move(model), *std::move(key));
    road->progress->note(u"Apple image generation unavailable. OpenAI was used instead."_s);
    co_return result;
}

QCoro::Task<GenerationResult> onDeviceImageChain(RoadHandle road, ImageGeneration request)
{
    if (!road->settings.enableAppleIntelligence) {
        throw AppleImageServiceError::unavailable(
            u"Apple Intelligence is disabled. Connect OpenAI to generate images."_s);
    }
    road->progress->step(u"Generating image with Apple Intelligence"_s);
    std::optional<GenerationResult> result;
    try {
        result = co_await onDeviceImage(road, request.prompt);
    } catch (const std::exception &) {
        // Whatever it was, the next engine is tried.
    }
    if (result) {
        co_return *std::move(result);
    }
    co_return co_await imageWithoutOnDevice(road, std::move(request.prompt));
}

QCoro::Task<GenerationResult> refusedImage(AIProvider provider, OutputFormat format)
{
    throw UnsupportedOutputProviderError(provider, format);
    co_return GenerationResult();
}

QCoro::Task<GenerationResult> imageRoad(RoadHandle road, ImageGeneration request)
{
    const OutputFormat format = request.action.outputFormat;
    switch (request.provider) {
    case AIProvider::OpenAI:
        return openAIImageRoad(std::move(road), std::move(request));
    case AIProvider::AppleIntelligence:
        return onDeviceImageChain(std::move(road), std::move(request));
    case AIProvider::Gemini:
    case AIProvider::Anthropic:
        return refusedImage(request.provider, format);
    case AIProvider::LocalFallback:
    case AIProvider::UseDefault:
        return refusedImage(AIProvider::LocalFallback, format);
    }
    Q_UNREACHABLE();
}

} // namespace

ProviderRouter::ProviderRouter(AppState &state, EngineServices services)
    : m_members(std::make_shared<Members>())
{
    m_members->state = &state;
    m_members->services = std::move(services);
}

AIProvider ProviderRouter::resolvedProvider(const AIAction &action) const
{
    if (action.provider != AIProvider::UseDefault) {
        return action.provider;
    }
    const AIProvider standard = m_members->state->providerSettings().defaultProvider;
    return standard == AIProvider::UseDefault ? AIProvider::AppleIntelligence : standard;
}

std::optional<QString> ProviderRouter::resolvedModel(
    const AIAction &action, AIProvider provider) const
{
    const QString own = action.modelOverrideID.value_or(QString());
    if (action.provider != AIProvider::UseDefault && !isBlank(own)) {
        return trimmed(own).toString();
    }
    if (cloudProviders().contains(provider)) {
        return defaultModelID(m_members->state->providerSettings(), provider);
    }
    return std::nullopt;
}

QCoro::Task<GenerationResult> ProviderRouter::generateTextResult(
    TextGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    auto road = std::make_shared<const Road>(Road{m_members->services,
        m_members->state->providerSettings(), std::move(progress), std::move(stop)});
    return textRoad(std::move(road), std::move(request));
}

QCoro::Task<GenerationResult> ProviderRouter::generateImageResult(
    ImageGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    auto road = std::make_shared<const Road>(Road{m_members->services,
        m_members->state->providerSettings(), std::move(progress), std::move(stop)});
    return imageRoad(std::move(road), std::move(request));
}

} // namespace velarc
