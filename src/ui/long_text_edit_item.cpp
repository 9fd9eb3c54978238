#include "ui/long_text_edit_item.h"

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

LongTextEditItem::LongTextEditItem(QQuickItem *parent) : LongTextItem(parent)
{
    setFlag(ItemAcceptsInputMethod);
    connect(this, &LongTextView::laidOut, this, &LongTextEditItem::followCaret);
    connect(this, &LongTextItem::selectionChanged, this, &LongTextEditItem::followCaret);
}

void LongTextEditItem::followCaret()
{
    m_caretRectangle = layout().caretAt(caret());
    Q_EMIT caretChanged();
    updateInputMethod();
}

void LongTextEditItem::setCaret(qsizetype position)
{
    const qsizetype inside = std::clamp<qsizetype>(position, 0, text().size());
    select(inside, inside);
    reveal(inside);
}

void LongTextEditItem::setText(const QString &text)
{
    if (text != this->text()) {
        m_done.clear();
        m_undone.clear();
        LongTextItem::setText(text);
    }
}

void LongTextEditItem::apply(const TextChange &change)
{
    QString text = this->text();
    text.replace(change.at, change.before.size(), change.after);
    const qsizetype behind = change.at + change.after.size();
    changeText(text);
    select(behind, behind);
    followCaret();
}

void LongTextEditItem::replace(TextSelection range, const QString &with)
{
    const TextChange change{range.start, text().sliced(range.start, range.end - range.start), with};
    if (change.before == change.after) {
        return;
    }
    m_undone.clear();
    if (!m_done.isEmpty() && continues(m_done.last(), change)) {
        m_done.last().after += change.after;
    } else {
        m_done.append(change);
    }
    if (m_done.size() > kMostEdits) {
        m_done.removeFirst();
    }
    apply(change);
}

void LongTextEditItem::takeBack()
{
    if (!m_done.isEmpty()) {
        const TextChange edit = m_done.takeLast();
        m_undone.append(edit);
        apply(edit.reversed());
    }
}

void LongTextEditItem::doAgain()
{
    if (!m_undone.isEmpty()) {
        const TextChange edit = m_undone.takeLast();
        m_done.append(edit);
        apply(edit);
    }
}

void LongTextEditItem::cut()
{
    if (hasSelection()) {
        copy();
        replace(selection(), {});
    }
}

void LongTextEditItem::paste()
{
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    if (content != nullptr && content->hasText()) {
        replace(selection(), content->text());
        reveal(caret());
    }
}

void LongTextEditItem::erase(const KeyStep &step)
{
    if (hasSelection()) {
        replace(selection(), {});
        return;
    }
    const qsizetype other = stepped(caret(), step);
    replace({std::min(caret(), other), std::max(caret(), other)}, {});
}

bool LongTextEditItem::eraseFor(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::DeleteStartOfWord)) {
        erase({Step::Word, -1});
    } else if (event.matches(QKeySequence::DeleteEndOfWord)) {
        erase({Step::Word, 1});
    } else if (event.key() == Qt::Key_Backspace) {
        erase({Step::Character, -1});
    } else if (event.matches(QKeySequence::Delete)) {
        erase({Step::Character, 1});
    } else {
        return false;
    }
    return true;
}

bool LongTextEditItem::editFor(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (event.matches(QKeySequence::Cut)) {
        cut();
    } else if (event.matches(QKeySequence::Undo)) {
        takeBack();
    } else if (event.matches(QKeySequence::Redo)) {
        doAgain();
    } else if (event.matches(QKeySequence::InsertParagraphSeparator)) {
        replace(selection(), QStringLiteral("\n"));
    } else if (isTyped(event)) {
        replace(selection(), event.text());
    } else {
        return eraseFor(event);
    }
    return true;
}

bool LongTextEditItem::moveFor(const QKeyEvent &event)
{
    const auto move = moveOf(event);
    if (!move) {
        return false;
    }
    const qsizetype position = stepped(caret(), *move);
    select(position, position);
    return true;
}

void LongTextEditItem::keyPressEvent(QKeyEvent *event)
{
    if (editFor(*event) || moveFor(*event)) {
        reveal(caret());
        return;
    }
    LongTextItem::keyPressEvent(event);
}

void LongTextEditItem::inputMethodEvent(QInputMethodEvent *event)
{
    const qsizetype from = caret() + event->replacementStart();
    if (event->replacementLength() > 0) {
        replace({from, from + event->replacementLength()}, event->commitString());
    } else if (!event->commitString().isEmpty()) {
        replace(selection(), event->commitString());
    }
    reveal(caret());
}

QVariant LongTextEditItem::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const qsizetype start = std::max<qsizetype>(0, caret() - kSurroundings);
    switch (int(query)) {
    case Qt::ImEnabled:
        return true;
    case Qt::ImHints:
        return int(Qt::ImhMultiLine);
    case Qt::ImCursorRectangle:
        return caretRectangle();
    case Qt::ImSurroundingText:
        return text().sliced(start, std::min(2 * kSurroundings, text().size() - start));
    case Qt::ImCursorPosition:
        return caret() - start;
    case Qt::ImAnchorPosition:
        return std::clamp<qsizetype>(anchor() - start, 0, 2 * kSurroundings);
    case Qt::ImCurrentSelection:
        return hasSelection() ? selectedText() : QString();
    default:
        return QQuickItem::inputMethodQuery(query);
    }
}

} // namespace velarc
