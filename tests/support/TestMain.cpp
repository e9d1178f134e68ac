// SPDX-License-Identifier: MIT
#include <PLog/PLog.h>

#include <QCoreApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv); // takes its own options out of the arguments
    const QCoreApplication application(argc, argv);
    // As in the programs, so that PLogCapture collects what they would show.
    PLog::installQtMessageHandler();
    return RUN_ALL_TESTS();
}
