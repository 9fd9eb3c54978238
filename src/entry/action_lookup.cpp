#include "entry/action_lookup.h"

#include "base/text.h"
#include "base/uuid.h"

namespace velarc {

namespace {

template <typename Fits>
QList<VelarcActionEntity> thoseThat(const QList<VelarcActionEntity> &offered, Fits fits)
{
    QList<VelarcActionEntity> found;
    for (const VelarcActionEntity &entity : offered) {
        if (fits(entity.title)) {
            found.append(entity);
        }
    }
    return found;
}

} // namespace

ActionLookup lookUpAction(const QList<VelarcActionEntity> &offered, const QString &typed)
{
    if (const auto uuid = uuidFromText(typed)) {
        return *uuid;
    }
    auto found = thoseThat(offered, [&](const QString &title) { return title == typed; });
    if (found.isEmpty()) {
        const QString folded = foldedToLower(typed);
        found = thoseThat(
            offered, [&](const QString &title) { return foldedToLower(title) == folded; });
    }
    if (found.isEmpty()) {
        return NoSuchAction{};
    }
    if (found.size() > 1) {
        return AmbiguousAction{found};
    }
    return found.first().id;
}

} // namespace velarc
