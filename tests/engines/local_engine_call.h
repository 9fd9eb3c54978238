#pragma once

// Calls of the local engine as its tests make them.

#include "engines/local_fallback_engine.h"

#include <QString>
#include <QStringView>

namespace velarc {

[[nodiscard]] inline QString generateNamed(const QString &name, QStringView input)
{
    AIAction action;
    action.name = name;
    return LocalFallbackEngine::generate(action, input);
}

} // namespace velarc
