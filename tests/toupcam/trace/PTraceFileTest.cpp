// SPDX-License-Identifier: MIT
#include <toupcam/trace/record/PTraceFile.h>

#include <support/FileSizeLimit.h>
#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <QDir>
#include <QFile>

namespace {

class PTraceFileTest : public FolderTest {
protected:
    QByteArray name() const { return QFile::encodeName(path(u"a.trace"_qs)); }
    QByteArray content() const { return readFile(path(u"a.trace"_qs)); }
    static QJsonObject line(int number) { return {{u"n"_qs, number}}; }
};

TEST_F(PTraceFileTest, lines_are_in_the_file_at_once) {
    PTraceFile file;
    ASSERT_EQ(file.create(name(), line(1), false), QString());
    EXPECT_EQ(content(), "{\"n\":1}\n");
    file.append(line(2));
    EXPECT_EQ(content(), "{\"n\":1}\n{\"n\":2}\n");
    EXPECT_EQ(file.failure(), QString());
    EXPECT_FALSE(QFile::exists(path(u"a.trace.frames"_qs)));
}

TEST_F(PTraceFileTest, frames_follow_each_other_in_a_file_of_their_own) {
    PTraceFile file;
    ASSERT_EQ(file.create(name(), line(1), true), QString());
    EXPECT_EQ(file.appendFrame("abc", 3), 0);
    EXPECT_EQ(file.appendFrame("de", 2), 3);
    EXPECT_EQ(readFile(path(u"a.trace.frames"_qs)), "abcde");
}

TEST_F(PTraceFileTest, an_existing_file_is_not_touched) {
    writeFile(path(u"a.trace"_qs), "mine");
    PTraceFile file;
    EXPECT_EQ(file.create(name(), line(1), true), u"File exists"_qs);
    EXPECT_EQ(content(), "mine");
    EXPECT_FALSE(QFile::exists(path(u"a.trace.frames"_qs)));
}

TEST_F(PTraceFileTest, an_existing_file_of_frames_is_not_touched_and_nothing_remains) {
    writeFile(path(u"a.trace.frames"_qs), "mine");
    PTraceFile file;
    EXPECT_EQ(file.create(name(), line(1), true), path(u"a.trace.frames"_qs) + u": File exists"_qs);
    EXPECT_EQ(readFile(path(u"a.trace.frames"_qs)), "mine");
    EXPECT_FALSE(QFile::exists(path(u"a.trace"_qs)));
}

TEST_F(PTraceFileTest, nothing_follows_a_line_that_was_cut) {
    PTraceFile file;
    ASSERT_EQ(file.create(name(), line(1), false), QString());
    {
        const FileSizeLimit limit(12);
        file.append(line(2));
    }
    file.append(line(3));
    EXPECT_EQ(content(), "{\"n\":1}\n{\"n\"");
    EXPECT_EQ(file.failure(), u"File too large"_qs);
}

TEST_F(PTraceFileTest, a_frame_that_does_not_fit_ends_the_trace) {
    PTraceFile file;
    ASSERT_EQ(file.create(name(), line(1), true), QString());
    {
        const FileSizeLimit limit(12);
        EXPECT_EQ(file.appendFrame("0123456789abcdef", 16), -1);
    }
    file.append(line(2));
    EXPECT_EQ(content(), "{\"n\":1}\n");
    EXPECT_EQ(file.failure(), u"File too large"_qs);
}

TEST_F(PTraceFileTest, a_file_that_has_no_room_for_the_first_line_does_not_remain) {
    const FileSizeLimit limit(3);
    PTraceFile file;
    EXPECT_EQ(file.create(name(), line(1), true), u"File too large"_qs);
    EXPECT_TRUE(QDir(path(QString())).isEmpty());
}

} // namespace
