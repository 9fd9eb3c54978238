#pragma once

// A text taken apart piece by piece, without copying it.

#include "base/text.h"

#include <QStringView>

#include <algorithm>
#include <optional>

namespace velarc {

// The pieces of a text between separators, each of them trimmed; blank ones are left out.
//
// A separator is a UTF-16 unit for which `isSeparator` holds. A piece is looked for when it is
// asked for, so that the first few of a long text cost little. The text must outlive it.
template <typename IsSeparator> class TextPieces
{
public:
    TextPieces(QStringView text, IsSeparator isSeparator) : m_rest(text), m_isSeparator(isSeparator)
    {
    }

    // The next piece, or none behind the last.
    std::optional<QStringView> next()
    {
        while (!m_rest.isEmpty()) {
            const auto end = std::find_if(m_rest.begin(), m_rest.end(), m_isSeparator);
            const qsizetype length = end - m_rest.begin();
            const QStringView piece = trimmed(m_rest.left(length));
            m_rest = m_rest.mid(std::min(length + 1, m_rest.size()));
            if (!piece.isEmpty()) {
                return piece;
            }
        }
        return std::nullopt;
    }

private:
    QStringView m_rest;
    IsSeparator m_isSeparator;
};

[[nodiscard]] constexpr bool isLineFeed(QChar character)
{
    return character == u'\n';
}

[[nodiscard]] constexpr bool endsSentence(QChar character)
{
    return character == u'.' || character == u'!' || character == u'?';
}

} // namespace velarc
