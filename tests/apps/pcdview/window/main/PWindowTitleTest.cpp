// SPDX-License-Identifier: MIT
#include <apps/pcdview/window/main/PWindowTitle.h>

#include <apps/pcdview/camera/PViewCamera.h>

#include <PCd/FakeDevice.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PWindowTitleTest, names_the_program_alone_without_a_camera) {
    EXPECT_EQ(PWindowTitle::toText(nullptr), u"pcdview"_qs);
}

TEST(PWindowTitleTest, names_the_camera_that_is_plugged_in) {
    FakeDevice device;
    PViewCamera camera({u"Fake-1"_qs, u"Fake"_qs, u"1"_qs, false});
    ASSERT_TRUE(camera.attach(&device).isOk());
    EXPECT_EQ(PWindowTitle::toText(&camera), u"Fake-1 — pcdview"_qs);
}

TEST(PWindowTitleTest, says_that_a_camera_is_simulated_and_unplugged) {
    FakeDevice device;
    PViewCamera camera({u"Fake-1"_qs, u"Fake"_qs, u"1"_qs, true});
    ASSERT_TRUE(camera.attach(&device).isOk());
    camera.detach();
    EXPECT_EQ(PWindowTitle::toText(&camera), u"Simulated camera — Fake-1 — unplugged — pcdview"_qs);
}
