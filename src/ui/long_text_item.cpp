#include "ui/long_text_item.h"

#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyleHints>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace velarc {

namespace {

constexpr int kScrollMilliseconds = 40;
constexpr qsizetype kLongestWord = 1'024; // that a double click looks for

using Step = LongTextItem::Step;

struct StepKey
{
    QKeySequence::StandardKey key;
    LongTextItem::KeyStep step;
};

constexpr std::array kSelections{
    StepKey{QKeySequence::SelectNextChar, {Step::Character, 1}},
    StepKey{QKeySequence::SelectPreviousChar, {Step::Character, -1}},
    StepKey{QKeySequence::SelectNextWord, {Step::Word, 1}},
    StepKey{QKeySequence::SelectPreviousWord, {Step::Word, -1}},
    StepKey{QKeySequence::SelectNextLine, {Step::Line, 1}},
    StepKey{QKeySequence::SelectPreviousLine, {Step::Line, -1}},
    StepKey{QKeySequence::SelectNextPage, {Step::Page, 1}},
    StepKey{QKeySequence::SelectPreviousPage, {Step::Page, -1}},
    StepKey{QKeySequence::SelectEndOfLine, {Step::LineEnd, 1}},
    StepKey{QKeySequence::SelectStartOfLine, {Step::LineEnd, -1}},
    StepKey{QKeySequence::SelectEndOfDocument, {Step::Document, 1}},
    StepKey{QKeySequence::SelectStartOfDocument, {Step::Document, -1}},
};

constexpr std::array kMoves{
    StepKey{QKeySequence::MoveToNextChar, {Step::Character, 1}},
    StepKey{QKeySequence::MoveToPreviousChar, {Step::Character, -1}},
    StepKey{QKeySequence::MoveToNextWord, {Step::Word, 1}},
    StepKey{QKeySequence::MoveToPreviousWord, {Step::Word, -1}},
    StepKey{QKeySequence::MoveToNextLine, {Step::Line, 1}},
    StepKey{QKeySequence::MoveToPreviousLine, {Step::Line, -1}},
    StepKey{QKeySequence::MoveToNextPage, {Step::Page, 1}},
    StepKey{QKeySequence::MoveToPreviousPage, {Step::Page, -1}},
    StepKey{QKeySequence::MoveToEndOfLine, {Step::LineEnd, 1}},
    StepKey{QKeySequence::MoveToStartOfLine, {Step::LineEnd, -1}},
    StepKey{QKeySequence::MoveToEndOfDocument, {Step::Document, 1}},
    StepKey{QKeySequence::MoveToStartOfDocument, {Step::Document, -1}},
};

template <typename Table>
std::optional<LongTextItem::KeyStep> stepFor(const Table &table, const QKeyEvent &event)
{
    const auto found = std::find_if(
        table.begin(), table.end(), [&](const StepKey &step) { return event.matches(step.key); });
    return found == table.end() ? std::nullopt : std::optional(found->step);
}

// The word, or the space between words, that a position stands in.
TextSelection wordAt(const QString &text, qsizetype position)
{
    const qsizetype from = std::max<qsizetype>(0, position - kLongestWord);
    const qsizetype to = std::min(text.size(), position + kLongestWord);
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text.constData() + from, to - from);
    words.setPosition(position - from);
    qsizetype start = words.isAtBoundary() ? position - from : words.toPreviousBoundary();
    words.setPosition(position - from);
    qsizetype end = words.toNextBoundary();
    start = std::max<qsizetype>(0, start);
    end = end < 0 ? to - from : end;
    return {from + start, from + end};
}

} // namespace

LongTextItem::LongTextItem(QQuickItem *parent) : LongTextView(parent)
{
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
    setCursor(Qt::IBeamCursor);
    setActiveFocusOnTab(true);
}

void LongTextItem::setText(const QString &text)
{
    LongTextView::setText(text);
    select(std::min(m_anchor, text.size()), std::min(m_caret, text.size()));
}

TextSelection LongTextItem::selection() const
{
    return {std::min(m_anchor, m_caret), std::max(m_anchor, m_caret)};
}

QString LongTextItem::selectedText() const
{
    const TextSelection selected = selection();
    return text().sliced(selected.start, selected.end - selected.start);
}

void LongTextItem::select(qsizetype anchor, qsizetype caret)
{
    if (anchor == m_anchor && caret == m_caret) {
        return;
    }
    m_anchor = anchor;
    m_caret = caret;
    showSelection(selection());
    Q_EMIT selectionChanged();
}

void LongTextItem::selectAll()
{
    select(0, text().size());
}

void LongTextItem::copy()
{
    if (hasSelection()) {
        Q_EMIT copyRequested(selectedText());
    }
}

void LongTextItem::setVisualFocus(bool hasFocus)
{
    if (hasFocus != m_visualFocus) {
        m_visualFocus = hasFocus;
        Q_EMIT visualFocusChanged();
    }
}

void LongTextItem::focusInEvent(QFocusEvent *event)
{
    setVisualFocus(event->reason() == Qt::TabFocusReason
        || event->reason() == Qt::BacktabFocusReason || event->reason() == Qt::ShortcutFocusReason);
}

void LongTextItem::focusOutEvent(QFocusEvent * /*event*/)
{
    setVisualFocus(false);
}

void LongTextItem::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->matches(QKeySequence::Copy) && hasSelection()) {
        copy();
    } else if (!selectFor(*event) && !scrollFor(*event)) {
        event->ignore();
    }
}

std::optional<LongTextItem::KeyStep> LongTextItem::moveOf(const QKeyEvent &event)
{
    return stepFor(kMoves, event);
}

bool LongTextItem::selectFor(const QKeyEvent &event)
{
    const auto step = stepFor(kSelections, event);
    if (!step) {
        return false;
    }
    select(m_anchor, stepped(m_caret, *step));
    reveal(m_caret);
    return true;
}

bool LongTextItem::scrollFor(const QKeyEvent &event)
{
    const auto move = moveOf(event);
    const QQuickItem *flickable = scroller();
    if (!move || flickable == nullptr || move->step == Step::Character
        || move->step == Step::Word) {
        return false;
    }
    const qreal page = std::max(linePitch(), flickable->height() - linePitch());
    const qreal distance = move->step == Step::Line ? linePitch()
        : move->step == Step::Page                  ? page
                                                    : flickable->property("contentHeight").toReal();
    scrollBy(move->direction * distance);
    return true;
}

qsizetype LongTextItem::stepped(qsizetype from, const KeyStep &step)
{
    const int direction = step.direction;
    const auto below = [&](qreal distance) {
        const QPointF caret = layout().caretAt(from).center();
        const qreal y = caret.y() + direction * distance;
        return y < 0                ? 0
            : y > layout().height() ? text().size()
                                    : layout().positionAt({caret.x(), y});
    };
    switch (step.step) {
    case Step::Character:
        return direction > 0 ? layout().positionBehind(from) : layout().positionBefore(from);
    case Step::Word:
        return direction > 0 ? wordAt(text(), from).end
                             : wordAt(text(), std::max<qsizetype>(0, from - 1)).start;
    case Step::Line:
        return below(linePitch());
    case Step::Page:
        return below(scroller() == nullptr ? linePitch() : scroller()->height());
    case Step::LineEnd: {
        const qreal y = layout().caretAt(from).center().y();
        return layout().positionAt({direction > 0 ? width() : 0, y});
    }
    case Step::Document:
        return direction > 0 ? text().size() : 0;
    }
    Q_UNREACHABLE();
}

void LongTextItem::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        Q_EMIT menuRequested(event->position());
        return;
    }
    forceActiveFocus(Qt::MouseFocusReason);
    setKeepMouseGrab(true); // a drag selects, it does not scroll
    const qsizetype position = layout().positionAt(event->position());
    const auto interval =
        static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    if (event->timestamp() - m_doubleClicked < interval) {
        selectParagraphAt(position);
        return;
    }
    const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
    select(extends ? m_anchor : position, position);
}

void LongTextItem::selectParagraphAt(qsizetype position)
{
    const QString whole = text();
    const qsizetype end = whole.indexOf(u'\n', position);
    const qsizetype start = position == 0 ? 0 : whole.lastIndexOf(u'\n', position - 1) + 1;
    select(start, end < 0 ? whole.size() : end);
}

void LongTextItem::mouseMoveEvent(QMouseEvent *event)
{
    m_dragPoint = event->position();
    select(m_anchor, layout().positionAt(m_dragPoint));
    if (!m_dragging.isActive()) {
        m_dragging.start(kScrollMilliseconds, this);
    }
}

void LongTextItem::mouseReleaseEvent(QMouseEvent *event)
{
    mouseUngrabEvent();
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (event->button() == Qt::LeftButton && hasSelection() && clipboard->supportsSelection()) {
        clipboard->setText(selectedText(), QClipboard::Selection);
    }
}

void LongTextItem::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_doubleClicked = event->timestamp();
    const TextSelection word = wordAt(text(), layout().positionAt(event->position()));
    select(word.start, word.end);
}

void LongTextItem::mouseUngrabEvent()
{
    m_dragging.stop();
    setKeepMouseGrab(false);
}

// The pointer rests outside while the text goes by under it.
void LongTextItem::timerEvent(QTimerEvent *event)
{
    QQuickItem *flickable = scroller();
    if (event->timerId() != m_dragging.timerId() || flickable == nullptr) {
        return;
    }
    const qreal y = mapToItem(flickable, m_dragPoint).y();
    const qreal beyond = std::min<qreal>(y, 0) + std::max<qreal>(y - flickable->height(), 0);
    if (beyond == 0) {
        return;
    }
    const qreal before = flickable->property("contentY").toReal();
    scrollBy(beyond);
    m_dragPoint.ry() += flickable->property("contentY").toReal() - before;
    select(m_anchor, layout().positionAt(m_dragPoint));
}

} // namespace velarc
