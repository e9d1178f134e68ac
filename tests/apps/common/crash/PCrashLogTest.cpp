// SPDX-License-Identifier: MIT
#include <apps/common/crash/PCrashLog.h>

#include <apps/common/crash/PCrashWriter.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QFile>

namespace {

class PCrashLogTest : public FolderTest {
protected:
    void add(const QString& text) {
        PLogRecord record;
        record.time = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5, 6), Qt::UTC);
        record.level = PLogLevel::Warning;
        record.source = u"PTDevice"_qs;
        record.items = QStringList{text};
        log.write(record);
    }
    QList<QByteArray> lines() const {
        QFile file(path(u"report"_qs));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        PCrashWriter writer(file.handle());
        log.writeTo(writer);
        QList<QByteArray> all = readFile(file.fileName()).split('\n');
        EXPECT_EQ(all.takeLast(), ""); // every line ends with a line feed
        return all;
    }

    PCrashLog log;
};

TEST_F(PCrashLogTest, without_records_nothing_is_written) {
    EXPECT_EQ(lines(), QList<QByteArray>());
}

TEST_F(PCrashLogTest, a_record_is_one_line_as_on_a_terminal) {
    add(u"the camera\nis gone"_qs);
    EXPECT_EQ(lines(), QList<QByteArray>{"03:04:05.006 warning PTDevice: the camera\\nis gone"});
}

TEST_F(PCrashLogTest, the_newest_records_are_kept_oldest_first) {
    const int more = 3;
    for (int i = 0; i < int(PCrashLog::lines) + more; ++i)
        add(u"number %1"_qs.arg(i));
    const QList<QByteArray> kept = lines();
    ASSERT_EQ(kept.size(), qsizetype(PCrashLog::lines));
    EXPECT_TRUE(kept.first().endsWith(": number 3")) << kept.first().toStdString();
    EXPECT_TRUE(kept.last().endsWith(": number 102")) << kept.last().toStdString();
}

TEST_F(PCrashLogTest, a_long_record_is_cut) {
    add(QString(10'000, u'x'));
    add(u"short"_qs);
    const QList<QByteArray> kept = lines();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(kept.first().size(), qsizetype(PCrashLog::longestLine));
    EXPECT_TRUE(kept.last().endsWith(": short"));
}

} // namespace
