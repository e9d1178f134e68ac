// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PRedBlueSwap.h>

#include <QByteArray>

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr char untouched = '\x5a';

QByteArray makePixels(std::size_t count) {
    QByteArray bytes(qsizetype(count * 3), '\0');
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 31 + 7);
    return bytes;
}

QByteArray swapByHand(const QByteArray& pixels) {
    QByteArray swapped = pixels;
    for (qsizetype i = 0; i < pixels.size(); i += 3) {
        swapped[i] = pixels[i + 2];
        swapped[i + 2] = pixels[i];
    }
    return swapped;
}

QByteArray copy(PRedBlueSwap::Copy way, const QByteArray& pixels) {
    const std::vector<uchar> source(pixels.begin(), pixels.end()); // ends where the pixels do
    QByteArray target(pixels.size() + 32, untouched);
    way(source.data(), reinterpret_cast<uchar*>(target.data()), source.size() / 3);
    return target;
}

TEST(PRedBlueSwap, every_way_exchanges_red_and_blue_of_any_number_of_pixels_and_no_more) {
    ASSERT_FALSE(PRedBlueSwap::allWays().empty());
    for (const PRedBlueSwap::Copy way : PRedBlueSwap::allWays()) {
        for (std::size_t count = 0; count < 700; ++count) {
            const QByteArray pixels = makePixels(count);
            EXPECT_EQ(copy(way, pixels), swapByHand(pixels) + QByteArray(32, untouched)) << count;
        }
    }
}

TEST(PRedBlueSwap, the_fastest_way_is_one_of_them) {
    EXPECT_EQ(PRedBlueSwap::fastest(), PRedBlueSwap::allWays().back());
}

TEST(PRedBlueSwap, a_processor_with_byte_shuffles_has_a_faster_way_than_the_plain_one) {
#if defined(__x86_64__)
    const std::size_t expected = __builtin_cpu_supports("ssse3") ? 2 : 1;
#else
    const std::size_t expected = 1;
#endif
    EXPECT_EQ(PRedBlueSwap::allWays().size(), expected);
}

} // namespace
