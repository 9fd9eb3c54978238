#pragma once

// An HTTPS server that says what a test tells it to, in every wrong way that a server can have.

#include "support/test_certificates.h"

#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QSslSocket;

namespace velarc {

using HeaderList = QList<std::pair<QByteArray, QByteArray>>;

struct ReceivedRequest
{
    QByteArray method;
    QByteArray path;
    HeaderList headers;
    QByteArray body; // as much as came
    bool isWhole = false;

    // Every value that came under the name, in upper or lower case.
    [[nodiscard]] QList<QByteArray> values(const QByteArray &name) const;
};

// How far a connection gets before the server does its part.
enum class Stage
{
    Accepted,
    Encrypted,
    HeadRead,
    RequestRead
};

// What becomes of the connection then.
enum class Ending
{
    Open,
    Close,
    Reset
};

// Nothing to send on a connection that stays open is a stall: the server does no more on it.
struct ScriptedAnswer
{
    QByteArray bytes;
    Ending ending = Ending::Open;
    Stage stage = Stage::RequestRead;
};

// A whole reply with a Content-Length.
[[nodiscard]] ScriptedAnswer reply(
    int status, const QByteArray &body = {}, const HeaderList &headers = {});
// A reply in chunks.
[[nodiscard]] ScriptedAnswer chunkedReply(const QList<QByteArray> &chunks);
// A reply whose body is `body`, compressed.
[[nodiscard]] ScriptedAnswer gzipReply(const QByteArray &body);
// No answer, and that ending at that stage.
[[nodiscard]] ScriptedAnswer endingAt(Stage stage, Ending ending);

// Listens on 127.0.0.1 from its birth. Lives on the event loop of the thread that made it, and is
// asked on that thread alone.
class ScriptedHttpsServer : public QTcpServer
{
public:
    using Answerer = std::function<ScriptedAnswer(const ReceivedRequest &)>;

    // On any free port unless one is named.
    explicit ScriptedHttpsServer(ServerIdentity identity, quint16 port = 0);
    ~ScriptedHttpsServer() override;

    [[nodiscard]] QUrl url(const QString &path) const;

    // The answer to the next request that has none yet, or to the next connection where it acts
    // before a request. Answers are used up in their order.
    void answer(ScriptedAnswer answer);
    void forgetAnswers() { m_answers.clear(); }
    // Asked when those are used up. Without one, a request is answered with status 500.
    void answerAlways(Answerer answerer);

    // Sends bytes on the connection that got the latest request.
    void sendMore(const QByteArray &bytes);

    // Requests whose head came, whole or not.
    [[nodiscard]] QList<ReceivedRequest> requests() const;
    [[nodiscard]] int connectionsAccepted() const { return m_accepted; }
    [[nodiscard]] int connectionsOpen() const;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    class Connection;

    ServerIdentity m_identity;
    std::vector<ScriptedAnswer> m_answers;
    Answerer m_answerer;
    std::vector<std::unique_ptr<Connection>> m_connections;
    std::vector<std::shared_ptr<ReceivedRequest>> m_requests;
    Connection *m_latest = nullptr;
    int m_accepted = 0;

    [[nodiscard]] std::optional<ScriptedAnswer> answerAtStage(Stage stage);
    [[nodiscard]] ScriptedAnswer answerTo(const ReceivedRequest &request);
};

} // namespace velarc
