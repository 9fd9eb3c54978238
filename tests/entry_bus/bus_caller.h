#pragma once

// Another program on the bus, which calls ours. It has a connection of its own.

#include "support/wait_until.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QTimer>

#include <gtest/gtest.h>

#include <optional>

namespace velarc {

using namespace Qt::StringLiterals;

// As waitUntil() does, for what another thread brings about: no event of ours tells of that.
template <typename Predicate> [[nodiscard]] bool waitForOthers(Predicate holds)
{
    QTimer look;
    look.start(std::chrono::milliseconds(2));
    return waitUntil(holds);
}

class BusCaller
{
public:
    BusCaller() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name())) {}
    ~BusCaller() { leave(); }
    BusCaller(const BusCaller &) = delete;
    BusCaller &operator=(const BusCaller &) = delete;

    void leave()
    {
        m_bus.reset();
        QDBusConnection::disconnectFromBus(name());
    }

    [[nodiscard]] QDBusPendingCall begin(const QDBusMessage &call) const
    {
        return m_bus->asyncCall(call, 30'000);
    }

    // The reply or the error, once it is there.
    [[nodiscard]] QDBusMessage call(const QDBusMessage &message) const
    {
        QDBusPendingCall pending = begin(message);
        EXPECT_TRUE(waitForOthers([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    [[nodiscard]] bool knows(const QString &service) const
    {
        const QDBusMessage reply =
            call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                     u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s)
                << service);
        return reply.arguments().value(0).toBool();
    }

private:
    static QString name() { return u"caller"_s; }

    std::optional<QDBusConnection> m_bus;
};

} // namespace velarc
