#pragma once

// Decides which engine runs an action and with which model, calls it, and carries out the one
// fallback: from the on-device engine to OpenAI, and for text to the Local Preview Engine.
//
// A failure of a cloud engine is final. Main thread only.

#include "base/clock.h"
#include "engines/credential_store.h"
#include "engines/engine_services.h"
#include "run/run_seams.h"

#include <QPointer>

namespace velarc {

class AppState;
class SerialWorker;

struct EngineServices
{
    std::shared_ptr<Clock> clock;
    std::shared_ptr<CredentialStore> credentialStore;
    std::shared_ptr<OpenAIServing> openAIService;
    std::shared_ptr<GeminiServing> geminiService;
    std::shared_ptr<AnthropicServing> anthropicService;
    std::shared_ptr<AppleIntelligenceServing> appleIntelligenceService;
    std::shared_ptr<AppleImageServing> appleImageService;
    std::shared_ptr<SerialWorker> localWorker; // the Local Preview Engine's thread
};

class ProviderRouter final : public Generating
{
public:
    // Reads the settings of `state` at each decision.
    ProviderRouter(AppState &state, EngineServices services);

    // What the action or the settings name; the on-device engine where neither names one.
    [[nodiscard]] AIProvider resolvedProvider(const AIAction &action) const override;

    // The action's own model where it names its engine too, else the engine's default; none for
    // engines without models.
    [[nodiscard]] std::optional<QString> resolvedModel(
        const AIAction &action, AIProvider provider) const override;

    [[nodiscard]] QCoro::Task<GenerationResult> generateTextResult(TextGeneration request,
        std::shared_ptr<RunProgress> progress, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateImageResult(ImageGeneration request,
        std::shared_ptr<RunProgress> progress, std::stop_token stop) override;

private:
    struct Members;
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
