// How LongTextItem changes its text.

#include "ui/long_text_item.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

namespace velarc {

namespace {

constexpr qsizetype kMostEdits = 1'000; // that can be taken back
constexpr qsizetype kSurroundings = 512; // that an input method gets to see

bool isTyped(const QKeyEvent &event)
{
    const QString text = event.text();
    const bool isCommand = (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0
        && event.modifiers() != (Qt::ControlModifier | Qt::AltModifier); // which types as well
    return !text.isEmpty() && !isCommand && (text.at(0).isPrint() || text.at(0).isSurrogate());
}

// Typing goes on where it stopped: one step takes it back.
bool continues(const TextChange &last, const TextChange &next)
{
    return last.before.isEmpty() && next.before.isEmpty() && next.after.size() == 1
        && next.at == last.at + last.after.size() && !next.after.at(0).isSpace();
}

} // namespace

void LongTextItem::setEditable(bool isEditable)
{
    if (isEditable != m_isEditable) {
        m_isEditable = isEditable;
        setFlag(ItemAcceptsInputMethod, isEditable);
        Q_EMIT editableChanged();
    }
}

void LongTextItem::setCaret(qsizetype position)
{
    const qsizetype inside = std::clamp<qsizetype>(position, 0, text().size());
    select(inside, inside);
    reveal(inside);
}

void LongTextItem::apply(const TextChange &edit)
{
    QString text = m_layout.text();
    text.replace(edit.at, edit.before.size(), edit.after);
    relayOut([&] { m_layout.setText(text); });
    select(edit.at + edit.after.size(), edit.at + edit.after.size());
    Q_EMIT textChanged();
    Q_EMIT spokenTextChanged();
    followCaret();
}

void LongTextItem::replaceText(TextSelection range, const QString &with)
{
    const TextChange edit{
        range.start, m_layout.text().sliced(range.start, range.end - range.start), with};
    if (edit.before == edit.after) {
        return;
    }
    m_undone.clear();
    if (!m_done.isEmpty() && continues(m_done.last(), edit)) {
        m_done.last().after += edit.after;
    } else {
        m_done.append(edit);
    }
    if (m_done.size() > kMostEdits) {
        m_done.removeFirst();
    }
    apply(edit);
}

void LongTextItem::takeBack()
{
    if (!m_done.isEmpty()) {
        const TextChange edit = m_done.takeLast();
        m_undone.append(edit);
        apply(edit.reversed());
    }
}

void LongTextItem::doAgain()
{
    if (!m_undone.isEmpty()) {
        const TextChange edit = m_undone.takeLast();
        m_done.append(edit);
        apply(edit);
    }
}

void LongTextItem::cut()
{
    if (m_isEditable && hasSelection()) {
        copy();
        replaceText(selection(), {});
    }
}

void LongTextItem::paste()
{
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    if (m_isEditable && content != nullptr && content->hasText()) {
        replaceText(selection(), content->text());
        reveal(m_caret);
    }
}

void LongTextItem::erase(Step step, int direction)
{
    if (!hasSelection()) {
        const qsizetype other = stepped(m_caret, step, direction);
        replaceText({std::min(m_caret, other), std::max(m_caret, other)}, {});
    } else {
        replaceText(selection(), {});
    }
}

bool LongTextItem::editFor(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (event.matches(QKeySequence::Cut)) {
        cut();
    } else if (event.matches(QKeySequence::Undo)) {
        takeBack();
    } else if (event.matches(QKeySequence::Redo)) {
        doAgain();
    } else if (event.matches(QKeySequence::DeleteStartOfWord)) {
        erase(Step::Word, -1);
    } else if (event.matches(QKeySequence::DeleteEndOfWord)) {
        erase(Step::Word, 1);
    } else if (event.key() == Qt::Key_Backspace) {
        erase(Step::Character, -1);
    } else if (event.matches(QKeySequence::Delete)) {
        erase(Step::Character, 1);
    } else if (event.matches(QKeySequence::InsertParagraphSeparator)) {
        replaceText(selection(), QStringLiteral("\n"));
    } else if (isTyped(event)) {
        replaceText(selection(), event.text());
    } else {
        return false;
    }
    return true;
}

void LongTextItem::inputMethodEvent(QInputMethodEvent *event)
{
    if (!m_isEditable) {
        event->ignore();
        return;
    }
    const qsizetype from = m_caret + event->replacementStart();
    if (event->replacementLength() > 0) {
        replaceText({from, from + event->replacementLength()}, event->commitString());
    } else if (!event->commitString().isEmpty()) {
        replaceText(selection(), event->commitString());
    }
    reveal(m_caret);
}

QVariant LongTextItem::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const qsizetype start = std::max<qsizetype>(0, m_caret - kSurroundings);
    switch (int(query)) {
    case Qt::ImEnabled:
        return m_isEditable;
    case Qt::ImHints:
        return int(Qt::ImhMultiLine);
    case Qt::ImCursorRectangle:
        return m_caretRectangle;
    case Qt::ImSurroundingText:
        return m_layout.text().sliced(start, std::min(2 * kSurroundings, text().size() - start));
    case Qt::ImCursorPosition:
        return m_caret - start;
    case Qt::ImAnchorPosition:
        return std::clamp<qsizetype>(m_anchor - start, 0, 2 * kSurroundings);
    case Qt::ImCurrentSelection:
        return hasSelection() ? selectedText() : QString();
    default:
        return QQuickItem::inputMethodQuery(query);
    }
}

} // namespace velarc
