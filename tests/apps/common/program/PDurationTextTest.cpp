// SPDX-License-Identifier: MIT
#include <apps/common/program/PDurationText.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct DurationRow {
    const char* name;
    const char* text;
    long long microseconds; ///< -1: means no time
};

class DurationText : public RowTest<DurationRow> {};

ROW_TEST(DurationText, means_this_time) {
    const auto time = PDurationText::parse(QString::fromUtf8(GetParam().text));
    EXPECT_EQ(time ? static_cast<long long>(time->count()) : -1, GetParam().microseconds);
}

ROWS(Apps, DurationText, DurationRow{"seconds_and_milliseconds", "1s500ms", 1'500'000},
     DurationRow{"all_units", "1m2s3ms4us", 62'003'004},
     DurationRow{"minutes_alone", "2m", 120'000'000},
     DurationRow{"milliseconds_alone", "250ms", 250'000},
     DurationRow{"microseconds_alone", "15us", 15},
     DurationRow{"microseconds_with_a_mu", "15µs", 15},
     DurationRow{"a_fraction_of_a_second", "1.005s", 1'005'000},
     DurationRow{"seconds_without_a_unit", "0.25", 250'000},
     DurationRow{"blanks_between", " 1 s 5 ms ", 1'005'000}, DurationRow{"nothing_at_all", "", -1},
     DurationRow{"blanks_only", "  ", -1}, DurationRow{"a_unit_without_a_number", "ms", -1},
     DurationRow{"a_unit_twice", "1s2s", -1}, DurationRow{"small_before_large", "5ms1s", -1},
     DurationRow{"a_negative_time", "-1s", -1}, DurationRow{"a_foreign_unit", "1h", -1},
     DurationRow{"more_than_a_day", "1441m", -1}, DurationRow{"no_number_at_all", "nan", -1});

} // namespace
