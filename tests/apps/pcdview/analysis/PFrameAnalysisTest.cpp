// SPDX-License-Identifier: MIT
#include <apps/pcdview/analysis/PFrameAnalysis.h>

#include <apps/pcdview/ViewPictures.h>

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <thread>

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

PImage noise(long width, long height, PDIP::ColorFormat format) {
    PImage image;
    EXPECT_TRUE(image.create(width, height, format));
    QRandomGenerator random(5);
    const PDIP::ImageRawData data = image.rawData(PDIP::AccessMode::Write);
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = static_cast<unsigned char>(random.generate() >> 13);
    return image;
}

/// The samples of a pixel, as they are shown.
struct Colour {
    std::size_t red;
    std::size_t green;
    std::size_t blue;
};

Colour colourAt(const PImage& image, long x, long y) {
    const auto pixelBytes = image.header().bytesPerPixel();
    const unsigned char* pixel = image.rawData(PDIP::AccessMode::Read).constData() +
                                 std::size_t(y) * image.bytesPerLine() +
                                 std::size_t(x) * pixelBytes;
    if (image.format() == PDIP::ColorFormat::Gray)
        return {pixel[0], pixel[0], pixel[0]};
    if (image.format() == PDIP::ColorFormat::Xrgb)
        return {pixel[0], pixel[1], pixel[2]};
    return {pixel[2], pixel[1], pixel[0]};
}

/// The same as PFrameAnalysis::of(), pixel by pixel.
PFrameAnalysis analyseSlowly(const PImage& image) {
    PFrameAnalysis analysis;
    analysis.channels.resize(3);
    for (long y = 0; y < image.height(); ++y) {
        for (long x = 0; x < image.width(); ++x) {
            const Colour at = colourAt(image, x, y);
            ++analysis.channels[0][at.red];
            ++analysis.channels[1][at.green];
            ++analysis.channels[2][at.blue];
            ++analysis.luma[(77 * at.red + 150 * at.green + 29 * at.blue) >> 8];
            const std::size_t highest = std::max({at.red, at.green, at.blue});
            analysis.over += highest == 255 ? 1 : 0;
            analysis.under += highest == 0 ? 1 : 0;
        }
    }
    return analysis;
}

double focusSlowly(const PImage& image) {
    double squares = 0;
    double samples = 0;
    for (long y = 1; y + 1 < image.height(); ++y) {
        for (long x = 1; x + 1 < image.width(); ++x) {
            const auto at = [&](long dx, long dy) {
                return double(colourAt(image, x + dx, y + dy).green);
            };
            const double across =
                at(1, -1) + 2 * at(1, 0) + at(1, 1) - at(-1, -1) - 2 * at(-1, 0) - at(-1, 1);
            const double down =
                at(-1, 1) + 2 * at(0, 1) + at(1, 1) - at(-1, -1) - 2 * at(0, -1) - at(1, -1);
            squares += across * across + down * down;
            samples += at(0, 0);
        }
    }
    const double count = double(image.width() - 2) * double(image.height() - 2);
    return squares * count / (samples * samples);
}

void expectEqual(const PFrameAnalysis& analysis, const PFrameAnalysis& expected) {
    for (std::size_t channel = 0; channel < analysis.channels.size(); ++channel)
        EXPECT_EQ(analysis.channels[channel], expected.channels[channel]) << channel;
    EXPECT_EQ(analysis.luma, expected.luma);
    EXPECT_EQ(analysis.over, expected.over);
    EXPECT_EQ(analysis.under, expected.under);
}

} // namespace

TEST(PFrameAnalysisTest, noise_in_any_format_gives_what_counting_pixel_by_pixel_gives) {
    for (auto format : {PDIP::ColorFormat::Gray, PDIP::ColorFormat::Bgr, PDIP::ColorFormat::Xrgb,
                        PDIP::ColorFormat::BgrX}) {
        const PImage image = noise(203, 31, format);
        const PFrameAnalysis analysis = PFrameAnalysis::of(image);
        expectEqual(analysis, analyseSlowly(image));
        EXPECT_EQ(analysis.focus, focusSlowly(image));
    }
}

TEST(PFrameAnalysisTest, several_threads_give_what_counting_pixel_by_pixel_gives) {
    const PImage image = noise(1003, 501, PDIP::ColorFormat::Bgr);
    const PFrameAnalysis analysis = PFrameAnalysis::of(image);
    EXPECT_EQ(analysis.threads, std::thread::hardware_concurrency() > 1 ? 2 : 1);
    expectEqual(analysis, analyseSlowly(image));
    EXPECT_EQ(analysis.focus, focusSlowly(image));
}

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
