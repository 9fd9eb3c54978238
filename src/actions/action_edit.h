#pragma once

// Changing the library: drafts, saving one, duplicating, deleting, pinning.
//
// Pure functions from one list to the next; any thread. What to store and which screen to close is
// the caller's.

#include "actions/action.h"

namespace velarc {

// The draft that stands in the editor before anything was edited.
[[nodiscard]] AIAction blankAction();

// A blank draft that stands behind all of `actions` once it is saved.
[[nodiscard]] AIAction newActionDraft(const QList<AIAction> &actions);

// The largest sortOrder of `actions` plus 10; 10 for none. Where the sum is beyond the largest
// order that can be stored, it is that order.
[[nodiscard]] qint64 nextSortOrder(const QList<AIAction> &actions);

// `draft` as it is saved: its name trimmed, a name and a prompt where they are blank, a format that
// its engine and destination take, and a model only where its engine has models to pick.
[[nodiscard]] AIAction normalisedDraft(AIAction draft);

// `actions` with `draft` in the place of the first action of `editingID`, else at the end.
[[nodiscard]] QList<AIAction> withSavedDraft(
    QList<AIAction> actions, const AIAction &draft, const std::optional<QUuid> &editingID);

// `actions` with an unpinned copy of `source` behind all others, its name ending in " Copy".
[[nodiscard]] QList<AIAction> withDuplicate(QList<AIAction> actions, const AIAction &source);

// `actions` without every action of `id`.
[[nodiscard]] QList<AIAction> withoutAction(QList<AIAction> actions, const QUuid &id);

// `ids` without every occurrence of `id`.
[[nodiscard]] QList<QUuid> withoutRecentAction(QList<QUuid> ids, const QUuid &id);

// The selection once the action of `removedID` is gone and `remaining` is left: if it was selected,
// the first visible action in display order, or none.
[[nodiscard]] std::optional<QUuid> selectionAfterRemoval(const QList<AIAction> &remaining,
    const std::optional<QUuid> &selectedID, const QUuid &removedID);

// `actions` with the pin of the first action of `id` flipped.
[[nodiscard]] QList<AIAction> withPinToggled(QList<AIAction> actions, const QUuid &id);

// Every action, hidden ones too, on the default engine and without a model of its own.
[[nodiscard]] QList<AIAction> withDefaultEngineEverywhere(QList<AIAction> actions);

} // namespace velarc
