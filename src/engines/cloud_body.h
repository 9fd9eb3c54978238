#pragma once

// What request bodies are written with: straight into one buffer, so that pictures of many
// megabytes are copied once. Any thread.

#include "records/run_records.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace velarc {

// Appends `text` as a JSON string with its quotes.
void appendJsonString(QByteArray &body, QStringView text);

// Appends `text` as it stands between the quotes of a JSON string.
void appendJsonCharacters(QByteArray &body, QStringView text);

// Appends `bytes` in base64, padded and on one line.
void appendBase64(QByteArray &body, QByteArrayView bytes);

// The media type that an attachment is sent under.
[[nodiscard]] QString sentMimeType(const InputAttachment &attachment);

// An empty body with room for a prompt and attachments.
[[nodiscard]] QByteArray roomForBody(QStringView prompt, const QList<InputAttachment> &attachments);

} // namespace velarc
