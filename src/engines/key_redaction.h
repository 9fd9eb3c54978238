#pragma once

// Keeps an API key out of what a reply says: a server may answer with the key that it was sent.

#include "base/secret.h"

#include <QByteArray>
#include <QString>

namespace velarc {

// Takes one key out of texts and puts "[API key]" in its place. Any thread.
//
// A key of less than kShortestRedactedKey bytes is no key of any engine, and words of a message may
// well be equal to it: it is left where it stands.
class KeyRedaction
{
public:
    static constexpr qsizetype kShortestRedactedKey = 8;

    KeyRedaction() = default;
    explicit KeyRedaction(Secret key);

    [[nodiscard]] QByteArray of(const QByteArray &utf8) const;
    [[nodiscard]] QString of(const QString &text) const;

private:
    Secret m_key;
};

} // namespace velarc
