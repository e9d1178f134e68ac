// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PYuvConversion.h>

#include <apps/common/pipe/PixelImage.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Chroma = PYuvConversion::Chroma;
using Format = PDIP::ColorFormat;

std::vector<int> convert(const PImage& image, Chroma chroma) {
    // One more, which must stay.
    std::vector<unsigned char> planes(PYuvConversion::planesSize(image.header(), chroma) + 1, 7);
    PYuvConversion::convert(image, chroma, planes.data());
    EXPECT_EQ(planes.back(), 7);
    return {planes.begin(), planes.end() - 1};
}

QByteArray toPixel(int blue, int green, int red) {
    return QByteArray().append(char(blue)).append(char(green)).append(char(red));
}

struct ColourRow {
    const char* name;
    int red, green, blue;
    std::vector<int> yuv;
};

class YuvColour : public RowTest<ColourRow> {};

ROW_TEST(YuvColour, has_the_codes_of_the_recommendation_in_every_format) {
    const ColourRow& row = GetParam();
    const QByteArray bgr = toPixel(row.blue, row.green, row.red);
    const QByteArray rgb = toPixel(row.red, row.green, row.blue);
    for (const PImage& image :
         {makePixelImage(1, Format::Bgr, {bgr}), makePixelImage(1, Format::BgrX, {bgr + '\x55'}),
          makePixelImage(1, Format::Xrgb, {rgb + '\xff'})}) {
        EXPECT_EQ(convert(image, Chroma::Each), row.yuv);
        EXPECT_EQ(convert(image, Chroma::Quarter), row.yuv);
    }
}

// The codes of the colour bars of 100 %, as BT.601 rounds them.
ROWS(Rows, YuvColour, ColourRow{"black", 0, 0, 0, {16, 128, 128}},
     ColourRow{"white", 255, 255, 255, {235, 128, 128}}, ColourRow{"red", 255, 0, 0, {81, 90, 240}},
     ColourRow{"green", 0, 255, 0, {145, 54, 34}}, ColourRow{"blue", 0, 0, 255, {41, 240, 110}},
     ColourRow{"yellow", 255, 255, 0, {210, 16, 146}},
     ColourRow{"cyan", 0, 255, 255, {170, 166, 16}},
     ColourRow{"magenta", 255, 0, 255, {106, 202, 222}},
     ColourRow{"grey", 128, 128, 128, {126, 128, 128}});

/// The formulas of the recommendation, not rounded.
std::vector<double> exactYuv(int red, int green, int blue) {
    const double luma = (0.299 * red + 0.587 * green + 0.114 * blue) / 255;
    return {16 + 219 * luma, 128 + 224 * (blue / 255.0 - luma) / 1.772,
            128 + 224 * (red / 255.0 - luma) / 1.402};
}

TEST(YuvConversion, no_colour_is_off_by_more_than_rounding) {
    double largest = 0;
    for (int red = 0; red < 256; red += 5) {
        for (int green = 0; green < 256; green += 5) {
            for (int blue = 0; blue < 256; blue += 5) {
                const std::vector<int> yuv = convert(
                    makePixelImage(1, Format::Bgr, {toPixel(blue, green, red)}), Chroma::Each);
                const std::vector<double> exact = exactYuv(red, green, blue);
                for (std::size_t i = 0; i < exact.size(); ++i)
                    largest = std::max(largest, std::abs(yuv[i] - exact[i]));
            }
        }
    }
    EXPECT_LT(largest, 0.51);
}

TEST(YuvConversion, all_greys_have_no_colour) {
    for (int grey = 0; grey < 256; ++grey) {
        const std::vector<int> yuv =
            convert(makePixelImage(1, Format::Bgr, {toPixel(grey, grey, grey)}), Chroma::Quarter);
        EXPECT_EQ(yuv, (std::vector<int>{int(std::lround(16 + 219 * grey / 255.0)), 128, 128}));
    }
}

TEST(YuvConversion, planes_follow_each_other_row_by_row_without_padding) {
    const QByteArray red = toPixel(0, 0, 255);
    const QByteArray blue = toPixel(255, 0, 0);
    const PImage image = makePixelImage(2, Format::Bgr, {red + blue, blue + blue});
    EXPECT_EQ(convert(image, Chroma::Each),
              (std::vector<int>{81, 41, 41, 41, /**/ 90, 240, 240, 240, /**/ 240, 110, 110, 110}));
}

TEST(YuvConversion, four_pixels_share_the_mean_of_their_colours) {
    const QByteArray red = toPixel(0, 0, 255);
    const QByteArray blue = toPixel(255, 0, 0);
    const PImage image = makePixelImage(2, Format::Bgr, {red + blue, blue + red});
    const std::vector<double> mean{128 + (90.203 + 240 - 256) / 2, 128 + (240 + 109.786 - 256) / 2};
    EXPECT_EQ(
        convert(image, Chroma::Quarter),
        (std::vector<int>{81, 41, 41, 81, int(std::lround(mean[0])), int(std::lround(mean[1]))}));
}

TEST(YuvConversion, at_odd_edges_fewer_pixels_share_their_colour) {
    const QByteArray red = toPixel(0, 0, 255);
    const QByteArray blue = toPixel(255, 0, 0);
    const QByteArray green = toPixel(0, 255, 0);
    const QByteArray white = toPixel(255, 255, 255);
    const PImage image =
        makePixelImage(3, Format::Bgr, {red + red + blue, red + red + blue, green + green + white});
    EXPECT_EQ(convert(image, Chroma::Quarter),
              (std::vector<int>{81, 81, 41, 81, 81, 41, 145, 145, 235, /**/ 90, 240, 54, 128,
                                /**/ 240, 110, 34, 128}));
    EXPECT_EQ(PYuvConversion::planesSize({3, 3, Format::Bgr}, Chroma::Quarter), 9U + 4 + 4);
    EXPECT_EQ(PYuvConversion::planesSize({4, 3, Format::Bgr}, Chroma::Quarter), 12U + 4 + 4);
    EXPECT_EQ(PYuvConversion::planesSize({3, 3, Format::Bgr}, Chroma::Each), 27U);
}

} // namespace
