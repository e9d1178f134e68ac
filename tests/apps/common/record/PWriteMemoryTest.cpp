// SPDX-License-Identifier: MIT
#include <apps/common/record/PWriteMemory.h>

#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t mebibyte = 1 << 20;

struct LimitRow {
    const char* name;
    std::uint64_t memory; ///< MiB
    std::uint64_t limit;  ///< MiB
};

class WriteMemoryLimit : public RowTest<LimitRow> {};

ROW_TEST(WriteMemoryLimit, follows_the_memory) {
    EXPECT_EQ(PWriteMemory::limitFor(GetParam().memory * mebibyte), GetParam().limit * mebibyte);
}

ROWS(Rows, WriteMemoryLimit, LimitRow{"of_a_small_machine_is_a_quarter", 2048, 512},
     LimitRow{"of_8_gib_is_2_gib", 8192, 2048},
     LimitRow{"of_a_large_machine_is_2_gib", 65536, 2048},
     LimitRow{"of_very_little_memory_is_some_frames", 128, 64},
     LimitRow{"of_unknown_memory_is_some_frames", 0, 64});

TEST(WriteMemory, the_limit_of_this_machine_is_more_than_the_least) {
    EXPECT_GT(PWriteMemory::defaultLimit(), 64 * mebibyte); // the size of its memory is known
    EXPECT_LE(PWriteMemory::defaultLimit(), 2048 * mebibyte);
}

TEST(WriteMemory, a_budget_has_the_limit_of_this_machine) {
    EXPECT_EQ(PWriteMemory::makeBudget()->limit(), PWriteMemory::defaultLimit());
}

} // namespace
