// SPDX-License-Identifier: MIT
#include <apps/pcdctl/CtlProcess.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

struct UsageRow {
    const char* name;
    const char* arguments; ///< arguments, separated by blanks
    const char* message;   ///< what the message must contain
};

constexpr UsageRow wrongUsages[] = {
    {"no_command", "",
     "no command given: expected one of list, modes, props, get, set, profile, reset, snap, "
     "stream, trigger, record, monitor, check, doctor, replay"},
    {"only_an_option", "--json", "no command given"},
    {"an_unknown_command", "paint", "unknown command \"paint\": expected one of list, modes"},
    {"a_second_command", "list modes", "unexpected argument \"modes\""},
    {"an_unknown_option", "list --colour", "Unknown option 'colour'"},
    {"an_option_of_another_command", "list -n 3",
     "list does not take the option -n: expected it with one of stream, record\n"
     "Try \"pcdctl list --help\"."},
    {"a_camera_before_the_command_that_takes_none", "-c 7 list",
     "list does not take the option -c: expected it with one of modes, props, get, set, profile, "
     "reset, snap, stream, trigger, record, check, doctor\n"},
    {"a_camera_without_a_blank_for_the_command_that_takes_none", "list -c7",
     "list does not take the option -c: "},
    {"an_option_without_its_value", "stream --frames", "Missing value after '--frames'"},
    {"a_value_for_a_switch", "list --json=yes", "Unexpected value after '--json'"},
    {"a_number_of_frames_that_is_a_word", "stream -n many",
     "\"many\" is not a value for --frames: expected a whole number from 1 to 1000000000"},
    {"no_frames", "stream -n 0", "\"0\" is not a value for --frames"},
    {"a_negative_number_of_frames", "stream -n -5", "\"-5\" is not a value for --frames"},
    {"half_a_frame", "stream -n 1.5", "\"1.5\" is not a value for --frames"},
    {"a_time_that_is_a_word", "stream -t soon",
     "\"soon\" is not a value for --time: expected a number of seconds from 0.001 to 1000000"},
    {"a_time_of_zero", "monitor -t 0", "\"0\" is not a value for --time"},
    {"a_timeout_that_is_not_a_number", "stream --timeout nan",
     "\"nan\" is not a value for --timeout"},
    {"two_set_ends", "stream -n 5 -t 5", "--frames and --time cannot be used together"},
    {"a_still_picture_without_a_file", "snap", "snap needs an output file: expected -o FILE"},
    {"a_picture_format_that_is_unknown", "snap -o a.bmp",
     "\"a.bmp\" is not the name of a picture file: expected a name that ends in .png, .tif, .tiff"},
    {"a_form_of_frames_that_go_nowhere", "stream --as y4m",
     "--as is for the frames of --to: expected both or none"},
    {"a_form_of_frames_that_is_unknown", "stream --to - --as avi",
     "\"avi\" is not a value for --as: expected raw or y4m"},
    {"a_header_for_frames_that_have_one", "stream --to - --as y4m --header",
     "--header is for --as raw"},
    {"chroma_of_raw_frames", "stream --to - --chroma 444", "--chroma is for --as y4m"},
    {"chroma_that_is_unknown", "stream --to - --as y4m --chroma 422",
     "\"422\" is not a value for --chroma: expected 420 or 444"},
    {"frames_that_are_saved_and_passed_on", "stream --to - --save f-#.png",
     "--to and --save cannot be used together"},
    {"frames_that_go_to_an_empty_name", "stream --to=", "\"\" is not a value for --to"},
    {"frames_of_a_still_that_are_passed_on", "snap -o a.png --to -",
     "snap does not take the option --to: expected it with one of stream"},
    {"a_pattern_without_a_number", "stream --save frame.png",
     "\"frame.png\" is not a pattern for file names: expected one run of #"},
    {"a_recording_that_is_neither_one_file_nor_many", "record -n 1 -o run.tif",
     "\"run.tif\" is not the name of a recording: expected a name that ends in .ome.tif or "
     ".ome.zarr, or one with a run of #"},
    {"a_folder_with_all_frames_and_a_number", "record -n 1 -o run-#.ome.zarr",
     "\"run-#.ome.zarr\" is one folder with all frames: expected a name without #"},
    {"a_pyramid_in_a_stack", "record -n 1 -o run.ome.tif --pyramid",
     "--pyramid is not for \"run.ome.tif\": expected a name that ends in .ome.zarr"},
    {"a_pyramid_of_a_still_picture", "snap -o a.png --pyramid",
     "snap does not take the option --pyramid: expected it with one of record"},
    {"a_pattern_with_two_numbers", "stream --save #-#.png", "\"#-#.png\" is not a pattern"},
    {"a_pattern_with_the_number_in_the_folder", "stream --save ##/a.png",
     "\"##/a.png\" is not a patt"},
    {"an_empty_pattern", "stream --save=", "\"\" is not a value for --save"},
    {"an_empty_camera",
     "modes --camera=", "\"\" is not a value for --camera: expected a non-empty value"},
    {"an_empty_scene", "list --scene=", "\"\" is not a value for --scene"},
    {"an_empty_trace", "list --trace=", "\"\" is not a value for --trace"},
    {"frames_of_no_trace", "list --trace-frames",
     "--trace-frames needs a trace: expected --trace FILE too"},
    {"an_empty_sdk", "list --sdk=", "\"\" is not a value for --sdk"},
    {"a_pattern_of_an_unknown_format", "stream --save ##.gif",
     "\"##.gif\" is not the name of a picture file"},
    {"an_unknown_log_level", "list --log-level loud", "--log-level: "},
    {"an_unknown_language", "list --lang xx",
     "\"xx\" is not a value for --lang: expected en or ru"},
    {"a_property_too_few", "get", "get needs more arguments: expected get ID…"},
    {"a_setting_too_few", "set", "set needs more arguments: expected set ID=VALUE…"},
    {"a_profile_without_a_file", "profile save",
     "profile needs more arguments: expected profile save|load|diff FILE"},
    {"a_profile_with_two_files", "profile diff a b", "unexpected argument \"b\""},
    {"an_unknown_use_of_a_profile", "profile paint a",
     "\"paint\" is nothing to do with a profile: expected save, load or diff"},
    {"a_setting_for_the_list", "list --set gamma=5", "list does not take the option --set: "},
    {"an_empty_setting", "snap -o a.png --set=", "\"\" is not a value for --set"},
    {"an_empty_profile", "snap -o a.png --profile=", "\"\" is not a value for --profile"},
    {"a_usb_id_with_two_digits", "doctor --udev 12:34",
     "\"12:34\" is not a value for --udev: expected VENDOR:PRODUCT, four hexadecimal digits each, "
     "or \"found\""},
    {"a_usb_id_that_is_no_number", "doctor --udev 1234:56zz",
     "\"1234:56zz\" is not a value for --udev"},
    {"a_rate_of_zero", "doctor --rate 0",
     "\"0\" is not a value for --rate: expected a number of megabytes per second above 0"},
    {"a_rate_that_is_a_word", "doctor --rate fast", "\"fast\" is not a value for --rate"},
    {"a_rule_file_without_a_rule", "doctor --rule-file a", "--rule-file is for the rule of --udev"},
    {"a_rule_and_a_report", "doctor --udev 1234:5678 --report a",
     "--udev and --report cannot be used together"},
    {"a_folder_without_a_name", "doctor --folder=", "\"\" is not a value for --folder"},
    {"a_udev_rule_from_the_list", "list --udev 1234:5678",
     "list does not take the option --udev: "},
    {"a_camera_for_all_cameras", "monitor -c 0", "monitor does not take the option -c: "},
};

class WrongUsage : public RowTest<UsageRow> {};

ROW_TEST(WrongUsage, is_named_and_ends_with_code_2) {
    const QStringList arguments =
        QString::fromLatin1(GetParam().arguments).split(u' ', Qt::SkipEmptyParts);
    const CtlResult result = runCtl(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, QByteArray());
    EXPECT_TRUE(result.errors.startsWith(u"pcdctl: "_qs)) << result.errors.toStdString();
    EXPECT_TRUE(result.errors.contains(QString::fromUtf8(GetParam().message)))
        << result.errors.toStdString();
}

ROWS_IN(Pcdctl, WrongUsage, wrongUsages);

TEST(PcdctlUsage, a_bad_log_filter_in_the_environment_names_the_variable) {
    const CtlResult result =
        runCtl({u"list"_qs}, [](CtlProcess& process) { process.with(u"PCD_LOG"_qs, u"loud"_qs); });
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errors.contains(u"PCD_LOG: "_qs)) << result.errors.toStdString();
}

TEST(PcdctlUsage, an_unknown_language_in_the_environment_is_named_once_and_ignored) {
    const auto prepare = [](CtlProcess& process) {
        process.with(u"PCD_LANG"_qs, u"xx"_qs).with(u"LC_ALL"_qs, u"ru_RU.UTF-8"_qs);
    };
    const CtlResult result = runCtl({u"props"_qs, u"--sdk=sim"_qs, u"hue"_qs}, prepare);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors,
              u"pcdctl: PCD_LANG: \"xx\" is not a language of this program, so it is ignored: "
              "expected en or ru\n"_qs);
    EXPECT_EQ(runCtl({u"list"_qs, u"--sdk=sim"_qs, u"--lang=en"_qs}, prepare).errors, QString());
}

TEST(PcdctlUsage, a_time_in_the_environment_that_is_none_is_named_and_ignored) {
    const CtlResult result =
        runCtl({u"props"_qs, u"--sdk=sim"_qs, u"hue"_qs},
               [](CtlProcess& process) { process.with(u"PCD_CALL_SECONDS"_qs, u"soon"_qs); });
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors,
              u"pcdctl: PCD_CALL_SECONDS: \"soon\" is no time, so it is ignored: expected seconds "
              "above 0, 3600 at most\n"_qs);
}

TEST(PcdctlUsage, an_argument_that_is_no_text_is_refused) {
    const CtlResult result = runCtl({}, [](CtlProcess& process) {
        process.with([] { execl(PCDCTL_PROGRAM, "pcdctl", "list", "--scene", "a\xff", nullptr); });
    });
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors,
              u"pcdctl: argument 3, \"a\\xff\", is not UTF-8: expected text in UTF-8\n"_qs);
}

TEST(PcdctlUsage, the_log_level_option_has_precedence_over_the_environment) {
    const CtlResult result =
        runCtl({u"list"_qs, u"--sdk=sim"_qs, u"--log-level=off"_qs},
               [](CtlProcess& process) { process.with(u"PCD_LOG"_qs, u"loud"_qs); });
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, QString());
}

TEST(PcdctlUsage, log_records_of_the_plugin_are_shown_on_demand) {
    const QString record = u"info PTDevice: PTDeviceRegister: new device Simulated-20MC-"_qs;
    EXPECT_FALSE(runCtl({u"list"_qs, u"--sdk=sim"_qs}).errors.contains(record));
    const CtlResult byOption = runCtl({u"list"_qs, u"--sdk=sim"_qs, u"--log-level=info"_qs});
    EXPECT_TRUE(byOption.errors.contains(record)) << byOption.errors.toStdString();
    const CtlResult byVariable = runCtl({u"list"_qs, u"--sdk=sim"_qs}, [](CtlProcess& process) {
        process.with(u"PCD_LOG"_qs, u"PTDevice=info"_qs);
    });
    EXPECT_TRUE(byVariable.errors.contains(record)) << byVariable.errors.toStdString();
}

TEST(PcdctlUsage, help_goes_to_the_standard_output_and_lists_commands_and_exit_codes) {
    const CtlResult result = runCtl({u"--help"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, QString());
    for (const char* text :
         {"\n  list ", "\n  modes ", "\n  props ", "\n  get ", "\n  set ", "\n  profile ",
          "\n  reset ", "\n  snap ", "\n  stream ", "\n  monitor ", "\n  check ", "\n  doctor ",
          "--plugin-path", "Exit codes:"})
        EXPECT_TRUE(result.output.contains(text)) << text;
}

TEST(PcdctlUsage, help_has_the_options_that_all_commands_take_and_no_others) {
    const QByteArray help = runCtl({u"--help"_qs}).output;
    for (const char* option : {"--sdk", "--scene", "--log-level", "--lang", "--json", "--version"})
        EXPECT_TRUE(help.contains(option)) << option;
    for (const char* option : {"--camera", "--set", "--output", "--exposure", "--frames"})
        EXPECT_FALSE(help.contains(option)) << option;
}

TEST(PcdctlUsage, help_of_a_command_is_shown_before_and_after_it) {
    EXPECT_EQ(runCtl({u"--help"_qs, u"snap"_qs}).output, runCtl({u"snap"_qs, u"--help"_qs}).output);
}

TEST(PcdctlUsage, help_of_a_command_has_its_options_and_examples_only) {
    const CtlResult result = runCtl({u"stream"_qs, u"--help"_qs});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* text : {"--save", "--frames", "--sdk", "Examples:\n  pcdctl stream -t 5\n"})
        EXPECT_TRUE(result.output.contains(text)) << text;
    EXPECT_FALSE(result.output.contains("--output"));
}

TEST(PcdctlUsage, the_manual_page_has_every_command_and_option_of_the_help) {
    const CtlResult result = runCtl({u"--manual"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.startsWith(".TH PCDCTL 1 ")) << result.output.toStdString();
    for (const char* text : {"\n\\fBsnap\\fR\n", "\n\\fBget\\fR \\fIID…\\fR\n",
                             "\n\\fB\\-c\\fR, \\fB\\-\\-camera\\fR \\fICAMERA\\fR\n",
                             "(stream, record, monitor)\n", "\\fB\\-\\-version\\fR\n"})
        EXPECT_TRUE(result.output.contains(text)) << text;
    EXPECT_FALSE(runCtl({u"--help"_qs}).output.contains("--manual"));
}

TEST(PcdctlUsage, the_version_is_printed) {
    const CtlResult result = runCtl({u"--version"_qs});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.output.startsWith("pcdctl 0.")) << result.output.toStdString();
}

TEST(PcdctlUsage, options_are_taken_before_and_after_the_command) {
    const CtlResult before = runCtl({u"--json"_qs, u"--sdk"_qs, u"sim"_qs, u"list"_qs});
    const CtlResult after = runCtl({u"list"_qs, u"--sdk"_qs, u"sim"_qs, u"--json"_qs});
    EXPECT_EQ(before.exitCode, 0);
    EXPECT_FALSE(before.json.isEmpty());
    EXPECT_EQ(before.output, after.output);
}

TEST(PcdctlUsage, a_standard_output_that_is_closed_is_a_failure) {
    CtlProcess process({u"list"_qs, u"--sdk=sim"_qs});
    process.with([] { close(STDOUT_FILENO); });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.errors().contains("cannot write to standard output"));
}

TEST(PcdctlUsage, a_standard_output_that_cannot_be_written_is_a_failure) {
    CtlProcess process({u"list"_qs, u"--sdk=sim"_qs});
    process.with([] {
        // As a shell does for "> /dev/full".
        if (std::freopen("/dev/full", "w", stdout) == nullptr)
            std::abort();
    });
    ASSERT_TRUE(process.finish());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.errors().contains("cannot write to standard output"));
}

} // namespace
