#pragma once

#include "ui/long_text_view.h"

#include <QBasicTimer>

namespace velarc {

// A long text that can be selected and copied.
//
// The usual keys scroll what it stands in, select with Shift, select all and copy. With the pointer
// a drag selects, a double click a word, a triple one a paragraph.
class LongTextItem : public velarc::LongTextView
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    // Focus came by the keyboard.
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)

public:
    // How far a key takes the caret.
    enum class Step
    {
        Character,
        Word,
        Line,
        Page,
        LineEnd,
        Document
    };

    struct KeyStep
    {
        Step step;
        int direction; // 1 goes on, -1 back
    };

    explicit LongTextItem(QQuickItem *parent = nullptr);

    void setText(const QString &text) override;
    [[nodiscard]] bool hasSelection() const { return !selection().isEmpty(); }
    [[nodiscard]] bool visualFocus() const { return m_visualFocus; }

    [[nodiscard]] TextSelection selection() const;
    [[nodiscard]] Q_INVOKABLE QString selectedText() const;
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void copy(); // asks for the selection; nothing where there is none

Q_SIGNALS:
    void selectionChanged();
    void visualFocusChanged();
    void copyRequested(const QString &text); // for the clipboard
    void menuRequested(const QPointF &at);

protected:
    // Where the selection began, and where it has come to.
    [[nodiscard]] qsizetype anchor() const { return m_anchor; }
    [[nodiscard]] qsizetype caret() const { return m_caret; }
    void select(qsizetype anchor, qsizetype caret);
    [[nodiscard]] qsizetype stepped(qsizetype from, const KeyStep &step);

    // The step that a key moves the caret by, or scrolls by where there is none to see.
    [[nodiscard]] static std::optional<KeyStep> moveOf(const QKeyEvent &event);
    // Whether the key selects, and does it.
    [[nodiscard]] bool selectFor(const QKeyEvent &event);

    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void timerEvent(QTimerEvent *event) override;

private:
    qsizetype m_anchor = 0;
    qsizetype m_caret = 0;
    bool m_visualFocus = false;
    QBasicTimer m_dragging; // scrolls while a selection is drawn out of view
    QPointF m_dragPoint;
    quint64 m_doubleClicked = 0; // when, in milliseconds

    void setVisualFocus(bool hasFocus);
    void selectParagraphAt(qsizetype position);
    [[nodiscard]] bool scrollFor(const QKeyEvent &event);
};

} // namespace velarc
