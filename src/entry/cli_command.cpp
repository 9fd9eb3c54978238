#include "entry/cli_command.h"

#include <QCommandLineParser>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kJson = u"json"_s;
const QString kOutput = u"output"_s;
const QString kDryRun = u"dry-run"_s;
const QString kHelp = u"help"_s;
const QString kVersion = u"version"_s;

// The words behind the verb, and the options wherever they stood.
struct Operands
{
    QStringList words;
    AnswerForm form = AnswerForm::Lines;
    std::optional<QString> outputFile;
    ImportMode mode = ImportMode::Perform;
};

UsageError surplus(const QString &argument)
{
    return {u"Surplus argument: \""_s + argument + u"\"."_s};
}

CliCommand listCommand(const Operands &operands)
{
    if (operands.outputFile) {
        return UsageError{u"--output goes with \"run\" and \"export\"."_s};
    }
    if (!operands.words.isEmpty()) {
        return surplus(operands.words.first());
    }
    return ListCommand{operands.form};
}

// A file that is opened by the name of the stream would be written from its beginning.
QString outputFileOf(const Operands &operands)
{
    const QString file = operands.outputFile.value_or(QString());
    return file == u"/dev/stdout"_s || file == u"/dev/fd/1"_s ? u"-"_s : file;
}

CliCommand runCommand(const Operands &operands)
{
    const QStringList &words = operands.words;
    if (words.isEmpty()) {
        return UsageError{u"Name an action: velarc-cli run ACTION [TEXT]."_s};
    }
    if (words.size() > 2) {
        return UsageError{u"Surplus text: \""_s + words.at(2)
            + u"\". Put a text of several words into quotes."_s};
    }
    if (operands.outputFile && operands.outputFile->isEmpty()) {
        return UsageError{u"--output names no file."_s};
    }
    if (outputFileOf(operands) == u"-"_s && operands.form == AnswerForm::Json) {
        return UsageError{u"Standard output takes --json or --output -, not both."_s};
    }
    RunCommand command{words.first(), std::nullopt, operands.form, outputFileOf(operands)};
    if (words.size() == 2 && words.at(1) != u"-"_s) {
        command.text = words.at(1);
    }
    return command;
}

CliCommand exportCommand(const Operands &operands)
{
    if (operands.form == AnswerForm::Json) {
        return UsageError{
            u"--json goes with \"actions\" and \"run\": an export is JSON already."_s};
    }
    if (operands.words.size() > 1) {
        return surplus(operands.words.at(1));
    }
    if (operands.outputFile && operands.outputFile->isEmpty()) {
        return UsageError{u"--output names no file."_s};
    }
    ExportCommand command;
    command.outputFile = operands.outputFile ? outputFileOf(operands) : u"-"_s;
    if (!operands.words.isEmpty()) {
        command.action = operands.words.first();
    }
    return command;
}

CliCommand importCommand(const Operands &operands)
{
    if (operands.form == AnswerForm::Json || operands.outputFile) {
        return UsageError{u"\"import\" takes --dry-run alone."_s};
    }
    const QString file = operands.words.isEmpty() ? u"-"_s : operands.words.first();
    if (file.isEmpty()) {
        return UsageError{u"Name a file: velarc-cli import FILE, or pipe one in."_s};
    }
    if (operands.words.size() > 1) {
        return surplus(operands.words.at(1));
    }
    return ImportCommand{file, operands.mode};
}

CliCommand serveCommand(const Operands &operands)
{
    if (operands.form == AnswerForm::Json || operands.outputFile) {
        return UsageError{u"\"serve\" takes no options."_s};
    }
    if (!operands.words.isEmpty()) {
        return surplus(operands.words.first());
    }
    return ServeCommand{};
}

} // namespace

CliCommand parseCliCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption({kJson, QString()});
    parser.addOption({{u"o"_s, kOutput}, QString(), u"FILE"_s});
    parser.addOption({kDryRun, QString()});
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
    Operands operands;
    operands.words = parser.positionalArguments();
    if (operands.words.isEmpty()) {
        return UsageError{u"Say what to do: \"actions\", \"run\", \"export\" or \"import\"."_s};
    }
    const QString verb = operands.words.takeFirst();
    operands.form = parser.isSet(kJson) ? AnswerForm::Json : AnswerForm::Lines;
    if (parser.isSet(kOutput)) {
        operands.outputFile = parser.value(kOutput);
    }
    if (parser.isSet(kDryRun)) {
        if (verb != u"import"_s) {
            return UsageError{u"--dry-run goes with \"import\"."_s};
        }
        operands.mode = ImportMode::DryRun;
    }
    if (verb == u"actions"_s) {
        return listCommand(operands);
    }
    if (verb == u"run"_s) {
        return runCommand(operands);
    }
    if (verb == u"export"_s) {
        return exportCommand(operands);
    }
    if (verb == u"import"_s) {
        return importCommand(operands);
    }
    if (verb == u"serve"_s) {
        return serveCommand(operands);
    }
    return UsageError{u"Unknown command: \""_s + verb + u"\"."_s};
}

QString cliHelp()
{
    return uR"(Usage: velarc-cli actions [--json]
       velarc-cli run ACTION [TEXT] [--json] [--output FILE]
       velarc-cli export [ACTION] [--output FILE]
       velarc-cli import [FILE] [--dry-run]
       velarc-cli serve

Runs an action of your library without the window, and moves actions between
libraries.

  actions          list the actions, an identifier, a tab and a title a line
    --json         list them as a JSON array of objects with "id" and "title"
  run ACTION TEXT  run the action of that identifier or title on TEXT
  run ACTION       run it on standard input; so does "-" in the place of TEXT
    --json         answer with a JSON object: "dialog", "provider", "model" and
                   "payload", the result itself
    -o, --output FILE
                   write the result itself (text, PNG or PDF) to FILE; "-" is
                   standard output, and takes the place of the answer
  export           write the library as JSON; with ACTION that action alone
    -o, --output FILE
                   write to FILE, for your eyes only, instead of standard output
  import FILE      take the actions of FILE over: an action takes the place of the
                   one of its identifier, or is new
  import           take them from standard input; so does "-" in the place of FILE
    --dry-run      tell what that would do, and do nothing
  serve            answer desktop search and other programs over the session
                   bus, until nobody has asked for a while; the bus starts it

  -h, --help       show this and end
      --version    show the version and end
  --               what follows is no option

Exit status: 0 done, 1 the run, the export or the import failed, 2 usage or no
action of that title, 3 refused; the answer says why. 130 if you stopped it with
Ctrl+C.

Examples:
  velarc-cli run "One-Sentence Summary" "The meeting moved to Monday."
  git diff | velarc-cli run "Git Ideas"
  velarc-cli run "Tell Me a Joke" cats --json | jq -r .payload.text
  velarc-cli export | ssh laptop velarc-cli import
)"_s;
}

} // namespace velarc
