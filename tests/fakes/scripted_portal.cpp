#include "fakes/scripted_portal.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <stdexcept>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kName = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kConnection = u"scripted portal"_s;

} // namespace

ScriptedPortal::ScriptedPortal()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, kConnection))
{
    if (!m_bus.registerVirtualObject(kPath, this, QDBusConnection::SubPath)
        || !m_bus.registerService(kName)) {
        throw std::runtime_error("there is a portal already, or no bus");
    }
}

ScriptedPortal::~ScriptedPortal()
{
    if (m_bus.isConnected()) {
        m_bus.unregisterService(kName);
        m_bus.unregisterObject(kPath, QDBusConnection::UnregisterTree);
        QDBusConnection::disconnectFromBus(kConnection);
    }
}

QString ScriptedPortal::introspect(const QString &) const
{
    return {};
}

bool ScriptedPortal::handleMessage(const QDBusMessage &message, const QDBusConnection &)
{
    if (message.member() == u"Get"_s) {
        tellVersion(message);
        return true;
    }
    if (message.member() == u"ComposeEmail"_s) {
        begin(message);
        return true;
    }
    if (message.interface() == u"org.freedesktop.portal.FileChooser"_s) {
        title = message.arguments().at(1).toString();
        begin(message);
        return true;
    }
    if (message.member() == u"Close"_s) {
        ++withdrawn;
        return true;
    }
    return false;
}

void ScriptedPortal::tellVersion(const QDBusMessage &message)
{
    const QVariantList asked{u"org.freedesktop.portal.Email"_s, u"version"_s};
    if (version && message.arguments() == asked) {
        m_bus.send(message.createReply(QVariant::fromValue(QDBusVariant(*version))));
    } else {
        m_bus.send(message.createErrorReply(QDBusError::InvalidArgs, u"No such interface"_s));
    }
}

void ScriptedPortal::begin(const QDBusMessage &message)
{
    method = message.member();
    const QVariantMap options =
        qdbus_cast<QVariantMap>(message.arguments().constLast().value<QDBusArgument>());
    drafts.append(options);
    if (answer == Answer::RefusesTheCall) {
        m_bus.send(message.createErrorReply(QDBusError::InvalidArgs, u"No such address"_s));
        return;
    }
    const QString caller = message.service();
    const QString sender = QString(caller.mid(1)).replace(u'.', u'_');
    const QString token = usesOwnHandles ? u"own"_s : options.value(u"handle_token"_s).toString();
    const QString path = kPath + u"/request/"_s + sender + u'/' + token;
    m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    m_path = path;
    m_caller = caller;
    switch (answer) {
    case Answer::Opens:
        return respond(0);
    case Answer::IsCancelled:
        return respond(1);
    case Answer::Fails:
        return respond(2);
    case Answer::GoesAway:
        QDBusConnection::disconnectFromBus(kConnection);
        m_bus = QDBusConnection(QString());
        return;
    case Answer::RefusesTheCall:
    case Answer::NeverComes:
        return;
    }
}

void ScriptedPortal::respond(unsigned code)
{
    QDBusMessage response = QDBusMessage::createTargetedSignal(
        m_caller, m_path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
    response << code << (code == 0 ? results : QVariantMap());
    m_bus.send(response);
}

} // namespace velarc
