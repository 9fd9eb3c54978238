#include "entry/share_command.h"

#include <QCommandLineParser>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kAction = u"action"_s;
const QString kSource = u"source"_s;
const QString kResult = u"result"_s;
const QString kActionName = u"action-name"_s;
const QString kHelp = u"help"_s;
const QString kVersion = u"version"_s;

void addOptions(QCommandLineParser &parser)
{
    parser.addOption({kAction, QString(), u"ACTION"_s});
    parser.addOption({kSource, QString(), u"NAME"_s});
    parser.addOption({kResult, QString()});
    parser.addOption({kActionName, QString(), u"NAME"_s});
    parser.addOption({{u"h"_s, kHelp}, QString()});
    parser.addOption({kVersion, QString()});
}

std::optional<QString> valueOf(const QCommandLineParser &parser, const QString &option)
{
    return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
}

ShareCommand resultCommand(const QCommandLineParser &parser, std::optional<QString> text)
{
    if (parser.isSet(kSource)) {
        return ShareUsageError{u"--source does not go with --result."_s};
    }
    if (!parser.isSet(kActionName)) {
        return ShareUsageError{u"--result needs --action-name NAME."_s};
    }
    return ShareResultCommand{parser.value(kActionName), valueOf(parser, kAction), std::move(text)};
}

ShareCommand textCommand(const QCommandLineParser &parser, std::optional<QString> text)
{
    if (parser.isSet(kActionName)) {
        return ShareUsageError{u"--action-name goes with --result."_s};
    }
    return ShareTextCommand{valueOf(parser, kAction), valueOf(parser, kSource), std::move(text)};
}

} // namespace

ShareCommand parseShareCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QStringList{u"velarc-share"_s} + arguments)) {
        return ShareUsageError{parser.errorText()};
    }
    if (parser.isSet(kHelp)) {
        return ShareHelpCommand{};
    }
    if (parser.isSet(kVersion)) {
        return ShareVersionCommand{};
    }
    const QStringList words = parser.positionalArguments();
    if (words.size() > 1) {
        return ShareUsageError{u"Surplus text: \""_s + words.at(1)
            + u"\". Put a text of several words into quotes."_s};
    }
    std::optional<QString> text;
    if (!words.isEmpty() && words.first() != u"-"_s) {
        text = words.first();
    }
    return parser.isSet(kResult) ? resultCommand(parser, std::move(text))
                                 : textCommand(parser, std::move(text));
}

QString shareHelp()
{
    return uR"(Usage: velarc-share [--action ACTION] [--source NAME] [TEXT]
       velarc-share --result --action-name NAME [--action ACTION] [TEXT]

Hands a text over to the Velarc window, which runs an action on it; or a result
for the window to show.

  TEXT                the text; standard input if it is absent or "-"
  --action ACTION     the action to run, by its identifier or title; without it
                      the one that is selected in the window
  --source NAME       the program that shares the text
  --result            TEXT is a result that stands already
  --action-name NAME  the name of the action that made the result

  -h, --help          show this and end
      --version       show the version and end
  --                  what follows is no option

Exit status: 0 done, 1 the text could not be left or the window not be opened,
2 usage, a blank text, or no action of that title.

Example:
  xclip -o | velarc-share --source Terminal --action "One-Sentence Summary"
)"_s;
}

} // namespace velarc
