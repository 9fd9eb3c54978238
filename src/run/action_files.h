#pragma once

// Actions on disk: the files that a library is exported to and imported from.
//
// Any thread but the main one: a slow disk blocks.

#include "actions/action_transfer.h"

namespace velarc {

// A file that could not be written; its sentence says which.
class ActionExportError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// What the regular file at `path` holds; nothing else that stands there can hold the reader up, and
// a file that is too large is not read at all.
//
// Stop:   CancellationError between two pieces of the work.
// Errors: ActionImportError.
[[nodiscard]] ActionFile loadActionFile(const QString &path, const std::stop_token &stop);

enum class IfPresent
{
    Refuse,
    Replace,
};

// Writes `actions` in their stored form to `path`, readable by their owner alone. False, and
// nothing written, where a file stands there that is not to be replaced. A failure leaves what
// stood there.
//
// Errors: ActionExportError.
bool saveActionFile(const QString &path, const QList<AIAction> &actions, IfPresent ifPresent);

} // namespace velarc
