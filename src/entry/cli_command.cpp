#include "entry/cli_command.h"

#include <QCommandLineParser>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kJson = u"json"_s;
const QString kHelp = u"help"_s;
const QString kVersion = u"version"_s;

UsageError surplus(const QString &argument)
{
    return {u"Surplus argument: \""_s + argument + u"\"."_s};
}

CliCommand listCommand(const QStringList &operands, ListingForm form)
{
    if (!operands.isEmpty()) {
        return surplus(operands.first());
    }
    return ListCommand{form};
}

CliCommand runCommand(const QStringList &operands, bool wantsJson)
{
    if (wantsJson) {
        return UsageError{u"--json goes with \"actions\"."_s};
    }
    if (operands.isEmpty()) {
        return UsageError{u"Name an action: velarc-cli run ACTION [TEXT]."_s};
    }
    if (operands.size() > 2) {
        return UsageError{u"Surplus text: \""_s + operands.at(2)
            + u"\". Put a text of several words into quotes."_s};
    }
    RunCommand command{operands.first(), std::nullopt};
    if (operands.size() == 2 && operands.at(1) != u"-"_s) {
        command.text = operands.at(1);
    }
    return command;
}

} // namespace

CliCommand parseCliCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption({kJson, QString()});
    parser.addOption({{u"h"_s, kHelp}, QString()});
    parser.addOption({kVersion, QString()});
    if (!parser.parse(QStringList{u"velarc-cli"_s} + arguments)) {
        return UsageError{parser.errorText()};
    }
    if (parser.isSet(kHelp)) {
        return HelpCommand{};
    }
    if (parser.isSet(kVersion)) {
        return VersionCommand{};
    }
    QStringList operands = parser.positionalArguments();
    if (operands.isEmpty()) {
        return UsageError{u"Say what to do: \"actions\" or \"run\"."_s};
    }
    const QString verb = operands.takeFirst();
    const bool wantsJson = parser.isSet(kJson);
    if (verb == u"actions"_s) {
        return listCommand(operands, wantsJson ? ListingForm::Json : ListingForm::Lines);
    }
    if (verb == u"run"_s) {
        return runCommand(operands, wantsJson);
    }
    return UsageError{u"Unknown command: \""_s + verb + u"\"."_s};
}

QString cliHelp()
{
    return uR"(Usage: velarc-cli actions [--json]
       velarc-cli run ACTION [TEXT]

Runs an action of your library without the window.

  actions          list the actions, an identifier, a tab and a title a line
    --json         list them as a JSON array of objects with "id" and "title"
  run ACTION TEXT  run the action of that identifier or title on TEXT
  run ACTION       run it on standard input; so does "-" in the place of TEXT

  -h, --help       show this and end
      --version    show the version and end
  --               what follows is no option

Exit status: 0 done, 1 the run failed, 2 usage or no action of that title,
3 refused; the answer says why.

Examples:
  velarc-cli run "One-Sentence Summary" "The meeting moved to Monday."
  git diff | velarc-cli run "Git Ideas"
)"_s;
}

} // namespace velarc
