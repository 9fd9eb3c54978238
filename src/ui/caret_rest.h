#pragma once

// The caret of a window that nobody uses stands still: each blink draws a frame.

#include <QObject>
#include <QTimer>
#include <QWindow>

#include <chrono>

namespace velarc {

// Main thread only. The window must outlive it. It changes how the caret blinks in the whole
// program, from what the desktop said at its birth and back.
class CaretRest final : public QObject
{
public:
    explicit CaretRest(
        QWindow &window, std::chrono::milliseconds patience = std::chrono::seconds(10));

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTimer m_timer;
    const int m_flashTime; // in ms, both halves together; 0 where the desktop wants none

    void wake();
};

} // namespace velarc
