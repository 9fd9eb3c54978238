#include "entry/window_command.h"

#include <QCommandLineParser>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"service"_s;
const QString kHelp = u"help"_s;
const QString kVersion = u"version"_s;

} // namespace

WindowCommand parseWindowCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption({kService, QString()});
    parser.addOption({{u"h"_s, kHelp}, QString()});
    parser.addOption({kVersion, QString()});
    if (!parser.parse(QStringList{u"velarc"_s} + arguments)) {
        return WindowUsageError{parser.errorText()};
    }
    if (parser.isSet(kHelp)) {
        return WindowHelp{};
    }
    if (parser.isSet(kVersion)) {
        return WindowVersion{};
    }
    const QStringList addresses = parser.positionalArguments();
    if (addresses.size() > 1) {
        return WindowUsageError{u"Surplus argument: \""_s + addresses.at(1) + u"\"."_s};
    }
    if (!parser.isSet(kService)) {
        return ShowWindow{addresses};
    }
    if (!addresses.isEmpty()) {
        return WindowUsageError{u"--service takes no address."_s};
    }
    return AwaitRequests{};
}

QString windowHelp()
{
    return uR"(Usage: velarc [URL]

Opens the window, or brings the one that runs to the front.

  URL            velarc://share-handoff takes up what another program shared,
                 velarc://share-result shows its result; see velarc-share(1)

      --service  wait for the session bus to ask for a window; the bus uses it
  -h, --help     show this and end
      --version  show the version and end
)"_s;
}

} // namespace velarc
