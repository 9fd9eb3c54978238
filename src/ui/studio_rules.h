#pragma once

// What the action editor offers and changes by itself. Pure functions; any thread.

#include "actions/action.h"
#include "records/provider_models.h"
#include "records/provider_settings.h"

namespace velarc {

// `draft` as its engine and destination allow it: applied when the editor opens, and whenever one
// of the two changes. An engine without models to pick has no model of its own; one with models
// gets its default where none is named. A format that does not fit becomes Text.
[[nodiscard]] AIAction settledDraft(AIAction draft, const ProviderSettings &settings);

// "Global Default" or "Action Override".
[[nodiscard]] QString modelTag(AIProvider provider);

// What runs where an action leaves the engine to the settings.
[[nodiscard]] QString globalDefaultNote(const ProviderSettings &settings);

// The line under an engine's name: of the cloud engines it is their connection's status.
[[nodiscard]] QString engineStatusLine(AIProvider provider, const QString &connectionStatus);

// "OpenAI model"; empty for an engine without models to pick.
[[nodiscard]] QString modelPickerTitle(AIProvider provider);
[[nodiscard]] QString modelRowText(const ProviderModelOption &model);

// The formats that go with engine and destination, in order.
[[nodiscard]] QList<OutputFormat> offeredFormats(
    AIProvider provider, const ActionDestination &destination);

// Why formats are missing; empty where none is.
[[nodiscard]] QString formatNote(AIProvider provider, const ActionDestination &destination);

// The outputs, then the system destinations that are offered.
[[nodiscard]] QList<ActionDestination> offeredDestinations();

// What a prompt template can name, in the order of the editor's chips.
[[nodiscard]] QStringList promptVariables();

// `prompt` with `variable` on a line of its own at the end; in an empty prompt it stands alone.
[[nodiscard]] QString withVariable(const QString &prompt, const QString &variable);

// The known symbol names that `typed` may become: those that begin with it, then those that hold
// it, without regard to case. All of them for a blank text, none where the name stands already.
[[nodiscard]] QStringList symbolCompletions(QStringView typed, const QStringList &known);

} // namespace velarc
