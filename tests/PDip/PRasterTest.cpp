// SPDX-License-Identifier: MIT
#include <PDip/PRaster.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

using PDIP::AccessMode;
using PDIP::ColorFormat;
using Pixel = PDIP::PixelXRGB<unsigned char>;
using Raster = PDIP::RasterT<Pixel>;

namespace {

PImage zeroed(long width, long height, ColorFormat format) {
    PImage image;
    EXPECT_TRUE(image.create(width, height, format));
    std::memset(image.rawData(AccessMode::Write).data(), 0, image.dataSize());
    return image;
}

std::string thrownMessage(const std::function<void()>& action) {
    try {
        action();
    } catch (const PDIP::exception& exception) {
        return exception.what();
    }
    return "nothing thrown";
}

} // namespace

TEST(PRaster, walks_every_pixel_once) {
    PImage image = zeroed(3, 4, ColorFormat::Xrgb);
    Raster raster(image, AccessMode::ReadWrite);
    EXPECT_EQ(raster.width(), 3);
    EXPECT_EQ(raster.height(), 4);
    EXPECT_EQ(std::distance(raster.begin(), raster.end()), 12);
    for (Pixel& pixel : raster)
        ++pixel.third;
    const auto* bytes = image.rawData(AccessMode::Read).constData();
    for (std::size_t i = 0; i < image.dataSize(); ++i)
        EXPECT_EQ(bytes[i], i % 4 == 2 ? 1 : 0) << i;
}

TEST(PRaster, exchanges_the_first_and_the_third_byte_in_place) {
    PImage image = zeroed(2, 1, ColorFormat::Xrgb);
    const unsigned char before[] = {1, 2, 3, 4, 5, 6, 7, 8};
    std::memcpy(image.rawData(AccessMode::Write).data(), before, sizeof before);
    for (Pixel& pixel : Raster(image, AccessMode::ReadWrite))
        std::swap(pixel.first, pixel.third);
    const unsigned char after[] = {3, 2, 1, 4, 7, 6, 5, 8};
    EXPECT_EQ(std::memcmp(image.rawData(AccessMode::Read).constData(), after, sizeof after), 0);
}

TEST(PRaster, steps_over_the_padding_at_the_end_of_rows) {
    PImage image = zeroed(3, 2, ColorFormat::Gray);
    for (unsigned char& sample : PDIP::RasterT<unsigned char>(image, AccessMode::ReadWrite))
        sample = 1;
    const auto* bytes = image.rawData(AccessMode::Read).constData();
    EXPECT_EQ(std::vector<int>(bytes, bytes + 8), (std::vector<int>{1, 1, 1, 0, 1, 1, 1, 0}));
}

TEST(PRaster, opened_for_writing_leaves_copies_of_the_image_as_they_are) {
    PImage image = zeroed(2, 2, ColorFormat::Xrgb);
    const PImage copy = image;
    for (Pixel& pixel : Raster(image, AccessMode::ReadWrite))
        pixel.first = 9;
    EXPECT_EQ(copy.rawData(AccessMode::Read).constData()[0], 0);
    EXPECT_EQ(image.rawData(AccessMode::Read).constData()[0], 9);
}

TEST(PRaster, opened_for_reading_refuses_to_be_walked) {
    PImage image = zeroed(2, 2, ColorFormat::Xrgb);
    const Raster raster(image, AccessMode::Read);
    EXPECT_EQ(thrownMessage([&] { raster.begin(); }), "invalid mode for access");
}

TEST(PRaster, refuses_an_image_of_another_pixel_size) {
    PImage image = zeroed(2, 2, ColorFormat::Bgr);
    EXPECT_EQ(thrownMessage([&] { Raster(image, AccessMode::ReadWrite); }),
              "pixel type does not fit the image's format");
}

TEST(PRaster, of_an_empty_image_has_no_pixels) {
    PImage image;
    const Raster raster(image, AccessMode::ReadWrite);
    EXPECT_EQ(raster.begin(), raster.end());
}

TEST(PRaster, throws_an_exception_that_is_also_a_standard_one) {
    PImage image = zeroed(2, 2, ColorFormat::Bgr);
    EXPECT_THROW(Raster(image, AccessMode::ReadWrite), std::exception);
}
