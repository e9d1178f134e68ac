// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffEncoder.h>

#include <apps/common/TiffPicture.h>
#include <apps/common/file/BytesOnDisk.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFile>
#include <QFileInfo>

#include <tiffio.h>

#include <cerrno>
#include <cstring>

namespace {

class TiffEncoder : public FolderTest {
protected:
    bool write(const QImage& image, const QString& text = u"text"_qs) const {
        QFile file(path(u"picture.tif"_qs));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        return PTiffEncoder::write(file, image, text);
    }
    TiffReadBack written(const QImage& image, const QString& text = u"text"_qs) const {
        EXPECT_TRUE(write(image, text));
        TiffReadBack tiff(path(u"picture.tif"_qs));
        EXPECT_TRUE(tiff.isOpen());
        return tiff;
    }
};

TEST_F(TiffEncoder, a_colour_picture_is_rgb_row_by_row_without_padding) {
    const TiffReadBack tiff = written(tiffPicture(QImage::Format_BGR888));
    EXPECT_EQ(tiff.width(), 3);
    EXPECT_EQ(tiff.height(), 2);
    EXPECT_EQ(tiff.field(TIFFTAG_COMPRESSION), COMPRESSION_NONE);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_RGB);
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 3);
    EXPECT_EQ(tiff.field(TIFFTAG_BITSPERSAMPLE), 8);
    EXPECT_EQ(tiff.rows(), QByteArray("\xff\0\0\0\xff\0\0\0\0\0\0\0\0\0\0\0\0\xff", 18));
}

TEST_F(TiffEncoder, a_grey_picture_has_one_sample) {
    QImage image(3, 2, QImage::Format_Grayscale8);
    image.fill(7);
    image.scanLine(1)[2] = 200;
    const TiffReadBack tiff = written(image);
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 1);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(tiff.rows(), QByteArray("\7\7\7\7\7\xc8"));
}

TEST_F(TiffEncoder, a_colour_picture_of_something_grey_still_has_three_samples) {
    QImage image(3, 2, QImage::Format_BGR888);
    image.fill(QColor(90, 90, 90));
    const TiffReadBack tiff = written(image);
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 3);
}

TEST_F(TiffEncoder, the_description_is_utf8) {
    const TiffReadBack tiff = written(tiffPicture(QImage::Format_RGB32), u"Käfer\n2"_qs);
    EXPECT_EQ(tiff.description(), QByteArray("K\xc3\xa4"
                                             "fer\n2"));
}

TEST_F(TiffEncoder, a_large_picture_takes_up_no_more_of_the_disk_than_its_size) {
    QImage image(2003, 1501, QImage::Format_BGR888);
    image.fill(Qt::gray);
    ASSERT_TRUE(write(image));
    constexpr qint64 unit = 65'536; // in which file systems take room, at most
    const QString name = path(u"picture.tif"_qs);
    EXPECT_LE(countBytesOnDisk(name), QFileInfo(name).size() + unit);
}

TEST_F(TiffEncoder, a_large_picture_comes_back_whole) {
    QImage image(2003, 1501, QImage::Format_RGB888);
    image.fill(QColor(1, 2, 3));
    image.setPixelColor(2002, 1500, QColor(9, 8, 7));
    const QByteArray rows = written(image, QString()).rows();
    EXPECT_EQ(rows.size(), qsizetype(2003) * 1501 * 3);
    EXPECT_EQ(rows.left(3), QByteArray("\1\2\3"));
    EXPECT_EQ(rows.right(3), QByteArray("\x9\x8\x7"));
}

TEST_F(TiffEncoder, every_pixel_of_a_large_camera_frame_comes_back) {
    QImage image(1201, 803, QImage::Format_BGR888); // several strips, the last of them shorter
    for (int y = 0; y < image.height(); ++y) {
        for (qsizetype i = 0; i < image.bytesPerLine(); ++i)
            image.scanLine(y)[i] = uchar(i * 7 + y * 13);
    }
    const QByteArray rows = written(image).rows();
    const QImage expected = image.convertToFormat(QImage::Format_RGB888);
    ASSERT_EQ(rows.size(), qsizetype(1201) * 803 * 3);
    for (int y = 0; y < image.height(); ++y)
        ASSERT_EQ(std::memcmp(rows.constData() + qsizetype(y) * 1201 * 3, expected.constScanLine(y),
                              1201 * 3),
                  0)
            << "row " << y;
}

TEST_F(TiffEncoder, the_pixels_begin_at_a_whole_page_of_the_file) {
    ASSERT_TRUE(write(tiffPicture(QImage::Format_BGR888)));
    TIFF* const tiff = TIFFOpen(QFile::encodeName(path(u"picture.tif"_qs)).constData(), "r");
    ASSERT_NE(tiff, nullptr);
    EXPECT_EQ(TIFFGetStrileOffset(tiff, 0), 4096u);
    TIFFClose(tiff);
}

TEST_F(TiffEncoder, a_32_bit_picture_of_something_grey_has_three_samples_too) {
    QImage image(3, 2, QImage::Format_RGBX8888);
    image.fill(QColor(9, 9, 9));
    EXPECT_EQ(written(image).rows(), QByteArray(18, 9));
}

TEST_F(TiffEncoder, an_empty_picture_is_refused_and_nothing_is_written) {
    EXPECT_FALSE(write(QImage()));
    EXPECT_EQ(readFile(path(u"picture.tif"_qs)), QByteArray());
}

TEST_F(TiffEncoder, a_full_disk_is_reported_by_the_file) {
    QFile full(u"/dev/full"_qs);
    ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_FALSE(PTiffEncoder::write(full, tiffPicture(QImage::Format_BGR888), u"text"_qs));
    EXPECT_EQ(full.errorString(), qt_error_string(ENOSPC));
}

} // namespace
