#include "http_client_fixture.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace velarc {

namespace {

const QString kBrokenOff = u"The connection was closed before a whole reply came."_s;

constexpr QByteArrayView kHalfAReply = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf";

TEST_F(HttpClientTest, connectionEndedBeforeTheRequestIsAnErrorAndSendsNothing)
{
    for (const Stage stage : {Stage::Accepted, Stage::Encrypted}) {
        for (const Ending ending : {Ending::Close, Ending::Reset}) {
            SCOPED_TRACE(testing::Message() << "stage " << int(stage) << " ending " << int(ending));
            client = std::make_unique<HttpClient>();
            // A busy machine lets the client try again more often before it gives up.
            for (int attempt = 0; attempt < 500; ++attempt) {
                server.answer(endingAt(stage, ending));
            }
            errorOf(request(), 0);
            server.forgetAnswers();
        }
    }
}

TEST_F(HttpClientTest, connectionEndedBehindTheRequestIsAnErrorAndSendsNothingAgain)
{
    for (const Stage stage : {Stage::HeadRead, Stage::RequestRead}) {
        for (const Ending ending : {Ending::Close, Ending::Reset}) {
            SCOPED_TRACE(testing::Message() << "stage " << int(stage) << " ending " << int(ending));
            const qsizetype before = server.requests().size();
            server.answer(endingAt(stage, ending));
            EXPECT_EQ(errorOf(request(), before + 1), kBrokenOff);
            EXPECT_EQ(server.requests().size(), before + 1);
        }
    }
}

TEST_F(HttpClientTest, connectionEndedDuringALongUploadIsAnErrorAndSendsNothingAgain)
{
    for (const Ending ending : {Ending::Close, Ending::Reset}) {
        const qsizetype before = server.requests().size();
        server.answer(endingAt(Stage::HeadRead, ending));
        EXPECT_EQ(errorOf(request(QByteArray(4'000'000, 'x')), before + 1), kBrokenOff);
    }
}

TEST_F(HttpClientTest, connectionEndedDuringTheReplyIsAnErrorAndSendsNothingAgain)
{
    const QByteArray chunk = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n";
    const QByteArray failure = "HTTP/1.1 500 No\r\nContent-Length: 10\r\n\r\nhalf";
    const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Le";
    const QByteArray redirect = "HTTP/1.1 307 Away\r\nContent-Length: 10\r\n\r\nhalf";
    for (const QByteArray &bytes : {kHalfAReply.toByteArray(), chunk, failure, head}) {
        for (const Ending ending : {Ending::Close, Ending::Reset}) {
            SCOPED_TRACE(bytes.constData());
            const qsizetype before = server.requests().size();
            server.answer({.bytes = bytes, .ending = ending});
            EXPECT_EQ(errorOf(request(), before + 1), kBrokenOff);
        }
    }
}

TEST_F(HttpClientTest, connectionClosedBetweenRequestsIsReplacedInSilence)
{
    ScriptedAnswer last = reply(200, "first");
    last.ending = Ending::Close;
    server.answer(last);
    server.answer(reply(200, "second"));
    EXPECT_EQ(send().reply->body, "first");
    ASSERT_TRUE(waitUntil([&] { return server.connectionsOpen() == 0; }));
    EXPECT_EQ(send().reply->body, "second");
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(HttpClientTest, bytesThatAreNoHttpAreAnError)
{
    for (const char *bytes : {"hello", "SSH-2.0-Server\r\n", "<html>no</html>\r\n\r\n"}) {
        for (const Ending ending : {Ending::Close, Ending::Reset}) {
            SCOPED_TRACE(bytes);
            const qsizetype before = server.requests().size();
            server.answer({.bytes = bytes, .ending = ending});
            EXPECT_EQ(errorOf(request(), before + 1), kBrokenOff);
        }
    }
}

TEST_F(HttpClientTest, statusLineThatMakesNoSenseIsNoHttp)
{
    server.answer({.bytes = "HTTP/1.1 000 What\r\n\r\n", .ending = Ending::Close});
    EXPECT_TRUE(send().isNotHttp);
}

TEST_F(HttpClientTest, interimReplyIsNeverTakenForTheFinalOne)
{
    for (const int status : {101, 102, 103, 199}) {
        SCOPED_TRACE(status);
        const qsizetype before = server.requests().size();
        const QByteArray interim = "HTTP/1.1 " + QByteArray::number(status) + " Wait\r\n\r\n";
        server.answer({.bytes = interim + reply(200, "final").bytes});
        EXPECT_EQ(errorOf(request(), before + 1),
            u"The server sent an interim reply (status %1) that cannot be followed."_s.arg(status));
    }
}

TEST_F(HttpClientTest, lateReplyBehindAnInterimOneReachesNoOtherRequest)
{
    server.answer({.bytes = "HTTP/1.1 103 Early Hints\r\n\r\n"});
    errorOf();
    server.sendMore(reply(200, "for the first").bytes);
    server.answer(reply(200, "for the second"));
    EXPECT_EQ(send().reply->body, "for the second");
    EXPECT_EQ(server.connectionsAccepted(), 2);
}

TEST_F(HttpClientTest, silenceIsTimedOutAtEveryStage)
{
    client = std::make_unique<HttpClient>(HttpLimits{.silence = 100ms});
    for (const Stage stage :
        {Stage::Accepted, Stage::Encrypted, Stage::HeadRead, Stage::RequestRead}) {
        SCOPED_TRACE(int(stage));
        const qsizetype before = server.requests().size();
        server.answer(endingAt(stage, Ending::Open));
        EXPECT_EQ(errorOf(request(), before + 1), u"The request timed out."_s);
    }
    EXPECT_TRUE(waitUntil([&] { return server.connectionsOpen() == 0; }));
}

TEST_F(HttpClientTest, silenceInTheMiddleOfAReplyIsTimedOut)
{
    client = std::make_unique<HttpClient>(HttpLimits{.silence = 100ms});
    server.answer({.bytes = kHalfAReply.toByteArray()});
    EXPECT_EQ(errorOf(), u"The request timed out."_s);
}

TEST_F(HttpClientTest, replyUpToTheLimitIsWholeAndOneByteMoreIsAnError)
{
    client = std::make_unique<HttpClient>(HttpLimits{.replyBytes = 1000});
    server.answer(reply(200, QByteArray(1000, 'x')));
    EXPECT_EQ(send().reply->body.size(), 1000);
    server.answer(reply(200, QByteArray(1001, 'x')));
    EXPECT_EQ(errorOf(request(), 2), u"The reply is longer than 1000 bytes."_s);
}

TEST_F(HttpClientTest, limitIsForTheInflatedReplyAndEndsTheTransfer)
{
    client = std::make_unique<HttpClient>(HttpLimits{.replyBytes = 1'000'000});
    server.answer(gzipReply(QByteArray(20'000'000, 'x')));
    EXPECT_EQ(errorOf(), u"The reply is longer than 1000000 bytes."_s);
    server.answer({.bytes = "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(2'000'000, 'x')});
    EXPECT_EQ(errorOf(request(), 2), u"The reply is longer than 1000000 bytes."_s);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsOpen() == 0; }));
}

TEST_F(HttpClientTest, certificateThatCannotBeTrustedIsAnErrorAndSendsNothing)
{
    const ServerIdentity identities[]{authority().selfSigned(), authority().issueExpired(),
        authority().issueForAnotherHost(), TestAuthority().issue()};
    for (const ServerIdentity &identity : identities) {
        ScriptedHttpsServer dubious(identity);
        HttpRequest sent = request();
        sent.url = dubious.url(u"/"_s);
        const QString text = errorOf(sent, 0);
        EXPECT_TRUE(text.contains(u"SSL"_s)) << text.toStdString();
        EXPECT_GE(dubious.connectionsAccepted(), 1);
        EXPECT_TRUE(dubious.requests().isEmpty());
    }
}

TEST_F(HttpClientTest, portWhereNobodyListensIsAnError)
{
    HttpRequest sent = request();
    server.close();
    EXPECT_EQ(errorOf(sent, 0), u"Connection refused"_s);
}

TEST_F(HttpClientTest, hostThatDoesNotExistIsAnErrorThatNamesIt)
{
    HttpRequest sent = request();
    sent.url = QUrl(u"https://nowhere.invalid/"_s);
    EXPECT_TRUE(errorOf(sent, 0).contains(u"nowhere.invalid"_s));
}

TEST_F(HttpClientTest, addressThatIsNotHttpsIsRefused)
{
    HttpRequest sent = request();
    sent.url.setScheme(u"http"_s);
    EXPECT_EQ(errorOf(sent, 0), u"Only an https address can be asked."_s);
    EXPECT_EQ(server.connectionsAccepted(), 0);
}

TEST_F(HttpClientTest, headerThatWouldBeginAnotherIsRefused)
{
    for (const char *value : {"a\r\nX: b", "a\nb", "a\rb"}) {
        HttpRequest sent = request();
        sent.headers.emplace_back("X-Note", value);
        EXPECT_EQ(errorOf(sent, 0), u"A header holds a character that cannot be sent."_s);
    }
    HttpRequest sent = request();
    sent.headers.emplace_back("X Note", "fine");
    EXPECT_EQ(errorOf(sent, 0), u"A header holds a character that cannot be sent."_s);
    EXPECT_EQ(server.connectionsAccepted(), 0);
}

TEST_F(HttpClientTest, keyOfTwoLinesIsRefused)
{
    HttpRequest sent = request();
    sent.secretHeader->value = Secret("canary\r\nX-Other: 1");
    EXPECT_EQ(errorOf(sent, 0), u"The API key holds a character that cannot be sent."_s);
}

TEST_F(HttpClientTest, proxyOfTheSystemIsAskedForATunnelAndSeesNoKey)
{
    QTcpServer proxy;
    ASSERT_TRUE(proxy.listen(QHostAddress::LocalHost));
    QByteArray seen;
    QObject::connect(&proxy, &QTcpServer::newConnection, &proxy, [&] {
        QTcpSocket *socket = proxy.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [&seen, socket] {
            seen += socket->readAll();
            if (seen.contains("\r\n\r\n")) {
                socket->write("HTTP/1.1 403 No\r\nContent-Length: 0\r\n\r\n");
            }
        });
    });
    const ScopedVariable variable(
        "https_proxy", "http://127.0.0.1:" + std::to_string(proxy.serverPort()));
    HttpRequest sent = request();
    sent.url = QUrl(u"https://provider.invalid/v1"_s);
    errorOf(sent, 0);
    EXPECT_TRUE(seen.startsWith("CONNECT provider.invalid:443 HTTP/1.1\r\n")) << seen.constData();
    EXPECT_FALSE(seen.contains("canary"));
}

TEST_F(HttpClientTest, stopBeforeTheRequestSendsNothing)
{
    stop.request_stop();
    EXPECT_TRUE(send().isCancelled);
    EXPECT_EQ(server.connectionsAccepted(), 0);
}

TEST_F(HttpClientTest, stopRightBehindTheCallSendsNothing)
{
    const auto outcome = begin(request());
    stop.request_stop();
    EXPECT_FALSE(outcome->isDone());
    EXPECT_TRUE(waitUntil([&] { return outcome->isDone(); }));
    EXPECT_TRUE(outcome->isCancelled);
    EXPECT_FALSE(waitUntil([&] { return server.connectionsAccepted() > 0; }, 50ms));
}

class StoppedHttpRequest : public HttpClientTest
{
protected:
    // Stops the request and sees it end as cancelled, from the event loop, and the connection go.
    void stopAndWait(const Outcome &outcome)
    {
        EXPECT_EQ(server.connectionsOpen(), 1);
        stop.request_stop();
        EXPECT_FALSE(outcome.isDone());
        EXPECT_TRUE(waitUntil([&] { return outcome.isDone(); }));
        EXPECT_TRUE(outcome.isCancelled);
        EXPECT_TRUE(waitUntil([&] { return server.connectionsOpen() == 0; }));
        EXPECT_LE(server.requests().size(), 1);
    }
};

TEST_F(StoppedHttpRequest, goesWhileItConnects)
{
    server.answer(endingAt(Stage::Accepted, Ending::Open));
    const auto outcome = begin(request());
    ASSERT_TRUE(waitUntil([&] { return server.connectionsAccepted() == 1; }));
    stopAndWait(*outcome);
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(StoppedHttpRequest, goesWhileItUploads)
{
    const auto outcome = begin(request(QByteArray(50'000'000, 'x')));
    ASSERT_TRUE(waitUntil([&] { return !server.requests().isEmpty(); }));
    stopAndWait(*outcome);
    EXPECT_FALSE(server.requests().first().isWhole);
}

TEST_F(StoppedHttpRequest, goesWhileItWaitsForTheReply)
{
    server.answer(endingAt(Stage::RequestRead, Ending::Open));
    const auto outcome = begin(request());
    ASSERT_TRUE(waitUntil(
        [&] { return !server.requests().isEmpty() && server.requests().first().isWhole; }));
    stopAndWait(*outcome);
}

TEST_F(StoppedHttpRequest, goesInTheMiddleOfTheReply)
{
    server.answer({.bytes = kHalfAReply.toByteArray()});
    const auto outcome = begin(request());
    ASSERT_TRUE(waitUntil(
        [&] { return !server.requests().isEmpty() && server.requests().first().isWhole; }));
    EXPECT_FALSE(waitUntil([&] { return outcome->isDone(); }, 50ms));
    stopAndWait(*outcome);
}

TEST_F(HttpClientTest, stopBehindTheReplyChangesNothing)
{
    server.answer(reply(200, "done"));
    const Outcome outcome = send();
    stop.request_stop();
    EXPECT_EQ(outcome.reply->body, "done");
    stop = std::stop_source();
    server.answer(reply(200, "more"));
    EXPECT_EQ(send().reply->body, "more");
}

TEST_F(HttpClientTest, stopOfOneRequestLeavesTheOthersAlone)
{
    server.answerAlways([](const ReceivedRequest &received) {
        return received.body == "stall" ? ScriptedAnswer() : reply(200, received.body);
    });
    const auto stopped = begin(request("stall"));
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 1; }));
    std::stop_source first = std::exchange(stop, std::stop_source());
    const auto other = begin(request("other"));
    first.request_stop();
    EXPECT_TRUE(waitUntil([&] { return stopped->isDone() && other->isDone(); }));
    EXPECT_TRUE(stopped->isCancelled);
    EXPECT_EQ(other->reply->body, "other");
}

TEST_F(HttpClientTest, destroyingTheClientBreaksRunningRequestsOff)
{
    server.answerAlways([](const ReceivedRequest &) { return ScriptedAnswer(); });
    const auto first = begin(request());
    const auto second = begin(request(QByteArray(20'000'000, 'x')));
    ASSERT_TRUE(waitUntil([&] { return server.requests().size() == 2; }));
    client.reset();
    EXPECT_FALSE(first->isDone());
    EXPECT_TRUE(waitUntil([&] { return first->isDone() && second->isDone(); }));
    EXPECT_TRUE(first->isCancelled);
    EXPECT_TRUE(second->isCancelled);
    EXPECT_TRUE(waitUntil([&] { return server.connectionsOpen() == 0; }));
}

TEST_F(HttpClientTest, destroyingTheClientBeforeItConnectsSendsNothing)
{
    const auto outcome = begin(request());
    client.reset();
    EXPECT_TRUE(waitUntil([&] { return outcome->isDone(); }));
    EXPECT_TRUE(outcome->isCancelled);
    EXPECT_EQ(server.connectionsAccepted(), 0);
}

} // namespace

} // namespace velarc
