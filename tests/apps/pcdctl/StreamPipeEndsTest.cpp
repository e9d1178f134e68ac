// SPDX-License-Identifier: MIT
// How `stream --to` ends: readers that close, stop or are slow, disks, terminals, signals.
#include <apps/pcdctl/CameraCommandTest.h>
#include <apps/pcdctl/PipeProcess.h>

#include <support/QtPrinters.h>
#include <support/WaitUntil.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <csignal>
#include <cstdlib>

#include <chrono>
#include <fcntl.h>
#include <thread>

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Frames are larger than what a pipe holds: a reader that does not read blocks the second one.
class StreamPipeEnds : public CameraCommandTest {
protected:
    static constexpr int frameBytes = 1000 * 400 * 3;

    void SetUp() override { scene.setResolution(1000, 400, 100); }

    QStringList arguments(const QStringList& more) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"stream"_qs,  u"--to"_qs, u"-"_qs,     u"--sdk=sim"_qs,
                           u"--scene"_qs, file,       u"--json"_qs} +
               more;
    }
    /// The report of a process that has ended, among its messages.
    static QJsonObject report(const QByteArray& errors) {
        const qsizetype begin = errors.indexOf("{\n");
        const qsizetype end = errors.indexOf("\n}\n", begin) + 2;
        return QJsonDocument::fromJson(errors.mid(begin, end - begin)).object();
    }
    /// To be called in the new process: its files hold two frames and a half.
    static void limitFiles() {
        const rlimit limit{rlim_t(5) * frameBytes / 2, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    /// Checks that every frame which the camera made is in the ledger and, once it reached the
    /// program, in what was passed on. Returns the latter.
    static QJsonObject checkBalance(const QJsonObject& report) {
        const QJsonObject passed = report[u"passed_on"_qs].toObject();
        const QJsonObject ledger = report[u"ledger"_qs].toObject();
        int found = 0;
        for (const QString& key : {u"written"_qs, u"dropped"_qs, u"unwritten"_qs, u"after_end"_qs})
            found += passed[key].toInt();
        const std::string text = QJsonDocument(report).toJson().toStdString();
        EXPECT_EQ(passed[u"arrived"_qs].toInt(), found) << text;
        EXPECT_EQ(passed[u"arrived"_qs].toInt(), ledger[u"delivered"_qs].toInt()) << text;
        EXPECT_GT(found, 0) << text;
        EXPECT_TRUE(passed[u"balanced"_qs].toBool()) << text;
        EXPECT_TRUE(ledger[u"balanced"_qs].toBool()) << text;
        return passed;
    }
    /// Checks that a stream ends well when its reader, a script of sh, is killed. It makes the
    /// file "read" when that is to happen.
    void checkKilledReader(const QString& script, bool isBlocked) const {
        PipeProcess pipe(arguments({u"-n"_qs, u"1000000"_qs}));
        pipe.start();
        const QString signal = path(u"read"_qs);
        pipe.startReader(script.arg(QString::number(frameBytes), signal));
        EXPECT_TRUE(waitUntil([&] { return QFile::exists(signal); }, std::chrono::minutes(2)));
        EXPECT_TRUE(!isBlocked || waitUntil([&] { return pipe.isFull(); }));
        pipe.closeReader(); // so that the script is the only one
        EXPECT_TRUE(pipe.process.isRunning());
        pipe.reader.kill();
        ASSERT_TRUE(pipe.process.finish());
        const QByteArray errors = pipe.process.errors();
        EXPECT_EQ(pipe.process.exitCode(), 0) << errors.toStdString();
        const QJsonObject passed = checkBalance(report(errors));
        EXPECT_TRUE(passed[u"reader_closed"_qs].toBool()) << errors.toStdString();
        EXPECT_GE(passed[u"written"_qs].toInt(), 1);
        EXPECT_FALSE(report(errors).contains(u"error"_qs));
    }
    /// Waits until the program has called this function of the SDK, on a busy computer too.
    bool waitForCall(const char* function) const {
        return waitUntil([&] { return readFile(path(u"journal"_qs)).contains(function); },
                         std::chrono::minutes(2));
    }
    void startWithJournal(PipeProcess& pipe) const {
        pipe.process.with(u"TOUPCAM_SIM_JOURNAL"_qs, path(u"journal"_qs));
        pipe.start();
    }
};

TEST_F(StreamPipeEnds, a_reader_that_closes_the_pipe_ends_the_stream_and_all_is_well) {
    PipeProcess pipe(arguments({u"-n"_qs, u"1000000"_qs}));
    pipe.start();
    EXPECT_EQ(pipe.read(frameBytes).size(), frameBytes);
    pipe.closeReader();
    ASSERT_TRUE(pipe.process.finish());
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 0) << errors.toStdString();
    const QJsonObject passed = report(errors)[u"passed_on"_qs].toObject();
    EXPECT_TRUE(passed[u"reader_closed"_qs].toBool());
    EXPECT_TRUE(passed[u"balanced"_qs].toBool());
    EXPECT_FALSE(report(errors).contains(u"error"_qs));
}

TEST_F(StreamPipeEnds, a_reader_that_closes_a_socket_ends_the_stream_too) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    CtlProcess process(arguments({u"-n"_qs, u"1000000"_qs}));
    process.with([writer = ends[1]] { dup2(writer, STDOUT_FILENO); }).start();
    ::close(ends[1]);
    char first = 0;
    EXPECT_EQ(::read(ends[0], &first, 1), 1);
    ::close(ends[0]); // with bytes in it that were not read
    ASSERT_TRUE(process.finish());
    const QByteArray errors = process.errors();
    EXPECT_EQ(process.exitCode(), 0) << errors.toStdString();
    const QJsonObject passed = report(errors)[u"passed_on"_qs].toObject();
    EXPECT_TRUE(passed[u"reader_closed"_qs].toBool()) << errors.toStdString();
    EXPECT_TRUE(passed[u"balanced"_qs].toBool());
}

TEST_F(StreamPipeEnds, a_reader_that_closes_the_pipe_ends_the_stream_although_no_frame_comes) {
    scene.addFault({{u"do"_qs, u"hold"_qs}, {u"camera"_qs, u"cam-1"_qs}, {u"afterFrames"_qs, 1}});
    PipeProcess pipe(arguments({u"--timeout"_qs, u"3600"_qs}));
    pipe.start();
    EXPECT_EQ(pipe.read(frameBytes).size(), frameBytes);
    pipe.closeReader();
    ASSERT_TRUE(pipe.process.finish());
    EXPECT_EQ(pipe.process.exitCode(), 0) << pipe.process.errors().toStdString();
}

TEST_F(StreamPipeEnds, a_reader_that_is_killed_while_it_reads_ends_the_stream_and_all_is_well) {
    checkKilledReader(u"head -c %1 > /dev/null; touch '%2'; exec cat > /dev/null"_qs, false);
}

TEST_F(StreamPipeEnds, a_reader_that_is_killed_while_the_stream_waits_for_it_ends_that_too) {
    checkKilledReader(u"head -c %1 > /dev/null; touch '%2'; exec sleep 1000"_qs, true);
}

TEST_F(StreamPipeEnds, without_a_reader_from_the_start_it_ends_too) {
    PipeProcess pipe(arguments({}));
    pipe.closeReader();
    pipe.start();
    ASSERT_TRUE(pipe.process.finish());
    EXPECT_EQ(pipe.process.exitCode(), 0) << pipe.process.errors().toStdString();
}

/// Peak of the resident memory of a process, in bytes.
qint64 peakMemory(qint64 process) {
    const QByteArray status = readFile(u"/proc/%1/status"_qs.arg(process));
    const qsizetype at = status.indexOf("VmHWM:") + 6;
    return status.mid(at, status.indexOf("kB", at) - at).trimmed().toLongLong() * 1024;
}

TEST_F(StreamPipeEnds, a_slow_reader_loses_frames_but_costs_no_memory) {
    constexpr int frames = 450;
    scene.addFault(unplugAfter(frames)); // with which all frames have come
    PipeProcess pipe(arguments({}));
    startWithJournal(pipe);
    EXPECT_EQ(pipe.read(frameBytes).size(), frameBytes);
    const qint64 before = peakMemory(pipe.process.id());
    EXPECT_TRUE(waitForCall("Toupcam_Stop"));
    const qint64 grown = peakMemory(pipe.process.id()) - before;
    const qsizetype rest = pipe.readAll().size();
    ASSERT_TRUE(pipe.process.finish());
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 1);
    EXPECT_TRUE(errors.contains("camera Small-S0001 was unplugged after ")) << errors.toStdString();
    const QJsonObject passed = report(errors)[u"passed_on"_qs].toObject();
    const int written = passed[u"written"_qs].toInt();
    EXPECT_EQ(rest, qsizetype(written - 1) * frameBytes); // whole frames, all that waited
    EXPECT_LE(written, 20);
    EXPECT_GE(passed[u"dropped"_qs].toInt(), frames / 2);
    EXPECT_TRUE(passed[u"balanced"_qs].toBool());
    // Eight frames wait and a few are at the camera, 12 MB, which the thread sanitizer's own memory
    // makes five times as much. The dropped ones would take more than thirty times as much.
    EXPECT_GT(before, 0);
    EXPECT_LT(grown, qint64(frames) / 6 * frameBytes);
}

TEST_F(StreamPipeEnds, a_full_disk_is_named_and_ends_the_stream_with_a_failure) {
    CtlProcess process(arguments({}));
    process.with([] { dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO); });
    ASSERT_TRUE(process.finish());
    const QByteArray errors = process.errors();
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray message = "cannot write frame 1 to standard output: No space left on device";
    EXPECT_TRUE(errors.contains("pcdctl: " + message + '\n')) << errors.toStdString();
    EXPECT_EQ(report(errors)[u"error"_qs].toString(), QString::fromUtf8(message));
    const QJsonObject passed = checkBalance(report(errors));
    EXPECT_EQ(passed[u"written"_qs].toInt(), 0);
    EXPECT_GE(passed[u"unwritten"_qs].toInt(), 1);
}

TEST_F(StreamPipeEnds, standard_output_on_a_disk_that_is_full_is_named_and_counted) {
    const QByteArray file = QFile::encodeName(path(u"frames.raw"_qs));
    CtlProcess process(arguments({}));
    process.with([file] {
        dup2(open(file.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDOUT_FILENO);
        limitFiles();
    });
    ASSERT_TRUE(process.finish());
    const QByteArray errors = process.errors();
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(errors.contains("cannot write frame 3 to standard output: File too large"))
        << errors.toStdString();
    const QJsonObject passed = checkBalance(report(errors));
    EXPECT_EQ(passed[u"written"_qs].toInt(), 2);
    EXPECT_GE(passed[u"unwritten"_qs].toInt(), 1);
    // Of others than new files it has a part of the next one too.
    EXPECT_EQ(passed[u"bytes"_qs].toInt(), 5 * frameBytes / 2);
    EXPECT_EQ(QFileInfo(QFile::decodeName(file)).size(), 5 * frameBytes / 2);
}

TEST_F(StreamPipeEnds, a_file_on_a_disk_that_is_full_keeps_its_whole_frames) {
    const QString file = path(u"frames.raw"_qs);
    CtlProcess process({u"stream"_qs, u"--to"_qs, file, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs)), jsonWord});
    process.with([] { limitFiles(); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray message =
        "cannot write frame 3 to \"" + QFile::encodeName(file) + "\": File too large\n";
    const QByteArray errors = process.errors();
    EXPECT_TRUE(errors.contains(message)) << errors.toStdString();
    EXPECT_EQ(checkBalance(process.json())[u"written"_qs].toInt(), 2);
    EXPECT_EQ(QFile(file).size(), 2 * frameBytes);
}

TEST_F(StreamPipeEnds, ctrl_c_ends_it_although_the_reader_has_stopped) {
    PipeProcess pipe(arguments({}));
    pipe.start();
    EXPECT_EQ(pipe.read(frameBytes).size(), frameBytes);
    pipe.process.sendSignal(SIGINT);
    ASSERT_TRUE(pipe.process.finish()); // with the reader open
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 0) << errors.toStdString();
    const QJsonObject passed = report(errors)[u"passed_on"_qs].toObject();
    EXPECT_TRUE(passed[u"balanced"_qs].toBool());
    EXPECT_FALSE(passed[u"reader_closed"_qs].toBool());
}

TEST_F(StreamPipeEnds, ctrl_c_while_the_last_frames_wait_for_the_reader_is_a_failure) {
    PipeProcess pipe(arguments({u"-n"_qs, u"5"_qs}));
    startWithJournal(pipe);
    EXPECT_TRUE(waitForCall("Toupcam_Stop"));
    pipe.process.sendSignal(SIGTERM);
    ASSERT_TRUE(pipe.process.finish());
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 1);
    EXPECT_TRUE(errors.contains("pcdctl: interrupted after ")) << errors.toStdString();
    EXPECT_GT(report(errors)[u"passed_on"_qs].toObject()[u"unwritten"_qs].toInt(), 0);
}

TEST_F(StreamPipeEnds, ctrl_c_leaves_a_reader_that_reads_whole_frames) {
    PipeProcess pipe(arguments({}));
    pipe.start();
    EXPECT_EQ(pipe.read(frameBytes).size(), frameBytes);
    pipe.process.sendSignal(SIGINT);
    const qsizetype rest = pipe.readAll().size();
    ASSERT_TRUE(pipe.process.finish());
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 0) << errors.toStdString();
    const QJsonObject passed = report(errors)[u"passed_on"_qs].toObject();
    const qsizetype whole = (passed[u"written"_qs].toInt() - 1) * qsizetype(frameBytes);
    EXPECT_GE(rest, whole);
    // On a very busy computer, the time that a reader has may be over.
    EXPECT_TRUE(rest == whole || passed[u"unwritten"_qs].toInt() > 0) << errors.toStdString();
}

TEST_F(StreamPipeEnds, ctrl_c_ends_the_wait_for_the_reader_of_a_named_pipe) {
    const QString name = path(u"pipe"_qs);
    ASSERT_EQ(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    CtlProcess process({u"stream"_qs, u"--to"_qs, name, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs))});
    process.with(u"TOUPCAM_SIM_JOURNAL"_qs, path(u"journal"_qs)).start();
    // The last that is read of a camera that is opened. Signals are expected soon after that, which
    // nothing shows from outside; one that comes earlier ends the program in another way.
    EXPECT_TRUE(waitForCall("Toupcam_get_Option(h1, 24, "));
    std::this_thread::sleep_for(std::chrono::seconds(3));
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    // On a busy computer, a line that it still waits comes before.
    const QByteArray errors = process.errors();
    EXPECT_TRUE(
        errors.endsWith("pcdctl: interrupted before \"" + name.toUtf8() + "\" had a reader\n"))
        << errors.toStdString();
}

TEST_F(StreamPipeEnds, a_frame_of_another_size_ends_it_with_the_reason) {
    scene.addFault({{u"do"_qs, u"pushMalformed"_qs},
                    {u"camera"_qs, u"cam-1"_qs},
                    {u"afterFrames"_qs, 3},
                    {u"width"_qs, 100},
                    {u"height"_qs, 80},
                    {u"sizeImage"_qs, 100 * 80 * 3}});
    PipeProcess pipe(arguments({}));
    pipe.start();
    pipe.readAll();
    ASSERT_TRUE(pipe.process.finish());
    const QByteArray errors = pipe.process.errors();
    EXPECT_EQ(pipe.process.exitCode(), 1);
    EXPECT_TRUE(errors.contains("it has 100x80 pixels, and the first one 1000x400"))
        << errors.toStdString();
}

TEST_F(StreamPipeEnds, a_terminal_is_refused_before_the_camera_is_touched) {
    const int mine = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(mine >= 0 && grantpt(mine) == 0 && unlockpt(mine) == 0);
    const QByteArray terminal = ptsname(mine);
    CtlProcess process(arguments({}));
    process.with(u"TOUPCAM_SIM_JOURNAL"_qs, path(u"journal"_qs));
    process.with([&] { dup2(open(terminal.constData(), O_RDWR | O_NOCTTY), STDOUT_FILENO); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_TRUE(
        process.errors().contains("standard output is a terminal, which cannot show frames: "
                                  "expected a pipe or a file"));
    EXPECT_EQ(readFile(path(u"journal"_qs)), QByteArray());
    ::close(mine);
}

TEST_F(StreamPipeEnds, files_that_exist_folders_and_another_name_of_the_output_are_refused) {
    const QString file = path(u"mine"_qs);
    writeFile(file, "mine");
    const CtlResult existing = run({u"stream"_qs, u"--to"_qs, file});
    EXPECT_EQ(existing.exitCode, 1);
    EXPECT_TRUE(existing.errors.contains(
        u"already exists, and files are never overwritten: expected a new file"_qs));
    EXPECT_EQ(readFile(file), "mine");
    EXPECT_EQ(run({u"stream"_qs, u"--to"_qs, path(u"."_qs)}).exitCode, 1);
    const CtlResult output = run({u"stream"_qs, u"--to"_qs, u"/dev/stdout"_qs});
    EXPECT_EQ(output.exitCode, 2);
    EXPECT_TRUE(output.errors.contains(u"\"/dev/stdout\" is standard output: expected \"-\""_qs))
        << output.errors.toStdString();
}

} // namespace
