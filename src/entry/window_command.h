#pragma once

// How the window program was started.

#include <QStringList>

#include <variant>

namespace velarc {

// Show the window, and open the address in it if there is one.
struct ShowWindow
{
    QStringList addresses; // one at most
};

// The bus started the program: no window before somebody asks for one.
struct AwaitRequests
{
};

// What to print in place of a window.
struct WindowHelp
{
};
struct WindowVersion
{
};
struct WindowUsageError
{
    QString message;
};

using WindowCommand =
    std::variant<ShowWindow, AwaitRequests, WindowHelp, WindowVersion, WindowUsageError>;

// Reads the arguments behind the program's name.
[[nodiscard]] WindowCommand parseWindowCommand(const QStringList &arguments);

// What --help shows.
[[nodiscard]] QString windowHelp();

} // namespace velarc
