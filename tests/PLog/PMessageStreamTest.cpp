// SPDX-License-Identifier: MIT
#include <PLog/PMessageStream.h>

#include <support/PLogCapture.h>
#include <support/QtPrinters.h>

#include <gtest/gtest.h>

namespace {

class PMessageStreamTest : public testing::Test {
protected:
    static PMessageStream log() {
        return PLog::logStream(QStringLiteral("PTDevice"), QStringLiteral("void f()"),
                               QStringLiteral("src/f.cpp"), 7);
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
    EXPECT_EQ(capture.texts(), QStringList{QStringLiteral("one")});
    log() << "two";
    EXPECT_EQ(capture.texts().size(), 2);
}

TEST_F(PMessageStreamTest, carries_where_it_was_made_and_when) {
    const QDateTime before = QDateTime::currentDateTimeUtc();
    log() << "x";
    ASSERT_EQ(capture.records().size(), 1);
    const PLogRecord record = capture.records().first();
    EXPECT_EQ(record.source, QStringLiteral("PTDevice"));
    EXPECT_EQ(record.function, QStringLiteral("void f()"));
    EXPECT_EQ(record.file, QStringLiteral("src/f.cpp"));
    EXPECT_EQ(record.line, 7);
    EXPECT_EQ(record.level, PLogLevel::Info);
    EXPECT_EQ(record.time.timeSpec(), Qt::UTC);
    EXPECT_GE(record.time, before);
    EXPECT_LE(record.time, QDateTime::currentDateTimeUtc());
}

TEST_F(PMessageStreamTest, keeps_items_in_the_order_they_were_appended) {
    log() << "Failed TOUPCAM_OP:" << QStringLiteral("Toupcam_Stop(m_handle)") << -5;
    EXPECT_EQ(items(),
              QStringList({QStringLiteral("Failed TOUPCAM_OP:"),
                           QStringLiteral("Toupcam_Stop(m_handle)"), QStringLiteral("-5")}));
    EXPECT_EQ(capture.records().first().text(),
              QStringLiteral("Failed TOUPCAM_OP: Toupcam_Stop(m_handle) -5"));
}

TEST_F(PMessageStreamTest, writes_text_and_bytes_as_utf8_text) {
    log() << "гайн" << QStringLiteral("é") << QByteArray("\xc3\xa9");
    EXPECT_EQ(items(),
              QStringList({QStringLiteral("гайн"), QStringLiteral("é"), QStringLiteral("é")}));
}

TEST_F(PMessageStreamTest, writes_a_null_pointer_to_text_as_such) {
    log() << static_cast<const char*>(nullptr);
    EXPECT_EQ(items(), QStringList{QStringLiteral("(null)")});
}

TEST_F(PMessageStreamTest, writes_numbers_in_decimal) {
    log() << -2147483647 - 1 << 4294967295u << 0;
    EXPECT_EQ(items(), QStringList({QStringLiteral("-2147483648"), QStringLiteral("4294967295"),
                                    QStringLiteral("0")}));
}

TEST_F(PMessageStreamTest, writes_truth_values_as_words) {
    log() << true << false;
    EXPECT_EQ(items(), QStringList({QStringLiteral("true"), QStringLiteral("false")}));
}

TEST_F(PMessageStreamTest, writes_a_pointer_in_lower_case_hexadecimal) {
    log() << reinterpret_cast<void*>(quintptr(0xDEADBEEF)) << static_cast<void*>(nullptr);
    EXPECT_EQ(items(), QStringList({QStringLiteral("0xdeadbeef"), QStringLiteral("0x0")}));
}

TEST_F(PMessageStreamTest, without_items_is_still_a_record) {
    log();
    EXPECT_EQ(capture.texts(), QStringList{QString()});
}
