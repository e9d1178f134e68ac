// SPDX-License-Identifier: MIT
#include <PLog/PMessageStream.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

class PMessageStreamTest : public testing::Test {
protected:
    static PMessageStream log() {
        return PLog::logStream(u"PTDevice"_qs, u"void f()"_qs, u"src/f.cpp"_qs, 7);
    }

    QStringList items() const {
        const QList<PLogRecord> records = capture.records();
        return records.size() == 1 ? records.first().items : QStringList();
    }

    PLogCapture capture;
};

} // namespace

TEST_F(PMessageStreamTest, emits_its_record_at_the_end_of_the_statement) {
    {
        PMessageStream stream = log();
        stream << "one";
        EXPECT_TRUE(capture.records().isEmpty());
    }
    EXPECT_EQ(capture.texts(), QStringList{u"one"_qs});
    log() << "two";
    EXPECT_EQ(capture.texts().size(), 2);
}

TEST_F(PMessageStreamTest, carries_where_it_was_made_and_when) {
    const QDateTime before = QDateTime::currentDateTimeUtc();
    log() << "x";
    ASSERT_EQ(capture.records().size(), 1);
    const PLogRecord record = capture.records().first();
    EXPECT_EQ(record.source, u"PTDevice"_qs);
    EXPECT_EQ(record.function, u"void f()"_qs);
    EXPECT_EQ(record.file, u"src/f.cpp"_qs);
    EXPECT_EQ(record.line, 7);
    EXPECT_EQ(record.level, PLogLevel::Info);
    EXPECT_EQ(record.time.timeSpec(), Qt::UTC);
    EXPECT_GE(record.time, before);
    EXPECT_LE(record.time, QDateTime::currentDateTimeUtc());
}

TEST_F(PMessageStreamTest, keeps_items_in_the_order_they_were_appended) {
    log() << "Failed TOUPCAM_OP:" << u"Toupcam_Stop(m_handle)"_qs << -5;
    EXPECT_EQ(items(),
              QStringList({u"Failed TOUPCAM_OP:"_qs, u"Toupcam_Stop(m_handle)"_qs, u"-5"_qs}));
    EXPECT_EQ(capture.records().first().text(), u"Failed TOUPCAM_OP: Toupcam_Stop(m_handle) -5"_qs);
}

TEST_F(PMessageStreamTest, writes_text_and_bytes_as_utf8_text) {
    log() << "гайн" << u"é"_qs << QByteArray("\xc3\xa9");
    EXPECT_EQ(items(), QStringList({u"гайн"_qs, u"é"_qs, u"é"_qs}));
}

TEST_F(PMessageStreamTest, writes_a_null_pointer_to_text_as_such) {
    log() << static_cast<const char*>(nullptr);
    EXPECT_EQ(items(), QStringList{u"(null)"_qs});
}

TEST_F(PMessageStreamTest, writes_numbers_in_decimal) {
    log() << -2147483647 - 1 << 4294967295u << 0;
    EXPECT_EQ(items(), QStringList({u"-2147483648"_qs, u"4294967295"_qs, u"0"_qs}));
}

TEST_F(PMessageStreamTest, writes_truth_values_as_words) {
    log() << true << false;
    EXPECT_EQ(items(), QStringList({u"true"_qs, u"false"_qs}));
}

TEST_F(PMessageStreamTest, writes_a_pointer_in_lower_case_hexadecimal) {
    log() << reinterpret_cast<void*>(quintptr(0xDEADBEEF)) << static_cast<void*>(nullptr);
    EXPECT_EQ(items(), QStringList({u"0xdeadbeef"_qs, u"0x0"_qs}));
}

TEST_F(PMessageStreamTest, without_items_is_still_a_record) {
    log();
    EXPECT_EQ(capture.texts(), QStringList{QString()});
}
