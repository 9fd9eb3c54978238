#include "ui/secret_input.h"

#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Select = SecretLine::Select;

struct KeyRule
{
    QKeySequence::StandardKey key;
    void (*apply)(SecretLine &line);
};

void toStart(SecretLine &line, Select select)
{
    line.moveTo(0, select);
}

void toEnd(SecretLine &line, Select select)
{
    line.moveTo(line.length(), select);
}

// Where its words end is part of a secret: what moves by words moves to the end of the line.
constexpr std::array kKeyRules{
    KeyRule{QKeySequence::SelectAll, [](SecretLine &line) { line.selectAll(); }},
    KeyRule{QKeySequence::Delete, [](SecretLine &line) { line.removeForward(); }},
    KeyRule{QKeySequence::DeleteStartOfWord, [](SecretLine &line) { line.removeToStart(); }},
    KeyRule{QKeySequence::DeleteCompleteLine, [](SecretLine &line) { line.clear(); }},
    KeyRule{
        QKeySequence::MoveToNextChar, [](SecretLine &line) { line.moveBy(1, Select::Nothing); }},
    KeyRule{QKeySequence::MoveToPreviousChar,
        [](SecretLine &line) { line.moveBy(-1, Select::Nothing); }},
    KeyRule{
        QKeySequence::SelectNextChar, [](SecretLine &line) { line.moveBy(1, Select::UpToCursor); }},
    KeyRule{QKeySequence::SelectPreviousChar,
        [](SecretLine &line) { line.moveBy(-1, Select::UpToCursor); }},
    KeyRule{
        QKeySequence::MoveToStartOfLine, [](SecretLine &line) { toStart(line, Select::Nothing); }},
    KeyRule{QKeySequence::MoveToEndOfLine, [](SecretLine &line) { toEnd(line, Select::Nothing); }},
    KeyRule{
        QKeySequence::MoveToPreviousWord, [](SecretLine &line) { toStart(line, Select::Nothing); }},
    KeyRule{QKeySequence::MoveToNextWord, [](SecretLine &line) { toEnd(line, Select::Nothing); }},
    KeyRule{QKeySequence::SelectStartOfLine,
        [](SecretLine &line) { toStart(line, Select::UpToCursor); }},
    KeyRule{
        QKeySequence::SelectEndOfLine, [](SecretLine &line) { toEnd(line, Select::UpToCursor); }},
    KeyRule{QKeySequence::SelectPreviousWord,
        [](SecretLine &line) { toStart(line, Select::UpToCursor); }},
    KeyRule{
        QKeySequence::SelectNextWord, [](SecretLine &line) { toEnd(line, Select::UpToCursor); }},
};

const KeyRule *ruleFor(const QKeyEvent &event)
{
    for (const KeyRule &rule : kKeyRules) {
        if (event.matches(rule.key)) {
            return &rule;
        }
    }
    return nullptr;
}

bool isText(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return !event.text().isEmpty() && event.text().at(0).isPrint()
        && ((event.modifiers() & commands) == 0
            || (event.modifiers() & Qt::GroupSwitchModifier) != 0);
}

bool isBackspace(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Backspace && (event.modifiers() & ~Qt::ShiftModifier) == 0;
}

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

SecretInput::SecretInput(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemAcceptsInputMethod);
    setActiveFocusOnTab(true);
    setCursor(QCursor(Qt::IBeamCursor));
}

void SecretInput::setAccessibleName(const QString &name)
{
    m_accessibleName = name;
    Q_EMIT accessibleNameChanged();
}

QString SecretInput::dots() const
{
    return QString(m_line.length(), u'\u2022');
}

void SecretInput::tellChanged()
{
    Q_EMIT contentChanged();
    Q_EMIT cursorChanged();
}

void SecretInput::insert(QString text)
{
    m_line.insert(text);
    wipe(text);
    tellChanged();
}

void SecretInput::clear()
{
    m_line.clear();
    tellChanged();
}

void SecretInput::paste()
{
    insert(QGuiApplication::clipboard()->text());
}

void SecretInput::pasteSelection()
{
    if (QGuiApplication::clipboard()->supportsSelection()) {
        insert(QGuiApplication::clipboard()->text(QClipboard::Selection));
    }
}

void SecretInput::selectAll()
{
    m_line.selectAll();
    Q_EMIT cursorChanged();
}

void SecretInput::placeCursor(int place)
{
    m_line.moveTo(place, Select::Nothing);
    Q_EMIT cursorChanged();
}

void SecretInput::selectUpTo(int place)
{
    m_line.moveTo(place, Select::UpToCursor);
    Q_EMIT cursorChanged();
}

QVariant SecretInput::inputMethodQuery(Qt::InputMethodQuery query) const
{
    // Nothing else: above all not the text around the cursor.
    if (query == Qt::ImEnabled) {
        return isEnabled();
    }
    if (query == Qt::ImHints) {
        return QVariant::fromValue<int>(Qt::ImhHiddenText | Qt::ImhSensitiveData
            | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    }
    return query == Qt::ImCursorRectangle ? QVariant(m_cursorRectangle) : QVariant();
}

bool SecretInput::edit(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Paste)) {
        paste();
    } else if (isBackspace(event)) {
        m_line.removeBackward();
        tellChanged();
    } else if (const KeyRule *rule = ruleFor(event)) {
        rule->apply(m_line);
        tellChanged();
    } else if (isText(event)) {
        insert(event.text());
    } else {
        return false;
    }
    return true;
}

bool SecretInput::event(QEvent *event)
{
    // What the field does itself is no shortcut of the window meanwhile.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (key.matches(QKeySequence::Paste) || ruleFor(key) != nullptr || isBackspace(key)
            || isText(key)) {
            event->accept();
            return true;
        }
    }
    return QQuickItem::event(event);
}

void SecretInput::keyPressEvent(QKeyEvent *event)
{
    if (isReturn(*event)) {
        Q_EMIT accepted();
    } else if (!edit(*event)) {
        event->ignore();
    }
}

void SecretInput::inputMethodEvent(QInputMethodEvent *event)
{
    if (!event->commitString().isEmpty()) {
        insert(event->commitString());
    }
}

} // namespace velarc
