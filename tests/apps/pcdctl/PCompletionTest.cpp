// SPDX-License-Identifier: MIT
// What the program offers to the completion scripts of shells.
#include <apps/pcdctl/CameraCommandTest.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>
#include <support/WaitUntil.h>

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/// Two cameras: Small-S0001 and Small-T0002.
class PCompletion : public CameraCommandTest {
protected:
    void SetUp() override { scene = CtlScene().addCamera().addCamera(u"cam-2"_qs, u"T0002"_qs); }

    /// The candidates for a line whose words are separated by blanks: what is printed for the last
    /// word, which is empty after a blank.
    QStringList complete(const QString& line) const {
        const QString journal = path(u"journal"_qs);
        const QString file = scene.writeTo(path(u"scene.json"_qs));
        writeFile(journal, "");
        const CtlResult result = runCtl(
            QStringList{u"__complete"_qs, u"--sdk=sim"_qs, u"--scene"_qs, file} + line.split(u' '),
            [&](CtlProcess& process) {
                process.with(u"TOUPCAM_SIM_JOURNAL"_qs, journal);
                process.with(u"PCD_COMPLETION_SECONDS"_qs, seconds);
            });
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.errors, QString());
        return QString::fromUtf8(result.output).split(u'\n', Qt::SkipEmptyParts);
    }
    /// The same without the descriptions.
    QStringList words(const QString& line) const {
        QStringList texts;
        for (const QString& candidate : complete(line))
            texts.append(candidate.section(u'\t', 0, 0));
        return texts;
    }
    /// The calls of the last line that begin with one of these names, without their results.
    QStringList calls(const QStringList& names) const {
        QStringList result;
        for (const QString& call : QString::fromUtf8(readFile(path(u"journal"_qs))).split(u'\n')) {
            if (names.contains(call.section(u'(', 0, 0)))
                result.append(call.section(u" = "_qs, 0, 0));
        }
        return result;
    }
    QString seconds = u"60"_qs; ///< the limit, which is not to matter on a slow computer
    QStringList sessions() const { return calls({u"Toupcam_Open"_qs, u"Toupcam_Close"_qs}); }
};

struct LineRow {
    const char* name;
    const char* line; ///< words separated by blanks
    const char* all;  ///< all candidates, separated by "|"
};

const LineRow typedLines[] = {
    {"a_command", "s", "set|snap|stream"},
    {"a_command_after_an_option", "--json mo", "modes|monitor"},
    {"nothing_after_an_unknown_command", "paint ", ""},
    {"nothing_where_a_command_takes_no_word", "list ", ""},
    {"the_options_of_a_command", "monitor --ti", "--time"},
    {"options_of_all_commands_before_the_command", "--ti", "--timeout|--time"},
    {"no_option_twice", "snap --mode 0 --mo", ""},
    {"an_option_that_may_be_repeated", "snap --set gamma=20 --se", "--set"},
    {"no_option_after_two_dashes", "get -- --js", ""},
    {"a_language", "list --lang ", "en|ru"},
    {"a_language_after_a_sign", "list --lang=r", "--lang=ru"},
    {"a_log_level", "list --log-level w", "warning"},
    {"a_hazard", "check --allow ", "unplug|heat|long"},
    {"the_file_of_a_report", "check --junit ", ":files"},
    {"an_sdk_or_a_library_file", "list --sdk s", "sim|:files"},
    {"nothing_for_a_number", "stream -n ", ""},
    {"nothing_for_a_value_of_an_unknown_option", "list --colour=", ""},
    {"what_to_do_with_a_profile", "profile ", "save|load|diff"},
    {"the_file_of_a_profile", "profile load ", ":files"},
    {"nothing_after_the_file_of_a_profile", "profile load a ", ""},
    {"a_profile_to_apply", "snap --profile a", ":files"},
    {"a_file_without_formats_before_its_name", "snap -o out/", ":files"},
    {"the_formats_of_a_picture", "snap -o out/a", "out/a.png|out/a.tif|out/a.tiff|:files"},
    {"the_format_of_a_picture_in_part", "snap --output=a.t",
     "--output=a.tif|--output=a.tiff|:files"},
    {"the_formats_of_a_recording", "record -o r.o", "r.ome.tif|r.ome.tiff|r.ome.zarr|:files"},
    {"a_series_as_the_recording", "record -o r-",
     "r-.ome.tif|r-.ome.tiff|r-.ome.zarr|r--####.png|r--####.tif|r--####.tiff|:files"},
    {"the_formats_of_a_series_with_its_number", "record -o r##.p", "r##.png|:files"},
    {"the_formats_of_saved_frames", "trigger --save f", "f-####.png|f-####.tif|f-####.tiff|:files"},
    {"where_frames_go", "stream --to ", "-|:files"},
    {"the_forms_of_frames", "stream --to - --as ", "raw|y4m"},
    {"the_chroma_of_frames", "stream --to - --as y4m --chroma ", "420|444"},
    {"cameras", "snap -c ", "Small-S0001|Small-T0002"},
    {"a_camera_after_a_sign", "snap --camera=Small-T", "--camera=Small-T0002"},
    {"a_camera_without_a_blank", "snap -cSmall-T", "-cSmall-T0002"},
    {"modes", "snap --mode ", "320x240|160x120"},
    {"no_mode_of_a_camera_that_is_missing", "snap -c 7 --mode ", ""},
    {"the_id_of_a_property", "get con", "contrast"},
    {"no_id_twice", "get gamma ga", ""},
    {"no_action_where_values_are_shown", "get awb", ""},
    {"the_id_of_a_property_to_reset", "reset cont", "contrast"},
    {"no_property_to_reset_without_a_default", "reset rot", ""},
    {"a_setting_up_to_its_value", "set con", "contrast="},
    {"an_action", "set awb", "awbonce"},
    {"the_fields_of_a_composite", "set extexposure.g", "extexposure.gain="},
    {"the_value_of_a_field", "set extexposure.gain=", "extexposure.gain=100"},
    {"the_values_of_a_switch", "set hflip=", "hflip=on|hflip=off"},
    {"the_values_of_a_field_that_is_a_switch", "set extexposure.autoexpenabled=",
     "extexposure.autoexpenabled=on|extexposure.autoexpenabled=off"},
    {"the_values_of_a_choice", "set binning=Add",
     "binning=Add 2x2|binning=Add 3x3|binning=Add 4x4"},
    {"no_setting_twice", "set gamma=20 ga", ""},
    {"a_setting_before_another_command", "snap --set con", "contrast="},
    {"a_setting_after_a_sign", "snap --set=rotate=9", "--set=rotate=90"},
};

class CompletedLine : public PCompletion, public WithRow<LineRow> {};

ROW_TEST(CompletedLine, offers_these_words_and_no_others) {
    EXPECT_EQ(words(QString::fromLatin1(GetParam().line)).join(u'|'),
              QString::fromLatin1(GetParam().all));
}

ROWS_IN(Pcdctl, CompletedLine, typedLines);

TEST_F(PCompletion, offers_the_commands_with_their_summaries) {
    EXPECT_EQ(complete(u"lis"_qs), QStringList{u"list\tShow the cameras that are present."_qs});
}

TEST_F(PCompletion, says_what_an_option_does_in_one_sentence) {
    EXPECT_EQ(
        complete(u"snap --came"_qs),
        QStringList{u"--camera\tThe camera: its index in \"list\", its id, or a unique prefix "
                    "of its id."_qs});
}

TEST_F(PCompletion, says_what_each_value_of_a_number_is) {
    EXPECT_EQ(complete(u"set contrast="_qs),
              (QStringList{u"contrast=0\tnow, default"_qs, u"contrast=-100\tleast"_qs,
                           u"contrast=100\tmost"_qs}));
}

TEST_F(PCompletion, describes_properties_in_the_requested_language) {
    EXPECT_EQ(complete(u"--lang en get gam"_qs),
              QStringList{u"gamma\tGamma: a whole number from 20 to 180"_qs});
    EXPECT_TRUE(complete(u"--lang ru get gam"_qs).value(0).startsWith(u"gamma\tГамма"_qs));
}

TEST_F(PCompletion, opens_no_camera_for_commands_and_options) {
    for (const char* line : {"sna", "snap --", "snap -o a"}) {
        EXPECT_FALSE(complete(QString::fromLatin1(line)).isEmpty()) << line;
        EXPECT_EQ(sessions(), QStringList()) << line;
    }
}

TEST_F(PCompletion, opens_each_camera_once_as_the_list_does_and_closes_it) {
    const QStringList once{u"Toupcam_Open(\"cam-1\")"_qs, u"Toupcam_Open(\"cam-2\")"_qs,
                           u"Toupcam_Close(h1)"_qs, u"Toupcam_Close(h2)"_qs};
    for (const char* line : {"snap -c ", "snap --mode ", "get con", "set contrast="}) {
        EXPECT_FALSE(complete(QString::fromLatin1(line)).isEmpty()) << line;
        EXPECT_EQ(sessions(), once) << line;
    }
}

TEST_F(PCompletion, neither_changes_settings_nor_starts_a_stream) {
    EXPECT_EQ(words(u"--set gamma=20 --mode 1 -c Small-T0002 set con"_qs),
              QStringList{u"contrast="_qs});
    EXPECT_EQ(calls({u"Toupcam_put_Gamma"_qs, u"Toupcam_put_eSize"_qs, u"Toupcam_put_Contrast"_qs,
                     u"Toupcam_StartPushMode"_qs}),
              QStringList());
}

TEST_F(PCompletion, has_no_properties_of_a_camera_that_another_program_holds) {
    scene.addFault(
        {{u"do"_qs, u"fail"_qs}, {u"function"_qs, u"Toupcam_Open"_qs}, {u"result"_qs, 0}});
    EXPECT_EQ(complete(u"get "_qs), QStringList());
}

TEST_F(PCompletion, has_no_modes_that_were_not_read) {
    scene.addFault(failing(u"Toupcam_get_Resolution"_qs));
    EXPECT_EQ(complete(u"snap --mode "_qs), QStringList());
}

TEST_F(PCompletion, has_no_cameras_of_a_scene_that_is_missing) {
    EXPECT_EQ(complete(u"--scene missing.json snap -c "_qs), QStringList());
}

TEST_F(PCompletion, says_nothing_about_a_plugin_that_cannot_be_loaded) {
    const QString line = u"--plugin-path %1 snap -c Small-T"_qs.arg(QStringLiteral(NO_CAMERA_SDK));
    EXPECT_EQ(words(line), QStringList{u"Small-T0002"_qs});
}

TEST_F(PCompletion, finds_a_scene_in_the_home_folder) {
    scene.writeTo(path(u"home.json"_qs));
    const CtlResult result = runCtl({u"__complete"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                                     u"~/home.json"_qs, u"snap"_qs, u"--camera=Small-S"_qs},
                                    [&](CtlProcess& process) {
                                        process.with(u"HOME"_qs, path(QString()));
                                        process.with(u"PCD_COMPLETION_SECONDS"_qs, seconds);
                                    });
    EXPECT_EQ(result.output, QByteArray("--camera=Small-S0001\tSmall (simulated)\n"));
}

TEST_F(PCompletion, offers_the_commands_without_any_word) {
    const CtlResult result = runCtl({u"__complete"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.startsWith("list\t"));
}

} // namespace

TEST_F(PCompletion, a_library_that_does_not_answer_does_not_block_the_shell) {
    scene.addFault(
        {{u"do"_qs, u"delay"_qs}, {u"function"_qs, u"Toupcam_EnumV2"_qs}, {u"ms"_qs, 10'000}});
    seconds = u"0.2"_qs;
    EXPECT_EQ(words(u"list -c "_qs), QStringList());
}

TEST_F(PCompletion, candidates_are_printed_whole_even_if_the_time_ends_meanwhile) {
    for (int i = 0; i < 110; ++i)
        scene.addCamera(u"more-%1"_qs.arg(i), u"SERIAL-NUMBER-%1"_qs.arg(i, 12, 10, QChar(u'0')));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const int size = fcntl(ends[1], F_SETPIPE_SZ, 4096); // not enough for all of them
    CtlProcess process({u"__complete"_qs, u"--sdk=sim"_qs, u"--scene"_qs,
                        scene.writeTo(path(u"scene.json"_qs)), u"list"_qs, u"-c"_qs, u""_qs});
    process.with(u"PCD_COMPLETION_SECONDS"_qs, u"0.5"_qs);
    process.with([&] { dup2(ends[1], STDOUT_FILENO); }).start();
    close(ends[1]);
    const auto isPrinting = [&] {
        int waiting = 0;
        return ioctl(ends[0], FIONREAD, &waiting) == 0 && waiting == size;
    };
    EXPECT_TRUE(waitUntil([&] { return isPrinting() || !process.isRunning(); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(600)); // nobody reads until it is over
    QFile printed;
    ASSERT_TRUE(printed.open(ends[0], QIODevice::ReadOnly, QFile::AutoCloseHandle));
    const QByteArray all = printed.readAll();
    EXPECT_TRUE(process.finish());
    // None where the computer was too slow to find them in time.
    EXPECT_TRUE(all.isEmpty() || all.count('\n') == 112) << all.right(100).constData();
}
