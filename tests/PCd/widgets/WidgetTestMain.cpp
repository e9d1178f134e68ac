// SPDX-License-Identifier: MIT
#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv); // takes its own options out of the arguments
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
