#include "ui/portal_file_chooser.h"

#include "ui/portal_request.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>

#include <functional>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// How the portal knows a window of ours; empty where it cannot.
QString focusedWindow()
{
    const QWindow *window = QGuiApplication::focusWindow();
    return window != nullptr && QGuiApplication::platformName() == u"xcb"_s
        ? u"x11:"_s + QString::number(window->winId(), 16)
        : QString();
}

// The bus takes no such character.
QString withoutNull(QString text)
{
    return text.remove(QChar(u'\0'));
}

QDBusMessage callFor(const FileWish &wish, const QString &token)
{
    const bool saves = wish.purpose == FileWish::Purpose::Save;
    QDBusMessage message = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
        u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.FileChooser"_s,
        saves ? u"SaveFile"_s : u"OpenFile"_s);
    QVariantMap options{{u"handle_token"_s, token},
        {u"accept_label"_s, withoutNull(wish.acceptLabel)}, {u"modal"_s, true}};
    if (saves) {
        options.insert(u"current_name"_s, withoutNull(wish.suggestedName));
        // A file name of bytes that end with a zero.
        options.insert(u"current_folder"_s, QFile::encodeName(QDir::homePath()) + '\0');
    }
    message.setArguments({focusedWindow(), withoutNull(wish.title), options});
    return message;
}

FileChoice choiceOf(const std::optional<PortalAnswer> &answer)
{
    constexpr uint kGranted = 0;
    constexpr uint kRefused = 1;
    if (!answer || answer->response > kRefused) {
        return {FileChoice::Outcome::NoDialog, {}};
    }
    const QUrl url(answer->results.value(u"uris"_s).toStringList().value(0));
    if (answer->response != kGranted || !url.isLocalFile()) {
        return {FileChoice::Outcome::Dismissed, {}};
    }
    return {FileChoice::Outcome::Chosen, url.toLocalFile()};
}

} // namespace

PortalFileChooser::PortalFileChooser(QDBusConnection bus) : m_bus(std::move(bus)) {}

QCoro::Task<FileChoice> PortalFileChooser::choose(FileWish wish, std::stop_token stop)
{
    throwIfStopped(stop);
    if (!m_bus.isConnected()) {
        co_return FileChoice();
    }
    const auto request = std::make_shared<PortalRequest>(m_bus);
    {
        const std::stop_callback breakOff(stop, [request] {
            QMetaObject::invokeMethod(
                request.get(), [request] { request->close(); }, Qt::QueuedConnection);
        });
        request->call(callFor(wish, request->token()));
        co_await request->done();
    }
    throwIfStopped(stop);
    co_return choiceOf(request->answer());
}

} // namespace velarc
