// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPixelSwap.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Bytes = std::vector<unsigned char>;

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
        for (std::size_t pixels = 0; pixels < 100; ++pixels) {
            Bytes bytes = counting(pixels);
            swap(bytes.data(), pixels);
            ASSERT_EQ(bytes, expected(counting(pixels))) << pixels << " pixels";
        }
    }
}

TEST(PTPixelSwap, every_way_leaves_the_bytes_behind_the_pixels_alone) {
    for (const PTPixelSwap::Swap swap : PTPixelSwap::allWays()) {
        for (std::size_t pixels = 0; pixels < 100; ++pixels) {
            Bytes bytes = counting(pixels + 40);
            swap(bytes.data(), pixels);
            const Bytes behind(bytes.begin() + long(pixels) * 4, bytes.end());
            const Bytes all = counting(pixels + 40);
            ASSERT_EQ(behind, Bytes(all.begin() + long(pixels) * 4, all.end()))
                << pixels << " pixels";
        }
    }
}

TEST(PTPixelSwap, every_way_accepts_pixels_at_any_address) {
    for (const PTPixelSwap::Swap swap : PTPixelSwap::allWays()) {
        for (std::size_t offset = 0; offset < 32; ++offset) {
            Bytes bytes(offset + 400);
            const Bytes pixels = counting(100);
            std::copy(pixels.begin(), pixels.end(), bytes.begin() + long(offset));
            swap(bytes.data() + offset, 100);
            ASSERT_EQ(Bytes(bytes.begin() + long(offset), bytes.end()), expected(pixels)) << offset;
        }
    }
}

TEST(PTPixelSwap, the_fastest_way_is_the_last) {
    ASSERT_FALSE(PTPixelSwap::allWays().empty());
    EXPECT_EQ(PTPixelSwap::fastest(), PTPixelSwap::allWays().back());
}
