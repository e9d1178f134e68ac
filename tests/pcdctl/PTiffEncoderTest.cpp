// SPDX-License-Identifier: MIT
#include <apps/common/PTiffEncoder.h>

#include <support/QtPrinters.h>

#include <QMap>
#include <QtEndian>

#include <gtest/gtest.h>

namespace {

template <typename T>
T numberAt(const QByteArray& bytes, quint32 offset) {
    EXPECT_LE(qsizetype(offset + sizeof(T)), bytes.size());
    return qFromLittleEndian<T>(bytes.constData() + offset);
}

/// A file taken apart: the values of its tags, as the format's own rules say where they lie.
struct Tiff {
    explicit Tiff(const QByteArray& file)
        : bytes(file) {
        EXPECT_EQ(bytes.left(4), QByteArray("II*\0", 4));
        const auto directory = numberAt<quint32>(bytes, 4);
        EXPECT_EQ(directory % 2, 0U);
        const auto count = numberAt<quint16>(bytes, directory);
        quint16 last = 0;
        for (quint32 i = 0; i < count; ++i) {
            const quint32 entry = directory + 2 + 12 * i;
            const auto tag = numberAt<quint16>(bytes, entry);
            EXPECT_GT(tag, last) << "tags must rise";
            last = tag;
            const bool isShort = numberAt<quint16>(bytes, entry + 2) == 3;
            counts[tag] = numberAt<quint32>(bytes, entry + 4);
            values[tag] = isShort && counts[tag] == 1 ? numberAt<quint16>(bytes, entry + 8)
                                                      : numberAt<quint32>(bytes, entry + 8);
        }
    }

    QByteArray part(quint32 offset, quint32 size) const { return bytes.mid(offset, size); }

    QByteArray bytes;
    QMap<int, quint32> counts;
    QMap<int, quint32> values;
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
    const Tiff tiff(PTiffEncoder::encode(picture(QImage::Format_BGR888), u"text"_qs));
    EXPECT_EQ(tiff.values[256], 3U);
    EXPECT_EQ(tiff.values[257], 2U);
    EXPECT_EQ(tiff.values[259], 1U);
    EXPECT_EQ(tiff.values[262], 2U);
    EXPECT_EQ(tiff.values[277], 3U);
    EXPECT_EQ(tiff.values[278], 2U);
    EXPECT_EQ(tiff.counts[258], 3U);
    EXPECT_EQ(tiff.part(tiff.values[258], 6), QByteArray("\x08\0\x08\0\x08\0", 6));
    const QByteArray rows("\xff\0\0\0\xff\0\0\0\0\0\0\0\0\0\0\0\0\xff", 18);
    EXPECT_EQ(tiff.part(tiff.values[273], tiff.values[279]), rows);
    EXPECT_EQ(tiff.values[273] + tiff.values[279], quint32(tiff.bytes.size()));
}

TEST(PTiffEncoder, a_grey_picture_has_one_sample) {
    QImage image(3, 2, QImage::Format_Grayscale8);
    image.fill(7);
    image.scanLine(1)[2] = 200;
    const Tiff tiff(PTiffEncoder::encode(image, u"text"_qs));
    EXPECT_EQ(tiff.values[277], 1U);
    EXPECT_EQ(tiff.values[258], 8U);
    EXPECT_EQ(tiff.values[262], 1U);
    EXPECT_EQ(tiff.part(tiff.values[273], tiff.values[279]), QByteArray("\7\7\7\7\7\xc8"));
}

TEST(PTiffEncoder, the_description_is_utf8_and_ends_with_a_zero) {
    const Tiff tiff(PTiffEncoder::encode(picture(QImage::Format_RGB32), u"Käfer\n2"_qs));
    EXPECT_EQ(tiff.part(tiff.values[270], tiff.counts[270]), QByteArray("K\xc3\xa4"
                                                                        "fer\n2\0",
                                                                        9));
}

TEST(PTiffEncoder, a_description_too_short_to_stand_alone_is_filled_with_blanks) {
    const Tiff tiff(PTiffEncoder::encode(picture(QImage::Format_RGB32), QString()));
    EXPECT_EQ(tiff.part(tiff.values[270], tiff.counts[270]), QByteArray("    \0", 5));
}

TEST(PTiffEncoder, an_empty_picture_gives_nothing) {
    EXPECT_EQ(PTiffEncoder::encode(QImage(), u"text"_qs), QByteArray());
}

} // namespace
