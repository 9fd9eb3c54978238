#pragma once

// The sidebar: the user's actions, pinned ones first, and which of them is selected.

#include "actions/action.h"
#include "ui/row_model.h"

#include <QObject>

namespace velarc {

class AppViewModel;

struct SidebarRow
{
    Q_GADGET
    Q_PROPERTY(QString section MEMBER section)
    Q_PROPERTY(QString actionID MEMBER actionID)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)

public:
    QString section;
    QString actionID;
    QString name;
    QString symbol;
    QString colorHex; // "#2563eb", as the action's own colour is read

    [[nodiscard]] QString key() const { return section + actionID; }
    friend bool operator==(const SidebarRow &, const SidebarRow &) = default;
};

// "Quick Actions", with the pinned ones, only where there are any; then "All Actions".
[[nodiscard]] QList<SidebarRow> sidebarRows(const QList<AIAction> &actions);

class SidebarPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.sidebar is the one")
    Q_PROPERTY(velarc::RowModel *rows READ rows CONSTANT)
    Q_PROPERTY(QString selectedID READ selectedID NOTIFY selectedIDChanged)

public:
    explicit SidebarPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] RowModel *rows() { return &m_rows; }
    [[nodiscard]] QString selectedID() const;

    // Selects the action. What names no action of the library changes nothing.
    Q_INVOKABLE void select(const QString &actionID);

    // The row of the action: `preferredRow` if it is one, else the first; -1 if it has none.
    [[nodiscard]] Q_INVOKABLE int rowOf(const QString &actionID, int preferredRow) const;

    Q_INVOKABLE void newAction();
    Q_INVOKABLE void openMore();

Q_SIGNALS:
    void selectedIDChanged();

private:
    AppViewModel &m_viewModel;
    RowsOf<SidebarRow> m_rows;
};

} // namespace velarc
