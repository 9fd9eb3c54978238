#pragma once

// The rest of the program as a run sees it, steered by a test. Everything answers at once unless
// its gate is closed.

#include "fakes/fake_clock.h"
#include "fakes/gate.h"
#include "run/app_state.h"
#include "run/run_pipeline.h"

namespace velarc {

class ScriptedGenerating final : public Generating
{
public:
    Gate gate;
    AIProvider provider = AIProvider::LocalFallback;
    std::optional<QString> model;
    GenerationResult answer;
    std::optional<QString> noteBeforeWaiting; // as a fallback writes one
    bool namesThePrompt = false; // answers "result of PROMPT" and notes "note of PROMPT"
    QList<TextGeneration> textRequests;
    QList<ImageGeneration> imageRequests;

    ScriptedGenerating();
    [[nodiscard]] AIProvider resolvedProvider(const AIAction &action) const override;
    [[nodiscard]] std::optional<QString> resolvedModel(
        const AIAction &action, AIProvider provider) const override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateTextResult(TextGeneration request,
        std::shared_ptr<RunProgress> progress, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateImageResult(ImageGeneration request,
        std::shared_ptr<RunProgress> progress, std::stop_token stop) override;

private:
    QCoro::Task<GenerationResult> answerLater(
        QString prompt, std::shared_ptr<RunProgress> progress, std::stop_token stop);
};

class ScriptedDelivering final : public Delivering
{
public:
    Gate gate;
    Gate exportGate;
    std::optional<RoutedExecutionResult> answer; // the payload as it came, unless set
    std::exception_ptr failure;
    std::exception_ptr exportFailure;
    std::optional<QString> noteOfDestination; // as a copying destination writes one
    bool copies = true;
    QList<Delivery> deliveries;
    QList<ResultPayload> copied;
    QStringList toasts;
    QList<std::pair<QString, QString>> exports; // text and title

    [[nodiscard]] QCoro::Task<RoutedExecutionResult> routeResult(
        Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;
    bool copyToClipboard(const ResultPayload &payload) override;
    void showClipboardToast(QString message) override;
};

class ScriptedClipboard final : public ClipboardReading
{
public:
    Gate gate;
    ClipboardPayload payload;
    AttachmentIntake intake;
    int textReads = 0;

    [[nodiscard]] QCoro::Task<ClipboardPayload> read(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QString> text(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) override;
};

// One action in a field.
class ScriptedSelection final : public ActionSelecting
{
public:
    std::optional<AIAction> action;
    QList<QUuid> selected;
    int hintsMarked = 0;

    [[nodiscard]] std::optional<AIAction> selectedAction() const override { return action; }
    void selectAction(const QUuid &id) override { selected.append(id); }
    void markRunClipboardHintSeen() override { ++hintsMarked; }
};

class RecordedUsage final : public UsageRecording
{
public:
    QList<GenerationResult> results;
    void recordUsage(const GenerationResult &result) override { results.append(result); }
};

// A state, a pipeline over it, and all seams.
struct ScriptedRun
{
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<ScriptedGenerating> generating = std::make_shared<ScriptedGenerating>();
    std::shared_ptr<ScriptedDelivering> delivering = std::make_shared<ScriptedDelivering>();
    std::shared_ptr<ScriptedClipboard> clipboard = std::make_shared<ScriptedClipboard>();
    std::shared_ptr<ScriptedSelection> selection = std::make_shared<ScriptedSelection>();
    std::shared_ptr<RecordedUsage> usage = std::make_shared<RecordedUsage>();
    std::shared_ptr<TaskScope> scope = std::make_shared<TaskScope>();
    std::unique_ptr<AppState> state = std::make_unique<AppState>();
    std::unique_ptr<RunPipeline> pipeline;

    ScriptedRun();

    // Ends the state object as the program does: operations first.
    void destroyState();
};

[[nodiscard]] AIAction testAction(const QString &name);
[[nodiscard]] GenerationResult textResult(const QString &text);

template <typename Error> [[nodiscard]] std::exception_ptr failureOf(Error error)
{
    return std::make_exception_ptr(std::move(error));
}

} // namespace velarc
