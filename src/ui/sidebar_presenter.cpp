#include "ui/sidebar_presenter.h"

#include "actions/action_list.h"
#include "base/uuid.h"
#include "run/app_view_model.h"
#include "ui/action_look.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

void appendRows(QList<SidebarRow> &rows, const QString &section, const QList<AIAction> &actions)
{
    for (const AIAction &action : actions) {
        rows.append({section, uuidText(action.id), action.name, action.icon,
            displayColor(action.colorHex)});
    }
}

} // namespace

QList<SidebarRow> sidebarRows(const QList<AIAction> &actions)
{
    const QList<AIAction> shown = sortedForDisplay(visibleActions(actions));
    const auto firstUnpinned = std::find_if(
        shown.begin(), shown.end(), [](const AIAction &action) { return !action.isPinned; });
    QList<SidebarRow> rows;
    rows.reserve(2 * shown.size());
    appendRows(rows, u"Quick Actions"_s, shown.first(firstUnpinned - shown.begin()));
    appendRows(rows, u"All Actions"_s, shown);
    return rows;
}

SidebarPresenter::SidebarPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    const auto refresh = [this] { m_rows.setRows(sidebarRows(m_viewModel.actions())); };
    connect(&viewModel, &AppState::actionsChanged, this, refresh);
    connect(
        &viewModel, &AppState::selectedActionIDChanged, this, &SidebarPresenter::selectedIDChanged);
    refresh();
}

QString SidebarPresenter::selectedID() const
{
    const auto &id = m_viewModel.selectedActionID();
    return id ? uuidText(*id) : QString();
}

void SidebarPresenter::select(const QString &actionID)
{
    const QUuid id = QUuid::fromString(actionID);
    const auto &actions = m_viewModel.actions();
    if (std::any_of(actions.begin(), actions.end(),
            [&](const AIAction &action) { return action.id == id; })) {
        m_viewModel.library().selectAction(id);
    }
}

int SidebarPresenter::rowOf(const QString &actionID, int preferredRow) const
{
    const QList<SidebarRow> &rows = m_rows.rows();
    if (rows.value(preferredRow).actionID == actionID) {
        return preferredRow;
    }
    const auto found = std::find_if(
        rows.begin(), rows.end(), [&](const SidebarRow &row) { return row.actionID == actionID; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

void SidebarPresenter::newAction()
{
    m_viewModel.library().newAction();
}

void SidebarPresenter::openMore()
{
    m_viewModel.setIsMoreSheetPresented(true);
}

} // namespace velarc
