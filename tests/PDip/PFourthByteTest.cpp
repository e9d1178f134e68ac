// SPDX-License-Identifier: MIT
#include <PDip/PFourthByte.h>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t behind = 160; // bytes behind the pixels, for what goes too far
// On both sides of the steps in which pixels are filled.
constexpr std::size_t counts[] = {0, 1, 7, 15, 16, 17, 31, 32, 33, 63, 64, 65, 100, 5003};

std::vector<unsigned char> countingBytes(std::size_t size) {
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + i / 256);
    return bytes;
}

/// What is expected of these bytes, of which some are pixels that start at the offset.
std::vector<unsigned char> filledBytes(std::size_t size, std::size_t offset, std::size_t pixels) {
    std::vector<unsigned char> bytes = countingBytes(size);
    for (std::size_t i = 0; i < pixels; ++i)
        bytes[offset + i * 4 + 3] = 255;
    return bytes;
}

} // namespace

TEST(PFourthByte, every_way_fills_the_fourth_byte_of_each_pixel_and_no_other) {
    for (const PFourthByte::Fill fill : PFourthByte::allWays()) {
        for (const std::size_t pixels : counts) {
            std::vector<unsigned char> bytes = countingBytes(pixels * 4 + behind);
            fill(bytes.data(), pixels * 4);
            ASSERT_EQ(bytes, filledBytes(bytes.size(), 0, pixels)) << pixels << " pixels";
        }
    }
}

TEST(PFourthByte, every_way_accepts_pixels_at_any_address) {
    for (const PFourthByte::Fill fill : PFourthByte::allWays()) {
        for (std::size_t offset = 0; offset < 32; ++offset) {
            std::vector<unsigned char> bytes = countingBytes(offset + 400 + behind);
            fill(bytes.data() + offset, 400);
            ASSERT_EQ(bytes, filledBytes(bytes.size(), offset, 100)) << offset;
        }
    }
}

TEST(PFourthByte, the_fastest_way_is_the_last) {
    ASSERT_FALSE(PFourthByte::allWays().empty());
    EXPECT_EQ(PFourthByte::fastest(), PFourthByte::allWays().back());
}
