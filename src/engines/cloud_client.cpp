#include "engines/cloud_client.h"

#include "base/locale_text.h"
#include "engines/cloud_text.h"
#include "engines/json_pretty.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QCoro::Task<HttpReply> sendOnce(std::shared_ptr<HttpTransport> transport, HttpRequest request,
    std::exception_ptr invalidResponse, std::stop_token stop)
{
    try {
        co_return co_await transport->post(std::move(request), std::move(stop));
    } catch (const NotHttpError &) {
        std::rethrow_exception(invalidResponse);
    }
}

// What the worker does with a reply.
auto readerOf(CloudExchange exchange, decltype(CloudCall::result) result)
{
    return [exchange = std::move(exchange), result = std::move(result)](
               const std::stop_token &stop) mutable {
        exchange.reply.body = exchange.redaction.of(exchange.reply.body);
        return result(exchange, stop);
    };
}

qint64 counted(const std::optional<qint64> &reported)
{
    return std::max<qint64>(reported.value_or(0), 0);
}

// The sum of two counts, or the largest count where it would be larger.
qint64 sumOf(qint64 left, qint64 right)
{
    const qint64 room = std::numeric_limits<qint64>::max() - left;
    return left + std::min(right, room);
}

} // namespace

std::optional<QString> CloudExchange::header(QByteArrayView name) const
{
    const auto value = reply.header(name);
    return value ? std::optional(QString::fromUtf8(*value)) : std::nullopt;
}

QString CloudExchange::snippet() const
{
    return bodySnippet(reply.body, kBodySnippetLimit);
}

QCoro::Task<GenerationResult> performCall(
    std::shared_ptr<CloudClient> client, CloudCall call, std::stop_token stop)
{
    const QByteArray body = co_await client->worker.run(call.body, stop);
    if (!call.url.isValid()) {
        std::rethrow_exception(call.invalidResponse);
    }
    KeyRedaction redaction(call.key.value);
    HttpRequest request{call.url, call.headers, std::move(call.key), body};
    HttpReply reply =
        co_await sendOnce(client->transport, std::move(request), call.invalidResponse, stop);
    CloudExchange exchange{body, std::move(reply), client->clock->now(), std::move(redaction)};
    auto read = readerOf(std::move(exchange), std::move(call.result));
    co_return co_await client->worker.run(std::move(read), stop);
}

HttpHeaders jsonHeaders()
{
    return {{"Content-Type", "application/json"}};
}

QUrl addressOf(const QUrl &host, const QString &encodedPath)
{
    // QUrl would encode half a character as bytes that are no text.
    if (!encodedPath.isValidUtf16()) {
        return QUrl();
    }
    return QUrl(host.toString(QUrl::FullyEncoded | QUrl::StripTrailingSlash) + encodedPath,
        QUrl::StrictMode);
}

TokenUsage countedTokens(const ReportedTokens &reported)
{
    const qint64 input = counted(reported.input);
    const qint64 output = counted(reported.output);
    const qint64 total = reported.total ? counted(reported.total) : sumOf(input, output);
    return TokenUsage{input, output, total};
}

std::optional<TokenUsage> usageOf(const TokenUsage &counted)
{
    return counted.totalTokens < 1 ? std::nullopt : std::optional(counted);
}

void appendClosingRows(
    QList<DebugInfoRow> &rows, const TokenUsage &counted, Instant now, qsizetype attachments)
{
    rows.append({u"Input tokens"_s, QString::number(counted.inputTokens)});
    rows.append({u"Output tokens"_s, QString::number(counted.outputTokens)});
    rows.append({u"Total tokens"_s, QString::number(counted.totalTokens)});
    rows.append({u"Timestamp"_s, iso8601(now)});
    if (attachments > 0) {
        rows.append({u"Attachments"_s, QString::number(attachments)});
    }
}

GenerationDebugInfo debugInfoOf(const CloudExchange &exchange, const ShownRequest &request,
    QList<DebugInfoRow> rows, const std::stop_token &stop)
{
    const QString requestText = u"Endpoint: POST "_s + request.endpoint + u"\nPrompt:\n"_s
        + request.prompt + u"\n\nRequest JSON:\n"_s + prettyJSONText(exchange.requestBody, stop);
    const QString responseText = prettyJSONText(exchange.reply.body, stop);
    for (DebugInfoRow &row : rows) {
        row.value = exchange.redaction.of(row.value);
    }
    return GenerationDebugInfo{
        exchange.redaction.of(requestText), exchange.redaction.of(responseText), std::move(rows)};
}

} // namespace velarc
