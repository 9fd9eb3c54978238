#pragma once

// The window's object on the session bus.
//
// Main thread only.

#include "entry/window_requests.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace velarc {

// org.freedesktop.Application: how the desktop starts a program and hands addresses to it.
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject *parent, WindowRequests &requests);

public Q_SLOTS:
    void Activate(const QVariantMap &platform_data);
    void Open(const QStringList &uris, const QVariantMap &platform_data);

    // "select-action" with the UUID of an action as its one parameter. Any other action does
    // nothing but show the window.
    void ActivateAction(const QString &action_name, const QVariantList &parameter,
        const QVariantMap &platform_data);

private:
    WindowRequests &m_requests;
};

// com.tolmar.velarc.Window1: what only a program with a window can do for others.
class WindowAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tolmar.velarc.Window1")

public:
    WindowAdaptor(QObject *parent, QDBusConnection bus, WindowRequests &requests);

public Q_SLOTS:
    // Puts bytes on the clipboard: "text/plain;charset=utf-8" or "image/png".
    void Copy(const QString &type, const QByteArray &bytes, const QDBusMessage &message);

    // Takes the actions of an exported file over; answers with the summary, or with the sentence
    // why nothing was.
    QString Import(const QString &json, const QDBusMessage &message);

private:
    QDBusConnection m_bus;
    WindowRequests &m_requests;
};

// The object and the name, for as long as it lives.
class BusService
{
public:
    enum class Claim
    {
        Ours,
        SomebodyElses,
        NoBus
    };

    BusService(QDBusConnection bus, WindowRequests &requests);
    ~BusService();
    BusService(const BusService &) = delete;
    BusService &operator=(const BusService &) = delete;

    // Exports the object, then takes the name, so that whoever sees the name finds the object.
    [[nodiscard]] Claim claim();

private:
    QDBusConnection m_bus;
    QObject m_object;
};

} // namespace velarc
