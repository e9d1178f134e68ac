// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/TestRoles.h>
#include <PCd/property/value/StreamedPair.h>

#include <support/WaitUntil.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

/// A camera with a number, a composite value, and an exposure time that profiles do not hold.
class Camera {
public:
    Camera() {
        time->setSerializable(false);
        device.makeProperties = [this] {
            return QList<PDeviceProperty*>{contrast, exposure, withTestRoles(time)};
        };
        device.link();
        device.supportProperties();
    }

    FakeDevice device; // owns the properties
    FakeProperty* contrast = new FakeProperty("contrast", 0);
    FakeProperty* exposure = new FakeProperty("exposure", QVariant::fromValue(StreamedPair{1, 5}));
    FakeProperty* time = new FakeProperty("autoexpottime", 100);
};

class PSettingsRestorerTest : public testing::Test {
protected:
    /// Sets both, and waits until the restorer has noticed.
    void set(int contrast, int exposure) {
        camera.contrast->setValue(contrast);
        camera.exposure->setValue(QVariant::fromValue(StreamedPair{exposure, 5}));
        QCoreApplication::processEvents();
    }
    /// The values of another device of this model after the settings were restored on it.
    QList<int> restored() {
        Camera other;
        PDeviceProfileReport report;
        EXPECT_TRUE(restorer.restore(other.device, report).isOk());
        EXPECT_TRUE(report.isComplete());
        return {other.contrast->inDevice.toInt(),
                other.exposure->inDevice.value<StreamedPair>().saved};
    }

    Camera camera;
    PSettingsRestorer restorer;
};

} // namespace

TEST_F(PSettingsRestorerTest, restores_what_was_set_last) {
    restorer.follow(&camera.device);
    set(12, 3);
    set(-7, 4);
    restorer.release();
    EXPECT_EQ(restored(), (QList<int>{-7, 4}));
}

TEST_F(PSettingsRestorerTest, has_the_settings_from_before_the_first_change) {
    EXPECT_TRUE(restorer.isEmpty());
    camera.contrast->setValue(9);
    restorer.follow(&camera.device);
    EXPECT_FALSE(restorer.isEmpty());
    EXPECT_EQ(restored(), (QList<int>{9, 1}));
}

TEST_F(PSettingsRestorerTest, restores_the_mode_that_was_set_last) {
    restorer.follow(&camera.device);
    camera.device.setMode(camera.device.modes.at(1));
    set(12, 3);
    restorer.release();
    Camera other;
    PDeviceProfileReport report;
    ASSERT_TRUE(restorer.restore(other.device, report).isOk());
    EXPECT_EQ(other.device.mode, camera.device.modes.at(1));
}

TEST_F(PSettingsRestorerTest, keeps_changes_as_values_and_writes_no_text) {
    restorer.follow(&camera.device);
    StreamedPair::timesWritten = 0;
    for (int i = 1; i <= 5; ++i)
        set(i, i);
    EXPECT_EQ(StreamedPair::timesWritten, 0);
    EXPECT_EQ(restored(), (QList<int>{5, 5})) << "it has followed the changes";
}

TEST_F(PSettingsRestorerTest, follows_no_changes_once_released) {
    restorer.follow(&camera.device);
    set(1, 2);
    restorer.release();
    set(8, 9);
    EXPECT_EQ(restored(), (QList<int>{1, 2}));
}

TEST_F(PSettingsRestorerTest, restores_no_mode_that_was_misread) {
    camera.device.mode = camera.device.modes.at(1);
    camera.device.failsToReadMode = true; // and returns the first
    restorer.follow(&camera.device);
    Camera other;
    other.device.mode = other.device.modes.at(1);
    PDeviceProfileReport report;
    ASSERT_TRUE(restorer.restore(other.device, report).isOk());
    EXPECT_EQ(other.device.mode, other.device.modes.at(1));
}

TEST_F(PSettingsRestorerTest, reads_a_mode_again_that_was_not_read) {
    camera.device.mode = camera.device.modes.at(1);
    camera.device.failsToReadMode = true;
    restorer.follow(&camera.device);
    camera.device.failsToReadMode = false; // and nothing changes
    Camera other;
    PDeviceProfileReport report;
    EXPECT_TRUE(waitUntil([&] {
        return restorer.restore(other.device, report).isOk() &&
               other.device.mode == camera.device.modes.at(1);
    }));
}

TEST_F(PSettingsRestorerTest, keeps_the_last_value_of_what_is_no_longer_reported) {
    restorer.follow(&camera.device);
    set(12, 3);
    camera.time->setValue(200);
    QCoreApplication::processEvents();
    for (FakeProperty* property : {camera.contrast, camera.exposure, camera.time}) {
        property->failsToRead = true;
        property->setValue(property->inDevice);
        property->updateValueFromDevice();
    }
    QCoreApplication::processEvents();
    ASSERT_TRUE(camera.contrast->isUnread() && camera.exposure->isUnread());
    restorer.release();
    Camera other;
    PDeviceProfileReport report;
    ASSERT_TRUE(restorer.restore(other.device, report).isOk());
    EXPECT_EQ(other.contrast->inDevice, QVariant(12));
    EXPECT_EQ(other.exposure->inDevice.value<StreamedPair>().saved, 3);
    EXPECT_EQ(other.time->inDevice, QVariant(200));
}

TEST_F(PSettingsRestorerTest, keeps_everything_if_nothing_could_be_restored) {
    restorer.follow(&camera.device);
    camera.device.setMode(camera.device.modes.at(1));
    camera.time->setValue(200);
    set(12, 3);
    restorer.release();
    Camera silent;
    silent.device.failsToReadModes = true;
    silent.contrast->failsToRead = true;
    PDeviceProfileReport report;
    ASSERT_FALSE(restorer.restore(silent.device, report).isOk());
    silent.device.failsToReadModes = false;
    silent.contrast->failsToRead = false;
    restorer.follow(&silent.device);
    silent.contrast->updateValueFromDevice(true);
    QCoreApplication::processEvents();
    restorer.release();
    Camera other;
    ASSERT_TRUE(restorer.restore(other.device, report).isOk());
    EXPECT_EQ(other.device.mode, camera.device.modes.at(1));
    EXPECT_EQ(other.time->inDevice, QVariant(200));
    EXPECT_EQ(restored(), (QList<int>{12, 3}));
}

TEST_F(PSettingsRestorerTest, keeps_what_could_not_be_restored_until_it_is_set) {
    restorer.follow(&camera.device);
    set(12, 3);
    restorer.release();
    Camera second;
    second.contrast->failsToRead = true;
    PDeviceProfileReport report;
    ASSERT_TRUE(restorer.restore(second.device, report).isOk());
    ASSERT_EQ(report.refused.size(), 1);
    EXPECT_EQ(report.refused.first().id, "contrast");
    second.contrast->failsToRead = false;
    restorer.follow(&second.device);
    second.contrast->updateValueFromDevice(true);
    second.exposure->setValue(QVariant::fromValue(StreamedPair{4, 5}));
    QCoreApplication::processEvents();
    EXPECT_EQ(restored(), (QList<int>{12, 4}));
    second.contrast->setValue(9);
    QCoreApplication::processEvents();
    EXPECT_EQ(restored(), (QList<int>{9, 4}));
}

TEST_F(PSettingsRestorerTest, does_not_call_it_a_refusal_if_an_exposure_cannot_be_read_back) {
    restorer.follow(&camera.device);
    Camera other;
    other.time->failsToRead = true;
    PDeviceProfileReport report;
    ASSERT_TRUE(restorer.restore(other.device, report).isOk());
    ASSERT_EQ(report.refused.size(), 1);
    EXPECT_EQ(report.refused.first().reason, u"the camera did not report whether it took it"_qs);
}
