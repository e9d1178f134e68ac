// SPDX-License-Identifier: MIT
#include <PCdGui/editor/PRegionAxis.h>

#include <gtest/gtest.h>

namespace {

using Range = PMinMaxRange<double>;

const PScanAreaRange sensor{QRect(0, 0, 1283, 1080), 10, 16, 4, 2, 2};

} // namespace

TEST(PRegionAxis, has_offsets_at_which_the_smallest_region_fits) {
    EXPECT_EQ(PRegionAxis::horizontal(sensor).offsets(), (Range{0, 1270, 2}));
    EXPECT_EQ(PRegionAxis::vertical(sensor).offsets(), (Range{0, 1064, 2}));
}

TEST(PRegionAxis, has_sizes_that_fit_at_an_offset_in_whole_steps) {
    EXPECT_EQ(PRegionAxis::horizontal(sensor).sizes(0), (Range{12, 1280, 4}));
    EXPECT_EQ(PRegionAxis::horizontal(sensor).sizes(101), (Range{12, 1180, 4}));
    EXPECT_EQ(PRegionAxis::vertical(sensor).sizes(1000), (Range{16, 80, 2}));
}

TEST(PRegionAxis, cuts_a_size_to_what_fits) {
    EXPECT_EQ(PRegionAxis::horizontal(sensor).fitted(1000, 640), 280);
    EXPECT_EQ(PRegionAxis::horizontal(sensor).fitted(100, 640), 640);
}

TEST(PRegionAxis, takes_no_step_as_one_and_bounds_that_do_not_start_at_zero) {
    const PScanAreaRange range{QRect(5, 6, 10, 20), 0, 0, 0, 0, 0};
    EXPECT_EQ(PRegionAxis::horizontal(range).offsets(), (Range{5, 14, 1}));
    EXPECT_EQ(PRegionAxis::vertical(range).sizes(6), (Range{1, 20, 1}));
}

TEST(PRegionAxis, keeps_its_order_where_the_range_is_empty) {
    const PRegionAxis axis = PRegionAxis::horizontal(PScanAreaRange());
    EXPECT_LE(axis.offsets().minimum, axis.offsets().maximum);
    EXPECT_LE(axis.sizes(0).minimum, axis.sizes(0).maximum);
}
