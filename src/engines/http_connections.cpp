#include "engines/http_connections.h"

#include "engines/openssl_end.h"

#include <QHash>
#include <QUrl>

#include <time.h>

namespace velarc {

namespace {

// The manager opens this many to one host and queues what comes on top, where the time-out of a
// request would run while it waits.
constexpr int kTransfersAtOnce = 6;

// Runs on while the computer sleeps, unlike the steady clock.
std::chrono::nanoseconds timeSinceBoot()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

// The first one is the process's first use of OpenSSL.
std::unique_ptr<QNetworkAccessManager> newManager()
{
    leaveOpenSslUncleaned();
    return std::make_unique<QNetworkAccessManager>();
}

} // namespace

struct HttpConnections::Proxies final : QNetworkProxyFactory
{
    QHash<QString, QList<QNetworkProxy>> found;

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return found.value(query.url().host(), {QNetworkProxy(QNetworkProxy::NoProxy)});
    }
};

HttpConnections::HttpConnections()
    : m_manager(newManager()), m_proxies(new Proxies), m_lastUse(timeSinceBoot())
{
    m_manager->setProxyFactory(m_proxies);
}

bool HttpConnections::knowsProxies(const QString &host) const
{
    return m_proxies->found.contains(host);
}

void HttpConnections::setProxies(const QString &host, const QList<QNetworkProxy> &proxies)
{
    m_proxies->found.insert(host, proxies);
}

void HttpConnections::leave()
{
    --m_transfers;
    m_lastUse = timeSinceBoot();
    if (m_isSpoiled && m_transfers == 0) {
        m_manager.reset();
    }
}

bool HttpConnections::canTakeMore(std::chrono::milliseconds rest) const
{
    if (m_isSpoiled || m_transfers >= kTransfersAtOnce) {
        return false;
    }
    return m_transfers > 0 || timeSinceBoot() - m_lastUse <= rest;
}

} // namespace velarc
