// SPDX-License-Identifier: MIT
#include <apps/pcdview/options/PViewLog.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <gtest/gtest.h>

TEST(PViewLogTest, logs_with_the_viewer_as_the_source) {
    const PLogCapture log;
    PViewLog::info(u"ready"_qs);
    PViewLog::warning(u"not \"ready\""_qs);
    const QList<PLogRecord> records = log.records(u"pcdview"_qs);
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].text(), u"ready"_qs);
    EXPECT_EQ(records[0].level, PLogLevel::Info);
    EXPECT_EQ(records[1].text(), u"not \"ready\""_qs); // unchanged, without more quotes
    EXPECT_EQ(records[1].level, PLogLevel::Warning);
}
