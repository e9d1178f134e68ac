// SPDX-License-Identifier: MIT
// The first and only header of the plugin here: it needs no other.
#include <PCdPlugins/PTDevice/PTLog.h>

#include <support/PLogCapture.h>

#include <gtest/gtest.h>

namespace {

/// An SDK function with this result, which counts its calls.
int sdkCall(int result, int* calls) {
    ++*calls;
    return result;
}

class PTLogRecords : public testing::Test {
protected:
    /// The plugin's only record. If there are more or fewer, the test fails, and it is empty.
    PLogRecord onlyRecord() const {
        const QList<PLogRecord> records = log.records(u"PTDevice"_qs);
        EXPECT_EQ(records.size(), 1);
        return records.size() == 1 ? records.first() : PLogRecord();
    }

    PLogCapture log;
    int calls = 0;
};

} // namespace

TEST_F(PTLogRecords, a_failed_call_is_made_once_and_logged_as_it_is_written) {
    PT_OP(sdkCall(-1, &calls));
    const int line = __LINE__ - 1;
    EXPECT_EQ(calls, 1);
    const PLogRecord record = onlyRecord();
    EXPECT_EQ(record.items, (QStringList{u"Failed TOUPCAM_OP:"_qs, u"sdkCall(-1, &calls)"_qs}));
    EXPECT_EQ(record.level, PLogLevel::Warning);
    EXPECT_EQ(record.line, line);
    EXPECT_TRUE(record.file.endsWith(u"PTLogTest.cpp"_qs));
    EXPECT_TRUE(record.function.contains(u"TestBody"_qs));
}

TEST_F(PTLogRecords, a_call_with_any_success_code_is_made_once_and_not_logged) {
    PT_OP(sdkCall(0, &calls));
    PT_OP(sdkCall(1, &calls));
    EXPECT_EQ(calls, 2);
    EXPECT_TRUE(log.records(u"PTDevice"_qs).isEmpty());
}

TEST_F(PTLogRecords, a_failed_call_can_be_logged_under_another_function_and_line) {
    PT_OP_IN("void f(int)", 141, sdkCall(-1, &calls));
    const PLogRecord record = onlyRecord();
    EXPECT_EQ(record.function, u"void f(int)"_qs);
    EXPECT_EQ(record.line, 141);
}

TEST_F(PTLogRecords, a_failed_call_can_be_logged_with_another_text) {
    PT_OP_AS("void f(int)", 141, "sdkCall(-1)", sdkCall(-1, &calls));
    EXPECT_EQ(onlyRecord().text(), u"Failed TOUPCAM_OP: sdkCall(-1)"_qs);
}

TEST_F(PTLogRecords, a_record_can_be_logged_under_a_line_of_its_own) {
    PT_LOG_AT(85) << "discarded";
    const PLogRecord record = onlyRecord();
    EXPECT_EQ(record.line, 85);
    EXPECT_EQ(record.level, PLogLevel::Info);
}

TEST_F(PTLogRecords, a_signature_has_one_spelling_whichever_compiler_spelled_it) {
    PT_LOG_IN("QWidget* f(const PImage&, void**)") << "here";
    EXPECT_EQ(onlyRecord().function, u"QWidget *f(const PImage &, void **)"_qs);
}
