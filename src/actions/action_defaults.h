#pragma once

// What an action has where nothing else is told.

#include "actions/action.h"

namespace velarc {

[[nodiscard]] QString defaultActionName(); // of a stored action without one, and of a blank one
[[nodiscard]] QString defaultActionIcon();
[[nodiscard]] QString defaultActionColorHex();
[[nodiscard]] QString defaultActionPrompt(); // of a stored action without one: the input alone

} // namespace velarc
