#include "ui/desktop_sharing.h"

#include "base/async.h"
#include "base/worker.h"
#include "system_actions/portal_request.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kOpenUri = u"org.freedesktop.portal.OpenURI"_s;
const QString kFileChooser = u"org.freedesktop.portal.FileChooser"_s;
const QString kEmail = u"org.freedesktop.portal.Email"_s;
const QString kFileManager = u"org.freedesktop.FileManager1"_s;
const QString kBus = u"org.freedesktop.DBus"_s;

constexpr unsigned kVersionOfFolders = 3; // of OpenURI, which opens folders from there on
constexpr unsigned kVersionOfAttachments = 3; // of Email, which takes descriptors from there on
constexpr qsizetype kMostArgumentBytes = 100'000; // a program's arguments are bounded

const QString kOpener = u"xdg-open"_s;
const QString kMailer = u"xdg-email"_s;
const QString kTypes = u"xdg-mime"_s;

QString program(const QString &name)
{
    return QStandardPaths::findExecutable(name);
}

ShareOutcome started(const QString &name, const QStringList &arguments)
{
    const QString found = program(name);
    return !found.isEmpty() && QProcess::startDetached(found, arguments) ? ShareOutcome::Done
                                                                         : ShareOutcome::Failed;
}

ShareOutcome outcomeOf(PortalEnding ending)
{
    switch (ending) {
    case PortalEnding::Done:
        return ShareOutcome::Done;
    case PortalEnding::Cancelled:
        return ShareOutcome::Cancelled;
    case PortalEnding::Failed:
        return ShareOutcome::Failed;
    }
    Q_UNREACHABLE();
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

// Whether somebody owns the name or the bus would start them.
QCoro::Task<bool> isOnBus(QString name, QDBusConnection bus, std::stop_token stop)
{
    for (const QString &method : {u"ListNames"_s, u"ListActivatableNames"_s}) {
        const QDBusMessage call =
            QDBusMessage::createMethodCall(kBus, u"/org/freedesktop/DBus"_s, kBus, method);
        const QDBusMessage reply = co_await busReply(call, bus, stop);
        if (reply.arguments().value(0).toStringList().contains(name)) {
            co_return true;
        }
    }
    co_return false;
}

// What a program prints; empty if it fails or takes too long.
QCoro::Task<QByteArray> printedBy(QString name, QStringList arguments, std::stop_token stop)
{
    throwIfStopped(stop);
    const auto process = std::make_shared<QProcess>();
    const auto ended = std::make_shared<Wakeup>();
    QObject::connect(process.get(), &QProcess::finished, [ended] { ended->fire(); });
    QObject::connect(process.get(), &QProcess::errorOccurred, [ended] { ended->fire(); });
    process->start(program(name), arguments, QIODevice::ReadOnly);
    {
        const std::stop_callback breakOff(
            stop, [ended] { postToMainThread([ended] { ended->fire(); }); });
        co_await *ended;
    }
    // Its own signals are being delivered: it goes from the event loop.
    postToMainThread([process] { process->kill(); });
    throwIfStopped(stop);
    co_return process->readAllStandardOutput().trimmed();
}

QCoro::Task<bool> hasMailProgram(std::stop_token stop)
{
    if (program(kMailer).isEmpty() || program(kTypes).isEmpty()) {
        co_return false;
    }
    const QStringList arguments{u"query"_s, u"default"_s, u"x-scheme-handler/mailto"_s};
    const QByteArray name = co_await printedBy(kTypes, arguments, std::move(stop));
    co_return !name.isEmpty();
}

QCoro::Task<ShareOutcome> mailThroughPortal(
    SharedMail mail, QDBusConnection bus, std::stop_token stop)
{
    PortalQuestion question;
    question.interface = kEmail;
    question.method = u"ComposeEmail"_s;
    question.arguments = {QString()};
    if (mail.file) {
        const QDBusUnixFileDescriptor descriptor = descriptorOf(*mail.file);
        if (!descriptor.isValid()) {
            co_return ShareOutcome::Failed;
        }
        question.options.insert(u"attachment_fds"_s,
            QVariant::fromValue(QList<QDBusUnixFileDescriptor>{descriptor}));
        question.options.insert(u"subject"_s, mail.file->fileName());
    } else {
        question.options.insert(u"body"_s, mail.text.remove(QChar(u'\0'))); // the bus takes none
    }
    const PortalAnswer answer =
        co_await askPortal(std::move(question), std::move(bus), std::move(stop));
    co_return outcomeOf(answer.ending);
}

ShareOutcome mailThroughProgram(const SharedMail &mail)
{
    if (mail.file) {
        return started(kMailer, {u"--attach"_s, mail.file->toLocalFile()});
    }
    if (mail.text.toUtf8().size() > kMostArgumentBytes) {
        return ShareOutcome::Failed;
    }
    return started(kMailer, {u"--utf8"_s, u"--body"_s, mail.text});
}

} // namespace

QCoro::Task<SharingMeans> DesktopSharing::means(std::stop_token stop)
{
    SharingMeans means;
    means.opens = !program(kOpener).isEmpty();
    means.showsInFolder = means.opens;
    const QDBusConnection bus = m_bus;
    if (bus.isConnected()) {
        const unsigned opening = co_await portalVersion(kOpenUri, bus, stop);
        const unsigned choosing = co_await portalVersion(kFileChooser, bus, stop);
        const unsigned mailing = co_await portalVersion(kEmail, bus, stop);
        means.opens = means.opens || opening > 0;
        means.showsInFolder = means.showsInFolder || opening >= kVersionOfFolders
            || co_await isOnBus(kFileManager, bus, stop);
        means.asksWhereToSave = choosing > 0;
        means.mails = mailing >= kVersionOfAttachments;
    }
    if (!means.mails) {
        means.mails = co_await hasMailProgram(stop);
    }
    co_return SharingMeans(means);
}

QCoro::Task<ShareOutcome> DesktopSharing::open(QUrl file, OpenChoice choice, std::stop_token stop)
{
    const QDBusConnection bus = m_bus;
    const unsigned version =
        bus.isConnected() ? co_await portalVersion(kOpenUri, bus, stop) : 0U;
    if (version == 0) {
        co_return started(kOpener, {file.toLocalFile()});
    }
    const QDBusUnixFileDescriptor descriptor = descriptorOf(file);
    if (!descriptor.isValid()) {
        co_return ShareOutcome::Failed;
    }
    PortalQuestion question;
    question.interface = kOpenUri;
    question.method = u"OpenFile"_s;
    question.arguments = {QString(), QVariant::fromValue(descriptor)};
    question.options = {{u"ask"_s, choice == OpenChoice::Asked}};
    const PortalAnswer answer = co_await askPortal(std::move(question), bus, stop);
    co_return outcomeOf(answer.ending);
}

QCoro::Task<ShareOutcome> DesktopSharing::showInFolder(QUrl file, std::stop_token stop)
{
    const QDBusConnection bus = m_bus;
    if (bus.isConnected()) {
        QDBusMessage call = QDBusMessage::createMethodCall(
            kFileManager, u"/org/freedesktop/FileManager1"_s, kFileManager, u"ShowItems"_s);
        call.setArguments({QStringList{file.toString(QUrl::FullyEncoded)}, QString()});
        const QDBusMessage reply = co_await busReply(call, bus, stop);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            co_return ShareOutcome::Done;
        }
        const unsigned version = co_await portalVersion(kOpenUri, bus, stop);
        const QDBusUnixFileDescriptor descriptor = descriptorOf(file);
        if (version >= kVersionOfFolders && descriptor.isValid()) {
            PortalQuestion question;
            question.interface = kOpenUri;
            question.method = u"OpenDirectory"_s;
            question.arguments = {QString(), QVariant::fromValue(descriptor)};
            const PortalAnswer answer = co_await askPortal(std::move(question), bus, stop);
            co_return outcomeOf(answer.ending);
        }
    }
    co_return started(kOpener, {QFileInfo(file.toLocalFile()).path()});
}

QCoro::Task<ShareOutcome> DesktopSharing::mail(SharedMail mail, std::stop_token stop)
{
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    const QDBusConnection bus = m_bus;
    const unsigned version = bus.isConnected() ? co_await portalVersion(kEmail, bus, stop) : 0U;
    if (version < kVersionOfAttachments) {
        co_return mailThroughProgram(mail);
    }
    co_return co_await mailThroughPortal(std::move(mail), bus, std::move(stop));
}

QCoro::Task<SaveChoice> DesktopSharing::askWhereToSave(QString name, std::stop_token stop)
{
    PortalQuestion question;
    question.interface = kFileChooser;
    question.method = u"SaveFile"_s;
    question.arguments = {QString(), u"Save Result"_s};
    question.options = {{u"current_name"_s, name}};
    const PortalAnswer answer =
        co_await askPortal(std::move(question), m_bus, std::move(stop));
    SaveChoice choice;
    choice.file = QUrl(answer.results.value(u"uris"_s).toStringList().value(0));
    choice.outcome = answer.ending == PortalEnding::Done && !choice.file.isLocalFile()
        ? ShareOutcome::Failed
        : outcomeOf(answer.ending);
    co_return SaveChoice(choice);
}

namespace {

class NoSharing final : public Sharing
{
public:
    QCoro::Task<SharingMeans> means(std::stop_token) override { co_return SharingMeans(); }
    QCoro::Task<ShareOutcome> open(QUrl, OpenChoice, std::stop_token) override
    {
        co_return ShareOutcome::Failed;
    }
    QCoro::Task<ShareOutcome> showInFolder(QUrl, std::stop_token) override
    {
        co_return ShareOutcome::Failed;
    }
    QCoro::Task<ShareOutcome> mail(SharedMail, std::stop_token) override
    {
        co_return ShareOutcome::Failed;
    }
    QCoro::Task<SaveChoice> askWhereToSave(QString, std::stop_token) override
    {
        co_return SaveChoice();
    }
};

} // namespace

std::shared_ptr<Sharing> noSharing()
{
    return std::make_shared<NoSharing>();
}

} // namespace velarc
