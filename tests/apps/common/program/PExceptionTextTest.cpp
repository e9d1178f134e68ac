// SPDX-License-Identifier: MIT
#include <apps/common/program/PExceptionText.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <system_error>

TEST(PExceptionText, a_thread_that_is_not_started_is_named_with_what_to_do) {
    const std::system_error error(std::make_error_code(std::errc::resource_unavailable_try_again));
    EXPECT_EQ(PExceptionText::of(error),
              u"the system has started no thread (Resource temporarily unavailable): end other "
              "programs, or raise the limits that \"ulimit -u -v\" shows"_qs);
}

TEST(PExceptionText, memory_that_is_not_there_is_named) {
    EXPECT_EQ(PExceptionText::of(std::bad_alloc()), u"there is not enough memory"_qs);
}

TEST(PExceptionText, all_others_speak_for_themselves) {
    EXPECT_EQ(PExceptionText::of(std::runtime_error("no camera")), u"no camera"_qs);
    const std::system_error error(std::make_error_code(std::errc::permission_denied));
    EXPECT_EQ(PExceptionText::of(error), u"Permission denied"_qs);
}
