#pragma once

// The one place where the program's state is kept, API keys apart.
//
// Each value is a JSON document or a boolean under a key that carries its version. A value that is
// missing or cannot be decoded reads as its default. Every call reads or writes the whole value and
// reports no failure. Main thread only.

#include "actions/action.h"
#include "base/json.h"
#include "records/home_layout.h"
#include "records/provider_connections.h"
#include "records/provider_settings.h"
#include "records/share_records.h"
#include "records/usage_ledger.h"
#include "store/defaults_domain.h"

#include <functional>
#include <memory>
#include <optional>

namespace velarc {

class LocalStore
{
public:
    using FirstActions = std::function<QList<AIAction>()>;

    // Several stores may share a domain; the last writer of a key wins. `firstActions` makes the
    // library of a user who has none yet.
    LocalStore(std::shared_ptr<DefaultsDomain> defaults, FirstActions firstActions);

    // The stored library. One that is missing, empty or holds a single action that cannot be
    // decoded is replaced by the first actions, unless another process replaces it at that moment:
    // then its list is the one that is kept and returned.
    [[nodiscard]] QList<AIAction> loadActions() const;
    void saveActions(const QList<AIAction> &actions) const;

    [[nodiscard]] ProviderSettings loadProviderSettings() const;
    void saveProviderSettings(const ProviderSettings &settings) const;

    [[nodiscard]] ProviderConnectionState loadProviderConnections() const;
    void saveProviderConnections(const ProviderConnectionState &state) const;

    // The ledger of the day of `now`, empty if another day's is stored. Writes nothing.
    [[nodiscard]] DailyUsageLedger loadUsageLedger(Instant now) const;
    void saveUsageLedger(const DailyUsageLedger &ledger) const;

    [[nodiscard]] HomeAutomationOptions loadAutomationOptions() const;
    void saveAutomationOptions(const HomeAutomationOptions &options) const;

    // Whether running on paste has been switched on once for everybody.
    [[nodiscard]] bool loadPasteMigrationDone() const;
    void savePasteMigrationDone() const;

    // Each of the savers reads the layout, changes its one field and writes the whole.
    [[nodiscard]] HomeLayoutState loadHomeLayout() const;
    void saveHintState(const HomeHintState &state) const;
    void saveSelectedActionID(const std::optional<QUuid> &id) const;
    void saveRecentActionIDs(const QList<QUuid> &ids) const;
    void saveLastEngineRoomSection(EngineRoomSection section) const;

    // True until something is stored.
    [[nodiscard]] bool loadNewRunExperienceEnabled() const;
    void saveNewRunExperienceEnabled(bool isEnabled) const;

    // What a sender left for the window. Saving replaces what was left before.
    [[nodiscard]] std::optional<ShareHandoffRequest> loadPendingHandoff() const;
    void savePendingHandoff(const ShareHandoffRequest &request) const;
    void clearPendingHandoff() const;
    [[nodiscard]] std::optional<ShareResult> loadLatestResult() const;
    void saveLatestResult(const ShareResult &result) const;

private:
    template <typename Decode> [[nodiscard]] auto load(QByteArrayView key, Decode decode) const;
    void save(QByteArrayView key, const Json &document) const;
    template <typename Change> void changeLayout(Change change) const;

    std::shared_ptr<DefaultsDomain> m_defaults;
    FirstActions m_firstActions;
};

} // namespace velarc
