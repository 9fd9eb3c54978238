#include "run/deletion_undo.h"

#include "actions/action_list.h"
#include "base/errors.h"
#include "base/uuid.h"
#include "run/app_state.h"

#include <QCoroTask>

#include <utility>

namespace velarc {

using namespace std::chrono_literals;

struct DeletionUndo::Members
{
    QPointer<AppState> state;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<TaskScope> scope;
    std::optional<Deletion> deletion;
    std::optional<QUuid> selectedByDeletion;
};

namespace {

using MembersHandle = std::shared_ptr<DeletionUndo::Members>;

constexpr std::chrono::milliseconds kNoticeTime = 6s;

QCoro::Task<void> forgetLater(MembersHandle members, QUuid noticeID, std::stop_source stop)
{
    const TaskScope::Ticket ticket = members->scope->enter(stop);
    try {
        co_await members->clock->pause(kNoticeTime, stop.get_token());
    } catch (const CancellationError &) {
        // The program ends: the notice goes with it.
    }
    if (!members->state) {
        co_return;
    }
    const auto &notice = members->state->deletionNotice();
    if (notice && notice->id == noticeID) {
        members->state->setDeletionNotice(std::nullopt);
        members->deletion.reset();
    }
}

// `now` with each id that it lost at the place where it stood, as far as there still is one.
QList<QUuid> recentsGivenBack(const QList<QUuid> &before, const QUuid &id, QList<QUuid> now)
{
    const qsizetype index = before.indexOf(id);
    if (index < 0 || now.contains(id)) {
        return now;
    }
    now.insert(std::min(index, now.size()), id);
    return now.first(std::min(now.size(), kRecentActionLimit));
}

UndoneDeletion undone(
    const Deletion &deletion, const AppState &now, const std::optional<QUuid> &selectedByDeletion)
{
    UndoneDeletion result{now.actions(), now.recentActionIDs(), now.selectedActionID()};
    for (const Deletion::Place &place : deletion.places) {
        result.actions.insert(std::min(place.index, result.actions.size()), place.action);
        result.recentIDs =
            recentsGivenBack(deletion.recentIDs, place.action.id, std::move(result.recentIDs));
    }
    if (result.selectedID == selectedByDeletion) {
        result.selectedID = deletion.selectedID;
    }
    return result;
}

} // namespace

Deletion deletionOf(const AppState &before, const QUuid &id)
{
    Deletion deletion;
    const QList<AIAction> &actions = before.actions();
    for (qsizetype index = 0; index < actions.size(); ++index) {
        if (actions.at(index).id == id) {
            deletion.places.append({index, actions.at(index)});
        }
    }
    deletion.recentIDs = before.recentActionIDs();
    deletion.selectedID = before.selectedActionID();
    return deletion;
}

DeletionUndo::DeletionUndo(
    AppState &state, std::shared_ptr<Clock> clock, std::shared_ptr<TaskScope> scope)
    : m_members(std::make_shared<Members>())
{
    m_members->state = &state;
    m_members->clock = std::move(clock);
    m_members->scope = std::move(scope);
}

void DeletionUndo::remember(Deletion deletion)
{
    if (deletion.places.isEmpty()) {
        return;
    }
    const DeletionNotice notice{newUuid(), deletion.places.first().action.name};
    m_members->deletion = std::move(deletion);
    m_members->selectedByDeletion = m_members->state->selectedActionID();
    m_members->state->setDeletionNotice(notice);
    // Nobody awaits it: it ends by itself, or with the scope.
    static_cast<void>(forgetLater(m_members, notice.id, std::stop_source()));
}

std::optional<UndoneDeletion> DeletionUndo::take()
{
    const auto deletion = std::exchange(m_members->deletion, std::nullopt);
    if (!deletion) {
        return std::nullopt;
    }
    m_members->state->setDeletionNotice(std::nullopt);
    return undone(*deletion, *m_members->state, m_members->selectedByDeletion);
}

} // namespace velarc
