// SPDX-License-Identifier: MIT
#include <PCd/frame/PDeviceMode.h>

#include <gtest/gtest.h>

namespace {

PDeviceMode smallMode() {
    return {640, 480, u"640x480"_qs, "2", 24};
}

TEST(PDeviceMode, is_not_a_mode_until_it_is_filled_in) {
    const PDeviceMode mode;
    EXPECT_EQ(mode.width, 0);
    EXPECT_EQ(mode.height, 0);
    EXPECT_TRUE(mode.name.isEmpty());
    EXPECT_TRUE(mode.id.isEmpty());
    EXPECT_EQ(mode.bitDepth, 0);
}

TEST(PDeviceMode, is_another_one_if_any_field_differs) {
    EXPECT_TRUE(smallMode() == smallMode());
    EXPECT_FALSE(smallMode() != smallMode());
    const auto differs = [](auto change) {
        PDeviceMode other = smallMode();
        change(other);
        return other != smallMode() && !(other == smallMode());
    };
    EXPECT_TRUE(differs([](PDeviceMode& mode) { mode.width = 641; }));
    EXPECT_TRUE(differs([](PDeviceMode& mode) { mode.height = 481; }));
    EXPECT_TRUE(differs([](PDeviceMode& mode) { mode.name = u"VGA"_qs; }));
    EXPECT_TRUE(differs([](PDeviceMode& mode) { mode.id = "3"; }));
    EXPECT_TRUE(differs([](PDeviceMode& mode) { mode.bitDepth = 8; }));
}

} // namespace
