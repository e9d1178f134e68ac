// SPDX-License-Identifier: MIT
// The frame pipeline when something fails or is destroyed while frames are in it.
#include <PCd/FakeDevice.h>
#include <PCd/frame/FrameHelpers.h>

#include <PCd/frame/PCdDipUtils.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

// ---- Listeners that fail.

namespace {

struct ListenerRow {
    const char* name;
    std::function<void()> fail;
    const char* logged;
};

class FailingListener : public RowTest<ListenerRow> {};

ROW_TEST(FailingListener, of_a_live_frame_has_it_booked_as_failed_and_ends_nothing) {
    const PLogCapture log;
    FakeDevice device;
    int seen = 0;
    QObject::connect(&device, &PImageSource::imageChanged, &device, [&] {
        if (++seen == 1)
            GetParam().fail();
    });
    sendImages(device, 3);
    ASSERT_TRUE(waitUntil([&] { return seen == 3; }));
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Failed), 1u);
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Delivered), 2u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
    EXPECT_EQ(log.texts(u"PCd"_qs), QStringList{QString::fromLatin1(GetParam().logged)});
}

ROW_TEST(FailingListener, of_a_snapshot_has_it_not_counted_as_handed_out) {
    FakeDevice device;
    QObject::connect(&device, &PDevice::snapshotTaken, &device, [] { GetParam().fail(); });
    device.processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    ASSERT_TRUE(waitUntil([&] { return device.frameLedger().waiting == 0; }));
    EXPECT_EQ(device.frameLedger().count(PFrameOutcome::Failed), 1u);
    EXPECT_EQ(device.frameLedger().snapshots, 0u);
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

} // namespace

ROWS(Rows, FailingListener,
     ListenerRow{"that_throws", [] { throw std::runtime_error("no such layer"); },
                 "A listener failed over a frame: no such layer"},
     ListenerRow{"that_throws_no_exception", [] { throw 42; }, // NOLINT: not an exception class
                 "A listener failed over a frame: unknown exception"});

// ---- Devices that are destroyed.

TEST(PFramePipeline, ends_when_a_listener_deletes_the_device) {
    auto* device = new FakeDevice;
    int seen = 0;
    QObject::connect(device, &PImageSource::imageChanged, QCoreApplication::instance(), [&] {
        ++seen;
        delete std::exchange(device, nullptr);
    });
    sendImages(*device, 3);
    ASSERT_TRUE(waitUntil([&] { return device == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, 1);
}

TEST(PFramePipeline, ends_when_a_listener_deletes_the_device_over_a_snapshot) {
    auto* device = new FakeDevice;
    int seen = 0;
    QObject::connect(device, &PDevice::snapshotTaken, QCoreApplication::instance(), [&] {
        ++seen;
        delete std::exchange(device, nullptr);
    });
    for (int i = 0; i < 3; ++i)
        device->processSnapshot(PCdDipUtils::imageAsDeviceFrame(smallImage()));
    ASSERT_TRUE(waitUntil([&] { return device == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, 1);
}

TEST(PFramePipeline, ends_with_the_device_when_frames_still_wait) {
    int seen = 0;
    {
        FakeDevice device;
        QObject::connect(&device, &PImageSource::imageChanged, QCoreApplication::instance(),
                         [&] { ++seen; });
        FrameSource source(device);
        source.start();
        while (source.delivered() < 10)
            std::this_thread::yield();
        source.stop();
        EXPECT_GE(device.frameLedger().waiting, 10u);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, 0);
}

TEST(PFramePipeline, gives_the_pixels_of_waiting_frames_back_when_the_device_ends) {
    class Witness : public PFrameSink {
    public:
        bool takeFrame(const PDeviceFrame& frame, Kind) override {
            stamp = frame.stamp;
            return true;
        }
        std::weak_ptr<const PFrameStamp> stamp;
    };
    const auto witness = std::make_shared<Witness>();
    {
        FakeDevice device;
        device.addFrameSink(witness);
        sendImages(device, 1);
        EXPECT_FALSE(witness->stamp.expired());
    }
    EXPECT_TRUE(witness->stamp.expired());
}

TEST(PFramePipeline, lets_the_stream_be_stopped_while_a_frame_is_being_brought) {
    FakeDevice device;
    FrameSource source(device);
    device.whenStarted = [&] { source.start(); };
    device.whenStopped = [&] { source.stop(); }; // waits for the delivering thread, as SDKs do
    device.link();
    device.startStream();
    ASSERT_TRUE(
        waitUntil([&] { return device.frameLedger().count(PFrameOutcome::Delivered) > 50; }));
    EXPECT_TRUE(device.stopStream().isOk());
    ASSERT_TRUE(waitUntil([&] { return device.frameLedger().waiting == 0; }));
    EXPECT_EQ(device.frameLedger().produced, source.delivered());
    EXPECT_TRUE(device.frameLedger().isBalanced());
}

TEST(PFramePipeline, lets_a_listener_stop_the_stream) {
    FakeDevice device;
    FrameSource source(device);
    device.whenStarted = [&] { source.start(); };
    device.whenStopped = [&] { source.stop(); };
    QObject::connect(&device, &PImageSource::imageChanged, &device, [&] { device.stopStream(); });
    device.link();
    device.startStream();
    ASSERT_TRUE(waitUntil([&] { return !device.isStreaming(); }));
    ASSERT_TRUE(waitUntil([&] { return device.frameLedger().waiting == 0; }));
    EXPECT_EQ(device.frameLedger().produced, source.delivered());
}

// ---- Sinks that are removed while frames arrive.

namespace {

/// Stays in takeFrame() until its removal has begun, and a while longer.
class LingeringSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame&, Kind) override {
        inside = true;
        while (!removing)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        inside = false;
        return true;
    }

    std::atomic<bool> inside{false};
    std::atomic<bool> removing{false};
};

} // namespace

TEST(PFramePipeline, removes_a_sink_only_when_it_is_not_running) {
    FakeDevice device;
    const auto sink = std::make_shared<LingeringSink>();
    device.addFrameSink(sink);
    std::thread bringing([&] { sendImages(device, 1); });
    while (!sink->inside)
        std::this_thread::yield();
    sink->removing = true;
    device.removeFrameSink(sink);
    EXPECT_FALSE(sink->inside);
    bringing.join();
}

TEST(PFramePipeline, adds_and_removes_sinks_while_frames_arrive) {
    FakeDevice device;
    const auto steady = std::make_shared<RecordingSink>();
    device.addFrameSink(steady);
    FrameSource source(device);
    source.start();
    for (int i = 0; i < 50; ++i) {
        const auto sink = std::make_shared<RecordingSink>();
        device.addFrameSink(sink);
        while (sink->taken().empty())
            std::this_thread::yield();
        device.removeFrameSink(sink);
        EXPECT_EQ(sink.use_count(), 1);
    }
    source.stop();
    EXPECT_EQ(steady->taken().size(), source.delivered());
}
