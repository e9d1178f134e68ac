// SPDX-License-Identifier: MIT
#include <PLog/PLog.h>

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv); // takes its own options out of the arguments
    const QApplication application(argc, argv);
    // The same style on every desktop: pictures of panels are compared by eye.
    QApplication::setStyle(u"Fusion"_qs);
    PLog::installQtMessageHandler();
    return RUN_ALL_TESTS();
}
