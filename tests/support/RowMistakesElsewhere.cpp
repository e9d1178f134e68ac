// SPDX-License-Identifier: MIT
// The mistakes in RowMistakes.cpp that need another source.
#include <support/RowFixtures.h>
#include <support/RowTest.h>

#include <string>

namespace {

/// The name of a fixture in that source, whose rows are of another type.
class SameName : public RowTest<int> {
public:
    static std::string toRowName(const int& row) { return std::to_string(row); }
};

} // namespace

ROW_TEST(SameName, has_a_number) {
    EXPECT_GT(GetParam(), 0);
}
ROWS(Elsewhere, SameName, 1, 2);

ROWS(Twice, RowsElsewhere, WordRow{"two", "two"});
