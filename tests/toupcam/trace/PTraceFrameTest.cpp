// SPDX-License-Identifier: MIT
#include <toupcam/trace/format/PTraceFrame.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

BITMAPINFOHEADER makeHeader(int width, int height, unsigned short bits, unsigned size) {
    BITMAPINFOHEADER header{};
    header.biWidth = width;
    header.biHeight = height;
    header.biBitCount = bits;
    header.biSizeImage = size;
    return header;
}

TEST(PTraceFrame, rows_are_padded_to_four_bytes) {
    EXPECT_EQ(PTraceFrame::pushedBytes(makeHeader(3, 2, 8, 8)), 8U);
    EXPECT_EQ(PTraceFrame::pushedBytes(makeHeader(3, 2, 24, 24)), 24U);
    EXPECT_EQ(PTraceFrame::pulledBytes({3, 2, 0, 0, 0}, 24), 24U);
    EXPECT_EQ(PTraceFrame::pulledBytes({3, 2, 0, 0, 0}, 32), 24U);
}

TEST(PTraceFrame, nothing_is_read_behind_a_header_that_does_not_add_up) {
    constexpr int most = std::numeric_limits<int>::max();
    for (const BITMAPINFOHEADER& header :
         {makeHeader(3, 2, 8, 6), makeHeader(0, 2, 8, 0), makeHeader(-3, 2, 8, 8),
          makeHeader(3, -2, 8, 8), makeHeader(3, 2, 16, 16), makeHeader(most, most, 24, 0)})
        EXPECT_EQ(PTraceFrame::pushedBytes(header), 0U) << header.biWidth;
}

TEST(PTraceFrame, frames_beyond_the_limit_are_not_read) {
    const ToupcamFrameInfoV2 large{32768, 32769, 0, 0, 0};
    EXPECT_EQ(PTraceFrame::pulledBytes(large, 24), 0U);
    const ToupcamFrameInfoV2 largest{4294967295U, 4294967295U, 0, 0, 0};
    EXPECT_EQ(PTraceFrame::pulledBytes(largest, 32), 0U);
    EXPECT_EQ(PTraceFrame::pulledBytes({3, 2, 0, 0, 0}, 8), 0U);
}

TEST(PTraceFrame, the_checksum_is_that_of_zip_and_png) {
    EXPECT_EQ(PTraceFrame::checksum("123456789", 9), u"0xcbf43926"_qs);
}

TEST(PTraceFrame, patterns_differ_by_their_checksum) {
    unsigned char one[4];
    unsigned char other[4];
    PTraceFrame::fillPattern(one, 4, 1);
    PTraceFrame::fillPattern(other, 4, 2);
    EXPECT_EQ(one[3], 4);
    EXPECT_EQ(other[0], 2);
}

} // namespace
