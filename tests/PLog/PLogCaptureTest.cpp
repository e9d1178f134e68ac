// SPDX-License-Identifier: MIT
#include <support/PLogCapture.h>

#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

void log(const char* source, const char* text, PLogLevel level = PLogLevel::Info) {
    PLog::logStream(QString::fromLatin1(source), {}, {}, 0, level) << text;
}

} // namespace

TEST(PLogCapture, receives_records_of_every_level_and_source) {
    const PLogCapture capture;
    log("a", "one", PLogLevel::Debug);
    log("b", "two", PLogLevel::Error);
    EXPECT_EQ(capture.texts(), QStringList({u"one"_qs, u"two"_qs}));
    EXPECT_EQ(capture.texts(u"b"_qs), QStringList{u"two"_qs});
    EXPECT_TRUE(capture.contains(u"one"_qs));
    EXPECT_FALSE(capture.contains(u"one"_qs, u"b"_qs));
    EXPECT_FALSE(capture.contains(u"on"_qs));
}

TEST(PLogCapture, is_empty_after_it_is_cleared) {
    PLogCapture capture;
    log("a", "one");
    capture.clear();
    log("a", "two");
    EXPECT_EQ(capture.texts(), QStringList{u"two"_qs});
}

TEST(PLogCapture, leaves_the_filter_and_the_sinks_as_they_were) {
    ASSERT_TRUE(PLog::setFilter(u"error,a=warning"_qs).isOk());
    {
        const PLogCapture capture;
        EXPECT_EQ(PLog::filter(), u"debug"_qs);
    }
    EXPECT_EQ(PLog::filter(), u"error,a=warning"_qs);
    PLog::setFilter(u"info"_qs);
    testing::internal::CaptureStderr();
    log("a", "to the standard error stream again");
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
}

TEST(PLogCapture, receives_qts_own_messages) {
    const PLogCapture capture;
    qDebug("Clear data: %d", 4);
    EXPECT_TRUE(capture.contains(u"Clear data: 4"_qs, u"qt"_qs));
}
