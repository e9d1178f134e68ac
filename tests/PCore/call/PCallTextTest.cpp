// SPDX-License-Identifier: MIT
#include <PCore/call/PCallText.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

TEST(PCallText, texts_and_numbers_follow_each_other) {
    PCallText text;
    text << "a(" << std::int64_t(-5) << ", " << std::uint64_t(7) << ")";
    EXPECT_EQ(text.view(), "a(-5, 7)");
}

TEST(PCallText, the_numbers_at_the_ends_of_the_range_are_complete) {
    PCallText text;
    text << std::numeric_limits<std::int64_t>::min() << " "
         << std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(text.view(), "-9223372036854775808 18446744073709551615");
}

TEST(PCallText, an_address_is_hexadecimal_and_null_is_named) {
    PCallText text;
    text.addAddress(0xfedcba9876543210);
    text << " ";
    text.addAddress(0);
    EXPECT_EQ(text.view(), "0xfedcba9876543210 null");
}

TEST(PCallText, what_is_not_printable_is_escaped) {
    PCallText text;
    text.addQuoted("a\n\x01\x1b[2J\xc3\xa4 ~");
    EXPECT_EQ(text.view(), "\"a\\n\\x01\\x1b[2J\\xc3\\xa4 ~\"");
}

TEST(PCallText, what_does_not_fit_is_left_out) {
    PCallText text;
    text << std::string(PCallText::longest - 2, 'x') << "abc"
         << "d" << std::int64_t(1);
    EXPECT_EQ(text.view().size(), PCallText::longest);
    EXPECT_EQ(text.view().substr(PCallText::longest - 3), "xab");
}

} // namespace
