// SPDX-License-Identifier: MIT
#include <apps/common/hang/PEnvironmentSeconds.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

#include <QtGlobal>

using namespace std::chrono_literals;

namespace {

constexpr const char* testedVariable = "PCD_TEST_SECONDS";

std::chrono::milliseconds readFrom(const char* value) {
    qputenv(testedVariable, value);
    const auto time = PEnvironmentSeconds::read(testedVariable, 7s);
    qunsetenv(testedVariable);
    return time;
}

} // namespace

TEST(PEnvironmentSeconds, without_the_variable_the_usual_time_applies) {
    EXPECT_EQ(PEnvironmentSeconds::read(testedVariable, 7s), 7s);
}

TEST(PEnvironmentSeconds, seconds_may_have_decimals) {
    EXPECT_EQ(readFrom("0.25"), 250ms);
    EXPECT_EQ(readFrom("3600"), 1h);
}

TEST(PEnvironmentSeconds, the_shortest_time_is_some) {
    EXPECT_EQ(readFrom("0.0001"), 1ms);
    EXPECT_EQ(readFrom("1e-300"), 1ms);
}

TEST(PEnvironmentSeconds, what_is_no_time_in_the_range_leaves_the_usual_one) {
    for (const char* const value : {"", "soon", "0", "-1", "3601", "inf", "nan"})
        EXPECT_EQ(readFrom(value), 7s) << value;
}

TEST(PEnvironmentSeconds, what_is_ignored_can_be_reported) {
    const auto check = [](const char* value) {
        qputenv(testedVariable, value);
        const PStatus status = PEnvironmentSeconds::check(testedVariable);
        qunsetenv(testedVariable);
        return status.reason();
    };
    EXPECT_TRUE(PEnvironmentSeconds::check(testedVariable).isOk());
    EXPECT_EQ(check(""), QString());
    EXPECT_EQ(check("0.25"), QString());
    EXPECT_EQ(check("so\non"),
              u"PCD_TEST_SECONDS: \"so\\non\" is no time, so it is ignored: expected seconds "
              "above 0, 3600 at most"_qs);
}
