// SPDX-License-Identifier: MIT
#include <apps/common/zarr/PChannelPlanes.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <random>

namespace {

std::vector<uchar> toSamples(const PPlane& plane) {
    return {plane.samples, plane.samples + plane.size()};
}

QImage noisyRows(QImage::Format format, int width, int height) {
    QImage picture(width, height, format);
    std::mt19937 random(11);
    for (int y = 0; y < height; ++y) {
        for (qsizetype i = 0; i < picture.bytesPerLine(); ++i)
            picture.scanLine(y)[i] = uchar(random());
    }
    return picture;
}

struct PlaneRow {
    const char* name;
    QImage::Format format;
    int width;
    int height;
    int channels;
};

class ChannelPlanes : public RowTest<PlaneRow> {};

ROW_TEST(ChannelPlanes, every_sample_is_that_of_the_picture) {
    const PlaneRow& row = GetParam();
    const QImage picture = noisyRows(row.format, row.width, row.height);
    PChannelPlanes channels;
    channels.split(noisyRows(row.format, 100, 100)); // its memory is used again
    const std::vector<PPlane>& planes = channels.split(picture);
    ASSERT_EQ(int(planes.size()), row.channels);
    for (int y = 0; y < row.height; ++y) {
        for (int x = 0; x < row.width; ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const int expected[]{qRed(pixel), qGreen(pixel), qBlue(pixel)};
            for (std::size_t c = 0; c < planes.size(); ++c)
                ASSERT_EQ(planes[c].samples[y * row.width + x], expected[c]) << x << ' ' << y;
        }
    }
}

const PlaneRow planeRows[] = {
    {"of_a_grey_picture_without_padding", QImage::Format_Grayscale8, 64, 5, 1},
    {"of_a_grey_picture_with_padding", QImage::Format_Grayscale8, 33, 7, 1},
    {"of_a_picture_with_blue_first", QImage::Format_BGR888, 67, 31, 3},
    {"of_a_picture_with_red_first", QImage::Format_RGB888, 32, 3, 3},
    {"of_a_picture_with_a_fourth_byte", QImage::Format_RGB32, 17, 2, 3},
    {"of_a_single_pixel", QImage::Format_BGR888, 1, 1, 3},
};

ROWS_IN(Rows, ChannelPlanes, planeRows);

struct HalfRow {
    const char* name;
    int width;
    int height;
};

class HalfPlane : public RowTest<HalfRow> {};

ROW_TEST(HalfPlane, each_sample_is_the_rounded_mean_of_four) {
    const HalfRow& row = GetParam();
    const QImage picture = noisyRows(QImage::Format_Grayscale8, row.width, row.height);
    PChannelPlanes channels;
    const PPlane plane = channels.split(picture).front();
    const PPlane half = channels.half(plane);
    ASSERT_EQ(half.width, row.width / 2);
    ASSERT_EQ(half.height, row.height / 2);
    for (int y = 0; y < half.height; ++y) {
        for (int x = 0; x < half.width; ++x) {
            const uchar* const square = plane.samples + 2 * y * row.width + 2 * x;
            const int sum = square[0] + square[1] + square[row.width] + square[row.width + 1];
            ASSERT_EQ(half.samples[y * half.width + x], (sum + 2) / 4) << x << ' ' << y;
        }
    }
}

const HalfRow halfRows[] = {
    {"of_an_even_size", 128, 96}, {"of_an_odd_width", 131, 10}, {"of_an_odd_height", 66, 13},
    {"of_four_samples", 2, 2},    {"of_two_rows", 301, 2},      {"of_two_columns", 2, 301},
    {"of_three_by_three", 3, 3},
};

ROWS_IN(Rows, HalfPlane, halfRows);

TEST(ChannelPlanesMemory, a_half_is_valid_while_it_is_halved_itself) {
    PChannelPlanes channels;
    QImage picture(8, 8, QImage::Format_Grayscale8);
    picture.fill(200);
    const PPlane half = channels.half(channels.split(picture).front());
    const PPlane quarter = channels.half(half);
    EXPECT_EQ(toSamples(half), std::vector<uchar>(16, 200));
    EXPECT_EQ(toSamples(quarter), std::vector<uchar>(4, 200));
    EXPECT_NE(half.samples, quarter.samples);
}

TEST(ChannelPlanesMemory, a_single_row_or_column_cannot_be_halved) {
    EXPECT_TRUE(PChannelPlanes::canHalve({2, 2}));
    EXPECT_FALSE(PChannelPlanes::canHalve({1, 500}));
    EXPECT_FALSE(PChannelPlanes::canHalve({500, 1}));
}

} // namespace
