// SPDX-License-Identifier: MIT
#include <apps/common/PRecordSchedule.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace std::chrono_literals;
using Times = std::vector<std::chrono::milliseconds>;

PRecordSchedule::TimePoint at(std::chrono::milliseconds time) {
    return PRecordSchedule::TimePoint(1h + time);
}

/// Those of these arrivals that are wanted.
Times claimed(PRecordSchedule& schedule, const Times& arrivals) {
    Times wanted;
    for (const auto arrival : arrivals) {
        if (schedule.claim(at(arrival)))
            wanted.push_back(arrival);
    }
    return wanted;
}

Times claimed(const PRecordSchedule::Plan& plan, const Times& arrivals) {
    PRecordSchedule schedule(plan);
    return claimed(schedule, arrivals);
}

Times every(std::chrono::milliseconds period, std::chrono::milliseconds end) {
    Times times;
    for (auto time = 0ms; time < end; time += period)
        times.push_back(time);
    return times;
}

TEST(RecordSchedule, without_a_plan_every_frame_is_wanted_without_end) {
    PRecordSchedule schedule({});
    EXPECT_EQ(claimed(schedule, every(7ms, 1000ms)), every(7ms, 1000ms));
    EXPECT_FALSE(schedule.isOver(at(24h)));
    EXPECT_FALSE(schedule.share(at(24h)));
    EXPECT_EQ(schedule.claimed(), every(7ms, 1000ms).size());
}

TEST(RecordSchedule, a_number_of_frames_ends_it) {
    PRecordSchedule schedule({3, std::nullopt, std::nullopt});
    EXPECT_EQ(claimed(schedule, {0ms, 10ms}), Times({0ms, 10ms}));
    EXPECT_FALSE(schedule.isOver(at(24h)));
    EXPECT_EQ(claimed(schedule, {20ms, 30ms, 40ms}), Times({20ms}));
    EXPECT_TRUE(schedule.isOver(at(20ms)));
}

TEST(RecordSchedule, a_time_counts_from_the_first_frame_and_its_end_is_outside) {
    PRecordSchedule schedule({std::nullopt, 100ms, std::nullopt});
    EXPECT_FALSE(schedule.isOver(at(24h)));
    EXPECT_EQ(claimed(schedule, {500ms, 599ms, 600ms, 601ms}), Times({500ms, 599ms}));
    EXPECT_FALSE(schedule.isOver(at(599ms)));
    EXPECT_TRUE(schedule.isOver(at(600ms)));
}

TEST(RecordSchedule, whichever_end_comes_first_ends_it) {
    EXPECT_EQ(claimed({2, 100ms, std::nullopt}, {0ms, 10ms, 20ms}), Times({0ms, 10ms}));
    EXPECT_EQ(claimed({9, 20ms, std::nullopt}, {0ms, 10ms, 20ms}), Times({0ms, 10ms}));
}

TEST(RecordSchedule, a_time_lapse_takes_the_first_frame_at_once_then_one_each_interval) {
    EXPECT_EQ(claimed({std::nullopt, std::nullopt, 100ms}, every(10ms, 350ms)),
              Times({0ms, 100ms, 200ms, 300ms}));
}

TEST(RecordSchedule, a_time_lapse_of_a_number_of_frames_ends_with_the_last) {
    EXPECT_EQ(claimed({3, std::nullopt, 100ms}, every(10ms, 1000ms)), Times({0ms, 100ms, 200ms}));
}

TEST(RecordSchedule, a_time_lapse_of_a_time_takes_no_frame_for_its_very_end) {
    // 199 ms is nearest to 200 ms, which is the end.
    EXPECT_EQ(claimed({std::nullopt, 200ms, 100ms}, {0ms, 50ms, 99ms, 150ms, 199ms}),
              Times({0ms, 99ms}));
}

TEST(RecordSchedule, a_time_lapse_takes_the_frame_nearest_to_each_instant) {
    EXPECT_EQ(claimed({std::nullopt, std::nullopt, 100ms}, {0ms, 40ms, 80ms, 120ms, 160ms, 200ms}),
              Times({0ms, 80ms, 200ms}));
}

TEST(RecordSchedule, an_interval_of_one_frame_period_takes_every_frame_though_they_jitter) {
    const Times jittering{0ms, 99ms, 201ms, 299ms, 398ms, 502ms, 600ms};
    EXPECT_EQ(claimed({std::nullopt, std::nullopt, 100ms}, jittering), jittering);
}

TEST(RecordSchedule, a_camera_slower_than_the_interval_gives_each_of_its_frames) {
    EXPECT_EQ(claimed({std::nullopt, std::nullopt, 100ms}, every(250ms, 1001ms)),
              every(250ms, 1001ms));
}

TEST(RecordSchedule, after_a_gap_the_intervals_without_a_frame_are_left_out) {
    EXPECT_EQ(
        claimed({std::nullopt, std::nullopt, 100ms}, {0ms, 100ms, 1000ms, 1010ms, 1020ms, 1100ms}),
        Times({0ms, 100ms, 1000ms, 1100ms}));
}

TEST(RecordSchedule, the_share_is_of_the_end_that_is_nearer) {
    PRecordSchedule schedule({10, 1000ms, std::nullopt});
    EXPECT_EQ(schedule.share(at(0ms)), 0);
    claimed(schedule, {0ms, 1ms});
    EXPECT_DOUBLE_EQ(schedule.share(at(100ms)).value_or(-1), 0.2);
    EXPECT_DOUBLE_EQ(schedule.share(at(500ms)).value_or(-1), 0.5);
    EXPECT_DOUBLE_EQ(schedule.share(at(24h)).value_or(-1), 1);
}

} // namespace
