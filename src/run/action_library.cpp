#include "run/action_library.h"

#include "actions/action_edit.h"
#include "actions/action_list.h"
#include "actions/action_transfer.h"
#include "run/app_state.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

ActionLibrary::ActionLibrary(AppState &state, const LibraryServices &services)
    : m_state(state), m_store(services.store), m_deletionUndo(state, services.clock, services.scope)
{
}

QList<AIAction> ActionLibrary::visibleActions() const
{
    return velarc::visibleActions(m_state.actions());
}

QList<AIAction> ActionLibrary::pinnedActions() const
{
    return velarc::pinnedActions(m_state.actions());
}

QList<AIAction> ActionLibrary::recentActions() const
{
    return velarc::recentActions(m_state.actions(), m_state.recentActionIDs());
}

std::optional<AIAction> ActionLibrary::selectedAction() const
{
    return velarc::selectedAction(m_state.actions(), m_state.selectedActionID());
}

void ActionLibrary::selectAction(const QUuid &id)
{
    publishAndSaveSelection(id);
    noteRecentAction(id);
    markHint(&HomeHintState::hasSeenChangeActionHint);
}

void ActionLibrary::noteRecentAction(const QUuid &id)
{
    m_state.setRecentActionIDs(withRecentAction(m_state.recentActionIDs(), id));
    m_store->saveRecentActionIDs(m_state.recentActionIDs());
}

void ActionLibrary::markRunClipboardHintSeen()
{
    markHint(&HomeHintState::hasSeenRunClipboardHint);
}

void ActionLibrary::openMoreSheet()
{
    m_state.setIsMoreSheetPresented(true);
    markHint(&HomeHintState::hasSeenMoreMenuHint);
}

void ActionLibrary::openActionLibrary()
{
    m_state.setIsActionLibraryPresented(true);
    markHint(&HomeHintState::hasSeenChangeActionHint);
}

void ActionLibrary::setEngineRoomSection(EngineRoomSection section)
{
    if (section == m_state.engineRoomSection()) {
        return;
    }
    m_state.setEngineRoomSection(section);
    m_store->saveLastEngineRoomSection(section);
}

void ActionLibrary::setNewRunExperienceEnabled(bool isEnabled)
{
    if (isEnabled == m_state.newRunExperienceEnabled()) {
        return;
    }
    m_state.setNewRunExperienceEnabled(isEnabled);
    m_store->saveNewRunExperienceEnabled(isEnabled);
}

void ActionLibrary::saveAutomationOptions()
{
    m_store->saveAutomationOptions(m_state.homeAutomationOptions());
}

void ActionLibrary::newAction()
{
    m_editingActionID.reset();
    m_state.setStudioDraft(newActionDraft(m_state.actions()));
    m_state.setIsStudioPresented(true);
}

void ActionLibrary::editAction(const AIAction &action)
{
    m_editingActionID = action.id;
    m_state.setStudioDraft(action);
    m_state.setIsStudioPresented(true);
}

void ActionLibrary::cancelStudio()
{
    closeStudio();
}

void ActionLibrary::saveStudioDraft()
{
    const AIAction draft = normalisedDraft(m_state.studioDraft());
    m_state.setStudioDraft(draft);
    publishAndSave(withSavedDraft(m_state.actions(), draft, m_editingActionID));
    closeStudio();
    if (!m_state.selectedActionID()) {
        publishAndSaveSelection(draft.id);
    }
}

void ActionLibrary::duplicateAction(const AIAction &action)
{
    publishAndSave(withDuplicate(m_state.actions(), action));
}

void ActionLibrary::deleteAction(const AIAction &action)
{
    const QUuid id = action.id;
    Deletion deletion = deletionOf(m_state, id);
    m_state.setActions(withoutAction(m_state.actions(), id));
    m_state.setRecentActionIDs(withoutRecentAction(m_state.recentActionIDs(), id));
    m_store->saveRecentActionIDs(m_state.recentActionIDs());
    if (m_state.selectedActionID() == id) {
        publishAndSaveSelection(
            selectionAfterRemoval(m_state.actions(), m_state.selectedActionID(), id));
    }
    m_store->saveActions(m_state.actions());
    m_deletionUndo.remember(std::move(deletion));
}

void ActionLibrary::undoDelete()
{
    std::optional<UndoneDeletion> before = m_deletionUndo.take();
    if (!before) {
        return;
    }
    publishAndSave(std::move(before->actions));
    m_state.setRecentActionIDs(std::move(before->recentIDs));
    m_store->saveRecentActionIDs(m_state.recentActionIDs());
    if (before->selectedID != m_state.selectedActionID()) {
        publishAndSaveSelection(before->selectedID);
    }
}

void ActionLibrary::importActions(const QList<AIAction> &imported)
{
    publishAndSave(withImported(m_state.actions(), imported));
    const auto selected = selectedAction();
    if (!m_state.selectedActionID() && selected) {
        publishAndSaveSelection(selected->id);
    }
}

void ActionLibrary::togglePin(const QUuid &id)
{
    QList<AIAction> toggled = withPinToggled(m_state.actions(), id);
    if (toggled != m_state.actions()) {
        publishAndSave(std::move(toggled));
    }
}

void ActionLibrary::applyDefaultEngineToAllActions()
{
    publishAndSave(withDefaultEngineEverywhere(m_state.actions()));
}

void ActionLibrary::publishAndSave(QList<AIAction> actions)
{
    m_state.setActions(std::move(actions));
    m_store->saveActions(m_state.actions());
}

void ActionLibrary::publishAndSaveSelection(const std::optional<QUuid> &id)
{
    m_state.setSelectedActionID(id);
    m_store->saveSelectedActionID(id);
}

void ActionLibrary::markHint(bool HomeHintState::*hint)
{
    HomeHintState hints = m_state.homeHintState();
    if (hints.*hint) {
        return;
    }
    hints.*hint = true;
    m_state.setHomeHintState(hints);
    m_store->saveHintState(hints);
}

void ActionLibrary::closeStudio()
{
    m_state.setIsStudioPresented(false);
    m_editingActionID.reset();
}

namespace {

QString engineAndModel(const AIAction &action, const Generating &generating)
{
    const AIProvider provider = generating.resolvedProvider(action);
    const QString model = generating.resolvedModel(action, provider).value_or(QString());
    const bool hasModels = provider == AIProvider::OpenAI || provider == AIProvider::Gemini
        || provider == AIProvider::Anthropic;
    return hasModels && !model.isEmpty() ? label(provider) + u" \u2022 "_s + model
                                         : label(provider);
}

} // namespace

QString routingSummary(const AIAction &action, const Generating &generating)
{
    const auto kind = action.destination.asSystem();
    const QString engine = engineAndModel(action, generating);
    if (!kind) {
        return engine;
    }
    switch (*kind) {
    case SystemDestinationKind::CalendarCreateEvent:
    case SystemDestinationKind::CalendarEditEvent:
    case SystemDestinationKind::CalendarDeleteEvent:
        return engine + u" -> Calendar"_s;
    case SystemDestinationKind::MailCompose:
        return engine + u" -> Mail (Prefill + Confirm)"_s;
    case SystemDestinationKind::MessagesCompose:
        return engine + u" -> Messages (Prefill + Confirm)"_s;
    case SystemDestinationKind::CalendarListUpcomingEvents:
    case SystemDestinationKind::MailListInboxThreads:
    case SystemDestinationKind::MailSearchMessages:
    case SystemDestinationKind::MessagesSearchConversations:
    case SystemDestinationKind::MessagesEditScheduled:
    case SystemDestinationKind::MessagesUnsendRecent:
        return u"Unavailable"_s;
    }
    Q_UNREACHABLE();
}

} // namespace velarc
