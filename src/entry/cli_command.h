#pragma once

// What the user asks velarc-cli for.

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace velarc {

// What is written to standard output: lines for people and shells, or JSON for programs.
enum class AnswerForm
{
    Lines,
    Json
};

struct ListCommand
{
    AnswerForm form = AnswerForm::Lines;
};

struct RunCommand
{
    QString action; // a UUID or a title
    std::optional<QString> text; // none: standard input
    AnswerForm form = AnswerForm::Lines;
    QString outputFile; // gets the result's bytes; "-" is standard output, "" none
};

// Writes actions in their stored form.
struct ExportCommand
{
    std::optional<QString> action; // a UUID or a title; none: the whole library
    QString outputFile; // "-" is standard output
};

enum class ImportMode
{
    Perform,
    DryRun // only tells what it would do
};

// Takes actions over from a file.
struct ImportCommand
{
    QString file; // "-" is standard input
    ImportMode mode = ImportMode::Perform;
};

// Answers the desktop until nobody asks any more.
struct ServeCommand
{
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

using CliCommand = std::variant<ListCommand, RunCommand, ExportCommand, ImportCommand, ServeCommand,
    HelpCommand, VersionCommand, UsageError>;

// Reads the arguments behind the program's name. "--" ends the options, "-" as the text stands for
// standard input.
[[nodiscard]] CliCommand parseCliCommand(const QStringList &arguments);

// What --help shows.
[[nodiscard]] QString cliHelp();

} // namespace velarc
