// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PScaleBar.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct BarRow {
    const char* name;
    double micrometresAPixel;
    double atMost;
    const char* text;
    double pixels;
};

class PScaleBarTest : public RowTest<BarRow> {};

} // namespace

ROW_TEST(PScaleBarTest, is_of_a_round_length_that_fits) {
    const PScaleBar bar = PScaleBar::of(GetParam().micrometresAPixel, GetParam().atMost);
    EXPECT_EQ(bar.text().replace(QChar(0xa0), QChar(u' ')), QString::fromUtf8(GetParam().text));
    EXPECT_NEAR(bar.pixels, GetParam().pixels, 1e-9);
}

ROWS(Bars, PScaleBarTest, BarRow{"fifty", 0.5, 190, "50 µm", 100},
     BarRow{"hundred", 0.5, 200, "100 µm", 200}, BarRow{"twenty", 0.24, 150, "20 µm", 20 / 0.24},
     BarRow{"millimetres", 12, 200, "2 mm", 2000.0 / 12},
     BarRow{"nanometres", 0.004, 150, "500 nm", 125});

TEST(PScaleBarUnknownTest, an_unknown_pixel_size_has_no_bar) {
    EXPECT_EQ(PScaleBar::of(0, 200).pixels, 0);
}
