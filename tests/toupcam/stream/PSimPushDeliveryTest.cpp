// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <atomic>
#include <future>

namespace {

using SimPush = SimTest;

TEST_F(SimPush, frame_header_is_right_for_colour) {
    SimCameraText camera;
    camera.width = 101;
    const HToupcam handle = openOnly(camera);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    const BITMAPINFOHEADER header = log.frames().front().header;
    EXPECT_EQ(header.biSize, 40U);
    EXPECT_EQ(header.biWidth, 101);
    EXPECT_EQ(header.biHeight, 64);
    EXPECT_EQ(header.biPlanes, 1);
    EXPECT_EQ(header.biBitCount, 24);
    EXPECT_EQ(header.biCompression, 0U);
    EXPECT_EQ(header.biSizeImage, 304U * 64U); // 303 bytes a row, padded to 304
}

TEST_F(SimPush, frame_header_is_right_for_grey) {
    SimCameraText camera;
    camera.width = 101;
    camera.bits = 8;
    const HToupcam handle = openOnly(camera);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    EXPECT_EQ(log.frames().front().header.biBitCount, 8);
    EXPECT_EQ(log.frames().front().header.biSizeImage, 104U * 64U);
    EXPECT_FALSE(log.frames().front().isSnapshot);
}

void expectPatches(const PushedFrame& frame, const int (&red)[3], const int (&green)[3],
                   const int (&blue)[3]) {
    const int w = frame.header.biWidth;
    const int h = frame.header.biHeight;
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(frame.at(w / 6, h / 2, c), red[c]) << "channel " << c;
        EXPECT_EQ(frame.at(w / 2, h / 2, c), green[c]) << "channel " << c;
        EXPECT_EQ(frame.at(w * 5 / 6, h / 2, c), blue[c]) << "channel " << c;
        EXPECT_EQ(frame.at(w / 2, 0, c), 0);
        EXPECT_EQ(frame.at(w / 3, h / 2, c), 0); // between two patches
        EXPECT_EQ(frame.at(w - 1, h - 1, c), 0);
    }
}

TEST_F(SimPush, patches_1003_pixels_wide_have_their_colours_in_either_byte_order) {
    SimCameraText camera;
    camera.width = 1003;
    const HToupcam handle = openOnly(camera);
    for (const int blueFirst : {0, 1}) {
        FrameLog log(1);
        ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, blueFirst), S_OK);
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        ASSERT_TRUE(log.waitFor(1));
        ASSERT_EQ(Toupcam_Stop(handle), S_OK);
        const PushedFrame frame = log.frames().front();
        ASSERT_EQ(frame.header.biSizeImage, 3012U * 64U);
        if (blueFirst)
            expectPatches(frame, {0, 0, 255}, {0, 255, 0}, {255, 0, 0});
        else
            expectPatches(frame, {255, 0, 0}, {0, 255, 0}, {0, 0, 255});
    }
}

TEST_F(SimPush, patches_on_a_grey_camera_have_their_brightness) {
    SimCameraText camera;
    camera.bits = 8;
    const HToupcam handle = openOnly(camera);
    FrameLog log(1);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    const PushedFrame frame = log.frames().front();
    EXPECT_EQ(frame.at(96 / 6, 32, 0), 87);
    EXPECT_EQ(frame.at(96 / 2, 32, 0), 127);
    EXPECT_EQ(frame.at(96 * 5 / 6, 32, 0), 39);
}

TEST_F(SimPush, second_start_is_refused_while_the_first_runs) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), E_UNEXPECTED);
    EXPECT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &log), E_UNEXPECTED);
}

TEST_F(SimPush, start_without_a_callback_is_refused) {
    const HToupcam handle = openOnly(SimCameraText());
    EXPECT_EQ(Toupcam_StartPushMode(handle, nullptr, nullptr), E_POINTER);
}

TEST_F(SimPush, stopped_stream_pushes_no_more_and_starts_again) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog first(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &first), S_OK);
    ASSERT_TRUE(first.waitFor(3));
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    const std::size_t total = first.total();
    EXPECT_EQ(readCounts().delivered, total);
    FrameLog second(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &second), S_OK);
    ASSERT_TRUE(second.waitFor(3));
    EXPECT_EQ(first.total(), total);
}

TEST_F(SimPush, stop_of_a_stream_that_does_not_run_succeeds) {
    EXPECT_EQ(Toupcam_Stop(openOnly(SimCameraText())), S_OK);
}

struct EndRow {
    const char* name;
    void (*end)(HToupcam);
};

class SimPushEnd : public SimTest, public WithSimRow<EndRow> {};

ROWS(ways, SimPushEnd, EndRow{"stop", [](HToupcam h) { Toupcam_Stop(h); }},
     EndRow{"close", [](HToupcam h) { Toupcam_Close(h); }});

ROW_TEST(SimPushEnd, returns_after_the_callback_in_progress) {
    const HToupcam handle = openOnly(SimCameraText());
    Gate gate;
    std::atomic<bool> returned{false};
    FrameLog log(0);
    log.inside = [&] {
        gate.pass();
        EXPECT_FALSE(returned);
    };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(gate.waitForSomebody());
    const auto ended = std::async(std::launch::async, [&] {
        GetParam().end(handle);
        returned = true;
    });
    // It must not return while the callback is blocked; a faulty one would do so at once.
    EXPECT_EQ(ended.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    gate.open();
    ASSERT_EQ(ended.wait_for(longestWait), std::future_status::ready);
    EXPECT_GE(log.total(), 1U);
}

TEST_F(SimPush, stop_from_inside_the_callback_is_refused_and_the_stream_goes_on) {
    const HToupcam handle = openOnly(SimCameraText());
    std::atomic<int> result{0};
    FrameLog log(0);
    log.inside = [&] { result = Toupcam_Stop(handle); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(3));
    EXPECT_EQ(result, E_WRONG_THREAD);
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
}

TEST_F(SimPush, close_from_inside_the_callback_ends_the_stream_without_a_deadlock) {
    const HToupcam handle = openOnly(SimCameraText());
    // Static, because the thread ends by itself and nothing waits for the rest of its callback.
    static FrameLog log(0);
    log.inside = [handle] { Toupcam_Close(handle); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    HToupcam again = nullptr;
    ASSERT_TRUE(eventually([&again] { return (again = Toupcam_Open("cam")) != nullptr; }));
    EXPECT_EQ(Toupcam_Stop(handle), E_INVALIDARG);
    Toupcam_Close(again);
}

TEST_F(SimPush, other_camera_can_be_stopped_from_inside_a_callback) {
    SimCameraText other;
    other.id = "other";
    load(makeScene({SimCameraText(), other}));
    const HToupcam handle = open("cam");
    const HToupcam second = open("other");
    FrameLog quiet(0);
    ASSERT_EQ(Toupcam_StartPushMode(second, FrameLog::onData, &quiet), S_OK);
    std::atomic<int> result{1};
    FrameLog log(0);
    log.inside = [&] { result = Toupcam_Stop(second); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(2));
    EXPECT_EQ(result, S_OK);
}

TEST_F(SimPush, frames_that_fall_due_while_the_callback_is_busy_are_lost_and_counted) {
    const HToupcam handle = openOnly(SimCameraText());
    Gate gate;
    FrameLog log(0);
    log.inside = [&] { gate.pass(); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(gate.waitForSomebody());
    ASSERT_TRUE(eventually([] { return readCounts().produced >= 20; }));
    EXPECT_EQ(readCounts().delivered, 1U);
    const auto lost = readCounts().produced - readCounts().delivered;
    gate.open();
    ASSERT_TRUE(log.waitFor(3));
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    // None of the lost frames arrived later.
    EXPECT_EQ(readCounts().delivered, log.total());
    EXPECT_GE(readCounts().produced - readCounts().delivered, lost - 1);
}

TEST_F(SimPush, resolution_changed_while_streaming_gives_frames_of_the_new_size) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    ASSERT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    ASSERT_TRUE(eventually([&] { return log.last().header.biWidth == 48; }));
    EXPECT_EQ(log.last().header.biHeight, 32);
    EXPECT_EQ(log.last().header.biSizeImage, 48U * 3U * 32U);
    EXPECT_EQ(log.frames().front().header.biWidth, 96);
}

TEST_F(SimPush, long_wait_for_a_frame_ends_when_the_exposure_is_shortened) {
    SimCameraText camera;
    camera.extra = R"(, "exposure": {"max": 4000000000})";
    const HToupcam handle = openOnly(camera);
    // More than an hour: only a stream that reads its settings again ends in time.
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 4000000000U), S_OK);
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    BITMAPINFOHEADER header{};
    ASSERT_EQ(ToupcamSim_pushRaw("cam", &header, &header, 0), 1); // its thread runs
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 1000), S_OK);
    ASSERT_TRUE(log.waitFor(1 + 5));
    EXPECT_GE(readCounts().produced, 5U);
}

TEST_F(SimPush, still_picture_comes_through_the_data_callback_at_its_own_resolution) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    ASSERT_EQ(Toupcam_Snap(handle, 1), S_OK);
    ASSERT_TRUE(log.waitForStill());
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    unsigned stills = 0;
    for (const PushedFrame& frame : log.frames()) {
        stills += frame.isSnapshot ? 1 : 0;
        EXPECT_EQ(frame.header.biWidth, frame.isSnapshot ? 48 : 96);
    }
    EXPECT_EQ(stills, 1U);
    // A still is not counted as a frame of the stream.
    EXPECT_EQ(readCounts().delivered, log.total() - 1);
}

TEST_F(SimPush, snap_needs_a_running_stream_and_a_resolution_that_exists) {
    const HToupcam handle = openOnly(SimCameraText());
    EXPECT_EQ(Toupcam_Snap(handle, 0), E_UNEXPECTED);
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_EQ(Toupcam_Snap(handle, 2), E_INVALIDARG);
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(Toupcam_Snap(handle, 0), E_UNEXPECTED);
}

TEST_F(SimPush, still_pictures_waiting_are_bounded) {
    const HToupcam handle = openOnly(SimCameraText());
    Gate gate;
    FrameLog log(0);
    log.inside = [&] { gate.pass(); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(gate.waitForSomebody());
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(Toupcam_Snap(handle, 0), S_OK);
    EXPECT_EQ(Toupcam_Snap(handle, 0), E_PENDING);
    gate.open();
}

TEST_F(SimPush, pulling_is_refused_in_push_mode) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, nullptr), E_UNEXPECTED);
}

TEST_F(SimPush, unplugging_pushes_one_null_frame_and_nothing_after_it) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(2));
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(log.waitForLoss());
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(log.losses(), 1U);
    EXPECT_TRUE(log.last().isNull);
    EXPECT_FALSE(log.last().hasHeader);
    EXPECT_EQ(readCounts().delivered, log.total() - 1);
}

TEST_F(SimPush, frames_due_until_the_unplugging_are_counted_and_none_after_it) {
    const HToupcam handle = openOnly(SimCameraText());
    Gate gate;
    FrameLog log(0);
    log.inside = [&] { gate.pass(); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(gate.waitForSomebody());
    ASSERT_TRUE(eventually([] { return readCounts().produced >= 10; }));
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
    const auto produced = readCounts().produced;
    EXPECT_GE(produced, 10U);
    gate.open();
    ASSERT_TRUE(log.waitForLoss());
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(readCounts().produced, produced);
}

TEST_F(SimPush, replugged_camera_streams_again_under_a_new_handle) {
    const HToupcam gone = openOnly(SimCameraText());
    FrameLog first(0);
    ASSERT_EQ(Toupcam_StartPushMode(gone, FrameLog::onData, &first), S_OK);
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(first.waitForLoss());
    Toupcam_Close(gone);
    ASSERT_EQ(ToupcamSim_plug("cam"), 1);
    FrameLog second(0);
    ASSERT_EQ(Toupcam_StartPushMode(open(), FrameLog::onData, &second), S_OK);
    EXPECT_TRUE(second.waitFor(3));
}

TEST_F(SimPush, unpaced_ring_pushes_each_frame_of_the_ring_in_turn_without_loss) {
    SimCameraText camera;
    camera.fps = 0.01; // would be one frame in 100 seconds
    camera.source = R"({"kind": "ring", "frames": 3, "unpaced": true})";
    const HToupcam handle = openOnly(camera);
    FrameLog log;
    // Compared inside the callback: the stop may let one more frame through.
    log.inside = [&log] {
        EXPECT_EQ(readCounts().produced, log.total() + 1);
        EXPECT_EQ(readCounts().delivered, log.total() + 1);
    };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(30));
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    const auto frames = log.frames();
    for (std::size_t i = 0; i < frames.size(); ++i)
        EXPECT_EQ(frames[i].bytes[0], i % 3);
}

/// The addresses of the delivered frames.
struct AddressLog {
    static void onData(const void* data, const BITMAPINFOHEADER*, int, void* context) {
        auto* const log = static_cast<AddressLog*>(context);
        const std::lock_guard lock(log->mutex);
        log->addresses.push_back(data);
    }

    std::mutex mutex;
    std::vector<const void*> addresses;
};

/// The addresses of at least this number of frames, pushed by a camera that is then stopped.
void pushAddresses(HToupcam handle, std::size_t frames, std::vector<const void*>& addresses) {
    AddressLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, AddressLog::onData, &log), S_OK);
    const bool came = eventually([&] {
        const std::lock_guard lock(log.mutex);
        return log.addresses.size() >= frames;
    });
    // First of all, because the camera writes into the log until it is stopped.
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    ASSERT_TRUE(came);
    addresses = log.addresses;
}

TEST_F(SimPush, ring_frames_are_handed_out_without_a_copy) {
    SimCameraText camera;
    camera.source = R"({"kind": "ring", "frames": 2, "unpaced": true})";
    const HToupcam handle = openOnly(camera);
    std::vector<const void*> seen;
    ASSERT_NO_FATAL_FAILURE(pushAddresses(handle, 6, seen));
    EXPECT_EQ(seen[0], seen[2]);
    EXPECT_EQ(seen[1], seen[5]);
    EXPECT_NE(seen[0], seen[1]);
}

TEST_F(SimPush, frame_buffer_is_the_same_from_frame_to_frame) {
    SimCameraText camera;
    camera.source = R"({"kind": "flat"})";
    const HToupcam handle = openOnly(camera);
    std::vector<const void*> seen;
    ASSERT_NO_FATAL_FAILURE(pushAddresses(handle, 4, seen));
    for (const void* const pointer : seen)
        EXPECT_EQ(pointer, seen.front());
}

} // namespace
