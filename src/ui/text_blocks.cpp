#include "ui/text_blocks.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace velarc {

namespace {

constexpr qsizetype kUsualLength = 1'024;
constexpr qsizetype kLongestParagraph = 8'192;
constexpr qsizetype kLongestCharacter = 64; // a base letter with its marks

// How much of a paragraph without an end in sight makes a block.
qsizetype cutOf(QStringView rest)
{
    const qsizetype blank = rest.first(kLongestParagraph).lastIndexOf(u' ');
    if (blank > kLongestParagraph / 2) {
        return blank + 1;
    }
    const qsizetype from = kLongestParagraph - kLongestCharacter;
    const QStringView around =
        rest.sliced(from, std::min(2 * kLongestCharacter, rest.size() - from));
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, around.data(), around.size());
    characters.setPosition(kLongestCharacter);
    if (characters.isAtBoundary()) {
        return kLongestParagraph;
    }
    const qsizetype before = characters.toPreviousBoundary();
    return before > 0 ? from + before : kLongestParagraph;
}

qsizetype lengthOfBlock(QStringView rest)
{
    if (rest.size() <= kUsualLength) {
        return rest.size();
    }
    const qsizetype last = rest.first(kUsualLength).lastIndexOf(u'\n');
    if (last >= 0) {
        return last + 1;
    }
    const QStringView ahead = rest.first(std::min(kLongestParagraph, rest.size()));
    const qsizetype next = ahead.indexOf(u'\n', kUsualLength);
    if (next >= 0) {
        return next + 1;
    }
    return ahead.size() == rest.size() ? rest.size() : cutOf(rest);
}

} // namespace

TextBlocks::TextBlocks(QString text) : m_text(std::move(text))
{
    const QStringView whole(m_text);
    qsizetype start = 0;
    while (start < whole.size()) {
        const QStringView rest = whole.sliced(start);
        const QStringView block = rest.first(lengthOfBlock(rest));
        const auto feeds = static_cast<int>(block.count(u'\n'));
        m_blocks.append({start, block.size(), feeds + (block.endsWith(u'\n') ? 0 : 1)});
        start += block.size();
    }
    if (whole.isEmpty() || whole.endsWith(u'\n')) {
        m_blocks.append({start, 0, 1});
    }
}

qsizetype TextBlocks::indexOf(qsizetype position) const
{
    const auto behind = std::upper_bound(m_blocks.begin(), m_blocks.end(), position,
        [](qsizetype wanted, const TextBlock &block) { return wanted < block.start; });
    return std::max<qsizetype>(0, behind - m_blocks.begin() - 1);
}

QList<QStringView> TextBlocks::paragraphsOf(qsizetype index) const
{
    const TextBlock &block = m_blocks.at(index);
    QStringView rest = QStringView(m_text).sliced(block.start, block.length);
    QList<QStringView> paragraphs;
    if (rest.endsWith(u'\n')) {
        rest.chop(1);
    }
    for (;;) {
        const qsizetype feed = rest.indexOf(u'\n');
        paragraphs.append(feed < 0 ? rest : rest.first(feed));
        if (feed < 0) {
            return paragraphs;
        }
        rest = rest.sliced(feed + 1);
    }
}

} // namespace velarc
