#include "system_actions/portal_request.h"

#include "base/async.h"
#include "base/errors.h"
#include "base/uuid.h"
#include "base/worker.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <chrono>
#include <memory>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString kRequest = u"org.freedesktop.portal.Request"_s;

// The bus may have to start whoever answers.
constexpr std::chrono::milliseconds kReplyBound = 10s;

constexpr unsigned kSuccess = 0;
constexpr unsigned kCancelledByUser = 1;
constexpr unsigned kNoCode = 2;

QDBusMessage callTo(const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(kPortal, kPortalPath, interface, method);
    call.setArguments(arguments);
    return call;
}

// Hears how a request ended: by the portal's signal, or because the portal went.
class Response final : public QObject
{
    Q_OBJECT

public:
    explicit Response(const QDBusConnection &bus)
        : m_watcher(kPortal, bus, QDBusServiceWatcher::WatchForUnregistration)
    {
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { wakeup.fire(); });
    }

    void hearFrom(const QString &path, QDBusConnection bus)
    {
        bus.connect(kPortal, path, kRequest, u"Response"_s, this, SLOT(take(QDBusMessage)));
    }

    Wakeup wakeup;
    PortalAnswer answer;

private Q_SLOTS:
    void take(const QDBusMessage &message)
    {
        const QVariantList arguments = message.arguments();
        const unsigned code = arguments.value(0, kNoCode).toUInt();
        answer.ending = code == kSuccess ? PortalEnding::Done
            : code == kCancelledByUser   ? PortalEnding::Cancelled
                                         : PortalEnding::Failed;
        answer.results = qdbus_cast<QVariantMap>(arguments.value(1));
        wakeup.fire();
    }

private:
    QDBusServiceWatcher m_watcher;
};

struct Reply
{
    Wakeup wakeup;
    QDBusMessage message;
};

// Where the answer to a request of `token` comes from.
QString requestPath(const QString &token, const QDBusConnection &bus)
{
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return kPortalPath + u"/request/"_s + sender + u'/' + token;
}

void withdraw(const QString &path, const QDBusConnection &bus)
{
    static_cast<void>(
        bus.send(QDBusMessage::createMethodCall(kPortal, path, kRequest, u"Close"_s)));
}

QCoro::Task<PortalAnswer> answerOf(std::shared_ptr<Response> response, std::stop_token stop)
{
    {
        const std::stop_callback breakOff(
            stop, [response] { postToMainThread([response] { response->wakeup.fire(); }); });
        co_await response->wakeup;
    }
    throwIfStopped(stop);
    co_return PortalAnswer(response->answer);
}

} // namespace

QCoro::Task<QDBusMessage> busReply(QDBusMessage call, QDBusConnection bus, std::stop_token stop)
{
    throwIfStopped(stop);
    const auto reply = std::make_shared<Reply>();
    auto *watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(kReplyBound.count())));
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, [reply](QDBusPendingCallWatcher *finished) {
            reply->message = finished->reply();
            finished->deleteLater();
            reply->wakeup.fire();
        });
    {
        const std::stop_callback breakOff(
            stop, [reply] { postToMainThread([reply] { reply->wakeup.fire(); }); });
        co_await reply->wakeup;
    }
    throwIfStopped(stop);
    co_return QDBusMessage(reply->message);
}

QCoro::Task<unsigned> portalVersion(QString interface, QDBusConnection bus, std::stop_token stop)
{
    const QVariantList arguments{interface, u"version"_s};
    const QDBusMessage call = callTo(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, arguments);
    const QDBusMessage reply = co_await busReply(call, bus, std::move(stop));
    co_return reply.type() == QDBusMessage::ReplyMessage
        ? reply.arguments().value(0).value<QDBusVariant>().variant().toUInt()
        : 0U;
}

// Listens before it asks.
QCoro::Task<PortalAnswer> askPortal(
    PortalQuestion question, QDBusConnection bus, std::stop_token stop)
{
    const QString token = u"velarc"_s + uuidText(newUuid()).remove(u'-');
    question.options.insert(u"handle_token"_s, token);
    question.arguments.append(question.options);
    QString path = requestPath(token, bus);
    const auto response = std::make_shared<Response>(bus);
    response->hearFrom(path, bus);
    try {
        const QDBusMessage call = callTo(question.interface, question.method, question.arguments);
        const QDBusMessage reply = co_await busReply(call, bus, stop);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            co_return PortalAnswer();
        }
        const QString handle = reply.arguments().value(0).value<QDBusObjectPath>().path();
        if (handle != path) {
            path = handle;
            response->hearFrom(path, bus);
        }
        co_return co_await answerOf(response, stop);
    } catch (const CancellationError &) {
        withdraw(path, bus);
        throw;
    }
}

} // namespace velarc

#include "portal_request.moc"
