#pragma once

#include "records/run_records.h"

namespace velarc {

// What the demo's engine gives for a model of its own, or the failure that it throws. An unknown
// model answers with the prompt. Takes as long as the answer is long.
[[nodiscard]] GenerationResult demoAnswer(
    AIProvider provider, const QString &model, const QString &prompt);

} // namespace velarc
