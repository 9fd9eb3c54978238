#pragma once

// Text as the cloud clients send, read and quote it. Any thread.

#include "records/run_records.h"

#include <QByteArrayView>
#include <QChar>
#include <QString>

namespace velarc {

// The prompt with the texts of the PDFs behind it, each under its file's name; PDFs without text
// and other attachments play no part.
[[nodiscard]] QString promptWithAttachedDocuments(
    const QString &prompt, const QList<InputAttachment> &attachments);

// The first `limit` characters of a body on one line, and "..." where there are more. Costs no
// more than one look at the bytes and the characters that it gives.
[[nodiscard]] QString bodySnippet(QByteArrayView body, qsizetype limit);

// How much of a body every client quotes.
inline constexpr qsizetype kBodySnippetLimit = 400;

// `text` trimmed, or `fallback` where that leaves nothing.
[[nodiscard]] QString trimmedOr(const QString &text, const QString &fallback = {});

// Texts gathered one by one: each trimmed, the empty ones dropped, the rest joined.
class JoinedPieces
{
public:
    explicit JoinedPieces(QString separator = QStringLiteral("\n"));

    void add(const QString &piece);
    void clear() { m_text.clear(); }
    [[nodiscard]] const QString &text() const { return m_text; } // trimmed

private:
    QString m_separator;
    QString m_text;
};

} // namespace velarc
