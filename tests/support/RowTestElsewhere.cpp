// SPDX-License-Identifier: MIT
// The other source of the suites that are in two: see RowTestTest.cpp.
#include <support/RowFixtures.h>

ROW_TEST(TestsElsewhere, has_its_row) {
    EXPECT_STREQ(GetParam().word, GetParam().name);
}

ROWS(Rows, RowsElsewhere, WordRow{"one", "one"}, WordRow{"two", "two"});
