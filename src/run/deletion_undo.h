#pragma once

// Gives the action that was deleted last back, for as long as its notice stands: 6 s.
//
// One level: a later deletion takes the place of an earlier one. Main thread only.

#include "actions/action.h"
#include "base/async.h"
#include "base/clock.h"

#include <QPointer>

#include <memory>

namespace velarc {

class AppState;

// What a deletion took out of the library, and how things stood before it.
struct Deletion
{
    struct Place
    {
        qsizetype index = 0; // in the list as it was
        AIAction action;
    };

    QList<Place> places; // ascending
    QList<QUuid> recentIDs;
    std::optional<QUuid> selectedID;
};

// What stands after the deletion is taken back. What changed since then stays: actions added behind
// it, recents noted since, and a selection that somebody else has made.
struct UndoneDeletion
{
    QList<AIAction> actions;
    QList<QUuid> recentIDs;
    std::optional<QUuid> selectedID;
};

[[nodiscard]] Deletion deletionOf(const AppState &before, const QUuid &id);

class DeletionUndo
{
public:
    // `state` must outlive it, or go with it.
    DeletionUndo(AppState &state, std::shared_ptr<Clock> clock, std::shared_ptr<TaskScope> scope);

    // Publishes the notice, and takes it back after its time. The deletion has been carried out.
    void remember(Deletion deletion);

    // What the list, the recents and the selection become, and the notice goes. None if no notice
    // stands.
    [[nodiscard]] std::optional<UndoneDeletion> take();

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
