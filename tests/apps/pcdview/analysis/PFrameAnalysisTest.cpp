// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <apps/pcdview/ViewPictures.h>

#include <gtest/gtest.h>

#include <numeric>

namespace {

QColor grey(int value) {
    return QColor(value, value, value);
}

quint64 sumCounts(const PFrameAnalysis::Counts& counts) {
    return std::accumulate(counts.begin(), counts.end(), quint64(0));
}

/// Stripes of this width, alternating between two levels.
PImage stripes(int width, int low, int high) {
    return makePicture(120, 90, PDIP::ColorFormat::Gray,
                       [=](int x, int) { return grey(x / width % 2 == 0 ? low : high); });
}

} // namespace

TEST(PFrameAnalysisTest, counts_every_grey_pixel_and_no_padding) {
    const PImage image =
        makePicture(1003, 11, PDIP::ColorFormat::Gray, [](int x, int) { return grey(x % 251); });
    const PFrameAnalysis analysis = PFrameAnalysis::of(image);
    ASSERT_TRUE(analysis.isGrey());
    EXPECT_EQ(analysis.pixels, 1003u * 11);
    EXPECT_EQ(sumCounts(analysis.channels[0]), analysis.pixels);
    for (std::size_t value = 0; value < 251; ++value)
        EXPECT_EQ(analysis.channels[0][value], value < 250 ? 44u : 33u) << value;
}

TEST(PFrameAnalysisTest, counts_each_colour_by_itself) {
    for (auto format : {PDIP::ColorFormat::Bgr, PDIP::ColorFormat::Xrgb, PDIP::ColorFormat::BgrX}) {
        const PImage image = makePicture(101, 7, format, [](int x, int) {
            return x < 40 ? QColor(10, 20, 30) : QColor(200, 20, 90);
        });
        const PFrameAnalysis analysis = PFrameAnalysis::of(image);
        ASSERT_EQ(analysis.channels.size(), 3u);
        EXPECT_EQ(analysis.channels[0][10], 40u * 7);
        EXPECT_EQ(analysis.channels[0][200], 61u * 7);
        EXPECT_EQ(analysis.channels[1][20], 101u * 7);
        EXPECT_EQ(analysis.channels[2][30], 40u * 7);
        EXPECT_EQ(analysis.channels[2][90], 61u * 7);
        // 0.299, 0.587 and 0.114 of the colours: 18.2, 81.8.
        EXPECT_EQ(analysis.luma[18], 40u * 7);
        EXPECT_EQ(analysis.luma[82], 61u * 7);
        EXPECT_DOUBLE_EQ(analysis.mean(1), 20);
    }
}

TEST(PFrameAnalysisTest, counts_what_is_clipped) {
    const PImage image = makePicture(100, 10, PDIP::ColorFormat::Bgr, [](int x, int) {
        return x < 5 ? QColor(255, 3, 3) : x < 7 ? QColor(0, 0, 0) : QColor(0, 0, 1);
    });
    const PFrameAnalysis analysis = PFrameAnalysis::of(image);
    EXPECT_DOUBLE_EQ(analysis.overShare(), 0.05);
    EXPECT_DOUBLE_EQ(analysis.underShare(), 0.02);
}

TEST(PFrameAnalysisTest, an_empty_picture_has_nothing) {
    const PFrameAnalysis analysis = PFrameAnalysis::of(PImage());
    EXPECT_EQ(analysis.pixels, 0u);
    EXPECT_TRUE(analysis.channels.empty());
    EXPECT_EQ(analysis.overShare(), 0);
}

TEST(PFrameAnalysisTest, a_single_hot_pixel_does_not_spoil_the_used_levels) {
    const PImage image = makePicture(100, 100, PDIP::ColorFormat::Gray, [](int x, int y) {
        return grey(x == 0 && y == 0 ? 255 : 40 + x);
    });
    EXPECT_EQ(PFrameAnalysis::of(image).usedLevels(), std::pair(40, 139));
}

TEST(PFrameAnalysisTest, an_even_picture_keeps_all_levels) {
    const PImage image =
        makePicture(20, 20, PDIP::ColorFormat::Gray, [](int, int) { return grey(77); });
    EXPECT_EQ(PFrameAnalysis::of(image).usedLevels(), std::pair(0, 255));
}

TEST(PFrameAnalysisTest, an_even_picture_has_no_focus) {
    const PImage image =
        makePicture(20, 20, PDIP::ColorFormat::Bgr, [](int, int) { return grey(77); });
    EXPECT_EQ(PFrameAnalysis::of(image).focus, 0);
}

TEST(PFrameAnalysisTest, the_focus_of_an_edge_is_what_the_measure_says) {
    // A vertical edge of height 100: Sobel gives 400 in the two columns next to it. Of 6 x 4 inner
    // pixels, 2 x 4 have that; the samples of the inner pixels have a mean of 50.
    const PImage image = makePicture(8, 6, PDIP::ColorFormat::Gray,
                                     [](int x, int) { return grey(x < 4 ? 0 : 100); });
    EXPECT_DOUBLE_EQ(PFrameAnalysis::of(image).focus, (400.0 * 400 * 8 / 24) / (50.0 * 50));
}

TEST(PFrameAnalysisTest, a_sharper_picture_has_a_higher_focus) {
    const auto wave = [](double period) {
        return makePicture(240, 60, PDIP::ColorFormat::Gray, [=](int x, int) {
            return grey(int(120 + 80 * std::sin(x * 2 * 3.14159265 / period)));
        });
    };
    EXPECT_GT(PFrameAnalysis::of(wave(12)).focus, 2 * PFrameAnalysis::of(wave(40)).focus);
}

TEST(PFrameAnalysisTest, a_brighter_lamp_does_not_change_the_focus) {
    EXPECT_DOUBLE_EQ(PFrameAnalysis::of(stripes(6, 20, 60)).focus,
                     PFrameAnalysis::of(stripes(6, 60, 180)).focus);
}

TEST(PFrameAnalysisTest, a_picture_of_two_pixels_has_no_focus) {
    const PImage image =
        makePicture(2, 1, PDIP::ColorFormat::Gray, [](int x, int) { return grey(x * 90); });
    EXPECT_EQ(PFrameAnalysis::of(image).focus, 0);
}
