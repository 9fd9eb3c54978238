#include "ui/caret_rest.h"

#include <QEvent>
#include <QGuiApplication>
#include <QStyleHints>

namespace velarc {

CaretRest::CaretRest(QWindow &window, std::chrono::milliseconds patience)
    : m_flashTime(QGuiApplication::styleHints()->cursorFlashTime())
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(patience);
    connect(&m_timer, &QTimer::timeout, this,
        [] { QGuiApplication::styleHints()->setCursorFlashTime(0); });
    window.installEventFilter(this);
    m_timer.start();
}

bool CaretRest::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::MouseButtonPress || type == QEvent::FocusIn) {
        wake();
    }
    return QObject::eventFilter(watched, event);
}

void CaretRest::wake()
{
    QGuiApplication::styleHints()->setCursorFlashTime(m_flashTime);
    m_timer.start();
}

} // namespace velarc
