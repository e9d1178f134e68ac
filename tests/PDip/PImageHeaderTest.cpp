// SPDX-License-Identifier: MIT
#include <PDip/PImageHeader.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <climits>

using PDIP::ColorFormat;

namespace {

constexpr auto noFormat = ColorFormat(3);

struct Row {
    const char* name;
    long width;
    long height;
    ColorFormat format;
    std::size_t bytesPerLine;
    std::size_t dataSize;
};

const Row rows[] = {
    {"one_grey_pixel_is_padded_to_four_bytes", 1, 1, ColorFormat::Gray, 4, 4},
    {"grey_rows_of_four_need_no_padding", 4, 3, ColorFormat::Gray, 4, 12},
    {"a_colour_row_of_1003_pixels_is_padded_by_three", 1003, 2, ColorFormat::Bgr, 3012, 6024},
    {"a_colour_row_of_1004_pixels_is_not_padded", 1004, 2, ColorFormat::Bgr, 3012, 6024},
    {"32_bit_rows_are_never_padded", 5, 2, ColorFormat::Xrgb, 20, 40},
    {"pulled_rows_are_32_bit_too", 5, 2, ColorFormat::BgrX, 20, 40},
    {"twenty_megapixels_in_colour", 5440, 3648, ColorFormat::Bgr, 16320, 59535360},
    {"the_largest_size_below_the_limit", (1L << 31) - 1, 1L << 31, ColorFormat::Gray, 1UL << 31, 0},
    {"a_size_just_below_the_limit", 1L << 31, (1L << 31) - 1, ColorFormat::Gray, 1UL << 31,
     (1UL << 62) - (1UL << 31)},
    {"no_width", 0, 5, ColorFormat::Gray, 0, 0},
    {"no_height", 5, 0, ColorFormat::Gray, 0, 0},
    {"a_negative_width", -5, 5, ColorFormat::Gray, 0, 0},
    {"a_negative_height", 5, -5, ColorFormat::Gray, 0, 0},
    {"both_negative", -5, -5, ColorFormat::Gray, 0, 0},
    {"the_least_width", LONG_MIN, 1, ColorFormat::Bgr, 0, 0},
    {"the_greatest_width", LONG_MAX, 1, ColorFormat::Gray, 0, 0},
    {"the_greatest_width_in_colour", LONG_MAX, 1, ColorFormat::Bgr, 0, 0},
    {"the_greatest_width_in_32_bits", LONG_MAX, 1, ColorFormat::BgrX, 0, 0},
    {"the_greatest_height", 1, LONG_MAX, ColorFormat::Gray, 0, 0},
    {"the_greatest_of_both", LONG_MAX, LONG_MAX, ColorFormat::Xrgb, 0, 0},
    {"a_product_that_would_wrap_to_zero", 1L << 32, 1L << 32, ColorFormat::Gray, 0, 0},
    {"a_format_that_does_not_exist", 5, 5, noFormat, 0, 0},
};

class PImageHeaderSizes : public RowTest<Row> {};

} // namespace

ROW_TEST(PImageHeaderSizes, follow_from_the_geometry) {
    const Row& row = GetParam();
    const PImageHeader header(row.width, row.height, row.format);
    EXPECT_EQ(header.dataSize(), row.dataSize);
    EXPECT_EQ(header.isValid(), row.dataSize > 0);
    EXPECT_EQ(header.bytesPerLine(), row.dataSize > 0 ? row.bytesPerLine : 0);
}

ROWS_IN(Geometries, PImageHeaderSizes, rows);

TEST(PImageHeader, is_not_valid_by_default) {
    EXPECT_FALSE(PImageHeader().isValid());
    EXPECT_EQ(PImageHeader().dataSize(), 0u);
}

TEST(PImageHeader, has_the_bytes_per_pixel_of_each_format) {
    const auto bytes = [](ColorFormat format) {
        return PImageHeader(1, 1, format).bytesPerPixel();
    };
    EXPECT_EQ(bytes(ColorFormat::Gray), 1u);
    EXPECT_EQ(bytes(ColorFormat::Bgr), 3u);
    EXPECT_EQ(bytes(ColorFormat::Xrgb), 4u);
    EXPECT_EQ(bytes(ColorFormat::BgrX), 4u);
    EXPECT_EQ(bytes(noFormat), 0u);
}

TEST(PImageHeader, is_not_valid_with_a_channel_origin_or_alignment_that_does_not_exist) {
    using namespace PDIP;
    const auto gray = ColorFormat::Gray;
    EXPECT_FALSE(PImageHeader(4, 4, gray, Channel(1)).isValid());
    EXPECT_FALSE(PImageHeader(4, 4, gray, Channel(0), Origin(1)).isValid());
    EXPECT_FALSE(PImageHeader(4, 4, gray, Channel(0), Origin(0), RowsAlign(1)).isValid());
    EXPECT_TRUE(PImageHeader(4, 4, gray, Channel(0), Origin(0), RowsAlign(0)).isValid());
}

TEST(PImageHeader, is_equal_only_if_every_field_is) {
    using namespace PDIP;
    const PImageHeader header(4, 5, ColorFormat::Bgr);
    EXPECT_EQ(header, PImageHeader(4, 5, ColorFormat::Bgr));
    EXPECT_NE(header, PImageHeader(3, 5, ColorFormat::Bgr));
    EXPECT_NE(header, PImageHeader(4, 6, ColorFormat::Bgr));
    EXPECT_NE(header, PImageHeader(4, 5, ColorFormat::Gray));
    EXPECT_NE(header, PImageHeader(4, 5, ColorFormat::Bgr, Channel(1)));
    EXPECT_NE(header, PImageHeader(4, 5, ColorFormat::Bgr, Channel(0), Origin(1)));
    EXPECT_NE(header, PImageHeader(4, 5, ColorFormat::Bgr, Channel(0), Origin(0), RowsAlign(1)));
}
