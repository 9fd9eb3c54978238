#include "fakes/scripted_engines.h"

namespace velarc {

namespace {

QCoro::Task<GenerationResult> answered(EngineAnswer *answer, std::stop_token stop)
{
    GenerationResult result = answer->result;
    const std::exception_ptr failure = answer->failure;
    co_await answer->gate.pass(std::move(stop));
    if (failure) {
        std::rethrow_exception(failure);
    }
    co_return result;
}

} // namespace

QCoro::Task<GenerationResult> ScriptedOpenAI::generateText(
    CloudTextRequest request, int maxOutputTokens, std::stop_token stop)
{
    textRequests.append(std::move(request));
    tokenLimits.append(maxOutputTokens);
    return answered(&answer, std::move(stop));
}

QCoro::Task<GenerationResult> ScriptedOpenAI::generateImage(
    CloudImageRequest request, std::stop_token stop)
{
    imageRequests.append(std::move(request));
    return answered(&answer, std::move(stop));
}

QCoro::Task<GenerationResult> ScriptedGemini::generateText(
    CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop)
{
    textRequests.append(std::move(request));
    formats.append(outputFormat);
    return answered(&answer, std::move(stop));
}

QCoro::Task<GenerationResult> ScriptedAnthropic::generateText(
    CloudTextRequest request, int maxTokens, std::stop_token stop)
{
    textRequests.append(std::move(request));
    tokenLimits.append(maxTokens);
    return answered(&answer, std::move(stop));
}

QCoro::Task<QString> ScriptedOnDevice::generateText(
    OnDeviceTextRequest request, std::stop_token stop)
{
    requests.append(std::move(request));
    const QString output = text;
    const std::exception_ptr thrown = failure;
    co_await gate.pass(std::move(stop));
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    co_return output;
}

QCoro::Task<QByteArray> ScriptedOnDeviceImages::generateImage(QString prompt, std::stop_token stop)
{
    prompts.append(std::move(prompt));
    const QByteArray output = png;
    const std::exception_ptr thrown = failure;
    co_await gate.pass(std::move(stop));
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    co_return output;
}

OnDeviceAvailability ScriptedOnDeviceModel::availability(OnDeviceUseCase useCase) const
{
    return useCase == OnDeviceUseCase::General ? general : contentTagging;
}

QCoro::Task<QString> ScriptedOnDeviceModel::respond(OnDevicePrompt prompt, std::stop_token)
{
    prompts.append(std::move(prompt));
    if (failure) {
        std::rethrow_exception(failure);
    }
    co_return QString(content);
}

} // namespace velarc
