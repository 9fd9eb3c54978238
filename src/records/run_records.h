#pragma once

// What a run gives, and where it stands: plain values, copied on assignment; any thread.

#include "actions/action.h"
#include "records/run_input.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace velarc {

struct TextPayload
{
    QString text;
    friend bool operator==(const TextPayload &, const TextPayload &) = default;
};
struct ImagePayload
{
    QByteArray png;
    friend bool operator==(const ImagePayload &, const ImagePayload &) = default;
};
struct PdfPayload
{
    QUrl url; // a file on disk
    QString previewText; // what the file shows
    friend bool operator==(const PdfPayload &, const PdfPayload &) = default;
};

// What a run produced.
using ResultPayload = std::variant<TextPayload, ImagePayload, PdfPayload>;

// The payload's text: of a PDF the text that it shows, of an image none.
[[nodiscard]] std::optional<QString> payloadText(const ResultPayload &payload);

// The token counts of one engine call, as the provider reports them.
struct TokenUsage
{
    qint64 inputTokens = 0;
    qint64 outputTokens = 0;
    qint64 totalTokens = 0; // need not be the sum of the two
    friend bool operator==(const TokenUsage &, const TokenUsage &) = default;
};

struct DebugInfoRow
{
    QString key;
    QString value;
    friend bool operator==(const DebugInfoRow &, const DebugInfoRow &) = default;
};

// What the details panel shows of a run.
struct GenerationDebugInfo
{
    QString requestText; // what was sent, readable, without the key
    QString responseText;
    QList<DebugInfoRow> infoRows; // in display order
    friend bool operator==(const GenerationDebugInfo &, const GenerationDebugInfo &) = default;
};

// What an engine returns.
struct GenerationResult
{
    ResultPayload payload;
    std::optional<TokenUsage> usage; // where the engine counts
    AIProvider provider = AIProvider::LocalFallback; // the engine that really ran
    std::optional<QString> modelID; // the model that really ran
    std::optional<GenerationDebugInfo> debugInfo;
    friend bool operator==(const GenerationResult &, const GenerationResult &) = default;
};

// What a run without the canvas gives back.
struct ShortcutRun
{
    ResultPayload payload; // as delivered
    std::optional<AIProvider> provider; // the engine that really ran; none where none was asked
    std::optional<QString> modelID;
    friend bool operator==(const ShortcutRun &, const ShortcutRun &) = default;
};

// What delivery hands back.
struct RoutedExecutionResult
{
    ResultPayload payload; // as delivered; a system action replaces it
    std::optional<QString> providerLabel; // replaces the engine's
    std::optional<GenerationDebugInfo> debugInfo; // replaces the engine's
    bool copiedByDestination = false; // the result is on the clipboard already
    friend bool operator==(const RoutedExecutionResult &, const RoutedExecutionResult &) = default;
};

// The coarse position of the home canvas.
enum class HomePhase
{
    Input,
    Processing,
    Output
};

// What the engine is doing.
struct EngineProcessing
{
    QString step;
    friend bool operator==(const EngineProcessing &, const EngineProcessing &) = default;
};
struct EngineResult
{
    ResultPayload payload;
    QString provider; // a label to show
    friend bool operator==(const EngineResult &, const EngineResult &) = default;
};
struct EngineError
{
    QString message; // the headline
    std::optional<QString> technical; // the detail
    friend bool operator==(const EngineError &, const EngineError &) = default;
};
struct EngineReady
{
    friend bool operator==(const EngineReady &, const EngineReady &) = default;
};
using EngineState = std::variant<EngineReady, EngineProcessing, EngineResult, EngineError>;

} // namespace velarc
