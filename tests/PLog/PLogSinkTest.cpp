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
    made.source = u"PTDevice"_qs;
    made.function = u"void f()"_qs;
    made.file = u"src/f.cpp"_qs;
    made.line = 12;
    made.items = items;
    return made;
}

QByteArray readContent(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

} // namespace

TEST(formatLogRecord, makes_one_line_of_time_level_source_and_items) {
    EXPECT_EQ(formatLogRecord(record({u"one"_qs, u"2"_qs})),
              u"07:08:09.010 warning PTDevice: one 2"_qs);
}

TEST(formatLogRecord, adds_the_location_on_request) {
    EXPECT_EQ(formatLogRecord(record({u"x"_qs}), true),
              u"07:08:09.010 warning PTDevice: x [void f(), src/f.cpp:12]"_qs);
}

TEST(formatLogRecord, keeps_line_breaks_out_of_the_line) {
    EXPECT_EQ(formatLogRecord(record({u"a\nb\r\nc"_qs})),
              u"07:08:09.010 warning PTDevice: a\\nb\\r\\nc"_qs);
}

TEST(formatLogRecord, names_every_level) {
    const QList<QPair<PLogLevel, QString>> levels{{PLogLevel::Debug, u" debug "_qs},
                                                  {PLogLevel::Info, u" info "_qs},
                                                  {PLogLevel::Error, u" error "_qs},
                                                  {PLogLevel::Off, u" off "_qs}};
    for (const auto& [level, name] : levels) {
        PLogRecord made = record({});
        made.level = level;
        EXPECT_TRUE(formatLogRecord(made).contains(name)) << name.toStdString();
    }
}

TEST(PStderrLogSink, writes_one_line_to_the_standard_error_stream) {
    testing::internal::CaptureStderr();
    PStderrLogSink().write(record({u"гайн"_qs}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "07:08:09.010 warning PTDevice: гайн\n");
}

TEST(PFileLogSink, appends_lines_that_are_in_the_file_at_once) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.log"_qs);
    const QByteArray line = "07:08:09.010 warning PTDevice: x [void f(), src/f.cpp:12]\n";
    PFileLogSink first(path);
    ASSERT_TRUE(first.isOpen());
    first.write(record({u"x"_qs}));
    EXPECT_EQ(readContent(path), line);
    PFileLogSink second(path);
    second.write(record({u"x"_qs}));
    EXPECT_EQ(readContent(path), line + line);
}

TEST(PFileLogSink, says_why_its_file_cannot_be_opened_and_still_takes_records) {
    const QTemporaryDir folder;
    PFileLogSink sink(folder.filePath(u"none/a.log"_qs));
    EXPECT_FALSE(sink.isOpen());
    EXPECT_FALSE(sink.errorString().isEmpty());
    sink.write(record({u"x"_qs}));
    EXPECT_FALSE(QFile::exists(folder.filePath(u"none"_qs)));
}

TEST(PMemoryLogSink, keeps_the_newest_records_up_to_its_capacity) {
    PMemoryLogSink sink(2);
    for (const auto* text : {"a", "b", "c"})
        sink.write(record({QString::fromLatin1(text)}));
    ASSERT_EQ(sink.records().size(), 2);
    EXPECT_EQ(sink.records()[0].text(), u"b"_qs);
    EXPECT_EQ(sink.records()[1].text(), u"c"_qs);
    sink.clear();
    EXPECT_TRUE(sink.records().isEmpty());
}
