#include "fakes/scripted_seams.h"

#include "base/uuid.h"

namespace velarc {

ScriptedGenerating::ScriptedGenerating() : answer(textResult(QStringLiteral("generated"))) {}

AIProvider ScriptedGenerating::resolvedProvider(const AIAction &action) const
{
    return action.provider == AIProvider::UseDefault ? provider : action.provider;
}

std::optional<QString> ScriptedGenerating::resolvedModel(const AIAction &, AIProvider) const
{
    return model;
}

QCoro::Task<GenerationResult> ScriptedGenerating::answerLater(
    QString prompt, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    progress->step(QStringLiteral("Generating"));
    if (namesThePrompt) {
        progress->note(QStringLiteral("note of ") + prompt);
    } else if (noteBeforeWaiting) {
        progress->note(*noteBeforeWaiting);
    }
    const GenerationResult result =
        namesThePrompt ? textResult(QStringLiteral("result of ") + prompt) : answer;
    co_await gate.pass(stop);
    co_return result;
}

QCoro::Task<GenerationResult> ScriptedGenerating::generateTextResult(
    TextGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    QString prompt = request.prompt;
    textRequests.append(std::move(request));
    return answerLater(std::move(prompt), std::move(progress), std::move(stop));
}

QCoro::Task<GenerationResult> ScriptedGenerating::generateImageResult(
    ImageGeneration request, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    QString prompt = request.prompt;
    imageRequests.append(std::move(request));
    return answerLater(std::move(prompt), std::move(progress), std::move(stop));
}

QCoro::Task<RoutedExecutionResult> ScriptedDelivering::routeResult(
    Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    deliveries.append(delivery);
    RoutedExecutionResult routed;
    routed.payload = delivery.payload;
    co_await gate.pass(stop);
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (noteOfDestination) {
        progress->note(*noteOfDestination);
    }
    co_return answer.value_or(routed);
}

QCoro::Task<QUrl> ScriptedDelivering::exportPDF(QString text, QString title, std::stop_token stop)
{
    exports.append({text, title});
    co_await exportGate.pass(stop);
    if (exportFailure) {
        std::rethrow_exception(exportFailure);
    }
    co_return QUrl(QStringLiteral("file:///result.pdf"));
}

bool ScriptedDelivering::copyToClipboard(const ResultPayload &payload)
{
    copied.append(payload);
    return copies;
}

void ScriptedDelivering::showClipboardToast(QString message)
{
    toasts.append(message);
}

// A member is copied before it is returned: a task moves from whatever it is given.
QCoro::Task<ClipboardPayload> ScriptedClipboard::read(std::stop_token stop)
{
    co_await gate.pass(stop);
    co_return ClipboardPayload(payload);
}

QCoro::Task<QString> ScriptedClipboard::text(std::stop_token stop)
{
    ++textReads;
    co_await gate.pass(stop);
    co_return QString(payload.text);
}

QCoro::Task<AttachmentIntake> ScriptedClipboard::attachments(ClipboardPayload, std::stop_token stop)
{
    co_await gate.pass(stop);
    co_return AttachmentIntake(intake);
}

ScriptedRun::ScriptedRun()
{
    RunSeams seams;
    seams.clock = clock;
    seams.generating = generating;
    seams.delivering = delivering;
    seams.clipboard = clipboard;
    seams.selection = selection;
    seams.usage = usage;
    seams.scope = scope;
    pipeline = std::make_unique<RunPipeline>(*state, std::move(seams));
}

void ScriptedRun::destroyState()
{
    pipeline.reset();
    state.reset();
}

AIAction testAction(const QString &name)
{
    AIAction action;
    action.id = newUuid();
    action.name = name;
    action.systemPrompt = QStringLiteral("{User_Input}");
    return action;
}

GenerationResult textResult(const QString &text)
{
    GenerationResult result;
    result.payload = TextPayload{text};
    result.provider = AIProvider::LocalFallback;
    result.modelID = QStringLiteral("local-fallback");
    return result;
}

} // namespace velarc
