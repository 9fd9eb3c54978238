#pragma once

// The stages of one run, each awaiting the next.
//
// Main thread only. The frames own what they use, and each write behind a wait stands behind a test
// that the run is still the active one.

#include "run/run_core.h"

namespace velarc {

// From the input strategy to a shown result or error. Never throws.
[[nodiscard]] QCoro::Task<void> performRun(
    std::shared_ptr<ActiveRun> run, AIAction action, InputStrategy strategy);

// A run without the canvas: what it gives is returned, what it meets is thrown.
[[nodiscard]] QCoro::Task<ShortcutRun> performShortcutRun(
    std::shared_ptr<ActiveRun> run, AIAction action, QString input);

} // namespace velarc
