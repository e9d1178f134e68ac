// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffEncoder.h>

#include <apps/common/TiffPicture.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

namespace {

class TiffEncoder : public FolderTest {
protected:
    TiffReadBack readBack(const QByteArray& bytes) const {
        writeFile(path(u"picture.tif"_qs), bytes);
        TiffReadBack tiff(path(u"picture.tif"_qs));
        EXPECT_TRUE(tiff.isOpen());
        return tiff;
    }
};

TEST_F(TiffEncoder, a_colour_picture_is_rgb_row_by_row_without_padding) {
    const TiffReadBack tiff =
        readBack(PTiffEncoder::encode(tiffPicture(QImage::Format_BGR888), u"text"_qs));
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
    const TiffReadBack tiff = readBack(PTiffEncoder::encode(image, u"text"_qs));
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 1);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(tiff.rows(), QByteArray("\7\7\7\7\7\xc8"));
}

TEST_F(TiffEncoder, the_description_is_utf8) {
    const TiffReadBack tiff =
        readBack(PTiffEncoder::encode(tiffPicture(QImage::Format_RGB32), u"Käfer\n2"_qs));
    EXPECT_EQ(tiff.description(), QByteArray("K\xc3\xa4"
                                             "fer\n2"));
}

TEST_F(TiffEncoder, a_large_picture_comes_back_whole) {
    QImage image(2003, 1501, QImage::Format_RGB888);
    image.fill(QColor(1, 2, 3));
    image.setPixelColor(2002, 1500, QColor(9, 8, 7));
    const QByteArray rows = readBack(PTiffEncoder::encode(image, QString())).rows();
    EXPECT_EQ(rows.size(), qsizetype(2003) * 1501 * 3);
    EXPECT_EQ(rows.left(3), QByteArray("\1\2\3"));
    EXPECT_EQ(rows.right(3), QByteArray("\x9\x8\x7"));
}

TEST_F(TiffEncoder, an_empty_picture_gives_nothing) {
    EXPECT_EQ(PTiffEncoder::encode(QImage(), u"text"_qs), QByteArray());
}

} // namespace
