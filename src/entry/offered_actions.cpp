#include "entry/offered_actions.h"

#include "actions/action_list.h"

#include <QHash>

namespace velarc {

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

} // namespace velarc
