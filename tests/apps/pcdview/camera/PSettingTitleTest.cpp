// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingTitle.h>

#include <PCd/FakeDevice.h>
#include <PCdGui/TypedProperties.h>

#include <PCd/property/PDevicePropertyGroup.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

class PSettingTitleTest : public testing::Test {
protected:
    PSettingTitleTest() {
        device.makeProperties = [this] { return QList<PDeviceProperty*>{gain, untitled, alone}; };
        device.makeGroups = [this] {
            auto* const group = new PDevicePropertyGroup(u"exposure"_qs, u"Exposure settings"_qs);
            group->addProperty(untitled);
            return QList<PDevicePropertyGroup*>{group};
        };
        device.supportProperties();
    }

    FakeDevice device;
    PDeviceProperty* const gain =
        new FakeNumber("expogain", u"Gain"_qs, PMinMaxRange<int>{0, 500, 1}, 100);
    PDeviceProperty* const untitled = new FakeSwitch("extexposure", QString());
    PDeviceProperty* const alone = new FakeSwitch("alone", QString());
};

} // namespace

TEST_F(PSettingTitleTest, is_that_of_the_property) {
    EXPECT_EQ(PSettingTitle::of(&device, "expogain"), u"Gain"_qs);
}

TEST_F(PSettingTitleTest, is_that_of_the_group_if_the_property_has_none) {
    EXPECT_EQ(PSettingTitle::of(&device, "extexposure"), u"Exposure settings"_qs);
}

TEST_F(PSettingTitleTest, has_the_name_of_a_field) {
    EXPECT_EQ(PSettingTitle::of(&device, "extexposure.gain"), u"Exposure settings (gain)"_qs);
}

TEST_F(PSettingTitleTest, is_a_word_for_the_mode) {
    EXPECT_EQ(PSettingTitle::of(&device, "mode"), u"Resolution"_qs);
}

TEST_F(PSettingTitleTest, is_the_id_if_there_is_no_other) {
    EXPECT_EQ(PSettingTitle::of(&device, "alone"), u"alone"_qs);
    EXPECT_EQ(PSettingTitle::of(&device, "unknown.field"), u"unknown.field"_qs);
    EXPECT_EQ(PSettingTitle::of(nullptr, "expogain"), u"expogain"_qs);
}
