// SPDX-License-Identifier: MIT
#include <apps/common/pipe/PRawCoding.h>

#include <apps/common/pipe/PixelImage.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

using Format = PDIP::ColorFormat;

struct RawHeaderRow {
    const char* name;
    Format format;
    long width;
    long height;
    std::optional<double> rate;
    QByteArray header;
};

class RawHeader : public RowTest<RawHeaderRow> {};

ROW_TEST(RawHeader, is_one_line_of_json) {
    const RawHeaderRow& row = GetParam();
    const PRawCoding coding(PCameraIdentity{u"Kamera-\u00fc\n"_qs, u"Kamera"_qs, {}, true});
    EXPECT_EQ(coding.makeHeader({row.width, row.height, row.format}, row.rate), row.header);
    EXPECT_TRUE(coding.needsRate());
}

ROWS(Rows, RawHeader,
     RawHeaderRow{"grey_frames_have_one_byte_for_each_pixel", Format::Gray, 3, 2, 12.5,
                  "{\"bytesPerPixel\":1,\"camera\":\"Kamera-\u00fc\\n\",\"channels\":\"Y\","
                  "\"fps\":12.5,\"frameBytes\":6,\"height\":2,\"pixelFormat\":\"gray\","
                  "\"simulated\":true,\"width\":3}\n"},
     RawHeaderRow{"colours_begin_with_blue_and_an_unknown_rate_is_left_out", Format::Bgr, 5440,
                  3648, std::nullopt,
                  "{\"bytesPerPixel\":3,\"camera\":\"Kamera-\u00fc\\n\",\"channels\":\"BGR\","
                  "\"frameBytes\":59535360,\"height\":3648,\"pixelFormat\":\"bgr24\","
                  "\"simulated\":true,\"width\":5440}\n"},
     RawHeaderRow{"the_fourth_byte_is_named_after_red_green_blue", Format::Xrgb, 1, 1, 1.0,
                  "{\"bytesPerPixel\":4,\"camera\":\"Kamera-\u00fc\\n\",\"channels\":\"RGBX\","
                  "\"fps\":1,\"frameBytes\":4,\"height\":1,\"pixelFormat\":\"rgb0\","
                  "\"simulated\":true,\"width\":1}\n"},
     RawHeaderRow{"the_fourth_byte_is_named_after_blue_green_red", Format::BgrX, 1, 1, 1.0,
                  "{\"bytesPerPixel\":4,\"camera\":\"Kamera-\u00fc\\n\",\"channels\":\"BGRX\","
                  "\"fps\":1,\"frameBytes\":4,\"height\":1,\"pixelFormat\":\"bgr0\","
                  "\"simulated\":true,\"width\":1}\n"});

TEST(RawCoding, has_no_header_unless_it_is_requested_and_then_waits_for_no_rate) {
    const PRawCoding coding;
    EXPECT_EQ(coding.makeHeader({3, 2, Format::Gray}, 20), "");
    EXPECT_FALSE(coding.needsRate());
    EXPECT_EQ(coding.frameMark(), "");
}

TEST(RawCoding, passes_the_pixels_on_as_they_are_without_padding) {
    PRawCoding coding;
    const PImage image = makePixelImage(1, Format::Bgr, {QByteArray("\x01\x02\xff", 3), "BGR"});
    const PByteView bytes = coding.encode(image);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(bytes.data), qsizetype(bytes.size)),
              QByteArray("\x01\x02\xff"
                         "BGR"));
}

} // namespace
