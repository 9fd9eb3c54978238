#pragma once

// The engines as their callers see them, steered by a test. Each answers at once unless its gate is
// closed, and fails where a failure is set.

#include "engines/engine_services.h"
#include "engines/on_device_model.h"
#include "fakes/gate.h"

namespace velarc {

struct EngineAnswer
{
    Gate gate;
    GenerationResult result;
    std::exception_ptr failure;
};

class ScriptedOpenAI final : public OpenAIServing
{
public:
    EngineAnswer answer;
    QList<CloudTextRequest> textRequests;
    QList<int> tokenLimits;
    QList<CloudImageRequest> imageRequests;

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxOutputTokens, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateImage(
        CloudImageRequest request, std::stop_token stop) override;
};

class ScriptedGemini final : public GeminiServing
{
public:
    EngineAnswer answer;
    QList<CloudTextRequest> textRequests;
    QList<OutputFormat> formats;

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop) override;
};

class ScriptedAnthropic final : public AnthropicServing
{
public:
    EngineAnswer answer;
    QList<CloudTextRequest> textRequests;
    QList<int> tokenLimits;

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxTokens, std::stop_token stop) override;
};

class ScriptedOnDevice final : public AppleIntelligenceServing
{
public:
    Gate gate;
    QString text = QStringLiteral("from the device");
    std::exception_ptr failure;
    QList<OnDeviceTextRequest> requests;

    [[nodiscard]] QCoro::Task<QString> generateText(
        OnDeviceTextRequest request, std::stop_token stop) override;
};

class ScriptedOnDeviceImages final : public AppleImageServing
{
public:
    Gate gate;
    QByteArray png = QByteArrayLiteral("png");
    std::exception_ptr failure;
    QStringList prompts;

    [[nodiscard]] QCoro::Task<QByteArray> generateImage(
        QString prompt, std::stop_token stop) override;
};

class ScriptedOnDeviceModel final : public OnDeviceModel
{
public:
    OnDeviceAvailability general = OnDeviceAvailability::Available;
    OnDeviceAvailability contentTagging = OnDeviceAvailability::Available;
    QString content = QStringLiteral("answer");
    std::exception_ptr failure;
    QList<OnDevicePrompt> prompts;

    [[nodiscard]] OnDeviceAvailability availability(OnDeviceUseCase useCase) const override;
    [[nodiscard]] QCoro::Task<QString> respond(
        OnDevicePrompt prompt, std::stop_token stop) override;
};

} // namespace velarc
