#include "engines/cloud_text.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// A first guess at what `limit` characters take. Some take more: any number of accents may follow
// a letter.
constexpr qsizetype kBytesPerCharacter = 8;

// By the length of a character in bytes: what of its first byte belongs to the value.
constexpr std::array<unsigned char, 5> kFirstByteMasks{0, 0x7F, 0x1F, 0x0F, 0x07};
constexpr unsigned char kLaterByteMask = 0x3F;
constexpr int kLaterByteBits = 6;

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

qsizetype lengthOfFirst(QByteArrayView utf8)
{
    qsizetype length = 1;
    while (length < utf8.size() && continuesCharacter(utf8[length])) {
        ++length;
    }
    return length;
}

qsizetype lengthOfLast(QByteArrayView utf8)
{
    qsizetype length = 1;
    while (length < utf8.size() && continuesCharacter(utf8[utf8.size() - length])) {
        ++length;
    }
    return length;
}

bool isSpace(QByteArrayView character) // one, valid
{
    const unsigned char mask = kFirstByteMasks.at(static_cast<std::size_t>(character.size()));
    char32_t value = static_cast<unsigned char>(character.front()) & mask;
    for (const char byte : character.sliced(1)) {
        value = (value << kLaterByteBits) | (static_cast<unsigned char>(byte) & kLaterByteMask);
    }
    return QChar::isSpace(value);
}

// `utf8` trimmed as a text is, without a copy of it.
QByteArrayView trimmedUtf8(QByteArrayView utf8)
{
    while (!utf8.isEmpty() && isSpace(utf8.first(lengthOfFirst(utf8)))) {
        utf8 = utf8.sliced(lengthOfFirst(utf8));
    }
    while (!utf8.isEmpty() && isSpace(utf8.last(lengthOfLast(utf8)))) {
        utf8.chop(lengthOfLast(utf8));
    }
    return utf8;
}

// The first `bytes` bytes, and the rest of a character that they cut.
QByteArrayView wholeCharacters(QByteArrayView utf8, qsizetype bytes)
{
    while (bytes < utf8.size() && continuesCharacter(utf8[bytes])) {
        ++bytes;
    }
    return utf8.first(std::min(bytes, utf8.size()));
}

QString onOneLine(QByteArrayView utf8)
{
    QString text = QString::fromUtf8(utf8);
    text.replace(u'\n', u' ');
    text.replace(u'\r', u' ');
    return text;
}

} // namespace

QString promptWithAttachedDocuments(
    const QString &prompt, const QList<InputAttachment> &attachments)
{
    QStringList blocks;
    for (const InputAttachment &attachment : attachments) {
        const QString text = trimmedOr(attachment.extractedText.value_or(QString()));
        if (attachment.kind == InputAttachmentKind::Pdf && !text.isEmpty()) {
            blocks.append(u"[PDF "_s + attachment.filename + u"]\n"_s + text);
        }
    }
    if (blocks.isEmpty()) {
        return prompt;
    }
    return prompt + u"\n\nAttached documents:\n"_s + blocks.join(u"\n\n"_s);
}

QString bodySnippet(QByteArrayView body, qsizetype limit)
{
    if (!body.isValidUtf8()) {
        return u"<non-utf8 response body>"_s;
    }
    const QByteArrayView whole = trimmedUtf8(body);
    qsizetype bytes = limit * kBytesPerCharacter;
    for (;; bytes *= 2) {
        const QByteArrayView part = wholeCharacters(whole, bytes);
        QString text = onOneLine(part);
        const QStringView snippet = characterPrefix(text, limit);
        if (snippet.size() < text.size()) {
            return snippet.toString() + u"..."_s;
        }
        if (part.size() == whole.size()) {
            return text;
        }
    }
}

QString trimmedOr(const QString &text, const QString &fallback)
{
    const QStringView kept = trimmed(text);
    return kept.isEmpty() ? fallback : kept.toString();
}

JoinedPieces::JoinedPieces(QString separator) : m_separator(std::move(separator)) {}

void JoinedPieces::add(const QString &piece)
{
    const QStringView kept = trimmed(piece);
    if (kept.isEmpty()) {
        return;
    }
    if (!m_text.isEmpty()) {
        m_text += m_separator;
    }
    m_text += kept;
}

} // namespace velarc
