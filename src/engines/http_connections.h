#pragma once

// Connections that are kept for the next request, as long as they can be trusted with it.

#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QString>

#include <chrono>
#include <memory>

namespace velarc {

// A network manager with the connections that it keeps.
//
// Main thread only. When it goes, its connections are closed.
class HttpConnections
{
public:
    HttpConnections();

    [[nodiscard]] QNetworkAccessManager &manager() { return *m_manager; }

    // The proxies on the way to a host. They stand as long as the connections do; until they are
    // set, no proxy is used.
    [[nodiscard]] bool knowsProxies(const QString &host) const;
    void setProxies(const QString &host, const QList<QNetworkProxy> &proxies);

    void enter() { ++m_transfers; }
    void leave();

    // Something went wrong on one of the connections. What may still come on it belongs to no
    // request, and a next one would take it for its own reply: none follows, and when the last
    // transfer leaves, all connections are closed.
    void spoil() { m_isSpoiled = true; }

    // Whether one more transfer can have a connection at once, and a live one.
    [[nodiscard]] bool canTakeMore(std::chrono::milliseconds rest) const;

private:
    struct Proxies;

    std::unique_ptr<QNetworkAccessManager> m_manager;
    Proxies *m_proxies; // the manager's own
    int m_transfers = 0;
    bool m_isSpoiled = false;
    std::chrono::nanoseconds m_lastUse;
};

} // namespace velarc
