// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PY4mCoding.h>

#include <apps/common/pipe/PixelImage.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

using Chroma = PYuvConversion::Chroma;
using Format = PDIP::ColorFormat;

struct Y4mHeaderRow {
    const char* name;
    Chroma chroma;
    PImageHeader frame;
    std::optional<double> rate;
    QByteArray header;
};

class Y4mHeader : public RowTest<Y4mHeaderRow> {};

ROW_TEST(Y4mHeader, describes_the_frames) {
    const Y4mHeaderRow& row = GetParam();
    EXPECT_EQ(PY4mCoding(row.chroma).makeHeader(row.frame, row.rate), row.header);
}

const PImageHeader greyFrame(1280, 960, Format::Gray);
const PImageHeader colourFrame(5441, 3, Format::Bgr);

ROWS(Rows, Y4mHeader,
     Y4mHeaderRow{"grey_is_mono_in_its_full_range", Chroma::Quarter, greyFrame, 20,
                  "YUV4MPEG2 W1280 H960 F20:1 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"grey_has_no_chroma_to_choose", Chroma::Each, greyFrame, 20,
                  "YUV4MPEG2 W1280 H960 F20:1 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"colours_share_samples_in_the_middle_of_four_pixels", Chroma::Quarter,
                  colourFrame, 20,
                  "YUV4MPEG2 W5441 H3 F20:1 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\n"},
     Y4mHeaderRow{"colours_have_samples_of_their_own", Chroma::Each, colourFrame, 20,
                  "YUV4MPEG2 W5441 H3 F20:1 Ip A1:1 C444 XCOLORRANGE=LIMITED\n"},
     Y4mHeaderRow{"a_measured_rate_close_to_a_whole_number_is_that", Chroma::Each, greyFrame, 29.62,
                  "YUV4MPEG2 W1280 H960 F30:1 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"another_rate_is_given_in_thousandths", Chroma::Each, greyFrame, 7.4567,
                  "YUV4MPEG2 W1280 H960 F7457:1000 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"a_slow_rate_is_no_zero", Chroma::Each, greyFrame, 0.2,
                  "YUV4MPEG2 W1280 H960 F200:1000 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"a_rate_too_slow_for_a_fraction_is_unknown", Chroma::Each, greyFrame, 0.0004,
                  "YUV4MPEG2 W1280 H960 F0:0 Ip A1:1 Cmono XCOLORRANGE=FULL\n"},
     Y4mHeaderRow{"an_unknown_rate_is_said_to_be_so", Chroma::Each, greyFrame, std::nullopt,
                  "YUV4MPEG2 W1280 H960 F0:0 Ip A1:1 Cmono XCOLORRANGE=FULL\n"});

QByteArray encode(PY4mCoding& coding, const PImage& image) {
    const PByteView bytes = coding.encode(image);
    return {reinterpret_cast<const char*>(bytes.data), qsizetype(bytes.size)};
}

TEST(Y4mCoding, a_mark_precedes_each_frame) {
    EXPECT_EQ(PY4mCoding(Chroma::Each).frameMark(), "FRAME\n");
    EXPECT_TRUE(PY4mCoding(Chroma::Each).needsRate());
}

TEST(Y4mCoding, grey_frames_are_their_pixels_without_padding) {
    PY4mCoding coding(Chroma::Quarter);
    EXPECT_EQ(encode(coding, makePixelImage(3, Format::Gray, {QByteArray("\0\x10\xff", 3), "abc"})),
              QByteArray("\0\x10\xff"
                         "abc",
                         6));
}

TEST(Y4mCoding, colours_are_planes_of_luma_blue_and_red_difference) {
    const PImage red = makeFlatImage(3, 1, Format::Bgr, QByteArray("\0\0\xff", 3));
    PY4mCoding quarter(Chroma::Quarter);
    EXPECT_EQ(encode(quarter, red), "\x51\x51\x51\x5a\x5a\xf0\xf0");
    PY4mCoding each(Chroma::Each);
    EXPECT_EQ(encode(each, red), "\x51\x51\x51\x5a\x5a\x5a\xf0\xf0\xf0");
}

TEST(Y4mCoding, frames_follow_each_other_in_the_same_memory) {
    PY4mCoding coding(Chroma::Each);
    const PImage first = makeFlatImage(64, 64, Format::Bgr, QByteArray("\0\0\0", 3));
    const PImage second = makeFlatImage(64, 64, Format::Bgr, "\xff\xff\xff");
    const unsigned char* const bytes = coding.encode(first).data;
    EXPECT_EQ(bytes[0], 16);
    EXPECT_EQ(coding.encode(second).data, bytes);
    EXPECT_EQ(bytes[0], 235);
}

} // namespace
