// SPDX-License-Identifier: MIT
#include <PGui/PTimeText.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct Written {
    const char* name;
    double microseconds;
    const char* text; // UTF-8
};

class PTimeTextWritten : public RowTest<Written> {};

struct TypedTime {
    const char* name;
    const char* text; // UTF-8
    double shown;
    std::optional<double> microseconds;
};

class PTimeTextTyped : public RowTest<TypedTime> {};

} // namespace

ROW_TEST(PTimeTextWritten, is_in_the_unit_that_suits_it) {
    EXPECT_EQ(PTimeText().toText(GetParam().microseconds, 0, QLocale::c()),
              QString::fromUtf8(GetParam().text));
}

ROW_TEST(PTimeTextWritten, is_read_as_what_it_was) {
    const PTimeText text;
    EXPECT_EQ(text.toValue(QString::fromUtf8(GetParam().text), 0, QLocale::c()),
              GetParam().microseconds);
}

ROWS(Rows, PTimeTextWritten, Written{"nothing", 0, "0 µs"},
     Written{"ten_microseconds", 10, "10 µs"}, Written{"just_below_a_millisecond", 999, "999 µs"},
     Written{"a_millisecond", 1000, "1 ms"}, Written{"all_digits", 12345, "12.345 ms"},
     Written{"just_below_a_second", 999999, "999.999 ms"}, Written{"a_second", 1000000, "1 s"},
     Written{"all_digits_of_seconds", 49999999, "49.999999 s"},
     Written{"fifty_seconds", 50000000, "50 s"});

ROW_TEST(PTimeTextTyped, means_its_time) {
    const std::optional<double> value =
        PTimeText().toValue(QString::fromUtf8(GetParam().text), GetParam().shown, QLocale::c());
    ASSERT_EQ(value.has_value(), GetParam().microseconds.has_value());
    if (value) {
        EXPECT_DOUBLE_EQ(*value, *GetParam().microseconds);
    }
}

ROWS(Rows, PTimeTextTyped, TypedTime{"milliseconds", "12.5 ms", 100, 12500},
     TypedTime{"seconds", "3 s", 100, 3e6}, TypedTime{"microseconds_by_u", "150 us", 5e6, 150},
     TypedTime{"microseconds_by_the_micro_sign", "150 \u00b5s", 5e6, 150},
     TypedTime{"microseconds_by_the_greek_letter", "150 \u03bcs", 5e6, 150},
     TypedTime{"without_a_space", "12.5ms", 100, 12500}, TypedTime{"in_capitals", "3 S", 100, 3e6},
     TypedTime{"a_bare_number_while_microseconds_are_shown", "20", 100, 20},
     TypedTime{"a_bare_number_while_milliseconds_are_shown", "20", 12500, 20000},
     TypedTime{"a_bare_number_while_seconds_are_shown", "20", 3e6, 2e7},
     TypedTime{"no_number", "ms", 100, std::nullopt},
     TypedTime{"another_unit", "3 m", 100, std::nullopt},
     TypedTime{"nothing", "", 100, std::nullopt});

TEST(PTimeText, reads_and_writes_a_decimal_comma_where_the_locale_does) {
    const QLocale russian(u"ru_RU"_qs);
    EXPECT_EQ(PTimeText().toText(12500, 0, russian), u"12,5 ms"_qs);
    EXPECT_EQ(PTimeText().toValue(u"12,5 ms"_qs, 0, russian), 12500);
}
