#pragma once

// The models that the user can choose from, engine by engine. Constants; any thread.

#include "actions/action.h"

#include <QList>
#include <QString>

namespace velarc {

struct ProviderModelOption
{
    QString id; // as the engine's API names it
    QString title;
    QString subtitle;

    friend bool operator==(const ProviderModelOption &, const ProviderModelOption &) = default;
};

// In the order in which pickers list them.
[[nodiscard]] const QList<ProviderModelOption> &openAIModels();
[[nodiscard]] const QList<ProviderModelOption> &anthropicModels();
[[nodiscard]] const QList<ProviderModelOption> &geminiModels();

// The list of a cloud engine; empty for the other providers.
[[nodiscard]] const QList<ProviderModelOption> &providerModels(AIProvider provider);

} // namespace velarc
