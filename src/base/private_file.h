#pragma once

// Files that hold what only their user may read.

#include <QByteArrayView>
#include <QString>

namespace velarc {

// The path of a file of that name in the temporary directory. Empty where there is no such
// directory: a bare name would mean the directory that the program was started in.
[[nodiscard]] QString temporaryFilePath(const QString &name);

// Writes a new file of mode 0600. A file or a link that stands under the name already is left
// alone, and nothing is written then. A write that breaks off leaves nothing behind. Any thread;
// false for every failure.
[[nodiscard]] bool writeNewPrivateFile(const QString &path, QByteArrayView bytes);

// Writes a file of mode 0600 in the place of the one of that name, links followed; until all of it
// is on disk, what stood there stands. Any thread; false for every failure, and for a name of what
// is no regular file.
[[nodiscard]] bool replacePrivateFile(const QString &path, QByteArrayView bytes);

} // namespace velarc
