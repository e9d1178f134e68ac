// SPDX-License-Identifier: MIT
#include <gstreamer/frame/PGstTimes.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

class PGstTimesTest : public testing::Test {
protected:
    PGstTimes times;
    const PGstTimes::Clock::time_point zero{};
};

} // namespace

TEST_F(PGstTimesTest, the_age_of_a_frame_is_taken_off_the_running_time) {
    EXPECT_EQ(times.toRunningTime(zero + 10ms, 1, zero + 13ms, 100 * GST_MSECOND),
              97 * GST_MSECOND);
}

TEST_F(PGstTimesTest, no_time_is_before_the_start_or_the_frame_before) {
    EXPECT_EQ(times.toRunningTime(zero, 1, zero + 50ms, 20 * GST_MSECOND), 0U);
    EXPECT_EQ(times.toRunningTime(zero + 1ms, 2, zero + 60ms, 80 * GST_MSECOND), 21 * GST_MSECOND);
    // The clock of the pipeline was set back.
    EXPECT_EQ(times.toRunningTime(zero + 2ms, 3, zero + 61ms, 70 * GST_MSECOND), 21 * GST_MSECOND);
    // A frame of the future, by a clock that is not steady.
    EXPECT_EQ(times.toRunningTime(zero + 70ms, 4, zero + 62ms, 90 * GST_MSECOND), 90 * GST_MSECOND);
}

TEST_F(PGstTimesTest, the_interval_is_the_mean_one_of_all_frames_that_the_camera_sent) {
    times.toRunningTime(zero, 11, zero, 0);
    times.toRunningTime(zero + 5ms, 12, zero + 5ms, 0);
    EXPECT_FALSE(times.interval());
    times.toRunningTime(zero + 200ms, 21, zero + 200ms, 0); // most of them were dropped
    EXPECT_EQ(times.interval(), 20 * GST_MSECOND);
    times.toRunningTime(zero + 900ms, 22, zero + 900ms, 0);
    EXPECT_EQ(times.interval(), 20 * GST_MSECOND);
    times.reset();
    EXPECT_FALSE(times.interval());
}

TEST_F(PGstTimesTest, a_camera_that_counts_again_is_measured_again) {
    times.toRunningTime(zero, 5, zero, 0);
    times.toRunningTime(zero + 100ms, 1, zero + 100ms, 0);
    times.toRunningTime(zero + 180ms, 9, zero + 180ms, 0);
    EXPECT_EQ(times.interval(), 10 * GST_MSECOND);
}
