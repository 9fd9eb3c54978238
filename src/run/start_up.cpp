#include "run/start_up.h"

#include "actions/action_list.h"
#include "actions/catalogue.h"
#include "run/app_state.h"

namespace velarc {

namespace {

void loadSettings(const StartUpParts &parts)
{
    parts.state.setProviderSettings(parts.store.loadProviderSettings());
    parts.state.setProviderConnections(parts.store.loadProviderConnections());
    parts.state.setDailyUsageLedger(parts.store.loadUsageLedger(parts.clock.now()));
}

void loadLayout(const StartUpParts &parts)
{
    const HomeLayoutState layout = parts.store.loadHomeLayout();
    parts.state.setHomeHintState(layout.hintState);
    parts.state.setHomeAutomationOptions(parts.store.loadAutomationOptions());
    parts.state.setRecentActionIDs(layout.recentActionIDs);
    parts.state.setEngineRoomSection(layout.lastEngineRoomSection);
    parts.state.setNewRunExperienceEnabled(parts.store.loadNewRunExperienceEnabled());
}

// Every installation gets running on paste switched on once; who switches it off later keeps that.
void switchPasteAutomationOnOnce(const StartUpParts &parts)
{
    if (parts.store.loadPasteMigrationDone()) {
        return;
    }
    HomeAutomationOptions options = parts.state.homeAutomationOptions();
    options.autoRunOnPaste = true;
    parts.state.setHomeAutomationOptions(options);
    parts.store.saveAutomationOptions(options);
    parts.store.savePasteMigrationDone();
}

void settleSelection(const StartUpParts &parts)
{
    const auto stored = parts.store.loadHomeLayout().selectedActionID;
    const auto selected = selectedAction(parts.state.actions(), stored);
    const auto id = selected ? std::optional(selected->id) : std::nullopt;
    parts.state.setSelectedActionID(id);
    const bool storedOneIsVisible = stored && id == stored;
    if (!storedOneIsVisible) {
        parts.store.saveSelectedActionID(id);
    }
}

} // namespace

void startUp(const StartUpParts &parts)
{
    const QList<AIAction> loaded = parts.store.loadActions();
    parts.state.setActions(reconciledWithCatalogue(loaded));
    loadSettings(parts);
    loadLayout(parts);
    switchPasteAutomationOnOnce(parts);
    if (parts.state.actions() != loaded) {
        parts.store.saveActions(parts.state.actions());
    }
    settleSelection(parts);
    parts.connections.refreshAppleIntelligenceStatus();
    parts.connections.migrateLegacyOpenAIKey();
    parts.connections.reconcileConnections();
    parts.usage.settleDay();
}

} // namespace velarc
