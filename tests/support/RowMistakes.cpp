// SPDX-License-Identifier: MIT
// A program of row tests with every mistake there is. RowTestTest runs it.
#include <support/RowFixtures.h>
#include <support/RowTest.h>

#include <vector>

namespace {

struct ThingRow {
    const char* name;
};

class GoodRows : public RowTest<ThingRow> {};
class BadNames : public RowTest<ThingRow> {};
class EmptyTable : public RowTest<ThingRow> {};
class WithoutRows : public RowTest<ThingRow> {};
class WithoutTests : public RowTest<ThingRow> {};
class SameName : public RowTest<ThingRow> {};

} // namespace

ROW_TEST(GoodRows, is_good) {
    EXPECT_STREQ(GetParam().name, "good");
}
ROWS(Rows, GoodRows, ThingRow{"good"}, ThingRow{"bad"});

ROW_TEST(BadNames, have_a_row) {
    EXPECT_NE(GetParam().name, nullptr);
}
ROWS(Rows, BadNames, ThingRow{"two words"}, ThingRow{"again"}, ThingRow{""}, ThingRow{"again"});

ROW_TEST(EmptyTable, has_a_row) {
    EXPECT_NE(GetParam().name, nullptr);
}
ROWS_IN(Rows, EmptyTable, std::vector<ThingRow>());

ROW_TEST(WithoutRows, has_a_row) {
    EXPECT_NE(GetParam().name, nullptr);
}

ROWS(Rows, WithoutTests, ThingRow{"good"});

ROW_TEST(SameName, has_a_row) {
    EXPECT_NE(GetParam().name, nullptr);
}
ROWS(Here, SameName, ThingRow{"good"});

ROW_TEST(RowsElsewhere, has_its_row) {
    EXPECT_STREQ(GetParam().word, GetParam().name);
}
ROWS(Twice, RowsElsewhere, WordRow{"one", "one"});
