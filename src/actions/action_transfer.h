#pragma once

// Actions that leave the library as a file, and files that come in as actions.
//
// An exported file is the stored library: one JSON array. Reading takes such an array or a single
// action; what cannot be read is named and left out. Pure functions; any thread. Reading costs time
// in proportion to the bytes.

#include "actions/action.h"
#include "base/errors.h"

#include <stop_token>

namespace velarc {

// A larger file, or one with more actions, is refused: publishing and saving them would hold the
// window.
inline constexpr qint64 kImportedBytesLimit = 64 * 1024 * 1024;
inline constexpr qsizetype kImportedActionLimit = 10'000;

// A file of which nothing can be imported; its sentence says why.
class ActionImportError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// An entry of a file that is no action.
struct UnreadableAction
{
    qsizetype position = 0; // in the file, from 1
    QString name; // empty where it has none

    friend bool operator==(const UnreadableAction &, const UnreadableAction &) = default;
};

// What a file holds. No two of its actions have the same id: a later one of an id is a new action.
struct ActionFile
{
    QList<AIAction> actions;
    QList<UnreadableAction> unreadable;
};

// Stop:   asked about as it goes; CancellationError.
// Errors: ActionImportError, for a file that is too large, no JSON, no list, or without entries.
[[nodiscard]] ActionFile readActionFile(QByteArrayView bytes, std::stop_token stop = {});

// The sentence for a file of more bytes than are read.
[[nodiscard]] ActionImportError tooLargeToImport();

enum class ImportChange
{
    Adds,
    Replaces,
    KeepsAsItIs // the library holds the same action already
};

// What one action of a file does to a library.
struct ImportStep
{
    ImportChange change = ImportChange::Adds;
    AIAction action;
    QString replacedName; // of the action in the library, for Replaces
};

[[nodiscard]] QList<ImportStep> importSteps(
    const QList<AIAction> &library, const QList<AIAction> &imported);

// The actions of the steps that change something.
[[nodiscard]] QList<AIAction> changedActions(const QList<ImportStep> &steps);

// `library` with each imported action in the place of the one of its id, else behind all others.
[[nodiscard]] QList<AIAction> withImported(
    QList<AIAction> library, const QList<AIAction> &imported);

// "3 new, 1 replaced, 2 unchanged, 1 unreadable", without the counts that are none.
[[nodiscard]] QString importSummary(const QList<ImportStep> &steps, qsizetype unreadable);

// A file name for an exported action: its name without what file systems or people trip over.
[[nodiscard]] QString exportFileName(QStringView actionName);

} // namespace velarc
