#pragma once

// The services of a program that has a display: the clipboard and the files of the desktop.

#include "run/app_view_model.h"

namespace velarc {

// All services over `store`, each new. A QGuiApplication must stand, and outlive them.
[[nodiscard]] AppServices makeDesktopServices(std::shared_ptr<const LocalStore> store);

} // namespace velarc
