// SPDX-License-Identifier: MIT
#include <apps/pcdview/camera/PFramePace.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

class PFramePaceTest : public testing::Test {
protected:
    /// Frames at this distance, from this time up to and including that.
    void stream(std::chrono::milliseconds from, std::chrono::milliseconds until,
                std::chrono::milliseconds every) {
        for (auto at = from; at <= until; at += every)
            pace.tick(start + at);
    }
    double at(std::chrono::milliseconds time) const { return pace.framesPerSecond(start + time); }

    const PFramePace::Clock::time_point start{1000s};
    PFramePace pace;
};

} // namespace

TEST_F(PFramePaceTest, is_that_of_the_frames_from_the_second_on) {
    EXPECT_EQ(at(0ms), 0);
    pace.tick(start);
    EXPECT_EQ(at(0ms), 0);
    pace.tick(start + 40ms);
    EXPECT_DOUBLE_EQ(at(40ms), 25);
}

TEST_F(PFramePaceTest, of_a_steady_stream_is_not_rounded) {
    for (auto now = 0ms; now < 10s; now += 97ms) {
        pace.tick(start + now);
        for (const auto later : {0ms, 40ms, 96ms})
            EXPECT_NEAR(at(now + later), now == 0ms ? 0 : 1000.0 / 97, 1e-9) << now.count();
    }
}

TEST_F(PFramePaceTest, after_a_stall_is_no_more_than_arrived_in_the_last_second) {
    stream(0ms, 2000ms, 40ms);
    EXPECT_EQ(at(4000ms), 0);
    stream(4000ms, 4004ms, 1ms); // what had waited
    EXPECT_LE(at(4004ms), 6);
    for (auto now = 4040ms; now < 5004ms; now += 40ms) {
        pace.tick(start + now);
        EXPECT_LE(at(now), double((now - 4000ms) / 40ms + 6)) << now.count();
    }
    stream(5040ms, 6040ms, 40ms);
    EXPECT_DOUBLE_EQ(at(6040ms), 25);
}

TEST_F(PFramePaceTest, after_a_short_stall_is_no_higher_either) {
    stream(0ms, 2000ms, 40ms);
    stream(2950ms, 2954ms, 1ms);
    EXPECT_LE(at(3001ms), 7);
}

TEST_F(PFramePaceTest, of_a_restarted_stream_is_known_at_once) {
    stream(0ms, 2000ms, 40ms);
    pace.reset();
    EXPECT_EQ(at(2000ms), 0);
    stream(5000ms, 5010ms, 10ms);
    EXPECT_DOUBLE_EQ(at(5010ms), 100);
}
