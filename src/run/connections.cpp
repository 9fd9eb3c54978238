#include "run/connections.h"

#include "base/locale_text.h"
#include "base/text.h"
#include "engines/on_device_services.h"
#include "run/action_library.h"
#include "run/app_state.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct Connections::Members
{
    QPointer<AppState> state;
    ConnectionServices services;
};

namespace {

using MembersHandle = std::shared_ptr<Connections::Members>;

constexpr int kVerificationTokensOpenAI = 64;
constexpr int kVerificationTokensAnthropic = 24;

// The start waits no longer than this for the secret store, all questions together.
constexpr std::chrono::milliseconds kStartUpBound = 1s;
constexpr std::chrono::milliseconds kMigrationBound = 500ms;

ProviderConnectionInfo *infoOf(ProviderConnectionState &state, AIProvider provider)
{
    switch (provider) {
    case AIProvider::OpenAI:
        return &state.openAI;
    case AIProvider::Gemini:
        return &state.gemini;
    case AIProvider::Anthropic:
        return &state.anthropic;
    case AIProvider::UseDefault:
    case AIProvider::AppleIntelligence:
    case AIProvider::LocalFallback:
        return nullptr;
    }
    Q_UNREACHABLE();
}

bool needsKey(AIProvider provider)
{
    return cloudProviders().contains(provider);
}

} // namespace

// What the operations do to the state. Every write behind a wait goes through write(), which ends
// the operation if it was stopped or if the state has gone.
class ConnectionChange
{
public:
    ConnectionChange(MembersHandle members, std::stop_token stop)
        : m_members(std::move(members)), m_stop(std::move(stop))
    {
    }

    [[nodiscard]] const ConnectionServices &services() const { return m_members->services; }
    [[nodiscard]] const std::stop_token &stop() const { return m_stop; }

    void ensureActive() const
    {
        throwIfStopped(m_stop);
        if (!m_members->state) {
            throw CancellationError();
        }
    }

    [[nodiscard]] AppState &state() const
    {
        ensureActive();
        return *m_members->state;
    }

    void setInfo(AIProvider provider, const ProviderConnectionInfo &info) const
    {
        ProviderConnectionState connections = state().providerConnections();
        if (ProviderConnectionInfo *found = infoOf(connections, provider)) {
            *found = info;
        }
        state().setProviderConnections(connections);
        services().store->saveProviderConnections(connections);
    }

    void saveSettings() const
    {
        services().store->saveProviderSettings(state().providerSettings());
    }

private:
    MembersHandle m_members;
    std::stop_token m_stop;
};

namespace {

using ChangeHandle = std::shared_ptr<const ConnectionChange>;

QCoro::Task<void> verify(ChangeHandle change, AIProvider provider, CloudTextRequest request)
{
    const ConnectionServices &services = change->services();
    if (provider == AIProvider::OpenAI) {
        co_await services.openAIService->generateText(
            std::move(request), kVerificationTokensOpenAI, change->stop());
    } else if (provider == AIProvider::Gemini) {
        co_await services.geminiService->generateText(
            std::move(request), OutputFormat::Text, change->stop());
    } else {
        co_await services.anthropicService->generateText(
            std::move(request), kVerificationTokensAnthropic, change->stop());
    }
    change->ensureActive();
}

QCoro::Task<void> verifyAndStore(
    ChangeHandle change, AIProvider provider, Secret key, QString modelID)
{
    CloudTextRequest request{u"Reply with OK."_s, std::move(modelID), key, {}};
    co_await verify(change, provider, std::move(request));
    co_await change->services().credentialStore->saveAPIKey(
        std::move(key), provider, change->stop());
    change->ensureActive();
}

void markConnected(const ConnectionChange &change, const ConnectRequest &request)
{
    AppState &state = change.state();
    state.setProviderSettings(
        setDefaultModelID(state.providerSettings(), request.provider, request.modelID));
    change.setInfo(request.provider, {true, change.services().clock->now()});
    if (request.use == ConnectFor::Everything) {
        ProviderSettings settings = state.providerSettings();
        settings.defaultProvider = request.provider;
        state.setProviderSettings(std::move(settings));
        change.services().library->applyDefaultEngineToAllActions();
    }
    change.saveSettings();
    state.setSuggestedConnectionProvider(std::nullopt);
    state.setStatusNote(label(request.provider) + u" connected successfully."_s);
}

QCoro::Task<std::optional<QString>> connect(ChangeHandle change, ConnectRequest request)
{
    Secret key = request.apiKey.trimmed();
    if (key.isEmpty()) {
        co_return u"Paste your API key to continue."_s;
    }
    if (!needsKey(request.provider)) {
        co_return u"Only OpenAI, Gemini, and Anthropic require connection setup."_s;
    }
    // The literal default of the engine stands for a blank model, whatever the settings say.
    request.modelID = defaultModelID(
        setDefaultModelID(defaultProviderSettings(), request.provider, request.modelID),
        request.provider);
    std::optional<QString> failure;
    try {
        co_await verifyAndStore(change, request.provider, std::move(key), request.modelID);
    } catch (const CancellationError &) {
        throw;
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (failure) {
        change->setInfo(request.provider, {});
        co_return failure;
    }
    markConnected(*change, request);
    co_return std::nullopt;
}

QCoro::Task<std::optional<QString>> disconnect(ChangeHandle change, AIProvider provider)
{
    try {
        co_await change->services().credentialStore->deleteAPIKey(provider, change->stop());
    } catch (const CredentialStoreError &error) {
        co_return error.message();
    }
    change->setInfo(provider, {});
    ProviderSettings settings = change->state().providerSettings();
    if (settings.defaultProvider == provider) {
        settings.defaultProvider = AIProvider::AppleIntelligence;
        change->state().setProviderSettings(std::move(settings));
        change->saveSettings();
    }
    change->state().setStatusNote(label(provider) + u" disconnected."_s);
    co_return std::nullopt;
}

QCoro::Task<void> tellEnd(QCoro::Task<std::optional<QString>> task, Connections::Ended ended,
    TaskScope::Ticket /*ticket*/)
{
    try {
        const std::optional<QString> sentence = co_await task;
        ended(sentence);
    } catch (const CancellationError &) {
        // The program ends, and nobody looks any more.
    }
}

} // namespace

Connections::Connections(AppState &state, ConnectionServices services)
    : m_members(std::make_shared<Members>())
{
    m_members->state = &state;
    m_members->services = std::move(services);
}

QCoro::Task<std::optional<QString>> Connections::connectProvider(
    ConnectRequest request, std::stop_token stop)
{
    auto change = std::make_shared<const ConnectionChange>(m_members, std::move(stop));
    return connect(std::move(change), std::move(request));
}

QCoro::Task<std::optional<QString>> Connections::disconnectProvider(
    AIProvider provider, std::stop_token stop)
{
    auto change = std::make_shared<const ConnectionChange>(m_members, std::move(stop));
    return disconnect(std::move(change), provider);
}

void Connections::startConnecting(ConnectRequest request, Ended ended)
{
    const std::stop_source stop;
    TaskScope::Ticket ticket = m_members->services.scope->enter(stop);
    auto task = connectProvider(std::move(request), stop.get_token());
    // Nobody awaits it: it ends by itself, or with the scope.
    static_cast<void>(tellEnd(std::move(task), std::move(ended), std::move(ticket)));
}

void Connections::startDisconnecting(AIProvider provider, Ended ended)
{
    const std::stop_source stop;
    TaskScope::Ticket ticket = m_members->services.scope->enter(stop);
    auto task = disconnectProvider(provider, stop.get_token());
    static_cast<void>(tellEnd(std::move(task), std::move(ended), std::move(ticket)));
}

void Connections::presentConnectSheet(AIProvider provider)
{
    if (needsKey(provider)) {
        m_members->state->setProviderConnectSheetProvider(provider);
    }
}

bool Connections::isProviderConnected(AIProvider provider) const
{
    ProviderConnectionState connections = m_members->state->providerConnections();
    const ProviderConnectionInfo *info = infoOf(connections, provider);
    return info == nullptr || info->isConnected;
}

QString Connections::connectionStatusText(const ProviderConnectionInfo &info) const
{
    if (!info.isConnected) {
        return u"Not connected"_s;
    }
    if (!info.lastVerifiedAt) {
        return u"Connected"_s;
    }
    return u"Connected \u2022 Verified "_s
        + relativeShort(*info.lastVerifiedAt, m_members->services.clock->now());
}

QString Connections::providerStatusText(AIProvider provider) const
{
    const AppState &state = *m_members->state;
    ProviderConnectionState connections = state.providerConnections();
    if (const ProviderConnectionInfo *info = infoOf(connections, provider)) {
        return connectionStatusText(*info);
    }
    if (provider == AIProvider::UseDefault) {
        return u"Uses Engine Room default"_s;
    }
    if (provider == AIProvider::LocalFallback) {
        return u"Always available offline"_s;
    }
    if (!state.providerSettings().enableAppleIntelligence) {
        return u"Disabled in app settings"_s;
    }
    const AppleIntelligenceStatusSnapshot &status = state.appleIntelligenceStatus();
    return status.title + u": "_s + status.details;
}

void Connections::saveProviderSettings()
{
    AppState &state = *m_members->state;
    m_members->services.store->saveProviderSettings(state.providerSettings());
    refreshAppleIntelligenceStatus();
    const AIProvider standard = state.providerSettings().defaultProvider;
    if (needsKey(standard) && !isProviderConnected(standard)) {
        state.setStatusNote(label(standard) + u" is selected as default, but not connected yet."_s);
    }
}

void Connections::refreshAppleIntelligenceStatus()
{
    const OnDeviceAvailability availability =
        m_members->services.onDeviceModel->availability(OnDeviceUseCase::General);
    const bool isAvailable = availability == OnDeviceAvailability::Available;
    m_members->state->setAppleIntelligenceStatus({isAvailable,
        isAvailable ? u"Available"_s : u"Unavailable"_s, availabilityStatusText(availability)});
}

void Connections::migrateLegacyOpenAIKey()
{
    AppState &state = *m_members->state;
    ProviderSettings settings = state.providerSettings();
    if (!settings.legacyOpenAIAPIKey) {
        return;
    }
    const Secret key = Secret::fromText(*std::exchange(settings.legacyOpenAIAPIKey, {})).trimmed();
    state.setProviderSettings(settings);
    const ConnectionChange change(m_members, {});
    if (!key.isEmpty()) {
        try {
            m_members->services.credentialStore->saveWithoutPrompting(
                key, AIProvider::OpenAI, kMigrationBound);
            change.setInfo(AIProvider::OpenAI, {true, m_members->services.clock->now()});
        } catch (const CredentialStoreError &) {
            state.setStatusNote(u"Could not migrate existing OpenAI key to Keychain."_s);
        }
    }
    change.saveSettings();
}

void Connections::reconcileConnections()
{
    const QList<AIProvider> stored = m_members->services.credentialStore->providersWithStoredKey(
        kStartUpBound - kMigrationBound);
    ProviderConnectionState connections = m_members->state->providerConnections();
    for (const AIProvider provider : cloudProviders()) {
        ProviderConnectionInfo &info = *infoOf(connections, provider);
        if (!stored.contains(provider)) {
            info = {};
        } else if (!info.isConnected) {
            info = {true, std::nullopt};
        }
    }
    if (connections != m_members->state->providerConnections()) {
        m_members->state->setProviderConnections(connections);
        m_members->services.store->saveProviderConnections(connections);
    }
}

} // namespace velarc
