#include "entry/actions_service.h"

#include "base/errors.h"
#include "base/uuid.h"
#include "entry/action_lookup.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusServiceWatcher>

namespace velarc {

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const BusAction &action)
{
    argument.beginStructure();
    argument << action.id << action.title;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, BusAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.title;
    argument.endStructure();
    return argument;
}

namespace {

constexpr QLatin1StringView kFailed = "com.tolmar.velarc.Actions1.Error.Failed"_L1;
constexpr QLatin1StringView kNoSuchAction = "com.tolmar.velarc.Actions1.Error.NoSuchAction"_L1;
constexpr QLatin1StringView kAmbiguous = "com.tolmar.velarc.Actions1.Error.AmbiguousTitle"_L1;
constexpr QLatin1StringView kTooMany = "com.tolmar.velarc.Actions1.Error.TooManyRuns"_L1;

void addPayload(QVariantMap &details, const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        details.insert(u"text"_s, busText(text->text));
    } else if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        details.insert(u"png"_s, image->png);
    } else {
        details.insert(u"file"_s, std::get<PdfPayload>(payload).url.toLocalFile());
    }
}

QVariantMap detailsOf(const IntentOutcome &outcome)
{
    QVariantMap details{{u"done"_s, outcome.kind == IntentOutcome::Kind::Done}};
    if (!outcome.run) {
        return details;
    }
    if (outcome.run->provider) {
        details.insert(u"provider"_s, storedSpelling(*outcome.run->provider));
    }
    if (outcome.run->modelID) {
        details.insert(u"model"_s, busText(*outcome.run->modelID));
    }
    addPayload(details, outcome.run->payload);
    return details;
}

// One call of Run, from its acceptance to its answer.
struct RunCall
{
    QDBusConnection bus;
    QDBusMessage message;
    ServiceParts parts;
    Activity::Hold hold;
    std::shared_ptr<void> place; // among the runs that may go on at once
    std::stop_source stop;
};

// Stops the run when its caller leaves the bus: nobody waits for the answer then.
std::unique_ptr<QDBusServiceWatcher> watchCaller(const RunCall &call)
{
    auto watcher = std::make_unique<QDBusServiceWatcher>(
        call.message.service(), call.bus, QDBusServiceWatcher::WatchForUnregistration);
    QObject::connect(watcher.get(), &QDBusServiceWatcher::serviceUnregistered, watcher.get(),
        [stop = call.stop]() mutable { stop.request_stop(); });
    return watcher;
}

QCoro::Task<QDBusMessage> replyToRun(RunCall call, QUuid action, QString input)
{
    QString failure;
    try {
        const IntentOutcome outcome = co_await performIntent(
            action, std::move(input), call.parts.makeViewModel, call.stop.get_token());
        static_cast<void>(co_await call.parts.finishCopying(call.stop.get_token()));
        co_return call.message.createReply(
            QVariantList{busText(outcome.dialog), detailsOf(outcome)});
    } catch (const CancellationError &) {
        throw;
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    co_return call.message.createErrorReply(kFailed, busText(failure));
}

QCoro::Task<void> runAndReply(RunCall call, QUuid action, QString input)
{
    const TaskScope::Ticket ticket = call.parts.scope->enter(call.stop);
    const auto watcher = watchCaller(call);
    try {
        const QDBusMessage reply = co_await replyToRun(call, action, std::move(input));
        call.bus.send(reply);
    } catch (const CancellationError &) {
        // Nobody is there to be told, or the process ends.
    }
}

} // namespace

ActionsService::ActionsService(
    QObject *parent, QDBusConnection bus, ServiceParts parts, Activity &activity)
    : QDBusAbstractAdaptor(parent)
    , m_bus(std::move(bus))
    , m_parts(std::move(parts))
    , m_activity(activity)
{
    qDBusRegisterMetaType<BusAction>();
    qDBusRegisterMetaType<BusActions>();
}

BusActions ActionsService::List()
{
    m_activity.note();
    BusActions actions;
    for (const VelarcActionEntity &entity : suggestedEntities(*m_parts.openStore())) {
        actions.append({uuidText(entity.id), busText(entity.title)});
    }
    return actions;
}

void ActionsService::refuse(
    const QDBusMessage &message, QLatin1StringView error, const QString &text)
{
    m_bus.send(message.createErrorReply(error, text));
}

void ActionsService::Run(const QString &action, const QString &input, const QDBusMessage &message)
{
    m_activity.note();
    message.setDelayedReply(true);
    if (*m_runs >= kMostRuns) {
        refuse(message, kTooMany, u"Too many runs go on already."_s);
        return;
    }
    const ActionLookup lookup = lookUpAction(suggestedEntities(*m_parts.openStore()), action);
    const auto *id = std::get_if<QUuid>(&lookup);
    if (std::holds_alternative<AmbiguousAction>(lookup)) {
        refuse(message, kAmbiguous, u"Several actions have that title."_s);
    } else if (id == nullptr) {
        refuse(message, kNoSuchAction, u"No action has that title."_s);
    } else {
        ++*m_runs;
        RunCall call{m_bus, message, m_parts, m_activity.hold(),
            {nullptr, [runs = m_runs](void *) { --*runs; }}, {}};
        // Nobody awaits it: it ends by its answer, or with the scope.
        static_cast<void>(runAndReply(std::move(call), *id, input));
    }
}

} // namespace velarc
