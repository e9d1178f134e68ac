// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PGradient.h>

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <array>

namespace {

using Row = std::vector<unsigned char>;

/// The largest gradients across and down, or noise.
std::array<Row, 3> makeRows(std::size_t width, bool isNoise) {
    QRandomGenerator random(quint32(width + 1));
    std::array<Row, 3> rows;
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (std::size_t x = 0; x < width; ++x)
            rows[y].push_back(static_cast<unsigned char>(isNoise          ? random.bounded(256)
                                                         : x / 2 % 2 == 0 ? 0
                                                                          : 255));
    }
    return rows;
}

PGradient::Sums sumBy(PGradient::Add add, const std::array<Row, 3>& rows) {
    PGradient::Sums sums{1, 2}; // to which it adds
    add(rows[0].data(), rows[1].data(), rows[2].data(), rows[0].size(), sums);
    return sums;
}

} // namespace

TEST(PGradient, every_way_gives_the_sums_of_the_plain_one) {
    for (const PGradient::Add add : PGradient::allWays()) {
        for (const bool isNoise : {false, true}) {
            std::vector<std::size_t> widths{1023, 1026, 2051, 9568};
            for (std::size_t width = 0; width < 140; ++width)
                widths.push_back(width);
            for (const std::size_t width : widths) {
                const std::array<Row, 3> rows = makeRows(width, isNoise);
                const PGradient::Sums plain = sumBy(PGradient::allWays().front(), rows);
                const PGradient::Sums sums = sumBy(add, rows);
                ASSERT_EQ(sums.squares, plain.squares) << width << " samples";
                ASSERT_EQ(sums.samples, plain.samples) << width << " samples";
            }
        }
    }
}

TEST(PGradient, a_step_across_and_a_step_down_give_what_the_operator_says) {
    const Row dark{0, 0, 0, 0};
    const Row step{0, 0, 100, 100};
    const Row bright{100, 100, 100, 100};
    for (const PGradient::Add add : PGradient::allWays()) {
        // 400 across, at both inner samples; then 400 down.
        EXPECT_EQ(sumBy(add, {step, step, step}).squares, 1u + 2 * 160'000);
        EXPECT_EQ(sumBy(add, {step, step, step}).samples, 2u + 100);
        EXPECT_EQ(sumBy(add, {dark, dark, bright}).squares, 1u + 2 * 160'000);
        EXPECT_EQ(sumBy(add, {bright, dark, dark}).squares, 1u + 2 * 160'000);
    }
}
