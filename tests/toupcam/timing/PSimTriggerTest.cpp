// SPDX-License-Identifier: MIT
#include <toupcam/SimTestSupport.h>

namespace {

constexpr int video = 0;
constexpr int software = 1;
constexpr int external = 2;
constexpr unsigned hour = 3600000000U; // microseconds; no test waits for its end

SimCameraText triggered(const std::string& more = "") {
    SimCameraText camera;
    camera.extra = R"(, "flags": ["TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL"],
                       "exposure": {"default": 100, "max": 4000000000, "auto": false})" +
                   more;
    return camera;
}

class SimTrigger : public SimTest {
protected:
    /// Loads the camera under test, and a second one that streams continuously for comparison.
    HToupcam openBesideAnother(const SimCameraText& camera, const std::string& faults = "[]") {
        SimCameraText other = triggered();
        other.id = "other";
        load(makeScene({camera, other}, faults));
        const HToupcam running = open("other");
        EXPECT_EQ(Toupcam_StartPushMode(running, FrameLog::onData, &m_others), S_OK);
        return open();
    }
    HToupcam startIn(int mode, FrameLog& log, const std::string& more = "") {
        const HToupcam handle = openBesideAnother(triggered(more));
        EXPECT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, mode), S_OK);
        EXPECT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        return handle;
    }
    /// Waits until the other camera, which is as fast, has taken this many frames.
    void letOtherTake(std::size_t frames) {
        ASSERT_TRUE(m_others.waitFor(m_others.total() + frames));
    }

    FrameLog m_others{0};
};

TEST_F(SimTrigger, without_a_trigger_no_frame_comes) {
    FrameLog log;
    startIn(software, log);
    letOtherTake(30);
    EXPECT_EQ(log.total(), 0U);
    EXPECT_EQ(readCounts().produced, 0U);
}

TEST_F(SimTrigger, requested_number_of_frames_comes) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    for (const unsigned short count : {std::uint16_t{1}, std::uint16_t{5}}) {
        const std::size_t before = log.total();
        ASSERT_EQ(Toupcam_Trigger(handle, count), S_OK);
        ASSERT_TRUE(log.waitFor(before + count));
        letOtherTake(20);
        EXPECT_EQ(log.total(), before + count);
    }
    EXPECT_EQ(readCounts().produced, 6U);
}

TEST_F(SimTrigger, endless_run_goes_on_until_it_is_stopped) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    ASSERT_EQ(Toupcam_Trigger(handle, 0xffff), S_OK);
    ASSERT_TRUE(log.waitFor(30));
    ASSERT_EQ(Toupcam_Trigger(handle, 0), S_OK);
    letOtherTake(2); // one frame may have been in delivery
    const std::size_t total = log.total();
    letOtherTake(20);
    EXPECT_EQ(log.total(), total);
}

TEST_F(SimTrigger, new_count_replaces_the_old_one) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    ASSERT_EQ(Toupcam_Trigger(handle, 60000), S_OK);
    ASSERT_TRUE(log.waitFor(3));
    ASSERT_EQ(Toupcam_Trigger(handle, 2), S_OK);
    const std::size_t total = log.total();
    letOtherTake(30);
    EXPECT_GE(log.total(), total + 1); // one of the two may have been counted already
    EXPECT_LE(log.total(), total + 3); // or one before them may be in delivery
}

TEST_F(SimTrigger, runs_only_in_software_mode_on_a_running_stream) {
    const HToupcam handle = openOnly(triggered());
    EXPECT_EQ(Toupcam_Trigger(handle, 1), E_UNEXPECTED);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_EQ(Toupcam_Trigger(handle, 1), E_UNEXPECTED);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, external), S_OK);
    EXPECT_EQ(Toupcam_Trigger(handle, 0xffff), E_UNEXPECTED);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    EXPECT_EQ(Toupcam_Trigger(handle, 1), S_OK);
}

TEST_F(SimTrigger, stopping_a_run_that_does_not_exist_succeeds_at_once) {
    const HToupcam handle = openOnly(triggered());
    EXPECT_EQ(Toupcam_Trigger(handle, 0), S_OK);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    EXPECT_EQ(Toupcam_Trigger(handle, 0), S_OK);
}

TEST_F(SimTrigger, camera_without_a_trigger_has_none) {
    const HToupcam handle = openOnly({});
    EXPECT_EQ(Toupcam_Trigger(handle, 1), E_NOTIMPL);
    EXPECT_EQ(Toupcam_Trigger(handle, 0), E_NOTIMPL);
}

TEST_F(SimTrigger, frames_to_come_are_cancelled_when_the_mode_is_left) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    ASSERT_EQ(Toupcam_Trigger(handle, 60000), S_OK);
    ASSERT_TRUE(log.waitFor(2));
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, video), S_OK);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    letOtherTake(2);
    const std::size_t total = log.total();
    letOtherTake(20);
    EXPECT_EQ(log.total(), total);
}

TEST_F(SimTrigger, video_goes_on_by_itself_afterwards) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    letOtherTake(20);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, video), S_OK);
    EXPECT_TRUE(log.waitFor(10));
}

TEST_F(SimTrigger, time_without_a_trigger_counts_no_frames) {
    SimCameraText camera = triggered();
    camera.fps = 5; // 0.2 s a frame
    const HToupcam handle = openBesideAnother(camera);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    letOtherTake(200); // a second: five periods
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, video), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    EXPECT_EQ(readCounts().produced, 1U);
}

TEST_F(SimTrigger, triggered_frame_takes_its_exposure_time) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 50000), S_OK); // ten frames of the other camera
    const std::size_t before = m_others.total();
    ASSERT_EQ(Toupcam_Trigger(handle, 4), S_OK);
    ASSERT_TRUE(log.waitFor(4));
    EXPECT_GE(readCounts("other").produced, before + 38);
}

TEST_F(SimTrigger, still_picture_can_be_taken_between_triggers) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    ASSERT_EQ(Toupcam_Snap(handle, 1), S_OK);
    ASSERT_TRUE(log.waitForStill());
    EXPECT_EQ(log.last().header.biWidth, 48);
    EXPECT_EQ(readCounts().produced, 0U);
}

TEST_F(SimTrigger, pulled_frames_can_be_triggered) {
    const HToupcam handle = openOnly(triggered());
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    EventLog events;
    ASSERT_EQ(Toupcam_StartPullModeWithCallback(handle, EventLog::onEvent, &events), S_OK);
    ToupcamFrameInfoV2 info{};
    EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &info), E_PENDING);
    for (unsigned number = 0; number < 3; ++number) {
        ASSERT_EQ(Toupcam_Trigger(handle, 1), S_OK);
        ASSERT_TRUE(events.waitFor(TOUPCAM_EVENT_IMAGE, number + 1));
        EXPECT_EQ(Toupcam_PullImageV2(handle, nullptr, 24, &info), S_OK);
        EXPECT_EQ(info.seq, number);
    }
}

TEST_F(SimTrigger, unpaced_ring_waits_for_its_trigger_as_well) {
    SimCameraText camera = triggered();
    camera.source = R"({"kind": "ring", "unpaced": true})";
    const HToupcam handle = openBesideAnother(camera);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    letOtherTake(10);
    EXPECT_EQ(log.total(), 0U);
    ASSERT_EQ(Toupcam_Trigger(handle, 3), S_OK);
    ASSERT_TRUE(log.waitFor(3));
    letOtherTake(10);
    EXPECT_EQ(log.total(), 3U);
}

TEST_F(SimTrigger, each_signal_at_the_input_gives_one_frame) {
    FrameLog log;
    startIn(external, log);
    letOtherTake(20);
    EXPECT_EQ(log.total(), 0U);
    for (std::size_t count = 1; count <= 3; ++count) {
        ASSERT_TRUE(eventually([] { return ToupcamSim_fireTrigger("cam") == 1; }));
        ASSERT_TRUE(log.waitFor(count));
    }
    letOtherTake(20);
    EXPECT_EQ(log.total(), 3U);
}

TEST_F(SimTrigger, signal_during_an_exposure_is_missed_and_counted) {
    FrameLog log;
    const HToupcam handle = startIn(external, log);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, hour), S_OK);
    EXPECT_EQ(ToupcamSim_fireTrigger("cam"), 1);
    EXPECT_EQ(ToupcamSim_fireTrigger("cam"), 0);
    EXPECT_EQ(ToupcamSim_fireTrigger("cam"), 0);
    EXPECT_EQ(ToupcamSim_missedTriggers("cam"), 2U);
    EXPECT_EQ(log.total(), 0U);
}

TEST_F(SimTrigger, signal_means_nothing_in_other_modes_or_without_a_stream) {
    FrameLog log;
    const HToupcam handle = startIn(software, log);
    EXPECT_EQ(ToupcamSim_fireTrigger("cam"), 0);
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, external), S_OK);
    ASSERT_EQ(Toupcam_Stop(handle), S_OK);
    EXPECT_EQ(ToupcamSim_fireTrigger("cam"), 0);
    EXPECT_EQ(ToupcamSim_fireTrigger("unknown"), 0);
    EXPECT_EQ(ToupcamSim_missedTriggers("cam"), 0U);
}

TEST_F(SimTrigger, source_at_the_input_sends_its_number_of_signals) {
    FrameLog log;
    startIn(external, log, R"(, "externalTrigger": {"periodMs": 20, "count": 7})");
    ASSERT_TRUE(eventually([&log] { return log.total() + ToupcamSim_missedTriggers("cam") == 7; }));
    letOtherTake(20);
    EXPECT_EQ(log.total() + ToupcamSim_missedTriggers("cam"), 7U);
    EXPECT_GE(log.total(), 1U);
}

TEST_F(SimTrigger, source_that_is_too_fast_loses_signals) {
    FrameLog log;
    startIn(external, log, R"(, "externalTrigger": {"periodMs": 1})"); // a frame takes 5 ms
    ASSERT_TRUE(log.waitFor(5));
    EXPECT_GE(ToupcamSim_missedTriggers("cam"), 15U);
}

TEST_F(SimTrigger, source_is_ignored_in_video_mode) {
    FrameLog log;
    startIn(software, log, R"(, "externalTrigger": {"periodMs": 1})");
    letOtherTake(20);
    EXPECT_EQ(log.total(), 0U);
}

TEST_F(SimTrigger, dropped_trigger_frame_never_comes) {
    const HToupcam handle =
        openBesideAnother(triggered(), R"([{"do": "dropTrigger", "camera": "cam", "nth": 2}])");
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(5)); // frames of the video do not count
    ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, software), S_OK);
    letOtherTake(3);
    const FrameCounts before = readCounts();
    ASSERT_EQ(Toupcam_Trigger(handle, 3), S_OK);
    ASSERT_TRUE(eventually([&] { return readCounts().delivered == before.delivered + 2; }));
    letOtherTake(10);
    EXPECT_EQ(readCounts().produced, before.produced + 3);
    EXPECT_EQ(readCounts().delivered, before.delivered + 2);
}

/// Actions that end an exposure of an hour at once.
using SimLongExposure = SimTrigger;

TEST_F(SimLongExposure, ends_with_the_stream) {
    for (const int mode : {video, software}) {
        const HToupcam handle = openOnly(triggered());
        ASSERT_EQ(Toupcam_put_ExpoTime(handle, hour), S_OK);
        ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, mode), S_OK);
        FrameLog log;
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        Toupcam_Trigger(handle, 1);
        EXPECT_EQ(Toupcam_Stop(handle), S_OK);
        EXPECT_EQ(log.total(), 0U);
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        Toupcam_Close(handle);
    }
}

TEST_F(SimLongExposure, ends_when_a_shorter_time_is_set) {
    for (const int mode : {video, software}) {
        const HToupcam handle = openOnly(triggered());
        ASSERT_EQ(Toupcam_put_ExpoTime(handle, hour), S_OK);
        ASSERT_EQ(Toupcam_put_Option(handle, TOUPCAM_OPTION_TRIGGER, mode), S_OK);
        FrameLog log;
        ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
        Toupcam_Trigger(handle, 1);
        ASSERT_EQ(Toupcam_put_ExpoTime(handle, 1000), S_OK);
        EXPECT_TRUE(log.waitFor(1));
        Toupcam_Close(handle);
    }
}

TEST_F(SimLongExposure, cut_short_is_one_frame_and_no_more) {
    SimCameraText camera = triggered();
    camera.fps = 2;
    const HToupcam handle = openBesideAnother(camera);
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, hour), S_OK);
    FrameLog log;
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    letOtherTake(400); // two seconds: four periods of the camera
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 1000), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    EXPECT_EQ(readCounts().produced, 1U);
}

TEST_F(SimLongExposure, gives_no_frame_before_its_time) {
    const HToupcam handle = openBesideAnother(triggered());
    ASSERT_EQ(Toupcam_put_ExpoTime(handle, 1000000), S_OK); // 200 frames of the other camera
    FrameLog log;
    const std::size_t before = m_others.total();
    ASSERT_EQ(Toupcam_StartPushMode(handle, FrameLog::onData, &log), S_OK);
    ASSERT_TRUE(log.waitFor(1));
    EXPECT_GE(readCounts("other").produced, before + 190);
}

} // namespace
