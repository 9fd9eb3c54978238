#pragma once

// What a run needs of the rest of the program, as narrow interfaces.
//
// All of them are called on the main thread. Of an awaiting operation:
//
// Stop:     a stopped token ends the wait with CancellationError; the run resumes from the event
//           loop, never inside request_stop().
// Errors:   whatever is thrown ends the run; a UserFacingError brings its own sentence.
// Lifetime: the run keeps its seams alive until its last frame has gone. The state object may go
//           earlier: an implementation writes to it only behind RunProgress.

#include "intake/clipboard_reading.h"
#include "records/run_records.h"

#include <QCoroTask>

#include <memory>
#include <stop_token>

namespace velarc {

// What a stage may tell while it works. It outlives the run.
class RunProgress
{
public:
    RunProgress() = default;
    virtual ~RunProgress() = default;
    RunProgress(const RunProgress &) = delete;
    RunProgress &operator=(const RunProgress &) = delete;

    // Throws CancellationError if the run was stopped or another one took its place.
    virtual void ensureActive() const = 0;

    // Shows `text` as the running step. Throws as ensureActive() does, and then writes nothing.
    virtual void step(QString text) = 0;

    // Shows `text` as the status sentence. Throws as ensureActive() does.
    virtual void note(QString text) = 0;
};

struct TextGeneration
{
    AIAction action;
    AIProvider provider = AIProvider::LocalFallback; // never UseDefault
    std::optional<QString> model;
    QString prompt; // finished
    QList<InputAttachment> attachments;
};

struct ImageGeneration
{
    AIAction action;
    AIProvider provider = AIProvider::LocalFallback;
    std::optional<QString> model;
    QString prompt;
};

// Picks the engine and has it work.
class Generating
{
public:
    virtual ~Generating() = default;

    [[nodiscard]] virtual AIProvider resolvedProvider(const AIAction &action) const = 0;
    [[nodiscard]] virtual std::optional<QString> resolvedModel(
        const AIAction &action, AIProvider provider) const = 0;

    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateTextResult(
        TextGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop) = 0;
    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateImageResult(
        ImageGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop) = 0;
};

struct Delivery
{
    ResultPayload payload;
    ActionDestination destination;
    QString userText;
};

// Takes a result to where the action wants it.
class Delivering
{
public:
    virtual ~Delivering() = default;

    [[nodiscard]] virtual QCoro::Task<RoutedExecutionResult> routeResult(
        Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop) = 0;

    // Writes `text` as a PDF under `title`. Errors: PDFExportServiceError.
    [[nodiscard]] virtual QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) = 0;

    // Whether the payload is on the clipboard now.
    virtual bool copyToClipboard(const ResultPayload &payload) = 0;
    virtual void showClipboardToast(QString message) = 0;
};

// The library as a run touches it.
class ActionSelecting
{
public:
    virtual ~ActionSelecting() = default;

    [[nodiscard]] virtual std::optional<AIAction> selectedAction() const = 0;
    virtual void selectAction(const QUuid &id) = 0;
    virtual void markRunClipboardHintSeen() = 0;
};

class UsageRecording
{
public:
    virtual ~UsageRecording() = default;
    virtual void recordUsage(const GenerationResult &result) = 0;
};

} // namespace velarc
