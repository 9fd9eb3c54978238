#pragma once

// What velarc-cli gives of a run beside its dialog: the result itself, to a file or as JSON.

#include "base/errors.h"
#include "entry/intent.h"

#include <QByteArray>
#include <QString>

namespace velarc {

// A result that could not be read or written; the sentence names the file.
class OutputError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// The bytes of a result: a text in UTF-8, a picture as PNG, or the content of the PDF file.
// Errors: OutputError.
[[nodiscard]] QByteArray payloadBytes(const ResultPayload &payload);

// What keeps `path` from being written, as far as that can be told before there is anything to
// write; none where nothing does.
[[nodiscard]] std::optional<QString> obstacleToWriting(const QString &path);

// Puts `bytes` in the place of the file. A reader sees the old content or the new one, never a
// part, and a failure leaves the old one. What is no regular file, such as a pipe, is written to as
// it stands. Errors: OutputError.
void writeOutputFile(const QString &path, const QByteArray &bytes);

// {"dialog", "provider", "model", "payload"}; the last three are null where there was no run.
[[nodiscard]] QString outcomeJson(const IntentOutcome &outcome);

} // namespace velarc
