// SPDX-License-Identifier: MIT
// The viewer as a program, while a call to a camera does not return: the process that shows this.
#include <apps/pcdview/hang/RunningProcess.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QProcess>

namespace {

/// The processes that this one has started for a notice.
QList<qint64> findNotices(qint64 viewer) {
    QList<qint64> notices;
    const QStringList names = QDir(u"/proc"_qs).entryList(QDir::Dirs);
    for (const QString& name : names) {
        const QByteArray status = readFile(u"/proc/%1/status"_qs.arg(name));
        if (status.contains("\nPPid:\t" + QByteArray::number(viewer) + '\n') &&
            wordsOfProcess(name.toLongLong()).contains("--hang-notice"))
            notices.append(name.toLongLong());
    }
    return notices;
}

/// The viewer with a camera that is opened only after this time.
class HangNoticeTest : public FolderTest {
protected:
    ~HangNoticeTest() override {
        viewer.kill();
        viewer.waitForFinished();
    }

    void start(std::chrono::milliseconds opening, const QStringList& more = {}) {
        const QString scene = path(u"scene.json"_qs);
        writeFile(scene, R"({"cameras": [{"id": "a", "source": {"kind": "patches"},
                                          "resolutions": [{"width": 64, "height": 48}]}],
                             "faults": [{"do": "delay", "function": "Toupcam_Open", "ms": )" +
                             QByteArray::number(qint64(opening.count())) + "}]}");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_qs, path(u"config"_qs));
        environment.insert(u"PCD_CALL_SECONDS"_qs, u"0.05"_qs);
        viewer.setProcessEnvironment(environment);
        viewer.setProcessChannelMode(QProcess::MergedChannels);
        // Not a pipe, which is closed when the viewer ends: writing to it would end the notice.
        viewer.setStandardOutputFile(path(u"log"_qs));
        viewer.start(QStringLiteral(PCDVIEW_PROGRAM),
                     QStringList{u"--sdk=sim"_qs, u"--scene"_qs, scene, u"--log-level=info"_qs} +
                         more);
    }
    /// Waits for a notice and returns its process, 0 without one.
    qint64 notice() {
        QList<qint64> found;
        waitUntil([&] {
            found = findNotices(viewer.processId());
            return !found.isEmpty() || viewer.state() == QProcess::NotRunning;
        });
        return found.isEmpty() ? 0 : found.first();
    }
    bool logContains(const char* text) {
        return waitUntil([&] { return log().contains(text); });
    }
    QByteArray log() const { return readFile(path(u"log"_qs)); }

    QProcess viewer;
};

} // namespace

TEST_F(HangNoticeTest, ends_when_the_call_returns_and_the_viewer_goes_on) {
    start(std::chrono::milliseconds(1500));
    const qint64 process = notice();
    ASSERT_NE(process, 0) << log().constData();
    EXPECT_TRUE(logContains("ready, cameras: 1")) << log().constData();
    EXPECT_TRUE(waitUntil([&] { return !isProcessRunning(process); }));
    EXPECT_TRUE(log().contains("Toupcam_Open(\"a\") has returned after")) << log().constData();
    EXPECT_EQ(viewer.state(), QProcess::Running);
    viewer.terminate();
    EXPECT_TRUE(viewer.waitForFinished(60'000));
    EXPECT_EQ(viewer.exitCode(), 0);
}

TEST_F(HangNoticeTest, ends_with_a_viewer_that_is_killed) {
    start(std::chrono::hours(1));
    const qint64 process = notice();
    ASSERT_NE(process, 0) << log().constData();
    EXPECT_EQ(findNotices(viewer.processId()).size(), 1);
    viewer.kill();
    EXPECT_TRUE(waitUntil([&] { return !isProcessRunning(process); }));
}

TEST_F(HangNoticeTest, has_the_language_and_the_colours_of_the_viewer) {
    start(std::chrono::hours(1), {u"--lang"_qs, u"ru"_qs, u"--theme"_qs, u"dark"_qs});
    const QList<QByteArray> words = wordsOfProcess(notice());
    EXPECT_TRUE(words.join(' ').contains("--lang ru --theme dark")) << words.join(' ').constData();
}
