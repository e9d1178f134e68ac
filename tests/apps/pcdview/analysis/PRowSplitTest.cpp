// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PRowSplit.h>

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t margin = 40; // entries that must stay as they are

/// Noise, with black and clipped pixels in it.
std::vector<unsigned char> noise(std::size_t pixels) {
    QRandomGenerator random(quint32(pixels + 1));
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < pixels; ++i) {
        const int kind = random.bounded(4);
        for (int sample = 0; sample < 3; ++sample)
            bytes.push_back(static_cast<unsigned char>(kind == 0   ? 0
                                                       : kind == 1 ? 250 + random.bounded(6)
                                                                   : random.bounded(256)));
    }
    return bytes;
}

struct Result {
    std::vector<unsigned char> green;
    std::vector<quint16> thirdAndLuma; // sorted, as their order is free
    quint64 over = 0;
    quint64 under = 0;
};

Result splitBy(PRowSplit::Split split, std::size_t pixels) {
    const std::vector<unsigned char> bytes = noise(pixels);
    Result result{std::vector<unsigned char>(pixels + margin, 77),
                  std::vector<quint16>(pixels + margin, 7777)};
    PRowSplit::Clipped clipped;
    split(bytes.data(), pixels, {result.green.data(), result.thirdAndLuma.data()}, clipped);
    std::sort(result.thirdAndLuma.begin(), result.thirdAndLuma.begin() + long(pixels));
    result.over = clipped.over;
    result.under = clipped.under;
    return result;
}

} // namespace

TEST(PRowSplit, every_way_does_what_the_plain_one_does_and_writes_nothing_more) {
    for (const PRowSplit::Split split : PRowSplit::bgrWays()) {
        for (std::size_t pixels = 0; pixels < 140; ++pixels) {
            const Result plain = splitBy(PRowSplit::splitPlainly<PRowSplit::Bgr>, pixels);
            const Result result = splitBy(split, pixels);
            ASSERT_EQ(result.green, plain.green) << pixels << " pixels";
            ASSERT_EQ(result.thirdAndLuma, plain.thirdAndLuma) << pixels << " pixels";
            ASSERT_EQ(result.over, plain.over) << pixels << " pixels";
            ASSERT_EQ(result.under, plain.under) << pixels << " pixels";
        }
    }
}

TEST(PRowSplit, the_plain_way_gives_green_third_byte_luma_and_what_is_clipped) {
    const unsigned char pixels[] = {30, 20, 10, 0, 0, 0, 255, 1, 2}; // blue first
    unsigned char green[3];
    quint16 thirdAndLuma[3];
    PRowSplit::Clipped clipped;
    PRowSplit::splitPlainly<PRowSplit::Bgr>(pixels, 3, {green, thirdAndLuma}, clipped);
    EXPECT_EQ(std::vector<int>(green, green + 3), (std::vector<int>{20, 0, 1}));
    // 0.299, 0.587 and 0.114 of the colours: 18.2, 0, 30.3.
    EXPECT_EQ(std::vector<int>(thirdAndLuma, thirdAndLuma + 3),
              (std::vector<int>{18 << 8 | 10, 0, 30 << 8 | 2}));
    EXPECT_EQ(clipped.over, 1u);
    EXPECT_EQ(clipped.under, 1u);
}

TEST(PRowSplit, luma_is_the_same_for_all_greys_and_full_colours) {
    for (const PRowSplit::Split split : PRowSplit::bgrWays()) {
        std::vector<unsigned char> pixels;
        for (int value = 0; value < 256; ++value)
            pixels.insert(pixels.end(), 3, static_cast<unsigned char>(value));
        unsigned char green[256];
        quint16 thirdAndLuma[256];
        PRowSplit::Clipped clipped;
        split(pixels.data(), 256, {green, thirdAndLuma}, clipped);
        std::sort(thirdAndLuma, thirdAndLuma + 256);
        for (unsigned value = 0; value < 256; ++value)
            ASSERT_EQ(thirdAndLuma[value], value << 8 | value);
    }
}
