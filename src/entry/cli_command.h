#pragma once

// What the user asks velarc-cli for.

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace velarc {

enum class ListingForm
{
    Lines,
    Json
};

struct ListCommand
{
    ListingForm form = ListingForm::Lines;
};

struct RunCommand
{
    QString action; // a UUID or a title
    std::optional<QString> text; // none: standard input
};

struct HelpCommand
{
};
struct VersionCommand
{
};

// The arguments make no sense; `message` says in one sentence why.
struct UsageError
{
    QString message;
};

using CliCommand = std::variant<ListCommand, RunCommand, HelpCommand, VersionCommand, UsageError>;

// Reads the arguments behind the program's name. "--" ends the options, "-" as the text stands for
// standard input.
[[nodiscard]] CliCommand parseCliCommand(const QStringList &arguments);

// What --help shows.
[[nodiscard]] QString cliHelp();

} // namespace velarc
