#pragma once

// The part of a password field that takes the keys.

#include "ui/secret_line.h"

#include <QQuickItem>

namespace velarc {

// Holds one secret line while it stands, and overwrites it with clear() and when it goes. Nobody
// gets the text but who calls secret(): assistive programs, input methods and QML see dots alone,
// there is no history to undo, and nothing of it can be copied or cut. What draws it asks for its
// length, its cursor and its selection, which count dots.
//
// The pieces in which the window system hands keys and the clipboard over are beyond its reach.
class SecretInput : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString accessibleName READ accessibleName WRITE setAccessibleName NOTIFY
            accessibleNameChanged)
    Q_PROPERTY(int length READ length NOTIFY contentChanged)
    Q_PROPERTY(int cursorPosition READ cursorPosition NOTIFY cursorChanged)
    Q_PROPERTY(int selectionStart READ selectionStart NOTIFY cursorChanged)
    Q_PROPERTY(int selectionEnd READ selectionEnd NOTIFY cursorChanged)
    Q_PROPERTY(QRectF cursorRectangle MEMBER m_cursorRectangle NOTIFY cursorRectangleChanged)

public:
    explicit SecretInput(QQuickItem *parent = nullptr);

    [[nodiscard]] const QString &accessibleName() const { return m_accessibleName; }
    void setAccessibleName(const QString &name);
    [[nodiscard]] Secret secret() const { return m_line.secret(); }
    [[nodiscard]] QString dots() const;
    [[nodiscard]] int length() const { return static_cast<int>(m_line.length()); }
    [[nodiscard]] int cursorPosition() const { return static_cast<int>(m_line.cursor()); }
    [[nodiscard]] int selectionStart() const { return static_cast<int>(m_line.selectionStart()); }
    [[nodiscard]] int selectionEnd() const { return static_cast<int>(m_line.selectionEnd()); }

    Q_INVOKABLE void clear();
    Q_INVOKABLE void paste();
    Q_INVOKABLE void pasteSelection(); // what is selected somewhere, where the desktop has that
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void placeCursor(int place);
    Q_INVOKABLE void selectUpTo(int place);

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    void accessibleNameChanged();
    void contentChanged();
    void cursorChanged();
    void cursorRectangleChanged();
    void accepted(); // Return

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    QString m_accessibleName;
    SecretLine m_line;
    QRectF m_cursorRectangle; // where who draws it shows the cursor, for the input method

    [[nodiscard]] bool edit(const QKeyEvent &event);
    void insert(QString text);
    void tellChanged();
};

} // namespace velarc
