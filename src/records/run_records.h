#pragma once

// What a run takes and what it gives: plain values, copied on assignment; any thread.

#include "actions/action.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>
#include <variant>

namespace velarc {

enum class InputAttachmentKind
{
    Image,
    Pdf,
    Svg
};

// One file or picture beside the text. It lives in memory only and is never stored.
struct InputAttachment
{
    QUuid id; // fresh for each attachment
    InputAttachmentKind kind = InputAttachmentKind::Image;
    QString filename; // shown, and named in prompts
    QString mimeType; // "image/png", also of an Svg; "application/pdf"
    QByteArray bytes; // PNG, also of an Svg; or the PDF file
    std::optional<QString> extractedText; // of a Pdf that has text

    friend bool operator==(const InputAttachment &, const InputAttachment &) = default;
};

struct PreparedRunInput
{
    QString userText;
    QList<InputAttachment> attachments;

    // Whether there is anything to run on: a text that is not blank, or an attachment.
    [[nodiscard]] bool hasContent() const;

    friend bool operator==(const PreparedRunInput &, const PreparedRunInput &) = default;
};

// Where a run gets its input from.
struct ExplicitInput
{
    PreparedRunInput input; // used only if it has content
};
struct SmartInput
{
}; // the canvas, and the clipboard if the canvas is empty
struct ClipboardOnlyInput
{
};
using InputStrategy = std::variant<ExplicitInput, SmartInput, ClipboardOnlyInput>;

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
