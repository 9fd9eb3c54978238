#include "ui/secret_line.h"

#include <QChar>

#include <algorithm>

namespace velarc {

namespace {

bool isKept(QChar character)
{
    const QChar::Category category = character.category();
    return category != QChar::Other_Control && category != QChar::Separator_Line
        && category != QChar::Separator_Paragraph;
}

} // namespace

Secret SecretLine::secret() const
{
    return Secret::fromText(QStringView(m_text.data(), length()));
}

qsizetype SecretLine::before(qsizetype place) const
{
    if (place <= 0) {
        return 0;
    }
    const bool isPair = place >= 2 && QChar::isLowSurrogate(m_text.at(place - 1))
        && QChar::isHighSurrogate(m_text.at(place - 2));
    return place - (isPair ? 2 : 1);
}

qsizetype SecretLine::behind(qsizetype place) const
{
    if (place >= length()) {
        return length();
    }
    const bool isPair = place + 1 < length() && QChar::isHighSurrogate(m_text.at(place))
        && QChar::isLowSurrogate(m_text.at(place + 1));
    return place + (isPair ? 2 : 1);
}

void SecretLine::remove(qsizetype start, qsizetype end)
{
    const auto left = std::copy(m_text.begin() + end, m_text.end(), m_text.begin() + start);
    // What stood last still stands behind the new end.
    std::fill(left, m_text.end(), u'\0');
    m_text.erase(left, m_text.end());
    m_cursor = start;
    m_anchor = start;
}

void SecretLine::insert(QStringView text)
{
    remove(selectionStart(), selectionEnd());
    const QStringView fitting = text.first(std::min(text.size(), kMaximumLength - length()));
    Text kept;
    kept.reserve(static_cast<std::size_t>(fitting.size()));
    for (const QChar character : fitting) {
        if (isKept(character)) {
            kept.push_back(character.unicode());
        }
    }
    m_text.insert(m_text.begin() + m_cursor, kept.begin(), kept.end());
    m_cursor += static_cast<qsizetype>(kept.size());
    m_anchor = m_cursor;
}

void SecretLine::removeBackward()
{
    remove(hasSelection() ? selectionStart() : before(m_cursor), selectionEnd());
}

void SecretLine::removeForward()
{
    remove(selectionStart(), hasSelection() ? selectionEnd() : behind(m_cursor));
}

void SecretLine::removeToStart()
{
    remove(0, selectionEnd());
}

void SecretLine::clear()
{
    Text().swap(m_text); // gives the memory back, and so overwrites it
    m_cursor = 0;
    m_anchor = 0;
}

void SecretLine::moveTo(qsizetype place, Select select)
{
    // To a half of a character, and back over it whole.
    const qsizetype bounded = std::clamp<qsizetype>(place, 0, length());
    m_cursor = bounded == 0 ? 0 : behind(before(bounded));
    if (select == Select::Nothing) {
        m_anchor = m_cursor;
    }
}

void SecretLine::moveBy(int characters, Select select)
{
    qsizetype place = m_cursor;
    for (int step = characters; step != 0; step += step > 0 ? -1 : 1) {
        place = step > 0 ? behind(place) : before(place);
    }
    moveTo(place, select);
}

void SecretLine::selectAll()
{
    m_anchor = 0;
    m_cursor = length();
}

} // namespace velarc
