#include "support/TestServer.h"

#include <QApplication>
#include <cstdio>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    if (TestServer::IsWanted() && !TestServer::IsInstalled()) {
        std::puts("SKIPPED: PostgreSQL is not installed");
        return qEnvironmentVariableIsSet("CI") ? 1
                                               : 77; // where everything is to be tested, that is a failure
    }
    return RUN_ALL_TESTS();
}
