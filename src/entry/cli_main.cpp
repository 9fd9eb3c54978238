// velarc-cli: runs an action from the terminal, from scripts and from desktop shortcuts.

#include "entry/cli_programs.h"
#include "entry/process_hardening.h"
#include "entry/velarc_app.h"

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

CliSurroundings surroundingsOf(const std::shared_ptr<TaskScope> &scope)
{
    // One store for the whole process: without a home folder it lives in memory alone.
    const auto store = openSharedStore();
    CliSurroundings surroundings;
    surroundings.openStore = [store] { return store; };
    surroundings.makeViewModel = [scope, store] {
        AppServices services = makeServices(store);
        services.scope = scope;
        return std::make_unique<AppViewModel>(std::move(services));
    };
    surroundings.standardInputIsTerminal = [] { return isatty(STDIN_FILENO) == 1; };
    surroundings.readStandardInput = &readStandardInput;
    surroundings.out = stdout;
    surroundings.err = stderr;
    surroundings.version = QStringLiteral(VELARC_VERSION);
    return surroundings;
}

QCoro::Task<void> performAndExit(CliSurroundings surroundings)
{
    CliCommand command = parseCliCommand(QCoreApplication::arguments().mid(1));
    const CliExit exit =
        co_await performCliCommand(std::move(command), std::move(surroundings), {});
    QCoreApplication::exit(static_cast<int>(exit));
}

} // namespace

int main(int argc, char **argv)
{
    keepMemoryPrivate();
    QCoreApplication application(argc, argv);
    const auto scope = std::make_shared<TaskScope>();
    QMetaObject::invokeMethod(
        &application, [scope] { static_cast<void>(performAndExit(surroundingsOf(scope))); },
        Qt::QueuedConnection);
    const int status = QCoreApplication::exec();
    scope->finish();
    return status;
}
