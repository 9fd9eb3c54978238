#include "engines/http_connections.h"

#include <time.h>

#include <utility>

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

} // namespace

struct HttpConnections::Proxies final : QNetworkProxyFactory
{
    QList<QNetworkProxy> found{QNetworkProxy(QNetworkProxy::NoProxy)};

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery & /*query*/) override { return found; }
};

HttpConnections::HttpConnections()
    : m_manager(std::make_unique<QNetworkAccessManager>())
    , m_proxies(new Proxies)
    , m_lastUse(timeSinceBoot())
{
    m_manager->setProxyFactory(m_proxies);
}

void HttpConnections::setProxies(QList<QNetworkProxy> proxies)
{
    m_proxies->found = std::move(proxies);
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
