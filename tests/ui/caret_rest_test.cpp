#include "support/wait_until.h"
#include "ui/caret_rest.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QStyleHints>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace std::chrono_literals;

int flashTime()
{
    return QGuiApplication::styleHints()->cursorFlashTime();
}

TEST(CaretRest, theCaretStandsStillUntilTheWindowIsUsedAgain)
{
    const int before = flashTime();
    ASSERT_GT(before, 0);
    QWindow window;
    CaretRest rest(window, 50ms);
    EXPECT_EQ(flashTime(), before);
    EXPECT_TRUE(waitUntil([] { return flashTime() == 0; }));
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &key);
    EXPECT_EQ(flashTime(), before);
    EXPECT_TRUE(waitUntil([] { return flashTime() == 0; }));
    QFocusEvent focus(QEvent::FocusIn);
    QCoreApplication::sendEvent(&window, &focus);
    EXPECT_EQ(flashTime(), before);
}

} // namespace

} // namespace velarc
