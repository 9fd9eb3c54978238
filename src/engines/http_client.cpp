#include "engines/http_client.h"

#include "base/worker.h"
#include "engines/http_connections.h"
#include "engines/http_transfer.h"

#include <utility>
#include <vector>

namespace velarc {

struct HttpClient::Members
{
    HttpLimits limits;
    SerialWorker proxySearch;
    std::shared_ptr<HttpConnections> connections;
    std::vector<std::weak_ptr<HttpTransfer>> transfers;
    bool isGone = false;

    // Those that can take one more transfer.
    HttpConnections &liveConnections()
    {
        if (!connections || !connections->canTakeMore(limits.rest)) {
            connections = std::make_shared<HttpConnections>();
        }
        return *connections;
    }

    std::shared_ptr<HttpTransfer> newTransfer()
    {
        auto transfer = std::make_shared<HttpTransfer>(limits, connections);
        std::erase_if(transfers, [](const auto &other) { return other.expired(); });
        transfers.push_back(transfer);
        return transfer;
    }
};

namespace {

// For a worker: a script of the network's owner may decide, and take its time.
auto proxiesFor(const QUrl &url)
{
    return [url](std::stop_token) {
        return QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    };
}

QCoro::Task<HttpReply> exchange(
    std::shared_ptr<HttpClient::Members> members, HttpRequest request, std::stop_token stop)
{
    throwIfStopped(stop);
    refuseUnsendable(request);
    if (!members->liveConnections().knowsProxies(request.url.host())) {
        const auto proxies = co_await members->proxySearch.run(proxiesFor(request.url), stop);
        if (members->isGone) {
            throw CancellationError();
        }
        members->liveConnections().setProxies(request.url.host(), proxies);
    }
    const auto transfer = members->newTransfer();
    transfer->start(std::move(request), stop);
    co_await transfer->ended();
    throwIfStopped(stop);
    co_return transfer->takeReply();
}

} // namespace

HttpClient::HttpClient(HttpLimits limits) : m_members(std::make_shared<Members>())
{
    m_members->limits = limits;
}

HttpClient::~HttpClient()
{
    m_members->isGone = true;
    m_members->connections.reset();
    for (const auto &running : m_members->transfers) {
        if (const auto transfer = running.lock()) {
            transfer->drop();
        }
    }
}

QCoro::Task<HttpReply> HttpClient::post(HttpRequest request, std::stop_token stop)
{
    return exchange(m_members, std::move(request), std::move(stop));
}

} // namespace velarc
