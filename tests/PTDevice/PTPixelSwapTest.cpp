// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPixelSwap.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t spare = 40; // pixels behind the others, for what goes too far

/// All up to 100, and some with many of the steps in which pixels are exchanged.
std::vector<std::size_t> counts() {
    std::vector<std::size_t> all(100);
    std::iota(all.begin(), all.end(), std::size_t(0));
    all.insert(all.end(), {1024, 5003});
    return all;
}

Bytes counting(std::size_t pixels) {
    Bytes bytes(pixels * 4);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
    return bytes;
}

Bytes expected(Bytes bytes) {
    for (std::size_t i = 0; i < bytes.size(); i += 4)
        std::swap(bytes[i], bytes[i + 2]);
    return bytes;
}

} // namespace

TEST(PTPixelSwap, every_way_exchanges_the_first_and_the_third_byte_of_each_pixel) {
    for (const PTPixelSwap::Swap swap : PTPixelSwap::allWays()) {
        for (const std::size_t pixels : counts()) {
            Bytes bytes = counting(pixels + spare);
            swap(bytes.data(), pixels);
            bytes.resize(pixels * 4);
            ASSERT_EQ(bytes, expected(counting(pixels))) << pixels << " pixels";
        }
    }
}

TEST(PTPixelSwap, every_way_leaves_the_bytes_behind_the_pixels_alone) {
    for (const PTPixelSwap::Swap swap : PTPixelSwap::allWays()) {
        for (const std::size_t pixels : counts()) {
            Bytes bytes = counting(pixels + spare);
            swap(bytes.data(), pixels);
            const Bytes behind(bytes.begin() + long(pixels) * 4, bytes.end());
            const Bytes all = counting(pixels + spare);
            ASSERT_EQ(behind, Bytes(all.begin() + long(pixels) * 4, all.end()))
                << pixels << " pixels";
        }
    }
}

TEST(PTPixelSwap, every_way_accepts_pixels_at_any_address) {
    for (const PTPixelSwap::Swap swap : PTPixelSwap::allWays()) {
        for (std::size_t offset = 0; offset < 32; ++offset) {
            Bytes bytes(offset + 400 + 4 * spare);
            const Bytes pixels = counting(100);
            std::copy(pixels.begin(), pixels.end(), bytes.begin() + long(offset));
            swap(bytes.data() + offset, 100);
            const auto begin = bytes.begin() + long(offset);
            ASSERT_EQ(Bytes(begin, begin + 400), expected(pixels)) << offset;
        }
    }
}

TEST(PTPixelSwap, the_fastest_way_is_the_last) {
    ASSERT_FALSE(PTPixelSwap::allWays().empty());
    EXPECT_EQ(PTPixelSwap::fastest(), PTPixelSwap::allWays().back());
}
