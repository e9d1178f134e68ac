// SPDX-License-Identifier: MIT
// The pull-mode worker: its queues without a consumer, and a real pull-mode stream through it.
#include <PTDevice/SimFixture.h>

#include <PCdPlugins/PTDevice/PTStreamThread.h>

#include <PDip/PBufferPool.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <mutex>
#include <optional>

using testing::ElementsAre;
using testing::IsEmpty;

/// Gives access to the worker's queues.
class PTStreamThreadTest : public SimFixture {
protected:
    PTStreamThreadTest() { reopen(SimCameraText{}); }

    ~PTStreamThreadTest() override {
        if (device == nullptr)
            return;
        device->pullThread()->stopThread();
        Toupcam_Stop(device->sdkHandle());
    }

    void reopen(const SimCameraText& camera) {
        device.reset();
        loadScene({camera});
        device = open();
        SimJournal::clear();
    }

    static SimCameraText slowCamera() {
        return SimCameraText().withResolutions(R"([{"width": 64, "height": 48, "fps": 20}])");
    }

    void startPulling() {
        ASSERT_EQ(Toupcam_StartPullModeWithCallback(device->sdkHandle(), cbEvent, device.get()),
                  S_OK);
        ASSERT_TRUE(device->pullThread()->startThread().isOk());
    }

    /// Opens a camera in pull mode that sends frames only when it is triggered.
    void startTriggered() {
        reopen(SimCameraText().withFlags(R"(["TRIGGER_SOFTWARE"])"));
        ASSERT_EQ(Toupcam_put_Option(device->sdkHandle(), TOUPCAM_OPTION_TRIGGER, 1), S_OK);
        ASSERT_EQ(Toupcam_StartPullModeWithCallback(device->sdkHandle(), cbEvent, device.get()),
                  S_OK);
        SimJournal::clear();
        log.clear();
    }

    /// Lets the worker pull the one frame of a trigger.
    void pullOneFrame() {
        ASSERT_EQ(Toupcam_Trigger(device->sdkHandle(), 1), S_OK);
        ASSERT_TRUE(waitUntil([&] { return queuedEvents().contains(TOUPCAM_EVENT_IMAGE); }));
        consumeEvents();
        QCoreApplication::sendPostedEvents();
    }

    /// Lets the running worker pull this number of triggered frames, one after the other.
    void triggerFrames(int frames) {
        for (int frame = 0; frame < frames; ++frame) {
            const quint64 before = device->frameLedger().produced;
            ASSERT_EQ(Toupcam_Trigger(device->sdkHandle(), 1), S_OK);
            ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced > before; }));
        }
    }

    /// Lets the worker pull one still.
    void pullOneStill() {
        ASSERT_TRUE(device->triggerStillCapture());
        ASSERT_TRUE(waitUntil([&] { return queuedEvents().contains(TOUPCAM_EVENT_STILLIMAGE); }));
        consumeEvents();
        QCoreApplication::sendPostedEvents();
    }

    quint64 count(PFrameOutcome outcome) const { return device->frameLedger().count(outcome); }

    /// Runs the worker until its queue is empty.
    void consumeEvents() {
        ASSERT_TRUE(device->pullThread()->startThread().isOk());
        ASSERT_TRUE(waitUntil([&] { return queuedEvents().isEmpty(); }));
        ASSERT_TRUE(device->pullThread()->stopThread().isOk());
    }

    QList<unsigned int> queuedEvents() {
        const QMutexLocker locker(&device->pullThread()->lock);
        // Compares the items, not the list: a copied list would share its memory with the worker's.
        const auto& events = device->pullThread()->events;
        return {events.cbegin(), events.cend()};
    }

    qsizetype queuedImages() {
        const QMutexLocker locker(&device->pullThread()->lock);
        return device->pullThread()->images.size();
    }

    std::unique_ptr<PTDevice> device;
};

// ---- Queues -------------------------------------------------------------------------------------

TEST_F(PTStreamThreadTest, six_codes_wait_in_order) {
    for (unsigned code = 10; code < 16; ++code)
        device->postprocEvt(code);
    EXPECT_THAT(queuedEvents(), ElementsAre(10u, 11u, 12u, 13u, 14u, 15u));
}

TEST_F(PTStreamThreadTest, seven_codes_without_a_consumer_leave_exactly_the_seventh) {
    for (unsigned code = 10; code < 17; ++code)
        device->pullThread()->pushEvent(code);
    EXPECT_THAT(queuedEvents(), ElementsAre(16u));
    EXPECT_THAT(log.texts(), IsEmpty()) << "dropped without a message";
}

TEST_F(PTStreamThreadTest, the_fifth_image_without_a_consumer_clears_the_four_and_is_logged) {
    for (int i = 0; i < 4; ++i)
        device->postprocImage(PImage());
    EXPECT_EQ(queuedImages(), 4);
    EXPECT_THAT(log.texts(), IsEmpty());
    device->postprocImage(PImage());
    EXPECT_EQ(queuedImages(), 1);
    EXPECT_THAT(log.texts(), ElementsAre(u"Clear data: 4"_qs));
    EXPECT_THAT(debugTexts(log), ElementsAre(u"Clear data: 4"_qs));
}

TEST_F(PTStreamThreadTest, stopping_clears_the_images_and_leaves_the_events) {
    device->postprocImage(PImage());
    device->postprocEvt(77);
    EXPECT_TRUE(device->pullThread()->onStop().isOk());
    EXPECT_EQ(queuedImages(), 0);
    EXPECT_THAT(queuedEvents(), ElementsAre(77u));
    EXPECT_TRUE(device->pullThread()->onStart().isOk());
    EXPECT_THAT(queuedEvents(), ElementsAre(77u));
}

// ---- The loop -----------------------------------------------------------------------------------

TEST_F(PTStreamThreadTest, with_an_empty_queue_the_loop_goes_on_until_it_is_stopped) {
    ASSERT_TRUE(device->pullThread()->startThread().isOk());
    ASSERT_TRUE(waitUntil([&] { return log.contains(u"PTStreamThread run loop entered"_qs); }));
    EXPECT_FALSE(device->pullThread()->wait(30)) << "it must not end by itself";
    EXPECT_TRUE(device->pullThread()->stopThread().isOk());
    EXPECT_TRUE(device->pullThread()->isFinished());
    const auto records = ptRecords(log, u"PTStreamThread run loop entered"_qs);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].function, u"virtual void PTStreamThread::run()"_qs);
}

TEST_F(PTStreamThreadTest, the_loop_runs_at_high_priority) {
    ASSERT_TRUE(device->pullThread()->startThread().isOk());
    ASSERT_TRUE(waitUntil([&] { return log.contains(u"PTStreamThread run loop entered"_qs); }));
    EXPECT_EQ(device->pullThread()->priority(), QThread::HighPriority);
}

struct CodeRow {
    const char* name;
    unsigned code;
};

class PTStreamThreadCode : public PTStreamThreadTest, public WithRow<CodeRow> {};

ROW_TEST(PTStreamThreadCode, is_consumed_and_ignored) {
    device->postprocEvt(GetParam().code);
    consumeEvents();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
    EXPECT_EQ(device->frameLedger().produced, 0u);
}

ROWS(Rows, PTStreamThreadCode, CodeRow{"code_0", 0}, CodeRow{"code_6", 6}, CodeRow{"code_128", 128},
     CodeRow{"the_largest_code", 0xffffffffu});

TEST_F(PTStreamThreadTest, a_live_event_without_a_frame_is_logged_with_the_result) {
    device->postprocEvt(TOUPCAM_EVENT_IMAGE);
    consumeEvents();
    const QString text = u"Toupcam_PullImageV2 (info) failed, code: %1"_qs.arg(int(E_UNEXPECTED));
    ASSERT_EQ(ptRecords(log, text).size(), 1) << qPrintable(ptTexts(log).join(u'\n'));
    EXPECT_EQ(ptRecords(log, text)[0].items.size(), 2);
}

TEST_F(PTStreamThreadTest, live_frames_are_pulled_and_arrive_as_32_bit_images_in_the_hosts_order) {
    reopen(SimCameraText().withResolutions(R"([{"width": 1003, "height": 60, "fps": 100}])"));
    QList<PImage> images;
    QObject::connect(device.get(), &PDevice::imageChanged,
                     [&](const PImage& image) { images.append(image); });
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return images.size() >= 3; }));
    device->pullThread()->stopThread();
    const PImage image = images.first();
    EXPECT_EQ(image.format(), PDIP::ColorFormat(2));
    EXPECT_EQ(image.channelType(), PDIP::Channel(0));
    EXPECT_EQ(image.width(), 1003);
    const QImage picture = image.toQImage();
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 255);
    QList<QRgb> colours;
    for (int x = 0; x < picture.width(); ++x) {
        const QRgb colour = picture.pixel(x, 30);
        if (colour != qRgb(0, 0, 0) && !colours.contains(colour))
            colours.append(colour);
    }
    EXPECT_THAT(colours, ElementsAre(qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)));
}

TEST_F(PTStreamThreadTest, each_pull_gets_the_size_first_then_the_pixels) {
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 1; }));
    device->pullThread()->stopThread();
    const std::vector<std::string> pulls = SimJournal::calls("Toupcam_PullImageV2");
    ASSERT_GE(pulls.size(), 2u);
    EXPECT_THAT(pulls[0], testing::StartsWith("Toupcam_PullImageV2(h1, null, 32, "));
    EXPECT_THAT(pulls[1], testing::Not(testing::StartsWith("Toupcam_PullImageV2(h1, null")));
    EXPECT_THAT(pulls[1], testing::HasSubstr(", 32, "));
}

TEST_F(PTStreamThreadTest,
       a_live_frame_whose_second_pull_fails_leaves_its_debug_line_and_no_frame) {
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(device->sdkHandle(), cbEvent, device.get()), S_OK);
    ASSERT_TRUE(waitUntil([&] { return !queuedEvents().isEmpty(); }));
    ToupcamSim_failCall("Toupcam_PullImageV2", 1, 0, E_FAIL);
    ASSERT_TRUE(device->pullThread()->startThread().isOk());
    ASSERT_TRUE(waitUntil([&] { return debugTexts(log).size() == 1; }));
    device->pullThread()->stopThread();
    EXPECT_THAT(debugTexts(log).first().toStdString(),
                testing::StartsWith("pull image: PImage(64x48"));
    const PFrameLedger ledger = device->frameLedger();
    EXPECT_GE(ledger.produced, 1u);
    EXPECT_EQ(ledger.count(PFrameOutcome::LostInCamera), ledger.produced);
}

TEST_F(PTStreamThreadTest, a_still_picture_is_pulled_and_arrives_as_a_snapshot_in_the_hosts_order) {
    reopen(slowCamera()); // no backlog of live frames that would push the event out
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 1; }));
    EXPECT_TRUE(device->triggerStillCapture());
    ASSERT_TRUE(waitUntil([&] { return stills.count() == 1; }));
    device->pullThread()->stopThread();
    EXPECT_TRUE(log.contains(u"still image event"_qs));
    const PImage image = stills.at(0).at(0).value<PDeviceFrame>().image;
    EXPECT_EQ(image.format(), PDIP::ColorFormat(2));
    const QImage picture = image.toQImage();
    QList<QRgb> colours;
    for (int x = 0; x < picture.width(); ++x) {
        const QRgb colour = picture.pixel(x, picture.height() / 2);
        if (colour != qRgb(0, 0, 0) && !colours.contains(colour))
            colours.append(colour);
    }
    EXPECT_THAT(colours, ElementsAre(qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)));
}

TEST_F(PTStreamThreadTest, a_still_whose_first_pull_fails_is_logged_as_1) {
    device->postprocEvt(TOUPCAM_EVENT_STILLIMAGE);
    consumeEvents();
    EXPECT_THAT(
        ptTexts(log),
        testing::IsSupersetOf({u"still image event"_qs,
                               u"Failed to pull still image [1]: %1"_qs.arg(int(E_UNEXPECTED))}));
    EXPECT_THAT(debugTexts(log), IsEmpty());
}

TEST_F(PTStreamThreadTest, a_still_whose_second_pull_fails_is_logged_as_2_and_not_delivered) {
    reopen(slowCamera());
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    ToupcamSim_failCall("Toupcam_PullStillImageV2", 1, 1, E_FAIL);
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 1; }));
    EXPECT_TRUE(device->triggerStillCapture());
    const QString text = u"Failed to pull still image [2]: %1"_qs.arg(int(E_FAIL));
    ASSERT_TRUE(waitUntil([&] { return log.contains(text); }));
    device->pullThread()->stopThread();
    EXPECT_EQ(stills.count(), 0);
    EXPECT_GE(device->frameLedger().count(PFrameOutcome::LostInCamera), 1u);
}

// ---- The sizes that the two pulls of a frame report.

TEST_F(PTStreamThreadTest, a_frame_whose_second_pull_leaves_its_record_empty_is_delivered) {
    startTriggered();
    ToupcamSim_reportSize("Toupcam_PullImageV2", 0, 0);
    QSignalSpy frames(device.get(), &PDevice::imageChanged);
    pullOneFrame();
    ASSERT_EQ(frames.count(), 1);
    EXPECT_EQ(frames.at(0).at(0).value<PImage>().toQImage().pixel(10, 24), qRgb(255, 0, 0));
    EXPECT_EQ(device->frameLedger().produced, 1u);
    EXPECT_EQ(count(PFrameOutcome::Delivered), 1u);
}

TEST_F(PTStreamThreadTest, a_still_whose_second_pull_leaves_its_record_empty_is_delivered) {
    startTriggered();
    ToupcamSim_reportSize("Toupcam_PullStillImageV2", 0, 0);
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    pullOneStill();
    ASSERT_EQ(stills.count(), 1);
    EXPECT_EQ(stills.at(0).at(0).value<PDeviceFrame>().image.toQImage().pixel(10, 24),
              qRgb(255, 0, 0));
    EXPECT_EQ(count(PFrameOutcome::Delivered), 1u);
}

struct OtherSizeRow {
    const char* name;
    unsigned width;
    unsigned height;
};

class PTStreamThreadOtherSize : public PTStreamThreadTest, public WithRow<OtherSizeRow> {};

ROW_TEST(PTStreamThreadOtherSize, in_the_second_pull_drops_the_frame_with_a_line) {
    startTriggered();
    ToupcamSim_reportSize("Toupcam_PullImageV2", GetParam().width, GetParam().height);
    QSignalSpy frames(device.get(), &PDevice::imageChanged);
    pullOneFrame();
    EXPECT_EQ(frames.count(), 0);
    EXPECT_EQ(count(PFrameOutcome::BadSize), 1u);
    EXPECT_EQ(device->frameLedger().produced, 1u);
    EXPECT_EQ(ptLastText(log),
              u"Frame dropped, pulled as %1 x %2 but announced as 64 x 48"_qs.arg(
                  QString::number(GetParam().width), QString::number(GetParam().height)));
    ASSERT_EQ(debugTexts(log).size(), 1) << "its debug line is written";
    EXPECT_TRUE(debugTexts(log).first().startsWith(u"pull image: PImage(64x48"_qs));
}

ROWS(Rows, PTStreamThreadOtherSize, OtherSizeRow{"another_width", 32, 48},
     OtherSizeRow{"another_height", 64, 24}, OtherSizeRow{"a_width_of_1", 1, 48},
     OtherSizeRow{"a_height_of_1", 64, 1});

TEST_F(PTStreamThreadTest, a_still_whose_second_pull_reports_another_size_is_dropped_and_logged) {
    startTriggered();
    ToupcamSim_reportSize("Toupcam_PullStillImageV2", 64, 24);
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    pullOneStill();
    EXPECT_EQ(stills.count(), 0);
    EXPECT_EQ(count(PFrameOutcome::BadSize), 1u);
    const QString text = u"Frame dropped, pulled as 64 x 24 but announced as 64 x 48"_qs;
    const QList<PLogRecord> records = ptRecords(log, text);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].function, u"virtual void PTStreamThread::run()"_qs);
}

struct NoSizeRow {
    const char* name;
    const char* function;
    unsigned event;
};

class PTStreamThreadNoSize : public PTStreamThreadTest, public WithRow<NoSizeRow> {};

ROW_TEST(PTStreamThreadNoSize, is_dropped_as_of_a_bad_size_and_logged) {
    ToupcamSim_failCall(GetParam().function, 0, 1, S_OK); // a success that reports 0 x 0
    device->postprocEvt(GetParam().event);
    consumeEvents();
    EXPECT_EQ(count(PFrameOutcome::BadSize), 1u);
    EXPECT_EQ(count(PFrameOutcome::NoMemory), 0u);
    EXPECT_EQ(device->frameLedger().produced, 1u);
    EXPECT_EQ(ptLastText(log), u"Frame dropped, the frame has no valid size: 0 x 0"_qs);
    EXPECT_EQ(SimJournal::calls(GetParam().function).size(), 1u) << "no pixels are requested";
}

ROWS(Rows, PTStreamThreadNoSize,
     NoSizeRow{"a_live_frame_of_0_by_0", "Toupcam_PullImageV2", TOUPCAM_EVENT_IMAGE},
     NoSizeRow{"a_still_of_0_by_0", "Toupcam_PullStillImageV2", TOUPCAM_EVENT_STILLIMAGE});

TEST_F(PTStreamThreadTest, a_frame_without_memory_is_booked_as_out_of_memory) {
    startTriggered();
    PBufferPool::instance().trim();
    PBufferPool::instance().setUseLimit(PBufferPool::instance().statistics().usedBytes + 1);
    pullOneFrame();
    pullOneStill();
    PBufferPool::instance().setUseLimit(PBufferPool::noLimit);
    EXPECT_EQ(count(PFrameOutcome::NoMemory), 2u);
    EXPECT_EQ(device->frameLedger().produced, 2u);
}

// ---- What is logged about stills.

TEST_F(PTStreamThreadTest, a_still_is_announced_before_anything_is_pulled) {
    startTriggered();
    std::size_t pullsBefore = 99;
    const AtRecord announced(u"still image event"_qs, [&] {
        pullsBefore = SimJournal::calls("Toupcam_PullStillImageV2").size();
    });
    pullOneStill();
    EXPECT_EQ(pullsBefore, 0u);
    EXPECT_EQ(SimJournal::calls("Toupcam_PullStillImageV2").size(), 2u);
}

TEST_F(PTStreamThreadTest, a_good_still_has_no_debug_line) {
    startTriggered();
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    pullOneStill();
    EXPECT_EQ(stills.count(), 1);
    EXPECT_THAT(debugTexts(log), IsEmpty());
}

// ---- Losses.

TEST_F(PTStreamThreadTest, frames_lost_between_two_pulls_are_booked_as_lost_in_the_camera) {
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 2; }));
    EXPECT_EQ(ToupcamSim_holdFrames("cam", 1), 1);
    unsigned long long atHold = 0;
    unsigned long long now = 0;
    ASSERT_EQ(ToupcamSim_frameCount("cam", &atHold, nullptr), 1);
    ASSERT_TRUE(waitUntil([&] {
        ToupcamSim_frameCount("cam", &now, nullptr);
        return now >= atHold + 5;
    }));
    EXPECT_EQ(ToupcamSim_holdFrames("cam", 0), 1);
    EXPECT_TRUE(
        waitUntil([&] { return device->frameLedger().count(PFrameOutcome::LostInCamera) >= 5; }));
    EXPECT_TRUE(device->frameLedger().isBalanced());
}

struct RestartRow {
    const char* name;
    int framesBefore;
};

class PTStreamThreadRestart : public PTStreamThreadTest, public WithRow<RestartRow> {};

// The camera numbers the frames of each stream from the beginning; the worker continues.
ROW_TEST(PTStreamThreadRestart, loses_nothing) {
    startTriggered();
    ASSERT_TRUE(device->pullThread()->startThread().isOk());
    triggerFrames(GetParam().framesBefore);
    ASSERT_EQ(Toupcam_Stop(device->sdkHandle()), S_OK);
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(device->sdkHandle(), cbEvent, device.get()), S_OK);
    triggerFrames(2);
    EXPECT_EQ(count(PFrameOutcome::LostInCamera), 0u);
    EXPECT_EQ(device->frameLedger().produced, quint64(GetParam().framesBefore) + 2);
}

ROWS(Rows, PTStreamThreadRestart,
     RestartRow{"a_stream_that_begins_again_with_the_number_pulled_last", 1},
     RestartRow{"a_stream_that_begins_again_with_a_lower_number", 3});

// ---- Events from the SDK ------------------------------------------------------------------------

struct FailureRow {
    const char* name;
    unsigned code;
    const char* text;
};

class PTDeviceFailure : public PTStreamThreadTest, public WithRow<FailureRow> {};

ROW_TEST(PTDeviceFailure, is_logged_and_passed_on) {
    cbEvent(GetParam().code, device.get());
    EXPECT_THAT(queuedEvents(), ElementsAre(GetParam().code));
    QStringList expected;
    if (GetParam().text != nullptr)
        expected.append(QString::fromLatin1(GetParam().text));
    if (GetParam().code == TOUPCAM_EVENT_DISCONNECTED) // and no other
        expected.append(u"PTDevice: SDK reported disconnect for Simulated-T-TESTCAM001"_qs);
    QStringList lines = ptTexts(log);
    lines.removeIf([](const QString& line) {
        return line.startsWith(u"ToupCam first SDK event received"_qs);
    });
    EXPECT_EQ(lines, expected) << "in this order";
    for (const PLogRecord& record : ptRecords(log, QString::fromLatin1(GetParam().text)))
        EXPECT_EQ(record.function, u"void cbEvent(unsigned int, void *)"_qs);
}

ROWS(Rows, PTDeviceFailure,
     FailureRow{"error_128", 128, "ToupCam EVENT_ERROR (generic streaming error)"},
     FailureRow{"disconnected_129", 129, "ToupCam EVENT_DISCONNECTED"},
     FailureRow{
         "no_frame_130", 130,
         "ToupCam EVENT_NOFRAMETIMEOUT (link too slow to deliver a frame at this resolution)"},
     FailureRow{"event_131_without_a_line", 131, nullptr},
     FailureRow{"event_132_without_a_line", 132, nullptr},
     FailureRow{"no_packet_133", 133, "ToupCam EVENT_NOPACKETTIMEOUT (USB packet loss/bandwidth)"},
     FailureRow{"event_4_without_a_line", 4, nullptr});

TEST_F(PTStreamThreadTest, the_disconnect_event_is_handled_before_it_is_passed_on) {
    QSignalSpy spy(device.get(), &PTDevice::disconnected);
    std::optional<QList<unsigned>> queuedWhenHandled;
    const AtRecord handled(u"PTDevice: SDK reported disconnect for"_qs,
                           [&] { queuedWhenHandled = queuedEvents(); });
    cbEvent(TOUPCAM_EVENT_DISCONNECTED, device.get());
    ASSERT_TRUE(queuedWhenHandled.has_value());
    EXPECT_THAT(*queuedWhenHandled, IsEmpty());
    EXPECT_THAT(queuedEvents(), ElementsAre(129u));
    EXPECT_TRUE(waitUntil([&] { return spy.count() == 1; }));
}

TEST_F(PTStreamThreadTest, events_with_a_null_context_are_logged_and_nothing_else) {
    cbEvent(TOUPCAM_EVENT_DISCONNECTED, nullptr);
    EXPECT_TRUE(log.contains(u"ToupCam EVENT_DISCONNECTED"_qs));
    EXPECT_THAT(queuedEvents(), IsEmpty());
}

TEST_F(PTStreamThreadTest, unplugging_in_pull_mode_reports_the_camera_as_gone) {
    QSignalSpy spy(device.get(), &PTDevice::disconnected);
    startPulling();
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 2; }));
    EXPECT_EQ(ToupcamSim_unplug("cam"), 1);
    EXPECT_TRUE(waitUntil([&] { return spy.count() == 1; }));
}

TEST_F(PTStreamThreadTest, a_size_change_between_pulls_never_gives_a_misread_frame) {
    reopen(SimCameraText().withResolutions(R"([{"width": 640, "height": 480, "fps": 500},
                               {"width": 32, "height": 24, "fps": 500}])"));
    int wrong = 0;
    int frames = 0;
    QObject::connect(device.get(), &PDevice::imageChanged, [&](const PImage& image) {
        const QSize size(int(image.width()), int(image.height()));
        wrong += size != QSize(640, 480) && size != QSize(32, 24) ? 1 : 0;
        ++frames;
    });
    startPulling();
    for (unsigned index = 0; index < 40; ++index) {
        ASSERT_EQ(Toupcam_put_eSize(device->sdkHandle(), index % 2), S_OK);
        const int before = frames;
        ASSERT_TRUE(waitUntil([&] { return frames > before; }));
    }
    EXPECT_EQ(wrong, 0);
    device->pullThread()->stopThread();
}
