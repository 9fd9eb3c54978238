#include "support/scripted_https_server.h"

#include <QHostAddress>
#include <QSslConfiguration>
#include <QSslSocket>

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

constexpr const char *kLineEnd = "\r\n";
constexpr QByteArrayView kHeadEnd = "\r\n\r\n";

QByteArray head(int status, const HeaderList &headers)
{
    QByteArray result = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const auto &[name, value] : headers) {
        result += name + ": " + value + "\r\n";
    }
    return result + "\r\n";
}

QByteArray littleEndian(quint32 number)
{
    constexpr int kBitsPerByte = 8;
    QByteArray result;
    for (int byte = 0; byte < 4; ++byte) {
        result.append(static_cast<char>(number >> (kBitsPerByte * byte)));
    }
    return result;
}

quint32 crc32(const QByteArray &bytes)
{
    constexpr quint32 kPolynomial = 0xEDB88320;
    quint32 crc = ~0U;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? kPolynomial : 0);
        }
    }
    return ~crc;
}

// Around the raw stream, qCompress() writes a length of four bytes, a header of two and a checksum
// of four.
QByteArray gzip(const QByteArray &bytes)
{
    constexpr std::array<char, 10> kHeader{'\x1f', '\x8b', '\x08', 0, 0, 0, 0, 0, 0, '\xff'};
    const QByteArray framed = qCompress(bytes);
    return QByteArray(kHeader.data(), kHeader.size()) + framed.sliced(6, framed.size() - 10)
        + littleEndian(crc32(bytes)) + littleEndian(static_cast<quint32>(bytes.size()));
}

ReceivedRequest parseHead(const QByteArray &head)
{
    ReceivedRequest request;
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.takeFirst().split(' ');
    request.method = words.value(0);
    request.path = words.value(1);
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.emplace_back(line.left(colon), line.mid(colon + 1).trimmed());
    }
    return request;
}

} // namespace

QList<QByteArray> ReceivedRequest::values(const QByteArray &name) const
{
    QList<QByteArray> result;
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            result.append(value);
        }
    }
    return result;
}

ScriptedAnswer reply(int status, const QByteArray &body, const HeaderList &headers)
{
    HeaderList all = headers;
    all.emplace_back("Content-Length", QByteArray::number(body.size()));
    return {.bytes = head(status, all) + body};
}

ScriptedAnswer chunkedReply(const QList<QByteArray> &chunks)
{
    QByteArray bytes = head(200, {{"Transfer-Encoding", "chunked"}});
    for (const QByteArray &chunk : chunks) {
        bytes += QByteArray::number(chunk.size(), 16) + kLineEnd + chunk + kLineEnd;
    }
    return {.bytes = bytes + "0\r\n\r\n"};
}

ScriptedAnswer gzipReply(const QByteArray &body)
{
    return reply(200, gzip(body), {{"Content-Encoding", "gzip"}});
}

ScriptedAnswer endingAt(Stage stage, Ending ending)
{
    return {.bytes = {}, .ending = ending, .stage = stage};
}

// One connection, from the handshake on; requests follow each other on it.
class ScriptedHttpsServer::Connection
{
public:
    Connection(ScriptedHttpsServer &server, qintptr descriptor);
    ~Connection() { m_socket.disconnect(); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void send(const QByteArray &bytes) { m_socket.write(bytes); }
    [[nodiscard]] bool isOpen() const
    {
        return m_socket.state() == QAbstractSocket::ConnectedState;
    }

private:
    ScriptedHttpsServer &m_server;
    QSslSocket m_socket;
    QByteArray m_unread;
    std::shared_ptr<ReceivedRequest> m_request;
    bool m_isOver = false;

    void encrypt();
    void read();
    bool readHead();
    bool readBody();
    bool actAtStage(Stage stage);
    void act(const ScriptedAnswer &answer);
    void reset();
};

ScriptedHttpsServer::Connection::Connection(ScriptedHttpsServer &server, qintptr descriptor)
    : m_server(server)
{
    QObject::connect(
        &m_socket, &QSslSocket::encrypted, &m_socket, [this] { actAtStage(Stage::Encrypted); });
    QObject::connect(&m_socket, &QSslSocket::readyRead, &m_socket, [this] { read(); });
    m_socket.setSocketDescriptor(descriptor);
    if (!actAtStage(Stage::Accepted)) {
        encrypt();
    }
}

void ScriptedHttpsServer::Connection::encrypt()
{
    QSslConfiguration configuration = m_socket.sslConfiguration();
    configuration.setLocalCertificate(m_server.m_identity.certificate);
    configuration.setPrivateKey(m_server.m_identity.key);
    // A client that asks for HTTP/2 gets it, and its first words are then a request of the method
    // PRI.
    configuration.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    m_socket.setSslConfiguration(configuration);
    m_socket.startServerEncryption();
}

void ScriptedHttpsServer::Connection::read()
{
    m_unread += m_socket.readAll();
    while (!m_isOver && (m_request || readHead()) && readBody()) {
        const std::shared_ptr<ReceivedRequest> request = std::exchange(m_request, nullptr);
        act(m_server.answerTo(*request));
    }
}

// Whether a head came and the connection goes on.
bool ScriptedHttpsServer::Connection::readHead()
{
    const qsizetype end = m_unread.indexOf(kHeadEnd);
    if (end < 0) {
        return false;
    }
    m_request = std::make_shared<ReceivedRequest>(parseHead(m_unread.left(end)));
    m_unread.remove(0, end + kHeadEnd.size());
    m_server.m_requests.push_back(m_request);
    m_server.m_latest = this;
    return !actAtStage(Stage::HeadRead);
}

// Whether the body is whole.
bool ScriptedHttpsServer::Connection::readBody()
{
    const qsizetype length = m_request->values("Content-Length").value(0).toLongLong();
    const qsizetype count = std::min(length - m_request->body.size(), m_unread.size());
    m_request->body += m_unread.left(count);
    m_unread.remove(0, count);
    m_request->isWhole = m_request->body.size() == length;
    return m_request->isWhole;
}

bool ScriptedHttpsServer::Connection::actAtStage(Stage stage)
{
    const std::optional<ScriptedAnswer> answer = m_server.answerAtStage(stage);
    if (answer) {
        m_isOver = true;
        act(*answer);
    }
    return answer.has_value();
}

void ScriptedHttpsServer::Connection::act(const ScriptedAnswer &answer)
{
    m_socket.write(answer.bytes);
    switch (answer.ending) {
    case Ending::Open:
        m_isOver = m_isOver || answer.bytes.isEmpty();
        return;
    case Ending::Close:
        m_isOver = true;
        m_socket.disconnectFromHost();
        return;
    case Ending::Reset:
        m_isOver = true;
        reset();
        return;
    }
}

void ScriptedHttpsServer::Connection::reset()
{
    m_socket.flush();
    // Closing without lingering sends a reset instead of an end.
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(
        static_cast<int>(m_socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    m_socket.abort();
}

ScriptedHttpsServer::ScriptedHttpsServer(ServerIdentity identity, quint16 port)
    : m_identity(std::move(identity))
{
    if (!listen(QHostAddress::LocalHost, port)) {
        throw std::runtime_error("the scripted server cannot listen");
    }
}

ScriptedHttpsServer::~ScriptedHttpsServer() = default;

QUrl ScriptedHttpsServer::url(const QString &path) const
{
    return QUrl(u"https://127.0.0.1:%1%2"_s.arg(serverPort()).arg(path));
}

void ScriptedHttpsServer::answer(ScriptedAnswer answer)
{
    m_answers.push_back(std::move(answer));
}

void ScriptedHttpsServer::answerAlways(Answerer answerer)
{
    m_answerer = std::move(answerer);
}

void ScriptedHttpsServer::sendMore(const QByteArray &bytes)
{
    if (m_latest != nullptr) {
        m_latest->send(bytes);
    }
}

QList<ReceivedRequest> ScriptedHttpsServer::requests() const
{
    QList<ReceivedRequest> result;
    for (const auto &request : m_requests) {
        result.append(*request);
    }
    return result;
}

int ScriptedHttpsServer::connectionsOpen() const
{
    return static_cast<int>(std::count_if(m_connections.begin(), m_connections.end(),
        [](const auto &connection) { return connection->isOpen(); }));
}

void ScriptedHttpsServer::incomingConnection(qintptr descriptor)
{
    ++m_accepted;
    m_connections.push_back(std::make_unique<Connection>(*this, descriptor));
}

std::optional<ScriptedAnswer> ScriptedHttpsServer::answerAtStage(Stage stage)
{
    if (m_answers.empty() || m_answers.front().stage != stage) {
        return std::nullopt;
    }
    const ScriptedAnswer answer = std::move(m_answers.front());
    m_answers.erase(m_answers.begin());
    return answer;
}

ScriptedAnswer ScriptedHttpsServer::answerTo(const ReceivedRequest &request)
{
    if (auto scripted = answerAtStage(Stage::RequestRead)) {
        return *std::move(scripted);
    }
    return m_answerer ? m_answerer(request) : reply(500, "unscripted request");
}

} // namespace velarc
