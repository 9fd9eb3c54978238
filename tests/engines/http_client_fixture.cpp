#include "http_client_fixture.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

QCoro::Task<void> follow(QCoro::Task<HttpReply> task, std::shared_ptr<Outcome> outcome)
{
    try {
        outcome->reply = co_await task;
    } catch (const HttpTransportError &error) {
        outcome->transportError = error.message();
    } catch (const NotHttpError &) {
        outcome->isNotHttp = true;
    } catch (const CancellationError &) {
        outcome->isCancelled = true;
    }
}

} // namespace

HttpClientTest::HttpClientTest() : server(authority().issue()), m_trust(authority()) {}

TestAuthority &HttpClientTest::authority()
{
    static TestAuthority shared;
    return shared;
}

HttpRequest HttpClientTest::request(QByteArray body, const QString &path) const
{
    HttpRequest result;
    result.url = server.url(path);
    result.headers = {{"Content-Type", "application/json"}};
    result.secretHeader = HttpSecretHeader{"Authorization", "Bearer ", Secret("canary-key")};
    result.body = std::move(body);
    return result;
}

std::shared_ptr<Outcome> HttpClientTest::begin(HttpRequest request) const
{
    auto outcome = std::make_shared<Outcome>();
    follow(client->post(std::move(request), stop.get_token()), outcome);
    return outcome;
}

Outcome HttpClientTest::send(HttpRequest request)
{
    const auto outcome = begin(std::move(request));
    EXPECT_TRUE(waitUntil([&] { return outcome->isDone(); }));
    return *outcome;
}

QString HttpClientTest::errorOf(HttpRequest request, qsizetype requestsAtMost)
{
    const Outcome outcome = send(std::move(request));
    EXPECT_TRUE(outcome.transportError.has_value());
    // A request that was sent again would come after the error, too.
    EXPECT_FALSE(waitUntil(
        [&] { return server.requests().size() > requestsAtMost; }, std::chrono::milliseconds(50)));
    QString text = outcome.transportError.value_or(QString());
    EXPECT_FALSE(text.isEmpty());
    EXPECT_FALSE(text.contains(u"canary"_s));
    return text;
}

} // namespace velarc
