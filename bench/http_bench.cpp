// What the client adds to a request: small requests to a TLS server on loopback, against the same
// requests sent by a bare network manager. The server has a thread of its own.

#include "engines/http_client.h"
#include "support/scripted_https_server.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSemaphore>
#include <QThread>

#include <benchmark/benchmark.h>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

constexpr int kRequests = 1000;

// A server that answers every request alike, and its thread.
class ServerThread final : public QThread
{
public:
    explicit ServerThread(ServerIdentity identity) : m_identity(std::move(identity))
    {
        start();
        m_ready.acquire();
    }
    ~ServerThread() override
    {
        quit();
        wait();
    }
    [[nodiscard]] QUrl url() const { return m_url; }

protected:
    void run() override
    {
        ScriptedHttpsServer server(m_identity);
        server.answerAlways([](const ReceivedRequest &) { return reply(200, "{\"ok\": true}"); });
        m_url = server.url(u"/v1/messages"_s);
        m_ready.release();
        exec();
    }

private:
    ServerIdentity m_identity;
    QUrl m_url;
    QSemaphore m_ready;
};

// The application, the trust and the server that both sides need.
struct Loopback
{
    int argumentCount = 1;
    char name[6] = "bench";
    char *arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    TestAuthority authority;
    ScopedTrust trust{authority};
    ServerThread server{authority.issue()};
};

const QByteArray &smallBody()
{
    static const QByteArray body = QByteArray("{\"prompt\": \"hello\"}");
    return body;
}

QCoro::Task<void> postAll(HttpClient *client, QUrl url, QEventLoop *loop)
{
    for (int count = 0; count < kRequests; ++count) {
        HttpRequest request{.url = url,
            .headers = {{"Content-Type", "application/json"}},
            .secretHeader = HttpSecretHeader{"x-api-key", "", Secret("key")},
            .body = smallBody()};
        const HttpReply reply = co_await client->post(std::move(request), std::stop_token());
        benchmark::DoNotOptimize(reply.body.size());
    }
    loop->quit();
}

void httpClient(benchmark::State &state)
{
    const Loopback loopback;
    HttpClient client;
    for (auto _ : state) {
        QEventLoop loop;
        const auto running = postAll(&client, loopback.server.url(), &loop);
        loop.exec();
    }
    state.SetItemsProcessed(state.iterations() * kRequests);
}

void bareManager(benchmark::State &state)
{
    const Loopback loopback;
    QNetworkAccessManager manager;
    QNetworkRequest request(loopback.server.url());
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("x-api-key", "key");
    for (auto _ : state) {
        for (int count = 0; count < kRequests; ++count) {
            QEventLoop loop;
            const std::unique_ptr<QNetworkReply> reply(manager.post(request, smallBody()));
            QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit,
                Qt::QueuedConnection);
            loop.exec();
            benchmark::DoNotOptimize(reply->readAll().size());
        }
    }
    state.SetItemsProcessed(state.iterations() * kRequests);
}

BENCHMARK(bareManager)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(httpClient)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

} // namespace velarc
