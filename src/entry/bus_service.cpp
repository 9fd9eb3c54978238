#include "entry/bus_service.h"

#include "base/uuid.h"
#include "entry/desktop_names.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

ActivationContext contextOf(const QVariantMap &platformData)
{
    return {platformData.value(u"activation-token"_s).toString(),
        platformData.value(u"desktop-startup-id"_s).toString()};
}

std::optional<CopiedThing::Kind> kindOf(const QString &type)
{
    if (type == u"text/plain;charset=utf-8"_s) {
        return CopiedThing::Kind::Text;
    }
    if (type == u"image/png"_s) {
        return CopiedThing::Kind::Picture;
    }
    return std::nullopt;
}

// A parameter comes as the value itself, or wrapped.
QString textOf(const QVariant &parameter)
{
    return parameter.canConvert<QDBusVariant>()
        ? parameter.value<QDBusVariant>().variant().toString()
        : parameter.toString();
}

} // namespace

ApplicationAdaptor::ApplicationAdaptor(QObject *parent, WindowRequests &requests)
    : QDBusAbstractAdaptor(parent), m_requests(requests)
{
}

void ApplicationAdaptor::Activate(const QVariantMap &platform_data)
{
    m_requests.activate(contextOf(platform_data));
}

void ApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platform_data)
{
    m_requests.open(uris, contextOf(platform_data));
}

void ApplicationAdaptor::ActivateAction(
    const QString &action_name, const QVariantList &parameter, const QVariantMap &platform_data)
{
    const auto action = action_name == kSelectAction && parameter.size() == 1
        ? uuidFromText(textOf(parameter.first()))
        : std::nullopt;
    if (action) {
        m_requests.select(*action, contextOf(platform_data));
    } else {
        m_requests.activate(contextOf(platform_data));
    }
}

WindowAdaptor::WindowAdaptor(QObject *parent, QDBusConnection bus, WindowRequests &requests)
    : QDBusAbstractAdaptor(parent), m_bus(std::move(bus)), m_requests(requests)
{
}

void WindowAdaptor::Copy(const QString &type, const QByteArray &bytes, const QDBusMessage &message)
{
    if (const auto kind = kindOf(type)) {
        m_requests.copy({*kind, bytes});
        return;
    }
    message.setDelayedReply(true); // the error is the only reply
    m_bus.send(message.createErrorReply(QDBusError::InvalidArgs, u"No such type is copied."_s));
}

QString WindowAdaptor::Import(const QString &json, const QDBusMessage &message)
{
    message.setDelayedReply(true);
    m_requests.import(json.toUtf8(), [bus = m_bus, message](const ImportAnswer &given) {
        bus.send(given.outcome == ImportAnswer::Outcome::Imported
                ? message.createReply(given.text)
                : message.createErrorReply(u"com.tolmar.velarc.Error.Import"_s, given.text));
    });
    return {};
}

BusService::BusService(QDBusConnection bus, WindowRequests &requests) : m_bus(std::move(bus))
{
    new ApplicationAdaptor(&m_object, requests); // each is its parent's
    new WindowAdaptor(&m_object, m_bus, requests);
}

BusService::~BusService()
{
    m_bus.unregisterService(kApplicationId);
    m_bus.unregisterObject(kWindowPath);
}

BusService::Claim BusService::claim()
{
    if (!m_bus.isConnected() || !m_bus.registerObject(kWindowPath, &m_object)) {
        return Claim::NoBus;
    }
    const auto reply = m_bus.interface()->registerService(kApplicationId,
        QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        return Claim::Ours;
    }
    m_bus.unregisterObject(kWindowPath);
    return reply.isValid() ? Claim::SomebodyElses : Claim::NoBus;
}

} // namespace velarc
