// velarc-share: hands a text over to the window.

#include "entry/process_hardening.h"
#include "entry/share_program.h"
#include "entry/shared_store.h"
#include "entry/url_opening.h"

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

using namespace velarc;

namespace {

QByteArray readStandardInput()
{
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.readAll() : QByteArray();
}

} // namespace

int main(int argc, char **argv)
{
    holdStandardStreams();
    keepMemoryPrivate();
    QCoreApplication application(argc, argv);
    ShareSurroundings surroundings;
    surroundings.openStore = &openSharedStore;
    surroundings.openUrl = [context = ActivationContext::taken()](
                               const QUrl &url) { return openInDesktop(url, context); };
    surroundings.standardInputIsTerminal = [] { return isatty(STDIN_FILENO) == 1; };
    surroundings.readStandardInput = &readStandardInput;
    surroundings.now = [] { return SystemClock().now(); };
    surroundings.out = stdout;
    surroundings.err = stderr;
    surroundings.version = QStringLiteral(VELARC_VERSION);
    const ShareCommand command = parseShareCommand(QCoreApplication::arguments().mid(1));
    return static_cast<int>(performShareCommand(command, surroundings));
}
