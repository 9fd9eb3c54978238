#pragma once

// JSON as people read it.

#include <QByteArray>
#include <QString>

#include <optional>
#include <stop_token>

namespace velarc {

// The bytes of a body as text to show.
//
// An object or array is laid out over lines, two blanks a level, in the order in which it came.
// Numbers stay as they were written; escaped characters are shown as themselves, but for quotes,
// backslashes and controls. Everything else is shown as it came: other JSON, text, JSON that nests
// too deeply, and JSON so nested that blanks would outgrow it by kMaxIndentationBytes. Where that
// is not UTF-8 or there are no bytes at all, a text in angle brackets says so. Any thread.
//
// Stop: asked about as it goes; CancellationError.
[[nodiscard]] QString prettyJSONText(
    const std::optional<QByteArray> &data, std::stop_token stop = {});

// A small body can ask for any amount of blanks: each level indents all that it holds.
inline constexpr qsizetype kMaxIndentationBytes = 64 * 1024 * 1024;

} // namespace velarc
