// velarc-cli: runs an action from the terminal, from scripts and from desktop shortcuts.

#include "base/errors.h"
#include "entry/cli_programs.h"
#include "entry/interruption.h"
#include "entry/local_instance.h"
#include "entry/process_hardening.h"
#include "entry/service_program.h"
#include "entry/session.h"
#include "entry/velarc_app.h"
#include "intake/clipboard_process.h"

#include <QCoreApplication>

#include <unistd.h>

#include <csignal>

using namespace velarc;

namespace {

constexpr int kStatusOfSignal = 128; // and the number of the signal

// What the command line has at hand: the clipboard by way of a helper, and no more of a desktop.
AppServices cliServices(const std::shared_ptr<const LocalStore> &store,
    const std::shared_ptr<TaskScope> &scope, const std::shared_ptr<PendingCopy> &copied)
{
    AppServices services = makeServices(store);
    services.scope = scope;
    services.clipboard = std::make_shared<ClipboardProcess>(clipboardHelperPath());
    services.clipboardWriting = copied;
    return services;
}

// Each run over a state of its own, as if a program of its own did it.
ServiceParts serviceParts(const std::shared_ptr<TaskScope> &scope)
{
    const auto copied = std::make_shared<PendingCopy>();
    ServiceParts parts;
    parts.openStore = &openSharedStore;
    parts.makeViewModel = [scope, copied] {
        return std::make_unique<AppViewModel>(cliServices(openSharedStore(), scope, copied));
    };
    parts.finishCopying = [copied](std::stop_token stop) {
        return copyPending(copied, std::move(stop));
    };
    parts.clock = std::make_shared<SystemClock>();
    parts.scope = scope;
    parts.openWindow = windowOpener();
    return parts;
}

QCoro::Task<bool> serve(std::shared_ptr<TaskScope> scope, std::stop_token stop)
{
    if (!hasSessionBus()) {
        co_return false;
    }
    ServiceParts parts = serviceParts(scope);
    co_return co_await serveOnBus(
        QDBusConnection::sessionBus(), std::move(parts), kServiceIdleTime, std::move(stop));
}

// A window that no bus leads to would write over what is imported beside it.
ImportReply handImportOver(const QByteArray &json)
{
    const ImportReply reply = importInWindow(json);
    if (reply.reply == WindowReply::NoBus && hasLocalWindow()) {
        return {WindowReply::Failed,
            QStringLiteral("The window is open, and there is no session bus to hand actions to it. "
                           "Import them in its library, or close it first.")};
    }
    return reply;
}

struct CliProcess
{
    std::shared_ptr<TaskScope> scope;
    std::shared_ptr<Interruption> interruption;
    bool pipesAreTold = true;
};

// Asked before anything else: Qt has the signal ignored as soon as it uses a socket.
bool isSignalIgnored(int number)
{
    struct sigaction standing = {};
    return sigaction(number, nullptr, &standing) == 0 && standing.sa_handler == SIG_IGN;
}

CliSurroundings surroundingsOf(const CliProcess &process)
{
    const auto scope = process.scope;
    const auto interruption = process.interruption;
    // One store for the whole process: without a home folder it lives in memory alone.
    const auto store = openSharedStore();
    const auto copied = std::make_shared<PendingCopy>();
    CliSurroundings surroundings;
    surroundings.openStore = [store] { return store; };
    surroundings.makeViewModel = [scope, store, copied] {
        return std::make_unique<AppViewModel>(cliServices(store, scope, copied));
    };
    surroundings.standardInputIsTerminal = [] { return isatty(STDIN_FILENO) == 1; };
    surroundings.readStandardInput = [interruption] {
        return interruption->readToEnd(STDIN_FILENO);
    };
    surroundings.finishCopying = [copied](std::stop_token stop) {
        return copyPending(copied, std::move(stop));
    };
    surroundings.serve = [scope](std::stop_token stop) { return serve(scope, std::move(stop)); };
    surroundings.importInWindow = &handImportOver;
    surroundings.out = stdout;
    surroundings.err = stderr;
    surroundings.version = QStringLiteral(VELARC_VERSION);
    surroundings.isClosedPipeTold = process.pipesAreTold;
    return surroundings;
}

QCoro::Task<void> performAndExit(CliProcess process)
{
    CliCommand command = parseCliCommand(QCoreApplication::arguments().mid(1));
    int status = kStatusOfSignal;
    try {
        const CliExit exit = co_await performCliCommand(
            std::move(command), surroundingsOf(process), process.interruption->token());
        status = static_cast<int>(exit);
    } catch (const CancellationError &) {
        status += process.interruption->signal().value_or(SIGTERM);
    }
    QCoreApplication::exit(status);
}

} // namespace

int main(int argc, char **argv)
{
    holdStandardStreams();
    keepMemoryPrivate();
    const bool pipesAreTold = isSignalIgnored(SIGPIPE);
    QCoreApplication application(argc, argv);
    const CliProcess process{
        std::make_shared<TaskScope>(), std::make_shared<Interruption>(), pipesAreTold};
    QMetaObject::invokeMethod(
        &application, [process] { static_cast<void>(performAndExit(process)); },
        Qt::QueuedConnection);
    const int status = QCoreApplication::exec();
    process.scope->finish();
    return status;
}
