// SPDX-License-Identifier: MIT
#include <apps/common/program/PExitDeadline.h>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace std::chrono_literals;

namespace {

void hang() {
    const PExitDeadline deadline(10ms, u"the camera does not return"_qs, 5);
    for (;;)
        ::pause();
}

/// Ends with a code of its own.
void finishInTime() {
    { const PExitDeadline deadline(10s, u"not reached"_qs, 5); }
    ::_exit(7);
}

} // namespace

TEST(PExitDeadline, a_program_that_hangs_is_ended_with_the_message) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(hang(), testing::ExitedWithCode(5), "the camera does not return\n");
}

TEST(PExitDeadline, a_program_that_is_done_in_time_does_not_wait_for_it) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(finishInTime(), testing::ExitedWithCode(7), "^$");
}
