// SPDX-License-Identifier: MIT
#include <PDip/PPixelOperations.h>

#include <PDip/PImage.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using PDIP::AccessMode;
using PDIP::ColorFormat;

namespace {

/// Pixels 0 1 2 3, 4 5 6 7, … of 32 bits.
PImage counting(long width, long height, ColorFormat format = ColorFormat::BgrX) {
    PImage image;
    EXPECT_TRUE(image.create(width, height, format));
    unsigned char* bytes = image.rawData(AccessMode::Write).data();
    for (std::size_t i = 0; i < image.dataSize(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 251);
    return image;
}

std::vector<int> pixelBytes(const PImage& image) {
    const PDIP::ImageRawData raw = image.rawData(AccessMode::Read);
    return {raw.constData(), raw.constData() + raw.size()};
}

} // namespace

TEST(setXToXRGB, fills_the_fourth_byte_of_every_pixel_and_no_other) {
    PImage image = counting(3, 2);
    EXPECT_TRUE(PDIP::setXToXRGB(&image).isOk());
    EXPECT_EQ(pixelBytes(image),
              (std::vector<int>{0,  1,  2,  255, 4,  5,  6,  255, 8,  9,  10, 255,
                                12, 13, 14, 255, 16, 17, 18, 255, 20, 21, 22, 255}));
}

TEST(setXToXRGB, fills_large_images_to_the_last_pixel) {
    PImage image = counting(37, 29);
    std::vector<int> expected = pixelBytes(image);
    for (std::size_t i = 3; i < expected.size(); i += 4)
        expected[i] = 255;
    EXPECT_TRUE(PDIP::setXToXRGB(&image).isOk());
    EXPECT_EQ(pixelBytes(image), expected);
}

TEST(setXToXRGB, makes_the_format_xrgb_from_either_32_bit_format) {
    for (const ColorFormat format : {ColorFormat::BgrX, ColorFormat::Xrgb}) {
        PImage image = counting(2, 2, format);
        EXPECT_TRUE(PDIP::setXToXRGB(&image).isOk());
        EXPECT_EQ(image.format(), ColorFormat::Xrgb);
    }
}

TEST(setXToXRGB, leaves_copies_as_they_are) {
    PImage image = counting(2, 2);
    const PImage copy = image;
    EXPECT_TRUE(PDIP::setXToXRGB(&image).isOk());
    EXPECT_EQ(pixelBytes(copy)[3], 3);
    EXPECT_EQ(copy.format(), ColorFormat::BgrX);
}

TEST(setXToXRGB, fails_for_pixels_that_are_not_32_bit_and_changes_nothing) {
    PImage grey = counting(4, 1, ColorFormat::Gray);
    PImage colour = counting(4, 1, ColorFormat::Bgr);
    for (PImage* image : {&grey, &colour}) {
        const std::vector<int> before = pixelBytes(*image);
        const PImageHeader header = image->header();
        EXPECT_FALSE(PDIP::setXToXRGB(image).isOk());
        EXPECT_EQ(pixelBytes(*image), before);
        EXPECT_EQ(image->header(), header);
    }
}

TEST(setXToXRGB, fails_for_an_empty_image_and_for_none) {
    PImage empty;
    EXPECT_FALSE(PDIP::setXToXRGB(&empty).isOk());
    const PStatus none = PDIP::setXToXRGB(nullptr);
    EXPECT_EQ(none.reason(), u"only an image of 32-bit pixels has an X byte"_qs);
}
