// velarc-clipboard: reads the clipboard of an X server, or puts something on it and stays for as
// long as it is to be had. The other programs start it, so that they need not load what draws.

#include "entry/process_hardening.h"
#include "intake/clipboard_forms.h"
#include "intake/clipboard_process.h"
#include "intake/platform_clipboard.h"
#include "intake/x_selection.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QTimer>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdio>
#include <cstdlib>

using namespace velarc;
using namespace std::chrono_literals;

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

int printText()
{
    XSelection selection({});
    const QByteArray text = textFrom(selection).toUtf8();
    QFile out;
    return out.open(stdout, QIODevice::WriteOnly) && out.write(text) == text.size() ? kDone
                                                                                    : kFailed;
}

// Qt ends the process loudly where there is no server.
bool serverAnswers()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool isThere = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isThere;
}

void letGoOfStreams()
{
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        ::dup2(nothing, stream);
    }
    ::close(nothing);
}

// Tells the waiting parent once that the clipboard is ours, then ends when it is no longer.
class Keeper
{
public:
    Keeper(QClipboard &clipboard, int parent) : m_clipboard(clipboard), m_parent(parent) {}

    void look()
    {
        if (m_clipboard.ownsClipboard()) {
            tellParent();
        } else if (m_parent < 0) {
            QCoreApplication::quit();
        }
    }

private:
    void tellParent()
    {
        if (m_parent >= 0) {
            static_cast<void>(::write(m_parent, "1", 1) == 1);
            ::close(std::exchange(m_parent, -1));
        }
    }

    QClipboard &m_clipboard;
    int m_parent; // -1 once it has been told
};

// The platform's clipboard goes at once: it would read what the next owner copies, and an owner
// whose reader ends amid that may end as well.
void write(const CopiedThing &thing, QClipboard &clipboard)
{
    PlatformClipboard platform(&clipboard, nullptr, std::make_shared<TaskScope>());
    if (thing.kind == CopiedThing::Kind::Text) {
        platform.writeText(QString::fromUtf8(thing.bytes));
    } else {
        platform.writeImage(thing.bytes);
    }
}

int keep(int &argc, char **argv, const CopiedThing &thing, int parent)
{
    ::setsid();
    static_cast<void>(::chdir("/") == 0);
    letGoOfStreams();
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QClipboard &clipboard = *QGuiApplication::clipboard();
    write(thing, clipboard);
    Keeper keeper(clipboard, parent);
    QObject::connect(&clipboard, &QClipboard::dataChanged, &application, [&] { keeper.look(); });
    QTimer::singleShot(0, &application, [&] { keeper.look(); });
    return QGuiApplication::exec();
}

// Waits until the child owns the clipboard or has ended.
int outcomeOf(int child)
{
    char told = 0;
    return ::read(child, &told, 1) == 1 ? kDone : kFailed;
}

int startKeeping(int &argc, char **argv, CopiedThing::Kind kind)
{
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly) || !serverAnswers()) {
        return kFailed;
    }
    const CopiedThing thing{kind, in.readAll()};
    std::array<int, 2> pipe{-1, -1};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return kFailed;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        return kFailed;
    }
    if (child == 0) {
        ::close(pipe[0]);
        return keep(argc, argv, thing, pipe[1]);
    }
    ::close(pipe[1]);
    return outcomeOf(pipe[0]);
}

} // namespace

int main(int argc, char **argv)
{
    holdStandardStreams();
    keepMemoryPrivate();
    const QByteArrayView verb(argc > 1 ? argv[1] : "");
    const QByteArrayView kind(argc > 2 ? argv[2] : "");
    if (verb == "text") {
        return printText();
    }
    if (verb == "keep" && (kind == "text" || kind == "picture")) {
        return startKeeping(
            argc, argv, kind == "text" ? CopiedThing::Kind::Text : CopiedThing::Kind::Picture);
    }
    std::fputs("Usage: velarc-clipboard text | keep text | keep picture\n", stderr);
    return kUsage;
}
