// SPDX-License-Identifier: MIT
#include <PCd/property/value/PWholeNumber.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct NumberRow {
    const char* name;
    QVariant form;
    bool isWhole;
};

class WholeNumber : public RowTest<NumberRow> {};

} // namespace

ROW_TEST(WholeNumber, is_one_by_its_type) {
    EXPECT_EQ(isWholeNumber(GetParam().form), GetParam().isWhole);
}

const NumberRow forms[] = {
    {"of_32_bits_is_one", 7, true},
    {"of_64_bits_is_one", Q_INT64_C(7000000000), true},
    {"with_decimals_is_none_even_if_they_are_zero", 7.0, false},
    {"as_a_text_is_none", u"7"_qs, false},
    {"that_is_a_switch_is_none", true, false},
    {"that_is_not_there_is_none", QVariant(), false},
};

ROWS_IN(rows, WholeNumber, forms);
