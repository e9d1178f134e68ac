// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PPixelScale.h>

#include <PCd/FakeDevice.h>

#include <QSize>

#include <gtest/gtest.h>

namespace {

/// In the smaller of two modes, which is the first.
class PPixelScaleTest : public testing::Test {
protected:
    PPixelScaleTest() {
        device.modes = {FakeDevice::makeMode(320, 240, "0"), FakeDevice::makeMode(640, 480, "1")};
        device.mode = device.modes.at(0);
    }

    FakeDevice device;
};

} // namespace

TEST_F(PPixelScaleTest, is_the_largest_mode_divided_by_the_one_in_use) {
    EXPECT_EQ(PPixelScale::of(device, QSize(320, 240)), 2);
    device.mode = device.modes.at(1);
    EXPECT_EQ(PPixelScale::of(device, QSize(640, 480)), 1);
}

TEST_F(PPixelScaleTest, is_1_if_the_mode_in_use_cannot_be_read) {
    device.mode = device.modes.at(1);
    device.failsToReadMode = true; // and returns the first
    EXPECT_EQ(PPixelScale::of(device, QSize(640, 480)), 1);
}
