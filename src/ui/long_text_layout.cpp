#include "ui/long_text_layout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr int kAllLines = std::numeric_limits<int>::max();
constexpr qreal kTabInCharacters = 4;

// As many characters as before, with something to see for those that have no shape and break no
// line.
QString shown(QStringView paragraph)
{
    constexpr char16_t kPictures = 0x2400;
    QString text = paragraph.toString();
    for (QChar &character : text) {
        const char16_t code = character.unicode();
        const bool breaksLine = code == u'\r' || code == u'\v' || code == u'\f' || code == 0x85
            || code == QChar::ParagraphSeparator;
        if (breaksLine) {
            character = QChar::LineSeparator;
        } else if (code < 0x20 && code != u'\t') {
            character = QChar(static_cast<char16_t>(kPictures + code));
        } else if (code == 0x7F || (code > 0x7F && code < 0xA0)) {
            character = QChar::ReplacementCharacter;
        }
    }
    if (paragraph.endsWith(u'\r')) {
        text[text.size() - 1] = u' '; // with the line feed behind it, it ends one line
    }
    return text;
}

qint64 wholeLines(qreal distance, qreal lineHeight)
{
    return static_cast<qint64>(std::floor(std::max<qreal>(0, distance) / lineHeight));
}

QTextLine lineAt(const QTextLayout &layout, qreal distance, qreal lineHeight)
{
    const auto line = static_cast<int>(wholeLines(distance, lineHeight));
    return layout.lineAt(std::min(line, layout.lineCount() - 1));
}

} // namespace

LongTextLayout::LongTextLayout()
{
    setFont(QFont(), 1);
}

LongTextLayout::~LongTextLayout() = default;

void LongTextLayout::setText(QString text)
{
    const TextBlocks before = std::exchange(m_blocks, TextBlocks(std::move(text)));
    const QString &now = m_blocks.text();
    const auto same =
        std::mismatch(before.text().cbegin(), before.text().cend(), now.cbegin(), now.cend()).second
        - now.cbegin();
    // What stands before a change keeps its height, so that nothing jumps while somebody types.
    std::size_t kept = 0;
    while (kept < m_lines.size() && static_cast<qsizetype>(kept) < m_blocks.count()
        && m_blocks.at(static_cast<qsizetype>(kept)).end() < same
        && m_blocks.at(static_cast<qsizetype>(kept)).end()
            == before.at(static_cast<qsizetype>(kept)).end()) {
        ++kept;
    }
    const std::vector<int> lines(m_lines.begin(), m_lines.begin() + static_cast<qsizetype>(kept));
    const std::vector<bool> measured(
        m_isMeasured.begin(), m_isMeasured.begin() + static_cast<qsizetype>(kept));
    start();
    std::copy(lines.begin(), lines.end(), m_lines.begin());
    std::copy(measured.begin(), measured.end(), m_isMeasured.begin());
    countLinesFrom(0);
    layOutLimited();
}

void LongTextLayout::setFont(const QFont &font, qreal lineHeightFactor)
{
    const QFontMetricsF metrics(font);
    m_font = font;
    m_lineHeight = std::max<qreal>(1, std::round(metrics.height() * lineHeightFactor));
    m_characterWidth = std::max<qreal>(1, metrics.averageCharWidth());
    start();
    layOutLimited();
}

void LongTextLayout::setWidth(qreal width)
{
    if (width != m_width) {
        m_width = width;
        start();
        layOutLimited();
    }
}

void LongTextLayout::setLineLimit(int lines)
{
    m_lineLimit = lines;
    start();
    layOutLimited();
}

void LongTextLayout::start()
{
    const auto count = static_cast<std::size_t>(m_blocks.count());
    m_laid.clear();
    m_firstSeen = 0;
    m_endSeen = 0;
    m_isCut = false;
    m_isMeasured.assign(count, false);
    m_lines.resize(count);
    m_firstLines.assign(count + 1, 0);
    for (std::size_t index = 0; index < count; ++index) {
        m_lines[index] = estimatedLines(m_blocks.at(static_cast<qsizetype>(index)));
    }
    countLinesFrom(0);
}

int LongTextLayout::estimatedLines(const TextBlock &block) const
{
    if (m_width <= 0) {
        return block.paragraphs;
    }
    const qreal filled = static_cast<qreal>(block.length) * m_characterWidth / m_width;
    return std::max(block.paragraphs, static_cast<int>(std::ceil(filled)));
}

// Under a limit the height is known at once: only the blocks that hold the first lines are
// measured, and what lies behind does not count.
void LongTextLayout::layOutLimited()
{
    if (m_lineLimit == 0 || m_width <= 0) {
        return;
    }
    qsizetype index = 0;
    qint64 lines = 0;
    while (index < m_blocks.count() && lines <= m_lineLimit) {
        laidOut(index, m_lineLimit + 1);
        lines += m_lines[static_cast<std::size_t>(index)];
        ++index;
    }
    m_isCut = lines > m_lineLimit;
    m_endSeen = index;
    std::fill(m_lines.begin() + index, m_lines.end(), 0);
    countLinesFrom(0);
}

qreal LongTextLayout::height() const
{
    const qint64 lines = m_firstLines.back();
    return static_cast<qreal>(m_lineLimit == 0 ? lines : std::min<qint64>(lines, m_lineLimit))
        * m_lineHeight;
}

LongTextLayout::Paragraph LongTextLayout::laidOut(
    QStringView text, qsizetype start, int mostLines) const
{
    Paragraph paragraph;
    paragraph.start = start;
    paragraph.layout = std::make_unique<QTextLayout>(shown(text), m_font);
    QTextLayout &layout = *paragraph.layout;
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setAlignment(text.isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft);
    option.setTabStopDistance(kTabInCharacters * m_characterWidth);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    const QFontMetricsF metrics(m_font);
    const qreal baseline = (m_lineHeight - metrics.height()) / 2 + metrics.ascent();
    layout.beginLayout();
    for (int number = 0; number < mostLines; ++number) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) {
            break;
        }
        line.setLineWidth(m_width);
        line.setPosition({0, number * m_lineHeight + baseline - line.ascent()});
    }
    layout.endLayout();
    return paragraph;
}

const LongTextLayout::LaidBlock &LongTextLayout::laidOut(qsizetype index, int mostLines)
{
    const auto found = m_laid.find(index);
    if (found != m_laid.end()) {
        return found->second;
    }
    LaidBlock block;
    int lines = 0;
    qsizetype start = m_blocks.at(index).start;
    for (const QStringView text : m_blocks.paragraphsOf(index)) {
        if (lines >= mostLines) {
            break;
        }
        block.push_back(laidOut(text, start, mostLines - lines));
        block.back().firstLine = lines;
        lines += block.back().layout->lineCount();
        start += text.size() + 1;
    }
    const auto at = static_cast<std::size_t>(index);
    if (!m_isMeasured[at] || m_lines[at] != lines) {
        m_isMeasured[at] = true;
        m_lines[at] = lines;
        countLinesFrom(index);
    }
    return m_laid.emplace(index, std::move(block)).first->second;
}

void LongTextLayout::countLinesFrom(qsizetype index)
{
    for (auto at = static_cast<std::size_t>(index); at < m_lines.size(); ++at) {
        m_firstLines[at + 1] = m_firstLines[at] + m_lines[at];
    }
}

qsizetype LongTextLayout::blockAt(qreal distance) const
{
    const qint64 line = wholeLines(distance, m_lineHeight);
    const auto behind = std::upper_bound(m_firstLines.begin(), m_firstLines.end() - 1, line);
    return std::max<qsizetype>(0, behind - m_firstLines.begin() - 1);
}

qreal LongTextLayout::topOf(qsizetype block) const
{
    return static_cast<qreal>(m_firstLines[static_cast<std::size_t>(block)]) * m_lineHeight;
}

qreal LongTextLayout::layOut(qreal top, qreal bottom)
{
    if (m_width <= 0 || m_lineLimit > 0) {
        return 0;
    }
    const qsizetype first = blockAt(top);
    auto seen = m_laid.lower_bound(first);
    const qsizetype anchor =
        seen == m_laid.end() || topOf(seen->first) > bottom ? first : seen->first;
    const qreal before = topOf(anchor);
    qsizetype index = first;
    while (index < m_blocks.count() && topOf(index) < bottom + topOf(anchor) - before) {
        laidOut(index, kAllLines);
        ++index;
    }
    m_laid.erase(m_laid.begin(), m_laid.lower_bound(first));
    m_laid.erase(m_laid.lower_bound(index), m_laid.end());
    m_firstSeen = first;
    m_endSeen = index;
    return topOf(anchor) - before;
}

TextSelection LongTextLayout::partInView() const
{
    if (m_firstSeen == m_endSeen) {
        return {};
    }
    return {m_blocks.at(m_firstSeen).start, m_blocks.at(m_endSeen - 1).end()};
}

const LongTextLayout::Paragraph &LongTextLayout::paragraphOf(qsizetype position, qsizetype *block)
{
    *block = m_blocks.indexOf(position);
    const LaidBlock &laid = laidOut(*block, m_lineLimit > 0 ? m_lineLimit + 1 : kAllLines);
    const auto behind = std::upper_bound(laid.begin(), laid.end(), position,
        [](qsizetype wanted, const Paragraph &paragraph) { return wanted < paragraph.start; });
    return behind == laid.begin() ? laid.front() : *(behind - 1);
}

qsizetype LongTextLayout::positionAt(QPointF point)
{
    if (m_width <= 0) {
        return 0;
    }
    const qsizetype index = blockAt(std::min(point.y(), height() - 1));
    const LaidBlock &block = laidOut(index, m_lineLimit > 0 ? m_lineLimit + 1 : kAllLines);
    const qreal y = point.y() - topOf(index);
    const auto behind = std::upper_bound(block.begin(), block.end(), wholeLines(y, m_lineHeight),
        [](qint64 line, const Paragraph &paragraph) { return line < paragraph.firstLine; });
    const Paragraph &paragraph = behind == block.begin() ? block.front() : *(behind - 1);
    const QTextLine line =
        lineAt(*paragraph.layout, y - paragraph.firstLine * m_lineHeight, m_lineHeight);
    return line.isValid() ? paragraph.start + line.xToCursor(point.x()) : paragraph.start;
}

QRectF LongTextLayout::caretAt(qsizetype position)
{
    if (m_width <= 0) {
        return {};
    }
    qsizetype block = 0;
    const Paragraph &paragraph = paragraphOf(position, &block);
    const auto inside = static_cast<int>(
        std::min<qsizetype>(position - paragraph.start, paragraph.layout->text().size()));
    const QTextLine line = paragraph.layout->lineForTextPosition(inside);
    const int number = line.isValid() ? line.lineNumber() : 0;
    return {line.isValid() ? line.cursorToX(inside) : 0,
        topOf(block) + (paragraph.firstLine + number) * m_lineHeight, 1, m_lineHeight};
}

qsizetype LongTextLayout::positionBehind(qsizetype position)
{
    qsizetype block = 0;
    const Paragraph &paragraph = paragraphOf(position, &block);
    const auto inside = static_cast<int>(position - paragraph.start);
    return inside < paragraph.layout->text().size()
        ? paragraph.start + paragraph.layout->nextCursorPosition(inside)
        : std::min(position + 1, text().size());
}

qsizetype LongTextLayout::positionBefore(qsizetype position)
{
    qsizetype block = 0;
    const Paragraph &paragraph = paragraphOf(position, &block);
    const auto inside = static_cast<int>(position - paragraph.start);
    return inside > 0 ? paragraph.start + paragraph.layout->previousCursorPosition(inside)
                      : std::max<qsizetype>(position - 1, 0);
}

void LongTextLayout::paint(QPainter &painter, const QRectF &area, const TextSelection &selection,
    const TextColors &colors) const
{
    painter.setPen(colors.text);
    for (const auto &[index, block] : m_laid) {
        if (topOf(index) < area.bottom()) {
            paintBlock(painter, area, index, block, selection, colors);
        }
    }
}

void LongTextLayout::paintBlock(QPainter &painter, const QRectF &area, qsizetype index,
    const LaidBlock &block, const TextSelection &selection, const TextColors &colors) const
{
    for (const Paragraph &paragraph : block) {
        const QTextLayout &layout = *paragraph.layout;
        const qreal top = topOf(index) + paragraph.firstLine * m_lineHeight;
        if (top > area.bottom() || top + layout.lineCount() * m_lineHeight < area.top()) {
            continue;
        }
        const auto from = std::max<qsizetype>(0, selection.start - paragraph.start);
        const auto to = std::min<qsizetype>(selection.end - paragraph.start, layout.text().size());
        QList<QTextLayout::FormatRange> ranges;
        if (from < to) {
            QTextLayout::FormatRange range;
            range.start = static_cast<int>(from);
            range.length = static_cast<int>(to - from);
            range.format.setBackground(colors.selection);
            range.format.setForeground(colors.selectedText);
            ranges.append(range);
        }
        layout.draw(&painter, {0, top}, ranges, area);
    }
}

} // namespace velarc
