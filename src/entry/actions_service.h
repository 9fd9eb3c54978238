#pragma once

// com.tolmar.velarc.Actions1: other programs list the actions and run them, without the window.
// docs/dbus.md tells callers about it.
//
// Main thread only.

#include "entry/service_parts.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace velarc {

// (ss) on the bus.
struct BusAction
{
    QString id;
    QString title;
};
using BusActions = QList<BusAction>;

class ActionsService final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tolmar.velarc.Actions1")
    Q_CLASSINFO("D-Bus Introspection",
        "<interface name='com.tolmar.velarc.Actions1'>"
        "<method name='List'>"
        "<arg name='actions' type='a(ss)' direction='out'/>"
        "</method>"
        "<method name='Run'>"
        "<arg name='action' type='s' direction='in'/>"
        "<arg name='input' type='s' direction='in'/>"
        "<arg name='dialog' type='s' direction='out'/>"
        "<arg name='details' type='a{sv}' direction='out'/>"
        "</method>"
        "</interface>")

public:
    // More runs than this at once are refused: each may cost its user money.
    static constexpr int kMostRuns = 8;

    ActionsService(QObject *parent, QDBusConnection bus, ServiceParts parts, Activity &activity);

public Q_SLOTS:
    velarc::BusActions List();

    // Answers when the run is over. It is stopped if the caller leaves the bus.
    void Run(const QString &action, const QString &input, const QDBusMessage &message);

private:
    void refuse(const QDBusMessage &message, QLatin1StringView error, const QString &text);

    QDBusConnection m_bus;
    ServiceParts m_parts;
    Activity &m_activity;
    std::shared_ptr<int> m_runs = std::make_shared<int>(0);
};

} // namespace velarc
