// SPDX-License-Identifier: MIT
#include <apps/common/program/PProgramOptions.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

using Option = PProgramOptions::Option;

/// Parses the arguments of a program with these options and one of its own, "theme".
PStatus parse(const QStringList& words, PProgramOptions& options) {
    QCommandLineParser parser;
    for (const Option option : {Option::Sdk, Option::Scene, Option::PluginPath, Option::Camera,
                                Option::Language, Option::LogFilter})
        parser.addOption(PProgramOptions::makeOption(option, u"what it does"_qs, u"X"_qs));
    parser.addOption({u"theme"_qs, u"another option"_qs, u"X"_qs});
    EXPECT_TRUE(parser.parse(QStringList{u"program"_qs} + words));
    return options.read(parser, {u"theme"_qs});
}

struct BadValueRow {
    const char* name;
    const char* word;
    const char* reason;
};

class PProgramOptionsBadTest : public RowTest<BadValueRow> {};

} // namespace

TEST(PProgramOptionsTest, without_options_are_those_of_the_system) {
    PProgramOptions options;
    options.sdk.clear();
    ASSERT_TRUE(parse({}, options).isOk());
    EXPECT_EQ(options.sdk, u"auto"_qs);
    EXPECT_EQ(options.scene, QString());
    EXPECT_EQ(options.pluginPaths, QStringList());
    EXPECT_EQ(options.camera, QString());
    EXPECT_EQ(options.language, QString());
    EXPECT_EQ(options.logFilter, std::nullopt);
}

TEST(PProgramOptionsTest, reads_every_option) {
    PProgramOptions options;
    ASSERT_TRUE(
        parse({u"--sdk=sim"_qs, u"--scene=s.json"_qs, u"--plugin-path=/a"_qs,
               u"--plugin-path=/b"_qs, u"-c"_qs, u"1"_qs, u"--lang=ru"_qs, u"--log-level=debug"_qs},
              options)
            .isOk());
    EXPECT_EQ(options.sdk, u"sim"_qs);
    EXPECT_EQ(options.scene, u"s.json"_qs);
    EXPECT_EQ(options.pluginPaths, (QStringList{u"/a"_qs, u"/b"_qs}));
    EXPECT_EQ(options.camera, u"1"_qs);
    EXPECT_EQ(options.language, u"ru"_qs);
    EXPECT_EQ(options.logFilter, u"debug"_qs);
}

TEST(PProgramOptionsTest, an_option_keeps_the_help_of_its_program) {
    const auto option = PProgramOptions::makeOption(Option::Camera, u"what it does"_qs, u"ID"_qs);
    EXPECT_EQ(option.names(), (QStringList{u"c"_qs, u"camera"_qs}));
    EXPECT_EQ(option.description(), u"what it does"_qs);
    EXPECT_EQ(option.valueName(), u"ID"_qs);
}

ROW_TEST(PProgramOptionsBadTest, is_refused_with_what_was_expected) {
    PProgramOptions options;
    const PStatus status = parse({QString::fromLatin1(GetParam().word)}, options);
    EXPECT_EQ(status.reason(), QString::fromLatin1(GetParam().reason));
}

ROWS(Words, PProgramOptionsBadTest,
     BadValueRow{"an_unknown_language", "--lang=xx",
                 "\"xx\" is not a value for --lang: expected en or ru"},
     BadValueRow{"an_empty_language",
                 "--lang=", "\"\" is not a value for --lang: expected a non-empty value"},
     BadValueRow{"an_empty_sdk",
                 "--sdk=", "\"\" is not a value for --sdk: expected a non-empty value"},
     BadValueRow{"an_empty_scene",
                 "--scene=", "\"\" is not a value for --scene: expected a non-empty value"},
     BadValueRow{"an_empty_plugin_path", "--plugin-path=",
                 "\"\" is not a value for --plugin-path: expected a non-empty value"},
     BadValueRow{"an_empty_camera",
                 "--camera=", "\"\" is not a value for --camera: expected a non-empty value"},
     BadValueRow{"an_empty_log_level",
                 "--log-level=", "\"\" is not a value for --log-level: expected a non-empty value"},
     BadValueRow{"an_empty_option_of_the_program",
                 "--theme=", "\"\" is not a value for --theme: expected a non-empty value"});
