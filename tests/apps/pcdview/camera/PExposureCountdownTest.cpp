// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PExposureCountdown.h>

#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/TestRoles.h>

#include <gtest/gtest.h>

/// How a camera is made to take frames.
struct FakeCapture {
    Q_GADGET
    Q_PROPERTY(int capturemode MEMBER capturemode)
    Q_PROPERTY(int triggermode MEMBER triggermode)
    Q_PROPERTY(int seconds MEMBER seconds)

public:
    int capturemode = 0;
    int triggermode = 0;
    int seconds = 0;
};

/// The exposure of a camera's live frames.
struct FakeVideo {
    Q_GADGET
    Q_PROPERTY(int seconds MEMBER seconds)

public:
    int seconds = 12;
};

namespace {

using namespace std::chrono_literals;
using Left = std::optional<std::chrono::seconds>;

/// A camera with an exposure of 12 s, and a clock that the test advances.
class PExposureCountdownTest : public testing::Test {
protected:
    PExposureCountdownTest() {
        time = withTestRoles(new FakeProperty("autoexpottime", 12'000'000));
        capture =
            withTestRoles(new FakeProperty("extexposure", QVariant::fromValue(FakeCapture())));
        device.makeProperties = [this] { return QList<PDeviceProperty*>{time, capture}; };
        device.supportProperties();
        EXPECT_TRUE(device.link().isOk());
        EXPECT_TRUE(device.startStream().isOk());
        countdown = std::make_unique<PExposureCountdown>(&device, [this] { return clock; });
    }

    void expose(int microseconds) {
        time->inDevice = microseconds;
        time->updateValueFromDevice();
    }
    void setCapture(int mode, int trigger) {
        capture->inDevice = QVariant::fromValue(FakeCapture{mode, trigger, 0});
        capture->updateValueFromDevice(true);
    }
    void pass(std::chrono::milliseconds duration) { clock += duration; }
    Left left() const { return countdown->left(); }

    PExposureCountdown::Clock::time_point clock;
    FakeDevice device;
    FakeProperty* time; // the device's
    FakeProperty* capture;
    std::unique_ptr<PExposureCountdown> countdown;
};

} // namespace

TEST_F(PExposureCountdownTest, counts_whole_seconds_down_until_the_picture_is_due) {
    EXPECT_EQ(left(), Left(12s));
    pass(1ms);
    EXPECT_EQ(left(), Left(12s));
    pass(999ms);
    EXPECT_EQ(left(), Left(11s));
    pass(10'999ms);
    EXPECT_EQ(left(), Left(1s));
    pass(1ms);
    EXPECT_EQ(left(), Left(0s));
    pass(60s);
    EXPECT_EQ(left(), Left(0s));
}

TEST_F(PExposureCountdownTest, begins_again_with_each_picture) {
    pass(12s);
    emit device.imageChanged(PImage());
    EXPECT_EQ(left(), Left(12s));
}

TEST_F(PExposureCountdownTest, begins_again_with_another_exposure_time_only) {
    pass(5s);
    time->updateValueFromDevice(true);
    EXPECT_EQ(left(), Left(7s));
    expose(3'000'000);
    EXPECT_EQ(left(), Left(3s));
}

TEST_F(PExposureCountdownTest, begins_again_with_another_mode) {
    pass(5s);
    emit device.modeChanged(device.mode);
    EXPECT_EQ(left(), Left(12s));
}

TEST_F(PExposureCountdownTest, leaves_short_exposures_to_the_frame_rate) {
    expose(899'999);
    EXPECT_EQ(left(), Left());
    expose(900'000);
    EXPECT_EQ(left(), Left(1s));
}

TEST_F(PExposureCountdownTest, counts_nothing_while_the_live_picture_is_stopped) {
    ASSERT_TRUE(device.stopStream().isOk());
    EXPECT_EQ(left(), Left());
}

TEST_F(PExposureCountdownTest, counts_triggered_pictures_only_while_a_run_is_in_progress) {
    setCapture(1, 0);
    EXPECT_EQ(left(), Left());
    pass(100s);
    countdown->setRunning(true);
    EXPECT_EQ(left(), Left(12s));
    pass(4s);
    countdown->setRunning(true);
    EXPECT_EQ(left(), Left(8s)) << "it is the same run";
    emit device.imageChanged(PImage());
    EXPECT_EQ(left(), Left(12s));
    countdown->setRunning(false);
    EXPECT_EQ(left(), Left());
}

TEST_F(PExposureCountdownTest, cannot_know_when_a_signal_from_outside_comes) {
    setCapture(1, 1);
    countdown->setRunning(true);
    EXPECT_EQ(left(), Left());
    setCapture(0, 1);
    EXPECT_EQ(left(), Left(12s)) << "live pictures wait for no signal";
}

TEST(PExposureCountdown, follows_the_time_of_triggers_where_another_setting_has_it) {
    // The roles of the two are apart: no signal of the exposure time reports that of the triggers.
    auto* const video = new FakeProperty("video", QVariant::fromValue(FakeVideo())); // the device's
    auto* const capture = new FakeProperty("capture", QVariant::fromValue(FakeCapture{1, 0, 9}));
    PPropertyRoles::declare(*video, {{PRole::ExposureTime, PRoleUnit::Seconds, "seconds"}});
    PPropertyRoles::declare(*capture, {{PRole::Triggered, PRoleUnit::Own, "capturemode"},
                                       {PRole::TriggerTime, PRoleUnit::Seconds, "seconds"}});
    FakeDevice device;
    device.makeProperties = [&] { return QList<PDeviceProperty*>{video, capture}; };
    device.supportProperties();
    ASSERT_TRUE(device.link().isOk());
    ASSERT_TRUE(device.startStream().isOk());
    PExposureCountdown countdown(&device, [] { return PExposureCountdown::Clock::time_point(); });
    countdown.setRunning(true);
    EXPECT_EQ(countdown.left(), Left(9s));
    capture->inDevice = QVariant::fromValue(FakeCapture{1, 0, 4});
    capture->updateValueFromDevice(true);
    EXPECT_EQ(countdown.left(), Left(4s));
}

TEST(PExposureCountdown, counts_nothing_for_a_camera_without_an_exposure_time) {
    FakeDevice device;
    ASSERT_TRUE(device.link().isOk());
    ASSERT_TRUE(device.startStream().isOk());
    EXPECT_EQ(PExposureCountdown(&device).left(), Left());
}

TEST(PExposureCountdown, outlives_the_camera) {
    auto device = std::make_unique<FakeDevice>();
    const PExposureCountdown countdown(device.get());
    device.reset();
    EXPECT_EQ(countdown.left(), Left());
}

#include "PExposureCountdownTest.moc"
