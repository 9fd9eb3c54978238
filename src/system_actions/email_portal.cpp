#include "system_actions/email_portal.h"

#include "base/async.h"
#include "base/errors.h"
#include "base/text.h"
#include "base/uuid.h"
#include "base/worker.h"
#include "system_actions/bus_reply.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <functional>
#include <memory>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString kEmail = u"org.freedesktop.portal.Email"_s;
const QString kRequest = u"org.freedesktop.portal.Request"_s;

// From here on a mail can have several recipients.
constexpr unsigned kVersionOfAddresses = 3;

constexpr unsigned kSuccess = 0;
constexpr unsigned kCancelledByUser = 1;

using StopCallback = std::stop_callback<std::function<void()>>;

std::function<void()> wakingUp(const std::shared_ptr<Wakeup> &wakeup)
{
    return [wakeup] { postToMainThread([wakeup] { wakeup->fire(); }); };
}

// Ends with the wake-up, or with CancellationError where a stop comes first.
QCoro::Task<void> woken(std::shared_ptr<Wakeup> wakeup, std::stop_token stop)
{
    throwIfStopped(stop);
    const auto breakOff = std::make_unique<StopCallback>(stop, wakingUp(wakeup));
    co_await *wakeup;
    throwIfStopped(stop);
}

// Hears how a request ended: by the portal's signal, or because the portal went.
class Response final : public QObject
{
    Q_OBJECT

public:
    Response(const QString &portal, const QDBusConnection &bus)
        : m_watcher(portal, bus, QDBusServiceWatcher::WatchForUnregistration)
    {
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { end(PortalCompose::Failed); });
    }

    void hearFrom(const QString &portal, const QString &path, QDBusConnection bus)
    {
        bus.connect(portal, path, kRequest, u"Response"_s, this, SLOT(take(QDBusMessage)));
    }

    void end(PortalCompose ended)
    {
        outcome = ended;
        wakeup.fire();
    }

    Wakeup wakeup;
    PortalCompose outcome = PortalCompose::Failed;

private:
    QDBusServiceWatcher m_watcher;

    Q_SLOT void take(const QDBusMessage &message)
    {
        const unsigned code = message.arguments().value(0, kCancelledByUser + 1).toUInt();
        end(code == kSuccess               ? PortalCompose::Opened
                : code == kCancelledByUser ? PortalCompose::Cancelled
                                           : PortalCompose::Failed);
    }
};

// Of a request that still runs, when nobody waits for it any more.
void withdraw(const QString &portal, const QString &path, const QDBusConnection &bus)
{
    static_cast<void>(bus.send(QDBusMessage::createMethodCall(portal, path, kRequest, u"Close"_s)));
}

QCoro::Task<PortalCompose> ended(std::shared_ptr<Response> response, std::stop_token stop)
{
    std::shared_ptr<Wakeup> wakeup(response, &response->wakeup);
    co_await woken(std::move(wakeup), std::move(stop));
    co_return PortalCompose(response->outcome);
}

// The bus takes no such character.
QString withoutNull(QString text)
{
    return text.remove(QChar(u'\0'));
}

// None where a portal of that version cannot take the draft.
std::optional<QVariantMap> optionsOf(
    const ComposeDraft &draft, unsigned version, const QString &token)
{
    QVariantMap options{{u"handle_token"_s, token}, {u"body"_s, withoutNull(draft.body)}};
    const QString subject = withoutNull(trimmed(draft.subject.value_or(QString())).toString());
    if (!subject.isEmpty()) {
        options.insert(u"subject"_s, subject);
    }
    QStringList recipients;
    for (const QString &recipient : draft.recipients) {
        recipients.append(withoutNull(recipient));
    }
    if (version >= kVersionOfAddresses && !recipients.isEmpty()) {
        options.insert(u"addresses"_s, recipients);
    } else if (recipients.size() == 1) {
        options.insert(u"address"_s, recipients.first());
    } else if (!recipients.isEmpty()) {
        return std::nullopt;
    }
    return options;
}

QDBusMessage emailCall(const QString &portal, const QString &interface, const QString &method,
    const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(portal, kPortalPath, interface, method);
    call.setArguments(arguments);
    return call;
}

// Where the answer to a request of `token` comes from.
QString requestPath(const QString &token, const QDBusConnection &bus)
{
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return kPortalPath + u"/request/"_s + sender + u'/' + token;
}

// Speaks to the very process that told its version; listens before it asks.
QCoro::Task<PortalCompose> compose(
    QVariantMap options, QString portal, QDBusConnection bus, std::stop_token stop)
{
    QString path = requestPath(options.value(u"handle_token"_s).toString(), bus);
    const auto response = std::make_shared<Response>(portal, bus);
    response->hearFrom(portal, path, bus);
    const QVariantList arguments{QString(), options};
    try {
        const QDBusMessage call = emailCall(portal, kEmail, u"ComposeEmail"_s, arguments);
        const QDBusMessage reply = co_await replyTo(call, bus, stop);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            co_return PortalCompose::Failed;
        }
        const QString handle = reply.arguments().value(0).value<QDBusObjectPath>().path();
        if (handle != path) {
            path = handle;
            response->hearFrom(portal, path, bus);
        }
        co_return co_await ended(response, stop);
    } catch (const CancellationError &) {
        withdraw(portal, path, bus);
        throw;
    }
}

} // namespace

QCoro::Task<PortalCompose> composeThroughPortal(
    ComposeDraft draft, QDBusConnection bus, std::stop_token stop)
{
    if (!bus.isConnected()) {
        co_return PortalCompose::NotThere;
    }
    const QDBusMessage call =
        emailCall(kPortal, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {kEmail, u"version"_s});
    const QDBusMessage reply = co_await replyTo(call, bus, stop);
    const unsigned version = reply.arguments().value(0).value<QDBusVariant>().variant().toUInt();
    if (reply.type() != QDBusMessage::ReplyMessage || version == 0) {
        co_return PortalCompose::NotThere;
    }
    const QString token = u"velarc"_s + uuidText(newUuid()).remove(u'-');
    auto options = optionsOf(draft, version, token);
    if (!options) {
        co_return PortalCompose::Failed;
    }
    co_return co_await compose(*std::move(options), reply.service(), bus, stop);
}

} // namespace velarc

#include "email_portal.moc"
