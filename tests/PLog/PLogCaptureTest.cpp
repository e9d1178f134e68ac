// SPDX-License-Identifier: MIT
#include <support/PLogCapture.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

void log(const char* source, const char* text, PLogLevel level = PLogLevel::Info) {
    PLog::logStream(QString::fromLatin1(source), {}, {}, 0, level) << text;
}

} // namespace

TEST(PLogCapture, sees_records_of_every_level_and_source) {
    const PLogCapture capture;
    log("a", "one", PLogLevel::Debug);
    log("b", "two", PLogLevel::Error);
    EXPECT_EQ(capture.texts(), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(capture.texts(QStringLiteral("b")), QStringList{QStringLiteral("two")});
    EXPECT_TRUE(capture.contains(QStringLiteral("one")));
    EXPECT_FALSE(capture.contains(QStringLiteral("one"), QStringLiteral("b")));
    EXPECT_FALSE(capture.contains(QStringLiteral("on")));
}

TEST(PLogCapture, forgets_what_it_is_told_to) {
    PLogCapture capture;
    log("a", "one");
    capture.clear();
    log("a", "two");
    EXPECT_EQ(capture.texts(), QStringList{QStringLiteral("two")});
}

TEST(PLogCapture, leaves_the_filter_and_the_sinks_as_they_were) {
    ASSERT_TRUE(PLog::setFilter(QStringLiteral("error,a=warning")).isOk());
    {
        const PLogCapture capture;
        EXPECT_EQ(PLog::filter(), QStringLiteral("debug"));
    }
    EXPECT_EQ(PLog::filter(), QStringLiteral("error,a=warning"));
    PLog::setFilter(QStringLiteral("info"));
    testing::internal::CaptureStderr();
    log("a", "to the standard error stream again");
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
}

TEST(PLogCapture, sees_qts_own_messages) {
    const PLogCapture capture;
    qDebug("Clear data: %d", 4);
    EXPECT_TRUE(capture.contains(QStringLiteral("Clear data: 4"), QStringLiteral("qt")));
}
