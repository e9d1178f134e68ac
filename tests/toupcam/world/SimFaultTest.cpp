// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <chrono>

namespace {

using SimFault = SimTest;

TEST_F(SimFault, call_fails_after_the_skipped_ones_the_given_number_of_times) {
    const HToupcam handle = open("sim-1mm-1");
    ToupcamSim_failCall("Toupcam_put_ExpoTime", 1, 2, E_FAIL);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, 1000), S_OK);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, 2000), E_FAIL);
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, 3000), E_FAIL);
    unsigned time = 0;
    EXPECT_EQ(Toupcam_get_ExpoTime(handle, &time), S_OK);
    EXPECT_EQ(time, 1000U); // a failed call has no effect
    EXPECT_EQ(Toupcam_put_ExpoTime(handle, 4000), S_OK);
}

TEST_F(SimFault, call_fails_for_good_until_faults_are_cleared) {
    const HToupcam handle = open("sim-1mm-1");
    ToupcamSim_failCall("Toupcam_get_MaxSpeed", 0, 0, -7);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(Toupcam_get_MaxSpeed(handle), -7);
    ToupcamSim_clearFaults();
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), 2);
}

TEST_F(SimFault, injected_result_may_be_a_success) {
    ToupcamSim_failCall("Toupcam_get_MaxSpeed", 0, 1, 42);
    EXPECT_EQ(Toupcam_get_MaxSpeed(open("sim-1mm-1")), 42);
}

TEST_F(SimFault, failing_option_leaves_the_others_alone) {
    const HToupcam handle = open("sim-1mm-1");
    ToupcamSim_failOption("Toupcam_put_Option", TOUPCAM_OPTION_BYTEORDER, 0, 1, E_FAIL);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_FRAMERATE, 0), S_OK);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, 1), E_FAIL);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, 1), S_OK);
}

TEST_F(SimFault, failing_open_is_a_null_handle_and_opens_nothing) {
    ToupcamSim_failCall("Toupcam_Open", 0, 1, E_ACCESSDENIED);
    EXPECT_EQ(Toupcam_Open("sim-1mm-1"), nullptr);
    EXPECT_NE(open("sim-1mm-1"), nullptr);
}

TEST_F(SimFault, failing_enumeration_finds_the_given_number_of_cameras) {
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    ToupcamSim_failCall("Toupcam_EnumV2", 0, 1, E_FAIL);
    EXPECT_EQ(Toupcam_EnumV2(records), 0U);
    EXPECT_EQ(Toupcam_EnumV2(records), 2U);
}

// What the client finds in its record and buffer after pulling a waiting picture.
ToupcamFrameInfoV2 pulledInfo(HToupcam handle) {
    EventLog events;
    EXPECT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    EXPECT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamFrameInfoV2 info{};
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 32, &info), S_OK);
    EXPECT_EQ(info.width, 96U); // a query of the size is still correct
    std::vector<std::uint8_t> pixels(96 * 64 * 4);
    info = {1, 2, 3, 4, 5};
    EXPECT_EQ(Toupcam_PullImageV2(handle, pixels.data(), 32, &info), S_OK);
    EXPECT_EQ(pixels[4 * (32 * 96 + 16)], 255); // the picture is still there
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    return info;
}

TEST_F(SimFault, pull_reports_the_size_it_is_set_to) {
    const HToupcam handle = openOnly(SimCameraText());
    ToupcamSim_reportSize("Toupcam_PullImageV2", 7, 9);
    const ToupcamFrameInfoV2 info = pulledInfo(handle);
    EXPECT_EQ(info.width, 7U);
    EXPECT_EQ(info.height, 9U);
    EXPECT_EQ(info.flag, TOUPCAM_FRAMEINFO_FLAG_SEQ | TOUPCAM_FRAMEINFO_FLAG_TIMESTAMP);
    ToupcamSim_clearFaults();
    EXPECT_EQ(pulledInfo(handle).width, 96U);
}

TEST_F(SimFault, pull_that_reports_0_by_0_leaves_the_record_as_it_was) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "reportSize", "function": "Toupcam_PullImageV2"}])"));
    const ToupcamFrameInfoV2 info = pulledInfo(open());
    EXPECT_EQ(info.width, 1U);
    EXPECT_EQ(info.height, 2U);
    EXPECT_EQ(info.seq, 4U);
}

TEST_F(SimFault, option_returns_the_value_set_for_it_and_accepts_what_it_accepted_before) {
    load(makeScene({SimCameraText()}, R"([{"do": "answer", "option": 24, "value": 45}])"));
    const HToupcam handle = open();
    int value = 0;
    EXPECT_EQ(Toupcam_get_Option(handle, TOUPCAM_OPTION_ROTATE, &value), S_OK);
    EXPECT_EQ(value, 45);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_ROTATE, 45), E_INVALIDARG);
    EXPECT_EQ(Toupcam_get_Option(handle, TOUPCAM_OPTION_BINNING, &value), S_OK);
    EXPECT_EQ(value, 1);
    ToupcamSim_clearFaults();
    EXPECT_EQ(Toupcam_get_Option(handle, TOUPCAM_OPTION_ROTATE, &value), S_OK);
    EXPECT_EQ(value, 0);
}

TEST_F(SimFault, delayed_call_takes_at_least_its_delay) {
    const HToupcam handle = open("sim-1mm-1");
    ToupcamSim_delayCall("Toupcam_get_MaxSpeed", 30);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), 2);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
}

TEST_F(SimFault, held_frames_are_produced_but_never_arrive) {
    const HToupcam handle = openOnly(SimCameraText());
    ASSERT_EQ(ToupcamSim_holdFrames("cam", 1), 1);
    FrameLog log(0);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(eventually([] { return readCounts().produced >= 10; }));
    EXPECT_EQ(log.total(), 0U);
    EXPECT_EQ(readCounts().delivered, 0U);
    ASSERT_EQ(ToupcamSim_holdFrames("cam", 0), 1);
    EXPECT_TRUE(log.waitFor(3));
    EXPECT_EQ(ToupcamSim_holdFrames("no-such-camera", 1), 0);
}

TEST_F(SimFault, raw_buffer_is_pushed_with_exactly_its_header_before_the_call_returns) {
    const HToupcam handle = openOnly(SimCameraText());
    FrameLog log;
    ToupcamSim_holdFrames("cam", 1);
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    BITMAPINFOHEADER header{};
    header.biWidth = -5;
    header.biHeight = 2000000000;
    header.biBitCount = 16;
    header.biSizeImage = 3;
    const std::uint8_t data[3] = {1, 2, 3};
    ASSERT_EQ(ToupcamSim_pushRaw("cam", data, &header, 1), 1);
    ASSERT_EQ(log.total(), 1U);
    EXPECT_EQ(log.last().header.biWidth, -5);
    EXPECT_EQ(log.last().header.biHeight, 2000000000);
    EXPECT_EQ(log.last().header.biBitCount, 16);
    EXPECT_TRUE(log.last().isSnapshot);
    EXPECT_EQ(log.last().bytes, std::vector<std::uint8_t>({1, 2, 3}));
    EXPECT_EQ(readCounts().delivered, 0U); // none of the camera's frames
}

TEST_F(SimFault, raw_buffer_needs_a_stream_in_push_mode) {
    const HToupcam handle = openOnly(SimCameraText());
    BITMAPINFOHEADER header{};
    EXPECT_EQ(ToupcamSim_pushRaw("cam", &header, &header, 0), 0);
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    EXPECT_EQ(ToupcamSim_pushRaw("cam", &header, &header, 0), 0);
    Toupcam_Close(handle);
    EXPECT_EQ(ToupcamSim_pushRaw("cam", &header, &header, 0), 0);
}

TEST_F(SimFault, raw_buffer_pushed_from_inside_a_callback_is_refused) {
    const HToupcam handle = openOnly(SimCameraText());
    std::atomic<int> result{-1};
    FrameLog log(0);
    log.inside = [&] { result = ToupcamSim_pushRaw("cam", &log, nullptr, 0); };
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    EXPECT_EQ(result, 0);
    Toupcam_Close(handle);
}

TEST_F(SimFault, waiting_raw_buffer_is_cancelled_when_the_stream_stops) {
    const HToupcam handle = openOnly(SimCameraText());
    for (int i = 0; i < 20;
         ++i) { // whether the buffer or the stop comes first is a deliberate race
        Gate gate;
        FrameLog log(0);
        log.inside = [&] { gate.pass(); };
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        ASSERT_TRUE(gate.waitForSomebody());
        BITMAPINFOHEADER header{};
        std::thread pusher([&] { ToupcamSim_pushRaw("cam", &header, &header, 0); });
        std::thread stopper([&] { Toupcam_Stop(handle); });
        ASSERT_TRUE(eventually([&] { return Toupcam_Snap(handle, 0) == E_UNEXPECTED; }));
        gate.open();
        pusher.join(); // hangs here if it is not notified
        stopper.join();
    }
    BITMAPINFOHEADER header{};
    EXPECT_EQ(ToupcamSim_pushRaw("cam", &header, &header, 0), 0);
}

TEST_F(SimFault, fired_event_is_reported_before_the_call_returns) {
    const HToupcam handle = openOnly(SimCameraText());
    EXPECT_EQ(ToupcamSim_fireEvent("cam", 0x80), 0);
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    EXPECT_EQ(ToupcamSim_fireEvent("cam", 0x80), 1);
    EXPECT_EQ(events.count(0x80), 1U);
    Toupcam_Close(handle);
    EXPECT_EQ(ToupcamSim_fireEvent("cam", 0x80), 0);
}

TEST_F(SimFault, plan_unplugs_after_exactly_the_same_frame_in_every_run) {
    for (int run = 0; run < 3; ++run) {
        load(makeScene({SimCameraText()},
                       R"([{"do": "unplug", "camera": "cam", "afterFrames": 5}])"));
        const HToupcam handle = open();
        FrameLog log(0);
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        ASSERT_TRUE(log.waitForLoss());
        Toupcam_Close(handle);
        EXPECT_EQ(log.total(), 6U); // five frames and the loss
        EXPECT_EQ(readCounts().delivered, 5U);
    }
}

TEST_F(SimFault, plan_plugs_a_camera_in_at_its_time) {
    SimCameraText camera;
    camera.extra = R"(, "plugged": false)";
    load(makeScene({camera}, R"([{"do": "plug", "camera": "cam", "atMs": 5},
                               {"do": "unplug", "camera": "cam", "atMs": 1000000}])"));
    ToupcamDeviceV2 records[TOUPCAM_MAX];
    EXPECT_TRUE(eventually([&] { return Toupcam_EnumV2(records) == 1; }));
}

TEST_F(SimFault, steps_of_the_plan_at_0_ms_are_done_when_the_scene_is_there) {
    SimCameraText camera;
    camera.extra = R"(, "plugged": false)";
    for (int i = 0; i < 20; ++i) {
        load(makeScene({camera}, R"([{"do": "plug", "camera": "cam", "atMs": 0},
                                   {"do": "unplug", "camera": "cam", "atMs": 1000000}])"));
        ToupcamDeviceV2 records[TOUPCAM_MAX];
        ASSERT_EQ(Toupcam_EnumV2(records), 1U);
    }
}

TEST_F(SimFault, plan_pushes_a_malformed_frame_between_two_others) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "pushMalformed", "camera": "cam", "afterFrames": 2, "width": 7,
                      "height": -3, "bits": 24, "sizeImage": 99}])"));
    FrameLog log;
    const HToupcam handle = open();
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(4));
    Toupcam_Close(handle);
    EXPECT_EQ(log.frames()[1].header.biWidth, 96);
    EXPECT_EQ(log.frames()[2].header.biWidth, 7);
    EXPECT_EQ(log.frames()[2].header.biHeight, -3);
    EXPECT_EQ(log.frames()[2].header.biSizeImage, 99U);
    EXPECT_EQ(log.frames()[3].header.biWidth, 96);
}

TEST_F(SimFault, all_bytes_that_a_malformed_header_declares_can_be_read) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "pushMalformed", "camera": "cam", "afterFrames": 1, "width": 16384,
                      "height": 16384, "bits": 24, "sizeImage": 805306368}])"));
    std::atomic<int> last = -1;
    const auto readLast = [](const void* data, const BITMAPINFOHEADER* header, int, void* context) {
        if (header != nullptr && header->biWidth == 16384)
            *static_cast<std::atomic<int>*>(context) =
                static_cast<const char*>(data)[header->biSizeImage - 1];
    };
    const HToupcam handle = open();
    ASSERT_EQ(Toupcam_StartPushMode(handle, readLast, &last), S_OK);
    EXPECT_TRUE(eventually([&] { return last == 0; }));
    Toupcam_Close(handle);
}

TEST_F(SimFault, plan_holds_and_releases_frames) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "hold", "camera": "cam", "afterFrames": 3},
                     {"do": "release", "camera": "cam", "afterFrames": 10}])"));
    FrameLog log(0);
    const HToupcam handle = open();
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(4));
    Toupcam_Close(handle);
    EXPECT_GE(readCounts().produced - readCounts().delivered, 7U);
}

TEST_F(SimFault, plan_fires_events_in_pull_mode) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "event", "camera": "cam", "afterFrames": 1, "event": 130}])"));
    EventLog events;
    const HToupcam handle = open();
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    EXPECT_TRUE(events.waitFor(TOUPCAM_EVENT_NOFRAMETIMEOUT));
    Toupcam_Close(handle);
}

TEST_F(SimFault, plan_fails_and_delays_calls_from_the_start) {
    load(makeScene({SimCameraText()},
                   R"([{"do": "fail", "function": "Toupcam_put_Option", "option": 46, "skip": 0,
                      "count": 1, "result": -5},
                     {"do": "delay", "function": "Toupcam_get_MaxSpeed", "ms": 1}])"));
    const HToupcam handle = open();
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_FRAMERATE, 0), S_OK);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BANDWIDTH, 95), -5);
    EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_BANDWIDTH, 95), E_NOTIMPL);
    EXPECT_EQ(Toupcam_get_MaxSpeed(handle), 0);
}

// The first frames of a ring that arrive when half of them are lost at random.
std::vector<int> arrivals(const std::string& seed) {
    SimCameraText camera;
    camera.source = R"({"kind": "ring", "frames": 64, "unpaced": true})";
    std::string scene =
        makeScene({camera}, R"([{"do": "lose", "camera": "cam", "probability": 0.5}])");
    scene.insert(1, R"("seed": )" + seed + ", ");
    EXPECT_EQ(ToupcamSim_loadScene(scene.c_str()), nullptr);
    const HToupcam handle = Toupcam_Open("cam");
    FrameLog log(20);
    EXPECT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_TRUE(log.waitFor(20));
    Toupcam_Close(handle);
    std::vector<int> seen;
    for (const PushedFrame& frame : log.frames())
        seen.push_back(frame.bytes[0]);
    return seen;
}

TEST_F(SimFault, random_losses_are_the_same_for_the_same_seed) {
    const std::vector<int> first = arrivals("7");
    EXPECT_EQ(arrivals("7"), first);
    EXPECT_NE(arrivals("8"), first);
    EXPECT_GT(first.back(), 25); // twenty frames arrived, about as many were lost
}

TEST_F(SimFault, new_scene_discards_the_faults_of_the_old_one) {
    ToupcamSim_failCall("Toupcam_Open", 0, 0, E_FAIL);
    load(makeScene({SimCameraText()}));
    EXPECT_NE(open(), nullptr);
}

} // namespace
