#include "http_client_fixture.h"

#include <QTimer>

#include <map>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace velarc {

namespace {

// With the name in the very letters that were given.
bool hasHeader(const ReceivedRequest &request, const QByteArray &name, const QByteArray &value)
{
    return request.headers.contains(std::pair(name, value));
}

TEST_F(HttpClientTest, headersAndBodyArriveExactlyAsGiven)
{
    server.answer(reply(200));
    HttpRequest sent = request("{\"a\": \"\xc3\xa9\"}", u"/v1/responses?x=1"_s);
    sent.headers.emplace_back("anthropic-Version", "2023-06-01");
    send(sent);
    ASSERT_EQ(server.requests().size(), 1);
    const ReceivedRequest received = server.requests().first();
    EXPECT_EQ(received.method, "POST");
    EXPECT_EQ(received.path, "/v1/responses?x=1");
    EXPECT_TRUE(hasHeader(received, "Content-Type", "application/json"));
    EXPECT_TRUE(hasHeader(received, "anthropic-Version", "2023-06-01"));
    EXPECT_EQ(received.values("Content-Type").size(), 1);
    EXPECT_EQ(received.body, sent.body);
}

TEST_F(HttpClientTest, contentLengthIsTheBodysSizeInBytes)
{
    server.answer(reply(200));
    send(request("\xc3\xa9\xc3\xa9"));
    EXPECT_EQ(server.requests().first().values("Content-Length"), QList<QByteArray>{"4"});
    EXPECT_TRUE(server.requests().first().values("Transfer-Encoding").isEmpty());
}

TEST_F(HttpClientTest, keyIsSentExactlyOnceBehindItsPrefix)
{
    server.answer(reply(200));
    send();
    QByteArray everything;
    const ReceivedRequest received = server.requests().first();
    for (const auto &[name, value] : received.headers) {
        everything += name + ": " + value + "\n";
    }
    everything += received.path + received.body;
    EXPECT_EQ(everything.count("Authorization: Bearer canary-key\n"), 1);
    EXPECT_EQ(everything.count("canary"), 1);
}

TEST_F(HttpClientTest, requestWithoutASecretCarriesNoAuthorization)
{
    server.answer(reply(200));
    HttpRequest sent = request();
    sent.secretHeader.reset();
    send(sent);
    EXPECT_TRUE(server.requests().first().values("Authorization").isEmpty());
}

TEST_F(HttpClientTest, emptyBodyIsSentAsOneOfNoBytes)
{
    server.answer(reply(200, "fine"));
    EXPECT_EQ(send(request("")).reply->body, "fine");
    EXPECT_EQ(server.requests().first().values("Content-Length"), QList<QByteArray>{"0"});
}

TEST_F(HttpClientTest, largeBodyArrivesWhole)
{
    constexpr int kSevenMebibytes = 7 * 1024 * 1024;
    QByteArray body(kSevenMebibytes, Qt::Uninitialized);
    for (qsizetype index = 0; index < body.size(); ++index) {
        body[index] = static_cast<char>(index * index >> 3);
    }
    server.answer(reply(200));
    send(request(body));
    EXPECT_TRUE(server.requests().first().body == body);
}

TEST_F(HttpClientTest, replyHasItsStatusHeadersAndBody)
{
    server.answer(reply(201, "made", {{"X-Request-ID", "req_1"}}));
    const Outcome outcome = send();
    ASSERT_TRUE(outcome.reply);
    EXPECT_EQ(outcome.reply->status, 201);
    EXPECT_EQ(outcome.reply->body, "made");
    EXPECT_EQ(outcome.reply->header("x-request-id"), "req_1");
    EXPECT_EQ(outcome.reply->header("X-REQUEST-ID"), "req_1");
    EXPECT_EQ(outcome.reply->header("x-request"), std::nullopt);
}

TEST_F(HttpClientTest, replyWithoutABodyIsOne)
{
    server.answer(reply(200));
    EXPECT_EQ(send().reply->body, QByteArray());
    server.answer({.bytes = "HTTP/1.1 204 No Content\r\n\r\n"});
    EXPECT_EQ(send().reply->status, 204);
    server.answer({.bytes = "HTTP/1.1 304 Not Modified\r\n\r\n"});
    EXPECT_EQ(send().reply->status, 304);
}

TEST_F(HttpClientTest, everyStatusFrom200OnIsAReplyWithItsBody)
{
    for (const int status : {200, 202, 299, 300, 399, 400, 401, 403, 404, 405, 407, 408, 409, 410,
             418, 422, 429, 499, 500, 501, 502, 503, 504, 529, 599}) {
        SCOPED_TRACE(status);
        server.answer(reply(status, "why", {{"Content-Type", "text/plain"}}));
        const Outcome outcome = send();
        ASSERT_TRUE(outcome.reply);
        EXPECT_EQ(outcome.reply->status, status);
        EXPECT_EQ(outcome.reply->body, "why");
        EXPECT_EQ(outcome.reply->header("content-type"), "text/plain");
    }
}

TEST_F(HttpClientTest, redirectIsAReplyAndIsNotFollowed)
{
    for (const int status : {301, 302, 303, 307, 308}) {
        SCOPED_TRACE(status);
        const qsizetype before = server.requests().size();
        const QByteArray target = server.url(u"/elsewhere"_s).toEncoded();
        server.answer(reply(status, "moved", {{"Location", target}}));
        const Outcome outcome = send();
        ASSERT_TRUE(outcome.reply);
        EXPECT_EQ(outcome.reply->status, status);
        EXPECT_EQ(outcome.reply->body, "moved");
        EXPECT_FALSE(waitUntil([&] { return server.requests().size() > before + 1; }, 50ms));
    }
}

TEST_F(HttpClientTest, challengeForAPasswordIsNotAnsweredAndKeepsItsBody)
{
    for (const char *challenge : {"Basic realm=\"x\"", "Bearer", "NTLM", "Negotiate",
             "Digest realm=\"x\", nonce=\"abc\", qop=\"auth\""}) {
        SCOPED_TRACE(challenge);
        const qsizetype before = server.requests().size();
        server.answer(reply(401, "bad key", {{"WWW-Authenticate", challenge}}));
        const Outcome outcome = send();
        ASSERT_TRUE(outcome.reply);
        EXPECT_EQ(outcome.reply->status, 401);
        EXPECT_EQ(outcome.reply->body, "bad key");
        EXPECT_EQ(server.requests().size(), before + 1);
    }
}

TEST_F(HttpClientTest, chunkedReplyArrivesJoined)
{
    server.answer(chunkedReply({"one ", "two ", "three"}));
    EXPECT_EQ(send().reply->body, "one two three");
}

TEST_F(HttpClientTest, compressedReplyArrivesDecoded)
{
    const QByteArray text = QByteArray("{\"text\": \"again and again\"}").repeated(20'000);
    server.answer(gzipReply(text));
    EXPECT_TRUE(send().reply->body == text);
}

TEST_F(HttpClientTest, replyThatEndsWithTheConnectionIsWhole)
{
    server.answer({.bytes = "HTTP/1.1 200 OK\r\n\r\nto the end", .ending = Ending::Close});
    EXPECT_EQ(send().reply->body, "to the end");
}

TEST_F(HttpClientTest, largeReplyArrivesWhole)
{
    const QByteArray body = QByteArray("0123456789").repeated(500'000);
    server.answer(reply(200, body));
    EXPECT_TRUE(send().reply->body == body);
}

TEST_F(HttpClientTest, continueIsPassedOverForTheFinalReply)
{
    server.answer({.bytes = "HTTP/1.1 100 Continue\r\n\r\n" + reply(200, "final").bytes});
    EXPECT_EQ(send().reply->body, "final");
}

TEST_F(HttpClientTest, cookieIsNotSentBack)
{
    server.answer(reply(200, "", {{"Set-Cookie", "session=1; Path=/; Secure"}}));
    send();
    server.answer(reply(200));
    send();
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_TRUE(server.requests().last().values("Cookie").isEmpty());
}

TEST_F(HttpClientTest, sameReplyIsAskedForAgainAndNotKept)
{
    const HeaderList cacheable{{"Cache-Control", "max-age=3600"}, {"ETag", "\"1\""}};
    server.answer(reply(200, "first", cacheable));
    server.answer(reply(200, "second", cacheable));
    EXPECT_EQ(send().reply->body, "first");
    EXPECT_EQ(send().reply->body, "second");
    EXPECT_TRUE(server.requests().last().values("If-None-Match").isEmpty());
}

TEST_F(HttpClientTest, concurrentRequestsEachGetTheirOwnReply)
{
    server.answerAlways([](const ReceivedRequest &received) { return reply(200, received.body); });
    std::map<int, std::shared_ptr<Outcome>> outcomes;
    for (int number = 0; number < 20; ++number) {
        outcomes[number] = begin(request(QByteArray::number(number)));
    }
    for (const auto &[number, outcome] : outcomes) {
        ASSERT_TRUE(waitUntil([&outcome = outcome] { return outcome->isDone(); }));
        ASSERT_TRUE(outcome->reply);
        EXPECT_EQ(outcome->reply->body, QByteArray::number(number));
    }
    EXPECT_EQ(server.requests().size(), 20);
}

TEST_F(HttpClientTest, requestDoesNotWaitForOthersThatHaveNoReplyYet)
{
    server.answerAlways([](const ReceivedRequest &) { return ScriptedAnswer(); });
    for (int number = 0; number < 15; ++number) {
        begin(request());
    }
    EXPECT_TRUE(waitUntil([&] { return server.requests().size() == 15; }));
}

TEST_F(HttpClientTest, connectionIsUsedAgainForTheNextRequest)
{
    server.answerAlways([](const ReceivedRequest &) { return reply(200); });
    send();
    send();
    EXPECT_EQ(server.connectionsAccepted(), 1);
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(HttpClientTest, connectionThatRestedTooLongIsNotUsedAgain)
{
    client = std::make_unique<HttpClient>(HttpLimits{.rest = 0ms});
    server.answerAlways([](const ReceivedRequest &) { return reply(200); });
    send();
    send();
    EXPECT_EQ(server.connectionsAccepted(), 2);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsOpen() == 1; }));
}

TEST_F(HttpClientTest, replyThatKeepsComingIsNotTimedOut)
{
    client = std::make_unique<HttpClient>(HttpLimits{.silence = 1s});
    server.answer({.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n"});
    const auto outcome = begin(request());
    QTimer drip;
    QObject::connect(&drip, &QTimer::timeout, &drip, [&] {
        if (!server.requests().isEmpty()) {
            server.sendMore("x");
        }
    });
    drip.start(160ms);
    EXPECT_TRUE(waitUntil([&] { return outcome->isDone(); }));
    ASSERT_TRUE(outcome->reply);
    EXPECT_EQ(outcome->reply->body, "xxxxxxxx");
}

} // namespace

} // namespace velarc
