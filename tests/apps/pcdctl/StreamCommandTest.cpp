// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

class StreamCommand : public FolderTest {
protected:
    CtlScene scene = CtlScene().addCamera();

    QStringList arguments(const QStringList& more) const {
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        return QStringList{u"stream"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file} + more;
    }
    CtlResult stream(const QStringList& more) const { return runCtl(arguments(more)); }
    /// Starts a stream without further options, and waits until frames arrive.
    void startAndWaitForFrames(CtlProcess& process) const {
        const QString journal = path(u"journal"_qs);
        process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal).start();
        for (int i = 0; i < 6000 && !readFile(journal).contains("Toupcam_StartPushMode"); ++i)
            usleep(10'000);
        ASSERT_TRUE(readFile(journal).contains("Toupcam_StartPushMode"));
    }
};

QJsonObject readLedger(const CtlResult& result) {
    return result.json.value(u"ledger"_qs).toObject();
}

TEST_F(StreamCommand, has_no_mode_in_its_report_that_was_not_read) {
    scene.addFault(failing(u"Toupcam_get_eSize"_qs));
    const CtlResult result = stream({u"-n"_qs, u"1"_qs, u"--mode"_qs, u"1"_qs, u"--json"_qs});
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), 1) << result.errors.toStdString();
    EXPECT_TRUE(result.json.value(u"mode"_qs).isNull());
    const CtlResult inWords = stream({u"-n"_qs, u"1"_qs});
    EXPECT_FALSE(inWords.output.contains("mode")) << inWords.output.constData();
}

TEST_F(StreamCommand, sixty_frames_are_delivered_and_the_ledger_balances) {
    const CtlResult result = stream({u"-n"_qs, u"60"_qs, u"--json"_qs});
    ASSERT_EQ(result.exitCode, 0) << result.errors.toStdString();
    const QJsonObject& json = result.json;
    EXPECT_EQ(json.value(u"camera"_qs).toString(), smallCameraId);
    EXPECT_TRUE(json.value(u"simulated"_qs).toBool());
    EXPECT_EQ(json.value(u"mode"_qs).toString(), u"320x240"_qs);
    EXPECT_EQ(json.value(u"frames"_qs).toInt(), 60);
    const QJsonObject ledger = readLedger(result);
    EXPECT_EQ(ledger.value(u"delivered"_qs).toInt(), 60);
    EXPECT_EQ(ledger.value(u"waiting"_qs).toInt(), 0);
    EXPECT_TRUE(ledger.value(u"balanced"_qs).toBool());
    EXPECT_FALSE(json.contains(u"saved"_qs));
    EXPECT_FALSE(json.contains(u"error"_qs));
    EXPECT_EQ(result.errors, QString()); // no progress without a terminal
}

TEST_F(StreamCommand,
       no_more_frames_than_requested_are_delivered_while_the_camera_is_slow_to_stop) {
    scene.addFault(
        {{u"do"_qs, u"delay"_qs}, {u"function"_qs, u"Toupcam_Stop"_qs}, {u"ms"_qs, 500}});
    const CtlResult result = stream({u"-n"_qs, u"60"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), 60);
    EXPECT_EQ(readLedger(result).value(u"delivered"_qs).toInt(), 60);
    EXPECT_GT(readLedger(result).value(u"not_wanted"_qs).toInt(), 0);
    EXPECT_TRUE(readLedger(result).value(u"balanced"_qs).toBool());
}

TEST_F(StreamCommand, the_rates_follow_from_frames_and_seconds) {
    const QJsonObject json = stream({u"-n"_qs, u"20"_qs, u"--json"_qs}).json;
    const double seconds = json.value(u"seconds"_qs).toDouble();
    ASSERT_GT(seconds, 0);
    EXPECT_NEAR(json.value(u"fps"_qs).toDouble() * seconds, 19, 1e-6);
    EXPECT_NEAR(json.value(u"megabytesPerSecond"_qs).toDouble() * seconds, 19 * 320 * 240 * 3 / 1e6,
                1e-6);
}

TEST_F(StreamCommand, every_outcome_of_a_frame_is_in_the_json) {
    const QJsonObject ledger = readLedger(stream({u"-n"_qs, u"1"_qs, u"--json"_qs}));
    for (const char* key : {"produced", "delivered", "lost_in_camera", "bad_depth", "bad_size",
                            "no_memory", "dropped_waiting", "failed_in_writer", "failed",
                            "not_wanted", "waiting", "snapshots", "balanced"})
        EXPECT_TRUE(ledger.contains(QLatin1String(key))) << key;
}

TEST_F(StreamCommand, the_summary_for_users_has_the_rates_and_the_ledger) {
    const CtlResult result = stream({u"-n"_qs, u"5"_qs, u"--mode=1"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.startsWith("Small-S0001 (simulated), mode 160x120: 5 frames in "))
        << result.output.toStdString();
    EXPECT_TRUE(result.output.contains("           5  delivered\n")) << result.output.toStdString();
    EXPECT_TRUE(result.output.endsWith("  balanced\n")) << result.output.toStdString();
}

TEST_F(StreamCommand, ends_when_its_time_is_over) {
    const CtlResult result = stream({u"-t"_qs, u"0.5"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_GT(result.json.value(u"frames"_qs).toInt(), 0);
    EXPECT_EQ(readLedger(result).value(u"delivered"_qs), result.json.value(u"frames"_qs));
    EXPECT_TRUE(readLedger(result).value(u"balanced"_qs).toBool());
}

TEST_F(StreamCommand, malformed_frames_are_counted_and_the_rest_delivered) {
    scene.addFault({{u"do"_qs, u"pushMalformed"_qs},
                    {u"camera"_qs, u"cam-1"_qs},
                    {u"afterFrames"_qs, 3},
                    {u"width"_qs, 320},
                    {u"height"_qs, 240},
                    {u"sizeImage"_qs, 7}});
    const CtlResult result = stream({u"-n"_qs, u"20"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 0) << result.errors.toStdString();
    EXPECT_EQ(readLedger(result).value(u"delivered"_qs).toInt(), 20);
    EXPECT_EQ(readLedger(result).value(u"bad_size"_qs).toInt(), 1);
    EXPECT_TRUE(readLedger(result).value(u"balanced"_qs).toBool());
}

TEST_F(StreamCommand, a_camera_unplugged_in_the_middle_ends_it_with_a_summary_and_code_1) {
    scene.addFault(unplugAfter(10));
    const CtlResult result = stream({u"-n"_qs, u"1000000"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    const int frames = result.json.value(u"frames"_qs).toInt();
    EXPECT_GT(frames, 0);
    const QString message = u"camera Small-S0001 was unplugged after %1 frames"_qs.arg(frames);
    EXPECT_EQ(result.errors, u"pcdctl: "_qs + message + u'\n');
    EXPECT_EQ(result.json.value(u"error"_qs).toString(), message);
    EXPECT_TRUE(readLedger(result).value(u"balanced"_qs).toBool());
}

TEST_F(StreamCommand, a_camera_that_falls_silent_is_given_up) {
    scene.addFault({{u"do"_qs, u"hold"_qs}, {u"camera"_qs, u"cam-1"_qs}, {u"afterFrames"_qs, 5}});
    const CtlResult result = stream({u"-n"_qs, u"100"_qs, u"--timeout=0.5"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.contains(u"camera Small-S0001 sent no frame for 0.5 s"_qs))
        << result.errors.toStdString();
    EXPECT_GT(result.json.value(u"frames"_qs).toInt(), 0);
}

TEST_F(StreamCommand, a_time_without_any_frame_is_a_failure) {
    scene.addFault(stepAt(0, u"hold"_qs));
    const CtlResult result = stream({u"-t"_qs, u"0.3"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), 0);
    EXPECT_TRUE(result.errors.contains(u"sent no frame"_qs)) << result.errors.toStdString();
}

TEST_F(StreamCommand, a_camera_that_does_not_start_is_a_failure_without_a_report) {
    scene.addFault(failing(u"Toupcam_StartPushMode"_qs));
    const CtlResult result = stream({u"-n"_qs, u"5"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.contains(u"the device refused to start its stream"_qs))
        << result.errors.toStdString();
}

TEST_F(StreamCommand, a_camera_that_does_not_stop_is_a_failure_with_its_report) {
    scene.addFault(failing(u"Toupcam_Stop"_qs));
    const CtlResult result = stream({u"-n"_qs, u"5"_qs, u"--json"_qs});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.json.value(u"frames"_qs).toInt(), 5);
    EXPECT_EQ(result.json.value(u"error"_qs).toString(),
              u"the device refused to stop its stream"_qs);
}

TEST_F(StreamCommand, without_a_set_end_runs_until_ctrl_c_and_is_done) {
    CtlProcess process(arguments({u"--json"_qs}));
    startAndWaitForFrames(process);
    process.sendSignal(SIGINT);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.json().value(u"ledger"_qs).toObject().value(u"balanced"_qs).toBool());
    EXPECT_EQ(process.errors(), QByteArray());
}

TEST_F(StreamCommand, a_second_ctrl_c_ends_the_program_although_the_camera_is_stuck) {
    scene.addFault(
        {{u"do"_qs, u"delay"_qs}, {u"function"_qs, u"Toupcam_Stop"_qs}, {u"ms"_qs, 600'000}});
    CtlProcess process(arguments({}));
    startAndWaitForFrames(process);
    // Pending signals of one kind are merged, so more than two are needed.
    while (process.isRunning()) {
        process.sendSignal(SIGINT);
        usleep(50'000);
    }
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), -1);
}

TEST_F(StreamCommand, a_termination_signal_before_a_set_end_ends_with_the_summary_and_code_1) {
    CtlProcess process(arguments({u"--json"_qs, u"-n"_qs, u"1000000"_qs}));
    startAndWaitForFrames(process);
    process.sendSignal(SIGTERM);
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.json().value(u"ledger"_qs).toObject().value(u"balanced"_qs).toBool());
    EXPECT_TRUE(process.errors().contains("interrupted after "));
}

/// Opens a new terminal: returns the program's end of it, and its other end in `mine`.
int openTerminal(int& mine) {
    mine = posix_openpt(O_RDWR | O_NOCTTY);
    if (mine < 0 || grantpt(mine) != 0 || unlockpt(mine) != 0)
        return -1;
    return open(ptsname(mine), O_RDWR | O_NOCTTY);
}

/// Everything written to a terminal whose other end is closed; closes it.
QByteArray readAndClose(int terminal) {
    QByteArray text;
    char part[4096];
    // One read returns only what happens to be in one buffer of the terminal.
    for (ssize_t size = 0; (size = read(terminal, part, sizeof part)) > 0;)
        text.append(part, size);
    close(terminal);
    return text;
}

TEST_F(StreamCommand, a_terminal_shows_a_progress_bar_that_is_removed_at_the_end) {
    int mine = -1;
    const int terminal = openTerminal(mine);
    ASSERT_GE(terminal, 0);
    CtlProcess process(arguments({u"-n"_qs, u"60"_qs}));
    process.with([terminal] { dup2(terminal, STDERR_FILENO); });
    ASSERT_TRUE(process.finish());
    close(terminal);
    const QByteArray text = readAndClose(mine);
    EXPECT_TRUE(text.contains("[---")) << text.toStdString();
    EXPECT_TRUE(text.contains(" fps  ")) << text.toStdString();
    EXPECT_TRUE(text.endsWith("\r\x1b[K")) << text.toStdString();
}

} // namespace
