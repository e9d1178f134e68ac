// SPDX-License-Identifier: MIT
// The light frequency: the code for lamps that flicker with the mains.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTPropBacklight.h>

#include <support/QtPrinters.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class PTBacklightPropertyTest : public SimFixture {
protected:
    PTBacklightPropertyTest() {
        loadScene({SimCameraText()});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PTBacklightProperty* property() const {
        return findProperty<PTBacklightProperty>(*device, "backlight");
    }

    std::unique_ptr<PTDevice> device;
};

} // namespace

TEST_F(PTBacklightPropertyTest, sends_and_reads_the_code) {
    EXPECT_TRUE(property()->trySetValueToDevice(1));
    EXPECT_EQ(property()->tryGetValueFromDevice(), 1);
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_put_HZ(h1, 1) = 0", "Toupcam_get_HZ(h1, 1) = 0"));
}

TEST_F(PTBacklightPropertyTest, passes_on_a_code_that_does_not_exist_and_reports_the_refusal) {
    EXPECT_FALSE(property()->trySetValueToDevice(7));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_HZ(h1, 7) = -2147024809"));
}

TEST_F(PTBacklightPropertyTest, any_result_that_is_not_negative_is_a_success) {
    ToupcamSim_failCall("Toupcam_put_HZ", 0, 1, S_FALSE);
    EXPECT_TRUE(property()->trySetValueToDevice(1));
}

TEST_F(PTBacklightPropertyTest, a_code_that_cannot_be_read_is_0) {
    ToupcamSim_failCall("Toupcam_get_HZ", 0, 1, E_FAIL);
    EXPECT_EQ(property()->tryGetValueFromDevice(), 0);
}

TEST_F(PTBacklightPropertyTest, the_range_is_0_to_0_whatever_the_camera) {
    const PMinMaxRange<int> range = property()->tryGetRangeFromDevice();
    EXPECT_EQ(range.minimum, 0);
    EXPECT_EQ(range.maximum, 0);
    EXPECT_EQ(range.step, 0);
    EXPECT_THAT(SimJournal::lines(), testing::IsEmpty());
}

TEST_F(PTBacklightPropertyTest, a_refused_code_leaves_the_cameras_as_the_value) {
    property()->setValue(7);
    EXPECT_EQ(property()->valueInner(), QVariant(2));
}
