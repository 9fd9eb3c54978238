// The clipboard's tests run with a display, which the one who starts them provides.

#include "support/temporary_folder.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    const velarc::OwnTemporaryFolder temporaryFolder;
    ::testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
