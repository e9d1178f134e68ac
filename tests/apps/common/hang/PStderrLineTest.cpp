// SPDX-License-Identifier: MIT
#include <apps/common/hang/PStderrLine.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

TEST(PStderrLine, a_line_is_written_although_another_thread_holds_the_stream) {
    testing::internal::CaptureStderr();
    flockfile(stderr);
    std::thread([] { PStderrLine::write(u"waiting for \u00b5s"_qs); }).join();
    funlockfile(stderr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "waiting for \u00b5s\n");
}
