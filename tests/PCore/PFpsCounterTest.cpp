// SPDX-License-Identifier: MIT
#include <PCore/PFpsCounter.h>

#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;

namespace {

/// The test provides the times: nothing here depends on how fast it runs.
const PFpsCounter::Clock::time_point start{1000s};

} // namespace

TEST(PFpsCounter, reports_zero_before_two_ticks) {
    PFpsCounter counter;
    EXPECT_EQ(counter.fps(start), 0);
    counter.tick(start);
    EXPECT_EQ(counter.fps(start), 0);
}

TEST(PFpsCounter, divides_the_intervals_by_the_time_they_span) {
    PFpsCounter counter;
    for (const auto offset : {0ms, 100ms, 200ms, 300ms})
        counter.tick(start + offset);
    EXPECT_DOUBLE_EQ(counter.fps(start + 300ms), 10);
}

TEST(PFpsCounter, does_not_fall_between_two_ticks) {
    PFpsCounter counter;
    counter.tick(start);
    counter.tick(start + 100ms);
    EXPECT_DOUBLE_EQ(counter.fps(start + 190ms), 10);
}

TEST(PFpsCounter, uses_only_the_last_second) {
    PFpsCounter counter;
    counter.tick(start); // a slow beginning
    for (const auto offset : {1500ms, 1520ms, 1540ms})
        counter.tick(start + offset);
    EXPECT_DOUBLE_EQ(counter.fps(start + 1600ms), 50);
}

TEST(PFpsCounter, counts_a_tick_exactly_one_second_old) {
    PFpsCounter counter;
    counter.tick(start);
    counter.tick(start + 1s);
    EXPECT_DOUBLE_EQ(counter.fps(start + 1s), 1);
}

TEST(PFpsCounter, goes_back_to_zero_when_frames_stop_coming) {
    PFpsCounter counter;
    counter.tick(start);
    counter.tick(start + 10ms);
    EXPECT_EQ(counter.fps(start + 2s), 0);
}

TEST(PFpsCounter, reports_zero_for_two_ticks_at_one_moment) {
    PFpsCounter counter;
    counter.tick(start);
    counter.tick(start);
    EXPECT_EQ(counter.fps(start), 0);
}

TEST(PFpsCounter, takes_ticks_that_arrive_out_of_order) {
    PFpsCounter counter;
    counter.tick(start + 100ms);
    counter.tick(start);
    counter.tick(start + 200ms);
    EXPECT_DOUBLE_EQ(counter.fps(start + 200ms), 10);
}

TEST(PFpsCounter, forgets_everything_on_reset) {
    PFpsCounter counter;
    counter.tick(start);
    counter.tick(start + 10ms);
    counter.reset();
    EXPECT_EQ(counter.fps(start + 10ms), 0);
}

TEST(PFpsCounter, may_be_ticked_and_read_from_several_threads) {
    PFpsCounter counter;
    std::thread producer([&] {
        for (int i = 0; i < 500; ++i)
            counter.tick(start + std::chrono::milliseconds(i));
    });
    for (int i = 0; i < 500; ++i)
        EXPECT_LT(counter.fps(start + 1s), 1001);
    producer.join();
    EXPECT_DOUBLE_EQ(counter.fps(start + 499ms), 1000);
}
