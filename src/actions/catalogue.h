#pragma once

// The actions that come with the program, and how a stored library takes them in at each start.
//
// Pure functions; any thread.

#include "actions/action.h"

namespace velarc {

// The catalogue in its order, each action with a fresh id: an id lasts only once it is stored, so
// built-in actions are known by their names.
[[nodiscard]] QList<AIAction> builtInActions();

// `stored` with two actions of earlier versions renamed, and behind it every built-in action whose
// name, without regard to case, it lacks. No stored action is dropped or otherwise changed.
[[nodiscard]] QList<AIAction> mergeWithCatalogue(QList<AIAction> stored);

// The orders 10, 20, 30 and so on where no action has an order yet; else the list as it is.
[[nodiscard]] QList<AIAction> assignSortOrdersIfNeeded(QList<AIAction> actions);

// The list with a format that each system destination takes.
[[nodiscard]] QList<AIAction> withFormatsRepaired(QList<AIAction> actions);

// The three steps above in their order: the library as it is shown after a start.
[[nodiscard]] QList<AIAction> reconciledWithCatalogue(QList<AIAction> stored);

} // namespace velarc
