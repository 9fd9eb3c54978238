#include "run/canvas_events.h"

#include "base/errors.h"
#include "base/text.h"
#include "base/worker.h"
#include "run/app_state.h"
#include "run/named_files.h"
#include "run/run_pipeline.h"

#include <algorithm>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

struct CanvasEvents::Members
{
    QPointer<AppState> state;
    RunPipeline *pipeline = nullptr; // null once the events have gone
    CanvasServices services;
    SerialWorker fileSystem; // asked whether a path that was pasted is a file
    QString lastDetectedPasteAutoRunInput; // what running on paste last fired for, trimmed
    std::optional<AIAction> pendingActionForInput;
    QString textBeforeTurn;
    bool isChangePosted = false;
    QMetaObject::Connection watch;
};

namespace {

using MembersHandle = std::shared_ptr<CanvasEvents::Members>;

// At most this many characters must have come at once to count as a paste.
constexpr qsizetype kPasteLength = 12;
constexpr qsizetype kShortestPaste = 2;

// The state and the pipeline of a task that has waited, or the end of it.
struct Alive
{
    AppState &state;
    RunPipeline &pipeline;
};

Alive ensureAlive(const CanvasEvents::Members &members, const std::stop_token &stop)
{
    throwIfStopped(stop);
    if (!members.state || members.pipeline == nullptr) {
        throw CancellationError();
    }
    return {*members.state, *members.pipeline};
}

void leaveOutput(const Alive &alive)
{
    if (alive.state.homePhase() == HomePhase::Output) {
        alive.pipeline.returnToInput();
    }
}

bool looksLikeAPaste(const QString &oldText, const QString &newText, QStringView clip)
{
    const QStringView typed = trimmed(newText);
    if (typed == clip) {
        return true;
    }
    const qsizetype added = characterCount(newText) - characterCount(oldText);
    const qsizetype needed = std::max(kShortestPaste, std::min(kPasteLength, characterCount(clip)));
    return added >= needed && typed.contains(clip);
}

void runOnPaste(CanvasEvents::Members &members, const Alive &alive)
{
    if (!alive.state.homeAutomationOptions().autoRunOnPaste) {
        return;
    }
    members.lastDetectedPasteAutoRunInput = trimmed(alive.state.quickInput()).toString();
    alive.pipeline.runSelectedAction();
}

QCoro::Task<void> paste(MembersHandle members, std::stop_token stop)
{
    ClipboardPayload payload = co_await members->services.clipboard->read(stop);
    if (!payload.hasContent()) {
        ensureAlive(*members, stop).state.setStatusNote(u"Clipboard is empty."_s);
        co_return;
    }
    const QString text = trimmed(payload.text).toString();
    const AttachmentIntake intake =
        co_await members->services.clipboard->attachments(std::move(payload), stop);
    const Alive alive = ensureAlive(*members, stop);
    alive.state.setQuickInput(text);
    alive.state.setQuickAttachments(intake.attachments);
    alive.state.setInputAttachmentNotice(intake.joinedNotices());
    if (text.isEmpty() && intake.attachments.isEmpty()) {
        alive.state.setStatusNote(u"Clipboard has no supported content."_s);
        co_return;
    }
    leaveOutput(alive);
    runOnPaste(*members, alive);
}

void runOnDrop(
    const Alive &alive, const ActionSelecting &selection, const QList<InputAttachment> &attachments)
{
    if (attachments.isEmpty()) {
        leaveOutput(alive);
        alive.state.setStatusNote(u"Dropped files have no supported content."_s);
        return;
    }
    if (auto action = selection.selectedAction()) {
        const PreparedRunInput input{QString(), attachments};
        alive.pipeline.startRun(*std::move(action), ExplicitInput{input});
        return;
    }
    leaveOutput(alive);
    alive.state.setStatusNote(u"Create or select an action first."_s);
}

QCoro::Task<void> drop(MembersHandle members, QList<QUrl> urls, std::stop_token stop)
{
    const AttachmentIntake intake =
        co_await members->services.files->attachmentsFromFiles(std::move(urls), stop);
    const Alive alive = ensureAlive(*members, stop);
    alive.state.setQuickInput(QString());
    alive.state.setQuickAttachments(intake.attachments);
    members->lastDetectedPasteAutoRunInput.clear();
    alive.state.setInputAttachmentNotice(intake.joinedNotices());
    runOnDrop(alive, *members->services.selection, intake.attachments);
}

void lookAtChange(CanvasEvents::Members &members, const QString &oldText, const QString &newText)
{
    const Alive alive = ensureAlive(members, {});
    if (!alive.state.homeAutomationOptions().autoRunOnPaste) {
        return;
    }
    const QStringView typed = trimmed(newText);
    if (typed.isEmpty() || typed == trimmed(oldText)) {
        return;
    }
    const QString clipboard = members.services.clipboardText->cachedText();
    const QStringView clip = trimmed(clipboard);
    if (clip.isEmpty() || !looksLikeAPaste(oldText, newText, clip)
        || members.lastDetectedPasteAutoRunInput == typed) {
        return;
    }
    members.lastDetectedPasteAutoRunInput = typed.toString();
    alive.pipeline.runSelectedAction();
}

// Nobody awaits these tasks. They tell the state how they end; a stop ends them in silence.
template <typename Begin> QCoro::Task<void> runInScope(MembersHandle members, Begin begin)
{
    std::stop_source stop;
    const TaskScope::Ticket ticket = members->services.scope->enter(stop);
    try {
        co_await begin(members, stop.get_token());
    } catch (const CancellationError &) {
    }
}

void beginDrop(const MembersHandle &members, QList<QUrl> urls)
{
    QMetaObject::invokeMethod(
        members->state.data(),
        [members, urls = std::move(urls)] {
            static_cast<void>(
                runInScope(members, [urls](MembersHandle handle, std::stop_token stop) {
                    return drop(handle, urls, stop);
                }));
        },
        Qt::QueuedConnection);
}

struct TextChange
{
    QString before;
    QString after;
};

// The file system may take its time: what was typed meanwhile keeps the text from being a drop.
QCoro::Task<void> takeNamedFiles(
    MembersHandle members, TextChange change, QList<QUrl> named, std::stop_token stop)
{
    auto ask = [named](const std::stop_token &) { return areFiles(named); };
    const bool isDrop = co_await members->fileSystem.run(std::move(ask), stop);
    AppState &state = ensureAlive(*members, stop).state;
    if (!isDrop || state.quickInput() != change.after) {
        lookAtChange(*members, change.before, change.after);
        co_return;
    }
    state.setQuickInput(QString());
    beginDrop(members, std::move(named));
}

void takeChange(const MembersHandle &members, TextChange change)
{
    QList<QUrl> named = filesNamedBy(change.before, change.after);
    if (named.isEmpty()) {
        lookAtChange(*members, change.before, change.after);
        return;
    }
    static_cast<void>(runInScope(members,
        [change = std::move(change), named = std::move(named)](
            MembersHandle handle, std::stop_token stop) {
            return takeNamedFiles(std::move(handle), change, named, std::move(stop));
        }));
}

// All changes of one turn of the event loop are looked at together, on the next one: nothing runs
// while a field is being written.
void lookAtChangeOnNextTurn(const MembersHandle &members)
{
    if (std::exchange(members->isChangePosted, true)) {
        return;
    }
    const auto look = [members] {
        members->isChangePosted = false;
        if (members->pipeline == nullptr) {
            return;
        }
        TextChange change;
        change.after = members->state->quickInput();
        change.before = std::exchange(members->textBeforeTurn, change.after);
        takeChange(members, std::move(change));
    };
    QMetaObject::invokeMethod(members->state.data(), look, Qt::QueuedConnection);
}

} // namespace

CanvasEvents::CanvasEvents(AppState &state, RunPipeline &pipeline, CanvasServices services)
    : m_members(std::make_shared<Members>())
{
    m_members->state = &state;
    m_members->pipeline = &pipeline;
    m_members->services = std::move(services);
    m_members->textBeforeTurn = state.quickInput();
    m_members->watch = QObject::connect(&state, &AppState::quickInputChanged, &state,
        [members = m_members] { lookAtChangeOnNextTurn(members); });
}

CanvasEvents::~CanvasEvents()
{
    QObject::disconnect(m_members->watch);
    m_members->pipeline = nullptr;
}

void CanvasEvents::pasteFromClipboard()
{
    static_cast<void>(runInScope(m_members,
        [](MembersHandle members, std::stop_token stop) { return paste(members, stop); }));
}

void CanvasEvents::handleQuickInputChange(const QString &oldText, const QString &newText)
{
    lookAtChange(*m_members, oldText, newText);
}

void CanvasEvents::handleDroppedFiles(QList<QUrl> urls)
{
    if (urls.isEmpty()) {
        return;
    }
    beginDrop(m_members, std::move(urls));
}

void CanvasEvents::clearQuickInput()
{
    AppState &state = *m_members->state;
    state.setQuickInput(QString());
    state.setQuickAttachments({});
    state.setInputAttachmentNotice(std::nullopt);
    m_members->lastDetectedPasteAutoRunInput.clear();
}

void CanvasEvents::removeAttachment(const QUuid &id)
{
    AppState &state = *m_members->state;
    QList<InputAttachment> attachments = state.quickAttachments();
    attachments.removeIf([&](const InputAttachment &attachment) { return attachment.id == id; });
    state.setQuickAttachments(attachments);
    if (attachments.isEmpty()) {
        state.setInputAttachmentNotice(std::nullopt);
    }
}

void CanvasEvents::holdForInput(AIAction action)
{
    m_members->pendingActionForInput = std::move(action);
}

void CanvasEvents::submitInputModal()
{
    AppState &state = *m_members->state;
    if (!m_members->pendingActionForInput) {
        state.setIsInputModalPresented(false);
        return;
    }
    const QString text = trimmed(state.inputModalText()).toString();
    if (text.isEmpty()) {
        return;
    }
    state.setQuickInput(text);
    AIAction action = *std::exchange(m_members->pendingActionForInput, std::nullopt);
    state.setIsInputModalPresented(false);
    const PreparedRunInput input{text, {}};
    m_members->pipeline->startRun(std::move(action), ExplicitInput{input});
}

void CanvasEvents::dismissInputModal()
{
    m_members->pendingActionForInput.reset();
    m_members->state->setIsInputModalPresented(false);
}

} // namespace velarc
