// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PTightRows.h>

#include <apps/common/pipe/PixelImage.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

using Format = PDIP::ColorFormat;

QByteArray pack(PTightRows& rows, const PImage& image) {
    const PByteView bytes = rows.pack(image);
    return {reinterpret_cast<const char*>(bytes.data), qsizetype(bytes.size)};
}

TEST(TightRows, leaves_out_the_padding_of_each_row) {
    PTightRows rows;
    EXPECT_EQ(pack(rows, makePixelImage(3, Format::Gray, {"abc", "def"})), "abcdef");
    EXPECT_EQ(pack(rows, makePixelImage(1, Format::Bgr, {"bgr", "BGR"})), "bgrBGR");
}

TEST(TightRows, takes_the_next_image_whatever_its_size) {
    PTightRows rows;
    EXPECT_EQ(pack(rows, makePixelImage(5, Format::Gray, {"abcde", "fghij"})), "abcdefghij");
    EXPECT_EQ(pack(rows, makePixelImage(2, Format::Gray, {"xy"})), "xy");
}

TEST(TightRows, rows_without_padding_are_not_copied) {
    PTightRows rows;
    for (const PImage& image : {makePixelImage(4, Format::Gray, {"abcd", "efgh"}),
                                makePixelImage(1, Format::BgrX, {"bgrx", "BGRX"})})
        EXPECT_EQ(rows.pack(image).data, image.rawData(PDIP::AccessMode::Read).constData());
}

} // namespace
