#pragma once

// A password field as assistive programs see it.

#include <QAccessible>

namespace velarc {

// Has SecretInput answer assistive programs itself. Qt's own face of a password field has no name.
// May be called more than once.
void showSecretInputsToAssistivePrograms();

} // namespace velarc
