#include "store/local_store.h"

#include "actions/action_json.h"
#include "base/locale_text.h"

namespace velarc {

namespace {

constexpr QByteArrayView kActions = "velarc.actions.v1";
constexpr QByteArrayView kProviderSettings = "velarc.providerSettings.v1";
constexpr QByteArrayView kProviderConnections = "velarc.provider.connections.v1";
constexpr QByteArrayView kUsageLedger = "velarc.usage.daily.v1";
constexpr QByteArrayView kAutomationOptions = "velarc.home.automationOptions.v1";
constexpr QByteArrayView kHomeLayout = "velarc.homeLayout.v1";
constexpr QByteArrayView kNewRunExperience = "velarc.feature.newRunExperienceEnabled.v1";
constexpr QByteArrayView kPasteMigration = "velarc.migration.homeAutomationPasteV1";
constexpr QByteArrayView kPendingHandoff = "velarc.share.pendingHandoff.v1";
constexpr QByteArrayView kLatestResult = "velarc.share.latestResult.v1";

template <typename Decode>
auto decoded(const std::optional<QByteArray> &document, Decode decode)
    -> std::optional<decltype(decode(Json()))>
{
    if (!document) {
        return std::nullopt;
    }
    try {
        return decode(parseJson(*document));
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

std::optional<QList<AIAction>> usableActions(const std::optional<QByteArray> &document)
{
    auto actions = decoded(document, decodeActions);
    return actions && !actions->isEmpty() ? actions : std::nullopt;
}

} // namespace

LocalStore::LocalStore(std::shared_ptr<DefaultsDomain> defaults, FirstActions firstActions)
    : m_defaults(std::move(defaults)), m_firstActions(std::move(firstActions))
{
}

template <typename Decode> auto LocalStore::load(QByteArrayView key, Decode decode) const
{
    return decoded(m_defaults->bytes(key), decode);
}

void LocalStore::save(QByteArrayView key, const Json &document) const
{
    m_defaults->setBytes(key, writeJson(document));
}

QList<AIAction> LocalStore::loadActions() const
{
    const auto stored = m_defaults->bytes(kActions);
    if (auto actions = usableActions(stored)) {
        return *std::move(actions);
    }
    QList<AIAction> first = m_firstActions();
    const QByteArray proposal = writeActions(first);
    const QByteArray winner = m_defaults->settle(kActions, stored, proposal);
    if (winner != proposal) {
        first = usableActions(winner).value_or(first);
    }
    return first;
}

void LocalStore::saveActions(const QList<AIAction> &actions) const
{
    m_defaults->setBytes(kActions, writeActions(actions));
}

ProviderSettings LocalStore::loadProviderSettings() const
{
    return load(kProviderSettings, decodeProviderSettings).value_or(defaultProviderSettings());
}

void LocalStore::saveProviderSettings(const ProviderSettings &settings) const
{
    save(kProviderSettings, encodeProviderSettings(settings));
}

ProviderConnectionState LocalStore::loadProviderConnections() const
{
    return load(kProviderConnections, decodeProviderConnections)
        .value_or(ProviderConnectionState());
}

void LocalStore::saveProviderConnections(const ProviderConnectionState &state) const
{
    save(kProviderConnections, encodeProviderConnections(state));
}

DailyUsageLedger LocalStore::loadUsageLedger(Instant now) const
{
    auto ledger = load(kUsageLedger, decodeUsageLedger);
    if (ledger && ledger->dayKey == localDayKey(now)) {
        return *std::move(ledger);
    }
    return emptyUsageLedger(now);
}

void LocalStore::saveUsageLedger(const DailyUsageLedger &ledger) const
{
    save(kUsageLedger, encodeUsageLedger(ledger));
}

HomeAutomationOptions LocalStore::loadAutomationOptions() const
{
    return load(kAutomationOptions, decodeAutomationOptions).value_or(HomeAutomationOptions());
}

void LocalStore::saveAutomationOptions(const HomeAutomationOptions &options) const
{
    save(kAutomationOptions, encodeAutomationOptions(options));
}

bool LocalStore::loadPasteMigrationDone() const
{
    return m_defaults->boolean(kPasteMigration);
}

void LocalStore::savePasteMigrationDone() const
{
    m_defaults->setBoolean(kPasteMigration, true);
}

HomeLayoutState LocalStore::loadHomeLayout() const
{
    return load(kHomeLayout, decodeHomeLayout).value_or(HomeLayoutState());
}

template <typename Change> void LocalStore::changeLayout(Change change) const
{
    HomeLayoutState layout = loadHomeLayout();
    change(layout);
    save(kHomeLayout, encodeHomeLayout(layout));
}

void LocalStore::saveHintState(const HomeHintState &state) const
{
    changeLayout([&](HomeLayoutState &layout) { layout.hintState = state; });
}

void LocalStore::saveSelectedActionID(const std::optional<QUuid> &id) const
{
    changeLayout([&](HomeLayoutState &layout) { layout.selectedActionID = id; });
}

void LocalStore::saveRecentActionIDs(const QList<QUuid> &ids) const
{
    changeLayout([&](HomeLayoutState &layout) { layout.recentActionIDs = ids; });
}

void LocalStore::saveLastEngineRoomSection(EngineRoomSection section) const
{
    changeLayout([&](HomeLayoutState &layout) { layout.lastEngineRoomSection = section; });
}

bool LocalStore::loadNewRunExperienceEnabled() const
{
    return !m_defaults->holds(kNewRunExperience) || m_defaults->boolean(kNewRunExperience);
}

void LocalStore::saveNewRunExperienceEnabled(bool isEnabled) const
{
    m_defaults->setBoolean(kNewRunExperience, isEnabled);
}

std::optional<ShareHandoffRequest> LocalStore::loadPendingHandoff() const
{
    return load(kPendingHandoff, decodeShareHandoffRequest);
}

void LocalStore::savePendingHandoff(const ShareHandoffRequest &request) const
{
    save(kPendingHandoff, encodeShareHandoffRequest(request));
}

void LocalStore::clearPendingHandoff() const
{
    m_defaults->remove(kPendingHandoff);
}

std::optional<ShareResult> LocalStore::loadLatestResult() const
{
    return load(kLatestResult, decodeShareResult);
}

void LocalStore::saveLatestResult(const ShareResult &result) const
{
    save(kLatestResult, encodeShareResult(result));
}

} // namespace velarc
