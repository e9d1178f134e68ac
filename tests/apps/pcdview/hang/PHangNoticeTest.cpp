// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangNotice.h>

#include <apps/pcdview/hang/RunningProcess.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

/// With shell scripts in place of the program.
class PHangNoticeTest : public FolderTest {
protected:
    /// A command that runs this in the test's folder.
    QStringList script(const QString& lines) const {
        return {u"/bin/sh"_qs, u"-c"_qs, u"cd '%1'; %2"_qs.arg(path({}), lines)};
    }
    /// A script that writes its process to a file, and then all messages to another one.
    QStringList reader() const { return script(u"echo $$ > process; exec cat > messages"_qs); }

    qint64 process() const { return readFile(path(u"process"_qs)).trimmed().toLongLong(); }
    QByteArray messages() const { return readFile(path(u"messages"_qs)); }

    static PCallWatchdog::Call call(const char* text, std::chrono::milliseconds time) {
        return {QString::fromLatin1(text), time, false};
    }
};

} // namespace

TEST_F(PHangNoticeTest, sends_each_call_to_one_process) {
    PHangNotice notice(reader());
    EXPECT_FALSE(notice.isShown());
    notice.show(call("Camera_open()", 3000ms));
    EXPECT_TRUE(notice.isShown());
    notice.show(call("Camera_close(1)", 800ms));
    EXPECT_TRUE(waitUntil([this] { return messages() == "3000 Camera_open()800 Camera_close(1)"; }))
        << messages().constData();
}

TEST_F(PHangNoticeTest, ends_the_process_when_it_is_hidden_or_destroyed) {
    qint64 first = 0;
    qint64 second = 0;
    {
        PHangNotice notice(reader());
        notice.show(call("Camera_open()", 3000ms));
        ASSERT_TRUE(waitUntil([this] { return !messages().isEmpty(); }));
        first = process();
        EXPECT_TRUE(isProcessRunning(first));
        notice.hide();
        EXPECT_FALSE(isProcessRunning(first));
        EXPECT_FALSE(notice.isShown());
        notice.hide(); // once more, which is not an error

        notice.show(call("Camera_close(1)", 3000ms));
        ASSERT_TRUE(waitUntil([this] { return messages() == "3000 Camera_close(1)"; }));
        second = process();
        EXPECT_NE(second, first);
    }
    EXPECT_FALSE(isProcessRunning(second));
}

TEST_F(PHangNoticeTest, leaves_no_zombie) {
    PHangNotice notice(reader());
    notice.show(call("Camera_open()", 3000ms));
    ASSERT_TRUE(waitUntil([this] { return !messages().isEmpty(); }));
    const QString entry = u"/proc/%1"_qs.arg(process());
    EXPECT_TRUE(QFile::exists(entry));
    notice.hide();
    EXPECT_FALSE(QFile::exists(entry));
}

TEST_F(PHangNoticeTest,
       a_window_that_the_user_has_closed_opens_again_with_the_next_report_but_one) {
    PHangNotice notice(script(u"echo >> runs"_qs)); // and ends
    // The shell may take its time to end: until then it is only sent messages.
    EXPECT_TRUE(waitUntil([&] {
        notice.show(call("Camera_open()", 3000ms));
        return !notice.isShown();
    }));
    EXPECT_EQ(readFile(path(u"runs"_qs)), "\n");
    notice.show(call("Camera_open()", 6000ms));
    EXPECT_TRUE(notice.isShown());
    EXPECT_TRUE(waitUntil([this] { return readFile(path(u"runs"_qs)) == "\n\n"; }));
}

TEST_F(PHangNoticeTest, the_process_has_no_file_of_the_viewer_but_its_outputs) {
    writeFile(path(u"camera"_qs), "open");
    const int kept = ::open(path(u"camera"_qs).toLocal8Bit().constData(), O_RDONLY); // no O_CLOEXEC
    ASSERT_GE(kept, 0);
    PHangNotice notice(script(u"ls -l /proc/$$/fd > list; mv list files; cat"_qs));
    notice.show(call("Camera_open()", 3000ms));
    ASSERT_TRUE(waitUntil([this] { return QFile::exists(path(u"files"_qs)); }));
    ::close(kept);
    const QByteArray files = readFile(path(u"files"_qs));
    EXPECT_TRUE(files.contains("0 -> socket:")) << files.constData();
    EXPECT_FALSE(files.contains("/camera")) << files.constData();
}

TEST_F(PHangNoticeTest, a_process_that_does_not_read_holds_nothing_up) {
    PHangNotice notice(script(u"echo $$ > process; exec sleep 3600"_qs));
    // Far more than fits into the connection.
    for (int i = 0; i < 2000; ++i)
        notice.show({QString(4000, u'a'), 3000ms, false});
    ASSERT_TRUE(waitUntil([this] { return process() != 0; }));
    notice.hide();
    EXPECT_FALSE(isProcessRunning(process()));
}

TEST_F(PHangNoticeTest, shows_nothing_without_a_command_or_with_one_that_cannot_be_started) {
    for (const QStringList& command : {QStringList(), QStringList(path(u"none"_qs))}) {
        PHangNotice notice(command);
        notice.show(call("Camera_open()", 3000ms));
        EXPECT_FALSE(notice.isShown());
        notice.hide();
    }
}

TEST_F(PHangNoticeTest, once_retired_shows_nothing_more) {
    PHangNotice notice(reader());
    notice.show(call("Camera_open()", 3000ms));
    ASSERT_TRUE(waitUntil([this] { return !messages().isEmpty(); }));
    notice.retire();
    EXPECT_FALSE(isProcessRunning(process()));
    notice.show(call("Camera_open()", 6000ms));
    EXPECT_FALSE(notice.isShown());
}
