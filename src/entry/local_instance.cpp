#include "entry/local_instance.h"

#include "base/json.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kLongestLine = 1024 * 1024;
constexpr std::chrono::milliseconds kSilentPeerTime = 5s;
constexpr std::chrono::milliseconds kAnswerTime = 25s;
constexpr QByteArrayView kTaken = "taken\n";

QString runtimePath(const QString &name)
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir(QDir(folder).isAbsolute() && QDir(folder).exists()
            ? folder
            : QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
        .filePath(name);
}

QString lockPath()
{
    return runtimePath(u"velarc.lock"_s);
}

QString socketPath()
{
    return runtimePath(u"velarc.socket"_s);
}

// A socket that is closed when it goes.
class Peer
{
public:
    Peer() : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
    ~Peer()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Peer(const Peer &) = delete;
    Peer &operator=(const Peer &) = delete;

    [[nodiscard]] bool connect(const QString &path) const
    {
        const QByteArray name = QFile::encodeName(path);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
            return false;
        }
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        return ::connect(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address)
            == 0;
    }

    [[nodiscard]] bool send(QByteArrayView bytes) const
    {
        while (!bytes.isEmpty()) {
            const ssize_t sent = ::send(
                m_descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            bytes = bytes.sliced(sent);
        }
        return true;
    }

    // What the answer tells.
    [[nodiscard]] HandOver answer() const
    {
        QByteArray came;
        while (came.size() < kTaken.size()) {
            char buffer[16];
            pollfd end{m_descriptor, POLLIN, 0};
            if (::poll(&end, 1, static_cast<int>(kAnswerTime.count())) <= 0) {
                return HandOver::NotAnswered;
            }
            const ssize_t count = ::recv(m_descriptor, buffer, sizeof buffer, 0);
            if (count <= 0) {
                return HandOver::NobodyThere;
            }
            came.append(buffer, count);
        }
        return came == kTaken ? HandOver::Done : HandOver::NotAnswered;
    }

private:
    int m_descriptor;
};

} // namespace

bool hasLocalWindow()
{
    qint64 process = 0;
    QString host;
    QString program;
    const QLockFile lock(lockPath());
    return lock.getLockInfo(&process, &host, &program)
        && QFile::exists(u"/proc/%1/exe"_s.arg(process)); // one that has ended has none any more
}

QByteArray encodeStartRequest(const StartRequest &request)
{
    Json addresses = Json::array();
    for (const QString &address : request.addresses) {
        addresses.push_back(jsonFromText(address));
    }
    const Json object{{"addresses", addresses},
        {"activationToken", jsonFromText(request.context.activationToken)},
        {"startupId", jsonFromText(request.context.startupId)}};
    return writeJson(object) + '\n';
}

StartRequest decodeStartRequest(QByteArrayView line)
{
    const Json document = parseJson(line);
    const ObjectReader object(document);
    StartRequest request;
    request.addresses = object.list("addresses", decodeText).value_or(QList<QString>());
    request.context.activationToken = object.text("activationToken").value_or(QString());
    request.context.startupId = object.text("startupId").value_or(QString());
    return request;
}

LocalInstance::LocalInstance(WindowRequests &requests) : m_requests(requests), m_lock(lockPath())
{
    m_lock.setStaleLockTime(0); // a lock grows stale by the end of its process alone
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            take(socket);
        }
    });
}

bool LocalInstance::claim()
{
    if (!m_lock.tryLock(0)) {
        return false;
    }
    // The socket of a process that was killed stands in the way.
    QLocalServer::removeServer(socketPath());
    m_server.listen(socketPath());
    return true;
}

void LocalInstance::take(QLocalSocket *socket)
{
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QLocalSocket::readyRead, &m_server, [this, socket] { read(socket); });
    QTimer::singleShot(kSilentPeerTime, socket, [socket] { socket->abort(); });
    read(socket); // what came before the connections were made
}

void LocalInstance::read(QLocalSocket *socket)
{
    if (!socket->canReadLine()) {
        if (socket->bytesAvailable() > kLongestLine) {
            socket->abort();
        }
        return;
    }
    try {
        const StartRequest request = decodeStartRequest(socket->readLine(kLongestLine));
        m_requests.open(request.addresses, request.context);
        socket->write(kTaken.data(), kTaken.size());
        socket->disconnectFromServer();
    } catch (const JsonError &) {
        socket->abort();
    }
}

HandOver handOverLocally(const StartRequest &request)
{
    const Peer peer;
    if (!peer.connect(socketPath()) || !peer.send(encodeStartRequest(request))) {
        return HandOver::NobodyThere;
    }
    return peer.answer();
}

} // namespace velarc
