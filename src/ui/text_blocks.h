#pragma once

// A long text in pieces that are short enough to be laid out one by one.

#include <QList>
#include <QString>
#include <QStringView>

namespace velarc {

// Positions and lengths are UTF-16 units.
struct TextBlock
{
    qsizetype start = 0;
    qsizetype length = 0; // with the line feed that ends it
    int paragraphs = 0;

    [[nodiscard]] qsizetype end() const { return start + length; }
};

// Cuts a text behind line feeds. A paragraph that is too long is cut between words, or where it has
// none between characters as users see them. Even an empty text has one block; a text that ends in
// a line feed has an empty one at its end.
class TextBlocks
{
public:
    explicit TextBlocks(QString text = {});

    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] qsizetype count() const { return m_blocks.size(); }
    [[nodiscard]] const TextBlock &at(qsizetype index) const { return m_blocks.at(index); }

    // The block that a position stands in; that of the end of the text is the last one.
    [[nodiscard]] qsizetype indexOf(qsizetype position) const;

    // The paragraphs of a block, without what ends them.
    [[nodiscard]] QList<QStringView> paragraphsOf(qsizetype index) const;

private:
    QString m_text;
    QList<TextBlock> m_blocks;
};

} // namespace velarc
