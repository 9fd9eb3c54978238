// velarc: the window. Takes one address of the scheme "velarc" as its argument, if any.

#include "entry/interruption.h"
#include "entry/process_hardening.h"
#include "entry/session.h"
#include "entry/single_instance.h"
#include "entry/window_command.h"
#include "entry/window_program.h"

#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <span>

using namespace velarc;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

// For a start that came first by a moment and does not listen yet, or a window that just closes.
constexpr std::chrono::milliseconds kSettlingTime = 10s;

// The bus asks within a moment, or not at all.
constexpr std::chrono::milliseconds kServiceWaitTime = 10s;

// Before there is an application object that would tell.
QStringList argumentsOf(std::span<char *const> words)
{
    QStringList arguments;
    for (const char *word : words) {
        arguments.append(QString::fromUtf8(word));
    }
    return arguments;
}

int print(FILE *stream, const QString &text, int status)
{
    std::fputs(text.toUtf8().constData(), stream);
    return status;
}

int complain(const QString &sentence, int status)
{
    return print(stderr, u"velarc: "_s + sentence + u'\n', status);
}

int complainOfNoAnswer()
{
    return complain(u"Velarc runs already, but does not answer."_s, kFailed);
}

// `request` is none where the bus will tell what is asked for.
int runWindow(int &argc, char **argv, const std::optional<StartRequest> &request)
{
    if (!hasDisplay()) {
        return complain(u"There is no display to open a window on."_s, kFailed);
    }
    chooseRenderer();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(u"Velarc"_s);
    QGuiApplication::setDesktopFileName(u"com.tolmar.velarc"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    // A log-out, or a terminal that closes, ends it as closing the window does.
    const Interruption interruption;
    const std::stop_callback end(interruption.token(), [] { QGuiApplication::quit(); });

    // Destroyed from the last to the first: the name, so that the next start has the window, then
    // the window and the runs, then the display, which hands what was copied over to the desktop.
    WindowProgram program;
    SingleInstance instance(program.handlers());
    switch (instance.claimOrHandOver(request.value_or(StartRequest()), kSettlingTime)) {
    case Standing::HasTheWindow:
        break;
    case Standing::HandedOver:
        return kDone;
    case Standing::NotAnswered:
        return complainOfNoAnswer();
    }
    program.start();
    if (request) {
        program.present(request->context);
        if (!request->addresses.isEmpty()) {
            instance.requests().open(request->addresses, {});
        }
    } else {
        QTimer::singleShot(kServiceWaitTime, &application, [&instance] {
            if (!instance.requests().wasAskedFor()) {
                QGuiApplication::quit();
            }
        });
    }
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    holdStandardStreams();
    keepMemoryPrivate();
    const std::span words(argv, static_cast<std::size_t>(argc));
    const WindowCommand command =
        parseWindowCommand(argumentsOf(words.subspan(std::min<std::size_t>(words.size(), 1))));
    if (std::holds_alternative<WindowHelp>(command)) {
        return print(stdout, windowHelp(), kDone);
    }
    if (std::holds_alternative<WindowVersion>(command)) {
        return print(stdout, QStringLiteral("velarc " VELARC_VERSION "\n"), kDone);
    }
    if (const auto *error = std::get_if<WindowUsageError>(&command)) {
        return complain(error->message + u"\nTry \"velarc --help\"."_s, kUsage);
    }
    if (std::holds_alternative<AwaitRequests>(command)) {
        return runWindow(argc, argv, std::nullopt);
    }
    const StartRequest request{std::get<ShowWindow>(command).addresses, ActivationContext::taken()};
    switch (handOver(request)) {
    case HandOver::Done:
        return kDone;
    case HandOver::NobodyThere:
        return runWindow(argc, argv, request);
    case HandOver::NotAnswered:
        return complainOfNoAnswer();
    }
    Q_UNREACHABLE();
}
