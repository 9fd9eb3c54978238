#pragma once

// The rows of the preview of an import: what each entry of a file does to the library.

#include "actions/action_transfer.h"

#include <QObject>

namespace velarc {

struct ImportRow
{
    Q_GADGET
    Q_PROPERTY(QString section MEMBER section)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString details MEMBER details)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)

public:
    QString section;
    QString name;
    QString details; // empty where there is nothing to add
    QString symbol;
    QString colorHex;
    qsizetype position = 0;

    [[nodiscard]] qsizetype key() const { return position; }
    friend bool operator==(const ImportRow &, const ImportRow &) = default;
};

// The sections "Cannot Be Read", "Replaces", "New" and "Unchanged", each in the order of the file.
[[nodiscard]] QList<ImportRow> importRows(
    const QList<ImportStep> &steps, const QList<UnreadableAction> &unreadable);

} // namespace velarc
