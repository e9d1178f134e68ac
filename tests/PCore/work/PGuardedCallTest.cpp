// SPDX-License-Identifier: MIT
#include <PCore/work/PGuardedCall.h>

#include <PCore/work/QtMessages.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace {

TEST(PGuardedCallTest, passes_a_result_on) {
    EXPECT_TRUE(PGuardedCall::status([] { return PStatus(PStatus::Ok); }).isOk());
    EXPECT_EQ(PGuardedCall::status([] { return PStatus::failure(u"no room"_qs); }).reason(),
              u"no room"_qs);
}

TEST(PGuardedCallTest, an_exception_is_a_failure_with_its_text) {
    const PStatus status =
        PGuardedCall::status([]() -> PStatus { throw std::runtime_error("no room"); });
    EXPECT_FALSE(status.isOk());
    EXPECT_EQ(status.reason(), u"no room"_qs);
}

TEST(PGuardedCallTest, memory_that_is_not_there_is_named_in_words) {
    const PStatus status = PGuardedCall::status([]() -> PStatus { throw std::bad_alloc(); });
    EXPECT_EQ(status.reason(), u"there is not enough memory"_qs);
}

TEST(PGuardedCallTest, whatever_is_thrown_is_a_failure) {
    const PStatus status = PGuardedCall::status([]() -> PStatus { throw 7; });
    EXPECT_EQ(status.reason(), u"unknown exception"_qs);
}

TEST(PGuardedCallTest, an_exception_without_a_result_is_logged) {
    const QtMessages messages;
    PGuardedCall::logged([] {});
    EXPECT_EQ(messages.texts(), QStringList());
    PGuardedCall::logged([] { throw std::runtime_error("no room"); });
    PGuardedCall::logged([] { throw 7; });
    EXPECT_EQ(messages.texts(), QStringList({u"An exception left a call: no room"_qs,
                                             u"An unknown exception left a call"_qs}));
}

} // namespace
