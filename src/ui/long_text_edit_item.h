#pragma once

#include "ui/long_text_item.h"

namespace velarc {

// A change of a text: what stood at a position, and what stands there instead.
struct TextChange
{
    qsizetype at = 0;
    QString before;
    QString after;

    [[nodiscard]] TextChange reversed() const { return {at, after, before}; }
};

// A long text that can be edited: with the usual keys, the clipboard and an input method, whose
// text is taken once it is committed. Changes can be taken back.
class LongTextEditItem : public velarc::LongTextItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QRectF caretRectangle READ caretRectangle NOTIFY caretChanged)

public:
    explicit LongTextEditItem(QQuickItem *parent = nullptr);

    void setText(const QString &text) override;
    [[nodiscard]] QRectF caretRectangle() const { return m_caretRectangle; }
    Q_INVOKABLE void setCaret(qsizetype position);
    Q_INVOKABLE void cut();
    Q_INVOKABLE void paste();

    // What an input method asks.
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    void caretChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    QRectF m_caretRectangle;
    QList<TextChange> m_done; // that can be taken back, the latest last
    QList<TextChange> m_undone;

    void followCaret();
    void replace(TextSelection range, const QString &with);
    void apply(const TextChange &change);
    void takeBack();
    void doAgain();
    void erase(const KeyStep &step);
    [[nodiscard]] bool eraseFor(const QKeyEvent &event);
    [[nodiscard]] bool editFor(const QKeyEvent &event);
    [[nodiscard]] bool moveFor(const QKeyEvent &event);
};

} // namespace velarc
