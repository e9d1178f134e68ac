// SPDX-License-Identifier: MIT
#include <PGui/PRangeScale.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Snap {
    const char* name;
    PMinMaxRange<double> range;
    double value;
    double expected;
};

class PRangeScaleSnap : public RowTest<Snap> {};

struct Step {
    const char* name;
    PMinMaxRange<double> range;
    double value;
    int count;
    double expected;
};

class PRangeScaleStep : public RowTest<Step> {};

struct Ends {
    const char* name;
    PMinMaxRange<double> range;
    bool logarithmic;
};

class PRangeScaleEnds : public RowTest<Ends> {};

constexpr PMinMaxRange<double> shutter{10, 50000000, 1};

} // namespace

ROW_TEST(PRangeScaleSnap, goes_to_the_nearest_value) {
    EXPECT_EQ(PRangeScale(GetParam().range).snapped(GetParam().value), GetParam().expected);
}

ROWS(Rows, PRangeScaleSnap, Snap{"a_value_of_the_range_stays", {0, 100, 5}, 35, 35},
     Snap{"a_value_between_steps_goes_to_the_nearer", {0, 100, 5}, 33, 35},
     Snap{"steps_count_from_the_minimum", {3, 100, 5}, 9, 8},
     Snap{"below_is_the_minimum", {3, 100, 5}, -7, 3},
     Snap{"above_is_the_maximum", {3, 100, 5}, 200, 100},
     Snap{"the_maximum_is_reachable_between_steps", {0, 9, 4}, 9, 9},
     Snap{"near_the_maximum_is_the_maximum", {0, 9, 4}, 8.6, 9},
     Snap{"nearer_to_the_last_step_is_the_last_step", {0, 9, 4}, 8.4, 8},
     Snap{"tenths_below_zero_are_exact", {-30, 30, 0.1}, -0.3000001, -0.3},
     Snap{"hundredths_far_up_are_exact", {0.01, 5000, 0.01}, 4999.994, 4999.99},
     Snap{"a_range_of_one_value_is_that_value", {7, 7, 1}, 100, 7},
     Snap{"a_maximum_below_the_minimum_counts_as_the_minimum", {7, 3, 1}, 5, 7},
     Snap{"all_integers_are_exact",
          {double(std::numeric_limits<int>::min()), double(std::numeric_limits<int>::max()), 1},
          2147483646,
          2147483646});

ROW_TEST(PRangeScaleStep, moves_by_steps) {
    const Step& row = GetParam();
    EXPECT_EQ(PRangeScale(row.range).stepped(row.value, row.count), row.expected);
}

ROWS(Rows, PRangeScaleStep, Step{"up_by_one", {0, 100, 5}, 35, 1, 40},
     Step{"down_by_ten", {0, 100, 5}, 80, -10, 30},
     Step{"up_ends_at_the_maximum", {0, 9, 4}, 8, 3, 9},
     Step{"down_from_a_short_last_step", {0, 9, 4}, 9, -1, 8},
     Step{"up_from_between_steps_is_the_next_value", {0, 100, 5}, 33, 1, 35},
     Step{"down_from_between_steps_is_the_value_before", {0, 100, 5}, 33, -1, 30},
     Step{"down_from_above_the_range_is_the_maximum", {0, 100, 5}, 250, -1, 100},
     Step{"up_from_above_the_range_is_nowhere", {0, 100, 5}, 250, 1, 250},
     Step{"up_from_below_the_range_is_the_minimum", {0, 100, 5}, -7, 1, 0},
     Step{"down_from_below_the_range_is_nowhere", {0, 100, 5}, -7, -1, -7},
     Step{"tenths_stay_tenths", {-30, 30, 0.1}, -0.2, -1, -0.3},
     Step{"low_on_a_log_scale_by_the_step_of_the_range", shutter, 10, 1, 11},
     Step{"high_on_a_log_scale_by_a_tenth_of_the_decade", shutter, 12000, 1, 13000},
     Step{"a_log_step_goes_to_a_round_value", shutter, 12345, 1, 13000},
     Step{"down_over_a_decade_has_the_small_steps", shutter, 1000, -1, 990},
     Step{"up_to_the_log_maximum", shutter, 49999999, 1, 50000000},
     Step{"down_to_the_log_minimum", shutter, 11, -1, 10},
     Step{"a_coarse_step_on_a_log_scale_still_moves", {1, 100001, 100}, 1, 1, 101});

ROW_TEST(PRangeScaleEnds, are_exact_and_reached_by_nothing_else) {
    const PRangeScale scale(GetParam().range);
    EXPECT_EQ(scale.valueAt(0), GetParam().range.minimum);
    EXPECT_EQ(scale.valueAt(scale.lastPosition()), GetParam().range.maximum);
    EXPECT_EQ(scale.toPosition(GetParam().range.minimum), 0);
    EXPECT_EQ(scale.toPosition(GetParam().range.maximum), scale.lastPosition());
    const double second = scale.stepped(GetParam().range.minimum, 1);
    const double lastButOne = scale.stepped(GetParam().range.maximum, -1);
    EXPECT_GT(scale.toPosition(second), 0);
    EXPECT_LT(scale.toPosition(lastButOne), scale.lastPosition());
}

ROW_TEST(PRangeScaleEnds, have_small_values_up_to_the_middle_only_on_a_log_scale) {
    const PMinMaxRange<double>& range = GetParam().range;
    const PRangeScale scale(range);
    const double middle = scale.valueAt((scale.lastPosition() + 1) / 2);
    const double quarter = range.minimum + (range.maximum - range.minimum) / 4;
    EXPECT_EQ(middle < quarter, GetParam().logarithmic) << middle;
}

ROW_TEST(PRangeScaleEnds, have_only_values_of_the_range_between_them_in_rising_order) {
    const PRangeScale scale(GetParam().range);
    for (int position = 1; position <= scale.lastPosition(); ++position) {
        const double value = scale.valueAt(position);
        ASSERT_EQ(value, scale.snapped(value)) << position;
        ASSERT_GE(value, scale.valueAt(position - 1)) << position;
    }
}

ROW_TEST(PRangeScaleEnds, lie_at_positions_that_lead_back_to_them) {
    const PRangeScale scale(GetParam().range);
    double value = scale.minimum();
    for (int steps = 0; steps < 2000 && value < scale.maximum(); ++steps) {
        const int position = scale.toPosition(value);
        const double before = scale.valueAt(position - 1);
        const double after = scale.valueAt(position + 1);
        ASSERT_LE(before, value) << position;
        ASSERT_GE(after, value) << position;
        value = scale.stepped(value, 1);
    }
}

ROWS(Rows, PRangeScaleEnds, Ends{"ten_microseconds_to_fifty_seconds", shutter, true},
     Ends{"gain", {100, 5000, 1}, false}, Ends{"hue", {-180, 180, 1}, false},
     Ends{"a_switch", {0, 1, 1}, false}, Ends{"cooling", {-30, 30, 0.1}, false},
     Ends{"milliseconds", {0.105, 5000, 0.01}, true}, Ends{"a_short_last_step", {0, 9, 4}, false},
     Ends{"just_three_decades", {1, 1000, 1}, true}, Ends{"just_less", {1, 999, 1}, false},
     Ends{"fifty_million_from_zero", {0, 50000000, 1}, false});

TEST(PRangeScale, has_a_position_for_each_value_where_they_are_few) {
    const PRangeScale scale({10, 230, 1});
    EXPECT_EQ(scale.lastPosition(), 220);
    EXPECT_FALSE(scale.skipsValues());
    for (int value = 10; value <= 230; ++value)
        EXPECT_EQ(scale.valueAt(scale.toPosition(value)), value);
}

TEST(PRangeScale, skips_values_where_they_are_many) {
    EXPECT_TRUE(PRangeScale({0, 50000000, 1}).skipsValues());
}

TEST(PRangeScale, has_three_digits_at_most_inside_a_log_scale) {
    const PRangeScale scale(shutter);
    EXPECT_EQ(scale.valueAt(scale.toPosition(12345)), 12300);
}

TEST(PRangeScale, has_the_decimals_of_its_numbers) {
    EXPECT_EQ(PRangeScale({0, 10, 1}).decimals(), 0);
    EXPECT_EQ(PRangeScale({0, 10, 0.25}).decimals(), 2);
    EXPECT_EQ(PRangeScale({0.105, 5000, 0.01}).decimals(), 3);
    EXPECT_EQ(PRangeScale({0, 1, 1.0 / 3}).decimals(), 6);
    EXPECT_EQ(PRangeScale::countDecimals(0.1 + 0.2), 1);
}

TEST(PRangeScale, takes_a_hundredth_of_the_range_where_there_is_no_step) {
    EXPECT_EQ(PRangeScale({0, 10, 0}).stepped(5, 1), 5.1);
    EXPECT_EQ(PRangeScale({4, 4, 0}).snapped(9), 4);
}
