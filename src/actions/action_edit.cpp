#include "actions/action_edit.h"

#include "actions/action_defaults.h"
#include "actions/action_list.h"
#include "actions/format_rules.h"
#include "base/text.h"
#include "base/uuid.h"

#include <algorithm>
#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kOrderStep = 10;
constexpr qint64 kBlankActionOrder = 999;

bool hasModelsToPick(AIProvider provider)
{
    switch (provider) {
    case AIProvider::OpenAI:
    case AIProvider::Gemini:
    case AIProvider::Anthropic:
        return true;
    case AIProvider::UseDefault:
    case AIProvider::AppleIntelligence:
    case AIProvider::LocalFallback:
        return false;
    }
    Q_UNREACHABLE();
}

std::optional<QString> normalisedModelOverride(const AIAction &draft)
{
    if (!draft.modelOverrideID || !hasModelsToPick(draft.provider)
        || isBlank(*draft.modelOverrideID)) {
        return std::nullopt;
    }
    return trimmed(*draft.modelOverrideID).toString();
}

auto firstOfID(QList<AIAction> &actions, const QUuid &id)
{
    return std::find_if(
        actions.begin(), actions.end(), [&](const AIAction &action) { return action.id == id; });
}

} // namespace

AIAction blankAction()
{
    AIAction draft;
    draft.id = newUuid();
    draft.name = blankActionName();
    draft.icon = defaultActionIcon();
    draft.colorHex = defaultActionColorHex();
    draft.systemPrompt = blankActionPrompt();
    draft.sortOrder = kBlankActionOrder;
    return draft;
}

AIAction newActionDraft(const QList<AIAction> &actions)
{
    AIAction draft = blankAction();
    draft.sortOrder = nextSortOrder(actions);
    return draft;
}

qint64 nextSortOrder(const QList<AIAction> &actions)
{
    if (actions.isEmpty()) {
        return kOrderStep;
    }
    const auto last = std::max_element(
        actions.cbegin(), actions.cend(), [](const AIAction &left, const AIAction &right) {
            return left.sortOrder < right.sortOrder;
        });
    return std::min(last->sortOrder, std::numeric_limits<qint64>::max() - kOrderStep) + kOrderStep;
}

AIAction normalisedDraft(AIAction draft)
{
    draft.name = isBlank(draft.name) ? defaultActionName() : trimmed(draft.name).toString();
    if (isBlank(draft.systemPrompt)) {
        draft.systemPrompt = savedPromptOfBlank();
    }
    draft.outputFormat = normalisedFormat(draft.outputFormat, draft.provider, draft.destination);
    draft.modelOverrideID = normalisedModelOverride(draft);
    return draft;
}

QList<AIAction> withSavedDraft(
    QList<AIAction> actions, const AIAction &draft, const std::optional<QUuid> &editingID)
{
    const auto edited = editingID ? firstOfID(actions, *editingID) : actions.end();
    if (edited == actions.end()) {
        actions.append(draft);
    } else {
        *edited = draft;
    }
    return actions;
}

QList<AIAction> withDuplicate(QList<AIAction> actions, const AIAction &source)
{
    AIAction copy = source;
    copy.id = newUuid();
    copy.name += u" Copy"_s;
    copy.isPinned = false;
    copy.sortOrder = nextSortOrder(actions);
    actions.append(std::move(copy));
    return actions;
}

QList<AIAction> withoutAction(QList<AIAction> actions, const QUuid &id)
{
    actions.removeIf([&](const AIAction &action) { return action.id == id; });
    return actions;
}

QList<QUuid> withoutRecentAction(QList<QUuid> ids, const QUuid &id)
{
    ids.removeAll(id);
    return ids;
}

std::optional<QUuid> selectionAfterRemoval(const QList<AIAction> &remaining,
    const std::optional<QUuid> &selectedID, const QUuid &removedID)
{
    if (selectedID != removedID) {
        return selectedID;
    }
    const auto first = selectedAction(remaining, std::nullopt);
    return first ? std::optional(first->id) : std::nullopt;
}

QList<AIAction> withPinToggled(QList<AIAction> actions, const QUuid &id)
{
    const auto found = firstOfID(actions, id);
    if (found != actions.end()) {
        found->isPinned = !found->isPinned;
    }
    return actions;
}

QList<AIAction> withDefaultEngineEverywhere(QList<AIAction> actions)
{
    for (AIAction &action : actions) {
        action.provider = AIProvider::UseDefault;
        action.modelOverrideID.reset();
    }
    return actions;
}

} // namespace velarc
