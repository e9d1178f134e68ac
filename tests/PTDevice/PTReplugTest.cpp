// SPDX-License-Identifier: MIT
// A camera whose cable is pulled and plugged in again before the plugin rescans.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTDeviceRegister.h>

#include <QPointer>

namespace {

class PTReplug : public SimFixture {
protected:
    PTReplug() {
        loadScene({SimCameraText().withId("cam-1")});
        cameras.updateDevices();
    }

    static void pullAndPutBack() {
        ToupcamSim_unplug("cam-1");
        ToupcamSim_plug("cam-1");
    }

    PTDeviceRegister cameras;
};

} // namespace

TEST_F(PTReplug, an_idle_camera_comes_back_as_a_device_that_works) {
    ASSERT_EQ(cameras.devices().size(), 1);
    const QPointer<PDevice> before = cameras.devices().first();
    const QByteArray id = before->deviceId(false);
    pullAndPutBack();
    cameras.updateDevices();
    ASSERT_TRUE(waitUntil([&] { return before.isNull() && !cameras.devices().isEmpty(); }));
    PDevice* const after = cameras.devices().first();
    EXPECT_EQ(after->deviceId(false), id);
    EXPECT_EQ(after->getSupportModes().size(), 1);
    ASSERT_TRUE(after->link().isOk());
    EXPECT_TRUE(after->startStream().isOk());
    EXPECT_TRUE(waitUntil([&] { return !after->newestFrame().image.isNull(); }));
}

TEST_F(PTReplug, a_camera_that_answers_is_kept_by_a_rescan) {
    ASSERT_EQ(cameras.devices().size(), 1);
    PDevice* const before = cameras.devices().first();
    cameras.updateDevices();
    EXPECT_EQ(cameras.devices(), QList<PDevice*>{before});
    EXPECT_FALSE(before->isGone());
}
