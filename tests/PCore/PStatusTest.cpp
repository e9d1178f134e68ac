// SPDX-License-Identifier: MIT
#include <PCore/PStatus.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PStatus, is_a_success_without_a_reason_by_default) {
    const PStatus status;
    EXPECT_TRUE(status.isOk());
    EXPECT_EQ(status.reason(), QString());
}

TEST(PStatus, is_made_of_the_code_that_a_hook_returns) {
    const auto hook = [](PStatus::Code code) -> PStatus { return code; };
    EXPECT_TRUE(hook(PStatus::Ok).isOk());
    EXPECT_FALSE(hook(PStatus::Failed).isOk());
}

TEST(PStatus, keeps_the_reason_of_a_failure) {
    const PStatus status = PStatus::failure(u"no such camera"_qs);
    EXPECT_FALSE(status.isOk());
    EXPECT_EQ(status.reason(), u"no such camera"_qs);
}
