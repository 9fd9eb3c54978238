#include "run/run_stages.h"

#include "actions/format_rules.h"
#include "actions/prompt_template.h"
#include "base/errors.h"
#include "base/text.h"
#include "records/run_errors.h"
#include "run/run_failure.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Each step text stands at least this long, so that it can be read.
constexpr std::chrono::milliseconds kStepPause = 90ms;

constexpr QStringView kClipboardVariable = u"{Clipboard}";

using RunHandle = std::shared_ptr<ActiveRun>;

// A pause behind a step text. A broken pause is no failure here: the test behind it notices.
QCoro::Task<void> pauseForStep(RunHandle run)
{
    try {
        co_await run->seams().clock->pause(kStepPause, run->stop());
    } catch (const CancellationError &) {
    }
    run->ensureActive();
}

QCoro::Task<std::optional<PreparedRunInput>> clipboardInput(RunHandle run)
{
    ClipboardPayload payload = co_await run->seams().clipboard->read(run->stop());
    run->ensureActive();
    if (!payload.hasContent()) {
        co_return std::nullopt;
    }
    PreparedRunInput input;
    input.userText = trimmed(payload.text).toString();
    AttachmentIntake intake =
        co_await run->seams().clipboard->attachments(std::move(payload), run->stop());
    run->ensureActive();
    if (const auto notices = intake.joinedNotices()) {
        run->state().setInputAttachmentNotice(notices);
    }
    input.attachments = std::move(intake.attachments);
    if (!input.hasContent()) {
        co_return std::nullopt;
    }
    co_return std::optional(std::move(input));
}

std::optional<PreparedRunInput> canvasInput(const AppState &state)
{
    PreparedRunInput input{trimmed(state.quickInput()).toString(), state.quickAttachments()};
    return input.hasContent() ? std::optional(std::move(input)) : std::nullopt;
}

QCoro::Task<std::optional<PreparedRunInput>> resolveInput(RunHandle run, InputStrategy strategy)
{
    if (const auto *given = std::get_if<ExplicitInput>(&strategy)) {
        co_return given->input.hasContent() ? std::optional(given->input) : std::nullopt;
    }
    if (std::holds_alternative<SmartInput>(strategy)) {
        if (auto input = canvasInput(run->state())) {
            co_return input;
        }
    }
    co_return co_await clipboardInput(run);
}

AIAction actionAsRun(AIAction action)
{
    action.outputFormat = formatForDestination(action.outputFormat, action.destination);
    return action;
}

// The clipboard is asked only where its text can reach the prompt: reading it may have to wait for
// another program.
QCoro::Task<QString> finishedPrompt(RunHandle run, QString promptTemplate, QString input)
{
    PromptMoment moment;
    moment.now = run->seams().clock->now();
    if (promptTemplate.contains(kClipboardVariable) || input.contains(kClipboardVariable)) {
        moment.clipboardText = co_await run->seams().clipboard->text(run->stop());
        run->ensureActive();
    }
    co_return renderPrompt(promptTemplate, input, moment);
}

QCoro::Task<GenerationResult> generate(
    RunHandle run, AIAction action, AIProvider provider, QString prompt, PreparedRunInput prepared)
{
    Generating &generating = *run->seams().generating;
    const auto model = generating.resolvedModel(action, provider);
    if (action.outputFormat == OutputFormat::Image) {
        ImageGeneration request{std::move(action), provider, model, std::move(prompt)};
        co_return co_await generating.generateImageResult(std::move(request), run, run->stop());
    }
    TextGeneration request{
        std::move(action), provider, model, std::move(prompt), std::move(prepared.attachments)};
    co_return co_await generating.generateTextResult(std::move(request), run, run->stop());
}

bool wantsPDF(const AIAction &action)
{
    return action.outputFormat == OutputFormat::Pdf;
}

QCoro::Task<ResultPayload> exportedAsPDF(RunHandle run, QString source, QString actionName)
{
    const QString title = isBlank(actionName) ? u"Velarc Result"_s : actionName;
    const QUrl url = co_await run->seams().delivering->exportPDF(source, title, run->stop());
    run->ensureActive();
    co_return PdfPayload{url, source};
}

QString routingStep(SystemDestinationKind kind)
{
    switch (kind) {
    case SystemDestinationKind::CalendarCreateEvent:
    case SystemDestinationKind::CalendarListUpcomingEvents:
    case SystemDestinationKind::CalendarEditEvent:
    case SystemDestinationKind::CalendarDeleteEvent:
        return u"Routing to Calendar"_s;
    case SystemDestinationKind::MessagesCompose:
    case SystemDestinationKind::MessagesSearchConversations:
    case SystemDestinationKind::MessagesEditScheduled:
    case SystemDestinationKind::MessagesUnsendRecent:
        return u"Routing to Messages"_s;
    case SystemDestinationKind::MailCompose:
    case SystemDestinationKind::MailListInboxThreads:
    case SystemDestinationKind::MailSearchMessages:
        return u"Routing to Mail"_s;
    }
    Q_UNREACHABLE();
}

void beginExecution(ActiveRun &run, const AIAction &action, const PreparedRunInput &prepared)
{
    AppState &state = run.state();
    state.setStatusNote(std::nullopt);
    state.setRefinePrompt(QString());
    state.setLatestRunDebugInfo(std::nullopt);
    run.core().activeAction = action;
    run.core().lastPreparedInput = prepared;
    state.setEngineState(EngineProcessing{u"Preparing payload"_s});
    state.setHomePhase(HomePhase::Processing);
}

void copyAutomatically(ActiveRun &run, const RoutedExecutionResult &routed)
{
    AppState &state = run.state();
    if (!state.homeAutomationOptions().autoCopyResult || routed.copiedByDestination
        || !run.seams().delivering->copyToClipboard(routed.payload)) {
        return;
    }
    const QString copied = u"Output copied to clipboard automatically."_s;
    const QString standing = state.statusNote().value_or(QString());
    state.setStatusNote(isBlank(standing) ? copied : standing + u' ' + copied);
    run.seams().delivering->showClipboardToast(u"Response copied"_s);
}

void publishResult(
    ActiveRun &run, const GenerationResult &result, const RoutedExecutionResult &routed)
{
    AppState &state = run.state();
    state.setActiveProviderLabel(routed.providerLabel.value_or(label(result.provider)));
    state.setLatestRunDebugInfo(routed.debugInfo ? routed.debugInfo : result.debugInfo);
    copyAutomatically(run, routed);
    state.setEngineState(EngineResult{routed.payload, state.activeProviderLabel()});
    state.setHomePhase(HomePhase::Output);
    run.finish();
}

QCoro::Task<GenerationResult> generateForCanvas(
    RunHandle run, AIAction action, PreparedRunInput prepared)
{
    QString prompt = co_await finishedPrompt(run, action.systemPrompt, prepared.userText);
    run->step(u"Selecting provider"_s);
    co_await pauseForStep(run);

    const AIProvider provider = run->seams().generating->resolvedProvider(action);
    run->state().setActiveProviderLabel(label(provider));
    const QString actionName = action.name;
    const bool makesPDF = wantsPDF(action);
    GenerationResult result =
        co_await generate(run, std::move(action), provider, std::move(prompt), std::move(prepared));
    if (makesPDF) {
        run->ensureActive();
        const auto source = payloadText(result.payload);
        if (!source) {
            throw PDFExportServiceError::contextUnavailable();
        }
        result.payload = co_await exportedAsPDF(run, *source, actionName);
    }
    run->ensureActive();
    co_return result;
}

QCoro::Task<RoutedExecutionResult> deliver(
    RunHandle run, ResultPayload payload, ActionDestination destination, QString userText)
{
    if (const auto kind = destination.asSystem()) {
        run->step(routingStep(*kind));
        co_await pauseForStep(run);
    }
    Delivery delivery{std::move(payload), destination, std::move(userText)};
    RoutedExecutionResult routed =
        co_await run->seams().delivering->routeResult(std::move(delivery), run, run->stop());
    run->ensureActive();
    co_return routed;
}

QCoro::Task<void> execute(RunHandle run, AIAction action, PreparedRunInput prepared)
{
    beginExecution(*run, action, prepared);
    co_await pauseForStep(run);

    const AIAction asRun = actionAsRun(std::move(action));
    const QString userText = prepared.userText;
    const GenerationResult result = co_await generateForCanvas(run, asRun, std::move(prepared));
    run->state().setSuggestedConnectionProvider(std::nullopt);
    run->seams().usage->recordUsage(result);

    const RoutedExecutionResult routed =
        co_await deliver(run, result.payload, asRun.destination, userText);
    publishResult(*run, result, routed);
}

// What stands on the canvas when a run begins is what it runs on.
void showOnCanvas(ActiveRun &run, const AIAction &action, const PreparedRunInput &prepared)
{
    AppState &state = run.state();
    state.setQuickInput(prepared.userText);
    state.setQuickAttachments(prepared.attachments);
    run.seams().selection->selectAction(action.id);
    state.setHomePhase(HomePhase::Processing);
    run.seams().selection->markRunClipboardHintSeen();
}

void endWithoutInput(ActiveRun &run)
{
    AppState &state = run.state();
    state.setStatusNote(u"Nothing to run yet. Type input, paste, or drop PNG/PDF/SVG."_s);
    state.setEngineState(EngineReady{});
    state.setHomePhase(HomePhase::Input);
    run.finish();
}

QCoro::Task<void> performStages(RunHandle run, AIAction action, InputStrategy strategy)
{
    const auto prepared = co_await resolveInput(run, std::move(strategy));
    if (!run->isActive()) {
        co_return;
    }
    if (!prepared) {
        endWithoutInput(*run);
        co_return;
    }
    showOnCanvas(*run, action, *prepared);
    if (run->isActive()) {
        co_await execute(run, std::move(action), *prepared);
    }
}

} // namespace

QCoro::Task<void> performRun(RunHandle run, AIAction action, InputStrategy strategy)
{
    if (!run->isActive()) {
        co_return;
    }
    std::exception_ptr failure;
    try {
        co_await performStages(run, action, std::move(strategy));
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        handleRunError(*run, action, failure);
    }
}

QCoro::Task<ShortcutRun> performShortcutRun(RunHandle run, AIAction action, QString input)
{
    const AIAction asRun = actionAsRun(std::move(action));
    QString prompt = co_await finishedPrompt(run, asRun.systemPrompt, input);
    const AIProvider provider = run->seams().generating->resolvedProvider(asRun);
    PreparedRunInput prepared{input, {}};
    const GenerationResult result =
        co_await generate(run, asRun, provider, std::move(prompt), std::move(prepared));
    run->ensureActive();
    ResultPayload payload = result.payload;
    const auto source = payloadText(payload);
    if (wantsPDF(asRun) && source) {
        payload = co_await exportedAsPDF(run, *source, asRun.name);
    }
    Delivery delivery{std::move(payload), asRun.destination, std::move(input)};
    RoutedExecutionResult routed =
        co_await run->seams().delivering->routeResult(std::move(delivery), run, run->stop());
    co_return ShortcutRun{std::move(routed.payload), result.provider, result.modelID};
}

} // namespace velarc
