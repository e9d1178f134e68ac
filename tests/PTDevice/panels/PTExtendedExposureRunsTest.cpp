// SPDX-License-Identifier: MIT
// Triggered runs of the exposure panel: one frame, a sequence, repeated; and the number of
// snapshots they make.
#include <PTDevice/panels/ExposurePanelFixture.h>

#include <support/QtPrinters.h>

#include <QThread>

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

const char* const triggerCall = "Toupcam_Trigger";

class PTExtendedExposureRuns : public ExposurePanelFixture {
protected:
    ~PTExtendedExposureRuns() override {
        if (device)
            device->stopStream();
    }

    /// Opens the panel on a streaming camera in trigger mode.
    void start(const ExtendedExposureData& d, const SimCameraText& camera = fullCamera()) {
        openCamera(camera);
        ASSERT_TRUE(device->link().isOk());
        ASSERT_TRUE(device->startStream().isOk());
        openWith(d);
        QObject::connect(device.get(), &PDevice::snapshotTaken, [this] { ++snapshots; });
        QObject::connect(device.get(), &PDevice::imageChanged, [this] { ++images; });
    }
    void start() { start(triggerRecord()); }

    bool waitUntilUp(const char* name) const {
        return waitUntil([&] { return !button(name)->isChecked(); });
    }
    bool waitForSnapshots(int count) const {
        return waitUntil([&] { return snapshots >= count; });
    }
    std::vector<std::string> usableRuns() const {
        return usable({"pbRunOnce", "pbSequence", "pbRepeatMode"});
    }
    std::vector<std::string> usableSettings() const {
        return usable({"sM", "sSec", "sMS", "sUS", "spincount", "cbTriggerMode"});
    }

    int snapshots = 0;
    int images = 0;
};

ExtendedExposureData makeSequence(int count) {
    ExtendedExposureData d;
    d.capturemode = ExtendedExposureData::Trigger;
    d.seconds = 0;
    d.milliseconds = 1;
    d.spincount = count;
    return d;
}

struct PaceRow {
    const char* name;
    int framesPerSecond;
};

class PTExtendedExposurePace : public PTExtendedExposureRuns, public WithRow<PaceRow> {
protected:
    void startAtPace(int count) {
        start(makeSequence(count), fullCamera(GetParam().framesPerSecond));
    }
};

} // namespace

ROW_TEST(PTExtendedExposurePace, one_run_makes_one_snapshot_and_ends_itself) {
    startAtPace(1);
    clickOn(button("pbRunOnce"));
    EXPECT_EQ(button("pbRunOnce")->text(), u"Stop"_qs);
    EXPECT_THAT(usableRuns(), ElementsAre("pbRunOnce"));
    EXPECT_THAT(usableSettings(), IsEmpty());
    ASSERT_TRUE(waitUntilUp("pbRunOnce"));
    EXPECT_EQ(button("pbRunOnce")->text(), u"Run once"_qs);
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre("Toupcam_Trigger(h1, 1) = 0", "Toupcam_Trigger(h1, 0) = 0"));
    EXPECT_EQ(usableRuns().size(), 3U);
    EXPECT_EQ(usableSettings().size(), 6U);
    stopAndDeliver();
    EXPECT_EQ(snapshots, 1);
    EXPECT_EQ(images, 1);
}

ROW_TEST(PTExtendedExposurePace, a_sequence_of_3_makes_3_snapshots_and_ends_itself) {
    startAtPace(3);
    clickOn(button("pbSequence"));
    EXPECT_EQ(button("pbSequence")->text(), u"Stop"_qs);
    EXPECT_THAT(usableRuns(), ElementsAre("pbSequence"));
    EXPECT_THAT(usableSettings(), IsEmpty());
    ASSERT_TRUE(waitUntilUp("pbSequence"));
    EXPECT_EQ(button("pbSequence")->text(), u"Run sequence"_qs);
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre("Toupcam_Trigger(h1, 3) = 0", "Toupcam_Trigger(h1, 0) = 0"));
    EXPECT_EQ(usableRuns().size(), 3U);
    EXPECT_EQ(usableSettings().size(), 6U);
    const QString address = u"0x%1"_qs.arg(quintptr(panel.get()), 0, 16);
    EXPECT_THAT(ptTexts(log), Contains(u"Stop sequence capture: "_qs + address));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 3);
    EXPECT_EQ(images, 3);
}

ROW_TEST(PTExtendedExposurePace, a_second_sequence_makes_as_many_again) {
    startAtPace(2);
    for (int run = 1; run <= 2; ++run) {
        clickOn(button("pbSequence"));
        ASSERT_TRUE(waitUntilUp("pbSequence"));
    }
    stopAndDeliver();
    EXPECT_EQ(snapshots, 4);
}

ROW_TEST(PTExtendedExposurePace, repeating_makes_a_snapshot_of_every_image_until_stopped) {
    startAtPace(1);
    clickOn(button("pbRepeatMode"));
    EXPECT_EQ(button("pbRepeatMode")->text(), u"Stop"_qs);
    EXPECT_THAT(usableRuns(), ElementsAre("pbRepeatMode"));
    EXPECT_THAT(usableSettings(), IsEmpty());
    ASSERT_TRUE(waitForSnapshots(4));
    EXPECT_TRUE(button("pbRepeatMode")->isChecked());
    clickOn(button("pbRepeatMode"));
    EXPECT_EQ(button("pbRepeatMode")->text(), u"Run repeat"_qs);
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre("Toupcam_Trigger(h1, 65535) = 0", "Toupcam_Trigger(h1, 0) = 0"));
    EXPECT_EQ(usableRuns().size(), 3U);
    stopAndDeliver();
    EXPECT_EQ(snapshots, images);
}

ROWS(Cameras, PTExtendedExposurePace, PaceRow{"fast", 400}, PaceRow{"slow", 8});

TEST_F(PTExtendedExposureRuns, after_a_repeat_every_image_goes_on_to_be_a_snapshot) {
    start();
    clickOn(button("pbRepeatMode"));
    ASSERT_TRUE(waitForSnapshots(1));
    clickOn(button("pbRepeatMode"));
    const int before = snapshots;
    clickOn(button("pbVideo"));
    ASSERT_TRUE(waitForSnapshots(before + 3));
    stopAndDeliver();
    EXPECT_EQ(snapshots, images);
}

TEST_F(PTExtendedExposureRuns, video_without_a_run_makes_no_snapshots) {
    start(ExtendedExposureData());
    ASSERT_TRUE(waitUntil([&] { return images >= 3; }));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 0);
}

TEST_F(PTExtendedExposureRuns, a_sequence_stopped_by_hand_goes_on_counting_later_images) {
    start(makeSequence(5), fullCamera(8));
    clickOn(button("pbSequence"));
    ASSERT_TRUE(waitForSnapshots(1));
    clickOn(button("pbSequence"));
    EXPECT_EQ(button("pbSequence")->text(), u"Run sequence"_qs);
    clickOn(button("pbVideo"));
    ASSERT_TRUE(waitForSnapshots(5));
    ASSERT_TRUE(waitUntil([&] { return images >= 7; }));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 5);
}

TEST_F(PTExtendedExposureRuns, a_single_run_stopped_by_hand_takes_the_next_image) {
    start();
    ExtendedExposureData d = stored();
    d.seconds = 10; // long enough to be stopped
    set(d);
    clickOn(button("pbRunOnce"));
    clickOn(button("pbRunOnce"));
    EXPECT_EQ(button("pbRunOnce")->text(), u"Run once"_qs);
    clickOn(button("pbVideo"));
    ASSERT_TRUE(waitUntil([&] { return images >= 3; }));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 1);
}

TEST_F(PTExtendedExposureRuns, going_to_video_ends_a_run) {
    start();
    clickOn(button("pbRepeatMode"));
    ASSERT_TRUE(waitForSnapshots(2));
    clickOn(button("pbVideo"));
    EXPECT_FALSE(button("pbRepeatMode")->isChecked());
    EXPECT_EQ(button("pbRepeatMode")->text(), u"Run repeat"_qs);
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre("Toupcam_Trigger(h1, 65535) = 0", "Toupcam_Trigger(h1, 0) = 0"));
    EXPECT_EQ(page(), 0);
}

TEST_F(PTExtendedExposureRuns, going_to_video_writes_before_it_ends_a_run) {
    openWith(triggerRecord());
    clickOn(button("pbRepeatMode"));
    SimJournal::clear();
    clickOn(button("pbVideo"));
    EXPECT_EQ(puts().size(), 10U); // both page buttons write
    const std::vector<std::string> calls = SimJournal::lines();
    ASSERT_FALSE(calls.empty());
    EXPECT_THAT(calls.back(), StartsWith("Toupcam_Trigger(h1, 0)"));
}

TEST_F(PTExtendedExposureRuns, going_to_video_ends_several_in_the_order_of_the_form) {
    openWith(triggerRecord());
    const QObject context;
    QStringList ended;
    // The user can press only one of them, a program all.
    for (const char* name : {"pbRepeatMode", "pbSequence", "pbRunOnce"}) {
        button(name)->setChecked(true);
        QObject::connect(button(name), &QPushButton::toggled, &context,
                         [&ended, name] { ended.append(QLatin1String(name)); });
    }
    clickOn(button("pbVideo"));
    EXPECT_EQ(ended, QStringList({u"pbRunOnce"_qs, u"pbSequence"_qs, u"pbRepeatMode"_qs}));
}

TEST_F(PTExtendedExposureRuns, a_run_that_ends_under_an_external_trigger_leaves_sequences) {
    openWith(triggerRecord());
    clickOn(button("pbRunOnce"));
    ASSERT_THAT(usableRuns(), ElementsAre("pbRunOnce"));
    ExtendedExposureData d = stored();
    d.triggermode = ExtendedExposureData::ExternalTrigger;
    set(d);
    clickOn(button("pbRunOnce"));
    EXPECT_THAT(usableRuns(), ElementsAre("pbSequence"));
}

TEST_F(PTExtendedExposureRuns, an_external_sequence_of_3_ends_after_three_signals) {
    ExtendedExposureData d = makeSequence(3);
    d.triggermode = ExtendedExposureData::ExternalTrigger;
    start(d);
    EXPECT_THAT(usableRuns(), ElementsAre("pbSequence"));
    clickOn(button("pbSequence"));
    // The camera accepts no number of software triggers now; the signals still count.
    EXPECT_THAT(ptTexts(log), Contains(u"Failed TOUPCAM_OP: Toupcam_Trigger(m_property->m_h, "
                                       "m_property->value().spincount)"_qs));
    for (int signal = 1; signal <= 3; ++signal) {
        ASSERT_TRUE(button("pbSequence")->isChecked());
        ASSERT_EQ(ToupcamSim_fireTrigger("cam"), 1);
        ASSERT_TRUE(waitForSnapshots(signal));
    }
    ASSERT_TRUE(waitUntilUp("pbSequence"));
    EXPECT_EQ(button("pbSequence")->text(), u"Run sequence"_qs);
    EXPECT_THAT(usableRuns(), ElementsAre("pbSequence"));
    ASSERT_EQ(ToupcamSim_fireTrigger("cam"), 1);
    ASSERT_TRUE(waitUntil([&] { return images == 4; }));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 3);
}

TEST_F(PTExtendedExposureRuns, a_sequence_outlives_a_stall_of_the_programs_thread) {
    start(makeSequence(25), fullCamera(400));
    clickOn(button("pbSequence"));
    ASSERT_TRUE(waitForSnapshots(3));
    QThread::sleep(2);
    ASSERT_TRUE(waitUntilUp("pbSequence"));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 25);
    EXPECT_EQ(images, 25);
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre("Toupcam_Trigger(h1, 25) = 0", "Toupcam_Trigger(h1, 0) = 0"));
}

TEST_F(PTExtendedExposureRuns, the_longest_sequence_may_wait_as_a_whole) {
    start(makeSequence(999), fullCamera(900));
    clickOn(button("pbSequence"));
    const auto cameraIsDone = [] {
        unsigned long long produced = 0;
        unsigned long long delivered = 0;
        ToupcamSim_frameCount("cam", &produced, &delivered);
        return delivered >= 999;
    };
    for (int waited = 0; waited < 200 && !cameraIsDone(); ++waited)
        QThread::msleep(100); // and no event is processed
    ASSERT_TRUE(waitUntilUp("pbSequence"));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 999);
}

TEST_F(PTExtendedExposureRuns, the_number_of_a_sequence_is_the_one_stored) {
    start(makeSequence(1));
    QTest::keyClick(box("spincount"), Qt::Key_Up);
    clickOn(button("pbSequence"));
    ASSERT_TRUE(waitUntilUp("pbSequence"));
    stopAndDeliver();
    EXPECT_EQ(snapshots, 2);
}

// ---- Images that wait while the panel handles one.

namespace {

/// A panel on a camera that does not stream: the test emits the images.
class PTExtendedExposureBacklog : public PTExtendedExposureRuns {
protected:
    /// Handlers of images must never be nested as deeply as this.
    static constexpr int tooDeep = 100;

    void openOver(const ExtendedExposureData& d) {
        set(d);
        // Before the panel's own slot; the one below is after it. Too deep a nesting would overflow
        // the stack, so the panel is destroyed before that.
        QObject::connect(device.get(), &PDevice::imageChanged, [this] {
            deepest = std::max(deepest, ++depth);
            if (depth == tooDeep)
                panel.reset();
        });
        panel = openPanel("extexposure");
        QObject::connect(device.get(), &PDevice::imageChanged, [this] { --depth; });
        QObject::connect(device.get(), &PDevice::snapshotTaken, [this](const PDeviceFrame& frame) {
            numbers.push_back(frame.stamp->sequence);
        });
    }
    /// Sends images while no event is processed, so that they wait.
    void letWait(int count) {
        for (int i = 0; i < count; ++i)
            device->processFrameImage(smallImage());
        EXPECT_EQ(device->frameLedger().waiting, quint64(count));
    }
    /// Waits until all images are handled and this many snapshots made, and then for late ones.
    bool deliver(std::size_t expected) {
        const bool came = waitUntil([&] {
            return device->frameLedger().waiting == 0 && (numbers.size() >= expected || !panel);
        });
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
        return came;
    }
    /// The numbers of the images from the first on.
    static std::vector<quint64> firstNumbers(int count) {
        std::vector<quint64> expected(std::size_t(count), 0);
        std::iota(expected.begin(), expected.end(), 1);
        return expected;
    }

    int depth = 0;
    int deepest = 0;
    std::vector<quint64> numbers; ///< of the images that became snapshots
};

} // namespace

TEST_F(PTExtendedExposureBacklog, of_thousands_makes_a_snapshot_of_each_image_of_a_sequence) {
    openOver(makeSequence(6000));
    clickOn(button("pbSequence"));
    letWait(6100);
    ASSERT_TRUE(deliver(6000));
    ASSERT_NE(panel, nullptr) << "it was nested too deep";
    EXPECT_LE(deepest, 2);
    EXPECT_EQ(numbers, firstNumbers(6000));
    EXPECT_FALSE(button("pbSequence")->isChecked());
    EXPECT_EQ(SimJournal::calls(triggerCall).size(), 2U);
}

TEST_F(PTExtendedExposureBacklog, of_thousands_makes_one_snapshot_of_a_single_run) {
    openOver(triggerRecord());
    clickOn(button("pbRunOnce"));
    letWait(3000);
    ASSERT_TRUE(deliver(1));
    ASSERT_NE(panel, nullptr) << "it was nested too deep";
    EXPECT_EQ(numbers, firstNumbers(1));
    EXPECT_FALSE(button("pbRunOnce")->isChecked());
}

TEST_F(PTExtendedExposureBacklog, of_thousands_makes_a_snapshot_of_each_image_of_a_repeated_run) {
    openOver(triggerRecord());
    clickOn(button("pbRepeatMode"));
    letWait(3000);
    ASSERT_TRUE(deliver(3000));
    ASSERT_NE(panel, nullptr) << "it was nested too deep";
    EXPECT_EQ(numbers, firstNumbers(3000));
}

TEST_F(PTExtendedExposureBacklog, leaves_the_next_sequence_its_own_images) {
    openOver(makeSequence(500));
    for (int run = 1; run <= 2; ++run) {
        clickOn(button("pbSequence"));
        letWait(600);
        ASSERT_TRUE(deliver(std::size_t(run) * 500U));
        ASSERT_NE(panel, nullptr) << "it was nested too deep";
        EXPECT_EQ(numbers.size(), std::size_t(run) * 500U);
    }
}

// ---- One image at a time.

namespace {

class PTExtendedExposureImages : public PTExtendedExposureRuns {
protected:
    /// For a camera that does not stream: the test emits the images.
    void bringImages(int count) {
        for (int i = 0; i < count; ++i)
            emit device->imageChanged(smallImage());
    }
};

} // namespace

TEST_F(PTExtendedExposureImages, a_single_run_has_ended_when_its_image_has_been_handled) {
    openWith(triggerRecord());
    clickOn(button("pbRunOnce"));
    bringImages(1);
    EXPECT_FALSE(button("pbRunOnce")->isChecked());
    EXPECT_EQ(button("pbRunOnce")->text(), u"Run once"_qs);
}

TEST_F(PTExtendedExposureImages, pending_events_are_processed_after_each_image_of_a_sequence) {
    openWith(makeSequence(2));
    clickOn(button("pbSequence"));
    int processed = 0;
    const auto countLater = [&] {
        QMetaObject::invokeMethod(
            device.get(), [&] { ++processed; }, Qt::QueuedConnection);
    };
    countLater();
    bringImages(1);
    EXPECT_EQ(processed, 1);
    EXPECT_TRUE(button("pbSequence")->isChecked());
    countLater();
    bringImages(1);
    EXPECT_EQ(processed, 2);
    EXPECT_FALSE(button("pbSequence")->isChecked());
}

TEST_F(PTExtendedExposureImages, each_one_of_a_run_is_a_line_of_debug_output) {
    openWith(makeSequence(2));
    QString line;
    QDebug(&line) << "Process snapshot:" << smallImage();
    line = line.trimmed();
    const auto lines = [&] { return debugTexts(log).count(line); };
    bringImages(1);
    EXPECT_EQ(lines(), 0);
    clickOn(button("pbSequence"));
    bringImages(3);
    EXPECT_EQ(lines(), 2) << line.toStdString();
}

TEST_F(PTExtendedExposureImages, a_sequence_started_again_is_counted_from_the_beginning) {
    openWith(makeSequence(5));
    clickOn(button("pbSequence"));
    bringImages(3);
    clickOn(button("pbSequence")); // stopped by hand
    clickOn(button("pbSequence"));
    bringImages(4);
    EXPECT_TRUE(button("pbSequence")->isChecked());
    bringImages(1);
    EXPECT_FALSE(button("pbSequence")->isChecked());
}

TEST_F(PTExtendedExposureImages, a_stored_number_that_the_panel_cannot_show_is_run_as_it_is) {
    openWith(makeSequence(1002));
    ASSERT_EQ(box("spincount")->value(), 999);
    clickOn(button("pbSequence"));
    EXPECT_THAT(SimJournal::calls(triggerCall),
                ElementsAre(StartsWith("Toupcam_Trigger(h1, 1002)")));
    bringImages(1001);
    EXPECT_TRUE(button("pbSequence")->isChecked());
    bringImages(1);
    EXPECT_FALSE(button("pbSequence")->isChecked());
}

namespace {

struct FailedTriggerRow {
    const char* name;
    const char* started; ///< the call that begins a run, as logged
    const char* runningText;
    const char* stoppedText;
};

class PTExtendedExposureFailedTrigger : public PTExtendedExposureRuns,
                                        public WithRow<FailedTriggerRow> {};

QString failed(const char* call) {
    return u"Failed TOUPCAM_OP: "_qs + QLatin1String(call);
}

} // namespace

ROW_TEST(PTExtendedExposureFailedTrigger, is_logged_and_the_button_stays_as_the_user_left_it) {
    const FailedTriggerRow& row = GetParam();
    start();
    ToupcamSim_failCall(triggerCall, 0, 0, E_FAIL);
    log.clear();
    clickOn(button(row.name));
    EXPECT_TRUE(button(row.name)->isChecked());
    EXPECT_EQ(button(row.name)->text(), QLatin1String(row.runningText));
    EXPECT_THAT(ptTexts(log), ElementsAre(failed(row.started)));
    log.clear();
    clickOn(button(row.name));
    EXPECT_FALSE(button(row.name)->isChecked());
    EXPECT_EQ(button(row.name)->text(), QLatin1String(row.stoppedText));
    EXPECT_THAT(ptTexts(log), ElementsAre(failed("Toupcam_Trigger(m_property->m_h, 0)")));
}

ROWS(Rows, PTExtendedExposureFailedTrigger,
     FailedTriggerRow{"pbRunOnce", "Toupcam_Trigger(m_property->m_h, 1)", "Stop", "Run once"},
     FailedTriggerRow{"pbSequence",
                      "Toupcam_Trigger(m_property->m_h, m_property->value().spincount)", "Stop",
                      "Run sequence"},
     FailedTriggerRow{"pbRepeatMode", "Toupcam_Trigger(m_property->m_h, 0xffff)", "Stop",
                      "Run repeat"});
