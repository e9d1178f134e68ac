// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

// A program without an application of Qt.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
