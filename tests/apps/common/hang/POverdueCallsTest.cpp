// SPDX-License-Identifier: MIT
#include <apps/common/hang/POverdueCalls.h>

#include <PCore/call/PNamedCall.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(POverdueCalls, a_call_is_named_with_the_time_that_it_has_taken_so_far) {
    EXPECT_EQ(POverdueCalls::toText({u"F(1)"_qs, 760ms, false}),
              u"waiting for F(1) to return, 0.8 s so far"_qs);
    EXPECT_EQ(POverdueCalls::toText({u"F(1)"_qs, 12'300ms, true}),
              u"F(1) has returned after 12 s"_qs);
}

TEST(POverdueCalls, arguments_with_percent_signs_are_kept) {
    EXPECT_EQ(POverdueCalls::toText({u"F(\"%2\")"_qs, 1000ms, true}),
              u"F(\"%2\") has returned after 1.0 s"_qs);
}

TEST(POverdueCalls, there_are_no_names_without_an_overdue_call) {
    EXPECT_EQ(POverdueCalls::names(), QString());
}

TEST(POverdueCalls, an_overdue_call_is_named) {
    const PCallWatchdog watchdog([](const PCallWatchdog::Call&) {}, 20ms);
    static constexpr PNamedCall<int(int)> named("Camera_hang");
    const auto inProgress = named.begin(5);
    ASSERT_TRUE(waitUntil([] { return !POverdueCalls::names().isEmpty(); }));
    EXPECT_TRUE(POverdueCalls::names().startsWith(u"Camera_hang(5) ("_qs))
        << POverdueCalls::names().toStdString();
}

TEST(POverdueCalls, the_patience_is_less_than_a_second_unless_the_user_sets_it) {
    EXPECT_LT(POverdueCalls::patience(), 1s);
    qputenv("PCD_CALL_SECONDS", "2.5");
    EXPECT_EQ(POverdueCalls::patience(), 2500ms);
    qunsetenv("PCD_CALL_SECONDS");
}
