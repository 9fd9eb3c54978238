#pragma once

// The connections to the cloud engines: their keys, their flags, and what the screens say of them.
//
// A key passes through here on its way to the secret store and is kept in no field. Main thread
// only.

#include "base/async.h"
#include "base/clock.h"
#include "engines/credential_store.h"
#include "engines/engine_services.h"
#include "engines/on_device_model.h"
#include "run/start_up.h"

#include <QPointer>

#include <functional>

namespace velarc {

class ActionLibrary;
class AppState;

struct ConnectionServices
{
    std::shared_ptr<Clock> clock;
    std::shared_ptr<const LocalStore> store;
    std::shared_ptr<CredentialStore> credentialStore;
    std::shared_ptr<OpenAIServing> openAIService;
    std::shared_ptr<GeminiServing> geminiService;
    std::shared_ptr<AnthropicServing> anthropicService;
    std::shared_ptr<OnDeviceModel> onDeviceModel;
    std::shared_ptr<ActionLibrary> library;
    std::shared_ptr<TaskScope> scope;
};

enum class ConnectFor
{
    ThisProviderOnly,
    Everything, // the engine becomes the default, and every action follows the default
};

struct ConnectRequest
{
    AIProvider provider = AIProvider::OpenAI;
    Secret apiKey;
    QString modelID; // blank: the engine's own default
    ConnectFor use = ConnectFor::ThisProviderOnly;
};

class Connections final : public StartUpConnections
{
public:
    Connections(AppState &state, ConnectionServices services);

    // Verifies the key by one short generation, stores it, and marks the engine as connected.
    // Gives the sentence to show, none on success. A key that cannot be verified is not stored.
    //
    // Stop: CancellationError, and nothing is written behind it.
    [[nodiscard]] QCoro::Task<std::optional<QString>> connectProvider(
        ConnectRequest request, std::stop_token stop);

    // Removes the key. Gives the sentence to show, none on success; on failure nothing changes.
    [[nodiscard]] QCoro::Task<std::optional<QString>> disconnectProvider(
        AIProvider provider, std::stop_token stop);

    // Is told the sentence to show, none on success.
    using Ended = std::function<void(const std::optional<QString> &)>;

    // The same for who does not wait: each goes on to its end whatever becomes of who asked, and
    // ends untold where the program ends first.
    void startConnecting(ConnectRequest request, Ended ended);
    void startDisconnecting(AIProvider provider, Ended ended);

    // Opens the connect sheet of an engine that needs a key; does nothing for the others.
    void presentConnectSheet(AIProvider provider);

    // True for engines that need no key.
    [[nodiscard]] bool isProviderConnected(AIProvider provider) const;
    [[nodiscard]] QString connectionStatusText(const ProviderConnectionInfo &info) const;
    [[nodiscard]] QString providerStatusText(AIProvider provider) const;

    // Saves the settings as they stand, and notes where their default engine is not connected.
    void saveProviderSettings();

    void refreshAppleIntelligenceStatus() override;

    // Moves a key that older versions kept among the settings into the secret store. Whatever
    // comes of it, the settings hold no key from then on.
    void migrateLegacyOpenAIKey() override;

    // Squares the flags with the keys that are really stored.
    void reconcileConnections() override;

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
