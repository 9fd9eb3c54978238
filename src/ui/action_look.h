#pragma once

// How an action's colour reaches the screens.

#include <QString>
#include <QStringView>

namespace velarc {

// "#rrggbb" of an action's colour text, as colorFromHex() reads it.
[[nodiscard]] QString displayColor(QStringView colorHex);

} // namespace velarc
