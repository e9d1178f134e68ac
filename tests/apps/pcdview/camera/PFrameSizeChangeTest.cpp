// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PFrameSizeChange.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/TestRoles.h>
#include <PCd/profile/PDeviceProfile.h>

#include <support/QtPrinters.h>

#include <QRect>

#include <gtest/gtest.h>

namespace {

class PFrameSizeChangeTest : public testing::Test {
protected:
    PFrameSizeChangeTest() {
        device.modes = {FakeDevice::makeMode(640, 480, "0"), FakeDevice::makeMode(320, 240, "1")};
        device.mode = device.modes.at(0);
        device.makeProperties = [this] {
            return QList<PDeviceProperty*>{binning, rotation, region, contrast};
        };
        device.supportProperties();
    }

    FakeDevice device;
    FakeProperty* const binning = withTestRoles(new FakeProperty("binning", 1));
    FakeProperty* const rotation = withTestRoles(new FakeProperty("rotate", 0));
    FakeProperty* const region = withTestRoles(new FakeProperty("roi", QRect(0, 0, 640, 480)));
    FakeProperty* const contrast = withTestRoles(new FakeProperty("contrast", 5));
    PDeviceProfile profile; // as it is
};

} // namespace

TEST_F(PFrameSizeChangeTest, is_another_binning) {
    EXPECT_EQ(PFrameSizeChange::byValue(*binning, 2), PRole::Binning);
    EXPECT_EQ(PFrameSizeChange::byValue(*binning, 1), std::nullopt);
}

TEST_F(PFrameSizeChangeTest, is_a_quarter_turn_but_not_a_half) {
    EXPECT_EQ(PFrameSizeChange::byValue(*rotation, 90), PRole::Rotation);
    EXPECT_EQ(PFrameSizeChange::byValue(*rotation, 180), std::nullopt);
    rotation->setValue(90);
    EXPECT_EQ(PFrameSizeChange::byValue(*rotation, 270), std::nullopt);
    EXPECT_EQ(PFrameSizeChange::byValue(*rotation, 0), PRole::Rotation);
}

TEST_F(PFrameSizeChangeTest, is_a_region_of_another_size_but_not_in_another_place) {
    EXPECT_EQ(PFrameSizeChange::byValue(*region, QRect(0, 0, 640, 240)), PRole::Region);
    EXPECT_EQ(PFrameSizeChange::byValue(*region, QRect(4, 4, 640, 480)), std::nullopt);
}

TEST_F(PFrameSizeChangeTest, is_no_other_setting) {
    EXPECT_EQ(PFrameSizeChange::byValue(*contrast, 9), std::nullopt);
}

TEST_F(PFrameSizeChangeTest, is_another_mode_of_a_profile_that_the_device_has) {
    EXPECT_FALSE(PFrameSizeChange::byProfile(device, profile)); // of a camera without modes
    profile.mode.form = u"0"_qs;
    EXPECT_FALSE(PFrameSizeChange::byProfile(device, profile));
    profile.mode.form = u"1"_qs;
    EXPECT_TRUE(PFrameSizeChange::byProfile(device, profile));
    profile.mode.form = u"7"_qs;
    EXPECT_FALSE(PFrameSizeChange::byProfile(device, profile));
}

TEST_F(PFrameSizeChangeTest, is_a_value_of_a_profile) {
    profile.settings = {{"contrast", 9, {}}, {"unknown", 2, {}}, {"binning", 1, {}}};
    EXPECT_FALSE(PFrameSizeChange::byProfile(device, profile));
    profile.settings.append({"rotate", 270, {}});
    EXPECT_TRUE(PFrameSizeChange::byProfile(device, profile));
}
