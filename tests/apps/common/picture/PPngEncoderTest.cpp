// SPDX-License-Identifier: MIT
#include <apps/common/picture/PPngEncoder.h>

#include <support/QtPrinters.h>

#include <QBuffer>
#include <QImageWriter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Content = PPngEncoder::Content;

/// A ramp under noise, as a camera delivers it.
QImage noisyPicture(QImage::Format format, int width = 203, int height = 101) {
    QRandomGenerator random(7);
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int light = (x + y) * 200 / (width + height);
            const auto sample = [&] { return light + random.bounded(20); };
            image.setPixelColor(x, y, QColor(sample(), sample(), sample()));
        }
    }
    return image.convertToFormat(format);
}

qsizetype sizeByDefault(const QImage& image) {
    QBuffer buffer;
    EXPECT_TRUE(QImageWriter(&buffer, "png").write(image));
    return buffer.data().size();
}

QImage withText(const QString& text) {
    return QImage::fromData(PPngEncoder::encode(noisyPicture(QImage::Format_BGR888, 4, 4),
                                                {{{u"Key"_qs, text}}}, Content::Frame));
}

class PngPixels : public testing::TestWithParam<QImage::Format> {};

TEST_P(PngPixels, come_back_as_they_were) {
    const QImage image = noisyPicture(GetParam());
    for (const Content content : {Content::Frame, Content::Window}) {
        const QImage read = QImage::fromData(PPngEncoder::encode(image, {}, content));
        ASSERT_EQ(read.size(), image.size());
        EXPECT_EQ(read.convertToFormat(QImage::Format_RGBA8888),
                  image.convertToFormat(QImage::Format_RGBA8888));
    }
}

INSTANTIATE_TEST_SUITE_P(Apps, PngPixels,
                         testing::Values(QImage::Format_Grayscale8, QImage::Format_BGR888,
                                         QImage::Format_RGB888, QImage::Format_RGB32,
                                         QImage::Format_RGBX8888));

TEST(PngEncoder, a_grey_picture_is_stored_as_grey) {
    const QByteArray file =
        PPngEncoder::encode(noisyPicture(QImage::Format_Grayscale8), {}, Content::Frame);
    EXPECT_EQ(QImage::fromData(file).format(), QImage::Format_Grayscale8);
}

TEST(PngEncoder, transparent_pixels_stay_transparent) {
    QImage image = noisyPicture(QImage::Format_ARGB32, 8, 8);
    image.setPixelColor(3, 2, QColor(10, 20, 30, 40));
    const QImage read = QImage::fromData(PPngEncoder::encode(image, {}, Content::Window));
    EXPECT_EQ(read.pixelColor(3, 2), QColor(10, 20, 30, 40));
}

TEST(PngEncoder, a_noisy_frame_needs_hardly_more_room_than_after_a_search_for_repetitions) {
    for (const QImage::Format format : {QImage::Format_Grayscale8, QImage::Format_BGR888}) {
        const QImage image = noisyPicture(format, 640, 480);
        EXPECT_LT(double(PPngEncoder::encode(image, {}, Content::Frame).size()),
                  1.05 * double(sizeByDefault(image)));
    }
}

TEST(PngEncoder, a_black_frame_needs_almost_no_room) {
    QImage image(640, 480, QImage::Format_BGR888);
    image.fill(Qt::black);
    EXPECT_LT(PPngEncoder::encode(image, {}, Content::Frame).size(), 10'000);
}

TEST(PngEncoder, repetitions_in_the_picture_of_a_window_are_found) {
    QImage image = noisyPicture(QImage::Format_RGB32, 400, 20);
    const QImage letter = image;
    image = QImage(400, 400, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        std::copy_n(letter.constScanLine(y % letter.height()), letter.bytesPerLine(),
                    image.scanLine(y));
    EXPECT_LT(PPngEncoder::encode(image, {}, Content::Window).size() * 4,
              PPngEncoder::encode(image, {}, Content::Frame).size());
}

TEST(PngEncoder, text_comes_back_whatever_its_letters_and_length) {
    const QString longText = QString(3000, u'x');
    for (const QString& text :
         {u"short"_qs, u"15 °C"_qs, u"Яркость"_qs, u"a\nb"_qs, u"a\tb"_qs, u""_qs, longText})
        EXPECT_EQ(withText(text).text(u"Key"_qs), text);
}

TEST(PngEncoder, short_text_can_be_read_in_the_file_and_long_text_is_compressed) {
    const auto encode = [](const QString& text) {
        return PPngEncoder::encode(noisyPicture(QImage::Format_BGR888, 4, 4), {{{u"Key"_qs, text}}},
                                   Content::Frame);
    };
    EXPECT_TRUE(encode(u"15 °C"_qs)
                    .contains("tEXtKey\0"
                              "15 \xb0"
                              "C"));
    EXPECT_TRUE(encode(u"Яркость"_qs).contains("iTXtKey"));
    EXPECT_TRUE(encode(QString(40, u'x')).contains("zTXtKey"));
}

TEST(PngEncoder, a_picture_that_the_format_does_not_hold_gives_nothing) {
    EXPECT_EQ(PPngEncoder::encode(QImage(), {}, Content::Frame), QByteArray());
    const QImage tooWide(1'000'001, 1, QImage::Format_Grayscale8); // libpng takes a million
    EXPECT_EQ(PPngEncoder::encode(tooWide, {}, Content::Frame), QByteArray());
}

} // namespace
