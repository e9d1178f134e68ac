// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewSampler.h>

#include <apps/pcdview/view/PPixelValue.h>

#include <apps/pcdview/ViewPictures.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

const QColor around(1, 2, 3);

PViewGeometry makeGeometry(QSize picture, QSize viewport) {
    PViewGeometry geometry;
    geometry.setPicture(picture);
    geometry.setViewport(viewport);
    return geometry;
}

PViewGeometry pixelForPixel(const PImage& image) {
    const QSize size(int(image.width()), int(image.height()));
    PViewGeometry geometry = makeGeometry(size, size);
    geometry.zoomTo(1, {0, 0});
    return geometry;
}

QImage rendered(const PImage& image, const PViewGeometry& geometry, const PViewStyle& style = {}) {
    return PViewSampler::render(image, geometry, style, around);
}

QColor pattern(int x, int y) {
    return QColor((x * 7 + y) % 256, (x + y * 3) % 256, (x * 5 + y * 11) % 256);
}

QColor greyPattern(int x, int y) {
    const int value = (x * 7 + y * 3) % 256;
    return QColor(value, value, value);
}

struct FormatRow {
    const char* name;
    PDIP::ColorFormat format;
};

class PViewSamplerFormatTest : public RowTest<FormatRow> {};

} // namespace

ROW_TEST(PViewSamplerFormatTest, shows_every_pixel_of_an_odd_width_in_its_colour) {
    const bool isGrey = GetParam().format == PDIP::ColorFormat::Gray;
    const auto colorAt = isGrey ? greyPattern : pattern;
    const PImage image = makePicture(1003, 37, GetParam().format, colorAt);
    const QImage shown = rendered(image, pixelForPixel(image));
    ASSERT_EQ(shown.size(), QSize(1003, 37));
    for (int y = 0; y < 37; ++y) {
        for (int x = 0; x < 1003; ++x)
            ASSERT_EQ(shown.pixelColor(x, y).rgb(), colorAt(x, y).rgb()) << x << ", " << y;
    }
}

ROW_TEST(PViewSamplerFormatTest, reports_the_pixel_under_the_cursor) {
    const PImage image = makePicture(1003, 37, GetParam().format, [](int x, int y) {
        return x == 1002 && y == 36 ? QColor(250, 30, 7) : QColor(0, 0, 0);
    });
    const auto pixel = PPixelValue::of(image, {1002, 36});
    ASSERT_TRUE(pixel);
    EXPECT_EQ(pixel->green, 30);
    if (!pixel->isGrey) {
        EXPECT_EQ(pixel->red, 250);
        EXPECT_EQ(pixel->blue, 7);
    }
    EXPECT_FALSE(PPixelValue::of(image, {1003, 36}));
    EXPECT_FALSE(PPixelValue::of(image, {-1, 0}));
}

ROWS(Formats, PViewSamplerFormatTest, FormatRow{"grey", PDIP::ColorFormat::Gray},
     FormatRow{"blue_first", PDIP::ColorFormat::Bgr},
     FormatRow{"red_first_in_32_bits", PDIP::ColorFormat::Xrgb},
     FormatRow{"blue_first_in_32_bits", PDIP::ColorFormat::BgrX});

TEST(PViewSamplerTest, averages_what_it_makes_smaller) {
    const PImage image = makePicture(400, 200, PDIP::ColorFormat::Bgr, [](int x, int y) {
        return (x + y) % 2 == 0 ? QColor(200, 100, 50) : QColor(0, 0, 0);
    });
    const QImage shown = rendered(image, makeGeometry({400, 200}, {200, 100}));
    for (int x : {0, 57, 199})
        EXPECT_EQ(shown.pixelColor(x, 63), QColor(100, 50, 25));
}

TEST(PViewSamplerTest, repeats_pixels_that_it_makes_larger) {
    const PImage image = makePicture(5, 3, PDIP::ColorFormat::Bgr, pattern);
    const QImage shown = rendered(image, makeGeometry({5, 3}, {20, 12}));
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 20; ++x)
            EXPECT_EQ(shown.pixelColor(x, y).rgb(), pattern(x / 4, y / 4).rgb());
    }
}

TEST(PViewSamplerTest, shows_the_part_that_the_view_lies_on) {
    const PImage image = makePicture(1003, 700, PDIP::ColorFormat::Bgr, pattern);
    PViewGeometry geometry = makeGeometry({1003, 700}, {100, 80});
    geometry.zoomTo(1, {50, 40});
    const QPointF corner = geometry.toPicture({0.5, 0.5});
    const QImage shown = rendered(image, geometry);
    EXPECT_EQ(shown.pixelColor(0, 0).rgb(), pattern(int(corner.x()), int(corner.y())).rgb());
    EXPECT_EQ(shown.pixelColor(99, 79).rgb(),
              pattern(int(corner.x()) + 99, int(corner.y()) + 79).rgb());
}

TEST(PViewSamplerTest, paints_what_the_picture_leaves_free) {
    const PImage image =
        makePicture(100, 100, PDIP::ColorFormat::Gray, [](int, int) { return QColor(90, 90, 90); });
    const QImage shown = rendered(image, makeGeometry({100, 100}, {300, 100}));
    EXPECT_EQ(shown.pixelColor(99, 50), around);
    EXPECT_EQ(shown.pixelColor(100, 50), QColor(90, 90, 90));
    EXPECT_EQ(shown.pixelColor(199, 50), QColor(90, 90, 90));
    EXPECT_EQ(shown.pixelColor(200, 50), around);
}

TEST(PViewSamplerTest, paints_over_what_reused_memory_holds) {
    const PImage image =
        makePicture(10, 10, PDIP::ColorFormat::Gray, [](int, int) { return QColor(90, 90, 90); });
    QImage room(QSize(30, 10), QImage::Format_RGB32);
    room.fill(Qt::magenta);
    const QImage shown =
        PViewSampler::render(image, makeGeometry({10, 10}, {30, 10}), {}, around, room);
    EXPECT_EQ(shown.pixelColor(0, 0), around);
    EXPECT_EQ(shown.pixelColor(15, 5), QColor(90, 90, 90));
}

TEST(PViewSamplerTest, marks_what_is_overexposed_and_what_is_black) {
    const PImage image = makePicture(3, 1, PDIP::ColorFormat::Bgr, [](int x, int) {
        return x == 0 ? QColor(255, 10, 10) : x == 1 ? QColor(0, 0, 0) : QColor(254, 0, 0);
    });
    PViewStyle style;
    style.markClipped = true;
    const QImage shown = rendered(image, pixelForPixel(image), style);
    EXPECT_EQ(shown.pixel(0, 0), PViewSampler::overMark());
    EXPECT_EQ(shown.pixel(1, 0), PViewSampler::underMark());
    EXPECT_EQ(shown.pixelColor(2, 0), QColor(254, 0, 0));
}

TEST(PViewSamplerTest, one_overexposed_sample_marks_the_pixel_that_it_goes_into) {
    const PImage image = makePicture(40, 40, PDIP::ColorFormat::Gray, [](int x, int y) {
        return x == 21 && y == 21 ? QColor(255, 255, 255) : QColor(9, 9, 9);
    });
    PViewStyle style;
    style.markClipped = true;
    const QImage shown = rendered(image, makeGeometry({40, 40}, {20, 20}), style);
    EXPECT_EQ(shown.pixel(10, 10), PViewSampler::overMark());
    EXPECT_EQ(shown.pixelColor(9, 10), QColor(9, 9, 9));
}

TEST(PViewSamplerTest, stretches_the_levels_on_the_screen_and_not_in_the_picture) {
    const PImage image = makePicture(3, 1, PDIP::ColorFormat::Gray, [](int x, int) {
        return QColor(50 + 50 * x, 50 + 50 * x, 50 + 50 * x);
    });
    PViewStyle style;
    style.black = 50;
    style.white = 150;
    const QImage shown = rendered(image, pixelForPixel(image), style);
    EXPECT_EQ(shown.pixelColor(0, 0), QColor(0, 0, 0));
    EXPECT_EQ(shown.pixelColor(1, 0), QColor(128, 128, 128));
    EXPECT_EQ(shown.pixelColor(2, 0), QColor(255, 255, 255));
    EXPECT_EQ(PPixelValue::of(image, {1, 0})->green, 100);
}

TEST(PViewSamplerTest, without_a_picture_there_is_the_colour_around) {
    const QImage shown = rendered(PImage(), makeGeometry({}, {40, 30}));
    ASSERT_EQ(shown.size(), QSize(40, 30));
    EXPECT_EQ(shown.pixelColor(20, 15), around);
}
