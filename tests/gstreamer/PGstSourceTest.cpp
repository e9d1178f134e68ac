// SPDX-License-Identifier: MIT
#include <gstreamer/PGstSource.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/camera/PGstHost.h>
#include <gstreamer/camera/PQtLoop.h>

#include <PCd/device/PDeviceManager.h>

#include <gmock/gmock.h>

#include <atomic>

using testing::HasSubstr;

namespace {

class PGstSourceTest : public GstFixture {
protected:
    /// Waits, with events, until this number of cameras is plugged in.
    static bool areThere(qsizetype cameras) {
        return waitUntil(
            [cameras] { return PGstHost::instance().manager().devices().size() == cameras; });
    }
};

/// Holds the streaming thread with its first frame.
struct Hold {
    std::atomic<bool> isHeld = true;
    std::atomic<bool> hasFirst = false;

    static GstPadProbeReturn probe(GstPad*, GstPadProbeInfo*, gpointer data) {
        auto* const hold = static_cast<Hold*>(data);
        hold->hasFirst = true;
        while (hold->isHeld)
            g_usleep(1000);
        return GST_PAD_PROBE_OK;
    }
};

/// The first byte of the upper left pixel, which the camera sends black.
guint8 corner(GstBuffer* buffer) {
    guint8 value = 0;
    gst_buffer_extract(buffer, 0, &value, 1);
    return value;
}

/// The property "stats".
struct FrameStats {
    guint64 arrived = 0;
    guint64 delivered = 0;
    guint64 dropped = 0;
    guint64 discarded = 0;
    guint64 waiting = 0;

    static FrameStats of(const GstRun& run) {
        FrameStats stats;
        GstStructure* structure = nullptr;
        g_object_get(run.source(), "stats", &structure, nullptr);
        EXPECT_TRUE(gst_structure_get(
            structure, "arrived", G_TYPE_UINT64, &stats.arrived, "delivered", G_TYPE_UINT64,
            &stats.delivered, "dropped", G_TYPE_UINT64, &stats.dropped, "discarded", G_TYPE_UINT64,
            &stats.discarded, "waiting", G_TYPE_UINT64, &stats.waiting, nullptr));
        gst_structure_free(structure);
        return stats;
    }
    bool isBalanced() const { return arrived == delivered + dropped + discarded + waiting; }
};

std::string takeWarning(GstRun& run) {
    const GstPtr<GstMessage> warning = run.message(GST_MESSAGE_WARNING);
    if (!warning)
        return {};
    GError* error = nullptr;
    gst_message_parse_warning(warning.get(), &error, nullptr);
    std::string text = error->message;
    g_error_free(error);
    return text;
}

} // namespace

TEST_F(PGstSourceTest, a_camera_that_does_not_exist_is_an_error_that_names_it) {
    GstRun run(pipeline("camera=Nobody"));
    EXPECT_EQ(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(run.error(), HasSubstr("Nobody"));
}

TEST_F(PGstSourceTest, a_mode_or_setting_that_does_not_exist_is_an_error_that_names_it) {
    GstRun mode(pipeline("mode=7x7"));
    EXPECT_EQ(mode.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(mode.error(), HasSubstr("\"7x7\": expected one of"));
    GstRun setting(pipeline("settings=wings=2"));
    EXPECT_EQ(setting.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(setting.error(), HasSubstr("no \"wings\": expected one of"));
    EXPECT_EQ(ToupcamSim_openHandles(), presentCameras);
}

TEST_F(PGstSourceTest, modes_that_the_camera_does_not_report_are_an_error_without_zeros) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk()); // ends earlier faults
    ToupcamSim_failCall("Toupcam_get_Resolution", 0, 0, E_FAIL);
    for (const char* more : {"", "mode=64x48"}) {
        GstRun run(pipeline(more));
        EXPECT_EQ(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
        EXPECT_EQ(run.error(), "camera Simulated-T-T1: the camera did not report its modes");
    }
    EXPECT_EQ(ToupcamSim_openHandles(), presentCameras);
}

TEST_F(PGstSourceTest, a_camera_is_used_by_one_element_at_a_time) {
    GstRun first(pipeline());
    first.setState(GST_STATE_PLAYING);
    GstRun second(pipeline());
    EXPECT_EQ(second.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(second.error(), HasSubstr("used by another element"));
    first.setState(GST_STATE_NULL);
    EXPECT_NE(second.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
}

TEST_F(PGstSourceTest, caps_after_the_element_choose_the_mode) {
    GstRun run(source("! video/x-raw,width=32 ! fakesink name=sink"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    EXPECT_EQ(gst_buffer_get_size(run.buffers()[0]), 32U * 24U * 3U);
}

TEST_F(PGstSourceTest, caps_that_no_mode_has_are_an_error_with_the_modes) {
    GstRun run(source("! video/x-raw,width=33 ! fakesink name=sink"));
    EXPECT_EQ(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(run.error(), HasSubstr("width=(int)64"));
}

TEST_F(PGstSourceTest, caps_that_no_mode_has_may_be_those_of_a_region) {
    GstRun run(source("settings=roi=0,0,48,32 ! video/x-raw,width=48 ! fakesink name=sink"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    EXPECT_EQ(gst_buffer_get_size(run.buffers()[0]), 48U * 32U * 3U);
    GstRun wrong(source("camera=1 settings=negative=on ! video/x-raw,width=33 ! "
                        "fakesink name=sink"));
    wrong.setState(GST_STATE_PLAYING);
    EXPECT_THAT(wrong.error(), HasSubstr("the camera sends video/x-raw"));
}

TEST_F(PGstSourceTest, a_format_that_the_camera_does_not_send_is_an_error_with_the_fix) {
    GstRun run(source("! video/x-raw,format=GRAY8 ! fakesink name=sink"));
    run.setState(GST_STATE_PLAYING);
    EXPECT_THAT(run.error(), HasSubstr("videoconvert"));
}

TEST_F(PGstSourceTest, an_unplugged_camera_is_an_error_or_the_end) {
    GstRun error(pipeline());
    error.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(error.waitForBuffers(1));
    ToupcamSim_unplug("one");
    EXPECT_THAT(error.error(), HasSubstr("camera Simulated-T-T1 was unplugged"));

    GstRun end(pipeline("on-unplug=eos camera=Simulated-T-T2"));
    end.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(end.waitForBuffers(1));
    ToupcamSim_unplug("two");
    // An error would come first, and the end of the stream after it.
    const auto ends = end.message(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    ASSERT_NE(ends, nullptr);
    EXPECT_EQ(GST_MESSAGE_TYPE(ends.get()), GST_MESSAGE_EOS);
}

TEST_F(PGstSourceTest, waits_for_an_unplugged_camera_and_restores_its_mode_and_settings) {
    GstRun run(pipeline("on-unplug=wait mode=32x24 settings=negative=on"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    ToupcamSim_unplug("one");
    ASSERT_NE(run.elementMessage("pcdsrc-unplugged"), nullptr);
    const std::size_t before = run.buffers().size();
    ToupcamSim_plug("one");
    ASSERT_NE(run.elementMessage("pcdsrc-plugged"), nullptr);
    ASSERT_TRUE(run.waitForBuffers(before + 2));
    EXPECT_EQ(gst_buffer_get_size(run.buffers().back()), 32U * 24U * 3U);
    EXPECT_EQ(corner(run.buffers().back()), 255); // black, made negative
}

TEST_F(PGstSourceTest, what_happened_to_a_camera_does_not_end_the_next_run) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PAUSED);
    ToupcamSim_unplug("one");
    ASSERT_TRUE(areThere(1));
    run.setState(GST_STATE_NULL);
    ToupcamSim_plug("one");
    ASSERT_TRUE(areThere(2));
    run.setState(GST_STATE_PLAYING);
    EXPECT_TRUE(run.waitForBuffers(2));
}

TEST_F(PGstSourceTest, a_camera_that_is_unplugged_before_it_starts_is_an_error_or_waited_for) {
    GstRun error(pipeline());
    error.setState(GST_STATE_READY);
    GstRun wait(pipeline("camera=1 on-unplug=wait"));
    wait.setState(GST_STATE_READY);
    ToupcamSim_unplug("one");
    ToupcamSim_unplug("two");
    ASSERT_TRUE(areThere(0));
    EXPECT_EQ(error.setState(GST_STATE_PAUSED), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(error.error(), HasSubstr("camera Simulated-T-T1 was unplugged"));
    EXPECT_NE(wait.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    ToupcamSim_plug("two");
    EXPECT_TRUE(wait.waitForBuffers(1));
}

TEST_F(PGstSourceTest, a_camera_that_is_gone_but_still_listed_does_not_answer) {
    GstRun ready(pipeline("camera=1"));
    ASSERT_EQ(ready.setState(GST_STATE_READY), GST_STATE_CHANGE_SUCCESS);
    // Without events, the register does not notice.
    PQtLoop::call([this, &ready] {
        ToupcamSim_unplug("one");
        ToupcamSim_unplug("two");
        const std::string silent = "camera Simulated-T-T1 does not answer: it was unplugged";
        GstRun run(pipeline());
        EXPECT_EQ(run.setState(GST_STATE_READY), GST_STATE_CHANGE_FAILURE);
        EXPECT_THAT(run.error(), HasSubstr(silent));
        GstRun other(pipeline("mode=32x24 settings=negative=on"));
        EXPECT_EQ(other.setState(GST_STATE_READY), GST_STATE_CHANGE_FAILURE);
        EXPECT_THAT(other.error(), HasSubstr(silent));
        EXPECT_EQ(ready.setState(GST_STATE_PAUSED), GST_STATE_CHANGE_FAILURE);
        EXPECT_THAT(ready.error(), HasSubstr("camera Simulated-T-T2 does not answer"));
    });
}

TEST_F(PGstSourceTest, a_camera_that_is_gone_but_still_listed_is_waited_for) {
    GstRun run(pipeline("on-unplug=wait"));
    ASSERT_EQ(run.setState(GST_STATE_READY), GST_STATE_CHANGE_SUCCESS);
    PQtLoop::call([&run] {
        ToupcamSim_unplug("one");
        EXPECT_NE(run.setState(GST_STATE_PAUSED), GST_STATE_CHANGE_FAILURE);
        EXPECT_NE(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    });
    ASSERT_TRUE(areThere(1));
    ToupcamSim_plug("one");
    EXPECT_TRUE(run.waitForBuffers(1));
}

TEST_F(PGstSourceTest, a_mode_that_cannot_be_is_one_error) {
    GstRun run(source("! video/x-raw,width=33 ! fakesink name=sink"));
    EXPECT_EQ(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    EXPECT_THAT(run.error(), HasSubstr("no mode that the pipeline takes"));
    const GstPtr<GstMessage> second(gst_bus_pop_filtered(run.bus(), GST_MESSAGE_ERROR));
    EXPECT_EQ(second, nullptr);
}

TEST_F(PGstSourceTest, what_happens_at_unplugging_is_chosen_before_the_camera_is_opened) {
    GstRun run(pipeline("on-unplug=eos"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    g_object_set(run.source(), "on-unplug", int(PGstOptions::OnUnplug::Error), nullptr);
    ToupcamSim_unplug("one");
    const auto ends = run.message(GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    ASSERT_NE(ends, nullptr);
    EXPECT_EQ(GST_MESSAGE_TYPE(ends.get()), GST_MESSAGE_EOS);
}

TEST_F(PGstSourceTest, stops_while_the_camera_is_unplugged) {
    GstRun run(pipeline("on-unplug=wait"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    ToupcamSim_unplug("one");
    ASSERT_NE(run.elementMessage("pcdsrc-unplugged"), nullptr);
    EXPECT_EQ(run.setState(GST_STATE_NULL), GST_STATE_CHANGE_SUCCESS);
}

TEST_F(PGstSourceTest, triggers_take_as_many_frames_as_requested) {
    GstRun run(pipeline("trigger=software trigger-exposure=5000 trigger-frames=3"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(3));
    gboolean fired = FALSE;
    g_signal_emit_by_name(run.source(), "trigger", 2, &fired);
    EXPECT_TRUE(fired);
    ASSERT_TRUE(run.waitForBuffers(5));
    unsigned long long produced = 0;
    unsigned long long lost = 0;
    ToupcamSim_frameCount("one", &produced, &lost);
    EXPECT_EQ(produced, 5U);
}

TEST_F(PGstSourceTest, a_trigger_without_trigger_mode_is_refused_with_a_warning) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PLAYING);
    gboolean fired = TRUE;
    g_signal_emit_by_name(run.source(), "trigger", 1, &fired);
    EXPECT_FALSE(fired);
    EXPECT_THAT(takeWarning(run), HasSubstr("expected trigger=software"));
}

TEST_F(PGstSourceTest, a_trigger_without_a_camera_is_refused_with_a_warning) {
    GstRun run(pipeline("trigger=software"));
    gst_bus_set_flushing(run.bus(), FALSE); // in NULL, a pipeline's bus drops messages
    gboolean fired = TRUE;
    g_signal_emit_by_name(run.source(), "trigger", 1, &fired);
    EXPECT_FALSE(fired);
    EXPECT_THAT(takeWarning(run), HasSubstr("no camera is open"));
}

TEST_F(PGstSourceTest, settings_of_a_running_camera_are_applied_or_reported) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    g_object_set(run.source(), "settings", "negative=on", nullptr);
    EXPECT_TRUE(waitUntil([&] { return corner(run.buffers().back()) == 255; }));
    g_object_set(run.source(), "settings", "negative=maybe", nullptr);
    EXPECT_THAT(takeWarning(run), HasSubstr("maybe"));
}

TEST_F(PGstSourceTest, a_slow_pipeline_loses_frames_by_name_and_holds_no_more_than_the_queue) {
    Hold hold;
    GstRun run(pipeline("queue-size=2"));
    const GstPtr<GstPad> pad(gst_element_get_static_pad(run.source(), "src"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, Hold::probe, &hold, nullptr);
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(waitUntil([&] { return hold.hasFirst.load(); }));
    // On a busy computer some may have been dropped before the first frame, and reported with it.
    const guint64 before = run.number("dropped");
    EXPECT_TRUE(waitUntil([&] { return run.number("dropped") >= before + 5; }));
    gst_bus_set_flushing(run.bus(), TRUE);
    gst_bus_set_flushing(run.bus(), FALSE);
    hold.isHeld = false;
    const GstPtr<GstMessage> lost = run.message(GST_MESSAGE_QOS);
    ASSERT_NE(lost, nullptr);
    GstFormat format = GST_FORMAT_UNDEFINED;
    guint64 passed = 0;
    guint64 dropped = 0;
    gst_message_parse_qos_stats(lost.get(), &format, &passed, &dropped);
    EXPECT_EQ(format, GST_FORMAT_BUFFERS);
    EXPECT_GE(dropped, before + 5);
    ASSERT_TRUE(run.waitForBuffers(2));
    const std::vector<GstBuffer*> buffers = run.buffers();
    EXPECT_GE(GST_BUFFER_OFFSET(buffers[1]) - GST_BUFFER_OFFSET(buffers[0]), 6U);
    EXPECT_TRUE(GST_BUFFER_FLAG_IS_SET(buffers[1], GST_BUFFER_FLAG_DISCONT));
}

TEST_F(PGstSourceTest, each_frame_of_a_slow_pipeline_is_counted_once) {
    Hold hold;
    GstRun run(pipeline("queue-size=2 trigger=software trigger-exposure=1000 trigger-frames=12"));
    const GstPtr<GstPad> pad(gst_element_get_static_pad(run.source(), "src"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, Hold::probe, &hold, nullptr);
    run.setState(GST_STATE_PLAYING);
    unsigned long long produced = 0;
    unsigned long long sent = 0;
    EXPECT_TRUE(waitUntil([&] {
        ToupcamSim_frameCount("one", &produced, &sent);
        return hold.hasFirst && produced == 12 && FrameStats::of(run).arrived == sent;
    }));
    const FrameStats held = FrameStats::of(run);
    EXPECT_EQ(held.delivered, 1U);
    EXPECT_LE(held.waiting, 2U);
    EXPECT_GT(held.dropped, 0U);
    EXPECT_TRUE(held.isBalanced());
    hold.isHeld = false;
    EXPECT_TRUE(run.waitForBuffers(1 + held.waiting));
    const FrameStats end = FrameStats::of(run);
    EXPECT_EQ(end.delivered, run.buffers().size());
    EXPECT_EQ(end.dropped, held.dropped);
    EXPECT_EQ(end.waiting, 0U);
    EXPECT_TRUE(end.isBalanced());
}

TEST_F(PGstSourceTest, each_frame_of_a_camera_that_goes_and_comes_is_counted_once) {
    Hold hold;
    GstRun run(pipeline("queue-size=2 on-unplug=wait"));
    const GstPtr<GstPad> pad(gst_element_get_static_pad(run.source(), "src"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, Hold::probe, &hold, nullptr);
    run.setState(GST_STATE_PLAYING);
    EXPECT_TRUE(waitUntil([&] { return hold.hasFirst.load(); }));
    const guint64 before = run.number("dropped");
    EXPECT_TRUE(waitUntil([&] { return run.number("dropped") > before; }));
    ToupcamSim_unplug("one");
    EXPECT_TRUE(areThere(1));
    const FrameStats gone = FrameStats::of(run);
    EXPECT_EQ(gone.waiting, 2U); // those that came before still reach the pipeline
    EXPECT_TRUE(gone.isBalanced());
    hold.isHeld = false;
    ASSERT_NE(run.elementMessage("pcdsrc-unplugged"), nullptr);
    ASSERT_TRUE(run.waitForBuffers(gone.delivered + 2));
    EXPECT_EQ(FrameStats::of(run).arrived, gone.arrived);
    EXPECT_EQ(FrameStats::of(run).waiting, 0U);
    ToupcamSim_plug("one");
    ASSERT_TRUE(run.waitForBuffers(gone.delivered + 4));
    run.setState(GST_STATE_NULL);
    const FrameStats end = FrameStats::of(run);
    EXPECT_GE(end.arrived, gone.arrived + 2); // the counts have gone on
    EXPECT_EQ(end.waiting, 0U);
    EXPECT_TRUE(end.isBalanced());
}
