#pragma once

// What the window remembers of how it stood: its size, and whether the desktop was dark.
//
// It lies in a file of its own among the user's state, since it belongs to this machine's screen
// and not to the program's data.

#include <QSize>
#include <QString>

#include <optional>

namespace velarc {

struct WindowState
{
    std::optional<QSize> size; // without decorations, unscaled pixels
    std::optional<bool> isDark; // to begin with, until the desktop has told

    friend bool operator==(const WindowState &, const WindowState &) = default;
};

// $XDG_STATE_HOME/velarc/window.json.
[[nodiscard]] QString windowStatePath();

// The state in the file; the default where there is none that can be read. A size that no screen
// has is none.
[[nodiscard]] WindowState loadWindowState(const QString &path);

// Silent where it cannot be written.
void saveWindowState(const WindowState &state, const QString &path);

} // namespace velarc
