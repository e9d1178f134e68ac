// SPDX-License-Identifier: MIT
#include <apps/common/tiff/PTiffStack.h>

#include <apps/common/TiffPicture.h>
#include <apps/common/reading/TiffReadBack.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cerrno>

#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray makeRows(int number) {
    QByteArray rows("\xff\0\0\0\xff\0\0\0\0\0\0\0\0\0\0\0\0\xff", 18);
    rows[15] = rows[16] = char(number);
    return rows;
}

class TiffStack : public FolderTest {
protected:
    const QString file = path(u"stack.tif"_qs);
    PTiffStack stack;

    /// Makes a stack of three pictures and replaces the first text, in a process of its own that is
    /// killed when the file grows beyond this number of bytes. True if it was killed.
    bool isKilledAt(rlim_t bytes) const {
        QFile::remove(file);
        const pid_t child = fork();
        if (child == 0) {
            const rlimit limit{bytes, bytes};
            setrlimit(RLIMIT_FSIZE, &limit);
            std::signal(SIGXFSZ, SIG_DFL);
            PTiffStack doomed;
            (void)doomed.create(file, PTiffStack::Size::Unlimited);
            for (int number : {1, 2, 3})
                (void)doomed.append(tiffPicture(QImage::Format_BGR888, number), "short");
            (void)doomed.replaceDescription(longText);
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WIFSIGNALED(status);
    }
    const QByteArray longText = QByteArray(200, 'x');

    void create(PTiffStack::Size size = PTiffStack::Size::Unlimited) {
        ASSERT_TRUE(stack.create(file, size).isOk());
    }
    /// Appends the picture with this number and the text "number N".
    bool append(int number) {
        return stack
            .append(tiffPicture(QImage::Format_BGR888, number),
                    "number " + QByteArray::number(number))
            .isOk();
    }
};

TEST_F(TiffStack, pictures_come_back_in_order_each_with_its_text) {
    create();
    for (int number : {1, 2, 3})
        ASSERT_TRUE(append(number));
    const TiffReadBack tiff(file);
    ASSERT_EQ(tiff.pictures(), 3);
    for (int number : {1, 2, 3}) {
        tiff.select(number - 1);
        EXPECT_EQ(tiff.rows(), makeRows(number));
        EXPECT_EQ(tiff.description(), "number " + QByteArray::number(number));
    }
}

TEST_F(TiffStack, every_format_of_a_colour_picture_becomes_the_same_rgb) {
    create();
    for (const QImage::Format format : {QImage::Format_BGR888, QImage::Format_RGB888,
                                        QImage::Format_RGB32, QImage::Format_RGBX8888})
        ASSERT_TRUE(stack.append(tiffPicture(format), "text").isOk());
    const TiffReadBack tiff(file);
    ASSERT_EQ(tiff.pictures(), 4);
    for (int i = 0; i < 4; ++i) {
        tiff.select(i);
        EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 3);
        EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_RGB);
        EXPECT_EQ(tiff.field(TIFFTAG_COMPRESSION), COMPRESSION_NONE);
        EXPECT_EQ(tiff.rows(), makeRows(0)) << i;
    }
}

TEST_F(TiffStack, a_grey_picture_has_one_sample) {
    create();
    for (const int width : {3, 4}) { // with and without padding in memory
        QImage image(width, 2, QImage::Format_Grayscale8);
        image.fill(7);
        image.scanLine(1)[2] = 200;
        ASSERT_TRUE(stack.append(image, "text").isOk());
    }
    const TiffReadBack tiff(file);
    EXPECT_EQ(tiff.field(TIFFTAG_SAMPLESPERPIXEL), 1);
    EXPECT_EQ(tiff.field(TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(tiff.rows(), QByteArray("\7\7\7\7\7\xc8"));
    tiff.select(1);
    EXPECT_EQ(tiff.rows(), QByteArray("\7\7\7\7\7\7\xc8\7"));
}

TEST_F(TiffStack, a_colour_picture_that_happens_to_be_black_still_has_three_samples) {
    create();
    QImage black(3, 2, QImage::Format_BGR888);
    black.fill(Qt::black);
    ASSERT_TRUE(stack.append(black, "text").isOk());
    EXPECT_EQ(TiffReadBack(file).field(TIFFTAG_SAMPLESPERPIXEL), 3);
}

TEST_F(TiffStack, a_picture_of_many_strips_comes_back_whole) {
    QImage image(2003, 1501, QImage::Format_BGR888);
    image.fill(QColor(1, 2, 3));
    for (int y = 0; y < image.height(); ++y)
        image.setPixelColor(y, y, QColor(y & 255, y >> 8, 77));
    create();
    ASSERT_TRUE(stack.append(image, "text").isOk());
    ASSERT_TRUE(stack.replaceDescription("another text").isOk());
    const TiffReadBack tiff(file);
    EXPECT_GT(tiff.height(), int(tiff.field<uint32_t>(TIFFTAG_ROWSPERSTRIP)));
    const QImage swapped = image.convertToFormat(QImage::Format_RGB888);
    QByteArray expected;
    for (int y = 0; y < swapped.height(); ++y)
        expected.append(reinterpret_cast<const char*>(swapped.constScanLine(y)),
                        3 * swapped.width());
    EXPECT_TRUE(tiff.rows() == expected);
}

TEST_F(TiffStack, without_a_limit_it_is_a_bigtiff_and_up_to_4_gb_a_classic_one) {
    create();
    ASSERT_TRUE(append(1));
    EXPECT_TRUE(TiffReadBack(file).isBig());
    PTiffStack small;
    ASSERT_TRUE(small.create(path(u"small.tif"_qs), PTiffStack::Size::UpTo4Gb).isOk());
    ASSERT_TRUE(small.append(tiffPicture(QImage::Format_BGR888), "text").isOk());
    EXPECT_FALSE(TiffReadBack(path(u"small.tif"_qs)).isBig());
}

TEST_F(TiffStack, a_file_that_exists_is_refused_and_left_alone) {
    writeFile(file, "mine");
    EXPECT_FALSE(stack.create(file, PTiffStack::Size::Unlimited).isOk());
    EXPECT_EQ(readFile(file), QByteArray("mine"));
}

TEST_F(TiffStack, each_picture_can_be_read_as_soon_as_it_is_appended) {
    create();
    for (int number : {1, 2, 3}) {
        ASSERT_TRUE(append(number));
        const TiffReadBack tiff(file);
        ASSERT_EQ(tiff.pictures(), number);
        tiff.select(number - 1);
        EXPECT_EQ(tiff.rows(), makeRows(number));
    }
}

TEST_F(TiffStack, the_first_text_can_be_written_over_in_its_place) {
    create();
    ASSERT_TRUE(append(1));
    ASSERT_TRUE(append(2));
    ASSERT_TRUE(stack.overwriteDescription(7, "9").isOk());
    const TiffReadBack tiff(file);
    EXPECT_EQ(tiff.description(), QByteArray("number 9"));
    tiff.select(1);
    EXPECT_EQ(tiff.description(), QByteArray("number 2"));
}

TEST_F(TiffStack, writing_over_more_than_the_first_text_is_refused) {
    create();
    EXPECT_FALSE(stack.overwriteDescription(0, "a").isOk());
    ASSERT_TRUE(append(1));
    const QByteArray before = readFile(file);
    EXPECT_FALSE(stack.overwriteDescription(7, "ab").isOk());
    EXPECT_FALSE(stack.overwriteDescription(-1, "a").isOk());
    EXPECT_EQ(readFile(file), before);
}

TEST_F(TiffStack, the_first_text_can_be_replaced_by_a_longer_one_and_the_pictures_stay) {
    for (const auto size : {PTiffStack::Size::Unlimited, PTiffStack::Size::UpTo4Gb}) {
        QFile::remove(file);
        PTiffStack written;
        ASSERT_TRUE(written.create(file, size).isOk());
        for (int number : {1, 2, 3})
            ASSERT_TRUE(written.append(tiffPicture(QImage::Format_BGR888, number), "short").isOk());
        const QByteArray text(100'000, 'x');
        ASSERT_TRUE(written.replaceDescription(text).isOk());
        const TiffReadBack tiff(file);
        EXPECT_EQ(tiff.description(), text);
        ASSERT_EQ(tiff.pictures(), 3);
        for (int number : {1, 2, 3}) {
            tiff.select(number - 1);
            EXPECT_EQ(tiff.rows(), makeRows(number));
        }
    }
}

TEST_F(TiffStack, a_stack_of_one_picture_can_get_another_text_too) {
    create();
    ASSERT_TRUE(append(1));
    ASSERT_TRUE(stack.replaceDescription("a longer text than it was").isOk());
    const TiffReadBack tiff(file);
    EXPECT_EQ(tiff.pictures(), 1);
    EXPECT_EQ(tiff.description(), QByteArray("a longer text than it was"));
}

TEST_F(TiffStack, all_pictures_have_strips_of_one_size_whatever_is_done_to_the_first_text) {
    create();
    const QImage large = tiffPicture(QImage::Format_RGB888).scaled(120, 80);
    ASSERT_TRUE(stack.append(large, "short").isOk());
    ASSERT_TRUE(stack.append(large, "short").isOk());
    ASSERT_TRUE(stack.replaceDescription(longText).isOk());
    const TiffReadBack tiff(file);
    for (int i : {0, 1}) {
        tiff.select(i);
        EXPECT_EQ(tiff.field<uint32_t>(TIFFTAG_ROWSPERSTRIP), 40U) << i;
        EXPECT_EQ(tiff.rows().size(), 120 * 80 * 3) << i;
    }
}

TEST_F(TiffStack, closed_it_takes_no_more_pictures) {
    create();
    ASSERT_TRUE(append(1));
    EXPECT_TRUE(stack.close().isOk());
    EXPECT_FALSE(stack.isOpen());
    EXPECT_FALSE(append(2));
    EXPECT_EQ(TiffReadBack(file).pictures(), 1);
}

TEST_F(TiffStack, wherever_the_program_is_killed_the_file_holds_whole_pictures) {
    ASSERT_FALSE(isKilledAt(1'000'000));
    const qint64 whole = QFileInfo(file).size();
    int most = 0;
    for (qint64 bytes = 16; bytes < whole; bytes += 5) {
        ASSERT_TRUE(isKilledAt(rlim_t(bytes))) << bytes;
        if (!QFile::exists(file)) {
            EXPECT_EQ(most, 0) << bytes;
            continue;
        }
        const TiffReadBack tiff(file);
        const int pictures = tiff.pictures();
        EXPECT_GE(pictures, std::max(most, 1)) << bytes;
        most = std::max(most, pictures);
        for (int number = 1; number <= pictures; ++number) {
            tiff.select(number - 1);
            EXPECT_EQ(tiff.rows(), makeRows(number)) << bytes;
            EXPECT_EQ(tiff.description(), QByteArray("short")) << bytes;
        }
    }
    EXPECT_EQ(most, 3);
}

TEST_F(TiffStack, after_a_full_disk_the_pictures_before_stay_and_the_text_can_be_replaced) {
    create();
    ASSERT_TRUE(append(1));
    ASSERT_TRUE(append(2));
    {
        const FileSizeLimit limit(rlim_t(QFileInfo(file).size()) + 30);
        const PStatus status = stack.append(tiffPicture(QImage::Format_BGR888, 3), "number 3");
        EXPECT_EQ(status.reason(), qt_error_string(EFBIG));
        EXPECT_FALSE(stack.replaceDescription(longText).isOk());
        EXPECT_EQ(TiffReadBack(file).pictures(), 2);
        EXPECT_TRUE(stack.overwriteDescription(7, "9").isOk());
    }
    EXPECT_EQ(TiffReadBack(file).description(), QByteArray("number 9"));
    EXPECT_FALSE(append(3));
    EXPECT_TRUE(stack.replaceDescription(longText).isOk());
    const TiffReadBack tiff(file);
    EXPECT_EQ(tiff.pictures(), 2);
    EXPECT_EQ(tiff.description(), longText);
}

TEST_F(TiffStack, has_no_file_before_it_has_a_picture) {
    create();
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(stack.close().isOk());
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(TiffStack, a_picture_after_the_file_was_truncated_is_refused_with_this_reason) {
    create();
    ASSERT_TRUE(append(1));
    ASSERT_TRUE(append(2));
    ASSERT_TRUE(QFile::resize(file, QFileInfo(file).size() - 1));
    const PStatus status = stack.append(tiffPicture(QImage::Format_BGR888, 3), "number 3");
    EXPECT_EQ(status.reason(), u"the file was truncated while it was being written"_qs);
    EXPECT_EQ(stack.close().reason(), u"the file was truncated while it was being written"_qs);
}

TEST_F(TiffStack, closing_counts_the_pictures_that_readers_find) {
    create();
    ASSERT_TRUE(append(1));
    const qint64 sizeOfOne = QFileInfo(file).size();
    for (int number : {2, 3})
        ASSERT_TRUE(append(number));
    const qint64 size = QFileInfo(file).size();
    // Cut and filled up again: the size is right.
    ASSERT_TRUE(QFile::resize(file, sizeOfOne));
    ASSERT_TRUE(QFile::resize(file, size));
    EXPECT_EQ(stack.close().reason(),
              u"the file was changed while it was being written: it has 1 of 3 pictures"_qs);
    EXPECT_EQ(stack.missing(), 2U);
}

/// Directories of a classic TIFF file, as another program damages them.
TEST_F(TiffStack, a_file_whose_directories_became_a_ring_takes_no_more_pictures) {
    QImage picture(3, 2, QImage::Format_Grayscale8);
    picture.fill(Qt::gray);
    ASSERT_TRUE(stack.create(file, PTiffStack::Size::UpTo4Gb).isOk());
    ASSERT_TRUE(stack.append(picture, "a").isOk());
    const QByteArray bytes = readFile(file);
    ASSERT_GT(bytes.size(), 8);
    const auto directory = qFromLittleEndian<quint32>(bytes.constData() + 4);
    const auto entries = qFromLittleEndian<quint16>(bytes.constData() + directory);
    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    ASSERT_TRUE(damaged.seek(qint64(directory) + 2 + 12 * qint64(entries))); // its next one
    damaged.write(bytes.mid(4, 4));                                          // is itself
    damaged.close();
    EXPECT_FALSE(stack.append(picture, "b").isOk());
}

TEST_F(TiffStack, an_empty_picture_is_refused) {
    create();
    EXPECT_FALSE(stack.append(QImage(), "text").isOk());
}

} // namespace
