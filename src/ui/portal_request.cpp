#include "ui/portal_request.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kRequest = u"org.freedesktop.portal.Request"_s;
constexpr const char *kResponseSlot = SLOT(takeResponse(QDBusMessage));

QString requestPath(const QDBusConnection &bus, const QString &token)
{
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' + token;
}

} // namespace

PortalRequest::PortalRequest(const QDBusConnection &bus)
    : m_bus(bus)
    , m_watcher(kPortal, bus, QDBusServiceWatcher::WatchForUnregistration)
    , m_token(u"velarc"_s + QUuid::createUuid().toString(QUuid::Id128))
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { m_done.fire(); });
    // Before the call: the answer may come before its reply.
    follow(requestPath(m_bus, m_token));
}

PortalRequest::~PortalRequest()
{
    m_bus.disconnect(kPortal, m_path, kRequest, u"Response"_s, this, kResponseSlot);
}

void PortalRequest::call(const QDBusMessage &message)
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
        [this](const QDBusPendingCallWatcher *call) { takeReply(call->reply()); });
}

void PortalRequest::close()
{
    QDBusMessage message = QDBusMessage::createMethodCall(kPortal, m_path, kRequest, u"Close"_s);
    message.setAutoStartService(false);
    m_bus.send(message);
    m_done.fire();
}

void PortalRequest::takeResponse(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 2 && arguments.first().metaType().id() == QMetaType::UInt) {
        m_answer =
            PortalAnswer{arguments.first().toUInt(), qdbus_cast<QVariantMap>(arguments.last())};
    }
    m_done.fire();
}

void PortalRequest::follow(const QString &path)
{
    if (!m_path.isEmpty()) {
        m_bus.disconnect(kPortal, m_path, kRequest, u"Response"_s, this, kResponseSlot);
    }
    m_path = path;
    m_bus.connect(kPortal, m_path, kRequest, u"Response"_s, this, kResponseSlot);
}

void PortalRequest::takeReply(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage) {
        m_done.fire(); // nobody is there who could answer
        return;
    }
    const QString path = qdbus_cast<QDBusObjectPath>(reply.arguments().value(0)).path();
    if (!path.isEmpty() && path != m_path) {
        follow(path); // old portals name the request themselves
    }
}

} // namespace velarc
