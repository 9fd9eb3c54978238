#pragma once

// The actions that other programs may name and run.
//
// Main thread only. The link to the window is the store and nothing else.

#include "store/local_store.h"

namespace velarc {

// An action as others name it.
struct VelarcActionEntity
{
    QUuid id;
    QString title;

    friend bool operator==(const VelarcActionEntity &, const VelarcActionEntity &) = default;
};

// The stored actions but those of a hidden destination, in display order.
[[nodiscard]] QList<AIAction> loadOfferedActions(const LocalStore &store);

// All offered actions.
[[nodiscard]] QList<VelarcActionEntity> suggestedEntities(const LocalStore &store);

// The offered actions of `identifiers`, in their order; unknown ones are skipped. Two offered
// actions of one id are a programming error and end the process.
[[nodiscard]] QList<VelarcActionEntity> entitiesFor(
    const LocalStore &store, const QList<QUuid> &identifiers);

} // namespace velarc
