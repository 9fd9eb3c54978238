#include "ui/desktop_sharing.h"

#include "system_actions/bus_reply.h"
#include "system_actions/compose_service.h"
#include "system_actions/uri_handler.h"
#include "ui/portal_request.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <fcntl.h>

#include <memory>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString kOpenUri = u"org.freedesktop.portal.OpenURI"_s;
const QString kEmail = u"org.freedesktop.portal.Email"_s;
const QString kFileManager = u"org.freedesktop.FileManager1"_s;
const QString kBus = u"org.freedesktop.DBus"_s;

constexpr unsigned kVersionOfFolders = 3; // of OpenURI, which shows a file's folder from there on

const QString kOpener = u"xdg-open"_s;

// 0 where nobody offers the interface.
QCoro::Task<unsigned> versionOf(QString interface, QDBusConnection bus, std::stop_token stop)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        kPortal, kPortalPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setArguments({interface, u"version"_s});
    const QDBusMessage reply = co_await replyTo(call, bus, std::move(stop));
    co_return reply.type() == QDBusMessage::ReplyMessage
        ? reply.arguments().value(0).value<QDBusVariant>().variant().toUInt()
        : 0U;
}

// Whether somebody owns the name or the bus would start them.
QCoro::Task<bool> isOnBus(QString name, QDBusConnection bus, std::stop_token stop)
{
    for (const QString &method : {u"ListNames"_s, u"ListActivatableNames"_s}) {
        const QDBusMessage call =
            QDBusMessage::createMethodCall(kBus, u"/org/freedesktop/DBus"_s, kBus, method);
        const QDBusMessage reply = co_await replyTo(call, bus, stop);
        if (reply.arguments().value(0).toStringList().contains(name)) {
            co_return true;
        }
    }
    co_return false;
}

struct PortalCall
{
    QString interface;
    QString method;
    QVariantList arguments; // between the window and the options
    QVariantMap options;
};

// Waits for as long as the user takes.
QCoro::Task<ShareOutcome> ask(PortalCall asked, QDBusConnection bus, std::stop_token stop)
{
    constexpr uint kGranted = 0;
    constexpr uint kRefused = 1;
    throwIfStopped(stop);
    const auto request = std::make_shared<PortalRequest>(bus);
    asked.options.insert(u"handle_token"_s, request->token());
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortal, kPortalPath, asked.interface, asked.method);
    const QString noWindow;
    call.setArguments(QVariantList{noWindow} + asked.arguments + QVariantList{asked.options});
    {
        const std::stop_callback breakOff(
            stop, [request] { postToMainThread([request] { request->close(); }); });
        request->call(call);
        co_await request->done();
    }
    throwIfStopped(stop);
    const auto &answer = request->answer();
    co_return answer && answer->response == kGranted ? ShareOutcome::Done
        : answer && answer->response == kRefused     ? ShareOutcome::Cancelled
                                                     : ShareOutcome::Failed;
}

// Invalid where the file cannot be opened.
QDBusUnixFileDescriptor descriptorOf(const QUrl &file)
{
    const QByteArray path = QFile::encodeName(file.toLocalFile());
    const int number = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    QDBusUnixFileDescriptor descriptor;
    if (number >= 0) {
        descriptor.giveFileDescriptor(number);
    }
    return descriptor;
}

QCoro::Task<ShareOutcome> askAbout(
    QUrl file, PortalCall asked, QDBusConnection bus, std::stop_token stop)
{
    const QDBusUnixFileDescriptor descriptor = descriptorOf(file);
    if (!descriptor.isValid()) {
        co_return ShareOutcome::Failed;
    }
    asked.arguments = {QVariant::fromValue(descriptor)};
    co_return co_await ask(std::move(asked), std::move(bus), std::move(stop));
}

QString opener()
{
    return QStandardPaths::findExecutable(kOpener);
}

ShareOutcome openDirectly(const QString &path)
{
    const QString program = opener();
    return !program.isEmpty() && QProcess::startDetached(program, {path}) ? ShareOutcome::Done
                                                                          : ShareOutcome::Failed;
}

QCoro::Task<ShareOutcome> mailText(QString text, std::stop_token stop)
{
    ComposeDraft draft;
    draft.body = std::move(text);
    CommunicationComposeService service;
    const ComposeOutcome outcome = co_await service.composeMail(std::move(draft), std::move(stop));
    co_return outcome == ComposeOutcome::Closed ? ShareOutcome::Cancelled : ShareOutcome::Done;
}

QCoro::Task<ShareOutcome> mailFile(QUrl file, QDBusConnection bus, std::stop_token stop)
{
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    const QDBusUnixFileDescriptor descriptor = descriptorOf(file);
    if (!descriptor.isValid()) {
        co_return ShareOutcome::Failed;
    }
    const QList<QDBusUnixFileDescriptor> attachments{descriptor};
    PortalCall asked;
    asked.interface = kEmail;
    asked.method = u"ComposeEmail"_s;
    asked.options = {
        {u"subject"_s, file.fileName()}, {u"attachment_fds"_s, QVariant::fromValue(attachments)}};
    co_return co_await ask(std::move(asked), std::move(bus), std::move(stop));
}

} // namespace

QCoro::Task<SharingMeans> DesktopSharing::means(std::stop_token stop)
{
    const QDBusConnection bus = m_bus;
    const std::shared_ptr<SerialWorker> worker = m_worker;
    SharingMeans means;
    if (bus.isConnected()) {
        const unsigned opening = co_await versionOf(kOpenUri, bus, stop);
        const unsigned mailing = co_await versionOf(kEmail, bus, stop);
        means.opens = opening > 0;
        means.showsInFolder =
            opening >= kVersionOfFolders || co_await isOnBus(kFileManager, bus, stop);
        means.mailsTexts = mailing > 0;
        means.mailsFiles = mailing > 0;
    }
    const bool canOpenDirectly = !opener().isEmpty();
    means.opens = means.opens || canOpenDirectly;
    means.showsInFolder = means.showsInFolder || canOpenDirectly;
    if (!means.mailsTexts) {
        auto look = [](const std::stop_token &) {
            return UriHandler::forScheme("mailto").has_value();
        };
        means.mailsTexts = co_await worker->run(std::move(look), stop);
    }
    co_return SharingMeans(means);
}

QCoro::Task<ShareOutcome> DesktopSharing::open(QUrl file, OpenChoice choice, std::stop_token stop)
{
    const QDBusConnection bus = m_bus;
    const unsigned version = bus.isConnected() ? co_await versionOf(kOpenUri, bus, stop) : 0U;
    if (version == 0) {
        co_return openDirectly(file.toLocalFile());
    }
    PortalCall asked;
    asked.interface = kOpenUri;
    asked.method = u"OpenFile"_s;
    asked.options = {{u"ask"_s, choice == OpenChoice::Asked}};
    co_return co_await askAbout(std::move(file), std::move(asked), bus, std::move(stop));
}

// The file manager can mark the file; the portal at least shows where it lies.
QCoro::Task<ShareOutcome> DesktopSharing::showInFolder(QUrl file, std::stop_token stop)
{
    const QDBusConnection bus = m_bus;
    if (bus.isConnected()) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            kFileManager, u"/org/freedesktop/FileManager1"_s, kFileManager, u"ShowItems"_s);
        call.setArguments({QStringList{file.toString(QUrl::FullyEncoded)}, QString()});
        const QDBusMessage reply = co_await replyTo(call, bus, stop);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            co_return ShareOutcome::Done;
        }
        const unsigned version = co_await versionOf(kOpenUri, bus, stop);
        if (version >= kVersionOfFolders) {
            PortalCall asked;
            asked.interface = kOpenUri;
            asked.method = u"OpenDirectory"_s;
            co_return co_await askAbout(std::move(file), std::move(asked), bus, std::move(stop));
        }
    }
    co_return openDirectly(QFileInfo(file.toLocalFile()).path());
}

QCoro::Task<ShareOutcome> DesktopSharing::mail(SharedMail mail, std::stop_token stop)
{
    if (mail.file) {
        return mailFile(*mail.file, m_bus, std::move(stop));
    }
    return mailText(std::move(mail.text), std::move(stop));
}

} // namespace velarc
