// SPDX-License-Identifier: MIT
#include <apps/common/record/PRecordSchedule.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Times = std::vector<std::chrono::milliseconds>;

PRecordSchedule::TimePoint at(std::chrono::milliseconds time) {
    return PRecordSchedule::TimePoint(1h + time);
}

/// The arrivals that the schedule claims.
Times claimed(PRecordSchedule& schedule, const Times& arrivals) {
    Times times;
    for (const auto arrival : arrivals) {
        if (schedule.claim(at(arrival)))
            times.push_back(arrival);
    }
    return times;
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

TEST(RecordSchedule, without_a_plan_every_frame_is_due_without_end) {
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
    // 199 ms is nearest to 200 ms, the end of the recording.
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

struct TimeLeftRow {
    const char* name;
    PRecordSchedule::Plan plan;
    Times arrivals; ///< so far
    std::chrono::milliseconds now;
    std::optional<PRecordSchedule::Duration> left;
};

const auto none = std::nullopt;

const TimeLeftRow timeLeftRows[] = {
    {"nothing_without_a_set_end", {none, none, none}, {0ms, 10ms}, 10ms, none},
    {"nothing_of_a_time_lapse_without_a_set_end", {none, none, 100ms}, {0ms, 100ms}, 100ms, none},
    {"a_time_is_all_left_before_the_first_frame", {none, 1000ms, none}, {}, 500ms, 1000ms},
    {"a_time_runs_from_the_first_frame", {none, 1000ms, none}, {500ms}, 700ms, 800ms},
    {"a_time_that_is_over_leaves_nothing", {none, 1000ms, none}, {0ms}, 1500ms, 0ms},
    {"a_time_lapse_takes_its_first_frame_at_once", {3, none, 100ms}, {}, 0ms, 200ms},
    {"a_time_lapse_is_due_at_multiples_of_the_interval", {3, none, 100ms}, {0ms}, 50ms, 150ms},
    {"a_frame_taken_early_moves_no_later_one", {3, none, 100ms}, {0ms, 98ms, 99ms}, 99ms, 101ms},
    {"a_frame_that_is_late_moves_no_later_one", {3, none, 100ms}, {0ms}, 130ms, 70ms},
    {"an_interval_without_a_frame_is_added", {3, none, 100ms}, {0ms}, 210ms, 90ms},
    {"the_last_frame_of_a_time_lapse_may_be_due_now", {2, none, 100ms}, {0ms}, 250ms, 0ms},
    {"a_time_lapse_with_all_its_frames_is_done", {2, none, 100ms}, {0ms, 98ms, 99ms}, 99ms, 0ms},
    {"nothing_is_known_of_the_pace_before_a_frame", {9, none, none}, {}, 0ms, none},
    {"nothing_is_known_of_the_pace_before_the_second_frame", {9, none, none}, {0ms}, 5ms, none},
    {"the_pace_is_that_so_far", {10, none, none}, {0ms, 30ms, 40ms}, 45ms, 135ms},
    {"a_stream_that_stands_still_leaves_the_rest_to_come", {5, none, none}, {0ms, 10ms}, 1s, 20ms},
    {"a_number_of_frames_that_have_come_leaves_nothing", {2, none, none}, {0ms, 10ms}, 10ms, 0ms},
    {"frames_that_come_together_have_no_pace_to_count", {9, none, none}, {0ms, 0ms}, 0ms, 0ms},
    {"of_two_ends_the_number_is_nearer", {3, 1000ms, 100ms}, {0ms}, 50ms, 150ms},
    {"of_two_ends_the_time_is_nearer", {30, 1000ms, 100ms}, {0ms}, 50ms, 950ms},
    {"of_two_ends_the_time_is_the_one_known", {30, 1000ms, none}, {0ms}, 50ms, 950ms},
    {"more_time_than_a_clock_holds_is_a_century_from_the_next_frame",
     {std::numeric_limits<quint64>::max(), none, 1h},
     {0ms, 2h},
     2h,
     24h * 365 * 100 + 1h},
};

class TimeLeft : public RowTest<TimeLeftRow> {};

ROW_TEST(TimeLeft, is_until_the_last_requested_frame_is_due) {
    const TimeLeftRow& row = GetParam();
    PRecordSchedule schedule(row.plan);
    claimed(schedule, row.arrivals);
    EXPECT_EQ(schedule.timeLeft(at(row.now)), row.left);
}

ROWS_IN(RecordSchedule, TimeLeft, timeLeftRows);

} // namespace
