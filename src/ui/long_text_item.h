#pragma once

// A text of any length that can be selected and copied. Only the part of it that is in view is laid
// out and drawn, so that megabytes cost no more than a page.

#include "ui/long_text_layout.h"

#include <QBasicTimer>
#include <QPointer>
#include <QQuickItem>

#include <functional>

namespace velarc {

class TextWindow;

// A change of a text: what stood at a position, and what stands there instead.
struct TextChange
{
    qsizetype at = 0;
    QString before;
    QString after;

    [[nodiscard]] TextChange reversed() const { return {at, after, before}; }
};

// As wide as it is told, as tall as its text. It finds by itself what of it is in view: what the
// clipping items above it let through.
//
// The keyboard: the usual keys scroll what it stands in, select with Shift, select all and copy.
class LongTextItem : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(qreal lineHeight READ lineHeightFactor WRITE setLineHeightFactor NOTIFY fontChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorsChanged)
    Q_PROPERTY(
        QColor selectionColor READ selectionColor WRITE setSelectionColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor selectedTextColor READ selectedTextColor WRITE setSelectedTextColor NOTIFY
            colorsChanged)
    // Whether keys and the clipboard change the text.
    Q_PROPERTY(bool editable READ isEditable WRITE setEditable NOTIFY editableChanged)
    Q_PROPERTY(QRectF caretRectangle READ caretRectangle NOTIFY caretChanged)
    // Of lines that are shown; 0 for all.
    Q_PROPERTY(int lineLimit READ lineLimit WRITE setLineLimit NOTIFY lineLimitChanged)
    Q_PROPERTY(bool isCut READ isCut NOTIFY isCutChanged) // by the limit
    Q_PROPERTY(qreal linePitch READ linePitch NOTIFY fontChanged) // logical pixels
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)
    // Focus came by the keyboard.
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)
    // The whole text if it is short, else the part that is in view.
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY spokenTextChanged)

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

    explicit LongTextItem(QQuickItem *parent = nullptr);
    ~LongTextItem() override;

    [[nodiscard]] QString text() const { return m_layout.text(); }
    void setText(const QString &text);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    [[nodiscard]] qreal lineHeightFactor() const { return m_lineHeightFactor; }
    void setLineHeightFactor(qreal factor);
    [[nodiscard]] QColor color() const { return m_colors.text; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor selectionColor() const { return m_colors.selection; }
    void setSelectionColor(const QColor &color);
    [[nodiscard]] QColor selectedTextColor() const { return m_colors.selectedText; }
    void setSelectedTextColor(const QColor &color);
    [[nodiscard]] bool isEditable() const { return m_isEditable; }
    void setEditable(bool isEditable);
    [[nodiscard]] QRectF caretRectangle() const { return m_caretRectangle; }
    [[nodiscard]] int lineLimit() const { return m_lineLimit; }
    void setLineLimit(int lines);
    [[nodiscard]] bool isCut() const { return m_layout.isCut(); }
    [[nodiscard]] qreal linePitch() const { return m_layout.lineHeight(); }
    [[nodiscard]] bool hasSelection() const { return !selection().isEmpty(); }
    [[nodiscard]] bool visualFocus() const { return m_visualFocus; }
    [[nodiscard]] QString spokenText() const;

    [[nodiscard]] TextSelection selection() const;
    [[nodiscard]] Q_INVOKABLE QString selectedText() const;
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void deselect();
    Q_INVOKABLE void copy(); // asks for the selection; nothing where there is none
    Q_INVOKABLE void cut();
    Q_INVOKABLE void paste();
    Q_INVOKABLE void setCaret(qsizetype position);

    // What an input method asks.
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

    // What TextWindow shows.
    void paintWindow(QPainter &painter, const QRectF &area) const;

Q_SIGNALS:
    void textChanged();
    void fontChanged();
    void colorsChanged();
    void lineLimitChanged();
    void editableChanged();
    void caretChanged();
    void isCutChanged();
    void selectionChanged();
    void spokenTextChanged();
    void visualFocusChanged();
    void copyRequested(const QString &text); // for the clipboard
    void menuRequested(const QPointF &at);

protected:
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void timerEvent(QTimerEvent *event) override;

private:
    LongTextLayout m_layout;
    QFont m_font;
    qreal m_lineHeightFactor = 1;
    TextColors m_colors;
    int m_lineLimit = 0;
    qsizetype m_anchor = 0; // where the selection began
    qsizetype m_caret = 0; // where it has come to
    QRectF m_caretRectangle;
    bool m_isEditable = false;
    QList<TextChange> m_done; // edits that can be taken back, the latest last
    QList<TextChange> m_undone;
    bool m_visualFocus = false;
    QRectF m_inView;
    TextWindow *m_window = nullptr;
    QPointer<QQuickWindow> m_watched;
    QBasicTimer m_dragging; // scrolls while a selection is drawn out of view
    QPointF m_dragPoint;
    quint64 m_doubleClicked = 0; // when, in milliseconds

    void relayOut(const std::function<void()> &change);
    void followView();
    [[nodiscard]] QRectF visiblePart() const;
    [[nodiscard]] QQuickItem *scroller() const;
    void scrollBy(qreal distance);
    void reveal(qsizetype position);
    void setVisualFocus(bool hasFocus);
    void followCaret();
    void select(qsizetype anchor, qsizetype caret);
    [[nodiscard]] qsizetype stepped(qsizetype from, Step step, int direction);
    void replaceText(TextSelection range, const QString &with);
    void apply(const TextChange &edit);
    void takeBack();
    void doAgain();
    void erase(Step step, int direction);
    [[nodiscard]] bool editFor(const QKeyEvent &event);
    [[nodiscard]] bool moveFor(const QKeyEvent &event);
    [[nodiscard]] bool scrollFor(const QKeyEvent &event);
    [[nodiscard]] bool selectFor(const QKeyEvent &event);
};

} // namespace velarc
