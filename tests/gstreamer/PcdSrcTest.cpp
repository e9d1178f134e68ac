// SPDX-License-Identifier: MIT
#include <gstreamer/PcdSrc.h>

#include <gstreamer/GstFixture.h>

namespace {

class PcdSrcTest : public GstFixture {};

} // namespace

TEST_F(PcdSrcTest, frames_have_the_camera_s_format_numbers_and_rising_times) {
    GstRun run(pipeline());
    ASSERT_NE(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE);
    ASSERT_TRUE(run.waitForBuffers(5));
    EXPECT_NE(run.caps().find("format=(string)BGR, width=(int)64, height=(int)48"),
              std::string::npos)
        << run.caps();
    run.setState(GST_STATE_NULL);
    const std::vector<GstBuffer*> buffers = run.buffers();
    EXPECT_TRUE(GST_BUFFER_FLAG_IS_SET(buffers[0], GST_BUFFER_FLAG_DISCONT));
    for (std::size_t i = 1; i < buffers.size(); ++i) {
        // On a busy computer some may be dropped, and two may arrive at once.
        const bool isGap = GST_BUFFER_OFFSET(buffers[i]) != GST_BUFFER_OFFSET_END(buffers[i - 1]);
        EXPECT_EQ(GST_BUFFER_FLAG_IS_SET(buffers[i], GST_BUFFER_FLAG_DISCONT) != 0, isGap);
        EXPECT_GE(GST_BUFFER_PTS(buffers[i]), GST_BUFFER_PTS(buffers[i - 1]));
        EXPECT_GT(GST_BUFFER_OFFSET(buffers[i]), GST_BUFFER_OFFSET(buffers[i - 1]));
        EXPECT_EQ(GST_BUFFER_OFFSET_END(buffers[i]), GST_BUFFER_OFFSET(buffers[i]) + 1);
        EXPECT_EQ(gst_buffer_get_size(buffers[i]), 64U * 48U * 3U);
    }
}

TEST_F(PcdSrcTest, pixels_are_those_of_the_camera) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    GstMapInfo map;
    ASSERT_TRUE(gst_buffer_map(run.buffers()[0], &map, GST_MAP_READ));
    const guint8* const row = map.data + 24 * 64 * 3; // through the middle of the three patches
    EXPECT_EQ(row[10 * 3 + 2], 255);                  // red
    EXPECT_EQ(row[10 * 3 + 0], 0);
    EXPECT_EQ(row[32 * 3 + 1], 255); // green
    EXPECT_EQ(row[53 * 3 + 0], 255); // blue
    gst_buffer_unmap(run.buffers()[0], &map);
}

TEST_F(PcdSrcTest, a_grey_camera_sends_grey) {
    GstRun run(pipeline("camera=1"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(1));
    EXPECT_NE(run.caps().find("format=(string)GRAY8"), std::string::npos) << run.caps();
    EXPECT_EQ(run.text("camera-id"), "Simulated-T-T2");
}

TEST_F(PcdSrcTest, is_live_and_has_a_latency) {
    GstRun run(pipeline("queue-size=3"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(12));
    GstQuery* const query = gst_query_new_latency();
    ASSERT_TRUE(gst_element_query(run.source(), query));
    gboolean isLive = FALSE;
    GstClockTime least = 1;
    GstClockTime most = 0;
    gst_query_parse_latency(query, &isLive, &least, &most);
    gst_query_unref(query);
    EXPECT_TRUE(isLive);
    EXPECT_EQ(least, 0U);
    EXPECT_GT(most, 0U);
    EXPECT_NE(most, GST_CLOCK_TIME_NONE);
}

TEST_F(PcdSrcTest, ends_after_num_buffers) {
    GstRun run(pipeline("num-buffers=3"));
    run.setState(GST_STATE_PLAYING);
    ASSERT_NE(run.message(GST_MESSAGE_EOS), nullptr);
    EXPECT_EQ(run.buffers().size(), 3U);
}

TEST_F(PcdSrcTest, properties_are_read_as_they_were_set) {
    GstRun run(pipeline(
        "camera=Sim mode=1 settings=gain=2 trigger=external trigger-frames=7 trigger-exposure=8 "
        "on-unplug=wait queue-size=9"));
    EXPECT_EQ(run.text("camera"), "Sim");
    EXPECT_EQ(run.text("mode"), "1");
    EXPECT_EQ(run.text("settings"), "gain=2");
    EXPECT_EQ(run.text("sdk"), "sim");
    EXPECT_EQ(run.text("camera-id"), "");
    int trigger = 0;
    int frames = 0;
    int onUnplug = 0;
    guint queue = 0;
    guint exposure = 0;
    g_object_get(run.source(), "trigger", &trigger, "trigger-frames", &frames, "on-unplug",
                 &onUnplug, "queue-size", &queue, "trigger-exposure", &exposure, nullptr);
    EXPECT_EQ(trigger, 2);
    EXPECT_EQ(frames, 7);
    EXPECT_EQ(onUnplug, 2);
    EXPECT_EQ(queue, 9U);
    EXPECT_EQ(exposure, 8U);
}

TEST_F(PcdSrcTest, starts_and_stops_many_times_and_leaves_no_camera_open) {
    GstRun run(pipeline());
    for (int i = 0; i < 50; ++i) {
        ASSERT_NE(run.setState(GST_STATE_PLAYING), GST_STATE_CHANGE_FAILURE) << i;
        ASSERT_EQ(run.setState(GST_STATE_NULL), GST_STATE_CHANGE_SUCCESS) << i;
    }
    EXPECT_EQ(ToupcamSim_openHandles(), presentCameras);
}

TEST_F(PcdSrcTest, pauses_and_goes_on) {
    GstRun run(pipeline());
    run.setState(GST_STATE_PLAYING);
    ASSERT_TRUE(run.waitForBuffers(2));
    ASSERT_EQ(run.setState(GST_STATE_PAUSED), GST_STATE_CHANGE_NO_PREROLL);
    const std::size_t before = run.buffers().size();
    run.setState(GST_STATE_PLAYING);
    EXPECT_TRUE(run.waitForBuffers(before + 2));
}
