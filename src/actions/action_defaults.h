#pragma once

// What an action has where nothing else is told.

#include "actions/action.h"

namespace velarc {

[[nodiscard]] QString defaultActionName(); // of a stored action without one, and of a nameless one
[[nodiscard]] QString defaultActionIcon();
[[nodiscard]] QString defaultActionColorHex();
[[nodiscard]] QString defaultActionPrompt(); // of a stored action without one: the input alone

[[nodiscard]] QString blankActionName(); // of a draft that nobody has edited yet

// These two hold a backslash and an n where one would look for a line feed. Stored libraries and
// the editor's first view carry them so.
[[nodiscard]] QString blankActionPrompt(); // of a draft that nobody has edited yet
[[nodiscard]] QString savedPromptOfBlank(); // of a draft that is saved without a prompt

} // namespace velarc
