#pragma once

// What the cloud clients share: the road of one call, and the common parts of its result.

#include "base/clock.h"
#include "base/worker.h"
#include "engines/http_transport.h"
#include "engines/json_reader.h"
#include "engines/key_redaction.h"
#include "records/run_records.h"

#include <exception>
#include <functional>
#include <memory>

namespace velarc {

// A failure of one client. `Failure` is the client's enum; failureText() gives the fixed texts.
// Any thread.
template <typename Failure> class CloudServiceError final : public UserFacingError
{
public:
    explicit CloudServiceError(Failure failure)
        : UserFacingError(failureText(failure)), m_failure(failure)
    {
    }
    CloudServiceError(Failure failure, QString text)
        : UserFacingError(std::move(text)), m_failure(failure)
    {
    }

    [[nodiscard]] Failure failure() const noexcept { return m_failure; }

private:
    Failure m_failure;
};

// Whether a client's table of texts can be indexed by its enum.
template <typename Table> constexpr bool standInEnumOrder(const Table &table)
{
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (static_cast<std::size_t>(table[index].failure) != index) {
            return false;
        }
    }
    return true;
}

// What a client is made of.
struct CloudClient
{
    std::shared_ptr<HttpTransport> transport;
    std::shared_ptr<Clock> clock;
    QUrl host; // the address up to the path
    SerialWorker worker;
};

// One request and its reply, as the reader of the reply needs them.
struct CloudExchange
{
    QByteArray requestBody;
    HttpReply reply; // its body does not hold the key
    Instant now; // when the reply was there
    KeyRedaction redaction;

    [[nodiscard]] bool succeeded() const { return reply.status >= 200 && reply.status <= 299; }
    [[nodiscard]] QString statusCode() const { return QString::number(reply.status); }

    // A header as it came.
    [[nodiscard]] std::optional<QString> header(QByteArrayView name) const;

    // The snippet of the reply's body.
    [[nodiscard]] QString snippet() const;
};

// The record that a reply's body holds; none where it is not the JSON that the record needs.
template <typename Envelope>
[[nodiscard]] std::optional<Envelope> envelopeOf(
    const CloudExchange &exchange, const std::stop_token &stop)
{
    try {
        return recordFromJson<Envelope>(exchange.reply.body, stop);
    } catch (const JsonError &) {
        return std::nullopt;
    }
}

// One call of a client, before it is sent. The functions run on the client's worker and own what
// they use.
struct CloudCall
{
    QUrl url; // invalid: nothing is sent
    HttpHeaders headers;
    HttpSecretHeader key;
    std::function<QByteArray(const std::stop_token &)> body;
    std::function<GenerationResult(const CloudExchange &, const std::stop_token &)> result;
    std::exception_ptr invalidResponse; // for an invalid address, and a reply that is not HTTP
};

// Builds the request, sends it once, and reads the reply. The worker is free during the transfer.
//
// Main thread only.
//
// Stop:   CancellationError, from the event loop.
// Errors: those of the call's functions; HttpTransportError.
[[nodiscard]] QCoro::Task<GenerationResult> performCall(
    std::shared_ptr<CloudClient> client, CloudCall call, std::stop_token stop);

// The header every body is sent with.
[[nodiscard]] HttpHeaders jsonHeaders();

// An address under a client's host. Invalid where `path` cannot stand in one.
[[nodiscard]] QUrl addressOf(const QUrl &host, const QString &encodedPath);

// What a reply counts, as it stands there.
struct ReportedTokens
{
    std::optional<qint64> input;
    std::optional<qint64> output;
    std::optional<qint64> total;
};

// Counts that can be shown: none is negative, and the total is the sum where the reply has none.
[[nodiscard]] TokenUsage countedTokens(const ReportedTokens &reported);

// `counted`, or none where the total is zero.
[[nodiscard]] std::optional<TokenUsage> usageOf(const TokenUsage &counted);

// The rows that end every list: the counts, the moment, and the attachments if there are any.
void appendClosingRows(
    QList<DebugInfoRow> &rows, const TokenUsage &counted, Instant now, qsizetype attachments);

// How the details panel names a request: the lines above the prompt, and the prompt.
struct ShownRequest
{
    QString endpoint; // "/v1/messages"
    QString prompt;
};

// The debug record of a successful call, without the key.
[[nodiscard]] GenerationDebugInfo debugInfoOf(const CloudExchange &exchange,
    const ShownRequest &request, QList<DebugInfoRow> rows, const std::stop_token &stop);

} // namespace velarc
