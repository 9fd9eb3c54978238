#pragma once

// Tells a text that names files, one a line, from a text to run on.
//
// Pure functions but for areFiles(); any thread.

#include <QList>
#include <QString>
#include <QUrl>

namespace velarc {

// The places that the change from `oldText` to `newText` names, each once; empty where it is an
// edit like any other. The text counts when it came at once and each of its lines is a path from
// the root, a path from the home folder after a tilde, or a file's address; a line may stand in
// double quotes. A relative path counts for nothing: nobody sees which folder the program was
// started in.
//
// Costs nothing for a text whose first line is none of these.
[[nodiscard]] QList<QUrl> filesNamedBy(const QString &oldText, const QString &newText);

// The place that one line names; an empty address where it names none. Dots and double slashes are
// taken out of it, links are not followed.
[[nodiscard]] QUrl fileNamedBy(QStringView line);

// Whether something that is no folder stands at each of the places. Asks the file system, which can
// wait for a network: not on the main thread.
[[nodiscard]] bool areFiles(const QList<QUrl> &places);

// Each place once, by its path without dots and double slashes. What is no local file is left out.
[[nodiscard]] QList<QUrl> withoutRepeatedFiles(const QList<QUrl> &urls);

} // namespace velarc
