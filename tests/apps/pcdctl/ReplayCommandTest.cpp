// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlFiles.h>
#include <apps/pcdctl/CtlProcess.h>
#include <apps/pcdctl/CtlScene.h>

#include <support/FolderTest.h>
#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <QFile>
#include <QJsonArray>

namespace {

const QString replayWord = u"replay"_qs;

class ReplayCommand : public FolderTest {
protected:
    CtlScene scene =
        CtlScene().addCamera().set(u"flags"_qs, QJsonArray{u"USB30"_qs, u"TRIGGER_SOFTWARE"_qs});

    QString trace() const { return path(u"a.trace"_qs); }

    CtlResult record(const QStringList& arguments) const {
        return runCtl(arguments + QStringList{u"--sdk=sim"_qs, u"--scene"_qs,
                                              scene.writeTo(path(u"scene.json"_qs)), u"--trace"_qs,
                                              trace()});
    }
    CtlResult replay(const QStringList& command = {}) const {
        return runCtl(QStringList{replayWord, trace()} + command);
    }
    void changeTrace(const QByteArray& before, const QByteArray& after) const {
        QByteArray bytes = readFile(trace());
        ASSERT_TRUE(bytes.contains(before));
        writeFile(trace(), bytes.replace(before, after));
    }
};

struct ReplayedRow {
    const char* name;
    const char* arguments; ///< separated by blanks
};

constexpr ReplayedRow replayedCommands[] = {
    {"list", "list"},
    {"props", "props"},
    {"props_as_json", "props --json"},
    {"modes", "modes"},
    {"get", "get contrast roi"},
    {"set", "set contrast=12 negative=on roi=0,0,160,120"},
    {"set_once", "set awbonce"},
    {"modes_as_json", "modes --json"},
};

class ReplayedCommand : public ReplayCommand, public WithRow<ReplayedRow> {};

ROW_TEST(ReplayedCommand, prints_what_it_printed_with_the_camera) {
    const CtlResult recorded = record(QString::fromLatin1(GetParam().arguments).split(u' '));
    ASSERT_EQ(recorded.exitCode, 0) << recorded.errors.toStdString();
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(replayed.output, recorded.output);
    EXPECT_TRUE(replayed.errors.contains(u"calls of the SDK, all as recorded"_qs))
        << replayed.errors.toStdString();
}

ROWS_IN(Pcdctl, ReplayedCommand, replayedCommands);

TEST_F(ReplayCommand, a_stream_has_the_frames_that_it_had) {
    const CtlResult recorded = record({u"stream"_qs, u"-n"_qs, u"5"_qs, jsonWord});
    ASSERT_EQ(recorded.exitCode, 0) << recorded.errors.toStdString();
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(replayed.json.value(u"frames"_qs).toInt(), 5);
    EXPECT_EQ(replayed.json.value(u"camera"_qs), recorded.json.value(u"camera"_qs));
    EXPECT_EQ(replayed.json.value(u"simulated"_qs), recorded.json.value(u"simulated"_qs));
}

TEST_F(ReplayCommand, a_triggered_sequence_has_the_frames_that_it_had) {
    const CtlResult recorded =
        record({u"trigger"_qs, u"--count"_qs, u"3"_qs, u"--exposure=2ms"_qs, jsonWord});
    ASSERT_EQ(recorded.exitCode, 0) << recorded.errors.toStdString();
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(replayed.json.value(u"frames"_qs), recorded.json.value(u"frames"_qs));
    EXPECT_TRUE(replayed.errors.contains(u"all as recorded"_qs)) << replayed.errors.toStdString();
}

TEST_F(ReplayCommand, a_still_that_was_recorded_whole_is_the_same_picture) {
    const QString first = path(u"a.png"_qs);
    const CtlResult recorded = record({u"snap"_qs, u"-o"_qs, first, u"--trace-frames"_qs});
    ASSERT_EQ(recorded.exitCode, 0) << recorded.errors.toStdString();
    const QString second = path(u"b.png"_qs);
    const CtlResult replayed = replay({u"snap"_qs, u"-o"_qs, second});
    ASSERT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(QImage(second), QImage(first));
    EXPECT_EQ(patchColours(QImage(second)), u"red green blue black"_qs);
}

TEST_F(ReplayCommand, a_still_of_which_only_the_checksum_was_recorded_has_its_size) {
    ASSERT_EQ(record({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs)}).exitCode, 0);
    const QString second = path(u"b.png"_qs);
    const CtlResult replayed = replay({u"snap"_qs, u"-o"_qs, second});
    ASSERT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(QImage(second).size(), QSize(320, 240));
}

TEST_F(ReplayCommand, frames_that_are_missing_are_reported_and_are_patterns) {
    const QString first = path(u"a.png"_qs);
    ASSERT_EQ(record({u"snap"_qs, u"-o"_qs, first, u"--trace-frames"_qs}).exitCode, 0);
    ASSERT_TRUE(QFile::remove(trace() + u".frames"_qs));
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0);
    EXPECT_TRUE(replayed.errors.contains(u"so frames are patterns"_qs))
        << replayed.errors.toStdString();
}

TEST_F(ReplayCommand, the_recorded_command_replaces_no_file) {
    const QString file = path(u"a.png"_qs);
    ASSERT_EQ(record({u"snap"_qs, u"-o"_qs, file}).exitCode, 0);
    writeFile(file, "mine");
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(readFile(file), "mine");
}

TEST_F(ReplayCommand, says_that_it_keeps_no_file_of_the_recorded_command) {
    const QString hint = u"the files of the recorded command are not kept"_qs;
    const CtlResult recorded = record({u"snap"_qs, u"-o"_qs, path(u"a.png"_qs)});
    EXPECT_TRUE(recorded.output.startsWith("Saved ")) << recorded.output.toStdString();
    const CtlResult replayed = replay();
    EXPECT_TRUE(replayed.output.startsWith("Not kept: a.png: 320 x 240 pixels"))
        << replayed.output.toStdString();
    EXPECT_TRUE(replayed.errors.contains(hint)) << replayed.errors.toStdString();
    const QString file = path(u"b.png"_qs);
    const CtlResult another = replay({u"snap"_qs, u"-o"_qs, file});
    EXPECT_TRUE(another.output.startsWith("Saved " + file.toUtf8()))
        << another.output.toStdString();
    EXPECT_FALSE(another.errors.contains(hint)) << another.errors.toStdString();
}

TEST_F(ReplayCommand, says_that_it_keeps_no_recorded_profile) {
    ASSERT_EQ(record({u"profile"_qs, u"save"_qs, path(u"a.json"_qs)}).exitCode, 0);
    const CtlResult replayed = replay();
    EXPECT_TRUE(replayed.output.startsWith("Not kept: a.json: the settings of camera"))
        << replayed.output.toStdString();
}

TEST_F(ReplayCommand, does_not_speak_of_files_where_there_are_none) {
    ASSERT_EQ(record({u"list"_qs}).exitCode, 0);
    EXPECT_FALSE(replay().errors.contains(u"kept"_qs));
}

TEST_F(ReplayCommand, the_recorded_check_replaces_no_file) {
    const QString file = path(u"check.xml"_qs);
    ASSERT_EQ(record({u"check"_qs, u"--filter=identity.*"_qs, u"--junit"_qs, file}).exitCode, 0);
    ASSERT_NE(readFile(file), QByteArray());
    writeFile(file, "mine");
    const CtlResult replayed = replay();
    EXPECT_TRUE(replayed.output.contains("4 rules: 4 passed")) << replayed.errors.toStdString();
    EXPECT_EQ(readFile(file), "mine");
}

TEST_F(ReplayCommand, the_recorded_command_loads_no_plugin_that_it_names) {
    ASSERT_EQ(record({listWord, u"--plugin-path"_qs, QStringLiteral(LAB_PLUGIN)}).exitCode, 0);
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_TRUE(replayed.output.contains("Small-S0001"));
    EXPECT_FALSE(replayed.output.contains("Lab-"));
    const CtlResult withPlugin =
        runCtl({u"--plugin-path"_qs, QStringLiteral(LAB_PLUGIN), replayWord, trace()});
    EXPECT_TRUE(withPlugin.output.contains("Lab-")) << withPlugin.output.toStdString();
}

TEST_F(ReplayCommand, a_camera_that_was_unplugged_is_unplugged_again) {
    scene.addFault(unplugAfter(3));
    const CtlResult recorded = record({u"stream"_qs, u"-n"_qs, u"50"_qs});
    ASSERT_EQ(recorded.exitCode, 1) << recorded.output.toStdString();
    ASSERT_TRUE(recorded.errors.contains(u"unplugged"_qs)) << recorded.errors.toStdString();
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 1);
    EXPECT_TRUE(replayed.errors.contains(u"all as recorded"_qs)) << replayed.errors.toStdString();
    EXPECT_TRUE(replayed.errors.contains(recorded.errors.section(u'\n', -2)))
        << replayed.errors.toStdString() << recorded.errors.toStdString();
}

TEST_F(ReplayCommand, a_setting_that_failed_fails_again) {
    scene.addFault(failing(u"Toupcam_put_Contrast"_qs));
    const CtlResult recorded = record({u"set"_qs, u"contrast=12"_qs});
    ASSERT_EQ(recorded.exitCode, 1) << recorded.output.toStdString();
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 1);
    EXPECT_TRUE(replayed.errors.contains(recorded.errors.section(u'\n', -2)))
        << replayed.errors.toStdString() << recorded.errors.toStdString();
}

TEST_F(ReplayCommand, another_command_is_a_difference_that_is_named_with_its_line) {
    ASSERT_EQ(record({u"set"_qs, u"contrast=12"_qs}).exitCode, 0);
    const CtlResult replayed = replay({u"set"_qs, u"contrast=13"_qs});
    EXPECT_EQ(replayed.exitCode, 1);
    EXPECT_TRUE(replayed.errors.contains(u"Toupcam_put_Contrast(Contrast=13, h=h1) was called, but "
                                         "Toupcam_put_Contrast(Contrast=12, h=h1) was recorded"_qs))
        << replayed.errors.toStdString();
    EXPECT_TRUE(replayed.errors.contains(trace() + u": line "_qs));
    EXPECT_TRUE(replayed.errors.contains(u" differences from the recording"_qs));
}

TEST_F(ReplayCommand, a_call_that_is_no_longer_made_is_a_difference) {
    ASSERT_EQ(record({u"set"_qs, u"contrast=12"_qs, u"negative=on"_qs}).exitCode, 0);
    const CtlResult replayed = replay({u"set"_qs, u"contrast=12"_qs});
    EXPECT_EQ(replayed.exitCode, 1);
    EXPECT_TRUE(replayed.errors.contains(
        u"Toupcam_put_Negative(bNegative=1, h=h1) was recorded, but was not called"_qs))
        << replayed.errors.toStdString();
}

TEST_F(ReplayCommand, a_trace_that_a_crash_has_cut_is_used_with_a_notice) {
    ASSERT_EQ(record({listWord}).exitCode, 0);
    QByteArray bytes = readFile(trace());
    bytes.chop(20);
    writeFile(trace(), bytes);
    const CtlResult replayed = replay();
    EXPECT_TRUE(replayed.errors.contains(u"was cut off, and is left out"_qs))
        << replayed.errors.toStdString();
    EXPECT_TRUE(replayed.output.contains("Small-S0001"));
}

TEST_F(ReplayCommand, a_line_that_is_wrong_is_named) {
    ASSERT_EQ(record({listWord}).exitCode, 0);
    changeTrace("\"kind\":\"return\"", "\"kind\":\"retour\"");
    const CtlResult replayed = replay();
    EXPECT_EQ(replayed.exitCode, 1);
    EXPECT_EQ(replayed.output, QByteArray());
    EXPECT_TRUE(replayed.errors.startsWith(u"pcdctl: cannot replay \"%1\": line "_qs.arg(trace())))
        << replayed.errors.toStdString();
    EXPECT_TRUE(replayed.errors.contains(
        u"kind is \"retour\", expected call, return, callback or done"_qs));
}

TEST_F(ReplayCommand, a_trace_of_another_program_needs_a_command) {
    ASSERT_EQ(record({listWord}).exitCode, 0);
    changeTrace("\"program\":\"pcdctl\"", "\"program\":\"pcdview\"");
    const CtlResult without = replay();
    EXPECT_EQ(without.exitCode, 2);
    EXPECT_TRUE(without.errors.contains(
        u"is a trace of pcdview: expected a command of pcdctl after the file"_qs));
    EXPECT_EQ(replay({listWord}).exitCode, 0);
}

TEST_F(ReplayCommand, options_before_the_file_are_its_own_and_those_after_it_the_commands) {
    ASSERT_EQ(record({listWord}).exitCode, 0);
    const CtlResult replayed =
        runCtl({u"--lang"_qs, u"en"_qs, replayWord, u"--json"_qs, trace(), listWord});
    EXPECT_EQ(replayed.exitCode, 0) << replayed.errors.toStdString();
    EXPECT_EQ(replayed.json.value(u"cameras"_qs).toArray().size(), 1);
}

struct WrongReplayRow {
    const char* name;
    QStringList arguments;
    const char* message;
};

const WrongReplayRow wrongReplays[] = {
    {"no_file", {}, "replay needs more arguments: expected replay FILE [COMMAND…]"},
    {"a_camera_for_the_replay", {u"-c"_qs, u"1"_qs, u"a"_qs}, "replay does not take the option -c"},
};

class ReplayUsage : public RowTest<WrongReplayRow> {};

ROW_TEST(ReplayUsage, is_refused) {
    const CtlResult result = runCtl(QStringList{replayWord} + GetParam().arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(QString::fromUtf8(GetParam().message)))
        << result.errors.toStdString();
}

ROWS_IN(Pcdctl, ReplayUsage, wrongReplays);

TEST_F(ReplayCommand, a_command_within_is_checked_like_any_other) {
    ASSERT_EQ(record({listWord}).exitCode, 0);
    for (const QStringList& command :
         {QStringList{u"paint"_qs}, QStringList{u"snap"_qs}, QStringList{replayWord, trace()}}) {
        const CtlResult result = replay(command);
        EXPECT_EQ(result.exitCode, 2) << command.join(u' ').toStdString();
    }
}

} // namespace
