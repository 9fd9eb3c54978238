#pragma once

// Reading the library: which actions are shown, in which order, which one runs, which ran lately.
//
// Pure functions; any thread. Names are compared as the user's locale tells.

#include "actions/action.h"

namespace velarc {

// How many ids the recent list holds.
inline constexpr qsizetype kRecentActionLimit = 8;

// The actions that are not of a hidden destination, in their order.
[[nodiscard]] QList<AIAction> visibleActions(const QList<AIAction> &actions);

// Display order: pinned before unpinned, then by ascending sortOrder, then by name without regard
// to case. Actions that are equal in all of these keep their order.
[[nodiscard]] QList<AIAction> sortedForDisplay(const QList<AIAction> &actions);

// The visible actions that are pinned, in display order.
[[nodiscard]] QList<AIAction> pinnedActions(const QList<AIAction> &actions);

// The visible action of the selected id; where there is none, the first visible one in display
// order; none if no action is visible.
[[nodiscard]] std::optional<AIAction> selectedAction(
    const QList<AIAction> &actions, const std::optional<QUuid> &selectedID);

// `ids` with `id` once and at its head, cut to the limit.
[[nodiscard]] QList<QUuid> withRecentAction(QList<QUuid> ids, const QUuid &id);

// The first visible action of each id, in the order of the ids; an id without one is skipped.
[[nodiscard]] QList<AIAction> recentActions(
    const QList<AIAction> &actions, const QList<QUuid> &ids);

} // namespace velarc
