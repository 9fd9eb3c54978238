#include "run/result_delivery.h"

#include "base/private_file.h"
#include "base/text.h"
#include "base/uuid.h"
#include "run/app_state.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct ResultDelivery::Members
{
    QPointer<AppState> state;
    DeliveryServices services;
    SerialWorker files; // writes what is shared
};

namespace {

using MembersHandle = std::shared_ptr<ResultDelivery::Members>;
using ProgressHandle = std::shared_ptr<RunProgress>;

constexpr std::chrono::milliseconds kToastTime = 1350ms;
constexpr qsizetype kShortUuidLength = 8;

bool copy(const DeliveryServices &services, const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        services.clipboard->writeText(text->text);
    } else if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        services.clipboard->writeImage(image->png);
    } else if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        services.clipboard->writeText(pdf->url.toLocalFile());
    }
    return true;
}

// Whether the payload has been copied.
bool deliverOutput(const DeliveryServices &services, OutputDestination destination,
    const ResultPayload &payload, RunProgress &progress)
{
    switch (destination) {
    case OutputDestination::ShowInApp:
        return false;
    case OutputDestination::CopyToClipboard: {
        const bool copied = copy(services, payload);
        progress.note(copied ? u"Output copied to clipboard."_s : u"Could not copy this output."_s);
        return copied;
    }
    case OutputDestination::ShareImmediately: {
        const bool copied = copy(services, payload);
        progress.note(copied ? u"Output is ready to share."_s
                             : u"Could not prepare this output for sharing."_s);
        return copied;
    }
    }
    Q_UNREACHABLE();
}

bool isCalendar(SystemDestinationKind kind)
{
    return kind == SystemDestinationKind::CalendarCreateEvent
        || kind == SystemDestinationKind::CalendarListUpcomingEvents
        || kind == SystemDestinationKind::CalendarEditEvent
        || kind == SystemDestinationKind::CalendarDeleteEvent;
}

// Whether another text could have led to another outcome.
bool isAboutTheText(CalendarFailure failure)
{
    switch (failure) {
    case CalendarFailure::InvalidInput:
    case CalendarFailure::EventNotFound:
    case CalendarFailure::MissingEventIdentifierOrTitle:
        return true;
    case CalendarFailure::AccessDenied:
    case CalendarFailure::NoWritableCalendar:
        return false;
    }
    Q_UNREACHABLE();
}

RoutedExecutionResult routedFrom(SystemActionExecutionResult result)
{
    RoutedExecutionResult routed;
    routed.payload = std::move(result.payload);
    routed.providerLabel = std::move(result.providerLabel);
    routed.debugInfo = std::move(result.debugInfo);
    return routed;
}

QCoro::Task<RoutedExecutionResult> routeToSystem(MembersHandle members, SystemDestinationKind kind,
    Delivery delivery, ProgressHandle progress, std::stop_token stop)
{
    const QString input = trimmed(delivery.userText).toString();
    const QString generated = trimmed(payloadText(delivery.payload).value_or(QString())).toString();
    const QString first = generated.isEmpty() ? input : generated;
    SystemActionExecuting &actions = *members->services.systemActions;

    std::optional<SystemActionExecutionResult> result;
    try {
        result = co_await actions.execute(kind, first, stop);
    } catch (const CalendarActionServiceError &failure) {
        const bool mayHelp = isCalendar(kind) && isAboutTheText(failure.failure())
            && !input.isEmpty() && input != first;
        if (!mayHelp) {
            throw;
        }
    }
    if (!result) {
        progress->ensureActive();
        result = co_await actions.execute(kind, input, stop);
    }
    co_return routedFrom(*std::move(result));
}

QCoro::Task<RoutedExecutionResult> route(
    MembersHandle members, Delivery delivery, ProgressHandle progress, std::stop_token stop)
{
    if (const auto kind = delivery.destination.asSystem()) {
        co_return co_await routeToSystem(
            members, *kind, std::move(delivery), std::move(progress), std::move(stop));
    }
    RoutedExecutionResult routed;
    routed.copiedByDestination = deliverOutput(
        members->services, *delivery.destination.asOutput(), delivery.payload, *progress);
    routed.payload = std::move(delivery.payload);
    co_return routed;
}

QCoro::Task<void> clearToastLater(MembersHandle members, QUuid toastID, std::stop_source stop)
{
    const TaskScope::Ticket ticket = members->services.scope->enter(stop);
    try {
        co_await members->services.clock->pause(kToastTime, stop.get_token());
    } catch (const CancellationError &) {
        // A broken pause has lasted long enough.
    }
    if (!members->state) {
        co_return;
    }
    const auto &toast = members->state->clipboardToast();
    if (toast && toast->id == toastID) {
        members->state->setClipboardToast(std::nullopt);
    }
}

QString newShareFile(const QString &stem, const QString &extension)
{
    return temporaryFilePath(stem + uuidText(newUuid()).left(kShortUuidLength) + extension);
}

QCoro::Task<std::optional<QUrl>> writeShareFile(
    MembersHandle members, QString path, QByteArray bytes, std::stop_token stop)
{
    auto write = [path, bytes = std::move(bytes)](
                     const std::stop_token &) { return writeNewPrivateFile(path, bytes); };
    const bool isWritten = co_await members->files.run(std::move(write), std::move(stop));
    co_return isWritten ? std::optional(QUrl::fromLocalFile(path)) : std::nullopt;
}

QCoro::Task<std::optional<QUrl>> shareFileOf(
    MembersHandle members, ResultPayload payload, std::stop_token stop)
{
    if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        co_return pdf->url;
    }
    QString path;
    QByteArray bytes;
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        path = newShareFile(u"velarc-result-"_s, u".txt"_s);
        bytes = text->text.toUtf8();
    } else if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        path = newShareFile(u"velarc-image-"_s, u".png"_s);
        bytes = image->png;
    }
    co_return co_await writeShareFile(
        std::move(members), std::move(path), std::move(bytes), std::move(stop));
}

QCoro::Task<std::optional<QUrl>> noShareFile()
{
    co_return std::nullopt;
}

} // namespace

ResultDelivery::ResultDelivery(AppState &state, DeliveryServices services)
    : m_members(std::make_shared<Members>())
{
    m_members->state = &state;
    m_members->services = std::move(services);
}

QCoro::Task<RoutedExecutionResult> ResultDelivery::routeResult(
    Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop)
{
    return route(m_members, std::move(delivery), std::move(progress), std::move(stop));
}

QCoro::Task<QUrl> ResultDelivery::exportPDF(QString text, QString title, std::stop_token stop)
{
    return m_members->services.pdfExport->exportPDF(
        std::move(text), std::move(title), std::move(stop));
}

bool ResultDelivery::copyToClipboard(const ResultPayload &payload)
{
    return copy(m_members->services, payload);
}

void ResultDelivery::showClipboardToast(QString message)
{
    const ClipboardToast toast{newUuid(), std::move(message)};
    m_members->state->setClipboardToast(toast);
    // Nobody awaits it: it ends by itself, or with the scope.
    static_cast<void>(clearToastLater(m_members, toast.id, std::stop_source()));
}

void ResultDelivery::copyResult()
{
    AppState &state = *m_members->state;
    const auto *result = std::get_if<EngineResult>(&state.engineState());
    if (result == nullptr) {
        return;
    }
    state.setStatusNote(copyToClipboard(result->payload) ? u"Copied result to clipboard."_s
                                                         : u"Nothing to copy for this output."_s);
}

QCoro::Task<std::optional<QUrl>> ResultDelivery::shareableFileURL(std::stop_token stop)
{
    const auto *result = std::get_if<EngineResult>(&m_members->state->engineState());
    if (result == nullptr) {
        return noShareFile();
    }
    return shareFileOf(m_members, result->payload, std::move(stop));
}

} // namespace velarc
