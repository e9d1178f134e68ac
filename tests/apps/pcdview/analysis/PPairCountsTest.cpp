// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PPairCounts.h>

#include <gtest/gtest.h>

#include <numeric>

TEST(PPairCounts, count_both_bytes_of_each_pair) {
    PPairCounts pairs;
    const unsigned char bytes[] = {3, 200, 3, 4};
    pairs.addAt(bytes);
    pairs.addAt(bytes + 2);
    pairs.add(200 << 8 | 3);
    PPairCounts::Counts lower{};
    PPairCounts::Counts higher{};
    pairs.addTo(lower, higher);
    EXPECT_EQ(lower[3], 3u);
    EXPECT_EQ(std::accumulate(lower.begin(), lower.end(), 0u), 3u);
    EXPECT_EQ(higher[200], 2u);
    EXPECT_EQ(higher[4], 1u);
    EXPECT_EQ(std::accumulate(higher.begin(), higher.end(), 0u), 3u);
}

TEST(PPairCounts, add_to_what_is_there_also_if_both_bytes_go_to_one_place) {
    PPairCounts pairs;
    pairs.add(7 << 8 | 7);
    PPairCounts::Counts counts{};
    counts[7] = 10;
    pairs.addTo(counts, counts);
    EXPECT_EQ(counts[7], 12u);
}
