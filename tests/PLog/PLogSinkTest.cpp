// SPDX-License-Identifier: MIT
#include <PLog/PLogSink.h>

#include <support/QtPrinters.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

PLogRecord record(const QStringList& items) {
    PLogRecord made;
    made.time = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10), Qt::UTC);
    made.level = PLogLevel::Warning;
    made.source = QStringLiteral("PTDevice");
    made.function = QStringLiteral("void f()");
    made.file = QStringLiteral("src/f.cpp");
    made.line = 12;
    made.items = items;
    return made;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

} // namespace

TEST(formatLogRecord, makes_one_line_of_time_level_source_and_items) {
    EXPECT_EQ(formatLogRecord(record({QStringLiteral("one"), QStringLiteral("2")})),
              QStringLiteral("07:08:09.010 warning PTDevice: one 2"));
}

TEST(formatLogRecord, adds_the_location_if_asked_to) {
    EXPECT_EQ(formatLogRecord(record({QStringLiteral("x")}), true),
              QStringLiteral("07:08:09.010 warning PTDevice: x [void f(), src/f.cpp:12]"));
}

TEST(formatLogRecord, keeps_line_breaks_out_of_the_line) {
    EXPECT_EQ(formatLogRecord(record({QStringLiteral("a\nb\r\nc")})),
              QStringLiteral("07:08:09.010 warning PTDevice: a\\nb\\r\\nc"));
}

TEST(formatLogRecord, names_every_level) {
    const QList<QPair<PLogLevel, QString>> levels{{PLogLevel::Debug, QStringLiteral(" debug ")},
                                                  {PLogLevel::Info, QStringLiteral(" info ")},
                                                  {PLogLevel::Error, QStringLiteral(" error ")},
                                                  {PLogLevel::Off, QStringLiteral(" off ")}};
    for (const auto& [level, name] : levels) {
        PLogRecord made = record({});
        made.level = level;
        EXPECT_TRUE(formatLogRecord(made).contains(name)) << name.toStdString();
    }
}

TEST(PStderrLogSink, writes_one_line_to_the_standard_error_stream) {
    testing::internal::CaptureStderr();
    PStderrLogSink().write(record({QStringLiteral("гайн")}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "07:08:09.010 warning PTDevice: гайн\n");
}

TEST(PFileLogSink, appends_lines_that_are_in_the_file_at_once) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.log"));
    const QByteArray line = "07:08:09.010 warning PTDevice: x [void f(), src/f.cpp:12]\n";
    PFileLogSink first(path);
    ASSERT_TRUE(first.isOpen());
    first.write(record({QStringLiteral("x")}));
    EXPECT_EQ(contentOf(path), line);
    PFileLogSink second(path);
    second.write(record({QStringLiteral("x")}));
    EXPECT_EQ(contentOf(path), line + line);
}

TEST(PFileLogSink, says_why_its_file_cannot_be_opened_and_takes_records_all_the_same) {
    const QTemporaryDir folder;
    PFileLogSink sink(folder.filePath(QStringLiteral("none/a.log")));
    EXPECT_FALSE(sink.isOpen());
    EXPECT_FALSE(sink.errorString().isEmpty());
    sink.write(record({QStringLiteral("x")}));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("none"))));
}

TEST(PMemoryLogSink, keeps_the_newest_records_up_to_its_capacity) {
    PMemoryLogSink sink(2);
    for (const auto* text : {"a", "b", "c"})
        sink.write(record({QString::fromLatin1(text)}));
    ASSERT_EQ(sink.records().size(), 2);
    EXPECT_EQ(sink.records()[0].text(), QStringLiteral("b"));
    EXPECT_EQ(sink.records()[1].text(), QStringLiteral("c"));
    sink.clear();
    EXPECT_TRUE(sink.records().isEmpty());
}
