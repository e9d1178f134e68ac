// SPDX-License-Identifier: MIT
// The frame pipeline of a device: what is delivered where, and how it is counted.
#include <PCd/FakeDevice.h>
#include <PCd/FakeProperty.h>
#include <PCd/frame/FrameHelpers.h>

#include <PCd/frame/PCdDipUtils.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

using testing::ElementsAre;

namespace {

/// Runs the event loop until no frame waits; false on a timeout.
bool deliverAll(const PDevice& device) {
    return waitUntil([&] { return device.frameLedger().waiting == 0; });
}

} // namespace

// ---- Delivery.

TEST(PFramePipeline, brings_frames_of_a_foreign_thread_to_the_thread_of_the_device_in_order) {
    FakeDevice device;
    const FrameListener listener(device);
    onForeignThread([&] { sendImages(device, 100); });
    EXPECT_TRUE(listener.images.empty());
    ASSERT_TRUE(waitUntil([&] { return listener.images.size() == 100; }));
    std::vector<quint64> expected(100);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(listener.sequences(), expected);
    EXPECT_THAT(listener.threads, testing::Each(std::this_thread::get_id()));
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 100u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

TEST(PFramePipeline, never_delivers_inside_the_call_that_brings_a_frame) {
    FakeDevice device;
    const FrameListener listener(device);
    sendImages(device, 1); // on the device's own thread
    EXPECT_TRUE(listener.images.empty());
    EXPECT_EQ(device.frameLedger().waiting, 1u);
    EXPECT_TRUE(waitUntil([&] { return listener.images.size() == 1; }));
}

TEST(PFramePipeline, does_not_copy_pixels) {
    FakeDevice device;
    const FrameListener listener(device);
    const PImage image = smallImage();
    device.processFrameImage(image);
    ASSERT_TRUE(deliverAll(device));
    const PImage& arrived = listener.images.at(0);
    EXPECT_EQ(arrived.rawData(PDIP::AccessMode::Read).constData(),
              image.rawData(PDIP::AccessMode::Read).constData());
    EXPECT_EQ(findStamp(image), nullptr);
}

TEST(PFramePipeline, leaves_room_for_other_events_between_frames_that_never_end) {
    FakeDevice device;
    int delivered = 0;
    int deliveredBeforeOther = -1;
    QObject::connect(&device, &PImageSource::imageChanged, &device, [&] {
        if (++delivered < 20)
            sendImages(device, 1); // a camera faster than its listeners
    });
    sendImages(device, 1);
    QMetaObject::invokeMethod(
        &device, [&] { deliveredBeforeOther = delivered; }, Qt::QueuedConnection);
    ASSERT_TRUE(waitUntil([&] { return delivered == 20; }));
    EXPECT_EQ(deliveredBeforeOther, 1);
}

TEST(PFramePipeline, leaves_room_for_other_events_between_frames_of_slow_listeners) {
    FakeDevice device;
    int delivered = 0;
    QObject::connect(&device, &PDevice::imageChanged, [&] {
        std::this_thread::sleep_for(
            std::chrono::milliseconds(30)); // longer than one iteration of the event loop may take
        ++delivered;
    });
    sendImages(device, 5);
    int deliveredBefore = -1;
    QMetaObject::invokeMethod(
        &device, [&] { deliveredBefore = delivered; }, Qt::QueuedConnection);
    ASSERT_TRUE(deliverAll(device));
    EXPECT_EQ(delivered, 5);
    EXPECT_EQ(deliveredBefore, 1) << "it waited for one frame, not for all";
}

TEST(PFramePipeline, has_the_newest_frame_before_it_is_delivered) {
    FakeDevice device;
    EXPECT_TRUE(device.newestFrame().image.isNull());
    onForeignThread([&] { sendImages(device, 3); });
    EXPECT_EQ(stampIn(device.newestFrame()).sequence, 3u);
    EXPECT_FALSE(device.newestFrame().image.isNull());
}

TEST(PFramePipeline, has_the_newest_frame_even_if_it_was_dropped) {
    FakeDevice device;
    device.setFrameByteLimit(smallImageBytes);
    sendImages(device, 5);
    EXPECT_EQ(stampIn(device.newestFrame()).sequence, 5u);
}

// ---- Stamps.

TEST(PFramePipeline, stamps_frames_with_their_time_of_arrival) {
    FakeDevice device;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const auto steadyBefore = std::chrono::steady_clock::now();
    sendImages(device, 1);
    const PFrameStamp stamp = stampIn(device.newestFrame());
    EXPECT_GE(stamp.arrivedUtc, before);
    EXPECT_LE(stamp.arrivedUtc, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(stamp.arrivedUtc.timeSpec(), Qt::UTC);
    EXPECT_GE(stamp.arrived, steadyBefore);
    EXPECT_LE(stamp.arrived, std::chrono::steady_clock::now());
}

TEST(PFramePipeline, numbers_live_frames_and_still_pictures_apart) {
    FakeDevice device;
    const FrameListener listener(device);
    sendImages(device, 1);
    device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    sendImages(device, 1);
    ASSERT_TRUE(deliverAll(device));
    EXPECT_THAT(listener.sequences(), ElementsAre(1u, 2u));
    EXPECT_FALSE(stampIn(listener.images.at(1)).still);
    EXPECT_EQ(stampIn(listener.snapshots.at(0)).sequence, 1u);
    EXPECT_TRUE(stampIn(listener.snapshots.at(0)).still);
}

TEST(PFramePipeline, stamps_frames_with_the_settings_of_their_moment) {
    FakeDevice device;
    auto* const gain = new FakeProperty("gain", 7);
    device.makeProperties = [&] { return QList<PDeviceProperty*>{gain}; };
    device.supportProperties();
    device.link();
    device.startStream();
    const auto settingsNow = [&] {
        sendImages(device, 1);
        return settingsIn(device.newestFrame());
    };
    const auto first = settingsNow();
    gain->setValue(9);
    const auto afterValue = settingsNow();
    device.setMode(device.modes.at(1));
    const auto afterMode = settingsNow();
    gain->inDevice = 11; // changed by the camera
    gain->updateValueFromDevice();
    const auto afterUpdate = settingsNow();

    using Values = QList<std::pair<QByteArray, QVariant>>;
    EXPECT_EQ(first.mode, device.modes.at(0));
    EXPECT_EQ(first.values, (Values{{"gain", 7}}));
    EXPECT_EQ(afterValue.values, (Values{{"gain", 9}}));
    EXPECT_EQ(afterValue.mode, device.modes.at(0));
    EXPECT_EQ(afterMode.mode, device.modes.at(1));
    EXPECT_EQ(afterUpdate.values, (Values{{"gain", 11}}));
}

TEST(PFramePipeline, stamps_frames_with_empty_settings_before_there_are_any) {
    FakeDevice device;
    sendImages(device, 1);
    EXPECT_TRUE(settingsIn(device.newestFrame()).values.isEmpty());
}

// ---- The limit of the queue.

TEST(PFramePipeline, keeps_what_waits_for_a_stalled_thread_within_the_limit) {
    FakeDevice device;
    const FrameListener listener(device);
    device.setFrameByteLimit(3 * smallImageBytes);
    onForeignThread([&] { sendImages(device, 10); });
    EXPECT_EQ(device.frameLedger().waiting, 3u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::DroppedWaiting), 7u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
    ASSERT_TRUE(deliverAll(device));
    EXPECT_THAT(listener.sequences(), ElementsAre(1u, 2u, 3u));
    EXPECT_EQ(device.frameLedger().produced, 10u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 3u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

TEST(PFramePipeline, lets_a_frame_larger_than_the_limit_through_when_nothing_waits) {
    FakeDevice device;
    const FrameListener listener(device);
    device.setFrameByteLimit(1);
    sendImages(device, 2);
    ASSERT_TRUE(deliverAll(device));
    sendImages(device, 1);
    ASSERT_TRUE(deliverAll(device));
    EXPECT_THAT(listener.sequences(), ElementsAre(1u, 3u));
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::DroppedWaiting), 1u);
}

TEST(PFramePipeline, never_drops_a_snapshot) {
    FakeDevice device;
    const FrameListener listener(device);
    device.setFrameByteLimit(1);
    sendImages(device, 1);
    for (int i = 0; i < 5; ++i)
        device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    ASSERT_TRUE(deliverAll(device));
    EXPECT_EQ(listener.snapshots.size(), 5u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::DroppedWaiting), 0u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 6u);
}

TEST(PFramePipeline, takes_as_many_live_frames_as_are_requested) {
    FakeDevice device;
    const FrameListener listener(device);
    const auto sink = std::make_shared<RecordingSink>();
    device.addFrameSink(sink);
    device.limitLiveFrames(2);
    sendImages(device, 5);
    device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    ASSERT_TRUE(deliverAll(device));
    EXPECT_THAT(listener.sequences(), ElementsAre(1u, 2u));
    EXPECT_EQ(listener.snapshots.size(), 1u);
    EXPECT_EQ(sink->taken().size(), 3u);
    EXPECT_EQ(stampIn(device.newestFrame()).sequence, 2u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::NotRequested), 3u);
    EXPECT_EQ(device.frameLedger().produced, 6u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

TEST(PFramePipeline, takes_all_live_frames_again_when_the_limit_is_lifted) {
    FakeDevice device;
    const FrameListener listener(device);
    device.limitLiveFrames(0);
    sendImages(device, 1);
    device.limitLiveFrames(std::nullopt);
    sendImages(device, 4);
    ASSERT_TRUE(deliverAll(device));
    EXPECT_EQ(listener.images.size(), 4u);
}

// ---- Snapshots.

TEST(PFramePipeline, books_a_snapshot_of_a_new_picture_as_produced_and_as_a_snapshot) {
    FakeDevice device;
    const FrameListener listener(device);
    onForeignThread([&] { device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage())); });
    EXPECT_EQ(device.frameLedger().snapshots, 0u);
    ASSERT_TRUE(deliverAll(device));
    ASSERT_EQ(listener.snapshots.size(), 1u);
    EXPECT_TRUE(listener.images.empty());
    EXPECT_NE(listener.snapshots[0].stamp, nullptr);
    EXPECT_EQ(findStamp(listener.snapshots[0].image), listener.snapshots[0].stamp);
    EXPECT_EQ(device.frameLedger().produced, 1u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 1u);
    EXPECT_EQ(device.frameLedger().snapshots, 1u);
}

TEST(PFramePipeline, keeps_the_stamp_of_a_live_frame_that_is_made_a_snapshot) {
    FakeDevice device;
    const FrameListener listener(device);
    QObject::connect(&device, &PImageSource::imageChanged, &device, [&](const PImage& image) {
        device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(image));
    });
    sendImages(device, 1);
    ASSERT_TRUE(waitUntil([&] { return listener.snapshots.size() == 1; }));
    EXPECT_EQ(listener.snapshots[0].stamp, findStamp(listener.images.at(0)));
    EXPECT_EQ(stampIn(listener.snapshots[0]).sequence, 1u);
    EXPECT_FALSE(stampIn(listener.snapshots[0]).still);
    EXPECT_EQ(device.frameLedger().produced, 1u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 1u);
    EXPECT_EQ(device.frameLedger().snapshots, 1u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

// ---- Sinks.

TEST(PFramePipeline, shows_every_frame_to_the_sinks_on_the_thread_that_brings_it) {
    FakeDevice device;
    device.setFrameByteLimit(smallImageBytes); // dropped ones included
    const auto sink = std::make_shared<RecordingSink>();
    device.addFrameSink(sink);
    std::thread::id bringing;
    onForeignThread([&] {
        bringing = std::this_thread::get_id();
        sendImages(device, 3);
        device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    });
    const std::vector<RecordingSink::Taken> taken = sink->taken();
    ASSERT_EQ(taken.size(), 4u);
    for (std::size_t i = 0; i < taken.size(); ++i) {
        EXPECT_EQ(taken[i].sequence, i < 3 ? i + 1 : 1); // stills are numbered separately
        EXPECT_EQ(taken[i].thread, bringing);
        EXPECT_EQ(taken[i].kind, i < 3 ? PFrameSink::Kind::Live : PFrameSink::Kind::Snapshot);
    }
}

TEST(PFramePipeline, shows_a_removed_sink_nothing_more) {
    FakeDevice device;
    const auto sink = std::make_shared<RecordingSink>();
    device.addFrameSink(sink);
    sendImages(device, 1);
    device.removeFrameSink(sink);
    sendImages(device, 1);
    EXPECT_EQ(sink->taken().size(), 1u);
    EXPECT_EQ(sink.use_count(), 1);
}

namespace {

struct SinkRow {
    const char* name;
    RecordingSink::Answer answer;
    const char* logged;
};

class FailingSink : public RowTest<SinkRow> {};

ROW_TEST(FailingSink, has_the_frame_booked_as_failed_in_a_writer_once) {
    const PLogCapture log;
    FakeDevice device;
    const FrameListener listener(device);
    const auto failing = std::make_shared<RecordingSink>(GetParam().answer);
    const auto alsoFailing = std::make_shared<RecordingSink>(GetParam().answer);
    const auto working = std::make_shared<RecordingSink>();
    for (const auto& sink : {failing, alsoFailing, working})
        device.addFrameSink(sink);
    onForeignThread([&] { sendImages(device, 1); });
    ASSERT_TRUE(waitUntil([&] { return listener.images.size() == 1; })); // it is still the newest
    EXPECT_EQ(working->taken().size(), 1u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::FailedInWriter), 1u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 0u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
    const QString logged = QString::fromLatin1(GetParam().logged);
    const QStringList expected = logged.isEmpty() ? QStringList() : QStringList{logged, logged};
    EXPECT_EQ(log.texts(u"PCd"_qs), expected);
}

ROW_TEST(FailingSink, has_a_dropped_frame_booked_once) {
    FakeDevice device;
    device.setFrameByteLimit(smallImageBytes);
    device.addFrameSink(std::make_shared<RecordingSink>(GetParam().answer));
    sendImages(device, 2);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::FailedInWriter), 2u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::DroppedWaiting), 0u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

} // namespace

ROWS(Rows, FailingSink, SinkRow{"that_refuses", RecordingSink::Answer::Refuses, ""},
     SinkRow{"that_throws", RecordingSink::Answer::Throws, "A frame sink failed: disk full"},
     SinkRow{"that_throws_no_exception", RecordingSink::Answer::ThrowsNoException,
             "A frame sink failed: unknown exception"});

// ---- Buffers that never become a picture.

TEST(PFramePipeline, books_an_empty_image_as_one_of_bad_size) {
    FakeDevice device;
    const FrameListener listener(device);
    device.processFrameImage(PImage());
    device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(PImage()));
    QCoreApplication::processEvents();
    EXPECT_TRUE(listener.images.empty());
    EXPECT_TRUE(listener.snapshots.empty());
    EXPECT_EQ(device.frameLedger().produced, 2u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::BadSize), 2u);
    EXPECT_EQ(device.frameLedger().snapshots, 0u);
    EXPECT_TRUE(device.newestFrame().image.isNull());
}

TEST(PFramePipeline, books_frames_that_are_reported_as_dropped) {
    FakeDevice device;
    onForeignThread([&] {
        device.reportDroppedFrames(PFrameOutcome::LostInCamera, 5);
        device.reportDroppedFrames(PFrameOutcome::BadDepth);
    });
    EXPECT_EQ(device.frameLedger().produced, 6u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::LostInCamera), 5u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::BadDepth), 1u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}
