// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PSettingsRestorer.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/property/value/StreamedPair.h>

#include <support/WaitUntil.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

/// A camera with a number and a composite value.
class Camera {
public:
    Camera() {
        device.makeProperties = [this] { return QList<PDeviceProperty*>{contrast, exposure}; };
        device.link();
        device.supportProperties();
    }

    FakeDevice device; // owns the properties
    FakeProperty* contrast = new FakeProperty("contrast", 0);
    FakeProperty* exposure = new FakeProperty("exposure", QVariant::fromValue(StreamedPair{1, 5}));
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
    QList<int> restored() const {
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
