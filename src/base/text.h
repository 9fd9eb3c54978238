#pragma once

// The text ground floor: what "trimmed", "blank", "character" and "line" mean everywhere.
//
// Any thread. Views in, views out: a function that returns a view points into its argument.
// Nothing here depends on the locale; what does is in base/locale_text.h.

#include <QList>
#include <QString>
#include <QStringView>

namespace velarc {

// `text` without white space and line ends at both ends. White space is what Unicode calls a
// separator, and the controls U+0009 to U+000D and U+0085.
[[nodiscard]] QStringView trimmed(QStringView text);

// Whether nothing remains of `text` when it is trimmed.
[[nodiscard]] bool isBlank(QStringView text);

// `text` in lower case by the locale-independent rules of Unicode.
[[nodiscard]] QString foldedToLower(QStringView text);

// How many user-perceived characters `text` holds: an emoji with its modifiers counts as one, and
// so do a base letter with its accents, and a carriage return with its line feed.
[[nodiscard]] qsizetype characterCount(QStringView text);

// The first `count` user-perceived characters of `text`, or all of it when it is shorter.
// Costs no more than reading those characters.
[[nodiscard]] QStringView characterPrefix(QStringView text, qsizetype count);

// The lines of `text` that are not empty. A line ends at U+000A, U+000B, U+000C, U+000D, U+0085,
// U+2028 or U+2029; a carriage return with a line feed behind it ends one line, not two.
[[nodiscard]] QList<QStringView> splitLines(QStringView text);

} // namespace velarc
