#include "ui/library_presenter.h"

#include "base/text.h"
#include "run/app_view_model.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

LibraryPresenter::LibraryPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    using State = AppState;
    connect(&viewModel, &State::isActionLibraryPresentedChanged, this,
        &LibraryPresenter::followPresentation);
    connect(&viewModel, &State::actionsChanged, this, &LibraryPresenter::refresh);
    connect(&viewModel, &State::recentActionIDsChanged, this, &LibraryPresenter::refresh);
    connect(&viewModel, &State::selectedActionIDChanged, this, &LibraryPresenter::refresh);
    connect(
        &viewModel, &State::deletionNoticeChanged, this, &LibraryPresenter::deletionNoticeChanged);
}

void LibraryPresenter::setQuery(const QString &query)
{
    if (query == m_query) {
        return;
    }
    m_query = query;
    refresh();
    Q_EMIT queryChanged();
}

QString LibraryPresenter::emptyTitle() const
{
    return isBlank(m_query) ? u"No Actions Yet"_s : u"No Matching Actions"_s;
}

QString LibraryPresenter::emptyText() const
{
    return isBlank(m_query) ? u"Create your first action to get started."_s
                            : u"Try a different search term."_s;
}

QString LibraryPresenter::deletionNotice() const
{
    const auto &notice = m_viewModel.deletionNotice();
    return notice ? u"Deleted "_s + notice->name : QString();
}

void LibraryPresenter::choose(const QString &actionID)
{
    if (actionOf(actionID) != nullptr) {
        m_viewModel.setIsActionLibraryPresented(false); // first, so that no row moves any more
        m_viewModel.library().selectAction(QUuid::fromString(actionID));
    }
}

void LibraryPresenter::togglePin(const QString &actionID)
{
    m_viewModel.library().togglePin(QUuid::fromString(actionID));
}

void LibraryPresenter::edit(const QString &actionID)
{
    if (const AIAction *action = actionOf(actionID)) {
        m_viewModel.library().editAction(AIAction(*action));
        m_viewModel.setIsActionLibraryPresented(false);
        m_viewModel.setIsMoreSheetPresented(false);
    }
}

void LibraryPresenter::duplicate(const QString &actionID)
{
    if (const AIAction *action = actionOf(actionID)) {
        m_viewModel.library().duplicateAction(AIAction(*action));
    }
}

void LibraryPresenter::remove(const QString &actionID)
{
    if (const AIAction *action = actionOf(actionID)) {
        m_viewModel.library().deleteAction(AIAction(*action));
    }
}

void LibraryPresenter::undoRemove()
{
    m_viewModel.library().undoDelete();
}

int LibraryPresenter::rowOf(const QString &actionID) const
{
    const QList<LibraryRow> &rows = m_rows.rows();
    const auto found = std::find_if(
        rows.begin(), rows.end(), [&](const LibraryRow &row) { return row.actionID == actionID; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

void LibraryPresenter::followPresentation()
{
    const bool wasPresented = std::exchange(m_isPresented, m_viewModel.isActionLibraryPresented());
    if (m_isPresented && !wasPresented) {
        m_query.clear();
        refresh();
        Q_EMIT queryChanged();
    }
}

void LibraryPresenter::refresh()
{
    if (!m_isPresented) {
        return;
    }
    const QList<AIAction> &actions = m_viewModel.actions();
    if (!m_indexed.isSharedWith(actions)) {
        m_index = LibraryIndex(actions);
        m_indexed = actions;
    }
    const auto chosen = m_viewModel.library().selectedAction();
    m_rows.setRows(m_index.rows(
        m_query, m_viewModel.recentActionIDs(), chosen ? std::optional(chosen->id) : std::nullopt));
}

const AIAction *LibraryPresenter::actionOf(const QString &actionID) const
{
    const QList<AIAction> &actions = m_viewModel.actions();
    const QUuid id = QUuid::fromString(actionID);
    const auto found = std::find_if(
        actions.begin(), actions.end(), [&](const AIAction &action) { return action.id == id; });
    return found == actions.end() ? nullptr : &*found;
}

} // namespace velarc
