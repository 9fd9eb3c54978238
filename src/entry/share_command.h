#pragma once

// What the user, or a file manager, asks velarc-share for.

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace velarc {

// Leave a text for the window to run on.
struct ShareTextCommand
{
    std::optional<QString> action; // a UUID or a title; none: the selected action
    std::optional<QString> source; // who shares
    std::optional<QString> text; // none: standard input
};

// Leave a result for the window to show.
struct ShareResultCommand
{
    QString actionName;
    std::optional<QString> action; // a UUID or a title
    std::optional<QString> text; // none: standard input
};

struct ShareHelpCommand
{
};
struct ShareVersionCommand
{
};
struct ShareUsageError
{
    QString message;
};

using ShareCommand = std::variant<ShareTextCommand, ShareResultCommand, ShareHelpCommand,
    ShareVersionCommand, ShareUsageError>;

// Reads the arguments behind the program's name. "--" ends the options, "-" as the text stands for
// standard input.
[[nodiscard]] ShareCommand parseShareCommand(const QStringList &arguments);

// What --help shows.
[[nodiscard]] QString shareHelp();

} // namespace velarc
