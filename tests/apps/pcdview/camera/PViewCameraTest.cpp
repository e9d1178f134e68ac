// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PViewCamera.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/TestRoles.h>
#include <PCd/profile/PDeviceProfilePlan.h>

#include <support/WaitUntil.h>

#include <gtest/gtest.h>

/// The part of an exposure record with the capture mode.
struct FakeTriggering {
    Q_GADGET
    Q_PROPERTY(int capturemode MEMBER capturemode)

public:
    int capturemode = 1;
};

namespace {

using namespace std::chrono_literals;

/// A camera with an exposure of 12 s that waits for triggers.
class PViewCameraTest : public testing::Test {
protected:
    PViewCameraTest() {
        device.makeProperties = [this] {
            return QList<PDeviceProperty*>{
                contrast, withTestRoles(new FakeProperty("autoexpottime", 12'000'000)),
                withTestRoles(
                    new FakeProperty("extexposure", QVariant::fromValue(FakeTriggering())))};
        };
    }

    void SetUp() override { ASSERT_TRUE(camera.attach(&device).isOk()); }

    FakeDevice device;
    FakeProperty* const contrast = new FakeProperty("contrast"); // the device's
    PExposureCountdown::Clock::time_point now;
    PViewCamera camera{{u"Fake-1"_qs, u"Fake"_qs, u"1"_qs, true}, nullptr, [this] { return now; }};
};

} // namespace

TEST_F(PViewCameraTest, goes_on_counting_down_in_a_run_when_its_stream_is_started_again) {
    camera.setRunning(true);
    ASSERT_TRUE(camera.untilNextPicture());
    ASSERT_TRUE(camera.setLive(false).isOk());
    EXPECT_FALSE(camera.untilNextPicture());
    ASSERT_TRUE(camera.setLive(true).isOk());
    EXPECT_TRUE(camera.untilNextPicture());
}

TEST_F(PViewCameraTest, counts_down_from_the_start_of_its_stream) {
    camera.setRunning(true);
    ASSERT_TRUE(camera.setLive(false).isOk());
    now += 5s;
    ASSERT_TRUE(camera.setLive(true).isOk());
    EXPECT_EQ(camera.untilNextPicture(), 12s);
}

TEST_F(PViewCameraTest, counts_its_pace_from_the_arrival_of_the_frames) {
    PImage image;
    ASSERT_TRUE(image.create(8, 4, PDIP::ColorFormat::Bgr));
    EXPECT_EQ(camera.framesPerSecond(), 0);
    EXPECT_TRUE(waitUntil([&] {
        device.processFrameImage(image);
        return camera.framesPerSecond() > 0;
    }));
}

TEST_F(PViewCameraTest, may_be_unplugged_while_a_profile_is_applied) {
    PDeviceProfilePlan plan(device);
    PDeviceProfile profile;
    profile.settings.append({"contrast", 7, u"line 1"_qs});
    ASSERT_TRUE(plan.make(profile).isOk());
    QObject::connect(contrast, &PDeviceProperty::valueAboutToBeSent, &camera,
                     [this] { camera.detach(); });
    camera.apply(plan);
    EXPECT_EQ(contrast->inDevice, 7);
    EXPECT_EQ(camera.state(), PViewCamera::State::Unplugged);
}

#include "PViewCameraTest.moc"
