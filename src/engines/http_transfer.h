#pragma once

// One request on its way and its reply, between the event loop and the task that waits for it.

#include "base/async.h"
#include "engines/http_client.h"
#include "engines/http_connections.h"

#include <QIODevice>
#include <QNetworkReply>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

// A body that can be read once. Whoever wants to send it again is refused.
class OneWayBody final : public QIODevice
{
public:
    explicit OneWayBody(QByteArray bytes);

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override;
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QByteArray m_bytes;
    qint64 m_read = 0;
};

// Throws HttpTransportError for a request that must not be sent as it stands.
void refuseUnsendable(const HttpRequest &request);

// Main thread only; the token may be stopped on any. Breaks the transfer off when it goes.
class HttpTransfer : public std::enable_shared_from_this<HttpTransfer>
{
public:
    HttpTransfer(HttpLimits limits, std::shared_ptr<HttpConnections> connections);
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer &) = delete;
    HttpTransfer &operator=(const HttpTransfer &) = delete;

    // Once. A stopped token ends the transfer as cancelled, from the event loop.
    void start(HttpRequest request, const std::stop_token &stop);

    // Fires from the event loop, inside no signal of the network.
    [[nodiscard]] Wakeup &ended() { return m_ended; }

    // Breaks the transfer off here and now; it ends as cancelled, from the event loop.
    void drop();

    // What came, once it ended. Errors: as HttpTransport::post().
    [[nodiscard]] HttpReply takeReply();

private:
    enum class End
    {
        None,
        Finished,
        TooLong,
        Cancelled
    };

    HttpLimits m_limits;
    std::shared_ptr<HttpConnections> m_connections;
    std::unique_ptr<OneWayBody> m_body;
    std::unique_ptr<QNetworkReply> m_reply;
    QByteArray m_secretValue;
    QByteArray m_received;
    Wakeup m_ended;
    End m_end = End::None;
    bool m_hasReply = false;
    std::optional<std::stop_callback<std::function<void()>>> m_onStop;

    void receive();
    void finish();
    void release();
    void endLater(End end);
    void cancelLater();
    [[nodiscard]] bool isWhole(int status) const;
    [[nodiscard]] HttpReply finishedReply();
};

} // namespace velarc
