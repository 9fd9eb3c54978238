// The tests of the screens: a display that nobody sees, and the renderer that the program uses.

#include "support/temporary_folder.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char **argv)
{
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    if (std::getenv("TZ") == nullptr) {
        setenv("TZ", "America/New_York", 1);
    }
    const velarc::OwnTemporaryFolder temporaryFolder;
    ::testing::InitGoogleTest(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
