// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PFirstRate.h>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

/// The rate after frames at these times.
PFirstRate makeRate(std::initializer_list<std::chrono::milliseconds> arrivals) {
    PFirstRate rate;
    for (const std::chrono::milliseconds arrived : arrivals)
        rate.add(PFirstRate::TimePoint(1h + arrived));
    return rate;
}

TEST(FirstRate, is_unknown_before_two_frames) {
    for (const PFirstRate& rate : {makeRate({}), makeRate({0ms})}) {
        EXPECT_FALSE(rate.isKnown());
        EXPECT_FALSE(rate.rate());
    }
}

TEST(FirstRate, is_known_after_two_frames_of_a_slow_camera) {
    const PFirstRate rate = makeRate({0ms, 2000ms});
    EXPECT_TRUE(rate.isKnown());
    EXPECT_DOUBLE_EQ(rate.rate().value_or(0), 0.5);
}

TEST(FirstRate, takes_seven_frames_of_a_fast_camera) {
    EXPECT_FALSE(makeRate({0ms, 10ms, 20ms, 30ms, 40ms, 50ms}).isKnown());
    const PFirstRate rate = makeRate({0ms, 10ms, 20ms, 30ms, 40ms, 50ms, 60ms});
    EXPECT_TRUE(rate.isKnown());
    EXPECT_DOUBLE_EQ(rate.rate().value_or(0), 100);
}

TEST(FirstRate, does_not_mind_first_frames_that_come_together) {
    EXPECT_DOUBLE_EQ(makeRate({0ms, 1ms, 3ms, 53ms, 103ms, 153ms, 203ms}).rate().value_or(0), 20);
}

TEST(FirstRate, does_not_mind_one_frame_that_is_late) {
    EXPECT_DOUBLE_EQ(makeRate({0ms, 50ms, 100ms, 250ms, 300ms, 350ms, 400ms}).rate().value_or(0),
                     20);
}

TEST(FirstRate, stays_as_it_is_once_it_is_known) {
    EXPECT_DOUBLE_EQ(makeRate({0ms, 500ms, 510ms, 520ms, 530ms, 540ms}).rate().value_or(0), 2);
}

TEST(FirstRate, is_unknown_after_frames_that_come_at_the_same_time) {
    EXPECT_FALSE(makeRate({0ms, 0ms, 0ms}).rate());
}

} // namespace
