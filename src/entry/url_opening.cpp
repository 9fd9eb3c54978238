#include "entry/url_opening.h"

#include "entry/session.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <gio/gio.h>

#include <memory>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// What was sent to the bus and not waited for must leave before the process ends.
void flushBus()
{
    if (!hasSessionBus()) {
        return;
    }
    if (GDBusConnection *bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        g_dbus_connection_flush_sync(bus, nullptr, nullptr);
        g_object_unref(bus);
    }
}

// By the program that is registered for the scheme; from inside a sandbox by the desktop portal.
bool openByHandler(const QUrl &url)
{
    const QByteArray address = url.toEncoded();
    const bool isTaken =
        g_app_info_launch_default_for_uri(address.constData(), nullptr, nullptr) == TRUE;
    if (isTaken) {
        flushBus();
    }
    return isTaken;
}

bool openByXdgOpen(const QUrl &url)
{
    constexpr int kTimeMs = 20'000;
    const QString program = QStandardPaths::findExecutable(u"xdg-open"_s);
    if (program.isEmpty()) {
        return false;
    }
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start(program, {url.toString()}, QIODevice::NotOpen);
    if (!process->waitForFinished(kTimeMs) && process->state() == QProcess::Running) {
        static_cast<void>(process.release()); // it has become the window, which goes on without us
        return true;
    }
    return process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0
        && process->error() == QProcess::UnknownError;
}

// It keeps none of our streams: whoever reads them waits for their end.
bool startWindowProgram(const QUrl &url)
{
    const QString program = QDir(QCoreApplication::applicationDirPath()).filePath(u"velarc"_s);
    if (!QFileInfo(program).isExecutable()) {
        return false;
    }
    QProcess process;
    process.setProgram(program);
    process.setArguments({url.toString()});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached();
}

} // namespace

bool openInDesktop(const QUrl &url, const ActivationContext &context)
{
    switch (openInWindow({url.toString()}, context, WindowStart::IfNeeded)) {
    case WindowReply::Done:
        return true;
    case WindowReply::Failed:
        return false; // it is there: another one would only hand over to it
    case WindowReply::NoWindow:
    case WindowReply::NoBus:
        return hasDisplay()
            && (startWindowProgram(url) || openByHandler(url) || openByXdgOpen(url));
    }
    Q_UNREACHABLE();
}

} // namespace velarc
