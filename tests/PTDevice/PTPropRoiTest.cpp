// SPDX-License-Identifier: MIT
#include <PTDevice/SimFixture.h>

#include <PCd/PScanAreaRange.h>
#include <PCd/property/PDeviceProperty.h>

#include <support/QtPrinters.h>

#include <QSignalSpy>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class PTPropRoi : public SimFixture {
protected:
    PTPropRoi() {
        loadScene({SimCameraText().withResolutions(
            R"([{"width": 1920, "height": 1080}, {"width": 960, "height": 540}])")});
        device = open();
        device->supportProperties();
        SimJournal::clear();
    }

    PDeviceProperty* roi() const { return findProperty(*device, "roi"); }
    PScanAreaRange range() const { return roi()->tryGetRange().value<PScanAreaRange>(); }

    std::unique_ptr<PTDevice> device;
};

PScanAreaRange wholeSensor(int width, int height) {
    return {QRect(0, 0, width, height), 4, 4, 4, 4, 0};
}

} // namespace

TEST_F(PTPropRoi, a_region_is_sent_as_offsets_and_sizes) {
    roi()->trySetValue(QRect(10, 20, 100, 52));
    EXPECT_THAT(SimJournal::lines(), ElementsAre("Toupcam_put_Roi(h1, 10, 20, 100, 52) = 0"));
}

TEST_F(PTPropRoi, a_region_of_50_lines_is_sent_as_it_is) {
    roi()->trySetValue(QRect(10, 20, 100, 50));
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre(testing::StartsWith("Toupcam_put_Roi(h1, 10, 20, 100, 50) = ")));
}

TEST_F(PTPropRoi, setting_is_false_when_the_sdk_took_the_region_and_true_when_it_did_not) {
    EXPECT_FALSE(roi()->trySetValue(QRect(0, 0, 64, 64)));
    EXPECT_TRUE(roi()->trySetValue(QRect(0, 0, 4000, 64)));
    ToupcamSim_failCall("Toupcam_put_Roi", 0, 1, S_FALSE);
    EXPECT_TRUE(roi()->trySetValue(QRect(0, 0, 64, 64))) << "any result but 0";
}

TEST_F(PTPropRoi, after_a_good_set_the_host_holds_the_cameras_region) {
    roi()->setValue(QRect(16, 32, 640, 480));
    EXPECT_EQ(roi()->valueInner(), QVariant(QRect(16, 32, 640, 480)));
    EXPECT_THAT(SimJournal::calls("Toupcam_get_Roi"),
                ElementsAre("Toupcam_get_Roi(h1, 16, 32, 640, 480) = 0"));
}

TEST_F(PTPropRoi, the_region_is_read_from_the_camera) {
    ASSERT_EQ(Toupcam_put_Roi(device->sdkHandle(), 8, 6, 44, 32), 0);
    EXPECT_EQ(roi()->tryGetValue(), QVariant(QRect(8, 6, 44, 32)));
}

TEST_F(PTPropRoi, the_range_is_the_sensor_at_the_current_resolution) {
    EXPECT_EQ(range(), wholeSensor(1920, 1080));
    ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), 1), 0);
    EXPECT_EQ(range(), wholeSensor(960, 540));
}

TEST_F(PTPropRoi, the_range_is_empty_and_logged_if_the_camera_has_no_current_resolution) {
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, S_FALSE); // not a failure, but no index either
    EXPECT_EQ(range(), PScanAreaRange());
    EXPECT_EQ(ptLastText(log), u"ScanAreaRange: 4294967295"_qs);
}

TEST_F(PTPropRoi, a_resolution_that_is_read_with_a_positive_result_is_not_logged_as_failed) {
    ToupcamSim_failCall("Toupcam_get_Resolution", 0, 1, S_FALSE);
    range();
    EXPECT_TRUE(ptTexts(log).isEmpty());
}

TEST_F(PTPropRoi, a_resolution_that_cannot_be_read_is_logged_and_still_gives_a_range) {
    ToupcamSim_failCall("Toupcam_get_Resolution", 0, 1, E_FAIL);
    const PScanAreaRange whole = range();
    EXPECT_EQ(whole.bounds.topLeft(), QPoint(0, 0));
    EXPECT_EQ(whole.bounds.bottomRight(), QPoint(-2, -2)); // after the failure: -1 by -1 pixels
    EXPECT_EQ(whole.widthStep, 4);
    EXPECT_EQ(ptLastText(log),
              u"Failed TOUPCAM_OP: Toupcam_get_Resolution(m_handle, n, &w, &h)"_qs);
}

TEST_F(PTPropRoi, the_size_of_an_index_that_cannot_be_read_is_still_read) {
    ToupcamSim_failCall("Toupcam_get_eSize", 0, 1, E_FAIL);
    range();
    EXPECT_EQ(SimJournal::calls("Toupcam_get_Resolution").size(), 1U);
}

TEST_F(PTPropRoi, a_mode_change_has_region_and_range_read_again) {
    device->link();
    roi()->setValue(QRect(16, 32, 640, 480));
    SimJournal::clear();
    ASSERT_TRUE(device->setMode(device->getSupportModes().value(1)).isOk());
    EXPECT_EQ(roi()->valueInner(), QVariant(QRect(0, 0, 960, 540)));
    EXPECT_EQ(roi()->rangeInner().value<PScanAreaRange>(), wholeSensor(960, 540));
}

TEST_F(PTPropRoi, a_mode_change_that_leaves_the_region_as_it_is_has_it_read_and_emits_nothing) {
    QSignalSpy values(roi(), qOverload<const QVariant&>(&PDeviceProperty::valueChanged));
    QSignalSpy ranges(roi(), qOverload<const QVariant&>(&PDeviceProperty::rangeChanged));
    SimJournal::clear();
    emit device->modeChanged(device->getCurrentMode());
    EXPECT_EQ(SimJournal::calls("Toupcam_get_Roi").size(), 1U) << "at once";
    EXPECT_EQ(values.count(), 0);
    EXPECT_EQ(ranges.count(), 0);
}

TEST_F(PTPropRoi, a_property_that_is_gone_is_not_read_by_a_mode_change) {
    qDeleteAll(device->getSupportProperties());
    EXPECT_TRUE(device->setMode(device->getSupportModes().value(1)).isOk());
    EXPECT_EQ(SimJournal::calls("Toupcam_get_Roi").size(), 1U); // the device's own
}
