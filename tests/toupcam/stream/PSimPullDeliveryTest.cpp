// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

#include <atomic>

namespace {

class SimPull : public SimTest {
protected:
    HToupcam startPull(const SimCameraText& camera) {
        m_handle = openOnly(camera);
        EXPECT_EQ(Toupcam_StartPullModeWithCallback(m_handle, EventLog::onEvent, &m_events), S_OK);
        return m_handle;
    }

    HToupcam m_handle = nullptr;
    EventLog m_events;
};

TEST_F(SimPull, event_announces_a_frame_and_a_query_without_a_buffer_keeps_it) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamSim_holdFrames("cam", 1);
    ToupcamFrameInfoV2 info{};
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 32, &info), S_OK);
    EXPECT_EQ(info.width, 96U);
    EXPECT_EQ(info.height, 64U);
    EXPECT_EQ(info.flag, TOUPCAM_FRAMEINFO_FLAG_SEQ | TOUPCAM_FRAMEINFO_FLAG_TIMESTAMP);
    std::vector<std::uint8_t> pixels(96 * 64 * 4);
    EXPECT_EQ(Toupcam_PullImageV2(handle, pixels.data(), 32, &info), S_OK);
    EXPECT_EQ(pixels[4 * (32 * 96 + 16)], 255);
}

TEST_F(SimPull, pulled_frame_is_gone_until_the_next) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamSim_holdFrames("cam", 1);
    std::vector<std::uint8_t> pixels(96 * 64 * 4);
    // One more frame may have been in delivery when the camera was held, and come between two
    // calls.
    ASSERT_TRUE(eventually([&] {
        return Toupcam_PullImageV2(handle, pixels.data(), 24, nullptr) == E_PENDING &&
               Toupcam_PullImageV2(handle, nullptr, 24, nullptr) == E_PENDING;
    }));
    ToupcamSim_holdFrames("cam", 0);
    // Not at the next event: it may be that of the frame that came between two calls.
    EXPECT_TRUE(eventually(
        [&] { return Toupcam_PullImageV2(handle, pixels.data(), 24, nullptr) == S_OK; }));
}

struct PullRow {
    const char* name;
    unsigned bits; ///< of the camera
    int pulled;
    int blueFirst;
    int red[4]; ///< the red patch's bytes; the fourth only with 32 bits
    int blue[4];
};

const PullRow pulls[] = {
    {"24 bits red first", 24, 24, 0, {255, 0, 0}, {0, 0, 255}},
    {"24 bits blue first", 24, 24, 1, {0, 0, 255}, {255, 0, 0}},
    {"32 bits red first", 24, 32, 0, {255, 0, 0, 0}, {0, 0, 255, 0}},
    {"32 bits blue first", 24, 32, 1, {0, 0, 255, 0}, {255, 0, 0, 0}},
    {"24 bits of a grey camera", 8, 24, 1, {87, 87, 87}, {39, 39, 39}},
    {"32 bits of a grey camera", 8, 32, 0, {87, 87, 87, 0}, {39, 39, 39, 0}},
};

class SimPullFormat : public SimTest, public WithSimRow<PullRow> {};

ROWS_IN(rows, SimPullFormat, pulls);

ROW_TEST(SimPullFormat, of_a_frame_1003_pixels_wide_has_its_colours_in_place) {
    const PullRow& row = GetParam();
    SimCameraText camera;
    camera.width = 1003;
    camera.bits = row.bits;
    const HToupcam handle = openOnly(camera);
    EventLog events;
    Toupcam_put_Option(handle, TOUPCAM_OPTION_BYTEORDER, row.blueFirst);
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    const std::size_t pixel = std::size_t(row.pulled) / 8;
    const std::size_t stride = (1003 * pixel + 3) / 4 * 4;
    std::vector<std::uint8_t> pixels(stride * 64, 0x77);
    ASSERT_EQ(Toupcam_PullImageV2(handle, pixels.data(), row.pulled, nullptr), S_OK);
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    for (const std::size_t y : {16U, 32U, 47U}) {
        for (std::size_t c = 0; c < pixel; ++c) {
            EXPECT_EQ(pixels[y * stride + 167 * pixel + c], row.red[c]) << y << " " << c;
            EXPECT_EQ(pixels[y * stride + 835 * pixel + c], row.blue[c]) << y << " " << c;
        }
    }
    EXPECT_EQ(pixels[48 * stride + 167 * pixel], 0); // below the patch
}

TEST_F(SimPull, depths_other_than_24_and_32_are_refused) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    std::uint8_t pixel[8];
    EXPECT_EQ(Toupcam_PullImageV2(handle, pixel, 16, nullptr), E_INVALIDARG);
    EXPECT_EQ(Toupcam_PullStillImageV2(handle, pixel, 48, nullptr), E_INVALIDARG);
}

TEST_F(SimPull, still_picture_has_its_own_event_and_its_own_place) {
    const HToupcam handle = startPull(SimCameraText());
    ToupcamFrameInfoV2 info{};
    EXPECT_EQ(Toupcam_PullStillImageV2(handle, nullptr, 24, &info), E_PENDING);
    ASSERT_EQ(Toupcam_Snap(handle, 1), S_OK);
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_STILLIMAGE));
    EXPECT_EQ(Toupcam_PullStillImageV2(handle, nullptr, 24, &info), S_OK);
    EXPECT_EQ(info.width, 48U);
    std::vector<std::uint8_t> pixels(48 * 3 * 32);
    EXPECT_EQ(Toupcam_PullStillImageV2(handle, pixels.data(), 24, &info), S_OK);
    EXPECT_EQ(Toupcam_PullStillImageV2(handle, pixels.data(), 24, &info), E_PENDING);
    EXPECT_EQ(m_events.count(TOUPCAM_EVENT_STILLIMAGE), 1U);
}

TEST_F(SimPull, newer_frame_replaces_one_that_was_not_pulled) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamFrameInfoV2 first{};
    ASSERT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &first), S_OK);
    ToupcamFrameInfoV2 later{};
    ASSERT_TRUE(eventually([&] {
        return Toupcam_PullImageV2(handle, nullptr, 24, &later) == S_OK &&
               later.seq >= first.seq + 2;
    }));
    EXPECT_GT(later.timestamp, first.timestamp);
}

TEST_F(SimPull, frame_whose_size_was_queried_is_the_one_that_is_pulled) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_EQ(Toupcam_put_eSize(handle, 1), S_OK);
    ToupcamFrameInfoV2 queried{};
    ASSERT_TRUE(eventually([&] {
        return Toupcam_PullImageV2(handle, nullptr, 24, &queried) == S_OK && queried.width == 48;
    }));
    // The client allocates its buffer for that size. Frames four times as large arrive meanwhile.
    ASSERT_EQ(Toupcam_put_eSize(handle, 0), S_OK);
    unsigned long long before = 0;
    unsigned long long now = 0;
    ToupcamSim_frameCount("cam", nullptr, &before);
    ASSERT_TRUE(eventually([&] {
        ToupcamSim_frameCount("cam", nullptr, &now);
        return now >= before + 3;
    }));
    std::vector<std::uint8_t> pixels(48 * 32 * 3);
    ToupcamFrameInfoV2 pulled{};
    EXPECT_EQ(Toupcam_PullImageV2(handle, pixels.data(), 24, &pulled), S_OK);
    EXPECT_EQ(pulled.width, 48U);
    EXPECT_EQ(pulled.seq, queried.seq);
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &pulled), S_OK);
    EXPECT_EQ(pulled.width, 96U);
    EXPECT_GT(pulled.seq, queried.seq);
}

TEST_F(SimPull, sequence_number_shows_the_frames_that_were_lost_in_the_camera) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ToupcamSim_holdFrames("cam", 1);
    const auto before = readCounts();
    ASSERT_TRUE(eventually([&] { return readCounts().produced >= before.produced + 10; }));
    ToupcamSim_holdFrames("cam", 0);
    ASSERT_TRUE(eventually([&] { return readCounts().delivered > before.delivered + 1; }));
    ToupcamFrameInfoV2 info{};
    ASSERT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &info), S_OK);
    EXPECT_GE(info.seq, before.produced + 9);
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_GE(readCounts().produced - readCounts().delivered, 8U);
}

TEST_F(SimPull, slow_event_callback_gets_no_backlog_of_frame_events) {
    Gate gate;
    m_events.inside = [&](unsigned) { gate.pass(); };
    startPull(SimCameraText());
    ASSERT_TRUE(gate.waitForSomebody());
    ASSERT_TRUE(eventually([] { return readCounts().delivered >= 20; }));
    ToupcamSim_holdFrames("cam", 1);
    gate.open();
    // One in progress, at most one waiting; the event fired here comes after those.
    ASSERT_EQ(ToupcamSim_fireEvent("cam", 0x1234), 1);
    EXPECT_LE(m_events.count(TOUPCAM_EVENT_IMAGE), 3U);
    Toupcam_Stop(m_handle); // before the gate is destroyed
}

TEST_F(SimPull, unpaced_ring_waits_until_a_frame_was_announced) {
    SimCameraText camera;
    camera.source = R"({"kind": "ring", "frames": 4, "unpaced": true})";
    Gate gate;
    m_events.inside = [&](unsigned) { gate.pass(); };
    const HToupcam handle = startPull(camera);
    ASSERT_TRUE(gate.waitForSomebody());
    gate.open();
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE, 50));
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_LE(readCounts().produced, m_events.count(TOUPCAM_EVENT_IMAGE) + 2);
}

TEST_F(SimPull, pulling_needs_a_running_stream) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, nullptr), E_UNEXPECTED);
}

TEST_F(SimPull, frames_can_be_pulled_inside_the_event_callback) {
    std::vector<std::uint8_t> pixels(96 * 64 * 4);
    std::atomic<int> pulled{0};
    m_events.inside = [&](unsigned code) {
        if (code == TOUPCAM_EVENT_IMAGE &&
            Toupcam_PullImageV2(m_handle, pixels.data(), 32, nullptr) == S_OK)
            ++pulled;
    };
    m_handle = openOnly(SimCameraText());
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(m_handle, EventLog::onEvent, &m_events), S_OK);
    EXPECT_TRUE(eventually([&] { return pulled >= 5; }));
    Toupcam_Stop(m_handle); // before what the callback uses is destroyed
}

TEST_F(SimPull, stop_from_inside_the_event_callback_is_refused) {
    std::atomic<int> result{0};
    m_events.inside = [&](unsigned) { result = Toupcam_Stop(m_handle); };
    m_handle = openOnly(SimCameraText());
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(m_handle, EventLog::onEvent, &m_events), S_OK);
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE, 2));
    EXPECT_EQ(result, E_WRONG_THREAD);
    Toupcam_Stop(m_handle);
}

TEST_F(SimPull, close_from_inside_the_event_callback_ends_without_a_deadlock) {
    // Static, because the threads end by themselves and nothing waits for the rest of the callback.
    static EventLog events;
    const HToupcam handle = openOnly(SimCameraText());
    events.inside = [handle](unsigned) { Toupcam_Close(handle); };
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE));
    EXPECT_EQ(Toupcam_Stop(handle), E_INVALIDARG);
}

TEST_F(SimPull, unplugging_is_reported_by_the_disconnect_event) {
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_IMAGE));
    ASSERT_EQ(ToupcamSim_unplug("cam"), 1);
    ASSERT_TRUE(m_events.waitFor(TOUPCAM_EVENT_DISCONNECTED));
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, nullptr), E_GEN_FAILURE);
    EXPECT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(m_events.count(TOUPCAM_EVENT_DISCONNECTED), 1U);
}

TEST_F(SimPull, stop_waits_for_the_event_callback_in_progress) {
    Gate gate;
    std::atomic<bool> stopped{false};
    std::atomic<bool> late{false};
    m_events.inside = [&](unsigned) {
        gate.pass();
        late = late || stopped;
    };
    const HToupcam handle = startPull(SimCameraText());
    ASSERT_TRUE(gate.waitForSomebody());
    std::thread stopper([&] {
        Toupcam_Stop(handle);
        stopped = true;
    });
    // For all others the stream has ended long before the callback returns.
    ASSERT_TRUE(eventually([&] { return Toupcam_Snap(handle, 0) == E_UNEXPECTED; }));
    EXPECT_FALSE(stopped);
    gate.open();
    stopper.join();
    EXPECT_FALSE(late);
}

} // namespace
