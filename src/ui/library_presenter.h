#pragma once

// The action library: the search, its rows, and what is done to one of them.

#include "ui/library_rows.h"
#include "ui/row_model.h"

#include <QObject>

namespace velarc {

class AppViewModel;

// Follows the library only while its sheet is open; each opening starts with an empty search.
class LibraryPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.library is the one")
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(velarc::RowModel *rows READ rows CONSTANT)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY queryChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY queryChanged)
    Q_PROPERTY(QString deletionNotice READ deletionNotice NOTIFY deletionNoticeChanged)

public:
    explicit LibraryPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] const QString &query() const { return m_query; }
    void setQuery(const QString &query);
    [[nodiscard]] RowModel *rows() { return &m_rows; }

    // What stands where no row does.
    [[nodiscard]] QString emptyTitle() const;
    [[nodiscard]] QString emptyText() const;

    // "Deleted NAME" while that can be taken back, else empty.
    [[nodiscard]] QString deletionNotice() const;

    // Of an action by its id; what names none does nothing.
    Q_INVOKABLE void choose(const QString &actionID); // selects it and closes the sheet
    Q_INVOKABLE void togglePin(const QString &actionID);
    Q_INVOKABLE void edit(const QString &actionID); // closes the sheet, and More
    Q_INVOKABLE void duplicate(const QString &actionID);
    Q_INVOKABLE void remove(const QString &actionID);
    Q_INVOKABLE void undoRemove();

    // Where the action stands among the rows; -1 where it does not.
    Q_INVOKABLE [[nodiscard]] int rowOf(const QString &actionID) const;

Q_SIGNALS:
    void queryChanged();
    void deletionNoticeChanged();

private:
    AppViewModel &m_viewModel;
    QString m_query;
    QList<AIAction> m_indexed; // what the index was made of
    LibraryIndex m_index;
    RowsOf<LibraryRow> m_rows;
    bool m_isPresented = false;

    void followPresentation();
    void refresh();
    [[nodiscard]] const AIAction *actionOf(const QString &actionID) const;
};

} // namespace velarc
