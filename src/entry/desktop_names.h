#pragma once

// The names under which the desktop knows this program.

#include <QLatin1StringView>

namespace velarc {

using namespace Qt::StringLiterals;

// The window: its bus name, its desktop file, its icon.
inline constexpr QLatin1StringView kApplicationId = "com.tolmar.velarc"_L1;
inline constexpr QLatin1StringView kWindowPath = "/com/tolmar/velarc"_L1;
inline constexpr QLatin1StringView kApplicationInterface = "org.freedesktop.Application"_L1;
inline constexpr QLatin1StringView kWindowInterface = "com.tolmar.velarc.Window1"_L1;

// An action of the window over the bus: selects the library's action of the UUID that it is given.
inline constexpr QLatin1StringView kSelectAction = "select-action"_L1;

// What answers without the window.
inline constexpr QLatin1StringView kServiceName = "com.tolmar.velarc.Actions"_L1;
inline constexpr QLatin1StringView kActionsPath = "/com/tolmar/velarc/Actions"_L1;
inline constexpr QLatin1StringView kSearchProviderPath = "/com/tolmar/velarc/SearchProvider"_L1;
inline constexpr QLatin1StringView kRunnerPath = "/com/tolmar/velarc/Runner"_L1;

// The addresses that the window takes up.
inline constexpr QLatin1StringView kHandoffUrl = "velarc://share-handoff"_L1;
inline constexpr QLatin1StringView kResultUrl = "velarc://share-result"_L1;

} // namespace velarc
