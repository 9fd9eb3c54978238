// Every test program runs with an event loop at hand and in a fixed locale and time zone, unless a
// test sets others.

#include "support/temporary_folder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char **argv)
{
    setenv("LC_ALL", "en_US.UTF-8", 1);
    if (std::getenv("TZ") == nullptr) {
        setenv("TZ", "America/New_York", 1);
    }
    const velarc::OwnTemporaryFolder temporaryFolder;
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
