// SPDX-License-Identifier: MIT
#include <PCd/PScanAreaRange.h>

#include <support/QtPrinters.h>

#include <QIODevice>

#include <gtest/gtest.h>

namespace {

const PScanAreaRange example{QRect(0, 0, 5472, 3648), 16, 8, 4, 2, 1};

QByteArray streamForm(const PScanAreaRange& range) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << range;
    return bytes;
}

} // namespace

TEST(PScanAreaRange, limits_nothing_until_it_is_filled_in) {
    const PScanAreaRange none{QRect(), 0, 0, 0, 0, 0};
    EXPECT_TRUE(PScanAreaRange() == none);
}

TEST(PScanAreaRange, is_equal_only_if_every_field_is) {
    PScanAreaRange other = example;
    EXPECT_TRUE(other == example);
    EXPECT_FALSE(other != example);
    for (int PScanAreaRange::*field :
         {&PScanAreaRange::minimumWidth, &PScanAreaRange::minimumHeight, &PScanAreaRange::widthStep,
          &PScanAreaRange::heightStep, &PScanAreaRange::offsetStep}) {
        other = example;
        ++(other.*field);
        EXPECT_TRUE(other != example);
    }
    other = example;
    other.bounds.setWidth(5471);
    EXPECT_TRUE(other != example);
}

TEST(PScanAreaRange, is_written_to_a_stream_as_bounds_and_five_numbers) {
    EXPECT_EQ(streamForm(example).toHex(), // a QRect is left, top, right, bottom
              QByteArray("00000000"
                         "00000000"
                         "0000155f"
                         "00000e3f"
                         "00000010"
                         "00000008"
                         "00000004"
                         "00000002"
                         "00000001"));
}

TEST(PScanAreaRange, comes_back_from_a_stream) {
    PScanAreaRange range;
    QDataStream in(streamForm(example));
    in >> range;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_TRUE(in.atEnd());
    EXPECT_TRUE(range == example);
}

TEST(PScanAreaRange, comes_back_from_a_stream_also_in_a_variant) {
    const QVariant value = QVariant::fromValue(example);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    QVariant back;
    QDataStream in(bytes);
    in >> back;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(back, value);
}

TEST(PScanAreaRange, from_any_stream_that_ends_early_leaves_the_status_set) {
    const QByteArray whole = streamForm(example);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        PScanAreaRange range;
        QDataStream in(whole.left(length));
        in >> range;
        EXPECT_EQ(in.status(), QDataStream::ReadPastEnd) << length << " bytes";
    }
}
