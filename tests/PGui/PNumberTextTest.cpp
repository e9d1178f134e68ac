// SPDX-License-Identifier: MIT
#include <PGui/PNumberText.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct TypedNumber {
    const char* name;
    const char* locale;
    const char* text; // UTF-8
    std::optional<double> value;
};

class PNumberTextTyped : public RowTest<TypedNumber> {};

} // namespace

ROW_TEST(PNumberTextTyped, means_its_number) {
    const PNumberText text(u" %"_qs);
    const QLocale locale(QString::fromLatin1(GetParam().locale));
    EXPECT_EQ(text.toValue(QString::fromUtf8(GetParam().text), 0, locale), GetParam().value);
}

ROWS(Rows, PNumberTextTyped, TypedNumber{"a_number", "en_US", "12", 12},
     TypedNumber{"a_negative_number", "en_US", "-12", -12},
     TypedNumber{"with_the_unit", "en_US", "12 %", 12},
     TypedNumber{"with_the_unit_close_to_it", "en_US", "12%", 12},
     TypedNumber{"with_space_around", "en_US", "  12.5 ", 12.5},
     TypedNumber{"a_russian_comma", "ru_RU", "12,5", 12.5},
     TypedNumber{"a_point_in_russian", "ru_RU", "12.5", 12.5},
     TypedNumber{"a_german_thousand_is_a_fraction", "de_DE", "1.5", 1.5},
     TypedNumber{"nothing", "en_US", "", std::nullopt},
     TypedNumber{"the_unit_alone", "en_US", "%", std::nullopt},
     TypedNumber{"two_numbers", "en_US", "1 2", std::nullopt},
     TypedNumber{"not_a_number", "en_US", "nan", std::nullopt},
     TypedNumber{"endless", "en_US", "inf", std::nullopt});

TEST(PNumberText, writes_the_requested_decimals_and_the_unit) {
    const PNumberText text(u" °C"_qs);
    EXPECT_EQ(text.toText(-2.5, 1, QLocale::c()), u"-2.5 °C"_qs);
    EXPECT_EQ(text.toText(3, 1, QLocale::c()), u"3.0 °C"_qs);
}

TEST(PNumberText, writes_more_decimals_where_the_value_has_them) {
    EXPECT_EQ(PNumberText().toText(12.345, 2, QLocale::c()), u"12.345"_qs);
}

TEST(PNumberText, writes_as_the_locale_does_without_thousands) {
    const QLocale russian(u"ru_RU"_qs);
    EXPECT_EQ(PNumberText().toText(12345.5, 1, russian), u"12345,5"_qs);
}
