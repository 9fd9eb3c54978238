#include "engines/key_redaction.h"

#include <utility>

namespace velarc {

namespace {

constexpr QByteArrayView kPlaceholder = "[API key]";

} // namespace

KeyRedaction::KeyRedaction(Secret key) : m_key(std::move(key)) {}

QByteArray KeyRedaction::of(const QByteArray &utf8) const
{
    const QByteArrayView key = m_key.bytes();
    if (key.size() < kShortestRedactedKey) {
        return utf8;
    }
    qsizetype found = utf8.indexOf(key);
    if (found < 0) {
        return utf8;
    }
    QByteArray redacted;
    qsizetype from = 0;
    for (; found >= 0; found = utf8.indexOf(key, from)) {
        redacted += QByteArrayView(utf8).sliced(from, found - from);
        redacted += kPlaceholder;
        from = found + key.size();
    }
    redacted += QByteArrayView(utf8).sliced(from);
    return redacted;
}

QString KeyRedaction::of(const QString &text) const
{
    const QByteArray utf8 = text.toUtf8();
    return utf8.contains(m_key.bytes()) ? QString::fromUtf8(of(utf8)) : text;
}

} // namespace velarc
