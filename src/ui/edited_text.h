#pragma once

// The text of an editor, and which kind of editor can hold it.

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace velarc {

// Main thread only. A text field lays its whole text out at each key: a text that is longer than
// that can bear is long, and stays so until it is much shorter.
class EditedText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool isLong READ isLong NOTIFY isLongChanged) // told before the text
    Q_PROPERTY(int caret MEMBER m_caret NOTIFY caretChanged) // where it stood last

public:
    using QObject::QObject;

    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    [[nodiscard]] bool isLong() const { return m_isLong; }

    // The user changed it. A binding of `text` stays.
    Q_INVOKABLE void edit(const QString &text) { setText(text); }

    // Replaces a part of the text by the clipboard's if that makes it long; else gives what a short
    // editor is to insert. The clipboard is read once: a second reading may come to another text.
    Q_INVOKABLE QString paste(int selectionStart, int selectionEnd);

Q_SIGNALS:
    void textChanged();
    void isLongChanged();
    void caretChanged();

private:
    QString m_text;
    bool m_isLong = false;
    int m_caret = 0;
};

} // namespace velarc
