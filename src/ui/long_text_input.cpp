// What LongTextItem does with keys and with the pointer.

#include "ui/long_text_item.h"

#include <QClipboard>
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

struct KeyStep
{
    QKeySequence::StandardKey key;
    Step step;
    int direction;
};

constexpr std::array kSelections{
    KeyStep{QKeySequence::SelectNextChar, Step::Character, 1},
    KeyStep{QKeySequence::SelectPreviousChar, Step::Character, -1},
    KeyStep{QKeySequence::SelectNextWord, Step::Word, 1},
    KeyStep{QKeySequence::SelectPreviousWord, Step::Word, -1},
    KeyStep{QKeySequence::SelectNextLine, Step::Line, 1},
    KeyStep{QKeySequence::SelectPreviousLine, Step::Line, -1},
    KeyStep{QKeySequence::SelectNextPage, Step::Page, 1},
    KeyStep{QKeySequence::SelectPreviousPage, Step::Page, -1},
    KeyStep{QKeySequence::SelectEndOfLine, Step::LineEnd, 1},
    KeyStep{QKeySequence::SelectStartOfLine, Step::LineEnd, -1},
    KeyStep{QKeySequence::SelectEndOfDocument, Step::Document, 1},
    KeyStep{QKeySequence::SelectStartOfDocument, Step::Document, -1},
};

// Of a text that can be changed they move the caret, else they scroll.
constexpr std::array kMoves{
    KeyStep{QKeySequence::MoveToNextChar, Step::Character, 1},
    KeyStep{QKeySequence::MoveToPreviousChar, Step::Character, -1},
    KeyStep{QKeySequence::MoveToNextWord, Step::Word, 1},
    KeyStep{QKeySequence::MoveToPreviousWord, Step::Word, -1},
    KeyStep{QKeySequence::MoveToNextLine, Step::Line, 1},
    KeyStep{QKeySequence::MoveToPreviousLine, Step::Line, -1},
    KeyStep{QKeySequence::MoveToNextPage, Step::Page, 1},
    KeyStep{QKeySequence::MoveToPreviousPage, Step::Page, -1},
    KeyStep{QKeySequence::MoveToEndOfLine, Step::LineEnd, 1},
    KeyStep{QKeySequence::MoveToStartOfLine, Step::LineEnd, -1},
    KeyStep{QKeySequence::MoveToEndOfDocument, Step::Document, 1},
    KeyStep{QKeySequence::MoveToStartOfDocument, Step::Document, -1},
};

template <typename Table> const KeyStep *stepFor(const Table &table, const QKeyEvent &event)
{
    const auto found = std::find_if(
        table.begin(), table.end(), [&](const KeyStep &step) { return event.matches(step.key); });
    return found == table.end() ? nullptr : &*found;
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
    } else if (m_isEditable && (editFor(*event) || moveFor(*event))) {
        reveal(m_caret);
    } else if (!selectFor(*event) && (m_isEditable || !scrollFor(*event))) {
        event->ignore();
    }
}

bool LongTextItem::selectFor(const QKeyEvent &event)
{
    const KeyStep *found = stepFor(kSelections, event);
    if (found == nullptr) {
        return false;
    }
    select(m_anchor, stepped(m_caret, found->step, found->direction));
    reveal(m_caret);
    return true;
}

bool LongTextItem::moveFor(const QKeyEvent &event)
{
    const KeyStep *found = stepFor(kMoves, event);
    if (found == nullptr) {
        return false;
    }
    const qsizetype position = stepped(m_caret, found->step, found->direction);
    select(position, position);
    return true;
}

bool LongTextItem::scrollFor(const QKeyEvent &event)
{
    const KeyStep *found = stepFor(kMoves, event);
    const QQuickItem *flickable = scroller();
    if (found == nullptr || flickable == nullptr || found->step == Step::Character
        || found->step == Step::Word) {
        return false;
    }
    const qreal page = std::max(linePitch(), flickable->height() - linePitch());
    const qreal distance = found->step == Step::Line ? linePitch()
        : found->step == Step::Page                  ? page
                                    : flickable->property("contentHeight").toReal();
    scrollBy(found->direction * distance);
    return true;
}

qsizetype LongTextItem::stepped(qsizetype from, Step step, int direction)
{
    const auto below = [&](qreal distance) {
        const QPointF caret = m_layout.caretAt(from).center();
        const qreal y = caret.y() + direction * distance;
        return y < 0                ? 0
            : y > m_layout.height() ? text().size()
                                    : m_layout.positionAt({caret.x(), y});
    };
    switch (step) {
    case Step::Character:
        return direction > 0 ? m_layout.positionBehind(from) : m_layout.positionBefore(from);
    case Step::Word:
        return direction > 0 ? wordAt(text(), from).end
                             : wordAt(text(), std::max<qsizetype>(0, from - 1)).start;
    case Step::Line:
        return below(linePitch());
    case Step::Page:
        return below(scroller() == nullptr ? linePitch() : scroller()->height());
    case Step::LineEnd: {
        const qreal y = m_layout.caretAt(from).center().y();
        return m_layout.positionAt({direction > 0 ? width() : 0, y});
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
    const qsizetype position = m_layout.positionAt(event->position());
    const auto interval =
        static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    if (event->timestamp() - m_doubleClicked < interval) {
        const QString &whole = m_layout.text();
        const qsizetype end = whole.indexOf(u'\n', position);
        select(position == 0 ? 0 : whole.lastIndexOf(u'\n', position - 1) + 1,
            end < 0 ? whole.size() : end);
        return;
    }
    const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
    select(extends ? m_anchor : position, position);
}

void LongTextItem::mouseMoveEvent(QMouseEvent *event)
{
    m_dragPoint = event->position();
    select(m_anchor, m_layout.positionAt(m_dragPoint));
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
    const TextSelection word = wordAt(text(), m_layout.positionAt(event->position()));
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
    select(m_anchor, m_layout.positionAt(m_dragPoint));
}

} // namespace velarc
