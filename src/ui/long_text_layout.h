#pragma once

// Where the lines of a long text stand: only what is looked at is laid out, the rest is estimated.

#include "ui/text_blocks.h"

#include <QColor>
#include <QFont>
#include <QRectF>

#include <map>
#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

namespace velarc {

struct TextSelection
{
    qsizetype start = 0;
    qsizetype end = 0;

    [[nodiscard]] bool isEmpty() const { return start >= end; }
    friend bool operator==(const TextSelection &, const TextSelection &) = default;
};

struct TextColors
{
    QColor text;
    QColor selection;
    QColor selectedText;
};

// One thread at a time. Distances are logical pixels from the top left of the text. All lines are
// equally high.
class LongTextLayout
{
public:
    LongTextLayout();
    ~LongTextLayout();
    LongTextLayout(const LongTextLayout &) = delete;
    LongTextLayout &operator=(const LongTextLayout &) = delete;

    void setText(QString text);
    void setFont(const QFont &font, qreal lineHeightFactor);
    void setWidth(qreal width);

    // No more lines than that are laid out; 0 is no limit.
    void setLineLimit(int lines);

    [[nodiscard]] const QString &text() const { return m_blocks.text(); }
    [[nodiscard]] qreal lineHeight() const { return m_lineHeight; }

    // As far as it is known: it changes as more is laid out.
    [[nodiscard]] qreal height() const;

    // Whether lines are missing because of the limit.
    [[nodiscard]] bool isCut() const { return m_isCut; }

    // Lays out the lines between two distances and forgets the others. What was laid out and is
    // seen again may move as blocks above it are measured: gives by how much.
    qreal layOut(qreal top, qreal bottom);

    // What of the text stood between the distances of the last layOut(), or above the limit.
    [[nodiscard]] TextSelection partInView() const;

    // The position nearest to a point, and where the caret of a position stands. Both lay out what
    // they have to.
    [[nodiscard]] qsizetype positionAt(QPointF point);
    [[nodiscard]] QRectF caretAt(qsizetype position);

    // The next place for a caret, by characters as users see them.
    [[nodiscard]] qsizetype positionBehind(qsizetype position);
    [[nodiscard]] qsizetype positionBefore(qsizetype position);

    // Paints the lines of `area` that are laid out.
    void paint(QPainter &painter, const QRectF &area, const TextSelection &selection,
        const TextColors &colors) const;

private:
    struct Paragraph
    {
        qsizetype start = 0; // in the text
        int firstLine = 0; // in the block
        std::unique_ptr<QTextLayout> layout;
    };
    using LaidBlock = std::vector<Paragraph>;

    TextBlocks m_blocks;
    QFont m_font;
    qreal m_width = 0;
    qreal m_lineHeight = 1;
    int m_lineLimit = 0;
    bool m_isCut = false;
    std::map<qsizetype, LaidBlock> m_laid;
    qsizetype m_firstSeen = 0; // block that layOut() was asked for, and the one behind the last
    qsizetype m_endSeen = 0;
    std::vector<int> m_lines; // of each block, measured or estimated
    std::vector<bool> m_isMeasured;
    std::vector<qint64> m_firstLines; // of each block, and behind the last
    qreal m_characterWidth = 1;

    void start();
    void layOutLimited();
    [[nodiscard]] int estimatedLines(const TextBlock &block) const;
    const LaidBlock &laidOut(qsizetype index, int mostLines);
    [[nodiscard]] Paragraph laidOut(QStringView text, qsizetype start, int mostLines) const;
    void countLinesFrom(qsizetype index);
    [[nodiscard]] qsizetype blockAt(qreal distance) const;
    [[nodiscard]] qreal topOf(qsizetype block) const;
    [[nodiscard]] const Paragraph &paragraphOf(qsizetype position, qsizetype *block);
    void paintBlock(QPainter &painter, const QRectF &area, qsizetype index, const LaidBlock &block,
        const TextSelection &selection, const TextColors &colors) const;
};

} // namespace velarc
