#pragma once

// Engines that do at once, and without a network, what engines do on their good and bad days, and a
// library with an action for each.

#include "base/clock.h"
#include "engines/credential_store.h"
#include "engines/engine_services.h"
#include "run/app_view_model.h"

#include <map>
#include <memory>

namespace velarc {

// The actions in their order. Each is named for what comes of running it.
[[nodiscard]] QList<AIAction> demoActions();

// Does what the action's model names; answers with the prompt where it names nothing it knows.
class DemoEngine final
    : public OpenAIServing
    , public GeminiServing
    , public AnthropicServing
{
public:
    // Takes a moment by `clock` for each answer.
    DemoEngine(AIProvider provider, std::shared_ptr<Clock> clock)
        : m_provider(provider), m_clock(std::move(clock))
    {
    }

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxTokens, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateImage(
        CloudImageRequest request, std::stop_token stop) override;

private:
    AIProvider m_provider;
    std::shared_ptr<Clock> m_clock;
};

// Keys for the life of the process. OpenAI has one from the start.
class DemoKeys final : public CredentialStore
{
public:
    [[nodiscard]] QCoro::Task<std::optional<Secret>> apiKey(
        AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<void> saveAPIKey(
        Secret key, AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<void> deleteAPIKey(
        AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QList<AIProvider> providersWithStoredKey(
        std::chrono::milliseconds bound) override;
    void saveWithoutPrompting(
        const Secret &key, AIProvider provider, std::chrono::milliseconds bound) override;

private:
    std::map<AIProvider, Secret> m_keys{{AIProvider::OpenAI, Secret("demo")}};
};

// The same services, but for the engines, which are the demo's, and their keys.
[[nodiscard]] AppServices overDemoEngines(AppServices services);

} // namespace velarc
