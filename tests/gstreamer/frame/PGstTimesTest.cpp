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
    EXPECT_EQ(times.toRunningTime(zero + 10ms, zero + 13ms, 100 * GST_MSECOND), 97 * GST_MSECOND);
}

TEST_F(PGstTimesTest, no_time_is_before_the_start_or_the_frame_before) {
    EXPECT_EQ(times.toRunningTime(zero, zero + 50ms, 20 * GST_MSECOND), 0U);
    EXPECT_EQ(times.toRunningTime(zero + 1ms, zero + 60ms, 80 * GST_MSECOND), 21 * GST_MSECOND);
    // The clock of the pipeline was set back.
    EXPECT_EQ(times.toRunningTime(zero + 2ms, zero + 61ms, 70 * GST_MSECOND), 21 * GST_MSECOND);
    // A frame of the future, by a clock that is not steady.
    EXPECT_EQ(times.toRunningTime(zero + 70ms, zero + 62ms, 90 * GST_MSECOND), 90 * GST_MSECOND);
}

TEST_F(PGstTimesTest, the_interval_is_the_shortest_one_between_frames) {
    times.toRunningTime(zero, zero, 0);
    EXPECT_FALSE(times.interval());
    times.toRunningTime(zero + 30ms, zero + 30ms, 0);
    times.toRunningTime(zero + 50ms, zero + 50ms, 0);
    times.toRunningTime(zero + 90ms, zero + 90ms, 0);
    EXPECT_EQ(times.interval(), 20 * GST_MSECOND);
    times.reset();
    EXPECT_FALSE(times.interval());
}
