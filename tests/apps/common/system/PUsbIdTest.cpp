// SPDX-License-Identifier: MIT
#include <apps/common/system/PUsbId.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

namespace {

TEST(PUsbId, is_two_numbers_with_four_hexadecimal_digits_each) {
    const std::optional<PUsbId> id = PUsbId::parse(u"12aB:0001"_qs);
    ASSERT_TRUE(id.has_value());
    EXPECT_EQ(id->vendor, 0x12ab);
    EXPECT_EQ(id->product, 1);
    EXPECT_EQ(id->toText(), u"12ab:0001"_qs);
}

struct TextRow {
    const char* name;
    const char* text;
};

class NoUsbId : public RowTest<TextRow> {};

ROW_TEST(NoUsbId, is_refused) {
    EXPECT_FALSE(PUsbId::parse(QString::fromLatin1(GetParam().text)).has_value());
}

ROWS(Rows, NoUsbId, TextRow{"nothing", ""}, TextRow{"one_number", "1234"},
     TextRow{"three_digits", "123:5678"}, TextRow{"five_digits", "12345:5678"},
     TextRow{"a_letter_that_is_no_digit", "12g4:5678"}, TextRow{"three_numbers", "1234:5678:9abc"},
     TextRow{"a_line_feed_at_the_end", "1234:5678\n"}, TextRow{"a_prefix", "0x12:5678"});

} // namespace
