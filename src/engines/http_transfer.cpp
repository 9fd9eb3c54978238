#include "engines/http_transfer.h"

#include "base/worker.h"

#include <QNetworkRequest>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

struct AttributeValue
{
    QNetworkRequest::Attribute attribute;
    int value;
};

// Each keeps the manager from sending something twice, to someone else, or with more in it.
constexpr std::array kAttributes{
    AttributeValue{QNetworkRequest::Http2AllowedAttribute, false},
    AttributeValue{QNetworkRequest::DoNotBufferUploadDataAttribute, true},
    AttributeValue{QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy},
    AttributeValue{QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual},
    AttributeValue{QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual},
    AttributeValue{QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual},
    AttributeValue{QNetworkRequest::CacheSaveControlAttribute, false},
};

constexpr QStringView kBrokenOff = u"The connection was closed before a whole reply came.";
constexpr QStringView kTimedOut = u"The request timed out.";
constexpr QStringView kNotHttps = u"Only an https address can be asked.";
constexpr QStringView kUnsendableHeader = u"A header holds a character that cannot be sent.";
constexpr QStringView kUnsendableKey = u"The API key holds a character that cannot be sent.";
constexpr QStringView kNotHttp = u"The reply is not an HTTP response.";

// A small packet can inflate to any size: it is taken in pieces until the limit is met.
constexpr std::size_t kPieceBytes = 16 * 1024;

constexpr int kFirstInterimStatus = 100;
constexpr int kFirstFinalStatus = 200;
constexpr int kFirstFailureStatus = 400;

// A line end in a value would begin another header.
bool isSendableValue(QByteArrayView value)
{
    return std::none_of(value.begin(), value.end(),
        [](char byte) { return byte == '\r' || byte == '\n' || byte == '\0'; });
}

bool isSendableName(QByteArrayView name)
{
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](char byte) {
        return byte > ' ' && byte < '\x7f' && byte != ':';
    });
}

QNetworkRequest requestWithoutSecret(const HttpRequest &request, const HttpLimits &limits)
{
    QNetworkRequest result(request.url);
    for (const auto &[name, value] : request.headers) {
        result.setRawHeader(name, value);
    }
    result.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    for (const auto &[attribute, value] : kAttributes) {
        result.setAttribute(attribute, value);
    }
    result.setTransferTimeout(static_cast<int>(limits.silence.count()));
    result.setDecompressedSafetyCheckThreshold(-1); // limits.replyBytes bounds what is inflated
    return result;
}

// Whether the error is only the manager's name for a status of 400 or above, of a whole reply.
bool namesStatus(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::ProxyAuthenticationRequiredError
        || (error > QNetworkReply::UnknownProxyError && error != QNetworkReply::ContentReSendError
            && error != QNetworkReply::ProtocolFailure);
}

QString transportText(const QNetworkReply &reply)
{
    // Qt calls it a fault of the sender when it tried to send the body again and was refused.
    if (reply.error() == QNetworkReply::RemoteHostClosedError
        || reply.error() == QNetworkReply::ContentReSendError) {
        return kBrokenOff.toString();
    }
    // Nobody reads a reply that was cancelled for another reason.
    if (reply.error() == QNetworkReply::OperationCanceledError
        || reply.error() == QNetworkReply::TimeoutError) {
        return kTimedOut.toString();
    }
    return reply.errorString();
}

} // namespace

OneWayBody::OneWayBody(QByteArray bytes) : m_bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneWayBody::bytesAvailable() const
{
    return m_bytes.size() - m_read + QIODevice::bytesAvailable();
}

bool OneWayBody::seek(qint64 /*position*/)
{
    return false;
}

qint64 OneWayBody::readData(char *data, qint64 maxSize)
{
    const qint64 count = std::min<qint64>(maxSize, m_bytes.size() - m_read);
    std::memcpy(data, m_bytes.constData() + m_read, static_cast<std::size_t>(count));
    m_read += count;
    return count;
}

qint64 OneWayBody::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}

void refuseUnsendable(const HttpRequest &request)
{
    if (request.url.scheme() != "https"_L1) {
        throw HttpTransportError(kNotHttps.toString());
    }
    for (const auto &[name, value] : request.headers) {
        if (!isSendableName(name) || !isSendableValue(value)) {
            throw HttpTransportError(kUnsendableHeader.toString());
        }
    }
    if (const auto &secret = request.secretHeader) {
        if (!isSendableName(secret->name) || !isSendableValue(secret->prefix)) {
            throw HttpTransportError(kUnsendableHeader.toString());
        }
        if (!isSendableValue(secret->value.bytes())) {
            throw HttpTransportError(kUnsendableKey.toString());
        }
    }
}

HttpTransfer::HttpTransfer(HttpLimits limits, std::shared_ptr<HttpConnections> connections)
    : m_limits(limits), m_connections(std::move(connections))
{
    m_connections->enter();
}

HttpTransfer::~HttpTransfer()
{
    release();
}

void HttpTransfer::start(HttpRequest request, const std::stop_token &stop)
{
    QNetworkRequest outgoing = requestWithoutSecret(request, m_limits);
    m_body = std::make_unique<OneWayBody>(std::move(request.body));
    if (request.secretHeader) {
        m_secretValue = request.secretHeader->prefix;
        m_secretValue += request.secretHeader->value.bytes();
        outgoing.setRawHeader(request.secretHeader->name, m_secretValue);
    }
    m_reply.reset(m_connections->manager().post(outgoing, m_body.get()));
    QObject::connect(
        m_reply.get(), &QNetworkReply::readyRead, m_reply.get(), [this] { receive(); });
    QObject::connect(m_reply.get(), &QNetworkReply::finished, m_reply.get(), [this] { finish(); });
    m_onStop.emplace(stop, [this] { cancelLater(); });
}

void HttpTransfer::receive()
{
    std::array<char, kPieceBytes> piece{};
    while (m_end == End::None) {
        const qint64 count = m_reply->read(piece.data(), piece.size());
        if (count <= 0) {
            return;
        }
        m_received.append(piece.data(), count);
        if (m_received.size() > m_limits.replyBytes) {
            endLater(End::TooLong);
        }
    }
}

void HttpTransfer::finish()
{
    if (m_reply->isOpen()) { // a transfer that timed out is closed
        receive();
    }
    endLater(End::Finished);
}

// On whatever thread asks for the stop.
void HttpTransfer::cancelLater()
{
    postToMainThread([weak = weak_from_this()] {
        if (const auto transfer = weak.lock()) {
            transfer->m_end = End::Cancelled;
            transfer->m_ended.fire();
        }
    });
}

void HttpTransfer::drop()
{
    release();
    endLater(End::Cancelled);
}

// The task resumes and lets the reply go: not inside one of the reply's own signals.
void HttpTransfer::endLater(End end)
{
    if (m_end == End::None || end == End::Cancelled) {
        m_end = end;
    }
    postToMainThread([weak = weak_from_this()] {
        if (const auto transfer = weak.lock()) {
            transfer->m_ended.fire();
        }
    });
}

void HttpTransfer::release()
{
    if (!m_connections) {
        return;
    }
    m_onStop.reset();
    if (!m_hasReply) {
        m_connections->spoil();
    }
    m_reply.reset(); // aborts what still runs
    m_body.reset();
    wipe(m_secretValue);
    m_connections->leave();
    m_connections.reset();
}

HttpReply HttpTransfer::takeReply()
{
    switch (m_end) {
    case End::Finished:
        return finishedReply();
    case End::TooLong:
        throw HttpTransportError(u"The reply is longer than %1 bytes."_s.arg(m_limits.replyBytes));
    case End::None:
    case End::Cancelled:
        break;
    }
    throw CancellationError();
}

bool HttpTransfer::isWhole(int status) const
{
    const QNetworkReply::NetworkError error = m_reply->error();
    // The manager rewinds the body for these two though it does not follow them, and is refused
    // behind their reply.
    if (error == QNetworkReply::ContentReSendError && (status == 307 || status == 308)) {
        return true;
    }
    return error == QNetworkReply::NoError || (status >= kFirstFailureStatus && namesStatus(error));
}

HttpReply HttpTransfer::finishedReply()
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isWhole(status)) {
        throw HttpTransportError(transportText(*m_reply));
    }
    if (status < kFirstFinalStatus) {
        if (status < kFirstInterimStatus) {
            throw NotHttpError(kNotHttp.toString());
        }
        throw HttpTransportError(
            u"The server sent an interim reply (status %1) that cannot be followed."_s.arg(status));
    }
    HttpReply reply;
    reply.status = status;
    reply.headers = m_reply->rawHeaderPairs();
    reply.body = std::move(m_received);
    m_hasReply = true;
    return reply;
}

} // namespace velarc
