// SPDX-License-Identifier: MIT
#include <apps/common/PTiffEncoder.h>

#include <support/QtPrinters.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <tiffio.h>

#include <memory>

namespace {

/// An encoded picture as libtiff reads it back from a file.
class ReadBack {
public:
    explicit ReadBack(const QByteArray& bytes) {
        const QString path = m_folder.filePath(u"picture.tif"_qs);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        m_tiff.reset(TIFFOpen(path.toLocal8Bit().constData(), "r"));
        EXPECT_NE(m_tiff, nullptr);
    }

    template <typename T = uint16_t>
    T field(uint32_t tag) const {
        T value{};
        EXPECT_EQ(TIFFGetFieldDefaulted(m_tiff.get(), tag, &value), 1) << tag;
        return value;
    }
    QByteArray description() const { return field<const char*>(TIFFTAG_IMAGEDESCRIPTION); }
    /// All rows, one after the other, without padding.
    QByteArray rows() const {
        QByteArray all;
        QByteArray row(qsizetype(TIFFScanlineSize(m_tiff.get())), '\0');
        const auto height = field<uint32_t>(TIFFTAG_IMAGELENGTH);
        for (uint32_t y = 0; y < height; ++y) {
            EXPECT_EQ(TIFFReadScanline(m_tiff.get(), row.data(), y), 1);
            all.append(row);
        }
        return all;
    }

private:
    struct Close {
        void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };
    QTemporaryDir m_folder;
    std::unique_ptr<TIFF, Close> m_tiff;
};

QImage picture(QImage::Format format) {
    QImage image(3, 2, format); // rows of 9 bytes: padded in memory, not in the file
    image.fill(Qt::black);
    image.setPixelColor(0, 0, QColor(255, 0, 0));
    image.setPixelColor(1, 0, QColor(0, 255, 0));
    image.setPixelColor(2, 1, QColor(0, 0, 255));
    return image;
}

TEST(PTiffEncoder, a_colour_picture_is_rgb_row_by_row_without_padding) {
    const ReadBack tiff(PTiffEncoder::encode(picture(QImage::Format_BGR888), u"text"_qs));
    EXPECT_EQ(tiff.field<uint32_t>(TIFFTAG_IMAGEWIDTH), 3U);
    EXPECT_EQ(tiff.field<uint32_t>(TIFFTAG_IMAGELENGTH), 2U);
    EXPECT_EQ(tiff.field(TIFFTAG_COMPRESSION), COMPRESSION_NONE);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_RGB);
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 3);
    EXPECT_EQ(tiff.field(TIFFTAG_BITSPERSAMPLE), 8);
    EXPECT_EQ(tiff.rows(), QByteArray("\xff\0\0\0\xff\0\0\0\0\0\0\0\0\0\0\0\0\xff", 18));
}

TEST(PTiffEncoder, a_grey_picture_has_one_sample) {
    QImage image(3, 2, QImage::Format_Grayscale8);
    image.fill(7);
    image.scanLine(1)[2] = 200;
    const ReadBack tiff(PTiffEncoder::encode(image, u"text"_qs));
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 1);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(tiff.rows(), QByteArray("\7\7\7\7\7\xc8"));
}

TEST(PTiffEncoder, the_description_is_utf8) {
    const ReadBack tiff(PTiffEncoder::encode(picture(QImage::Format_RGB32), u"Käfer\n2"_qs));
    EXPECT_EQ(tiff.description(), QByteArray("K\xc3\xa4"
                                             "fer\n2"));
}

TEST(PTiffEncoder, a_large_picture_comes_back_whole) {
    QImage image(2003, 1501, QImage::Format_RGB888);
    image.fill(QColor(1, 2, 3));
    image.setPixelColor(2002, 1500, QColor(9, 8, 7));
    const QByteArray rows = ReadBack(PTiffEncoder::encode(image, QString())).rows();
    EXPECT_EQ(rows.size(), qsizetype(2003) * 1501 * 3);
    EXPECT_EQ(rows.left(3), QByteArray("\1\2\3"));
    EXPECT_EQ(rows.right(3), QByteArray("\x9\x8\x7"));
}

TEST(PTiffEncoder, an_empty_picture_gives_nothing) {
    EXPECT_EQ(PTiffEncoder::encode(QImage(), u"text"_qs), QByteArray());
}

} // namespace
