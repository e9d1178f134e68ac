// SPDX-License-Identifier: MIT
#include <PCore/PMinMaxRange.h>

#include <support/QtPrinters.h>

#include <QIODevice>

#include <gtest/gtest.h>

TEST(PMinMaxRange, is_equal_only_if_all_three_fields_are) {
    const PMinMaxRange<int> range{1, 9, 2};
    EXPECT_EQ(range, (PMinMaxRange<int>{1, 9, 2}));
    EXPECT_NE(range, (PMinMaxRange<int>{0, 9, 2}));
    EXPECT_NE(range, (PMinMaxRange<int>{1, 8, 2}));
    EXPECT_NE(range, (PMinMaxRange<int>{1, 9, 1}));
}

TEST(PMinMaxRange, with_empty_braces_is_all_zero) {
    EXPECT_EQ(PMinMaxRange<double>{}, (PMinMaxRange<double>{0, 0, 0}));
}

TEST(PMinMaxRange, is_written_to_a_stream_as_minimum_maximum_and_step_of_32_bits_each) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << PMinMaxRange<int>{-2, 255, 1};
    EXPECT_EQ(bytes.toHex(), QByteArray("fffffffe000000ff00000001"));
}

TEST(PMinMaxRange, comes_back_from_a_stream) {
    PMinMaxRange<int> range{};
    QDataStream in(QByteArray::fromHex("fffffffe000000ff00000001"));
    in >> range;
    EXPECT_EQ(in.status(), QDataStream::Ok);
    EXPECT_EQ(range, (PMinMaxRange<int>{-2, 255, 1}));
}

TEST(PMinMaxRange, from_a_stream_that_ends_early_leaves_the_status_set) {
    PMinMaxRange<int> range{};
    QDataStream in(QByteArray::fromHex("fffffffe000000ff0000"));
    in >> range;
    EXPECT_EQ(in.status(), QDataStream::ReadPastEnd);
}

TEST(PMinMaxRange, is_a_meta_type_under_its_own_name) {
    EXPECT_STREQ(QMetaType::fromType<PMinMaxRange<int>>().name(), "PMinMaxRange<int>");
    EXPECT_STREQ(QMetaType::fromType<PMinMaxRange<double>>().name(), "PMinMaxRange<double>");
}
