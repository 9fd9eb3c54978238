#pragma once

// The rows of the action library: which actions match a search, and the section each stands in.

#include "actions/action.h"

#include <QObject>

namespace velarc {

struct LibraryRow
{
    Q_GADGET
    Q_PROPERTY(QString section MEMBER section)
    Q_PROPERTY(QString actionID MEMBER actionID)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)
    Q_PROPERTY(QString engineTag MEMBER engineTag)
    Q_PROPERTY(bool isPinned MEMBER isPinned)
    Q_PROPERTY(bool isChosen MEMBER isChosen)

public:
    QString section;
    QString actionID;
    QString name;
    QString symbol;
    QString colorHex; // "#2563eb", as the action's own colour is read
    QString engineTag;
    bool isPinned = false;
    bool isChosen = false; // the action that Run runs

    [[nodiscard]] QString key() const { return section + actionID; }
    friend bool operator==(const LibraryRow &, const LibraryRow &) = default;
};

// A short word for the engine of an action.
[[nodiscard]] QString engineTag(AIProvider provider);

// The visible actions, made ready once to be searched at each key press.
//
// A value; any thread. Building it costs a sort and a copy of every text in lower case.
class LibraryIndex
{
public:
    LibraryIndex() = default;
    explicit LibraryIndex(const QList<AIAction> &actions);

    // The sections "Pinned", "Recent" and "All Actions", each with those of its actions whose name,
    // prompt or skills hold `query`; a blank query holds everywhere. An action stands in one of
    // them.
    [[nodiscard]] QList<LibraryRow> rows(QStringView query, const QList<QUuid> &recentIDs,
        const std::optional<QUuid> &chosenID) const;

private:
    struct Entry
    {
        QUuid id;
        LibraryRow row; // without section and choice
        QString foldedName;
        QString foldedPrompt;
        QString foldedSkills; // joined with one space
    };

    [[nodiscard]] QList<const Entry *> matching(QStringView query) const;

    QList<Entry> m_entries; // in display order
};

} // namespace velarc
