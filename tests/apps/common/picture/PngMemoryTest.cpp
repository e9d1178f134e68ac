// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/picture/PPngEncoder.h>

#include <apps/common/RefusedMemory.h>

#include <gtest/gtest.h>

#include <new>

namespace {

QImage greyPicture(int width) {
    QImage image(width, 4, QImage::Format_Grayscale8);
    image.fill(100);
    return image;
}

} // namespace

TEST(PngMemory, a_picture_is_encoded_while_there_is_memory) {
    EXPECT_FALSE(PPngEncoder::encode(greyPicture(8), {}, PPngEncoder::Content::Frame).isEmpty());
}

TEST(PngMemory, rows_that_libpng_has_no_memory_for_are_no_problem_of_the_format) {
    const QImage wide = greyPicture(500'000);
    const NoLargeMemory none(500'000);
    EXPECT_THROW(PPngEncoder::encode(wide, {}, PPngEncoder::Content::Frame), std::bad_alloc);
}

TEST(PngMemory, a_compressor_that_libpng_has_no_memory_for_is_no_problem_of_the_format) {
    const NoLargeMemory none(30'000);
    EXPECT_THROW(PPngEncoder::encode(greyPicture(8), {}, PPngEncoder::Content::Frame),
                 std::bad_alloc);
}
