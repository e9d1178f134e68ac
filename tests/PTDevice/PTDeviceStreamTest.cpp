// SPDX-License-Identifier: MIT
// The live path: starting and stopping the push stream, and what happens to every pushed buffer.
#include <PTDevice/SimFixture.h>

#include <PCd/property/PDeviceProperty.h>

#include <PDip/PBufferPool.h>

#include <QColor>
#include <QCoreApplication>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <climits>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A correct header for a buffer of this geometry.
BITMAPINFOHEADER makeHeader(int width, int height, int bits) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<unsigned short>(bits);
    const unsigned stride = (unsigned(width) * unsigned(bits) + 31) / 32 * 4;
    header.biSizeImage = stride * unsigned(height);
    return header;
}

class PTDeviceStream : public SimFixture {
protected:
    PTDeviceStream() {
        loadScene({SimCameraText{}});
        device = open();
        SimJournal::clear();
    }

    /// Passes a buffer to the data callback as the SDK would, on this thread.
    void push(const std::vector<unsigned char>& buffer, const BITMAPINFOHEADER& header,
              int isSnapshot = 0) {
        cbData(buffer.data(), &header, isSnapshot, device.get());
        QCoreApplication::sendPostedEvents();
    }

    quint64 count(PFrameOutcome outcome) const { return device->frameLedger().count(outcome); }

    std::unique_ptr<PTDevice> device;
};

/// The colours of the middle row other than black, from left to right, each listed once.
QList<QColor> patchColours(const QImage& picture) {
    QList<QColor> colours;
    for (int x = 0; x < picture.width(); ++x) {
        const QColor colour = picture.pixelColor(x, picture.height() / 2);
        if (colour != QColor(0, 0, 0) && !colours.contains(colour))
            colours.append(colour);
    }
    return colours;
}

/// Collects the live images of a device.
struct ImageList {
    explicit ImageList(PDevice* device) {
        QObject::connect(device, &PDevice::imageChanged,
                         [this](const PImage& image) { images.append(image); });
    }
    QList<PImage> images;
};

} // namespace

// ---- Start and stop -----------------------------------------------------------------------------

TEST_F(PTDeviceStream, start_begins_push_mode_then_reads_and_logs_the_state) {
    ASSERT_EQ(Toupcam_put_ExpoTime(device->sdkHandle(), 2000), S_OK);
    ASSERT_EQ(Toupcam_put_AutoExpoEnable(device->sdkHandle(), 0), S_OK);
    SimJournal::clear();
    EXPECT_TRUE(device->tryStartStream());
    EXPECT_TRUE(device->tryStopStream());
    EXPECT_THAT(SimJournal::lines(),
                ElementsAre("Toupcam_StartPushMode(h1, fn, ctx) = 0",
                            "Toupcam_get_ExpoTime(h1, 2000) = 0",
                            "Toupcam_get_AutoExpoEnable(h1, 0) = 0", "Toupcam_get_Speed(h1, 3) = 0",
                            "Toupcam_get_Option(h1, 11, 0) = 0", "Toupcam_get_Option(h1, 4, 0) = 0",
                            "Toupcam_get_MaxSpeed(h1) = 3", "Toupcam_Stop(h1) = 0"));
    const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
    ASSERT_EQ(records.size(), 3) << "a stop is not logged";
    EXPECT_THAT(records[0].items, ElementsAre(u"Toupcam_StartPushMode started:"_qs, u"true"_qs));
    EXPECT_THAT(records[1].items,
                ElementsAre(u"Stream state: expoTime(us)="_qs, u"2000"_qs, u"autoExpo="_qs, u"0"_qs,
                            u"speed="_qs, u"3"_qs, u"/"_qs, u"3"_qs, u"trigger="_qs, u"0"_qs,
                            u"raw="_qs, u"0"_qs));
    EXPECT_THAT(records[2].items,
                ElementsAre(u"USB flags: usb30="_qs, u"true"_qs, u"over_usb20="_qs, u"false"_qs,
                            u"usb32_over_usb30="_qs, u"false"_qs));
    for (const PLogRecord& record : records)
        EXPECT_EQ(record.function, u"virtual bool PTDevice::tryStartStream()"_qs);
}

TEST_F(PTDeviceStream, a_refused_start_is_false_and_all_three_lines_are_written) {
    ToupcamSim_failCall("Toupcam_StartPushMode", 0, 1, E_FAIL);
    EXPECT_FALSE(device->tryStartStream());
    ASSERT_EQ(ptTexts(log).size(), 3);
    EXPECT_EQ(ptTexts(log).first(), u"Toupcam_StartPushMode started: false"_qs);
}

TEST_F(PTDeviceStream, state_that_cannot_be_read_is_logged_as_it_starts) {
    for (const char* function : {"Toupcam_get_ExpoTime", "Toupcam_get_AutoExpoEnable",
                                 "Toupcam_get_Speed", "Toupcam_get_Option"})
        ToupcamSim_failCall(function, 0, 0, E_FAIL);
    EXPECT_TRUE(device->tryStartStream());
    EXPECT_TRUE(log.contains(
        u"Stream state: expoTime(us)= 0 autoExpo= -1 speed= 0 / 3 trigger= -1 raw= -1"_qs));
    EXPECT_TRUE(device->tryStopStream());
}

TEST_F(PTDeviceStream, starting_twice_is_passed_on_and_the_sdk_decides) {
    EXPECT_TRUE(device->tryStartStream());
    EXPECT_FALSE(device->tryStartStream());
    EXPECT_THAT(SimJournal::calls("Toupcam_StartPushMode"), testing::SizeIs(2));
    EXPECT_TRUE(device->tryStopStream());
}

TEST_F(PTDeviceStream, the_usb_flags_of_the_model_are_logged) {
    device.reset();
    loadScene({SimCameraText().withFlags(R"("0x0800000000000100")")});
    device = open();
    EXPECT_TRUE(device->tryStartStream());
    EXPECT_TRUE(
        log.contains(u"USB flags: usb30= false over_usb20= true usb32_over_usb30= true"_qs));
    EXPECT_TRUE(device->tryStopStream());
}

// ---- Buffers ------------------------------------------------------------------------------------

TEST_F(PTDeviceStream, a_null_buffer_with_a_null_context_does_nothing_at_all) {
    const BITMAPINFOHEADER header = makeHeader(4, 2, 24);
    cbData(nullptr, &header, 0, nullptr);
    cbData(nullptr, nullptr, 1, nullptr);
    EXPECT_THAT(ptTexts(log), IsEmpty());
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}

TEST_F(PTDeviceStream, a_null_buffer_reports_the_camera_as_gone_whatever_the_header_holds) {
    QSignalSpy spy(device.get(), &PTDevice::disconnected);
    cbData(nullptr, nullptr, 0, device.get());
    ASSERT_TRUE(waitUntil([&] { return spy.count() == 1; }));
    EXPECT_EQ(device->frameLedger().produced, 0u);
}

TEST_F(PTDeviceStream, a_buffer_without_a_header_is_ignored) {
    const unsigned char byte = 0;
    cbData(&byte, nullptr, 0, device.get());
    EXPECT_EQ(device->frameLedger().produced, 0u);
}

TEST_F(PTDeviceStream, an_8_bit_buffer_is_a_one_channel_image) {
    ImageList list(device.get());
    push({1, 2, 3, 0, 4, 5, 6, 0}, makeHeader(3, 2, 8));
    ASSERT_EQ(list.images.size(), 1);
    const PImage image = list.images[0];
    EXPECT_EQ(image.format(), PDIP::ColorFormat(0));
    EXPECT_EQ(image.width(), 3);
    EXPECT_EQ(image.height(), 2);
    EXPECT_EQ(image.toQImage().pixelColor(2, 1), QColor(6, 6, 6));
}

TEST_F(PTDeviceStream, a_24_bit_buffer_is_a_three_channel_image_with_its_colours_right) {
    ImageList list(device.get());
    // One row: blue, red; the SDK puts blue first, and pads the row to 8 bytes.
    push({255, 0, 0, 0, 0, 255, 99, 99}, makeHeader(2, 1, 24));
    ASSERT_EQ(list.images.size(), 1);
    EXPECT_EQ(list.images[0].format(), PDIP::ColorFormat(1));
    const QImage view = list.images[0].toQImage();
    EXPECT_EQ(view.pixelColor(0, 0), QColor(0, 0, 255));
    EXPECT_EQ(view.pixelColor(1, 0), QColor(255, 0, 0));
}

struct BadHeaderRow {
    const char* name;
    int width;
    int height;
    int bits;
    unsigned size;
    PFrameOutcome outcome;
};

class PTDeviceBadHeader : public PTDeviceStream, public WithRow<BadHeaderRow> {};

ROW_TEST(PTDeviceBadHeader, is_dropped_without_a_line_and_counted) {
    const BadHeaderRow& row = GetParam();
    ImageList list(device.get());
    BITMAPINFOHEADER header = makeHeader(1, 1, row.bits);
    header.biWidth = row.width;
    header.biHeight = row.height;
    header.biSizeImage = row.size;
    push(std::vector<unsigned char>(64), header);
    EXPECT_THAT(list.images, IsEmpty());
    EXPECT_EQ(count(row.outcome), 1u);
    EXPECT_EQ(device->frameLedger().produced, 1u);
    EXPECT_TRUE(device->frameLedger().isBalanced());
    EXPECT_THAT(ptTexts(log), IsEmpty());
}

ROWS(Rows, PTDeviceBadHeader, BadHeaderRow{"of_32_bits", 4, 2, 32, 32, PFrameOutcome::BadDepth},
     BadHeaderRow{"of_16_bits", 4, 2, 16, 16, PFrameOutcome::BadDepth},
     BadHeaderRow{"of_0_bits", 4, 2, 0, 0, PFrameOutcome::BadDepth},
     BadHeaderRow{"with_a_size_one_byte_too_large", 4, 2, 24, 25, PFrameOutcome::BadSize},
     BadHeaderRow{"with_a_size_one_byte_too_small", 4, 2, 24, 23, PFrameOutcome::BadSize},
     BadHeaderRow{"with_a_size_that_forgets_the_row_padding", 3, 2, 8, 6, PFrameOutcome::BadSize},
     BadHeaderRow{"with_a_negative_height", 4, -2, 24, 24, PFrameOutcome::BadSize},
     BadHeaderRow{"with_a_negative_width", -4, 2, 24, 24, PFrameOutcome::BadSize},
     BadHeaderRow{"with_both_negative", -4, -2, 24, 24, PFrameOutcome::BadSize},
     BadHeaderRow{"with_no_width_and_no_size", 0, 2, 24, 0, PFrameOutcome::BadSize},
     BadHeaderRow{"with_no_height_and_no_size", 4, 0, 24, 0, PFrameOutcome::BadSize},
     BadHeaderRow{"as_large_as_numbers_go", INT_MAX, INT_MAX, 24, UINT_MAX, PFrameOutcome::BadSize},
     BadHeaderRow{"whose_size_wraps_to_the_one_given", 1 << 30, 4, 24, 0, PFrameOutcome::BadSize});

TEST_F(PTDeviceStream, no_memory_is_taken_for_a_header_whose_size_does_not_add_up) {
    const auto before = PBufferPool::instance().statistics();
    BITMAPINFOHEADER header = makeHeader(40000, 30000, 24);
    header.biSizeImage -= 1;
    push(std::vector<unsigned char>(64), header);
    const auto after = PBufferPool::instance().statistics();
    EXPECT_EQ(after.allocations, before.allocations);
    EXPECT_EQ(after.reuses, before.reuses);
}

TEST_F(PTDeviceStream, every_image_live_or_still_carries_exactly_the_snapshot_entry) {
    ImageList list(device.get());
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    push(std::vector<unsigned char>(24), makeHeader(4, 2, 24), 0);
    push(std::vector<unsigned char>(24), makeHeader(4, 2, 24), 1);
    push(std::vector<unsigned char>(24), makeHeader(4, 2, 24), 42);
    ASSERT_EQ(list.images.size(), 1);
    ASSERT_EQ(stills.count(), 2);
    const QMap<QString, QVariant> live{{u"snapshot"_qs, QVariant(false)}};
    const QMap<QString, QVariant> still{{u"snapshot"_qs, QVariant(true)}};
    EXPECT_EQ(list.images[0].metaInformation(), live);
    for (const QList<QVariant>& arguments : stills)
        EXPECT_EQ(arguments.value(0).value<PDeviceFrame>().image.metaInformation(), still);
    // A number would compare equal.
    const QVariant entry = list.images[0].metaInformation().value(u"snapshot"_qs);
    EXPECT_EQ(entry.typeId(), QMetaType::Bool);
}

TEST_F(PTDeviceStream, the_buffer_is_copied_once_and_not_kept) {
    ImageList list(device.get());
    std::vector<unsigned char> buffer(24, 7);
    push(buffer, makeHeader(4, 2, 24));
    std::fill(buffer.begin(), buffer.end(), static_cast<unsigned char>(200));
    ASSERT_EQ(list.images.size(), 1);
    EXPECT_EQ(list.images[0].rawData(PDIP::AccessMode::Read).constData()[0], 7);
}

namespace {

std::uint64_t buffersHandedOut() {
    const PBufferPool::Statistics now = PBufferPool::instance().statistics();
    return now.allocations + now.reuses;
}

long minorFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

} // namespace

TEST_F(PTDeviceStream, a_frame_takes_memory_for_one_copy_and_no_more) {
    // So large that memory not from the pool would be newly mapped: 8,450 pages.
    const BITMAPINFOHEADER header = makeHeader(8192, 4225, 8);
    const std::vector<unsigned char> buffer(header.biSizeImage, 1);
    for (int i = 0; i < 3; ++i)
        push(buffer, header);
    const std::uint64_t buffers = buffersHandedOut();
    const long faults = minorFaults();
    push(buffer, header);
    EXPECT_EQ(buffersHandedOut() - buffers, 1u);
    EXPECT_LT(minorFaults() - faults, 1000);
    EXPECT_EQ(count(PFrameOutcome::Delivered), 4u);
}

TEST_F(PTDeviceStream, a_start_and_a_stop_with_positive_results_have_worked) {
    ToupcamSim_failCall("Toupcam_StartPushMode", 0, 1, S_FALSE);
    EXPECT_TRUE(device->tryStartStream());
    EXPECT_TRUE(log.contains(u"Toupcam_StartPushMode started: true"_qs));
    ToupcamSim_failCall("Toupcam_Stop", 0, 1, S_FALSE);
    EXPECT_TRUE(device->tryStopStream());
    ToupcamSim_failCall("Toupcam_Stop", 0, 1, E_FAIL);
    EXPECT_FALSE(device->tryStopStream());
}

TEST_F(PTDeviceStream, a_listener_that_throws_does_not_reach_the_sdk) {
    QObject::connect(device.get(), &PDevice::imageChanged,
                     [] { throw std::runtime_error("listener"); });
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return count(PFrameOutcome::Failed) >= 3; }));
    EXPECT_TRUE(device->tryStopStream());
}

namespace {

struct ThrowingSink : PFrameSink {
    bool takeFrame(const PDeviceFrame&, Kind) override { throw 42; }
};

} // namespace

TEST_F(PTDeviceStream, a_frame_sink_that_throws_on_the_push_thread_does_not_reach_the_sdk) {
    device->addFrameSink(std::make_shared<ThrowingSink>());
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return count(PFrameOutcome::FailedInWriter) >= 3; }));
    EXPECT_TRUE(device->tryStopStream());
}

// ---- The stream as a whole ----------------------------------------------------------------------

TEST_F(PTDeviceStream, live_frames_and_stills_arrive_and_the_ledger_balances) {
    ImageList list(device.get());
    QSignalSpy stills(device.get(), &PDevice::snapshotTaken);
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return list.images.size() >= 5; }));
    EXPECT_TRUE(device->triggerStillCapture());
    ASSERT_TRUE(waitUntil([&] { return stills.count() == 1; }));
    EXPECT_TRUE(device->tryStopStream());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().waiting == 0; }));
    const PFrameLedger ledger = device->frameLedger();
    EXPECT_TRUE(ledger.isBalanced());
    EXPECT_EQ(ledger.count(PFrameOutcome::Delivered), ledger.produced);
    EXPECT_EQ(ledger.produced, quint64(list.images.size()) + 1);
    EXPECT_EQ(ledger.snapshots, 1u);
    const QImage picture = list.images.last().toQImage();
    EXPECT_EQ(picture.size(), QSize(64, 48));
}

TEST_F(PTDeviceStream, no_frame_arrives_after_the_stop_has_returned) {
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 3; }));
    EXPECT_TRUE(device->tryStopStream());
    const quint64 produced = device->frameLedger().produced;
    EXPECT_FALSE(waitUntil([&] { return device->frameLedger().produced > produced; },
                           std::chrono::milliseconds(200)));
}

TEST_F(PTDeviceStream, malformed_frames_pushed_in_the_middle_are_dropped_and_the_stream_goes_on) {
    ImageList list(device.get());
    ASSERT_TRUE(device->tryStartStream());
    const std::vector<unsigned char> buffer(64);
    BITMAPINFOHEADER header = makeHeader(4, 2, 32);
    EXPECT_EQ(ToupcamSim_pushRaw("cam", buffer.data(), &header, 0), 1);
    header = makeHeader(-4, -2, 24);
    EXPECT_EQ(ToupcamSim_pushRaw("cam", buffer.data(), &header, 0), 1);
    list.images.clear();
    EXPECT_TRUE(waitUntil([&] { return list.images.size() >= 3; }));
    EXPECT_TRUE(device->tryStopStream());
    EXPECT_EQ(count(PFrameOutcome::BadDepth), 1u);
    EXPECT_EQ(count(PFrameOutcome::BadSize), 1u);
}

TEST_F(PTDeviceStream, a_colour_frame_1003_pixels_wide_shows_the_patches_pure) {
    device.reset();
    loadScene({SimCameraText().withResolutions(R"([{"width": 1003, "height": 200, "fps": 100}])")});
    device = open();
    ImageList list(device.get());
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return !list.images.isEmpty(); }));
    EXPECT_TRUE(device->tryStopStream());
    const QImage picture = list.images[0].toQImage();
    ASSERT_EQ(picture.size(), QSize(1003, 200));
    EXPECT_THAT(patchColours(picture),
                ElementsAre(QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)));
}

TEST_F(PTDeviceStream, an_unplugged_camera_is_reported_once_and_can_still_be_stopped_and_closed) {
    QSignalSpy spy(device.get(), &PTDevice::disconnected);
    ASSERT_TRUE(device->tryStartStream());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().produced >= 3; }));
    EXPECT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(waitUntil([&] { return spy.count() == 1; }));
    device->tryStopStream();
    device.reset();
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(PTDeviceStream, stop_on_the_main_thread_while_frames_wait_for_it_does_not_deadlock) {
    device.reset();
    loadScene({SimCameraText().withSource(R"({"kind": "ring", "frames": 4, "unpaced": true})")});
    device = open();
    device->setFrameByteLimit(10 * 64 * 48 * 3);
    ASSERT_TRUE(device->tryStartStream());
    // This thread runs no event loop meanwhile, so the queue fills to its limit and stays full.
    while (count(PFrameOutcome::DroppedWaiting) < 100)
        std::this_thread::yield();
    EXPECT_TRUE(device->tryStopStream());
    EXPECT_LE(device->frameLedger().waiting, 10u);
    EXPECT_TRUE(device->frameLedger().isBalanced());
    ASSERT_TRUE(waitUntil([&] { return device->frameLedger().waiting == 0; }));
    EXPECT_TRUE(device->frameLedger().isBalanced());
}

TEST_F(PTDeviceStream, closed_on_the_main_thread_while_frames_wait_for_it_ends_and_images_live_on) {
    device.reset();
    loadScene({SimCameraText().withSource(R"({"kind": "ring", "frames": 4, "unpaced": true})")});
    device = open();
    device->setFrameByteLimit(10 * 64 * 48 * 3);
    ASSERT_TRUE(device->tryStartStream());
    while (count(PFrameOutcome::DroppedWaiting) < 100)
        std::this_thread::yield();
    const PImage newest = device->newestFrame().image;
    device.reset();
    ASSERT_EQ(newest.width(), 64);
    const QImage view = newest.toQImage();
    EXPECT_EQ(view.pixel(63, 47), view.copy().pixel(63, 47));
    QCoreApplication::sendPostedEvents();
}

TEST_F(PTDeviceStream,
       a_frame_without_memory_is_dropped_and_counted_and_the_next_one_comes_through) {
    ImageList list(device.get());
    PBufferPool::instance().trim();
    PBufferPool::instance().setUseLimit(PBufferPool::instance().statistics().usedBytes + 1);
    push(std::vector<unsigned char>(24), makeHeader(4, 2, 24));
    PBufferPool::instance().setUseLimit(PBufferPool::noLimit);
    EXPECT_EQ(count(PFrameOutcome::NoMemory), 1u);
    EXPECT_THAT(list.images, IsEmpty());
    push(std::vector<unsigned char>(24), makeHeader(4, 2, 24));
    EXPECT_EQ(list.images.size(), 1);
    EXPECT_TRUE(device->frameLedger().isBalanced());
}

// ---- The exposure callback ----------------------------------------------------------------------

namespace {

/// A property that counts its reads by thread.
class CountingProperty : public PDeviceProperty {
public:
    explicit CountingProperty(QByteArray id)
        : PDeviceProperty(std::move(id), QString(), PCD::DevicePropertyType::Integer) {}
    bool trySetValue(QVariant) override { return true; }
    QVariant tryGetValue() override {
        order().append(id());
        EXPECT_EQ(QThread::currentThread(), thread());
        return 1;
    }
    QVariant tryGetRange() override { return {}; }
    static QList<QByteArray>& order() {
        static QList<QByteArray> ids;
        return ids;
    }
};

/// A camera with only the two properties that the exposure callback updates.
class DeviceWithExposure : public PTDevice {
public:
    explicit DeviceWithExposure(const ToupcamDeviceV2& record)
        : PTDevice(record) {}
    QList<PDeviceProperty*> getSupportProperties() override {
        return {new CountingProperty("autoexpogain"), new CountingProperty("autoexpottime")};
    }
};

} // namespace

TEST_F(PTDeviceStream, the_exposure_callback_has_time_then_gain_read_again_on_their_thread) {
    DeviceWithExposure camera(record());
    camera.supportProperties();
    CountingProperty::order().clear();
    std::thread sdkThread([&] { cbExposure(&camera); });
    sdkThread.join();
    EXPECT_THAT(CountingProperty::order(), IsEmpty()) << "nothing is read on the SDK's thread";
    ASSERT_TRUE(waitUntil([] { return CountingProperty::order().size() >= 2; }));
    EXPECT_THAT(CountingProperty::order(), ElementsAre("autoexpottime", "autoexpogain"));
}

TEST_F(PTDeviceStream, the_exposure_callback_of_a_device_without_those_properties_does_nothing) {
    cbExposure(device.get());
    cbExposure(nullptr);
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(SimJournal::lines(), IsEmpty());
}
