#include "actions/action_list.h"

#include "base/locale_text.h"

#include <QHash>

#include <algorithm>
#include <tuple>
#include <vector>

namespace velarc {

namespace {

// What an action is sorted by. Comparing by the locale costs far more than comparing the bytes of
// a sort key, and a sort compares each name a dozen times.
struct DisplayKey
{
    bool isUnpinned;
    qint64 sortOrder;
    QByteArray name;
    qsizetype index;
};

bool standsBefore(const DisplayKey &left, const DisplayKey &right)
{
    return std::tie(left.isUnpinned, left.sortOrder, left.name, left.index)
        < std::tie(right.isUnpinned, right.sortOrder, right.name, right.index);
}

std::vector<DisplayKey> displayKeys(const QList<AIAction> &actions)
{
    const NameOrder names;
    std::vector<DisplayKey> keys;
    keys.reserve(static_cast<std::size_t>(actions.size()));
    for (qsizetype index = 0; index < actions.size(); ++index) {
        const AIAction &action = actions[index];
        keys.push_back({!action.isPinned, action.sortOrder, names.sortKey(action.name), index});
    }
    return keys;
}

} // namespace

QList<AIAction> visibleActions(const QList<AIAction> &actions)
{
    QList<AIAction> visible;
    visible.reserve(actions.size());
    std::remove_copy_if(actions.cbegin(), actions.cend(), std::back_inserter(visible), isHidden);
    return visible;
}

QList<AIAction> sortedForDisplay(const QList<AIAction> &actions)
{
    std::vector<DisplayKey> keys = displayKeys(actions);
    std::sort(keys.begin(), keys.end(), standsBefore);
    QList<AIAction> sorted;
    sorted.reserve(actions.size());
    for (const DisplayKey &key : keys) {
        sorted.append(actions[key.index]);
    }
    return sorted;
}

QList<AIAction> pinnedActions(const QList<AIAction> &actions)
{
    QList<AIAction> pinned;
    std::copy_if(actions.cbegin(), actions.cend(), std::back_inserter(pinned),
        [](const AIAction &action) { return action.isPinned && !isHidden(action); });
    return sortedForDisplay(pinned);
}

std::optional<AIAction> selectedAction(
    const QList<AIAction> &actions, const std::optional<QUuid> &selectedID)
{
    if (selectedID) {
        const auto selected = std::find_if(actions.cbegin(), actions.cend(),
            [&](const AIAction &action) { return action.id == *selectedID && !isHidden(action); });
        if (selected != actions.cend()) {
            return *selected;
        }
    }
    const QList<AIAction> visible = visibleActions(actions);
    if (visible.isEmpty()) {
        return std::nullopt;
    }
    const std::vector<DisplayKey> keys = displayKeys(visible);
    return visible[std::min_element(keys.begin(), keys.end(), standsBefore)->index];
}

QList<QUuid> withRecentAction(QList<QUuid> ids, const QUuid &id)
{
    ids.removeAll(id);
    ids.prepend(id);
    if (ids.size() > kRecentActionLimit) {
        ids.resize(kRecentActionLimit);
    }
    return ids;
}

QList<AIAction> recentActions(const QList<AIAction> &actions, const QList<QUuid> &ids)
{
    QHash<QUuid, const AIAction *> visible;
    for (const QUuid &id : ids) {
        visible.insert(id, nullptr);
    }
    for (const AIAction &action : actions) {
        const auto wanted = visible.find(action.id);
        if (wanted != visible.end() && *wanted == nullptr && !isHidden(action)) {
            *wanted = &action;
        }
    }
    QList<AIAction> recent;
    for (const QUuid &id : ids) {
        if (const AIAction *action = visible.value(id)) {
            recent.append(*action);
        }
    }
    return recent;
}

} // namespace velarc
