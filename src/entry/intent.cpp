#include "entry/intent.h"

#include "actions/action_list.h"
#include "base/text.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

IntentOutcome refused(QString dialog)
{
    return {IntentOutcome::Kind::Refused, std::move(dialog), std::nullopt};
}

bool needsComposeWindow(const AIAction &action)
{
    const auto kind = action.destination.asSystem();
    return kind == SystemDestinationKind::MailCompose
        || kind == SystemDestinationKind::MessagesCompose;
}

QString dialogFor(const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        return isBlank(text->text) ? u"Action completed."_s : text->text;
    }
    return std::holds_alternative<ImagePayload>(payload) ? u"Image generated."_s
                                                         : u"PDF generated."_s;
}

} // namespace

QList<AIAction> loadOfferedActions(const LocalStore &store)
{
    return sortedForDisplay(visibleActions(store.loadActions()));
}

QList<VelarcActionEntity> suggestedEntities(const LocalStore &store)
{
    QList<VelarcActionEntity> entities;
    for (const AIAction &action : loadOfferedActions(store)) {
        entities.append({action.id, action.name});
    }
    return entities;
}

QList<VelarcActionEntity> entitiesFor(const LocalStore &store, const QList<QUuid> &identifiers)
{
    QHash<QUuid, VelarcActionEntity> offered;
    for (const VelarcActionEntity &entity : suggestedEntities(store)) {
        if (offered.contains(entity.id)) {
            qFatal("two actions have one id");
        }
        offered.insert(entity.id, entity);
    }
    QList<VelarcActionEntity> found;
    for (const QUuid &identifier : identifiers) {
        const auto entity = offered.constFind(identifier);
        if (entity != offered.constEnd()) {
            found.append(*entity);
        }
    }
    return found;
}

QCoro::Task<IntentOutcome> performIntent(
    QUuid actionID, QString input, MakeViewModel makeViewModel, std::stop_token stop)
{
    const QString text = trimmed(input).toString();
    if (text.isEmpty()) {
        co_return refused(u"Input is empty."_s);
    }
    const std::unique_ptr<AppViewModel> viewModel = makeViewModel();
    const QList<AIAction> &actions = viewModel->actions();
    const auto found = std::find_if(actions.begin(), actions.end(),
        [&](const AIAction &action) { return action.id == actionID; });
    if (found == actions.end()) {
        co_return refused(u"Action no longer exists."_s);
    }
    if (needsComposeWindow(*found)) {
        co_return refused(u"This action needs foreground compose UI in Mail or Messages. "
                          u"Open Velarc and run it there."_s);
    }
    ResultPayload payload = co_await viewModel->runForShortcut(*found, text, stop);
    QString dialog = dialogFor(payload);
    co_return IntentOutcome{IntentOutcome::Kind::Done, std::move(dialog), std::move(payload)};
}

} // namespace velarc
