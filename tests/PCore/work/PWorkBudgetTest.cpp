// SPDX-License-Identifier: MIT
#include <PCore/work/PWorkBudget.h>

#include <gtest/gtest.h>

namespace {

TEST(PWorkBudgetTest, gives_up_to_its_limit_and_again_what_came_back) {
    PWorkBudget budget(10);
    EXPECT_EQ(budget.limit(), 10U);
    EXPECT_TRUE(budget.take(4, 1));
    EXPECT_TRUE(budget.take(6, 4));
    EXPECT_FALSE(budget.take(1, 10));
    budget.giveBack(4);
    EXPECT_FALSE(budget.take(5, 6));
    EXPECT_TRUE(budget.take(4, 6));
}

TEST(PWorkBudgetTest, always_gives_to_a_holder_of_nothing) {
    PWorkBudget budget(10);
    EXPECT_TRUE(budget.take(100, 0));
    EXPECT_TRUE(budget.take(1, 0));
    EXPECT_FALSE(budget.take(1, 1));
    budget.giveBack(100);
    EXPECT_TRUE(budget.take(9, 1));
}

} // namespace
