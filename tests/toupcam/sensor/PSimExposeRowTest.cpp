// SPDX-License-Identifier: MIT
#include <toupcam/sim/sensor/PSimExposeRow.h>

#include <gtest/gtest.h>
#include <support/RowTest.h>

#include <algorithm>
#include <vector>

namespace {

// The upper half of a 16 x 16 bit product, rounded down.
int upperHalf(int a, int b) {
    const int product = a * b;
    return product >= 0 ? product / 65536 : -((-product + 65535) / 65536);
}

// One pixel, as the header describes its factors; no value here is too large for 16 bits.
int exposed(int light, int root, int shot, int read, const PSimRowFactors& factors) {
    const int signal =
        std::min(int(unsigned(light) * 256 * factors.signal / 65536), int(factors.ceiling));
    const int units = signal + upperHalf(root * shot, factors.shot) +
                      upperHalf(read * 256, factors.read) + factors.offset;
    return std::clamp(units >= 0 ? units / 16 : -1, 0, 255);
}

struct RowOfFactors {
    const char* name;
    PSimRowFactors factors;
};

class ExposedRow : public RowTest<RowOfFactors> {};

ROW_TEST(ExposedRow, has_the_counts_that_the_factors_give_for_each_light_and_noise) {
    const PSimRowFactors& factors = GetParam().factors;
    std::vector<std::uint8_t> light(256), roots(256), counts(256);
    std::vector<std::int8_t> shot(256), read(256);
    for (int noise = -128; noise < 128; ++noise) {
        for (int value = 0; value < 256; ++value) {
            const auto i = std::size_t(value);
            light[i] = std::uint8_t(value);
            roots[i] = std::uint8_t(value * 3 % 256);
            shot[i] = std::int8_t(noise);
            read[i] = std::int8_t((value * 7 + noise) & 255);
        }
        simExposeRow(light.data(), roots.data(), shot.data(), read.data(), 256, factors,
                     counts.data());
        for (std::size_t i = 0; i < 256; ++i)
            ASSERT_EQ(int(counts[i]), exposed(light[i], roots[i], shot[i], read[i], factors))
                << "light " << int(light[i]) << ", root " << int(roots[i]) << ", noise "
                << int(shot[i]) << ", " << int(read[i]);
    }
}

ROW_TEST(ExposedRow, of_any_length_has_the_same_counts_and_nothing_is_written_behind_it) {
    const PSimRowFactors& factors = GetParam().factors;
    std::vector<std::uint8_t> light, roots;
    std::vector<std::int8_t> shot, read;
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<std::uint8_t> counts(count + 32, 77);
        simExposeRow(light.data(), roots.data(), shot.data(), read.data(), count, factors,
                     counts.data());
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(int(counts[i]), exposed(light[i], roots[i], shot[i], read[i], factors))
                << i << " of " << count;
        EXPECT_TRUE(std::all_of(counts.begin() + std::ptrdiff_t(count), counts.end(),
                                [](std::uint8_t value) { return value == 77; }))
            << "behind " << count;
        // Exactly as long as the next row, so that ASan sees what is read behind it.
        light.push_back(std::uint8_t(count * 3));
        roots.push_back(std::uint8_t(255 - count));
        shot.push_back(std::int8_t(int(count) - 35));
        read.push_back(std::int8_t(35 - int(count)));
        light.shrink_to_fit();
        roots.shrink_to_fit();
        shot.shrink_to_fit();
        read.shrink_to_fit();
    }
}

ROWS(Rows, ExposedRow, RowOfFactors{"without_noise", {4096, 65535 / 2, 0, 0, 8}},
     RowOfFactors{"with_noise_of_both_kinds", {4096, 4000, 600, 900, 9}},
     RowOfFactors{"of_a_long_exposure_filled_to_the_ceiling", {65535, 3500, 16383, 300, 40}},
     RowOfFactors{"with_the_largest_ceiling", {65535, 32000, 0, 0, 9}},
     RowOfFactors{"darker_than_nothing", {256, 4080, 16383, 16383, -600}});

} // namespace
