// SPDX-License-Identifier: MIT
#include <PDip/PImage.h>

#include <PDip/PBufferPool.h>
#include <PDip/dip_exception.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <thread>
#include <vector>

using PDIP::AccessMode;
using PDIP::ColorFormat;

namespace {

PImage filled(unsigned char value, long width = 8, long height = 4,
              ColorFormat format = ColorFormat::Gray) {
    PImage image;
    EXPECT_TRUE(image.create(width, height, format));
    std::memset(image.rawData(AccessMode::Write).data(), value, image.dataSize());
    return image;
}

const unsigned char* pixelData(const PImage& image) {
    return image.rawData(AccessMode::Read).constData();
}

const QMap<QString, QVariant> someInformation{{u"exposure"_qs, 20000}};

struct Note : PImageAttachment {};

} // namespace

TEST(PImage, is_empty_by_default) {
    PImage image;
    EXPECT_TRUE(image.isNull());
    EXPECT_EQ(image.header(), PImageHeader());
    EXPECT_EQ(image.dataSize(), 0u);
    EXPECT_EQ(pixelData(image), nullptr);
    EXPECT_EQ(image.rawData(AccessMode::ReadWrite).data(), nullptr);
    EXPECT_EQ(image.rawData(AccessMode::Write).size(), 0u);
    EXPECT_TRUE(image.toQImage().isNull());
    EXPECT_TRUE(image.metaInformation().isEmpty());
    EXPECT_FALSE(image.attachment());
    EXPECT_FALSE(image.reinterpretFormat(ColorFormat::Gray));
}

TEST(PImage, created_with_a_geometry_has_it_and_memory_for_it) {
    PImage image;
    ASSERT_TRUE(image.create(1003, 5, ColorFormat::Bgr));
    EXPECT_FALSE(image.isNull());
    EXPECT_EQ(image.width(), 1003);
    EXPECT_EQ(image.height(), 5);
    EXPECT_EQ(image.format(), ColorFormat::Bgr);
    EXPECT_EQ(image.channelType(), PDIP::Channel::UInt8);
    EXPECT_EQ(image.bytesPerLine(), 3012u);
    EXPECT_EQ(image.dataSize(), 15060u);
    EXPECT_EQ(image.rawData(AccessMode::Write).size(), 15060u);
    std::memset(image.rawData(AccessMode::Write).data(), 1, 15060);
}

TEST(PImage, is_empty_after_creating_one_of_a_geometry_that_is_not_valid) {
    for (const long width : {0L, -1L, LONG_MIN, LONG_MAX}) {
        PImage image = filled(1);
        EXPECT_FALSE(image.create(width, 4, ColorFormat::Bgr)) << width;
        EXPECT_TRUE(image.isNull());
    }
}

TEST(PImage, is_empty_after_creating_one_for_which_there_is_no_memory) {
    PImage image = filled(1);
    EXPECT_NO_THROW(EXPECT_FALSE(image.create(1L << 30, 1L << 30, ColorFormat::Gray)));
    EXPECT_TRUE(image.isNull());
    const unsigned char byte = 0;
    image = filled(1);
    EXPECT_NO_THROW(
        EXPECT_FALSE(image.set(&byte, PImageHeader(1L << 30, 1L << 30, ColorFormat::Gray))));
    EXPECT_TRUE(image.isNull());
}

TEST(PImage, created_again_leaves_copies_and_drops_its_information) {
    PImage image = filled(1);
    image.setMetaInformation(someInformation);
    image.setAttachment(std::make_shared<Note>());
    const PImage copy = image;
    ASSERT_TRUE(image.create(image.header()));
    EXPECT_NE(pixelData(image), pixelData(copy));
    EXPECT_TRUE(image.metaInformation().isEmpty());
    EXPECT_FALSE(image.attachment());
    EXPECT_EQ(pixelData(copy)[0], 1);
    EXPECT_EQ(copy.metaInformation(), someInformation);
    EXPECT_TRUE(copy.attachment());
}

TEST(PImage, takes_pixels_in_with_set) {
    const std::vector<unsigned char> bytes(8 * 4, 7);
    PImage image;
    ASSERT_TRUE(image.set(bytes.data(), PImageHeader(8, 4, ColorFormat::Gray)));
    EXPECT_EQ(std::memcmp(pixelData(image), bytes.data(), bytes.size()), 0);
}

TEST(PImage, set_again_uses_its_memory_again_and_keeps_its_information) {
    PImage image = filled(1);
    image.setMetaInformation(someInformation);
    image.setAttachment(std::make_shared<Note>());
    const auto* before = pixelData(image);
    const std::vector<unsigned char> bytes(8 * 4, 7);
    ASSERT_TRUE(image.set(bytes.data(), PImageHeader(4, 8, ColorFormat::Gray)));
    EXPECT_EQ(pixelData(image), before);
    EXPECT_EQ(pixelData(image)[31], 7);
    EXPECT_EQ(image.height(), 8);
    EXPECT_EQ(image.metaInformation(), someInformation);
    EXPECT_TRUE(image.attachment());
}

TEST(PImage, set_to_another_size_keeps_its_information) {
    PImage image = filled(1);
    image.setMetaInformation(someInformation);
    const std::vector<unsigned char> bytes(16, 7);
    ASSERT_TRUE(image.set(bytes.data(), PImageHeader(4, 4, ColorFormat::Gray)));
    EXPECT_EQ(image.dataSize(), 16u);
    EXPECT_EQ(image.metaInformation(), someInformation);
}

TEST(PImage, set_leaves_copies_as_they_are) {
    PImage image = filled(1);
    const PImage copy = image;
    const std::vector<unsigned char> bytes(8 * 4, 7);
    ASSERT_TRUE(image.set(bytes.data(), image.header()));
    EXPECT_EQ(pixelData(copy)[0], 1);
    EXPECT_EQ(pixelData(image)[0], 7);
}

TEST(PImage, set_leaves_a_copy_that_was_given_other_information_as_it_is) {
    PImage image = filled(1);
    PImage copy = image;
    copy.setMetaInformation(someInformation);
    const std::vector<unsigned char> bytes(8 * 4, 7);
    ASSERT_TRUE(image.set(bytes.data(), image.header()));
    EXPECT_EQ(pixelData(copy)[0], 1);
}

TEST(PImage, can_be_set_to_a_part_of_itself) {
    PImage image = filled(1);
    image.rawData(AccessMode::Write).data()[8] = 9;
    const auto* secondRow = pixelData(image) + 8;
    ASSERT_TRUE(image.set(secondRow, PImageHeader(8, 3, ColorFormat::Gray)));
    EXPECT_EQ(pixelData(image)[0], 9);
    EXPECT_EQ(image.height(), 3);
    ASSERT_TRUE(image.set(pixelData(image), image.header()));
    EXPECT_EQ(pixelData(image)[0], 9);
}

TEST(PImage, is_empty_after_set_without_data_or_with_a_geometry_that_is_not_valid) {
    const unsigned char byte = 0;
    PImage image = filled(1);
    EXPECT_FALSE(image.set(nullptr, image.header()));
    EXPECT_TRUE(image.isNull());
    image = filled(1);
    EXPECT_FALSE(image.set(&byte, PImageHeader(-1, 4, ColorFormat::Gray)));
    EXPECT_TRUE(image.isNull());
}

TEST(PImage, shares_its_pixels_with_copies_until_one_is_changed) {
    PImage image = filled(1);
    PImage copy = image;
    EXPECT_EQ(pixelData(image), pixelData(copy));
    copy.rawData(AccessMode::ReadWrite).data()[0] = 2;
    EXPECT_EQ(pixelData(image)[0], 1);
    EXPECT_EQ(pixelData(copy)[0], 2);
    EXPECT_EQ(pixelData(copy)[31], 1) << "the rest was copied";
}

TEST(PImage, opened_for_reading_stays_shared) {
    PImage image = filled(1);
    const PImage copy = image;
    EXPECT_EQ(image.rawData(AccessMode::Read).constData(), pixelData(copy));
}

TEST(PImage, opened_for_writing_releases_shared_memory) {
    PImage image = filled(1);
    const PImage copy = image;
    EXPECT_NE(image.rawData(AccessMode::Write).data(), pixelData(copy));
    EXPECT_EQ(pixelData(copy)[0], 1);
}

TEST(PImage, not_shared_is_opened_for_writing_where_it_is) {
    PImage image = filled(1);
    const auto* before = pixelData(image);
    EXPECT_EQ(image.rawData(AccessMode::Write).data(), before);
    EXPECT_EQ(image.rawData(AccessMode::ReadWrite).data(), before);
    EXPECT_EQ(before[31], 1);
}

TEST(PImage, is_its_own_again_when_the_last_copy_is_gone) {
    PImage image = filled(1);
    const auto* before = pixelData(image);
    { const PImage copy = image; }
    EXPECT_EQ(image.rawData(AccessMode::ReadWrite).data(), before);
}

TEST(PImage, refuses_to_hand_out_for_writing_what_was_opened_for_reading) {
    PImage image = filled(1);
    const PImage& constant = image;
    const auto message = [](auto&& action) {
        try {
            action();
        } catch (const PDIP::dip_exception& exception) {
            return std::string(exception.what());
        }
        return std::string("nothing thrown");
    };
    const std::string expected = "invalid mode for access";
    EXPECT_EQ(message([&] { image.rawData(AccessMode::Read).data(); }), expected);
    EXPECT_EQ(message([&] { constant.rawData(AccessMode::Write); }), expected);
    EXPECT_EQ(message([&] { constant.rawData(AccessMode::ReadWrite); }), expected);
    EXPECT_EQ(message([&] { constant.rawData(AccessMode::Read); }), "nothing thrown");
}

TEST(PImage, is_moved_without_its_pixels_being_copied) {
    PImage image = filled(1);
    const auto* bytes = pixelData(image);
    PImage moved = std::move(image);
    EXPECT_EQ(pixelData(moved), bytes);
    PImage assigned;
    assigned = std::move(moved);
    EXPECT_EQ(pixelData(assigned), bytes);
}

TEST(PImage, changes_its_format_only_to_one_of_the_same_bytes_per_pixel) {
    PImage image = filled(1, 4, 4, ColorFormat::BgrX);
    const PImage copy = image;
    EXPECT_FALSE(image.reinterpretFormat(ColorFormat::Bgr));
    EXPECT_FALSE(image.reinterpretFormat(ColorFormat(9)));
    EXPECT_TRUE(image.reinterpretFormat(ColorFormat::Xrgb));
    EXPECT_EQ(image.format(), ColorFormat::Xrgb);
    EXPECT_EQ(copy.format(), ColorFormat::BgrX);
    EXPECT_EQ(pixelData(image), pixelData(copy)) << "the pixels are the same ones";
}

TEST(PImage, takes_information_of_its_own_without_copying_pixels) {
    PImage image = filled(1);
    const PImage copy = image;
    image.setMetaInformation(someInformation);
    image.setAttachment(std::make_shared<Note>());
    EXPECT_EQ(image.metaInformation(), someInformation);
    EXPECT_TRUE(copy.metaInformation().isEmpty());
    EXPECT_FALSE(copy.attachment());
    EXPECT_EQ(pixelData(image), pixelData(copy));
}

TEST(PImage, gives_its_information_to_every_copy) {
    PImage image = filled(1);
    image.setMetaInformation(someInformation);
    const auto note = std::make_shared<Note>();
    image.setAttachment(note);
    const PImage copy = image;
    EXPECT_EQ(copy.metaInformation(), someInformation);
    EXPECT_EQ(copy.attachment(), note);
}

TEST(PImage, without_pixels_can_hold_information) {
    PImage image;
    image.setMetaInformation(someInformation);
    EXPECT_TRUE(image.isNull());
    EXPECT_EQ(image.metaInformation(), someInformation);
    EXPECT_TRUE(image.toQImage().isNull());
}

namespace {

struct Colour {
    const char* name;
    ColorFormat format;
    std::vector<unsigned char> red; // one pixel of it
};

const Colour colours[] = {
    {"in_blue_green_red", ColorFormat::Bgr, {0, 0, 255}},
    {"in_red_green_blue_x", ColorFormat::Xrgb, {255, 0, 0, 255}},
    {"as_pulled", ColorFormat::BgrX, {0, 0, 255, 0}},
};

class PImageRed : public RowTest<Colour> {};

} // namespace

ROW_TEST(PImageRed, is_red_as_a_QImage) {
    const Colour& colour = GetParam();
    PImage image = filled(0, 3, 2, colour.format); // nine bytes a row, so padded
    unsigned char* lastPixel =
        image.rawData(AccessMode::ReadWrite).data() + image.bytesPerLine() + 2 * colour.red.size();
    std::copy(colour.red.begin(), colour.red.end(), lastPixel);
    const QImage qImage = image.toQImage();
    ASSERT_EQ(qImage.size(), QSize(3, 2));
    EXPECT_EQ(qImage.pixelColor(2, 1).rgb(), qRgb(255, 0, 0));
    EXPECT_EQ(qImage.convertToFormat(QImage::Format_ARGB32).pixel(2, 1), qRgb(255, 0, 0));
    EXPECT_EQ(qImage.pixelColor(1, 1).red(), 0);
}

ROWS_IN(Formats, PImageRed, colours);

TEST(PImage, of_grey_is_grey_as_a_QImage) {
    const QImage qImage = filled(99, 3, 2).toQImage();
    EXPECT_EQ(qImage.format(), QImage::Format_Grayscale8);
    EXPECT_EQ(qImage.pixel(2, 1), qRgb(99, 99, 99));
}

TEST(PImage, is_viewed_as_a_QImage_without_a_copy) {
    const PImage image = filled(1);
    const QImage qImage = image.toQImage();
    EXPECT_EQ(qImage.constBits(), pixelData(image));
}

TEST(PImage, is_kept_alive_by_its_QImage) {
    QImage qImage = filled(5).toQImage();
    const PImage other = filled(6); // would take the memory if it had been freed
    EXPECT_EQ(qImage.constScanLine(3)[7], 5);
    const std::size_t used = PBufferPool::instance().statistics().usedBytes;
    qImage = QImage();
    EXPECT_EQ(PBufferPool::instance().statistics().usedBytes, used - 4096);
}

TEST(PImage, is_left_alone_when_its_QImage_is_painted_on) {
    const PImage image = filled(1);
    QImage qImage = image.toQImage();
    qImage.fill(200);
    EXPECT_EQ(pixelData(image)[0], 1);
    EXPECT_EQ(qImage.constBits()[0], 200);
}

TEST(PImage, leaves_its_QImage_alone_when_it_is_changed) {
    PImage image = filled(1);
    const QImage qImage = image.toQImage();
    image.rawData(AccessMode::ReadWrite).data()[0] = 200;
    EXPECT_EQ(qImage.constBits()[0], 1);
    const std::vector<unsigned char> bytes(8 * 4, 7);
    image = filled(1);
    const QImage another = image.toQImage();
    ASSERT_TRUE(image.set(bytes.data(), image.header()));
    EXPECT_EQ(another.constBits()[0], 1);
}

TEST(PImage, is_shown_in_debug_output_with_size_format_and_bytes) {
    PImage image;
    EXPECT_EQ(QDebug::toString(image).trimmed(), u"PImage(null)"_qs);
    ASSERT_TRUE(image.create(2736, 1824, ColorFormat::Bgr));
    EXPECT_EQ(QDebug::toString(image).trimmed(), u"PImage(2736x1824, Bgr, 14971392 bytes)"_qs);
    EXPECT_EQ(QDebug::toString(filled(1)).trimmed(), u"PImage(8x4, Gray, 32 bytes)"_qs);
    EXPECT_EQ(QDebug::toString(filled(1, 1, 1, ColorFormat::Xrgb)).trimmed(),
              u"PImage(1x1, Xrgb, 4 bytes)"_qs);
    EXPECT_EQ(QDebug::toString(filled(1, 1, 1, ColorFormat::BgrX)).trimmed(),
              u"PImage(1x1, BgrX, 4 bytes)"_qs);
}

TEST(PImage, travels_in_a_QVariant) {
    const PImage image = filled(3);
    const QVariant variant = QVariant::fromValue(image);
    EXPECT_STREQ(variant.typeName(), "PImage");
    EXPECT_EQ(pixelData(variant.value<PImage>()), pixelData(image));
}

TEST(PImage, may_be_read_on_one_thread_and_changed_on_another_while_they_share_pixels) {
    PImage image = filled(1, 64, 64);
    for (int i = 0; i < 200; ++i) {
        PImage copy = image;
        std::thread reader([copy = std::move(copy)] {
            const auto* bytes = pixelData(copy);
            EXPECT_EQ(bytes[0], bytes[64 * 64 - 1]);
            EXPECT_EQ(copy.width(), 64);
        });
        std::memset(image.rawData(AccessMode::Write).data(), i, image.dataSize());
        image.setMetaInformation(someInformation);
        reader.join();
    }
}

TEST(PImage, may_be_written_in_place_once_another_thread_has_released_it) {
    // Only the reference count of the pixels synchronises with the reader: the thread sanitizer
    // reports a race here if that count does not order the accesses.
    PImage image = filled(1, 64, 64);
    for (int i = 0; i < 200; ++i) {
        std::atomic<int> sum{0};
        std::thread reader([copy = PImage(image), &sum]() mutable {
            sum.store(pixelData(copy)[5], std::memory_order_relaxed);
            copy = PImage();
        });
        for (int n = 0; n < 100; ++n)
            std::memset(image.rawData(AccessMode::Write).data(), i, image.dataSize());
        reader.join();
        EXPECT_EQ(sum, i == 0 ? 1 : i - 1);
    }
}
