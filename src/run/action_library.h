#pragma once

// The user's library as the program works on it: selection, recents, hints, and the editor.
//
// Each operation changes the published fields and writes what must last, in the order told at it.
// Main thread only; nothing fails, a write that fails is silent.

#include "run/deletion_undo.h"
#include "run/run_seams.h"
#include "store/local_store.h"

namespace velarc {

class AppState;

struct LibraryServices
{
    std::shared_ptr<const LocalStore> store;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<TaskScope> scope;
};

class ActionLibrary final : public ActionSelecting
{
public:
    // `state` must outlive the library, or go with it.
    ActionLibrary(AppState &state, const LibraryServices &services);

    [[nodiscard]] QList<AIAction> visibleActions() const;
    [[nodiscard]] QList<AIAction> pinnedActions() const;
    [[nodiscard]] QList<AIAction> recentActions() const;

    // The action that Run runs: the selected one if it is visible, else the first in display
    // order. Changes nothing.
    [[nodiscard]] std::optional<AIAction> selectedAction() const override;

    // Publishes and saves the selection, notes the action as recent, marks its hint.
    void selectAction(const QUuid &id) override;

    // Puts the action at the head of the recent ones, of which 8 stay, and saves them.
    void noteRecentAction(const QUuid &id);

    // A hint is marked once; a mark that stands writes nothing.
    void markRunClipboardHintSeen() override;
    void openMoreSheet(); // marks its hint
    void openActionLibrary(); // marks the hint of changing the action

    // Publish and save, if the value is another one.
    void setEngineRoomSection(EngineRoomSection section);
    void setNewRunExperienceEnabled(bool isEnabled);

    void saveAutomationOptions();

    // The editor. Opening it puts a draft into studioDraft; saving normalises that draft, puts it
    // in the place of the action that it was opened on, or behind all others, and selects it only
    // where nothing was selected.
    void newAction();
    void editAction(const AIAction &action);
    void cancelStudio();
    void saveStudioDraft();

    void duplicateAction(const AIAction &action);

    // For 6 s the deletion can be taken back: the place in the list, the pin, the recents and the
    // selection. Without a deletion to take back, nothing.
    void deleteAction(const AIAction &action);
    void undoDelete();

    void togglePin(const QUuid &id);
    void applyDefaultEngineToAllActions();

    // Each action takes the place of the one of its id, or stands behind all others. Where nothing
    // was selected, the first in display order is.
    void importActions(const QList<AIAction> &imported);

    [[nodiscard]] const std::optional<QUuid> &editingActionID() const { return m_editingActionID; }

private:
    void publishAndSave(QList<AIAction> actions);
    void publishAndSaveSelection(const std::optional<QUuid> &id);
    void markHint(bool HomeHintState::*hint);
    void closeStudio();

    AppState &m_state;
    std::shared_ptr<const LocalStore> m_store;
    DeletionUndo m_deletionUndo;
    std::optional<QUuid> m_editingActionID; // of the stored action that the draft replaces
};

// Where `action` will run, in one line: the engine, its model, and the system destination.
// "Unavailable" for a destination that nothing carries out.
[[nodiscard]] QString routingSummary(const AIAction &action, const Generating &generating);

} // namespace velarc
