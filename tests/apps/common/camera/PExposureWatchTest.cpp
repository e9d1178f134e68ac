// SPDX-License-Identifier: MIT
#include <apps/common/camera/PExposureWatch.h>

#include <apps/common/TestFrames.h>

#include <PCd/FakeDevice.h>

#include <PCd/property/PReadWatch.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace std::chrono_literals;

/// The values of a camera, and the number of times that they were read.
struct Camera {
    QVariant time = 10'000; ///< microseconds
    QVariant gain = 100;
    QVariant automatic = false;
    int timeReads = 0;
    int recordReads = 0;
    bool moves = false;          ///< time: with each reading, as with automatic exposure
    bool isTimeSilent = false;   ///< time: it cannot be read
    bool isSwitchSilent = false; ///< automatic likewise
    bool isGainSilent = false;   ///< gain likewise
    bool isRecordSilent = false; ///< the record likewise
    int movesNext = 0; ///< microseconds: time moves so far after the next reading of the record
    int sent = 0;      ///< number of plain settings
    int sentRecords = 0;
};

class PlainSetting : public PDeviceProperty {
public:
    PlainSetting(
        const char* id, Camera& camera, QVariant& inCamera, std::function<void()> whenRead = [] {})
        : PDeviceProperty(id, QString(), PCD::DevicePropertyType::Integer)
        , m_camera(camera)
        , m_inCamera(inCamera)
        , m_whenRead(std::move(whenRead)) {}

    bool trySetValue(QVariant value) override {
        ++m_camera.sent;
        m_inCamera = value;
        return true;
    }
    QVariant tryGetValue() override {
        m_whenRead();
        return m_inCamera;
    }
    QVariant tryGetRange() override { return QVariant(); }

private:
    Camera& m_camera;
    QVariant& m_inCamera;
    std::function<void()> m_whenRead;
};

/// The composite setting: writes the live exposure as a whole, and reads it into its own fields.
class RecordSetting : public PDeviceProperty {
public:
    explicit RecordSetting(Camera& camera)
        : PDeviceProperty("extexposure", QString(), PCD::DevicePropertyType::Custom)
        , m_camera(camera) {}

    bool trySetValue(QVariant value) override {
        ++m_camera.sentRecords;
        m_record = value.value<TestExposureRecord>();
        m_camera.automatic = m_record.capturemode == 0 && m_record.autoexpenabled;
        if (m_record.capturemode == 0) {
            m_camera.time = qRound(m_record.exp * 1000);
            m_camera.gain = m_record.gain;
        }
        return true;
    }
    QVariant tryGetValue() override {
        ++m_camera.recordReads;
        if (m_camera.isRecordSilent) {
            PReadWatch::reportFailure();
            TestExposureRecord none;
            none.gain = 0;
            none.exp = 0;
            return QVariant::fromValue(none);
        }
        m_record.exp = m_camera.time.toInt() / 1000.0;
        m_record.gain = m_camera.gain.toInt();
        m_record.autoexpenabled = m_camera.automatic.toBool();
        m_camera.time = m_camera.time.toInt() + std::exchange(m_camera.movesNext, 0);
        return QVariant::fromValue(m_record);
    }
    QVariant tryGetRange() override { return QVariant(); }

private:
    Camera& m_camera;
    TestExposureRecord m_record;
};

class ExposureWatch : public testing::Test {
protected:
    explicit ExposureWatch(bool neverHasGain = false) {
        camera.isGainSilent = neverHasGain;
        device.makeProperties = [this] {
            return QList<PDeviceProperty*>{record, time, gain, automatic};
        };
        device.supportProperties();
        for (PDeviceProperty* const property : {record, time, gain, automatic})
            withTestRoles(property);
    }

    /// Waits long enough for values to settle, and for a fault to do twice what belongs once.
    void waitForReadings() {
        const int enough = camera.timeReads + 10;
        ASSERT_TRUE(waitUntil([&] { return camera.timeReads >= enough; }));
    }
    /// Sends the record as a panel does: with everything that it shows.
    void send(double exp, bool isAutomatic, int capturemode = 0) {
        TestExposureRecord value = shown();
        value.exp = exp;
        value.autoexpenabled = isAutomatic;
        value.capturemode = capturemode;
        record->setValue(QVariant::fromValue(value));
    }
    TestExposureRecord shown() const { return record->valueInner().value<TestExposureRecord>(); }

    /// Automatic exposure moves the time; only the watch has read its last value.
    void moveAway() {
        camera.automatic = true;
        camera.moves = true;
        record->updateValueFromDevice();
        watch();
        ASSERT_NO_FATAL_FAILURE(waitForReadings());
        camera.moves = false;
        ASSERT_GT(camera.time.toInt(), 10'010);
        ASSERT_EQ(shown().exp, 10);
    }

    void watch() { m_watch = std::make_unique<PExposureWatch>(&device, 1ms); }
    void watchUntilSettled() {
        watch();
        waitForReadings();
        camera.recordReads = 0;
    }

    Camera camera;
    FakeDevice device;
    PDeviceProperty* const record = new RecordSetting(camera); // children of the device
    PDeviceProperty* const time = new PlainSetting("autoexpottime", camera, camera.time, [this] {
        ++camera.timeReads;
        if (camera.moves)
            camera.time = camera.time.toInt() + 1;
        if (camera.isTimeSilent)
            PReadWatch::reportFailure();
    });
    PDeviceProperty* const gain = new PlainSetting("autoexpogain", camera, camera.gain, [this] {
        if (camera.isGainSilent)
            PReadWatch::reportFailure();
    });
    PDeviceProperty* const automatic =
        new PlainSetting("autoexponeable", camera, camera.automatic, [this] {
            if (camera.isSwitchSilent)
                PReadWatch::reportFailure();
        });

private:
    std::unique_ptr<PExposureWatch> m_watch;
};

class ExposureWatchWithoutGain : public ExposureWatch {
protected:
    ExposureWatchWithoutGain()
        : ExposureWatch(true) {}
};

TEST_F(ExposureWatch, reads_the_composite_value_once_when_a_change_has_settled) {
    watchUntilSettled();
    camera.time = 7'000;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 1);
    EXPECT_EQ(shown().exp, 7);
    time->setValue(8'000);
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 2);
    EXPECT_EQ(shown().exp, 8);
    camera.automatic = true;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 3);
    EXPECT_TRUE(shown().autoexpenabled);
}

TEST_F(ExposureWatchWithoutGain, does_not_wait_for_a_setting_that_the_camera_never_reports) {
    watchUntilSettled();
    camera.time = 7'000;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 1);
    EXPECT_EQ(shown().exp, 7);
}

TEST_F(ExposureWatch, leaves_the_composite_value_alone_while_automatic_exposure_moves) {
    watchUntilSettled();
    camera.automatic = true;
    camera.moves = true;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 0);
    camera.moves = false;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 1);
    EXPECT_EQ(shown().exp, camera.time.toInt() / 1000.0);
}

TEST_F(ExposureWatch, waits_for_frames_in_which_automatic_exposure_could_have_moved) {
    watchUntilSettled();
    ASSERT_TRUE(device.link().isOk());
    ASSERT_TRUE(device.startStream().isOk());
    camera.automatic = true;
    camera.time = 2'000'000; // many readings per frame
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 0);
    for (int i = 0; i < 3; ++i)
        device.processFrameImage(testFrame(1, 0ms).image);
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 1);
    EXPECT_EQ(shown().exp, 2000);
}

TEST_F(ExposureWatch, leaves_the_composite_value_alone_in_triggered_capture) {
    watchUntilSettled();
    send(20, false, 1);
    camera.time = 5'000'000;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 0);
    EXPECT_EQ(shown().exp, 20);
    send(shown().exp, false, 0);
    EXPECT_EQ(camera.time, 20'000);
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 1);
}

TEST_F(ExposureWatch, takes_a_time_of_zero_as_no_answer) {
    watchUntilSettled();
    camera.time = 0;
    waitForReadings();
    EXPECT_EQ(camera.recordReads, 0);
    EXPECT_EQ(shown().exp, 10);
}

TEST_F(ExposureWatch, keeps_what_automatic_exposure_had_found_when_it_is_switched_off) {
    moveAway();
    const QVariant found = camera.time;
    camera.gain = 100;
    send(10, false);
    EXPECT_EQ(camera.time, found);
    EXPECT_EQ(camera.gain, 100);
    EXPECT_EQ(camera.automatic, false);
    EXPECT_EQ(shown().exp, found.toInt() / 1000.0);
    EXPECT_FALSE(shown().autoexpenabled);
}

TEST_F(ExposureWatch, does_not_bring_back_a_time_that_could_not_be_read) {
    camera.automatic = true;
    record->updateValueFromDevice();
    camera.isTimeSilent = true;
    time->setValue(10'000);
    watch();
    camera.isTimeSilent = false;
    send(10, false);
    EXPECT_EQ(camera.time, QVariant(10'000));
}

TEST_F(ExposureWatch, knows_the_last_automatic_exposure_while_it_cannot_be_read) {
    for (bool Camera::*const silent : {&Camera::isTimeSilent, &Camera::isSwitchSilent}) {
        moveAway();
        const QVariant found = camera.time;
        camera.*silent = true;
        ASSERT_NO_FATAL_FAILURE(waitForReadings());
        camera.*silent = false;
        send(10, false);
        EXPECT_EQ(camera.time, found);
        camera.time = 10'000;
    }
}

TEST_F(ExposureWatch, knows_the_last_record_while_it_cannot_be_read) {
    moveAway();
    const QVariant found = camera.time;
    const TestExposureRecord inPanel = shown();
    camera.isRecordSilent = true;
    record->updateValueFromDevice();
    ASSERT_TRUE(record->isUnread());
    ASSERT_NO_FATAL_FAILURE(waitForReadings());
    camera.isRecordSilent = false;
    TestExposureRecord switchedOff = inPanel;
    switchedOff.autoexpenabled = false;
    record->setValue(QVariant::fromValue(switchedOff));
    EXPECT_EQ(camera.time, found);
}

TEST_F(ExposureWatch, takes_a_time_that_is_set_together_with_the_switch_as_it_is) {
    moveAway();
    send(20, false);
    EXPECT_EQ(camera.time, 20'000);
}

TEST_F(ExposureWatch, takes_the_time_of_a_panel_that_rounds_as_the_same) {
    moveAway();
    const QVariant found = camera.time;
    send(10.004, false);
    EXPECT_EQ(camera.time, found);
}

TEST_F(ExposureWatch, does_not_go_back_to_what_an_earlier_automatic_exposure_had_found) {
    moveAway();
    automatic->setValue(false);
    time->setValue(10'000);
    record->updateValueFromDevice(); // any code may read it
    EXPECT_EQ(camera.time, 10'000);
    EXPECT_FALSE(shown().autoexpenabled);
}

TEST_F(ExposureWatch, leaves_the_camera_what_a_panel_cannot_show) {
    int answers = 0;
    double inPanel = shown().exp;
    QObject::connect(record, &PDeviceProperty::valueChanged, [&] {
        const double now = std::min(shown().exp, 5000.0);
        if (std::exchange(inPanel, now) == now)
            return;
        ++answers;
        send(now, false);
    });
    watchUntilSettled();
    camera.time = 10'000'000;
    waitForReadings();
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(camera.time, 10'000'000);
    EXPECT_EQ(shown().exp, 10'000);
}

TEST_F(ExposureWatch, sends_nothing_where_no_panel_answers_a_refresh) {
    watchUntilSettled();
    for (const bool isAutomatic : {false, true}) {
        camera.automatic = isAutomatic;
        camera.time = 7'000;
        camera.movesNext = 500; // between the readings of the record and of the time
        waitForReadings();
        ASSERT_EQ(camera.movesNext, 0);
        EXPECT_EQ(camera.time, 7'500);
        EXPECT_EQ(camera.sent, 0);
        EXPECT_EQ(camera.sentRecords, 0);
    }
}

TEST_F(ExposureWatch, sends_neither_time_nor_gain_to_a_camera_that_exposes_automatically) {
    double inPanel = shown().exp;
    QObject::connect(record, &PDeviceProperty::valueChanged, [&] {
        const double now = std::min(shown().exp, 5.0);
        if (std::exchange(inPanel, now) != now)
            send(now, shown().autoexpenabled);
    });
    watchUntilSettled();
    inPanel = 0;
    camera.automatic = true;
    camera.time = 7'000;
    waitForReadings();
    EXPECT_EQ(camera.sentRecords, 1); // the panel's
    EXPECT_EQ(camera.sent, 0);
    EXPECT_EQ(camera.automatic, true);
    EXPECT_EQ(shown().exp, camera.time.toInt() / 1000.0);
}

TEST_F(ExposureWatch, leaves_a_device_alone_that_is_gone) {
    auto other = std::make_unique<FakeDevice>();
    const PExposureWatch watch(other.get(), 1ms);
    other.reset();
    watchUntilSettled();
    camera.time = 7'000;
    waitForReadings();
    EXPECT_EQ(shown().exp, 7);
}

} // namespace
